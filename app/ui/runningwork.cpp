#include "app/ui/runningwork.h"

#include <QDialog>

QStringList runningWorkOf(const QWidget &window)
{
    QStringList running;
    const QList<QDialog *> dialogs = window.findChildren<QDialog *>();
    for (const QDialog *dialog : dialogs) {
        const auto *work = dynamic_cast<const RunningWork *>(dialog);
        const QString text = work ? work->runningWork() : QString();
        if (!text.isEmpty())
            running += text;
    }
    return running;
}
