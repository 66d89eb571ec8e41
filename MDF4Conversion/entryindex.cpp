#include "MDF4Conversion/entryindex.h"

#include "MDF4Conversion/mdf4_channelgroup.h"

#include <algorithm>

namespace {

constexpr int numberCount = 256;

} // namespace

EntryIndex::EntryIndex(const Groups &groups)
{
    int order = 0;
    for (MDF4_ChannelGroup *group : groups) {
        for (const EntrySelection &selection : group->selections()) {
            const Taker taker{order, group, selection.sub};
            const int first = selection.number.value_or(0);
            const int last = selection.number.value_or(numberCount - 1);
            for (int number = first; number <= last; ++number) {
                const quint64 place =
                    key(selection.type, static_cast<quint8>(number), selection.canId.value_or(0));
                add(m_slots[place], taker, selection);
            }
        }
        ++order;
    }
    makeTable();
}

EntryIndex::~EntryIndex() = default;

quint64 EntryIndex::key(quint8 type, quint8 number, quint32 id)
{
    return quint64(type) << 40 | quint64(number) << 32 | id;
}

void EntryIndex::makeTable()
{
    m_tableBits = 4;
    while ((std::size_t(1) << m_tableBits) < 4 * m_slots.size())
        ++m_tableBits;
    m_table.resize(std::size_t(1) << m_tableBits);
    for (const auto &[key, slot] : m_slots) {
        std::size_t at = place(key);
        while (m_table[at].slot)
            at = (at + 1) % m_table.size();
        m_table[at] = {key, &slot};
    }
}

// Multiplicative hashing: the high bits of the product are the well mixed ones.
std::size_t EntryIndex::place(quint64 key) const
{
    constexpr quint64 oddFraction = 0x9E3779B97F4A7C15; // 2^64 / golden ratio
    return std::size_t((key * oddFraction) >> (64 - m_tableBits));
}

const EntryIndex::Slot *EntryIndex::find(quint64 key) const
{
    for (std::size_t at = place(key); m_table[at].slot; at = (at + 1) % m_table.size()) {
        if (m_table[at].key == key)
            return m_table[at].slot;
    }
    return nullptr;
}

void EntryIndex::add(Slot &slot, const Taker &taker, const EntrySelection &selection)
{
    slot.isSimple =
        slot.isSimple && !selection.sub && selection.firstBytes.empty() && !selection.multiplexor;
    if (slot.groups.empty() || slot.groups.back() != taker.group)
        slot.groups.push_back(taker.group);
    if (!selection.firstBytes.empty()) {
        if (!slot.firstBytePlaces) {
            slot.firstBytePlaces = std::make_unique<std::array<quint16, 256>>();
            slot.byFirstByte.resize(1);
        }
        for (const quint8 byte : selection.firstBytes) {
            quint16 &place = (*slot.firstBytePlaces)[byte];
            if (place == 0) {
                place = static_cast<quint16>(slot.byFirstByte.size());
                slot.byFirstByte.emplace_back();
            }
            slot.byFirstByte[place].push_back(taker);
        }
        return;
    }
    if (!selection.multiplexor) {
        slot.always.push_back(taker);
        return;
    }
    auto found = std::find_if(slot.byMultiplexor.begin(), slot.byMultiplexor.end(),
                              [&](const auto &by) { return by.field == *selection.multiplexor; });
    if (found == slot.byMultiplexor.end())
        found = slot.byMultiplexor.insert(found, ByMultiplexor{*selection.multiplexor, {}});
    found->byValue[selection.multiplexorValue].push_back(taker);
}

void EntryIndex::collect(const StdLogEntry &entry, const Takers &takers)
{
    for (const Taker &taker : takers) {
        if (!taker.sub || *taker.sub == entry.sub)
            m_found.push_back(taker);
    }
}

const EntryIndex::Groups &EntryIndex::takers(const StdLogEntry &entry)
{
    const quint32 id = entry.type == rawlog::RLD_CAN ? lookupId(entry.id) : 0;
    const Slot *found = find(key(entry.type, entry.number, id));
    if (found && found->isSimple)
        return found->groups;
    m_result.clear();
    if (!found)
        return m_result;
    const Slot &slot = *found;
    m_found.clear();
    collect(entry, slot.always);
    if (slot.firstBytePlaces && !entry.data.empty())
        collect(entry, slot.byFirstByte[(*slot.firstBytePlaces)[entry.data.front()]]);
    for (const ByMultiplexor &by : slot.byMultiplexor) {
        const auto takers =
            by.byValue.find(by.field.bitsIn({entry.data.data(), entry.data.size()}));
        if (takers != by.byValue.end())
            collect(entry, takers->second);
    }
    if (m_found.size() > 1) {
        std::sort(m_found.begin(), m_found.end(),
                  [](const Taker &a, const Taker &b) { return a.order < b.order; });
    }
    for (const Taker &taker : m_found) {
        if (m_result.empty() || m_result.back() != taker.group)
            m_result.push_back(taker.group);
    }
    return m_result;
}
