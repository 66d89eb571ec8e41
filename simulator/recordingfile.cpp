#include "simulator/recordingfile.h"

#include "MDF4Conversion/rawlog/logconfiguration.h"

#include <QDir>
#include <QRegularExpression>

namespace simulator {
namespace {

QString recordingSuffix()
{
    return QStringLiteral(".recording");
}

// The path, or the first one like it that neither a log nor a recording has.
QString freePath(const QString &path)
{
    const QFileInfo info(path);
    QString free = path;
    for (int number = 2; QFile::exists(free) || QFile::exists(free + recordingSuffix()); ++number)
        free = info.dir().filePath(
            QStringLiteral("%1_%2.%3").arg(info.completeBaseName()).arg(number).arg(info.suffix()));
    return free;
}

QString pathOfFinished(const QString &path)
{
    return QFile::exists(path) ? freePath(path) : path;
}

} // namespace

RecordingFile::RecordingFile(const QString &folder, const QString &name)
    : m_path(freePath(QDir(folder).filePath(name)))
    , m_file(m_path + recordingSuffix())
    , m_writer(m_file)
{}

bool RecordingFile::begin(const TerminalStruct &configuration)
{
    return check(m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly)
                 && m_writer.writeConfiguration(configuration) && m_file.flush());
}

bool RecordingFile::add(const QByteArray &entries)
{
    return check(m_writer.writeEntry(entries) && m_file.flush());
}

bool RecordingFile::finish()
{
    m_file.close();
    m_path = pathOfFinished(m_path);
    return check(m_file.rename(m_path));
}

bool RecordingFile::check(bool ok)
{
    if (!ok && m_failure.isNull())
        m_failure = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_file.fileName()),
                                                 m_file.errorString());
    return ok;
}

QString recordingName(const QDateTime &start, const QString &eventName)
{
    constexpr int maxEventLetters = 20;
    static const QRegularExpression others(QStringLiteral("[^a-zA-Z0-9._-]"));
    QString name = start.toUTC().toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss"));
    const QString event = eventName.left(maxEventLetters).replace(others, QStringLiteral("_"));
    if (!event.isEmpty())
        name += QLatin1Char('_') + event;
    return name + QStringLiteral(".rld");
}

bool isBeingRecorded(const QString &fileName)
{
    return fileName.endsWith(recordingSuffix());
}

void recoverRecordings(const QString &folder)
{
    const QFileInfoList infos = QDir(folder).entryInfoList({QLatin1Char('*') + recordingSuffix()},
                                                           QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo &info : infos) {
        QFile file(info.filePath());
        const QString path = file.fileName().chopped(recordingSuffix().size());
        if (rawlog::readConfigurationBlock(file.fileName()).bytes.isEmpty())
            file.remove();
        else
            file.rename(pathOfFinished(path));
    }
}

} // namespace simulator
