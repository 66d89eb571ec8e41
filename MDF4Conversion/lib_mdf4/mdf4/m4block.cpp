#include "MDF4Conversion/lib_mdf4/mdf4/m4block.h"

#include "MDF4Conversion/lib_mdf4/mdf4/m4blocks.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdirectfile.h"

#include <cstring>

m4Block::m4Block(std::uint16_t id, std::size_t linkCount)
    : m_links(linkCount)
{
    m_header.hdr_id = id;
}

std::uint64_t m4Block::size() const
{
    return sizeof(m4BlockHeader) + m_links.size() * sizeof(std::uint64_t) + recordSize()
           + varSize();
}

std::uint64_t m4Block::link(std::size_t index) const
{
    return index < m_links.size() ? m_links[index] : 0;
}

void m4Block::setLink(std::size_t index, std::uint64_t position)
{
    if (index >= m_links.size())
        m_links.resize(index + 1);
    m_links[index] = position;
}

void m4Block::dropLinksFrom(std::size_t index)
{
    m_links.resize(index);
}

void m4Block::setFile(mDirectFile *f)
{
    assert(m_File == nullptr || m_File == f);
    m_File = f;
}

std::uint64_t m4Block::attach(mDirectFile *f, unsigned flags)
{
    setFile(f);
    if (m_position == 0)
        m_position = f->allocate(size(), false);
    if (flags != 0 && !write((flags & WriteHeader) != 0, (flags & WriteVariable) != 0))
        return 0;
    return m_position;
}

bool m4Block::write(bool linksAndHeader, bool variablePart)
{
    assert(m_File != nullptr);
    m_header.hdr_len = size();
    m_header.hdr_links = m_links.size();
    const std::uint64_t linkBytes = m_links.size() * sizeof(std::uint64_t);
    const std::uint64_t linksAt = m_position + sizeof(m4BlockHeader);
    const std::uint64_t recordAt = linksAt + linkBytes;
    if (linksAndHeader
        && !(m_File->write(m_position, sizeof(m4BlockHeader), &m_header)
             && m_File->write(linksAt, static_cast<std::size_t>(linkBytes), m_links.data())
             && m_File->write(recordAt, recordSize(), recordData())))
        return false;
    return !variablePart || writeVariable(recordAt + recordSize());
}

bool m4Block::writeVariable(std::uint64_t position)
{
    std::uint64_t remaining = varSize();
    for (unsigned index = 0; remaining > 0; ++index) {
        std::uint64_t piece = remaining;
        const void *data = varData(index, piece);
        if (data == nullptr || !m_File->write(position, static_cast<std::size_t>(piece), data))
            return false;
        position += piece;
        remaining -= piece;
    }
    return true;
}

bool m4Block::setTX(std::size_t index, M4TXBlock &TX)
{
    assert(TX.hdrID() == M4ID_TX);
    return linkText(index, TX);
}

bool m4Block::setComment(std::size_t index, M4TXBlock &TXorMD)
{
    assert(TXorMD.hdrID() == M4ID_TX || TXorMD.hdrID() == M4ID_MD);
    return linkText(index, TXorMD);
}

bool m4Block::linkText(std::size_t index, M4TXBlock &text)
{
    assert(m_File != nullptr);
    const std::uint64_t position = text.attach(m_File);
    if (position == 0)
        return false;
    setLink(index, position);
    return write(true, false);
}
