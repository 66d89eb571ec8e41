#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/timestampedsource.h"
#include "MDF4Conversion/mdf4_channelgroup.h"

// One value of a GPS fix.
struct GpsSource
{
    enum Field : quint8 {
        Valid,
        Latitude,
        Longitude,
        SpeedOverGround,
        CourseOverGround,
        Altitude,
        DateAndTime
    };

    Field field = Valid;

    [[nodiscard]] quint8 entryType() const { return rawlog::RLD_GPS; }
    [[nodiscard]] quint8 entryNumber() const { return 0; }
    // Entries of any number; the fix has to be whole.
    [[nodiscard]] bool concerns(const StdLogEntry &entry) const;
    [[nodiscard]] bool value(const StdLogEntry &entry, ExtractedValue &result) const;
    [[nodiscard]] static QString overflowText(const QString &name, const char *)
    {
        return overflowHandledText(name);
    }
};

using MDF4_DataChannel_Linear_GPS = ExtractingChannel<MDF4_DataChannel_Linear, GpsSource>;
using MDF4_DataChannel_Identity_GPS = ExtractingChannel<MDF4_DataChannel_Identity, GpsSource>;

// The fixes of the GPS receiver.
class Interface_MDF4_GPS : public MDF4_ChannelGroup
{
public:
    explicit Interface_MDF4_GPS(const MDF4_ConversionContext &context);

    [[nodiscard]] std::vector<EntrySelection> selections() const override;
};
