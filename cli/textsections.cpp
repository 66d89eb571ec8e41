#include "cli/textsections.h"

#include <QLocale>

QString section(const QString &title, const TextTable &table)
{
    if (table.isEmpty())
        return {};
    return QStringLiteral("\n%1\n%2").arg(title, table.text(sectionIndent));
}

QString hexText(quint32 value)
{
    return QStringLiteral("0x") + QString::number(value, 16).toUpper();
}

QString identifierText(quint32 identifier, bool extended)
{
    return hexText(identifier) + (extended ? QStringLiteral("x") : QString());
}

QString realText(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}
