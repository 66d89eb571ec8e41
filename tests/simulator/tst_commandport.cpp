#include "link/protocol/messagetypes.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/simulatedlogger.h"

#include <QTest>

using protocol::Message;

class tst_CommandPort : public QObject
{
    Q_OBJECT

private slots:
    void aConnectingToolLearnsWhatTheLoggerIs();
    void theWholeConfigurationComesUnderTheNumberOfItsRequest();
    void aWriteIsTakenAndEchoed_data();
    void aWriteIsTakenAndEchoed();
    void aBrokenRecordChangesNothingAndIsAnsweredByTheOneHeld();
    void aTypeWithoutARecordIsNotAnswered();
    void aPushComesWithoutANumber();
    void severalMessagesInOneEnvelopeAreAllAnswered();
    void anImpossibleEnvelopeEndsTheConnection();
    void loggingIsStoppedUntilTheConnectionEnds();
    void aDroppedConnectionMayComeAgain();
    void anUpdateIsAcknowledgedAndBringsTheLoggerBackWithItsVersion();
};

void tst_CommandPort::aConnectingToolLearnsWhatTheLoggerIs()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_get_software_version()\r\n"), QByteArray("software_version=1,61"));
    QCOMPARE(client.ask("sys_get_system_capabilities()\r\n"),
             QByteArray("sys_system_capabilities=1,1,1,12,1,1,10,1"));
    QCOMPARE(client.ask("sys_get_subsystems_rdy()\r\n"), QByteArray("sys_subsystems_rdy=1"));
}

void tst_CommandPort::theWholeConfigurationComesUnderTheNumberOfItsRequest()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    client.send(Message{protocol::ConfigurationRequest, 7, {}});
    const Message reply = client.message();
    QCOMPARE(int(reply.type), int(protocol::WholeConfiguration));
    QCOMPARE(reply.sequence, quint16(7));
    TerminalStruct read;
    QVERIFY(record::fromBytes(reply.payload, read));
    QVERIFY(logger.inspect(
        [&read](simulator::LoggerSimulator &s) { return s.state().configuration == read; }));
}

void tst_CommandPort::aWriteIsTakenAndEchoed_data()
{
    TerminalStruct changed;
    changed.name = QStringLiteral("changed");
    changed.can[11].listen_only = 1;
    changed.rs485[9].voltage = 5000;
    changed.ethercat[7].sample_rate = 250;
    changed.gps.gps_enabled = 0;
    changed.agm.rate = 2;
    changed.lte.companion = 1;
    changed.trigger.delay = 17;
    changed.event.event_name = QStringLiteral("night drive");
    changed.eth.custom_name = QStringLiteral("gateway");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("whole") << 3 << record::toBytes(changed);
    QTest::newRow("gps") << 4 << record::toBytes(changed.gps);
    QTest::newRow("accelerometer block") << 5 << record::toBytes(changed.agm);
    QTest::newRow("lte") << 6 << record::toBytes(changed.lte);
    QTest::newRow("last CAN channel") << 31 << record::toBytes(changed.can[11]);
    QTest::newRow("log trigger") << 40 << record::toBytes(changed.trigger);
    QTest::newRow("event") << 41 << record::toBytes(changed.event);
    QTest::newRow("last RS485 port") << 59 << record::toBytes(changed.rs485[9]);
    QTest::newRow("last EtherCAT master") << 77 << record::toBytes(changed.ethercat[7]);
    QTest::newRow("ethernet") << 80 << record::toBytes(changed.eth);
}

void tst_CommandPort::aWriteIsTakenAndEchoed()
{
    QFETCH(int, type);
    QFETCH(QByteArray, record);
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    client.send(Message{quint8(type), 65535, record});
    const Message echo = client.message();
    QCOMPARE(int(echo.type), type);
    QCOMPARE(echo.sequence, quint16(65535));
    QCOMPARE(echo.payload.toHex(' '), record.toHex(' '));
    // It is really held: the next tool gets it, too.
    RawClient other(logger.address(), protocol::commandPort);
    other.send(Message{quint8(type), 1, QByteArray()});
    QCOMPARE(other.message().payload, record);
}

