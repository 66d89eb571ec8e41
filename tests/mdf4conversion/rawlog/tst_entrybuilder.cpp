#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/mdf4conversion/rawlog/logbytes.h"

#include <QtTest>

using logbytes::hex;
using namespace rawlog;

namespace {

QByteArray digits(const QByteArray &bytes)
{
    return bytes.toHex(' ').toUpper();
}

QByteArray digits(const char *golden)
{
    return digits(hex(golden));
}

} // namespace

class tst_EntryBuilder : public QObject
{
    Q_OBJECT

private slots:
    void anEntryIsHeadAndBody();
    void anEntryWithoutBodyHasTheLengthFour();
    void aBodyThatExceedsTheLengthWordIsCut();
    void aFrameOf11Bits();
    void aFrameOf29Bits();
    void identifiersAreCutToTheirBits();
    void aFrameOf64BytesHasAByteCount();
    void aFrameHasAtMost64Bytes();
    void accelerationsAndRates();
    void aTemperatureBelowZero();
    void aGpsFix();
    void aGpsFixSouthWestHasItsSignsInBit31();
    void aGpsTimeIsUtc();
    void gpsValuesStayInTheirFields();
    void valuesOfAStrainGaugeModule();
    void aModuleHasAtMost15Channels();
    void aDataSheetEndsWithAZero();
    void aProcessImageStandsBehindTwelveBytes();
    void aSyncStamp();
    void anXcpFrameOnEthernet();
    void theStartOfTheClock();
    void debugCounters();
};

void tst_EntryBuilder::anEntryIsHeadAndBody()
{
    QCOMPARE(digits(entryBytes({253, 1, 2, 3}, hex("A1A2A3"))),
             digits("AA55 0700 FD 01 02 03 A1A2A3"));
}

void tst_EntryBuilder::anEntryWithoutBodyHasTheLengthFour()
{
    QCOMPARE(digits(entryBytes({255, 0, 0, 0}, {})), digits("AA55 0400 FF 00 00 00"));
}

