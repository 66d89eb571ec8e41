#pragma once

#include <QDialog>
#include <QTimer>

#include <memory>

namespace Ui {
class DialogDelayDialog;
}

// Counts seconds down in front of the user, who may end the wait.
class DialogDelayDialog : public QDialog
{
    Q_OBJECT

public:
    DialogDelayDialog(QWidget *parent, int delay_s, const QString &title, const QString &message);
    ~DialogDelayDialog() override;

signals:
    // Once, when the time is over. Never after the user ended the wait, which is told by rejected().
    void signal_delay_expired();

public slots:
    void reject() override;

private slots:
    void countDown();

private:
    void showCount();

    std::unique_ptr<Ui::DialogDelayDialog> m_ui;
    QTimer m_timer;
    QString m_message;
    int m_left_s;
};
