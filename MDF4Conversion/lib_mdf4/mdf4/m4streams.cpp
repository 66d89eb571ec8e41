#include "MDF4Conversion/lib_mdf4/mdf4/m4streams.h"

#include "MDF4Conversion/lib_mdf4/mdf4/mdf4file.h"

#include <algorithm>

std::uint64_t m4BlockSize(std::uint32_t recordSize, std::uint64_t cycles)
{
    const bool fits = recordSize == 0 || cycles <= M4_MAX_BLOCK_SIZE / recordSize;
    return fits ? recordSize * cycles : M4_MAX_BLOCK_SIZE;
}

m4DataStream::m4DataStream(MDF4File &file, M4DGBlock *dg, std::uint64_t blockSize,
                           std::uint32_t listCapacity)
    : m_file(file)
    , m_dg(dg)
    , m_blockSize(blockSize)
    , m_listCapacity(listCapacity)
{
    assert(dg != nullptr);
}

m4DataStream::~m4DataStream()
{
    close();
}

std::uint64_t m4DataStream::openList(std::unique_ptr<M4DataBlock> block)
{
    m_block = std::move(block);
    m_dl = std::make_unique<M4DLBlock>(m_blockSize, m_listCapacity);
    return m_dl->allocate(&m_file);
}

bool m4DataStream::linkData(std::uint64_t position)
{
    m_dg->setLink(m4DGRecord::dg_data, position);
    return m_dg->write(true, false);
}

bool m4DataStream::write(std::size_t size, const void *data)
{
    if (!isOpen())
        return false;
    const auto *bytes = static_cast<const unsigned char *>(data);
    while (size > 0) {
        const std::size_t taken = m_block->fill(bytes, size);
        bytes += taken;
        size -= taken;
        if (m_block->isFull() && !putBlock())
            return false;
    }
    return !m_file.failed();
}

bool m4DataStream::putBlock()
{
    return beginBlock(m_block->fillCount()) && endBlock(m_block->put(&m_file));
}

bool m4DataStream::beginBlock(std::uint64_t size)
{
    if (!isOpen())
        return false;
    if (size == 0 || size > m_blockSize || m_lastSeen)
        return m_file.fail("a data block has the wrong length");
    m_lastSeen = size < m_blockSize;
    m_empty = false;
    return !m_dl->isFull() || m_dl->beginNext();
}

bool m4DataStream::endBlock(std::uint64_t position)
{
    return position != 0 && m_dl->append(position);
}

bool m4DataStream::close()
{
    if (!isOpen())
        return !m_file.failed();
    if (m_block->fillCount() > 0)
        putBlock();
    if (m_empty)
        linkData(0); // an empty list is not allowed
    m_dl.reset();
    m_block.reset();
    return m_file.patchCycleCounts();
}

m4DZStream::m4DZStream(MDF4File &file, M4DGBlock *dg, std::uint64_t blockSize,
                       std::uint32_t recordSize, std::uint32_t listCapacity)
    : m4DataStream(file, dg, blockSize, listCapacity)
{
    m_hl.hl_flags = DL_FL_EQUAL_LENGTH;
    m_hl.hl_zip_type = DZ_ZIP_TRANSPOSED;
    m_hl.attach(&file);
    auto block = std::make_unique<M4DZBlockWr>(blockSize, recordSize, m_level);
    m_dz = block.get();
    m_hl.setLink(m4HLRecord::hl_dl_first, openList(std::move(block)));
    if (m_hl.write(true, false))
        linkData(m_hl.position());
}

bool m4DZStream::writeCompressed(const CompressedBlock &compressed)
{
    if (!isOpen())
        return false;
    if (m_dz->fillCount() > 0)
        return file().fail("a data block has the wrong length");
    return beginBlock(compressed.originalSize)
           && endBlock(m_dz->putCompressed(&file(), compressed));
}

m4DZStreamEx::m4DZStreamEx(MDF4File &file, M4DGBlock *dg, std::uint64_t blockSize,
                           std::uint32_t recordSize, std::uint32_t listCapacity)
    : m4DZStream(file, dg, std::min(blockSize, M4_MAX_BLOCK_SIZE), recordSize,
                 std::max(listCapacity, M4_MIN_LIST_CAPACITY))
{}

m4DataStreamEx::m4DataStreamEx(MDF4File &file, M4DGBlock *dg, std::uint64_t blockSize,
                               std::uint32_t listCapacity)
    : m4DataStream(file, dg, std::min(blockSize, M4_MAX_BLOCK_SIZE),
                   std::max(listCapacity, M4_MIN_LIST_CAPACITY))
{
    linkData(openList(std::make_unique<M4DTBlock>(this->blockSize())));
}
