#include "MDF4Conversion/growingfile.h"

#include "MDF4Conversion/programlock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <mutex>
#include <optional>
#include <vector>

namespace growingfile {

namespace {

const QLatin1String partSuffix(".part");
const QLatin1String lockSuffix(".part.lock");

// What the clearing looks for. Without a name in front, the folder itself would be the name.
const QLatin1String partPattern("?*.part");
const QLatin1String lockPattern("?*.part.lock");
const QLatin1String takeoverPattern("?*.part.lock*.rmlock"); // of QLockFile

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

// How long to wait for the name of its holder, none if the file is no lock: other programs, too, may
// call their files so. An empty one is that of a program which makes it just now, or was ended as it
// did. All that are young get old at the same time, so many cost no more than one.
std::optional<int> nameIsDueIn_ms(const QString &lock)
{
    if (holderOf(QLockFile(lock)))
        return 0;
    const QFileInfo file(lock);
    const qint64 age_ms = file.lastModified().msecsTo(QDateTime::currentDateTimeUtc());
    if (file.size() > 0 || age_ms < 0)
        return std::nullopt;
    return int(std::max(lockNameIsDue_ms - age_ms, qint64(0)));
}

// A link goes, not what it leads to. False if something is left.
bool removePart(const QString &path)
{
    const QFileInfo part(path);
    if (part.isDir() && !part.isSymLink())
        return QDir(path).removeRecursively();
    return QFile::remove(path) || !QFileInfo::exists(path);
}

void clearLeftover(const QString &name, int nameIsDue_ms)
{
    auto lock = std::make_unique<QLockFile>(lockOf(name));
    if (takeLock(*lock, name, nameIsDue_ms) && !removePart(partOf(name)))
        keepMark(std::move(lock));
}

// Who takes a lock over, locks that; ended meanwhile, it keeps all others from taking it over. The
// deepest comes first, as that goes for these locks, too.
void clearTakeovers(const QDir &folder)
{
    const QStringList locks =
        folder.entryList({takeoverPattern}, QDir::Files | QDir::Hidden | QDir::CaseSensitive,
                         QDir::Name | QDir::Reversed);
    for (const QString &entry : locks) {
        const QString path = folder.filePath(entry);
        QLockFile lock(path);
        if (const auto wait_ms = nameIsDueIn_ms(path))
            (void)takeProgramLock(lock, *wait_ms); // and given back
    }
}

QFileInfoList entriesOf(const QString &folder)
{
    return QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System
                                      | QDir::NoDotAndDotDot);
}

// Whether a folder that grows for `name` may hold a file of that name.
bool isNameWithin(const QString &file, const QString &name)
{
    const int number = name.section(QLatin1Char('.'), -1).toInt();
    return file == name
           || (number > 1 && number <= maxNumber && numberedName(file, number) == name);
}

// A program that was ended as it took the lock of a folder over has left that without one. Such a
// folder holds nothing but one file that is called like itself, or nothing yet.
bool looksLikeGrowing(const QString &part, const QString &name)
{
    const QFileInfoList entries = entriesOf(part);
    if (entries.isEmpty())
        return true;
    const QFileInfo &file = entries.first();
    return entries.size() == 1 && file.isFile() && !file.isSymLink()
           && isNameWithin(file.fileName(), name);
}

// Takes no more than that, and leaves no mark behind: the folder could still be somebody else's. It
// is looked at before the lock is made, too, or a program ended here would leave a lock beside it.
void clearUnlocked(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    const QString part = partOf(path);
    if (!looksLikeGrowing(part, name))
        return;
    QLockFile lock(lockOf(path));
    lock.setStaleLockTime(0);
    if (!lock.tryLock(0) || !looksLikeGrowing(part, name)) // a file that is no lock stays
        return;
    const QFileInfoList entries = entriesOf(part);
    if (entries.isEmpty() || QFile::remove(entries.first().filePath()))
        QDir().rmdir(part); // fails unless it's empty
}

// What somebody else has put where the lock is to be, or a folder without a lock where the file is to
// grow; empty if there is neither.
QString obstacleOf(const QString &name)
{
    const QFileInfo lock(lockOf(name));
    if (lock.isSymLink() || (lock.exists() && !lock.isFile()))
        return lock.filePath();
    const QFileInfo part(partOf(name));
    return part.isDir() && !part.isSymLink() && !lock.exists() ? part.filePath() : QString();
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

QString nameKeptBy(const QString &entry)
{
    return entry.endsWith(lockSuffix, Qt::CaseInsensitive) ? entry.chopped(lockSuffix.size())
                                                           : QString();
}

QString numberedName(const QString &name, int number)
{
    return number == 1 ? name : name + QStringLiteral(".%1").arg(number);
}

bool isReserved(const QString &name)
{
    return QDir::match(QStringList{partPattern, lockPattern, takeoverPattern}, name);
}

QLockFile::LockError take(std::unique_ptr<QLockFile> &lock, const QString &name)
{
    if (!obstacleOf(name).isEmpty())
        return QLockFile::LockFailedError;
    auto made = std::make_unique<QLockFile>(lockOf(name));
    if (!takeLock(*made, name, lockNameIsDue_ms))
        return made->error();
    lock = std::move(made);
    return QLockFile::NoError;
}

QString refusalText(const QString &name)
{
    constexpr int maxShown = 64;
    const QString obstacle = obstacleOf(name);
    if (!obstacle.isEmpty()) {
        return QCoreApplication::translate("growingfile",
                                           "Something else is called %1, which this file needs "
                                           "while it grows. Rename or delete it.")
            .arg(QDir::toNativeSeparators(obstacle));
    }
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
    // They are never destroyed, since each would remove its file. Several threads may come here.
    static auto &mutex = *new std::mutex;
    static auto &kept = *new std::vector<std::unique_ptr<QLockFile>>;
    const std::lock_guard<std::mutex> guard(mutex);
    kept.push_back(std::move(lock));
}

void clearLeftovers(const QDir &folder)
{
    clearTakeovers(folder);
    const QStringList locks = folder.entryList(
        {lockPattern}, QDir::Files | QDir::Hidden | QDir::NoSymLinks | QDir::CaseSensitive);
    for (const QString &entry : locks) {
        if (const auto wait_ms = nameIsDueIn_ms(folder.filePath(entry)))
            clearLeftover(folder.filePath(nameKeptBy(entry)), *wait_ms);
    }
    const QStringList parts =
        folder.entryList({partPattern}, QDir::Dirs | QDir::NoSymLinks | QDir::CaseSensitive);
    for (const QString &entry : parts)
        clearUnlocked(folder.filePath(entry.chopped(partSuffix.size())));
}

} // namespace growingfile
