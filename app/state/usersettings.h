#pragma once

#include "app/state/inifile.h"

#include <QMap>
#include <QString>

// What the tool remembers of its user, in "usr_settings.ini". The file is read once and rewritten
// whole on each change; if it can't be read, the defaults hold.
class UserSettings
{
public:
    static constexpr int maxEventFolders = 20;

    // The program's own file: next to the executable, or in the user's configuration folder where
    // that place can't be written.
    [[nodiscard]] static QString defaultPath();
    [[nodiscard]] static QString pathIn(const QString &programFolder, const QString &userFolder);

    explicit UserSettings(const QString &path = defaultPath());

    [[nodiscard]] QString path() const { return m_path; }

    // The address of the logger, as typed.
    [[nodiscard]] QString ipAddress() const;
    bool setIpAddress(const QString &address);

    // Number of the event folder that was chosen last; 0 if none was.
    [[nodiscard]] int lastEventFolder() const;
    bool setLastEventFolder(int number);
    // The event folders by number, 0 to maxEventFolders - 1. An empty path is none.
    [[nodiscard]] QMap<int, QString> eventFolders() const;
    bool setEventFolder(int number, const QString &path);
    bool removeEventFolder(int number);
    // Bit flags of the formats that a download is converted to.
    [[nodiscard]] int autoExport() const;
    bool setAutoExport(int formats);

private:
    [[nodiscard]] int number(const QString &section, const QString &key) const;
    bool change(const QString &section, const QString &key, const QString &value);
    [[nodiscard]] bool save() const;

    QString m_path;
    IniFile m_file;
};
