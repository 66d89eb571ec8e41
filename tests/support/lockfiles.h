#pragma once

#include <QByteArray>
#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>

// What stands in the lock files of programs that can't be asked to hold one.
namespace lockfiles {

// A lock of this program with another line in one place: 0 process, 2 computer, 3 its identity.
[[nodiscard]] inline QByteArray ownWith(int place, const QByteArray &line)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("own.lock"));
    QLockFile lock(path);
    QFile file(path);
    if (!lock.tryLock(0) || !file.open(QIODevice::ReadOnly))
        qFatal("A lock of the test can't be made.");
    QList<QByteArray> lines = file.readAll().split('\n');
    lines[place] = line;
    return lines.join('\n');
}

} // namespace lockfiles

[[nodiscard]] inline QByteArray lockOfEndedProgram()
{
    return lockfiles::ownWith(0, "2147483000"); // beyond what systems number their processes
}

// Without an identity of the computer its name is all that counts.
[[nodiscard]] inline QByteArray lockOfAnotherComputer()
{
    const QByteArray own = lockfiles::ownWith(2, "bench-pc");
    return own.split('\n').mid(0, 3).join('\n') + '\n';
}
