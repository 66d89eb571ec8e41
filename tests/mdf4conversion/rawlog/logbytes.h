#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

// Bytes of raw logs, made by hand.
namespace logbytes {

inline QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

inline QByteArray littleEndian(quint32 value)
{
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

// The smallest configuration block: an array of eight bytes, in it the frame of a record that holds
// nothing but its version, 6.
inline QByteArray smallestBlock()
{
    return hex("00000008 00000004 00000006");
}

// A CAN frame of channel 2 with identifier 0x123 and two data bytes.
inline QByteArray canEntry(quint32 timestamp_us = 0x01020304)
{
    return hex("AA55 0E00 01 02 00 02") + littleEndian(timestamp_us) + hex("23010000 11 22");
}

// An entry with this many bytes of payload behind its head of eight.
inline QByteArray statusEntry(quint16 payloadBytes, char fill = 0x33)
{
    const quint16 length = quint16(payloadBytes + 4);
    return hex("AA55") + littleEndian(length).left(2) + hex("FF 00 00 00")
           + QByteArray(payloadBytes, fill);
}

inline QByteArray log(const QByteArray &entries, const QByteArray &block = smallestBlock())
{
    return littleEndian(quint32(block.size())) + block + entries;
}

// A file in a folder that is removed with it.
class TemporaryLog
{
public:
    explicit TemporaryLog(const QByteArray &bytes)
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The log for a test can't be written.");
    }

    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("log.rld")); }

private:
    QTemporaryDir m_folder;
};

} // namespace logbytes
