#include "tests/support/linktool.h"
#include "tests/support/messagecount.h"
#include "tests/support/recordsamples.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using Handler = Logger_Data_Handler_Class;

class tst_ConfigurationTransfer : public QObject
{
    Q_OBJECT

private slots:
    void offlineAWriteChangesTheRecordThroughItsOwnSlot();
    void offlineEveryWriteIsLoopedBack_data();
    void offlineEveryWriteIsLoopedBack();
    void connectedAWriteSendsTheRecordAndLeavesTheModelToTheEcho();
    void anEchoCanBeAppliedBehindItsWrite();
    void anAppliedEchoIsNotAppliedAgain();
    void connectedAWriteThatTimesOutLeavesTheModelUnchanged();
    void aLoggerThatRefusesAValueIsFollowed();
    void aWriteWhoseEchoComesCutFails();
    void aWriteMayBeAcknowledgedWithoutAnEcho();
    void ofAFloodOfConfigurationsOnlyTheNewestIsApplied();
    void aRecordThatIsCutDoesNotReplaceAWholeOneUnderWay();
    void anRs485WriteOfflineEmptiesAllChannelLists();
    void recordsRaiseTheirSignals_data();
    void recordsRaiseTheirSignals();
    void aRecordThatIsCutIsWarnedOfAndIgnored_data();
    void aRecordThatIsCutIsWarnedOfAndIgnored();
    void typesWithoutARecordAreWarnedOfAndIgnored_data();
    void typesWithoutARecordAreWarnedOfAndIgnored();
    void aLoadedConfigurationIsTakenOver();
    void aFileThatFailsLeavesTheConfigurationInMemory();
    void connectedALoadedConfigurationIsWrittenWhole();
};

void tst_ConfigurationTransfer::offlineAWriteChangesTheRecordThroughItsOwnSlot()
{
    OfflineTool tool;
    QSignalSpy can(&tool.handler, &Handler::signal_update_cfg_can);
    QSignalSpy trigger(&tool.handler, &Handler::signal_update_cfg_logtrigger);
    QVERIFY(tool.handler.cmd_write_can_enabled(7, 1));
    QCOMPARE(tool.handler.terminal().can[7].enabled, quint8(1));
    QCOMPARE(can.size(), 1);
    QCOMPARE(can.first().first().toInt(), 7);
    QCOMPARE(trigger.size(), 1);
}

using Write = std::function<bool(Handler &)>;
using Holds = std::function<bool(const TerminalStruct &)>;
Q_DECLARE_METATYPE(Write)
Q_DECLARE_METATYPE(Holds)

