#include "link/protocol/commands.h"
#include "link/protocol/messagetypes.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/simulatedlogger.h"

#include <QDateTime>
#include <QSet>
#include <QTest>

#include <memory>

using simulator::LoggerSimulator;

namespace {

struct Exchange
{
    const char *command;
    const char *reply;
};

// One exchange at least for each command, in a state that holds what they need, and in this order.
const QVector<Exchange> &exchanges()
{
    static const QVector<Exchange> all{
        {"sys_get_software_version()", "software_version=1,61"},
        {"sys_get_system_capabilities()", "sys_system_capabilities=1,1,1,12,1,1,10,1"},
        {"sys_get_subsystems_rdy()", "sys_subsystems_rdy=1"},
        {"sys_disable_stop_logging()", "OK"},
        {"get_mst_cpu_hw_version()", "mst_cpu_hw_version=2"},
        {"sys_write_lte_config(14,[Modem]\r\nA=1)\r\n", "ERROR=-1103"},
        {"sys_write_lte_config(14,[Modem]\r\nA=,\r\n)\r\n", "OK"},
        {"sys_read_lte_config()", "sys_lte_config=[Modem]\r\nA=,\r\n"},
        {"sys_restart_lte()", "OK"},
        {"write_can_11_msg(1,0,536870911,2,A0b1)", "OK"},
        {"write_can_0_msg(0,1,2047,0,)", "OK"},
        {"write_can_12_msg(0,0,1,1,00)", "ERROR=-1103"},
        {"write_can_0_msg(0,0,2048,1,00)", "ERROR=-1103"},
        {"write_can_0_msg(0,0,1,2,00)", "ERROR=-1103"},
        {"write_can_0_msg(0,0,1,65,00)", "ERROR=-1103"},
        {"write_can_0_msg(0,0,1,1,zz)", "ERROR=-1103"},
        {"get_d4mod_9_channel_infos( 1 )", "ERROR=-1000"},
        {"get_d4mod_10_channel_infos( 1 )", "ERROR=-1103"},
        {"get_d4mod_0_channel_infos( 16 )", "ERROR=-1103"},
        {"write_cpu_8_buff(0,3,00ff10)", "OK"},
        {"write_cpu_9_buff(32,1,00)", "OK"},
        {"write_cpu_7_buff(0,3,00ff10)", "ERROR=-1108"},
        {"write_cpu_10_buff(0,3,00ff10)", "ERROR=-1108"},
        {"write_cpu_8_buff(4096,1,00)", "ERROR=-1103"},
        {"write_cpu_8_buff(0,2,00)", "ERROR=-1103"},
        {"write_cpu_8_buff(-1,1,00)", "ERROR=-1103"},
        {"write_rs485_1_buff(0,3)", "OK"},
        {"write_rs485_1_buff(0,4)", "ERROR=-1103"},
        {"write_rs485_3_buff(0,33)", "OK"},
        {"write_rs485_4_buff(0,1)", "ERROR=-1108"},
        {"set_rs485_0_baudrate(115200)", "OK"},
        {"set_rs485_0_baudrate(0)", "ERROR=-1103"},
        {"set_rs485_5_baudrate(115200)", "ERROR=-1108"},
        {"set_rs485_2_supply_out(1)", "OK"},
        {"set_rs485_2_supply_out(2)", "ERROR=-1103"},
        {"set_cpu_8_transparent_mode(1)", "OK"},
        {"set_cpu_11_transparent_mode(1)", "ERROR=-1108"},
        {"sys_set_transparent_mode(1)", "OK"},
        {"sys_set_transparent_mode(x)", "ERROR=-1103"},
        {"set_vbat_out(1)", "OK"},
        {"sys_set_lan_ipv4(10.0.0.7,255.0.0.0)", "OK"},
        {"sys_get_lan_ipv4()", "sys_lan_ipv4=10.0.0.7,255.0.0.0"},
        {"sys_set_lan_ipv4(10.0.0.777,255.0.0.0)", "ERROR=-1102"},
        {"sys_set_lan_ipv4(192.168.20.1,255.0.0.0)", "ERROR=-1106"},
        {"sys_get_wifi_ssid()", "sys_wifi_ssid=ZDS_SIM"},
        {"sys_set_wifi_ssid(no blanks)", "ERROR=-1103"},
        {"sys_set_debug_lvl(6,0,3)", "OK"},
        {"sys_set_debug_lvl(7,0,3)", "ERROR=-1103"},
        {"sys_get_debug_lvl_nfo()", "sys_debug_lvl_nfo=6,0,3"},
        {"get_rtc_status()", "rtc_status=VALID"},
        {"set_datetime(31,2,2024,0,0,0)", "ERROR=-1103"},
        {"set_datetime(29,2,2024,23,59,60)", "ERROR=-1103"},
        {"set_datetime(29,2,2024,12,30,0)", "OK"},
        {"sys_get_logfiles()", "logfiles="},
        {"sys_get_disc_space_info()", "disc_space_info=0,0"},
        {"sys_delete_logfile(drive.rld)", "ERROR=-1105"},
        {"sys_start_process(fsck)", "OK"},
        {"sys_start_process(ping,10.0.0.1)", "OK"},
        {"sys_start_process()", "ERROR=-1103"},
        {"sys_get_proc_status(fsck)", "sys_proc_status=0,fsck: step 1 of 4"},
        {"sys_get_proc_status(fsck)", "sys_proc_status=0,fsck: step 1 of 4;fsck: step 2 of 4"},
        {"sys_get_proc_status(unknown)", "ERROR=-1104"},
        {"sys_kill_proc(fsck)", "OK"},
        {"sys_kill_proc(fsck)", "ERROR=-1104"},
        {"set_orientation(24,1,0,1,0,1,0,1,0,1)", "OK"},
        {"set_orientation(25,1,0,1,0,1,0,1,0,1)", "ERROR=-1103"},
        {"get_orientation()", "orientation=24,1,0,1,0,1,0,1,0,1"},
        {"get_ecm_0_slave_cnt()", "ecm_0_slave_cnt=3"},
        {"get_ecm_0_slave_infos(0)", "ecm_0_slave_infos=0,Coupler,2,72100946,1114112"},
        {"get_ecm_0_slave_infos(3)", "ERROR=-1000"},
        {"get_ecm_0_slave_tx_pdo_cnt(1)", "ecm_0_slave_tx_pdo_cnt=4"},
        {"get_ecm_0_slave_tx_pdo_cnt(-1)", "ERROR=-1000"},
        {"get_ecm_0_slave_tx_pdo_infos(2,1)",
         "ecm_0_slave_tx_pdo_infos=2,1,24640,80,32,2,Position,4"},
        {"get_ecm_0_slave_tx_pdo_infos(0,0)", "ERROR=-1000"},
        {"clr_ecm_0_req_slaves()", "OK"},
        {"sys_make_coffee()", "ERROR=-1100"},
        {"make_coffee()", "ERROR=-1103"},
        {"sys_get_software_version", "ERROR=-1103"},
        {"", "ERROR=-1103"}};
    return all;
}

} // namespace

