#include "can/canfilters.h"

#include "a2l/records/a2lconstants.h"
#include "can/dbcmessages.h"

#include <QSet>

#include <set>
#include <tuple>

namespace {

using Signal = StreamingClass_DBC_Signal;

constexpr quint32 extendedIdFlag = 0x8000'0000; // of the identifier of a DAQ list
constexpr quint8 selectionFlags = Signal::recordFlag | Signal::liveFlag;

bool isSelected(const Signal &signal)
{
    return (signal.selection_flags & selectionFlags) != 0;
}

// Accepts one message.
CanIdFilterElement messageFilter(quint32 id, bool isExtended)
{
    CanIdFilterElement filter;
    filter.extended = isExtended ? 1 : 0;
    filter.filter_type = ClassicFilter;
    filter.id1 = id;
    filter.id2 = isExtended ? can::maxExtendedId : can::maxStandardId;
    return filter;
}

// The message of a signal, as one number.
quint64 messageKey(const Signal &signal)
{
    return can::identifierKey(can::frameIdentifier(signal), signal.extended_id != 0);
}

auto fieldsOf(const CanIdFilterElement &filter)
{
    return std::make_tuple(filter.extended, filter.filter_type, filter.reject, filter.id1,
                           filter.id2);
}

} // namespace

can::FilterList can::filtersFromSignals(const QList<Signal *> &signalList,
                                        SelectedOnly selectedOnly)
{
    FilterList filters;
    QSet<quint64> seen;
    for (const Signal *signal : signalList) {
        if (selectedOnly == SelectedOnly::Yes && !isSelected(*signal))
            continue;
        const int before = seen.size();
        seen.insert(messageKey(*signal));
        if (seen.size() > before)
            filters.push_back(messageFilter(frameIdentifier(*signal), signal->extended_id != 0));
    }
    return filters;
}

can::FilterList can::filtersFromA2l(const StreamingClass_A2L_Module &module)
{
    FilterList filters;
    if (module.config.active_interface != ACTIVE_A2L_IF_CCP_XCP_O_CAN)
        return filters;
    for (const StreamingClass_A2L_DAQ *daq : module.config.cfg.daq_lists) {
        const bool isExtended = (daq->can_id & extendedIdFlag) != 0;
        filters.push_back(
            messageFilter(daq->can_id & (isExtended ? maxExtendedId : maxStandardId), isExtended));
    }
    return filters;
}

can::FilterList can::merged(const FilterList &a, const FilterList &b)
{
    FilterList result;
    result.reserve(a.size() + b.size());
    std::set<decltype(fieldsOf(CanIdFilterElement()))> seen;
    for (const FilterList *list : {&a, &b}) {
        for (const CanIdFilterElement &filter : *list) {
            if (seen.insert(fieldsOf(filter)).second)
                result.push_back(filter);
        }
    }
    return result;
}

can::FilterList can::effectiveFilters(const TerminalCanCfg &channel, SelectedOnly selectedOnly)
{
    const FilterList derived = merged(
        filtersFromA2l(channel.a2l), filtersFromSignals(channel.dbc_signals.items(), selectedOnly));
    if (!derived.empty())
        return derived;
    FilterList own;
    for (const CanIdFilterElement *filter : channel.filters)
        own.push_back(*filter);
    return merged(own, {});
}

bool can::filtersComeFromSignals(const TerminalCanCfg &channel)
{
    const A2lModuleConfig &a2l = channel.a2l.config;
    return !channel.dbc_signals.isEmpty()
           || (a2l.active_interface == ACTIVE_A2L_IF_CCP_XCP_O_CAN && !a2l.cfg.daq_lists.isEmpty());
}

QStringList can::enforceFilterLimit(TerminalCanCfg &channel)
{
    int excess = int(effectiveFilters(channel, SelectedOnly::Yes).size()) - maxFilters;
    QSet<quint64> dropped; // messages; each signal that is selected has its message's filter
    const QList<Signal *> &signalList = channel.dbc_signals.items();
    for (auto signal = signalList.rbegin(); signal != signalList.rend() && excess > 0; ++signal) {
        if (isSelected(**signal) && !dropped.contains(messageKey(**signal))) {
            dropped.insert(messageKey(**signal));
            --excess;
        }
    }

    QStringList cleared;
    for (Signal *signal : signalList) {
        if (!isSelected(*signal) || !dropped.contains(messageKey(*signal)))
            continue;
        signal->selection_flags = quint8(signal->selection_flags & ~selectionFlags);
        cleared.append(signal->name);
    }
    return cleared;
}
