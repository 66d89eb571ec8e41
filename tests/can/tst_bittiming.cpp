#include "a2l/records/a2lconstants.h"
#include "can/bittiming.h"
#include "config/terminalcancfg.h"
#include "tests/app/messagesink.h"

#include <QTest>

#include <cmath>
#include <random>
#include <vector>

using can::BitTiming;

namespace {

QString registersOf(const BitTiming &t)
{
    return QStringLiteral("%1 %2 %3 %4").arg(t.clk_div).arg(t.tseg1).arg(t.tseg2).arg(t.sjw);
}

// Every combination of registers with its results, in the order in which the first of equals wins.
class PlainSearch
{
public:
    PlainSearch()
    {
        for (int clk_div = 1; clk_div <= 1024; ++clk_div) {
            for (int tseg1 = 2; tseg1 <= 64; ++tseg1) {
                for (int tseg2 = 1; tseg2 <= 16; ++tseg2) {
                    m_registers.push_back({clk_div, tseg1, tseg2, 1});
                    m_rates.push_back(int(120000000.0 / clk_div / (tseg1 + 1 + tseg2)));
                    m_samples.push_back(100.0 * (tseg1 + 1) / (tseg1 + 1 + tseg2));
                }
            }
        }
    }

    [[nodiscard]] BitTiming find(quint32 bitRate, int samplePoint) const
    {
        BitTiming best{15, 11, 4, 1};
        qint64 bestDistance = bitRate;
        double bestSample = 0.0;
        for (std::size_t i = 0; i < m_rates.size(); ++i) {
            const qint64 distance = std::abs(m_rates[i] - qint64(bitRate));
            if (distance > bestDistance)
                continue;
            if (distance < bestDistance
                || std::abs(m_samples[i] - samplePoint) < std::abs(bestSample - samplePoint)) {
                best = m_registers[i];
                bestDistance = distance;
                bestSample = m_samples[i];
            }
        }
        return best;
    }

private:
    std::vector<BitTiming> m_registers;
    std::vector<int> m_rates;
    std::vector<double> m_samples;
};

StreamingClass_A2L_Module moduleOnCan(quint32 baudrate, quint8 samplePoint, quint8 sjw = 2)
{
    StreamingClass_A2L_Module module;
    module.config.active_interface = ACTIVE_A2L_IF_CCP_XCP_O_CAN;
    module.config.cfg.baudrate = baudrate;
    module.config.cfg.sample_point = samplePoint;
    module.config.cfg.sjw = sjw;
    return module;
}

} // namespace

class tst_BitTiming : public QObject
{
    Q_OBJECT

private slots:
    void presetsGiveTheirBitRateAndSamplePoint_data();
    void presetsGiveTheirBitRateAndSamplePoint();
    void theJumpWidthHasNoPartInTheResults();
    void boxesOfferABlankItemAndTheirPresets();
    void thereIsAFastPresetThatNoBoxOffers();
    void indexesBeyondThePresetsGiveNone();

    void theSearchFindsTheBestRegisters_data();
    void theSearchFindsTheBestRegisters();
    void theSearchEqualsThePlainOne();
    void theSearchIsLogged();

    void aModuleOnCanSetsTheChannelUp();
    void theJumpWidthOfAModuleIsKeptInRange_data();
    void theJumpWidthOfAModuleIsKeptInRange();
    void aModuleWithoutBitRateGivesTheUsualTiming();
    void aModuleThatIsNotOnCanChangesNothing_data();
    void aModuleThatIsNotOnCanChangesNothing();
};

void tst_BitTiming::presetsGiveTheirBitRateAndSamplePoint_data()
{
    QTest::addColumn<bool>("fast");
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("bitRate_kHz");
    QTest::addColumn<QString>("registers");

    QTest::newRow("20K") << false << 1 << 20.0 << "375 11 4 1";
    QTest::newRow("50K") << false << 2 << 50.0 << "150 11 4 1";
    QTest::newRow("100K") << false << 3 << 100.0 << "75 11 4 1";
    QTest::newRow("125K") << false << 4 << 125.0 << "60 11 4 1";
    QTest::newRow("250K") << false << 5 << 250.0 << "30 11 4 1";
    QTest::newRow("500K") << false << 6 << 500.0 << "15 11 4 1";
    QTest::newRow("1000K") << false << 7 << 1000.0 << "6 14 5 1";
    QTest::newRow("fast 250K") << true << 1 << 250.0 << "30 11 4 1";
    QTest::newRow("fast 500K") << true << 2 << 500.0 << "15 11 4 1";
    QTest::newRow("fast 1000K") << true << 3 << 1000.0 << "6 14 5 1";
    QTest::newRow("fast 2000K") << true << 4 << 2000.0 << "3 14 5 1";
    QTest::newRow("fast 5000K") << true << 5 << 5000.0 << "2 8 3 1";
    QTest::newRow("fast 10000K") << true << 6 << 10000.0 << "1 8 3 1";
}

