#include "app/state/appcontroller.h"
#include "link/logger_data_handler_class.h"
#include "simulator/faults.h"
#include "tests/support/simulatedlogger.h"

#include <QSet>
#include <QTest>

using Handler = Logger_Data_Handler_Class;

// Connects to a simulated logger that misbehaves in each of its ways, and again when it doesn't any
// more.
class tst_LinkFaults : public QObject
{
    Q_OBJECT

private slots:
    void everyFaultHasARow();
    void aFaultIsToldAtMostOnceAndTheNextConnectionWorks_data();
    void aFaultIsToldAtMostOnceAndTheNextConnectionWorks();
    void aLoggerThatClosesAtOnceIsToldOnceEachTime_data();
    void aLoggerThatClosesAtOnceIsToldOnceEachTime();
    void aLossInAWriteShowsNoTimeOut();
    void endingWithTrafficUnderWayIsClean();
};

namespace {

// How long an answer is waited for that doesn't come; others have all the time of a busy machine.
constexpr int vainWait_ms = 300;
constexpr int patientWait_ms = 8000;

// What becomes of a connection with a fault.
enum class Outcome {
    Works,         // nothing is told
    WriteIsCut,    // told once, the connection stays
    Fails,         // a step of connecting fails, or the connection is lost: told once
    WriteTimesOut, // told once, the connection stays
};

// The tool without its window: it tells what the window would show.
struct Tool
{
    Tool()
    {
        controller.registerComponent(&handler);
        QObject::connect(&handler, &Handler::signal_show_tcp_error,
                         [this](const QString &text) { told += text; });
        QObject::connect(&handler, &Handler::signal_show_error_if_connected,
                         [this](const QString &, const QString &text) {
                             if (handler.isConnected())
                                 told += text;
                         });
    }

    bool step(bool isGood, const QString &otherwise)
    {
        if (!isGood) {
            told += otherwise;
            handler.disconnectLogger();
        }
        return isGood;
    }

    // Each step as the window takes it.
    bool connectTo(const SimulatedLogger &logger)
    {
        int majorNumber = 0;
        int minorNumber = 0;
        if (!handler.connectLogger(logger.address()))
            return false;
        controller.slotSetAppState(APP_STA_CONN_INIT);
        if (!step(handler.getSoftwareVersion(majorNumber, minorNumber), handler.lastCommandError())
            || !step(majorNumber == 1 && minorNumber == 61, QStringLiteral("version"))
            || !step(handler.getSystemCapabilities(), handler.lastCommandError())
            || !step(handler.subsystemsReady(), QStringLiteral("not ready"))
            || !step(handler.disableStopLogging(), handler.lastCommandError()))
            return false;
        controller.slotSetAppState(APP_STA_CONN_LOG_OFF);
        if (!step(handler.requestConfiguration(), QStringLiteral("no configuration")))
            return false;
        handler.enableLiveData();
        return true;
    }

    // Sends a record, and delivers all that is queued behind it.
    bool write()
    {
        const bool isWritten = handler.cmd_write_gps_enabled(1);
        QCoreApplication::processEvents();
        return isWritten;
    }

    [[nodiscard]] bool isDisconnected() const
    {
        return controller.appState() == APP_STA_DISCONN && !handler.isConnected();
    }

