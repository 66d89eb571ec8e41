#pragma once

#include <QString>

struct TerminalStruct;

// The CAN channels in use: timing and switches, filters, signals, AIM modules, CCP and XCP.
[[nodiscard]] QString canText(const TerminalStruct &configuration);
