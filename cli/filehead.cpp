#include "cli/filehead.h"

#include "MDF4Conversion/rawlog/logconfiguration.h"
#include "config/configfile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace {

constexpr int headBytes = 12;
constexpr qint64 lengthBytes = 4;
constexpr qint64 checksumBytes = 4;
constexpr qint64 smallestFrame = 4; // a version

// The file as one of the two kinds.
struct Reading
{
    bool fits = false;           // its length fits the size of the file
    bool framesAreWhole = false; // and the frames inside fit each other
};

qint64 bigEndianAt(const QByteArray &bytes, int offset)
{
    if (bytes.size() < offset + int(lengthBytes))
        return 0;
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

// Payload, in it the record's frame.
Reading asConfiguration(const QByteArray &bytes, qint64 fileSize)
{
    const qint64 payload = bigEndianAt(bytes, 0);
    const qint64 frame = bigEndianAt(bytes, 4);
    Reading reading;
    reading.fits =
        payload <= configfile::maxPayloadBytes && payload + lengthBytes + checksumBytes <= fileSize;
    reading.framesAreWhole =
        reading.fits && frame >= smallestFrame && frame + lengthBytes <= payload;
    return reading;
}

// Block, in it an array, in it the record's frame.
Reading asRawLog(const QByteArray &bytes, qint64 fileSize)
{
    if (bytes.size() < int(lengthBytes))
        return {};
    const qint64 block = qFromLittleEndian<quint32>(bytes.constData());
    const qint64 array = bigEndianAt(bytes, 4);
    const qint64 frame = bigEndianAt(bytes, 8);
    Reading reading;
    reading.fits = block <= qint64(rawlog::maxConfigurationSize) && block + lengthBytes <= fileSize;
    reading.framesAreWhole = reading.fits && array + lengthBytes <= block && frame >= smallestFrame
                             && frame + lengthBytes <= array;
    return reading;
}

FileHead::Kind kindByExtension(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("zdc"))
        return FileHead::Kind::Configuration;
    if (suffix == QLatin1String("rld"))
        return FileHead::Kind::RawLog;
    if (suffix == QLatin1String("dbc"))
        return FileHead::Kind::Database;
    return FileHead::Kind::Unknown;
}

} // namespace

FileHead fileHead(const QByteArray &firstBytes, qint64 fileSize, const QString &fileName)
{
    const Reading configuration = asConfiguration(firstBytes, fileSize);
    const Reading log = asRawLog(firstBytes, fileSize);
    FileHead head;
    if (configuration.framesAreWhole != log.framesAreWhole)
        head.kind = log.framesAreWhole ? FileHead::Kind::RawLog : FileHead::Kind::Configuration;
    else if (configuration.fits != log.fits)
        head.kind = log.fits ? FileHead::Kind::RawLog : FileHead::Kind::Configuration;
    else
        head.kind = kindByExtension(fileName);
    head.framesAreWhole = head.kind == FileHead::Kind::RawLog ? log.framesAreWhole
                          : head.kind == FileHead::Kind::Configuration
                              ? configuration.framesAreWhole
                              : false;
    return head;
}

FileHead readFileHead(const QString &path)
{
    QFile file(path);
    // Opening a pipe would wait for its writer.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return fileHead(file.read(headBytes), file.size(), path);
}
