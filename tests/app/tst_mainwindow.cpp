#include "app/statusfields.h"
#include "tests/app/windowbench.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialog>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QStatusBar>
#include <QTest>

#include <stdexcept>

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<WindowBench>(); }
    void cleanup() { m_bench.reset(); }

    void theTitleFollowsTheState_data();
    void theTitleFollowsTheState();
    void eachStateEnablesWhatItShould_data();
    void eachStateEnablesWhatItShould();
    void otherStatesLeaveTheSwitchAlone_data();
    void otherStatesLeaveTheSwitchAlone();

    void theConnectButtonRunsTheSequence();
    void theConnectButtonDisconnects();
    void anInvalidAddressIsTold_data();
    void anInvalidAddressIsTold();
    void aFailedConnectionKeepsTheState();
    void aFailedConnectionIsToldWhenTheWaitIsOver();
    void aFailedStepEndsDisconnectedWithOneMessage();
    void aLossDuringTheQuestionIsToldOnce();
    void theTitleNamesTheConnectSequence();
    void aLossIsToldAfterAnExceptionInTheSequence();
    void anErrorIsShownOnlyWhileConnected();
    void theSentUpdateDisablesTheWindowUntilItReconnects();
    void endingTheWaitGivesTheWindowBack();
    void aTimeoutOfTheUpdateLeavesTheWindowEnabled();
    void anUpdateWithoutAnImageLeavesTheWindowEnabled();

    void transparentModeIsEnteredAndLeftForTheStateBefore();
    void aFailedSwitchOnPutsTheSwitchBack();
    void aFailedSwitchOffPutsTheSwitchOn();
    void aLossInTransparentModeSwitchesOff();

    void theInfoShowsVersionsAndPaths();
    void theIpInfoShowsTheStandardAddresses();
    void theStatusBarShowsLinkVersionAndLiveEntries();
    void conversionAsksForLogsAndFolder_data();
    void conversionAsksForLogsAndFolder();
    void aConversionIsCancelledWithEitherPicker();
    void closingDisconnects();
    void aConnectedWindowThatIsDestroyedDisconnectsFirst();
    void theWindowOpensWhereItWasClosed();
    void everyControlHasANameAndAToolTip();

private:
    std::unique_ptr<WindowBench> m_bench;
};

void tst_MainWindow::theTitleFollowsTheState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("title");
    const QString program = QStringLiteral("Zelvo-LoggingSystem - Zelvo-ZDS V2.19 ");
    QTest::newRow("0") << 0 << program + QStringLiteral("Disconnected");
    QTest::newRow("2") << 2 << program + QStringLiteral("Connected - Logging Enabled");
    QTest::newRow("3") << 3 << program + QStringLiteral("Connected - Logging Disabled");
    QTest::newRow("4") << 4 << program + QStringLiteral("Connected - Update Sent");
    QTest::newRow("5") << 5 << program + QStringLiteral("Connected - Transparent Mode");
}

void tst_MainWindow::theTitleFollowsTheState()
{
    QFETCH(int, state);
    MainWindow &window = m_bench->window();
    m_bench->controller.slotSetAppState(static_cast<AppSta_t>(state));
    QTEST(window.windowTitle(), "title");
}

void tst_MainWindow::eachStateEnablesWhatItShould_data()
{
    QTest::addColumn<QList<int>>("states"); // gone through in turn
    QTest::addColumn<bool>("addressEnabled");
    QTest::addColumn<bool>("switchEnabled");
    QTest::addColumn<QString>("button");
    const QString connect = QStringLiteral("Connect");
    QTest::newRow("0 at the start") << QList<int>() << true << false << connect;
    QTest::newRow("0 after logging") << QList<int>({2, 0}) << true << false << connect;
    QTest::newRow("0 after 3") << QList<int>({3, 0}) << true << false << connect;
    QTest::newRow("2 leaves all alone") << QList<int>({2}) << true << false << connect;
    QTest::newRow("3 enables the switch") << QList<int>({3}) << true << true << connect;
    QTest::newRow("4 leaves all alone") << QList<int>({4}) << true << false << connect;
    QTest::newRow("5 leaves all alone") << QList<int>({3, 5}) << true << true << connect;
}

