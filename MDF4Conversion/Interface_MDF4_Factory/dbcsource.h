#pragma once

#include "MDF4Conversion/entryselection.h"
#include "MDF4Conversion/extractedvalue.h"
#include "MDF4Conversion/extractingchannel.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"

#include <optional>

// The bits of a value in a frame, and the bytes that it takes in a record.
struct BitField
{
    quint32 startBit = 0;
    quint8 bitLength = 0;
    can::BitOrder order = can::BitOrder::Intel;
    ExtractedValue::Kind kind = ExtractedValue::Unsigned;
    quint8 storedBytes = 0;

    // Bytes that a frame needs to hold all bits.
    [[nodiscard]] quint32 frameBytes() const
    {
        if (order != can::BitOrder::Motorola)
            return (startBit + bitLength + 7) / 8;
        const quint32 bitsAhead = 7 - startBit % 8; // of the first byte
        return startBit / 8 + (bitsAhead + bitLength + 7) / 8;
    }

    [[nodiscard]] quint64 bitsIn(can::Bytes frame) const
    {
        const quint64 bits = can::extractBits(frame, startBit, bitLength, order);
        return kind == ExtractedValue::Signed ? can::signExtended(bits, bitLength) : bits;
    }
};

// Where a DBC signal stands: which frames carry it and in which bits.
struct DbcSource
{
    quint8 channel = 0;
    quint32 id = 0;
    bool extended = false;
    quint8 dlc = 0; // bytes of the frame
    quint32 startBit = 0;
    quint32 bitLength = 0;
    can::BitOrder order = can::BitOrder::Intel;
    ExtractedValue::Kind kind = ExtractedValue::Unsigned;
    // Multiplexed signals only.
    std::optional<MultiplexorField> multiplexor;
    quint64 multiplexorValue = 0;

    [[nodiscard]] quint8 entryType() const { return rawlog::RLD_CAN; }
    [[nodiscard]] quint8 entryNumber() const { return channel; }

    [[nodiscard]] bool concerns(const StdLogEntry &entry) const
    {
        return entry.type == rawlog::RLD_CAN && entry.number == channel && entry.info == dlc
               && ((entry.id & rawlog::extendedIdFlag) != 0) == extended
               && rawlog::canIdentifier(entry.id) == id
               && (!multiplexor || multiplexor->valueIn(entry.data) == multiplexorValue);
    }

    [[nodiscard]] bool value(const StdLogEntry &entry, ExtractedValue &result) const
    {
        result.kind = kind;
        result.bits = field(0).bitsIn({entry.data.data(), entry.data.size()});
        return true;
    }

    [[nodiscard]] BitField field(quint32 storedBytes) const
    {
        return {startBit, static_cast<quint8>(qMin<quint32>(bitLength, 64)), order, kind,
                static_cast<quint8>(storedBytes)};
    }

    [[nodiscard]] static QString overflowText(const QString &name, const char *)
    {
        return overflowHandledText(name);
    }
};

using MDF4_DataChannel_Linear_CAN_DBC = ExtractingChannel<MDF4_DataChannel_Linear, DbcSource>;
