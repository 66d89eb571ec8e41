#pragma once

#include "MDF4Conversion/rawlog/entrytypes.h"
#include "can/bitfield.h"

#include <QtGlobal>

#include <optional>
#include <vector>

// A set of entries that a channel group may take, in the terms by which entries are looked up.
struct EntrySelection
{
    quint8 type = 0;
    std::optional<quint8> number; // any number when empty
    std::optional<quint8> sub;    // any when empty
    // RLD_CAN only: the identifier, with rawlog::extendedIdFlag for one of 29 bits.
    std::optional<quint32> canId;
    // First payload bytes (PIDs); any when empty.
    std::vector<quint8> firstBytes;
    // The value that tells multiplexed frames of one identifier apart.
    std::optional<can::BitField> multiplexor;
    quint64 multiplexorValue = 0;
};

// The identifier of an entry in the terms of EntrySelection::canId.
[[nodiscard]] constexpr quint32 lookupId(quint32 idWord)
{
    return rawlog::canIdentifier(idWord) | (idWord & rawlog::extendedIdFlag);
}
