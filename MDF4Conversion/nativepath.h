#pragma once

#include <QString>

#include <filesystem>

// The same path for the standard library.
[[nodiscard]] inline std::filesystem::path nativePath(const QString &path)
{
    return std::filesystem::path(path.toStdU16String());
}
