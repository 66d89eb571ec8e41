#include "can/busload.h"

#include "can/bittiming.h"
#include "config/terminalcancfg.h"

#include <algorithm>
#include <utility>

namespace can {
namespace {

enum Mode { Classic = 0, Fd = 1, FdWithBitRateSwitching = 2 };

// Behind the CRC delimiter: acknowledge with its delimiter, end of frame, intermission.
constexpr int tailBits = 2 + 7 + 3;

// A stuff bit follows five equal bits and may itself be the first of the next five.
constexpr int mostStuffBits(int bits)
{
    return bits > 0 ? (bits - 1) / 4 : 0;
}

FrameBits classicBits(bool extended, int dataBytes)
{
    // Start, identifier and control bits up to the DLC, then data and CRC.
    constexpr int standardHead = 19;
    constexpr int extendedHead = 39;
    constexpr int crc = 15;
    constexpr int crcDelimiter = 1;
    const int stuffed = (extended ? extendedHead : standardHead) + 8 * dataBytes + crc;
    return {stuffed + crcDelimiter + tailBits, 0, mostStuffBits(stuffed), 0};
}

// The rate changes within the BRS bit and within the CRC delimiter; what the one has of the fast
// rate the other has of the nominal one, so they count as one bit of each.
FrameBits fdBits(bool extended, int dataBytes)
{
    constexpr int standardHead = 17; // start to BRS
    constexpr int extendedHead = 36;
    constexpr int esiAndDlc = 5;
    constexpr int stuffCount = 4;
    constexpr int longestOfShortCrc = 16; // bytes
    const int crc = dataBytes > longestOfShortCrc ? 21 : 17;
    const int fixedStuff = 1 + (stuffCount + crc) / 4;
    constexpr int crcDelimiter = 1;
    const int head = extended ? extendedHead : standardHead;
    const int stuffedFast = esiAndDlc + 8 * dataBytes;
    const int inHead = mostStuffBits(head);
    return {head + tailBits, stuffedFast + stuffCount + crc + fixedStuff + crcDelimiter, inHead,
            mostStuffBits(head + stuffedFast) - inHead};
}

// Zero for registers that no controller takes, which make no bit.
double bitTime_us(int clk_div, int tseg1, int tseg2)
{
    return clk_div * (tseg1 + tseg2 + 1) * 1000.0 / clock_kHz;
}

} // namespace

FrameBits frameBits(int can_mode, bool extended, bool remote, int dataBytes)
{
    if (can_mode == Classic || remote)
        return classicBits(extended, remote ? 0 : dataBytes);
    FrameBits bits = fdBits(extended, dataBytes);
    if (can_mode != FdWithBitRateSwitching) {
        bits.nominal += std::exchange(bits.fast, 0);
        bits.most_stuff_nominal += std::exchange(bits.most_stuff_fast, 0);
    }
    return bits;
}

BusLoad::BusLoad()
{
    setTiming(TerminalCanCfg());
}

void BusLoad::setTiming(const TerminalCanCfg &channel)
{
    const double nominal_us = bitTime_us(channel.clk_div, channel.tseg1, channel.tseg2);
    const double fast_us = bitTime_us(channel.fast_clk_div, channel.fast_tseg1, channel.fast_tseg2);
    const auto timeOf = [&](const FrameBits &bits) {
        const double least_us = bits.nominal * nominal_us + bits.fast * fast_us;
        return BusTime{least_us, least_us + bits.most_stuff_nominal * nominal_us
                                     + bits.most_stuff_fast * fast_us};
    };
    for (const bool extended : {false, true}) {
        m_remoteFrames[extended] = timeOf(frameBits(channel.can_mode, extended, true, 0));
        for (int bytes = 0; bytes <= maxBytes; ++bytes)
            m_dataFrames[extended][std::size_t(bytes)] =
                timeOf(frameBits(channel.can_mode, extended, false, bytes));
    }
}

std::size_t BusLoad::slotOf(quint64 time_us) const
{
    return std::size_t(time_us / slot_us % slotCount);
}

// Slots between the newest frame and this one are of the second before last.
void BusLoad::advance(quint32 timestamp_us)
{
    const auto step_us = static_cast<qint32>(timestamp_us - static_cast<quint32>(m_newest_us));
    const qint64 window_us = qint64(slotCount) * slot_us;
    if (m_isEmpty || step_us <= -window_us || step_us >= window_us) {
        clear();
        m_isEmpty = false;
        // The low half is the logger's time; the high one leaves room for steps back.
        m_newest_us = quint64(1) << 32 | timestamp_us;
        return;
    }
    if (step_us <= 0)
        return;
    const quint64 now_us = m_newest_us + quint64(step_us);
    for (quint64 tick = m_newest_us / slot_us + 1; tick <= now_us / slot_us; ++tick)
        m_slots[std::size_t(tick % slotCount)] = {};
    m_newest_us = now_us;
}

void BusLoad::add(const ReceivedFrame &frame)
{
    advance(frame.timestamp_us);
    const auto step_us =
        static_cast<qint32>(frame.timestamp_us - static_cast<quint32>(m_newest_us));
    const quint64 time_us = m_newest_us - quint64(-qint64(step_us)); // step_us isn't above 0 here
    if (m_newest_us / slot_us - time_us / slot_us >= slotCount)
        return;
    Slot &slot = m_slots[slotOf(time_us)];
    const BusTime &time =
        frame.remote
            ? m_remoteFrames[frame.extended]
            : m_dataFrames[frame.extended][std::min<std::size_t>(frame.data.size, maxBytes)];
    ++slot.frames;
    slot.time.least_us += time.least_us;
    slot.time.most_us += time.most_us;
}

BusLoad::Figures BusLoad::figures() const
{
    constexpr double usPerPercent = double(slotCount) * slot_us / 100;
    Figures figures;
    for (const Slot &slot : m_slots) {
        figures.frames += slot.frames;
        figures.least_percent += slot.time.least_us / usPerPercent;
        figures.most_percent += slot.time.most_us / usPerPercent;
    }
    return figures;
}

void BusLoad::clear()
{
    m_slots = {};
    m_isEmpty = true;
    m_newest_us = 0;
}

} // namespace can