void tst_MainWindow::eachStateEnablesWhatItShould()
{
    QFETCH(QList<int>, states);
    m_bench->window();
    for (const int state : qAsConst(states))
        m_bench->controller.slotSetAppState(static_cast<AppSta_t>(state));
    QTEST(m_bench->addressBox()->isEnabled(), "addressEnabled");
    QTEST(m_bench->transparentSwitch()->isEnabled(), "switchEnabled");
    QTEST(m_bench->button("pushButton_connect_disconnect")->text(), "button");
}

void tst_MainWindow::otherStatesLeaveTheSwitchAlone_data()
{
    QTest::addColumn<int>("state");
    for (const int state : {2, 4, 5})
        QTest::addRow("%d", state) << state;
}

void tst_MainWindow::otherStatesLeaveTheSwitchAlone()
{
    QFETCH(int, state);
    m_bench->window();
    for (const bool enabled : {true, false}) {
        m_bench->controller.slotSetAppState(APP_STA_CONN_LOG_OFF);
        m_bench->transparentSwitch()->setEnabled(enabled);
        m_bench->controller.slotSetAppState(static_cast<AppSta_t>(state));
        QCOMPARE(m_bench->transparentSwitch()->isEnabled(), enabled);
    }
}

void tst_MainWindow::theConnectButtonRunsTheSequence()
{
    m_bench->window();
    bool boxEnabledMeanwhile = true;
    QString buttonMeanwhile;
    m_bench->prompt.duringABox = [&] {
        boxEnabledMeanwhile = m_bench->addressBox()->isEnabled();
        buttonMeanwhile = m_bench->button("pushButton_connect_disconnect")->text();
    };
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->controller.appState(), APP_STA_CONN_LOG_OFF);
    QCOMPARE(
        m_bench->link->calls().join(QLatin1Char('|')),
        QStringLiteral("connect 192.168.2.1|version|capabilities|ready|stop|configuration|data"));
    QVERIFY(!boxEnabledMeanwhile);
    QCOMPARE(buttonMeanwhile, QStringLiteral("Disconnect"));
    QVERIFY(!m_bench->addressBox()->isEnabled());
}

void tst_MainWindow::theConnectButtonDisconnects()
{
    m_bench->window();
    m_bench->connectByButton(true);
    m_bench->button("pushButton_connect_disconnect")->click();
    QCOMPARE(m_bench->link->calls().last(), QStringLiteral("disconnect"));
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
    QVERIFY(m_bench->addressBox()->isEnabled());
    QCOMPARE(m_bench->button("pushButton_connect_disconnect")->text(), QStringLiteral("Connect"));
}

void tst_MainWindow::anInvalidAddressIsTold_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address : {"", "logger", "1.2.3.256", "1.2.3.4.5", "::1", "1.2.3.4:80"})
        QTest::newRow(address) << QString::fromLatin1(address);
}

void tst_MainWindow::anInvalidAddressIsTold()
{
    QFETCH(QString, address);
    m_bench->window();
    m_bench->addressBox()->setEditText(address);
    m_bench->button("pushButton_connect_disconnect")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Invalid IP-address|Please enter a valid IP-address.")}));
    QVERIFY(m_bench->link->calls().isEmpty());
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
}

void tst_MainWindow::aFailedConnectionKeepsTheState()
{
    m_bench->window();
    m_bench->link->connects = false;
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
    QCOMPARE(m_bench->link->calls().size(), 1);
}

void tst_MainWindow::aFailedConnectionIsToldWhenTheWaitIsOver()
{
    MainWindow &window = m_bench->window();
    bool waits = true;
    QString statusMeanwhile;
    m_bench->prompt.duringABox = [&] {
        waits = QGuiApplication::overrideCursor() != nullptr;
        statusMeanwhile = window.statusBar()->currentMessage();
    };
    m_bench->link->connects = false;
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Connection-Error|Socket: refused")}));
    QVERIFY(!waits);
    QCOMPARE(statusMeanwhile, QString());
}

