#pragma once

#include "config/streamingclass_dbc_signal.h"

#include <string_view>

namespace dbc {

// What is wrong with a line, in the words of its message; null for nothing.
using Fault = const char *;

// Reads a line "SG_ name [M|m<value>] start|length@order sign (factor,offset) [min|max] "unit"
// receivers", whose colons are removed, into all but the members of the message. The receivers
// aren't read.
[[nodiscard]] Fault readSignalLine(std::string_view line, StreamingClass_DBC_Signal &signal);

} // namespace dbc
