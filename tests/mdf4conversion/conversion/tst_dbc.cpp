#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/dbclog.h"
#include "tests/support/logconfigurations.h"

#include <QTest>
#include <QtEndian>

namespace {

using Log = DbcLog;

constexpr quint8 bus = DbcLog::bus;
constexpr quint32 messageId = DbcLog::messageId;

QString joined(const QStringList &list)
{
    return list.join(QLatin1Char(' '));
}

} // namespace

class tst_Dbc : public QObject
{
    Q_OBJECT

private slots:
    void bitsAreExtracted_data();
    void bitsAreExtracted();
    void aMotorolaSignalOf12BitsCrossesAByteBoundary();
    void aSignedValueOf7BitsWithBit6SetGetsAllOnesAbove();
    void aValueTakesTheSmallestSizeThatHoldsIt_data();
    void aValueTakesTheSmallestSizeThatHoldsIt();
    void floatsAreReals_data();
    void floatsAreReals();
    void aSignalIsScaledByFactorAndOffset();
    void theRangeIsThatOfTheStoredValue_data();
    void theRangeIsThatOfTheStoredValue();
    void aFrameOfAnotherLengthIsNotTaken();
    void aFrameThatLacksBytesIsNotTaken();
    void aFrameOfAnotherBusIsNotTaken();
    void aFrameOfAnotherIdentifierIsNotTaken();
    void standardAndExtendedIdentifiersOfOneNumberAreTwoMessages();
    void bitsAboveAnElevenBitIdentifierAreIgnored();
    void aFlexibleDataRateFrameHolds64Bytes();
    void onlyRecordedSignalsAreConvertedInListOrder();
    void aMessageWithoutRecordedSignalsGivesNoGroup();
    void groupsAreInTheOrderOfIdentifiers();
    void channelsOfTheLoggerAreInAscendingOrder();
    void groupsAreNamedByTheRule_data();
    void groupsAreNamedByTheRule();
};

void tst_Dbc::bitsAreExtracted_data()
{
    QTest::addColumn<bool>("intel");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("isSigned");
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<double>("value");
    const auto row = [](const char *tag, bool intel, int start, int length, bool isSigned,
                        const char *frame, double value) {
        QTest::newRow(tag) << intel << start << length << isSigned << QByteArray(frame) << value;
    };
    row("Intel, one bit", true, 13, 1, false, "0020000000000000", 1);
    row("Intel, a byte", true, 8, 8, false, "00AB000000000000", 0xAB);
    row("Intel, 12 bits across bytes", true, 4, 12, false, "5ABC000000000000", 0xBC5);
    row("Intel, 64 bits", true, 0, 64, false, "0100000000000080", 9223372036854775809.0);
    row("Intel, 57 bits that need nine bytes shifted", true, 7, 57, false, "80FFFFFFFFFFFFFF",
        144115188075855871.0);
    row("Motorola, a byte", false, 7, 8, false, "AB00000000000000", 0xAB);
    row("Motorola, 12 bits across bytes, from bit 3", false, 3, 12, false, "FABC000000000000",
        0xABC);
    row("Motorola, 12 bits across bytes, from bit 7", false, 7, 12, false, "ABCF000000000000",
        0xABC);
    row("Motorola, within a byte", false, 5, 3, false, "2800000000000000", 5);
    row("Motorola, 16 bits across three bytes", false, 3, 16, false, "0123400000000000", 0x1234);
    row("Motorola, 64 bits", false, 7, 64, false, "8000000000000001", 9223372036854775809.0);
    row("signed 7 bits with bit 6 set", true, 0, 7, true, "4000000000000000", -64);
    row("signed 7 bits with bit 6 clear", true, 0, 7, true, "BF00000000000000", 63);
    row("signed Motorola 12 bits", false, 3, 12, true, "0F9C000000000000", -100);
    row("signed 64 bits", true, 0, 64, true, "FEFFFFFFFFFFFFFF", -2);
    row("beyond the frame, the missing bits are 0", true, 60, 8, false, "00000000000000F0", 0xF);
}

