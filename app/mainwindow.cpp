#include "app/mainwindow.h"

#include "app/droppedfiles.h"
#include "app/interfacetree.h"
#include "app/loggerlink.h"
#include "app/state/appcontroller.h"
#include "app/state/usersettings.h"
#include "app/statusfields.h"
#include "app/ui/busycursor.h"
#include "app/ui/dialogdelaydialog.h"
#include "app/ui/onlycontrol.h"
#include "app/ui/plainpage.h"
#include "app/ui/runningwork.h"
#include "link/views/dialogdownloadoptions.h"
#include "link/views/logger_main_view.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QHostAddress>
#include <QLineEdit>
#include <QMenu>
#include <QMetaEnum>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QSettings>
#include <QSignalBlocker>
#include <QTimer>

namespace {

constexpr int noticeTime_ms = 8000;

QString programName()
{
    return QStringLiteral("%1 V%2.%3")
        .arg(QStringLiteral("Zelvo-ZDS"))
        .arg(ZDS_VERSION_MAJOR)
        .arg(ZDS_VERSION_MINOR);
}

QString windowTitleOf(AppSta_t state)
{
    return QStringLiteral("%1 - %2 V%3.%4%5")
               .arg(QStringLiteral("Zelvo-LoggingSystem"), QStringLiteral("Zelvo-ZDS"))
               .arg(ZDS_VERSION_MAJOR)
               .arg(ZDS_VERSION_MINOR)
               .arg(QLatin1Char(' '))
           + appstate::description(state);
}

// Where the window was when it was closed.
struct WindowPlace
{
    QSettings store{QStringLiteral("ZELVO"), QStringLiteral("ZDS")};
    QString geometry = QStringLiteral("mainWindow/geometry");
    QString splitter = QStringLiteral("mainWindow/splitter");
};

} // namespace

MainWindow::MainWindow(AppController *controller, const QString &componentName,
                       MainWindowParts parts)
    : AppComponentBaseClass(controller, componentName)
    , m_parts(std::move(parts))
    , m_fileDialogs(*m_parts.prompt)
    , m_configuration(*m_parts.link, *m_parts.prompt)
    , m_update(*m_parts.link, *m_parts.prompt, m_parts.update_image,
               [this](int delay_s) { waitForUpdate(delay_s); })
    , m_connectSequence(*m_parts.link, *m_parts.prompt, m_update)
    , m_ui(std::make_unique<Ui::MainWindow>())
{
    m_ui->setupUi(this);
    m_status = new StatusFields(m_ui->statusbar, m_parts.link.get());
    m_ui->splitter->setStretchFactor(1, 1);
    const int treeWidth = m_ui->treeWidget->sizeHint().width();
    m_ui->splitter->setSizes({treeWidth, qMax(width() - treeWidth, treeWidth)});
    setIcons();
    fillAddressBox();
    fillConversionMenu();
    makePages();
    connectSignals();
    showConnectButton(ConnectButton::Connect);
    m_ui->slideSwitch_transparent->setEnabled(false);
    m_ui->treeWidget->setCurrentItem(m_ui->treeWidget->topLevelItem(0));
    setAcceptDrops(true);
    restorePlace();
}

MainWindow::~MainWindow()
{
    // All components hear of the last state while they live. The pages work with the link, so they
    // go before it.
    if (m_parts.link->isConnected())
        m_parts.link->disconnectLogger();
    delete m_debugWindow;
    // A conversion that is ended now may have a word to say, in front of this window.
    qDeleteAll(findChildren<QDialog *>(QString(), Qt::FindDirectChildrenOnly));
    delete takeCentralWidget();
}

void MainWindow::setIcons()
{
    using icons::Symbol;
    setWindowIcon(icons::icon(Symbol::Logger, palette().color(QPalette::Highlight)));
    m_ui->pushButton_ip_nfo->setIcon(icons::icon(Symbol::Network));
    m_ui->pushButton_info->setIcon(icons::icon(Symbol::Info));
    m_ui->pushButton_cmd_window->setIcon(icons::icon(Symbol::Console));
    m_ui->pushButton_new_empty_configuration->setIcon(icons::icon(Symbol::NewFile));
    m_ui->pushButton_open_configuration->setIcon(icons::icon(Symbol::OpenFile));
    m_ui->pushButton_save_configuration->setIcon(icons::icon(Symbol::SaveFile));
    m_ui->pushButton_save_as_configuration->setIcon(icons::icon(Symbol::SaveFileAs));
    m_ui->pushButton_convert->setIcon(icons::icon(Symbol::Convert));
}

