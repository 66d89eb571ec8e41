#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/m4ids.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4records.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

class M4TXBlock;
class mDirectFile;

// A block of the file: header, links to other blocks as file positions, fixed record, variable part.
// It keeps its position for good; when a link changes, header, links and record are written again.
class m4Block
{
public:
    enum AttachFlag : unsigned {
        WriteHeader = 1,
        WriteVariable = 2,
        WriteAll = WriteHeader | WriteVariable
    };

    virtual ~m4Block() = default;
    m4Block(const m4Block &) = delete;
    m4Block &operator=(const m4Block &) = delete;

    virtual std::size_t recordSize() const = 0;
    virtual const void *recordData() const = 0;
    virtual std::uint64_t varSize() const = 0;
    // The variable part piece by piece: piece number `index`, with the bytes that remain going in and
    // the size of the piece coming out through `szRemain`; null when there is no further piece.
    virtual const void *varData(unsigned index, std::uint64_t &szRemain) const = 0;
    virtual std::uint16_t hdrID() const { return m_header.hdr_id; }

    // Gives the block its place in the file, unless it has one, and writes what `flags` name. Returns
    // the position, or 0 when writing failed.
    virtual std::uint64_t attach(mDirectFile *f, unsigned flags = WriteAll);
    // Writes header, links and record, and the variable part behind them, at the block's position.
    [[nodiscard]] bool write(bool linksAndHeader, bool variablePart);

    mDirectFile *file() const { return m_File; }
    std::uint64_t position() const { return m_position; } // 0 until allocated
    std::uint64_t size() const;                           // what hdr_len will say
    std::size_t linkCount() const { return m_links.size(); }
    std::uint64_t link(std::size_t index) const; // 0 for one that doesn't exist
    void setLink(std::size_t index, std::uint64_t position);

    // Attach the text, put it on the link and write this block again.
    [[nodiscard]] bool setTX(std::size_t index, M4TXBlock &TX);
    [[nodiscard]] bool setComment(std::size_t index, M4TXBlock &TXorMD);

protected:
    m4Block(std::uint16_t id, std::size_t linkCount);

    void setFile(mDirectFile *f);
    void setPosition(std::uint64_t position) { m_position = position; }
    void dropLinksFrom(std::size_t index);

private:
    bool linkText(std::size_t index, M4TXBlock &text);
    bool writeVariable(std::uint64_t position);

    mDirectFile *m_File = nullptr;
    std::uint64_t m_position = 0;
    m4BlockHeader m_header;
    std::vector<std::uint64_t> m_links;
};

// The variable part of a block: an array of numbers or bytes.
template <class Element>
class m4VarArray : public std::vector<Element>
{
public:
    using std::vector<Element>::vector;
    std::uint64_t getBytes() const { return this->size() * sizeof(Element); }
};

// A block with a fixed record, whose fields are members of the block, and a variable array.
template <class Record, class VarElement, std::uint16_t id>
class m4BlockImpl : public m4Block, public Record
{
    static_assert(std::is_trivially_copyable_v<Record> && std::is_trivially_copyable_v<VarElement>);

public:
    m4BlockImpl()
        : m4Block(id, Record::LinkCount)
    {}

    std::size_t recordSize() const override { return sizeof(Record); }
    const void *recordData() const override { return static_cast<const Record *>(this); }
    std::uint64_t varSize() const override { return m_var.getBytes(); }
    const void *varData([[maybe_unused]] unsigned index,
                        [[maybe_unused]] std::uint64_t &szRemain) const override
    {
        assert(index == 0);
        assert(szRemain == m_var.getBytes());
        return m_var.data();
    }

    m4VarArray<VarElement> m_var;
};
