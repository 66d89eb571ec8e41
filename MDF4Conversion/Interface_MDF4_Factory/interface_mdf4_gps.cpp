#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_gps.h"

#include <QDate>

using namespace payload;

namespace {

// Offsets in the payload, which begins with the flags.
enum Offset : std::size_t {
    FlagsAt = 0,
    HourAt = 1,
    MinuteAt = 2,
    SecondAt = 3,
    YearAt = 4,
    MonthAt = 6,
    DayAt = 7,
    CourseAt = 8,
    SpeedAt = 10,
    LatitudeAt = 12,
    LongitudeAt = 16,
    AltitudeAt = 20,
    FixSize = 22
};

constexpr quint8 fixValidFlag = 1;

struct GpsChannel
{
    GpsSource::Field field;
    const char *name;
    MdfDataType type;
    quint32 size;
    double factor; // 0: no conversion
    const char *unit;
};

constexpr GpsChannel gpsChannels[] = {
    {GpsSource::Valid, "GPS_VALID", MdfDataType::UnsignedLittleEndian, 1, 1, ""},
    {GpsSource::Latitude, "GPS_LATITUDE", MdfDataType::RealLittleEndian, 8, 1, "°"},
    {GpsSource::Longitude, "GPS_LONGITUDE", MdfDataType::RealLittleEndian, 8, 1, "°"},
    {GpsSource::SpeedOverGround, "GPS_SPEED_OVER_GROUND", MdfDataType::UnsignedLittleEndian, 2,
     0.01, "km/h"},
    {GpsSource::CourseOverGround, "GPS_COURSE_OVER_GROUND", MdfDataType::UnsignedLittleEndian, 2,
     0.1, "°"},
    {GpsSource::Altitude, "GPS_ALTITUDE", MdfDataType::SignedLittleEndian, 2, 0.1, "m"},
    {GpsSource::DateAndTime, "GPS_DATE_TIME", MdfDataType::CanOpenTime, 6, 0, ""},
};

// Sign in bit 31, magnitude in units of 1e-7 degree.
double degrees(quint32 signMagnitude)
{
    const double magnitude = double(signMagnitude & 0x7FFFFFFFU) / 1e7;
    return signMagnitude & 0x80000000U ? -magnitude : magnitude;
}

// CANopen TIME_OF_DAY: milliseconds of the day in 28 bits, then the days since 1984-01-01 in 16.
quint64 canOpenTime(const std::vector<quint8> &data)
{
    const quint32 milliseconds =
        data[HourAt] * 3600000U + data[MinuteAt] * 60000U + data[SecondAt] * 1000U;
    const QDate base(1984, 1, 1);
    const QDate date(at<quint16>(data, YearAt), data[MonthAt], data[DayAt]);
    const qint64 days = date.isValid() ? qBound<qint64>(0, base.daysTo(date), 0xFFFF) : 0;
    return (milliseconds & 0x0FFFFFFFU) | quint64(days) << 32;
}

template <class Channel>
std::unique_ptr<Channel> makeChannel(const GpsChannel &row)
{
    auto channel = std::make_unique<Channel>(GpsSource{row.field});
    channel->name = QString::fromLatin1(row.name);
    channel->dataType = row.type;
    channel->size = row.size;
    channel->unit = QString::fromUtf8(row.unit);
    return channel;
}

} // namespace

bool GpsSource::concerns(const StdLogEntry &entry) const
{
    return entry.type == rawlog::RLD_GPS && entry.data.size() >= FixSize;
}

bool GpsSource::value(const StdLogEntry &entry, ExtractedValue &result) const
{
    const std::vector<quint8> &data = entry.data;
    switch (field) {
    case Valid:
        result = ofUnsigned(data[FlagsAt] & fixValidFlag);
        return true;
    case Latitude:
        result = ofDouble(degrees(at<quint32>(data, LatitudeAt)));
        return true;
    case Longitude:
        result = ofDouble(degrees(at<quint32>(data, LongitudeAt)));
        return true;
    case SpeedOverGround:
        result = ofUnsigned(at<quint16>(data, SpeedAt));
        return true;
    case CourseOverGround:
        result = ofUnsigned(at<quint16>(data, CourseAt));
        return true;
    case Altitude:
        result = ofSigned(at<qint16>(data, AltitudeAt));
        return true;
    case DateAndTime:
        result = ofUnsigned(canOpenTime(data));
        return true;
    }
    return false;
}

Interface_MDF4_GPS::Interface_MDF4_GPS(const MDF4_ConversionContext &handler)
    : MDF4_ChannelGroup(handler, QStringLiteral("GPS"), rawlog::RLD_GPS)
{
    for (const GpsChannel &row : gpsChannels) {
        if (row.factor == 0) {
            addChannel(makeChannel<MDF4_DataChannel_Identity_GPS>(row));
            continue;
        }
        auto channel = makeChannel<MDF4_DataChannel_Linear_GPS>(row);
        channel->factor = row.factor;
        addChannel(std::move(channel));
    }
}

std::vector<EntrySelection> Interface_MDF4_GPS::selections() const
{
    EntrySelection all;
    all.type = ReqType;
    return {all};
}
