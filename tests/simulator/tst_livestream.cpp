#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "link/protocol/framereader.h"
#include "simulator/configurationrecords.h"
#include "simulator/livestream.h"
#include "simulator/loggerstate.h"

#include <QSet>
#include <QTest>

#include <cmath>
#include <limits>

using simulator::LiveStream;
using simulator::LoggerState;

namespace {

constexpr qint64 second_us = 1'000'000;

QVector<StdLogEntry> entriesOf(const QByteArray &bytes)
{
    QVector<StdLogEntry> entries;
    protocol::FrameReader reader;
    for (const QByteArray &frame : reader.feed(bytes)) {
        StdLogEntry entry;
        entry.rebuild(reinterpret_cast<const uint8_t *>(frame.constData()),
                      std::size_t(frame.size()));
        entries += entry;
    }
    return entries;
}

// What is streamed in the first seconds.
QByteArray streamed(const LoggerState &state, int seconds)
{
    LiveStream stream(state);
    stream.restart(0);
    QByteArray bytes;
    for (int i = 1; i <= seconds; ++i)
        bytes += stream.entriesUntil(i * second_us);
    return bytes;
}

QSet<int> typesOf(const QByteArray &bytes)
{
    QSet<int> types;
    for (const StdLogEntry &entry : entriesOf(bytes))
        types.insert(entry.type);
    return types;
}

int count(const QByteArray &bytes, quint8 type, quint8 number)
{
    int found = 0;
    for (const StdLogEntry &entry : entriesOf(bytes))
        found += entry.type == type && entry.number == number;
    return found;
}

void switchEverythingOff(LoggerState &state)
{
    TerminalStruct off;
    record::copy(off, state.configuration);
}

StreamingClass_DBC_Signal &addSignal(TerminalCanCfg &channel, quint32 id)
{
    StreamingClass_DBC_Signal &signal = channel.dbc_signals.add();
    signal.unit = QStringLiteral("km/h");
    signal.bit_length = 16;
    signal.little_endian = 1;
    signal.factor = 0.01;
    signal.maximum = 400;
    signal.dlc = 8;
    signal.msg_id = id;
    return signal;
}

} // namespace

class tst_LiveStream : public QObject
{
    Q_OBJECT

private slots:
    void everyKindOfEntryIsStreamed();
    void everyEntryIsWhole();
    void nothingButStatusComesWhenAllIsSwitchedOff();
    void theAccelerometerBlockKeepsItsRate_data();
    void theAccelerometerBlockKeepsItsRate();
    void aChannelSendsTheMessagesOfItsSignals();
    void valuesOfASignalStayWithinItsLimitsAndChange();
    void filtersHoldMessagesBack();
    void aTickedSignalLetsItsMessageThrough();
    void theDrivesMessagesComeWhateverIsSelectedOfThem();
    void aMessageDescribedOtherwiseFollowsItsDescription();
    void aBusWithoutKnownMessagesHasTraffic();
    void daqListsAreAnsweredUnderTheirPids();
    void tunnelingSendsBlocksAndStatus();
    void mirroringSendsPacketsAndStatus();
    void transducerSheetsHoldBothParts();
    void wildConfigurationsDoNoHarm();
    void damagedRecordsDoNoHarm();
    void theLoadIsSpreadOverTwelveChannels();
    void theLoadHasAsManyMessagesAsAskedFor();
    void theClockGoesOnWhenTheConfigurationChanges();
    void aLongPauseIsLeftOut();
};

void tst_LiveStream::everyKindOfEntryIsStreamed()
{
    LoggerState state;
    EthTunnelingCfg &tunneling = state.configuration.eth.tunneling;
    state.configuration.eth.module_selection = 3;
    tunneling.tunneling_enabled = 1;
    tunneling.mirroring_enabled = 1;
    const QSet<int> expected{1,   2,   5,   9,   10,  11,  12,  13, 239,
                             248, 249, 250, 251, 252, 253, 254, 255};
    QCOMPARE(typesOf(streamed(state, 11)), expected);
}

