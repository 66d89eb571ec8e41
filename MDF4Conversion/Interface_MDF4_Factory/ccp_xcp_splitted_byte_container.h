#pragma once

#include <QtGlobal>

#include <vector>

// Gathers the bytes of a value that arrives in several ODT entries.
class CCP_XCP_Splitted_Byte_Container
{
public:
    enum Result : quint8 {
        Complete = 1,       // all bytes are there
        Incomplete = 2,     // some are missing
        AlreadyReceived = 4 // a byte came twice; the new one holds
    };

    explicit CCP_XCP_Splitted_Byte_Container(int size = 0)
        : m_values(size_t(size))
        , m_received(size_t(size))
    {}

    // Takes `len` bytes at position `pos` of the value; what lies beyond the value is dropped. With
    // a len of 0 it only reports. Returns a combination of Result bits.
    int addReceivedByte(int pos, const quint8 *data, int len);

    [[nodiscard]] const std::vector<quint8> &values() const { return m_values; }

    // All bytes are missing again.
    void clear();

private:
    std::vector<quint8> m_values;
    std::vector<quint8> m_received; // 1 for each byte of the value that has come
};
