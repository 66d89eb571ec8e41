#include "MDF4Conversion/rawlog/drive/canbus.h"
#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

#include <algorithm>
#include <cmath>

namespace drive {
namespace {

using V = const VehicleState &;

constexpr quint8 busChannel = 5;

// A module message with the value of one of its channels.
struct AimMessage
{
    AimMsgMeta meta;
    qint64 period_us;
    double (*value)(V, int channel);
    double noise;
};

AimMsgMeta aimMeta(quint32 id, const QString &name, const QString &unit)
{
    AimMsgMeta meta;
    meta.MsgId = id;
    meta.msgLength = 8;
    meta.name = name;
    meta.unit = unit;
    meta.sampleSizeInBytes = 2;
    return meta;
}

// Four channels with one sample each.
AimMessage wheelForces()
{
    AimMsgMeta meta = aimMeta(0x129, QStringLiteral("Wheel"), QStringLiteral("N"));
    meta.channelsInMsg = 4;
    meta.samplesInMsg = 1;
    meta.isSigned = true;
    meta.isMsbFirst = true;
    const auto force = [](V v, int channel) {
        const int side = channel % 2 == 0 ? 1 : -1;
        return 4100 - side * 420 * v.lateralAcceleration_mps2 - 210 * v.acceleration_mps2;
    };
    return {meta, 10'000, force, 60};
}

// Two channels with two samples each.
AimMessage damperTravel()
{
    AimMsgMeta meta = aimMeta(0x12A, QStringLiteral("Damper"), QStringLiteral("0.01 mm"));
    meta.channelsInMsg = 2;
    meta.samplesInMsg = 2;
    meta.isSigned = true;
    const auto travel = [](V v, int channel) {
        const int end = channel == 0 ? 1 : -1;
        return 900 * sineOfTurns(v.distance_m / 9) - end * 350 * v.acceleration_mps2;
    };
    return {meta, 10'000, travel, 25};
}

// Two channels with one sample and one unused byte each, in six bytes of the frame.
AimMessage pressures()
{
    AimMsgMeta meta = aimMeta(0x12B, QStringLiteral("Pressure"), QStringLiteral("mbar"));
    meta.channelsInMsg = 2;
    meta.samplesInMsg = 1;
    meta.gapBetweenChannelsInBytes = 1;
    meta.isMsbFirst = true;
    const auto pressure = [](V v, int channel) {
        return channel == 0 ? 1013 - v.speed_mps * v.speed_mps * 0.006 : v.brakePressure_bar * 500;
    };
    return {meta, 20'000, pressure, 1};
}

void putSample(QByteArray &data, const AimMsgMeta &meta, int channel, int sample, double value)
{
    const int bits = meta.sampleSizeInBytes * 8;
    const int channelBits = meta.samplesInMsg * bits + meta.gapBetweenChannelsInBytes * 8;
    const int position = channel * channelBits + sample * bits;
    const double low = meta.isSigned ? -32768 : 0;
    const auto raw = std::lround(std::clamp(value, low, low + 65535));
    const auto order = meta.isMsbFirst ? BitOrder::Motorola : BitOrder::Intel;
    const int first = meta.isMsbFirst ? position + 7 : position;
    putBits(data, first, bits, order, static_cast<quint64>(raw));
}

// The samples of a message were taken one after the other since the last message.
QByteArray frameEntry(const AimMessage &message, const Moment &moment, const Vehicle &vehicle)
{
    const AimMsgMeta &meta = message.meta;
    QByteArray data(meta.msgLength, '\0');
    for (int sample = 0; sample < meta.samplesInMsg; ++sample) {
        const qint64 ago_us = message.period_us * (meta.samplesInMsg - sample) / meta.samplesInMsg;
        const double taken_s = double(std::max<qint64>(0, moment.due_us - ago_us)) * 1e-6;
        const VehicleState state = vehicle.at(taken_s);
        for (int channel = 0; channel < meta.channelsInMsg; ++channel) {
            const quint32 stream = meta.MsgId << 16 | quint32(channel * meta.samplesInMsg + sample);
            const double value =
                message.value(state, channel) + message.noise * noise(stream, moment.tick);
            putSample(data, meta, channel, sample, value);
        }
    }
    return rawlog::canEntry(moment.timestamp_us, busChannel, {meta.MsgId, false, data});
}

} // namespace

// Measuring modules on a CAN bus of their own.
void addAimModules(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    constexpr qint64 distance_us = 1500;
    TerminalCanCfg &can = configuration.can[busChannel];
    can.enabled = 1;
    can.termination = 1;
    qint64 first_us = distance_us;
    for (const AimMessage &message : {wheelForces(), damperTravel(), pressures()}) {
        addExactFilter(can, message.meta.MsgId, false);
        can.aim_modules.add() = message.meta;
        schedule.every(message.period_us, first_us, 30, [message, &vehicle](const Moment &moment) {
            return frameEntry(message, moment, vehicle);
        });
        first_us += distance_us;
    }
}

} // namespace drive
