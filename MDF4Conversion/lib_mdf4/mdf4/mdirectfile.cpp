#include "MDF4Conversion/lib_mdf4/mdf4/mdirectfile.h"

#include <algorithm>
#include <system_error>

namespace {

// The tail holds the blocks of several channels, which get their links while they are still in it.
constexpr std::size_t tailCapacity = 64 * 1024;
constexpr std::uint64_t alignment = 8; // of every block in the file

} // namespace

mDirectFile::mDirectFile(std::unique_ptr<FileDevice> device)
    : m_device(std::move(device))
{}

mDirectFile::~mDirectFile()
{
    if (m_open)
        mDirectFile::close();
}

bool mDirectFile::open(const std::filesystem::path &path)
{
    if (m_open)
        return fail("a file is open already");
    if (path.empty())
        return fail("no file name given");
    if (!m_device->create(path))
        return failDevice("cannot create the file");
    m_open = true;
    m_path = path;
    m_tail.clear();
    m_tail.reserve(tailCapacity);
    m_tailStart = m_logicalEnd = m_extendedEnd = 0;
    return true;
}

bool mDirectFile::close()
{
    if (!m_open)
        return !m_failed;
    if (flush() && m_tailStart < m_extendedEnd && !m_device->resize(m_extendedEnd))
        failDevice("cannot extend the file");
    if (!m_failed && !m_device->sync())
        failDevice("cannot write the file");
    m_open = false;
    if (!m_device->close())
        failDevice("cannot close the file");
    return !m_failed;
}

void mDirectFile::abort()
{
    m_open = false;
    m_tail.clear();
    m_device->close();
    std::error_code ignored;
    // Only what was made here goes: the path may name a device or a pipe.
    if (std::filesystem::is_regular_file(m_path, ignored))
        std::filesystem::remove(m_path, ignored);
    m_path.clear();
}

std::uint64_t mDirectFile::allocate(std::uint64_t size, bool extend)
{
    const std::uint64_t position = (m_logicalEnd + alignment - 1) / alignment * alignment;
    m_logicalEnd = position + size;
    if (extend)
        m_extendedEnd = m_logicalEnd;
    return position;
}

bool mDirectFile::write(std::uint64_t position, std::size_t size, const void *data)
{
    if (m_failed)
        return false;
    if (!m_open)
        return fail("the file is not open");
    if (size == 0)
        return true;
    const auto *bytes = static_cast<const unsigned char *>(data);
    m_logicalEnd = std::max(m_logicalEnd, position + size);
    if (position < m_tailStart) {
        const auto before =
            static_cast<std::size_t>(std::min<std::uint64_t>(size, m_tailStart - position));
        if (!m_device->writeAt(position, bytes, before))
            return failDevice("cannot write the file");
        position += before;
        bytes += before;
        size -= before;
    }
    return size == 0 || writeTail(position, size, bytes);
}

// `position` lies in the tail or behind it.
bool mDirectFile::writeTail(std::uint64_t position, std::size_t size, const unsigned char *data)
{
    if (position + size > m_tailStart + tailCapacity) {
        if (!m_tail.empty())
            return flush() && write(position, size, data);
        // Too long or too far away to wait in memory. A hole before it reads as zeros.
        if (!m_device->writeAt(position, data, size))
            return failDevice("cannot write the file");
        m_tailStart = position + size;
        return true;
    }
    const auto offset = static_cast<std::size_t>(position - m_tailStart);
    if (offset + size > m_tail.size())
        m_tail.resize(offset + size);
    std::copy(data, data + size, m_tail.begin() + static_cast<std::ptrdiff_t>(offset));
    return true;
}

bool mDirectFile::read(std::uint64_t position, std::size_t size, void *data)
{
    if (!m_open)
        return fail("the file is not open");
    if (!flush())
        return false;
    return m_device->readAt(position, data, size) || failDevice("cannot read the file");
}

bool mDirectFile::truncate(std::uint64_t position)
{
    if (!m_open)
        return fail("the file is not open");
    if (!flush())
        return false;
    if (!m_device->resize(position))
        return failDevice("cannot change the size of the file");
    m_tailStart = m_logicalEnd = m_extendedEnd = position;
    return true;
}

bool mDirectFile::flush()
{
    if (m_failed)
        return false;
    if (m_tail.empty())
        return true;
    if (!m_device->writeAt(m_tailStart, m_tail.data(), m_tail.size()))
        return failDevice("cannot write the file");
    m_tailStart += m_tail.size();
    m_tail.clear();
    return true;
}

bool mDirectFile::fail(const std::string &text)
{
    if (!m_failed)
        m_lastError = text;
    m_failed = true;
    return false;
}

bool mDirectFile::failDevice(const char *action)
{
    return fail(std::string(action) + ": " + m_device->lastError());
}
