#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "tests/mdf4conversion/rawlog/logbytes.h"

#include <QRegularExpression>
#include <QtTest>

#include <memory>

using logbytes::hex;

namespace {

// Gives the parser a range without a spare byte behind it, so that a sanitizer sees every read
// beyond.
void rebuild(StdLogEntry &entry, const QByteArray &bytes)
{
    const auto size = std::size_t(bytes.size());
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[size]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    entry.rebuild(exact.get(), size);
}

StdLogEntry parsed(const QByteArray &bytes)
{
    StdLogEntry entry;
    rebuild(entry, bytes);
    return entry;
}

QByteArray payload(const StdLogEntry &entry)
{
    return QByteArray(reinterpret_cast<const char *>(entry.data.data()), int(entry.data.size()));
}

void expectUnknownType()
{
    const QRegularExpression text(
        QStringLiteral("^StdLogEntry::rebuild\\( uint8_t \\* data, size_t "
                       "maxLen \\).*Landed in Default\\.\\.\\."));
    QTest::ignoreMessage(QtCriticalMsg, text);
}

} // namespace

class tst_StdLogEntry : public QObject
{
    Q_OBJECT

private slots:
    void aNewEntryIsNotValid();
    void aCanFrameGivesTimestampIdentifierAndData();
    void aWordOfTheHeadIsLittleEndian();
    void payloadStartsWhereTheTypeSays_data();
    void payloadStartsWhereTheTypeSays();
    void startOfTheClockIgnoresFourBytes();
    void anUnknownTypeIsReportedAndKept_data();
    void anUnknownTypeIsReportedAndKept();
    void aRangeShorterThanAHeadIsRefused();
    void anotherSyncWordIsRefused_data();
    void anotherSyncWordIsRefused();
    void anAnnouncedLengthBeyondTheRangeIsRefused();
    void noTruncationIsReadBeyondItsEnd_data();
    void noTruncationIsReadBeyondItsEnd();
    void theLengthIsComparedModulo65536();
    void theLongestEntryIsTakenWhole();
    void bytesBehindTheEntryAreNoPayload();
    void missingFieldsReadAsZero_data();
    void missingFieldsReadAsZero();
    void aFrameWithoutAllItsBytesIsNotComplete();
    void withoutPayloadTheDataStaysAsItStood();
    void aUsedEntryForgetsWhatTheNextLacks();
    void aRefusedRangeMakesAnEntryInvalid();
    void clearGivesAFreshEntry();
    void aCopyKeepsThe29BitIdentifierOnly();
    void aCopyKeepsThe11BitIdentifierOnly();
    void aCopyHasEverythingElse();
};

void tst_StdLogEntry::aNewEntryIsNotValid()
{
    QVERIFY(!StdLogEntry().valid);
    QVERIFY(!StdLogEntry().isComplete());
}

void tst_StdLogEntry::aCanFrameGivesTimestampIdentifierAndData()
{
    StdLogEntry entry;
    rebuild(entry, hex("AA55 1400 01 0B 07 08 78563412 F1DA1858 0102030405060708"));
    QVERIFY(entry.valid);
    QVERIFY(entry.isComplete());
    QCOMPARE(int(entry.type), 1);
    QCOMPARE(int(entry.number), 11);
    QCOMPARE(int(entry.sub), 7);
    QCOMPARE(int(entry.info), 8);
    QCOMPARE(entry.timestamp, 0x12345678U);
    QCOMPARE(entry.id, 0x5818DAF1U);
    QCOMPARE(payload(entry).toHex(), QByteArray("0102030405060708"));
}

void tst_StdLogEntry::aWordOfTheHeadIsLittleEndian()
{
    const StdLogEntry entry = parsed(logbytes::statusEntry(0x0200));
    QCOMPARE(entry.sync, quint16(0x55AA));
    QCOMPARE(entry.length, quint16(0x0204));
}

