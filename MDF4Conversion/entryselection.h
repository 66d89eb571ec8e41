#pragma once

#include "MDF4Conversion/rawlog/entrytypes.h"
#include "can/bitextraction.h"

#include <QtGlobal>

#include <optional>
#include <tuple>
#include <vector>

// Where the value stands that tells multiplexed frames of one identifier apart.
struct MultiplexorField
{
    quint32 startBit = 0;
    quint32 bitLength = 0;
    can::BitOrder order = can::BitOrder::Intel;

    [[nodiscard]] quint64 valueIn(const std::vector<quint8> &data) const
    {
        return can::extractBits({data.data(), data.size()}, startBit, bitLength, order);
    }

    friend bool operator==(const MultiplexorField &a, const MultiplexorField &b)
    {
        return std::tie(a.startBit, a.bitLength, a.order)
               == std::tie(b.startBit, b.bitLength, b.order);
    }
};

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
    std::optional<MultiplexorField> multiplexor;
    quint64 multiplexorValue = 0;
};

// The identifier of an entry in the terms of EntrySelection::canId.
[[nodiscard]] constexpr quint32 lookupId(quint32 idWord)
{
    return rawlog::canIdentifier(idWord) | (idWord & rawlog::extendedIdFlag);
}
