#include "cli/console.h"
#include "cli/exitcodes.h"
#include "cli/inputfiles.h"
#include "cli/inspectionrun.h"
#include "cli/interruption.h"
#include "config/record/jsonwriter.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace {

// The options of the program, declared once.
struct Options
{
    const QCommandLineOption json{QStringLiteral("json"),
                                  QStringLiteral("Print what is in each file as JSON.")};
    const QCommandLineOption saveAs{QStringLiteral("save-as"),
                                    QStringLiteral("Save the configuration of the one input as "
                                                   "<FILE.zdc>, at the current version."),
                                    QStringLiteral("FILE.zdc")};

    void addTo(QCommandLineParser &parser) const { parser.addOptions({json, saveAs}); }
};

ExitCode usageError(Console &console, const QString &text)
{
    console.error(text);
    console.error(QStringLiteral("Try zds-inspect --help."));
    return UsageError;
}

// One array on standard output, with an object for each file.
ExitCode runAsJson(InspectionRun &run, const QStringList &files)
{
    QFile out;
    (void)out.open(stdout, QIODevice::WriteOnly);
    JsonWriter json(out);
    run.writeJsonTo(json);
    json.beginArray();
    const ExitCode code = run.run(files);
    json.end();
    return code;
}

ExitCode inspect(Console &console, const QCommandLineParser &parser, const Options &options)
{
    const InputFiles inputs = inputFiles(parser.positionalArguments(),
                                         {QStringLiteral("*.zdc"), QStringLiteral("*.rld")});
    const bool saves = parser.isSet(options.saveAs);
    if (saves && parser.value(options.saveAs).isEmpty())
        return usageError(console, QStringLiteral("--save-as takes the name of a file."));
    if (saves && inputs.files.size() + inputs.failures.size() != 1)
        return usageError(console, QStringLiteral("--save-as takes exactly one file."));
    for (const QString &failure : inputs.failures)
        console.error(failure);
    InspectionRun run(console);
    if (saves)
        run.saveConfigurationAs(parser.value(options.saveAs));
    const ExitCode code =
        parser.isSet(options.json) ? runAsJson(run, inputs.files) : run.run(inputs.files);
    return inputs.failures.isEmpty() || code == Cancelled ? code : SomeFileFailed;
}

ExitCode run(Console &console, const QStringList &arguments)
{
    QCommandLineParser parser;
    const Options options;
    parser.setApplicationDescription(
        QStringLiteral("Shows what is in configurations (.zdc) and raw logs (.rld)."));
    parser.addHelpOption();
    parser.addVersionOption();
    options.addTo(parser);
    parser.addPositionalArgument(
        QStringLiteral("FILE"),
        QStringLiteral("Configurations and raw logs, shell patterns or folders."),
        QStringLiteral("FILE..."));
    if (!parser.parse(arguments))
        return usageError(console, parser.errorText());
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all"))) {
        console.print(parser.helpText().trimmed());
        return AllDone;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        console.print(QStringLiteral("zds-inspect %1").arg(QCoreApplication::applicationVersion()));
        return AllDone;
    }
    if (parser.positionalArguments().isEmpty())
        return usageError(console, QStringLiteral("No file was given."));
    interruption::watch();
    return inspect(console, parser, options);
}

} // namespace

int main(int argc, char *argv[])
{
    Console::setUp();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zds-inspect"));
    QCoreApplication::setApplicationVersion(
        QStringLiteral("%1.%2").arg(ZDS_VERSION_MAJOR).arg(ZDS_VERSION_MINOR));
    Console console;
    const ExitCode code = run(console, QCoreApplication::arguments());
    if (std::ferror(stdout) == 0)
        return code;
    console.error(QStringLiteral("The output could not be written."));
    return SomeFileFailed;
}
