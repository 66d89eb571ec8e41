#pragma once

#include "cli/texttable.h"

struct StreamingClass_DBC_Signal;

// How tables show a DBC signal, apart from its message.
void addSignalColumns(TextTable &table);
[[nodiscard]] QStringList signalCells(const StreamingClass_DBC_Signal &signal);

[[nodiscard]] inline QString orderText(bool msbFirst)
{
    return msbFirst ? QStringLiteral("Motorola") : QStringLiteral("Intel");
}

[[nodiscard]] inline QString signText(bool isSigned)
{
    return isSigned ? QStringLiteral("signed") : QStringLiteral("unsigned");
}
