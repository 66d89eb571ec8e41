#include "MDF4Conversion/rawlog/drive/schedule.h"

#include <QtTest>

using drive::Moment;
using drive::Schedule;

namespace {

QByteArray recorded(Schedule &schedule, qint64 end_us)
{
    QByteArray bytes;
    schedule.recordUntil(end_us, bytes);
    return bytes;
}

drive::EntryMaker letter(const char *text)
{
    return [text](const Moment &) { return QByteArray(text); };
}

} // namespace

class tst_Schedule : public QObject
{
    Q_OBJECT

private slots:
    void entriesComeInTheOrderOfTheirTimes();
    void atOneTimeTheFirstAddedComesFirst();
    void theEndIsNotIncluded();
    void portionsMakeNoDifference();
    void onceIsOnce();
    void jitterDelaysButKeepsThePeriod();
    void theClockRunsBeforeTheDrive();
    void ticksCount();
    void aLateStartLeavesOutWhatCameBefore();
};

void tst_Schedule::entriesComeInTheOrderOfTheirTimes()
{
    Schedule schedule;
    schedule.every(10, 5, 0, letter("a"));
    schedule.every(4, 0, 0, letter("b"));
    // b at 0, 4, 8, 12, 16 and a at 5, 15
    QCOMPARE(recorded(schedule, 20), QByteArray("bbabbab"));
}

void tst_Schedule::atOneTimeTheFirstAddedComesFirst()
{
    Schedule schedule;
    schedule.every(10, 0, 0, letter("a"));
    schedule.every(5, 0, 0, letter("b"));
    QCOMPARE(recorded(schedule, 11), QByteArray("abbab"));
}

void tst_Schedule::theEndIsNotIncluded()
{
    Schedule schedule;
    schedule.every(10, 0, 0, letter("a"));
    QCOMPARE(recorded(schedule, 0), QByteArray());
    QCOMPARE(recorded(schedule, 10), QByteArray("a"));
    QCOMPARE(recorded(schedule, 11), QByteArray("a"));
}

void tst_Schedule::portionsMakeNoDifference()
{
    Schedule whole;
    Schedule parts;
    for (Schedule *schedule : {&whole, &parts}) {
        schedule->every(7, 0, 3, letter("a"));
        schedule->every(11, 2, 5, letter("b"));
    }
    QByteArray collected;
    for (qint64 end = 0; end <= 1000; end += 10)
        parts.recordUntil(end, collected);
    QCOMPARE(collected, recorded(whole, 1000));
}

void tst_Schedule::onceIsOnce()
{
    Schedule schedule;
    schedule.once(3, letter("a"));
    QCOMPARE(recorded(schedule, 100), QByteArray("a"));
    QCOMPARE(recorded(schedule, 200), QByteArray());
}

void tst_Schedule::jitterDelaysButKeepsThePeriod()
{
    Schedule schedule;
    QVector<qint64> late;
    schedule.every(100, 0, 40, [&late](const Moment &moment) {
        late += moment.time_us - moment.due_us;
        return QByteArray();
    });
    recorded(schedule, 100'000);
    QVERIFY(late.size() >= 999);
    QVERIFY(*std::min_element(late.begin(), late.end()) >= 0);
    QVERIFY(*std::max_element(late.begin(), late.end()) < 40);
    QVERIFY(std::count(late.begin(), late.end(), late.first()) < 100);
}

void tst_Schedule::theClockRunsBeforeTheDrive()
{
    Schedule schedule;
    QVector<quint32> stamps;
    schedule.every(1'000'000, 0, 0, [&stamps](const Moment &moment) {
        stamps += moment.timestamp_us;
        return QByteArray();
    });
    recorded(schedule, 4'262'000'000);
    QVERIFY(stamps.first() > 0);
    QCOMPARE(stamps[60] - stamps[0], 60'000'000U);
    QVERIFY2(stamps.last() < stamps.first(), "the clock has overflown");
}

void tst_Schedule::ticksCount()
{
    Schedule schedule;
    QVector<quint64> ticks;
    schedule.every(10, 0, 0, [&ticks](const Moment &moment) {
        ticks += moment.tick;
        return QByteArray();
    });
    recorded(schedule, 30);
    QCOMPARE(ticks, (QVector<quint64>{0, 1, 2}));
}

void tst_Schedule::aLateStartLeavesOutWhatCameBefore()
{
    QVector<qint64> dues;
    QVector<quint64> ticks;
    Schedule schedule(20);
    schedule.once(19, letter("x"));
    schedule.once(20, letter("y"));
    schedule.every(6, 4, 0, [&](const Moment &moment) {
        dues += moment.due_us;
        ticks += moment.tick;
        return QByteArray("a");
    });
    QCOMPARE(recorded(schedule, 35), QByteArray("yaaa"));
    QCOMPARE(dues, (QVector<qint64>{22, 28, 34}));
    QCOMPARE(ticks, (QVector<quint64>{3, 4, 5}));
}

QTEST_GUILESS_MAIN(tst_Schedule)
#include "tst_schedule.moc"
