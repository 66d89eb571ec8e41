#pragma once

#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "config/terminalstruct.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <functional>
#include <memory>

// Finds the entries of one raw log, from start to end, and survives damage: what is no entry is
// skipped byte by byte. Used on one thread.
//
// The buffer never holds more than one chunk and the unread rest of the last. As long as the file
// lasts, at least refillThreshold bytes lie ahead, so an entry is always whole in the buffer.
class LogFileReader
{
public:
    static constexpr qint32 chunkSize = 0x2EF800;
    static constexpr qint32 refillThreshold = 0x20000;

    // Reads the configuration and opens the log at its first entry. It ends where the file ends
    // now.
    explicit LogFileReader(const QString &fileName);

    // The log was opened and holds a configuration; else failure() tells why. A failure may also
    // come up later and end the entries early: when reading fails or the file shrinks.
    [[nodiscard]] bool isOpen() const { return m_open; }
    [[nodiscard]] const QString &failure() const { return m_failure; }

    // Null when the reader isn't open, or when it was taken.
    [[nodiscard]] const TerminalStruct *configuration() const { return m_configuration.get(); }
    [[nodiscard]] std::unique_ptr<TerminalStruct> takeConfiguration()
    {
        return std::move(m_configuration);
    }
    [[nodiscard]] const QString &fileName() const { return m_fileName; }
    [[nodiscard]] quint32 firstEntryPosition() const { return m_firstEntryPosition; }
    [[nodiscard]] qint64 fileSize() const { return m_fileSize; }

    // Fills `entry` with the next one, or sets `atEnd`. The entry isn't valid when its announced
    // length is shorter than the head of an entry. skipCount() and skipPosition() then describe the
    // bytes that were skipped ahead of exactly this entry.
    void next(StdLogEntry &entry, bool &atEnd);

    // The file stops being read as soon as this returns false; asked once for each chunk, so that
    // long stretches without an entry can be watched and cancelled.
    void setContinueCheck(std::function<bool()> check) { m_continueCheck = std::move(check); }

    [[nodiscard]] quint64 skipCount() const { return m_skipCount; }
    [[nodiscard]] qint64 skipPosition() const { return m_skipPosition; }

    // Bytes of the file that have been read and consumed.
    [[nodiscard]] qint64 position() const
    {
        return m_filePosition - m_buffer.size() + m_bufferPosition;
    }
    // position() as percentage of the file, rounded.
    [[nodiscard]] int percent() const { return qRound(double(position()) * m_percentFactor); }

    void close();

private:
    void refill();

    bool m_open = false;
    std::unique_ptr<TerminalStruct> m_configuration;
    QString m_fileName;
    QString m_failure;
    quint32 m_firstEntryPosition = 0;
    QFile m_file;
    qint64 m_fileSize = 0;
    qint64 m_filePosition = 0;
    bool m_fileEnded = true;
    QByteArray m_buffer;
    qint32 m_bufferPosition = 0;
    quint64 m_skipCount = 0;
    qint64 m_skipPosition = 0;
    double m_percentFactor = 0;
    std::function<bool()> m_continueCheck;
};
