#include "cli/texttable.h"

#include "config/shorttext.h"

namespace {

const QString columnGap = QStringLiteral("  ");

} // namespace

void TextTable::addColumns(std::initializer_list<const char *> titles)
{
    for (const char *text : titles) {
        const QString title = QString::fromUtf8(text);
        const bool alignRight = title.startsWith(QLatin1Char('>'));
        m_alignRight.append(alignRight);
        m_titles.append(alignRight ? title.mid(1) : title);
    }
}

void TextTable::addRow(const QStringList &cells)
{
    if (m_rows.size() >= maxRows) {
        ++m_hiddenRows;
        return;
    }
    QStringList row;
    for (const QString &cell : cells)
        row.append(printable(shortText(cell, m_titles.isEmpty() ? maxValueLength : maxCellLength)));
    m_rows.append(row);
}

// Width of each column, 0 for one without content.
QVector<int> TextTable::widths() const
{
    QVector<int> widths;
    for (const QStringList &cells : m_rows) {
        widths.resize(qMax(widths.size(), cells.size()));
        for (int i = 0; i < cells.size(); ++i)
            widths[i] = qMax(widths.at(i), cells.at(i).size());
    }
    for (int i = 0; i < qMin(widths.size(), m_titles.size()); ++i) {
        if (widths.at(i) != 0)
            widths[i] = qMax(widths.at(i), m_titles.at(i).size());
    }
    return widths;
}

QString TextTable::line(const QStringList &cells, const QVector<int> &widths) const
{
    QString line;
    for (int i = 0; i < qMin(cells.size(), widths.size()); ++i) {
        if (widths.at(i) == 0)
            continue;
        if (!line.isEmpty())
            line += columnGap;
        line += m_alignRight.value(i) ? cells.at(i).rightJustified(widths.at(i))
                                      : cells.at(i).leftJustified(widths.at(i));
    }
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

QString TextTable::text(const QString &indentation) const
{
    const QVector<int> columnWidths = widths();
    QString text;
    if (!m_titles.isEmpty())
        text += indentation + line(m_titles, columnWidths) + QLatin1Char('\n');
    for (const QStringList &cells : m_rows)
        text += indentation + line(cells, columnWidths) + QLatin1Char('\n');
    if (m_hiddenRows != 0)
        text += indentation + QStringLiteral("... and %1 more\n").arg(m_hiddenRows);
    return text;
}

QString printable(const QString &text)
{
    QString shown = text;
    for (QChar &character : shown) {
        if (!character.isPrint() && !character.isSurrogate())
            character = QLatin1Char('?');
    }
    return shown;
}
