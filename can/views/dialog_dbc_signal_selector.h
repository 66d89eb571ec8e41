#pragma once

#include "can/canfilters.h"
#include "can/models/filtermodell_dbc_signals.h"
#include "can/models/model_dbc_signals.h"
#include "config/record/ownedlist.h"

#include <QDialog>

#include <memory>

class UserPrompt;

namespace Ui {
class Dialog_DBC_Signal_Selector;
}

// Lets the user choose signals of a DBC file for a CAN channel, and counts the filters that they
// need while he does. It owns the signals until they are handed over, and deletes itself when it is
// closed. Lives on the GUI thread.
class Dialog_DBC_Signal_Selector : public QDialog
{
    Q_OBJECT

public:
    // Takes the signals over. Nothing of the channel is kept but what is copied here.
    Dialog_DBC_Signal_Selector(const TerminalCanCfg &channel,
                               const QList<StreamingClass_DBC_Signal *> &parsedSignals,
                               UserPrompt &prompt, QWidget *parent = nullptr);
    ~Dialog_DBC_Signal_Selector() override;

    // What the file holds, above the table; without it there is no such line.
    void setSummary(const QString &summary);

signals:
    // The receiver takes the records over, though not the list; it is to be connected directly.
    // Where nobody is connected they stay the dialog's.
    void signal_load_selected_dbc_signals(QList<StreamingClass_DBC_Signal *> *selected_dbc_signals);

public slots:
    void load_selected();
    void on_pushButton_select_all_clicked();
    void on_pushButton_unselect_all_clicked();
    void set_sorting_column(int column_clicked);
    void on_lineEdit_filter_textChanged(QString txt);
    void refresh_filter(bool);
    void dbc_model_data_changed(QModelIndex, QModelIndex, QVector<int>);
    // Filters that the channel needs once the ticked signals are loaded. Counts the ticks, too.
    int calculate_total_needed_filter_cnt();
    // The ticked signals with their multiplexors, and how many are ticked. Gives the text of an
    // error, empty when all is well.
    QString calc_signals_to_load(QList<StreamingClass_DBC_Signal *> *output_signal_list,
                                 int *output_selected_signals);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpTable();
    void setUpLegend();
    void countChanges(bool on);
    void tick(const QModelIndexList &records, bool on);
    [[nodiscard]] QModelIndexList visibleRecords() const;
    void tickSelectedRows();
    void enterTable();
    void sortByCurrentColumn();
    void showRemaining(int remaining);
    void showCounts();
    void handOver(QList<StreamingClass_DBC_Signal *> &chosen);

    const std::unique_ptr<Ui::Dialog_DBC_Signal_Selector> m_ui;
    UserPrompt &m_prompt;
    const can::FilterList m_channelFilters; // those of the channel when the dialog was opened
    OwnedList<StreamingClass_DBC_Signal> m_signals;
    Model_DBC_Signals m_model; // of the signals above
    FilterModell_DBC_Signals m_rows;
    QMetaObject::Connection m_counting;
    int m_selected = 0; // signals that are ticked
};
