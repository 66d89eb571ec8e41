#pragma once

#include "can/canframe.h"

#include <array>

struct TerminalCanCfg;

namespace can {

// Bits of a frame on the bus from its start to the end of the intermission, by the rate at which
// they are sent, and how many stuff bits its content can add at most. ISO 11898-1: formats of
// frames, bit stuffing, and the fixed stuff bits of FD frames, which are counted in.
struct FrameBits
{
    int nominal = 0;
    int fast = 0; // data phase; only with bit rate switching
    int most_stuff_nominal = 0;
    int most_stuff_fast = 0;
};

// For the modes of TerminalCanCfg::can_mode. A remote frame is a classic one and has no data; on a
// channel in FD mode every other frame counts as one of the FD format.
[[nodiscard]] FrameBits frameBits(int can_mode, bool extended, bool remote, int dataBytes);

// Frames and load of a bus over the last second of the logger's clock, in steps of 10 ms, from the
// frames that were received. Used by one thread.
class BusLoad
{
public:
    struct Figures
    {
        quint32 frames = 0; // in the last second
        // Of the bus's capacity: without stuff bits, and with as many as there can be. The truth
        // lies between.
        double least_percent = 0;
        double most_percent = 0;
    };

    BusLoad();

    // Mode and bit timing of the channel. Frames that were added keep the time that they took.
    void setTiming(const TerminalCanCfg &channel);

    // Frames may be late within the second; a longer step back is a clock that starts anew.
    void add(const ReceivedFrame &frame);
    [[nodiscard]] Figures figures() const;
    void clear();

private:
    static constexpr int slotCount = 100;
    static constexpr quint32 slot_us = 10'000;
    static constexpr int maxBytes = 64;

    struct BusTime
    {
        double least_us = 0;
        double most_us = 0;
    };
    struct Slot
    {
        quint32 frames = 0;
        BusTime time;
    };
    // Of every length, for standard and extended identifiers.
    using Times = std::array<std::array<BusTime, maxBytes + 1>, 2>;

    void advance(quint32 timestamp_us);
    [[nodiscard]] std::size_t slotOf(quint64 time_us) const;

    Times m_dataFrames;
    std::array<BusTime, 2> m_remoteFrames;
    std::array<Slot, slotCount> m_slots;
    bool m_isEmpty = true;
    quint64 m_newest_us = 0; // without wraps
};

} // namespace can
