#include "can/filterlimit.h"

#include "can/canfilters.h"

#include <utility>

namespace can {

namespace {

using Tick = FilterLimit::Tick;

std::vector<Tick> ticksOf(const TerminalCanCfg &channel)
{
    std::vector<Tick> ticks;
    ticks.reserve(std::size_t(channel.dbc_signals.size()));
    for (const StreamingClass_DBC_Signal *signal : channel.dbc_signals)
        ticks.emplace_back(signal->msg_id, signal->extended_id, signal->selection_flags);
    return ticks;
}

} // namespace

void FilterLimit::limit(int can_nr, TerminalCanCfg &outgoing)
{
    const QStringList cleared = enforceFilterLimit(outgoing);
    m_written.at(std::size_t(can_nr)) = Written{ticksOf(outgoing), cleared};
}

// What comes back as it was written isn't limited once more: where a DAQ list keeps the filter of a
// message that was cleared, the tool would go on clearing what the logger has ticked.
QStringList FilterLimit::take(int can_nr, TerminalCanCfg &arrived)
{
    std::optional<Written> &written = m_written.at(std::size_t(can_nr));
    if (!written || written->ticks != ticksOf(arrived))
        return enforceFilterLimit(arrived);
    return std::exchange(written->cleared, {});
}

} // namespace can
