#include "MDF4Conversion/rawlog/drive/daqlayout.h"
#include "MDF4Conversion/rawlog/drive/drive.h"
#include "MDF4Conversion/rawlog/entrytypes.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "a2l/records/a2lconstants.h"
#include "config/d4mod_channel.h"

#include <QSet>
#include <QtTest>

#include <deque>
#include <map>

using drive::Drive;
using rawlog::RLD_CAN;

namespace {

constexpr int seconds = 60;

QString textOf(const StdLogEntry &entry)
{
    return QString::fromLatin1(reinterpret_cast<const char *>(entry.data.data()),
                               int(entry.data.size()));
}

// Bits that a signal takes in its frame, in the numbering of DBC files.
QVector<int> bitsOf(const StreamingClass_DBC_Signal &signal)
{
    QVector<int> bits;
    int position = signal.start_bit;
    for (int i = 0; i < signal.bit_length; ++i) {
        bits += position;
        if (signal.little_endian)
            ++position;
        else
            position = position % 8 > 0 ? position - 1 : position + 15;
    }
    return bits;
}

bool canMeet(const StreamingClass_DBC_Signal &a, const StreamingClass_DBC_Signal &b)
{
    const bool oneMessage = a.msg_id == b.msg_id && a.extended_id == b.extended_id;
    const bool apart = a.mux_kind == MultiplexedSignal && b.mux_kind == MultiplexedSignal
                       && a.mux_value != b.mux_value;
    return oneMessage && !apart;
}

bool accepts(const TerminalCanCfg &channel, quint32 idWord)
{
    const bool extended = idWord & rawlog::extendedIdFlag;
    for (const auto *filter : channel.filters) {
        const quint32 id = rawlog::canIdentifier(idWord);
        if ((filter->extended != 0) == extended && ((id ^ filter->id1) & filter->id2) == 0)
            return true;
    }
    return false;
}

QVector<const StreamingClass_A2L_Module *> modulesOf(const TerminalStruct &configuration)
{
    QVector<const StreamingClass_A2L_Module *> modules;
    for (const TerminalCanCfg &channel : configuration.can) {
        if (channel.a2l.config.enabled)
            modules += &channel.a2l;
    }
    return modules << &configuration.eth.xcp.module;
}

bool holdsPid(const StreamingClass_A2L_Module &module, quint8 pid)
{
    for (const auto *daq : module.config.cfg.daq_lists) {
        for (const auto *odt : daq->odts) {
            if (odt->pid == pid)
                return true;
        }
    }
    return false;
}

} // namespace

class tst_Drive : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void timesRiseWithoutAnOverflow();
    void theLoadIsThatOfABusyLogger();
    void everySourceIsInTheLog_data();
    void everySourceIsInTheLog();
    void theLogBeginsWithTheWallClock();
    void threeProcessorsStampEveryTenSeconds();
    void nothingWasLost();
    void framesAreOf11And29BitsAndOfAnyLength();
    void everyFramePassesTheFilterOfItsChannel();
    void everyFrameIsDescribed();
    void signalsLieInsideTheirFrames();
    void signalsOfAFrameShareNoBit();
    void databaseSignalsHaveAllForms();
    void everyMultiplexorValueOccurs();
    void everyDtoIsDescribed();
    void measurementsHaveAllForms_data();
    void measurementsHaveAllForms();
    void everyMeasurementHasItsConversionAndElements();
    void valuesAreSplitOverSeveralOdts();
    void dataSheetsComeBehindTheFirstValues();
    void dataSheetsScaleOrNot();
    void etherCatVariablesAreOfBitsIntegersAndReals();
    void aimModulesFillTheirMessages();

private:
    const TerminalStruct &configuration() const { return m_drive.configuration(); }
    QVector<const StdLogEntry *> entries(quint8 type, int number = -1) const;

    Drive m_drive;
    qint64 m_bytes = 0;
    std::deque<StdLogEntry> m_entries; // never copied: a copy loses the flags of its identifier
};

void tst_Drive::initTestCase()
{
    const QByteArray log = m_drive.entriesUntil(seconds * 1'000'000LL);
    m_bytes = log.size();
    const auto *at = reinterpret_cast<const uint8_t *>(log.constData());
    const auto *const end = at + log.size();
    while (at < end) {
        StdLogEntry &entry = m_entries.emplace_back();
        entry.rebuild(at, std::size_t(end - at));
        QVERIFY(entry.isComplete());
        at += entry.length + 4;
    }
}

