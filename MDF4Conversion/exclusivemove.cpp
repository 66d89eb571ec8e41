#include "MDF4Conversion/exclusivemove.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

void moveWithoutReplacing(const std::filesystem::path &from, const std::filesystem::path &to,
                          std::error_code &error) noexcept
{
    error.clear();
#if defined(_WIN32)
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
        moveByLink(from, to, error, link);
    else
        error.assign(errno, std::generic_category());
#else
    moveByLink(from, to, error, link);
#endif
}

#ifndef _WIN32
namespace {

// What link() tells where files can't have a second name.
bool isWithoutLinks(int cause)
{
    return cause == EPERM || cause == EOPNOTSUPP || cause == ENOSYS || cause == EMLINK;
}

void moveAfterLook(const std::filesystem::path &from, const std::filesystem::path &to,
                   std::error_code &error) noexcept
{
    struct stat taken = {};
    if (lstat(to.c_str(), &taken) == 0)
        error = std::make_error_code(std::errc::file_exists);
    else if (rename(from.c_str(), to.c_str()) != 0)
        error.assign(errno, std::generic_category());
}

} // namespace

void moveByLink(const std::filesystem::path &from, const std::filesystem::path &to,
                std::error_code &error, LinkCall makeLink) noexcept
{
    error.clear();
    if (makeLink(from.c_str(), to.c_str()) == 0)
        unlink(from.c_str()); // if that fails the file has two names, as after a kill
    else if (isWithoutLinks(errno))
        moveAfterLook(from, to, error);
    else
        error.assign(errno, std::generic_category());
}
#endif