void tst_MainWindow::aFailedStepEndsDisconnectedWithOneMessage()
{
    m_bench->window();
    m_bench->link->session.version.reset();
    m_bench->prompt.duringABox = [this] {
        emit m_bench->link->tcpError(QStringLiteral("Socket: closed"));
        m_bench->link->lose();
    };
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->prompt.shown.size(), 1);
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
    QVERIFY(m_bench->addressBox()->isEnabled());
}

void tst_MainWindow::aLossDuringTheQuestionIsToldOnce()
{
    m_bench->window();
    m_bench->prompt.duringABox = [this] {
        m_bench->prompt.duringABox = nullptr;
        emit m_bench->link->tcpError(QStringLiteral("Socket: closed"));
        m_bench->link->lose();
    };
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->prompt.shown.size(), 2);
    QCOMPARE(m_bench->prompt.shown.last(), QStringLiteral("Connection-Error|Socket: closed"));
    QVERIFY(m_bench->prompt.withdrawn);
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
}

void tst_MainWindow::theTitleNamesTheConnectSequence()
{
    MainWindow &window = m_bench->window();
    QString titleMeanwhile;
    m_bench->prompt.duringABox = [&] { titleMeanwhile = window.windowTitle(); };
    m_bench->connectByButton(true);
    QCOMPARE(titleMeanwhile,
             QStringLiteral("Zelvo-LoggingSystem - Zelvo-ZDS V2.19 Connected - Init"));
}

void tst_MainWindow::aLossIsToldAfterAnExceptionInTheSequence()
{
    m_bench->window();
    m_bench->prompt.duringABox = [] { throw std::out_of_range("map::at"); };
    QVERIFY_EXCEPTION_THROWN(m_bench->controller.slotSetAppState(APP_STA_CONN_INIT),
                             std::out_of_range);
    m_bench->prompt.duringABox = nullptr;
    m_bench->prompt.shown.clear();
    emit m_bench->link->tcpError(QStringLiteral("Socket: closed"));
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Connection-Error|Socket: closed")}));
}

void tst_MainWindow::anErrorIsShownOnlyWhileConnected()
{
    MainWindow &window = m_bench->window();
    window.show_warning_if_logger_is_connected(QStringLiteral("Timeout"), QStringLiteral("text"));
    QVERIFY(m_bench->prompt.shown.isEmpty());
    m_bench->connectByButton(true);
    m_bench->prompt.shown.clear();
    emit m_bench->link->errorWhileConnected(QStringLiteral("Timeout"), QStringLiteral("text"));
    QCOMPARE(m_bench->prompt.shown, QStringList({QStringLiteral("Timeout|text")}));
}

void tst_MainWindow::theSentUpdateDisablesTheWindowUntilItReconnects()
{
    MainWindow &window = m_bench->window();
    m_bench->link->session.version = SoftwareVersion{1, 60};
    m_bench->connectByButton(true);
    QVERIFY(!window.isEnabled());
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
    auto *dialog = window.findChild<QDialog *>(QStringLiteral("DialogDelayDialog"));
    QVERIFY(dialog && dialog->isVisible() && dialog->isEnabled());

    m_bench->link->session.version = SoftwareVersion{1, 61};
    QVERIFY(QMetaObject::invokeMethod(dialog, "signal_delay_expired"));

    QVERIFY(window.isEnabled());
    QVERIFY(!dialog->isVisible());
    QCOMPARE(m_bench->controller.appState(), APP_STA_CONN_LOG_OFF);
}

void tst_MainWindow::endingTheWaitGivesTheWindowBack()
{
    MainWindow &window = m_bench->window();
    m_bench->link->session.version = SoftwareVersion{1, 60};
    m_bench->connectByButton(true);
    auto *dialog = window.findChild<QDialog *>(QStringLiteral("DialogDelayDialog"));
    QTest::keyClick(dialog, Qt::Key_Escape);
    QVERIFY(window.isEnabled());
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
}

void tst_MainWindow::aTimeoutOfTheUpdateLeavesTheWindowEnabled()
{
    MainWindow &window = m_bench->window();
    m_bench->link->session.version = SoftwareVersion{1, 60};
    m_bench->link->session.acknowledgesUpdate = false;
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->prompt.shown.last(), QStringLiteral("Timeout|Timeout sending update."));
    QVERIFY(window.isEnabled());
    QVERIFY(!window.findChild<QDialog *>(QStringLiteral("DialogDelayDialog")));
    QVERIFY(!m_bench->link->isConnected());
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
}