void tst_BitTiming::presetsGiveTheirBitRateAndSamplePoint()
{
    QFETCH(bool, fast);
    QFETCH(int, index);
    const auto timing = fast ? can::fastPreset(index) : can::nominalPreset(index);
    QVERIFY(timing);
    QTEST(registersOf(*timing), "registers");
    QTEST(can::bitRate_kHz(*timing), "bitRate_kHz");
    QCOMPARE(can::samplePoint_percent(*timing), 75.0);
}

void tst_BitTiming::theJumpWidthHasNoPartInTheResults()
{
    const BitTiming narrow{7, 2, 1, 1};
    const BitTiming wide{7, 2, 1, 16};
    QCOMPARE(can::bitRate_kHz(wide), can::bitRate_kHz(narrow));
    QCOMPARE(can::samplePoint_percent(wide), can::samplePoint_percent(narrow));
}

void tst_BitTiming::boxesOfferABlankItemAndTheirPresets()
{
    QCOMPARE(can::nominalPresetTexts().join(QLatin1Char(',')),
             QStringLiteral(" ,20K,50K,100K,125K,250K,500K,1000K"));
    QCOMPARE(can::fastPresetTexts().join(QLatin1Char(',')),
             QStringLiteral(" ,250K,500K,1000K,2000K,5000K"));
}

void tst_BitTiming::thereIsAFastPresetThatNoBoxOffers()
{
    QCOMPARE(registersOf(can::fastPreset(6).value()), QStringLiteral("1 8 3 1"));
    QCOMPARE(can::fastPresetTexts().size(), 6);
}

void tst_BitTiming::indexesBeyondThePresetsGiveNone()
{
    for (const int index : {-1, 0, 8}) {
        QVERIFY(!can::nominalPreset(index));
        QVERIFY(!can::fastPreset(index));
    }
    QVERIFY(!can::fastPreset(7));
}

void tst_BitTiming::theSearchFindsTheBestRegisters_data()
{
    QTest::addColumn<quint32>("bitRate");
    QTest::addColumn<int>("samplePoint");
    QTest::addColumn<QString>("registers");

    QTest::newRow("500 kbit/s, not the preset") << 500'000U << 75 << "4 44 15 1";
    QTest::newRow("1 Mbit/s") << 1'000'000U << 80 << "2 47 12 1";
    QTest::newRow("nothing asked for") << 0U << 75 << "15 11 4 1";
    QTest::newRow("no bit rate is closer than none") << 700U << 75 << "15 11 4 1";
    QTest::newRow("as close as none, so the sample point decides") << 723U << 80 << "1024 64 16 1";
    QTest::newRow("as close as none, sample point 0 asked for") << 723U << 0 << "15 11 4 1";
    QTest::newRow("faster than all") << 4'000'000'000U << 75 << "1 2 1 1";
    QTest::newRow("sample point beyond the end") << 500'000U << 200 << "4 58 1 1";
}

void tst_BitTiming::theSearchFindsTheBestRegisters()
{
    QFETCH(quint32, bitRate);
    QFETCH(int, samplePoint);
    const MessageSink quiet;
    QTEST(registersOf(can::bestFitTiming(bitRate, samplePoint)), "registers");
}

void tst_BitTiming::theSearchEqualsThePlainOne()
{
    std::vector<std::pair<quint32, int>> requests;
    for (const quint32 kHz : {20, 50, 100, 125, 250, 500, 1000, 2000, 5000, 10000})
        requests.emplace_back(kHz * 1000, 75);
    std::mt19937 random(20);
    // Evenly over the orders of magnitude, from below the slowest bit rate to above the fastest.
    std::uniform_real_distribution<double> logarithm(std::log(300.0), std::log(60e6));
    std::uniform_int_distribution<int> samplePoint(0, 255);
    std::uniform_int_distribution<int> usual(50, 90);
    for (int i = 0; i < 1000; ++i)
        requests.emplace_back(quint32(std::exp(logarithm(random))),
                              i % 4 == 0 ? samplePoint(random) : usual(random));

    const PlainSearch plain;
    const MessageSink quiet;
    for (const auto &[bitRate, sample] : requests) {
        const QString asked = QStringLiteral("%1 bit/s, %2 %: ").arg(bitRate).arg(sample);
        QCOMPARE(asked + registersOf(can::bestFitTiming(bitRate, sample)),
                 asked + registersOf(plain.find(bitRate, sample)));
    }
}