void tst_Dbc::bitsAreExtracted()
{
    QFETCH(bool, intel);
    QFETCH(int, start);
    QFETCH(int, length);
    QFETCH(bool, isSigned);
    QFETCH(QByteArray, frame);
    QFETCH(double, value);
    Log log;
    StreamingClass_DBC_Signal &signal = log.addSignal("S", quint16(start), quint16(length));
    signal.little_endian = intel;
    signal.is_signed = isSigned;
    log.addFrame(1, frame);
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "S"), QVector<double>{value});
    QCOMPARE(result.channel(0, "S").dataType, isSigned ? 2U : 0U);
}

void tst_Dbc::aMotorolaSignalOf12BitsCrossesAByteBoundary()
{
    Log log;
    log.addSignal("S", 3, 12).little_endian = 0;
    log.addFrame(1, "FABC000000000000");
    QCOMPARE(log.convert().raw(0, "S"), QVector<double>{0xABC});
}

void tst_Dbc::aSignedValueOf7BitsWithBit6SetGetsAllOnesAbove()
{
    Log log;
    log.addSignal("S", 0, 7).is_signed = 1;
    log.addFrame(1, "4000000000000000");
    QCOMPARE(log.convert().raw(0, "S"), QVector<double>{-64});
}

void tst_Dbc::aValueTakesTheSmallestSizeThatHoldsIt_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<uint>("bytes");
    for (const auto &[bits, bytes] : std::initializer_list<std::pair<int, uint>>{
             {1, 1}, {8, 1}, {9, 2}, {16, 2}, {17, 4}, {32, 4}, {33, 8}, {64, 8}})
        QTest::newRow(QByteArray::number(bits).constData()) << bits << bytes;
}

void tst_Dbc::aValueTakesTheSmallestSizeThatHoldsIt()
{
    QFETCH(int, bits);
    QFETCH(uint, bytes);
    Log log;
    log.addSignal("S", 0, quint16(bits));
    log.addSignal("Next", 0, 8);
    log.addFrame(1, "0102030405060708");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "S").bitCount, 8 * bytes);
    QCOMPARE(result.channel(0, "Next").byteOffset, 8 + bytes);
    QCOMPARE(result.raw(0, "Next"), QVector<double>{1});
}

void tst_Dbc::floatsAreReals_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("intel");
    QTest::addColumn<QByteArray>("frame");
    QTest::newRow("Intel float") << 2 << true << QByteArray("0000C0BF00000000");
    QTest::newRow("Motorola float") << 2 << false << QByteArray("BFC0000000000000");
    QTest::newRow("Intel double") << 3 << true << QByteArray("000000000000F8BF");
    QTest::newRow("Motorola double") << 3 << false << QByteArray("BFF8000000000000");
}

void tst_Dbc::floatsAreReals()
{
    QFETCH(int, kind);
    QFETCH(bool, intel);
    QFETCH(QByteArray, frame);
    Log log;
    const quint16 bits = kind == 2 ? 32 : 64;
    StreamingClass_DBC_Signal &signal = log.addSignal("S", intel ? 0 : 7, bits);
    signal.little_endian = intel;
    signal.is_signed = quint8(kind);
    log.addFrame(1, frame);
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "S"), QVector<double>{-1.5});
    QCOMPARE(result.channel(0, "S").dataType, 4U);
    QCOMPARE(result.channel(0, "S").bitCount, uint(bits));
}

