#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/rawlogfile.h"
#include "link/protocol/framereader.h"
#include "link/protocol/messagetypes.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/simulatedlogger.h"

#include <QDeadlineTimer>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Reads entries off the data port.
class DataClient
{
public:
    explicit DataClient(const SimulatedLogger &logger)
        : m_client(logger.address(), protocol::dataPort)
    {}

    [[nodiscard]] RawClient &raw() { return m_client; }

    // At least so many entries more, unless the connection ends.
    [[nodiscard]] QList<QByteArray> entries(int count)
    {
        QList<QByteArray> entries;
        while (entries.size() < count) {
            const QByteArray bytes = m_client.receive();
            if (bytes.isEmpty())
                break;
            entries += m_reader.feed(bytes);
        }
        return entries;
    }

    // Whether an entry of this type comes within some seconds.
    [[nodiscard]] bool waitFor(quint8 type)
    {
        const QDeadlineTimer deadline(10'000);
        while (!deadline.hasExpired()) {
            for (const QByteArray &entry : entries(1)) {
                if (quint8(entry.at(4)) == type)
                    return true;
            }
        }
        return false;
    }

private:
    RawClient m_client;
    protocol::FrameReader m_reader;
};

} // namespace

class tst_DataPort : public QObject
{
    Q_OBJECT

private slots:
    void entriesComeWithoutBeingAskedFor();
    void theStreamFollowsTheConfiguration();
    void aPushOfTheLoggerReachesTheStream();
    void aToolThatDoesNotReadLosesWholeEntries();
    void twoToolsGetTheSameEntries();
    void aLogIsReplayedInsteadOfTheSources();
    void entriesOnDemandAreSentAtOnce();
    void faultRefuseDataConnection();
    void faultDropDataAfter();
    void faultDataGarbage();
    void faultDataDamage();
    void faultDataHollow();
    void faultDataFlood();
};

void tst_DataPort::entriesComeWithoutBeingAskedFor()
{
    SimulatedLogger logger;
    DataClient client(logger);
    QVERIFY(client.entries(1000).size() >= 1000);
}

void tst_DataPort::theStreamFollowsTheConfiguration()
{
    SimulatedLogger logger;
    logger.inspect([](simulator::LoggerSimulator &s) {
        TerminalStruct off;
        record::copy(off, s.state().configuration);
    });
    DataClient client(logger);
    QVERIFY(client.waitFor(rawlog::RLD_SYSTEM_INFO));
    RawClient commands(logger.address(), protocol::commandPort);
    TerminalAgmCfg agm;
    agm.enabled = 1;
    commands.send(protocol::Message{protocol::Agm, 1, record::toBytes(agm)});
    QCOMPARE(commands.message().payload, record::toBytes(agm));
    QVERIFY(client.waitFor(rawlog::RLD_AGM));
}

void tst_DataPort::aPushOfTheLoggerReachesTheStream()
{
    SimulatedLogger logger;
    logger.inspect([](simulator::LoggerSimulator &s) { s.state().configuration.agm.enabled = 0; });
    DataClient client(logger);
    QVERIFY(client.waitFor(rawlog::RLD_SYSTEM_INFO));
    logger.inspect([](simulator::LoggerSimulator &s) { s.state().configuration.agm.enabled = 1; });
    logger.push(protocol::Agm);
    QVERIFY(client.waitFor(rawlog::RLD_AGM));
}

