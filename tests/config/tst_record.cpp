#include "tests/support/goldenbytes.h"
#include "tests/support/recordsamples.h"

#include <QTest>

#include <limits>

// The rules of the stream form that hold for all records.
class tst_Record : public QObject
{
    Q_OBJECT

private slots:
    void theRecordBehindAnyVersionStartsAtTheNextByte();
    void anEmptyListIsACountOfZeroWithNothingBehindIt();
    void aListKeepsItsOrder();
    void aNullTextStaysNullAndAnEmptyOneEmpty();
    void defaultTextsAreNull();
    void aTextCutShortIsNullAndTakesTheRest();
    void aTextOfOddLengthIsNullAndTakesItsBytes();
    void aListWhoseCountLiesEndsWithItsFrame_data();
    void aListWhoseCountLiesEndsWithItsFrame();
    void aNegativeCountIsAnEmptyList();
    void aBareListWhoseCountLiesEndsWithItsFrame();
    void someElementsThatAreCutShortLeaveTheirNeighbours();
    void listsOfElementsThatLackTheirItemsEndSoon_data();
    void listsOfElementsThatLackTheirItemsEndSoon();
    void missingItemsReadAsZeroNotAsDefaults();
    void aNullFrameReadsAsVersion0WithoutItems();
    void aNegativeVersionReadsTheFieldsOfAllVersions();
    void valuesAboveTheLimitAreCutToIt();
    void theSecondItemOfAFlagWins();
    void zeroBytesAreSkippedWhateverTheyHold();
    void membersThatAreNotStreamedSurviveARead();
    void aDbcSignalReadsBackIdenticalButForItsLiveValue();
    void aCopyIsDeep();
    void aCopyReplacesWhatTheTargetHeld();
    void aCopyResetsWhatIsNotStreamed();
    void aResetGivesTheDefaults();
    void aResetOfAnRs485PortFreesItsChannels();
    void readNewGivesARecordOfItsOwn();
    void fromBytesTellsWhetherTheFrameIsWhole_data();
    void fromBytesTellsWhetherTheFrameIsWhole();
    void unsignedValuesKeepTheirHighBit();
    void aLaterStreamVersionGivesTheSameBytes();
    void aNewEtherCatSignalHasMultiplierOne();
};

namespace {

TerminalCanCfg canWithFilters(int count)
{
    TerminalCanCfg can;
    for (int i = 0; i < count; ++i)
        can.filters.add().id1 = quint32(i);
    return can;
}

template <class R>
R readFrom(const QByteArray &bytes)
{
    R read;
    record::fromBytes(bytes, read);
    return read;
}

const QByteArray nullFrame = QByteArray::fromHex("ffffffff");
const QByteArray version1 = QByteArray::fromHex("00000001");

} // namespace

void tst_Record::theRecordBehindAnyVersionStartsAtTheNextByte()
{
    const auto filter = sample::record<CanIdFilterElement>();
    for (const qint32 version : {0, 1, 2, 3, 4, 5, 100, -1}) {
        QByteArray bytes =
            golden::bytesOfVersion(QStringLiteral("config/terminalcancfg.hex"), version);
        const int end = bytes.size();
        bytes += record::toBytes(filter);
        QDataStream in(bytes);
        in.setVersion(record::dataStreamVersion);
        TerminalCanCfg can;
        in >> can;
        QCOMPARE(in.device()->pos(), qint64(end));
        CanIdFilterElement next;
        in >> next;
        QVERIFY(next == filter);
    }
}

void tst_Record::anEmptyListIsACountOfZeroWithNothingBehindIt()
{
    QCOMPARE(record::toBytes(TerminalEtherCatCfg()).toHex(' '),
             QByteArray("00 00 00 0b 00 00 00 01 00 00 64 00 00 00 00"));
}

void tst_Record::aListKeepsItsOrder()
{
    const TerminalCanCfg read = readFrom<TerminalCanCfg>(record::toBytes(canWithFilters(128)));
    QCOMPARE(read.filters.size(), 128);
    for (int i = 0; i < 128; ++i)
        QCOMPARE(read.filters.at(i)->id1, quint32(i));
}

