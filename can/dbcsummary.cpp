#include "can/dbcsummary.h"

#include <QLocale>
#include <QStringList>

namespace {

// "1,180 signals"
QString countText(const DbcSummary &summary, const dbc::SummaryCount &row)
{
    const int count = summary.*row.count;
    return QLocale(QLocale::English).toString(count) + QLatin1Char(' ')
           + QLatin1String(count == 1 ? row.one : row.many);
}

} // namespace

QString dbc::passedOverText(const DbcSummary &summary)
{
    QStringList texts;
    for (const SummaryCount &row : passedOverCounts) {
        if (summary.*row.count != 0)
            texts.append(countText(summary, row));
    }
    return texts.join(QStringLiteral(", "));
}

QString dbc::summaryText(const DbcSummary &summary)
{
    QStringList texts;
    for (const SummaryCount &row : readCounts)
        texts.append(countText(summary, row));
    const QString read = texts.join(QStringLiteral(", "));
    const QString passedOver = passedOverText(summary);
    return passedOver.isEmpty() ? read : read + QStringLiteral("; passed over: ") + passedOver;
}
