#pragma once

#include "MDF4Conversion/rawlog/rawlogwriter.h"

#include <QDateTime>
#include <QFile>
#include <QLockFile>
#include <QString>

#include <memory>

struct TerminalStruct;

namespace simulator {

// A raw log of the storage folder while it is being recorded. It grows under a name that the storage
// doesn't show and gets its own when it is finished, and a lock beside it keeps other programs off.
// What a killed program leaves is a readable log that recoverRecordings() finishes.
class RecordingFile
{
public:
    // In an existing folder.
    RecordingFile(const QString &folder, const QString &name);

    // Opens the file and writes the configuration.
    bool begin(const TerminalStruct &configuration);
    // Appends whole entries and hands them to the operating system.
    bool add(const QByteArray &entries);
    // Gives the log its name, or one like it if that is taken.
    bool finish();
    // Leaves nothing of what begin() has made.
    void remove();

    // Of the finished log.
    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] qint64 size() const { return m_file.size(); }
    // Names the file and the cause of the first failure; null as long as there is none.
    [[nodiscard]] const QString &failure() const { return m_failure; }

private:
    bool check(bool ok);
    bool fail(const QString &cause);

    QString m_path;
    QFile m_file;
    std::unique_ptr<QLockFile> m_lock; // held while the log grows
    RawLogWriter m_writer;
    QString m_failure;
};

// Date and time of the start, in UTC, and the name of the event measurement, of which only letters,
// digits, "-", "." and "_" are kept, 20 characters at most.
[[nodiscard]] QString recordingName(const QDateTime &start, const QString &eventName);

// Whether a file of the storage folder belongs to a log that is still being recorded.
[[nodiscard]] bool isBeingRecorded(const QString &fileName);

// Finishes what was being recorded in the folder by a program that is no more; what another one still
// records is left alone. What holds no whole configuration is removed.
void recoverRecordings(const QString &folder);

} // namespace simulator
