#pragma once

#include "cli/texttable.h"

#include <QString>

// The pieces that texts of an inspection are made of.

const QString sectionIndent = QStringLiteral("  ");

// A title and the table below it; nothing for an empty table.
[[nodiscard]] QString section(const QString &title, const TextTable &table);

// 0x1A2, with an x behind a 29-bit identifier.
[[nodiscard]] QString identifierText(quint32 identifier, bool extended);
[[nodiscard]] QString hexText(quint32 value);

// A real number as short as it can be said.
[[nodiscard]] QString realText(double value);

[[nodiscard]] inline QString onOff(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}
