#pragma once

#include "app/state/appcomponentbaseclass.h"

#include <QDialog>
#include <QStringList>

#include <memory>

class Logger_Data_Handler_Class;

namespace Ui {
class DialogCmdWindow;
}

// Sends what the user types to the logger as it is and shows the replies.
class DialogCmdWindow : public QDialog, public AppComponentBaseClass
{
    Q_OBJECT

public:
    DialogCmdWindow(AppController *controller, Logger_Data_Handler_Class *handler,
                    QWidget *parent = nullptr);
    ~DialogCmdWindow() override;

    void appStateChanged(AppSta_t &) override { update_gui(); }

public slots:
    void update_gui();
    void on_pushButton_send_clicked();
    void on_pushButton_clear_clicked();
    void on_lineEdit_cmd_returnPressed() { on_pushButton_send_clicked(); }
    // The command before the shown one, and the one behind it.
    void on_upArrowPressed();
    void on_downArrowPressed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void appendLine(const char *color, const QString &text);
    void showHistory(int index);

    Logger_Data_Handler_Class *m_handler; // lives longer
    std::unique_ptr<Ui::DialogCmdWindow> m_ui;
    QStringList m_history; // oldest first
    int m_shown = 0;       // index of the shown command; the number of commands for a new one
};
