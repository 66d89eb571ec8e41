#pragma once

#include <QString>

#include <functional>
#include <optional>

// Free bytes of a drive; nothing if they can't be read.
using FreeSpaceSource = std::function<std::optional<quint64>()>;

// Free bytes of the drive of the current directory that this user may fill.
[[nodiscard]] std::optional<quint64> freeSpaceOfCurrentDrive();
// The same of the drive that a folder is on. Nothing if the folder doesn't exist.
[[nodiscard]] std::optional<quint64> freeSpaceOf(const QString &folder);
