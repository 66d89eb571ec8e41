#pragma once

#include "MDF4Conversion/rawlog/rawlogwriter.h"
#include "config/terminalstruct.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

// Files of one test, in a folder of their own.
class TemporaryFiles
{
public:
    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder.filePath(QString::fromUtf8(name));
    }
    [[nodiscard]] QString folder() const { return m_folder.path(); }

    QString write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s can't be written", name);
        return file.fileName();
    }

    [[nodiscard]] static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_folder;
};

// A raw log of the configuration and what stands behind it.
[[nodiscard]] inline QByteArray logBytes(const TerminalStruct &configuration,
                                         const QByteArray &entries)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    RawLogWriter(buffer).writeConfiguration(configuration);
    return buffer.data() + entries;
}
