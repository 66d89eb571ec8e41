#include "link/eventfolders.h"

#include "app/state/usersettings.h"

#include <QDir>

QMap<int, QString> EventFolders::all() const
{
    return m_settings.eventFolders();
}

std::optional<int> EventFolders::freeNumber() const
{
    const QMap<int, QString> taken = all();
    for (int number = 0; number < UserSettings::maxEventFolders; ++number)
        if (!taken.contains(number))
            return number;
    return {};
}

std::optional<int> EventFolders::chosen() const
{
    const QMap<int, QString> folders = all();
    if (folders.isEmpty())
        return {};
    const int last = m_settings.lastEventFolder();
    return folders.contains(last) ? last : folders.firstKey();
}

void EventFolders::choose(int number)
{
    m_settings.setLastEventFolder(number);
}

bool EventFolders::add(const QString &path)
{
    const QString folder = QDir::cleanPath(path);
    const QMap<int, QString> folders = all();
    for (auto known = folders.begin(); known != folders.end(); ++known) {
        if (QDir::cleanPath(known.value()) == folder) {
            choose(known.key());
            return true;
        }
    }
    const std::optional<int> number = freeNumber();
    if (!number)
        return false;
    m_settings.setEventFolder(*number, folder);
    choose(*number);
    return true;
}

void EventFolders::remove(int number)
{
    m_settings.removeEventFolder(number);
}