void tst_StdLogEntry::payloadStartsWhereTheTypeSays_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("start");
    QTest::addColumn<bool>("timestamped");
    QTest::newRow("RLD_CAN") << 1 << 16 << true;
    QTest::newRow("RLD_AGM") << 2 << 12 << true;
    QTest::newRow("RLD_TS_4") << 4 << 12 << true;
    QTest::newRow("RLD_D4MOD") << 5 << 12 << true;
    QTest::newRow("RLD_TS_8") << 8 << 12 << true;
    QTest::newRow("RLD_GPS") << 9 << 12 << true;
    QTest::newRow("RLD_ETHERCAT") << 10 << 12 << true;
    QTest::newRow("RLD_CYCLIC_TS") << 11 << 12 << true;
    QTest::newRow("RLD_ETH") << 12 << 12 << true;
    QTest::newRow("RLD_ETH_INFO") << 13 << 8 << false;
    QTest::newRow("TYPE_TRANSPARENT_DATA") << 14 << 8 << false;
    QTest::newRow("RLD_UTC_START") << 239 << 12 << false;
    QTest::newRow("RLD_LIVE_240") << 240 << 8 << false;
    QTest::newRow("RLD_DBG_COUNTERS") << 248 << 8 << false;
    QTest::newRow("RLD_ETHERCAT_INFO") << 249 << 8 << false;
    QTest::newRow("RLD_D4MOD_INFO") << 250 << 8 << false;
    QTest::newRow("RLD_D4MOD_TED") << 251 << 8 << false;
    QTest::newRow("RLD_RS485_INFO") << 252 << 8 << false;
    QTest::newRow("RLD_CCP_XCP_INFO") << 253 << 8 << false;
    QTest::newRow("RLD_LTE") << 254 << 8 << false;
    QTest::newRow("RLD_SYSTEM_INFO") << 255 << 8 << false;
}

void tst_StdLogEntry::payloadStartsWhereTheTypeSays()
{
    QFETCH(int, type);
    QFETCH(int, start);
    QFETCH(bool, timestamped);
    QByteArray bytes = hex("AA55 1000 00 05 00 00 A1A2A3A4 B1B2B3B4 C1C2C3C4");
    bytes[4] = static_cast<char>(type);
    StdLogEntry entry;
    rebuild(entry, bytes);
    QVERIFY(entry.valid);
    QCOMPARE(payload(entry).toHex(), bytes.mid(start).toHex());
    QCOMPARE(entry.timestamp, timestamped ? 0xA4A3A2A1U : 0U);
    QCOMPARE(entry.id, type == 1 ? 0xB4B3B2B1U : 0U);
    QCOMPARE(QByteArray(rawlog::entryKind(quint8(type))->name),
             QByteArray(QTest::currentDataTag()));
}

void tst_StdLogEntry::startOfTheClockIgnoresFourBytes()
{
    StdLogEntry entry;
    rebuild(entry, hex("AA55 1000 EF 00 00 00 DEADBEEF 0102030405060708"));
    QCOMPARE(entry.length, quint16(16));
    QCOMPARE(payload(entry).toHex(), QByteArray("0102030405060708"));
    QCOMPARE(entry.timestamp, 0U);
}

void tst_StdLogEntry::anUnknownTypeIsReportedAndKept_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {0, 3, 6, 7, 15, 100, 238, 241, 247})
        QTest::addRow("%d", type) << type;
}

void tst_StdLogEntry::anUnknownTypeIsReportedAndKept()
{
    QFETCH(int, type);
    QByteArray bytes = hex("AA55 0800 00 00 00 00 01020304");
    bytes[4] = static_cast<char>(type);
    expectUnknownType();
    const StdLogEntry entry = parsed(bytes);
    QVERIFY(entry.valid);
    QCOMPARE(int(entry.type), type);
    QCOMPARE(payload(entry).toHex(), QByteArray("01020304"));
    QCOMPARE(rawlog::entryKind(quint8(type)), static_cast<const rawlog::EntryKind *>(nullptr));
}