void tst_MainWindow::anUpdateWithoutAnImageLeavesTheWindowEnabled()
{
    m_bench->update_image.reset();
    MainWindow &window = m_bench->window();
    m_bench->link->session.version = SoftwareVersion{1, 60};
    m_bench->connectByButton(true);
    QVERIFY(window.isEnabled());
    QVERIFY(!m_bench->link->isConnected());
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
}

void tst_MainWindow::transparentModeIsEnteredAndLeftForTheStateBefore()
{
    m_bench->window();
    m_bench->connectByButton(true);
    for (const AppSta_t before : {APP_STA_CONN_LOG_OFF, APP_STA_CONN_LOG_ON}) {
        m_bench->controller.slotSetAppState(before);
        m_bench->transparentSwitch()->click();
        QCOMPARE(m_bench->controller.appState(), APP_STA_CONN_TRANSPARENT);
        QVERIFY(m_bench->transparentSwitch()->isChecked());
        m_bench->transparentSwitch()->click();
        QCOMPARE(m_bench->controller.appState(), before);
    }
    QVERIFY(m_bench->link->calls().endsWith(QStringLiteral("transparent 0")));
}

void tst_MainWindow::aFailedSwitchOnPutsTheSwitchBack()
{
    m_bench->window();
    m_bench->connectByButton(true);
    m_bench->link->transparentModeWorks = false;
    m_bench->transparentSwitch()->click();
    QVERIFY(!m_bench->transparentSwitch()->isChecked());
    QCOMPARE(m_bench->controller.appState(), APP_STA_CONN_LOG_OFF);
}

void tst_MainWindow::aFailedSwitchOffPutsTheSwitchOn()
{
    m_bench->window();
    m_bench->connectByButton(true);
    m_bench->transparentSwitch()->click();
    m_bench->link->transparentModeWorks = false;
    m_bench->transparentSwitch()->click();
    QVERIFY(m_bench->transparentSwitch()->isChecked());
    QCOMPARE(m_bench->controller.appState(), APP_STA_CONN_TRANSPARENT);
}

void tst_MainWindow::aLossInTransparentModeSwitchesOff()
{
    m_bench->window();
    m_bench->connectByButton(true);
    m_bench->transparentSwitch()->click();
    m_bench->link->lose();
    QVERIFY(!m_bench->transparentSwitch()->isChecked());
    QVERIFY(!m_bench->transparentSwitch()->isEnabled());
    QVERIFY(!m_bench->link->calls().contains(QStringLiteral("transparent 0")));
}

void tst_MainWindow::theInfoShowsVersionsAndPaths()
{
    m_bench->window();
    m_bench->find<QAbstractButton>("pushButton_info")->click();
    const QString shown = m_bench->prompt.shown.value(0);
    for (const QString &part :
         {QStringLiteral("Info|"), QStringLiteral("Zelvo-ZDS V2.19"), QStringLiteral("V1.61"),
          QStringLiteral("/state/zds.log"), m_bench->settingsPath()})
        QVERIFY2(shown.contains(part), qPrintable(part));
}

void tst_MainWindow::theIpInfoShowsTheStandardAddresses()
{
    m_bench->window();
    m_bench->find<QAbstractButton>("pushButton_ip_nfo")->click();
    const QString shown = m_bench->prompt.shown.value(0);
    for (const char *part : {"IP Info|", "V1.58", "LAN: 192.168.1.111", "WLAN: 192.168.200.1"})
        QVERIFY2(shown.contains(QLatin1String(part)), part);
}

