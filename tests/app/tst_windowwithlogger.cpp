#include "app/handlerlink.h"
#include "app/interfacetree.h"
#include "app/mainwindow.h"
#include "app/state/appcontroller.h"
#include "app/state/usersettings.h"
#include "app/ui/slideswitch.h"
#include "config/configfile.h"
#include "link/protocol/messagetypes.h"
#include "link/views/logger_main_view.h"
#include "tests/app/messagesink.h"
#include "tests/app/scriptedprompt.h"
#include "tests/support/silentport.h"
#include "tests/support/simulatedlogger.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <atomic>

// The whole window with the real link, connected to a simulated logger by its own buttons.
class tst_WindowWithLogger : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theLinkIsToldFirstAndTheWindowLast();
    void connectingReadsTheConfiguration();
    void aDisconnectedWindowConnectsAgain();
    void aChangeIsEchoed();
    void anOpenedConfigurationIsWrittenToTheLoggerOnce();
    void anOpenedConfigurationThatIsNotAcknowledgedIsATimeout();
    void theTreeFollowsTheLoggersCapabilities();
    void aLoggerThatIsNotReadyEndsDisconnected();
    void anotherVersionLeadsToTheQuestion_data();
    void anotherVersionLeadsToTheQuestion();
    void theUpdateIsSentAndTheLoggerReconnected();
    void transparentModeIsSwitchedOnAndOff();
    void aRefusedTransparentModePutsTheSwitchBack();
    void aLostLoggerLeadsToOneMessageAndTheNextConnectWorks();
    void aLoggerThatIsNotThereIsTold();
    void connectingToASilentLoggerIsCancelledByTheSameButton();
    void theDebugWindowTalksToTheLogger();
    void aLossDuringARefreshOfTheFilesLeadsToOneMessage();
    void theFilesPickedOnThePageAreDownloaded();

private:
    // Connects to a logger with one file, and lets the page read its list.
    void connectToAFile()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("storage")));
        const QString storage = m_folder->filePath(QStringLiteral("storage"));
        QFile file(storage + QStringLiteral("/a.rld"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("1234567") == 7);
        file.close();
        m_logger->inspect(
            [storage](simulator::LoggerSimulator &logger) { logger.state().logFolder = storage; });
        connectByButton();
        QTRY_COMPARE(find<QTableWidget>("tableWidget_logfiles")->rowCount(), 1);
        m_prompt->shown.clear();
    }
    template <class Widget>
    Widget *find(const char *name) const
    {
        return m_window->findChild<Widget *>(QString::fromLatin1(name));
    }
    void connectByButton() { button()->click(); }
    // Makes a file whose GPS is enabled, unlike the logger's, which the user picks next.
    TerminalStruct configurationToOpen()
    {
        m_logger->inspect([](simulator::LoggerSimulator &logger) {
            logger.state().configuration.gps.gps_enabled = 0;
        });
        TerminalStruct configuration;
        configuration.gps.gps_enabled = 1;
        const QString path = m_folder->filePath(QStringLiteral("opened.zdc"));
        if (!configfile::save(configuration, path))
            qFatal("%s can't be written", qPrintable(path));
        m_prompt->picks = QStringList({path});
        return configuration;
    }
    QPushButton *button() const
    {
        return m_window->findChild<QPushButton *>(QStringLiteral("pushButton_connect_disconnect"));
    }
    SlideSwitch *transparentSwitch() const
    {
        return m_window->findChild<SlideSwitch *>(QStringLiteral("slideSwitch_transparent"));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SimulatedLogger> m_logger;
    std::unique_ptr<AppController> m_controller;
    std::unique_ptr<UserSettings> m_settings;
    std::unique_ptr<ScriptedPrompt> m_prompt;
    std::unique_ptr<MainWindow> m_window;
    Logger_Data_Handler_Class *m_handler = nullptr; // the window's
    QStringList m_downloads;
};

