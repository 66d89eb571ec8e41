#include "app/application.h"
#include "app/dialogs.h"
#include "app/handlerlink.h"
#include "app/log/stdlogfileclass.h"
#include "app/mainwindow.h"
#include "app/state/appcontroller.h"
#include "app/state/usersettings.h"
#include "app/ui/appstyle.h"
#include "app/ui/messageboxprompt.h"

namespace {

constexpr int logLevel = 5; // all: the log is what there is when something went wrong in a car

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setOrganizationName(QStringLiteral("ZELVO"));
    QCoreApplication::setApplicationName(QStringLiteral("ZDS"));
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    Application application(argc, argv);
    const StdLogFileClass log(logLevel, StdLogFileClass::defaultPath());
    appstyle::apply(application);

    AppController controller;
    UserSettings settings;
    MessageBoxPrompt prompt;
    MainWindowParts parts;
    parts.link = std::make_unique<HandlerLink>(&controller);
    parts.prompt = &prompt;
    parts.settings = &settings;
    parts.log_path = log.path();
    parts.debug_window = makeDebugWindow;
    setDialogs(parts, prompt);

    MainWindow window(&controller, QStringLiteral("MainWindow"), std::move(parts));
    prompt.setWindow(&window);
    window.registerToController();
    controller.printRegisteredComponents();
    window.show();
    return QApplication::exec();
}
