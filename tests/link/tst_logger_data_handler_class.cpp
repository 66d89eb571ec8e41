#include "tests/support/linktool.h"
#include "tests/support/silentport.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using Handler = Logger_Data_Handler_Class;

class tst_Logger_Data_Handler : public QObject
{
    Q_OBJECT

private slots:
    void bothSocketsAreOpened();
    void aRefusedCommandSocketIsToldOnce();
    void aRefusedDataSocketClosesTheCommandSocketAndIsTold();
    void theLossOfEitherSocketDropsTheConnectionWithOneMessage_data();
    void theLossOfEitherSocketDropsTheConnectionWithOneMessage();
    void theNextConnectionWorksBehindALoss();
    void onlyTheFirstOfABurstOfErrorsIsShown();
    void anErrorBehindAnOpenBoxIsNotShown();
    void theVersionHasExactlyTwoNumbers_data();
    void theVersionHasExactlyTwoNumbers();
    void capabilitiesMayLackTheEighthValue_data();
    void capabilitiesMayLackTheEighthValue();
    void readinessIsTheValueOne_data();
    void readinessIsTheValueOne();
    void theHardwareVersionIsTheFirstValue();
    void loggingIsStoppedByOk();
    void theConfigurationIsRequestedWithoutPayload();
    void aSoftwareUpdateIsAcknowledged();
    void aCanMessageGoesOutAsText();
    void aKeepAliveAsksForTheVersion();
    void liveEntriesAreDeliveredOnceEnabled();
    void anErrorOfAnEarlierConnectionIsNotShown();
    void theFirstErrorBehindAnEarlierOneIsShown();
    void whatIsUnderWayEndsWithTheConnection();
    void aConfigurationThatIsCutIsNotReceived();
    void connectingCanBeCancelled_data();
    void connectingCanBeCancelled();
    void disconnectingWhileConnectingMakesItFail();
    void theTimeLeftIsToldWhileConnecting();
    void aSecondConnectWhileConnectingFailsAtOnce();
    void theEndOfTheProgramEndsConnecting();
};

namespace {

// A logger one of whose ports doesn't answer, and a tool without a connection.
struct Silent : OfflineTool
{
    explicit Silent(quint16 port = protocol::commandPort)
        : silent(freed(port), port)
    {
        QObject::connect(&handler, &Handler::signal_show_tcp_error,
                         [this](const QString &text) { told += text; });
    }

    // Connects, and does something as soon as the tool waits. Whether it was connected, and soon.
    template <class Action>
    void connectAnd(Action action)
    {
        constexpr int patience_ms = 5000; // half of what a port that doesn't answer would take
        QElapsedTimer clock;
        clock.start();
        QTimer::singleShot(0, &handler, action);
        isConnected = handler.connectLogger(peer.address());
        isSoon = clock.elapsed() < patience_ms;
    }

    QHostAddress freed(quint16 port)
    {
        peer.stopListening(port);
        return peer.address();
    }

    PeerLogger peer;
    SilentPort silent;
    QStringList told;
    bool isConnected = false;
    bool isSoon = false;
};

const QHostAddress nobody(QStringLiteral("127.255.255.250"));

} // namespace

void tst_Logger_Data_Handler::bothSocketsAreOpened()
{
    OnlineTool tool("OK");
    QVERIFY(tool.isConnected);
    QVERIFY(tool.handler.isConnected());
    tool.handler.disconnectLogger();
    QVERIFY(!tool.handler.isConnected());
    QCOMPARE(tool.controller.appState(), APP_STA_DISCONN);
}

void tst_Logger_Data_Handler::aRefusedCommandSocketIsToldOnce()
{
    OfflineTool tool;
    QSignalSpy told(&tool.handler, &Handler::signal_show_tcp_error);
    QVERIFY(!tool.handler.connectLogger(nobody));
    QCoreApplication::processEvents();
    QCOMPARE(told, (QList<QVariantList>{{QStringLiteral("Socket: Connection refused")}}));
}

