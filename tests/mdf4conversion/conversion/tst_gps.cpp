#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"

#include <QTest>

namespace {

// A fix of 2016-02-29 13:14:15, course 123.4, speed 50.05 km/h, altitude -12.3.
constexpr char leapDay[] = "01 0D 0E 0F E0 07 02 1D D2 04 8D 13 80 A8 D6 1C C0 E1 E4 85 85 FF";

QByteArray fix(quint32 timestamp_us, const QByteArray &payload, quint8 number = 0)
{
    return rawlog::timestampedEntry({rawlog::RLD_GPS, number, 0, 0}, timestamp_us, payload);
}

QByteArray leapDayFix(quint32 timestamp_us, quint8 number = 0)
{
    return fix(timestamp_us, QByteArray::fromHex(leapDay), number);
}

QByteArray fixOfDate(const char *yearMonthDay)
{
    QByteArray payload = QByteArray::fromHex(leapDay);
    payload.replace(4, 4, QByteArray::fromHex(yearMonthDay));
    return fix(1, payload);
}

class Log : public ConversionHarness
{
public:
    Log() { configuration.gps.gps_enabled = 1; }
};

} // namespace

class tst_Gps : public QObject
{
    Q_OBJECT

private slots:
    void aLoggerWithGpsOffGivesNoGroup();
    void theGroupHasItsChannelsInRecordOrder();
    void channelsHaveTypeSizeUnitAndFactor_data();
    void channelsHaveTypeSizeUnitAndFactor();
    void aFixGivesItsValues();
    void theValidFlagIsBit0Alone();
    void degreesAreSignAndMagnitude_data();
    void degreesAreSignAndMagnitude();
    void theTimeIsCanOpenTime();
    void daysCountFrom1984_data();
    void daysCountFrom1984();
    void theTimeOfDayEndsWithItsLastSecond();
    void entriesOfAnyNumberAreTaken();
    void aShortFixIsNotTaken();
};

void tst_Gps::aLoggerWithGpsOffGivesNoGroup()
{
    Log log;
    log.configuration.gps.gps_enabled = 0;
    log.add(leapDayFix(1));
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QVERIFY(result.file.groups.empty());
}

void tst_Gps::theGroupHasItsChannelsInRecordOrder()
{
    Log log;
    log.add(leapDayFix(1));
    const ConversionResult result = log.convert();
    QCOMPARE(result.readFailure, QString());
    QCOMPARE(result.groupNames(), QStringList(QStringLiteral("GPS")));
    QCOMPARE(result.channelNames(0).join(QLatin1Char(' ')),
             QStringLiteral("GPS_VALID GPS_LATITUDE GPS_LONGITUDE GPS_SPEED_OVER_GROUND "
                            "GPS_COURSE_OVER_GROUND GPS_ALTITUDE GPS_DATE_TIME"));
}

void tst_Gps::channelsHaveTypeSizeUnitAndFactor_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<uint>("type");
    QTest::addColumn<uint>("offset");
    QTest::addColumn<uint>("size");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<double>("factor"); // 0: no conversion
    const auto row = [](const char *name, uint type, uint offset, uint size, const char *unit,
                        double factor) {
        QTest::newRow(name) << QByteArray(name) << type << offset << size << QString::fromUtf8(unit)
                            << factor;
    };
    row("GPS_VALID", 0, 8, 1, "", 1);
    row("GPS_LATITUDE", 4, 9, 8, "°", 1);
    row("GPS_LONGITUDE", 4, 17, 8, "°", 1);
    row("GPS_SPEED_OVER_GROUND", 0, 25, 2, "km/h", 0.01);
    row("GPS_COURSE_OVER_GROUND", 0, 27, 2, "°", 0.1);
    row("GPS_ALTITUDE", 2, 29, 2, "m", 0.1);
    row("GPS_DATE_TIME", 14, 31, 6, "", 0);
}

void tst_Gps::channelsHaveTypeSizeUnitAndFactor()
{
    QFETCH(QByteArray, name);
    QFETCH(uint, type);
    QFETCH(uint, offset);
    QFETCH(uint, size);
    QFETCH(QString, unit);
    QFETCH(double, factor);
    Log log;
    log.add(leapDayFix(1));
    const ConversionResult result = log.convert();
    const mdf4reader::Channel &channel = result.channel(0, name);
    QCOMPARE(channel.dataType, type);
    QCOMPARE(channel.byteOffset, offset);
    QCOMPARE(channel.bitCount, 8 * size);
    QCOMPARE(QString::fromStdString(channel.unit), unit);
    QCOMPARE(channel.conversion.type, factor == 0 ? 0 : 1);
    QCOMPARE(channel.conversion.values,
             factor == 0 ? std::vector<double>() : (std::vector<double>{0, factor}));
}

