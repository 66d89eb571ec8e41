#include "link/views/logtriggercustomcombobox.h"

void LogTriggerCustomComboBox::showPopup()
{
    emit signal_clicked();
    QComboBox::showPopup();
}
