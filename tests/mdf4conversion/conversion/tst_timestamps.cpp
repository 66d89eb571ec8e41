#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QTest>

namespace {

constexpr quint32 messageId = 0x123;
constexpr quint8 processor = 2;
constexpr quint64 wrap = quint64(1) << 32;

const QString initialText = QStringLiteral("Initial timestamp adjustment applied");
const QString silenceText = QStringLiteral("Timestamp adjustment applied");
const QString missingStampsText = QStringLiteral("One or more cyclic sync-timestamps are missing.");

QByteArray frame(quint32 timestamp_us, quint8 channel)
{
    return testlog::can(timestamp_us, channel, messageId, "0000000000000000");
}

QByteArray stamp(quint32 timestamp_us, quint8 number = processor)
{
    return rawlog::syncStampEntry(timestamp_us, number);
}

// Every CAN channel has one signal, called S and the channel's number.
class Log : public ConversionHarness
{
public:
    Log()
    {
        for (size_t i = 0; i < configuration.can.size(); ++i)
            testlog::addSignal(configuration.can[i], QStringLiteral("S%1").arg(i), messageId, 0, 8);
    }
};

// Times of the records of a channel on the logger's clock.
QVector<quint64> clockTimes(const ConversionResult &result, int channel)
{
    const int group = result.groupNames().indexOf(QStringLiteral("CAN_%1_DBC").arg(channel));
    QVector<quint64> times;
    if (group >= 0)
        times = result.times(group);
    for (quint64 &time : times)
        time += result.summary.startOffset_us;
    return times;
}

} // namespace

class tst_Timestamps : public QObject
{
    Q_OBJECT

private slots:
    void anEqualTimestampIsNoOverflowAndAnIntervalOf0();
    void anEqualTimestampIsReportedAndKept();
    void aSmallerTimestampIsAnOverflow();
    void theOverflowIsToldWithBothTimestampsTypeAndNumber();
    void eachOverflowAddsOneToTheHighWord();
    void eachChannelHasItsOwnLastTimestamp();

    void aFirstSampleBehindTheOverflowOfAnotherGetsTheInitialAdjustment();
    void theInitialAdjustmentNeedsMoreThanTheForwardLimit_data();
    void theInitialAdjustmentNeedsMoreThanTheForwardLimit();
    void theInitialAdjustmentIsMadeOnAChannelsFirstSampleOnly();
    void theInitialAdjustmentIsNotMadeOnceAProcessorHasAStamp();
    void aProcessorAfterTheInitialAdjustmentStartsBehindTheOverflow();
    void everyLaterProcessorStartsBehindTheOverflow();
    void withoutSyncStampsOnlyTheOverflowRuleApplies();

    void aFirstStampOf0StartsBehindTheOverflow();
    void aSmallerStampIsAnOverflowOfItsProcessor();
    void aSyncStampIsToldWithItsLowWord();
    void equalStampsOfOneProcessorAreAnErrorAndTheSecondIsIgnored();
    void equalStampsOfTwoProcessorsAreLegal();

    void aTimestampIsPlausibleUpToTheLimits_data();
    void aTimestampIsPlausibleUpToTheLimits();
    void aMissedOverflowIsMadeUpFromTheSyncStamps();
    void anOverflowThatHidesAMissedOneIsRaisedToTheSyncStamps();
    void aTimestampBelowTheFastestStampGoesOneFurther();
    void theSlowestProcessorSetsTheBackLimit();
    void theFastestProcessorSetsTheForwardLimit();

    void aSingleStampOfAProcessorIsComplete();
    void stampsAreCompleteUpToTheLargestInterval_data();
    void stampsAreCompleteUpToTheLargestInterval();
    void missingStampsOfTwoProcessorsAreToldOnce();

    void theFirstSampleOfTheLogIsToldOnce();
    void aRecordThatLacksDataIsNotTheFirstSampleOfTheLog();
    void theSmallestTimestampIsTakenOffAllRecords();
    void theIntervalsOfASignalAreTold();
};

void tst_Timestamps::anEqualTimestampIsNoOverflowAndAnIntervalOf0()
{
    Log log;
    log.add(frame(1000, 0) + frame(1000, 0));
    const ConversionResult result = log.convert();
    QVERIFY(result.statuses.filter(QStringLiteral("overflow")).isEmpty());
    QCOMPARE(clockTimes(result, 0), (QVector<quint64>{1000, 1000}));
    QCOMPARE(result.status(QStringLiteral("Signal:S0")),
             QStringLiteral("Signal:S0 Intervall min:0 avg:0.00 max:0 [uSec]"));
}

