#include "MDF4Conversion/interface_mdf4_cpu_timestamps.h"
#include "MDF4Conversion/mdf4_channelgroup.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "MDF4Conversion/rawlog/entrytypes.h"

#include <QDir>
#include <QFile>
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

// Takes entries of one number, as the first payload byte or as nothing when there is none.
class FirstByteChannel : public MDF4_DataChannel_Identity
{
public:
    explicit FirstByteChannel(quint8 number) { ReqNr = number; }

    bool extractData(const StdLogEntry &entry, RecordBuffer &record) override
    {
        if (entry.number != ReqNr)
            return false;
        checkTimestamp(entry.timestamp);
        if (!entry.data.empty())
            record.append(entry.data.front(), 1);
        return true;
    }
};

StdLogEntry entryOf(quint8 number, quint32 timestamp_us, std::vector<quint8> data)
{
    StdLogEntry entry;
    entry.type = rawlog::RLD_GPS;
    entry.number = number;
    entry.timestamp = timestamp_us;
    entry.data = std::move(data);
    return entry;
}

} // namespace

class tst_ChannelGroup : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void anEntryOfAnotherTypeIsRefused();
    void type0TakesEntriesOfAllTypes();
    void aGroupWithoutChannelsRefusesAll();
    void anEntryThatNoChannelTakesIsRefused();
    void aRecordIsTheTimeAndTheBytesOfTheChannels();
    void aRecordThatLacksAChannelIsDroppedAndCounted();
    void firstAndLastTimeAreThoseOfTheRecords();
    void aGroupWithoutSampleMakesNoFile();
    void theFileIsDeletedWithTheGroup();

private:
    std::unique_ptr<MDF4_ChannelGroup> group(quint8 type, std::initializer_list<quint8> numbers);

    std::unique_ptr<QTemporaryDir> m_folder;
    SilentMessages m_messages;
    std::unique_ptr<TemporaryFilePool> m_pool;
    MDF4_ConversionContext m_context;
    std::unique_ptr<Interface_MDF4_CPU_Timestamps> m_timestamps;
};

void tst_ChannelGroup::init()
{
    m_timestamps.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_pool = std::make_unique<TemporaryFilePool>(m_folder->path());
    m_context.messages = &m_messages;
    m_context.temporaryFiles = m_pool.get();
    m_timestamps = std::make_unique<Interface_MDF4_CPU_Timestamps>(m_context);
    m_context.cpuTimestamps = m_timestamps.get();
}

// With a channel of one byte for each number.
std::unique_ptr<MDF4_ChannelGroup> tst_ChannelGroup::group(quint8 type,
                                                           std::initializer_list<quint8> numbers)
{
    auto made = std::make_unique<MDF4_ChannelGroup>(m_context, QStringLiteral("Group"), type);
    for (const quint8 number : numbers)
        made->addChannel(std::make_unique<FirstByteChannel>(number));
    return made;
}

void tst_ChannelGroup::anEntryOfAnotherTypeIsRefused()
{
    QVERIFY(!group(rawlog::RLD_AGM, {1})->takeEntry(entryOf(1, 10, {0x2A})));
}

void tst_ChannelGroup::type0TakesEntriesOfAllTypes()
{
    QVERIFY(group(0, {1})->takeEntry(entryOf(1, 10, {0x2A})));
}

void tst_ChannelGroup::aGroupWithoutChannelsRefusesAll()
{
    QVERIFY(!group(0, {})->takeEntry(entryOf(1, 10, {0x2A})));
}

void tst_ChannelGroup::anEntryThatNoChannelTakesIsRefused()
{
    const auto tested = group(0, {1, 1});
    QVERIFY(!tested->takeEntry(entryOf(2, 10, {0x2A})));
    QCOMPARE(tested->recordCount(), quint64(0));
    QCOMPARE(tested->droppedRecords(), quint64(0));
}

void tst_ChannelGroup::aRecordIsTheTimeAndTheBytesOfTheChannels()
{
    const auto tested = group(0, {1, 1});
    QVERIFY(tested->takeEntry(entryOf(1, 0x04030201, {0x2A})));
    QVERIFY(tested->takeEntry(entryOf(1, 0x04030202, {0x2B})));
    QCOMPARE(tested->recordSize(), 10U);
    QVERIFY(tested->records().finish());
    QFile file(tested->records().path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().toHex(), QByteArray("0102030400000000"
                                                "2a2a"
                                                "0202030400000000"
                                                "2b2b"));
}

void tst_ChannelGroup::aRecordThatLacksAChannelIsDroppedAndCounted()
{
    const auto tested = group(0, {1, 2});
    QVERIFY(tested->takeEntry(entryOf(1, 10, {0x2A})));
    QVERIFY(tested->takeEntry(entryOf(2, 20, {0x2A})));
    QCOMPARE(tested->droppedRecords(), quint64(2));
    QCOMPARE(tested->recordCount(), quint64(0));
    QCOMPARE(tested->records().size(), qint64(0));
}

void tst_ChannelGroup::firstAndLastTimeAreThoseOfTheRecords()
{
    const auto tested = group(0, {1});
    QVERIFY(tested->takeEntry(entryOf(1, 5, {})));
    for (const quint32 time : {10U, 20U, 35U})
        QVERIFY(tested->takeEntry(entryOf(1, time, {0x2A})));
    QCOMPARE(tested->firstTime(), quint64(10));
    QCOMPARE(tested->lastTime(), quint64(35));
    QCOMPARE(tested->newestTimestamp(), quint64(35));
}

void tst_ChannelGroup::aGroupWithoutSampleMakesNoFile()
{
    const auto tested = group(0, {1});
    QVERIFY(tested->records().finish());
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void tst_ChannelGroup::theFileIsDeletedWithTheGroup()
{
    {
        const auto tested = group(0, {1});
        QVERIFY(tested->takeEntry(entryOf(1, 10, {0x2A})));
        QVERIFY(tested->records().finish());
        QVERIFY(!QDir(m_folder->path()).isEmpty());
    }
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

QTEST_GUILESS_MAIN(tst_ChannelGroup)
#include "tst_channelgroup.moc"
