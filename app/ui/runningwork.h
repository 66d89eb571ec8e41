#pragma once

#include <QString>

// A window whose closing would end work that takes its time. The main window asks those of its
// dialogs that are one before the program ends. Used on the GUI thread.
class RunningWork
{
public:
    RunningWork() = default;
    virtual ~RunningWork() = default;
    RunningWork(const RunningWork &) = delete;
    RunningWork &operator=(const RunningWork &) = delete;

    // What runs, as a sentence of plain text for the user with how much of it is left: "2 of 5
    // conversions haven't ended." Empty: nothing runs, and closing costs nothing.
    [[nodiscard]] virtual QString runningWork() const = 0;
};
