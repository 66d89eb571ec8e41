#pragma once

#include <QtEndian>
#include <QtGlobal>

#include <cstring>
#include <vector>

// The record of a channel group while it is built: values appended one behind the other,
// little-endian. Its memory is kept from record to record.
class RecordBuffer
{
public:
    void clear() { m_size = 0; }
    [[nodiscard]] const quint8 *data() const { return m_bytes.data(); }
    [[nodiscard]] std::size_t size() const { return m_size; }

    // The low `count` bytes of `bits`, 1 to 8.
    void append(quint64 bits, std::size_t count)
    {
        reserve(wordBytes);
        qToLittleEndian(bits, m_bytes.data() + m_size);
        m_size += count;
    }

    void append(const quint8 *bytes, std::size_t count)
    {
        reserve(count);
        std::memcpy(m_bytes.data() + m_size, bytes, count);
        m_size += count;
    }

    // Replaces eight bytes that were appended before.
    void setWord(std::size_t offset, quint64 bits)
    {
        qToLittleEndian(bits, m_bytes.data() + offset);
    }

private:
    static constexpr std::size_t wordBytes = 8;

    void reserve(std::size_t count)
    {
        if (m_size + count > m_bytes.size())
            m_bytes.resize(2 * (m_size + count));
    }

    std::vector<quint8> m_bytes;
    std::size_t m_size = 0;
};