class tst_LoggerAnswers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void everyCommandIsAnswered_data();
    void everyCommandIsAnswered();
    void noCommandIsLeftOut();
    void channelInfosHaveThirteenValues();
    void theClockGoesOnFromWhatWasSet();
    void aProcessEndsAsItSays();
    void aFrameToBeSentIsKept();
    void transparentModeOfAllReachesEachProcessor();
    void aNewWifiNameRestartsTheLogger();
    void anyBytesAreAnswered();
    void aHugeLineIsRefused();

private:
    std::unique_ptr<SimulatedLogger> m_logger; // for the exchanges
    std::unique_ptr<RawClient> m_client;
};

void tst_LoggerAnswers::initTestCase()
{
    m_logger = std::make_unique<SimulatedLogger>();
    m_client = std::make_unique<RawClient>(m_logger->address(), protocol::commandPort);
}

void tst_LoggerAnswers::cleanupTestCase()
{
    m_client.reset();
    m_logger.reset();
}

void tst_LoggerAnswers::everyCommandIsAnswered_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("reply");
    int number = 0;
    for (const Exchange &exchange : exchanges()) {
        const QByteArray tag = QByteArray::number(++number) + ' ' + exchange.command;
        QTest::newRow(tag.constData())
            << QByteArray(exchange.command) << QByteArray(exchange.reply);
    }
}

void tst_LoggerAnswers::everyCommandIsAnswered()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, reply);
    QCOMPARE(m_client->ask(command), reply);
}

void tst_LoggerAnswers::noCommandIsLeftOut()
{
    // These change with time or end the connection; they have tests of their own.
    QSet<int> known{int(protocol::Command::GetDateTime), int(protocol::Command::SetWifiSsid)};
    for (const Exchange &exchange : exchanges()) {
        if (const auto parsed = protocol::parseCommand(exchange.command))
            known.insert(int(parsed->command));
    }
    for (const protocol::CommandRow &row : protocol::commandTable())
        QVERIFY2(known.contains(int(row.command)), row.format);
}

void tst_LoggerAnswers::channelInfosHaveThirteenValues()
{
    SimulatedLogger logger; // with modules at port 0
    RawClient client(logger.address(), protocol::commandPort);
    const QByteArray reply = client.ask("get_d4mod_0_channel_infos( 4 )");
    QVERIFY(reply.startsWith("d4mod_0_channel_infos=4,"));
    QCOMPARE(reply.count(','), 12);
    QCOMPARE(client.ask("get_d4mod_0_channel_infos( 5 )"), QByteArray("ERROR=-1000"));
}

