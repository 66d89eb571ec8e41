#include "simulator/livestatusentries.h"

#include "MDF4Conversion/rawlog/entrybuilder.h"

#include <QtEndian>

namespace simulator {
namespace {

using rawlog::entryBytes;

constexpr quint8 ethSubTunneling = 2;
constexpr quint8 infoSubXcp = 1;
constexpr quint8 infoSubTunneling = 2;
constexpr quint8 infoSubMirroring = 3;

template <class T>
void appendLe(QByteArray &bytes, T value)
{
    char raw[sizeof(T)];
    qToLittleEndian(value, raw);
    bytes.append(raw, int(sizeof raw));
}

template <class T>
void appendBe(QByteArray &bytes, T value)
{
    char raw[sizeof(T)];
    qToBigEndian(value, raw);
    bytes.append(raw, int(sizeof raw));
}

} // namespace

// The high word of the two stands first.
QByteArray systemInfoEntry(const SystemInfo &info)
{
    QByteArray body;
    appendLe(body, info.supply_mV);
    appendLe(body, info.clockBattery_mV);
    appendLe(body, info.flags);
    appendLe(body, info.uptime_s);
    return entryBytes({rawlog::RLD_SYSTEM_INFO}, body);
}

QByteArray lteEntry(const LteStatus &status)
{
    QByteArray body;
    appendLe(body, status.registration);
    appendLe(body, status.networkKind);
    appendLe(body, status.signal);
    appendLe(body, quint8(0));
    appendLe(body, status.band);
    return entryBytes({rawlog::RLD_LTE}, body);
}

QByteArray rs485InfoEntry(quint8 port, quint8 sessionStatus, quint16 voltage_mV)
{
    QByteArray body;
    appendLe(body, sessionStatus);
    appendLe(body, voltage_mV);
    appendLe(body, quint8(0));
    return entryBytes({rawlog::RLD_RS485_INFO, port}, body);
}

QByteArray d4modInfoEntry(quint8 port, const QVector<quint16> &voltages_mV)
{
    QByteArray body;
    for (const quint16 voltage : voltages_mV)
        appendLe(body, voltage);
    return entryBytes({rawlog::RLD_D4MOD_INFO, port, 0, quint8(voltages_mV.size())}, body);
}

QByteArray ccpXcpInfoEntry(quint8 channel, quint8 sessionStatus, quint8 response)
{
    QByteArray body;
    appendLe(body, sessionStatus);
    appendLe(body, response);
    appendLe(body, quint16(0));
    return entryBytes({rawlog::RLD_CCP_XCP_INFO, channel}, body);
}

// No error; one byte serves the high part of the working counter and the low one of the error.
QByteArray etherCatInfoEntry(quint8 master, quint8 state, quint16 workingCounter)
{
    QByteArray body(8, '\0');
    body[1] = char(state);
    body[2] = char(workingCounter & 0xFF);
    return entryBytes({rawlog::RLD_ETHERCAT_INFO, master}, body);
}

QByteArray ethXcpInfoEntry(qint8 lastError, qint8 mainState, qint8 subState, qint8 step)
{
    QByteArray body;
    for (const qint8 byte : {lastError, mainState, subState, step})
        appendLe(body, byte);
    return entryBytes({rawlog::RLD_ETH_INFO, 0, infoSubXcp}, body);
}

QByteArray tunnelingStatusEntry(quint8 status, qint8 subStatus)
{
    QByteArray body;
    appendLe(body, quint8(0)); // kind
    appendLe(body, status);
    appendLe(body, subStatus);
    appendLe(body, quint8(0));
    return entryBytes({rawlog::RLD_ETH_INFO, 0, infoSubTunneling}, body);
}

QByteArray tunnelingVinEntry(const QByteArray &vin)
{
    constexpr int alignment = 4;
    QByteArray body;
    appendLe(body, quint8(1)); // kind
    appendLe(body, quint8(vin.size()));
    body += vin;
    body.append((alignment - body.size() % alignment) % alignment, '\0');
    return entryBytes({rawlog::RLD_ETH_INFO, 0, infoSubTunneling}, body);
}

QByteArray tunnelingBlockEntry(quint32 timestamp_us, const QVector<TunneledMessage> &messages)
{
    constexpr quint8 firstLin = 4;
    constexpr int blockHead = 16;
    QByteArray payload(blockHead, '\0');
    for (const TunneledMessage &message : messages) {
        appendBe(payload, quint64(timestamp_us));
        appendBe(payload, message.channel);
        appendBe(payload, message.direction);
        if (message.channel < firstLin)
            appendBe(payload, message.id);
        else
            appendBe(payload, quint8(message.id));
        appendBe(payload, quint8(message.data.size()));
        payload += message.data;
    }
    return rawlog::timestampedEntry({rawlog::RLD_ETH, 0, ethSubTunneling}, timestamp_us, payload);
}

QByteArray mirroringStatusEntry(quint8 status, quint64 packetsCaptured)
{
    QByteArray body;
    appendLe(body, quint8(0)); // kind
    appendLe(body, status);
    appendLe(body, packetsCaptured);
    return entryBytes({rawlog::RLD_ETH_INFO, 0, infoSubMirroring}, body);
}

QByteArray mirroredPacketEntry(const QByteArray &ethernetFrame)
{
    QByteArray body;
    appendLe(body, quint8(2)); // kind
    appendLe(body, quint16(ethernetFrame.size()));
    return entryBytes({rawlog::RLD_ETH_INFO, 0, infoSubMirroring}, body + ethernetFrame);
}

} // namespace simulator
