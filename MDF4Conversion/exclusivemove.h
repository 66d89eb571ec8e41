#pragma once

#include <filesystem>
#include <system_error>

// Gives a file another name in the same folder or file system, in one step, unless a file has it
// already: then `error` is std::errc::file_exists and all stays as it is.
void moveWithoutReplacing(const std::filesystem::path &from, const std::filesystem::path &to,
                          std::error_code &error) noexcept;

#ifndef _WIN32
// The same in two steps, for file systems whose renaming can't refuse: an empty file that only one
// process can make takes the name, and gives way to the whole one.
void moveOntoReservation(const std::filesystem::path &from, const std::filesystem::path &to,
                         std::error_code &error) noexcept;
#endif
