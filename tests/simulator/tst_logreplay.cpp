#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/rawlogfile.h"
#include "config/terminalstruct.h"
#include "simulator/logreplay.h"

#include <QTemporaryDir>
#include <QTest>

using simulator::LogReplay;

namespace {

constexpr qint64 second_us = 1'000'000;

// A folder with one log.
class Log
{
public:
    explicit Log(const QByteArray &entries)
    {
        RawLogFile file(path());
        TerminalStruct configuration;
        configuration.gps.gps_enabled = 1;
        m_isWritten = file.begin(configuration) && file.add(entries) && file.finish();
    }
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("log.rld")); }
    [[nodiscard]] bool isWritten() const { return m_isWritten; }

private:
    QTemporaryDir m_folder;
    bool m_isWritten;
};

QByteArray canAt(quint32 timestamp_us)
{
    return rawlog::canEntry(timestamp_us, 2, {0x1ABCDEF, true, QByteArray("12345678")});
}

} // namespace

class tst_LogReplay : public QObject
{
    Q_OBJECT

private slots:
    void everyEntryComesAsItWasRecorded();
    void entriesComeInTheirOwnPace();
    void theClockMayOverflow();
    void aJumpOfTheClockIsNoPause();
    void theLogBeginsAnewAtItsEnd();
    void aLogWithoutEntriesGivesNothing();
    void aMissingLogIsNamed();
};

void tst_LogReplay::everyEntryComesAsItWasRecorded()
{
    QByteArray entries = rawlog::utcStartEntry(1'700'000'000'000'000) + canAt(5)
                         + rawlog::agmEntry(6, 1, {}) + rawlog::gpsEntry(7, {})
                         + rawlog::d4modTedEntry(3, 1, "text") + rawlog::syncStampEntry(8, 2)
                         + rawlog::entryBytes({77, 1, 2, 3}, "unknown");
    const Log log(entries);
    QVERIFY(log.isWritten());
    LogReplay replay(log.path());
    QVERIFY(replay.configuration());
    QCOMPARE(int(replay.configuration()->gps.gps_enabled), 1);
    replay.restart(0);
    QCOMPARE(replay.entriesUntil(3).left(entries.size()).toHex(' '), entries.toHex(' '));
}

void tst_LogReplay::entriesComeInTheirOwnPace()
{
    const Log log(canAt(1000) + canAt(1000) + canAt(501'000) + canAt(900) + canAt(1'000'000));
    LogReplay replay(log.path());
    replay.restart(second_us);
    QCOMPARE(replay.entriesUntil(second_us), canAt(1000) + canAt(1000));
    QCOMPARE(replay.entriesUntil(second_us + 499'999), QByteArray());
    QCOMPARE(replay.entriesUntil(second_us + 500'000), canAt(501'000) + canAt(900));
    QCOMPARE(replay.entriesUntil(second_us + 998'999), QByteArray());
}

void tst_LogReplay::theClockMayOverflow()
{
    const Log log(canAt(0xFFFFFF00) + canAt(0x00000100));
    LogReplay replay(log.path());
    replay.restart(0);
    QCOMPARE(replay.entriesUntil(0x1FF), canAt(0xFFFFFF00));
    QCOMPARE(replay.entriesUntil(0x200).left(24), canAt(0x00000100));
}

void tst_LogReplay::aJumpOfTheClockIsNoPause()
{
    const Log log(canAt(0) + canAt(3'000'000'000) + canAt(60'000'000));
    LogReplay replay(log.path());
    replay.restart(0);
    const QByteArray expected = canAt(0) + canAt(3'000'000'000) + canAt(60'000'000);
    QCOMPARE(replay.entriesUntil(0).left(expected.size()), expected);
}

void tst_LogReplay::theLogBeginsAnewAtItsEnd()
{
    const Log log(canAt(10) + canAt(20) + canAt(30));
    LogReplay replay(log.path());
    replay.restart(0);
    const QByteArray once = canAt(10) + canAt(20) + canAt(30);
    // A pass takes 20 us, and the next follows 50 ms later.
    QCOMPARE(replay.entriesUntil(50'019), once);
    QCOMPARE(replay.entriesUntil(50'039), canAt(10) + canAt(20));
}

void tst_LogReplay::aLogWithoutEntriesGivesNothing()
{
    const Log log({});
    LogReplay replay(log.path());
    replay.restart(0);
    QCOMPARE(replay.entriesUntil(second_us), QByteArray());
}

void tst_LogReplay::aMissingLogIsNamed()
{
    const LogReplay replay(QStringLiteral("/nowhere/log.rld"));
    QVERIFY(!replay.configuration());
    QVERIFY(replay.failure().contains(QStringLiteral("log.rld")));
}

QTEST_GUILESS_MAIN(tst_LogReplay)
#include "tst_logreplay.moc"