void tst_Logger_Data_Handler::aRefusedDataSocketClosesTheCommandSocketAndIsTold()
{
    PeerLogger peer;
    peer.stopListening(protocol::dataPort);
    OfflineTool tool;
    QSignalSpy told(&tool.handler, &Handler::signal_show_tcp_error);
    QVERIFY(!tool.handler.connectLogger(peer.address()));
    QVERIFY(!tool.handler.isConnected());
    QCOMPARE(tool.handler.sendCommand("a", 10), QByteArray("ERROR=-1001"));
    QCoreApplication::processEvents();
    QCOMPARE(told.size(), 1);
}

void tst_Logger_Data_Handler::theLossOfEitherSocketDropsTheConnectionWithOneMessage_data()
{
    QTest::addColumn<bool>("losesData");
    QTest::newRow("command socket") << false;
    QTest::newRow("data socket") << true;
}

void tst_Logger_Data_Handler::theLossOfEitherSocketDropsTheConnectionWithOneMessage()
{
    QFETCH(bool, losesData);
    OnlineTool tool("OK");
    QSignalSpy told(&tool.handler, &Handler::signal_show_tcp_error);
    QVERIFY(tool.handler.disableStopLogging());
    tool.peer.sendDataBytes({});
    if (losesData)
        tool.peer.closeDataSocket();
    else
        tool.peer.closeCommandSocket();
    QTRY_COMPARE(tool.controller.appState(), APP_STA_DISCONN);
    QTRY_COMPARE(told.size(), 1);
    QVERIFY(!tool.handler.isConnected());
    QCOMPARE(tool.handler.sendCommand("a", 10), QByteArray("ERROR=-1001"));
    QCoreApplication::processEvents();
    QCOMPARE(told.size(), 1);
}

// News of the lost connection may still be under way when the next one is up.
void tst_Logger_Data_Handler::theNextConnectionWorksBehindALoss()
{
    OnlineTool tool("OK");
    for (int i = 0; i < 5; ++i) {
        tool.handler.disconnectLogger();
        QVERIFY(tool.handler.connectLogger(tool.peer.address()));
        QCoreApplication::processEvents();
        QVERIFY(tool.handler.isConnected());
        QVERIFY(tool.handler.disableStopLogging());
    }
}

void tst_Logger_Data_Handler::onlyTheFirstOfABurstOfErrorsIsShown()
{
    OnlineTool tool("OK");
    QSignalSpy told(&tool.handler, &Handler::signal_show_tcp_error);
    tool.handler.check_emit_tcp_error_signal(QStringLiteral("first"));
    tool.handler.check_emit_tcp_error_signal(QStringLiteral("second"));
    QCOMPARE(told, (QList<QVariantList>{{QStringLiteral("Socket: first")}}));
}

// The box that shows the first error runs the event loop, which brings the next one.
void tst_Logger_Data_Handler::anErrorBehindAnOpenBoxIsNotShown()
{
    OnlineTool tool("OK");
    QStringList told;
    connect(&tool.handler, &Handler::signal_show_tcp_error, this, [&](const QString &text) {
        told += text;
        if (told.size() < 3)
            tool.handler.check_emit_tcp_error_signal(QStringLiteral("behind"));
    });
    tool.handler.check_emit_tcp_error_signal(QStringLiteral("first"));
    QCOMPARE(told, QStringList{QStringLiteral("Socket: first")});
}

void tst_Logger_Data_Handler::theVersionHasExactlyTwoNumbers_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("error");
    QTest::newRow("good") << QByteArray("software_version=1,61\r\n") << QString();
    QTest::newRow("three") << QByteArray("software_version=1,61,2")
                           << QStringLiteral("CMD-Response Argument error.\r\n"
                                             " Response: software_version=1,61,2.");
    QTest::newRow("no numbers") << QByteArray("software_version=1,x\r\n")
                                << QStringLiteral("CMD-Response Argument error.\r\n"
                                                  " Response: software_version=1,x.");
    QTest::newRow("foo") << QByteArray("foo")
                         << QStringLiteral("Unknown CMD-Response.\r\n Response: foo.");
    QTest::newRow("error") << QByteArray("ERROR=-1105")
                           << QStringLiteral("ERROR_CODE_FILE_NOT_FOUND");
    QTest::newRow("silence") << QByteArray()
                             << QStringLiteral("No CMD-Response. (sys_get_software_version)");
}

