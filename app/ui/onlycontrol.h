#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

// As long as it lives, one widget is the only one of its siblings that takes input, and has the
// focus. Then those that did before take it again.
class OnlyControl
{
public:
    explicit OnlyControl(QWidget *control);
    OnlyControl(const OnlyControl &) = delete;
    OnlyControl &operator=(const OnlyControl &) = delete;
    ~OnlyControl();

private:
    QList<QPointer<QWidget>> m_disabled; // here, and enabled before
    QPointer<QWidget> m_focus;           // had it before
};
