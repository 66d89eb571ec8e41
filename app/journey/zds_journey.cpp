#include "app/application.h"
#include "app/journey/journey.h"
#include "app/log/stdlogfileclass.h"
#include "app/ui/appstyle.h"

#include <QSettings>

#include <cstdio>

// zds-journey FOLDER: the main job on a simulated logger, unattended. Ends with 0 if every step was
// seen to work.
int main(int argc, char *argv[])
{
    QCoreApplication::setOrganizationName(QStringLiteral("ZELVO"));
    QCoreApplication::setApplicationName(QStringLiteral("ZDS"));
    Application application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2 || !QDir(arguments.at(1)).exists()) {
        std::fputs("usage: zds-journey FOLDER\n", stderr);
        return 64;
    }
    const QDir folder(QDir(arguments.at(1)).absolutePath());
    // The user's own settings stay as they are (the registry of Windows can't be replaced).
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    constexpr int logLevel = 5; // all
    const StdLogFileClass log(logLevel, folder.filePath(QStringLiteral("journey.log")));
    appstyle::apply(application);
    Journey journey(folder);
    return journey.run() ? 0 : 1;
}
