#pragma once

#include <filesystem>
#include <system_error>

// Gives a file another name in the same folder or file system, in one step, unless a file has it
// already: then `error` is std::errc::file_exists and all stays as it is.
void moveWithoutReplacing(const std::filesystem::path &from, const std::filesystem::path &to,
                          std::error_code &error) noexcept;

#ifndef _WIN32
// The same for file systems whose renaming can't refuse: the file gets the name beside its own, in one
// step, and loses its own then. Whenever this is ended, the name is free or that of the whole file.
// Where a file can't have two names, the name is looked at before the file is renamed; one that is
// taken in between is replaced. `makeLink` is link(2) or stands in for it.
using LinkCall = int (*)(const char *from, const char *to);
void moveByLink(const std::filesystem::path &from, const std::filesystem::path &to,
                std::error_code &error, LinkCall makeLink) noexcept;
#endif