void tst_WindowWithLogger::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder->path());
    m_logger = std::make_unique<SimulatedLogger>();
    m_controller = std::make_unique<AppController>();
    m_settings = std::make_unique<UserSettings>(m_folder->filePath(QStringLiteral("usr.ini")));
    QVERIFY(m_settings->setIpAddress(m_logger->address().toString()));
    m_prompt = std::make_unique<ScriptedPrompt>();
    m_prompt->answer = true;

    MainWindowParts parts;
    auto link = std::make_unique<HandlerLink>(m_controller.get());
    m_handler = link->handler();
    parts.link = std::move(link);
    parts.prompt = m_prompt.get();
    parts.settings = m_settings.get();
    parts.update_image = [] { return QByteArray(1000, 'u'); };
    parts.debug_window = makeDebugWindow;
    m_downloads.clear();
    parts.download = [this](const QHostAddress &logger, const QStringList &names,
                            const QList<qint64> &sizes, const QString &folder,
                            ConversionGlobal::OutputFormatFlags formats, QWidget *) {
        m_downloads += QStringLiteral("%1 %2 %3 %4 %5")
                           .arg(logger.toString(), names.join(QLatin1Char(',')))
                           .arg(sizes.value(0))
                           .arg(folder)
                           .arg(int(formats));
    };
    m_window = std::make_unique<MainWindow>(m_controller.get(), QStringLiteral("MainWindow"),
                                            std::move(parts));
    m_window->registerToController();
}

void tst_WindowWithLogger::cleanup()
{
    m_window.reset();
    m_logger.reset();
}

void tst_WindowWithLogger::theLinkIsToldFirstAndTheWindowLast()
{
    QStringList printed;
    {
        const MessageSink sink;
        m_controller->printRegisteredComponents();
        printed = sink.messages().replaceInStrings(QStringLiteral("Debug: "), QString()).mid(3);
    }
    QCOMPARE(printed.first(), QStringLiteral("Logger_Data_Handler_Class"));
    QCOMPARE(printed.mid(printed.size() - 3, 2),
             QStringList({QStringLiteral("DialogCmdWindow"), QStringLiteral("MainWindow")}));
    QCOMPARE(m_handler->objectName(), QStringLiteral("Logger_Data_Handler_Class"));
}

void tst_WindowWithLogger::connectingReadsTheConfiguration()
{
    m_logger->inspect([](simulator::LoggerSimulator &logger) {
        logger.state().configuration.gps.gps_enabled = 1;
    });
    const QSignalSpy updated(m_handler, &Logger_Data_Handler_Class::signal_full_update);
    connectByButton();
    QCOMPARE(m_controller->appState(), APP_STA_CONN_LOG_OFF);
    QTRY_VERIFY(!updated.isEmpty());
    QCOMPARE(int(m_handler->terminal().gps.gps_enabled), 1);
    QCOMPARE(m_prompt->shown.size(), 1); // the question on logging
}

void tst_WindowWithLogger::aDisconnectedWindowConnectsAgain()
{
    for (int i = 0; i < 3; ++i) {
        connectByButton();
        QCOMPARE(m_controller->appState(), APP_STA_CONN_LOG_OFF);
        button()->click();
        QCOMPARE(m_controller->appState(), APP_STA_DISCONN);
    }
}

void tst_WindowWithLogger::aChangeIsEchoed()
{
    connectByButton();
    const QSignalSpy updated(m_handler, &Logger_Data_Handler_Class::signal_update_cfg_can);
    QVERIFY(m_handler->cmd_write_can_enabled(4, 1));
    QTRY_VERIFY(!updated.isEmpty());
    QCOMPARE(updated.last().first().toInt(), 4);
    QCOMPARE(int(m_handler->terminal().can[4].enabled), 1);
}

void tst_WindowWithLogger::anOpenedConfigurationIsWrittenToTheLoggerOnce()
{
    const TerminalStruct opened = configurationToOpen();
    connectByButton();
    std::atomic<int> writes{0};
    m_logger->inspect([&writes](simulator::LoggerSimulator &logger) {
        connect(&logger.commandPort(), &simulator::CommandPort::received, &logger,
                [&writes](const protocol::Message &message) {
                    if (message.type == protocol::WholeConfiguration)
                        ++writes;
                });
    });
    m_window->on_pushButton_open_configuration_clicked();
    QTRY_COMPARE(int(m_handler->terminal().gps.gps_enabled), 1);
    QVERIFY(m_logger->inspect([&opened](simulator::LoggerSimulator &logger) {
        return logger.state().configuration == opened;
    }));
    QCOMPARE(writes.load(), 1);
    m_window.reset(); // no write comes behind the count
}

