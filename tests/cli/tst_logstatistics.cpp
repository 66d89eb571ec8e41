#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "cli/logstatistics.h"

#include <QtTest>

using namespace rawlog;

namespace {

constexpr quint32 second = 1000000;
constexpr quint32 minute = 60 * second;

void take(LogStatistics &statistics, const QByteArray &bytes)
{
    StdLogEntry entry;
    entry.rebuild(reinterpret_cast<const uint8_t *>(bytes.constData()), std::size_t(bytes.size()));
    statistics.take(entry);
}

QByteArray canAt(quint32 timestamp_us, quint8 channel = 0)
{
    return canEntry(timestamp_us, channel, {0x123, false, QByteArray(8, '\x55')});
}

LogStatistics statisticsOf(const QList<QByteArray> &entries)
{
    LogStatistics statistics;
    for (const QByteArray &entry : entries)
        take(statistics, entry);
    statistics.finish();
    return statistics;
}

} // namespace

class tst_LogStatistics : public QObject
{
    Q_OBJECT

private slots:
    void entriesAreCountedByTypeAndNumber();
    void bytesIncludeTheHeads();
    void firstAndLastTimeSpanAllBuses();
    void timesGoOnBehindAnOverflow();
    void busesThatAllGoBackAreBehindAnOverflow();
    void aBusThatWasSilentThroughAnOverflowIsPlacedInTime();
    void aBusWithoutTimestampsHasNoTimes();
    void silencesLongerThanTheLimitAreGapsOfTheirBus();
    void syncStampsHaveNoGaps();
    void theLogIsSilentOnlyWhenAllBusesAre();
    void anOlderEntryIsOutOfOrderAndMakesNoGap();
    void aFalseTimeIsLeftOut();
    void aLeapWithTheLastEntryCounts();
    void incompleteEntriesAreCountedAndHaveNoTime();
    void entriesWithoutAWholeHeadAreDamaged();
    void unknownTypesAreCounted();
    void countersAreTheLargestOfTheirProcessor();
    void temperaturesAreSigned();
    void utcStartIsTaken();
    void equalSyncStampsAreCounted();
    void theLongestSyncIntervalIsKept();
    void skippedStretchesAreListedUpToALimitAndAllCounted();
    void anEmptyLogHasNoTimes();
};

void tst_LogStatistics::entriesAreCountedByTypeAndNumber()
{
    const LogStatistics statistics =
        statisticsOf({canAt(1, 0), canAt(2, 3), canAt(3, 3), gpsEntry(4, {})});
    const auto streams = statistics.streams();
    QCOMPARE(streams.size(), std::size_t(3));
    QCOMPARE(streams.at({RLD_CAN, 0}).entries, quint64(1));
    QCOMPARE(streams.at({RLD_CAN, 3}).entries, quint64(2));
    QCOMPARE(streams.at({RLD_GPS, 0}).entries, quint64(1));
    QCOMPARE(statistics.total().entries, quint64(4));
}

void tst_LogStatistics::bytesIncludeTheHeads()
{
    QCOMPARE(statisticsOf({canAt(1), canAt(2)}).total().bytes, quint64(2 * 24));
}

void tst_LogStatistics::firstAndLastTimeSpanAllBuses()
{
    const LogStatistics statistics = statisticsOf({canAt(500, 0), canAt(400, 1), canAt(900, 0)});
    QCOMPARE(statistics.first_us(), std::optional<qint64>(400));
    QCOMPARE(statistics.last_us(), std::optional<qint64>(900));
    QCOMPARE(statistics.streams().at({RLD_CAN, 0}).first_us, std::optional<qint64>(500));
}

void tst_LogStatistics::timesGoOnBehindAnOverflow()
{
    const LogStatistics statistics = statisticsOf({canAt(0xFFFFFFFF), canAt(0)});
    QCOMPARE(statistics.last_us(), std::optional<qint64>(qint64(1) << 32));
    QCOMPARE(statistics.longestSilence().length_us, qint64(1));
}

// The fourth of the synthetic logs.
void tst_LogStatistics::busesThatAllGoBackAreBehindAnOverflow()
{
    const LogStatistics statistics =
        statisticsOf({canAt(291), canAt(8192), canAt(0x10000100, 3), canAt(0x10030E00),
                      canAt(0x20000E00, 3), canAt(0x31000), canAt(0x31000, 3)});
    QCOMPARE(statistics.last_us(), std::optional<qint64>((qint64(1) << 32) + 0x31000));
    QCOMPARE(statistics.total().outOfOrder, quint64(0));
    QCOMPARE(statistics.implausibleTimes(), quint64(0));
}