void tst_CommandPort::aBrokenRecordChangesNothingAndIsAnsweredByTheOneHeld()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    const QByteArray held = logger.inspect([](simulator::LoggerSimulator &s) {
        return record::toBytes(s.state().configuration.can[0]);
    });
    client.send(Message{protocol::Can, 3, held.left(held.size() / 2)});
    QCOMPARE(client.message().payload, held);
}

void tst_CommandPort::aTypeWithoutARecordIsNotAnswered()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    for (const int type : {0, 7, 19, 32, 49, 78, 81, 99, 255})
        client.send(Message{quint8(type), 3, QByteArray("bytes")});
    QCOMPARE(client.ask("get_rtc_status()\r\n"), QByteArray("rtc_status=VALID"));
}

void tst_CommandPort::aPushComesWithoutANumber()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    QCOMPARE(client.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
    logger.push(protocol::Can + 3);
    const Message push = client.message();
    QCOMPARE(int(push.type), protocol::Can + 3);
    QCOMPARE(push.sequence, quint16(0));
    TerminalCanCfg channel;
    QVERIFY(record::fromBytes(push.payload, channel));
}

void tst_CommandPort::severalMessagesInOneEnvelopeAreAllAnswered()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    client.send(protocol::envelopeBytes(
        {{protocol::TextCommand, 1, "get_rtc_status()"}, {protocol::ConfigurationRequest, 2, {}}}));
    QCOMPARE(client.message().sequence, quint16(1));
    QCOMPARE(client.message().sequence, quint16(2));
}

void tst_CommandPort::anImpossibleEnvelopeEndsTheConnection()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    client.send(QByteArray::fromHex("aa 00 00 00 00"));
    QVERIFY(client.waitForEnd());
    RawClient next(logger.address(), protocol::commandPort);
    QCOMPARE(next.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
}

void tst_CommandPort::loggingIsStoppedUntilTheConnectionEnds()
{
    SimulatedLogger logger;
    const auto isStopped = [&logger] {
        return logger.inspect(
            [](simulator::LoggerSimulator &s) { return s.state().isLoggingStopped; });
    };
    {
        RawClient client(logger.address(), protocol::commandPort);
        QCOMPARE(client.ask("sys_disable_stop_logging()"), QByteArray("OK"));
        QVERIFY(isStopped());
    }
    QTRY_VERIFY(!isStopped());
}

void tst_CommandPort::aDroppedConnectionMayComeAgain()
{
    SimulatedLogger logger;
    RawClient commands(logger.address(), protocol::commandPort);
    RawClient data(logger.address(), protocol::dataPort);
    QCOMPARE(commands.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
    QVERIFY(!data.receive().isEmpty());
    logger.dropDataConnections();
    QVERIFY(data.waitForEnd());
    QCOMPARE(commands.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
    logger.dropCommandConnections();
    QVERIFY(commands.waitForEnd());
    RawClient next(logger.address(), protocol::commandPort);
    QCOMPARE(next.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
    RawClient nextData(logger.address(), protocol::dataPort);
    QVERIFY(!nextData.receive().isEmpty());
}

void tst_CommandPort::anUpdateIsAcknowledgedAndBringsTheLoggerBackWithItsVersion()
{
    SimulatedLogger logger;
    logger.inspect([](simulator::LoggerSimulator &s) {
        s.state().version = {1, 60};
        s.state().updatedVersion = {1, 61};
        s.state().restartDelay_ms = 0;
    });
    RawClient client(logger.address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_get_software_version()"), QByteArray("software_version=1,60"));
    const QByteArray image(300'000, 'u');
    client.send(Message{protocol::SoftwareUpdate, 9, image});
    QCOMPARE(client.message(), (Message{protocol::Acknowledgement, 9, {}}));
    QVERIFY(client.waitForEnd());
    QTRY_COMPARE(
        RawClient(logger.address(), protocol::commandPort).ask("sys_get_software_version()"),
        QByteArray("software_version=1,61"));
    QCOMPARE(logger.inspect([](simulator::LoggerSimulator &s) { return s.state().updateImage; }),
             image);
}

QTEST_GUILESS_MAIN(tst_CommandPort)
#include "tst_commandport.moc"
