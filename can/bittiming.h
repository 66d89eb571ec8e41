#pragma once

#include <QStringList>

#include <optional>

struct StreamingClass_A2L_Module;
struct TerminalCanCfg;

// Bit timing of a CAN channel. A bit begins with the synchronisation segment of one time quantum,
// then come two segments; the bit is sampled between them (ISO 11898-1). A quantum lasts `clk_div`
// cycles of the logger's CAN clock.
namespace can {

inline constexpr int clock_kHz = 120'000;

// Registers of one phase, nominal or fast (the data phase of CAN FD).
struct BitTiming
{
    int clk_div = 15;
    int tseg1 = 11; // time quanta
    int tseg2 = 4;  // time quanta
    int sjw = 1;    // synchronisation jump width, time quanta; has no part in the two results below
};

// The registers must be at least 1, so that a bit has a length.
[[nodiscard]] double bitRate_kHz(const BitTiming &timing);
[[nodiscard]] double samplePoint_percent(const BitTiming &timing);

// What the boxes of usual bit rates offer. The first item is blank and stands for no preset.
[[nodiscard]] QStringList nominalPresetTexts();
[[nodiscard]] QStringList fastPresetTexts();
// The preset at the index of such a box; none for the blank item and for no item.
[[nodiscard]] std::optional<BitTiming> nominalPreset(int index);
// Index 6 is that of 10 Mbit/s, which the box doesn't offer.
[[nodiscard]] std::optional<BitTiming> fastPreset(int index);

// The registers that come closest to a bit rate in bit/s and, of those, to a sample point in
// percent: `clk_div` from 1 to 1024, `tseg1` from 2 to 64, `tseg2` from 1 to 16. Of equals the one
// with the smallest divider, then `tseg1`. Where doing nothing (0 bit/s, 0 %) is as close to what is
// asked for, the result is 500 kbit/s at 75 %. Writes both to the diagnostic log.
[[nodiscard]] BitTiming bestFitTiming(quint32 bitRate, int samplePoint_percent);

// Sets the channel up for the CCP or XCP of the module: switched on, classic CAN, its bit timing.
// Changes nothing for a module that isn't on CAN.
void load_can_cfg_from_a2l(TerminalCanCfg &channel, const StreamingClass_A2L_Module &module);

} // namespace can