void tst_Dbc::aSignalIsScaledByFactorAndOffset()
{
    Log log;
    StreamingClass_DBC_Signal &signal = log.addSignal("S", 0, 8);
    signal.factor = 0.5;
    signal.offset = -40;
    signal.unit = QStringLiteral("°C");
    log.addFrame(1, "6400000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "S").conversion.type, 1);
    QCOMPARE(result.channel(0, "S").conversion.values, (std::vector<double>{-40, 0.5}));
    QCOMPARE(QString::fromStdString(result.channel(0, "S").unit), QStringLiteral("°C"));
    QCOMPARE(result.physical(0, "S"), QVector<double>{10});
}

void tst_Dbc::theRangeIsThatOfTheStoredValue_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("offset");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("rangeMin");
    QTest::addColumn<double>("rangeMax");
    QTest::newRow("factor 1") << 1.0 << 0.0 << 3.0 << 200.0 << 3.0 << 200.0;
    QTest::newRow("factor and offset") << 0.5 << -40.0 << -40.0 << 60.0 << 0.0 << 200.0;
    QTest::newRow("negative factor") << -2.0 << 0.0 << -10.0 << 20.0 << -10.0 << 5.0;
    QTest::newRow("factor 0") << 0.0 << 1.0 << 1.0 << 2.0 << 0.0 << 0.0;
    QTest::newRow("no limits") << 2.0 << 7.0 << 0.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("infinite limits") << 1.0 << 0.0 << -qInf() << qInf() << 0.0 << 0.0;
}

void tst_Dbc::theRangeIsThatOfTheStoredValue()
{
    QFETCH(double, factor);
    QFETCH(double, offset);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, rangeMin);
    QFETCH(double, rangeMax);
    Log log;
    StreamingClass_DBC_Signal &signal = log.addSignal("S", 0, 8);
    signal.factor = factor;
    signal.offset = offset;
    signal.minimum = minimum;
    signal.maximum = maximum;
    log.addFrame(1, "0000000000000000");
    const ConversionResult result = log.convert();
    const mdf4reader::Channel &channel = result.channel(0, "S");
    QCOMPARE(channel.rangeMin, rangeMin);
    QCOMPARE(channel.rangeMax, rangeMax);
    QCOMPARE(channel.flags, rangeMin != 0 || rangeMax != 0 ? 8U : 0U);
}

void tst_Dbc::aFrameOfAnotherLengthIsNotTaken()
{
    Log log;
    log.addSignal("S", 0, 8);
    log.addFrame(1, "01020304050607");
    log.addFrame(2, "0102030405060708");
    log.addFrame(3, "010203040506070809");
    QCOMPARE(log.convert().summary.startOffset_us, quint64(2));
}

void tst_Dbc::aFrameThatLacksBytesIsNotTaken()
{
    Log log;
    log.addSignal("S", 0, 8);
    // Announces eight bytes and holds seven.
    const QByteArray idAndData = QByteArray::fromHex("2301000001020304050607");
    log.add(rawlog::timestampedEntry({rawlog::RLD_CAN, bus, 0, 8}, 1, idAndData));
    log.addFrame(2, "2A00000000000000");
    QCOMPARE(log.convert().raw(0, "S"), QVector<double>{0x2A});
}

void tst_Dbc::aFrameOfAnotherBusIsNotTaken()
{
    Log log;
    log.addSignal("S", 0, 8);
    log.add(testlog::can(1, bus + 1, messageId, "0100000000000000"));
    QVERIFY(log.convert().file.groups.empty());
}

void tst_Dbc::aFrameOfAnotherIdentifierIsNotTaken()
{
    Log log;
    log.addSignal("S", 0, 8);
    log.addFrame(1, "0100000000000000", messageId + 1);
    QVERIFY(log.convert().file.groups.empty());
}

