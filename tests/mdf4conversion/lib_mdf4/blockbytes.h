#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/m4block.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdirectfile.h"
#include "tests/support/memorydevice.h"

#include <QByteArray>

// A file in memory whose first 64 bytes are taken, so that the first block stands at 0x40.
class BlockFile
{
public:
    BlockFile()
        : m_file(std::make_unique<MemoryDevice>(m_memory))
    {
        if (m_file.open("file"))
            static_cast<void>(m_file.allocate(64, false));
    }

    mDirectFile *file() { return &m_file; }
    MemoryFile &memory() { return m_memory; }

    // What the file holds behind the first 64 bytes, as "23 23 ...".
    QByteArray hex()
    {
        if (!m_file.flush())
            return "failed";
        const auto *bytes = reinterpret_cast<const char *>(m_memory.bytes.data());
        return QByteArray(bytes, static_cast<int>(m_memory.bytes.size())).mid(64).toHex(' ');
    }

private:
    MemoryFile m_memory;
    mDirectFile m_file;
};

// Hand-written hexadecimal in the same shape, whatever its spaces.
inline QByteArray golden(const char *hex)
{
    return QByteArray::fromHex(hex).toHex(' ');
}
