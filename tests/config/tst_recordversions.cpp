#include "tests/support/goldenbytes.h"
#include "tests/support/recordsamples.h"

#include <QTest>

// How the configuration's records read streams of older versions. Each is read into a record full of
// values, for what the older version lacks must be set to its default.
class tst_RecordVersions : public QObject
{
    Q_OBJECT

private slots:
    void canVersion1HasNoModuleExportNameOrAimModules();
    void canVersion2HasNoExportNameOrAimModules();
    void canVersion3HasNoAimModules();
    void eventMeasurementVersion1HasTheNameOnly();
    void ethernetVersion0ResetsTheTunneling();
    void ethernetVersion1HasNoCustomName();
    void ethernetVersion2HasAllFields();
    void recordsWithOneLayoutReadAtAnyVersion_data();
    void recordsWithOneLayoutReadAtAnyVersion();

    void terminalVersion1EndsBehindLte();
    void terminalVersion1KeepsTheTriggerSignals();
    void terminalVersion1EmptiesTheRs485Channels();
    void terminalVersion2EndsBehindTheTrigger();
    void terminalVersion3EndsBehindTheEvent();
    void terminalVersion4EndsBehindRs485();
    void terminalVersion5EndsBehindEtherCat();
    void terminalVersion6HasEverything();
    void terminalTakesTheVersionOfTheStream_data();
    void terminalTakesTheVersionOfTheStream();
};

namespace {

// A record full of values that has read its golden bytes of the given version.
template <class R>
R readOver(const char *golden, qint32 version)
{
    R read = sample::record<R>();
    const QByteArray bytes =
        golden::bytesOfVersion(QStringLiteral("config/%1.hex").arg(QLatin1String(golden)), version);
    if (!record::fromBytes(bytes, read))
        QTest::qFail("the frame isn't whole", __FILE__, __LINE__);
    return read;
}

TerminalStruct terminalOfVersion(qint32 version)
{
    return readOver<TerminalStruct>("terminalstruct", version);
}

// The golden terminal, with a part replaced by its defaults.
template <class Change>
TerminalStruct expectedTerminal(Change change)
{
    auto expected = sample::record<TerminalStruct>(0);
    change(expected);
    return expected;
}

void defaultEvent(TerminalStruct &terminal)
{
    terminal.event = AuxSupplyCfg();
}

void defaultRs485(TerminalStruct &terminal)
{
    terminal.rs485 = {};
}

void defaultEtherCat(TerminalStruct &terminal)
{
    terminal.ethercat = {};
}

void defaultEthernet(TerminalStruct &terminal)
{
    terminal.eth = StreamingClass_Cfg_Ethernet();
}

} // namespace

void tst_RecordVersions::canVersion1HasNoModuleExportNameOrAimModules()
{
    const auto read = readOver<TerminalCanCfg>("terminalcancfg", 1);
    QVERIFY(read.a2l == StreamingClass_A2L_Module());
    QVERIFY(read.export_custom_name.isNull());
    QCOMPARE(read.export_name_mode, quint8(0));
    QVERIFY(read.aim_modules.isEmpty());
    QCOMPARE(read.remote_29, quint8(15));
    QCOMPARE(read.dbc_signals.size(), 2);
}

void tst_RecordVersions::canVersion2HasNoExportNameOrAimModules()
{
    auto expected = sample::record<TerminalCanCfg>();
    expected.export_custom_name.clear();
    expected.export_name_mode = 0;
    expected.aim_modules.clear();
    QVERIFY(readOver<TerminalCanCfg>("terminalcancfg", 2) == expected);
}

void tst_RecordVersions::canVersion3HasNoAimModules()
{
    auto expected = sample::record<TerminalCanCfg>();
    expected.aim_modules.clear();
    QVERIFY(readOver<TerminalCanCfg>("terminalcancfg", 3) == expected);
}

void tst_RecordVersions::eventMeasurementVersion1HasTheNameOnly()
{
    auto expected = sample::record<AuxSupplyCfg>();
    expected.aux_mode = 0;
    QVERIFY(readOver<AuxSupplyCfg>("auxsupplycfg", 1) == expected);
}

void tst_RecordVersions::ethernetVersion0ResetsTheTunneling()
{
    const auto read = readOver<StreamingClass_Cfg_Ethernet>("streamingclass_cfg_ethernet", 0);
    const auto golden = sample::record<StreamingClass_Cfg_Ethernet>();
    QCOMPARE(read.module_selection, golden.module_selection);
    QVERIFY(read.xcp == golden.xcp);
    QCOMPARE(read.tunneling.local_link_ip, QStringLiteral("169.254.174.64"));
    QCOMPARE(read.tunneling.fallback_ip, QStringLiteral("169.254.86.68"));
    QCOMPARE(read.tunneling.daq_port, quint16(56789));
    QCOMPARE(read.tunneling.mirror_ingress_mask, quint8(0x0F));
    QCOMPARE(read.tunneling.mirror_egress_mask, quint8(0x0F));
    QVERIFY(read.tunneling == EthTunnelingCfg());
    QVERIFY(read.custom_name.isNull());
    QCOMPARE(read.further_byte, quint8(0));
}

void tst_RecordVersions::ethernetVersion1HasNoCustomName()
{
    auto expected = sample::record<StreamingClass_Cfg_Ethernet>();
    expected.custom_name.clear();
    expected.further_byte = 0;
    QVERIFY(readOver<StreamingClass_Cfg_Ethernet>("streamingclass_cfg_ethernet", 1) == expected);
}

void tst_RecordVersions::ethernetVersion2HasAllFields()
{
    QVERIFY(readOver<StreamingClass_Cfg_Ethernet>("streamingclass_cfg_ethernet", 2)
            == sample::record<StreamingClass_Cfg_Ethernet>());
}

