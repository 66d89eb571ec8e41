#include "MDF4Conversion/rawlog/demolog.h"
#include "MDF4Conversion/workerconvertmdf4.h"
#include "cli/batchconversion.h"
#include "cli/commandline.h"
#include "cli/console.h"
#include "cli/exitcodes.h"
#include "cli/inputfiles.h"
#include "cli/interruption.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonDocument>
#include <QThread>

#include <algorithm>
#include <optional>

namespace {

constexpr int maxThreads = 64;
constexpr int maxDemoSeconds = 24 * 3600;
constexpr int defaultDemoSeconds = 60;

const QString rldPattern = QStringLiteral("*.rld");

// The options of the program, declared once.
struct Options
{
    const QCommandLineOption outputFolder{{QStringLiteral("o"), QStringLiteral("output")},
                                          QStringLiteral("Write into <DIR> instead of beside each "
                                                         "input."),
                                          QStringLiteral("DIR")};
    const QCommandLineOption format{QStringLiteral("format"),
                                    QStringLiteral("Output format: mdf4."),
                                    QStringLiteral("FORMAT"), QStringLiteral("mdf4")};
    const QCommandLineOption jobs{{QStringLiteral("j"), QStringLiteral("jobs")},
                                  QStringLiteral("Threads that compress, 1 to 64; all processors "
                                                 "when not given."),
                                  QStringLiteral("N")};
    const QCommandLineOption json{QStringLiteral("json"),
                                  QStringLiteral("Print a summary of each file as JSON.")};
    const QCommandLineOption quiet{{QStringLiteral("q"), QStringLiteral("quiet")},
                                   QStringLiteral("Show warnings and errors only.")};
    const QCommandLineOption log{QStringLiteral("log"),
                                 QStringLiteral("Write all messages into <FILE>, too."),
                                 QStringLiteral("FILE")};
    const QCommandLineOption makeDemo{QStringLiteral("make-demo"),
                                      QStringLiteral("Make demonstration and test logs in <DIR>."),
                                      QStringLiteral("DIR")};
    const QCommandLineOption seconds{
        QStringLiteral("seconds"), QStringLiteral("Length of the demonstration drive, 1 to 86400."),
        QStringLiteral("N"), QString::number(defaultDemoSeconds)};

    void addTo(QCommandLineParser &parser) const
    {
        parser.addOptions({outputFolder, format, jobs, json, quiet, log, makeDemo, seconds});
    }
};

// A whole number in a range, or an empty value.
std::optional<int> numberIn(const QString &text, int low, int high)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok && value >= low && value <= high ? std::optional<int>(value) : std::nullopt;
}

ExitCode makeDemo(Console &console, const QString &folder, int seconds)
{
    const demolog::Result result = demolog::makeAll(folder, seconds, [&](int percent) {
        console.showProgress(QStringLiteral("making logs  %1 %").arg(percent));
        return !interruption::requested();
    });
    console.clearProgress();
    for (const QString &file : result.files)
        console.print(displayName(file));
    if (result.cancelled)
        return Cancelled;
    if (result.failure.isEmpty())
        return AllDone;
    console.error(result.failure);
    return SomeFileFailed;
}

// Whether writing into `path` would cost a raw log.
bool isRawLog(const QString &path, const QStringList &inputs)
{
    if (path.endsWith(QLatin1String(".rld"), Qt::CaseInsensitive))
        return true;
    const QString canonical = QFileInfo(path).canonicalFilePath(); // empty when there is none yet
    return !canonical.isEmpty()
           && std::any_of(inputs.begin(), inputs.end(), [&canonical](const QString &input) {
                  return QFileInfo(input).canonicalFilePath() == canonical;
              });
}

