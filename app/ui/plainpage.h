#pragma once

#include <QWidget>

// A page with a title and a line below it, for what has nothing to set.
class PlainPage : public QWidget
{
    Q_OBJECT

public:
    PlainPage(const QString &title, const QString &text, QWidget *parent = nullptr);
};
