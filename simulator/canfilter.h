#pragma once

#include "can/canfilters.h"

namespace simulator {

// Whether a channel's hardware filters let a frame through: all frames without filters, else those
// that a filter accepts and none rejects. With nothing but rejecting filters the others pass.
[[nodiscard]] bool passesFilters(const can::FilterList &filters, quint32 id, bool extended);

// The same with the filter rows of the channel.
[[nodiscard]] bool passesFilters(const TerminalCanCfg &channel, quint32 id, bool extended);

} // namespace simulator