QVector<const StdLogEntry *> tst_Drive::entries(quint8 type, int number) const
{
    QVector<const StdLogEntry *> found;
    for (const StdLogEntry &entry : m_entries) {
        if (entry.type == type && (number < 0 || entry.number == number))
            found += &entry;
    }
    return found;
}

void tst_Drive::timesRiseWithoutAnOverflow()
{
    quint32 last = 0;
    for (const StdLogEntry &entry : m_entries) {
        if (entry.timestamp == 0)
            continue;
        QVERIFY(entry.timestamp >= last);
        last = entry.timestamp;
    }
}

void tst_Drive::theLoadIsThatOfABusyLogger()
{
    const int entriesPerSecond = int(m_entries.size()) / seconds;
    QVERIFY(entriesPerSecond >= 2'000 && entriesPerSecond <= 10'000);
    const qint64 bytesPerSecond = m_bytes / seconds;
    QVERIFY(bytesPerSecond >= 100'000 && bytesPerSecond <= 200'000);
}

void tst_Drive::everySourceIsInTheLog_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("number");
    for (int channel = 0; channel <= 5; ++channel)
        QTest::addRow("CAN %d", channel) << int(RLD_CAN) << channel;
    QTest::newRow("accelerations") << int(rawlog::RLD_AGM) << 0;
    QTest::newRow("strain gauges, port 0") << int(rawlog::RLD_D4MOD) << 0;
    QTest::newRow("strain gauges, port 3") << int(rawlog::RLD_D4MOD) << 3;
    QTest::newRow("their data sheets") << int(rawlog::RLD_D4MOD_TED) << 3;
    QTest::newRow("GPS") << int(rawlog::RLD_GPS) << 0;
    QTest::newRow("EtherCAT") << int(rawlog::RLD_ETHERCAT) << 0;
    QTest::newRow("ethernet") << int(rawlog::RLD_ETH) << 0;
    QTest::newRow("debug counters") << int(rawlog::RLD_DBG_COUNTERS) << 2;
}

void tst_Drive::everySourceIsInTheLog()
{
    QFETCH(int, type);
    QFETCH(int, number);
    QVERIFY(!entries(quint8(type), number).isEmpty());
}

void tst_Drive::theLogBeginsWithTheWallClock()
{
    QCOMPARE(int(m_entries.front().type), int(rawlog::RLD_UTC_START));
    QCOMPARE(entries(rawlog::RLD_UTC_START).size(), 1);
}

void tst_Drive::threeProcessorsStampEveryTenSeconds()
{
    for (const int processor : {0, 1, 2}) {
        const auto stamps = entries(rawlog::RLD_CYCLIC_TS, processor);
        QCOMPARE(stamps.size(), seconds / 10);
        for (int i = 1; i < stamps.size(); ++i)
            QCOMPARE(stamps[i]->timestamp - stamps[i - 1]->timestamp, 10'000'000U);
    }
}

void tst_Drive::nothingWasLost()
{
    const std::vector<quint8> noOverflowAndOneStart = {0, 0, 0, 0, 1, 0, 0, 0};
    for (const StdLogEntry *entry : entries(rawlog::RLD_DBG_COUNTERS))
        QCOMPARE(entry->data, noOverflowAndOneStart);
}

void tst_Drive::framesAreOf11And29BitsAndOfAnyLength()
{
    QSet<int> lengths;
    QSet<bool> extended;
    for (const StdLogEntry *entry : entries(RLD_CAN)) {
        lengths.insert(entry->info);
        extended.insert(entry->id & rawlog::extendedIdFlag);
        QCOMPARE(std::size_t(entry->info), entry->data.size());
    }
    QVERIFY(lengths.contains(QSet<int>{4, 6, 8, 12, 32, 64}));
    QCOMPARE(extended.size(), 2);
}

void tst_Drive::everyFramePassesTheFilterOfItsChannel()
{
    for (const StdLogEntry *entry : entries(RLD_CAN)) {
        const TerminalCanCfg &channel = configuration().can[entry->number];
        QVERIFY(channel.enabled);
        QVERIFY(accepts(channel, entry->id));
    }
}

