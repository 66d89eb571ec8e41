#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

// Free bytes of a drive; nothing if they can't be read.
using FreeSpaceSource = std::function<std::optional<quint64>()>;

// Free bytes of the drive of the current directory that this user may fill.
[[nodiscard]] std::optional<quint64> freeSpaceOfCurrentDrive();
