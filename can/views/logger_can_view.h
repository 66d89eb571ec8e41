#pragma once

#include "app/ui/loggerpage.h"
#include "can/busload.h"
#include "can/cantxrow.h"
#include "can/dbclivedecoder.h"
#include "can/models/channelsignalrows.h"
#include "can/models/model_can_rx_list_items.h"
#include "can/models/model_dbc_signals.h"

#include <QElapsedTimer>
#include <QSortFilterProxyModel>
#include <QTimer>

#include <memory>
#include <tuple>
#include <vector>

class CAN_Msg_Class;
class DbcLoadTask;
class RawMessageBaseClass;
class UserPrompt;

namespace Ui {
class Logger_CAN_View;
}

// Page of one CAN channel: switches and configures it, loads its signals from DBC files and shows
// them live, lists what is received and sends frames.
class Logger_CAN_View : public LoggerPage
{
    Q_OBJECT

public:
    // Handler and prompt must outlive the page. The number is that of the channel, from 0.
    Logger_CAN_View(AppController *controller, const QString &componentName, const QString &title,
                    int can_nr, Logger_Data_Handler_Class *handler, UserPrompt &prompt,
                    QWidget *parent = nullptr);
    ~Logger_CAN_View() override;

    // Reads a DBC file in the background and then lets the user choose signals.
    void loadDbcFile(const QString &path);

signals:
    // The frames of the channel, for whoever shows what they carry. As all lists of live data they
    // are valid during the call only.
    void signalCanMsgForwarder(QList<RawMessageBaseClass *> messages);
    // The channel has changed.
    void signal_update_can_cfg_window();
    // What the user asks for; the page connects each to what does it.
    void signal_create_eth_config_dialog(int can_nr);
    void signal_enable_can(int can_nr, int enable, int *result_code);
    void signal_send_can_msg(int can_nr, int ext_id, int rtr, int id, int dlc, QByteArray data,
                             int *result_code);
    void signal_load_dbc_file(int can_nr);

public slots:
    void on_pushButton_can_enable_clicked();
    void on_pushButton_can_disable_clicked();
    void on_pushButton_can_configuration_clicked();
    void on_pushButton_export_options_clicked();
    void slot_update_cfg_can(int can_nr);
    void full_update();

    void on_pushButton_load_dbc_file_clicked();
    void on_pushButton_reload_dbc_file_clicked();
    void on_pushButton_remove_selected_clicked();
    void on_lineEdit_dbc_filter_textChanged(QString text);
    // Takes the records over, though not the list.
    void insert_dbc_signals(QList<StreamingClass_DBC_Signal *> *new_signals);
    void slotDbcModelChanged(bool transferCmd);

    void slot_receive_can_msg_list(int can_nr, QList<CAN_Msg_Class *> can_msg_list);
    void slot_receive_ccp_xcp_infos(int can_nr, uchar session_status,
                                    uchar last_slave_response_code);
    void on_groupBox_receive_toggled(bool on);
    void on_pushButton_rx_pause_toggled(bool on);
    void on_pushButton_clear_rx_list_clicked();
    void on_pushButton_save_rx_list_clicked();

    void on_lineEdit_id_textChanged(QString arg1);
    void on_checkBox_29_bit_clicked();
    void on_checkBox_rtr_clicked();
    void on_checkBox_fd_format_clicked();
    void on_spinBox_dlc_valueChanged(int value);
    void on_pushButton_send_msg_clicked();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    enum ResultCode { Done = 0, Failed = -1 };

    void redraw() override;
    void wholeConfigurationRead() override { full_update(); }
    void stateApplied(AppSta_t state) override;

    void setUpTables();
    void connectHandler();
    void connectOwnSignals();
    [[nodiscard]] const TerminalCanCfg &channel() const;
    void takeOverChannel();
    void showChannel();
    void enableCan(bool on);
    void openConfiguration();
    // The whole text, where that is another one, is for the tool tip.
    void showNotice(const QString &text, const QString &wholeText = {});
    void showClearedFlags(const QStringList &names);
    void closeDialogs();
    void forgetLiveData();
    void forgetSession();

    [[nodiscard]] bool canLoad() const;
    void chooseDbcFile();
    void connectLoading();
    void showLoading(bool on);
    void dbcFileLoaded(bool isLoaded);
    void showNotLoaded(const QString &path);
    void chooseSignals();
    void noteLastFile();
    void updateDbcButtons();
    void showSummary();
    void showFilters();
    [[nodiscard]] QVector<int> selectedSignals() const;
    void holdSignals();
    void sendEditedSignals();

    [[nodiscard]] bool isListing() const;
    void showLiveData();
    void showBusFigures();
    void showRxNote();
    void noteRxChange(int firstColumn, int lastColumn);
    void sortRxRows();
    [[nodiscard]] const can::RxListItem &rxItemAt(int row) const;
    void copySelectedFrames();

    [[nodiscard]] can::FrameFormat txFormat() const;
    void showTxLimits();
    void showTxFields();

    std::unique_ptr<Ui::Logger_CAN_View> m_ui;
    UserPrompt &m_prompt;
    bool m_isEditable = true;   // the configuration
    bool m_isConnected = false; // and the connect sequence is over

    std::unique_ptr<DbcLoadTask> m_loading; // outlives the models: their slots ask it

    // The signals are the channel's. A record that replaces them is shown as soon as it is there.
    Model_DBC_Signals m_dbcModel;
    ChannelSignalRows m_dbcRows;
    // What can be edited of each signal, as it was before an edit.
    using EditableFields = std::tuple<QString, QString, double, double, quint8>;
    std::vector<EditableFields> m_held;
    can::DbcLiveDecoder m_decoder;
    bool m_areValuesToShow = false; // the table of signals hasn't heard of them yet
    // A DBC file, in a line for the user.
    struct FileSummary
    {
        QString path;
        QString text;
    };
    QTimer m_loadingShows{this}; // until the progress of a load is shown
    FileSummary m_offered;       // of the file from which the user chooses
    FileSummary m_summary;       // of the file of the signals; empty: not known
    QString m_lastFile;          // of this channel, also of an earlier run
    bool m_isLastFileThere = false;

    Model_CAN_Rx_List_Items m_rxModel;
    QSortFilterProxyModel m_rxRows;
    bool m_isRxToSort = false; // what it is sorted by has changed
    can::BusLoad m_busLoad;
    QTimer m_figuresTimer;
    QElapsedTimer m_lastFrames; // since frames came in
    int m_sentFrames = 0;       // in this state of the tool
};
