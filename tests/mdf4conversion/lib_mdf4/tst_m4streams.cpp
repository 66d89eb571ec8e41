#include "MDF4Conversion/lib_mdf4/mdf4/m4streams.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdf4file.h"
#include "tests/support/mdf4reader.h"
#include "tests/support/memorydevice.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

using Bytes = std::vector<unsigned char>;

class tst_M4Streams : public QObject
{
    Q_OBJECT

private slots:
    void blockSizeIsThatOfAllRecords();
    void blockSizeIsCutToFourMebibytes();
    void blockSizeDoesNotOverflow();
    void recordsComeBack_data();
    void recordsComeBack();
    void fewRecordsMakeOneBlockOfExactSize();
    void restOfABlockIsTheHeadOfTheNextRecord();
    void sixthBlockStartsASecondList();
    void elevenBlocksMakeThreeLists();
    void exactMultipleLeavesNothingForClose();
    void fullListWithoutAnotherBlockHasNoSuccessor();
    void lastBlockCanBeShorterThanARecord();
    void blockSizeIsCutByTheStream();
    void listCapacityIsAtLeastFive();
    void listCapacityCanBeHigher();
    void streamWithoutARecordLeavesTheGroupEmpty();
    void writeInPiecesGivesTheSameFile();
    void compressedElsewhereGivesTheSameFile_data();
    void compressedElsewhereGivesTheSameFile();
    void shortBlockMustBeTheLast();
    void compressedBlockLongerThanTheBlockSizeIsRefused();
    void emptyCompressedBlockIsRefused();
    void compressedBlockThatFailedIsReported();
    void compressedBlockBehindAStartedOneIsRefused();
    void writeAfterCloseIsRefused();
    void blockSizeZeroTakesNothing();
    void destructorClosesTheStream();
    void deviceFullAtAnyBlockIsReported();
    void plainStreamWritesDataBlocksUnderLists();
};

namespace {

constexpr std::uint32_t recordSize = 12;

Bytes records(std::size_t count, std::uint32_t size = recordSize)
{
    Bytes bytes(count * size);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i % size < 8 ? i / size >> 8 * (i % size)
                                                           : i * 7 + i / size);
    return bytes;
}

// A file in memory with one group, ready for its data, and what a reader makes of it.
class GroupFile
{
public:
    explicit GroupFile(std::uint32_t size = recordSize, std::size_t limit = SIZE_MAX)
        : m_file(std::make_unique<MemoryDevice>(m_memory))
    {
        m_memory.limit = limit;
        if (!m_file.Create(u"f"))
            return;
        m_file.addFH(0, mdf4::fileHistoryComment({"t", "v", "1"}));
        m_dg = m_file.addDG();
        M4CGBlock *cg = m_file.addCG(m_dg, 1, size);
        cg->addTimeChannel();
        m_file.noteCycleCount(*cg);
        m_recordSize = size;
    }

    MDF4File &file() { return m_file; }
    M4DGBlock *dg() { return m_dg; }
    const MemoryFile &memory() const { return m_memory; }

    // Writes the data through a compressing stream and closes the file.
    bool writeAll(const Bytes &data, std::uint64_t blockSize, std::uint32_t listCapacity = 5)
    {
        m4DZStreamEx stream(m_file, m_dg, blockSize, m_recordSize, listCapacity);
        return stream.write(data.size(), data.data()) && finish(stream, data.size());
    }

    bool finish(m4DataStream &stream, std::size_t bytes)
    {
        m_file.addCycles(1, bytes / m_recordSize);
        return stream.close() && m_file.close();
    }

    const mdf4reader::Group &group()
    {
        static const mdf4reader::Group none;
        return m_reader.openBytes(m_memory.bytes) && m_reader.file().groups.size() == 1
                   ? m_reader.file().groups[0]
                   : none;
    }

    Bytes readBack() { return m_reader.records(group()); }

    std::vector<std::uint64_t> blockLengths()
    {
        std::vector<std::uint64_t> lengths;
        for (const mdf4reader::DataBlock &block : group().blocks)
            lengths.push_back(block.originalLength);
        return lengths;
    }

private:
    MemoryFile m_memory;
    MDF4File m_file;
    mdf4reader::Reader m_reader;
    M4DGBlock *m_dg = nullptr;
    std::uint32_t m_recordSize = 0;
};

using Lengths = std::vector<std::uint64_t>;
using Counts = std::vector<std::uint32_t>;

