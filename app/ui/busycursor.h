#pragma once

#include <QCursor>
#include <QGuiApplication>

// The cursor of a program that works, as long as it lives.
class BusyCursor
{
public:
    explicit BusyCursor(Qt::CursorShape shape = Qt::WaitCursor)
    {
        QGuiApplication::setOverrideCursor(shape);
    }
    ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
};