void tst_LiveStream::everyEntryIsWhole()
{
    const LoggerState state;
    const QByteArray bytes = streamed(state, 2);
    int size = 0;
    for (const StdLogEntry &entry : entriesOf(bytes)) {
        QVERIFY(entry.isComplete());
        size += entry.length + 4;
    }
    QCOMPARE(size, bytes.size());
}

void tst_LiveStream::nothingButStatusComesWhenAllIsSwitchedOff()
{
    LoggerState state;
    switchEverythingOff(state);
    QCOMPARE(typesOf(streamed(state, 11)), (QSet<int>{11, 239, 248, 252, 254, 255}));
}

void tst_LiveStream::theAccelerometerBlockKeepsItsRate_data()
{
    QTest::addColumn<int>("rate");
    QTest::addColumn<int>("samples"); // in two seconds
    QTest::newRow("1000 Hz") << 0 << 2000;
    QTest::newRow("250 Hz") << 1 << 500;
    QTest::newRow("125 Hz") << 2 << 250;
    QTest::newRow("31.25 Hz") << 3 << 63;
    QTest::newRow("beyond the last") << 200 << 63;
}

void tst_LiveStream::theAccelerometerBlockKeepsItsRate()
{
    QFETCH(int, rate);
    QFETCH(int, samples);
    LoggerState state;
    switchEverythingOff(state);
    state.configuration.agm.enabled = 1;
    state.configuration.agm.rate = quint8(rate);
    QCOMPARE(count(streamed(state, 2), rawlog::RLD_AGM, 0), samples);
}

void tst_LiveStream::aChannelSendsTheMessagesOfItsSignals()
{
    LoggerState state;
    switchEverythingOff(state);
    TerminalCanCfg &channel = state.configuration.can[11];
    channel.enabled = 1;
    addSignal(channel, 0x7FF);
    addSignal(channel, 0x1FFFFFFF).extended_id = 1;
    QSet<quint32> ids;
    for (const StdLogEntry &entry : entriesOf(streamed(state, 1))) {
        if (entry.type == rawlog::RLD_CAN) {
            QCOMPARE(int(entry.number), 11);
            QCOMPARE(entry.data.size(), std::size_t(8));
            ids.insert(entry.id);
        }
    }
    QCOMPARE(ids, (QSet<quint32>{0x7FF, 0x1FFFFFFF}));
}

void tst_LiveStream::valuesOfASignalStayWithinItsLimitsAndChange()
{
    LoggerState state;
    switchEverythingOff(state);
    TerminalCanCfg &channel = state.configuration.can[7];
    channel.enabled = 1;
    StreamingClass_DBC_Signal &signal = addSignal(channel, 1);
    signal.unit = QStringLiteral("bananas");
    signal.minimum = 20;
    signal.maximum = 30;
    QSet<int> values;
    for (const StdLogEntry &entry : entriesOf(streamed(state, 5))) {
        if (entry.type != rawlog::RLD_CAN)
            continue;
        const int raw = entry.data.at(0) | entry.data.at(1) << 8;
        QVERIFY2(raw >= 2000 && raw <= 3000, qPrintable(QString::number(raw)));
        values.insert(raw);
    }
    QVERIFY(values.size() > 20);
}

void tst_LiveStream::filtersHoldMessagesBack()
{
    LoggerState state;
    TerminalCanCfg &channel = state.configuration.can[0]; // of the drive, with ten messages or so
    QVERIFY(count(streamed(state, 1), rawlog::RLD_CAN, 0) > 0);
    channel.dbc_signals.clear(); // recorded ones have filters of their own
    channel.filters.clear();
    CanIdFilterElement &filter = channel.filters.add();
    filter.filter_type = DualFilter;
    filter.id1 = filter.id2 = 0x7FF;
    QCOMPARE(count(streamed(state, 1), rawlog::RLD_CAN, 0), 0);
}

void tst_LiveStream::aTickedSignalLetsItsMessageThrough()
{
    LoggerState state;
    switchEverythingOff(state);
    TerminalCanCfg &channel = state.configuration.can[5];
    channel.enabled = 1;
    CanIdFilterElement &own = channel.filters.add();
    own.filter_type = ClassicFilter;
    own.id1 = 0x100;
    own.id2 = 0x7FF;
    addSignal(channel, 0x100);
    addSignal(channel, 0x200).selection_flags = StreamingClass_DBC_Signal::liveFlag;
    QSet<quint32> identifiers;
    for (const StdLogEntry &entry : entriesOf(streamed(state, 1))) {
        if (entry.type == rawlog::RLD_CAN)
            identifiers.insert(rawlog::canIdentifier(entry.id));
    }
    QCOMPARE(identifiers, QSet<quint32>{0x200});
}

