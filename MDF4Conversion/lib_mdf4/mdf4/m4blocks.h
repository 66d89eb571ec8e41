#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/m4block.h"

#include <memory>
#include <string>
#include <string_view>

class M4CCBlock;

using M4ATBlock = m4BlockImpl<m4ATRecord, unsigned char, M4ID_AT>;
using M4CABlock = m4BlockImpl<m4CARecord, std::uint64_t, M4ID_CA>;
using M4CHBlock = m4BlockImpl<m4CHRecord, unsigned char, M4ID_CH>;
using M4EVBlock = m4BlockImpl<m4EVRecord, unsigned char, M4ID_EV>;
using M4FHBlock = m4BlockImpl<m4FHRecord, unsigned char, M4ID_FH>;
using M4HDBlock = m4BlockImpl<m4HDRecord, unsigned char, M4ID_HD>;
using M4HLBlock = m4BlockImpl<m4HLRecord, std::uint64_t, M4ID_HL>;
using M4SIBlock = m4BlockImpl<m4SIRecord, unsigned char, M4ID_SI>;
using M4SRBlock = m4BlockImpl<m4SRRecord, unsigned char, M4ID_SR>;

// A text in UTF-8; its terminating NUL is part of the block. The text is put in order by cleanText().
class M4TXBlock : public m4Block
{
public:
    explicit M4TXBlock(std::string_view utf8);

    std::size_t recordSize() const override { return 0; }
    const void *recordData() const override { return nullptr; }
    std::uint64_t varSize() const override { return m_text.size() + 1; }
    const void *varData(unsigned index, std::uint64_t &szRemain) const override;

protected:
    M4TXBlock(std::uint16_t id, std::string_view utf8);

private:
    std::string m_text;
};

// A text in XML, as the comments of the file are.
class M4MDBlock : public M4TXBlock
{
public:
    explicit M4MDBlock(std::string_view xml);
};

// A channel: where a value stands in the record, and what it means.
class M4CNBlock : public m4BlockImpl<m4CNRecord, unsigned char, M4ID_CN>
{
public:
    // Once the block is in a file. The unit may be empty and is written all the same.
    [[nodiscard]] bool setUnit(std::string_view utf8);
    // False, with nothing written, when the conversion has more values than its block can count, or
    // (see the file's failed()) when writing fails.
    [[nodiscard]] bool setConversion(M4CCBlock &cc);
    // Range of the raw values, its bounds in any order; without effect unless both are finite and
    // not both zero.
    void setRange(double min, double max);
};

// A channel group: the channels of one record. Keeps the last channel, so that the next one can be
// chained to it; the one before is freed then.
class M4CGBlock : public m4BlockImpl<m4CGRecord, unsigned char, M4ID_CG>
{
public:
    // The channel is written at once. Null when that fails.
    M4CNBlock *addCN(std::unique_ptr<M4CNBlock> cn, std::string_view name);
    // A channel of whole little-endian bytes: cn_type, cn_data_type, offset and size in bytes, and the
    // range of the raw values, 0 and 0 for none. Valid until the next channel is added.
    M4CNBlock *addCN(std::string_view name, std::uint8_t type, std::uint8_t dataType,
                     std::uint32_t byteOffset, std::uint32_t size, double rangeMin = 0,
                     double rangeMax = 0);
    // The master: "Timestamp", unsigned 64 bit at offset 0, counting microseconds.
    M4CNBlock *addTimeChannel();
    // Writes the number of records into the block.
    [[nodiscard]] bool setCycleCount(std::uint64_t count);

private:
    std::unique_ptr<M4CNBlock> m_lastCN;
};

// A data group: one channel group and its records. Keeps its last channel group.
class M4DGBlock : public m4BlockImpl<m4DGRecord, unsigned char, M4ID_DG>
{
public:
    // The group is written at once; null when that fails. Valid until the next one, or the next data
    // group, is added.
    M4CGBlock *addCG(std::unique_ptr<M4CGBlock> cg);

private:
    std::unique_ptr<M4CGBlock> m_lastCG;
};