void tst_EntryBuilder::aBodyThatExceedsTheLengthWordIsCut()
{
    const QByteArray entry = entryBytes({255, 0, 0, 0}, QByteArray(70'000, 'x'));
    QCOMPARE(entry.size(), 65'539);
    QCOMPARE(digits(entry.left(4)), digits("AA55 FFFF"));
}

void tst_EntryBuilder::aFrameOf11Bits()
{
    QCOMPARE(digits(canEntry(0x12345678, 11, {0x123, false, hex("0102030405060708")})),
             digits("AA55 1400 01 0B 00 08 78563412 23010000 0102030405060708"));
}

void tst_EntryBuilder::aFrameOf29Bits()
{
    QCOMPARE(digits(canEntry(1, 0, {0x18DAF110, true, hex("FF")})),
             digits("AA55 0D00 01 00 00 01 01000000 10F1DA58 FF"));
}

void tst_EntryBuilder::identifiersAreCutToTheirBits()
{
    QCOMPARE(digits(canEntry(0, 0, {0xFFFFFFFF, false, {}}).mid(12)), digits("FF070000"));
    QCOMPARE(digits(canEntry(0, 0, {0xFFFFFFFF, true, {}}).mid(12)), digits("FFFFFF5F"));
}

void tst_EntryBuilder::aFrameOf64BytesHasAByteCount()
{
    const QByteArray entry = canEntry(0, 0, {1, false, QByteArray(64, '\x5A')});
    QCOMPARE(entry.size(), 80);
    QCOMPARE(digits(entry.left(8)), digits("AA55 4C00 01 00 00 40"));
}

void tst_EntryBuilder::aFrameHasAtMost64Bytes()
{
    QCOMPARE(canEntry(0, 0, {1, false, QByteArray(65, 'x')}).size(), 80);
}

void tst_EntryBuilder::accelerationsAndRates()
{
    AgmSample sample;
    sample.accel[0] = 1'000'000;
    sample.accel[1] = -1;
    sample.accel[2] = 2;
    sample.gyro[0] = 3;
    sample.gyro[1] = 4;
    sample.gyro[2] = 5;
    sample.further[0] = 6;
    sample.further[1] = 7;
    sample.further[2] = 8;
    sample.temperature = 41;
    QCOMPARE(digits(agmEntry(0x01020304, 2, sample)),
             digits("AA55 2C00 02 02 00 29 04030201 40420F00 FFFFFFFF 02000000"
                    "03000000 04000000 05000000 06000000 07000000 08000000"));
}

void tst_EntryBuilder::aTemperatureBelowZero()
{
    AgmSample sample;
    sample.temperature = -20;
    QCOMPARE(digits(agmEntry(0, 0, sample).mid(7, 1)), digits("EC"));
}

void tst_EntryBuilder::aGpsFix()
{
    GpsFix fix;
    fix.utc = QDateTime(QDate(2024, 5, 14), QTime(8, 30, 59), Qt::UTC);
    fix.course_deg = 359.9;
    fix.speed_kmh = 123.45;
    fix.latitude_deg = 48.1372;
    fix.longitude_deg = 11.5755;
    fix.altitude_m = 519.3;
    // 2024 = 0x07E8, 3599 = 0x0E0F, 12345 = 0x3039, 481372000 = 0x1CB12760,
    // 115755000 = 0x06E647F8, 5193 = 0x1449
    QCOMPARE(digits(gpsEntry(1, fix)),
             digits("AA55 2000 09 00 00 00 01000000 01 08 1E 3B E807 05 0E"
                    "0F0E 3930 6027B11C F847E606 4914 0000"));
}

void tst_EntryBuilder::aGpsFixSouthWestHasItsSignsInBit31()
{
    GpsFix fix;
    fix.valid = false;
    fix.latitude_deg = -33.5;
    fix.longitude_deg = -179.9999999;
    fix.altitude_m = -12.5;
    const QByteArray entry = gpsEntry(0, fix);
    QCOMPARE(digits(entry.mid(12, 1)), digits("00"));
    // 335000000 = 0x13F7B1C0, 1799999999 = 0x6B49D1FF, -125 = 0xFF83
    QCOMPARE(digits(entry.mid(24, 10)), digits("C0B1F793 FFD149EB 83FF"));
}

void tst_EntryBuilder::aGpsTimeIsUtc()
{
    GpsFix fix;
    fix.utc = QDateTime(QDate(2024, 1, 1), QTime(0, 30), Qt::OffsetFromUTC, 3600);
    QCOMPARE(digits(gpsEntry(0, fix).mid(13, 7)), digits("17 1E 00 E707 0C 1F"));
}

void tst_EntryBuilder::gpsValuesStayInTheirFields()
{
    GpsFix fix;
    fix.course_deg = -1;
    fix.speed_kmh = 1e9;
    fix.altitude_m = 1e9;
    const QByteArray entry = gpsEntry(0, fix);
    QCOMPARE(digits(entry.mid(20, 4)), digits("0000 FFFF"));
    QCOMPARE(digits(entry.mid(32, 2)), digits("FF7F"));
}

void tst_EntryBuilder::valuesOfAStrainGaugeModule()
{
    QCOMPARE(digits(d4modEntry(0x0A, 9, {0x1234, 0xFFFF, 0})),
             digits("AA55 0E00 05 09 00 03 0A000000 3412 FFFF 0000"));
}

void tst_EntryBuilder::aModuleHasAtMost15Channels()
{
    const QByteArray entry = d4modEntry(0, 0, QVector<quint16>(20, 1));
    QCOMPARE(int(entry[7]), 15);
    QCOMPARE(entry.size(), 12 + 30);
}

void tst_EntryBuilder::aDataSheetEndsWithAZero()
{
    QCOMPARE(digits(d4modTedEntry(3, 1, "A=1$")), digits("AA55 0900 FB 03 00 01 413D3124 00"));
}

void tst_EntryBuilder::aProcessImageStandsBehindTwelveBytes()
{
    QCOMPARE(digits(etherCatEntry(0x10, 7, hex("C1C2"))),
             digits("AA55 1600 0A 07 00 00 10000000 000000000000000000000000 C1C2"));
}

void tst_EntryBuilder::aSyncStamp()
{
    QCOMPARE(digits(syncStampEntry(0xFFFFFFFE, 2)), digits("AA55 0800 0B 02 00 00 FEFFFFFF"));
}

void tst_EntryBuilder::anXcpFrameOnEthernet()
{
    QCOMPARE(digits(ethXcpEntry(5, hex("01A1A2"))),
             digits("AA55 0B00 0C 00 01 00 05000000 01A1A2"));
}

void tst_EntryBuilder::theStartOfTheClock()
{
    QCOMPARE(digits(utcStartEntry(0x0102030405060708)),
             digits("AA55 1000 EF 00 00 00 00000000 0807060504030201"));
}

void tst_EntryBuilder::debugCounters()
{
    QCOMPARE(digits(debugCountersEntry(1, 0x01020304, 0x0506)),
             digits("AA55 0C00 F8 01 00 00 04030201 0605 0000"));
}

QTEST_GUILESS_MAIN(tst_EntryBuilder)
#include "tst_entrybuilder.moc"
