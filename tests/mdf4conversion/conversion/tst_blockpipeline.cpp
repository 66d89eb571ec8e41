#include "MDF4Conversion/blockpipeline.h"
#include "MDF4Conversion/lib_mdf4/mdf4/deflate.h"
#include "tests/support/allocationlimit.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using Disorder = std::vector<std::pair<quint64, quint64>>;

namespace {

constexpr quint32 recordSize = 12; // time and four bytes

QByteArray record(quint64 time_us, quint32 value)
{
    QByteArray bytes(recordSize, 0);
    qToLittleEndian(time_us, bytes.data());
    qToLittleEndian(value, bytes.data() + 8);
    return bytes;
}

// The bytes of a block as they were before transposition and compression.
QByteArray inflated(const CompressedBlock &block, quint32 columns = recordSize)
{
    std::vector<unsigned char> packed(block.originalSize);
    if (!mdf4::inflateZlib(block.data.data(), block.data.size(), packed.data(), packed.size()))
        return {};
    const size_t rows = packed.size() / columns;
    QByteArray bytes;
    for (size_t row = 0; row < rows; ++row) {
        for (size_t column = 0; column < columns; ++column)
            bytes += char(packed[column * rows + row]);
    }
    for (size_t i = rows * columns; i < packed.size(); ++i)
        bytes += char(packed[i]);
    return bytes;
}

} // namespace

class tst_BlockPipeline : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void aSourceHasAsManyBlocksAsItFills_data();
    void aSourceHasAsManyBlocksAsItFills();
    void theOffsetIsTakenOffAllTimes();
    void aRecordOlderThanTheOffsetGetsTime0();
    void aRecordMayReachIntoTheNextBlock();
    void theBlocksAreTheSameWithAnyNumberOfThreads_data();
    void theBlocksAreTheSameWithAnyNumberOfThreads();
    void sourcesComeOneAfterTheOther();
    void disorderIsToldWithBothTimes();
    void disorderAcrossBlocksIsToldOnce_data();
    void disorderAcrossBlocksIsToldOnce();
    void aMissingFileIsAFailureThatNamesIt();
    void aFileThatIsTooShortIsAFailureThatSaysSo();
    void memoryThatRunsOutIsAFailure_data();
    void memoryThatRunsOutIsAFailure();
    void aPipelineMayEndBeforeItsBlocksAreTaken();
    void noSourcesMakeNoBlocks();

private:
    BlockPipeline::Source source(const QByteArray &records, quint32 blockSize) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

BlockPipeline::Source tst_BlockPipeline::source(const QByteArray &records, quint32 blockSize) const
{
    static int number = 0;
    QFile file(m_folder->filePath(QStringLiteral("%1.bin").arg(++number)));
    if (!file.open(QIODevice::WriteOnly) || file.write(records) != records.size())
        qFatal("The records of the test can't be written.");
    BlockPipeline::Source result;
    result.path = file.fileName();
    result.recordSize = recordSize;
    result.size = quint64(records.size());
    result.blockSize = blockSize;
    return result;
}

void tst_BlockPipeline::aSourceHasAsManyBlocksAsItFills_data()
{
    QTest::addColumn<quint64>("size");
    QTest::addColumn<quint64>("blocks");
    QTest::newRow("less than one") << quint64(99) << quint64(1);
    QTest::newRow("one") << quint64(100) << quint64(1);
    QTest::newRow("one byte more") << quint64(101) << quint64(2);
    QTest::newRow("an exact multiple") << quint64(300) << quint64(3);
    QTest::newRow("nothing") << quint64(0) << quint64(0);
    QTest::newRow("8 GiB") << (quint64(8) << 30) << quint64(85899346);
}

void tst_BlockPipeline::aSourceHasAsManyBlocksAsItFills()
{
    QFETCH(quint64, size);
    QFETCH(quint64, blocks);
    BlockPipeline::Source source;
    source.size = size;
    source.blockSize = 100;
    QCOMPARE(BlockPipeline::blockCount(source), blocks);
}

void tst_BlockPipeline::theOffsetIsTakenOffAllTimes()
{
    BlockPipeline pipeline({source(record(1000, 1) + record(1500, 2), 24)}, 1000, 1);
    const BlockPipeline::Block block = pipeline.next();
    QCOMPARE(block.failure, QString());
    QCOMPARE(block.data.originalSize, std::uint64_t(24));
    QCOMPARE(inflated(block.data), record(0, 1) + record(500, 2));
}

void tst_BlockPipeline::aRecordOlderThanTheOffsetGetsTime0()
{
    BlockPipeline pipeline({source(record(1000, 1) + record(999, 2) + record(0, 3), 36)}, 1000, 1);
    QCOMPARE(inflated(pipeline.next().data), record(0, 1) + record(0, 2) + record(0, 3));
}

void tst_BlockPipeline::aRecordMayReachIntoTheNextBlock()
{
    QByteArray expected;
    QByteArray records;
    for (quint32 i = 0; i < 5; ++i) {
        records += record(1000 + i, i);
        expected += record(i, i);
    }
    // The first cut goes through a value, the second one through a time.
    BlockPipeline pipeline({source(records, 22)}, 1000, 1);
    QCOMPARE(inflated(pipeline.next().data), expected.mid(0, 22));
    QCOMPARE(inflated(pipeline.next().data), expected.mid(22, 22));
    QCOMPARE(inflated(pipeline.next().data), expected.mid(44));
}

