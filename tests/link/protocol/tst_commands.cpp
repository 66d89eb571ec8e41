#include "link/protocol/commands.h"
#include "link/protocol/reply.h"

#include <QTest>

using namespace protocol;

class tst_Commands : public QObject
{
    Q_OBJECT

private slots:
    void everyCommandGoesOutByteExact_data();
    void everyCommandGoesOutByteExact();
    void theTableIsInTheOrderOfTheCommands();
    void everyCommandIsReadBack_data();
    void everyCommandIsReadBack();
    void everyReplyIsEvaluated_data();
    void everyReplyIsEvaluated();
    void argumentsMayLookLikePlaceholders();
    void whatALineCanNotCarryIsNoArgument_data();
    void whatALineCanNotCarryIsNoArgument();
    void theLastArgumentTakesCommas();
    void blanksAroundArgumentsDoNotCount();
    void otherLinesAreNoCommands_data();
    void otherLinesAreNoCommands();
    void aKeyTakesItsNumber();
    void theWordStandsBeforeTheArguments();
};

namespace {

QStringList numberedArguments(int count)
{
    QStringList arguments;
    for (int i = 1; i <= count; ++i)
        arguments.append(QString::number(100 + i));
    return arguments;
}

} // namespace

void tst_Commands::everyCommandGoesOutByteExact_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("timeout_ms");
    QTest::addColumn<QByteArray>("text");
    int index = 0;
    const auto row = [&index](int timeout_ms, const QByteArray &text) {
        QTest::newRow(text.simplified().constData()) << index++ << timeout_ms << text;
    };
    row(1000, "sys_get_software_version()\r\n");
    row(1000, "sys_get_system_capabilities()\r\n");
    row(1000, "sys_get_subsystems_rdy()\r\n");
    row(1000, "sys_disable_stop_logging()\r\n");
    row(1000, "get_mst_cpu_hw_version()\r\n");
    row(1000, "sys_read_lte_config()\r\n");
    row(1000, "sys_write_lte_config(101,102)\r\n");
    row(1000, "sys_restart_lte()\r\n");
    row(1000, "write_can_101_msg(102,103,104,105,106)\r\n");
    row(1000, "get_d4mod_101_channel_infos( 102 )\r\n");
    row(1000, "write_cpu_101_buff(102,103,104)\r\n");
    row(1000, "write_rs485_101_buff(102,103)\r\n");
    row(1000, "set_rs485_101_baudrate(102)\r\n");
    row(1000, "set_rs485_101_supply_out(102)\r\n");
    row(1000, "set_cpu_101_transparent_mode(102)\r\n");
    row(1000, "sys_set_transparent_mode(101)\r\n");
    row(1000, "set_vbat_out(1)\r\n");
    row(15000, "sys_set_lan_ipv4(101,102)\r\n");
    row(3000, "sys_get_lan_ipv4()\r\n");
    row(3000, "sys_set_wifi_ssid(101)\r\n");
    row(3000, "sys_get_wifi_ssid()\r\n");
    row(2000, "sys_set_debug_lvl(101,102,103)\r\n");
    row(3000, "sys_get_debug_lvl_nfo()\r\n");
    row(1000, "get_rtc_status()\r\n");
    row(1000, "get_datetime()\r\n");
    row(1000, "set_datetime(101,102,103,104,105,106)\r\n");
    row(2500, "sys_get_logfiles()\r\n");
    row(7500, "sys_get_disc_space_info()\r\n");
    row(1000, "sys_delete_logfile(101)\r\n");
    row(30000, "sys_start_process(101)\r\n");
    row(30000, "sys_start_process(101,102)\r\n");
    row(3000, "sys_get_proc_status(101)\r\n");
    row(30000, "sys_kill_proc(101)\r\n");
    row(1000, "get_orientation()\r\n");
    row(1000, "set_orientation(101,102,103,104,105,106,107,108,109,110)\r\n");
    row(1000, "get_ecm_0_slave_cnt()");
    row(1000, "get_ecm_0_slave_infos(101)");
    row(1000, "get_ecm_0_slave_tx_pdo_cnt(101)");
    row(1000, "get_ecm_0_slave_tx_pdo_infos(101,102)");
    row(1000, "clr_ecm_0_req_slaves()");
    QCOMPARE(index, commandTable().size());
}

void tst_Commands::everyCommandGoesOutByteExact()
{
    QFETCH(int, index);
    const CommandRow &row = commandTable().at(index);
    QTEST(row.timeout_ms, "timeout_ms");
    QTEST(commandText(row.command, numberedArguments(row.argumentCount())), "text");
}

void tst_Commands::theTableIsInTheOrderOfTheCommands()
{
    for (const CommandRow &row : commandTable())
        QCOMPARE(&commandRow(row.command), &row);
}

