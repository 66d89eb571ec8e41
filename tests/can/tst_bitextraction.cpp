#include "can/bitextraction.h"

#include <QByteArray>
#include <QtTest>

#include <memory>
#include <vector>

using can::BitOrder;

namespace {

constexpr int frameBytes = 24;

std::vector<quint8> pattern()
{
    std::vector<quint8> frame;
    quint32 state = 7;
    for (int i = 0; i < frameBytes; ++i) {
        state = state * 1664525 + 1013904223;
        frame.push_back(quint8(state >> 24));
    }
    return frame;
}

can::Bytes bytesOf(const std::vector<quint8> &frame)
{
    return {frame.data(), frame.size()};
}

quint64 extract(const char *hex, quint32 position, quint32 length, BitOrder order)
{
    const QByteArray digits = QByteArray::fromHex(hex);
    const std::vector<quint8> frame(digits.begin(), digits.end());
    return can::extractBits(bytesOf(frame), position, length, order);
}

// A bit of the frame; zero behind its end.
quint64 bitAt(const std::vector<quint8> &frame, quint32 position)
{
    return position / 8 < frame.size() ? frame[position / 8] >> position % 8 & 1 : 0;
}

quint64 intelBitByBit(const std::vector<quint8> &frame, quint32 position, quint32 length)
{
    quint64 value = 0;
    for (quint32 i = 0; i < length; ++i)
        value |= bitAt(frame, position + i) << i;
    return value;
}

// From the most significant bit down in its byte, then on at the top of the next byte.
quint64 motorolaBitByBit(const std::vector<quint8> &frame, quint32 position, quint32 length)
{
    quint64 value = 0;
    for (quint32 i = 0; i < length; ++i) {
        value = value << 1 | bitAt(frame, position);
        position = position % 8 > 0 ? position - 1 : position + 15;
    }
    return value;
}

quint64 wholeBytesOneByOne(const std::vector<quint8> &frame, quint32 position, quint32 length)
{
    quint64 value = 0;
    for (quint32 i = 0; i < length / 8; ++i) {
        const std::size_t at = position / 8 + i;
        value = value * 256 + (at < frame.size() ? frame[at] : 0);
    }
    return value;
}

using Reference = quint64 (*)(const std::vector<quint8> &, quint32, quint32);

// Every length at every position, also those that run past the end.
void compareWithReference(BitOrder order, Reference reference)
{
    for (const std::size_t size : {0U, 1U, 5U, 8U, 9U, 12U, 24U}) {
        std::vector<quint8> frame = pattern();
        frame.resize(size);
        frame.shrink_to_fit();
        for (quint32 length = 1; length <= 64; ++length) {
            for (quint32 position = 0; position < 8 * frameBytes; ++position) {
                const quint64 value = can::extractBits(bytesOf(frame), position, length, order);
                const quint64 expected = reference(frame, position, length);
                if (value != expected)
                    QFAIL(qPrintable(QStringLiteral("%1 bits at %2 of %3 bytes: %4, expected %5")
                                         .arg(length)
                                         .arg(position)
                                         .arg(size)
                                         .arg(value, 0, 16)
                                         .arg(expected, 0, 16)));
            }
        }
    }
}

} // namespace

class tst_BitExtraction : public QObject
{
    Q_OBJECT

private slots:
    void intelOrderMatchesBitByBit();
    void motorolaOrderMatchesBitByBit();
    void wholeBigEndianBytesMatchByteByByte();
    void twelveMotorolaBitsCrossAByteBorder();
    void twelveIntelBitsCrossAByteBorder();
    void sixtyFourBitsMayLieInNineBytes();
    void farPositionsReadAsZero();
    void noBitsAreZero();
    void moreThan64BitsCountAs64();
    void aSignedValueOf7BitsWithBit6SetIsNegative();
    void theSignFillsAllBitsAbove_data();
    void theSignFillsAllBitsAbove();
    void lowBitsGiveAMask();
    void floatsTakeTheLow32Bits();
    void doublesTakeAllBits();
};

void tst_BitExtraction::intelOrderMatchesBitByBit()
{
    compareWithReference(BitOrder::Intel, intelBitByBit);
}

void tst_BitExtraction::motorolaOrderMatchesBitByBit()
{
    compareWithReference(BitOrder::Motorola, motorolaBitByBit);
}

void tst_BitExtraction::wholeBigEndianBytesMatchByteByByte()
{
    compareWithReference(BitOrder::WholeBigEndian, wholeBytesOneByOne);
}

