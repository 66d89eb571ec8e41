#pragma once

#include <QString>

// How the channel groups of a port are called, as the user set it for the export.
namespace groupnames {

// Bits of the export name mode.
enum ExportNameMode : quint8 {
    AppendCustomText = 1, // the custom text behind label and number
    OnlyCustomText = 2    // the custom text alone
};

struct PortName
{
    QString label; // "CAN" or "ETH"
    int number = 0;
    quint8 mode = 0;
    QString customText; // "Unspecified" stands for an empty one
};

// The name of a group; `kind` may be empty, else it follows at the end behind "_".
[[nodiscard]] QString groupName(const PortName &port, const QString &kind);

} // namespace groupnames
