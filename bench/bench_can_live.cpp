// Figures of the live view of CAN channels, against the simulated logger:
//
//     bench_can_live [--seconds N] [--smoke]
//
// 100,000 CAN frames a second on twelve channels reach the handler and the twelve CAN pages; 1,000
// of their signals are live. What is judged is the processor time of the GUI thread, which decodes,
// lists and draws, over N seconds each: with one page shown; with that page's list full, 600
// identifiers sorted by their count; and as the limit of the latter the very same frames with all
// pages hidden, which decode and count only. With --smoke the run is short and no bar is judged.

#include "MDF4Conversion/rawlog/benchlog.h"
#include "app/state/appcontroller.h"
#include "app/ui/userprompt.h"
#include "bench/bars.h"
#include "can/views/logger_can_view.h"
#include "link/logger_data_handler_class.h"
#include "tests/support/simulatedlogger.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QStackedWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>

namespace {

constexpr quint32 framesPerSecond = 100'000;
constexpr int liveSignals = 1000;
constexpr int messages = simulator::LiveStream::usualLoadMessages;
constexpr int fullList = Model_CAN_Rx_List_Items::maxRows;
constexpr double processorBar = 0.50;
constexpr int countColumn = 4;  // of the list of received frames
constexpr double listBar = 3.0; // times what decoding and counting cost

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

struct Figures
{
    std::optional<double> processor; // of a core, of the GUI thread
    double rate = 0;                 // entries a second
};

Figures measured(const Logger_Data_Handler_Class &handler, int seconds)
{
    runFor(seconds * 1000 / 6);
    const auto entriesBefore = handler.liveCounters().entries;
    const std::optional<double> processorBefore = threadSeconds();
    QElapsedTimer clock;
    clock.start();
    runFor(seconds * 1000);
    const double elapsed_s = double(clock.nsecsElapsed()) / 1e9;
    const std::optional<double> processorAfter = threadSeconds();
    const double rate = double(handler.liveCounters().entries - entriesBefore) / elapsed_s;
    if (!processorBefore || !processorAfter)
        return {std::nullopt, rate};
    return {(*processorAfter - *processorBefore) / elapsed_s, rate};
}

void setLoad(SimulatedLogger &logger, int messageCount)
{
    logger.inspect([messageCount](simulator::LoggerSimulator &s) {
        s.dataPort().setLoad(framesPerSecond, messageCount);
    });
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
    setLoad(logger, messages);
    const Figures shown = measured(handler, seconds);
    const int seen = seenSignals(handler.terminal());

    setLoad(logger, fullList * int(TerminalStruct::canChannels));
    auto *list = pages.currentWidget()->findChild<QTableView *>(QStringLiteral("tableView_rx"));
    list->sortByColumn(countColumn, Qt::DescendingOrder);
    const Figures fullShown = measured(handler, seconds);
    const int rows = list->model()->rowCount();
    pages.hide();
    const Figures fullHidden = measured(handler, seconds);
    const quint64 dropped = handler.liveCounters().dropped;
    handler.disconnectLogger();

    Bars bars;
    for (const Figures &figures : {shown, fullShown, fullHidden})
        bars.judge("frames missing in a second", qMax(0.0, framesPerSecond - figures.rate),
                   0.05 * framesPerSecond, "");
    bars.judge("live signals without a value", liveSignals - seen, 0, "");
    bars.judge("identifiers without a row", fullList - rows, 0, "");
    bars.judge("entries dropped", double(dropped), 0, "");
    if (!shown.processor || !fullShown.processor || !fullHidden.processor) {
        std::printf("%-44s not measured\n", "GUI thread");
        return 1;
    }
    bars.judge("GUI thread", *shown.processor, processorBar, "core");
    std::printf("%-44s %10.2f core\n", "GUI thread, pages hidden", *fullHidden.processor);
    bars.judge("GUI thread, full list sorted by count", *fullShown.processor,
               listBar * *fullHidden.processor, "core");
    return isSmoke || bars.allMet ? 0 : 1;
}
