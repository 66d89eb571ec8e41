#include "app/log/freespace.h"

#include <QDir>
#include <QStorageInfo>

#ifdef Q_OS_WIN
#include <windows.h>
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
    return freeSpaceOf(QDir::currentPath());
#endif
}

std::optional<quint64> freeSpaceOf(const QString &folder)
{
    const QStorageInfo drive(folder);
    if (folder.isEmpty() || !drive.isValid() || drive.bytesAvailable() < 0)
        return std::nullopt;
    return static_cast<quint64>(drive.bytesAvailable());
}
