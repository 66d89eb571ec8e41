#include "MDF4Conversion/rawlog/drive/canbus.h"

#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace drive {
namespace {

constexpr qint64 jitter_us = 80;
constexpr qint64 gap_us = 310; // between the first frames of two messages

struct Range
{
    double low;
    double high;
};

// Raw values that the bits can hold; for 64 bits what a double can tell of it.
Range rawRange(const Bits &bits)
{
    const double count = std::ldexp(1.0, bits.length);
    if (bits.sign == Sign::Signed)
        return {-count / 2, count / 2 - 1};
    return {0, bits.length < 53 ? count - 1 : count * (1 - 1e-15)};
}

quint64 rawBits(const Bits &bits, double raw)
{
    const Range range = rawRange(bits);
    const double rounded = std::floor(std::clamp(raw, range.low, range.high) + 0.5);
    return rounded < 0 ? static_cast<quint64>(static_cast<qint64>(rounded))
                       : static_cast<quint64>(rounded);
}

// Values of the multiplexor that signals of the message have, rising, each once.
std::vector<qint32> muxValues(const CanMessage &message)
{
    std::vector<qint32> values;
    for (const CanSignal &signal : message.signalList) {
        if (signal.kind == MultiplexedSignal)
            values.push_back(signal.muxValue);
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

// Makes the frames of one message.
class FrameMaker
{
public:
    FrameMaker(const Vehicle &vehicle, quint8 channel, CanMessage message)
        : m_vehicle(vehicle)
        , m_channel(channel)
        , m_message(std::move(message))
        , m_muxValues(muxValues(m_message))
    {}

    QByteArray entry(const Moment &moment) const
    {
        const VehicleState state = m_vehicle.at(moment.due_s());
        const qint32 mux =
            m_muxValues.empty() ? 0 : m_muxValues[std::size_t(moment.tick % m_muxValues.size())];
        QByteArray data(m_message.bytes, '\0');
        quint32 stream = m_message.id << 8 ^ m_channel;
        for (const CanSignal &signal : m_message.signalList) {
            ++stream;
            if (signal.kind == MultiplexedSignal && signal.muxValue != mux)
                continue;
            const double raw = signal.kind == MultiplexorSignal
                                   ? mux
                                   : rawValue(signal, state, noise(stream, moment.tick));
            putBits(data, signal.bits.start, signal.bits.length, signal.bits.order,
                    rawBits(signal.bits, raw));
        }
        return rawlog::canEntry(moment.timestamp_us, m_channel,
                                {m_message.id, m_message.extended, data});
    }

private:
    static double rawValue(const CanSignal &signal, const VehicleState &state, double noiseNow)
    {
        const double physical = signal.value(state) + signal.noise * noiseNow;
        return (physical - signal.scale.offset) / signal.scale.factor;
    }

    const Vehicle &m_vehicle;
    quint8 m_channel;
    CanMessage m_message;
    std::vector<qint32> m_muxValues;
};

StreamingClass_DBC_Signal dbcSignal(const CanMessage &message, const CanSignal &signal)
{
    const Range range = rawRange(signal.bits);
    StreamingClass_DBC_Signal dbc;
    dbc.name = signal.name;
    dbc.unit = signal.unit;
    dbc.mux_kind = signal.kind;
    dbc.mux_value = signal.muxValue;
    dbc.start_bit = static_cast<quint16>(signal.bits.start);
    dbc.bit_length = static_cast<quint16>(signal.bits.length);
    dbc.little_endian = signal.bits.order == BitOrder::Intel ? 1 : 0;
    dbc.is_signed = signal.bits.sign == Sign::Signed ? 1 : 0;
    dbc.factor = signal.scale.factor;
    dbc.offset = signal.scale.offset;
    dbc.minimum = range.low * signal.scale.factor + signal.scale.offset;
    dbc.maximum = range.high * signal.scale.factor + signal.scale.offset;
    dbc.selection_flags = StreamingClass_DBC_Signal::recordFlag;
    dbc.dlc = message.bytes;
    dbc.msg_id = message.id;
    dbc.extended_id = message.extended ? 1 : 0;
    return dbc;
}

} // namespace

CanSignal canSignal(const char *name, const char *unit, Bits bits, Scale scale,
                    std::function<double(const VehicleState &)> value, double noise)
{
    CanSignal signal;
    signal.name = QString::fromUtf8(name);
    signal.unit = QString::fromUtf8(unit);
    signal.bits = bits;
    signal.scale = scale;
    signal.value = std::move(value);
    signal.noise = noise;
    return signal;
}

CanSignal multiplexor(const char *name, Bits bits)
{
    CanSignal signal = canSignal(name, "", bits, {}, {});
    signal.kind = MultiplexorSignal;
    return signal;
}

CanSignal multiplexed(qint32 muxValue, CanSignal signal)
{
    signal.kind = MultiplexedSignal;
    signal.muxValue = muxValue;
    return signal;
}

CanSignal aliveCounter(Bits bits, double period_s, int count)
{
    return canSignal("AliveCounter", "", bits, {}, [period_s, count](const VehicleState &v) {
        const double frames = std::floor(v.time_s / period_s);
        return frames - count * std::floor(frames / count);
    });
}

CanMessage standardMessage(quint32 id, quint8 bytes, qint64 period_us,
                           std::vector<CanSignal> signalList)
{
    return {id, false, bytes, period_us, std::move(signalList)};
}

CanMessage extendedMessage(quint32 id, quint8 bytes, qint64 period_us,
                           std::vector<CanSignal> signalList)
{
    return {id, true, bytes, period_us, std::move(signalList)};
}

void addExactFilter(TerminalCanCfg &channel, quint32 id, bool extended)
{
    constexpr quint8 classic = 2;
    constexpr quint32 all11Bits = 0x7FF;
    constexpr quint32 all29Bits = 0x1FFFFFFF;
    CanIdFilterElement &filter = channel.filters.add();
    filter.extended = extended ? 1 : 0;
    filter.filter_type = classic;
    filter.id1 = id;
    filter.id2 = extended ? all29Bits : all11Bits;
}

void addCanMessages(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle,
                    quint8 channel, const std::vector<CanMessage> &messages)
{
    TerminalCanCfg &can = configuration.can[channel];
    can.enabled = 1;
    qint64 first_us = gap_us + 20 * channel;
    for (const CanMessage &message : messages) {
        addExactFilter(can, message.id, message.extended);
        for (const CanSignal &signal : message.signalList)
            can.dbc_signals.add() = dbcSignal(message, signal);
        const auto maker = std::make_shared<FrameMaker>(vehicle, channel, message);
        schedule.every(message.period_us, first_us, jitter_us,
                       [maker](const Moment &moment) { return maker->entry(moment); });
        first_us += gap_us;
    }
}

} // namespace drive
