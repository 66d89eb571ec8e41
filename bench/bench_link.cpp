// Figures of the link to a logger, against the simulated one:
//
//     bench_link [--seconds N] [--smoke]
//
// Connecting: from pressing the button to the whole configuration. Live path: 100,000 CAN frames a
// second on twelve channels and all other sources of a drive, received over loopback, decoded and
// delivered; the processor time of the two threads that do it, entries that were dropped, and the
// growth of memory. With --smoke the run is short and no bar is judged.

#include "app/state/appcontroller.h"
#include "bench/bars.h"
#include "link/logger_data_handler_class.h"
#include "tests/support/simulatedlogger.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <vector>

namespace {

constexpr quint32 framesPerSecond = 100'000;
constexpr double connectBar_ms = 300;
constexpr double processorBar = 0.30;
constexpr double growthBar_MB = 8;

// Of this process, in MB; 0 where the system doesn't tell.
double residentMemory_MB()
{
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    constexpr double pageSize_MB = 4096 / 1e6;
    return status.readAll().split(' ').value(1).toDouble() * pageSize_MB;
}

// Median of some connections.
double connectTime_ms(SimulatedLogger &logger)
{
    constexpr int runs = 9;
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        AppController controller;
        Logger_Data_Handler_Class handler(&controller);
        bool isComplete = false;
        QObject::connect(&handler, &Logger_Data_Handler_Class::signal_full_update,
                         [&isComplete] { isComplete = true; });
        QElapsedTimer clock;
        clock.start();
        int majorNumber = 0;
        int minorNumber = 0;
        const bool works = handler.connectLogger(logger.address())
                           && handler.getSoftwareVersion(majorNumber, minorNumber)
                           && handler.getSystemCapabilities() && handler.subsystemsReady()
                           && handler.disableStopLogging() && handler.requestConfiguration();
        while (works && !isComplete)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        times.push_back(works ? double(clock.nsecsElapsed()) / 1e6 : 1e9);
        handler.disconnectLogger();
    }
    std::sort(times.begin(), times.end());
    return times.at(runs / 2);
}

struct LiveFigures
{
    double entriesPerSecond = 0;
    double processor = 0; // of one core, for the whole process: the simulator is in it
    double simulator = 0; // its thread alone
    double growth_MB = 0;
    quint64 dropped = 0;
    quint64 delivered = 0;
};

double threadSeconds(SimulatedLogger &logger)
{
    return logger.inspect([](simulator::LoggerSimulator &) {
#ifdef CLOCK_THREAD_CPUTIME_ID
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
#else
        return 0.0;
#endif
    });
}

LiveFigures streamFor(SimulatedLogger &logger, int seconds)
{
    AppController controller;
    Logger_Data_Handler_Class handler(&controller);
    LiveFigures figures;
    QObject::connect(&handler, &Logger_Data_Handler_Class::signal_can_msg_list,
                     [&figures](int, const QList<CAN_Msg_Class *> &list) {
                         figures.delivered += quint64(list.size());
                     });
    if (!handler.connectLogger(logger.address()) || !handler.requestConfiguration())
        return figures;
    handler.enableLiveData();
    logger.inspect([](simulator::LoggerSimulator &s) { s.dataPort().setLoad(framesPerSecond); });

    const auto runFor = [](int duration_ms) {
        QEventLoop loop;
        QTimer::singleShot(duration_ms, &loop, &QEventLoop::quit);
        loop.exec();
    };
    runFor(seconds * 1000 / 6); // memory has reached its size
    const double memory_MB = residentMemory_MB();
    const auto before = handler.liveCounters();
    const double simulatorBefore = threadSeconds(logger);
    const std::clock_t processorBefore = std::clock();
    QElapsedTimer clock;
    clock.start();
    runFor(seconds * 1000);
    const double elapsed_s = double(clock.nsecsElapsed()) / 1e9;
    figures.processor = double(std::clock() - processorBefore) / double(CLOCKS_PER_SEC) / elapsed_s;
    figures.simulator = (threadSeconds(logger) - simulatorBefore) / elapsed_s;
    figures.entriesPerSecond = double(handler.liveCounters().entries - before.entries) / elapsed_s;
    figures.dropped = handler.liveCounters().dropped;
    figures.growth_MB = residentMemory_MB() - memory_MB;
    handler.disconnectLogger();
    return figures;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    bool isSmoke = false;
    int seconds = 60;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--smoke") == 0)
            isSmoke = true;
        else if (std::strcmp(argv[i], "--seconds") == 0 && i + 1 < argc)
            seconds = qBound(1, std::atoi(argv[++i]), 3600);
    }
    if (isSmoke)
        seconds = 3;

    SimulatedLogger logger;
    logger.inspect([](simulator::LoggerSimulator &s) {
        for (TerminalCanCfg &can : s.state().configuration.can)
            can.enabled = 1;
        s.state().configuration.gps.gps_enabled = 1;
        s.state().configuration.agm.enabled = 1;
        for (TerminalRs485Cfg &port : s.state().configuration.rs485)
            port.d4mod.enabled = 1;
    });
    Bars bars;
    bars.judge("connect to whole configuration", connectTime_ms(logger), connectBar_ms, "ms");
    const LiveFigures figures = streamFor(logger, seconds);
    std::printf("%-44s %10.0f /s\n", "live entries", figures.entriesPerSecond);
    std::printf("%-44s %10llu\n", "CAN frames delivered",
                static_cast<unsigned long long>(figures.delivered));
    std::printf("%-44s %10.2f of one core\n", "simulated logger", figures.simulator);
    bars.judge("reception, decoding and delivery", figures.processor - figures.simulator,
               processorBar, "core");
    bars.judge("entries dropped", double(figures.dropped), 0, "");
    bars.judge("growth of memory", figures.growth_MB, growthBar_MB, "MB");
    const bool isFast = figures.entriesPerSecond >= double(framesPerSecond) * 0.95;
    std::printf("design load of %u frames/s %s\n", framesPerSecond, isFast ? "reached" : "MISSED");
    return isSmoke || (bars.allMet && isFast) ? 0 : 1;
}
