#pragma once

#include <QString>

// The flags word of the logger's system infos (RLD_SYSTEM_INFO) as texts for the user.
namespace systemflags {

// "recording" or "stopped".
[[nodiscard]] QString loggingText(quint32 flags);

// "on" or "off" of the auxiliary supply, with its fault.
[[nodiscard]] QString auxSupplyText(quint32 flags);

// The auxiliary supply has a fault.
[[nodiscard]] bool hasAuxSupplyFault(quint32 flags);

[[nodiscard]] bool isLogging(quint32 flags);

} // namespace systemflags
