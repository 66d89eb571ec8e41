#include "MDF4Conversion/rawlog/logfilereader.h"
#include "tests/mdf4conversion/rawlog/logbytes.h"

#include <QtTest>

using logbytes::canEntry;
using logbytes::hex;
using logbytes::statusEntry;
using logbytes::TemporaryLog;

namespace {

struct Found
{
    int type;
    std::size_t payloadBytes;
    quint64 skipped;
    qint64 skippedFrom;
    bool valid;
};

// All entries up to the end.
QVector<Found> entriesOf(LogFileReader &reader)
{
    QVector<Found> found;
    StdLogEntry entry;
    bool atEnd = false;
    for (reader.next(entry, atEnd); !atEnd; reader.next(entry, atEnd))
        found +=
            {entry.type, entry.data.size(), reader.skipCount(), reader.skipPosition(), entry.valid};
    return found;
}

// Position of the first entry in a log with the smallest configuration.
constexpr int headBytes = 16;

constexpr int chunk = 0x2EF800;

// Entries without meaning that fill exactly `size` bytes.
QByteArray filler(int size)
{
    QByteArray bytes;
    while (size - bytes.size() > 0x8008)
        bytes += statusEntry(0x8000 - 8);
    return bytes + statusEntry(quint16(size - bytes.size() - 8));
}

} // namespace

class tst_LogFileReader : public QObject
{
    Q_OBJECT

private slots:
    void theConfigurationIsTheOneOfTheFile();
    void aFileWithoutConfigurationStaysClosed();
    void aMissingFileStaysClosed();
    void aReaderThatIsNotOpenGivesNoEntry();
    void aLogWithoutEntriesIsAtItsEndAtOnce();
    void entriesComeInOrder();
    void noiseBeforeASyncWordIsSkippedAndTold();
    void theSkipCountIsThatOfOneEntry();
    void aSyncWordInAPayloadIsNoEntry();
    void aSyncWordInDamagedDataIsBelievedWhenItsLengthFits();
    void anEntryThatRunsPastTheEndIsSkipped();
    void aGarbageLengthDoesNotStopTheReader();
    void aTruncatedLastEntryEndsTheLog();
    void anEntryShorterThanItsHeadIsPassedOver();
    void fiveRemainingBytesWithASyncWordArePassedOver();
    void fourRemainingBytesAreTheEnd();
    void theLastEntryMayEndWithTheFile();
    void entriesAcrossAChunkBorderAreWhole_data();
    void entriesAcrossAChunkBorderAreWhole();
    void theLongestEntryAtTheEndOfAChunkIsWhole();
    void noiseOverSeveralChunksIsSkipped();
    void positionAndPercentFollowTheEntries();
    void theContinueCheckIsAskedOnceForEachChunk();
    void aRefusedContinueCheckEndsTheLog();
    void aFileThatShrinksEndsTheLogWithAText();
    void aFileThatGrowsEndsWhereItEndedAtFirst();
    void aClosedReaderGivesNoEntry();
    void anyBytesAreReadToTheirEnd();
};

void tst_LogFileReader::theConfigurationIsTheOneOfTheFile()
{
    const TemporaryLog file(logbytes::log(canEntry()));
    const LogFileReader reader(file.path());
    QVERIFY(reader.isOpen());
    QVERIFY(reader.failure().isNull());
    QCOMPARE(reader.configuration()->version, 6);
    QCOMPARE(reader.configuration()->name, QStringLiteral("Extracted From File"));
    QCOMPARE(reader.firstEntryPosition(), quint32(headBytes));
    QCOMPARE(reader.fileSize(), qint64(headBytes + canEntry().size()));
}

void tst_LogFileReader::aFileWithoutConfigurationStaysClosed()
{
    const TemporaryLog file(logbytes::log(canEntry(), {}));
    const LogFileReader reader(file.path());
    QVERIFY(!reader.isOpen());
    QCOMPARE(reader.configuration(), static_cast<const TerminalStruct *>(nullptr));
    QVERIFY(!reader.failure().isEmpty());
}

void tst_LogFileReader::aMissingFileStaysClosed()
{
    const LogFileReader reader(QDir::tempPath() + QStringLiteral("/no/such/log.rld"));
    QVERIFY(!reader.isOpen());
    QVERIFY(!reader.failure().isEmpty());
}

void tst_LogFileReader::aReaderThatIsNotOpenGivesNoEntry()
{
    const TemporaryLog file(logbytes::log(canEntry(), {}));
    LogFileReader reader(file.path());
    QVERIFY(entriesOf(reader).isEmpty());
}

void tst_LogFileReader::aLogWithoutEntriesIsAtItsEndAtOnce()
{
    const TemporaryLog file(logbytes::log({}));
    LogFileReader reader(file.path());
    QVERIFY(reader.isOpen());
    QVERIFY(entriesOf(reader).isEmpty());
    QCOMPARE(reader.skipCount(), quint64(0));
}

void tst_LogFileReader::entriesComeInOrder()
{
    const TemporaryLog file(logbytes::log(canEntry() + statusEntry(5) + canEntry(7)));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 3);
    QCOMPARE(found[0].type, 1);
    QCOMPARE(found[1].type, 255);
    QCOMPARE(found[1].payloadBytes, std::size_t(5));
    QCOMPARE(found[2].type, 1);
}

