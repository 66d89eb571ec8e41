#include "tests/support/goldenbytes.h"

#include <QFile>
#include <QTest>
#include <QtEndian>

#include <limits>

namespace golden {

namespace {

constexpr int wordSize = 4;
constexpr qint32 everyVersion = std::numeric_limits<qint32>::max();

QByteArray itemsOfVersion(const QString &name, qint32 version)
{
    QByteArray bytes;
    for (QByteArray line : file(name).split('\n')) {
        line = line.split('#').first().trimmed();
        if (line.startsWith('@')) {
            const int tagEnd = line.indexOf(' ');
            if (line.mid(1, tagEnd - 1).toInt() > version)
                continue;
            line.remove(0, tagEnd);
        }
        bytes += QByteArray::fromHex(line);
    }
    return bytes;
}

} // namespace

QByteArray file(const QString &name)
{
    QFile source(QStringLiteral(ZDS_TEST_DATA_DIR "/") + name);
    if (!source.open(QIODevice::ReadOnly))
        QTest::qFail(qPrintable(source.fileName() + QStringLiteral(": ") + source.errorString()),
                     __FILE__, __LINE__);
    return source.readAll();
}

QByteArray bytes(const QString &name)
{
    return itemsOfVersion(name, everyVersion);
}

QByteArray bytesOfVersion(const QString &name, qint32 version)
{
    const QByteArray items = itemsOfVersion(name, version).mid(2 * wordSize);
    return framed(word(quint32(version)) + items);
}

QByteArray content(const QString &name)
{
    return bytes(name).mid(wordSize);
}

QByteArray word(quint32 value)
{
    QByteArray bytes(wordSize, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray framed(const QByteArray &content)
{
    return word(quint32(content.size())) + content;
}

} // namespace golden
