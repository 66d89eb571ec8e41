#include "config/d4mod_channel.h"

#include <QTest>

class tst_D4Mod_Channel : public QObject
{
    Q_OBJECT

private slots:
    void aNewChannelHasNoScaling();
    void theBlockIsStored();
    void theSensorIdIsTheTenCharactersBehindTheFirst();
    void valuesStandBetweenTheEqualsSignAndTheDollar();
    void valuesAreSimplified();
    void aLinearEquationWithBothSensitivitiesIsScaled();
    void scalingNeedsAllThreeNumbers_data();
    void scalingNeedsAllThreeNumbers();
    void textsAndSensitivitiesOfAnEarlierBlockAreForgotten();
    void anInvalidEquationLeavesTheEarlierOne();
    void aValueWithoutDollarIsMissing();
    void anEqualsSignFartherOnStillCounts();
    void anyTextIsTaken_data();
    void anyTextIsTaken();
};

namespace {

const QString block = QStringLiteral("#ID00012345/LOCAT=Front axle$PHYSU=kN$SENEQ=0$SENSA=-1.5$"
                                     "SENSB=2.5e3$");

D4Mod_Channel parsed(const QString &text)
{
    D4Mod_Channel channel;
    channel.parseTedBlock(text);
    return channel;
}

} // namespace

void tst_D4Mod_Channel::aNewChannelHasNoScaling()
{
    const D4Mod_Channel channel;
    QCOMPARE(channel.dti_voltage_mV, quint16(0));
    QCOMPARE(channel.equation, -1);
    QCOMPARE(channel.sensitivity_a, 0.0);
    QCOMPARE(channel.sensitivity_b, 1.0);
    QVERIFY(!channel.use_scaling);
}

void tst_D4Mod_Channel::theBlockIsStored()
{
    QCOMPARE(parsed(block).teds_block, block);
}

void tst_D4Mod_Channel::theSensorIdIsTheTenCharactersBehindTheFirst()
{
    QCOMPARE(parsed(block).sensor_id, QStringLiteral("ID00012345"));
    QCOMPARE(parsed(QStringLiteral("#short")).sensor_id, QStringLiteral("short"));
}

void tst_D4Mod_Channel::valuesStandBetweenTheEqualsSignAndTheDollar()
{
    const D4Mod_Channel channel = parsed(block);
    QCOMPARE(channel.location, QStringLiteral("Front axle"));
    QCOMPARE(channel.physical_unit, QStringLiteral("kN"));
    QCOMPARE(channel.equation, 0);
    QCOMPARE(channel.sensitivity_a, -1.5);
    QCOMPARE(channel.sensitivity_b, 2500.0);
}

void tst_D4Mod_Channel::valuesAreSimplified()
{
    const D4Mod_Channel channel = parsed(QStringLiteral("LOCAT= \t Front \r\n  axle $SENSA= 3 $"));
    QCOMPARE(channel.location, QStringLiteral("Front axle"));
    QCOMPARE(channel.sensitivity_a, 3.0);
}

void tst_D4Mod_Channel::aLinearEquationWithBothSensitivitiesIsScaled()
{
    QVERIFY(parsed(block).use_scaling);
}

void tst_D4Mod_Channel::scalingNeedsAllThreeNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("no equation") << QStringLiteral("SENSA=1$SENSB=2$");
    QTest::newRow("another equation") << QStringLiteral("SENEQ=1$SENSA=1$SENSB=2$");
    QTest::newRow("equation not an integer") << QStringLiteral("SENEQ=0.0$SENSA=1$SENSB=2$");
    QTest::newRow("no a") << QStringLiteral("SENEQ=0$SENSB=2$");
    QTest::newRow("no b") << QStringLiteral("SENEQ=0$SENSA=1$");
    QTest::newRow("a not a number") << QStringLiteral("SENEQ=0$SENSA=x$SENSB=2$");
    QTest::newRow("b empty") << QStringLiteral("SENEQ=0$SENSA=1$SENSB=$");
    QTest::newRow("decimal comma") << QStringLiteral("SENEQ=0$SENSA=1,5$SENSB=2$");
}

void tst_D4Mod_Channel::scalingNeedsAllThreeNumbers()
{
    QFETCH(QString, text);
    D4Mod_Channel channel;
    channel.use_scaling = true;
    channel.parseTedBlock(text);
    QVERIFY(!channel.use_scaling);
}

void tst_D4Mod_Channel::textsAndSensitivitiesOfAnEarlierBlockAreForgotten()
{
    D4Mod_Channel channel = parsed(block);
    channel.parseTedBlock(QString());
    QVERIFY(channel.sensor_id.isEmpty());
    QVERIFY(channel.location.isEmpty());
    QVERIFY(channel.physical_unit.isEmpty());
    QCOMPARE(channel.sensitivity_a, 0.0);
    QCOMPARE(channel.sensitivity_b, 1.0);
    QVERIFY(!channel.use_scaling);
}

void tst_D4Mod_Channel::anInvalidEquationLeavesTheEarlierOne()
{
    D4Mod_Channel channel = parsed(QStringLiteral("SENEQ=7$"));
    channel.parseTedBlock(QStringLiteral("SENEQ=seven$"));
    QCOMPARE(channel.equation, 7);
}

void tst_D4Mod_Channel::aValueWithoutDollarIsMissing()
{
    QVERIFY(parsed(QStringLiteral("PHYSU=kN")).physical_unit.isEmpty());
}

void tst_D4Mod_Channel::anEqualsSignFartherOnStillCounts()
{
    QCOMPARE(parsed(QStringLiteral("LOCAT (where) = Axle$")).location, QStringLiteral("Axle"));
}

void tst_D4Mod_Channel::anyTextIsTaken_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("null") << QString();
    QTest::newRow("one character") << QStringLiteral("#");
    QTest::newRow("keys only") << QStringLiteral("LOCATPHYSUSENEQSENSASENSB");
    QTest::newRow("key at the end") << QStringLiteral("xxSENEQ=");
    QTest::newRow("dollar before equals") << QStringLiteral("LOCAT$=$");
    QTest::newRow("huge number") << QStringLiteral("SENEQ=99999999999999999999$SENSA=1e999$");
}

void tst_D4Mod_Channel::anyTextIsTaken()
{
    QFETCH(QString, text);
    const D4Mod_Channel channel = parsed(text);
    QCOMPARE(channel.teds_block, text);
    QCOMPARE(channel.equation, -1);
    QVERIFY(!channel.use_scaling);
}

QTEST_GUILESS_MAIN(tst_D4Mod_Channel)
#include "tst_d4mod_channel.moc"