void tst_LogFileReader::noiseBeforeASyncWordIsSkippedAndTold()
{
    const TemporaryLog file(logbytes::log(canEntry() + hex("00AAAA0055") + canEntry()));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found[0].skipped, quint64(0));
    QCOMPARE(found[1].skipped, quint64(5));
    QCOMPARE(found[1].skippedFrom, qint64(headBytes + canEntry().size()));
}

void tst_LogFileReader::theSkipCountIsThatOfOneEntry()
{
    const TemporaryLog file(logbytes::log("noise" + canEntry() + canEntry() + "xy" + canEntry()));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 3);
    QCOMPARE(found[0].skipped, quint64(5));
    QCOMPARE(found[0].skippedFrom, qint64(headBytes));
    QCOMPARE(found[1].skipped, quint64(0));
    QCOMPARE(found[1].skippedFrom, qint64(0));
    QCOMPARE(found[2].skipped, quint64(2));
}

void tst_LogFileReader::aSyncWordInAPayloadIsNoEntry()
{
    const QByteArray frame = hex("AA55 1400 01 00 00 08 01000000 23010000 AA55 0400 FF000000");
    const TemporaryLog file(logbytes::log(frame + canEntry()));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found[0].payloadBytes, std::size_t(8));
    QCOMPARE(found[1].type, 1);
}

void tst_LogFileReader::aSyncWordInDamagedDataIsBelievedWhenItsLengthFits()
{
    // The first byte of the frame is damaged: its payload reads as an entry of type 255.
    const QByteArray frame = hex("AB55 1400 01 00 00 08 01000000 23010000 AA55 0400 FF000000");
    const TemporaryLog file(logbytes::log(frame + canEntry()));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found[0].type, 255);
    QCOMPARE(found[0].skipped, quint64(16));
    QCOMPARE(found[1].type, 1);
    QCOMPARE(found[1].skipped, quint64(0));
}

void tst_LogFileReader::anEntryThatRunsPastTheEndIsSkipped()
{
    // Announces one byte more than the file has; the frame inside is found.
    const QByteArray frame = canEntry();
    const QByteArray tooLong = hex("AA55") + char(frame.size() + 5) + hex("00 FF000000");
    const TemporaryLog file(logbytes::log(tooLong + frame));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 1);
    QCOMPARE(found[0].type, 1);
    QCOMPARE(found[0].skipped, quint64(8));
}

void tst_LogFileReader::aGarbageLengthDoesNotStopTheReader()
{
    const TemporaryLog file(logbytes::log(hex("AA55 FFFF") + canEntry() + canEntry()));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found[0].skipped, quint64(4));
}

void tst_LogFileReader::aTruncatedLastEntryEndsTheLog()
{
    const QByteArray frame = canEntry();
    for (int size = 0; size < frame.size(); ++size) {
        const TemporaryLog file(logbytes::log(frame + frame.left(size)));
        LogFileReader reader(file.path());
        const QVector<Found> found = entriesOf(reader);
        QCOMPARE(found.size(), 1);
        QCOMPARE(found[0].skipped, quint64(0));
    }
}

void tst_LogFileReader::anEntryShorterThanItsHeadIsPassedOver()
{
    // A length of 2 makes six bytes.
    const TemporaryLog file(logbytes::log(hex("AA55 0200 FF00") + canEntry()));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 2);
    QVERIFY(!found[0].valid);
    QVERIFY(found[1].valid);
    QCOMPARE(found[1].skipped, quint64(0));
}

void tst_LogFileReader::fiveRemainingBytesWithASyncWordArePassedOver()
{
    const TemporaryLog file(logbytes::log(hex("AA55 0000 FF")));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 1);
    QVERIFY(!found[0].valid);
    QCOMPARE(reader.position(), qint64(headBytes + 4));
}

void tst_LogFileReader::fourRemainingBytesAreTheEnd()
{
    const TemporaryLog file(logbytes::log(hex("AA55 0000")));
    LogFileReader reader(file.path());
    QVERIFY(entriesOf(reader).isEmpty());
    QCOMPARE(reader.position(), qint64(headBytes));
}

void tst_LogFileReader::theLastEntryMayEndWithTheFile()
{
    const TemporaryLog file(logbytes::log(statusEntry(0)));
    LogFileReader reader(file.path());
    QCOMPARE(entriesOf(reader).size(), 1);
}

void tst_LogFileReader::entriesAcrossAChunkBorderAreWhole_data()
{
    QTest::addColumn<int>("before");
    for (int before = -1; before <= canEntry().size() + 1; ++before)
        QTest::addRow("%d bytes before it", before) << before;
}

void tst_LogFileReader::entriesAcrossAChunkBorderAreWhole()
{
    QFETCH(int, before);
    const TemporaryLog file(logbytes::log(filler(chunk - before) + canEntry() + statusEntry(3)));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found[found.size() - 2].type, 1);
    QCOMPARE(found.last().payloadBytes, std::size_t(3));
    for (const Found &entry : found)
        QCOMPARE(entry.skipped, quint64(0));
}

