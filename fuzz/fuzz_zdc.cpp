// Loads a configuration file of any bytes, once as they are and once as a payload with its length and
// checksum, which random bytes hardly ever match.

#include "config/configfile.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

namespace {

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

QByteArray sealed(const QByteArray &payload)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << payload << configfile::checksum(payload);
    return bytes;
}

// Loading must give a configuration that saves and loads the same, or a text that tells why not.
bool loads(const QByteArray &bytes)
{
    static const QTemporaryDir folder;
    static const QString path = folder.filePath(QStringLiteral("fuzz.zdc"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::abort();
    file.close();

    TerminalStruct config;
    QString error;
    if (!configfile::load(config, path, &error)) {
        if (error.isEmpty() || config != TerminalStruct())
            std::abort();
        return false;
    }
    const QByteArray written = record::toBytes(config);
    TerminalStruct again;
    record::fromBytes(written, again);
    if (record::toBytes(again) != written)
        std::abort();
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    qInstallMessageHandler(ignoreMessage);
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    loads(bytes);
    if (!loads(sealed(bytes)))
        std::abort();
    return 0;
}
