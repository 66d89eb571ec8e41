#pragma once

#include <QString>

#include <functional>

// The log of a demonstration drive.
namespace drivelog {

struct Result
{
    QString failure; // names the file and the cause; null when all went well
    bool cancelled = false;
};

[[nodiscard]] QString fileName();

// Writes a drive of `seconds` to `path`; the folder must exist. `progress` gets 0 to 100, at least
// once for each second of the drive, and returns false to cancel. The file is whole or not there.
[[nodiscard]] Result write(const QString &path, int seconds,
                           const std::function<bool(int)> &progress);

} // namespace drivelog