// Compresses the blocks of the data on several threads, as they come, and returns them in order.
std::vector<CompressedBlock> compressOnThreads(const Bytes &data, std::size_t blockSize,
                                               unsigned threads)
{
    const std::size_t count = (data.size() + blockSize - 1) / blockSize;
    std::vector<CompressedBlock> blocks(count);
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        mdf4::Deflater deflater;
        for (std::size_t i = next++; i < count; i = next++) {
            const std::size_t begin = i * blockSize;
            blocks[i] = compressBlock(deflater, data.data() + begin,
                                      std::min(blockSize, data.size() - begin), recordSize);
        }
    };
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < threads; ++i)
        workers.emplace_back(work);
    for (std::thread &worker : workers)
        worker.join();
    return blocks;
}

} // namespace

void tst_M4Streams::blockSizeIsThatOfAllRecords()
{
    QCOMPARE(m4BlockSize(12, 10), std::uint64_t{120});
    QCOMPARE(m4BlockSize(12, 0), std::uint64_t{0});
}

void tst_M4Streams::blockSizeIsCutToFourMebibytes()
{
    QCOMPARE(m4BlockSize(16, 0x40000), std::uint64_t{0x400000});
    QCOMPARE(m4BlockSize(16, 0x40001), std::uint64_t{0x400000});
    QCOMPARE(m4BlockSize(12, 349526), std::uint64_t{0x400000});
    QCOMPARE(m4BlockSize(12, 349525), std::uint64_t{4194300});
}

void tst_M4Streams::blockSizeDoesNotOverflow()
{
    QCOMPARE(m4BlockSize(0x10, std::uint64_t{1} << 60), std::uint64_t{0x400000});
    QCOMPARE(m4BlockSize(0xFFFFFFFF, ~std::uint64_t{0}), std::uint64_t{0x400000});
}

void tst_M4Streams::recordsComeBack_data()
{
    QTest::addColumn<unsigned>("size");
    QTest::addColumn<unsigned>("count");
    QTest::addColumn<unsigned>("blockSize");
    QTest::newRow("one record") << 12U << 1U << 12U;
    QTest::newRow("one block") << 12U << 50U << 600U;
    QTest::newRow("record size divides the block") << 16U << 100U << 160U;
    QTest::newRow("record size does not divide the block") << 13U << 100U << 160U;
    QTest::newRow("record longer than a block") << 40U << 20U << 16U;
    QTest::newRow("record as long as a block") << 40U << 20U << 40U;
    QTest::newRow("one byte for each block") << 9U << 3U << 1U;
    QTest::newRow("long records") << 3000U << 70U << 50000U;
}

void tst_M4Streams::recordsComeBack()
{
    QFETCH(const unsigned, size);
    QFETCH(const unsigned, count);
    QFETCH(const unsigned, blockSize);
    const Bytes data = records(count, size);
    GroupFile f(size);
    QVERIFY(f.writeAll(data, blockSize));
    QCOMPARE(f.group().cycleCount, std::uint64_t{count});
    QCOMPARE(f.group().equalLength, std::uint64_t{blockSize});
    QVERIFY(f.readBack() == data);
}

void tst_M4Streams::fewRecordsMakeOneBlockOfExactSize()
{
    GroupFile f;
    QVERIFY(f.writeAll(records(10), m4BlockSize(recordSize, 10)));
    QCOMPARE(f.blockLengths(), Lengths{120});
    QCOMPARE(f.group().listCounts, Counts{1});
    QCOMPARE(f.group().equalLength, std::uint64_t{120});
}

void tst_M4Streams::restOfABlockIsTheHeadOfTheNextRecord()
{
    constexpr std::size_t count = 349526; // one record more than 4 MiB hold in full
    const Bytes data = records(count);
    GroupFile f;
    QVERIFY(f.writeAll(data, m4BlockSize(recordSize, count)));
    QCOMPARE(f.blockLengths(), (Lengths{4194304, 8}));
    // The last 4 bytes of the first block keep their place behind the transposed records.
    const mdf4reader::DataBlock block = f.group().blocks[0];
    Bytes inflated(4194304);
    QVERIFY(mdf4::inflateZlib(f.memory().bytes.data() + block.position + 48,
                              static_cast<std::size_t>(block.storedLength), inflated.data(),
                              inflated.size()));
    QCOMPARE(Bytes(inflated.end() - 4, inflated.end()),
             Bytes(data.begin() + 4194300, data.begin() + 4194304));
    QCOMPARE(inflated[349525], data[1]); // behind the first bytes of all whole records
    QVERIFY(f.readBack() == data);
}

void tst_M4Streams::sixthBlockStartsASecondList()
{
    GroupFile f;
    QVERIFY(f.writeAll(records(6), recordSize));
    QCOMPARE(f.group().listCounts, (Counts{5, 1}));
    QCOMPARE(f.readBack(), records(6));
}

