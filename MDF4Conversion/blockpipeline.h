#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/compressedblock.h"

#include <QString>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

// Turns the records of temporary files into compressed data blocks, on several threads, and hands
// them over in order. The blocks are the same whatever the number of threads.
//
// next() belongs to one thread, which lends a hand when it would have to wait.
class BlockPipeline
{
public:
    // The records of one group, as they lie in its temporary file.
    struct Source
    {
        QString path;
        quint32 recordSize = 0; // begins with 8 bytes of time in us
        quint64 size = 0;       // whole records
        quint32 blockSize = 0;
    };
    struct Block
    {
        CompressedBlock data;
        // Times of records that aren't later than the one before: current and last.
        std::vector<std::pair<quint64, quint64>> disorder;
        quint64 firstRecord = 0;
        QString failure; // not empty when the block couldn't be made
    };

    // `offset_us` is taken off all times; what is older becomes 0.
    BlockPipeline(std::vector<Source> sources, quint64 offset_us, int threads);
    ~BlockPipeline();
    BlockPipeline(const BlockPipeline &) = delete;
    BlockPipeline &operator=(const BlockPipeline &) = delete;

    // Blocks of a source.
    [[nodiscard]] static quint64 blockCount(const Source &source);

    // The next block; all blocks of the first source come first. Not to be called once all are out.
    Block next();

private:
    struct Task
    {
        std::size_t source = 0;
        quint64 offset = 0;
        quint32 size = 0;
    };
    struct Slot
    {
        bool done = false;
        Block block;
    };
    class Maker;

    void work(Maker &maker);
    [[nodiscard]] bool canClaim() const;
    Slot &slotOf(std::size_t task) { return m_slots[task % m_slots.size()]; }
    // Makes one block; the lock is held at entry and at exit.
    void makeOne(std::unique_lock<std::mutex> &lock, Maker &maker);

    const std::vector<Source> m_sources;
    const quint64 m_offset_us;
    std::vector<Task> m_tasks;
    std::vector<Slot> m_slots; // a ring: as many blocks may be made ahead of the one to come
    std::size_t m_nextTask = 0;
    std::size_t m_nextOut = 0;
    bool m_stop = false;
    std::mutex m_mutex; // guards the four above
    std::condition_variable m_changed;
    std::unique_ptr<Maker> m_ownMaker;
    std::vector<std::thread> m_threads;
};
