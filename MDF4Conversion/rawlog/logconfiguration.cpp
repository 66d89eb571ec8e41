#include "MDF4Conversion/rawlog/logconfiguration.h"

#include "config/record/record.h"
#include "config/terminalstruct.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace rawlog {
namespace {

constexpr int sizeFieldBytes = 4;

QString tr(const char *text)
{
    return QCoreApplication::translate("RawLog", text);
}

QString whyNotOpened(const QFile &file)
{
    const QFileInfo info(file.fileName());
    if (!info.exists())
        return tr("the file does not exist");
    if (info.isDir())
        return tr("it is a folder");
    if (!info.isFile())
        return tr("it is not a regular file");
    return file.errorString();
}

} // namespace

ConfigurationBlock readConfigurationBlock(const QString &path)
{
    ConfigurationBlock block;
    QFile file(path);
    // Opening a pipe would wait for its writer: only regular files are opened.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        block.failure = whyNotOpened(file);
        return block;
    }
    const QByteArray sizeField = file.read(sizeFieldBytes);
    if (sizeField.size() < sizeFieldBytes) {
        block.failure = file.error() == QFileDevice::NoError
                            ? tr("the file is shorter than four bytes")
                            : file.errorString();
        return block;
    }
    block.size = qFromLittleEndian<quint32>(sizeField.constData());
    if (block.size == 0) {
        block.failure = tr("it holds no configuration");
    } else if (block.size > maxConfigurationSize) {
        block.failure = tr("its configuration is announced with %1 bytes, more than the %2 that a "
                           "log can have")
                            .arg(block.size)
                            .arg(maxConfigurationSize);
    } else if (file.size() - 3 <= qint64(block.size)) {
        block.failure = tr("it ends inside its configuration");
    } else {
        block.bytes = file.read(block.size);
        if (block.bytes.size() < int(block.size)) {
            block.bytes.clear();
            block.failure = file.error() == QFileDevice::NoError
                                ? tr("it ends inside its configuration")
                                : file.errorString();
        }
    }
    return block;
}

std::unique_ptr<TerminalStruct> decodeConfiguration(const QByteArray &block)
{
    if (block.isEmpty())
        return nullptr;
    QDataStream outer(block);
    outer.setVersion(record::dataStreamVersion);
    const QByteArray image = record::readBytes(outer);
    QDataStream inner(image);
    inner.setVersion(record::dataStreamVersion);
    auto configuration = std::make_unique<TerminalStruct>(QStringLiteral("Extracted From File"));
    record::read(inner, *configuration);
    return configuration;
}

QByteArray encodeConfiguration(const TerminalStruct &configuration)
{
    QByteArray block;
    QDataStream outer(&block, QIODevice::WriteOnly);
    outer.setVersion(record::dataStreamVersion);
    outer << record::toBytes(configuration);
    return block;
}

} // namespace rawlog
