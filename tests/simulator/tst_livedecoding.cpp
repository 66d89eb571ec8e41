#include "MDF4Conversion/rawlog/entrytypes.h"
#include "eth/tunnelingmsg.h"
#include "link/liveentries.h"
#include "link/protocol/framereader.h"
#include "simulator/livestream.h"
#include "simulator/loggerstate.h"

#include <QTest>

#include <map>
#include <memory>

namespace {

// The entries of some seconds with every source switched on, by type and sub.
std::map<std::pair<int, int>, QList<QByteArray>> streamedEntries()
{
    constexpr qint64 second_us = 1'000'000;
    simulator::LoggerState state;
    StreamingClass_Cfg_Ethernet &eth = state.configuration.eth;
    eth.module_selection = 3;
    eth.tunneling.tunneling_enabled = 1;
    eth.tunneling.mirroring_enabled = 1;
    simulator::LiveStream stream(state);
    stream.restart(0);
    std::map<std::pair<int, int>, QList<QByteArray>> entries;
    protocol::FrameReader reader;
    for (int i = 1; i <= 5; ++i) {
        for (const QByteArray &entry : reader.feed(stream.entriesUntil(i * second_us)))
            entries[{live::typeOf(entry), live::subOf(entry)}] += entry;
    }
    return entries;
}

} // namespace

// The simulator's live data through the tool's own decoders: what one side writes the other reads.
class tst_LiveDecoding : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_entries = streamedEntries(); }

    void canFrames();
    void accelerometerSamples();
    void strainGauges();
    void gpsFixes();
    void lte();
    void systemInformation();
    void rs485();
    void dataSheets();
    void ccpXcpSessions();
    void etherCatMaster();
    void ethernetFrames();
    void tunneledMessages();
    void xcpOnEthernet();

private:
    [[nodiscard]] QList<QByteArray> entries(int type, int sub = 0) const
    {
        const auto found = m_entries.find({type, sub});
        return found == m_entries.end() ? QList<QByteArray>() : found->second;
    }

    std::map<std::pair<int, int>, QList<QByteArray>> m_entries;
};

void tst_LiveDecoding::canFrames()
{
    QSet<quint8> channels;
    for (const QByteArray &entry : entries(rawlog::RLD_CAN)) {
        const std::unique_ptr<CAN_Msg_Class> message(live::canMessage(entry));
        QVERIFY(message);
        channels.insert(live::numberOf(entry));
    }
    QCOMPARE(channels, (QSet<quint8>{0, 1, 2, 3, 4, 5}));
}

void tst_LiveDecoding::accelerometerSamples()
{
    QCOMPARE(entries(rawlog::RLD_AGM).size(), 5000);
    for (const QByteArray &entry : entries(rawlog::RLD_AGM))
        QVERIFY(live::agmSample(entry));
}

void tst_LiveDecoding::strainGauges()
{
    QVERIFY(!entries(rawlog::RLD_D4MOD).isEmpty());
    for (const QByteArray &entry : entries(rawlog::RLD_D4MOD))
        QCOMPARE(live::d4modValues(entry).size(), 4);
    QVERIFY(!entries(rawlog::RLD_D4MOD_INFO).isEmpty());
    for (const QByteArray &entry : entries(rawlog::RLD_D4MOD_INFO)) {
        const QVector<quint16> voltages = live::dtiVoltages(entry);
        QCOMPARE(voltages.size(), 4);
        for (const quint16 voltage_mV : voltages)
            QVERIFY(voltage_mV > 4900 && voltage_mV < 5100);
    }
}

void tst_LiveDecoding::gpsFixes()
{
    const auto fix = live::gpsFix(entries(rawlog::RLD_GPS).last());
    QVERIFY(fix && fix->valid);
    QVERIFY(std::abs(fix->latitude) > 1);
}

