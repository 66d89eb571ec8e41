#pragma once

#include <QtGlobal>

struct TerminalCanCfg;

namespace simulator {

// Whether a channel's hardware filters let a frame through: all frames without filters, else those
// that a filter accepts and none rejects. With nothing but rejecting filters the others pass.
[[nodiscard]] bool passesFilters(const TerminalCanCfg &channel, quint32 id, bool extended);

} // namespace simulator
