#pragma once

#include "app/interfacetree.h"
#include "app/mainwindow.h"
#include "app/state/usersettings.h"
#include "app/ui/slideswitch.h"
#include "tests/app/scriptedlink.h"
#include "tests/app/scriptedprompt.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QTemporaryDir>

// In place of a page, which needs the handler of a real link.
class StandInPage : public QWidget, public AppComponentBaseClass
{
public:
    explicit StandInPage(const PageContext &context)
        : QWidget(context.parent)
        , AppComponentBaseClass(context.controller, context.objectName)
    {}

    void appStateChanged(AppSta_t &) override {}

    static QWidget *make(const PageContext &context) { return new StandInPage(context); }
};

// A main window with a scripted link and user, and the widgets that its tests look at.
class WindowBench
{
public:
    WindowBench()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        QSettings(QStringLiteral("ZELVO"), QStringLiteral("ZDS")).clear();
    }

    // Before this call the settings can be written.
    MainWindow &window()
    {
        if (!m_window) {
            settings = std::make_unique<UserSettings>(settingsPath());
            MainWindowParts parts;
            parts.link = std::make_unique<ScriptedLink>(&controller);
            link = static_cast<ScriptedLink *>(parts.link.get());
            for (PageRow &page : parts.pages)
                page.make = StandInPage::make;
            parts.prompt = &prompt;
            parts.settings = settings.get();
            parts.log_path = QStringLiteral("/state/zds.log");
            parts.update_image = [this] { return update_image; };
            parts.convert = [this](ConversionGlobal::OutputFormatFlags formats,
                                   const QStringList &logs, const QString &target, QWidget *) {
                conversions += QStringLiteral("%1 %2 %3")
                                   .arg(int(formats))
                                   .arg(logs.join(QLatin1Char(',')), target);
            };
            parts.download = [this](const QHostAddress &logger, const QStringList &names,
                                    const QList<qint64> &sizes, const QString &target,
                                    ConversionGlobal::OutputFormatFlags formats, QWidget *) {
                downloads += QStringLiteral("%1 %2 %3 %4 %5")
                                 .arg(logger.toString(), names.join(QLatin1Char(',')))
                                 .arg(sizes.value(0))
                                 .arg(target)
                                 .arg(int(formats));
            };
            m_window = std::make_unique<MainWindow>(&controller, QStringLiteral("MainWindow"),
                                                    std::move(parts));
            m_window->registerToController();
        }
        return *m_window;
    }
    void closeWindow() { m_window.reset(); }

    [[nodiscard]] QString settingsPath() const
    {
        return folder.filePath(QStringLiteral("usr_settings.ini"));
    }

    template <class Widget>
    Widget *find(const char *name)
    {
        return window().findChild<Widget *>(QLatin1String(name));
    }
    QPushButton *button(const char *name) { return find<QPushButton>(name); }
    QComboBox *addressBox() { return find<QComboBox>("comboBox_ipAddr"); }
    SlideSwitch *transparentSwitch() { return find<SlideSwitch>("slideSwitch_transparent"); }
    InterfaceTree *tree() { return find<InterfaceTree>("treeWidget"); }
    QString label(const char *name) { return find<QLabel>(name)->text(); }
    QString pageShown()
    {
        return find<QStackedWidget>("stackedWidget")->currentWidget()->objectName();
    }

    // Connects by the button; the user answers the question on logging.
    void connectByButton(bool stopLogging)
    {
        prompt.answer = stopLogging;
        button("pushButton_connect_disconnect")->click();
    }

    QTemporaryDir folder;
    AppController controller;
    ScriptedPrompt prompt;
    std::unique_ptr<UserSettings> settings;
    ScriptedLink *link = nullptr; // the window's
    QStringList conversions;
    QStringList downloads;
    std::optional<QByteArray> update_image = QByteArray("image"); // none: none is built in

private:
    std::unique_ptr<MainWindow> m_window;
};