void tst_Commands::everyCommandIsReadBack_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < commandTable().size(); ++i)
        QTest::newRow(qPrintable(commandTable().at(i).word() + QString::number(i))) << i;
}

void tst_Commands::everyCommandIsReadBack()
{
    QFETCH(int, index);
    const CommandRow &row = commandTable().at(index);
    const QStringList arguments = numberedArguments(row.argumentCount());
    const auto parsed = parseCommand(commandText(row.command, arguments));
    QVERIFY(parsed);
    QCOMPARE(int(parsed->command), int(row.command));
    QCOMPARE(parsed->arguments, arguments);
}

void tst_Commands::everyReplyIsEvaluated_data()
{
    everyCommandIsReadBack_data();
}

// What answers well, an error, silence and garbage.
void tst_Commands::everyReplyIsEvaluated()
{
    QFETCH(int, index);
    const CommandRow &row = commandTable().at(index);
    const QString key = replyKeyOf(row.command, numberedArguments(row.argumentCount()));
    const auto evaluate = [&](const QByteArray &reply) {
        return key.isEmpty() ? evaluateSetReply(reply, row.word())
                             : evaluateGetReply(reply, row.word(), key, ValueCount::atLeast(1));
    };
    const QByteArray good = key.isEmpty() ? QByteArray("OK\r\n") : key.toLatin1() + "=1,2\r\n";
    QVERIFY(evaluate(good));
    QCOMPARE(evaluate("ERROR=-1104\r\n").error, QStringLiteral("ERROR_CODE_UNKNOWN"));
    QCOMPARE(evaluate({}).error, QStringLiteral("No CMD-Response. (%1)").arg(row.word()));
    QCOMPARE(evaluate("\xFF\x01").error,
             QStringLiteral("Unknown CMD-Response.\r\n Response: \u00FF\u0001."));
}

void tst_Commands::argumentsMayLookLikePlaceholders()
{
    QCOMPARE(commandText(Command::SetLanIpv4, {QStringLiteral("%2"), QStringLiteral("x")}),
             QByteArray("sys_set_lan_ipv4(%2,x)\r\n"));
}

void tst_Commands::whatALineCanNotCarryIsNoArgument_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<bool>("canBeSent");
    QTest::newRow("plain") << QStringLiteral("a b,c).rld") << true;
    QTest::newRow("Latin-1") << QStringLiteral("\u00FC.rld") << true;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("line feed") << QStringLiteral("a\nb") << false;
    QTest::newRow("carriage return") << QStringLiteral("a\rb") << false;
    QTest::newRow("beyond Latin-1") << QStringLiteral("\u20AC.rld") << false;
}

void tst_Commands::whatALineCanNotCarryIsNoArgument()
{
    QFETCH(QString, argument);
    QTEST(isArgument(argument), "canBeSent");
}

void tst_Commands::theLastArgumentTakesCommas()
{
    const auto parsed = parseCommand("sys_write_lte_config(12,apn=a,b\r\npin=(1))\r\n");
    QVERIFY(parsed);
    QCOMPARE(parsed->arguments,
             QStringList({QStringLiteral("12"), QStringLiteral("apn=a,b\r\npin=(1)")}));
}

void tst_Commands::blanksAroundArgumentsDoNotCount()
{
    const auto parsed = parseCommand("get_d4mod_3_channel_infos( 12 )\r\n");
    QVERIFY(parsed);
    QCOMPARE(parsed->arguments, QStringList({QStringLiteral("3"), QStringLiteral("12")}));
}

void tst_Commands::otherLinesAreNoCommands_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("unknown") << QByteArray("sys_reboot()\r\n");
    QTest::newRow("cut short") << QByteArray("sys_get_logfiles(\r\n");
    QTest::newRow("an argument too many") << QByteArray("get_datetime(1)\r\n");
    QTest::newRow("an argument too few") << QByteArray("sys_set_lan_ipv4(1.2.3.4)\r\n");
    QTest::newRow("NUL bytes") << QByteArray(20, '\0');
}

void tst_Commands::otherLinesAreNoCommands()
{
    QFETCH(QByteArray, line);
    QVERIFY(!parseCommand(line));
}

void tst_Commands::aKeyTakesItsNumber()
{
    QCOMPARE(replyKeyOf(Command::GetD4ModChannelInfos, {QStringLiteral("7"), QStringLiteral("1")}),
             QStringLiteral("d4mod_7_channel_infos"));
    QCOMPARE(replyKeyOf(Command::SetVbatOut), QString());
}

void tst_Commands::theWordStandsBeforeTheArguments()
{
    QCOMPARE(commandRow(Command::GetSoftwareVersion).word(),
             QStringLiteral("sys_get_software_version"));
}

QTEST_GUILESS_MAIN(tst_Commands)
#include "tst_commands.moc"
