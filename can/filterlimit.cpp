#include "can/filterlimit.h"

#include "can/canfilters.h"

namespace can {

namespace {

QByteArray ticksOf(const TerminalCanCfg &channel)
{
    QByteArray ticks;
    ticks.reserve(channel.dbc_signals.size());
    for (const StreamingClass_DBC_Signal *signal : channel.dbc_signals)
        ticks.append(char(signal->selection_flags));
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
    const QStringList cleared = written->cleared;
    written.reset();
    return cleared;
}

} // namespace can