    QStringList told;
    AppController controller;
    Handler handler{&controller};
};

struct Row
{
    const char *fault;
    Outcome outcome;
};

// Faults of the file port don't touch the link.
const QVector<Row> rows{
    {"late-reply=50", Outcome::Works},
    {"late-reply=1300", Outcome::Fails},
    {"late-reply@4=500", Outcome::WriteTimesOut},
    {"lost-reply", Outcome::Fails},
    {"lost-reply@sys_get_subsystems_rdy", Outcome::Fails},
    {"lost-reply@2", Outcome::Fails},
    {"lost-reply@4", Outcome::WriteTimesOut},
    {"stale-sequence", Outcome::Fails},
    {"stale-sequence@4", Outcome::WriteTimesOut},
    {"malformed-reply", Outcome::Fails},
    {"malformed-reply=OK", Outcome::Fails},
    {"malformed-reply@sys_disable_stop_logging=software_version=1", Outcome::Fails},
    {"malformed-reply@2", Outcome::Fails},
    {"malformed-reply@4", Outcome::WriteIsCut},
    {"error-reply", Outcome::Fails},
    {"error-reply@sys_disable_stop_logging=-1000", Outcome::Fails},
    {"split-reply=7", Outcome::Works},
    {"noise-before-reply", Outcome::Works},
    {"push-with-reply", Outcome::Works},
    {"cut-message", Outcome::Fails},
    {"cut-message@4", Outcome::WriteTimesOut},
    {"broken-envelope", Outcome::Fails},
    {"broken-envelope=0", Outcome::Fails},
    {"broken-envelope=4294967295", Outcome::Fails},
    {"broken-envelope=100000000", Outcome::Fails},
    {"broken-envelope=3", Outcome::Fails},
    {"wrong-version", Outcome::Fails},
    {"wrong-version=1", Outcome::Fails},
    {"wrong-capabilities", Outcome::Fails},
    {"not-ready", Outcome::Fails},
    {"refused-write", Outcome::Works},
    {"changed-write", Outcome::Works},
    {"refuse-command-connection", Outcome::Fails},
    {"drop-command-after=1", Outcome::Fails},
    {"drop-command-after=40", Outcome::Fails},
    {"drop-command-after=150", Outcome::Fails},
    {"drop-command-after=2000", Outcome::Fails},
    {"drop-in-reply", Outcome::Fails},
    {"drop-in-reply@sys_get_system_capabilities", Outcome::Fails},
    {"drop-in-reply@2", Outcome::Fails},
    {"drop-in-reply@4", Outcome::Fails},
    {"refuse-data-connection", Outcome::Fails},
    {"drop-data-after=1", Outcome::Fails},
    {"drop-data-after=1000", Outcome::Fails},
    {"data-garbage", Outcome::Works},
    {"data-damage", Outcome::Works},
    {"data-hollow", Outcome::Works},
    {"data-flood=50000", Outcome::Works},
    {"refuse-file-connection", Outcome::Works},
    {"short-file", Outcome::Works},
    {"long-file", Outcome::Works},
    {"stalled-file", Outcome::Works}};

} // namespace

void tst_LinkFaults::everyFaultHasARow()
{
    QSet<QString> tested;
    for (const Row &row : rows) {
        const QString name = QString::fromLatin1(row.fault).section(QLatin1Char('='), 0, 0);
        tested.insert(name.section(QLatin1Char('@'), 0, 0));
    }
    for (const simulator::FaultRow &fault : simulator::faultTable())
        QVERIFY2(tested.contains(QString::fromLatin1(fault.name)), fault.name);
}

void tst_LinkFaults::aFaultIsToldAtMostOnceAndTheNextConnectionWorks_data()
{
    QTest::addColumn<int>("outcome");
    for (const Row &row : rows)
        QTest::newRow(row.fault) << int(row.outcome);
}

