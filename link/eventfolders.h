#pragma once

#include <QMap>
#include <QString>

#include <optional>

class UserSettings;

// The list of folders that downloads go to, as the user's settings keep it: up to
// UserSettings::maxEventFolders, each with a number. One of them is the chosen one.
class EventFolders
{
public:
    // The settings must outlive it.
    explicit EventFolders(UserSettings &settings)
        : m_settings(settings)
    {}

    [[nodiscard]] QMap<int, QString> all() const; // paths by number
    // The lowest one; none: the list is full.
    [[nodiscard]] std::optional<int> freeNumber() const;
    // The chosen one; if that is gone the first; none: the list is empty.
    [[nodiscard]] std::optional<int> chosen() const;

    void choose(int number);
    // Adds the folder, or finds it in the list, and chooses it. False: the list is full.
    bool add(const QString &path);
    void remove(int number);

private:
    UserSettings &m_settings;
};
