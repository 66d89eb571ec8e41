#include "MDF4Conversion/rawlog/drive/drivemath.h"

#include <QtTest>

#include <cmath>

using namespace drive;

class tst_DriveMath : public QObject
{
    Q_OBJECT

private slots:
    void sineMatchesTheLibraryAllAround();
    void cosineIsAQuarterTurnAhead();
    void aSmoothStepRisesFromZeroToOne();
    void slopeAndAreaBelongToTheSmoothStep();
    void noiseStaysBelowOneAndHasNoMean();
    void noiseIsTheSameForTheSamePlace();
    void streamsAreIndependent();
};

void tst_DriveMath::sineMatchesTheLibraryAllAround()
{
    for (int i = -2000; i <= 2000; ++i) {
        const double turns = i / 777.0;
        QVERIFY(std::abs(sineOfTurns(turns) - std::sin(2 * pi * turns)) < 1e-6);
    }
}

void tst_DriveMath::cosineIsAQuarterTurnAhead()
{
    QVERIFY(std::abs(cosineOfTurns(0) - 1) < 1e-6);
    QVERIFY(std::abs(cosineOfTurns(0.5) + 1) < 1e-6);
    QVERIFY(std::abs(cosineOfTurns(0.25)) < 1e-6);
}

void tst_DriveMath::aSmoothStepRisesFromZeroToOne()
{
    QCOMPARE(smoothStep(0), 0.0);
    QCOMPARE(smoothStep(0.5), 0.5);
    QCOMPARE(smoothStep(1), 1.0);
    QCOMPARE(smoothSlope(0), 0.0);
    QCOMPARE(smoothSlope(1), 0.0);
}

void tst_DriveMath::slopeAndAreaBelongToTheSmoothStep()
{
    constexpr double h = 1e-5;
    for (double u = 0.1; u < 0.95; u += 0.1) {
        const double slope = (smoothStep(u + h) - smoothStep(u - h)) / (2 * h);
        const double derivativeOfArea = (smoothArea(u + h) - smoothArea(u - h)) / (2 * h);
        QVERIFY(std::abs(slope - smoothSlope(u)) < 1e-6);
        QVERIFY(std::abs(derivativeOfArea - smoothStep(u)) < 1e-6);
    }
}

void tst_DriveMath::noiseStaysBelowOneAndHasNoMean()
{
    double sum = 0;
    double largest = 0;
    for (quint64 i = 0; i < 20'000; ++i) {
        const double value = noise(5, i);
        QVERIFY(value >= -1 && value < 1);
        sum += value;
        largest = std::max(largest, std::abs(value));
    }
    QVERIFY(std::abs(sum / 20'000) < 0.02);
    QVERIFY(largest > 0.99);
}

void tst_DriveMath::noiseIsTheSameForTheSamePlace()
{
    QCOMPARE(noise(7, 123456), noise(7, 123456));
    QVERIFY(noise(7, 123456) != noise(7, 123457));
}

void tst_DriveMath::streamsAreIndependent()
{
    double product = 0;
    for (quint64 i = 0; i < 20'000; ++i)
        product += noise(1, i) * noise(2, i);
    QVERIFY(std::abs(product / 20'000) < 0.02);
}

QTEST_GUILESS_MAIN(tst_DriveMath)
#include "tst_drivemath.moc"
