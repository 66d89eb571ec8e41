#include "MDF4Conversion/rawlog/logfilereader.h"
#include "MDF4Conversion/rawlog/rawlogwriter.h"
#include "MDF4Conversion/rawlog/syntheticlogs.h"
#include "tests/mdf4conversion/rawlog/logbytes.h"

#include <QBuffer>
#include <QtTest>

namespace {

using Stamp = QPair<quint32, int>; // timestamp in us, number

struct Entries
{
    QVector<Stamp> frames;
    QVector<Stamp> syncStamps;
    QVector<int> framesAhead; // of each sync stamp
};

Entries entriesOf(int run)
{
    const logbytes::TemporaryLog file(logbytes::log(syntheticlogs::entries(run)));
    LogFileReader reader(file.path());
    Entries found;
    StdLogEntry entry;
    bool atEnd = false;
    for (reader.next(entry, atEnd); !atEnd; reader.next(entry, atEnd)) {
        if (entry.type == rawlog::RLD_CAN) {
            found.frames += {entry.timestamp, entry.number};
        } else {
            found.syncStamps += {entry.timestamp, entry.number};
            found.framesAhead += found.frames.size();
        }
    }
    return found;
}

} // namespace

class tst_SyntheticLogs : public QObject
{
    Q_OBJECT

private slots:
    void aFileIsNamedByItsRun();
    void runsOneToThreeHoldTheSameFrames_data();
    void runsOneToThreeHoldTheSameFrames();
    void runFourStartsWithoutAnOverflow();
    void theLastTwoFramesAreOfOneTime_data();
    void theLastTwoFramesAreOfOneTime();
    void everyFrameIsAnEntryOf24Bytes();
    void runsOneAndFourHaveNoSyncStamps();
    void runTwoHasSyncStampsAcrossTheOverflowAheadOfChannelThree();
    void runThreeHasItsFirstSyncStampsBehindChannelThree();
    void allChannelsHaveTheSameSettings();
    void theSignalIsTheOneOfTheFrames();
    void aFileIsConfigurationAndEntries();
    void aMissingFolderIsNamed();
};

void tst_SyntheticLogs::aFileIsNamedByItsRun()
{
    QCOMPARE(syntheticlogs::fileName(3), QStringLiteral("SyntheticLog_Simulation_3.rld"));
}

void tst_SyntheticLogs::runsOneToThreeHoldTheSameFrames_data()
{
    QTest::addColumn<int>("run");
    for (const int run : {1, 2, 3})
        QTest::addRow("run %d", run) << run;
}

void tst_SyntheticLogs::runsOneToThreeHoldTheSameFrames()
{
    QFETCH(int, run);
    const QVector<Stamp> frames = {{0xE0000123, 0}, {8192, 0},    {256, 3},    {0x30E00, 0},
                                   {3584, 3},       {0x31000, 0}, {0x31000, 3}};
    QCOMPARE(entriesOf(run).frames, frames);
}

void tst_SyntheticLogs::runFourStartsWithoutAnOverflow()
{
    const QVector<Stamp> frames = {{291, 0},        {8192, 0},    {0x10000100, 3}, {0x10030E00, 0},
                                   {0x20000E00, 3}, {0x31000, 0}, {0x31000, 3}};
    QCOMPARE(entriesOf(4).frames, frames);
}

void tst_SyntheticLogs::theLastTwoFramesAreOfOneTime_data()
{
    QTest::addColumn<int>("run");
    for (const int run : {1, 2, 3, 4})
        QTest::addRow("run %d", run) << run;
}

void tst_SyntheticLogs::theLastTwoFramesAreOfOneTime()
{
    QFETCH(int, run);
    const QVector<Stamp> frames = entriesOf(run).frames;
    QCOMPARE(frames[5].first, frames[6].first);
    QVERIFY(frames[5].second != frames[6].second);
}

