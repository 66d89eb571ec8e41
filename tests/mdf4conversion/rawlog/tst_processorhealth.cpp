#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/processorhealth.h"

#include <QTest>

#include <map>

using namespace rawlog;

namespace {

StdLogEntry entryOf(const QByteArray &bytes)
{
    StdLogEntry entry;
    entry.rebuild(reinterpret_cast<const uint8_t *>(bytes.constData()), std::size_t(bytes.size()));
    return entry;
}

StdLogEntry countersOf(const QByteArray &payload)
{
    return entryOf(entryBytes({RLD_DBG_COUNTERS, 7, 0, 0}, payload));
}

} // namespace

class tst_ProcessorHealth : public QObject
{
    Q_OBJECT

private slots:
    void bothCountersAreRead();
    void missingBytesOfTheSecondCounterAreZero();
    void anEntryThatEndsInTheFirstCounterHasNone();
    void temperaturesAreSigned();
    void theUtcStartIsRead();
    void otherTypesTellNothing();
    void theLargestCountersAndTheRangeOfTemperaturesAreKept();
};

void tst_ProcessorHealth::bothCountersAreRead()
{
    const auto counters = debugCounters(countersOf(QByteArray::fromHex("010203040506FF")));
    QCOMPARE(counters->ringBufferOverflows, 0x04030201U);
    QCOMPARE(int(counters->restarts), 0x0605);
}

void tst_ProcessorHealth::missingBytesOfTheSecondCounterAreZero()
{
    const auto none = debugCounters(countersOf(QByteArray::fromHex("01020304")));
    QCOMPARE(none->ringBufferOverflows, 0x04030201U);
    QCOMPARE(int(none->restarts), 0);
    const auto half = debugCounters(countersOf(QByteArray::fromHex("0102030405")));
    QCOMPARE(half->ringBufferOverflows, 0x04030201U);
    QCOMPARE(int(half->restarts), 5);
}

void tst_ProcessorHealth::anEntryThatEndsInTheFirstCounterHasNone()
{
    QVERIFY(!debugCounters(countersOf(QByteArray::fromHex("010203"))));
    QVERIFY(!debugCounters(countersOf({})));
}

void tst_ProcessorHealth::temperaturesAreSigned()
{
    AgmSample sample;
    sample.temperature = -7;
    QCOMPARE(int(*temperature(entryOf(agmEntry(1, 0, sample)))), -7);
}

void tst_ProcessorHealth::theUtcStartIsRead()
{
    QCOMPARE(*utcStart_us(entryOf(utcStartEntry(0x0102030405060708))), quint64(0x0102030405060708));
    const QByteArray tooShort(11, '\1'); // four ignored bytes and seven of eight
    QVERIFY(!utcStart_us(entryOf(entryBytes({RLD_UTC_START, 0, 0, 0}, tooShort))));
}

void tst_ProcessorHealth::otherTypesTellNothing()
{
    const StdLogEntry can = entryOf(canEntry(1, 0, {0x123, false, QByteArray(8, '\1')}));
    QVERIFY(!debugCounters(can));
    QVERIFY(!temperature(can));
    QVERIFY(!utcStart_us(can));
    std::map<quint8, ProcessorHealth> processors;
    noteHealth(can, processors);
    QVERIFY(processors.empty());
}

void tst_ProcessorHealth::theLargestCountersAndTheRangeOfTemperaturesAreKept()
{
    std::map<quint8, ProcessorHealth> processors;
    for (const auto &[overflows, restarts] : {std::pair(5, 2), std::pair(3, 4)})
        noteHealth(entryOf(debugCountersEntry(1, quint32(overflows), quint16(restarts))),
                   processors);
    QCOMPARE(*processors[1].ringBufferOverflows, 5U);
    QCOMPARE(int(*processors[1].restarts), 4);
    QVERIFY(!processors[1].minTemperature);
    for (const int degrees : {20, -7, 35}) {
        AgmSample sample;
        sample.temperature = qint8(degrees);
        noteHealth(entryOf(agmEntry(1, 3, sample)), processors);
    }
    QCOMPARE(int(*processors[3].minTemperature), -7);
    QCOMPARE(int(*processors[3].maxTemperature), 35);
    QVERIFY(!processors[3].restarts);
}

QTEST_GUILESS_MAIN(tst_ProcessorHealth)
#include "tst_processorhealth.moc"
