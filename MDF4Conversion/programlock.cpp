#include "MDF4Conversion/programlock.h"

#include <QLockFile>
#include <QString>
#include <QThread>

namespace {

// A program that makes a lock writes its name into it at once; so long another one waits for it.
constexpr int nameIsDue_ms = 300;
constexpr int pollEvery_ms = 10;

bool hasOwner(const QLockFile &lock)
{
    qint64 process = 0;
    QString host;
    QString program;
    return lock.getLockInfo(&process, &host, &program);
}

} // namespace

bool takeProgramLock(QLockFile &lock)
{
    lock.setStaleLockTime(0);
    for (int waited_ms = 0;; waited_ms += pollEvery_ms) {
        if (lock.tryLock(0))
            return true;
        if (lock.error() != QLockFile::LockFailedError || hasOwner(lock))
            return false;
        if (waited_ms >= nameIsDue_ms)
            return lock.removeStaleLockFile() && lock.tryLock(0);
        QThread::msleep(pollEvery_ms);
    }
}
