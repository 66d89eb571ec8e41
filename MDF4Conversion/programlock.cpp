#include "MDF4Conversion/programlock.h"

#include <QLockFile>
#include <QSysInfo>
#include <QThread>

namespace {

constexpr int pollEvery_ms = 10;

} // namespace

bool ProgramLockHolder::isOnAnotherComputer() const
{
    return !computer.isEmpty() && computer != QSysInfo::machineHostName();
}

std::optional<ProgramLockHolder> holderOf(const QLockFile &lock)
{
    ProgramLockHolder holder;
    QString program;
    if (!lock.getLockInfo(&holder.process, &holder.computer, &program))
        return std::nullopt;
    return holder;
}

bool takeProgramLock(QLockFile &lock, int nameIsDue_ms)
{
    lock.setStaleLockTime(0);
    for (int waited_ms = 0;; waited_ms += pollEvery_ms) {
        if (lock.tryLock(0))
            return true;
        if (lock.error() != QLockFile::LockFailedError || holderOf(lock))
            return false;
        if (waited_ms >= nameIsDue_ms)
            return lock.removeStaleLockFile() && lock.tryLock(0);
        QThread::msleep(pollEvery_ms);
    }
}