void tst_StdLogEntry::aRangeShorterThanAHeadIsRefused()
{
    const QByteArray shortest = hex("AA55 0400 FF 00 00 00");
    for (int size = 0; size < 8; ++size)
        QVERIFY(!parsed(shortest.left(size)).valid);
    QVERIFY(parsed(shortest).valid);
}

void tst_StdLogEntry::anotherSyncWordIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("first byte") << hex("AB55 0400 FF 00 00 00");
    QTest::newRow("second byte") << hex("AA54 0400 FF 00 00 00");
    QTest::newRow("swapped") << hex("55AA 0400 FF 00 00 00");
}

void tst_StdLogEntry::anotherSyncWordIsRefused()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!parsed(bytes).valid);
}

void tst_StdLogEntry::anAnnouncedLengthBeyondTheRangeIsRefused()
{
    QVERIFY(!parsed(hex("AA55 0500 FF 00 00 00")).valid);
    QVERIFY(parsed(hex("AA55 0500 FF 00 00 00 77")).valid);
}

void tst_StdLogEntry::noTruncationIsReadBeyondItsEnd_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("CAN") << logbytes::canEntry();
    QTest::newRow("sync stamp") << hex("AA55 0800 0B 00 00 00 01020304");
    QTest::newRow("start of the clock") << hex("AA55 1000 EF 00 00 00 00000000 0102030405060708");
    QTest::newRow("status") << logbytes::statusEntry(9);
    QTest::newRow("length of 0xFFFF") << hex("AA55 FFFF 01 00 00 40 01020304 05060708 090A");
}

void tst_StdLogEntry::noTruncationIsReadBeyondItsEnd()
{
    QFETCH(QByteArray, bytes);
    for (int size = 0; size <= bytes.size(); ++size) {
        StdLogEntry entry;
        rebuild(entry, bytes.left(size));
        QVERIFY(entry.data.size() <= std::size_t(size));
    }
}

void tst_StdLogEntry::theLengthIsComparedModulo65536()
{
    // 0xFFFC + 4 is 0 in 16 bits, so that eight bytes are enough; 0xFFF8 + 4 is not.
    QVERIFY(parsed(hex("AA55 FCFF FF 00 00 00")).valid);
    QVERIFY(!parsed(hex("AA55 F8FF FF 00 00 00")).valid);
}

void tst_StdLogEntry::theLongestEntryIsTakenWhole()
{
    const StdLogEntry entry = parsed(logbytes::statusEntry(0xFFFB));
    QVERIFY(entry.valid);
    QCOMPARE(entry.length, quint16(0xFFFF));
    QCOMPARE(entry.data.size(), std::size_t(0xFFFB));
}

void tst_StdLogEntry::bytesBehindTheEntryAreNoPayload()
{
    QCOMPARE(payload(parsed(logbytes::statusEntry(3) + "behind")).toHex(), QByteArray("333333"));
}

void tst_StdLogEntry::missingFieldsReadAsZero_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<quint32>("timestamp");
    QTest::addColumn<quint32>("id");
    QTest::newRow("no timestamp") << hex("AA55 0400 0B 00 00 00") << 0U << 0U;
    QTest::newRow("half a timestamp") << hex("AA55 0600 0B 00 00 00 3412") << 0x1234U << 0U;
    QTest::newRow("CAN without identifier")
        << hex("AA55 0800 01 00 00 00 78563412") << 0x12345678U << 0U;
    QTest::newRow("CAN with a byte of it")
        << hex("AA55 0900 01 00 00 00 78563412 23") << 0x12345678U << 0x23U;
    QTest::newRow("clock without its bytes") << hex("AA55 0600 EF 00 00 00 0102") << 0U << 0U;
}

