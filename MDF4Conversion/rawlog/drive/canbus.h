#pragma once

#include "MDF4Conversion/rawlog/drive/framebits.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "config/streamingclass_dbc_signal.h"

#include <QString>

#include <functional>
#include <vector>

struct TerminalCanCfg;
struct TerminalStruct;

namespace drive {

class Schedule;

enum class Sign { Unsigned, Signed };

// Where a signal lies in its frame, in the numbering of DBC files.
struct Bits
{
    int start;
    int length;
    BitOrder order = BitOrder::Intel;
    Sign sign = Sign::Unsigned;
};

struct Scale
{
    double factor = 1;
    double offset = 0;
};

// One signal of a message with its physical value over the drive, in `unit`.
struct CanSignal
{
    QString name;
    QString unit;
    Bits bits;
    Scale scale;
    std::function<double(const VehicleState &)> value;
    double noise = 0; // amplitude on top of the value
    MuxKind kind = PlainSignal;
    qint32 muxValue = 0; // of a multiplexed signal
};

// Texts are UTF-8.
[[nodiscard]] CanSignal canSignal(const char *name, const char *unit, Bits bits, Scale scale,
                                  std::function<double(const VehicleState &)> value,
                                  double noise = 0);
// A multiplexor signal. The frames take the values of the multiplexed signals by turns.
[[nodiscard]] CanSignal multiplexor(const char *name, Bits bits);
// The signal, present in every frame with this value of the multiplexor.
[[nodiscard]] CanSignal multiplexed(qint32 muxValue, CanSignal signal);
// Counts the frames of a message from 0 to `count` - 1 and again.
[[nodiscard]] CanSignal aliveCounter(Bits bits, double period_s, int count);

struct CanMessage
{
    quint32 id;
    bool extended;
    quint8 bytes; // 0 to 64
    qint64 period_us;
    std::vector<CanSignal> signalList;
};

[[nodiscard]] CanMessage standardMessage(quint32 id, quint8 bytes, qint64 period_us,
                                         std::vector<CanSignal> signalList);
[[nodiscard]] CanMessage extendedMessage(quint32 id, quint8 bytes, qint64 period_us,
                                         std::vector<CanSignal> signalList);

// What is sent on the buses of the drive's first three channels.
[[nodiscard]] std::vector<CanMessage> powertrainMessages();
[[nodiscard]] std::vector<CanMessage> fleetMessages();
[[nodiscard]] std::vector<CanMessage> surroundMessages();

// Enables the channel, and gives every message a place in its filters, its signal list and the
// schedule.
void addCanMessages(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle,
                    quint8 channel, const std::vector<CanMessage> &messages);

// Accepts exactly one identifier.
void addExactFilter(TerminalCanCfg &channel, quint32 id, bool extended);

} // namespace drive
