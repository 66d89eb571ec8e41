#include "config/whyunreadable.h"

#include <QFile>
#include <QFileInfo>

QString whyUnreadable(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("the file does not exist");
    if (info.isDir())
        return QStringLiteral("it is a folder");
    if (!info.isFile()) // opening a pipe would wait for its writer
        return QStringLiteral("it is not a regular file");
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
}
