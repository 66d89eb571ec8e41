#pragma once

#include "MDF4Conversion/conversionglobal.h"
#include "app/ui/loggerpage.h"
#include "link/loggerstorage.h"
#include "link/logtrigger.h"
#include "link/views/downloadoptions.h"

#include <functional>
#include <memory>

class UserPrompt;
class UserSettings;

namespace Ui {
class Logger_Main_View;
}

// Page of the logger itself: shows whether it records, edits the log trigger, the auxiliary supply
// and the event measurement name, and manages the log files on its storage.
class Logger_Main_View : public LoggerPage
{
    Q_OBJECT

public:
    // Handler, prompt and settings must outlive the page.
    Logger_Main_View(AppController *controller, const QString &componentName,
                     Logger_Data_Handler_Class *handler, UserPrompt &prompt, UserSettings &settings,
                     QWidget *parent = nullptr);
    ~Logger_Main_View() override;

    // What tells the names, as the logger gave them, of files that a download still has to fetch. They
    // aren't deleted.
    void setFilesUnderWay(std::function<QStringList()> names)
    {
        m_filesUnderWay = std::move(names);
    }

signals:
    // Names as the logger gave them, and their sizes in bytes. The folder is empty if there is none.
    void signal_start_dialog_tcp_file_transfer(QStringList filename_list,
                                               QList<qint64> filesize_list,
                                               QString target_event_folder,
                                               ConversionGlobal::OutputFormatFlags formats);

public slots:
    void update_cfg_logtrigger();
    void send_req_logtrigger_cfg();
    void logtrigger_delay_seconds();
    void logtrigger_signal_value();
    void logtrigger_can_nr();
    void combobox_logtrigger_signal_filling();
    void trigger_signal_combobox_text_changed();
    void comboBox_aux_supply_control_currentIndexChanged(int index);
    void on_pushButton_set_event_meassurement_name_clicked();
    void on_lineEdit_event_meassurement_name_returnPressed();
    void show_system_infos();

    // Each shows its failure, but for a lost connection, which the window tells.
    void request_logfile_infos();
    void gather_disc_space_info();
    void on_pushButton_refresh_storage_clicked();
    void on_pushButton_delete_selected_logfile_clicked();
    void on_pushButton_download_selected_logfile_clicked();
    void on_pushButton_select_all_files_less_than_mb_clicked();
    void enable_disable_logfile_buttons();

    void fill_combobox_with_event_folders();
    [[nodiscard]] int get_free_event_folder_nr() const; // -1: the list is full
    void on_pushButton_show_folder_clicked();
    void on_pushButton_remove_selected_frolder_from_list_clicked();
    void on_pushButton_add_selected_frolder_from_list_clicked();
    void on_comboBox_event_folders_currentIndexChanged(int index);
    void on_checkBox_generate_mdf4_clicked();
    void on_checkBox_generate_blf_stateChanged(int arg1);
    void on_checkBox_generate_asc_clicked();
    void on_checkBox_generate_asc_zip_clicked();

protected:
    bool event(QEvent *event) override;

private:
    void redraw() override;
    void stateApplied(AppSta_t state) override;

    void connectSignals();
    void connect_disconnect_logtrigger_cfg_spinboxes(bool connected);
    void connect_disconnect_logtrigger_signal_combobox(bool connected);
    void showTrigger(const LogTriggerCfg &record);
    [[nodiscard]] QVector<logtrigger::Choice> choicesOfShownChannel() const;
    void showTriggerChoices(const QVector<logtrigger::Choice> &choices,
                            const std::optional<logtrigger::Choice> &current);
    void showTriggerUnit();
    [[nodiscard]] logtrigger::Input triggerInput() const;
    [[nodiscard]] std::optional<logtrigger::Choice> triggerChoice() const;
    void showEventName();

    void setUpTable();
    void readStorageOfNewLogger();
    [[nodiscard]] bool showLogFiles();
    [[nodiscard]] QString readLogFiles();
    void showFiles(const loggerstorage::Listing &listing);
    void showFile(int row, int fileIndex);
    [[nodiscard]] QList<int> selectedFiles() const;
    void selectFiles(const std::function<bool(const loggerstorage::File &)> &isSelected);
    [[nodiscard]] QStringList shownNames(const QList<int> &files) const;
    [[nodiscard]] QString whyKept(const QList<int> &files) const;
    [[nodiscard]] QString deleteFiles(const QList<int> &files);
    void showStorageStatus();

    UserPrompt &m_prompt;
    std::function<QStringList()> m_filesUnderWay = [] { return QStringList(); };
    std::unique_ptr<Ui::Logger_Main_View> m_ui;
    std::unique_ptr<EventFolders> m_folders;
    std::unique_ptr<DownloadOptions> m_options;

    logtrigger::Input m_shownTrigger;      // what the widgets showed when they were set
    QVector<logtrigger::Choice> m_choices; // of the signal's box, by the data of its items
    QList<QMetaObject::Connection> m_spinBoxConnections;
    QMetaObject::Connection m_signalBoxConnection;
    QString m_shownEventName; // of the configuration

    AppSta_t m_state = APP_STA_DISCONN;
    QVector<loggerstorage::File> m_files; // as the logger has listed them
    int m_leftOut = 0;                    // listed, but too many to be shown
};