void tst_LoggerAnswers::theClockGoesOnFromWhatWasSet()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    logger.inspect([](LoggerSimulator &s) { s.state().rtcStatus = QStringLiteral("STOPPED"); });
    QCOMPARE(client.ask("get_rtc_status()"), QByteArray("rtc_status=STOPPED"));
    QCOMPARE(client.ask("set_datetime(29,2,2024,23,59,0)"), QByteArray("OK"));
    QCOMPARE(client.ask("get_rtc_status()"), QByteArray("rtc_status=VALID"));
    QVERIFY(client.ask("get_datetime()").startsWith("datetime=29,2,2024,23,59,"));
    logger.inspect([](LoggerSimulator &s) { s.state().clockOffset_ms += 60'000; });
    QVERIFY(client.ask("get_datetime()").startsWith("datetime=1,3,2024,0,0,"));
}

void tst_LoggerAnswers::aProcessEndsAsItSays()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    for (const char *start : {"sys_start_process(good)", "sys_start_process(bad,10.0.0.1)"})
        QCOMPARE(client.ask(start), QByteArray("OK"));
    logger.inspect([](LoggerSimulator &s) {
        s.state().processes[QStringLiteral("good")].lines = QStringList{QStringLiteral("done")};
        simulator::Process &bad = s.state().processes[QStringLiteral("bad")];
        bad.lines = QStringList{bad.argument + QStringLiteral(" is away")};
        bad.fails = true;
    });
    QCOMPARE(client.ask("sys_get_proc_status(good)"), QByteArray("sys_proc_status=1,done"));
    QCOMPARE(client.ask("sys_get_proc_status(bad)"),
             QByteArray("sys_proc_status=2,10.0.0.1 is away"));
    QCOMPARE(client.ask("sys_get_proc_status(bad)"),
             QByteArray("sys_proc_status=2,10.0.0.1 is away"));
}

void tst_LoggerAnswers::aFrameToBeSentIsKept()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    QCOMPARE(client.ask("write_can_3_msg(1,0,291,3,01a2FF)"), QByteArray("OK"));
    const auto frames =
        logger.inspect([](LoggerSimulator &s) { return s.state().transmittedFrames; });
    QCOMPARE(frames.size(), 1);
    QCOMPARE(frames.first().channel, 3);
    QVERIFY(frames.first().extended && !frames.first().remote);
    QCOMPARE(frames.first().id, 0x123U);
    QCOMPARE(frames.first().data, QByteArray::fromHex("01a2ff"));
}

void tst_LoggerAnswers::transparentModeOfAllReachesEachProcessor()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    const auto transparent = [&logger] {
        return logger.inspect([](LoggerSimulator &s) {
            return QVector<bool>{s.state().processors[0].transparent,
                                 s.state().processors[1].transparent, s.state().isTransparent};
        });
    };
    QCOMPARE(client.ask("set_cpu_9_transparent_mode(1)"), QByteArray("OK"));
    QCOMPARE(transparent(), (QVector<bool>{false, true, false}));
    QCOMPARE(client.ask("sys_set_transparent_mode(1)"), QByteArray("OK"));
    QCOMPARE(transparent(), (QVector<bool>{true, true, true}));
    QCOMPARE(client.ask("sys_set_transparent_mode(0)"), QByteArray("OK"));
    QCOMPARE(transparent(), (QVector<bool>{false, false, false}));
}

void tst_LoggerAnswers::aNewWifiNameRestartsTheLogger()
{
    SimulatedLogger logger;
    logger.inspect([](LoggerSimulator &s) { s.state().restartDelay_ms = 0; });
    RawClient client(logger.address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_set_wifi_ssid(new_name)"), QByteArray("OK"));
    QVERIFY(client.waitForEnd());
    QTRY_COMPARE(RawClient(logger.address(), protocol::commandPort).ask("sys_get_wifi_ssid()"),
                 QByteArray("sys_wifi_ssid=new_name"));
}

void tst_LoggerAnswers::anyBytesAreAnswered()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    for (int byte = 0; byte < 256; ++byte) {
        const QByteArray noise(1 + byte * 7, char(byte));
        QVERIFY(client.ask("sys_write_lte_config(" + noise + ")").startsWith("ERROR="));
        QVERIFY(client.ask(noise).startsWith("ERROR="));
    }
}

void tst_LoggerAnswers::aHugeLineIsRefused()
{
    SimulatedLogger logger;
    RawClient client(logger.address(), protocol::commandPort);
    const QByteArray line = "sys_start_process(" + QByteArray(8 * 1024 * 1024, ',') + ")";
    QCOMPARE(client.ask(line), QByteArray("ERROR=-1103"));
}

QTEST_GUILESS_MAIN(tst_LoggerAnswers)
#include "tst_loggeranswers.moc"