void tst_LiveDecoding::lte()
{
    const auto status = live::lteStatus(entries(rawlog::RLD_LTE).last());
    QVERIFY(status);
    QCOMPARE(int(status->registration), 1);
    QCOMPARE(status->band, 4096U);
}

void tst_LiveDecoding::systemInformation()
{
    const auto infos = live::systemInfos(entries(rawlog::RLD_SYSTEM_INFO).last());
    QVERIFY(infos);
    QVERIFY(infos->word_high > 11'000 && infos->word_high < 15'000); // supply, mV
    QCOMPARE(infos->flags, 1U << 11 | 1U << 12);
}

void tst_LiveDecoding::rs485()
{
    QSet<quint8> ports;
    for (const QByteArray &entry : entries(rawlog::RLD_RS485_INFO)) {
        const auto infos = live::rs485Infos(entry);
        QVERIFY(infos);
        const bool isSupplied = live::numberOf(entry) == 0 || live::numberOf(entry) == 3;
        QCOMPARE(int(infos->sessionStatus), isSupplied ? 8 : 0);
        QCOMPARE(infos->voltage_mV > 5000, isSupplied);
        ports.insert(live::numberOf(entry));
    }
    QCOMPARE(ports.size(), live::rs485Ports);
}

void tst_LiveDecoding::dataSheets()
{
    QVERIFY(!entries(rawlog::RLD_D4MOD_TED).isEmpty());
    for (const QByteArray &entry : entries(rawlog::RLD_D4MOD_TED)) {
        D4Mod_Channel channel;
        channel.parseTedBlock(live::tedText(entry));
        QVERIFY(!channel.location.isEmpty());
        QVERIFY(channel.use_scaling);
    }
}

void tst_LiveDecoding::ccpXcpSessions()
{
    QVERIFY(!entries(rawlog::RLD_CCP_XCP_INFO).isEmpty());
    for (const QByteArray &entry : entries(rawlog::RLD_CCP_XCP_INFO)) {
        const auto infos = live::ccpXcpInfos(entry);
        QVERIFY(infos);
        QCOMPARE(int(infos->sessionStatus), 18); // running
    }
}

void tst_LiveDecoding::etherCatMaster()
{
    QVERIFY(!entries(rawlog::RLD_ETHERCAT).isEmpty());
    const auto infos = live::etherCatInfos(entries(rawlog::RLD_ETHERCAT_INFO).last());
    QVERIFY(infos);
    QCOMPARE(int(infos->masterState), 2); // operational
    QCOMPARE(int(infos->lastError), 0);
}

void tst_LiveDecoding::ethernetFrames()
{
    const QList<QByteArray> frames = entries(rawlog::RLD_ETH, live::xcpFrameSub);
    QVERIFY(!frames.isEmpty());
    for (const QByteArray &entry : frames)
        QVERIFY(live::isEthernetEntry(entry));
}

void tst_LiveDecoding::tunneledMessages()
{
    const QList<QByteArray> blocks = entries(rawlog::RLD_ETH, live::tunnelingSub);
    QVERIFY(!blocks.isEmpty());
    for (const QByteArray &entry : blocks) {
        QVERIFY(live::isEthernetEntry(entry));
        const QList<TunnelingMsg *> messages =
            TunnelingMsgCreator::newTunnelingMessage(entry, nullptr);
        QList<int> channels;
        for (const TunnelingMsg *message : messages)
            channels += message->channel();
        qDeleteAll(messages);
        QCOMPARE(channels, (QList<int>{0, 1, 2, 3, 4, 5, 6}));
    }
}

void tst_LiveDecoding::xcpOnEthernet()
{
    constexpr int xcpSub = 1;
    const auto infos = live::xcpInfos(entries(rawlog::RLD_ETH_INFO, xcpSub).last());
    QVERIFY(infos);
    QCOMPARE(int(infos->mainState), 8);
    QCOMPARE(int(infos->lastError), -1);
}

QTEST_GUILESS_MAIN(tst_LiveDecoding)
#include "tst_livedecoding.moc"