void tst_LogStatistics::aBusThatWasSilentThroughAnOverflowIsPlacedInTime()
{
    LogStatistics statistics;
    take(statistics, canAt(0, 7));
    qint64 time = 0;
    for (; time < 150 * qint64(minute); time += minute)
        take(statistics, syncStampEntry(quint32(time), 0));
    take(statistics, canAt(quint32(time), 7));
    statistics.finish();
    const StreamStatistics can = statistics.streams().at({RLD_CAN, 7});
    QCOMPARE(can.newest_us, std::optional<qint64>(time));
    QCOMPARE(can.longestSilence.length_us, time);
}

void tst_LogStatistics::aBusWithoutTimestampsHasNoTimes()
{
    const LogStatistics statistics = statisticsOf({d4modTedEntry(2, 1, "LOCAT=X$")});
    QVERIFY(!statistics.streams().at({RLD_D4MOD_TED, 2}).first_us);
    QVERIFY(!statistics.first_us());
}

void tst_LogStatistics::syncStampsHaveNoGaps()
{
    const StreamStatistics stamps = statisticsOf({syncStampEntry(0, 0), syncStampEntry(minute, 0)})
                                        .streams()
                                        .at({RLD_CYCLIC_TS, 0});
    QCOMPARE(stamps.gaps, quint64(0));
    QCOMPARE(stamps.longestSilence.length_us, qint64(minute));
}

void tst_LogStatistics::silencesLongerThanTheLimitAreGapsOfTheirBus()
{
    constexpr quint32 limit = 1500000;
    const StreamStatistics can =
        statisticsOf({canAt(0), canAt(limit), canAt(2 * limit + 1), canAt(5 * limit)})
            .streams()
            .at({RLD_CAN, 0});
    QCOMPARE(can.gaps, quint64(2));
    QCOMPARE(can.longestSilence.start_us, qint64(2 * limit + 1));
    QCOMPARE(can.longestSilence.length_us, qint64(3 * limit - 1));
}

void tst_LogStatistics::theLogIsSilentOnlyWhenAllBusesAre()
{
    const LogStatistics statistics = statisticsOf(
        {canAt(0, 0), canAt(3 * second, 1), canAt(5 * second, 0), canAt(6 * second, 1)});
    QCOMPARE(statistics.longestSilence().start_us, qint64(0));
    QCOMPARE(statistics.longestSilence().length_us, qint64(3 * second));
}

void tst_LogStatistics::anOlderEntryIsOutOfOrderAndMakesNoGap()
{
    const StreamStatistics can =
        statisticsOf({canAt(10 * second), canAt(5 * second), canAt(10 * second + 1)})
            .streams()
            .at({RLD_CAN, 0});
    QCOMPARE(can.outOfOrder, quint64(1));
    QCOMPARE(can.gaps, quint64(0));
    QCOMPARE(can.newest_us, std::optional<qint64>(10 * second + 1));
}

void tst_LogStatistics::aFalseTimeIsLeftOut()
{
    const LogStatistics statistics =
        statisticsOf({canAt(0), canAt(40 * minute), canAt(second), canAt(2 * second)});
    QCOMPARE(statistics.implausibleTimes(), quint64(1));
    QCOMPARE(statistics.last_us(), std::optional<qint64>(2 * second));
    QCOMPARE(statistics.total().entries, quint64(4));
}

void tst_LogStatistics::aLeapWithTheLastEntryCounts()
{
    const LogStatistics statistics = statisticsOf({canAt(0), canAt(40 * minute)});
    QCOMPARE(statistics.last_us(), std::optional<qint64>(40 * qint64(minute)));
    QCOMPARE(statistics.implausibleTimes(), quint64(0));
}

void tst_LogStatistics::incompleteEntriesAreCountedAndHaveNoTime()
{
    // Announces nine data bytes and holds eight.
    const QByteArray frame =
        timestampedEntry({RLD_CAN, 0, 0, 9}, 77, QByteArray(4, '\0') + QByteArray(8, '\1'));
    const LogStatistics statistics = statisticsOf({frame, canAt(100)});
    QCOMPARE(statistics.total().incomplete, quint64(1));
    QCOMPARE(statistics.first_us(), std::optional<qint64>(100));
}

