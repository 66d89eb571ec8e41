#include "simulator/recordingfile.h"

#include "MDF4Conversion/programlock.h"
#include "MDF4Conversion/rawlog/logconfiguration.h"

#include <QDir>
#include <QRegularExpression>

namespace simulator {
namespace {

QString recordingSuffix()
{
    return QStringLiteral(".recording");
}

QString lockSuffix()
{
    return recordingSuffix() + QStringLiteral(".lock");
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

void recover(const QString &recording)
{
    QFile file(recording);
    if (rawlog::readConfigurationBlock(recording).bytes.isEmpty())
        file.remove();
    else
        file.rename(pathOfFinished(recording.chopped(recordingSuffix().size())));
}

} // namespace

RecordingFile::RecordingFile(const QString &folder, const QString &name)
    : m_path(freePath(QDir(folder).filePath(name)))
    , m_file(m_path + recordingSuffix())
    , m_writer(m_file)
{}

bool RecordingFile::begin(const TerminalStruct &configuration)
{
    m_lock = std::make_unique<QLockFile>(m_path + lockSuffix());
    // A folder that takes no lock takes no file either, which tells its cause.
    if (!takeProgramLock(*m_lock) && m_lock->error() == QLockFile::LockFailedError)
        return fail(QStringLiteral("another program records it"));
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
    const bool ok = check(m_file.rename(m_path));
    m_lock.reset();
    return ok;
}

void RecordingFile::remove()
{
    if (m_file.isOpen())
        m_file.remove();
    m_lock.reset();
}

bool RecordingFile::check(bool ok)
{
    return ok || fail(m_file.errorString());
}

bool RecordingFile::fail(const QString &cause)
{
    if (m_failure.isNull())
        m_failure =
            QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_file.fileName()), cause);
    return false;
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
    return fileName.endsWith(recordingSuffix()) || fileName.endsWith(lockSuffix());
}

void recoverRecordings(const QString &folder)
{
    // Whoever was ended around a log's first or last moment leaves a lock alone.
    for (const QString &suffix : {recordingSuffix(), lockSuffix()}) {
        const QFileInfoList infos =
            QDir(folder).entryInfoList({QLatin1Char('*') + suffix}, QDir::Files | QDir::NoSymLinks);
        for (const QFileInfo &info : infos) {
            const QString log = info.filePath().chopped(suffix.size());
            QLockFile lock(log + lockSuffix()); // its end removes the file
            if (takeProgramLock(lock) && QFile::exists(log + recordingSuffix()))
                recover(log + recordingSuffix());
        }
    }
}

} // namespace simulator