void tst_RecordVersions::recordsWithOneLayoutReadAtAnyVersion_data()
{
    QTest::addColumn<bool>("same");
    for (const qint32 version : {0, 1, 99}) {
        const auto add = [version](const char *name, auto record) {
            using R = decltype(record);
            QTest::addRow("%s version %d", name, version)
                << (readOver<R>(name, version) == sample::record<R>());
        };
        add("terminalagmcfg", TerminalAgmCfg());
        add("terminalgpscfg", TerminalGpsCfg());
        add("terminalltecfg", TerminalLteCfg());
        add("logtriggercfg", LogTriggerCfg());
        add("terminalrs485cfg", TerminalRs485Cfg());
        add("terminald4modcfg", TerminalD4ModCfg());
        add("terminalethercatcfg", TerminalEtherCatCfg());
        add("ethercatslave", EtherCatSlave());
        add("ethercatsignal", EtherCatSignal());
        add("ethtunnelingcfg", EthTunnelingCfg());
        add("xcprecord", XcpRecord());
        add("canidfilterelement", CanIdFilterElement());
        add("streamingclass_dbc_signal", StreamingClass_DBC_Signal());
    }
}

void tst_RecordVersions::recordsWithOneLayoutReadAtAnyVersion()
{
    QFETCH(bool, same);
    QVERIFY(same);
}

void tst_RecordVersions::terminalVersion1EndsBehindLte()
{
    const TerminalStruct read = terminalOfVersion(1);
    const auto golden = sample::record<TerminalStruct>(0);
    QVERIFY(std::equal(read.can.begin(), read.can.end(), golden.can.begin(), golden.can.end()));
    QVERIFY(read.agm == golden.agm);
    QVERIFY(read.gps == golden.gps);
    QVERIFY(read.lte == golden.lte);

    QCOMPARE(read.trigger.mode, quint8(0));
    QCOMPARE(read.trigger.digital_option, quint8(0));
    QCOMPARE(read.trigger.digital_number, quint8(1));
    QCOMPARE(read.trigger.delay, 0);
    QCOMPARE(read.trigger.stop_if_lower, quint8(0));
    QCOMPARE(read.trigger.signal_value, 0.0);
    QCOMPARE(read.trigger.signal_can, quint8(0));
    QVERIFY(read.event == AuxSupplyCfg());
    for (const TerminalRs485Cfg &port : read.rs485) {
        QCOMPARE(port.voltage, quint16(5500));
        QCOMPARE(port.supply_out, quint8(0));
        QCOMPARE(port.d4mod.mode_value, 1000);
    }
    for (const TerminalEtherCatCfg &master : read.ethercat) {
        QCOMPARE(master.enabled, quint8(0));
        QCOMPARE(master.sample_rate, quint16(100));
        QVERIFY(master.slaves.isEmpty());
    }
    QVERIFY(read.eth == StreamingClass_Cfg_Ethernet());
}

void tst_RecordVersions::terminalVersion1KeepsTheTriggerSignals()
{
    const TerminalStruct read = terminalOfVersion(1);
    const auto before = sample::record<TerminalStruct>();
    QVERIFY(read.trigger.signal == before.trigger.signal);
    QVERIFY(read.trigger.multiplexor == before.trigger.multiplexor);
}

void tst_RecordVersions::terminalVersion1EmptiesTheRs485Channels()
{
    TerminalStruct terminal;
    terminal.rs485[3].channels.add();
    record::fromBytes(golden::bytesOfVersion(QStringLiteral("config/terminalstruct.hex"), 1),
                      terminal);
    QVERIFY(terminal.rs485[3].channels.isEmpty());
}

void tst_RecordVersions::terminalVersion2EndsBehindTheTrigger()
{
    QVERIFY(terminalOfVersion(2) == expectedTerminal([](TerminalStruct &terminal) {
                defaultEvent(terminal);
                defaultRs485(terminal);
                defaultEtherCat(terminal);
                defaultEthernet(terminal);
            }));
}

void tst_RecordVersions::terminalVersion3EndsBehindTheEvent()
{
    QVERIFY(terminalOfVersion(3) == expectedTerminal([](TerminalStruct &terminal) {
                defaultRs485(terminal);
                defaultEtherCat(terminal);
                defaultEthernet(terminal);
            }));
}

void tst_RecordVersions::terminalVersion4EndsBehindRs485()
{
    QVERIFY(terminalOfVersion(4) == expectedTerminal([](TerminalStruct &terminal) {
                defaultEtherCat(terminal);
                defaultEthernet(terminal);
            }));
}

void tst_RecordVersions::terminalVersion5EndsBehindEtherCat()
{
    QVERIFY(terminalOfVersion(5) == expectedTerminal(defaultEthernet));
}

void tst_RecordVersions::terminalVersion6HasEverything()
{
    QVERIFY(terminalOfVersion(6) == sample::record<TerminalStruct>(0));
}

void tst_RecordVersions::terminalTakesTheVersionOfTheStream_data()
{
    QTest::addColumn<qint32>("version");
    for (const qint32 version : {1, 2, 3, 4, 5, 6, 7, 1000})
        QTest::addRow("version %d", version) << version;
}

void tst_RecordVersions::terminalTakesTheVersionOfTheStream()
{
    QFETCH(qint32, version);
    const TerminalStruct read = terminalOfVersion(version);
    QCOMPARE(read.version, version);
    // A save always writes the current version.
    QCOMPARE(record::toBytes(read).mid(4, 4), golden::word(6));
}

QTEST_GUILESS_MAIN(tst_RecordVersions)
#include "tst_recordversions.moc"
