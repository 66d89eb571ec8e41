#pragma once

#include "MDF4Conversion/entryselection.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"

#include <array>
#include <memory>
#include <unordered_map>
#include <vector>

class MDF4_ChannelGroup;

// Finds the groups that may take an entry, in the order of the groups, without asking all of them.
class EntryIndex
{
public:
    using Groups = std::vector<MDF4_ChannelGroup *>;

    // The groups stay with the caller and outlive the index.
    explicit EntryIndex(const Groups &groups);
    ~EntryIndex();

    // Valid until the next call.
    [[nodiscard]] const Groups &takers(const StdLogEntry &entry);

private:
    struct Taker
    {
        int order = 0; // place in the list of groups
        MDF4_ChannelGroup *group = nullptr;
        std::optional<quint8> sub;
    };
    using Takers = std::vector<Taker>;
    struct ByMultiplexor
    {
        can::BitField field;
        std::unordered_map<quint64, Takers> byValue;
    };
    // The takers of one type, number and identifier.
    struct Slot
    {
        Groups groups; // all of them, as long as they need nothing else to be looked at
        bool isSimple = true;
        Takers always;
        // Place in byFirstByte, 0 for none: a log may have as many slots as groups.
        std::unique_ptr<std::array<quint16, 256>> firstBytePlaces;
        std::vector<Takers> byFirstByte; // the first one is empty
        std::vector<ByMultiplexor> byMultiplexor;
    };

    static void add(Slot &slot, const Taker &taker, const EntrySelection &selection);
    void collect(const StdLogEntry &entry, const Takers &takers);
    void makeTable();
    [[nodiscard]] const Slot *find(quint64 key) const;
    [[nodiscard]] std::size_t place(quint64 key) const;
    static quint64 key(quint8 type, quint8 number, quint32 id);

    std::unordered_map<quint64, Slot> m_slots;
    // The same by open addressing, with a power of two places and room to spare.
    struct Place
    {
        quint64 key = 0;
        const Slot *slot = nullptr;
    };
    std::vector<Place> m_table;
    int m_tableBits = 0;
    Takers m_found;
    Groups m_result;
};