void tst_BitTiming::theSearchIsLogged()
{
    const MessageSink log;
    QCOMPARE(registersOf(can::bestFitTiming(500'000, 75)), QStringLiteral("4 44 15 1"));
    const QStringList expected = {
        QStringLiteral("Debug: T-BR:500000 T-SP:75"),
        QStringLiteral("Debug: Calculated: 500000 SamplePoint:75 Clk:4 Tseg1:44 Tseg2:15")};
    QCOMPARE(log.messages(), expected);
}

void tst_BitTiming::aModuleOnCanSetsTheChannelUp()
{
    TerminalCanCfg channel;
    channel.can_mode = 2;
    channel.listen_only = 1;
    channel.termination = 1;
    channel.fast_clk_div = channel.fast_tseg1 = channel.fast_tseg2 = channel.fast_sjw = 3;
    channel.remote_11 = channel.remote_29 = 1;
    const MessageSink log;
    can::load_can_cfg_from_a2l(channel, moduleOnCan(1'000'000, 80));

    TerminalCanCfg expected;
    expected.enabled = 1;
    expected.single_shot = 1;
    expected.clk_div = 2;
    expected.tseg1 = 47;
    expected.tseg2 = 12;
    expected.sjw = 2;
    QVERIFY(channel == expected); // whose fast timing is 15, 11, 4, 1
    QCOMPARE(log.messages().first(),
             QStringLiteral("Debug: Active Interface - ACTIVE_A2L_IF_CCP_XCP_O_CAN -- "
                            "load_can_cfg_from_a2l"));
}

void tst_BitTiming::theJumpWidthOfAModuleIsKeptInRange_data()
{
    QTest::addColumn<int>("sjw");
    QTest::addColumn<int>("kept");

    QTest::newRow("none") << 0 << 1;
    QTest::newRow("smallest") << 1 << 1;
    QTest::newRow("largest") << 16 << 16;
    QTest::newRow("too large") << 17 << 16;
    QTest::newRow("far too large") << 255 << 16;
}

void tst_BitTiming::theJumpWidthOfAModuleIsKeptInRange()
{
    QFETCH(int, sjw);
    const MessageSink quiet;
    TerminalCanCfg channel;
    can::load_can_cfg_from_a2l(channel, moduleOnCan(500'000, 75, quint8(sjw)));
    QTEST(int(channel.sjw), "kept");
}

void tst_BitTiming::aModuleWithoutBitRateGivesTheUsualTiming()
{
    const MessageSink quiet;
    TerminalCanCfg channel;
    channel.clk_div = 6;
    channel.tseg1 = 14;
    channel.tseg2 = 5;
    can::load_can_cfg_from_a2l(channel, moduleOnCan(0, 0));
    const BitTiming timing{channel.clk_div, channel.tseg1, channel.tseg2, channel.sjw};
    QCOMPARE(can::bitRate_kHz(timing), 500.0);
    QCOMPARE(can::samplePoint_percent(timing), 75.0);
}

void tst_BitTiming::aModuleThatIsNotOnCanChangesNothing_data()
{
    QTest::addColumn<int>("active");
    QTest::addColumn<int>("warnings");

    QTest::newRow("none") << int(ACTIVE_A2L_IF_NONE) << 0;
    QTest::newRow("UDP") << int(ACTIVE_A2L_IF_XCP_O_UDP) << 1;
    QTest::newRow("TCP") << int(ACTIVE_A2L_IF_XCP_O_TCP) << 1;
    QTest::newRow("unknown") << 255 << 0;
}

void tst_BitTiming::aModuleThatIsNotOnCanChangesNothing()
{
    QFETCH(int, active);
    StreamingClass_A2L_Module module = moduleOnCan(1'000'000, 80);
    module.config.active_interface = quint8(active);
    TerminalCanCfg channel;
    channel.can_mode = 2;
    TerminalCanCfg before;
    record::copy(channel, before);

    const MessageSink log;
    can::load_can_cfg_from_a2l(channel, module);
    QVERIFY(channel == before);
    QTEST(int(log.messages().filter(QStringLiteral("Warning:")).size()), "warnings");
    QTEST(int(log.messages().size()), "warnings");
}

QTEST_GUILESS_MAIN(tst_BitTiming)
#include "tst_bittiming.moc"
