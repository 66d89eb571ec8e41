#pragma once

#include <QSettings>

// The program's settings in the store of the system.
struct SettingsStore : QSettings
{
    SettingsStore()
        : QSettings(QStringLiteral("ZELVO"), QStringLiteral("ZDS"))
    {}
};