void tst_BitExtraction::twelveMotorolaBitsCrossAByteBorder()
{
    // From the top of byte 1: 0xAB and the upper half of 0xCD.
    QCOMPARE(extract("00ABCD00", 15, 12, BitOrder::Motorola), quint64(0xABC));
    // From bit 3 of byte 1: the lower half of 0xAB and 0xCD.
    QCOMPARE(extract("00ABCD00", 11, 12, BitOrder::Motorola), quint64(0xBCD));
}

void tst_BitExtraction::twelveIntelBitsCrossAByteBorder()
{
    QCOMPARE(extract("00ABCD00", 8, 12, BitOrder::Intel), quint64(0xDAB));
    QCOMPARE(extract("00ABCD00", 12, 12, BitOrder::Intel), quint64(0xCDA));
}

void tst_BitExtraction::sixtyFourBitsMayLieInNineBytes()
{
    const char *frame = "0123456789ABCDEF10";
    QCOMPARE(extract(frame, 4, 64, BitOrder::Intel), quint64(0x0EFCDAB896745230));
    QCOMPARE(extract(frame, 3, 64, BitOrder::Motorola), quint64(0x123456789ABCDEF1));
}

void tst_BitExtraction::farPositionsReadAsZero()
{
    for (const BitOrder order : {BitOrder::Intel, BitOrder::Motorola, BitOrder::WholeBigEndian}) {
        QCOMPARE(extract("FFFFFFFFFFFFFFFF", 0xFFFF, 64, order), quint64(0));
        QCOMPARE(extract("FFFFFFFFFFFFFFFF", 0xFFFFFFFF, 64, order), quint64(0));
    }
}

void tst_BitExtraction::noBitsAreZero()
{
    for (const BitOrder order : {BitOrder::Intel, BitOrder::Motorola, BitOrder::WholeBigEndian})
        QCOMPARE(extract("FFFFFFFFFFFFFFFF", 3, 0, order), quint64(0));
}

void tst_BitExtraction::moreThan64BitsCountAs64()
{
    const char *frame = "0102030405060708FFFF";
    QCOMPARE(extract(frame, 0, 1000, BitOrder::Intel), quint64(0x0807060504030201));
    QCOMPARE(extract(frame, 7, 1000, BitOrder::Motorola), quint64(0x0102030405060708));
}

void tst_BitExtraction::aSignedValueOf7BitsWithBit6SetIsNegative()
{
    const quint64 raw = extract("C0", 0, 7, BitOrder::Intel);
    QCOMPARE(raw, quint64(0x40));
    QCOMPARE(qint64(can::signExtended(raw, 7)), qint64(-64));
}

void tst_BitExtraction::theSignFillsAllBitsAbove_data()
{
    QTest::addColumn<quint64>("value");
    QTest::addColumn<quint32>("length");
    QTest::addColumn<qint64>("extended");
    QTest::newRow("one bit set") << quint64(1) << 1U << qint64(-1);
    QTest::newRow("one bit clear") << quint64(0) << 1U << qint64(0);
    QTest::newRow("largest of 7 bits") << quint64(0x3F) << 7U << qint64(63);
    QTest::newRow("-1 of 12 bits") << quint64(0xFFF) << 12U << qint64(-1);
    QTest::newRow("smallest of 32 bits") << quint64(0x80000000) << 32U << qint64(-2147483648LL);
    QTest::newRow("smallest of 63 bits") << (quint64(1) << 62) << 63U << -(qint64(1) << 62);
    QTest::newRow("64 bits stay") << ~quint64(0) << 64U << qint64(-1);
    QTest::newRow("no bits stay") << quint64(5) << 0U << qint64(5);
}

void tst_BitExtraction::theSignFillsAllBitsAbove()
{
    QFETCH(quint64, value);
    QFETCH(quint32, length);
    QFETCH(qint64, extended);
    QCOMPARE(qint64(can::signExtended(value, length)), extended);
}

void tst_BitExtraction::lowBitsGiveAMask()
{
    QCOMPARE(can::lowBits(0), quint64(0));
    QCOMPARE(can::lowBits(1), quint64(1));
    QCOMPARE(can::lowBits(63), quint64(0x7FFFFFFFFFFFFFFF));
    QCOMPARE(can::lowBits(64), quint64(0xFFFFFFFFFFFFFFFF));
    QCOMPARE(can::lowBits(200), quint64(0xFFFFFFFFFFFFFFFF));
}

void tst_BitExtraction::floatsTakeTheLow32Bits()
{
    QCOMPARE(can::floatFromBits(0xFFFFFFFFC0480000), -3.125F);
}

void tst_BitExtraction::doublesTakeAllBits()
{
    QCOMPARE(can::doubleFromBits(0xC009000000000000), -3.125);
}

QTEST_GUILESS_MAIN(tst_BitExtraction)
#include "tst_bitextraction.moc"
