#pragma once

#include <QByteArray>
#include <QVector>

// Entries of the live stream that no raw log needs, as bytes.
namespace simulator {

struct SystemInfo
{
    quint16 supply_mV = 0;
    quint16 clockBattery_mV = 0;
    quint32 flags = 0;
    quint32 uptime_s = 0;
};
// Flags of SystemInfo.
constexpr quint32 auxSupplyFault = 1U << 8;
constexpr quint32 loggingRuns = 1U << 11;
constexpr quint32 auxSupplyOn = 1U << 12;
[[nodiscard]] QByteArray systemInfoEntry(const SystemInfo &info);

struct LteStatus
{
    quint8 registration = 0;
    quint8 networkKind = 0;
    quint8 signal = 0;
    quint32 band = 0;
};
[[nodiscard]] QByteArray lteEntry(const LteStatus &status);

[[nodiscard]] QByteArray rs485InfoEntry(quint8 port, quint8 sessionStatus, quint16 voltage_mV);
// One supply voltage for each channel, 1 to 15, in mV.
[[nodiscard]] QByteArray d4modInfoEntry(quint8 port, const QVector<quint16> &voltages_mV);
[[nodiscard]] QByteArray ccpXcpInfoEntry(quint8 channel, quint8 sessionStatus, quint8 response);
[[nodiscard]] QByteArray etherCatInfoEntry(quint8 master, quint8 state, quint16 workingCounter);

// XCP on ethernet; lastError -1: none.
[[nodiscard]] QByteArray ethXcpInfoEntry(qint8 lastError, qint8 mainState, qint8 subState,
                                         qint8 step);
// Tunneling: status 0 standby, 1 running, 2 error.
[[nodiscard]] QByteArray tunnelingStatusEntry(quint8 status, qint8 subStatus);
[[nodiscard]] QByteArray tunnelingVinEntry(const QByteArray &vin);

struct TunneledMessage
{
    quint8 channel = 0;   // 0 to 3 CAN, 4 to 6 LIN
    quint8 direction = 0; // 0 received, 1 sent
    quint32 id = 0;       // one byte on LIN
    QByteArray data;      // up to 64 bytes, on LIN 8
};
// A block of messages that all have this time.
[[nodiscard]] QByteArray tunnelingBlockEntry(quint32 timestamp_us,
                                             const QVector<TunneledMessage> &messages);

// Mirroring: status 0 standby, 1 init, 2 running, 3 error.
[[nodiscard]] QByteArray mirroringStatusEntry(quint8 status, quint64 packetsCaptured);
[[nodiscard]] QByteArray mirroredPacketEntry(const QByteArray &ethernetFrame);

} // namespace simulator
