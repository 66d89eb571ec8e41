#include "MDF4Conversion/blockpipeline.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <exception>
#include <new>

namespace {

constexpr std::size_t blocksAheadPerThread = 2;
constexpr quint64 timeBytes = 8;

} // namespace

// Makes blocks; each thread has its own, for the scratch memory.
class BlockPipeline::Maker
{
public:
    // Never throws: a thread without anyone to tell would end the program.
    Block make(const Source &source, const Task &task, quint64 offset_us)
    {
        Block block;
        try {
            fill(block, source, task, offset_us);
        } catch (const std::bad_alloc &) {
            block.failure = QCoreApplication::translate("Conversion", "Temporary file %1: there is "
                                                                      "not enough memory to read "
                                                                      "it back")
                                .arg(QDir::toNativeSeparators(source.path));
        }
        return block;
    }

private:
    void fill(Block &block, const Source &source, const Task &task, quint64 offset_us)
    {
        // Whole records around the block, and the one before them for its time.
        const quint64 record = source.recordSize;
        const quint64 firstInBlock = task.offset / record * record;
        const quint64 begin = firstInBlock - std::min(firstInBlock, record);
        const quint64 taskEnd = task.offset + task.size;
        const quint64 end = std::min((taskEnd + record - 1) / record * record, source.size);
        if (!read(source.path, begin, end - begin, block.failure))
            return;
        block.firstRecord = (task.offset + record - 1) / record;
        shiftTimes(source, task, begin, end, offset_us, block);
        block.data = compressBlock(m_deflater, m_bytes.data() + (task.offset - begin), task.size,
                                   source.recordSize);
        if (!block.data.ok())
            block.failure = QCoreApplication::translate("Conversion", "Compressing data failed");
    }

    bool read(const QString &path, quint64 begin, quint64 size, QString &failure)
    {
        m_bytes.resize(std::max<std::size_t>(m_bytes.size(), size));
        QFile file(path);
        qint64 count = -1;
        if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) && file.seek(qint64(begin)))
            count = file.read(reinterpret_cast<char *>(m_bytes.data()), qint64(size));
        if (count == qint64(size))
            return true;
        const QString cause =
            count < 0 ? file.errorString()
                      : QCoreApplication::translate("Conversion",
                                                    "it is shorter than what was written into it");
        failure = QCoreApplication::translate("Conversion", "Temporary file %1: %2")
                      .arg(QDir::toNativeSeparators(path), cause);
        return false;
    }

    // A record that reaches into two blocks is judged where it begins.
    void shiftTimes(const Source &source, const Task &task, quint64 begin, quint64 end,
                    quint64 offset_us, Block &block)
    {
        quint64 last = 0;
        for (quint64 at = begin; at + timeBytes <= end; at += source.recordSize) {
            quint8 *place = m_bytes.data() + (at - begin);
            const auto time = qFromLittleEndian<quint64>(place);
            if (at >= task.offset && at > 0 && time <= last)
                block.disorder.emplace_back(time, last);
            last = time;
            qToLittleEndian(time - std::min(time, offset_us), place);
        }
    }

    std::vector<quint8> m_bytes;
    mdf4::Deflater m_deflater;
};

BlockPipeline::BlockPipeline(std::vector<Source> sources, quint64 offset_us, int threads)
    : m_sources(std::move(sources))
    , m_offset_us(offset_us)
    , m_slots(blocksAheadPerThread * std::size_t(std::max(threads, 1)))
    , m_ownMaker(std::make_unique<Maker>())
{
    for (std::size_t i = 0; i < m_sources.size(); ++i) {
        const Source &source = m_sources[i];
        for (quint64 offset = 0; offset < source.size; offset += source.blockSize) {
            const quint64 size = std::min<quint64>(source.blockSize, source.size - offset);
            m_tasks.push_back({i, offset, static_cast<quint32>(size)});
        }
    }
    // Where the system has no thread or no memory to spare, the one that calls next() does the work.
    try {
        m_threads.reserve(std::size_t(std::max(threads - 1, 0)));
        for (int i = 1; i < threads; ++i)
            m_threads.emplace_back([this, maker = std::make_unique<Maker>()] { work(*maker); });
    } catch (const std::exception &) {
    }
}

BlockPipeline::~BlockPipeline()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

quint64 BlockPipeline::blockCount(const Source &source)
{
    return (source.size + source.blockSize - 1) / source.blockSize;
}

bool BlockPipeline::canClaim() const
{
    return m_nextTask < m_tasks.size() && m_nextTask < m_nextOut + m_slots.size();
}

void BlockPipeline::makeOne(std::unique_lock<std::mutex> &lock, Maker &maker)
{
    const std::size_t index = m_nextTask++;
    const Task &task = m_tasks[index];
    lock.unlock();
    Block block = maker.make(m_sources[task.source], task, m_offset_us);
    lock.lock();
    slotOf(index) = Slot{true, std::move(block)};
    m_changed.notify_all();
}

void BlockPipeline::work(Maker &maker)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stop || canClaim(); });
        if (m_stop)
            return;
        makeOne(lock, maker);
    }
}

BlockPipeline::Block BlockPipeline::next()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!slotOf(m_nextOut).done) {
        if (canClaim())
            makeOne(lock, *m_ownMaker);
        else
            m_changed.wait(lock);
    }
    Slot slot = std::exchange(slotOf(m_nextOut), Slot{});
    ++m_nextOut;
    m_changed.notify_all();
    return std::move(slot.block);
}