void MainWindow::fillAddressBox()
{
    QComboBox *box = m_ui->comboBox_ipAddr;
    const QSignalBlocker blocker(box);
    box->setCompleter(nullptr); // would select another address than the one typed
    box->lineEdit()->setAccessibleName(box->accessibleName());
    box->addItem(m_parts.settings->ipAddress());
    for (const char *standard : {"192.168.1.111", "192.168.200.1"})
        if (box->findText(QLatin1String(standard)) < 0)
            box->addItem(QLatin1String(standard));
}

void MainWindow::fillConversionMenu()
{
    const std::pair<const char *, ConversionGlobal::OutputFormat> entries[] = {
        {"to BLF", ConversionGlobal::BLF},
        {"to MDF4", ConversionGlobal::MDF4},
        {"to ASC", ConversionGlobal::ASC},
        {"to compressed ASC", ConversionGlobal::ASC_ZIP},
    };
    auto *menu = new QMenu(m_ui->pushButton_convert);
    for (const auto &[text, format] : entries) {
        QAction *action = menu->addAction(QLatin1String(text));
        connect(action, &QAction::triggered, this, [this, f = format] { startConversion(f); });
    }
    m_ui->pushButton_convert->setMenu(menu);
}

void MainWindow::connectSignals()
{
    connect(m_ui->treeWidget, &QTreeWidget::itemSelectionChanged, this,
            &MainWindow::tree_widget_selection_changed);
    connect(m_ui->slideSwitch_transparent, &QCheckBox::clicked, this,
            &MainWindow::onTranspModeSwitchClicked);
    connect(m_ui->comboBox_ipAddr->lineEdit(), &QLineEdit::returnPressed,
            m_ui->pushButton_connect_disconnect, &QPushButton::click);
    LoggerLink *link = m_parts.link.get();
    connect(link, &LoggerLink::connecting, this, &MainWindow::showConnecting);
    connect(link, &LoggerLink::tcpError, this, &MainWindow::show_tcp_error);
    connect(link, &LoggerLink::errorWhileConnected, this,
            &MainWindow::show_warning_if_logger_is_connected);
    connect(link, &LoggerLink::versionReceived, m_status, &StatusFields::showVersion);
}

void MainWindow::makePages()
{
    Logger_Data_Handler_Class *handler = m_parts.link->handler();
    m_groupPage = new PlainPage(QString(), QStringLiteral("Choose one of the entries on the left."),
                                m_ui->stackedWidget);
    m_ui->stackedWidget->addWidget(m_groupPage);
    const auto numbered = [](const QString &text, int number) {
        return text.contains(QStringLiteral("%1")) ? text.arg(number) : text;
    };
    for (const PageRow &row : m_parts.pages) {
        for (int number = 0; number < row.count; ++number) {
            const QString title = numbered(row.tree_text, number);
            const QString name = numbered(row.object_name, number);
            QWidget *page = row.make({appController(), handler, m_parts.prompt, m_parts.settings,
                                      name, title, number, m_ui->stackedWidget});
            page->setObjectName(name);
            m_ui->stackedWidget->addWidget(page);
            m_pageOfItem.insert(title, page);
            if (auto *mainPage = qobject_cast<Logger_Main_View *>(page)) {
                connect(mainPage, &Logger_Main_View::signal_start_dialog_tcp_file_transfer, this,
                        &MainWindow::start_dialog_file_download);
                mainPage->setFilesUnderWay(
                    [this] { return m_parts.filesUnderWay(QHostAddress(address())); });
            }
            registerComponent(page);
        }
    }
    m_ui->treeWidget->setPages(m_parts.pages);

    m_ui->pushButton_cmd_window->setVisible(m_parts.debug_window != nullptr);
    if (m_parts.debug_window) {
        const QString name = QStringLiteral("DialogCmdWindow");
        m_debugWindow = m_parts.debug_window(
            {appController(), handler, m_parts.prompt, m_parts.settings, name, name, 0, this});
        m_debugWindow->setObjectName(name);
        registerComponent(m_debugWindow);
    }
}

void MainWindow::registerComponent(QWidget *component)
{
    if (auto *page = dynamic_cast<AppComponentBaseClass *>(component))
        page->registerToController();
}