void tst_Logger_Data_Handler::theVersionHasExactlyTwoNumbers()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, error);
    OnlineTool tool(reply);
    int major = 0;
    int minor = 0;
    QCOMPARE(tool.handler.getSoftwareVersion(major, minor), error.isEmpty());
    QCOMPARE(tool.handler.lastCommandError(), error);
    QCOMPARE(major, error.isEmpty() ? 1 : 0);
    QCOMPARE(minor, error.isEmpty() ? 61 : 0);
}

void tst_Logger_Data_Handler::capabilitiesMayLackTheEighthValue_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("masters");
    QTest::newRow("eight") << QByteArray("sys_system_capabilities=1,1,0,12,1,1,10,2") << true << 2;
    QTest::newRow("seven") << QByteArray("sys_system_capabilities=1,1,0,12,1,1,10") << true << 0;
    QTest::newRow("six") << QByteArray("sys_system_capabilities=1,1,0,12,1,1") << false << 0;
}

void tst_Logger_Data_Handler::capabilitiesMayLackTheEighthValue()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, ok);
    OnlineTool tool(reply);
    QCOMPARE(tool.handler.getSystemCapabilities(), ok);
    const Capabilities &found = tool.handler.capabilities();
    QTEST(found.etherCatMasters, "masters");
    QCOMPARE(found.canChannels, ok ? 12 : 0);
    QCOMPARE(found.rs485Ports, ok ? 10 : 0);
    QCOMPARE(found.gps, 0);
    QCOMPARE(found.agm, ok ? 1 : 0);
}

void tst_Logger_Data_Handler::readinessIsTheValueOne_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("ready");
    QTest::addColumn<QString>("error");
    QTest::newRow("1") << QByteArray("sys_subsystems_rdy=1\r\n") << true << QString();
    QTest::newRow("0") << QByteArray("sys_subsystems_rdy=0") << false << QString();
    QTest::newRow("silence") << QByteArray() << false
                             << QStringLiteral("No CMD-Response. (sys_get_subsystems_rdy)");
    QTest::newRow("another key") << QByteArray("ready=1") << false
                                 << QStringLiteral("Unknown CMD-Response.\r\n Response: ready=1.");
}

void tst_Logger_Data_Handler::readinessIsTheValueOne()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, ready);
    OnlineTool tool(reply);
    QCOMPARE(tool.handler.subsystemsReady(), ready);
    QTEST(tool.handler.lastCommandError(), "error");
}

void tst_Logger_Data_Handler::theHardwareVersionIsTheFirstValue()
{
    OnlineTool tool("mst_cpu_hw_version=2,7");
    int version = 0;
    QVERIFY(tool.handler.getHardwareVersion(version));
    QCOMPARE(version, 2);
}

void tst_Logger_Data_Handler::loggingIsStoppedByOk()
{
    OnlineTool good("OK\r\n");
    QVERIFY(good.handler.disableStopLogging());
    QCOMPARE(good.peer.received().last().payload, QByteArray("sys_disable_stop_logging()\r\n"));
    OnlineTool bad("ERROR=-1104");
    QVERIFY(!bad.handler.disableStopLogging());
    QCOMPARE(bad.handler.lastCommandError(), QStringLiteral("ERROR_CODE_UNKNOWN"));
}

