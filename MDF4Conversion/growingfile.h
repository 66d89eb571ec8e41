#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

class QDir;

// What isn't whole yet has another name: "NAME.part", a file or a folder, which "NAME.part.lock" keeps
// for the program that makes it. Names may have a path.
namespace growingfile {

[[nodiscard]] QString partOf(const QString &name);
[[nodiscard]] QString lockOf(const QString &name);
// The name that an entry of a folder keeps for a program: NAME if it is a lock "NAME.part.lock", in
// whatever case, otherwise empty.
[[nodiscard]] QString nameKeptBy(const QString &entry);
// What several that grow for one name at the same time are told apart by: the name itself for 1, with
// ".2", ".3" and so on behind it for the others, up to the largest number.
constexpr int maxNumber = 1000;
[[nodiscard]] QString numberedName(const QString &name, int number);
// Whether a file of this name, without a path and in whatever case, would be taken for one of the two
// or for what is left of taking a lock over.
[[nodiscard]] bool isReserved(const QString &name);

// A lock of another computer gives way when it and what it keeps haven't changed for a day: no
// transfer and no conversion is silent for so long.
constexpr qint64 silenceOfAnotherComputer_ms = 24LL * 3600 * 1000;

// Takes the lock of a growing file. The lock is set if there is no error. It is refused, too, where
// something else than a regular file has the name of the lock, and beside a folder without a lock: a
// lock left there would give that folder away to clearLeftovers().
[[nodiscard]] QLockFile::LockError take(std::unique_ptr<QLockFile> &lock, const QString &name);

// For the user, when the lock is refused: what is in the way, or the other computer that holds it and
// which file to delete if nothing runs there any more. Empty if a program of this computer has it.
[[nodiscard]] QString refusalText(const QString &name);

// For something that can't be removed now, because another program has it open: its lock stays, also
// when this program has ended, so that a later one recognises it.
void keepMark(std::unique_ptr<QLockFile> lock);

// Removes what programs that have ended have left in a folder. What is growing stays, and so does
// what has no lock of this kind beside it. Only a folder "NAME.part" that holds nothing but one
// regular file, called NAME without the number, or nothing at all, goes without a lock, too.
void clearLeftovers(const QDir &folder);

} // namespace growingfile
