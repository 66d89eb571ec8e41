#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/compressedblock.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4block.h"

#include <cstddef>
#include <cstdint>
#include <memory>

using M4DZBlock = m4BlockImpl<m4DZRecord, unsigned char, M4ID_DZ>;

// List of the data blocks of a group. Its place in the file is as long as its capacity needs, from
// the start, so that it can grow where it stands.
class M4DLBlock : public m4BlockImpl<m4DLRecord, std::uint64_t, M4ID_DL>
{
public:
    M4DLBlock(std::uint64_t equalLength, std::uint32_t capacity);

    // Gives the list its place, long enough for the whole capacity. Nothing is written before the
    // first data block is listed. Returns the position, 0 on failure.
    std::uint64_t allocate(mDirectFile *f);
    // Writes the list with a link to a new one, and becomes that, empty.
    [[nodiscard]] bool beginNext();
    bool isFull() const { return dl_count >= m_capacity; }
    // Lists one more data block and writes the list again.
    [[nodiscard]] bool append(std::uint64_t dataPosition);

private:
    std::uint64_t sizeForCapacity() const;

    const std::uint32_t m_capacity; // data links
};

// A block that a stream fills with records, writes, and fills anew.
class M4DataBlock : public m4Block
{
public:
    std::size_t recordSize() const override { return 0; }
    const void *recordData() const override { return nullptr; }
    std::uint64_t varSize() const override { return m_fillCount; }
    const void *varData(unsigned index, std::uint64_t &szRemain) const override;

    std::uint64_t capacity() const { return m_capacity; }
    std::uint64_t fillCount() const { return m_fillCount; }
    bool isFull() const { return m_fillCount == m_capacity; }
    // Takes as much of the data as fits and returns how much that was.
    std::size_t fill(const unsigned char *data, std::size_t size);
    // Writes what is filled in to the end of the file and begins anew. Returns the position, 0 on
    // failure.
    virtual std::uint64_t put(mDirectFile *f);

protected:
    M4DataBlock(std::uint16_t id, std::uint64_t capacity);

    const unsigned char *buffer() const { return m_buffer.get(); }
    void clear() { m_fillCount = 0; }
    std::uint64_t writeAtEnd(mDirectFile *f);

private:
    const std::uint64_t m_capacity;
    std::uint64_t m_fillCount = 0;
    std::unique_ptr<unsigned char[]> m_buffer; // made when the first byte arrives
};

template <std::uint16_t id>
class m4PlainDataBlock : public M4DataBlock
{
public:
    explicit m4PlainDataBlock(std::uint64_t capacity)
        : M4DataBlock(id, capacity)
    {}
};

using M4DTBlock = m4PlainDataBlock<M4ID_DT>;
using M4RDBlock = m4PlainDataBlock<M4ID_RD>;
using M4SDBlock = m4PlainDataBlock<M4ID_SD>;

// A data block that is compressed on its way into the file: transposed, then deflated.
class M4DZBlockWr : public M4DataBlock, public m4DZRecord
{
public:
    M4DZBlockWr(std::uint64_t capacity, std::uint32_t recordSize, int level);

    std::size_t recordSize() const override { return sizeof(m4DZRecord); }
    const void *recordData() const override { return static_cast<const m4DZRecord *>(this); }
    std::uint64_t varSize() const override { return dz_data_length; }
    const void *varData(unsigned index, std::uint64_t &szRemain) const override;

    std::uint64_t put(mDirectFile *f) override;
    // Writes a block that was compressed elsewhere. What is filled in stays.
    std::uint64_t putCompressed(mDirectFile *f, const CompressedBlock &block);

private:
    const int m_level;
    std::unique_ptr<mdf4::Deflater> m_deflater;  // made when the first block is full
    const unsigned char *m_compressed = nullptr; // not owned; valid within putCompressed()
};