void tst_Record::aNullTextStaysNullAndAnEmptyOneEmpty()
{
    AuxSupplyCfg null;
    AuxSupplyCfg empty;
    empty.event_name = QStringLiteral("");
    QCOMPARE(record::toBytes(null).toHex(' '),
             QByteArray("00 00 00 09 00 00 00 02 ff ff ff ff 00"));
    QCOMPARE(record::toBytes(empty).toHex(' '),
             QByteArray("00 00 00 09 00 00 00 02 00 00 00 00 00"));
    QVERIFY(readFrom<AuxSupplyCfg>(record::toBytes(null)).event_name.isNull());
    QVERIFY(!readFrom<AuxSupplyCfg>(record::toBytes(empty)).event_name.isNull());
    QVERIFY(null == empty);
}

void tst_Record::defaultTextsAreNull()
{
    QVERIFY(TerminalCanCfg().export_custom_name.isNull());
    QVERIFY(StreamingClass_Cfg_Ethernet().custom_name.isNull());
    QVERIFY(AuxSupplyCfg().event_name.isNull());
}

void tst_Record::aTextCutShortIsNullAndTakesTheRest()
{
    const QByteArray content =
        QByteArray::fromHex("00000002") + QByteArray::fromHex("00000006 0041 0042");
    const auto read = readFrom<AuxSupplyCfg>(golden::framed(content));
    QVERIFY(read.event_name.isNull());
    QCOMPARE(read.aux_mode, quint8(0));
}

void tst_Record::aTextOfOddLengthIsNullAndTakesItsBytes()
{
    const QByteArray content =
        QByteArray::fromHex("00000002") + QByteArray::fromHex("00000003 004100 02");
    const auto read = readFrom<AuxSupplyCfg>(golden::framed(content));
    QVERIFY(read.event_name.isNull());
    QCOMPARE(read.aux_mode, quint8(2));
}

void tst_Record::aListWhoseCountLiesEndsWithItsFrame_data()
{
    QTest::addColumn<quint32>("count");
    QTest::newRow("one more") << 3u;
    QTest::newRow("a million") << 1000000u;
    QTest::newRow("largest") << 0x7FFFFFFFu;
}

void tst_Record::aListWhoseCountLiesEndsWithItsFrame()
{
    QFETCH(quint32, count);
    const QByteArray pair =
        QByteArray::fromHex("00000014 00000001 3ff0000000000000 4000000000000000");
    const QByteArray content = version1 + QByteArray::fromHex("ffffffff ffffffff 04 0002")
                               + golden::word(count) + pair + pair;
    const auto read = readFrom<A2lCompuTab>(golden::framed(content));
    QCOMPARE(read.pairs.size(), 2);
    QCOMPARE(read.pairs.at(1)->x, 1.0);
    QCOMPARE(read.pairs.at(1)->y, 2.0);
}

void tst_Record::aNegativeCountIsAnEmptyList()
{
    const QByteArray content = version1 + QByteArray::fromHex("01 0064 80000000 00000004 00000001");
    QVERIFY(readFrom<TerminalEtherCatCfg>(golden::framed(content)).slaves.isEmpty());
}

void tst_Record::aBareListWhoseCountLiesEndsWithItsFrame()
{
    const QByteArray filter = QByteArray::fromHex("000007ff 00000100 02 00");
    const QByteArray content = QByteArray::fromHex("00000002 00 ddd5 ffffffff ffffffff 7fffffff")
                               + filter + filter.left(6);
    const auto read = readFrom<EthTunnelingCfg>(golden::framed(content));
    QCOMPARE(read.filters.size(), 2);
    QCOMPARE(read.filters.at(0)->to_id, 0x7FFu);
    QCOMPARE(read.filters.at(0)->from_id, 0x100u);
    QCOMPARE(read.filters.at(0)->channel, quint8(2));
    QCOMPARE(read.filters.at(1)->to_id, 0x7FFu);
    QCOMPARE(read.filters.at(1)->from_id, 0u);
}

void tst_Record::someElementsThatAreCutShortLeaveTheirNeighbours()
{
    const QByteArray whole = record::toBytes(sample::record<CanIdFilterElement>());
    const QByteArray list = QByteArray::fromHex("00000003") + whole + nullFrame + whole;
    OwnedList<CanIdFilterElement> read;
    QDataStream in(list);
    in.setVersion(record::dataStreamVersion);
    record::detail::ReadState state;
    record::detail::readList(in, read, state);
    QCOMPARE(read.size(), 3);
    QCOMPARE(*read.at(2), sample::record<CanIdFilterElement>());
    QCOMPARE(read.at(1)->id1, 0U);
    QVERIFY(in.atEnd());
}

void tst_Record::listsOfElementsThatLackTheirItemsEndSoon_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::newRow("null frames") << nullFrame;
    QTest::newRow("empty frames") << QByteArray::fromHex("00000000");
    QTest::newRow("frames that hold a version only") << QByteArray::fromHex("0000000400000001");
}