void tst_Drive::everyFrameIsDescribed()
{
    for (const StdLogEntry *entry : entries(RLD_CAN)) {
        const TerminalCanCfg &channel = configuration().can[entry->number];
        const quint32 id = rawlog::canIdentifier(entry->id);
        int described = 0;
        for (const auto *signal : channel.dbc_signals)
            described += signal->msg_id == id && signal->dlc == entry->info;
        for (const auto *message : channel.aim_modules)
            described += message->MsgId == id && message->msgLength == entry->info;
        for (const auto *daq : channel.a2l.config.cfg.daq_lists)
            described += (daq->can_id & 0x1FFFFFFF) == id && entry->info == 8;
        QVERIFY(described > 0);
    }
}

void tst_Drive::signalsLieInsideTheirFrames()
{
    for (const TerminalCanCfg &channel : configuration().can) {
        for (const auto *signal : channel.dbc_signals) {
            for (const int bit : bitsOf(*signal))
                QVERIFY2(bit < 8 * signal->dlc, qPrintable(signal->name));
        }
    }
}

void tst_Drive::signalsOfAFrameShareNoBit()
{
    for (const TerminalCanCfg &channel : configuration().can) {
        for (int i = 0; i < channel.dbc_signals.size(); ++i) {
            const auto bits = bitsOf(*channel.dbc_signals.at(i));
            for (int k = 0; k < i; ++k) {
                const auto *other = channel.dbc_signals.at(k);
                if (!canMeet(*channel.dbc_signals.at(i), *other))
                    continue;
                for (const int bit : bitsOf(*other))
                    QVERIFY2(!bits.contains(bit), qPrintable(other->name));
            }
        }
    }
}

void tst_Drive::databaseSignalsHaveAllForms()
{
    QSet<int> kinds;
    QSet<QPair<int, int>> orderAndSign;
    for (const TerminalCanCfg &channel : configuration().can) {
        for (const auto *signal : channel.dbc_signals) {
            kinds.insert(signal->mux_kind);
            orderAndSign.insert({signal->little_endian, signal->is_signed});
            QCOMPARE(int(signal->selection_flags), 1);
            QVERIFY(signal->minimum < signal->maximum);
        }
    }
    QCOMPARE(kinds.size(), 3);
    QCOMPARE(orderAndSign.size(), 4);
}

void tst_Drive::everyMultiplexorValueOccurs()
{
    constexpr quint32 slowValues = 0x3D0;
    std::map<int, int> frames;
    for (const StdLogEntry *entry : entries(RLD_CAN, 0)) {
        if (entry->id == slowValues)
            ++frames[entry->data[0] & 0x0F];
    }
    QCOMPARE(frames.size(), std::size_t(4));
    for (const int value : {0, 1, 2, 5})
        QCOMPARE(frames[value], seconds * 20 / 4);
}

void tst_Drive::everyDtoIsDescribed()
{
    for (const int channel : {3, 4}) {
        for (const StdLogEntry *entry : entries(RLD_CAN, channel))
            QVERIFY(holdsPid(configuration().can[std::size_t(channel)].a2l, entry->data[0]));
    }
    for (const StdLogEntry *entry : entries(rawlog::RLD_ETH)) {
        QCOMPARE(int(entry->sub), 1);
        QVERIFY(holdsPid(configuration().eth.xcp.module, entry->data[0]));
    }
}

void tst_Drive::measurementsHaveAllForms_data()
{
    QTest::addColumn<int>("module");
    QTest::newRow("CCP") << 0;
    QTest::newRow("XCP on CAN") << 1;
    QTest::newRow("XCP on ethernet") << 2;
}

void tst_Drive::measurementsHaveAllForms()
{
    QFETCH(int, module);
    const StreamingClass_A2L_Module &a2l = *modulesOf(configuration()).at(module);
    QSet<int> conversions;
    for (const auto *method : a2l.compu_methods)
        conversions.insert(method->conversion_type);
    QVERIFY2(conversions.size() == 7, "IDENTICAL, FORM, LINEAR, RAT_FUNC and three tables");

    QSet<bool> bigEndian;
    bool hasFloat = false;
    bool hasMaskAndShift = false;
    for (const auto *measurement : a2l.measurements) {
        bigEndian.insert(measurement->byte_order % 2 != 0);
        hasFloat |= measurement->data_type == A2lDataType::Float32;
        hasMaskAndShift |= measurement->bit_mask < 0xFF && measurement->shift_count > 0;
    }
    QVERIFY(hasFloat);
    QVERIFY(hasMaskAndShift);
    QCOMPARE(bigEndian, (module == 0   ? QSet<bool>{true}
                         : module == 1 ? QSet<bool>{false}
                                       : QSet<bool>{true, false}));
}