// Frames under an identifier on channel 0 in two seconds.
static QVector<QByteArray> framesOf(const LoggerState &state, quint32 id)
{
    QVector<QByteArray> frames;
    for (const StdLogEntry &entry : entriesOf(streamed(state, 2))) {
        if (entry.type == rawlog::RLD_CAN && entry.number == 0 && entry.id == id)
            frames += QByteArray(reinterpret_cast<const char *>(entry.data.data()),
                                 int(entry.data.size()));
    }
    return frames;
}

void tst_LiveStream::theDrivesMessagesComeWhateverIsSelectedOfThem()
{
    constexpr quint32 brake = 0x1F1;
    LoggerState state;
    const QVector<QByteArray> inTheDrive = framesOf(state, brake);
    QCOMPARE(inTheDrive.size(), 100); // every 20 ms
    auto &list = state.configuration.can[0].dbc_signals;
    while (list.at(0)->msg_id != brake)
        list.removeAt(0);
    while (list.size() > 1)
        list.removeAt(1);
    QCOMPARE(framesOf(state, brake), inTheDrive);
    QCOMPARE(count(streamed(state, 2), rawlog::RLD_CAN, 0), 100);
}

void tst_LiveStream::aMessageDescribedOtherwiseFollowsItsDescription()
{
    constexpr quint32 brake = 0x1F1;
    LoggerState state;
    TerminalCanCfg &channel = state.configuration.can[0];
    channel.dbc_signals.clear();
    StreamingClass_DBC_Signal &signal = addSignal(channel, brake); // of 8 bytes, not of 4
    signal.start_bit = 40;
    for (const QByteArray &frame : framesOf(state, brake))
        QCOMPARE(frame.size(), 8);
    QVERIFY(!framesOf(state, brake).isEmpty());
}

void tst_LiveStream::aBusWithoutKnownMessagesHasTraffic()
{
    LoggerState state;
    switchEverythingOff(state);
    state.configuration.can[9].enabled = 1;
    QVERIFY(count(streamed(state, 1), rawlog::RLD_CAN, 9) > 10);
}

void tst_LiveStream::daqListsAreAnsweredUnderTheirPids()
{
    LoggerState state;
    TerminalCanCfg &channel = state.configuration.can[3]; // of the drive's engine ECU
    channel.filters.clear();                              // no longer as in the drive
    QSet<int> pids;
    for (const StreamingClass_A2L_DAQ *daq : channel.a2l.config.cfg.daq_lists) {
        for (const StreamingClass_A2L_ODT *odt : daq->odts)
            pids.insert(odt->pid);
    }
    QVERIFY(!pids.isEmpty());
    QSet<int> streamedPids;
    for (const StdLogEntry &entry : entriesOf(streamed(state, 2))) {
        if (entry.type == rawlog::RLD_CAN && entry.number == 3)
            streamedPids.insert(entry.data.at(0));
    }
    QCOMPARE(streamedPids, pids);
}

void tst_LiveStream::tunnelingSendsBlocksAndStatus()
{
    LoggerState state;
    switchEverythingOff(state);
    state.configuration.eth.module_selection = 2;
    state.configuration.eth.tunneling.tunneling_enabled = 1;
    TunnelingFilter &filter = state.configuration.eth.tunneling.filters.add();
    filter.channel = 5;
    filter.from_id = 0x21;
    bool anyBlock = false;
    for (const StdLogEntry &entry : entriesOf(streamed(state, 1))) {
        if (entry.type != rawlog::RLD_ETH)
            continue;
        anyBlock = true;
        QCOMPARE(int(entry.sub), 2);
        // 16 bytes of head, then one LIN message: time, channel, direction, identifier, length.
        QCOMPARE(entry.data.size(), std::size_t(16 + 20));
        QCOMPARE(int(entry.data.at(24)), 5);
        QCOMPARE(int(entry.data.at(26)), 0x21);
        QCOMPARE(int(entry.data.at(27)), 8);
    }
    QVERIFY(anyBlock);
    QVERIFY(count(streamed(state, 1), rawlog::RLD_ETH_INFO, 0) > 0);
}

