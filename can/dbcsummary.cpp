#include "can/dbcsummary.h"

#include <QLocale>
#include <QStringList>

namespace {

struct Row
{
    int DbcSummary::*count;
    const char *one;
    const char *many;
};

constexpr Row readRows[] = {
    {&DbcSummary::messages, "message", "messages"},
    {&DbcSummary::signal_count, "signal", "signals"},
};

constexpr Row passedOverRows[] = {
    {&DbcSummary::ignored_signals, "signal outside of a message", "signals outside of a message"},
    {&DbcSummary::float_types, "float type (read as a whole number)",
     "float types (read as whole numbers)"},
    {&DbcSummary::multiplexor_ranges, "signal at several multiplexor values (read at one)",
     "signals at several multiplexor values (read at one)"},
    {&DbcSummary::value_tables, "value table", "value tables"},
    {&DbcSummary::comments_without_signal, "comment without a signal", "comments without a signal"},
    {&DbcSummary::other_comments, "comment of a message, node or bus",
     "comments of messages, nodes or the bus"},
};

// "1,180 signals"
QString countText(const DbcSummary &summary, const Row &row)
{
    const int count = summary.*row.count;
    return QLocale(QLocale::English).toString(count) + QLatin1Char(' ')
           + QLatin1String(count == 1 ? row.one : row.many);
}

} // namespace

QString dbc::passedOverText(const DbcSummary &summary)
{
    QStringList texts;
    for (const Row &row : passedOverRows) {
        if (summary.*row.count != 0)
            texts.append(countText(summary, row));
    }
    return texts.join(QStringLiteral(", "));
}

QString dbc::summaryText(const DbcSummary &summary)
{
    QStringList texts;
    for (const Row &row : readRows)
        texts.append(countText(summary, row));
    const QString read = texts.join(QStringLiteral(", "));
    const QString passedOver = passedOverText(summary);
    return passedOver.isEmpty() ? read : read + QStringLiteral("; passed over: ") + passedOver;
}