void tst_WindowWithLogger::anOpenedConfigurationThatIsNotAcknowledgedIsATimeout()
{
    (void)configurationToOpen();
    connectByButton();
    m_prompt->shown.clear();
    m_handler->setWriteTimeout(1);
    m_logger->setFault(QStringLiteral("lost-reply@3"));
    m_window->on_pushButton_open_configuration_clicked();
    QTRY_COMPARE(m_prompt->shown.size(), 2);
    QCOMPARE(m_prompt->shown,
             QStringList({QStringLiteral("Info|Load/Write configuration to data logger?"),
                          QStringLiteral("Timeout|Error sending data(timeout). Type:3")}));
    QCOMPARE(int(m_handler->terminal().gps.gps_enabled), 0);
}

void tst_WindowWithLogger::theTreeFollowsTheLoggersCapabilities()
{
    m_logger->setFault(QStringLiteral("wrong-capabilities=1,1,0,4,1,1,10"));
    connectByButton();
    auto *tree = m_window->findChild<InterfaceTree *>(QStringLiteral("treeWidget"));
    QVERIFY(tree->itemOf(QStringLiteral("GPS"))->isDisabled());
    QVERIFY(tree->itemOf(QStringLiteral("CAN-4"))->isDisabled());
    QVERIFY(tree->itemOf(QStringLiteral("EtherCAT"))->isDisabled());
    QVERIFY(!tree->itemOf(QStringLiteral("CAN-3"))->isDisabled());
}

void tst_WindowWithLogger::aLoggerThatIsNotReadyEndsDisconnected()
{
    m_logger->setFault(QStringLiteral("not-ready"));
    connectByButton();
    QCOMPARE(m_prompt->shown,
             QStringList({QStringLiteral(
                 "...not ready...|Logger is not ready, please try again shortly.")}));
    QCOMPARE(m_controller->appState(), APP_STA_DISCONN);
    m_logger->clearFaults();
    connectByButton();
    QCOMPARE(m_controller->appState(), APP_STA_CONN_LOG_OFF);
}

void tst_WindowWithLogger::anotherVersionLeadsToTheQuestion_data()
{
    QTest::addColumn<QString>("question");
    QTest::newRow("1.60") << QStringLiteral("Software-Update|Start software update now?");
    QTest::newRow("1.62") << QStringLiteral("Software-Downgrade|Downgrade really?");
}

void tst_WindowWithLogger::anotherVersionLeadsToTheQuestion()
{
    m_logger->setFault(QStringLiteral("wrong-version=")
                       + QString::fromLatin1(QTest::currentDataTag()));
    m_prompt->answer = false;
    connectByButton();
    QFETCH(QString, question);
    QCOMPARE(m_prompt->shown, QStringList({question}));
    QCOMPARE(m_controller->appState(), APP_STA_DISCONN);
}

void tst_WindowWithLogger::theUpdateIsSentAndTheLoggerReconnected()
{
    bool isUpAgain = false;
    m_logger->inspect([&](simulator::LoggerSimulator &logger) {
        logger.state().version = {1, 60};
        logger.state().updatedVersion = {1, 61};
        logger.state().restartDelay_ms = 1;
        connect(&logger, &simulator::LoggerSimulator::restarted, this,
                [&isUpAgain](const QString &error) { isUpAgain = error.isEmpty(); });
    });
    connectByButton();
    QCOMPARE(m_controller->appState(), APP_STA_DISCONN);
    QVERIFY(!m_window->isEnabled());
    const QByteArray image = m_logger->inspect(
        [](simulator::LoggerSimulator &logger) { return logger.state().updateImage; });
    QCOMPARE(image, QByteArray(1000, 'u'));

    QTRY_VERIFY(isUpAgain);
    auto *dialog = m_window->findChild<QDialog *>(QStringLiteral("DialogDelayDialog"));
    QVERIFY(QMetaObject::invokeMethod(dialog, "signal_delay_expired"));
    QVERIFY(m_window->isEnabled());
    QCOMPARE(m_controller->appState(), APP_STA_CONN_LOG_OFF);
}

void tst_WindowWithLogger::transparentModeIsSwitchedOnAndOff()
{
    connectByButton();
    transparentSwitch()->click();
    QCOMPARE(m_controller->appState(), APP_STA_CONN_TRANSPARENT);
    transparentSwitch()->click();
    QCOMPARE(m_controller->appState(), APP_STA_CONN_LOG_OFF);
}

void tst_WindowWithLogger::aRefusedTransparentModePutsTheSwitchBack()
{
    connectByButton();
    m_logger->setFault(QStringLiteral("error-reply@sys_set_transparent_mode"));
    transparentSwitch()->click();
    QVERIFY(!transparentSwitch()->isChecked());
    QCOMPARE(m_controller->appState(), APP_STA_CONN_LOG_OFF);
}

