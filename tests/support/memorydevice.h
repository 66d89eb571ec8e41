#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/filedevice.h"

#include <cstring>
#include <limits>
#include <vector>

// What a MemoryDevice holds and does; outlives the file that owns the device.
struct MemoryFile
{
    std::vector<unsigned char> bytes;
    std::size_t limit = std::numeric_limits<std::size_t>::max(); // the device is full at this size
    bool failSync = false;
    bool failClose = false;
    unsigned writes = 0; // calls that reached the device
};

// A device in memory that can be full or fail at will.
class MemoryDevice : public FileDevice
{
public:
    explicit MemoryDevice(MemoryFile &file)
        : m_file(file)
    {}

    bool create(const std::filesystem::path &) override
    {
        m_file.bytes.clear();
        return true;
    }

    bool writeAt(std::uint64_t position, const void *data, std::size_t size) override
    {
        ++m_file.writes;
        if (position + size > m_file.limit)
            return false;
        if (position + size > m_file.bytes.size())
            m_file.bytes.resize(position + size);
        std::memcpy(m_file.bytes.data() + position, data, size);
        return true;
    }

    bool readAt(std::uint64_t position, void *data, std::size_t size) override
    {
        if (position + size > m_file.bytes.size())
            return false;
        std::memcpy(data, m_file.bytes.data() + position, size);
        return true;
    }

    bool resize(std::uint64_t size) override
    {
        if (size > m_file.limit)
            return false;
        m_file.bytes.resize(size);
        return true;
    }

    bool sync() override { return !m_file.failSync; }
    bool close() override { return !m_file.failClose; }
    std::string lastError() const override { return "device full"; }

private:
    MemoryFile &m_file;
};
