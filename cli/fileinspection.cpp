#include "cli/fileinspection.h"

#include "MDF4Conversion/rawlog/logfilereader.h"
#include "cli/logfindings.h"
#include "config/configfile.h"
#include "config/whyunreadable.h"

#include <QFileInfo>

namespace {

// The loader begins its texts with the path.
QString withoutPath(const QString &text, const QString &path)
{
    const QString prefix = path + QStringLiteral(": ");
    return text.startsWith(prefix) ? text.mid(prefix.size()) : text;
}

void readConfigurationFile(FileInspection &inspection)
{
    auto configuration = std::make_unique<TerminalStruct>();
    QString failure;
    if (configfile::load(*configuration, inspection.file, &failure))
        inspection.configuration = std::move(configuration);
    else
        inspection.failure = withoutPath(failure, inspection.file);
}

// What lies behind the last entry, from the first byte that is none.
void takeRest(LogStatistics &statistics, const LogFileReader &reader)
{
    const qint64 start = reader.skipCount() != 0 ? reader.skipPosition() : reader.position();
    statistics.takeSkipped(start, quint64(qMax<qint64>(reader.fileSize() - start, 0)));
}

void readEntries(FileInspection &inspection, LogFileReader &reader,
                 const InspectionProgress &progress)
{
    reader.setContinueCheck([&] {
        inspection.cancelled = !progress(reader.position(), reader.fileSize());
        return !inspection.cancelled;
    });
    inspection.firstEntryPosition = reader.firstEntryPosition();
    auto statistics = std::make_unique<LogStatistics>();
    StdLogEntry entry;
    bool atEnd = false;
    for (reader.next(entry, atEnd); !atEnd; reader.next(entry, atEnd)) {
        statistics->takeSkipped(reader.skipPosition(), reader.skipCount());
        statistics->take(entry);
    }
    if (inspection.cancelled)
        return;
    statistics->finish();
    inspection.failure = reader.failure();
    if (inspection.failure.isEmpty())
        takeRest(*statistics, reader);
    addFindings(*statistics, inspection.errors, inspection.warnings);
    inspection.log = std::move(statistics);
}

void readLog(FileInspection &inspection, InspectionScope scope, const InspectionProgress &progress)
{
    LogFileReader reader(inspection.file);
    inspection.failure = reader.failure();
    inspection.configuration = reader.takeConfiguration();
    if (reader.isOpen() && scope == InspectionScope::Everything)
        readEntries(inspection, reader, progress);
}

QString whyUnknown(const QString &path)
{
    const QString unreadable = whyUnreadable(path);
    if (!unreadable.isEmpty())
        return unreadable;
    if (QFileInfo(path).size() == 0)
        return QStringLiteral("the file is empty");
    return QStringLiteral("it is no configuration, raw log or DBC file");
}

void readDatabase(FileInspection &inspection, const InspectionProgress &progress)
{
    inspection.database = std::make_unique<DbcFileParser>();
    DbcFileParser &parser = *inspection.database;
    parser.setProgress(progress);
    const bool isRead = parser.load(inspection.file);
    parser.setProgress({});
    inspection.cancelled = parser.isCancelled();
    inspection.failure = parser.errorText();
    if (!isRead && inspection.failure.isEmpty())
        inspection.failure = whyUnknown(inspection.file);
    else if (isRead && parser.signalList().isEmpty())
        inspection.warnings.append(QStringLiteral("there is no signal in it"));
}

void judgeConfiguration(FileInspection &inspection)
{
    if (!inspection.configurationIsWhole)
        inspection.errors.prepend(QStringLiteral("the configuration is damaged; what could not be "
                                                 "read shows as zero"));
    else if (inspection.configuration->version > TerminalStruct::streamVersion)
        inspection.warnings.prepend(
            QStringLiteral("the configuration has version %1 and is read as version %2")
                .arg(inspection.configuration->version)
                .arg(TerminalStruct::streamVersion));
}

} // namespace

FileInspection inspectFile(const QString &path, InspectionScope scope,
                           const InspectionProgress &progress)
{
    FileInspection inspection;
    inspection.file = path;
    inspection.size = QFileInfo(path).size();
    const FileHead head = readFileHead(path);
    inspection.kind = head.kind;
    inspection.configurationIsWhole = head.framesAreWhole;
    switch (head.kind) {
    case FileHead::Kind::Configuration:
        readConfigurationFile(inspection);
        break;
    case FileHead::Kind::RawLog:
        readLog(inspection, scope, progress);
        break;
    case FileHead::Kind::Database:
        readDatabase(inspection, progress);
        break;
    case FileHead::Kind::Unknown:
        inspection.failure = whyUnknown(path);
        break;
    }
    if (inspection.configuration)
        judgeConfiguration(inspection);
    return inspection;
}
