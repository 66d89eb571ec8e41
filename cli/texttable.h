#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <initializer_list>

// Lines up columns of text for a terminal. A column without any content is left out. Texts out of
// files are made harmless: control characters are replaced, and what is too long is cut.
class TextTable
{
public:
    // More rows than this are counted, not shown.
    static constexpr int maxRows = 10000;
    static constexpr int maxCellLength = 60;
    static constexpr int maxValueLength = 1000; // in a table without titles

    // Columns of numbers, whose title begins with '>', are aligned to the right. Without titles
    // there is no head line.
    explicit TextTable(std::initializer_list<const char *> titles = {}) // UTF-8
    {
        addColumns(titles);
    }
    // More columns, before any row.
    void addColumns(std::initializer_list<const char *> titles);

    void addRow(const QStringList &cells);
    // The same for tables of any length: cells() is called for rows that are shown only.
    template <class Cells>
    auto addRow(const Cells &cells) -> decltype(QStringList(cells()), void())
    {
        if (m_rows.size() < maxRows)
            addRow(QStringList(cells()));
        else
            ++m_hiddenRows;
    }
    [[nodiscard]] bool isEmpty() const { return m_rows.isEmpty(); }

    // Lines that end with a line feed, each behind `indentation`.
    [[nodiscard]] QString text(const QString &indentation) const;

private:
    [[nodiscard]] QVector<int> widths() const;
    [[nodiscard]] QString line(const QStringList &cells, const QVector<int> &widths) const;

    QStringList m_titles;
    QVector<bool> m_alignRight;
    QVector<QStringList> m_rows;
    qint64 m_hiddenRows = 0;
};

// A text out of a file as it can be shown on a terminal.
[[nodiscard]] QString printable(const QString &text);
