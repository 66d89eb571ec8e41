#pragma once

#include "MDF4Conversion/rawlog/logfilereader.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace simulator {

// Gives the entries of a raw log again in the pace in which they were recorded, and begins anew
// shortly after its end. Used on one thread.
class LogReplay
{
public:
    explicit LogReplay(const QString &path);

    // Null when the log can't be read; failure() tells why.
    [[nodiscard]] const TerminalStruct *configuration() const { return m_reader->configuration(); }
    [[nodiscard]] QString failure() const;

    // The log goes on from here at this time.
    void restart(qint64 now_us);

    // What is due and hasn't been given yet, at most a megabyte or so at a time.
    [[nodiscard]] QByteArray entriesUntil(qint64 now_us);

private:
    [[nodiscard]] bool readNext();
    void noteTime();

    const QString m_path;
    std::unique_ptr<LogFileReader> m_reader;
    StdLogEntry m_entry; // not given yet
    bool m_hasEntry = false;
    bool m_hasClock = false;
    quint32 m_lastTimestamp_us = 0;
    qint64 m_due_us = 0; // of m_entry
    qint64 m_lastCall_us = 0;
};

// The bytes of an entry.
[[nodiscard]] QByteArray bytesOf(const StdLogEntry &entry);

} // namespace simulator
