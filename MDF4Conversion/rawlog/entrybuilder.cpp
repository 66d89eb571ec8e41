#include "MDF4Conversion/rawlog/entrybuilder.h"

#include <QtEndian>

#include <cmath>
#include <limits>

namespace rawlog {
namespace {

constexpr int maxBodySize = 0xFFFF - int(entryHeadSize - lengthOverhead);
constexpr int maxFrameBytes = 64;
constexpr int maxD4ModChannels = 15;

template <class T>
void appendLe(QByteArray &bytes, T value)
{
    char raw[sizeof(T)];
    qToLittleEndian(value, raw);
    bytes.append(raw, int(sizeof(T)));
}

// Sign and magnitude: bit 31 the sign, bits 0 to 30 the magnitude in 1e-7 degree.
quint32 signMagnitude(double degrees)
{
    const auto magnitude = static_cast<quint32>(std::lround(std::abs(degrees) * 1e7)) & 0x7FFFFFFFU;
    return magnitude | (degrees < 0 ? 0x80000000U : 0U);
}

template <class T>
T scaled(double value, double unit)
{
    const double low = double(std::numeric_limits<T>::min());
    const double high = double(std::numeric_limits<T>::max());
    return static_cast<T>(std::lround(qBound(low, value / unit, high)));
}

} // namespace

QByteArray entryBytes(EntryHead head, const QByteArray &body)
{
    const QByteArray held = body.left(maxBodySize);
    QByteArray bytes;
    bytes.reserve(int(entryHeadSize) + held.size());
    appendLe(bytes, syncWord);
    appendLe(bytes, static_cast<quint16>(entryHeadSize - lengthOverhead + quint32(held.size())));
    appendLe(bytes, head.type);
    appendLe(bytes, head.number);
    appendLe(bytes, head.sub);
    appendLe(bytes, head.info);
    return bytes + held;
}

QByteArray timestampedEntry(EntryHead head, quint32 timestamp_us, const QByteArray &payload)
{
    QByteArray body;
    appendLe(body, timestamp_us);
    return entryBytes(head, body + payload);
}

QByteArray canEntry(quint32 timestamp_us, quint8 channel, const CanFrame &frame)
{
    const QByteArray data = frame.data.left(maxFrameBytes);
    QByteArray payload;
    appendLe(payload, frame.extended ? (frame.id & extendedIdMask) | extendedIdFlag
                                     : frame.id & standardIdMask);
    const EntryHead head{RLD_CAN, channel, 0, static_cast<quint8>(data.size())};
    return timestampedEntry(head, timestamp_us, payload + data);
}

QByteArray agmEntry(quint32 timestamp_us, quint8 processor, const AgmSample &sample)
{
    QByteArray payload;
    for (const auto *words : {&sample.accel, &sample.gyro, &sample.further}) {
        for (const qint32 word : *words)
            appendLe(payload, word);
    }
    const EntryHead head{RLD_AGM, processor, 0, static_cast<quint8>(sample.temperature)};
    return timestampedEntry(head, timestamp_us, payload);
}

QByteArray gpsEntry(quint32 timestamp_us, const GpsFix &fix)
{
    const QDateTime utc = fix.utc.toUTC();
    const QDate date = utc.date();
    const QTime time = utc.time();
    QByteArray payload;
    appendLe(payload, static_cast<quint8>(fix.valid ? 1 : 0));
    appendLe(payload, static_cast<quint8>(time.hour()));
    appendLe(payload, static_cast<quint8>(time.minute()));
    appendLe(payload, static_cast<quint8>(time.second()));
    appendLe(payload, static_cast<quint16>(date.year()));
    appendLe(payload, static_cast<quint8>(date.month()));
    appendLe(payload, static_cast<quint8>(date.day()));
    appendLe(payload, scaled<quint16>(fix.course_deg, 0.1));
    appendLe(payload, scaled<quint16>(fix.speed_kmh, 0.01));
    appendLe(payload, signMagnitude(fix.latitude_deg));
    appendLe(payload, signMagnitude(fix.longitude_deg));
    appendLe(payload, scaled<qint16>(fix.altitude_m, 0.1));
    appendLe(payload, quint16(0));
    return timestampedEntry({RLD_GPS, 0, 0, 0}, timestamp_us, payload);
}

QByteArray d4modEntry(quint32 timestamp_us, quint8 port, const QVector<quint16> &values)
{
    const int count = qMin(values.size(), maxD4ModChannels);
    QByteArray payload;
    for (int i = 0; i < count; ++i)
        appendLe(payload, values.at(i));
    return timestampedEntry({RLD_D4MOD, port, 0, static_cast<quint8>(count)}, timestamp_us,
                            payload);
}

QByteArray d4modTedEntry(quint8 port, quint8 channel, const QByteArray &ted)
{
    return entryBytes({RLD_D4MOD_TED, port, 0, channel}, ted + '\0');
}

QByteArray etherCatEntry(quint32 timestamp_us, quint8 bus, const QByteArray &image)
{
    return timestampedEntry({RLD_ETHERCAT, bus, 0, 0}, timestamp_us,
                            QByteArray(int(etherCatHeadSize), '\0') + image);
}

QByteArray syncStampEntry(quint32 timestamp_us, quint8 processor)
{
    return timestampedEntry({RLD_CYCLIC_TS, processor, 0, 0}, timestamp_us, {});
}

QByteArray ethXcpEntry(quint32 timestamp_us, const QByteArray &dto)
{
    return timestampedEntry({RLD_ETH, 0, ethSubXcp, 0}, timestamp_us, dto);
}

QByteArray utcStartEntry(quint64 utc_us)
{
    QByteArray body(4, '\0');
    appendLe(body, utc_us);
    return entryBytes({RLD_UTC_START, 0, 0, 0}, body);
}

QByteArray debugCountersEntry(quint8 processor, quint32 ringBufferOverflows, quint16 restarts)
{
    QByteArray body;
    appendLe(body, ringBufferOverflows);
    appendLe(body, restarts);
    appendLe(body, quint16(0));
    return entryBytes({RLD_DBG_COUNTERS, processor, 0, 0}, body);
}

} // namespace rawlog
