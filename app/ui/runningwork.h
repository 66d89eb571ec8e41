#pragma once

#include <QDialog>
#include <QPointer>
#include <QString>
#include <QVector>

// A window whose closing would end work that takes its time. The main window asks those of its
// dialogs that are one before the program ends. Used on the GUI thread.
class RunningWork
{
public:
    RunningWork() = default;
    virtual ~RunningWork() = default;
    RunningWork(const RunningWork &) = delete;
    RunningWork &operator=(const RunningWork &) = delete;

    // What runs, as a sentence of plain text for the user with how much of it is left:
    // "Conversions that haven't ended: 2 of 5." Empty: nothing runs, and closing costs nothing.
    [[nodiscard]] virtual QString runningWork() const = 0;
};

// A dialog with what runs in it.
struct WorkingDialog
{
    QPointer<QDialog> dialog; // null once it has gone
    QString work;
};

// Those dialogs of a window in which something runs.
[[nodiscard]] QVector<WorkingDialog> workingDialogsOf(const QWidget &window);
