#pragma once

#include <QString>

class DbcFileParser;

// What a DBC file holds, for people: counts, what was passed over, messages with their signals.
[[nodiscard]] QString dbcText(const DbcFileParser &parser);
