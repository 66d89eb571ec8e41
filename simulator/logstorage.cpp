#include "simulator/logstorage.h"

#include "simulator/recordingfile.h"

#include <QDir>
#include <QFileInfo>

namespace simulator {
namespace {

// What the list of files, in Latin-1 and divided by ";", can't carry is not there for the tool, nor
// is a log that still grows.
bool isListable(const QString &name)
{
    return !name.contains(QLatin1Char(';')) && !isBeingRecorded(name)
           && QString::fromLatin1(name.toLatin1()) == name;
}

} // namespace

QVector<StoredFile> storedFiles(const QString &folder)
{
    QVector<StoredFile> files;
    if (folder.isEmpty())
        return files;
    const QFileInfoList infos =
        QDir(folder).entryInfoList(QDir::Files | QDir::NoSymLinks, QDir::Name);
    for (const QFileInfo &info : infos) {
        if (info.isFile() && isListable(info.fileName()))
            files.append({info.fileName(), info.size()});
    }
    return files;
}

std::optional<QString> storedFilePath(const QString &folder, const QString &name)
{
    for (const StoredFile &file : storedFiles(folder)) {
        if (file.name == name)
            return QDir(folder).filePath(name);
    }
    return {};
}

} // namespace simulator
