#pragma once

#include "can/canframe.h"
#include "config/terminalcancfg.h"

#include <QStringList>

#include <vector>

// The acceptance filters that a channel's hardware gets, as they follow from its records.
namespace can {

// Filter slots of one channel's hardware.
inline constexpr int maxFilters = 128;

// Whether all signals of a list count, or only those that are recorded or shown live.
enum class SelectedOnly { No, Yes };

using FilterList = std::vector<CanIdFilterElement>;

// One filter for each message that the signals belong to, in the order of the signals.
[[nodiscard]] FilterList filtersFromSignals(const QList<StreamingClass_DBC_Signal *> &signalList,
                                            SelectedOnly selectedOnly);

// One filter for each DAQ list that is measured over CAN.
[[nodiscard]] FilterList filtersFromA2l(const StreamingClass_A2L_Module &module);

// The elements of a, then those of b; each only once.
[[nodiscard]] FilterList merged(const FilterList &a, const FilterList &b);

// What the hardware is set to: filters of the A2L module, then those of the signals. Only where
// there are none of either do the channel's own filter rows count.
[[nodiscard]] FilterList effectiveFilters(const TerminalCanCfg &channel, SelectedOnly selectedOnly);

// True where the channel's own filter rows don't count, whatever is ticked.
[[nodiscard]] bool filtersComeFromSignals(const TerminalCanCfg &channel);

// Clears the flags of as many whole messages, the last ones first, as there are filters too many for
// the hardware. A message that a DAQ list needs, too, counts although its filter stays. Gives the
// names of the signals that lost their flags, in the order of the channel.
[[nodiscard]] QStringList enforceFilterLimit(TerminalCanCfg &channel);

} // namespace can
