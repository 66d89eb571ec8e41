#pragma once

#include "can/canfilters.h"

namespace simulator {

// Whether a channel's hardware lets a frame through: all frames without filters, else those that a
// filter accepts and none rejects. With nothing but rejecting filters the others pass.
[[nodiscard]] bool passesFilters(const can::FilterList &filters, quint32 id, bool extended);

// What the logger sets a channel's hardware to: the filters of what is measured, recorded or shown
// live, and the channel's own rows only where there is nothing of that.
[[nodiscard]] can::FilterList hardwareFilters(const TerminalCanCfg &channel);

} // namespace simulator
