#pragma once

#include <QObject>
#include <QString>

class QTableView;

// Remembers the widths of a table's columns and what it is sorted by, under a key in the program's
// settings: tables of one key look alike when they are shown. Lives as long as the table.
class HeaderMemory : public QObject
{
    Q_OBJECT

public:
    HeaderMemory(QTableView *table, const QString &key);
    ~HeaderMemory() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void restore();
    void save();

    QTableView *m_table; // the parent
    const QString m_key;
    bool m_isShown = false;
    bool m_isChanged = false; // since it was shown
};
