#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"

#include <QTest>

namespace {

QByteArray temperature(quint8 processor, qint8 degrees)
{
    rawlog::AgmSample sample;
    sample.temperature = degrees;
    return rawlog::agmEntry(1, processor, sample);
}

} // namespace

class tst_Metadata : public QObject
{
    Q_OBJECT

private slots:
    void theTemperatureRangeOfAProcessorIsTold();
    void temperaturesAreSigned();
    void aProcessorWithoutTemperatureTellsNone();
    void theSyncCounterIsToldFrom2On_data();
    void theSyncCounterIsToldFrom2On();
    void theRingBufferCounterIsToldUnless0_data();
    void theRingBufferCounterIsToldUnless0();
    void theLargestCountersAreTold();
    void processorsAreToldInAscendingOrder();
    void countersThatEndEarlyAreFilledWithZeros();
    void countersThatEndInTheFirstAreIgnored();
    void theUtcStartBecomesTheStartTimeInNanoseconds();
    void aUtcStartWithoutNanosecondsIsIgnoredWithAWarning();
    void theBytesBeforeTheUtcStartAreIgnored();
    void aLogWithoutUtcStartBeginsAt0();
    void aShortUtcStartIsIgnored();
    void infosAreNoSamples();
};

void tst_Metadata::theTemperatureRangeOfAProcessorIsTold()
{
    ConversionHarness log;
    log.add(temperature(1, 40) + temperature(1, 35) + temperature(1, 52));
    QCOMPARE(log.convert().status(QStringLiteral("Dbg-Infos")),
             QStringLiteral("Dbg-Infos[1]: Internal-Temperature min:35 max:52 [°C]"));
}

void tst_Metadata::temperaturesAreSigned()
{
    ConversionHarness log;
    log.add(temperature(0, -40) + temperature(0, 5));
    QCOMPARE(log.convert().status(QStringLiteral("Dbg-Infos")),
             QStringLiteral("Dbg-Infos[0]: Internal-Temperature min:-40 max:5 [°C]"));
}

void tst_Metadata::aProcessorWithoutTemperatureTellsNone()
{
    ConversionHarness log;
    log.add(rawlog::debugCountersEntry(3, 0, 0));
    QVERIFY(log.convert().statuses.filter(QStringLiteral("Dbg-Infos")).isEmpty());
}

void tst_Metadata::theSyncCounterIsToldFrom2On_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("told");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << false;
    QTest::newRow("2") << 2 << true;
    QTest::newRow("largest") << 65535 << true;
}

void tst_Metadata::theSyncCounterIsToldFrom2On()
{
    QFETCH(int, count);
    QFETCH(bool, told);
    ConversionHarness log;
    log.add(rawlog::debugCountersEntry(3, 0, quint16(count)));
    const QString text =
        QStringLiteral("Dbg-Infos[3]: Timestamp-Sync-Counter/LogController-Restart-Counter:%1")
            .arg(count);
    QCOMPARE(log.convert().warnings, told ? QStringList(text) : QStringList());
}

void tst_Metadata::theRingBufferCounterIsToldUnless0_data()
{
    QTest::addColumn<quint32>("count");
    QTest::newRow("0") << 0U;
    QTest::newRow("1") << 1U;
    QTest::newRow("largest") << 0xFFFFFFFFU;
}

void tst_Metadata::theRingBufferCounterIsToldUnless0()
{
    QFETCH(quint32, count);
    ConversionHarness log;
    log.add(rawlog::debugCountersEntry(3, count, 0));
    const QString text =
        QStringLiteral("Dbg-Infos[3]: Ringbuffer overflow protection counter:%1").arg(count);
    QCOMPARE(log.convert().errors, count != 0 ? QStringList(text) : QStringList());
}

void tst_Metadata::theLargestCountersAreTold()
{
    ConversionHarness log;
    log.add(rawlog::debugCountersEntry(0, 7, 3) + rawlog::debugCountersEntry(0, 5, 9));
    const ConversionResult result = log.convert();
    QVERIFY(result.errors.first().endsWith(QStringLiteral("counter:7")));
    QVERIFY(result.warnings.first().endsWith(QStringLiteral("Counter:9")));
}

