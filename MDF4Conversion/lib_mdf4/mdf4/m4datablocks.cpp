#include "MDF4Conversion/lib_mdf4/mdf4/m4datablocks.h"

#include "MDF4Conversion/lib_mdf4/mdf4/mdirectfile.h"

#include <algorithm>

M4DLBlock::M4DLBlock(std::uint64_t equalLength, std::uint32_t capacity)
    : m_capacity(capacity)
{
    dl_flags = DL_FL_EQUAL_LENGTH;
    m_var.push_back(equalLength);
}

std::uint64_t M4DLBlock::sizeForCapacity() const
{
    return size() + (std::uint64_t{m_capacity} - dl_count) * sizeof(std::uint64_t);
}

std::uint64_t M4DLBlock::allocate(mDirectFile *f)
{
    setFile(f);
    setPosition(f->allocate(sizeForCapacity(), true));
    return f->failed() ? 0 : position();
}

bool M4DLBlock::beginNext()
{
    const std::uint64_t next = file()->allocate(sizeForCapacity(), true);
    setLink(dl_dl_next, next);
    if (!write(true, true))
        return false;
    dropLinksFrom(dl_data);
    setLink(dl_dl_next, 0);
    dl_count = 0;
    setPosition(next);
    return true;
}

bool M4DLBlock::append(std::uint64_t dataPosition)
{
    setLink(dl_data + dl_count, dataPosition);
    ++dl_count;
    return write(true, true);
}

M4DataBlock::M4DataBlock(std::uint16_t id, std::uint64_t capacity)
    : m4Block(id, 0)
    , m_capacity(capacity)
{}

const void *M4DataBlock::varData([[maybe_unused]] unsigned index,
                                 [[maybe_unused]] std::uint64_t &szRemain) const
{
    assert(index == 0 && szRemain == m_fillCount);
    return m_buffer.get();
}

std::size_t M4DataBlock::fill(const unsigned char *data, std::size_t size)
{
    if (!m_buffer)
        m_buffer.reset(new unsigned char[static_cast<std::size_t>(m_capacity)]);
    const auto count =
        static_cast<std::size_t>(std::min<std::uint64_t>(size, m_capacity - m_fillCount));
    std::copy(data, data + count, m_buffer.get() + m_fillCount);
    m_fillCount += count;
    return count;
}

std::uint64_t M4DataBlock::put(mDirectFile *f)
{
    const std::uint64_t at = writeAtEnd(f);
    clear();
    return at;
}

std::uint64_t M4DataBlock::writeAtEnd(mDirectFile *f)
{
    setFile(f);
    setPosition(f->allocate(size(), true));
    return write(true, true) ? position() : 0;
}

M4DZBlockWr::M4DZBlockWr(std::uint64_t capacity, std::uint32_t recordSize, int level)
    : M4DataBlock(M4ID_DZ, capacity)
    , m_level(level)
{
    dz_org_block_type = M4ID_DT;
    dz_zip_type = DZ_ZIP_TRANSPOSED;
    dz_zip_parameter = recordSize;
    dz_org_data_length = capacity;
}

const void *M4DZBlockWr::varData([[maybe_unused]] unsigned index,
                                 [[maybe_unused]] std::uint64_t &szRemain) const
{
    assert(index == 0 && szRemain == dz_data_length);
    return m_compressed;
}

std::uint64_t M4DZBlockWr::put(mDirectFile *f)
{
    if (!m_deflater)
        m_deflater = std::make_unique<mdf4::Deflater>(m_level);
    const std::uint64_t at =
        putCompressed(f, compressBlock(*m_deflater, buffer(), static_cast<std::size_t>(fillCount()),
                                       dz_zip_parameter));
    clear();
    return at;
}

std::uint64_t M4DZBlockWr::putCompressed(mDirectFile *f, const CompressedBlock &block)
{
    if (!block.ok()) {
        f->fail("cannot compress a data block");
        return 0;
    }
    dz_org_data_length = block.originalSize;
    dz_data_length = block.data.size();
    m_compressed = block.data.data();
    const std::uint64_t at = writeAtEnd(f);
    m_compressed = nullptr;
    return at;
}
