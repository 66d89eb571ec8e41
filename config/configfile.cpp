#include "config/configfile.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace configfile {

namespace {

constexpr qint64 wordSize = 4;

bool fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

// A folder, a device or a pipe. Opening a pipe would wait for its other end, and saving over any of
// them would put a file in its place.
bool isOtherThanFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

QString aboutFile(const QString &path, const QString &cause)
{
    return QStringLiteral("%1: %2").arg(path, cause);
}

} // namespace

qint32 checksum(const QByteArray &payload)
{
    quint32 sum = 0; // unsigned, for it wraps
    for (const char byte : payload)
        sum += quint32(qint32(qint8(byte)));
    return sum == 0 ? 1 : qint32(sum);
}

bool save(const TerminalStruct &config, const QString &path, QString *error)
{
    if (isOtherThanFile(path))
        return fail(error, aboutFile(path, QStringLiteral("This is not a file.")));
    const QByteArray payload = record::toBytes(config);
    if (payload.size() > maxPayloadBytes)
        return fail(error, aboutFile(path, QStringLiteral("The configuration is too large.")));

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(error, aboutFile(path, file.errorString()));
    QDataStream out(&file);
    out.setVersion(record::dataStreamVersion);
    out << payload << checksum(payload);
    if (out.status() != QDataStream::Ok || !file.commit())
        return fail(error, aboutFile(path, file.errorString()));
    return true;
}

bool load(TerminalStruct &config, const QString &path, QString *error)
{
    if (isOtherThanFile(path))
        return fail(error, aboutFile(path, QStringLiteral("This is not a file.")));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(error, aboutFile(path, file.errorString()));

    if (file.size() > maxPayloadBytes + 2 * wordSize)
        return fail(error, aboutFile(path, QStringLiteral("The file is too large.")));

    QDataStream in(&file);
    in.setVersion(record::dataStreamVersion);
    const QByteArray payload = record::readBytes(in);
    qint32 stored = 0;
    in >> stored;
    const qint32 computed = checksum(payload);
    if (stored != computed) {
        qDebug() << "TerminalStruct::read_from_file: Checksum ERROR" << stored << computed;
        const auto cause = payload.isNull() || in.status() != QDataStream::Ok
                               ? QStringLiteral("The file is cut short.")
                               : QStringLiteral("The checksum is wrong.");
        return fail(error, aboutFile(path, cause));
    }
    qDebug() << "TerminalStruct::read_from_file: Checksum matches" << stored << computed;
    record::fromBytes(payload, config);
    return true;
}

} // namespace configfile

bool TerminalStruct::write_to_file(const QString &path) const
{
    return configfile::save(*this, path);
}

bool TerminalStruct::read_from_file(const QString &path)
{
    return configfile::load(*this, path);
}