void tst_Gps::aFixGivesItsValues()
{
    Log log;
    log.add(leapDayFix(1));
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "GPS_VALID"), QVector<double>{1});
    QCOMPARE(result.raw(0, "GPS_LATITUDE"), QVector<double>{0x1CD6A880 / 1e7});
    QCOMPARE(result.raw(0, "GPS_LONGITUDE"), QVector<double>{-(0x05E4E1C0 / 1e7)});
    QCOMPARE(result.raw(0, "GPS_COURSE_OVER_GROUND"), QVector<double>{1234});
    QCOMPARE(result.raw(0, "GPS_SPEED_OVER_GROUND"), QVector<double>{5005});
    QCOMPARE(result.raw(0, "GPS_ALTITUDE"), QVector<double>{-123});
}

void tst_Gps::theValidFlagIsBit0Alone()
{
    QByteArray payload = QByteArray::fromHex(leapDay);
    payload[0] = char(0xFE);
    Log log;
    log.add(fix(1, payload));
    QCOMPARE(log.convert().raw(0, "GPS_VALID"), QVector<double>{0});
}

void tst_Gps::degreesAreSignAndMagnitude_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<double>("degrees");
    QTest::newRow("zero") << QByteArray("00000000") << 0.0;
    QTest::newRow("one unit") << QByteArray("01000000") << 1e-7;
    QTest::newRow("one unit south") << QByteArray("01000080") << -1e-7;
    QTest::newRow("180 degrees") << QByteArray("00D2496B") << 180.0;
    QTest::newRow("largest magnitude") << QByteArray("FFFFFFFF") << -214.7483647;
}

void tst_Gps::degreesAreSignAndMagnitude()
{
    QFETCH(QByteArray, bytes);
    QFETCH(double, degrees);
    QByteArray payload = QByteArray::fromHex(leapDay);
    payload.replace(12, 4, QByteArray::fromHex(bytes));
    payload.replace(16, 4, QByteArray::fromHex(bytes));
    Log log;
    log.add(fix(1, payload));
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "GPS_LATITUDE"), QVector<double>{degrees});
    QCOMPARE(result.raw(0, "GPS_LONGITUDE"), QVector<double>{degrees});
}

// 13:14:15 is 47,655,000 ms; 2016-02-29 is day 11,747 since 1984-01-01.
void tst_Gps::theTimeIsCanOpenTime()
{
    Log log;
    log.add(leapDayFix(1));
    QCOMPARE(log.convert().bits(0, "GPS_DATE_TIME"),
             QVector<quint64>{quint64(47655000) | quint64(11747) << 32});
}

void tst_Gps::daysCountFrom1984_data()
{
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<quint64>("days");
    QTest::newRow("the base") << QByteArray("C0070101") << quint64(0);
    QTest::newRow("a day later") << QByteArray("C0070102") << quint64(1);
    QTest::newRow("a day before") << QByteArray("BF070C1F") << quint64(0);
    QTest::newRow("the first year is a leap year") << QByteArray("C1070101") << quint64(366);
    QTest::newRow("no date yet") << QByteArray("00000000") << quint64(0);
    QTest::newRow("no such day") << QByteArray("E0070D20") << quint64(0);
}

void tst_Gps::daysCountFrom1984()
{
    QFETCH(QByteArray, date);
    QFETCH(quint64, days);
    Log log;
    log.add(fixOfDate(date));
    const QVector<quint64> time = log.convert().bits(0, "GPS_DATE_TIME");
    QCOMPARE(time.size(), 1);
    QCOMPARE(time.first() >> 32, days);
}

void tst_Gps::theTimeOfDayEndsWithItsLastSecond()
{
    QByteArray payload = QByteArray::fromHex(leapDay);
    payload.replace(1, 3, QByteArray::fromHex("173B3B"));
    Log log;
    log.add(fix(1, payload));
    QCOMPARE(log.convert().bits(0, "GPS_DATE_TIME").first() & 0xFFFFFFFF, quint64(86399000));
}

void tst_Gps::entriesOfAnyNumberAreTaken()
{
    Log log;
    log.add(leapDayFix(1, 0) + leapDayFix(2, 7));
    QCOMPARE(log.convert().times(0), (QVector<quint64>{0, 1}));
}

void tst_Gps::aShortFixIsNotTaken()
{
    Log log;
    log.add(fix(1, QByteArray::fromHex(leapDay).chopped(1)) + leapDayFix(2));
    QCOMPARE(log.convert().times(0), QVector<quint64>{0});
}

QTEST_GUILESS_MAIN(tst_Gps)
#include "tst_gps.moc"
