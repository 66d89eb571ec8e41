#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_agm.h"

namespace {

constexpr std::size_t wordBytes = 4;
constexpr std::size_t axisCount = 6;
constexpr double microUnits = 1e-6;

struct AgmChannel
{
    AgmSource::Axis axis;
    const char *name;
    const char *unit;
};

constexpr AgmChannel agmChannels[axisCount] = {
    {AgmSource::AccelX, "ACCEL_X", "g"}, {AgmSource::AccelY, "ACCEL_Y", "g"},
    {AgmSource::AccelZ, "ACCEL_Z", "g"}, {AgmSource::GyroX, "GYRO_X", "°/s"},
    {AgmSource::GyroY, "GYRO_Y", "°/s"}, {AgmSource::GyroZ, "GYRO_Z", "°/s"},
};

} // namespace

bool AgmSource::concerns(const StdLogEntry &entry) const
{
    return entry.type == rawlog::RLD_AGM && entry.data.size() >= axisCount * wordBytes;
}

bool AgmSource::value(const StdLogEntry &entry, ExtractedValue &result) const
{
    assert(axis < axisCount && "Unhandled enum constant.");
    result = payload::ofSigned(payload::at<qint32>(entry.data, axis * wordBytes));
    return true;
}

Interface_MDF4_AGM::Interface_MDF4_AGM(const MDF4_ConversionContext &handler)
    : MDF4_ChannelGroup(handler, QStringLiteral("Accelerometer/Gyroscope"), rawlog::RLD_AGM)
{
    for (const AgmChannel &row : agmChannels) {
        auto channel = std::make_unique<MDF4_DataChannel_Linear_AGM>(AgmSource{row.axis});
        channel->name = QString::fromLatin1(row.name);
        channel->unit = QString::fromUtf8(row.unit);
        channel->dataType = MdfDataType::SignedLittleEndian;
        channel->size = wordBytes;
        channel->factor = microUnits;
        addChannel(std::move(channel));
    }
}

std::vector<EntrySelection> Interface_MDF4_AGM::selections() const
{
    EntrySelection all;
    all.type = ReqType;
    return {all};
}
