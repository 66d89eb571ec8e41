#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"
#include "simulator/daqsource.h"
#include "simulator/livesources.h"
#include "simulator/livestatusentries.h"

#include <QtEndian>

#include <cmath>

namespace simulator {
namespace {

using drive::Moment;
using drive::Schedule;
using drive::Vehicle;

constexpr qint64 statusPeriod_us = 500'000;
constexpr qint8 none = -1;

void addXcp(const StreamingClass_A2L_Module &module, Schedule &schedule, const Vehicle &vehicle)
{
    constexpr qint8 daqRunning = 8;
    TerminalStruct described;
    Schedule unused;
    drive::addAssistanceEcu(described, unused, vehicle);
    if (record::equal(described.eth.xcp.module, module)) {
        drive::addAssistanceEcu(described, schedule, vehicle);
    } else {
        addDaqLists(module, schedule, vehicle,
                    [](int, const Moment &moment, const QByteArray &dto) {
                        return rawlog::ethXcpEntry(moment.timestamp_us, dto);
                    });
    }
    schedule.every(statusPeriod_us, 50'000, 0,
                   [](const Moment &) { return ethXcpInfoEntry(none, daqRunning, 0, none); });
}

// The identifiers that the gateway tunnels: the first of each filter, else one of each channel.
QVector<TunneledMessage> tunneledMessages(const EthTunnelingCfg &tunneling)
{
    constexpr quint8 channels = 7;
    constexpr int maxMessages = 16; // they fit one entry
    QVector<TunneledMessage> messages;
    for (const TunnelingFilter *filter : tunneling.filters) {
        if (filter->channel < channels && messages.size() < maxMessages)
            messages.append({filter->channel, 0, filter->from_id, {}});
    }
    if (messages.isEmpty()) {
        for (quint8 channel = 0; channel < channels; ++channel)
            messages.append({channel, 0, 0x10U + channel, {}});
    }
    return messages;
}

void addTunneling(const EthTunnelingCfg &tunneling, Schedule &schedule, const Vehicle &vehicle)
{
    constexpr quint8 running = 1;
    constexpr qint8 acquisitionRuns = 16;
    constexpr qint64 period_us = 20'000;
    schedule.every(
        period_us, 4100, 100,
        [messages = tunneledMessages(tunneling), &vehicle](const Moment &moment) mutable {
            const auto speed = quint16(vehicle.at(moment.due_s()).speed_kmh() * 100);
            for (TunneledMessage &message : messages) {
                message.data = QByteArray(8, '\0');
                qToBigEndian(speed, message.data.data());
                message.data[7] = char(moment.tick & 0xFF);
            }
            return tunnelingBlockEntry(moment.timestamp_us, messages);
        });
    schedule.every(statusPeriod_us, 60'000, 0, [](const Moment &moment) {
        constexpr int vinEvery = 10;
        const QByteArray status = tunnelingStatusEntry(running, acquisitionRuns);
        return moment.tick % vinEvery ? status : status + tunnelingVinEntry("SIM00000000000001");
    });
}

// A UDP packet between two ECUs, without checksums. The counter is its identification and begins its
// payload.
QByteArray udpFrame(quint16 count)
{
    QByteArray counter(sizeof count, '\0');
    qToBigEndian(count, counter.data());
    return QByteArray::fromHex("0250000000020250000000010800" // ethernet
                               "45000028")                    // IPv4
           + counter
           + QByteArray::fromHex("0000401100000a0000010a000002"
                                 "8235823600140000") // UDP
           + counter + QByteArray(10, '\0');
}

void addMirroring(Schedule &schedule)
{
    constexpr quint8 running = 2;
    constexpr qint64 period_us = 50'000;
    schedule.every(period_us, 5200, 200, [](const Moment &moment) {
        return mirroredPacketEntry(udpFrame(quint16(moment.tick)));
    });
    schedule.every(statusPeriod_us, 70'000, 0, [](const Moment &moment) {
        return mirroringStatusEntry(running, quint64(moment.due_us / period_us));
    });
}

} // namespace

void addEthernetSources(const TerminalStruct &configuration, Schedule &schedule,
                        const Vehicle &vehicle)
{
    constexpr quint8 xcpModule = 1;
    constexpr quint8 hsfzModule = 2;
    const StreamingClass_Cfg_Ethernet &eth = configuration.eth;
    if ((eth.module_selection & xcpModule) && eth.xcp.module.config.enabled)
        addXcp(eth.xcp.module, schedule, vehicle);
    if (!(eth.module_selection & hsfzModule))
        return;
    if (eth.tunneling.tunneling_enabled)
        addTunneling(eth.tunneling, schedule, vehicle);
    if (eth.tunneling.mirroring_enabled)
        addMirroring(schedule);
}

} // namespace simulator
