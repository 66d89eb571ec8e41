#pragma once

#include "MDF4Conversion/entryselection.h"
#include "MDF4Conversion/extractingchannel.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "can/bitfield.h"

#include <optional>

// Where a DBC signal stands: which frames carry it and in which bits.
struct DbcSource
{
    quint8 channel = 0;
    quint32 id = 0;
    bool extended = false;
    quint8 dlc = 0; // bytes of the frame
    can::BitField field;
    // Multiplexed signals only.
    std::optional<can::BitField> multiplexor;
    quint64 multiplexorValue = 0;

    [[nodiscard]] quint8 entryType() const { return rawlog::RLD_CAN; }
    [[nodiscard]] quint8 entryNumber() const { return channel; }

    [[nodiscard]] bool concerns(const StdLogEntry &entry) const
    {
        return entry.type == rawlog::RLD_CAN && entry.number == channel && entry.info == dlc
               && ((entry.id & rawlog::extendedIdFlag) != 0) == extended
               && rawlog::canIdentifier(entry.id) == id
               && (!multiplexor || multiplexor->bitsIn(bytesOf(entry)) == multiplexorValue);
    }

    [[nodiscard]] bool value(const StdLogEntry &entry, ExtractedValue &result) const
    {
        result = field.valueIn(bytesOf(entry));
        return true;
    }

    [[nodiscard]] static can::Bytes bytesOf(const StdLogEntry &entry)
    {
        return {entry.data.data(), entry.data.size()};
    }

    [[nodiscard]] static QString overflowText(const QString &name, const char *)
    {
        return overflowHandledText(name);
    }
};

using MDF4_DataChannel_Linear_CAN_DBC = ExtractingChannel<MDF4_DataChannel_Linear, DbcSource>;