void tst_LiveStream::mirroringSendsPacketsAndStatus()
{
    LoggerState state;
    switchEverythingOff(state);
    state.configuration.eth.module_selection = 2;
    state.configuration.eth.tunneling.mirroring_enabled = 1;
    QSet<int> kinds;
    for (const StdLogEntry &entry : entriesOf(streamed(state, 1))) {
        if (entry.type != rawlog::RLD_ETH_INFO)
            continue;
        QCOMPARE(int(entry.sub), 3);
        const int kind = entry.data.at(0);
        kinds.insert(kind);
        if (kind != 2)
            continue;
        // Kind and length, then an ethernet frame of an IP packet that tells its own length.
        const std::size_t frame = entry.data.at(1) | entry.data.at(2) << 8;
        QCOMPARE(entry.data.size(), 3 + frame);
        QCOMPARE(std::size_t(entry.data.at(3 + 16) << 8 | entry.data.at(3 + 17)), frame - 14);
    }
    QCOMPARE(kinds, (QSet<int>{0, 2}));
}

void tst_LiveStream::transducerSheetsHoldBothParts()
{
    const LoggerState state;
    int sheets = 0;
    for (const StdLogEntry &entry : entriesOf(streamed(state, 1))) {
        if (entry.type != rawlog::RLD_D4MOD_TED)
            continue;
        const QByteArray text(reinterpret_cast<const char *>(entry.data.data()),
                              int(entry.data.size()));
        QVERIFY(text.contains("$$") && text.contains("@@"));
        ++sheets;
    }
    QCOMPARE(sheets, 8); // two ports with four channels
}

// A tool can write anything into a record.
void tst_LiveStream::wildConfigurationsDoNoHarm()
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    LoggerState state;
    switchEverythingOff(state);
    TerminalCanCfg &channel = state.configuration.can[0];
    channel.enabled = 1;
    for (quint16 i = 0; i < 700; ++i) {
        StreamingClass_DBC_Signal &signal = addSignal(channel, i * 0x01010101U);
        signal.start_bit = quint16(i * 97);
        signal.bit_length = quint16(i % 70);
        signal.little_endian = i % 2;
        signal.factor = i % 5 == 0 ? nan : i % 7 == 0 ? 0 : 1e300;
        signal.offset = i % 3 == 0 ? -nan : 1e308;
        signal.minimum = -1e308;
        signal.maximum = 1e308;
        signal.mux_kind = quint8(i);
        signal.mux_value = qint32(i * 0x12345678U);
        signal.dlc = quint8(i);
    }
    channel.a2l.config.enabled = 1;
    A2lMeasurement &measurement = channel.a2l.measurements.add();
    measurement.name = QStringLiteral("m");
    measurement.data_type = 200;
    StreamingClass_A2L_DAQ &daq = channel.a2l.config.cfg.daq_lists.add();
    daq.period_cse = 0xFFFF;
    daq.period_rate = 0xFFFFFFFF;
    StreamingClass_A2L_ODT &odt = daq.odts.add();
    odt.elements.add().size = 255;
    odt.elements.add().names += QStringLiteral("m");
    AimMsgMeta &aim = channel.aim_modules.add();
    aim.MsgId = 0xFFFFFFFF;
    aim.msgLength = -5;
    channel.aim_modules.add().msgLength = 0x7FFFFFFF;
    TerminalEtherCatCfg &master = state.configuration.ethercat[7];
    master.enabled = 1;
    master.sample_rate = 0;
    EtherCatSlave &slave = master.slaves.add();
    for (int type = 0; type < 256; ++type) {
        EtherCatSignal &signal = slave.slave_signals.add();
        signal.start_bit = quint16(type * 251);
        signal.bit_length = quint16(type);
        signal.data_type = quint8(type);
        signal.multiplier = type % 2 ? nan : 0;
    }
    TerminalRs485Cfg &rs485 = state.configuration.rs485[9];
    rs485.supply_out = 255;
    rs485.d4mod.enabled = 255;
    rs485.d4mod.mode = 1;
    rs485.d4mod.mode_value = std::numeric_limits<qint32>::max();
    for (const StdLogEntry &entry : entriesOf(streamed(state, 1))) {
        QVERIFY(entry.isComplete());
        if (entry.type == rawlog::RLD_CAN)
            QVERIFY(entry.data.size() <= 64);
    }
}