void tst_LogStatistics::entriesWithoutAWholeHeadAreDamaged()
{
    const LogStatistics statistics = statisticsOf({QByteArrayLiteral("\xAA\x55\x03\0\1\0\0")});
    QCOMPARE(statistics.damagedEntries(), quint64(1));
    QCOMPARE(statistics.total().entries, quint64(0));
}

void tst_LogStatistics::unknownTypesAreCounted()
{
    QTest::ignoreMessage(
        QtCriticalMsg,
        "StdLogEntry::rebuild( uint8_t * data, size_t maxLen ) Landed in Default...");
    const LogStatistics statistics = statisticsOf({entryBytes({77, 0, 0, 0}, {}), canAt(1)});
    QCOMPARE(statistics.unknownEntries(), quint64(1));
    QCOMPARE(statistics.streams().at({77, 0}).entries, quint64(1));
}

void tst_LogStatistics::countersAreTheLargestOfTheirProcessor()
{
    const auto processors = statisticsOf({debugCountersEntry(1, 5, 2), debugCountersEntry(1, 3, 4),
                                          debugCountersEntry(2, 0, 1)})
                                .processors();
    QCOMPARE(processors.size(), std::size_t(2));
    QCOMPARE(processors.at(1).ringBufferOverflows, std::optional<quint32>(5));
    QCOMPARE(processors.at(1).restarts, std::optional<quint16>(4));
    QCOMPARE(processors.at(2).ringBufferOverflows, std::optional<quint32>(0));
    QVERIFY(!processors.at(2).minTemperature);
}

void tst_LogStatistics::temperaturesAreSigned()
{
    const auto withTemperature = [](quint32 time, qint8 temperature) {
        AgmSample sample;
        sample.temperature = temperature;
        return agmEntry(time, 3, sample);
    };
    const auto processors =
        statisticsOf({withTemperature(1, 20), withTemperature(2, -7), withTemperature(3, 35)})
            .processors();
    QCOMPARE(processors.at(3).minTemperature, std::optional<qint8>(qint8(-7)));
    QCOMPARE(processors.at(3).maxTemperature, std::optional<qint8>(qint8(35)));
}

void tst_LogStatistics::utcStartIsTaken()
{
    QCOMPARE(statisticsOf({utcStartEntry(1700000000000000)}).utcStart_us(),
             std::optional<quint64>(1700000000000000));
    QVERIFY(!statisticsOf({canAt(1)}).utcStart_us());
}

void tst_LogStatistics::equalSyncStampsAreCounted()
{
    const auto processors = statisticsOf({syncStampEntry(second, 0), syncStampEntry(second, 1),
                                          syncStampEntry(second, 1)})
                                .processors();
    QCOMPARE(processors.at(0).equalSyncStamps, quint64(0));
    QCOMPARE(processors.at(1).equalSyncStamps, quint64(1));
}

void tst_LogStatistics::theLongestSyncIntervalIsKept()
{
    const auto processors = statisticsOf({syncStampEntry(0, 0), syncStampEntry(9 * minute, 0),
                                          syncStampEntry(10 * minute, 0)})
                                .processors();
    QCOMPARE(processors.at(0).longestSyncInterval, qint64(9 * minute));
    QVERIFY(processors.at(0).longestSyncInterval > LogStatistics::syncLimit_us);
}

void tst_LogStatistics::skippedStretchesAreListedUpToALimitAndAllCounted()
{
    LogStatistics statistics;
    const int count = LogStatistics::maxListedStretches + 5;
    for (int i = 0; i < count; ++i)
        statistics.takeSkipped(100 * i, 2);
    statistics.takeSkipped(7, 0);
    QCOMPARE(statistics.skippedStretches().size(), int(LogStatistics::maxListedStretches));
    QCOMPARE(statistics.skippedStretches().at(1).position, qint64(100));
    QCOMPARE(statistics.skippedStretchCount(), quint64(count));
    QCOMPARE(statistics.skippedBytes(), quint64(2 * count));
}

void tst_LogStatistics::anEmptyLogHasNoTimes()
{
    const LogStatistics statistics = statisticsOf({});
    QVERIFY(!statistics.first_us());
    QVERIFY(!statistics.last_us());
    QVERIFY(statistics.streams().empty());
}

QTEST_GUILESS_MAIN(tst_LogStatistics)
#include "tst_logstatistics.moc"
