#include "cli/commandline.h"
#include "cli/console.h"
#include "cli/exitcodes.h"
#include "cli/inputfiles.h"
#include "cli/inspectionrun.h"
#include "cli/interruption.h"
#include "config/record/jsonwriter.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

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
    const InputFiles inputs =
        inputFiles(parser.positionalArguments(),
                   {QStringLiteral("*.zdc"), QStringLiteral("*.rld"), QStringLiteral("*.dbc")});
    const bool saves = parser.isSet(options.saveAs);
    if (saves && parser.value(options.saveAs).isEmpty())
        return commandline::usageError(console,
                                       QStringLiteral("--save-as takes the name of a file."));
    if (isNotUtf8(parser.value(options.saveAs)))
        return commandline::usageError(console, notUtf8Text(parser.value(options.saveAs)));
    if (saves && inputs.files.size() + inputs.failures.size() != 1)
        return commandline::usageError(console,
                                       QStringLiteral("--save-as takes exactly one file."));
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
        QStringLiteral("Shows what is in configurations (.zdc), raw logs (.rld) and "
                       "DBC files (.dbc)."));
    commandline::addStandardOptions(parser);
    options.addTo(parser);
    parser.addPositionalArgument(
        QStringLiteral("FILE"),
        QStringLiteral("Configurations, raw logs and DBC files, shell patterns or "
                       "folders."),
        QStringLiteral("FILE..."));
    if (!parser.parse(arguments))
        return commandline::usageError(console, parser.errorText());
    if (commandline::showHelpOrVersion(console, parser))
        return AllDone;
    if (parser.positionalArguments().isEmpty())
        return commandline::usageError(console, QStringLiteral("No file was given."));
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
    return commandline::finalCode(console, run(console, QCoreApplication::arguments()));
}
