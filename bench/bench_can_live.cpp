// Figures of the live view of CAN channels, against the simulated logger:
//
//     bench_can_live [--seconds N] [--smoke]
//
// 100,000 CAN frames a second on twelve channels reach the handler and the twelve CAN pages, of
// which one is shown; 1,000 of their signals are live. What is judged is the processor time of the
// GUI thread, which decodes, lists and draws. With --smoke the run is short and no bar is judged.

#include "MDF4Conversion/rawlog/benchlog.h"
#include "app/state/appcontroller.h"
#include "app/ui/userprompt.h"
#include "can/views/logger_can_view.h"
#include "link/logger_data_handler_class.h"
#include "tests/support/simulatedlogger.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>

namespace {

constexpr quint32 framesPerSecond = 100'000;
constexpr int liveSignals = 1000;
constexpr int messages = 240; // as many as the simulator's load has
constexpr double processorBar = 0.50;

// Nothing asks in this program.
class NoPrompt : public UserPrompt
{
public:
    void inform(const QString &, const QString &) override {}
    void warn(const QString &, const QString &, const QString &) override {}
    bool ask(const QString &, const QString &) override { return false; }
    QString pickFolder(const QString &, const QString &) override { return {}; }
    QString pickFile(const QString &, const QString &, const QString &) override { return {}; }
    QStringList pickFiles(const QString &, const QString &, const QString &) override { return {}; }
    QString pickFileToSave(const QString &, const QString &, const QString &) override
    {
        return {};
    }
};

// Of the calling thread; none where the system doesn't tell.
std::optional<double> threadSeconds()
{
#ifdef CLOCK_THREAD_CPUTIME_ID
    timespec time{};
    if (clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time) == 0)
        return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
#endif
    return std::nullopt;
}

// The signals of the load, of which the first ones of each channel are live.
std::unique_ptr<TerminalStruct> configuration()
{
    auto terminal = benchlog::configuration({0, messages});
    int live = 0;
    for (int i = 0; live < liveSignals; ++i) {
        for (TerminalCanCfg &channel : terminal->can) {
            if (live == liveSignals || i >= channel.dbc_signals.size())
                continue;
            channel.dbc_signals.at(i)->selection_flags |= StreamingClass_DBC_Signal::liveFlag;
            ++live;
        }
    }
    return terminal;
}

int seenSignals(const TerminalStruct &terminal)
{
    int seen = 0;
    for (const TerminalCanCfg &channel : terminal.can) {
        for (const StreamingClass_DBC_Signal *signal : channel.dbc_signals)
            seen += signal->live_seen ? 1 : 0;
    }
    return seen;
}

void runFor(int duration_ms)
{
    QEventLoop loop;
    QTimer::singleShot(duration_ms, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    bool isSmoke = false;
    int seconds = 30;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--smoke") == 0)
            isSmoke = true;
        else if (std::strcmp(argv[i], "--seconds") == 0 && i + 1 < argc)
            seconds = qBound(1, std::atoi(argv[++i]), 3600);
    }
    if (isSmoke)
        seconds = 3;
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());

    SimulatedLogger logger;
    AppController controller;
    Logger_Data_Handler_Class handler(&controller);
    NoPrompt prompt;
    if (!handler.writeWholeConfiguration(*configuration())) // without a logger: taken over
        return 1;
    QStackedWidget pages;
    for (int number = 0; number < int(TerminalStruct::canChannels); ++number) {
        const QString title = QStringLiteral("CAN-%1").arg(number);
        auto *page = new Logger_CAN_View(&controller, title, title, number, &handler, prompt);
        pages.addWidget(page);
        page->registerToController();
    }
    pages.resize(1000, 760);
    pages.show();
    if (!handler.connectLogger(logger.address()))
        return 1;
    handler.enableLiveData();
    logger.inspect([](simulator::LoggerSimulator &s) { s.dataPort().setLoad(framesPerSecond); });

    runFor(seconds * 1000 / 6);
    const auto entriesBefore = handler.liveCounters().entries;
    const std::optional<double> processorBefore = threadSeconds();
    QElapsedTimer clock;
    clock.start();
    runFor(seconds * 1000);
    const double elapsed_s = double(clock.nsecsElapsed()) / 1e9;
    const std::optional<double> processorAfter = threadSeconds();
    const double rate = double(handler.liveCounters().entries - entriesBefore) / elapsed_s;
    const int seen = seenSignals(handler.terminal());
    const quint64 dropped = handler.liveCounters().dropped;
    handler.disconnectLogger();

    std::printf("%-32s %10.0f /s\n", "frames", rate);
    std::printf("%-32s %10d of %d\n", "live signals with a value", seen, liveSignals);
    std::printf("%-32s %10llu\n", "entries dropped", static_cast<unsigned long long>(dropped));
    if (!processorBefore || !processorAfter) {
        std::printf("%-32s not measured\n", "GUI thread");
        return 1;
    }
    const double processor = (*processorAfter - *processorBefore) / elapsed_s;
    const bool isMet = processor <= processorBar && seen == liveSignals && dropped == 0
                       && rate >= double(framesPerSecond) * 0.95;
    std::printf("%-32s %10.2f core bar %.2f %s\n", "GUI thread", processor, processorBar,
                isMet ? "met" : "MISSED");
    return isSmoke || isMet ? 0 : 1;
}
