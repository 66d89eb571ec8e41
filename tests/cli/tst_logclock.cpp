#include "cli/logclock.h"

#include <QtTest>

namespace {

constexpr qint64 overflow = qint64(1) << 32;
constexpr quint32 minute = 60000000;

} // namespace

class tst_LogClock : public QObject
{
    Q_OBJECT

private slots:
    void timesOfOnePeriodStayAsTheyAre();
    void aSmallerTimeBehindAnOverflowGoesOn();
    void anEntryThatLagsStaysBehindTheNewest();
    void anEntryThatLagsAcrossAnOverflowBelongsBeforeIt();
    void aBusThatGoesBackFarIsBehindAnOverflow();
    void aBusThatGoesBackALittleIsLate();
    void aBusThatGoesBackForOneEntryIsALeap();
    void everyOverflowCounts();
    void aLeapIsAcceptedWhenTheNextEntryStaysThere();
    void aLeapIsFalseWhenTheNextEntryComesBack();
    void twoSilencesInARowAreTwoLeaps();
};

void tst_LogClock::timesOfOnePeriodStayAsTheyAre()
{
    LogClock clock;
    QCOMPARE(clock.read(5, {}).time_us, qint64(5));
    QCOMPARE(clock.read(5, {}).time_us, qint64(5));
    QCOMPARE(clock.read(1000, {}).time_us, qint64(1000));
}

void tst_LogClock::aSmallerTimeBehindAnOverflowGoesOn()
{
    LogClock clock;
    QCOMPARE(clock.read(0xFFFFFF00, {}).time_us, qint64(0xFFFFFF00));
    QCOMPARE(clock.read(0x100, {}).time_us, overflow + 0x100);
}

void tst_LogClock::anEntryThatLagsStaysBehindTheNewest()
{
    LogClock clock;
    QCOMPARE(clock.read(LogClock::lag + 7, {}).time_us, qint64(LogClock::lag) + 7);
    QCOMPARE(clock.read(7, {}).time_us, qint64(7));
    QCOMPARE(clock.read(8, {}).time_us, qint64(8));
}

void tst_LogClock::anEntryThatLagsAcrossAnOverflowBelongsBeforeIt()
{
    LogClock clock;
    QCOMPARE(clock.read(0xFFFFFF00, {}).time_us, qint64(0xFFFFFF00));
    QCOMPARE(clock.read(0x100, {}).time_us, overflow + 0x100);
    QCOMPARE(clock.read(0xFFFFFFF0, {}).time_us, qint64(0xFFFFFFF0));
    QCOMPARE(clock.read(0x200, {}).time_us, overflow + 0x200);
}

void tst_LogClock::aBusThatGoesBackFarIsBehindAnOverflow()
{
    LogClock clock;
    QCOMPARE(clock.read(minute, {}).time_us, qint64(minute));
    const LogClock::Reading leap = clock.read(1000, qint64(minute));
    QCOMPARE(leap.verdict, LogClock::Verdict::Leap);
    QCOMPARE(leap.time_us, overflow + 1000);
    const LogClock::Reading next = clock.read(2000, qint64(minute));
    QVERIFY(!next.leapWasFalse);
    QCOMPARE(next.verdict, LogClock::Verdict::Accepted);
    QCOMPARE(next.time_us, overflow + 2000);
}

void tst_LogClock::aBusThatGoesBackALittleIsLate()
{
    LogClock clock;
    QCOMPARE(clock.read(minute, {}).time_us, qint64(minute));
    const LogClock::Reading late = clock.read(minute - LogClock::lagOnBus, qint64(minute));
    QCOMPARE(late.verdict, LogClock::Verdict::Accepted);
    QCOMPARE(late.time_us, minute - LogClock::lagOnBus);
}

void tst_LogClock::aBusThatGoesBackForOneEntryIsALeap()
{
    LogClock clock;
    QCOMPARE(clock.read(minute, {}).time_us, qint64(minute));
    QCOMPARE(clock.read(0, qint64(minute)).verdict, LogClock::Verdict::Leap);
    const LogClock::Reading next = clock.read(minute + 1, qint64(minute));
    QVERIFY(next.leapWasFalse);
    QCOMPARE(next.time_us, qint64(minute) + 1);
}

void tst_LogClock::everyOverflowCounts()
{
    LogClock clock;
    qint64 time = 0;
    for (; time < 5 * overflow; time += 10 * qint64(minute))
        QCOMPARE(clock.read(quint32(time), {}).time_us, time);
}

void tst_LogClock::aLeapIsAcceptedWhenTheNextEntryStaysThere()
{
    LogClock clock;
    QCOMPARE(clock.read(0, {}).verdict, LogClock::Verdict::Accepted);
    const LogClock::Reading leap = clock.read(50 * minute, {});
    QCOMPARE(leap.verdict, LogClock::Verdict::Leap);
    QCOMPARE(leap.time_us, qint64(50 * minute));
    const LogClock::Reading next = clock.read(51 * minute, {});
    QVERIFY(!next.leapWasFalse);
    QCOMPARE(next.verdict, LogClock::Verdict::Accepted);
    QCOMPARE(next.time_us, qint64(51 * minute));
}

void tst_LogClock::aLeapIsFalseWhenTheNextEntryComesBack()
{
    LogClock clock;
    QCOMPARE(clock.read(minute, {}).time_us, qint64(minute));
    QCOMPARE(clock.read(40 * minute, {}).verdict, LogClock::Verdict::Leap);
    const LogClock::Reading next = clock.read(2 * minute, {});
    QVERIFY(next.leapWasFalse);
    QCOMPARE(next.time_us, qint64(2 * minute));
    QCOMPARE(clock.read(3 * minute, {}).time_us, qint64(3 * minute));
}

void tst_LogClock::twoSilencesInARowAreTwoLeaps()
{
    LogClock clock;
    QCOMPARE(clock.read(0, {}).time_us, qint64(0));
    QCOMPARE(clock.read(20 * minute, {}).verdict, LogClock::Verdict::Leap);
    const LogClock::Reading second = clock.read(40 * minute, {});
    QVERIFY(!second.leapWasFalse);
    QCOMPARE(second.verdict, LogClock::Verdict::Leap);
    QCOMPARE(second.time_us, qint64(40 * minute));
}

QTEST_GUILESS_MAIN(tst_LogClock)
#include "tst_logclock.moc"
