#pragma once

#include <QString>

// How the channel groups of a port are called in the converted file, as the user set it for the
// export. The conversion and the dialog that edits the setting both ask here.
namespace groupnames {

// Bits of the export name mode.
enum ExportNameMode : quint8 {
    AppendCustomText = 1, // the custom text behind label and number
    OnlyCustomText = 2    // the custom text alone; counts before the other bit
};

struct PortName
{
    QString label; // canLabel or ethernetLabel
    int number = 0;
    quint8 mode = 0;
    QString customText; // "Unspecified" stands for an empty one
};

inline constexpr char canLabel[] = "CAN";
inline constexpr char ethernetLabel[] = "ETH";

// What the groups of a port can hold.
namespace kinds {
inline constexpr char canCcpXcp[] = "CCP_XCP";
inline constexpr char ethernetXcp[] = "XCP";
inline constexpr char dbc[] = "DBC";
inline constexpr char dbcMultiplexed[] = "DBCMUX";
} // namespace kinds

// The name of a group; `kind` may be empty, else it follows at the end behind "_".
[[nodiscard]] QString groupName(const PortName &port, const QString &kind);

} // namespace groupnames
