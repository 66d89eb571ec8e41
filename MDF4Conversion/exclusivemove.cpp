#include "MDF4Conversion/exclusivemove.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
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
        moveOntoReservation(from, to, error);
    else
        error.assign(errno, std::generic_category());
#else
    moveOntoReservation(from, to, error);
#endif
}

#ifndef _WIN32
void moveOntoReservation(const std::filesystem::path &from, const std::filesystem::path &to,
                         std::error_code &error) noexcept
{
    error.clear();
    const int reservation = open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (reservation < 0) {
        error.assign(errno, std::generic_category());
        return;
    }
    close(reservation);
    std::filesystem::rename(from, to, error);
    if (error)
        unlink(to.c_str());
}
#endif
