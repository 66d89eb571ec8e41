#pragma once

#include <QApplication>

// The application object. What is thrown in a slot ends that slot, not the program.
class Application : public QApplication
{
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;
};
