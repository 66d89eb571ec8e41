#include "MDF4Conversion/programlock.h"

#include <QLockFile>
#include <QString>

bool takeProgramLock(QLockFile &lock)
{
    lock.setStaleLockTime(0);
    if (lock.tryLock(0))
        return true;
    qint64 process = 0;
    QString host;
    QString program;
    if (lock.error() != QLockFile::LockFailedError || lock.getLockInfo(&process, &host, &program))
        return false;
    return lock.removeStaleLockFile() && lock.tryLock(0);
}
