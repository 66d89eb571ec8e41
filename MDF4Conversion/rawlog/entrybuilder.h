#pragma once

#include "MDF4Conversion/rawlog/entrytypes.h"

#include <QByteArray>
#include <QDateTime>
#include <QVector>

// Builds the bytes of raw log entries, for whoever writes logs or plays the logger.
// Timestamps are microseconds on the logger's clock.
namespace rawlog {

struct EntryHead
{
    quint8 type = 0;
    quint8 number = 0;
    quint8 sub = 0;
    quint8 info = 0;
};

// Any entry: head and everything behind it. A body that doesn't fit the length word is cut.
[[nodiscard]] QByteArray entryBytes(EntryHead head, const QByteArray &body);

// An entry whose body begins with a timestamp.
[[nodiscard]] QByteArray timestampedEntry(EntryHead head, quint32 timestamp_us,
                                          const QByteArray &payload);

struct CanFrame
{
    quint32 id = 0;
    bool extended = false;
    QByteArray data; // 0 to 64 bytes
};
[[nodiscard]] QByteArray canEntry(quint32 timestamp_us, quint8 channel, const CanFrame &frame);

// Accelerations in 1e-6 g, rates in 1e-6 °/s, temperature in °C; three opaque words follow.
struct AgmSample
{
    qint32 accel[3] = {};
    qint32 gyro[3] = {};
    qint32 further[3] = {};
    qint8 temperature = 0;
};
[[nodiscard]] QByteArray agmEntry(quint32 timestamp_us, quint8 processor, const AgmSample &sample);

struct GpsFix
{
    bool valid = true;
    QDateTime utc; // of any time zone, written as UTC
    double course_deg = 0;
    double speed_kmh = 0;
    double latitude_deg = 0;
    double longitude_deg = 0;
    double altitude_m = 0;
};
[[nodiscard]] QByteArray gpsEntry(quint32 timestamp_us, const GpsFix &fix);

// One raw value for each channel, at most 15.
[[nodiscard]] QByteArray d4modEntry(quint32 timestamp_us, quint8 port,
                                    const QVector<quint16> &values);
[[nodiscard]] QByteArray d4modTedEntry(quint8 port, quint8 channel, const QByteArray &ted);

// The process image without its head, which is written as zeros.
[[nodiscard]] QByteArray etherCatEntry(quint32 timestamp_us, quint8 bus, const QByteArray &image);

[[nodiscard]] QByteArray syncStampEntry(quint32 timestamp_us, quint8 processor);

// One XCP frame from ethernet port 0; `dto` begins with the PID.
[[nodiscard]] QByteArray ethXcpEntry(quint32 timestamp_us, const QByteArray &dto);

// Start of the log, microseconds since the Unix epoch.
[[nodiscard]] QByteArray utcStartEntry(quint64 utc_us);

[[nodiscard]] QByteArray debugCountersEntry(quint8 processor, quint32 ringBufferOverflows,
                                            quint16 restarts);

} // namespace rawlog
