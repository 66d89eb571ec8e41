#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"

#include <QTest>

namespace {

// 1, -1, 1,000,000, -1,000,000, the largest, the smallest; then three words without a channel.
constexpr char sixAxes[] = "01000000 FFFFFFFF 40420F00 C0BDF0FF FFFFFF7F 00000080 "
                           "11111111 22222222 33333333";
constexpr int axesSize = 24;

QByteArray sample(quint32 timestamp_us, const QByteArray &payload, quint8 number = 0,
                  quint8 temperature = 0)
{
    return rawlog::timestampedEntry({rawlog::RLD_AGM, number, 0, temperature}, timestamp_us,
                                    payload);
}

QByteArray wholeSample(quint32 timestamp_us, quint8 number = 0, quint8 temperature = 0)
{
    return sample(timestamp_us, QByteArray::fromHex(sixAxes), number, temperature);
}

class Log : public ConversionHarness
{
public:
    Log() { configuration.agm.enabled = 1; }
};

} // namespace

class tst_Agm : public QObject
{
    Q_OBJECT

private slots:
    void aLoggerWithoutTheBlockGivesNoGroup();
    void theGroupHasSixChannelsInRecordOrder();
    void channelsAreSignedMillionths_data();
    void channelsAreSignedMillionths();
    void aSampleGivesItsValues();
    void entriesOfAnyProcessorAreTaken();
    void aSampleWithoutTheFurtherWordsIsTaken();
    void aSampleWithoutAllAxesIsNotTaken();
};

void tst_Agm::aLoggerWithoutTheBlockGivesNoGroup()
{
    Log log;
    log.configuration.agm.enabled = 0;
    log.add(wholeSample(1));
    QVERIFY(log.convert().file.groups.empty());
}

void tst_Agm::theGroupHasSixChannelsInRecordOrder()
{
    Log log;
    log.add(wholeSample(1));
    const ConversionResult result = log.convert();
    QCOMPARE(result.readFailure, QString());
    QCOMPARE(result.groupNames(), QStringList(QStringLiteral("Accelerometer/Gyroscope")));
    QCOMPARE(result.channelNames(0).join(QLatin1Char(' ')),
             QStringLiteral("ACCEL_X ACCEL_Y ACCEL_Z GYRO_X GYRO_Y GYRO_Z"));
}

void tst_Agm::channelsAreSignedMillionths_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("unit");
    for (const char *name : {"ACCEL_X", "ACCEL_Y", "ACCEL_Z"})
        QTest::newRow(name) << QByteArray(name) << QStringLiteral("g");
    for (const char *name : {"GYRO_X", "GYRO_Y", "GYRO_Z"})
        QTest::newRow(name) << QByteArray(name) << QStringLiteral("°/s");
}

void tst_Agm::channelsAreSignedMillionths()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, unit);
    Log log;
    log.add(wholeSample(1));
    const ConversionResult result = log.convert();
    const mdf4reader::Channel &channel = result.channel(0, name);
    QCOMPARE(QString::fromStdString(channel.unit), unit);
    QCOMPARE(channel.dataType, 2U);
    QCOMPARE(channel.bitCount, 32U);
    QCOMPARE(channel.conversion.type, 1);
    QCOMPARE(channel.conversion.values, (std::vector<double>{0, 1e-6}));
}

void tst_Agm::aSampleGivesItsValues()
{
    Log log;
    log.add(wholeSample(1));
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "ACCEL_X"), QVector<double>{1});
    QCOMPARE(result.raw(0, "ACCEL_Y"), QVector<double>{-1});
    QCOMPARE(result.raw(0, "ACCEL_Z"), QVector<double>{1000000});
    QCOMPARE(result.physical(0, "GYRO_X"), QVector<double>{-1});
    QCOMPARE(result.raw(0, "GYRO_Y"), QVector<double>{2147483647});
    QCOMPARE(result.raw(0, "GYRO_Z"), QVector<double>{-2147483648.0});
}

void tst_Agm::entriesOfAnyProcessorAreTaken()
{
    Log log;
    log.add(wholeSample(10, 0) + wholeSample(20, 5));
    QCOMPARE(log.convert().times(0), (QVector<quint64>{0, 10}));
}

void tst_Agm::aSampleWithoutTheFurtherWordsIsTaken()
{
    Log log;
    log.add(sample(10, QByteArray::fromHex(sixAxes).left(axesSize)));
    QCOMPARE(log.convert().times(0).size(), 1);
}

void tst_Agm::aSampleWithoutAllAxesIsNotTaken()
{
    Log log;
    log.add(sample(10, QByteArray::fromHex(sixAxes).left(axesSize - 1)) + wholeSample(20));
    QCOMPARE(log.convert().times(0), QVector<quint64>{0});
}

QTEST_GUILESS_MAIN(tst_Agm)
#include "tst_agm.moc"