void tst_Timestamps::anEqualTimestampIsReportedAndKept()
{
    Log log;
    log.add(frame(1000, 0) + frame(1500, 0) + frame(1500, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors,
             QStringList(QStringLiteral("Timestamp-error, current-ts smaller or equal than last-ts "
                                        "(ChannelGroup:CAN_0_DBC) (currentTS 1500 lastTS 1500")));
    QCOMPARE(result.times(0), (QVector<quint64>{0, 500, 500}));
}

void tst_Timestamps::aSmallerTimestampIsAnOverflow()
{
    Log log;
    log.add(frame(0xFFFFFF00, 0) + frame(0x100, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(clockTimes(result, 0), (QVector<quint64>{0xFFFFFF00, wrap + 0x100}));
    QVERIFY(result.statuses.contains(QStringLiteral("TS-Overflow for S0 handled.")));
    QCOMPARE(result.errors, QStringList());
}

void tst_Timestamps::theOverflowIsToldWithBothTimestampsTypeAndNumber()
{
    Log log;
    log.add(frame(0xFFFFFF00, 4) + frame(0x100, 4));
    const ConversionResult result = log.convert();
    QCOMPARE(result.status(QStringLiteral("overflow-adjustment")),
             QStringLiteral("-&gt;(timestamp_now &lt; timestamp_last), apply 32-Bit "
                            "overflow-adjustment (now:256 last:4294967040), adjusted:4294967552. "
                            "ReqType: 1, ReqNr: 4"));
}

void tst_Timestamps::eachOverflowAddsOneToTheHighWord()
{
    Log log;
    log.add(frame(0xF0000000, 0) + frame(0x10, 0) + frame(0xF0000000, 0) + frame(0x10, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(clockTimes(result, 0),
             (QVector<quint64>{0xF0000000, wrap + 0x10, wrap + 0xF0000000, 2 * wrap + 0x10}));
}

void tst_Timestamps::eachChannelHasItsOwnLastTimestamp()
{
    Log log;
    log.add(frame(0x31000, 0) + frame(0x30000, 3) + frame(0x31000, 3));
    const ConversionResult result = log.convert();
    QCOMPARE(clockTimes(result, 3), (QVector<quint64>{0x30000, 0x31000}));
    QVERIFY(result.statuses.filter(QStringLiteral("TS-Overflow")).isEmpty());
}

void tst_Timestamps::aFirstSampleBehindTheOverflowOfAnotherGetsTheInitialAdjustment()
{
    Log log;
    log.add(frame(0xFFFFFF00, 0) + frame(0x100, 3));
    const ConversionResult result = log.convert();
    QCOMPARE(result.status(initialText),
             QStringLiteral("Initial timestamp adjustment applied, difference of 4294966784 "
                            "uSeconds at logstart between signal-timestamps. Signals were captured "
                            "during 32-Bit timestamp-overflow, timestamp 256 was adjusted to "
                            "4294967552.)"));
    QVERIFY(result.statuses.contains(QStringLiteral("TS-Overflow for S3 handled.")));
    QCOMPARE(clockTimes(result, 3), QVector<quint64>{wrap + 0x100});
}

void tst_Timestamps::theInitialAdjustmentNeedsMoreThanTheForwardLimit_data()
{
    QTest::addColumn<quint32>("first");
    QTest::addColumn<quint32>("second");
    QTest::addColumn<bool>("adjusted");
    QTest::newRow("behind by the limit") << 0x60000000U << 0x10000000U << false;
    QTest::newRow("behind by one more") << 0x60000000U << 0x0FFFFFFFU << true;
    QTest::newRow("ahead by the limit") << 0x10000000U << 0x60000000U << false;
    QTest::newRow("ahead by one more") << 0x10000000U << 0x60000001U << true;
}

void tst_Timestamps::theInitialAdjustmentNeedsMoreThanTheForwardLimit()
{
    QFETCH(quint32, first);
    QFETCH(quint32, second);
    QFETCH(bool, adjusted);
    Log log;
    log.add(frame(first, 0) + frame(second, 3));
    const ConversionResult result = log.convert();
    QCOMPARE(!result.status(initialText).isEmpty(), adjusted);
    QCOMPARE(clockTimes(result, 3), QVector<quint64>{second + (adjusted ? wrap : 0)});
}

void tst_Timestamps::theInitialAdjustmentIsMadeOnAChannelsFirstSampleOnly()
{
    Log log;
    log.add(frame(0x100, 0) + frame(0x200, 3) + frame(0x60000000, 3) + frame(0x70000000, 0));
    const ConversionResult result = log.convert();
    QVERIFY(result.status(initialText).isEmpty());
    QCOMPARE(clockTimes(result, 3), (QVector<quint64>{0x200, 0x60000000}));
    QCOMPARE(clockTimes(result, 0), (QVector<quint64>{0x100, 0x70000000}));
}

void tst_Timestamps::theInitialAdjustmentIsNotMadeOnceAProcessorHasAStamp()
{
    Log log;
    log.add(frame(0xFFFFFF00, 0) + stamp(0x80) + frame(0x100, 3));
    const ConversionResult result = log.convert();
    QVERIFY(result.status(initialText).isEmpty());
    QCOMPARE(clockTimes(result, 3), QVector<quint64>{0x100});
}

void tst_Timestamps::aProcessorAfterTheInitialAdjustmentStartsBehindTheOverflow()
{
    Log log;
    log.add(frame(0xFFFFFF00, 0) + frame(0x100, 3) + stamp(0x200) + frame(0x300, 5));
    const ConversionResult result = log.convert();
    QCOMPARE(clockTimes(result, 5), QVector<quint64>{wrap + 0x300});
}

void tst_Timestamps::everyLaterProcessorStartsBehindTheOverflow()
{
    Log log;
    log.add(frame(0xFFFFFF00, 0) + frame(0x100, 3) + stamp(0x200, 1) + stamp(0x280, 2));
    // A slowest processor before the overflow would leave this one where it is.
    log.add(frame(0x300, 5));
    const ConversionResult result = log.convert();
    QCOMPARE(clockTimes(result, 5), QVector<quint64>{wrap + 0x300});
}

void tst_Timestamps::withoutSyncStampsOnlyTheOverflowRuleApplies()
{
    Log log;
    log.add(frame(0x10000000, 0) + frame(0x38000000, 0) + frame(0x20000000, 0));
    const ConversionResult result = log.convert();
    QVERIFY(result.status(silenceText).isEmpty());
    QCOMPARE(clockTimes(result, 0), (QVector<quint64>{0x10000000, 0x38000000, wrap + 0x20000000}));
}

void tst_Timestamps::aFirstStampOf0StartsBehindTheOverflow()
{
    Log log;
    log.add(stamp(0) + frame(0x10, 0));
    QCOMPARE(clockTimes(log.convert(), 0), QVector<quint64>{wrap + 0x10});
}

void tst_Timestamps::aSmallerStampIsAnOverflowOfItsProcessor()
{
    Log log;
    log.add(stamp(0xF0000000) + stamp(0x10000000) + frame(0x10000010, 0));
    QCOMPARE(clockTimes(log.convert(), 0), QVector<quint64>{wrap + 0x10000010});
}

void tst_Timestamps::aSyncStampIsToldWithItsLowWord()
{
    Log log;
    log.add(stamp(0));
    QCOMPARE(log.convert().status(QStringLiteral("Cyclic")),
             QStringLiteral("Cyclic Timestamp event - (timestamp & TS_32BIT_MSK_32_LOW_BITS): 0 - "
                            "timestamp from log: 0"));
}

void tst_Timestamps::equalStampsOfOneProcessorAreAnErrorAndTheSecondIsIgnored()
{
    Log log;
    log.add(stamp(5000) + stamp(5000) + frame(6000, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors.size(), 1);
    QVERIFY(result.errors.first().startsWith(
        QStringLiteral("Equal-Timestamps detected for Cyclic-CPU-TS Type msg.")));
    QVERIFY(result.summary.written);
    QCOMPARE(clockTimes(result, 0), QVector<quint64>{6000});
}

void tst_Timestamps::equalStampsOfTwoProcessorsAreLegal()
{
    Log log;
    log.add(stamp(5000, 0) + stamp(5000, 1) + frame(6000, 0));
    QCOMPARE(log.convert().errors, QStringList());
}

void tst_Timestamps::aTimestampIsPlausibleUpToTheLimits_data()
{
    QTest::addColumn<quint32>("stampTime");
    QTest::addColumn<quint32>("now");
    QTest::addColumn<quint64>("expected");
    QTest::addColumn<bool>("told");
    QTest::newRow("behind by the back limit")
        << 0x40000000U << 0x10000000U << quint64(0x10000000) << false;
    QTest::newRow("behind by one more") << 0x40000000U << 0x0FFFFFFFU << wrap + 0x0FFFFFFF << true;
    QTest::newRow("stamp at the back limit") << 0x30000000U << 0U << quint64(0) << false;
    QTest::newRow("stamp above the back limit") << 0x30000001U << 0U << wrap << true;
    QTest::newRow("ahead by the forward limit")
        << 0x100U << 0x50000100U << quint64(0x50000100) << false;
    QTest::newRow("ahead by one more") << 0x100U << 0x50000101U << quint64(0x50000101) << true;
}

void tst_Timestamps::aTimestampIsPlausibleUpToTheLimits()
{
    QFETCH(quint32, stampTime);
    QFETCH(quint32, now);
    QFETCH(quint64, expected);
    QFETCH(bool, told);
    Log log;
    log.add(stamp(stampTime) + frame(now, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(clockTimes(result, 0), QVector<quint64>{expected});
    const QString text =
        QStringLiteral("Timestamp adjustment applied, signal not captured for a long period, "
                       "adjustment made based on sync-timestamps. Timestamp adjusted from %1 to "
                       "%2.")
            .arg(now)
            .arg(expected);
    QCOMPARE(result.status(silenceText), told ? text : QString());
    QCOMPARE(result.statuses.contains(QStringLiteral("TS-Overflow for S0 handled.")), told);
}

void tst_Timestamps::aMissedOverflowIsMadeUpFromTheSyncStamps()
{
    Log log;
    log.add(frame(0x10000000, 0));
    for (const quint32 time : {0x20000000U, 0x40000000U, 0x60000000U, 0x80000000U, 0xA0000000U,
                               0xC0000000U, 0xE0000000U, 0x00000001U, 0x20000000U, 0x30000000U})
        log.add(stamp(time));
    log.add(frame(0x38000000, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(clockTimes(result, 0), (QVector<quint64>{0x10000000, wrap + 0x38000000}));
    QCOMPARE(result.status(silenceText),
             QStringLiteral("Timestamp adjustment applied, signal not captured for a long period, "
                            "adjustment made based on sync-timestamps. Timestamp adjusted from "
                            "939524096 to 5234491392."));
}

void tst_Timestamps::anOverflowThatHidesAMissedOneIsRaisedToTheSyncStamps()
{
    Log log;
    log.add(frame(0x30000000, 0) + stamp(0x40000000) + stamp(0x10000000) + stamp(0x08000000));
    log.add(frame(0x20000000, 0));
    const ConversionResult result = log.convert();
    QVERIFY(!result.status(QStringLiteral("overflow-adjustment")).isEmpty());
    QCOMPARE(clockTimes(result, 0), (QVector<quint64>{0x30000000, 2 * wrap + 0x20000000}));
}

void tst_Timestamps::aTimestampBelowTheFastestStampGoesOneFurther()
{
    Log log;
    log.add(stamp(0xF0000000) + stamp(0x40000000) + frame(0x3FFFFFFF, 0));
    QCOMPARE(clockTimes(log.convert(), 0), QVector<quint64>{2 * wrap + 0x3FFFFFFF});
}

void tst_Timestamps::theSlowestProcessorSetsTheBackLimit()
{
    Log log;
    log.add(stamp(0x20000000, 0) + stamp(0x40000000, 1) + frame(0x100, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(clockTimes(result, 0), QVector<quint64>{0x100});
    QVERIFY(result.status(silenceText).isEmpty());
}

void tst_Timestamps::theFastestProcessorSetsTheForwardLimit()
{
    Log log;
    log.add(stamp(0x100, 0) + stamp(0x20000000, 1) + frame(0x60000000, 0));
    QVERIFY(log.convert().status(silenceText).isEmpty());
}

void tst_Timestamps::aSingleStampOfAProcessorIsComplete()
{
    Log log;
    log.add(stamp(0x70000000));
    QCOMPARE(log.convert().warnings, QStringList());
}

void tst_Timestamps::stampsAreCompleteUpToTheLargestInterval_data()
{
    QTest::addColumn<QVector<quint32>>("stamps");
    QTest::addColumn<bool>("complete");
    QTest::newRow("none") << QVector<quint32>{} << true;
    QTest::newRow("first two at the limit") << QVector<quint32>{0x10, 0x20000010} << true;
    QTest::newRow("first two one further") << QVector<quint32>{0x10, 0x20000011} << false;
    QTest::newRow("first two at the limit over a carry")
        << QVector<quint32>{0xF0000000, 0x10000000} << true;
    QTest::newRow("first two one further over a carry")
        << QVector<quint32>{0xF0000000, 0x10000001} << false;
    QTest::newRow("later pair at the limit") << QVector<quint32>{0x10, 0x20, 0x20000020} << true;
    QTest::newRow("later pair one further") << QVector<quint32>{0x10, 0x20, 0x20000021} << false;
    QTest::newRow("later pair over a carry")
        << QVector<quint32>{0xE0000000, 0xF8000000, 0x10000000} << true;
    QTest::newRow("gap in the middle") << QVector<quint32>{0x10, 0x30000000, 0x30000010} << false;
}

void tst_Timestamps::stampsAreCompleteUpToTheLargestInterval()
{
    QFETCH(QVector<quint32>, stamps);
    QFETCH(bool, complete);
    Log log;
    for (const quint32 time : stamps)
        log.add(stamp(time));
    QCOMPARE(log.convert().warnings, complete ? QStringList() : QStringList(missingStampsText));
}

void tst_Timestamps::missingStampsOfTwoProcessorsAreToldOnce()
{
    Log log;
    log.add(stamp(0x10, 0) + stamp(0x20, 1) + stamp(0x70000000, 0) + stamp(0x70000010, 1));
    QCOMPARE(log.convert().warnings, QStringList(missingStampsText));
}

void tst_Timestamps::theFirstSampleOfTheLogIsToldOnce()
{
    Log log;
    log.add(frame(900, 3) + frame(1000, 0));
    QCOMPARE(log.convert().status(QStringLiteral("First Extracted")),
             QStringLiteral("First Extracted Timestamp from Signal: CAN_3_DBC-S3 - 900 usec"));
}

void tst_Timestamps::aRecordThatLacksDataIsNotTheFirstSampleOfTheLog()
{
    Log log;
    TerminalCanCfg &can = log.configuration.can[0];
    testlog::addSignal(can, QStringLiteral("Long"), 0x77, 0, 8);
    testlog::addSignal(can, QStringLiteral("Short"), 0x77, 8, 8).dlc = 6;
    log.add(testlog::can(0x60000000, 0, 0x77, "000000000000") + frame(0x60000100, 3));
    const ConversionResult result = log.convert();
    QCOMPARE(result.status(QStringLiteral("First Extracted")),
             QStringLiteral("First Extracted Timestamp from Signal: CAN_3_DBC-S3 - %1 usec")
                 .arg(0x60000100));
    QVERIFY(result.status(QStringLiteral("Initial timestamp adjustment")).isEmpty());
}

void tst_Timestamps::theSmallestTimestampIsTakenOffAllRecords()
{
    Log log;
    log.add(frame(1000, 0) + frame(900, 3) + frame(1700, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(result.status(QStringLiteral("smallest")),
             QStringLiteral("smallest timestamp value will be used for start-offset compensation. "
                            "900 [uSec] will be Subtracted from all Records."));
    QCOMPARE(result.times(0), (QVector<quint64>{100, 800}));
    QCOMPARE(result.times(1), QVector<quint64>{0});
}

void tst_Timestamps::theIntervalsOfASignalAreTold()
{
    Log log;
    log.add(frame(1000, 0) + frame(1500, 0) + frame(1833, 0) + frame(3500, 0));
    QCOMPARE(log.convert().status(QStringLiteral("Signal:S0")),
             QStringLiteral("Signal:S0 Intervall min:333 avg:833.33 max:1667 [uSec]"));
}

QTEST_GUILESS_MAIN(tst_Timestamps)
#include "tst_timestamps.moc"
