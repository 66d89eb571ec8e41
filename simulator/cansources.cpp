#include "MDF4Conversion/rawlog/drive/canbus.h"
#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/entrytypes.h"
#include "can/framelengths.h"
#include "config/terminalstruct.h"
#include "simulator/canfilter.h"
#include "simulator/daqsource.h"
#include "simulator/livesources.h"
#include "simulator/plausiblevalues.h"

#include <cmath>
#include <iterator>
#include <map>
#include <optional>
#include <set>

namespace simulator {
namespace {

using drive::Moment;
using drive::Schedule;
using drive::Vehicle;

constexpr quint32 extendedFlag = 1U << 31; // of an identifier in an A2L record
constexpr int maxMessages = 512;           // of a channel
constexpr int classicBytes = 8;
constexpr int fdBytes = 64;

// What other nodes send on the drive's buses, whatever the logger does with it. By channel.
constexpr std::vector<drive::CanMessage> (*driveBuses[])() = {
    drive::powertrainMessages, drive::fleetMessages, drive::surroundMessages};

// What the logger asks for, and is answered as in the drive as long as it asks the same.
struct DriveChannel
{
    std::size_t channel;
    void (*add)(TerminalStruct &, Schedule &, const Vehicle &);
};
constexpr DriveChannel driveChannels[] = {
    {3, drive::addEngineEcu}, {4, drive::addChassisEcu}, {5, drive::addAimModules}};

// What decides on the frames of a channel.
QByteArray contentOf(const TerminalCanCfg &channel)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    for (const CanIdFilterElement *filter : channel.filters)
        out << *filter;
    for (const StreamingClass_DBC_Signal *signal : channel.dbc_signals)
        out << *signal;
    out << channel.a2l;
    for (const AimMsgMeta *message : channel.aim_modules)
        out << *message;
    return bytes;
}

bool addAsInTheDrive(std::size_t number, const TerminalCanCfg &channel, Schedule &schedule,
                     const Vehicle &vehicle)
{
    for (const DriveChannel &its : driveChannels) {
        if (its.channel != number)
            continue;
        TerminalStruct described;
        Schedule unused;
        its.add(described, unused, vehicle);
        if (contentOf(described.can[number]) != contentOf(channel))
            return false;
        its.add(described, schedule, vehicle);
        return true;
    }
    return false;
}

// Whether all bits of the signal lie inside the frame. A Motorola signal begins at its most
// significant bit and goes down, then on to the next byte.
bool fits(const StreamingClass_DBC_Signal &signal, int frameBytes)
{
    constexpr int maxBits = 64;
    const int frameBits = frameBytes * 8;
    const int start = signal.start_bit;
    const int length = signal.bit_length;
    if (length < 1 || length > maxBits || start >= frameBits)
        return false;
    if (signal.little_endian)
        return start + length <= frameBits;
    const int bitsBefore = start / 8 * 8 + 7 - start % 8;
    return bitsBefore + length <= frameBits;
}

double usable(double value, double otherwise)
{
    constexpr double largest = 1e12;
    const bool isUsable = std::isfinite(value) && std::abs(value) <= largest;
    return isUsable ? value : otherwise;
}

drive::CanSignal canSignal(const StreamingClass_DBC_Signal &dbc, quint32 seed)
{
    constexpr double smallestFactor = 1e-12;
    drive::CanSignal signal;
    signal.name = dbc.name;
    signal.unit = dbc.unit;
    signal.bits = {dbc.start_bit, dbc.bit_length,
                   dbc.little_endian ? drive::BitOrder::Intel : drive::BitOrder::Motorola,
                   dbc.is_signed ? drive::Sign::Signed : drive::Sign::Unsigned};
    const double factor = usable(dbc.factor, 1);
    signal.scale = {std::abs(factor) < smallestFactor ? 1 : factor, usable(dbc.offset, 0)};
    signal.kind = MuxKind(dbc.mux_kind <= MultiplexorSignal ? dbc.mux_kind : quint8(PlainSignal));
    signal.muxValue = dbc.mux_value;
    double lowest = usable(dbc.minimum, 0);
    double highest = usable(dbc.maximum, 0);
    if (lowest >= highest) {
        lowest = signal.scale.offset;
        highest = lowest + std::abs(signal.scale.factor) * (std::ldexp(1.0, dbc.bit_length) - 1);
    }
    signal.value = plausibleValue(dbc.unit, lowest, highest, seed);
    return signal;
}

using MessageKey = std::pair<bool, quint32>; // 29-bit identifier, identifier

MessageKey keyOf(const StreamingClass_DBC_Signal &signal)
{
    const bool extended = signal.extended_id != 0;
    return {extended, signal.msg_id & (extended ? rawlog::extendedIdMask : rawlog::standardIdMask)};
}

int frameLimit(const TerminalCanCfg &channel)
{
    return channel.can_mode ? fdBytes : classicBytes;
}

// What is shorter than its frame is filled up.
int lengthOnBus(int bytes)
{
    return can::lengthThatHolds(bytes, can::FrameFormat::Fd);
}

// Whether a message of the drive holds the signal where the configuration says.
bool holds(const drive::CanMessage &message, const StreamingClass_DBC_Signal &dbc)
{
    for (const drive::CanSignal &signal : message.signalList) {
        const bool isIntel = signal.bits.order == drive::BitOrder::Intel;
        if (signal.bits.start == dbc.start_bit && signal.bits.length == dbc.bit_length
            && isIntel == (dbc.little_endian != 0))
            return true;
    }
    return false;
}

// The messages of the drive's bus that pass the filters. Where the configuration describes one
// otherwise, it is made after the configuration instead.
std::vector<drive::CanMessage> driveMessages(quint8 number, const TerminalCanCfg &channel,
                                             const can::FilterList &filters)
{
    std::vector<drive::CanMessage> messages;
    if (number >= std::size(driveBuses))
        return messages;
    std::set<MessageKey> describedOtherwise;
    const std::vector<drive::CanMessage> bus = driveBuses[number]();
    for (const StreamingClass_DBC_Signal *signal : channel.dbc_signals) {
        for (const drive::CanMessage &message : bus) {
            const MessageKey key{message.extended, message.id};
            if (key == keyOf(*signal) && !holds(message, *signal))
                describedOtherwise.insert(key);
        }
    }
    for (const drive::CanMessage &message : bus) {
        if (message.bytes <= frameLimit(channel)
            && passesFilters(filters, message.id, message.extended)
            && describedOtherwise.count({message.extended, message.id}) == 0)
            messages.push_back(message);
    }
    return messages;
}

// The messages of the signal list that pass the filters, without those of `bus`.
std::vector<drive::CanMessage> messagesOf(const TerminalCanCfg &channel,
                                          const can::FilterList &filters,
                                          const std::vector<drive::CanMessage> &bus)
{
    constexpr qint64 fastest_us = 10'000;
    constexpr qint64 slowest_us = 200'000;
    std::set<MessageKey> onBus;
    for (const drive::CanMessage &message : bus)
        onBus.insert({message.extended, message.id});
    std::map<MessageKey, drive::CanMessage> messages;
    quint32 seed = 0;
    for (const StreamingClass_DBC_Signal *signal : channel.dbc_signals) {
        const MessageKey key = keyOf(*signal);
        const auto [extended, id] = key;
        const int bytes = lengthOnBus(qMin(int(signal->dlc), frameLimit(channel)));
        if (onBus.count(key) > 0 || !passesFilters(filters, id, extended))
            continue;
        if (messages.count(key) == 0) {
            if (messages.size() == maxMessages)
                continue;
            const qint64 period_us =
                qMin(slowest_us, fastest_us * (1 + qint64(messages.size()) % 5));
            messages[key] = {id, extended, quint8(bytes), period_us, {}};
        }
        drive::CanMessage &message = messages[key];
        if (fits(*signal, message.bytes))
            message.signalList.push_back(canSignal(*signal, ++seed));
    }
    std::vector<drive::CanMessage> list;
    for (auto &message : messages)
        list.push_back(std::move(message.second));
    return list;
}

// What other nodes send on a bus of which the configuration knows no message.
std::vector<drive::CanMessage> unknownTraffic(const can::FilterList &filters)
{
    constexpr quint32 firstId = 0x120;
    std::vector<drive::CanMessage> messages;
    for (quint32 i = 0; i < 4; ++i) {
        const quint32 id = firstId + 0x10 * i;
        const qint64 period_us = 20'000 << i;
        if (!passesFilters(filters, id, false))
            continue;
        messages.push_back(drive::standardMessage(
            id, classicBytes, period_us,
            {drive::aliveCounter({0, 8}, double(period_us) * 1e-6, 256),
             drive::canSignal("Speed", "km/h", {8, 16}, {0.01},
                              plausibleValue(QStringLiteral("km/h"), 0, 400, i))}));
    }
    return messages;
}

// A list without an identifier of its own answers under the session's, which the logger hears
// anyway.
void addDtos(quint8 number, const TerminalCanCfg &channel, const can::FilterList &filters,
             Schedule &schedule, const Vehicle &vehicle)
{
    const StreamingClass_A2L_CFG &cfg = channel.a2l.config.cfg;
    std::vector<std::optional<quint32>> ids; // by list; those that pass the filters
    for (const StreamingClass_A2L_DAQ *daq : cfg.daq_lists) {
        const quint32 word = daq->can_id ? daq->can_id : cfg.can_id_recv;
        const bool extended = (word & extendedFlag) != 0;
        const bool passes =
            daq->can_id == 0 || passesFilters(filters, word & ~extendedFlag, extended);
        ids.push_back(passes ? std::optional(word) : std::nullopt);
    }
    const int bytes = frameLimit(channel);
    addDaqLists(channel.a2l, schedule, vehicle,
                [number, ids, bytes](int list, const Moment &moment, const QByteArray &dto) {
                    const auto word = ids.at(std::size_t(list));
                    if (!word)
                        return QByteArray();
                    const bool extended = (*word & extendedFlag) != 0;
                    const int length = lengthOnBus(qBound(classicBytes, dto.size(), bytes));
                    const QByteArray data = dto.left(bytes).leftJustified(length, '\0');
                    return rawlog::canEntry(moment.timestamp_us, number,
                                            {*word & ~extendedFlag, extended, data});
                });
}

// The messages of AIM modules. Modules that take commands and answer them join here.
void addAimMessages(quint8 number, const TerminalCanCfg &channel, const can::FilterList &filters,
                    Schedule &schedule)
{
    constexpr qint64 period_us = 10'000;
    for (const AimMsgMeta *meta : channel.aim_modules) {
        const quint32 id = meta->MsgId;
        const bool extended = id > rawlog::standardIdMask;
        const int bytes = lengthOnBus(qBound(0, meta->msgLength, fdBytes));
        const bool isMsbFirst = meta->isMsbFirst;
        if (id > rawlog::extendedIdMask || !passesFilters(filters, id, extended))
            continue;
        schedule.every(period_us, 1500, 30, [=](const Moment &moment) {
            QByteArray data(bytes, '\0');
            for (int at = 0; at + 1 < bytes; at += 2) {
                const double turns = moment.due_s() / (4 + at);
                const auto value = quint16(qint16(12'000 * drive::sineOfTurns(turns)));
                data[at] = char(isMsbFirst ? value >> 8 : value & 0xFF);
                data[at + 1] = char(isMsbFirst ? value & 0xFF : value >> 8);
            }
            return rawlog::canEntry(moment.timestamp_us, number, {id, extended, data});
        });
    }
}

void addChannel(quint8 number, const TerminalCanCfg &channel, Schedule &schedule,
                const Vehicle &vehicle)
{
    if (addAsInTheDrive(number, channel, schedule, vehicle))
        return;
    const can::FilterList filters = hardwareFilters(channel);
    const bool hasSession = channel.a2l.config.enabled != 0;
    std::vector<drive::CanMessage> messages = driveMessages(number, channel, filters);
    for (drive::CanMessage &message : messagesOf(channel, filters, messages))
        messages.push_back(std::move(message));
    const bool isDriveBus = number < std::size(driveBuses);
    if (!isDriveBus && channel.dbc_signals.isEmpty() && channel.aim_modules.isEmpty()
        && !hasSession)
        messages = unknownTraffic(filters);
    TerminalStruct described; // by the messages themselves; not needed
    drive::addCanMessages(described, schedule, vehicle, number, messages);
    if (hasSession)
        addDtos(number, channel, filters, schedule, vehicle);
    addAimMessages(number, channel, filters, schedule);
}

} // namespace

void addCanSources(const TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    for (std::size_t i = 0; i < configuration.can.size(); ++i) {
        if (configuration.can[i].enabled)
            addChannel(quint8(i), configuration.can[i], schedule, vehicle);
    }
}

} // namespace simulator