void tst_LogFileReader::theLongestEntryAtTheEndOfAChunkIsWhole()
{
    for (const int before : {1, 2, 3, 4, 8, 0x8000, 0x10003}) {
        const TemporaryLog file(
            logbytes::log(filler(chunk - before) + statusEntry(0xFFFB) + statusEntry(1)));
        LogFileReader reader(file.path());
        const QVector<Found> found = entriesOf(reader);
        QCOMPARE(found[found.size() - 2].payloadBytes, std::size_t(0xFFFB));
        QCOMPARE(found[found.size() - 2].skipped, quint64(0));
        QCOMPARE(found.last().payloadBytes, std::size_t(1));
    }
}

void tst_LogFileReader::noiseOverSeveralChunksIsSkipped()
{
    const int noise = 2 * chunk + 17;
    const TemporaryLog file(logbytes::log(QByteArray(noise, char(0x55)) + canEntry()));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    QCOMPARE(found.size(), 1);
    QCOMPARE(found[0].skipped, quint64(noise));
    QCOMPARE(found[0].skippedFrom, qint64(headBytes));
}

void tst_LogFileReader::positionAndPercentFollowTheEntries()
{
    // 16 bytes of head and 84 of entries.
    const TemporaryLog file(logbytes::log(statusEntry(26) + statusEntry(42)));
    LogFileReader reader(file.path());
    StdLogEntry entry;
    bool atEnd = false;
    QCOMPARE(reader.percent(), 16);
    reader.next(entry, atEnd);
    QCOMPARE(reader.position(), qint64(50));
    QCOMPARE(reader.percent(), 50);
    reader.next(entry, atEnd);
    QCOMPARE(reader.percent(), 100);
}

void tst_LogFileReader::theContinueCheckIsAskedOnceForEachChunk()
{
    const TemporaryLog file(logbytes::log(filler(3 * chunk)));
    LogFileReader reader(file.path());
    int asked = 0;
    reader.setContinueCheck([&asked] {
        ++asked;
        return true;
    });
    const int entries = entriesOf(reader).size();
    QVERIFY(entries > 200);
    QVERIFY2(asked >= 3 && asked <= 5, qPrintable(QString::number(asked)));
}

void tst_LogFileReader::aRefusedContinueCheckEndsTheLog()
{
    // Noise without an entry, so that only the check can end it early.
    const TemporaryLog file(logbytes::log(QByteArray(4 * chunk, '\0') + canEntry()));
    LogFileReader reader(file.path());
    int asked = 0;
    reader.setContinueCheck([&asked] { return ++asked < 2; });
    QVERIFY(entriesOf(reader).isEmpty());
    QCOMPARE(asked, 2);
    QVERIFY(reader.failure().isNull());
}

void tst_LogFileReader::aFileThatShrinksEndsTheLogWithAText()
{
    const TemporaryLog file(logbytes::log(filler(2 * chunk)));
    LogFileReader reader(file.path());
    StdLogEntry entry;
    bool atEnd = false;
    reader.next(entry, atEnd);
    QVERIFY(QFile::resize(file.path(), chunk));
    const QVector<Found> found = entriesOf(reader);
    QVERIFY(!found.isEmpty());
    QVERIFY(reader.failure().contains(QStringLiteral("shorter")));
}

void tst_LogFileReader::aFileThatGrowsEndsWhereItEndedAtFirst()
{
    const TemporaryLog file(logbytes::log(canEntry()));
    LogFileReader reader(file.path());
    QFile more(file.path());
    QVERIFY(more.open(QIODevice::Append));
    more.write(canEntry());
    more.close();
    QCOMPARE(entriesOf(reader).size(), 1);
    QCOMPARE(reader.percent(), 100);
    QVERIFY(reader.failure().isNull());
}

void tst_LogFileReader::aClosedReaderGivesNoEntry()
{
    const TemporaryLog file(logbytes::log(canEntry() + canEntry()));
    LogFileReader reader(file.path());
    StdLogEntry entry;
    bool atEnd = false;
    reader.next(entry, atEnd);
    reader.close();
    QVERIFY(!reader.isOpen());
    QVERIFY(entriesOf(reader).isEmpty());
}

void tst_LogFileReader::anyBytesAreReadToTheirEnd()
{
    // Sync words are frequent, so that many lengths and types are tried.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QByteArray noise;
    quint32 state = 1;
    for (int i = 0; i < 200'000; ++i) {
        state = state * 1664525 + 1013904223;
        const quint32 choice = state >> 24;
        noise += choice < 8 ? hex("AA55") : QByteArray(1, char(choice < 64 ? 0 : choice));
    }
    const TemporaryLog file(logbytes::log(noise));
    LogFileReader reader(file.path());
    const QVector<Found> found = entriesOf(reader);
    qInstallMessageHandler(nullptr);
    QVERIFY(found.size() > 10);
    QVERIFY(reader.fileSize() - reader.position() < 5);
}

QTEST_GUILESS_MAIN(tst_LogFileReader)
#include "tst_logfilereader.moc"