void tst_Record::listsOfElementsThatLackTheirItemsEndSoon()
{
    QFETCH(QByteArray, element);
    constexpr int count = 200'000;
    OwnedList<StreamingClass_DBC_Signal> read;
    record::detail::ReadState state;
    const QByteArray list = QByteArray::fromHex("00030d40") + element.repeated(count);
    QDataStream elements(list);
    elements.setVersion(record::dataStreamVersion);
    record::detail::readList(elements, read, state);
    QCOMPARE(read.size(), record::detail::ReadState::maxShortRecords + 1);
}

void tst_Record::missingItemsReadAsZeroNotAsDefaults()
{
    const auto port = readFrom<TerminalRs485Cfg>(golden::framed(version1 + '\x01'));
    QCOMPARE(port.supply_out, quint8(1));
    QCOMPARE(port.voltage, quint16(0));
    QCOMPARE(port.d4mod.mode_value, 0);
}

void tst_Record::aNullFrameReadsAsVersion0WithoutItems()
{
    const auto cfg = readFrom<StreamingClass_A2L_CFG>(QByteArray::fromHex("ffffffff"));
    QCOMPARE(cfg.can_id_send, 0u);
    QVERIFY(cfg.ip_address.isNull());
    QCOMPARE(cfg.max_odt_index, quint8(191));
    QCOMPARE(readFrom<TerminalRs485Cfg>(QByteArray::fromHex("ffffffff")).voltage, quint16(0));
}

void tst_Record::aNegativeVersionReadsTheFieldsOfAllVersions()
{
    const QByteArray content = QByteArray::fromHex("fffffffb 01 02");
    QCOMPARE(readFrom<TerminalLteCfg>(golden::framed(content)).companion, quint8(2));
}

void tst_Record::valuesAboveTheLimitAreCutToIt()
{
    TerminalCanCfg can;
    for (const auto &[stored, read] :
         {std::pair(512, 512), std::pair(513, 512), std::pair(1000, 512), std::pair(65535, 512)}) {
        can.clk_div = quint16(stored);
        QCOMPARE(int(readFrom<TerminalCanCfg>(record::toBytes(can)).clk_div), read);
    }
}

void tst_Record::theSecondItemOfAFlagWins()
{
    const QByteArray head = QByteArray::fromHex("00000123 00000008 00000001 00000001 02 00");
    const QByteArray texts = QByteArray::fromHex("ffffffff ffffffff");
    AimMsgMeta message;
    QDataStream secondSet(head + QByteArray::fromHex("00 01 01") + texts);
    secondSet >> message;
    QVERIFY(message.isSigned);
    QVERIFY(message.isMsbFirst);
    QDataStream secondClear(head + QByteArray::fromHex("01 00 00") + texts);
    secondClear >> message;
    QVERIFY(!message.isSigned);
    QVERIFY(!message.isMsbFirst);
}

void tst_Record::zeroBytesAreSkippedWhateverTheyHold()
{
    QByteArray bytes = golden::bytes(QStringLiteral("config/ethtunnelingcfg.hex"));
    bytes[8] = '\x7F';
    const auto read = readFrom<EthTunnelingCfg>(bytes);
    QVERIFY(read == sample::record<EthTunnelingCfg>());
    QCOMPARE(record::toBytes(read).at(8), '\0');
}

void tst_Record::membersThatAreNotStreamedSurviveARead()
{
    TerminalStruct terminal(QStringLiteral("Bench"));
    terminal.trigger.signal.live_value = 7.5;
    terminal.rs485[2].channels.add().location = QStringLiteral("Axle");
    record::fromBytes(record::toBytes(sample::record<TerminalStruct>()), terminal);
    QCOMPARE(terminal.name, QStringLiteral("Bench"));
    QCOMPARE(terminal.trigger.signal.live_value, 7.5);
    QCOMPARE(terminal.rs485[2].channels.size(), 1);
    QCOMPARE(terminal.rs485[2].channels.at(0)->location, QStringLiteral("Axle"));
}

void tst_Record::aDbcSignalReadsBackIdenticalButForItsLiveValue()
{
    auto signal = sample::record<StreamingClass_DBC_Signal>();
    signal.live_value = 7.5;
    const auto read = readFrom<StreamingClass_DBC_Signal>(record::toBytes(signal));
    QVERIFY(read == signal);
    QCOMPARE(read.live_value, 0.0);
    ++signal.msg_id;
    QVERIFY(signal != sample::record<StreamingClass_DBC_Signal>());
}

