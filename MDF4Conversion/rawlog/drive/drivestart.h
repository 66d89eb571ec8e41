#pragma once

#include <QDateTime>

namespace drive {

// Wall clock at the start of the drive.
[[nodiscard]] inline QDateTime driveStart()
{
    return QDateTime(QDate(2024, 5, 14), QTime(8, 30), Qt::UTC);
}

} // namespace drive