void tst_BlockPipeline::theBlocksAreTheSameWithAnyNumberOfThreads_data()
{
    QTest::addColumn<int>("threads");
    for (const int threads : {0, 2, 3, 16})
        QTest::addRow("%d", threads) << threads;
}

void tst_BlockPipeline::theBlocksAreTheSameWithAnyNumberOfThreads()
{
    QFETCH(int, threads);
    QByteArray records;
    for (quint32 i = 0; i < 1000; ++i)
        records += record(i % 7 == 0 ? 0 : i, i * 7919);
    const std::vector<BlockPipeline::Source> sources = {source(records, 100),
                                                        source(records.left(600), 250)};
    BlockPipeline one(sources, 3, 1);
    BlockPipeline many(sources, 3, threads);
    for (int i = 0; i < 120 + 3; ++i) {
        const BlockPipeline::Block expected = one.next();
        const BlockPipeline::Block block = many.next();
        QVERIFY(block.data.data == expected.data.data);
        QCOMPARE(block.data.originalSize, expected.data.originalSize);
        QVERIFY(block.disorder == expected.disorder);
        QCOMPARE(block.failure, QString());
    }
}

void tst_BlockPipeline::sourcesComeOneAfterTheOther()
{
    BlockPipeline pipeline({source(record(1, 1) + record(2, 2), 12), source(record(3, 3), 12)}, 0,
                           2);
    QCOMPARE(inflated(pipeline.next().data), record(1, 1));
    QCOMPARE(inflated(pipeline.next().data), record(2, 2));
    QCOMPARE(inflated(pipeline.next().data), record(3, 3));
}

void tst_BlockPipeline::disorderIsToldWithBothTimes()
{
    const QByteArray records =
        record(10, 0) + record(10, 0) + record(20, 0) + record(5, 0) + record(6, 0);
    BlockPipeline pipeline({source(records, 60)}, 0, 1);
    QVERIFY(pipeline.next().disorder == (Disorder{{10, 10}, {5, 20}}));
}

void tst_BlockPipeline::disorderAcrossBlocksIsToldOnce_data()
{
    QTest::addColumn<quint32>("blockSize");
    for (const quint32 size : {8U, 9U, 12U, 13U, 20U, 24U, 36U, 48U})
        QTest::addRow("%u", size) << size;
}

void tst_BlockPipeline::disorderAcrossBlocksIsToldOnce()
{
    QFETCH(quint32, blockSize);
    const QByteArray records = record(10, 0) + record(9, 0) + record(20, 0) + record(20, 0);
    const BlockPipeline::Source all = source(records, blockSize);
    BlockPipeline pipeline({all}, 0, 1);
    Disorder told;
    for (quint64 i = BlockPipeline::blockCount(all); i > 0; --i) {
        for (const auto &pair : pipeline.next().disorder)
            told.push_back(pair);
    }
    QVERIFY(told == (Disorder{{9, 10}, {20, 20}}));
}

void tst_BlockPipeline::aMissingFileIsAFailureThatNamesIt()
{
    BlockPipeline::Source missing = source(record(1, 1), 12);
    QVERIFY(QFile::remove(missing.path));
    BlockPipeline pipeline({missing}, 0, 2);
    QVERIFY(pipeline.next().failure.contains(missing.path));
}

void tst_BlockPipeline::aFileThatIsTooShortIsAFailureThatSaysSo()
{
    BlockPipeline::Source cut = source(record(1, 1) + record(2, 2), 12);
    QVERIFY(QFile::resize(cut.path, 23));
    BlockPipeline pipeline({cut}, 0, 1);
    QCOMPARE(pipeline.next().failure, QString());
    QCOMPARE(pipeline.next().failure,
             QStringLiteral("Temporary file %1: it is shorter than what was written into it")
                 .arg(QDir::toNativeSeparators(cut.path)));
}

void tst_BlockPipeline::memoryThatRunsOutIsAFailure_data()
{
    QTest::addColumn<int>("threads");
    QTest::newRow("on the thread of the caller") << 1;
    QTest::newRow("on any thread") << 3;
}

void tst_BlockPipeline::memoryThatRunsOutIsAFailure()
{
    QFETCH(int, threads);
    constexpr quint32 blockSize = recordSize * 100000;
    const auto records = source(QByteArray(int(blockSize) * 5, 0), blockSize);
    const AllocationLimit limit(blockSize / 2);
    BlockPipeline pipeline({records}, 0, threads);
    QStringList failures;
    for (int i = 0; i < 5; ++i)
        failures.append(pipeline.next().failure);
    const QString told = QStringLiteral("Temporary file %1: there is not enough memory to read it "
                                        "back")
                             .arg(QDir::toNativeSeparators(records.path));
    QCOMPARE(failures, (QStringList{told, told, told, told, told}));
}

void tst_BlockPipeline::aPipelineMayEndBeforeItsBlocksAreTaken()
{
    QByteArray records;
    for (quint32 i = 0; i < 1000; ++i)
        records += record(i, i);
    BlockPipeline pipeline({source(records, 12)}, 0, 3);
    QCOMPARE(inflated(pipeline.next().data), record(0, 0));
}

void tst_BlockPipeline::noSourcesMakeNoBlocks()
{
    const BlockPipeline pipeline({}, 0, 3);
    Q_UNUSED(pipeline)
}

QTEST_GUILESS_MAIN(tst_BlockPipeline)
#include "tst_blockpipeline.moc"
