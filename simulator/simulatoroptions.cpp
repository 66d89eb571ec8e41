#include "simulator/simulatoroptions.h"

#include <QCommandLineParser>

namespace simulator {
namespace {

QCommandLineOption option(const char *name, const char *text, const char *value = "")
{
    return {QLatin1String(name), QLatin1String(text), QLatin1String(value)};
}

// The options of the program, declared once.
struct Options
{
    const QCommandLineOption address =
        option("address", "Listen on this address. Default: 127.0.0.1", "ADDRESS");
    const QCommandLineOption allowRemote = option(
        "allow-remote", "Allow an address that other computers reach. Whoever reaches it can "
                        "read and delete the files of the folder.");
    const QCommandLineOption config =
        option("config", "Hold the configuration of this file at the start.", "FILE.zdc");
    const QCommandLineOption logFolder = option(
        "log-dir", "Keep log files in this folder: record, list, serve and delete them.", "DIR");
    const QCommandLineOption noLogging =
        option("no-logging", "Record no logs. None are with --replay either.");
    const QCommandLineOption version =
        option("version", "Report this software version. Default: 1.61", "MAJOR.MINOR");
    const QCommandLineOption fault =
        option("fault", "Misbehave in this way; may be given several times. See below.",
               "NAME[@WORD][=VALUE]");
    const QCommandLineOption record =
        option("record", "Write every command and record, in both directions, to this file.",
               "FILE.jsonl");
    const QCommandLineOption replay =
        option("replay",
               "Stream this log, in its own pace and again and again, and hold its configuration.",
               "FILE.rld");
    const QCommandLineOption load =
        option("load", "Stream this many CAN frames a second, too, on twelve channels.", "FRAMES");
    const QCommandLineOption restartDelay =
        option("restart-delay", "Stay away for this time after an update. Default: 2000", "MS");
    const QCommandLineOption help = option("help", "Show this help.");

    void addTo(QCommandLineParser &parser) const
    {
        parser.setApplicationDescription(
            QStringLiteral("Simulates a vehicle data logger on the network."));
        parser.addOptions({address, allowRemote, config, logFolder, noLogging, version, fault,
                           record, replay, load, restartDelay, help});
    }
};

QString faultHelp()
{
    QString text = QStringLiteral("\n\nFaults (TIMES counts down; without it a fault stays on. "
                                  "@WORD confines a fault of the\n"
                                  "command port to one command, or to one message type):\n");
    for (const FaultRow &row : faultTable()) {
        const QString value = row.defaultValue
                                  ? QStringLiteral("[=%1]").arg(QLatin1String(row.placeholder))
                                  : QStringLiteral("=%1").arg(QLatin1String(row.placeholder));
        text += QStringLiteral("  %1%2\n      %3")
                    .arg(QLatin1String(row.name), value, QLatin1String(row.help));
        if (row.defaultValue && row.kind != FaultValue::Times)
            text += QStringLiteral(" (default: %1)").arg(QLatin1String(row.defaultValue));
        text += QLatin1Char('\n');
    }
    return text;
}

QString notANumber(const char *name, const QString &value)
{
    return QStringLiteral("--%1 takes a number, not \"%2\".").arg(QLatin1String(name), value);
}

// Fills the values that need to be understood. Gives what is wrong, or a null text.
QString readValues(const QCommandLineParser &parser, const Options &known,
                   SimulatorOptions &options)
{
    if (parser.isSet(known.address) && !options.address.setAddress(parser.value(known.address)))
        return QStringLiteral("\"%1\" is no address.").arg(parser.value(known.address));
    if (!options.address.isLoopback() && !parser.isSet(known.allowRemote))
        return QStringLiteral("%1 can be reached from other computers; --allow-remote allows that.")
            .arg(options.address.toString());
    if (parser.isSet(known.version)) {
        const auto version = softwareVersion(parser.value(known.version));
        if (!version)
            return QStringLiteral("\"%1\" is no software version like 1.61.")
                .arg(parser.value(known.version));
        options.version = *version;
    }
    for (const QString &text : parser.values(known.fault)) {
        QString error;
        const auto fault = parseFault(text, &error);
        if (!fault)
            return error;
        options.faults.append(*fault);
    }
    bool isNumber = true;
    if (parser.isSet(known.load))
        options.load = parser.value(known.load).toUInt(&isNumber);
    if (!isNumber)
        return notANumber("load", parser.value(known.load));
    if (parser.isSet(known.restartDelay))
        options.restartDelay_ms = int(parser.value(known.restartDelay).toUShort(&isNumber));
    if (!isNumber)
        return notANumber("restart-delay", parser.value(known.restartDelay));
    return {};
}

} // namespace

ParsedOptions parseOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    const Options known;
    known.addTo(parser);
    ParsedOptions parsed;
    if (!parser.parse(arguments)) {
        parsed.error = parser.errorText();
        return parsed;
    }
    if (!parser.positionalArguments().isEmpty()) {
        parsed.error =
            QStringLiteral("Unexpected argument \"%1\".").arg(parser.positionalArguments().first());
        return parsed;
    }
    SimulatorOptions &options = parsed.options;
    options.showsHelp = parser.isSet(known.help);
    options.configurationPath = parser.value(known.config);
    options.logFolder = parser.value(known.logFolder);
    options.recordPath = parser.value(known.record);
    options.replayPath = parser.value(known.replay);
    options.recordsLogs = !parser.isSet(known.noLogging) && options.replayPath.isEmpty();
    parsed.error = readValues(parser, known, options);
    return parsed;
}

QString helpText()
{
    QCommandLineParser parser;
    Options().addTo(parser);
    return parser.helpText().trimmed() + faultHelp().chopped(1);
}

} // namespace simulator