ExitCode convert(Console &console, const QCommandLineParser &parser, const Options &options,
                 const BatchConversion::Options &batchOptions, const InputFiles &inputs)
{
    for (const QString &failure : inputs.failures)
        console.error(failure);
    BatchConversion batch(console, batchOptions);
    const ExitCode code = batch.run(inputs.files);
    if (parser.isSet(options.json)) {
        const QByteArray json = QJsonDocument(batch.summaries()).toJson(QJsonDocument::Indented);
        console.print(QString::fromUtf8(json.trimmed()));
    }
    return inputs.failures.isEmpty() || code == Cancelled ? code : SomeFileFailed;
}

ExitCode run(Console &console, const QStringList &arguments)
{
    QCommandLineParser parser;
    const Options options;
    parser.setApplicationDescription(QStringLiteral("Converts raw logs (.rld) to ASAM MDF4."));
    commandline::addStandardOptions(parser);
    options.addTo(parser);
    parser.addPositionalArgument(QStringLiteral("FILE.rld"),
                                 QStringLiteral("Raw logs, shell patterns or folders."),
                                 QStringLiteral("FILE.rld..."));
    if (!parser.parse(arguments))
        return commandline::usageError(console, parser.errorText());
    if (commandline::showHelpOrVersion(console, parser))
        return AllDone;
    console.setQuiet(parser.isSet(options.quiet));
    if (parser.value(options.format).compare(QLatin1String("mdf4"), Qt::CaseInsensitive) != 0)
        return commandline::usageError(
            console,
            QStringLiteral("Unknown format %1; there is mdf4.").arg(parser.value(options.format)));
    const auto seconds = numberIn(parser.value(options.seconds), 1, maxDemoSeconds);
    if (!seconds)
        return commandline::usageError(
            console, QStringLiteral("--seconds takes 1 to %1.").arg(maxDemoSeconds));
    BatchConversion::Options batchOptions;
    batchOptions.outputFolder = parser.value(options.outputFolder);
    batchOptions.threads = qBound(1, QThread::idealThreadCount(), maxThreads);
    if (parser.isSet(options.jobs)) {
        const auto jobs = numberIn(parser.value(options.jobs), 1, maxThreads);
        if (!jobs)
            return commandline::usageError(console,
                                           QStringLiteral("--jobs takes 1 to %1.").arg(maxThreads));
        batchOptions.threads = *jobs;
    }
    if (parser.isSet(options.makeDemo) != parser.positionalArguments().isEmpty()) {
        return commandline::usageError(console, parser.isSet(options.makeDemo)
                                                    ? QStringLiteral("--make-demo takes no files.")
                                                    : QStringLiteral("No file was given."));
    }
    if (parser.isSet(options.seconds) && !parser.isSet(options.makeDemo))
        return commandline::usageError(console, QStringLiteral("--seconds needs --make-demo."));
    for (const QCommandLineOption *option :
         {&options.outputFolder, &options.log, &options.makeDemo}) {
        if (isNotUtf8(parser.value(*option)))
            return commandline::usageError(console, notUtf8Text(parser.value(*option)));
    }
    const InputFiles inputs = inputFiles(parser.positionalArguments(), {rldPattern});
    const QString log = parser.value(options.log);
    if (isRawLog(log, inputs.files))
        return commandline::usageError(
            console, QStringLiteral("--log would replace the raw log %1.").arg(displayName(log)));
    QString failure;
    if (parser.isSet(options.log) && !console.openLog(log, failure)) {
        console.error(failure);
        return SomeFileFailed;
    }
    interruption::watch();
    if (parser.isSet(options.makeDemo))
        return makeDemo(console, parser.value(options.makeDemo), *seconds);
    return convert(console, parser, options, batchOptions, inputs);
}

} // namespace

int main(int argc, char *argv[])
{
    Console::setUp();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zds-convert"));
    QCoreApplication::setApplicationVersion(QStringLiteral("%1.%2")
                                                .arg(WorkerConvertMDF4::versionMajor)
                                                .arg(WorkerConvertMDF4::versionMinor));
    Console console;
    return commandline::finalCode(console, run(console, QCoreApplication::arguments()));
}
