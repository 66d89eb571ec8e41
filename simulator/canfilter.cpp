#include "simulator/canfilter.h"

namespace simulator {
namespace {

bool matches(const CanIdFilterElement &filter, quint32 id, bool extended)
{
    enum Type { Range = 0, Dual = 1, Classic = 2, RangeT2 = 3 };
    if ((filter.extended != 0) != extended)
        return false;
    switch (filter.filter_type) {
    case Range:
    case RangeT2:
        return filter.id1 <= id && id <= filter.id2;
    case Dual:
        return id == filter.id1 || id == filter.id2;
    case Classic:
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

bool passesFilters(const TerminalCanCfg &channel, quint32 id, bool extended)
{
    can::FilterList filters;
    for (const CanIdFilterElement *filter : channel.filters)
        filters.push_back(*filter);
    return passesFilters(filters, id, extended);
}

} // namespace simulator