void tst_M4Streams::elevenBlocksMakeThreeLists()
{
    GroupFile f;
    QVERIFY(f.writeAll(records(11), recordSize));
    QCOMPARE(f.group().listCounts, (Counts{5, 5, 1}));
    QCOMPARE(f.readBack(), records(11));
}

void tst_M4Streams::exactMultipleLeavesNothingForClose()
{
    const Bytes data = records(30);
    GroupFile f;
    m4DZStreamEx stream(f.file(), f.dg(), 120, recordSize);
    QVERIFY(stream.write(data.size(), data.data()));
    const std::uint64_t end = f.file().logicalEnd();
    QVERIFY(stream.close());
    QCOMPARE(f.file().logicalEnd(), end);
    QVERIFY(f.finish(stream, data.size()));
    QCOMPARE(f.blockLengths(), (Lengths{120, 120, 120}));
}

void tst_M4Streams::fullListWithoutAnotherBlockHasNoSuccessor()
{
    GroupFile f;
    QVERIFY(f.writeAll(records(5), recordSize));
    QCOMPARE(f.group().listCounts, Counts{5});
}

void tst_M4Streams::lastBlockCanBeShorterThanARecord()
{
    GroupFile f;
    QVERIFY(f.writeAll(records(9), 100));
    QCOMPARE(f.blockLengths(), (Lengths{100, 8}));
    QCOMPARE(f.group().equalLength, std::uint64_t{100});
    QCOMPARE(f.readBack(), records(9));
}

void tst_M4Streams::blockSizeIsCutByTheStream()
{
    GroupFile f;
    const m4DZStreamEx stream(f.file(), f.dg(), ~std::uint64_t{0}, recordSize);
    QCOMPARE(stream.blockSize(), M4_MAX_BLOCK_SIZE);
}

void tst_M4Streams::listCapacityIsAtLeastFive()
{
    GroupFile f;
    QVERIFY(f.writeAll(records(6), recordSize, 1));
    QCOMPARE(f.group().listCounts, (Counts{5, 1}));
}

void tst_M4Streams::listCapacityCanBeHigher()
{
    GroupFile f;
    QVERIFY(f.writeAll(records(9), recordSize, 7));
    QCOMPARE(f.group().listCounts, (Counts{7, 2}));
}

void tst_M4Streams::streamWithoutARecordLeavesTheGroupEmpty()
{
    GroupFile f;
    QVERIFY(f.writeAll({}, 120));
    QCOMPARE(f.group().blocks.size(), std::size_t{0});
    QCOMPARE(f.group().listCounts, Counts{});
    QCOMPARE(f.dg()->link(M4DGBlock::dg_data), std::uint64_t{0});
}

void tst_M4Streams::writeInPiecesGivesTheSameFile()
{
    const Bytes data = records(200);
    GroupFile whole;
    QVERIFY(whole.writeAll(data, 250));
    for (const std::size_t piece :
         {std::size_t{1}, std::size_t{12}, std::size_t{77}, std::size_t{251}}) {
        GroupFile f;
        m4DZStreamEx stream(f.file(), f.dg(), 250, recordSize);
        for (std::size_t at = 0; at < data.size(); at += piece)
            QVERIFY(stream.write(std::min(piece, data.size() - at), data.data() + at));
        QVERIFY(f.finish(stream, data.size()));
        QVERIFY(f.memory().bytes == whole.memory().bytes);
    }
}

void tst_M4Streams::compressedElsewhereGivesTheSameFile_data()
{
    QTest::addColumn<unsigned>("threads");
    QTest::addColumn<unsigned>("count");
    for (const unsigned threads : {1U, 2U, 3U}) {
        for (const unsigned count : {10U, 1000U, 1005U})
            QTest::addRow("%u threads, %u records", threads, count) << threads << count;
    }
}

void tst_M4Streams::compressedElsewhereGivesTheSameFile()
{
    QFETCH(const unsigned, threads);
    QFETCH(const unsigned, count);
    constexpr std::size_t blockSize = 1000;
    const Bytes data = records(count);
    GroupFile whole;
    QVERIFY(whole.writeAll(data, blockSize));

    GroupFile f;
    m4DZStreamEx stream(f.file(), f.dg(), blockSize, recordSize);
    for (const CompressedBlock &block : compressOnThreads(data, blockSize, threads))
        QVERIFY(stream.writeCompressed(block));
    QVERIFY(f.finish(stream, data.size()));
    QVERIFY(f.memory().bytes == whole.memory().bytes);
}

void tst_M4Streams::shortBlockMustBeTheLast()
{
    GroupFile f;
    const Bytes data = records(10);
    mdf4::Deflater deflater;
    m4DZStreamEx stream(f.file(), f.dg(), 60, recordSize);
    QVERIFY(stream.writeCompressed(compressBlock(deflater, data.data(), 59, recordSize)));
    QVERIFY(!stream.writeCompressed(compressBlock(deflater, data.data(), 60, recordSize)));
    QVERIFY(f.file().failed());
}

