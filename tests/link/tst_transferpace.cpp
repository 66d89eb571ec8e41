#include "link/transferpace.h"

#include <QTest>

class tst_TransferPace : public QObject
{
    Q_OBJECT

private slots:
    void speedIsThatOfTheLastPeriod();
    void withoutAPeriodThereIsNoSpeed();
    void timeThatStandsStillGivesNoSpeed();
    void timeLeftIsThatOfTheLastSeconds();
    void withoutProgressThereIsNoTimeLeft();
    void fewerBytesBeginAnew();
    void anEndlessTimeIsBounded();
    void speedTexts_data();
    void speedTexts();
    void amountsAreInTheUnitOfTheTotal_data();
    void amountsAreInTheUnitOfTheTotal();
    void timeLeftTexts_data();
    void timeLeftTexts();
};

void tst_TransferPace::speedIsThatOfTheLastPeriod()
{
    TransferPace pace;
    pace.add(1000, 0);
    pace.add(1500, 100);
    pace.add(2000, 600);
    QCOMPARE(pace.bytesPerSecond(), 1000);
}

void tst_TransferPace::withoutAPeriodThereIsNoSpeed()
{
    TransferPace pace;
    QCOMPARE(pace.bytesPerSecond(), 0);
    QVERIFY(!pace.secondsFor(100));
    pace.add(500, 1'000'000);
    QCOMPARE(pace.bytesPerSecond(), 0);
    QVERIFY(!pace.secondsFor(100));
}

void tst_TransferPace::timeThatStandsStillGivesNoSpeed()
{
    TransferPace pace;
    pace.add(500, 0);
    pace.add(500, 100);
    QCOMPARE(pace.bytesPerSecond(), 0);
    QVERIFY(!pace.secondsFor(100));
}

void tst_TransferPace::timeLeftIsThatOfTheLastSeconds()
{
    TransferPace pace;
    qint64 bytes = 0;
    for (int i = 0; i <= 20; ++i, bytes += 10'000)
        pace.add(i * 500, bytes); // 20,000 bytes a second
    QCOMPARE(*pace.secondsFor(100'000), 5);
    for (int i = 21; i <= 42; ++i, bytes += 500)
        pace.add(i * 500, bytes); // 1,000 bytes a second, for more than ten seconds
    QCOMPARE(*pace.secondsFor(100'000), 100);
}

void tst_TransferPace::withoutProgressThereIsNoTimeLeft()
{
    TransferPace pace;
    pace.add(0, 100);
    pace.add(500, 100);
    QCOMPARE(pace.bytesPerSecond(), 0);
    QVERIFY(!pace.secondsFor(100));
}

void tst_TransferPace::fewerBytesBeginAnew()
{
    TransferPace pace;
    pace.add(0, 0);
    pace.add(500, 1'000'000);
    pace.add(1000, 200);
    QCOMPARE(pace.bytesPerSecond(), 0);
    pace.add(1500, 700);
    QCOMPARE(pace.bytesPerSecond(), 1000);
}

void tst_TransferPace::anEndlessTimeIsBounded()
{
    TransferPace pace;
    pace.add(0, 0);
    pace.add(10'000, 1);
    QCOMPARE(*pace.secondsFor(qint64(1) << 60), 365LL * 24 * 3600);
}

void tst_TransferPace::speedTexts_data()
{
    QTest::addColumn<qint64>("bytesPerSecond");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << qint64(0) << QStringLiteral("0.0 Kbit/s");
    QTest::newRow("slow") << qint64(125) << QStringLiteral("1.0 Kbit/s");
    QTest::newRow("limit") << qint64(1'000'000) << QStringLiteral("8000.0 Kbit/s");
    QTest::newRow("above") << qint64(1'000'001) << QStringLiteral("8.000 Mbit/s");
    QTest::newRow("fast") << qint64(117'187'500) << QStringLiteral("937.500 Mbit/s");
}

void tst_TransferPace::speedTexts()
{
    QFETCH(qint64, bytesPerSecond);
    QFETCH(QString, text);
    QCOMPARE(speedText(bytesPerSecond), text);
}

void tst_TransferPace::amountsAreInTheUnitOfTheTotal_data()
{
    QTest::addColumn<qint64>("received");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<QString>("text");
    const auto row = [](qint64 received, qint64 total, const char *text) {
        QTest::newRow(text) << received << total << QString::fromLatin1(text);
    };
    row(0, 0, "0 of 0 bytes");
    row(500, 1023, "500 of 1023 bytes");
    row(0, 1024, "0.0 of 1.0 KiB");
    row(1536, 3 * 1024, "1.5 of 3.0 KiB");
    row(1 << 20, 10 << 20, "1.0 of 10.0 MiB");
    row(3'435'973'837, 13'314'398'618, "3.2 of 12.4 GiB");
    row(1 << 30, qint64(5) << 40, "0.0 of 5.0 TiB");
    row(qint64(1) << 53, qint64(1) << 60, "8192.0 of 1048576.0 TiB");
}

void tst_TransferPace::amountsAreInTheUnitOfTheTotal()
{
    QFETCH(qint64, received);
    QFETCH(qint64, total);
    QFETCH(QString, text);
    QCOMPARE(amountText(received, total), text);
}

void tst_TransferPace::timeLeftTexts_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *tag, qint64 seconds, const char *text) {
        QTest::newRow(tag) << seconds << QString::fromLatin1(text);
    };
    row("done", 0, "about 0 seconds");
    row("seconds", 59, "about 59 seconds");
    row("one minute", 60, "about 1 minutes 0 seconds");
    row("minutes", 3599, "about 59 minutes 59 seconds");
    row("one hour", 3600, "about 1 hours 0 minutes 0 seconds");
    row("hours", 24 * 3600 - 1, "about 23 hours 59 minutes 59 seconds");
    row("one day", 24 * 3600, "very long... aprox. 24 hours");
    row("days", 100 * 3600 + 3599, "very long... aprox. 100 hours");
}

void tst_TransferPace::timeLeftTexts()
{
    QFETCH(qint64, seconds);
    QFETCH(QString, text);
    QCOMPARE(timeLeftText(seconds), text);
}

QTEST_GUILESS_MAIN(tst_TransferPace)
#include "tst_transferpace.moc"
