#include "link/protocol/messagetypes.h"
#include "simulator/faults.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/simulatedlogger.h"

#include <QElapsedTimer>
#include <QTest>

using protocol::Message;

namespace {

const Message rtcRequest{protocol::TextCommand, 500, "get_rtc_status()"};
const Message rtcReply{protocol::TextCommand, 500, "rtc_status=VALID\r\n"};
const Message gpsRequest{protocol::Gps, 7, {}}; // no record: answered by the one held

// A logger with a fault, and a client at its command port.
struct Faulty
{
    explicit Faulty(const char *fault) { logger.setFault(QString::fromLatin1(fault)); }

    SimulatedLogger logger;
    RawClient client{logger.address(), protocol::commandPort};
};

} // namespace

// What each fault of the command port does to a client. Those of the other ports stand with them.
class tst_Faults : public QObject
{
    Q_OBJECT

private slots:
    void settingsAreRead_data();
    void settingsAreRead();
    void nonsenseIsRefused_data();
    void nonsenseIsRefused();
    void everyRowIsReachedByItsName();
    void timesCountDown();
    void aWordConfinesAFault();
    void clearedFaultsAreOver();

    void lateReply();
    void lostReply();
    void lostReplyToAWriteThatWasCarriedOut();
    void staleSequence();
    void malformedReply();
    void malformedRecord();
    void errorReply();
    void splitReply();
    void noiseBeforeReply();
    void pushWithReply();
    void cutMessage();
    void brokenEnvelope();
    void wrongVersion();
    void wrongCapabilities();
    void notReady();
    void refusedWrite();
    void changedWrite_data();
    void changedWrite();
    void refuseCommandConnection();
    void dropCommandAfter_data();
    void dropCommandAfter();
    void dropInReply();
    void lostAcknowledgementOfAnUpdate();
};

void tst_Faults::settingsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("word");
    QTest::newRow("default") << "split-reply"
                             << "1"
                             << "";
    QTest::newRow("value") << "split-reply=7"
                           << "7"
                           << "";
    QTest::newRow("word") << "lost-reply@get_datetime"
                          << "0"
                          << "get_datetime";
    QTest::newRow("both") << "lost-reply@20=3"
                          << "3"
                          << "20";
    QTest::newRow("text with signs") << "malformed-reply@x=a=b@c"
                                     << "a=b@c"
                                     << "x";
    QTest::newRow("empty text") << "malformed-reply="
                                << ""
                                << "";
}

void tst_Faults::settingsAreRead()
{
    QFETCH(QString, text);
    QFETCH(QString, value);
    QFETCH(QString, word);
    const auto setting = simulator::parseFault(text);
    QVERIFY(setting);
    QCOMPARE(setting->value, value);
    QCOMPARE(setting->word, word);
}

void tst_Faults::nonsenseIsRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("named");
    QTest::newRow("unknown") << "lost-patience"
                             << "lost-patience";
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("no number") << "split-reply=x"
                               << "\"x\"";
    QTest::newRow("negative") << "short-file=-1"
                              << "\"-1\"";
    QTest::newRow("value needed") << "late-reply"
                                  << "late-reply";
}

