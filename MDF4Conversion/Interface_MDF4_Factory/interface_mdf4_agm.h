#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/timestampedsource.h"
#include "MDF4Conversion/mdf4_channelgroup.h"

// One axis of the accelerometer and gyroscope block.
struct AgmSource
{
    enum Axis : quint8 { AccelX, AccelY, AccelZ, GyroX, GyroY, GyroZ };

    Axis axis = AccelX;

    [[nodiscard]] quint8 entryType() const { return rawlog::RLD_AGM; }
    [[nodiscard]] quint8 entryNumber() const { return 0; }
    // Entries of any number, which names a processor; all six axes have to be there.
    [[nodiscard]] bool concerns(const StdLogEntry &entry) const;
    [[nodiscard]] bool value(const StdLogEntry &entry, ExtractedValue &result) const;
    [[nodiscard]] static QString overflowText(const QString &name, const char *)
    {
        return overflowHandledText(name);
    }
};

using MDF4_DataChannel_Linear_AGM = ExtractingChannel<MDF4_DataChannel_Linear, AgmSource>;

// Accelerations and rates.
class Interface_MDF4_AGM : public MDF4_ChannelGroup
{
public:
    explicit Interface_MDF4_AGM(const MDF4_ConversionContext &context);

    [[nodiscard]] std::vector<EntrySelection> selections() const override;
};
