#include "app/liverate.h"

#include <QTest>

class tst_LiveRate : public QObject
{
    Q_OBJECT

private slots:
    void theFirstCountHasNoRate();
    void theRateIsThatOfTheLastInterval();
    void noTimeGivesNoRate();
    void largeCountsDoNotOverflow();
};

void tst_LiveRate::theFirstCountHasNoRate()
{
    QCOMPARE(LiveRate().update(1000, 1000), quint64(0));
}

void tst_LiveRate::theRateIsThatOfTheLastInterval()
{
    LiveRate rate;
    rate.update(0, 1000);
    QCOMPARE(rate.update(500, 500), quint64(1000));
    QCOMPARE(rate.update(500, 1000), quint64(0));
    QCOMPARE(rate.update(503, 2000), quint64(1));
}

void tst_LiveRate::noTimeGivesNoRate()
{
    LiveRate rate;
    rate.update(0, 1000);
    QCOMPARE(rate.update(10, 0), quint64(0));
}

void tst_LiveRate::largeCountsDoNotOverflow()
{
    LiveRate rate;
    rate.update(1'000'000'000'000'000, 1000);
    QCOMPARE(rate.update(1'000'000'000'100'000, 1000), quint64(100'000));
}

QTEST_GUILESS_MAIN(tst_LiveRate)
#include "tst_liverate.moc"