void MainWindow::appStateChanged(AppSta_t &state)
{
    const AppSta_t entered = state; // the connect sequence changes what the reference is to
    setWindowTitle(windowTitleOf(entered));
    m_status->showState(entered);
    switch (entered) {
    case APP_STA_DISCONN:
        enterDisconnected();
        break;
    case APP_STA_CONN_INIT:
        enterConnectSequence();
        break;
    case APP_STA_CONN_LOG_OFF:
        m_ui->slideSwitch_transparent->setEnabled(true);
        [[fallthrough]];
    case APP_STA_CONN_LOG_ON:
        m_ui->treeWidget->enableOnly(m_parts.link->capabilities());
        break;
    case APP_STA_CONN_UPDATE:
    case APP_STA_CONN_TRANSPARENT:
        break;
    }
}

void MainWindow::enterDisconnected()
{
    m_ui->comboBox_ipAddr->setEnabled(true);
    showConnectButton(ConnectButton::Connect);
    m_ui->treeWidget->enableAll();
    m_ui->slideSwitch_transparent->setEnabled(false);
    m_ui->slideSwitch_transparent->setChecked(false);
    m_parts.prompt->withdrawQuestion(&m_connectSequence);
}

void MainWindow::enterConnectSequence()
{
    showConnectButton(ConnectButton::Disconnect);
    m_ui->comboBox_ipAddr->setEnabled(false);
    m_parts.settings->setIpAddress(address());

    m_tcpErrorMeanwhile.clear();
    const ConnectSequence::Result result = [this] {
        const QScopedValueRollback<bool> connecting(m_connecting, true);
        return m_connectSequence.run();
    }();
    // One message for one loss: a failed step was told by the sequence itself.
    if (result == ConnectSequence::Result::Lost)
        showTcpErrorMeanwhile();
}

void MainWindow::showTcpErrorMeanwhile()
{
    if (!m_tcpErrorMeanwhile.isEmpty())
        show_tcp_error(m_tcpErrorMeanwhile);
}

void MainWindow::showConnectButton(ConnectButton meaning)
{
    struct Look
    {
        icons::Symbol symbol;
        const char *text;
        const char *toolTip;
        int shortcut;
    };
    static constexpr Look looks[] = {
        {icons::Symbol::Connect, "Connect", "Connects to the logger at this address", 0},
        {icons::Symbol::Disconnect, "Cancel", "Gives up connecting (Esc)", Qt::Key_Escape},
        {icons::Symbol::Disconnect, "Disconnect", "Ends the connection to the logger", 0}};
    const Look &look = looks[std::size_t(meaning)];
    QPushButton *button = m_ui->pushButton_connect_disconnect;
    button->setIcon(icons::icon(look.symbol));
    button->setText(QLatin1String(look.text));
    button->setToolTip(QLatin1String(look.toolTip));
    button->setAccessibleName(button->text());
    button->setShortcut(look.shortcut); // behind the text, which takes it away
}

QString MainWindow::address() const
{
    return m_ui->comboBox_ipAddr->currentText().trimmed();
}

void MainWindow::on_pushButton_connect_disconnect_clicked()
{
    if (m_opening) {
        m_parts.link->cancelConnect();
        return;
    }
    if (m_parts.link->isConnected()) {
        m_parts.link->disconnectLogger();
        return;
    }
    QHostAddress logger;
    if (!logger.setAddress(address()) || logger.protocol() != QAbstractSocket::IPv4Protocol) {
        m_parts.prompt->warn(QStringLiteral("Invalid IP-address"),
                             QStringLiteral("Please enter a valid IP-address."));
        return;
    }
    if (openSockets(logger))
        setAppState(APP_STA_CONN_INIT);
    else
        showTcpErrorMeanwhile();
    if (std::exchange(m_closesWhenOpened, false))
        close();
}

// Can take seconds, in which the window listens: but nothing can be done then but cancel.
bool MainWindow::openSockets(const QHostAddress &logger)
{
    m_tcpErrorMeanwhile.clear();
    const QScopedValueRollback<bool> connecting(m_connecting, true);
    const QScopedValueRollback<bool> opening(m_opening, true);
    const BusyCursor busy(Qt::BusyCursor); // the window listens
    const OnlyControl cancel(m_ui->pushButton_connect_disconnect);
    showConnectButton(ConnectButton::Cancel);
    m_ui->statusbar->showMessage(QStringLiteral("Connecting to %1 ...").arg(logger.toString()));
    const bool areOpen = m_parts.link->connectLogger(logger);
    m_ui->statusbar->clearMessage();
    showConnectButton(ConnectButton::Connect);
    return areOpen;
}

