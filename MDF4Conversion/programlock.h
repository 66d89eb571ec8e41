#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

class QLockFile;

// How long a program may take to write its name into a lock that it has made.
constexpr int lockNameIsDue_ms = 300;

// Takes a lock that lives as long as the program that holds it. One whose program has ended gives
// way, also one that was ended before it had written its name into the lock: that is waited for so
// long. Otherwise false, and the lock tells its error. Whether a program of another computer still
// runs can't be seen, so its lock doesn't give way.
[[nodiscard]] bool takeProgramLock(QLockFile &lock, int nameIsDue_ms = lockNameIsDue_ms);

// What a lock tells of its holder; it is whatever stands in the file.
struct ProgramLockHolder
{
    qint64 process = 0;
    QString computer;

    [[nodiscard]] bool isOnAnotherComputer() const;
};

// None if the file isn't there or is no lock.
[[nodiscard]] std::optional<ProgramLockHolder> holderOf(const QLockFile &lock);
