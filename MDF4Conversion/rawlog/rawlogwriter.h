#pragma once

#include <QByteArray>
#include <QIODevice>

struct TerminalStruct;

// Writes a raw log onto an open device: the configuration block, then entries. The device belongs
// to the caller and outlives the writer. After the first failed write nothing more is written.
class RawLogWriter
{
public:
    explicit RawLogWriter(QIODevice &device)
        : m_device(device)
    {}

    bool writeConfiguration(const TerminalStruct &configuration);
    bool writeEntry(const QByteArray &entry) { return write(entry); }

    // Every write so far reached the device whole.
    [[nodiscard]] bool ok() const { return m_ok; }

private:
    bool write(const QByteArray &bytes);

    QIODevice &m_device;
    bool m_ok = true;
};
