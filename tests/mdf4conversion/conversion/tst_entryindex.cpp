#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_factory.h"
#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/entryindex.h"
#include "MDF4Conversion/interface_mdf4_cpu_timestamps.h"
#include "MDF4Conversion/mdf4_channelgroup.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/logconfigurations.h"

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

namespace {

class SilentMessages : public MDF4_Conversion_Msg_Interface
{
public:
    void info(const QString &) override {}
    void warning(const QString &) override {}
    void error(const QString &) override {}
    void progress(int, int) override {}
};

// The groups of one configuration, ready to take entries.
class Groups
{
public:
    explicit Groups(const TerminalStruct &configuration)
        : m_pool(m_folder.path())
    {
        m_context.messages = &m_messages;
        m_context.temporaryFiles = &m_pool;
        m_timestamps = std::make_unique<Interface_MDF4_CPU_Timestamps>(m_context);
        m_context.cpuTimestamps = m_timestamps.get();
        const std::atomic<bool> cancelled{false};
        ChannelGroupList list(cancelled);
        Interface_MDF4_Factory::build(m_context, configuration, list);
        m_owned = list.take();
        for (const auto &group : m_owned)
            m_groups.push_back(group.get());
    }

    [[nodiscard]] const std::vector<MDF4_ChannelGroup *> &all() const { return m_groups; }

private:
    QTemporaryDir m_folder;
    SilentMessages m_messages;
    TemporaryFilePool m_pool;
    MDF4_ConversionContext m_context;
    std::unique_ptr<Interface_MDF4_CPU_Timestamps> m_timestamps;
    ChannelGroupList::Groups m_owned;
    std::vector<MDF4_ChannelGroup *> m_groups;
};

void addDaqLists(StreamingClass_A2L_Module &module)
{
    for (const char *name : {"A", "B", "Split"})
        testlog::addMeasurement(module, QString::fromLatin1(name), name[0] == 'S' ? 2 : 0);
    for (const quint32 id : {0x101U, 0x80000101U}) {
        StreamingClass_A2L_DAQ &daq = testlog::addDaq(module, id);
        StreamingClass_A2L_ODT &first = testlog::addOdt(daq, 1);
        StreamingClass_A2L_ODT &second = testlog::addOdt(daq, 2);
        testlog::addElement(first, QStringLiteral("A"), 1);
        testlog::addElement(second, QStringLiteral("B"), 1);
        testlog::addSplitElement(first, QStringLiteral("Split"), 1, 0);
        testlog::addSplitElement(second, QStringLiteral("Split"), 1, 1);
    }
}

// Groups of every source; on CAN 0 and 1 several of them answer to the same frames.
void fill(TerminalStruct &configuration)
{
    configuration.gps.gps_enabled = 1;
    configuration.agm.enabled = 1;
    configuration.rs485[0].d4mod.enabled = configuration.rs485[1].d4mod.enabled = 1;
    for (quint8 bus = 0; bus < 2; ++bus) {
        TerminalCanCfg &can = configuration.can[bus];
        for (const quint32 id : {0x100U, 0x101U, 0x102U})
            testlog::addSignal(can, QStringLiteral("Plain"), id, 0, 8);
        testlog::addSignal(can, QStringLiteral("Extended"), 0x101, 0, 8).extended_id = 1;
        testlog::addSignal(can, QStringLiteral("Mux"), 0x101, 0, 2).mux_kind = MultiplexorSignal;
        for (const qint32 value : {0, 1, 2, 7}) {
            auto &signal = testlog::addSignal(can, QStringLiteral("At"), 0x101, 8, 8);
            signal.mux_kind = MultiplexedSignal;
            signal.mux_value = value;
        }
        addDaqLists(can.a2l);
        AimMsgMeta &module = can.aim_modules.add();
        module.MsgId = 0x101;
        module.msgLength = 8;
        module.channelsInMsg = module.samplesInMsg = module.sampleSizeInBytes = 2;
        TerminalEtherCatCfg &master = configuration.ethercat[bus];
        master.enabled = 1;
        EtherCatSignal &variable = master.slaves.add().slave_signals.add();
        variable.data_type = 5;
        variable.mdf4_flags = 1;
    }
    addDaqLists(configuration.eth.xcp.module);
}

// A random one of the entries that the configuration is about, and of those beside them.
QByteArray randomEntry(QRandomGenerator &random, quint32 timestamp_us)
{
    const auto bytes = [&random](int count) {
        QByteArray result;
        for (int i = 0; i < count; ++i)
            result += char(random.bounded(i == 0 ? 4 : 256));
        return result;
    };
    const auto number = static_cast<quint8>(random.bounded(3));
    switch (random.bounded(10)) {
    case 0:
        return rawlog::agmEntry(timestamp_us, number, {});
    case 1:
        return rawlog::gpsEntry(timestamp_us, {});
    case 2:
        return rawlog::d4modEntry(timestamp_us, number, {1, 2});
    case 3:
        return rawlog::d4modTedEntry(number, 0, "$LOCAT=Axle$");
    case 4:
        return rawlog::etherCatEntry(timestamp_us, number, bytes(2));
    case 5:
        return rawlog::timestampedEntry(
            {rawlog::RLD_ETH, number, static_cast<quint8>(random.bounded(3)), 0}, timestamp_us,
            bytes(8));
    default:
        return rawlog::canEntry(timestamp_us, number,
                                {0x100U + quint32(random.bounded(4)), random.bounded(2) == 0,
                                 bytes(random.bounded(5) == 0 ? 7 : 8)});
    }
}

} // namespace

