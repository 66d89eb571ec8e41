#pragma once

#include "app/state/appcontroller.h"
#include "app/state/usersettings.h"
#include "link/logger_data_handler_class.h"
#include "link/views/logger_main_view.h"
#include "tests/app/scriptedprompt.h"
#include "tests/support/simulatedlogger.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <memory>

// The logger's page with a real handler, a scripted user and a simulated logger that has a storage.
class MainViewBench
{
public:
    MainViewBench()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        controller.registerComponent(&handler);
        page = std::make_unique<Logger_Main_View>(&controller, QStringLiteral("Logger_Main_View"),
                                                  &handler, prompt, settings);
        controller.registerComponent(page.get());
        logger.inspect([this](simulator::LoggerSimulator &simulator) {
            simulator.state().logFolder = storage.path();
            simulator.state().discSpace = simulator::DiscSpace{3LL << 30, 5LL << 20};
        });
    }
    ~MainViewBench() { handler.disconnectLogger(); }
    MainViewBench(const MainViewBench &) = delete;
    MainViewBench &operator=(const MainViewBench &) = delete;

    // As the window does, up to the state at the end of its connect sequence.
    void connectLogger(AppSta_t state = APP_STA_CONN_LOG_OFF)
    {
        if (!handler.connectLogger(logger.address()))
            qFatal("not connected");
        controller.slotSetAppState(APP_STA_CONN_INIT);
        controller.slotSetAppState(state);
    }
    // Connects, and lets the page read the list.
    void connectAndRead()
    {
        connectLogger();
        QTRY_COMPARE(label("label_disc_space_free"), QStringLiteral("3 [GiB]"));
    }

    // A file of zeros on the logger's storage; its blocks aren't written.
    void store(const char *name, qint64 bytes)
    {
        QFile file(storage.filePath(QString::fromLatin1(name)));
        if (!file.open(QIODevice::WriteOnly) || !file.resize(bytes))
            qFatal("%s can't be made", name);
    }
    // How many commands of this word come to the logger from now on.
    std::shared_ptr<std::atomic<int>> countCommands(const char *word)
    {
        const auto count = std::make_shared<std::atomic<int>>(0);
        logger.inspect([count, start = QByteArray(word)](simulator::LoggerSimulator &simulator) {
            QObject::connect(&simulator.commandPort(), &simulator::CommandPort::received,
                             &simulator, [count, start](const protocol::Message &message) {
                                 if (message.payload.startsWith(start))
                                     ++*count;
                             });
        });
        return count;
    }
    bool isStored(const char *name) const
    {
        return QFile::exists(storage.filePath(QString::fromLatin1(name)));
    }

    template <class Widget>
    Widget *find(const char *name) const
    {
        return page->findChild<Widget *>(QString::fromLatin1(name));
    }
    QString label(const char *name) const { return find<QLabel>(name)->text(); }
    QAbstractButton *button(const char *name) const { return find<QAbstractButton>(name); }
    QTableWidget *table() const { return find<QTableWidget>("tableWidget_logfiles"); }
    QStringList column(int number) const
    {
        QStringList texts;
        for (int row = 0; row < table()->rowCount(); ++row)
            texts += table()->item(row, number)->text();
        return texts;
    }
    QStringList selected() const
    {
        QStringList names;
        for (int row = 0; row < table()->rowCount(); ++row)
            if (table()->item(row, 0)->isSelected())
                names += table()->item(row, 0)->text();
        return names;
    }
    void select(const QList<int> &rows)
    {
        table()->clearSelection();
        table()->setSelectionMode(QAbstractItemView::MultiSelection);
        for (const int row : rows)
            table()->selectRow(row);
        table()->setSelectionMode(QAbstractItemView::ExtendedSelection);
    }

    QTemporaryDir folder;
    QTemporaryDir storage;
    SimulatedLogger logger;
    AppController controller;
    Logger_Data_Handler_Class handler{&controller};
    ScriptedPrompt prompt;
    UserSettings settings{folder.filePath(QStringLiteral("usr_settings.ini"))};
    std::unique_ptr<Logger_Main_View> page;
};
