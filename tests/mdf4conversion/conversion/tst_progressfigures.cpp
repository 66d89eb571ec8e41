#include "MDF4Conversion/progressfigures.h"

#include <QTest>

class tst_ProgressFigures : public QObject
{
    Q_OBJECT

private slots:
    void aRateAndTheTimeLeftFollowFromTheShareDone();
    void nothingIsEstimatedInTheFirstHalfSecond();
    void nothingIsEstimatedBeforeAnythingIsDone();
    void runningWorkTellsElapsedLeftAndRate();
    void doneWorkTellsItsTimeAndRate();
    void sharesOfPartsCountByTheirWeight();
    void partsWithoutWeightCountALittle();
    void sizesAreMegabytesAndGigabytes_data();
    void sizesAreMegabytesAndGigabytes();
    void durationsAreRoundedUpToSeconds_data();
    void durationsAreRoundedUpToSeconds();
};

void tst_ProgressFigures::aRateAndTheTimeLeftFollowFromTheShareDone()
{
    const ProgressFigures figures = progressFigures(0.25, 400e6, 10);
    QCOMPARE(figures.left_s.value_or(-1), 30.0);
    QCOMPARE(figures.bytesPerSecond.value_or(-1), 10e6);
}

void tst_ProgressFigures::nothingIsEstimatedInTheFirstHalfSecond()
{
    const ProgressFigures figures = progressFigures(0.25, 400e6, 0.5);
    QVERIFY(!figures.left_s);
    QVERIFY(!figures.bytesPerSecond);
}

void tst_ProgressFigures::nothingIsEstimatedBeforeAnythingIsDone()
{
    const ProgressFigures figures = progressFigures(0, 400e6, 10);
    QVERIFY(!figures.left_s);
    QVERIFY(!figures.bytesPerSecond);
}

void tst_ProgressFigures::runningWorkTellsElapsedLeftAndRate()
{
    QCOMPARE(textWhileRunning(progressFigures(0.25, 400e6, 10)),
             QStringLiteral("0:10 elapsed, 0:30 left, 10.0 MB/s"));
    QCOMPARE(textWhileRunning(progressFigures(0, 400e6, 10)), QStringLiteral("0:10 elapsed"));
}

void tst_ProgressFigures::doneWorkTellsItsTimeAndRate()
{
    QCOMPARE(textWhenDone(progressFigures(1, 400e6, 10)), QStringLiteral("0:10, 40.0 MB/s"));
}

void tst_ProgressFigures::sharesOfPartsCountByTheirWeight()
{
    QCOMPARE(shareOfAll({{300, 1}, {100, 0}}), 0.75);
    QCOMPARE(shareOfAll({}), 0.0);
}

void tst_ProgressFigures::partsWithoutWeightCountALittle()
{
    QCOMPARE(shareOfAll({{0, 1}, {0, 0}}), 0.5);
}

void tst_ProgressFigures::sizesAreMegabytesAndGigabytes_data()
{
    QTest::addColumn<double>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0.0 << QStringLiteral("0.0 MB");
    QTest::newRow("megabytes") << 12.34e6 << QStringLiteral("12.3 MB");
    QTest::newRow("gigabytes") << 1.2e9 << QStringLiteral("1.20 GB");
}

void tst_ProgressFigures::sizesAreMegabytesAndGigabytes()
{
    QFETCH(double, bytes);
    QFETCH(QString, text);
    QCOMPARE(sizeText(bytes), text);
}

void tst_ProgressFigures::durationsAreRoundedUpToSeconds_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0.0 << QStringLiteral("0:00");
    QTest::newRow("a begun second") << 6.1 << QStringLiteral("0:07");
    QTest::newRow("a minute") << 60.0 << QStringLiteral("1:00");
    QTest::newRow("ten minutes") << 750.0 << QStringLiteral("12:30");
    QTest::newRow("hours") << 3723.0 << QStringLiteral("1:02:03");
    QTest::newRow("negative") << -5.0 << QStringLiteral("0:00");
    QTest::newRow("endless") << qInf() << QStringLiteral("277777:46:40");
}

void tst_ProgressFigures::durationsAreRoundedUpToSeconds()
{
    QFETCH(double, seconds);
    QFETCH(QString, text);
    QCOMPARE(durationText(seconds), text);
}

QTEST_GUILESS_MAIN(tst_ProgressFigures)
#include "tst_progressfigures.moc"