class tst_EntryIndex : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules(QStringLiteral("default=false")); }

    void theTakersAreThoseOfAskingAllGroupsInTheSameOrder();
    void noGroupIsOfferedAnEntryTwice();
    void anEntryOfNoGroupHasNoTakers();
    void withoutGroupsNobodyTakesAnEntry();
};

void tst_EntryIndex::theTakersAreThoseOfAskingAllGroupsInTheSameOrder()
{
    TerminalStruct configuration;
    fill(configuration);
    Groups asked(configuration);
    Groups indexed(configuration);
    QVERIFY(asked.all().size() > 20);
    EntryIndex index(indexed.all());
    QRandomGenerator random(1);
    QVector<int> takenBy(int(asked.all().size()), 0);
    for (quint32 i = 0; i < 20000; ++i) {
        const QByteArray bytes = randomEntry(random, i * 10);
        StdLogEntry entry;
        entry.rebuild(reinterpret_cast<const quint8 *>(bytes.constData()), size_t(bytes.size()));
        QVERIFY(entry.isComplete());
        QVector<int> expected;
        for (size_t group = 0; group < asked.all().size(); ++group) {
            if (asked.all()[group]->takeEntry(entry))
                expected.append(int(group));
        }
        QVector<int> taken;
        for (MDF4_ChannelGroup *group : index.takers(entry)) {
            const auto place = std::find(indexed.all().begin(), indexed.all().end(), group);
            if (group->takeEntry(entry))
                taken.append(int(place - indexed.all().begin()));
        }
        QCOMPARE(taken, expected);
        for (const int group : taken)
            ++takenBy[group];
    }
    // All but the multiplexor value that two bits can't hold.
    QCOMPARE(takenBy.count(0), 2);
}

void tst_EntryIndex::noGroupIsOfferedAnEntryTwice()
{
    TerminalStruct configuration;
    fill(configuration);
    const Groups groups(configuration);
    EntryIndex index(groups.all());
    QRandomGenerator random(2);
    for (quint32 i = 0; i < 2000; ++i) {
        const QByteArray bytes = randomEntry(random, i);
        StdLogEntry entry;
        entry.rebuild(reinterpret_cast<const quint8 *>(bytes.constData()), size_t(bytes.size()));
        EntryIndex::Groups takers = index.takers(entry);
        std::sort(takers.begin(), takers.end());
        QVERIFY(std::adjacent_find(takers.begin(), takers.end()) == takers.end());
    }
}

void tst_EntryIndex::anEntryOfNoGroupHasNoTakers()
{
    TerminalStruct configuration;
    fill(configuration);
    const Groups groups(configuration);
    EntryIndex index(groups.all());
    const QByteArray bytes = testlog::can(1, 0, 0x7FF, "0102030405060708");
    StdLogEntry entry;
    entry.rebuild(reinterpret_cast<const quint8 *>(bytes.constData()), size_t(bytes.size()));
    QVERIFY(index.takers(entry).empty());
}

void tst_EntryIndex::withoutGroupsNobodyTakesAnEntry()
{
    EntryIndex index({});
    QVERIFY(index.takers(StdLogEntry()).empty());
}

QTEST_GUILESS_MAIN(tst_EntryIndex)
#include "tst_entryindex.moc"