void tst_LinkFaults::aFaultIsToldAtMostOnceAndTheNextConnectionWorks()
{
    QFETCH(int, outcome);
    SimulatedLogger logger;
    Tool tool;
    logger.setFault(QString::fromLatin1(QTest::currentDataTag()));
    if (Outcome(outcome) == Outcome::Fails)
        tool.handler.setWriteTimeout(vainWait_ms);
    const bool isThere = tool.connectTo(logger);
    if (Outcome(outcome) == Outcome::WriteTimesOut)
        tool.handler.setWriteTimeout(vainWait_ms);
    const bool isWritten = isThere && tool.write();
    switch (Outcome(outcome)) {
    case Outcome::Works: {
        QVERIFY2(isWritten, qPrintable(tool.told.join(QLatin1Char(' '))));
        const quint64 before = tool.handler.liveCounters().entries;
        QTRY_VERIFY(tool.handler.liveCounters().entries > before + 10);
        QCOMPARE(tool.told, QStringList());
        QVERIFY(tool.handler.isConnected());
        break;
    }
    case Outcome::Fails:
        QTRY_VERIFY(tool.isDisconnected());
        QTRY_COMPARE(tool.told.size(), 1);
        break;
    case Outcome::WriteTimesOut:
    case Outcome::WriteIsCut:
        QVERIFY(isThere);
        QVERIFY(!isWritten);
        QCOMPARE(
            tool.told,
            QStringList{Outcome(outcome) == Outcome::WriteIsCut
                            ? QStringLiteral("The logger's answer to a change is cut short: the "
                                             "tool can't tell what the logger holds. Type:4")
                            : QStringLiteral("Error sending data(timeout). Type:4")});
        QCOMPARE(tool.handler.lastCommandError(), tool.told.first());
        QVERIFY(tool.handler.isConnected());
        QVERIFY(tool.handler.disableStopLogging());
        break;
    }
    logger.clearFaults();
    tool.handler.setWriteTimeout(patientWait_ms);
    tool.handler.disconnectLogger();
    QVERIFY(tool.isDisconnected());
    tool.told.clear();
    QVERIFY2(tool.connectTo(logger), qPrintable(tool.told.join(QLatin1Char(' '))));
    QVERIFY(tool.write());
    QTRY_COMPARE(tool.handler.terminal().gps.gps_enabled, quint8(1));
    const quint64 before = tool.handler.liveCounters().entries;
    QTRY_VERIFY(tool.handler.liveCounters().entries > before);
    QCOMPARE(tool.told, QStringList());
}

void tst_LinkFaults::aLoggerThatClosesAtOnceIsToldOnceEachTime_data()
{
    QTest::addColumn<QString>("fault");
    for (const char *fault : {"refuse-command-connection", "refuse-data-connection"})
        QTest::newRow(fault) << QString::fromLatin1(fault);
}

// The tool may hear of it while it connects or behind that.
void tst_LinkFaults::aLoggerThatClosesAtOnceIsToldOnceEachTime()
{
    QFETCH(QString, fault);
    SimulatedLogger logger;
    Tool tool;
    logger.setFault(fault);
    for (int i = 0; i < 50; ++i) {
        if (tool.handler.connectLogger(logger.address()))
            tool.controller.slotSetAppState(APP_STA_CONN_INIT);
        QTRY_VERIFY(tool.isDisconnected());
        QTRY_COMPARE(tool.told.size(), 1);
        tool.told.clear();
    }
}

void tst_LinkFaults::aLossInAWriteShowsNoTimeOut()
{
    SimulatedLogger logger;
    Tool tool;
    QVERIFY(tool.connectTo(logger));
    logger.setFault(QStringLiteral("drop-in-reply@4"));
    QVERIFY(!tool.handler.cmd_write_gps_enabled(1));
    QTRY_VERIFY(tool.isDisconnected());
    QCOMPARE(tool.told,
             QStringList{QStringLiteral("Socket: The remote host closed the connection")});
}

void tst_LinkFaults::endingWithTrafficUnderWayIsClean()
{
    SimulatedLogger logger;
    logger.setFault(QStringLiteral("data-flood=200000"));
    logger.setFault(QStringLiteral("push-with-reply"));
    for (int i = 0; i < 5; ++i) {
        Tool tool;
        QVERIFY(tool.connectTo(logger));
        (void)tool.handler.cmd_write_gps_enabled(1); // its echo and a push are still queued
        if (i % 2 == 0)
            QTRY_VERIFY(tool.handler.liveCounters().entries > 1000);
    }
}

QTEST_GUILESS_MAIN(tst_LinkFaults)
#include "tst_linkfaults.moc"