void tst_Drive::everyMeasurementHasItsConversionAndElements()
{
    for (const StreamingClass_A2L_Module *module : modulesOf(configuration())) {
        QSet<QString> methods;
        for (const auto *method : module->compu_methods) {
            QVERIFY2(!methods.contains(method->name), "names are unique");
            methods.insert(method->name);
        }
        std::map<QString, int> bytes;
        for (const auto *daq : module->config.cfg.daq_lists) {
            for (const auto *odt : daq->odts) {
                for (const auto *element : odt->elements) {
                    for (const QString &name : element->names)
                        bytes[name] += element->size;
                }
            }
        }
        for (const auto *measurement : module->measurements) {
            QVERIFY(methods.contains(measurement->conversion));
            QCOMPARE(bytes[measurement->name], drive::valueBytes(measurement->data_type));
        }
    }
}

void tst_Drive::valuesAreSplitOverSeveralOdts()
{
    for (const int channel : {3, 4}) {
        std::map<QString, QSet<int>> odtsOfSplitValue;
        for (const auto *daq : configuration().can[std::size_t(channel)].a2l.config.cfg.daq_lists) {
            for (const auto *odt : daq->odts) {
                for (const auto *element : odt->elements) {
                    if (element->split)
                        odtsOfSplitValue[element->names.first()].insert(odt->pid);
                }
            }
        }
        const bool severalOdts =
            std::any_of(odtsOfSplitValue.begin(), odtsOfSplitValue.end(),
                        [](const auto &value) { return value.second.size() > 1; });
        QVERIFY(severalOdts);
    }
}

void tst_Drive::dataSheetsComeBehindTheFirstValues()
{
    QSet<int> knownPorts;
    for (const StdLogEntry &entry : m_entries) {
        if (entry.type == rawlog::RLD_D4MOD)
            knownPorts.insert(entry.number);
        if (entry.type == rawlog::RLD_D4MOD_TED)
            QVERIFY(knownPorts.contains(entry.number));
    }
    QCOMPARE(knownPorts, (QSet<int>{0, 3}));
}

void tst_Drive::dataSheetsScaleOrNot()
{
    QSet<bool> scaled;
    QSet<bool> placed;
    for (const StdLogEntry *entry : entries(rawlog::RLD_D4MOD_TED)) {
        D4Mod_Channel channel;
        channel.parseTedBlock(textOf(*entry));
        QCOMPARE(channel.sensor_id.size(), 10);
        QVERIFY(!channel.physical_unit.isEmpty());
        scaled.insert(channel.use_scaling);
        placed.insert(!channel.location.isEmpty());
    }
    QCOMPARE(scaled.size(), 2);
    QCOMPARE(placed.size(), 2);
}

void tst_Drive::etherCatVariablesAreOfBitsIntegersAndReals()
{
    constexpr int head = 12;
    const TerminalEtherCatCfg &master = configuration().ethercat[0];
    const auto imageBits = int(entries(rawlog::RLD_ETHERCAT, 0).first()->data.size() - head) * 8;
    QSet<int> types;
    QVERIFY(master.enabled);
    for (const auto *slave : master.slaves) {
        for (const auto *signal : slave->slave_signals) {
            types.insert(signal->data_type);
            QVERIFY(signal->start_bit + signal->bit_length <= imageBits);
            QCOMPARE(int(signal->mdf4_flags), 1);
        }
    }
    QVERIFY(types.contains(QSet<int>{1, 2, 3, 4, 5, 6, 7, 8, 10, 17, '0', '7'}));
}

void tst_Drive::aimModulesFillTheirMessages()
{
    QSet<int> samples;
    QSet<bool> msbFirst;
    for (const auto *message : configuration().can[5].aim_modules) {
        const int channelBytes =
            message->samplesInMsg * message->sampleSizeInBytes + message->gapBetweenChannelsInBytes;
        QVERIFY(message->channelsInMsg * channelBytes <= message->msgLength);
        samples.insert(message->samplesInMsg);
        msbFirst.insert(message->isMsbFirst);
    }
    QCOMPARE(samples.size(), 2);
    QCOMPARE(msbFirst.size(), 2);
}

QTEST_GUILESS_MAIN(tst_Drive)
#include "tst_drive.moc"