void tst_LiveStream::damagedRecordsDoNoHarm()
{
    constexpr quint32 noiseStream = 7;
    LoggerState state;
    quint64 used = 0;
    const auto random = [&used](int below) {
        return int(drive::randomBits(noiseStream, used++) % quint64(below));
    };
    int taken = 0;
    for (int round = 0; round < 4; ++round) {
        for (int type = 0; type < 256; ++type) {
            auto record = simulator::recordBytes(state.configuration, type);
            if (!record)
                continue;
            for (int i = 0; i < 10; ++i)
                (*record)[random(record->size())] = char(random(256));
            taken += simulator::takeRecord(state.configuration, type, *record);
        }
        for (const StdLogEntry &entry : entriesOf(streamed(state, 1)))
            QVERIFY(entry.isComplete());
    }
    QVERIFY(taken > 20);
}

void tst_LiveStream::theLoadIsSpreadOverTwelveChannels()
{
    LoggerState state;
    switchEverythingOff(state);
    LiveStream stream(state);
    stream.restart(0);
    stream.setLoad(100'000);
    QVector<int> frames(12);
    QByteArray bytes;
    for (int i = 1; i <= 50; ++i)
        bytes += stream.entriesUntil(i * 20'000);
    for (const StdLogEntry &entry : entriesOf(bytes)) {
        if (entry.type == rawlog::RLD_CAN)
            ++frames[entry.number];
    }
    for (const int inChannel : frames)
        QVERIFY(inChannel == 8333 || inChannel == 8334);
}

void tst_LiveStream::theLoadHasAsManyMessagesAsAskedFor()
{
    LoggerState state;
    switchEverythingOff(state);
    LiveStream stream(state);
    stream.restart(0);
    const auto identifiersIn = [&stream](qint64 from_us) {
        QSet<quint32> identifiers;
        for (const StdLogEntry &entry : entriesOf(stream.entriesUntil(from_us + second_us / 2))) {
            if (entry.type == rawlog::RLD_CAN && entry.number == 11)
                identifiers.insert(entry.id);
        }
        return identifiers.size();
    };
    stream.setLoad(100'000);
    QCOMPARE(identifiersIn(0), 20);
    stream.setLoad(100'000, 7200);
    QCOMPARE(identifiersIn(second_us / 2), 600);
}

void tst_LiveStream::theClockGoesOnWhenTheConfigurationChanges()
{
    LoggerState state;
    LiveStream stream(state);
    stream.restart(0);
    const QVector<StdLogEntry> before = entriesOf(stream.entriesUntil(second_us / 2));
    state.configuration.can[0].enabled = 0;
    stream.restart(second_us / 2);
    const QVector<StdLogEntry> after = entriesOf(stream.entriesUntil(second_us));
    const auto lastTime = [](const QVector<StdLogEntry> &entries) {
        quint32 last = 0;
        for (const StdLogEntry &entry : entries)
            last = qMax(quint32(last), entry.timestamp);
        return last;
    };
    for (const StdLogEntry &entry : after) {
        QVERIFY(entry.type != rawlog::RLD_CAN || entry.number != 0);
        QVERIFY(entry.timestamp == 0 || entry.timestamp >= lastTime(before) - 1000);
    }
    QVERIFY(lastTime(after) > lastTime(before) + 400'000);
}

void tst_LiveStream::aLongPauseIsLeftOut()
{
    const LoggerState state;
    LiveStream stream(state);
    stream.restart(0);
    const int ordinary = stream.entriesUntil(second_us).size();
    QVERIFY(stream.entriesUntil(1000 * second_us).size() < 2 * ordinary);
}

QTEST_GUILESS_MAIN(tst_LiveStream)
#include "tst_livestream.moc"
