#include "MDF4Conversion/rawlog/drivelog.h"
#include "MDF4Conversion/workerconvertmdf4.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int seconds = 12;

quint64 samplesOf(const ConversionSummary &summary, const QString &group)
{
    quint64 samples = 0;
    for (const ConversionSummary::Group &g : summary.groups)
        samples += g.name == group ? g.samples : 0;
    return samples;
}

} // namespace

// The drive as the converter sees it.
class tst_DriveConversion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void thereIsNoErrorAndNoWarning();
    void everySourceHasItsGroups_data();
    void everySourceHasItsGroups();
    void everyRecordedSignalIsAChannel();
    void samplesComeAtTheRateOfTheirSource();
    void allTimesLieInTheDrive();

private:
    ConversionSummary m_summary;
    QStringList m_complaints;
};

void tst_DriveConversion::initTestCase()
{
    const QTemporaryDir folder;
    ConversionJob job;
    job.inputFile = folder.filePath(QStringLiteral("drive.rld"));
    job.outputFile = folder.filePath(QStringLiteral("drive.mf4"));
    job.temporaryDir = folder.filePath(QStringLiteral("tmp_1"));
    QVERIFY(drivelog::write(job.inputFile, seconds, [](int) { return true; }).failure.isNull());

    WorkerConvertMDF4 worker(job);
    const auto complain = [this](const QString &text) { m_complaints += text; };
    connect(&worker, &WorkerConvertMDF4::sig_warning, this, complain);
    connect(&worker, &WorkerConvertMDF4::sig_error, this, complain);
    worker.process();
    m_summary = worker.summary();
    QVERIFY(m_summary.written);
}

void tst_DriveConversion::thereIsNoErrorAndNoWarning()
{
    QCOMPARE(m_complaints, QStringList());
    QCOMPARE(m_summary.skippedBytes, quint64(0));
    QCOMPARE(m_summary.droppedRecords, quint64(0));
}

void tst_DriveConversion::everySourceHasItsGroups_data()
{
    QTest::addColumn<int>("groups");
    QTest::newRow("GPS") << 1;
    QTest::newRow("Accelerometer/Gyroscope") << 1;
    QTest::newRow("RS485-0-D4MOD") << 1;
    QTest::newRow("RS485-3-D4MOD") << 1;
    QTest::newRow("CAN_0_DBC") << 5;
    QTest::newRow("CAN_0_DBCMUX") << 4;
    QTest::newRow("CAN_1_Fleet_DBC") << 4;
    QTest::newRow("CAN_1_Fleet_DBCMUX") << 2;
    QTest::newRow("CAN_2_DBC") << 2;
    QTest::newRow("CAN_2_DBCMUX") << 2;
    QTest::newRow("Ethercat-0") << 1;
    QTest::newRow("CAN_5_AIM_Wheel") << 1;
    QTest::newRow("CAN_5_AIM_Damper") << 1;
    QTest::newRow("CAN_5_AIM_Pressure") << 1;
}

void tst_DriveConversion::everySourceHasItsGroups()
{
    QFETCH(int, groups);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    int found = 0;
    for (const ConversionSummary::Group &group : m_summary.groups)
        found += group.name == name ? 1 : 0;
    QCOMPARE(found, groups);
}

void tst_DriveConversion::everyRecordedSignalIsAChannel()
{
    // Of the three ECUs: 12 and 6, 7 and 6, 6 and 5 measurements.
    int measurements = 0;
    for (const ConversionSummary::Group &group : m_summary.groups)
        measurements += group.name.endsWith(QLatin1String("XCP")) ? group.channels.size() : 0;
    QCOMPARE(measurements, 42);
}

void tst_DriveConversion::samplesComeAtTheRateOfTheirSource()
{
    QCOMPARE(samplesOf(m_summary, QStringLiteral("GPS")), quint64(10 * seconds));
    QCOMPARE(samplesOf(m_summary, QStringLiteral("Accelerometer/Gyroscope")),
             quint64(1000 * seconds));
    QCOMPARE(samplesOf(m_summary, QStringLiteral("RS485-0-D4MOD")), quint64(200 * seconds));
    QCOMPARE(samplesOf(m_summary, QStringLiteral("Ethercat-0")), quint64(200 * seconds));
    // Two samples a message; the first message only gives its time.
    QCOMPARE(samplesOf(m_summary, QStringLiteral("CAN_5_AIM_Damper")),
             quint64(2 * (100 * seconds - 1)));
}

void tst_DriveConversion::allTimesLieInTheDrive()
{
    QVERIFY(m_summary.lastTime_us - m_summary.startOffset_us <= seconds * 1'000'000U);
    for (const ConversionSummary::Group &group : m_summary.groups)
        QVERIFY(group.samples > 0 && group.first_us < group.last_us);
    // 2024-05-14 08:30:00 UTC
    QCOMPARE(m_summary.utcStart_us, quint64(1'715'675'400'000'000));
}

QTEST_GUILESS_MAIN(tst_DriveConversion)
#include "tst_driveconversion.moc"