void tst_StdLogEntry::missingFieldsReadAsZero()
{
    QFETCH(QByteArray, bytes);
    QFETCH(quint32, timestamp);
    QFETCH(quint32, id);
    StdLogEntry entry;
    rebuild(entry, bytes);
    QVERIFY(entry.valid);
    QVERIFY(!entry.isComplete());
    QCOMPARE(entry.timestamp, timestamp);
    QCOMPARE(entry.id, id);
    QVERIFY(entry.data.empty());
}

void tst_StdLogEntry::aFrameWithoutAllItsBytesIsNotComplete()
{
    QByteArray announcesThree = logbytes::canEntry();
    announcesThree[7] = 3;
    QVERIFY(parsed(logbytes::canEntry()).isComplete());
    QVERIFY(!parsed(announcesThree).isComplete());
}

void tst_StdLogEntry::withoutPayloadTheDataStaysAsItStood()
{
    StdLogEntry entry = parsed(logbytes::statusEntry(3));
    rebuild(entry, hex("AA55 0800 0B 00 00 00 01020304"));
    QVERIFY(entry.valid);
    QCOMPARE(payload(entry).toHex(), QByteArray("333333"));
}

void tst_StdLogEntry::aUsedEntryForgetsWhatTheNextLacks()
{
    StdLogEntry entry;
    rebuild(entry, logbytes::canEntry());
    rebuild(entry, logbytes::statusEntry(1));
    QCOMPARE(entry.timestamp, 0U);
    QCOMPARE(entry.id, 0U);
    QCOMPARE(payload(entry).toHex(), QByteArray("33"));
}

void tst_StdLogEntry::aRefusedRangeMakesAnEntryInvalid()
{
    StdLogEntry entry = parsed(logbytes::canEntry());
    rebuild(entry, hex("AA55"));
    QVERIFY(!entry.valid);
    QVERIFY(!entry.isComplete());
}

void tst_StdLogEntry::clearGivesAFreshEntry()
{
    StdLogEntry entry = parsed(logbytes::canEntry());
    entry.clear();
    QVERIFY(!entry.valid);
    QVERIFY(!entry.isComplete());
    QVERIFY(entry.data.empty());
    QCOMPARE(entry.sync | entry.length | entry.type | entry.number | entry.info, 0);
    QCOMPARE(entry.timestamp | entry.id, 0U);
}

void tst_StdLogEntry::aCopyKeepsThe29BitIdentifierOnly()
{
    StdLogEntry entry;
    rebuild(entry, hex("AA55 0C00 01 00 00 00 01000000 FFFFFFFF"));
    QCOMPARE(entry.id, 0xFFFFFFFFU);
    QCOMPARE(StdLogEntry(entry).id, 0x1FFFFFFFU);
}

void tst_StdLogEntry::aCopyKeepsThe11BitIdentifierOnly()
{
    // Bit 30 is clear, all others are set.
    StdLogEntry entry;
    rebuild(entry, hex("AA55 0C00 01 00 00 00 01000000 FFFFFFBF"));
    StdLogEntry copy;
    copy = entry;
    QCOMPARE(copy.id, 0x7FFU);
    QCOMPARE(rawlog::canIdentifier(entry.id), 0x7FFU);
}

void tst_StdLogEntry::aCopyHasEverythingElse()
{
    StdLogEntry entry;
    rebuild(entry, hex("AA55 0E00 01 02 03 02 04030201 23010000 11 22"));
    const StdLogEntry copy(entry);
    QVERIFY(copy.valid);
    QVERIFY(copy.isComplete());
    QCOMPARE(copy.sync, quint16(0x55AA));
    QCOMPARE(copy.length, quint16(14));
    QCOMPARE(int(copy.type), 1);
    QCOMPARE(int(copy.number), 2);
    QCOMPARE(int(copy.sub), 3);
    QCOMPARE(int(copy.info), 2);
    QCOMPARE(copy.timestamp, 0x01020304U);
    QCOMPARE(payload(copy).toHex(), QByteArray("1122"));
}

QTEST_GUILESS_MAIN(tst_StdLogEntry)
#include "tst_stdlogentry.moc"
