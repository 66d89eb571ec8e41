#include "cli/console.h"
#include "cli/exitcodes.h"
#include "cli/interruption.h"
#include "config/configfile.h"
#include "simulator/loggersimulator.h"
#include "simulator/simulatoroptions.h"
#include "simulator/trafficrecorder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

#include <memory>

namespace {

using namespace simulator;

// The simulator as the command line wants it.
class Program
{
public:
    Program(Console &console, const SimulatorOptions &options)
        : m_console(console)
        , m_options(options)
    {}

    ExitCode run()
    {
        QString error;
        if (!prepare(error) || !m_simulator.listen(m_options.address, &error)) {
            m_console.error(error);
            return SomeFileFailed;
        }
        m_console.print(QStringLiteral("ready %1").arg(m_options.address.toString()));
        endOnRequest();
        const int code = QCoreApplication::exec();
        m_simulator.close();
        return ExitCode(code);
    }

private:
    bool prepare(QString &error)
    {
        LoggerState &state = m_simulator.state();
        state.version = m_options.version;
        state.logFolder = m_options.logFolder;
        state.recordsLogs = m_options.recordsLogs;
        if (m_options.restartDelay_ms)
            state.restartDelay_ms = *m_options.restartDelay_ms;
        for (const FaultSetting &fault : m_options.faults)
            m_simulator.faults().set(fault);
        m_simulator.dataPort().setLoad(m_options.load);
        QObject::connect(&m_simulator, &LoggerSimulator::restarted, [this](const QString &failure) {
            if (failure.isEmpty())
                m_console.status(QStringLiteral("Restarted with version %1.")
                                     .arg(m_simulator.state().version.text()));
            else
                fail(failure);
        });
        QObject::connect(&m_simulator.recorder(), &LogRecorder::failed,
                         [this](const QString &reason) { m_console.error(reason); });
        return checkFolder(error) && startReplay(error) && loadConfiguration(error)
               && startRecord(error);
    }

    bool checkFolder(QString &error) const
    {
        if (m_options.logFolder.isEmpty() || QFileInfo(m_options.logFolder).isDir())
            return true;
        error = QStringLiteral("%1: This is no folder.").arg(m_options.logFolder);
        return false;
    }

    bool startReplay(QString &error)
    {
        if (m_options.replayPath.isEmpty())
            return true;
        auto replay = std::make_unique<LogReplay>(m_options.replayPath);
        if (!replay->configuration()) {
            error = replay->failure();
            return false;
        }
        record::copy(*replay->configuration(), m_simulator.state().configuration);
        m_simulator.dataPort().setReplay(std::move(replay));
        return true;
    }

    bool loadConfiguration(QString &error)
    {
        return m_options.configurationPath.isEmpty()
               || configfile::load(m_simulator.state().configuration, m_options.configurationPath,
                                   &error);
    }

    bool startRecord(QString &error)
    {
        if (m_options.recordPath.isEmpty())
            return true;
        m_recorder = std::make_unique<TrafficRecorder>(m_options.recordPath);
        error = m_recorder->failure();
        const CommandPort &port = m_simulator.commandPort();
        QObject::connect(&port, &CommandPort::received, [this](const protocol::Message &message) {
            record(TrafficRecorder::Sender::Tool, message);
        });
        QObject::connect(&port, &CommandPort::sent, [this](const protocol::Message &message) {
            record(TrafficRecorder::Sender::Logger, message);
        });
        return m_recorder->ok();
    }

    void record(TrafficRecorder::Sender sender, const protocol::Message &message)
    {
        m_recorder->record(sender, message);
        if (!m_recorder->ok())
            fail(m_recorder->failure());
    }

    void fail(const QString &text)
    {
        m_console.error(text);
        QCoreApplication::exit(SomeFileFailed);
    }

    void endOnRequest()
    {
        constexpr int period_ms = 100;
        interruption::watch();
        QObject::connect(&m_requestTimer, &QTimer::timeout, [] {
            if (interruption::requested())
                QCoreApplication::exit(AllDone);
        });
        m_requestTimer.start(period_ms);
    }

    Console &m_console;
    const SimulatorOptions &m_options;
    LoggerSimulator m_simulator;
    std::unique_ptr<TrafficRecorder> m_recorder;
    QTimer m_requestTimer;
};

} // namespace

int main(int argc, char *argv[])
{
    Console::setUp();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zds-logger-sim"));
    Console console;
    const ParsedOptions parsed = parseOptions(QCoreApplication::arguments());
    if (!parsed.error.isEmpty()) {
        console.error(parsed.error);
        console.error(QStringLiteral("Try zds-logger-sim --help."));
        return UsageError;
    }
    if (parsed.options.showsHelp) {
        console.print(helpText());
        return AllDone;
    }
    return Program(console, parsed.options).run();
}