void tst_Dbc::standardAndExtendedIdentifiersOfOneNumberAreTwoMessages()
{
    Log log;
    log.addSignal("Extended", 0, 8).extended_id = 1;
    log.addSignal("Standard", 0, 8);
    const QByteArray data = QByteArray::fromHex("0200000000000000");
    log.add(rawlog::canEntry(10, bus, {messageId, true, data}));
    log.addFrame(20, "0100000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "Standard"), QVector<double>{1});
    QCOMPARE(result.raw(1, "Extended"), QVector<double>{2});
}

void tst_Dbc::bitsAboveAnElevenBitIdentifierAreIgnored()
{
    Log log;
    log.addSignal("S", 0, 8);
    QByteArray entry = testlog::can(1, bus, messageId, "0100000000000000");
    qToLittleEndian(quint32(0x3FFFF800 | messageId), entry.data() + 12);
    log.add(entry);
    QCOMPARE(log.convert().raw(0, "S"), QVector<double>{1});
}

void tst_Dbc::aFlexibleDataRateFrameHolds64Bytes()
{
    Log log;
    log.addSignal("Last", 504, 8).dlc = 64;
    log.addFrame(1, (QByteArray(126, '0') + "2A").constData());
    QCOMPARE(log.convert().raw(0, "Last"), QVector<double>{0x2A});
}

void tst_Dbc::onlyRecordedSignalsAreConvertedInListOrder()
{
    Log log;
    log.addSignal("B", 0, 8);
    log.addSignal("Off", 8, 8).selection_flags = 0;
    log.addSignal("Live", 8, 8).selection_flags = StreamingClass_DBC_Signal::liveFlag;
    log.addSignal("A", 16, 8);
    log.addFrame(1, "0100030000000000");
    QCOMPARE(joined(log.convert().channelNames(0)), QStringLiteral("B A"));
}

void tst_Dbc::aMessageWithoutRecordedSignalsGivesNoGroup()
{
    Log log;
    log.addSignal("Live", 8, 8).selection_flags = StreamingClass_DBC_Signal::liveFlag;
    log.addFrame(1, "0100000000000000");
    QVERIFY(log.convert().file.groups.empty());
}

void tst_Dbc::groupsAreInTheOrderOfIdentifiers()
{
    Log log;
    log.addSignal("C", 0, 8, 0x300);
    log.addSignal("A", 0, 8, 0x001);
    log.addSignal("B", 0, 8, 0x200);
    log.addFrame(1, "0100000000000000", 0x300);
    log.addFrame(2, "0100000000000000", 0x200);
    log.addFrame(3, "0100000000000000", 0x001);
    const ConversionResult result = log.convert();
    QCOMPARE(result.times(0), QVector<quint64>{2});
    QCOMPARE(result.times(1), QVector<quint64>{1});
    QCOMPARE(joined(result.channelNames(2)), QStringLiteral("C"));
}

void tst_Dbc::channelsOfTheLoggerAreInAscendingOrder()
{
    Log log;
    log.addSignal("S", 0, 8);
    for (const size_t other : {0, 11})
        testlog::addSignal(log.configuration.can[other], QStringLiteral("S"), messageId, 0, 8);
    for (const quint8 number : {quint8(11), bus, quint8(0)})
        log.add(testlog::can(1, number, messageId, "0100000000000000"));
    QCOMPARE(joined(log.convert().groupNames()), QStringLiteral("CAN_0_DBC CAN_2_DBC CAN_11_DBC"));
}

void tst_Dbc::groupsAreNamedByTheRule_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("custom");
    QTest::addColumn<QString>("name");
    const QString custom = QStringLiteral("Chassis");
    QTest::newRow("neither") << 0 << custom << QStringLiteral("CAN_2_DBC");
    QTest::newRow("appended") << 1 << custom << QStringLiteral("CAN_2_Chassis_DBC");
    QTest::newRow("alone") << 2 << custom << QStringLiteral("Chassis_DBC");
    QTest::newRow("both bits") << 3 << custom << QStringLiteral("Chassis_DBC");
    QTest::newRow("other bits") << 4 << custom << QStringLiteral("CAN_2_DBC");
    QTest::newRow("appended, no text") << 1 << QString() << QStringLiteral("CAN_2_Unspecified_DBC");
    QTest::newRow("alone, no text") << 2 << QString() << QStringLiteral("Unspecified_DBC");
}

void tst_Dbc::groupsAreNamedByTheRule()
{
    QFETCH(int, mode);
    QFETCH(QString, custom);
    QFETCH(QString, name);
    Log log;
    log.addSignal("S", 0, 8);
    log.can().export_name_mode = quint8(mode);
    log.can().export_custom_name = custom;
    log.addFrame(1, "0100000000000000");
    QCOMPARE(log.convert().groupNames(), QStringList(name));
}

QTEST_GUILESS_MAIN(tst_Dbc)
#include "tst_dbc.moc"
