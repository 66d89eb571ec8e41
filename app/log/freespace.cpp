#include "app/log/freespace.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <QDir>
#include <QStorageInfo>
#endif

std::optional<quint64> freeSpaceOfCurrentDrive()
{
#ifdef Q_OS_WIN
    DWORD sectorsPerCluster = 0;
    DWORD bytesPerSector = 0;
    DWORD freeClusters = 0;
    DWORD clusters = 0;
    if (!GetDiskFreeSpaceA(nullptr, &sectorsPerCluster, &bytesPerSector, &freeClusters, &clusters))
        return std::nullopt;
    return quint64(sectorsPerCluster) * bytesPerSector * freeClusters;
#else
    const QStorageInfo drive(QDir::currentPath());
    if (!drive.isValid() || drive.bytesAvailable() < 0)
        return std::nullopt;
    return static_cast<quint64>(drive.bytesAvailable());
#endif
}