void tst_MainWindow::theStatusBarShowsLinkVersionAndLiveEntries()
{
    MainWindow &window = m_bench->window();
    QVERIFY(m_bench->label("label_link_state").contains(QStringLiteral("Disconnected")));
    QCOMPARE(m_bench->label("label_dropped_entries"), QStringLiteral("Dropped: 0"));

    m_bench->connectByButton(true);
    QVERIFY(m_bench->label("label_link_state")
                .contains(QStringLiteral("Connected - Logging Disabled")));
    QCOMPARE(m_bench->label("label_logger_version"), QStringLiteral("Logger software: V1.61"));

    auto *fields = window.findChild<StatusFields *>();
    fields->showLiveCounters({1000, 0}, 1000);
    fields->showLiveCounters({6000, 5}, 2000);
    QCOMPARE(m_bench->label("label_live_entries"),
             QStringLiteral("Live: %1 entries/s").arg(QLocale().toString(2500)));
    QCOMPARE(m_bench->label("label_dropped_entries"), QStringLiteral("Dropped: 5"));

    m_bench->link->lose();
    QCOMPARE(m_bench->label("label_logger_version"), QStringLiteral("Logger software: -"));
}

void tst_MainWindow::conversionAsksForLogsAndFolder_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("flag");
    QTest::newRow("BLF") << QStringLiteral("to BLF") << QStringLiteral("BLF") << 2;
    QTest::newRow("MDF4") << QStringLiteral("to MDF4") << QStringLiteral("MDF4") << 1;
    QTest::newRow("ASC") << QStringLiteral("to ASC") << QStringLiteral("ASC") << 4;
    QTest::newRow("ASC_ZIP") << QStringLiteral("to compressed ASC") << QStringLiteral("ASC_ZIP")
                             << 8;
}

void tst_MainWindow::conversionAsksForLogsAndFolder()
{
    QFETCH(QString, entry);
    QFETCH(QString, format);
    QFETCH(int, flag);
    m_bench->window();
    m_bench->prompt.severalPicks = QStringList({QStringLiteral("/a/1.rld"), QStringLiteral("/2")});
    m_bench->prompt.picks = QStringList({QStringLiteral("/out"), QStringLiteral("/out")});
    const QList<QAction *> actions = m_bench->button("pushButton_convert")->menu()->actions();
    for (QAction *action : actions)
        if (action->text() == entry)
            action->trigger();
    QCOMPARE(m_bench->prompt.pickers,
             QStringList({QStringLiteral("Load raw-logfile(s) for %1 conversion.||raw-logfile "
                                         "(*.rld)")
                              .arg(format),
                          QStringLiteral("Choose %1-Output Folder|/a/1.rld|").arg(format)}));
    QCOMPARE(m_bench->conversions, QStringList({QStringLiteral("%1 /a/1.rld,/2 /out").arg(flag)}));
}

void tst_MainWindow::aConversionIsCancelledWithEitherPicker()
{
    MainWindow &window = m_bench->window();
    window.startConversion(ConversionGlobal::MDF4);
    QCOMPARE(m_bench->prompt.pickers.size(), 1);
    m_bench->prompt.severalPicks = QStringList({QStringLiteral("/a/1.rld")});
    window.startConversion(ConversionGlobal::MDF4);
    QCOMPARE(m_bench->prompt.pickers.size(), 3);
    QVERIFY(m_bench->conversions.isEmpty());
}

void tst_MainWindow::closingDisconnects()
{
    MainWindow &window = m_bench->window();
    m_bench->connectByButton(true);
    window.show();
    QVERIFY(window.close());
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
}

void tst_MainWindow::aConnectedWindowThatIsDestroyedDisconnectsFirst()
{
    m_bench->window();
    m_bench->connectByButton(true);
    m_bench->closeWindow();
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
}

void tst_MainWindow::theWindowOpensWhereItWasClosed()
{
    m_bench->window().resize(1234, 678);
    m_bench->window().show();
    m_bench->window().close();
    m_bench->closeWindow();
    QCOMPARE(m_bench->window().size(), QSize(1234, 678));
}

void tst_MainWindow::everyControlHasANameAndAToolTip()
{
    const QList<QWidget *> widgets = m_bench->window().findChildren<QWidget *>();
    int controls = 0;
    for (const QWidget *widget : widgets) {
        const bool isControl = qobject_cast<const QAbstractButton *>(widget)
                               || qobject_cast<const QComboBox *>(widget)
                               || qobject_cast<const QTreeWidget *>(widget);
        if (!isControl || widget->objectName().startsWith(QStringLiteral("qt_")))
            continue;
        ++controls;
        QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
        QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
    }
    QVERIFY(controls >= 11);
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
