#include "can/busload.h"
#include "config/terminalcancfg.h"
#include "tests/can/framebytes.h"

#include <QtTest>

namespace {

// 500 kbit/s, a bit takes 2 us; the data phase 2 Mbit/s, a bit takes 0.5 us.
TerminalCanCfg channel(quint8 mode)
{
    TerminalCanCfg configuration;
    configuration.can_mode = mode;
    configuration.clk_div = 15;
    configuration.tseg1 = 11;
    configuration.tseg2 = 4;
    configuration.fast_clk_div = 3;
    configuration.fast_tseg1 = 14;
    configuration.fast_tseg2 = 5;
    return configuration;
}

const FrameBytes eightBytes(0x123, "0102030405060708");

} // namespace

class tst_BusLoad : public QObject
{
    Q_OBJECT

private slots:
    void aFrameHasItsBits_data();
    void aFrameHasItsBits();
    void nothingReceivedIsNoLoad();
    void theLoadIsTheTimeOnTheBus();
    void theDataPhaseTakesItsOwnTime();
    void framesOlderThanASecondDoNotCount();
    void aSteadyRateIsShownAsItIs();
    void theClockMayWrap();
    void aFrameThatIsLateCountsInItsPlace();
    void aClockThatStartsAnewStartsTheSecondAnew();
    void aDeadChannelHasNoLoad();
    void clearForgets();
};

void tst_BusLoad::aFrameHasItsBits_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("isExtended");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QVector<int>>("bits");
    QTest::newRow("classic, no data") << 0 << false << 0 << QVector<int>{47, 0, 8, 0};
    QTest::newRow("classic, 8 bytes") << 0 << false << 8 << QVector<int>{111, 0, 24, 0};
    QTest::newRow("classic, 29 bits, 8 bytes") << 0 << true << 8 << QVector<int>{131, 0, 29, 0};
    QTest::newRow("FD, 8 bytes") << 1 << false << 8 << QVector<int>{29 + 97, 0, 21, 0};
    QTest::newRow("switching, no data") << 2 << false << 0 << QVector<int>{29, 33, 4, 1};
    QTest::newRow("switching, 16 bytes") << 2 << false << 16 << QVector<int>{29, 161, 4, 33};
    QTest::newRow("switching, the longer CRC") << 2 << false << 20 << QVector<int>{29, 198, 4, 41};
    QTest::newRow("switching, 29 bits, 64 bytes")
        << 2 << true << 64 << QVector<int>{48, 550, 8, 130};
}

void tst_BusLoad::aFrameHasItsBits()
{
    QFETCH(int, mode);
    QFETCH(bool, isExtended);
    QFETCH(int, bytes);
    const can::FrameBits bits = can::frameBits(mode, isExtended, false, bytes);
    QTEST((QVector<int>{bits.nominal, bits.fast, bits.most_stuff_nominal, bits.most_stuff_fast}),
          "bits");
}

void tst_BusLoad::nothingReceivedIsNoLoad()
{
    const can::BusLoad load;
    QCOMPARE(load.figures().frames, 0U);
    QCOMPARE(load.figures().least_percent, 0.0);
}

void tst_BusLoad::theLoadIsTheTimeOnTheBus()
{
    can::BusLoad load;
    load.setTiming(channel(0));
    for (quint32 i = 0; i < 1000; ++i)
        load.add(eightBytes.at(i * 900));
    QCOMPARE(load.figures().frames, 1000U);
    QCOMPARE(load.figures().least_percent, 22.2); // 1000 x 111 bits x 2 us
    QCOMPARE(load.figures().most_percent, 27.0);  // 1000 x 135 bits x 2 us
}

void tst_BusLoad::theDataPhaseTakesItsOwnTime()
{
    can::BusLoad load;
    load.setTiming(channel(2));
    for (quint32 i = 0; i < 1000; ++i)
        load.add(eightBytes.at(i * 900));
    load.add(FrameBytes(0x123, "").remote().at(900'000)); // a classic frame of 47 bits
    // 1000 x (29 bits x 2 us + 97 bits x 0.5 us) + 94 us
    QCOMPARE(load.figures().least_percent, 10.65 + 0.0094);
}

void tst_BusLoad::framesOlderThanASecondDoNotCount()
{
    can::BusLoad load;
    load.add(eightBytes.at(100));
    load.add(eightBytes.at(500'000));
    load.add(eightBytes.at(1'005'000));
    QCOMPARE(load.figures().frames, 2U);
    load.add(eightBytes.at(9'000'000));
    QCOMPARE(load.figures().frames, 1U);
}

void tst_BusLoad::aSteadyRateIsShownAsItIs()
{
    can::BusLoad load;
    for (quint32 time_us = 0; time_us < 5'000'000; time_us += 1000) {
        load.add(eightBytes.at(time_us));
        if (time_us >= 1'000'000) {
            QVERIFY(load.figures().frames > 990);
            QVERIFY(load.figures().frames <= 1000);
        }
    }
}

void tst_BusLoad::theClockMayWrap()
{
    can::BusLoad load;
    for (quint32 i = 0; i < 8; ++i)
        load.add(eightBytes.at(0xFFFFFFFFU - 350'000 + i * 100'000));
    QCOMPARE(load.figures().frames, 8U);
}

void tst_BusLoad::aFrameThatIsLateCountsInItsPlace()
{
    can::BusLoad load;
    load.add(eightBytes.at(2'000'000));
    load.add(eightBytes.at(1'500'000));
    QCOMPARE(load.figures().frames, 2U);
    load.add(eightBytes.at(2'600'000));
    QCOMPARE(load.figures().frames, 2U);
}

void tst_BusLoad::aClockThatStartsAnewStartsTheSecondAnew()
{
    can::BusLoad load;
    load.add(eightBytes.at(900'000'000));
    load.add(eightBytes.at(10));
    QCOMPARE(load.figures().frames, 1U);
}

void tst_BusLoad::aDeadChannelHasNoLoad()
{
    TerminalCanCfg configuration = channel(0);
    configuration.clk_div = 0;
    can::BusLoad load;
    load.setTiming(configuration);
    load.add(eightBytes);
    QCOMPARE(load.figures().frames, 1U);
    QCOMPARE(load.figures().most_percent, 0.0);
}

void tst_BusLoad::clearForgets()
{
    can::BusLoad load;
    load.add(eightBytes);
    load.clear();
    QCOMPARE(load.figures().frames, 0U);
}

QTEST_GUILESS_MAIN(tst_BusLoad)
#include "tst_busload.moc"