void tst_Logger_Data_Handler::theConfigurationIsRequestedWithoutPayload()
{
    TerminalStruct held;
    held.gps.gps_enabled = 1;
    const QByteArray bytes = record::toBytes(held);
    const PeerLogger::Answer answer = [&bytes](const protocol::Message &message) {
        return protocol::envelopeBytes({3, message.sequence, bytes});
    };
    OnlineTool tool(answer);
    QSignalSpy full(&tool.handler, &Handler::signal_full_update);
    QVERIFY(tool.handler.requestConfiguration());
    QCOMPARE(tool.peer.received(), (QVector<protocol::Message>{{2, 121, {}}}));
    QTRY_COMPARE(full.size(), 1);
    QCOMPARE(tool.handler.terminal(), held);
}

void tst_Logger_Data_Handler::aSoftwareUpdateIsAcknowledged()
{
    OnlineTool tool(PeerLogger::Answer([](const protocol::Message &message) {
        return protocol::envelopeBytes({protocol::Acknowledgement, message.sequence, {}});
    }));
    QVERIFY(tool.handler.sendSoftwareUpdate("image"));
    QCOMPARE(tool.peer.received(), (QVector<protocol::Message>{{100, 121, "image"}}));
}

void tst_Logger_Data_Handler::aCanMessageGoesOutAsText()
{
    OnlineTool tool("OK");
    QVERIFY(tool.handler.writeCanMessage({3, 1, 0, 0x123, QByteArray::fromHex("0aff")}));
    QCOMPARE(tool.peer.received().last().payload,
             QByteArray("write_can_3_msg(1,0,291,2,0aff)\r\n"));
}

void tst_Logger_Data_Handler::aKeepAliveAsksForTheVersion()
{
    OnlineTool tool("nonsense");
    tool.handler.req_keep_alive();
    QCOMPARE(tool.peer.received().last().payload, QByteArray("sys_get_software_version()\r\n"));
    QCOMPARE(tool.handler.lastCommandError(), QString());
}

void tst_Logger_Data_Handler::liveEntriesAreDeliveredOnceEnabled()
{
    OnlineTool tool("OK");
    QSignalSpy received(&tool.handler, &Handler::signal_system_infos_received);
    tool.handler.enableLiveData();
    tool.peer.sendDataBytes(QByteArray::fromHex("aa551000ff000000") + QByteArray(12, '\x7'));
    QTRY_COMPARE(received.size(), 1);
    QCOMPARE(tool.handler.systemInfos().flags, 0x07070707U);
}

// The error of the failed attempt is still in the event queue when the next one succeeds.
void tst_Logger_Data_Handler::anErrorOfAnEarlierConnectionIsNotShown()
{
    OnlineTool tool("OK");
    tool.handler.disconnectLogger();
    QVERIFY(!tool.handler.connectLogger(nobody));
    QVERIFY(tool.handler.connectLogger(tool.peer.address()));
    QSignalSpy told(&tool.handler, &Handler::signal_show_tcp_error);
    QCoreApplication::processEvents();
    QCOMPARE(told, QList<QVariantList>());
    QVERIFY(tool.handler.isConnected());
}

void tst_Logger_Data_Handler::theFirstErrorBehindAnEarlierOneIsShown()
{
    OnlineTool tool("OK");
    tool.handler.disconnectLogger();
    QVERIFY(!tool.handler.connectLogger(nobody));
    QVERIFY(tool.handler.connectLogger(tool.peer.address()));
    QCoreApplication::processEvents();
    QSignalSpy told(&tool.handler, &Handler::signal_show_tcp_error);
    QVERIFY(tool.handler.disableStopLogging());
    tool.peer.closeCommandSocket();
    QTRY_COMPARE(told.size(), 1);
}

void tst_Logger_Data_Handler::whatIsUnderWayEndsWithTheConnection()
{
    const QByteArray systemInfo = QByteArray::fromHex("aa551000ff000000") + QByteArray(12, '\x7');
    OnlineTool tool("OK");
    QSignalSpy received(&tool.handler, &Handler::signal_system_infos_received);
    tool.handler.slot_take_logger_data({new QByteArray(systemInfo)});
    tool.handler.disconnectLogger();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(received.size(), 0);
    QVERIFY(!tool.handler.systemInfos().received);
    tool.handler.slot_take_logger_data({new QByteArray(systemInfo)});
    QTRY_COMPARE(received.size(), 1);
}