void MainWindow::showConnecting(int port, int left_s)
{
    m_ui->statusbar->showMessage(
        QStringLiteral("Connecting to %1, port %2: no answer yet, %3 s left")
            .arg(address())
            .arg(port)
            .arg(left_s));
}

void MainWindow::on_comboBox_ipAddr_currentTextChanged(QString arg1)
{
    QComboBox *box = m_ui->comboBox_ipAddr;
    const int match = box->findText(arg1, Qt::MatchExactly | Qt::MatchCaseSensitive);
    const QSignalBlocker blocker(box);
    const int cursor = box->lineEdit()->cursorPosition(); // goes to the end with the new item
    if (match >= 0)
        box->setCurrentIndex(match);
    else
        box->setItemText(box->currentIndex(), arg1);
    box->lineEdit()->setCursorPosition(cursor);
}

void MainWindow::on_pushButton_new_empty_configuration_clicked()
{
    m_configuration.newEmpty();
}

void MainWindow::on_pushButton_open_configuration_clicked()
{
    m_configuration.open();
}

void MainWindow::on_pushButton_save_configuration_clicked()
{
    m_configuration.save();
}

void MainWindow::on_pushButton_save_as_configuration_clicked()
{
    m_configuration.saveAs();
}

void MainWindow::on_pushButton_info_clicked()
{
    m_parts.prompt->inform(
        QStringLiteral("Info"),
        QStringLiteral("%1\n\nFor loggers with software version V%2.%3\n\nLog file:\n%4\n\n"
                       "Settings:\n%5")
            .arg(programName())
            .arg(ConnectSequence::expectedVersion.major_number)
            .arg(ConnectSequence::expectedVersion.minor_number)
            .arg(m_parts.log_path, m_parts.settings->path()));
}

void MainWindow::on_pushButton_ip_nfo_clicked()
{
    m_parts.prompt->inform(
        QStringLiteral("IP Info"),
        QStringLiteral("Standard addresses of the logger,\nfrom software version V1.58:\n\n"
                       "LAN: 192.168.1.111\nWLAN: 192.168.200.1"));
}

void MainWindow::on_pushButton_cmd_window_clicked()
{
    if (!m_debugWindow)
        return;
    m_debugWindow->show();
    m_debugWindow->raise();
    m_debugWindow->activateWindow();
}

void MainWindow::hideAllInterfaceViews()
{
    m_ui->stackedWidget->setCurrentWidget(m_groupPage);
}

void MainWindow::tree_widget_selection_changed()
{
    hideAllInterfaceViews();
    if (QWidget *page = m_pageOfItem.value(m_ui->treeWidget->selectedText()))
        m_ui->stackedWidget->setCurrentWidget(page);
}

void MainWindow::onTranspModeSwitchClicked(bool clicked)
{
    if (clicked)
        m_stateBeforeTransparent = appController()->appState();
    if (m_parts.link->setTransparentMode(clicked)) {
        setAppState(clicked ? APP_STA_CONN_TRANSPARENT : m_stateBeforeTransparent);
        return;
    }
    m_ui->slideSwitch_transparent->setChecked(!clicked);
    m_ui->statusbar->showMessage(QStringLiteral("Transparent mode stays as it was: %1")
                                     .arg(m_parts.link->lastError().simplified()),
                                 noticeTime_ms);
}

void MainWindow::show_tcp_error(QString errror_txt)
{
    if (m_connecting)
        m_tcpErrorMeanwhile = errror_txt;
    else
        m_parts.prompt->warn(QStringLiteral("Connection-Error"), errror_txt);
}

void MainWindow::show_warning_if_logger_is_connected(QString title, QString error_txt)
{
    // What fails while the sequence runs is told by the sequence.
    if (m_parts.link->isConnected() && !m_connecting)
        m_parts.prompt->warn(title, error_txt);
}

void MainWindow::waitForUpdate(int delay_s)
{
    setEnabled(false);
    auto *dialog = new DialogDelayDialog(this, delay_s, QStringLiteral("Update sent!"),
                                         QStringLiteral("Update sent, reconnecting in "));
    connect(dialog, &DialogDelayDialog::signal_delay_expired, dialog, &QDialog::close);
    connect(dialog, &DialogDelayDialog::signal_delay_expired, dialog, &QObject::deleteLater);
    connect(dialog, &DialogDelayDialog::signal_delay_expired, this,
            &MainWindow::softwareUpdAutoReconnect);
    connect(dialog, &QDialog::rejected, dialog, &QObject::deleteLater);
    connect(dialog, &QDialog::rejected, this, [this] { setEnabled(true); });
    dialog->show();
}

