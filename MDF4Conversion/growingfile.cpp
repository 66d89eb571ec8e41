#include "MDF4Conversion/growingfile.h"

#include "MDF4Conversion/programlock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace growingfile {

namespace {

const QLatin1String partSuffix(".part");
const QLatin1String lockSuffix(".part.lock");

// Of the file, or of the folder and what is in it.
QDateTime lastChangeOf(const QString &path)
{
    const QFileInfo info(path);
    QDateTime last = info.lastModified();
    if (info.isDir()) {
        const QFileInfoList entries =
            QDir(path).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        for (const QFileInfo &entry : entries)
            last = std::max(last, entry.lastModified());
    }
    return last;
}

bool isLeftByAnotherComputer(const QLockFile &lock, const QString &name)
{
    const auto holder = holderOf(lock);
    if (!holder || !holder->isOnAnotherComputer())
        return false;
    const QDateTime last = std::max(lastChangeOf(lockOf(name)), lastChangeOf(partOf(name)));
    return last.msecsTo(QDateTime::currentDateTimeUtc()) > silenceOfAnotherComputer_ms;
}

bool takeLock(QLockFile &lock, const QString &name, int nameIsDue_ms)
{
    if (takeProgramLock(lock, nameIsDue_ms))
        return true;
    if (lock.error() != QLockFile::LockFailedError || !isLeftByAnotherComputer(lock, name))
        return false;
    return lock.removeStaleLockFile() && lock.tryLock(0);
}

// Other programs, too, may call their files so; theirs hold something else. An empty one is that of
// a program which was ended as it made it.
bool isLock(const QString &path)
{
    if (holderOf(QLockFile(path)))
        return true;
    const QFileInfo file(path);
    return file.size() == 0
           && file.lastModified().msecsTo(QDateTime::currentDateTimeUtc()) > lockNameIsDue_ms;
}

// A link goes, not what it leads to. False if something is left.
bool removePart(const QString &path)
{
    const QFileInfo part(path);
    if (part.isDir() && !part.isSymLink())
        return QDir(path).removeRecursively();
    return QFile::remove(path) || !QFileInfo::exists(path);
}

} // namespace

QString partOf(const QString &name)
{
    return name + partSuffix;
}

QString lockOf(const QString &name)
{
    return name + lockSuffix;
}

bool isReserved(const QString &name)
{
    return name.endsWith(partSuffix, Qt::CaseInsensitive)
           || name.endsWith(lockSuffix, Qt::CaseInsensitive);
}

QLockFile::LockError take(std::unique_ptr<QLockFile> &lock, const QString &name)
{
    auto made = std::make_unique<QLockFile>(lockOf(name));
    if (!takeLock(*made, name, lockNameIsDue_ms))
        return made->error();
    lock = std::move(made);
    return QLockFile::NoError;
}

QString otherComputerText(const QString &name)
{
    constexpr int maxShown = 64;
    const auto holder = holderOf(QLockFile(lockOf(name)));
    if (!holder || !holder->isOnAnotherComputer())
        return {};
    return QCoreApplication::translate("growingfile",
                                       "The computer %1 is writing this file. If nothing runs "
                                       "there any more, delete %2.")
        .arg(holder->computer.left(maxShown).simplified(), QDir::toNativeSeparators(lockOf(name)));
}

void keepMark(std::unique_ptr<QLockFile> lock)
{
    (void)lock.release(); // destroyed, it would remove its file
}

void clearLeftovers(const QDir &folder)
{
    const QStringList locks = folder.entryList({QLatin1Char('*') + lockSuffix},
                                               QDir::Files | QDir::Hidden | QDir::CaseSensitive);
    for (const QString &entry : locks) {
        const QString path = folder.filePath(entry);
        if (!isLock(path))
            continue;
        const QString name = path.left(path.size() - lockSuffix.size());
        auto lock = std::make_unique<QLockFile>(path);
        if (takeLock(*lock, name, 0) && !removePart(partOf(name)))
            keepMark(std::move(lock));
    }
}

} // namespace growingfile
