#pragma once

#include "MDF4Conversion/conversionglobal.h"
#include "app/configurationcommands.h"
#include "app/connectsequence.h"
#include "app/pagetable.h"
#include "app/softwareupdate.h"
#include "app/state/appcomponentbaseclass.h"
#include "app/ui/filedialogs.h"

#include <QMainWindow>
#include <QMap>

#include <functional>
#include <memory>

class LoggerLink;
class QHostAddress;
class QMimeData;
class StatusFields;
class UserSettings;

namespace Ui {
class MainWindow;
}

// What the main window is made of; a test brings its own.
struct MainWindowParts
{
    // Converts raw logs into a folder, with a window in front of the given one.
    using Converter =
        std::function<void(ConversionGlobal::OutputFormatFlags formats, const QStringList &rawLogs,
                           const QString &folder, QWidget *window)>;
    // Downloads files of the logger into a folder and converts them, with a window in front of the
    // given one. The names are the logger's, the sizes bytes.
    using Downloader = std::function<void(
        const QHostAddress &logger, const QStringList &names, const QList<qint64> &sizes,
        const QString &folder, ConversionGlobal::OutputFormatFlags formats, QWidget *window)>;

    // The logger's names of the files that are still to be downloaded.
    using FilesUnderWay = std::function<QStringList(const QHostAddress &logger)>;

    std::unique_ptr<LoggerLink> link;
    UserPrompt *prompt = nullptr;     // not owned
    UserSettings *settings = nullptr; // not owned
    QString log_path;                 // of the diagnostic log, to be shown
    std::vector<PageRow> pages = pageTable();
    PageRow::Factory debug_window = nullptr; // a dialog; none: no button for it
    SoftwareUpdate::ImageSource update_image = updateimage::builtIn;
    Converter convert;
    Downloader download;
    FilesUnderWay filesUnderWay = [](const QHostAddress &) { return QStringList(); };
};

// The window of the tool: connect row, configuration files, tree of interfaces and their pages. It
// makes every component and runs the connect sequence.
class MainWindow : public QMainWindow, public AppComponentBaseClass
{
    Q_OBJECT

public:
    MainWindow(AppController *controller, const QString &componentName, MainWindowParts parts);
    ~MainWindow() override;

    void appStateChanged(AppSta_t &state) override;

public slots:
    void hideAllInterfaceViews();
    void tree_widget_selection_changed();
    void on_pushButton_connect_disconnect_clicked();
    void on_pushButton_new_empty_configuration_clicked();
    void on_pushButton_open_configuration_clicked();
    void on_pushButton_save_configuration_clicked();
    void on_pushButton_save_as_configuration_clicked();
    void on_pushButton_info_clicked();
    void on_pushButton_ip_nfo_clicked();
    void on_pushButton_cmd_window_clicked();
    void on_comboBox_ipAddr_currentTextChanged(QString arg1);
    void onTranspModeSwitchClicked(bool clicked);
    void show_tcp_error(QString errror_txt);
    void show_warning_if_logger_is_connected(QString title, QString error_txt);
    void softwareUpdAutoReconnect();
    void startConversion(ConversionGlobal::OutputFormat format);
    void start_dialog_file_download(QStringList filename_list, QList<qint64> filesize_list,
                                    QString target_event_folder,
                                    ConversionGlobal::OutputFormatFlags formats);

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void fillAddressBox();
    void fillConversionMenu();
    void setIcons();
    void connectSignals();
    void makePages();
    void restorePlace();
    void registerComponent(QWidget *component);
    enum class ConnectButton { Connect, Cancel, Disconnect };
    void showConnectButton(ConnectButton meaning);
    [[nodiscard]] bool openSockets(const QHostAddress &logger);
    void showConnecting(int port, int left_s);
    void enterDisconnected();
    void enterConnectSequence();
    void showTcpErrorMeanwhile();
    void waitForUpdate(int delay_s);
    [[nodiscard]] bool takesDrop(const QMimeData *dropped) const;
    void askToConvert(const QStringList &rawLogs);
    [[nodiscard]] bool mayClose();
    [[nodiscard]] bool askToEnd(const QStringList &works);
    [[nodiscard]] QString address() const;

    MainWindowParts m_parts;
    FileDialogs m_fileDialogs;
    ConfigurationCommands m_configuration;
    SoftwareUpdate m_update;
    ConnectSequence m_connectSequence;
    std::unique_ptr<Ui::MainWindow> m_ui;
    StatusFields *m_status = nullptr;      // belongs to the status bar
    QWidget *m_groupPage = nullptr;        // shown where an item has no page
    QMap<QString, QWidget *> m_pageOfItem; // by the text of the item
    QWidget *m_debugWindow = nullptr;      // a child, none if there is no such window
    AppSta_t m_stateBeforeTransparent = APP_STA_CONN_LOG_OFF;
    bool m_opening = false; // the sockets are being opened
    bool m_closesWhenOpened = false;
    bool m_connecting = false;   // the sockets are being opened, or the connect sequence runs
    QString m_tcpErrorMeanwhile; // held back as long as that takes
};
