#pragma once

#include "link/liveobjects.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

// Decoders of the entries of the live stream. Each takes a whole entry (see FrameReader) and gives
// nothing when the entry doesn't pass its test or is shorter than what it announces. Integers are
// little-endian.
namespace live {

constexpr int canChannels = 12;
constexpr int rs485Ports = 10;

// Bytes 4 to 7 of every entry.
[[nodiscard]] inline quint8 typeOf(const QByteArray &entry)
{
    return quint8(entry.at(4));
}
[[nodiscard]] inline quint8 numberOf(const QByteArray &entry)
{
    return quint8(entry.at(5));
}
[[nodiscard]] inline quint8 subOf(const QByteArray &entry)
{
    return quint8(entry.at(6));
}
[[nodiscard]] inline quint8 infoOf(const QByteArray &entry)
{
    return quint8(entry.at(7));
}

// The caller's. The identifier is the one that the raw log's reader takes from the word. Null, too,
// for a frame that no bus can have: of a length between those of CAN FD, or a remote frame above 8
// bytes, which only the FD format has.
[[nodiscard]] CAN_Msg_Class *canMessage(const QByteArray &entry);
[[nodiscard]] std::optional<AGM_DataContainer> agmSample(const QByteArray &entry);
[[nodiscard]] QVector<D4Mod_Msg_Class> d4modValues(const QByteArray &entry);
[[nodiscard]] std::optional<GPS_DataContainer> gpsFix(const QByteArray &entry);
[[nodiscard]] std::optional<LTE_DataContainer> lteStatus(const QByteArray &entry);
[[nodiscard]] std::optional<SystemInfos> systemInfos(const QByteArray &entry);

// RLD_ETH of port 0, and its two kinds that are shown.
[[nodiscard]] bool isEthernetEntry(const QByteArray &entry);
constexpr quint8 xcpFrameSub = 1;
constexpr quint8 tunnelingSub = 2;
[[nodiscard]] ETH_Frame_Class *ethernetFrame(const QByteArray &entry); // the caller's

// RLD_ETH_INFO of sub 1.
struct XcpInfos
{
    qint8 lastError = 0;
    qint8 mainState = 0;
    qint8 subState = 0;
    qint8 subStateStep = 0;
};
[[nodiscard]] std::optional<XcpInfos> xcpInfos(const QByteArray &entry);

struct EtherCatInfos
{
    quint8 masterState = 0;
    quint16 workingCounter = 0;
    quint16 lastError = 0;
    quint8 lastErrorSlave = 0;
};
[[nodiscard]] std::optional<EtherCatInfos> etherCatInfos(const QByteArray &entry);

// DTI supply voltages in mV, one for each channel of the port.
[[nodiscard]] QVector<quint16> dtiVoltages(const QByteArray &entry);

// One TED text; null without the marks of one.
[[nodiscard]] QString tedText(const QByteArray &entry);

struct Rs485Infos
{
    quint8 sessionStatus = 0;
    quint16 voltage_mV = 0;
};
[[nodiscard]] std::optional<Rs485Infos> rs485Infos(const QByteArray &entry);

struct CcpXcpInfos
{
    quint8 sessionStatus = 0;
    quint8 lastSlaveResponse = 0;
};
[[nodiscard]] std::optional<CcpXcpInfos> ccpXcpInfos(const QByteArray &entry);

// Bytes that came in on an RS485 port in transparent mode.
struct TransparentData
{
    enum class Result { Data, Dropped, UnknownInterface };
    Result result = Result::Dropped;
    QByteArray data; // may be empty
};
[[nodiscard]] TransparentData transparentData(const QByteArray &entry);

} // namespace live
