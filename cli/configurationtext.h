#pragma once

#include <QString>

struct TerminalStruct;

// A configuration for people: what is switched on or differs from the defaults, in tables.
[[nodiscard]] QString configurationText(const TerminalStruct &configuration);
