#pragma once

#include <QDialog>

#include <memory>

struct TerminalCanCfg;
class ModelIDFilterElements;
class UserPrompt;

namespace Ui {
class DialogCAN_Cfg;
}

// Edits one CAN channel: mode, bit timing, filters and remote frames.
class DialogCAN_Cfg : public QDialog
{
    Q_OBJECT

public:
    // The channel and the prompt must outlive the dialog. The dialog doesn't change the channel; what
    // it has no widget for is taken from it when OK is pressed.
    DialogCAN_Cfg(int can_nr, const TerminalCanCfg &channel, UserPrompt &prompt,
                  QWidget *parent = nullptr);
    ~DialogCAN_Cfg() override;

public slots:
    void set_cfg_to_gui();
    void load_preset_clicked();
    void calculate_bitrate_infos();
    void calculate_fast_bitrate_infos();
    void set_can_bitrate_values(int clk_div, int tseg1, int tseg2, int sjw);
    void set_can_fast_bitrate_values(int clk_div, int tseg1, int tseg2, int sjw);
    void on_pushButton_filter_add_clicked();
    void on_pushButton_filter_delete_clicked();
    void on_comboBox_can_iso_preset_currentIndexChanged(int index);
    void on_comboBox_can_fd_preset_currentIndexChanged(int index);
    void on_pushButton_aimModules_clicked();
    void clear_filter_list();
    void set_cfg();

signals:
    // The edited channel, which lives until the call returns.
    void signalWriteCan(int can_nr, const TerminalCanCfg &channel);
    // Its button is enabled once somebody has connected to it.
    void signalOpenAimModules();

protected:
    void connectNotify(const QMetaMethod &signal) override;

private:
    void connectTimingBoxes();
    void setUpFilterTable();
    void showWhoMakesTheFilters();
    void showAimModules();
    void enableFilterButtons();
    void readWidgets(TerminalCanCfg &channel) const;

    const int m_canNumber;
    const TerminalCanCfg &m_channel;
    UserPrompt &m_prompt;
    std::unique_ptr<Ui::DialogCAN_Cfg> m_ui;
    ModelIDFilterElements *m_filters; // child of this
};