void tst_DataPort::aToolThatDoesNotReadLosesWholeEntries()
{
    SimulatedLogger logger;
    DataClient client(logger);
    client.raw().socket().setReadBufferSize(4096);
    logger.setFault(QStringLiteral("data-flood=1000000"));
    const auto dropped = [&logger] {
        return logger.inspect(
            [](simulator::LoggerSimulator &s) { return s.dataPort().droppedBytes(); });
    };
    QTRY_VERIFY_WITH_TIMEOUT(dropped() > 0, 30'000);
    logger.clearFaults();
    client.raw().socket().setReadBufferSize(0);
    QByteArray bytes = client.raw().receiveUntil(int(simulator::DataPort::maxUnsentBytes) / 2);
    const QByteArray marker = rawlog::entryBytes({rawlog::RLD_LIVE_240, 3}, "behind the gap");
    logger.inspect([marker](simulator::LoggerSimulator &s) { s.dataPort().send(marker); });
    const QDeadlineTimer deadline(10'000);
    while (!bytes.contains(marker) && !deadline.hasExpired())
        bytes += client.raw().receive();
    QVERIFY(bytes.contains(marker));
    // Back to back over the gap, too: every entry begins where the one before has ended.
    int at = 0;
    while (bytes.size() - at >= 4) {
        QVERIFY(quint8(bytes.at(at)) == 0xAA && bytes.at(at + 1) == 0x55);
        at += 4 + (quint8(bytes.at(at + 2)) | quint8(bytes.at(at + 3)) << 8);
    }
}

void tst_DataPort::twoToolsGetTheSameEntries()
{
    SimulatedLogger logger;
    DataClient first(logger);
    DataClient second(logger);
    const QByteArray marker = rawlog::entryBytes({rawlog::RLD_LIVE_240, 3}, "marker");
    QTRY_COMPARE(
        logger.inspect([](simulator::LoggerSimulator &s) { return s.dataPort().connections(); }),
        2);
    logger.inspect([marker](simulator::LoggerSimulator &s) { s.dataPort().send(marker); });
    QVERIFY(first.waitFor(rawlog::RLD_LIVE_240));
    QVERIFY(second.waitFor(rawlog::RLD_LIVE_240));
}

void tst_DataPort::aLogIsReplayedInsteadOfTheSources()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log.rld"));
    const QByteArray entry = rawlog::canEntry(1, 4, {0x55, false, QByteArray("ab")});
    RawLogFile file(path);
    QVERIFY(file.begin(TerminalStruct()) && file.add(entry) && file.finish());
    SimulatedLogger logger;
    logger.inspect([path](simulator::LoggerSimulator &s) {
        s.dataPort().setReplay(std::make_unique<simulator::LogReplay>(path));
    });
    DataClient client(logger);
    for (const QByteArray &received : client.entries(10))
        QCOMPARE(received, entry);
}

void tst_DataPort::entriesOnDemandAreSentAtOnce()
{
    SimulatedLogger logger;
    DataClient client(logger);
    QVERIFY(!client.entries(1).isEmpty());
    logger.inspect([](simulator::LoggerSimulator &s) {
        s.dataPort().send(rawlog::entryBytes({rawlog::TYPE_TRANSPARENT_DATA, 0, 0, 1}, "12345678"));
    });
    QVERIFY(client.waitFor(rawlog::TYPE_TRANSPARENT_DATA));
}

void tst_DataPort::faultRefuseDataConnection()
{
    SimulatedLogger logger;
    logger.setFault(QStringLiteral("refuse-data-connection=1"));
    RawClient refused(logger.address(), protocol::dataPort);
    QVERIFY(refused.waitForEnd());
    DataClient client(logger);
    QVERIFY(!client.entries(1).isEmpty());
}

void tst_DataPort::faultDropDataAfter()
{
    SimulatedLogger logger;
    logger.setFault(QStringLiteral("drop-data-after=1001"));
    RawClient client(logger.address(), protocol::dataPort);
    QCOMPARE(client.receiveAll().size(), 1001);
    QVERIFY(!client.isConnected());
}

void tst_DataPort::faultDataGarbage()
{
    SimulatedLogger logger;
    logger.setFault(QStringLiteral("data-garbage=100"));
    RawClient client(logger.address(), protocol::dataPort);
    const QByteArray bytes = client.receiveUntil(104);
    QVERIFY(!bytes.left(100).contains(QByteArray::fromHex("aa55")));
    // The entries behind it are found again.
    protocol::FrameReader reader;
    QVERIFY(reader.feed(bytes + client.receiveUntil(20'000)).size() > 10);
}

void tst_DataPort::faultDataDamage()
{
    SimulatedLogger logger;
    logger.setFault(QStringLiteral("data-damage=20"));
    DataClient client(logger);
    int known = 0;
    int others = 0;
    const QDeadlineTimer deadline(10'000);
    while ((known == 0 || others == 0) && !deadline.hasExpired()) {
        for (const QByteArray &entry : client.entries(1))
            (rawlog::entryKind(quint8(entry.at(4))) ? known : others) += 1;
    }
    QVERIFY(known > 0);
    QVERIFY(others > 0);
}

void tst_DataPort::faultDataHollow()
{
    SimulatedLogger logger;
    logger.setFault(QStringLiteral("data-hollow"));
    DataClient client(logger);
    QVERIFY(client.waitFor(0));
    QVERIFY(client.waitFor(200));
}

void tst_DataPort::faultDataFlood()
{
    SimulatedLogger logger;
    logger.setFault(QStringLiteral("data-flood=200000"));
    DataClient client(logger);
    // No source of the configuration sends on this channel.
    const QDeadlineTimer deadline(10'000);
    bool isThere = false;
    while (!isThere && !deadline.hasExpired()) {
        for (const QByteArray &entry : client.entries(1))
            isThere = isThere || (quint8(entry.at(4)) == rawlog::RLD_CAN && entry.at(5) == 11);
    }
    QVERIFY(isThere);
}

QTEST_GUILESS_MAIN(tst_DataPort)
#include "tst_dataport.moc"
