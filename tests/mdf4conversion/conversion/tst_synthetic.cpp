#include "MDF4Conversion/rawlog/syntheticlogs.h"
#include "tests/support/conversionharness.h"

#include <QDir>
#include <QTest>

namespace {

constexpr quint64 wrap = quint64(1) << 32;

ConversionResult converted(int run)
{
    ConversionHarness log;
    const QString failure = syntheticlogs::write(run, log.folder());
    if (!failure.isNull())
        qFatal("%s", qPrintable(failure));
    log.job.inputFile = QDir(log.folder()).filePath(syntheticlogs::fileName(run));
    return log.convertFile();
}

// Times of the records of a group on the logger's clock.
QVector<quint64> clockTimes(const ConversionResult &result, int group)
{
    QVector<quint64> times = result.times(group);
    for (quint64 &time : times)
        time += result.summary.startOffset_us;
    return times;
}

void addRuns(std::initializer_list<int> runs)
{
    QTest::addColumn<int>("run");
    for (const int run : runs)
        QTest::addRow("run %d", run) << run;
}

} // namespace

class tst_Synthetic : public QObject
{
    Q_OBJECT

private slots:
    void everyRunConvertsWithoutErrors_data() { addRuns({1, 2, 3, 4}); }
    void everyRunConvertsWithoutErrors();
    void theGroupsAreThoseOfChannels0And3_data() { addRuns({1, 2, 3, 4}); }
    void theGroupsAreThoseOfChannels0And3();
    void samplesAroundTheOverflowComeTogether_data() { addRuns({1, 2, 3}); }
    void samplesAroundTheOverflowComeTogether();
    void channel3IsAdjustedInitiallyWithoutEarlierStamps_data() { addRuns({1, 3}); }
    void channel3IsAdjustedInitiallyWithoutEarlierStamps();
    void channel3IsPlacedByTheStampsBeforeIt();
    void aJumpBackIsAnOverflowOnBothChannels();
};

void tst_Synthetic::everyRunConvertsWithoutErrors()
{
    QFETCH(int, run);
    const ConversionResult result = converted(run);
    QVERIFY(result.summary.written);
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.warnings, QStringList());
    QCOMPARE(result.readFailure, QString());
}

void tst_Synthetic::theGroupsAreThoseOfChannels0And3()
{
    QFETCH(int, run);
    const ConversionResult result = converted(run);
    QCOMPARE(result.groupNames().join(QLatin1Char(' ')), QStringLiteral("CAN_0_DBC CAN_3_DBC"));
    QCOMPARE(result.raw(0, "Test-Signal"), (QVector<double>{0, 1, 3, 5}));
    QCOMPARE(result.raw(1, "Test-Signal"), (QVector<double>{2, 4, 6}));
    QCOMPARE(result.channel(0, "Test-Signal").unit, std::string("unit"));
}

void tst_Synthetic::samplesAroundTheOverflowComeTogether()
{
    QFETCH(int, run);
    const ConversionResult result = converted(run);
    QCOMPARE(clockTimes(result, 0),
             (QVector<quint64>{0xE0000123, wrap + 8192, wrap + 0x30E00, wrap + 0x31000}));
    QCOMPARE(clockTimes(result, 1), (QVector<quint64>{wrap + 256, wrap + 3584, wrap + 0x31000}));
}

void tst_Synthetic::channel3IsAdjustedInitiallyWithoutEarlierStamps()
{
    QFETCH(int, run);
    const QString status =
        converted(run).status(QStringLiteral("Initial timestamp adjustment applied"));
    QVERIFY(status.contains(QStringLiteral("timestamp 256 was adjusted to 4294967552")));
}

void tst_Synthetic::channel3IsPlacedByTheStampsBeforeIt()
{
    const ConversionResult result = converted(2);
    QVERIFY(result.status(QStringLiteral("Initial timestamp adjustment")).isEmpty());
    QVERIFY(result.status(QStringLiteral("Timestamp adjustment applied"))
                .endsWith(QStringLiteral("adjusted from 256 to 4294967552.")));
}

void tst_Synthetic::aJumpBackIsAnOverflowOnBothChannels()
{
    const ConversionResult result = converted(4);
    QCOMPARE(clockTimes(result, 0), (QVector<quint64>{291, 8192, 0x10030E00, wrap + 0x31000}));
    QCOMPARE(clockTimes(result, 1), (QVector<quint64>{0x10000100, 0x20000E00, wrap + 0x31000}));
    QCOMPARE(result.statuses.filter(QStringLiteral("overflow-adjustment")).size(), 2);
}

QTEST_GUILESS_MAIN(tst_Synthetic)
#include "tst_synthetic.moc"
