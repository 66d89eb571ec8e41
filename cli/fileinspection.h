#pragma once

#include "can/dbcfileparser.h"
#include "cli/filehead.h"
#include "cli/logstatistics.h"
#include "config/terminalstruct.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

// What is in a configuration file, a raw log or a DBC file.
struct FileInspection
{
    QString file;
    qint64 size = 0;
    FileHead::Kind kind = FileHead::Kind::Unknown;
    std::unique_ptr<TerminalStruct> configuration; // null when the file could not be read
    bool configurationIsWhole = false;             // else parts may read as zero
    std::unique_ptr<LogStatistics> log;            // of a raw log whose entries were read
    qint64 firstEntryPosition = 0;
    std::unique_ptr<DbcFileParser> database; // of a DBC file, also of one that is refused
    QString failure;                         // why the file could not be read, or not to its end
    QStringList errors;                      // what is wrong in it
    QStringList warnings;                    // what may be wrong in it
    bool cancelled = false;
};

// How much of a file is read.
enum class InspectionScope { Everything, ConfigurationOnly };

// Called now and then while a file is read, with the bytes read so far and the size of the file; the
// inspection is cancelled when it returns false.
using InspectionProgress = std::function<bool(qint64 done, qint64 size)>;

// Reads one file. Texts are for the user and don't name the file.
[[nodiscard]] FileInspection inspectFile(const QString &path, InspectionScope scope,
                                         const InspectionProgress &progress);