void tst_WindowWithLogger::aLostLoggerLeadsToOneMessageAndTheNextConnectWorks()
{
    connectByButton();
    m_prompt->shown.clear();
    const QHostAddress address = m_logger->address();
    m_logger->inspect([](simulator::LoggerSimulator &logger) { logger.close(); });
    QTRY_COMPARE(m_controller->appState(), APP_STA_DISCONN);
    QTRY_COMPARE(m_prompt->shown.size(), 1);
    QVERIFY(m_prompt->shown.first().startsWith(QStringLiteral("Connection-Error|Socket: ")));

    QVERIFY(m_logger->inspect(
        [address](simulator::LoggerSimulator &logger) { return logger.listen(address); }));
    connectByButton();
    QCOMPARE(m_controller->appState(), APP_STA_CONN_LOG_OFF);
    QCOMPARE(m_prompt->shown.size(), 2); // the question on logging is the second one
}

void tst_WindowWithLogger::aLoggerThatIsNotThereIsTold()
{
    m_logger->inspect([](simulator::LoggerSimulator &logger) { logger.close(); });
    connectByButton();
    QTRY_COMPARE(m_prompt->shown.size(), 1);
    QVERIFY(m_prompt->shown.first().startsWith(QStringLiteral("Connection-Error|Socket: ")));
    QCOMPARE(m_controller->appState(), APP_STA_DISCONN);
}

void tst_WindowWithLogger::connectingToASilentLoggerIsCancelledByTheSameButton()
{
    const QHostAddress address = m_logger->address();
    m_logger->inspect([](simulator::LoggerSimulator &logger) { logger.close(); });
    {
        const SilentPort silent(address, protocol::commandPort);
        if (!silent.isSilent())
            QSKIP("no silent port on this system");
        QTimer::singleShot(0, m_window.get(), [this] { connectByButton(); });
        connectByButton();
        QCOMPARE(m_controller->appState(), APP_STA_DISCONN);
        QVERIFY(m_prompt->shown.isEmpty());
    }
    QVERIFY(m_logger->inspect(
        [address](simulator::LoggerSimulator &logger) { return logger.listen(address); }));
    connectByButton();
    QCOMPARE(m_controller->appState(), APP_STA_CONN_LOG_OFF);
}

void tst_WindowWithLogger::theDebugWindowTalksToTheLogger()
{
    connectByButton();
    auto *dialog = m_window->findChild<QDialog *>(QStringLiteral("DialogCmdWindow"));
    QVERIFY(!dialog->isVisible());
    m_window->findChild<QAbstractButton *>(QStringLiteral("pushButton_cmd_window"))->click();
    QVERIFY(dialog->isVisible());
    QVERIFY(dialog->findChild<QPushButton *>(QStringLiteral("pushButton_send"))->isEnabled());
    button()->click();
    QVERIFY(!dialog->findChild<QPushButton *>(QStringLiteral("pushButton_send"))->isEnabled());
}

void tst_WindowWithLogger::aLossDuringARefreshOfTheFilesLeadsToOneMessage()
{
    connectToAFile();
    m_logger->setFault(QStringLiteral("drop-in-reply@sys_get_logfiles"));
    find<QPushButton>("pushButton_refresh_storage")->click();
    QTRY_COMPARE(m_controller->appState(), APP_STA_DISCONN);
    QTRY_COMPARE(m_prompt->shown.size(), 1);
    QVERIFY(m_prompt->shown.first().startsWith(QStringLiteral("Connection-Error|Socket: ")));
}

void tst_WindowWithLogger::theFilesPickedOnThePageAreDownloaded()
{
    QVERIFY(m_settings->setEventFolder(0, m_folder->path()));
    connectToAFile();
    find<Logger_Main_View>("Logger_Main_View")->fill_combobox_with_event_folders();
    find<QCheckBox>("checkBox_generate_blf")->click();
    find<QTableWidget>("tableWidget_logfiles")->selectAll();
    find<QPushButton>("pushButton_download_selected_logfile")->click();
    QCOMPARE(m_downloads,
             QStringList({QStringLiteral("%1 a.rld 7 %2 2")
                              .arg(m_logger->address().toString(), m_folder->path())}));
}

QTEST_MAIN(tst_WindowWithLogger)
#include "tst_windowwithlogger.moc"
