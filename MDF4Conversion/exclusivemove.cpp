#include "MDF4Conversion/exclusivemove.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#endif

namespace {

#ifndef Q_OS_WIN
// For file systems that can't refuse to replace. A process that is killed in between leaves the
// file under both names, whole.
void linkAndRemove(const std::filesystem::path &from, const std::filesystem::path &to,
                   std::error_code &error) noexcept
{
    std::filesystem::create_hard_link(from, to, error);
    if (error)
        return;
    std::error_code ignored;
    std::filesystem::remove(from, ignored);
}
#endif

} // namespace

void moveWithoutReplacing(const std::filesystem::path &from, const std::filesystem::path &to,
                          std::error_code &error) noexcept
{
    error.clear();
#if defined(Q_OS_WIN)
    // Without MOVEFILE_REPLACE_EXISTING an existing name is refused.
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) != 0)
        return;
    const DWORD cause = GetLastError();
    if (cause == ERROR_ALREADY_EXISTS || cause == ERROR_FILE_EXISTS)
        error = std::make_error_code(std::errc::file_exists);
    else
        error.assign(int(cause), std::system_category());
#elif defined(RENAME_NOREPLACE)
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return;
    if (errno == EINVAL || errno == ENOSYS)
        linkAndRemove(from, to, error);
    else
        error.assign(errno, std::generic_category());
#else
    linkAndRemove(from, to, error);
#endif
}
