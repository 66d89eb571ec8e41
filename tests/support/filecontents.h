#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// Bytes of which no two blocks are alike, for files whose order and completeness matter.
[[nodiscard]] inline QByteArray pattern(int bytes, int seed = 0)
{
    QByteArray all(bytes, '\0');
    for (int i = 0; i < bytes; ++i)
        all[i] = char(i * 31 + i / 256 + seed);
    return all;
}

[[nodiscard]] inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("no file");
}

inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s", qPrintable(path));
}
