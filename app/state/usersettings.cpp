#include "app/state/usersettings.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace {

// No file of ours comes near this; a larger one is not read.
constexpr qint64 maxFileBytes = 1024 * 1024;

const QLatin1String general("general");
const QLatin1String download("download");
const QLatin1String keyIpAddress("ip_address");
const QLatin1String keyLastEventFolder("last_event_folder");
const QLatin1String keyAutoExport("auto_export");

QString keyEventFolder(int number)
{
    return QStringLiteral("event_folder_%1").arg(number);
}

// Permission bits don't tell enough on every system and file system: a file is made to see.
bool canBeWritten(const QString &folder)
{
    QTemporaryFile probe(folder + QStringLiteral("/usr_settings.XXXXXX"));
    return probe.open();
}

IniFile fileAt(const QString &path)
{
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || info.size() > maxFileBytes || !file.open(QIODevice::ReadOnly)) {
        qDebug().noquote() << QStringLiteral("Can't load ") + path;
        return {};
    }
    return IniFile(file.read(maxFileBytes));
}

} // namespace

QString UserSettings::defaultPath()
{
    return pathIn(QCoreApplication::applicationDirPath(),
                  QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
}

QString UserSettings::pathIn(const QString &programFolder, const QString &userFolder)
{
    const QString &folder = canBeWritten(programFolder) ? programFolder : userFolder;
    return folder + QStringLiteral("/usr_settings.ini");
}

UserSettings::UserSettings(const QString &path)
    : m_path(path)
    , m_file(fileAt(path))
{}

QString UserSettings::ipAddress() const
{
    return m_file.value(general, keyIpAddress).value_or(QStringLiteral("192.168.2.1"));
}

bool UserSettings::setIpAddress(const QString &address)
{
    return change(general, keyIpAddress, address);
}

int UserSettings::lastEventFolder() const
{
    return number(download, keyLastEventFolder);
}

bool UserSettings::setLastEventFolder(int number)
{
    return change(download, keyLastEventFolder, QString::number(number));
}

QMap<int, QString> UserSettings::eventFolders() const
{
    QMap<int, QString> folders;
    for (int i = 0; i < maxEventFolders; ++i) {
        const QString folder = m_file.value(download, keyEventFolder(i)).value_or(QString());
        if (!folder.isEmpty())
            folders.insert(i, folder);
    }
    return folders;
}

bool UserSettings::setEventFolder(int number, const QString &path)
{
    Q_ASSERT(number >= 0 && number < maxEventFolders);
    return change(download, keyEventFolder(number), path);
}

bool UserSettings::removeEventFolder(int number)
{
    m_file.remove(download, keyEventFolder(number));
    return save();
}

int UserSettings::autoExport() const
{
    return number(download, keyAutoExport);
}

bool UserSettings::setAutoExport(int formats)
{
    return change(download, keyAutoExport, QString::number(formats));
}

int UserSettings::number(const QString &section, const QString &key) const
{
    return m_file.value(section, key).value_or(QString()).toInt(); // 0 where it is no number
}

bool UserSettings::change(const QString &section, const QString &key, const QString &value)
{
    if (m_file.value(section, key) == value)
        return true;
    m_file.setValue(section, key, value);
    return save();
}

bool UserSettings::save() const
{
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    QSaveFile file(m_path);
    const QByteArray text = m_file.text();
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    qWarning().noquote() << QStringLiteral("Can't save %1: %2").arg(m_path, file.errorString());
    return false;
}