void tst_ConfigurationTransfer::offlineEveryWriteIsLoopedBack_data()
{
    QTest::addColumn<Write>("write");
    QTest::addColumn<Holds>("holds");
    using T = const TerminalStruct &;
    const auto row = [](const char *name, const Write &write, const Holds &holds) {
        QTest::newRow(name) << write << holds;
    };
    row(
        "GPS", [](Handler &h) { return h.cmd_write_gps_enabled(1); },
        [](T t) { return t.gps.gps_enabled == 1; });
    row(
        "AGM", [](Handler &h) { return h.cmd_write_agm_enabled(1); },
        [](T t) { return t.agm.enabled == 1; });
    row(
        "AGM record", [](Handler &h) { return h.writeAgm(sample::record<TerminalAgmCfg>()); },
        [](T t) { return t.agm == sample::record<TerminalAgmCfg>(); });
    row(
        "log trigger",
        [](Handler &h) { return h.cmd_write_logtrigger_cfg(sample::record<LogTriggerCfg>()); },
        [](T t) { return t.trigger == sample::record<LogTriggerCfg>(); });
    row(
        "event", [](Handler &h) { return h.writeEventMeasurement(sample::record<AuxSupplyCfg>()); },
        [](T t) { return t.event == sample::record<AuxSupplyCfg>(); });
    row(
        "aux supply", [](Handler &h) { return h.cmd_write_aux_supply_control(2); },
        [](T t) { return t.event.aux_mode == 2; });
    row(
        "CCP/XCP", [](Handler &h) { return h.writeCcpXcpEnabled(11, 1); },
        [](T t) { return t.can[11].a2l.config.enabled == 1; });
    row(
        "CAN record", [](Handler &h) { return h.writeCan(0, sample::record<TerminalCanCfg>()); },
        [](T t) { return t.can[0] == sample::record<TerminalCanCfg>(); });
    row(
        "ethernet module", [](Handler &h) { return h.cmd_write_eth_module_selection(0, 3); },
        [](T t) { return t.eth.module_selection == 3; });
    row(
        "XCP", [](Handler &h) { return h.cmd_write_xcp_enabled(0, 1); },
        [](T t) { return t.eth.xcp.module.config.enabled == 1; });
    row(
        "tunneling", [](Handler &h) { return h.cmd_write_tunneling_enabled(0, 1); },
        [](T t) { return t.eth.tunneling.tunneling_enabled == 1; });
    row(
        "mirroring", [](Handler &h) { return h.cmd_write_mirroring_enabled(0, 1); },
        [](T t) { return t.eth.tunneling.mirroring_enabled == 1; });
    row(
        "ethernet record",
        [](Handler &h) {
            return h.cmd_write_eth_cfg(0, sample::record<StreamingClass_Cfg_Ethernet>());
        },
        [](T t) { return t.eth == sample::record<StreamingClass_Cfg_Ethernet>(); });
    row(
        "supply", [](Handler &h) { return h.cmd_write_rs485_supply_out_enabled(9, 1); },
        [](T t) { return t.rs485[9].supply_out == 1; });
    row(
        "voltage", [](Handler &h) { return h.cmd_write_rs485_voltage_lvl(9, 12'000); },
        [](T t) { return t.rs485[9].voltage == 12'000; });
    row(
        "D4MOD", [](Handler &h) { return h.cmd_write_d4mod_enabled(0, 1); },
        [](T t) { return t.rs485[0].d4mod.enabled == 1; });
    row(
        "D4MOD mode", [](Handler &h) { return h.cmd_write_d4mod_mode(0, 2, 3, 500); },
        [](T t) {
            const TerminalD4ModCfg &d4mod = t.rs485[0].d4mod;
            return d4mod.mode == 2 && d4mod.rate == 3 && d4mod.mode_value == 500;
        });
    row(
        "EtherCAT", [](Handler &h) { return h.cmd_write_ethercat_enabled(7, 1); },
        [](T t) { return t.ethercat[7].enabled == 1; });
    row(
        "EtherCAT rate", [](Handler &h) { return h.cmd_write_ethercat_sample_rate(7, 250); },
        [](T t) { return t.ethercat[7].sample_rate == 250; });
    row(
        "EtherCAT record",
        [](Handler &h) { return h.writeEtherCat(1, sample::record<TerminalEtherCatCfg>()); },
        [](T t) { return t.ethercat[1] == sample::record<TerminalEtherCatCfg>(); });
}

void tst_ConfigurationTransfer::offlineEveryWriteIsLoopedBack()
{
    QFETCH(Write, write);
    QFETCH(Holds, holds);
    OfflineTool tool;
    QVERIFY(!holds(tool.handler.terminal()));
    QVERIFY(write(tool.handler));
    QVERIFY(holds(tool.handler.terminal()));
}

void tst_ConfigurationTransfer::connectedAWriteSendsTheRecordAndLeavesTheModelToTheEcho()
{
    OnlineTool tool(&echo);
    QVERIFY(tool.isConnected);
    QVERIFY(tool.handler.cmd_write_can_enabled(5, 1));
    QCOMPARE(tool.handler.terminal().can[5].enabled, quint8(0));
    TerminalCanCfg expected;
    expected.enabled = 1;
    QCOMPARE(tool.peer.received(),
             (QVector<protocol::Message>{{25, 121, record::toBytes(expected)}}));
    QTRY_COMPARE(tool.handler.terminal().can[5].enabled, quint8(1));
}

void tst_ConfigurationTransfer::anEchoCanBeAppliedBehindItsWrite()
{
    OnlineTool tool(&echo);
    QVERIFY(tool.handler.cmd_write_can_enabled(5, 1));
    tool.handler.applyWaitingRecords();
    QCOMPARE(tool.handler.terminal().can[5].enabled, quint8(1));
    QVERIFY(tool.handler.writeCcpXcpEnabled(5, 1)); // of the same record
    tool.handler.applyWaitingRecords();
    QCOMPARE(tool.handler.terminal().can[5].enabled, quint8(1));
    QCOMPARE(tool.handler.terminal().can[5].a2l.config.enabled, quint8(1));
}

void tst_ConfigurationTransfer::anAppliedEchoIsNotAppliedAgain()
{
    OnlineTool tool(&echo);
    const QSignalSpy told(&tool.handler, &Handler::signal_update_cfg_can);
    QVERIFY(tool.handler.cmd_write_can_enabled(5, 1));
    tool.handler.applyWaitingRecords();
    QCoreApplication::processEvents();
    QCOMPARE(told.size(), 1);
}

void tst_ConfigurationTransfer::connectedAWriteThatTimesOutLeavesTheModelUnchanged()
{
    OnlineTool tool(PeerLogger::Answer{});
    tool.handler.setWriteTimeout(50);
    QSignalSpy told(&tool.handler, &Handler::signal_show_error_if_connected);
    QVERIFY(!tool.handler.cmd_write_gps_enabled(1));
    QTRY_COMPARE(told.size(), 1);
    QCOMPARE(told.first(), (QVariantList{QStringLiteral("Timeout"),
                                         QStringLiteral("Error sending data(timeout). Type:4")}));
    QCOMPARE(tool.handler.terminal().gps.gps_enabled, quint8(0));
    QCOMPARE(tool.handler.lastCommandError(),
             QStringLiteral("Error sending data(timeout). Type:4"));
}

void tst_ConfigurationTransfer::aLoggerThatRefusesAValueIsFollowed()
{
    OnlineTool tool([](const protocol::Message &message) {
        TerminalRs485Cfg held;
        held.voltage = 5000;
        return protocol::envelopeBytes({message.type, message.sequence, record::toBytes(held)});
    });
    QVERIFY(tool.handler.cmd_write_rs485_voltage_lvl(3, 20'000));
    QTRY_COMPARE(tool.handler.terminal().rs485[3].voltage, quint16(5000));
}

void tst_ConfigurationTransfer::aWriteWhoseEchoComesCutFails()
{
    OnlineTool tool([](const protocol::Message &message) {
        return protocol::envelopeBytes(
            {message.type, message.sequence, message.payload.chopped(1)});
    });
    QSignalSpy told(&tool.handler, &Handler::signal_show_error_if_connected);
    QVERIFY(!tool.handler.cmd_write_gps_enabled(1));
    const QString text = QStringLiteral("The logger's answer to a change is cut short: the tool "
                                        "can't tell what the logger holds. Type:4");
    QCOMPARE(tool.handler.lastCommandError(), text);
    QCOMPARE(told, (QList<QVariantList>{{QStringLiteral("Warning"), text}}));
    QCoreApplication::processEvents();
    QCOMPARE(tool.handler.terminal().gps.gps_enabled, quint8(0));
}

void tst_ConfigurationTransfer::aWriteMayBeAcknowledgedWithoutAnEcho()
{
    OnlineTool tool([](const protocol::Message &message) {
        return protocol::envelopeBytes({protocol::Acknowledgement, message.sequence, {}});
    });
    QVERIFY(tool.handler.cmd_write_gps_enabled(1));
}

// The reply comes behind the records, which the tool doesn't apply before it is back.
void tst_ConfigurationTransfer::ofAFloodOfConfigurationsOnlyTheNewestIsApplied()
{
    constexpr int count = 500;
    TerminalStruct newest;
    newest.gps.gps_enabled = 1;
    QVector<protocol::Message> flood(count - 1, {3, 0, record::toBytes(TerminalStruct())});
    flood.append({3, 0, record::toBytes(newest)});
    OnlineTool tool([&flood](const protocol::Message &message) {
        return protocol::envelopeBytes(flood) + textReply(message, "OK");
    });
    QSignalSpy full(&tool.handler, &Handler::signal_full_update);
    QVERIFY(tool.handler.disableStopLogging());
    QTRY_COMPARE(tool.handler.terminal(), newest);
    QCOMPARE(full.size(), 1);
}

void tst_ConfigurationTransfer::aRecordThatIsCutDoesNotReplaceAWholeOneUnderWay()
{
    TerminalStruct whole;
    whole.gps.gps_enabled = 1;
    const QByteArray bytes = record::toBytes(whole);
    OnlineTool tool([&bytes](const protocol::Message &message) {
        const QVector<protocol::Message> both{{3, 0, bytes}, {3, 0, bytes.left(9)}};
        return protocol::envelopeBytes(both) + textReply(message, "OK");
    });
    QVERIFY(tool.handler.disableStopLogging());
    QTRY_COMPARE(tool.handler.terminal(), whole);
}

void tst_ConfigurationTransfer::anRs485WriteOfflineEmptiesAllChannelLists()
{
    OfflineTool tool;
    auto &ports = const_cast<TerminalStruct &>(tool.handler.terminal()).rs485;
    for (TerminalRs485Cfg &port : ports)
        port.channels.add();
    QVERIFY(tool.handler.cmd_write_d4mod_enabled(4, 1));
    for (const TerminalRs485Cfg &port : ports)
        QVERIFY(port.channels.isEmpty());
}

void tst_ConfigurationTransfer::recordsRaiseTheirSignals_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("raised");
    const auto row = [](int type, const char *raised) {
        QTest::addRow("%d", type) << type << QString::fromLatin1(raised);
    };
    row(3, "full");
    row(4, "gps");
    row(5, "agm");
    row(6, "");
    row(20, "can0 trigger");
    row(31, "can11 trigger");
    row(40, "trigger");
    row(41, "full");
    row(50, "rs485-0");
    row(59, "rs485-9");
    row(70, "ethercat0");
    row(77, "ethercat7");
    row(80, "eth0");
}

void tst_ConfigurationTransfer::recordsRaiseTheirSignals()
{
    QFETCH(int, type);
    OfflineTool tool;
    QStringList raised;
    const auto note = [&raised](const char *name) {
        return [&raised, name] { raised.append(QString::fromLatin1(name)); };
    };
    const auto noteNumber = [&raised](const char *name) {
        return [&raised, name](int number) {
            raised.append(QString::fromLatin1(name) + QString::number(number));
        };
    };
    connect(&tool.handler, &Handler::signal_full_update, this, note("full"));
    connect(&tool.handler, &Handler::signal_update_cfg_gps, this, note("gps"));
    connect(&tool.handler, &Handler::sigUpdCfgAgm, this, note("agm"));
    connect(&tool.handler, &Handler::signal_update_cfg_can, this, noteNumber("can"));
    connect(&tool.handler, &Handler::signal_update_cfg_logtrigger, this, note("trigger"));
    connect(&tool.handler, &Handler::signal_update_cfg_rs485, this, noteNumber("rs485-"));
    connect(&tool.handler, &Handler::signal_update_cfg_ethercat, this, noteNumber("ethercat"));
    connect(&tool.handler, &Handler::signal_update_cfg_ethernet, this, noteNumber("eth"));
    const QByteArray emptyFrame = QByteArray::fromHex("0000000400000001");
    tool.handler.slot_streaming_prot_received(type, new QByteArray(emptyFrame));
    QTEST(raised.join(QLatin1Char(' ')), "raised");
}

void tst_ConfigurationTransfer::aRecordThatIsCutIsWarnedOfAndIgnored_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {3, 4, 5, 20, 40, 41, 50, 70, 80})
        QTest::addRow("%d", type) << type;
}

void tst_ConfigurationTransfer::aRecordThatIsCutIsWarnedOfAndIgnored()
{
    QFETCH(int, type);
    OfflineTool tool;
    TerminalStruct held;
    held.gps.gps_enabled = 1;
    held.can[0].enabled = 1;
    tool.handler.writeWholeConfiguration(held);
    const MessageCount lines("A record of the logger is not whole, it is dropped.");
    tool.handler.slot_streaming_prot_received(
        type, new QByteArray(record::toBytes(TerminalStruct()).left(9)));
    QCOMPARE(lines.value(), 1);
    QCOMPARE(tool.handler.terminal(), held);
}

void tst_ConfigurationTransfer::typesWithoutARecordAreWarnedOfAndIgnored_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {-1, 0, 1, 2, 7, 19, 32, 42, 60, 69, 78, 79, 81, 89, 90, 100, 300})
        QTest::addRow("%d", type) << type;
}

void tst_ConfigurationTransfer::typesWithoutARecordAreWarnedOfAndIgnored()
{
    QFETCH(int, type);
    OfflineTool tool;
    const MessageCount lines("slot_streaming_prot_received -> UNKNOWN-Type");
    tool.handler.slot_streaming_prot_received(type, new QByteArray("anything"));
    QCOMPARE(lines.value(), 1);
    QCOMPARE(tool.handler.terminal(), TerminalStruct());
}

void tst_ConfigurationTransfer::aLoadedConfigurationIsTakenOver()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.zdc"));
    QVERIFY(sample::record<TerminalStruct>().write_to_file(path));
    OfflineTool tool;
    QSignalSpy full(&tool.handler, &Handler::signal_full_update);
    QVERIFY(tool.handler.loadConfiguration(path));
    QCOMPARE(tool.handler.terminal(), sample::record<TerminalStruct>());
    QCOMPARE(full.size(), 1);
}

void tst_ConfigurationTransfer::aFileThatFailsLeavesTheConfigurationInMemory()
{
    OfflineTool tool;
    QVERIFY(tool.handler.cmd_write_gps_enabled(1));
    QString error;
    QVERIFY(!tool.handler.loadConfiguration(QStringLiteral("/nowhere/a.zdc"), &error));
    QVERIFY(error.contains(QStringLiteral("/nowhere/a.zdc")));
    QCOMPARE(tool.handler.terminal().gps.gps_enabled, quint8(1));
}

void tst_ConfigurationTransfer::connectedALoadedConfigurationIsWrittenWhole()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.zdc"));
    const auto saved = sample::record<TerminalStruct>();
    QVERIFY(saved.write_to_file(path));
    OnlineTool tool(&echo);
    QVERIFY(tool.handler.loadConfiguration(path));
    QCOMPARE(tool.peer.received(), (QVector<protocol::Message>{{3, 121, record::toBytes(saved)}}));
    QTRY_COMPARE(tool.handler.terminal(), saved);
}

QTEST_GUILESS_MAIN(tst_ConfigurationTransfer)
#include "tst_configurationtransfer.moc"
