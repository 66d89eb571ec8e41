#pragma once

#include <QComboBox>

// A box whose list is made when the user opens it.
class LogTriggerCustomComboBox : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    void showPopup() override;

signals:
    void signal_clicked(); // the list is about to open
};