void tst_Faults::nonsenseIsRefused()
{
    QFETCH(QString, text);
    QFETCH(QString, named);
    QString error;
    QVERIFY(!simulator::parseFault(text, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY2(error.contains(named), qPrintable(error));
}

void tst_Faults::everyRowIsReachedByItsName()
{
    int index = 0;
    for (const simulator::FaultRow &row : simulator::faultTable()) {
        QCOMPARE(int(row.fault), index++);
        const auto setting =
            simulator::parseFault(QString::fromLatin1(row.name) + QStringLiteral("=1"));
        QVERIFY(setting && setting->fault == row.fault);
        QVERIFY(QByteArray(row.help).size() > 10);
    }
}

void tst_Faults::timesCountDown()
{
    Faulty faulty("error-reply=-7");
    faulty.logger.setFault(QStringLiteral("stale-sequence=2"));
    for (const quint16 sequence : {quint16(499), quint16(499), quint16(500)}) {
        faulty.client.send(rtcRequest);
        QCOMPARE(faulty.client.message().sequence, sequence);
    }
}

void tst_Faults::aWordConfinesAFault()
{
    Faulty faulty("error-reply@get_orientation");
    QCOMPARE(faulty.client.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
    QCOMPARE(faulty.client.ask("get_orientation()"), QByteArray("ERROR=-1104"));
    faulty.logger.setFault(QStringLiteral("lost-reply@4"));
    faulty.client.send(gpsRequest);
    faulty.client.send(Message{protocol::Agm, 8, {}});
    QCOMPARE(int(faulty.client.message().type), int(protocol::Agm));
}

void tst_Faults::clearedFaultsAreOver()
{
    Faulty faulty("error-reply");
    QCOMPARE(faulty.client.ask("get_rtc_status()"), QByteArray("ERROR=-1104"));
    faulty.logger.clearFaults();
    QCOMPARE(faulty.client.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
}

void tst_Faults::lateReply()
{
    Faulty faulty("late-reply@get_rtc_status=100");
    QElapsedTimer clock;
    clock.start();
    faulty.client.send(rtcRequest);
    // Another command isn't held up.
    faulty.client.send(Message{protocol::TextCommand, 501, "sys_get_subsystems_rdy()"});
    QCOMPARE(faulty.client.message().sequence, quint16(501));
    QCOMPARE(faulty.client.message(), rtcReply);
    QVERIFY(clock.elapsed() >= 99);
}

void tst_Faults::lostReply()
{
    Faulty faulty("lost-reply=1");
    faulty.client.send(rtcRequest);
    faulty.client.send(Message{protocol::TextCommand, 501, "get_rtc_status()"});
    QCOMPARE(faulty.client.message().sequence, quint16(501));
}

void tst_Faults::lostReplyToAWriteThatWasCarriedOut()
{
    Faulty faulty("lost-reply@5=1");
    TerminalAgmCfg agm;
    agm.rate = 1;
    faulty.client.send(Message{protocol::Agm, 1, record::toBytes(agm)});
    faulty.client.send(Message{protocol::Agm, 2, {}});
    const Message echo = faulty.client.message();
    QCOMPARE(echo.sequence, quint16(2));
    QCOMPARE(echo.payload, record::toBytes(agm));
}

void tst_Faults::staleSequence()
{
    Faulty faulty("stale-sequence");
    faulty.client.send(rtcRequest);
    QCOMPARE(faulty.client.message().sequence, quint16(499));
    faulty.client.send(Message{protocol::TextCommand, 1, "get_rtc_status()"});
    QCOMPARE(faulty.client.message().sequence, quint16(65535));
}

void tst_Faults::malformedReply()
{
    Faulty faulty("malformed-reply=key=,,");
    faulty.client.send(rtcRequest);
    QCOMPARE(faulty.client.message(), (Message{protocol::TextCommand, 500, "key=,,"}));
}

void tst_Faults::malformedRecord()
{
    Faulty faulty("malformed-reply");
    faulty.client.send(gpsRequest);
    const QByteArray half = faulty.client.message().payload;
    faulty.logger.clearFaults();
    faulty.client.send(gpsRequest);
    const QByteArray whole = faulty.client.message().payload;
    QVERIFY(half.size() < whole.size() && whole.startsWith(half));
}

void tst_Faults::errorReply()
{
    Faulty faulty("error-reply=-1105");
    QCOMPARE(faulty.client.ask("sys_set_transparent_mode(1)"), QByteArray("ERROR=-1105"));
    QVERIFY(!faulty.logger.inspect(
        [](simulator::LoggerSimulator &s) { return s.state().isTransparent; }));
}

void tst_Faults::splitReply()
{
    Faulty faulty("split-reply=3");
    const QByteArray expected =
        protocol::envelopeBytes(rtcReply) + protocol::envelopeBytes(rtcReply);
    faulty.client.send(rtcRequest);
    faulty.client.send(rtcRequest);
    QCOMPARE(faulty.client.receiveUntil(expected.size()), expected);
}

void tst_Faults::noiseBeforeReply()
{
    Faulty faulty("noise-before-reply=9");
    faulty.client.send(rtcRequest);
    const QByteArray expected = protocol::envelopeBytes(rtcReply);
    const QByteArray bytes = faulty.client.receiveUntil(9 + expected.size());
    QVERIFY(!bytes.left(9).contains('\xAA'));
    QCOMPARE(bytes.mid(9), expected);
}

void tst_Faults::pushWithReply()
{
    Faulty faulty("push-with-reply=1");
    faulty.client.send(rtcRequest);
    const QByteArray gps = faulty.logger.inspect(
        [](simulator::LoggerSimulator &s) { return record::toBytes(s.state().configuration.gps); });
    const QByteArray expected = protocol::envelopeBytes({rtcReply, {protocol::Gps, 0, gps}});
    QCOMPARE(faulty.client.receiveUntil(expected.size()).toHex(' '), expected.toHex(' '));
}

void tst_Faults::cutMessage()
{
    Faulty faulty("cut-message=1");
    QByteArray expected = protocol::envelopeBytes(rtcReply);
    expected[8] = char(rtcReply.payload.size() + 100); // low byte of the payload's length
    faulty.client.send(rtcRequest);
    QCOMPARE(faulty.client.receiveUntil(expected.size()).toHex(' '), expected.toHex(' '));
    QCOMPARE(faulty.client.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
}

void tst_Faults::brokenEnvelope()
{
    Faulty faulty("broken-envelope");
    faulty.client.send(rtcRequest);
    QCOMPARE(faulty.client.receiveUntil(5),
             QByteArray::fromHex("aa 01 e1 f5 05") + protocol::envelopeBytes(rtcReply).mid(5));
}

void tst_Faults::wrongVersion()
{
    Faulty faulty("wrong-version=2.7");
    QCOMPARE(faulty.client.ask("sys_get_software_version()"), QByteArray("software_version=2,7"));
}

void tst_Faults::wrongCapabilities()
{
    Faulty faulty("wrong-capabilities=1,2,x");
    QCOMPARE(faulty.client.ask("sys_get_system_capabilities()"),
             QByteArray("sys_system_capabilities=1,2,x"));
}

void tst_Faults::notReady()
{
    Faulty faulty("not-ready=2");
    for (const char *reply :
         {"sys_subsystems_rdy=0", "sys_subsystems_rdy=0", "sys_subsystems_rdy=1"})
        QCOMPARE(faulty.client.ask("sys_get_subsystems_rdy()"), QByteArray(reply));
}

void tst_Faults::refusedWrite()
{
    Faulty faulty("refused-write");
    faulty.client.send(gpsRequest);
    const QByteArray held = faulty.client.message().payload;
    TerminalGpsCfg off;
    QVERIFY(record::toBytes(off) != held);
    faulty.client.send(Message{protocol::Gps, 8, record::toBytes(off)});
    QCOMPARE(faulty.client.message(), (Message{protocol::Gps, 8, held}));
}

void tst_Faults::changedWrite_data()
{
    TerminalStruct on;
    TerminalStruct off;
    for (TerminalStruct *each : {&on, &off}) {
        each->can[3].listen_only = 1;
        each->eth.custom_name = QStringLiteral("kept");
    }
    on.can[3].enabled = 1;
    on.gps.gps_enabled = 1;
    on.agm.enabled = 1;
    on.rs485[9].supply_out = 1;
    on.rs485[9].d4mod.enabled = 1;
    on.ethercat[0].enabled = 1;
    on.eth.module_selection = 3;
    on.eth.tunneling.tunneling_enabled = 1;
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("echoed");
    QTest::newRow("whole") << 3 << record::toBytes(on) << record::toBytes(off);
    QTest::newRow("gps") << 4 << record::toBytes(on.gps) << record::toBytes(off.gps);
    QTest::newRow("agm") << 5 << record::toBytes(on.agm) << record::toBytes(off.agm);
    QTest::newRow("can") << 23 << record::toBytes(on.can[3]) << record::toBytes(off.can[3]);
    QTest::newRow("rs485") << 59 << record::toBytes(on.rs485[9]) << record::toBytes(off.rs485[9]);
    QTest::newRow("ethercat") << 70 << record::toBytes(on.ethercat[0])
                              << record::toBytes(off.ethercat[0]);
    QTest::newRow("ethernet") << 80 << record::toBytes(on.eth) << record::toBytes(off.eth);
}

void tst_Faults::changedWrite()
{
    QFETCH(int, type);
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, echoed);
    Faulty faulty("changed-write=1");
    faulty.client.send(Message{quint8(type), 8, written});
    QCOMPARE(faulty.client.message().payload.toHex(' '), echoed.toHex(' '));
    faulty.client.send(Message{quint8(type), 9, written});
    QCOMPARE(faulty.client.message().payload, written);
}

void tst_Faults::refuseCommandConnection()
{
    SimulatedLogger logger;
    logger.setFault(QStringLiteral("refuse-command-connection=1"));
    RawClient refused(logger.address(), protocol::commandPort);
    QVERIFY(refused.waitForEnd());
    RawClient next(logger.address(), protocol::commandPort);
    QCOMPARE(next.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
}

void tst_Faults::dropCommandAfter_data()
{
    QTest::addColumn<int>("bytes");
    const int reply = protocol::envelopeBytes(rtcReply).size();
    for (int bytes = 0; bytes <= 2 * reply; bytes += 3)
        QTest::newRow(QByteArray::number(bytes).constData()) << bytes;
    QTest::newRow("a whole reply") << reply;
}

void tst_Faults::dropCommandAfter()
{
    QFETCH(int, bytes);
    Faulty faulty(qPrintable(QStringLiteral("drop-command-after=%1").arg(bytes)));
    const QByteArray three = protocol::envelopeBytes(rtcRequest).repeated(3);
    faulty.client.send(three);
    const QByteArray replies = protocol::envelopeBytes(rtcReply).repeated(3);
    QCOMPARE(faulty.client.receiveAll(), replies.left(bytes));
    QVERIFY(!faulty.client.isConnected());
}

void tst_Faults::dropInReply()
{
    Faulty faulty("drop-in-reply@get_orientation");
    QCOMPARE(faulty.client.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
    faulty.client.send(Message{protocol::TextCommand, 5, "get_orientation()"});
    const QByteArray bytes = faulty.client.receiveAll();
    QVERIFY(!bytes.isEmpty() && bytes.size() < 30);
    QVERIFY(!faulty.client.isConnected());
    RawClient next(faulty.logger.address(), protocol::commandPort);
    QVERIFY(next.ask("get_orientation()").startsWith("orientation="));
}

void tst_Faults::lostAcknowledgementOfAnUpdate()
{
    Faulty faulty("lost-reply@100");
    faulty.client.send(Message{protocol::SoftwareUpdate, 3, "image"});
    QCOMPARE(faulty.client.receiveAll(), QByteArray());
    QVERIFY(!faulty.client.isConnected());
}

QTEST_GUILESS_MAIN(tst_Faults)
#include "tst_faults.moc"