void tst_M4Streams::compressedBlockLongerThanTheBlockSizeIsRefused()
{
    GroupFile f;
    const Bytes data = records(10);
    mdf4::Deflater deflater;
    m4DZStreamEx stream(f.file(), f.dg(), 60, recordSize);
    QVERIFY(!stream.writeCompressed(compressBlock(deflater, data.data(), 61, recordSize)));
    QVERIFY(f.file().failed());
}

void tst_M4Streams::emptyCompressedBlockIsRefused()
{
    GroupFile f;
    mdf4::Deflater deflater;
    const unsigned char nothing = 0;
    m4DZStreamEx stream(f.file(), f.dg(), 60, recordSize);
    QVERIFY(!stream.writeCompressed(compressBlock(deflater, &nothing, 0, recordSize)));
    QVERIFY(f.file().failed());
}

void tst_M4Streams::compressedBlockThatFailedIsReported()
{
    GroupFile f;
    m4DZStreamEx stream(f.file(), f.dg(), 60, recordSize);
    QVERIFY(!stream.writeCompressed({{}, 60}));
    QVERIFY(!stream.close());
    QCOMPARE(f.file().lastError(), std::string("cannot compress a data block"));
}

void tst_M4Streams::compressedBlockBehindAStartedOneIsRefused()
{
    GroupFile f;
    const Bytes data = records(10);
    mdf4::Deflater deflater;
    m4DZStreamEx stream(f.file(), f.dg(), 60, recordSize);
    QVERIFY(stream.write(1, data.data()));
    QVERIFY(!stream.writeCompressed(compressBlock(deflater, data.data(), 60, recordSize)));
    QVERIFY(f.file().failed());
}

void tst_M4Streams::writeAfterCloseIsRefused()
{
    GroupFile f;
    const Bytes data = records(1);
    m4DZStreamEx stream(f.file(), f.dg(), 60, recordSize);
    QVERIFY(stream.write(data.size(), data.data()));
    QVERIFY(stream.close());
    QVERIFY(!stream.write(data.size(), data.data()));
    QVERIFY(!stream.writeCompressed({{1}, 60}));
}

void tst_M4Streams::blockSizeZeroTakesNothing()
{
    GroupFile f;
    const Bytes data = records(1);
    m4DZStreamEx stream(f.file(), f.dg(), 0, recordSize);
    QVERIFY(stream.write(0, data.data()));
    QVERIFY(!stream.write(data.size(), data.data()));
    QVERIFY(f.file().failed());
}

void tst_M4Streams::destructorClosesTheStream()
{
    GroupFile f;
    const Bytes data = records(7);
    {
        m4DZStreamEx stream(f.file(), f.dg(), 50, recordSize);
        QVERIFY(stream.write(data.size(), data.data()));
        f.file().addCycles(1, 7);
    }
    QVERIFY(f.file().close());
    QCOMPARE(f.readBack(), data);
}

void tst_M4Streams::deviceFullAtAnyBlockIsReported()
{
    Bytes data(200000);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] =
            static_cast<unsigned char>(i * i >> 7); // too wild to shrink into the file's memory
    GroupFile whole(100);
    QVERIFY(whole.writeAll(data, 20000));
    const std::size_t size = whole.memory().bytes.size();
    for (std::size_t limit = 200; limit < size; limit += size / 97) {
        GroupFile f(100, limit);
        QVERIFY(!f.writeAll(data, 20000));
        f.file().close();
        QVERIFY(f.file().failed());
        QCOMPARE(f.file().lastError(), std::string("cannot write the file: device full"));
    }
}

void tst_M4Streams::plainStreamWritesDataBlocksUnderLists()
{
    const Bytes data = records(26);
    GroupFile f;
    m4DataStreamEx stream(f.file(), f.dg(), 50);
    QVERIFY(stream.write(data.size(), data.data()));
    QVERIFY(f.finish(stream, data.size()));
    QCOMPARE(f.group().listCounts, (Counts{5, 2}));
    QCOMPARE(f.blockLengths(), (Lengths{50, 50, 50, 50, 50, 50, 12}));
    QCOMPARE(f.group().equalLength, std::uint64_t{50});
    QVERIFY(std::all_of(f.group().blocks.begin(), f.group().blocks.end(),
                        [](const mdf4reader::DataBlock &block) { return block.id == "DT"; }));
    QCOMPARE(f.readBack(), data);
}

QTEST_GUILESS_MAIN(tst_M4Streams)
#include "tst_m4streams.moc"