void tst_Metadata::processorsAreToldInAscendingOrder()
{
    ConversionHarness log;
    log.add(temperature(200, 1) + temperature(0, 2) + rawlog::debugCountersEntry(3, 1, 2));
    const QStringList told = log.convert().messages.filter(QStringLiteral("Dbg-Infos"));
    QCOMPARE(told.size(), 4);
    QVERIFY(told[0].startsWith(QStringLiteral("Status: Dbg-Infos[0]")));
    QVERIFY(told[1].startsWith(QStringLiteral("Warning: Dbg-Infos[3]")));
    QVERIFY(told[2].startsWith(QStringLiteral("Error: Dbg-Infos[3]")));
    QVERIFY(told[3].startsWith(QStringLiteral("Status: Dbg-Infos[200]")));
}

void tst_Metadata::countersThatEndEarlyAreFilledWithZeros()
{
    ConversionHarness log;
    log.add(
        rawlog::entryBytes({rawlog::RLD_DBG_COUNTERS, 0, 0, 0}, QByteArray::fromHex("09000000")));
    log.add(
        rawlog::entryBytes({rawlog::RLD_DBG_COUNTERS, 1, 0, 0}, QByteArray::fromHex("0700000005")));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors.size(), 2);
    QVERIFY(result.errors[0].endsWith(QStringLiteral("[0]: Ringbuffer overflow protection "
                                                     "counter:9")));
    QVERIFY(result.errors[1].endsWith(QStringLiteral("counter:7")));
    QCOMPARE(result.warnings.size(), 1);
    QVERIFY(result.warnings[0].endsWith(QStringLiteral("Counter:5")));
}

void tst_Metadata::countersThatEndInTheFirstAreIgnored()
{
    ConversionHarness log;
    log.add(rawlog::entryBytes({rawlog::RLD_DBG_COUNTERS, 0, 0, 0}, QByteArray(3, char(0xFF))));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.warnings, QStringList());
}

void tst_Metadata::aUtcStartWithoutNanosecondsIsIgnoredWithAWarning()
{
    ConversionHarness log;
    log.add(rawlog::utcStartEntry(~quint64(0) / 1000 + 1));
    const ConversionResult result = log.convert();
    QCOMPARE(result.file.startTime_ns, std::uint64_t(0));
    QCOMPARE(result.warnings.size(), 1);
    QVERIFY(result.warnings[0].contains(QStringLiteral("2554")));
}

void tst_Metadata::theUtcStartBecomesTheStartTimeInNanoseconds()
{
    ConversionHarness log;
    log.add(rawlog::utcStartEntry(1700000000123456));
    const ConversionResult result = log.convert();
    QCOMPARE(result.file.startTime_ns, std::uint64_t(1700000000123456000));
    QCOMPARE(result.file.fileHistoryTime_ns, std::uint64_t(1700000000123456000));
}

void tst_Metadata::theBytesBeforeTheUtcStartAreIgnored()
{
    ConversionHarness log;
    log.add(QByteArray::fromHex("AA55 1000 EF 00 00 00 FFFFFFFF 40420F0000000000"));
    QCOMPARE(log.convert().file.startTime_ns, std::uint64_t(1000000000));
}

void tst_Metadata::aLogWithoutUtcStartBeginsAt0()
{
    ConversionHarness log;
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QCOMPARE(result.file.startTime_ns, std::uint64_t(0));
    QCOMPARE(result.file.fileHistoryTime_ns, std::uint64_t(0));
}

void tst_Metadata::aShortUtcStartIsIgnored()
{
    ConversionHarness log;
    log.add(QByteArray::fromHex("AA55 0F00 EF 00 00 00 FFFFFFFF 40420F00000000"));
    QCOMPARE(log.convert().file.startTime_ns, std::uint64_t(0));
}

void tst_Metadata::infosAreNoSamples()
{
    ConversionHarness log;
    log.configuration.agm.enabled = 1;
    log.add(rawlog::utcStartEntry(1) + rawlog::debugCountersEntry(0, 0, 0) + temperature(0, 1));
    const ConversionResult result = log.convert();
    QCOMPARE(result.groupNames(), QStringList(QStringLiteral("Accelerometer/Gyroscope")));
    QCOMPARE(result.times(0).size(), 1);
}

QTEST_GUILESS_MAIN(tst_Metadata)
#include "tst_metadata.moc"