void tst_Logger_Data_Handler::aConfigurationThatIsCutIsNotReceived()
{
    const QByteArray bytes = record::toBytes(TerminalStruct());
    OnlineTool tool(PeerLogger::Answer([&bytes](const protocol::Message &message) {
        return protocol::envelopeBytes({3, message.sequence, bytes.left(bytes.size() / 2)});
    }));
    QSignalSpy full(&tool.handler, &Handler::signal_full_update);
    QVERIFY(!tool.handler.requestConfiguration());
    QCoreApplication::processEvents();
    QCOMPARE(full.size(), 0);
}

void tst_Logger_Data_Handler::connectingCanBeCancelled_data()
{
    QTest::addColumn<quint16>("port");
    QTest::newRow("commands") << protocol::commandPort;
    QTest::newRow("data") << protocol::dataPort;
}

void tst_Logger_Data_Handler::connectingCanBeCancelled()
{
    QFETCH(quint16, port);
    Silent tool(port);
    if (!tool.silent.isSilent())
        QSKIP("no silent port on this system");
    tool.connectAnd([&tool] { tool.handler.cancelConnect(); });
    QVERIFY(!tool.isConnected);
    QVERIFY(tool.isSoon);
    QCoreApplication::processEvents();
    QCOMPARE(tool.told, QStringList());
    PeerLogger other;
    QVERIFY(tool.handler.connectLogger(other.address()));
}

// News of a socket that was lost comes this way.
void tst_Logger_Data_Handler::disconnectingWhileConnectingMakesItFail()
{
    Silent tool(protocol::dataPort);
    if (!tool.silent.isSilent())
        QSKIP("no silent port on this system");
    tool.connectAnd([&tool] { tool.peer.closeCommandSocket(); });
    QVERIFY(!tool.isConnected);
    QVERIFY(tool.isSoon);
    QCOMPARE(tool.told,
             QStringList{QStringLiteral("Socket: The remote host closed the connection")});
}

void tst_Logger_Data_Handler::theTimeLeftIsToldWhileConnecting()
{
    Silent tool;
    if (!tool.silent.isSilent())
        QSKIP("no silent port on this system");
    const QSignalSpy told(&tool.handler, &Handler::signal_connecting);
    connect(&tool.handler, &Handler::signal_connecting, &tool.handler, &Handler::cancelConnect);
    tool.connectAnd([] {});
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.first().first().toInt(), int(protocol::commandPort));
    QVERIFY(told.first().last().toInt() > 0);
    QVERIFY(told.first().last().toInt() < 10);
}

void tst_Logger_Data_Handler::aSecondConnectWhileConnectingFailsAtOnce()
{
    Silent tool;
    if (!tool.silent.isSilent())
        QSKIP("no silent port on this system");
    PeerLogger other;
    bool isConnected = true;
    tool.connectAnd([&] {
        isConnected = tool.handler.connectLogger(other.address());
        tool.handler.cancelConnect();
    });
    QVERIFY(!isConnected);
    QVERIFY(!tool.isConnected);
    QVERIFY(tool.isSoon);
}

void tst_Logger_Data_Handler::theEndOfTheProgramEndsConnecting()
{
    Silent tool;
    if (!tool.silent.isSilent())
        QSKIP("no silent port on this system");
    QTimer::singleShot(0, &tool.handler,
                       [&tool] { tool.connectAnd([] { QCoreApplication::quit(); }); });
    QCoreApplication::exec();
    QVERIFY(!tool.isConnected);
    QVERIFY(tool.isSoon);
    QCOMPARE(tool.told, QStringList());
}

QTEST_GUILESS_MAIN(tst_Logger_Data_Handler)
#include "tst_logger_data_handler_class.moc"
