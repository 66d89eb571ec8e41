#include "app/ui/runningwork.h"

QVector<WorkingDialog> workingDialogsOf(const QWidget &window)
{
    QVector<WorkingDialog> running;
    const QList<QDialog *> dialogs = window.findChildren<QDialog *>();
    for (QDialog *dialog : dialogs) {
        const auto *work = dynamic_cast<const RunningWork *>(dialog);
        const QString text = work ? work->runningWork() : QString();
        if (!text.isEmpty())
            running.append({dialog, text});
    }
    return running;
}
