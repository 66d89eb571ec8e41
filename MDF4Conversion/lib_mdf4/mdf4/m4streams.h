#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/compressedblock.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4blocks.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4datablocks.h"

#include <cstddef>
#include <cstdint>
#include <memory>

class MDF4File;

// The largest data block: the standard's limit for the original data of one DZ.
constexpr std::uint64_t M4_MAX_BLOCK_SIZE = 0x400000;
// The smallest number of data blocks that one list is laid out for.
constexpr std::uint32_t M4_MIN_LIST_CAPACITY = 5;

// Block size for `cycles` records of `recordSize` bytes: all of them, at most the largest block.
std::uint64_t m4BlockSize(std::uint32_t recordSize, std::uint64_t cycles);

// Takes the records of one group, in order, and lays them into the file as equally long blocks (the
// last one may be shorter) under a chain of DL blocks. A record may be split between two blocks. One
// stream at a time; made when the group's channels are in the file and closed before the next group
// is added. A failure makes the call return false and sticks to the file.
class m4DataStream
{
public:
    virtual ~m4DataStream(); // closes
    m4DataStream(const m4DataStream &) = delete;
    m4DataStream &operator=(const m4DataStream &) = delete;

    [[nodiscard]] bool write(std::size_t size, const void *data);
    // Writes the last block and patches the group's record count. A stream without a byte leaves the
    // group without data.
    bool close();

    // Bytes of every block but the last.
    std::uint64_t blockSize() const { return m_blockSize; }

protected:
    // `dg` has no data yet. `blockSize` is in bytes, at most M4_MAX_BLOCK_SIZE.
    m4DataStream(MDF4File &file, M4DGBlock *dg, std::uint64_t blockSize,
                 std::uint32_t listCapacity);

    // Opening: makes room for the first list and returns its position, 0 on failure.
    std::uint64_t openList(std::unique_ptr<M4DataBlock> block);
    // Opening: makes the group's data begin at this block.
    bool linkData(std::uint64_t position);

    // Writing one block: a list with room for it, then the block itself at the end of the file, then
    // its entry in the list.
    bool beginBlock(std::uint64_t size);
    bool endBlock(std::uint64_t position);

    MDF4File &file() { return m_file; }
    bool isOpen() const { return m_dl != nullptr; }

private:
    bool putBlock();

    MDF4File &m_file;
    M4DGBlock *const m_dg; // owned by the file
    const std::uint64_t m_blockSize;
    const std::uint32_t m_listCapacity;
    std::unique_ptr<M4DLBlock> m_dl; // the list being filled; null unless open
    std::unique_ptr<M4DataBlock> m_block;
    bool m_empty = true;     // no block written so far
    bool m_lastSeen = false; // a block shorter than the block size was written: no other may follow
};

// Transposes and deflates every block: DZ blocks, with an HL block above their lists.
class m4DZStream : public m4DataStream
{
public:
    // Appends a block that compressBlock() made of the next blockSize() bytes of records (the last
    // block may be shorter). The file gets the same bytes as with write(). Not to be mixed with it.
    [[nodiscard]] bool writeCompressed(const CompressedBlock &compressed);

protected:
    m4DZStream(MDF4File &file, M4DGBlock *dg, std::uint64_t blockSize, std::uint32_t recordSize,
               std::uint32_t listCapacity);

private:
    static constexpr int m_level = mdf4::Deflater::defaultLevel;
    M4HLBlock m_hl;
    M4DZBlockWr *m_dz; // the block of the base class, valid while open
};

// The compressing stream of a group without data. `blockSize` is cut to M4_MAX_BLOCK_SIZE, the number
// of blocks for each list raised to M4_MIN_LIST_CAPACITY.
class m4DZStreamEx : public m4DZStream
{
public:
    m4DZStreamEx(MDF4File &file, M4DGBlock *dg, std::uint64_t blockSize, std::uint32_t recordSize,
                 std::uint32_t listCapacity = M4_MIN_LIST_CAPACITY);
};

// The same without compression: DT blocks.
class m4DataStreamEx : public m4DataStream
{
public:
    m4DataStreamEx(MDF4File &file, M4DGBlock *dg, std::uint64_t blockSize,
                   std::uint32_t listCapacity = M4_MIN_LIST_CAPACITY);
};
