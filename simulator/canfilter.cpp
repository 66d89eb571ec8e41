#include "simulator/canfilter.h"

namespace simulator {
namespace {

bool matches(const CanIdFilterElement &filter, quint32 id, bool extended)
{
    if ((filter.extended != 0) != extended)
        return false;
    switch (filter.filter_type) {
    case RangeFilter:
    case RangeT2Filter:
        return filter.id1 <= id && id <= filter.id2;
    case DualFilter:
        return id == filter.id1 || id == filter.id2;
    case ClassicFilter:
        return (id & filter.id2) == (filter.id1 & filter.id2);
    default:
        return false;
    }
}

} // namespace

bool passesFilters(const can::FilterList &filters, quint32 id, bool extended)
{
    bool isAccepted = false;
    bool anyAccepts = false;
    for (const CanIdFilterElement &filter : filters) {
        const bool isMatch = matches(filter, id, extended);
        if (filter.reject && isMatch)
            return false;
        anyAccepts = anyAccepts || !filter.reject;
        isAccepted = isAccepted || (!filter.reject && isMatch);
    }
    return isAccepted || !anyAccepts;
}

can::FilterList hardwareFilters(const TerminalCanCfg &channel)
{
    return can::effectiveFilters(channel, can::SelectedOnly::Yes);
}

} // namespace simulator