void tst_SyntheticLogs::everyFrameIsAnEntryOf24Bytes()
{
    const QByteArray entries = syntheticlogs::entries(1);
    QCOMPARE(entries.size(), 7 * 24);
    QCOMPARE(entries.left(16).toHex(), QByteArray("aa55140001000008230100e023010000"));
}

void tst_SyntheticLogs::runsOneAndFourHaveNoSyncStamps()
{
    QVERIFY(entriesOf(1).syncStamps.isEmpty());
    QVERIFY(entriesOf(4).syncStamps.isEmpty());
}

void tst_SyntheticLogs::runTwoHasSyncStampsAcrossTheOverflowAheadOfChannelThree()
{
    constexpr int framesAheadOfChannelThree = 2;
    constexpr quint32 firstOfChannelThree = 256;
    const Entries found = entriesOf(2);
    for (const int processor : {0, 1}) {
        QVector<quint32> stamps;
        for (const Stamp &stamp : found.syncStamps) {
            if (stamp.second == processor)
                stamps += stamp.first;
        }
        QVERIFY(stamps.size() >= 2);
        for (int i = 1; i < stamps.size(); ++i)
            QVERIFY2(stamps[i] - stamps[i - 1] <= 0x20000000U, "none is missing");
        QVERIFY(stamps.first() > 0xD0000000U);
        QVERIFY(stamps.last() < firstOfChannelThree);
    }
    for (const int ahead : found.framesAhead)
        QVERIFY(ahead <= framesAheadOfChannelThree);
}

void tst_SyntheticLogs::runThreeHasItsFirstSyncStampsBehindChannelThree()
{
    const Entries found = entriesOf(3);
    QVERIFY(found.syncStamps.size() >= 4);
    QCOMPARE(found.framesAhead.first(), 3);
}

void tst_SyntheticLogs::allChannelsHaveTheSameSettings()
{
    const auto configuration = syntheticlogs::configuration();
    QCOMPARE(configuration->name, QStringLiteral("Synthetic"));
    for (const TerminalCanCfg &channel : configuration->can) {
        QVERIFY(channel == configuration->can[0]);
        QCOMPARE(channel.dbc_signals.size(), 1);
        QCOMPARE(int(channel.enabled), 1);
    }
}

void tst_SyntheticLogs::theSignalIsTheOneOfTheFrames()
{
    const auto configuration = syntheticlogs::configuration();
    const StreamingClass_DBC_Signal &signal = *configuration->can[3].dbc_signals.at(0);
    QCOMPARE(signal.name, QStringLiteral("Test-Signal"));
    QCOMPARE(signal.unit, QStringLiteral("unit"));
    QCOMPARE(signal.msg_id, 291U);
    QCOMPARE(int(signal.extended_id), 0);
    QCOMPARE(int(signal.dlc), 8);
    QCOMPARE(signal.factor, 1.0);
    QCOMPARE(signal.selection_flags & StreamingClass_DBC_Signal::recordFlag, 1);
}

void tst_SyntheticLogs::aFileIsConfigurationAndEntries()
{
    const QTemporaryDir folder;
    for (int run = 1; run <= syntheticlogs::runCount; ++run) {
        QVERIFY(syntheticlogs::write(run, folder.path()).isNull());
        QBuffer expected;
        expected.open(QIODevice::WriteOnly);
        RawLogWriter writer(expected);
        writer.writeConfiguration(*syntheticlogs::configuration());
        writer.writeEntry(syntheticlogs::entries(run));
        QFile file(folder.filePath(syntheticlogs::fileName(run)));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), expected.data());
    }
}

void tst_SyntheticLogs::aMissingFolderIsNamed()
{
    const QTemporaryDir folder;
    const QString failure = syntheticlogs::write(1, folder.filePath(QStringLiteral("none")));
    QVERIFY(failure.contains(QStringLiteral("SyntheticLog_Simulation_1.rld")));
}

QTEST_GUILESS_MAIN(tst_SyntheticLogs)
#include "tst_syntheticlogs.moc"