void MainWindow::softwareUpdAutoReconnect()
{
    setEnabled(true);
    on_pushButton_connect_disconnect_clicked();
}

void MainWindow::startConversion(ConversionGlobal::OutputFormat format)
{
    const QString name =
        QLatin1String(QMetaEnum::fromType<ConversionGlobal::OutputFormat>().valueToKey(format));
    const QStringList rawLogs = m_fileDialogs.getOpenFileNamesWithKey(
        QStringLiteral("conversionStart"), {},
        QStringLiteral("Load raw-logfile(s) for ") + name + QStringLiteral(" conversion."),
        QStringLiteral("raw-logfile (*.rld)"));
    if (rawLogs.isEmpty())
        return;
    const QString folder = m_fileDialogs.getExistingDirWithKey(
        QStringLiteral("conversionFinish"), QStringLiteral("conversionStart"),
        QStringLiteral("Choose ") + name + QStringLiteral("-Output Folder"));
    if (folder.isEmpty())
        return;
    m_parts.convert(format, rawLogs, folder, this);
}

void MainWindow::start_dialog_file_download(QStringList filename_list, QList<qint64> filesize_list,
                                            QString target_event_folder,
                                            ConversionGlobal::OutputFormatFlags formats)
{
    if (target_event_folder.isEmpty()) {
        m_parts.prompt->warn(QStringLiteral("No Event-Folder Selected"),
                             QStringLiteral("Please Select/Create a Event-Folder."));
        return;
    }
    m_parts.download(QHostAddress(address()), filename_list, filesize_list, target_event_folder,
                     formats, this);
}

// Nothing is taken while a box waits for its answer or the sockets are being opened.
bool MainWindow::takesDrop(const QMimeData *dropped) const
{
    return !m_connecting && isEnabled() && !QApplication::activeModalWidget()
           && !DroppedFiles::of(dropped->urls()).isEmpty();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (takesDrop(event->mimeData()))
        event->acceptProposedAction();
}

// The program that the files come from waits until this function returns.
void MainWindow::dropEvent(QDropEvent *event)
{
    if (!takesDrop(event->mimeData()))
        return;
    event->acceptProposedAction();
    QTimer::singleShot(0, this, [this, files = DroppedFiles::of(event->mimeData()->urls())] {
        if (files.configuration.isEmpty())
            askToConvert(files.raw_logs);
        else
            m_configuration.openFile(files.configuration);
    });
}

void MainWindow::askToConvert(const QStringList &rawLogs)
{
    auto *dialog = new DialogDownloadOptions(rawLogs, *m_parts.settings, *m_parts.prompt, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, rawLogs] {
        m_parts.convert(dialog->formats(), rawLogs, dialog->folder(), this);
    });
    dialog->open();
}

void MainWindow::restorePlace()
{
    const WindowPlace place;
    restoreGeometry(place.store.value(place.geometry).toByteArray());
    m_ui->splitter->restoreState(place.store.value(place.splitter).toByteArray());
}

// Asks when windows of this one would lose their work, and anew when other windows have begun to work
// while the question was open: a download that ends has its logs converted.
bool MainWindow::mayClose()
{
    QVector<QPointer<QDialog>> agreed;
    for (;;) {
        bool isNew = false;
        QStringList works;
        const QVector<WorkingDialog> running = workingDialogsOf(*this);
        for (const WorkingDialog &each : running) {
            works += each.work;
            isNew |= !agreed.contains(each.dialog);
        }
        if (!isNew)
            return true;
        if (!askToEnd(works))
            return false;
        for (const WorkingDialog &each : running)
            agreed += each.dialog;
    }
}

bool MainWindow::askToEnd(const QStringList &works)
{
    return m_parts.prompt->ask(
        QStringLiteral("Close program"),
        works.join(QLatin1Char('\n'))
            + QStringLiteral("\n\nClose the program and end this work? Files "
                             "that aren't whole are removed."));
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (m_opening) {
        m_closesWhenOpened = true;
        m_parts.link->cancelConnect();
        event->ignore();
        return;
    }
    if (!mayClose()) {
        event->ignore();
        return;
    }
    WindowPlace place;
    place.store.setValue(place.geometry, saveGeometry());
    place.store.setValue(place.splitter, m_ui->splitter->saveState());
    if (m_parts.link->isConnected())
        m_parts.link->disconnectLogger();
    QMainWindow::closeEvent(event);
}