void tst_Record::aCopyIsDeep()
{
    const TerminalCanCfg original = canWithFilters(2);
    TerminalCanCfg copied;
    record::copy(original, copied);
    QVERIFY(copied == original);
    copied.filters.at(0)->id1 = 99;
    QCOMPARE(original.filters.at(0)->id1, 0u);
}

void tst_Record::aCopyReplacesWhatTheTargetHeld()
{
    TerminalCanCfg target = canWithFilters(5);
    record::copy(canWithFilters(2), target);
    QCOMPARE(target.filters.size(), 2);
}

void tst_Record::aCopyResetsWhatIsNotStreamed()
{
    TerminalRs485Cfg target;
    target.channels.add();
    record::copy(TerminalRs485Cfg(), target);
    QVERIFY(target.channels.isEmpty());
}

void tst_Record::aResetGivesTheDefaults()
{
    auto terminal = sample::record<TerminalStruct>();
    record::reset(terminal);
    const TerminalStruct pristine;
    QVERIFY(terminal != pristine); // the trigger's signals are kept
    terminal.trigger.signal = StreamingClass_DBC_Signal();
    terminal.trigger.multiplexor = StreamingClass_DBC_Signal();
    QVERIFY(terminal == pristine);
}

void tst_Record::aResetOfAnRs485PortFreesItsChannels()
{
    auto port = sample::record<TerminalRs485Cfg>();
    port.channels.add();
    record::reset(port);
    QVERIFY(port.channels.isEmpty());
    QCOMPARE(port.voltage, quint16(5500));
    QCOMPARE(port.supply_out, quint8(0));
    QCOMPARE(port.d4mod.enabled, quint8(0));
    QCOMPARE(port.d4mod.mode, quint8(0));
    QCOMPARE(port.d4mod.rate, quint8(0));
    QCOMPARE(port.d4mod.mode_value, 1000);
}

void tst_Record::readNewGivesARecordOfItsOwn()
{
    QDataStream in(golden::bytes(QStringLiteral("config/streamingclass_dbc_signal.hex")));
    in.setVersion(record::dataStreamVersion);
    const auto signal = record::readNew<StreamingClass_DBC_Signal>(in);
    QVERIFY(*signal == sample::record<StreamingClass_DBC_Signal>());
}

void tst_Record::fromBytesTellsWhetherTheFrameIsWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("whole");
    QTest::newRow("whole") << QByteArray::fromHex("00000005 00000001 01") << true;
    QTest::newRow("bytes behind it") << QByteArray::fromHex("00000005 00000001 01 ff") << true;
    QTest::newRow("version only") << QByteArray::fromHex("00000004 00000001") << true;
    QTest::newRow("one byte short") << QByteArray::fromHex("00000005 00000001") << false;
    QTest::newRow("no version") << QByteArray::fromHex("00000003 000001") << false;
    QTest::newRow("null frame") << QByteArray::fromHex("ffffffff 00000001 01") << false;
    QTest::newRow("length only") << QByteArray::fromHex("00000005") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void tst_Record::fromBytesTellsWhetherTheFrameIsWhole()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, whole);
    TerminalGpsCfg gps;
    QCOMPARE(record::fromBytes(bytes, gps), whole);
}

void tst_Record::unsignedValuesKeepTheirHighBit()
{
    A2lMeasurement measurement;
    measurement.ecu_address = 0xFFFFFFFF;
    measurement.bit_mask = std::numeric_limits<quint64>::max();
    measurement.data_type = 0xFF;
    const auto read = readFrom<A2lMeasurement>(record::toBytes(measurement));
    QCOMPARE(read.ecu_address, 0xFFFFFFFFu);
    QCOMPARE(read.bit_mask, std::numeric_limits<quint64>::max());
    QCOMPARE(read.data_type, quint8(0xFF));
}

void tst_Record::aLaterStreamVersionGivesTheSameBytes()
{
    const auto can = sample::record<TerminalCanCfg>();
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_DefaultCompiledVersion);
    out << can;
    QCOMPARE(bytes.toHex(), record::toBytes(can).toHex());
}

void tst_Record::aNewEtherCatSignalHasMultiplierOne()
{
    QCOMPARE(EtherCatSignal().multiplier, 1.0);
    QCOMPARE(EtherCatSignal().offset, 0.0);
}

QTEST_GUILESS_MAIN(tst_Record)
#include "tst_record.moc"
