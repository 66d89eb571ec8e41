#include "can/bittiming.h"

#include "a2l/records/a2lconstants.h"
#include "config/terminalcancfg.h"
#include "config/valuenames.h"

#include <QDebug>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace can {

namespace {

struct Preset
{
    const char *text; // none: no box offers it
    BitTiming timing;
};

constexpr Preset nominalPresets[] = {
    {"20K", {375, 11, 4, 1}}, {"50K", {150, 11, 4, 1}}, {"100K", {75, 11, 4, 1}},
    {"125K", {60, 11, 4, 1}}, {"250K", {30, 11, 4, 1}}, {"500K", {15, 11, 4, 1}},
    {"1000K", {6, 14, 5, 1}},
};

constexpr Preset fastPresets[] = {
    {"250K", {30, 11, 4, 1}}, {"500K", {15, 11, 4, 1}}, {"1000K", {6, 14, 5, 1}},
    {"2000K", {3, 14, 5, 1}}, {"5000K", {2, 8, 3, 1}},  {nullptr, {1, 8, 3, 1}},
};

template <std::size_t N>
QStringList textsOf(const Preset (&presets)[N])
{
    QStringList texts(QStringLiteral(" "));
    for (const Preset &preset : presets) {
        if (preset.text)
            texts += QLatin1String(preset.text);
    }
    return texts;
}

template <std::size_t N>
std::optional<BitTiming> presetAt(const Preset (&presets)[N], int index)
{
    if (index < 1 || index > int(N))
        return std::nullopt;
    return presets[index - 1].timing;
}

int quantaOf(const BitTiming &timing)
{
    return 1 + timing.tseg1 + timing.tseg2;
}

constexpr int maxDivider = 1024;
constexpr int minSegment1 = 2;
constexpr int maxSegment1 = 64;
constexpr int minSegment2 = 1;
constexpr int maxSegment2 = 16;
constexpr int minQuanta = 1 + minSegment1 + minSegment2;
constexpr int maxQuanta = 1 + maxSegment1 + maxSegment2;

// How far registers are from what is asked for; the registers themselves decide between equals.
struct Candidate
{
    qint64 rateDistance; // bit/s
    double sampleDistance;
    int clk_div;
    int tseg1;
    int tseg2;

    [[nodiscard]] bool isBetterThan(const Candidate &other) const { return key() < other.key(); }

private:
    [[nodiscard]] std::tuple<qint64, double, int, int, int> key() const
    {
        return {rateDistance, sampleDistance, clk_div, tseg1, tseg2};
    }
};

// Of all ways to divide a bit of so many quanta, the one whose sample point is closest.
Candidate bestSegments(int quanta, int samplePoint)
{
    const int first = std::max(minSegment1, quanta - 1 - maxSegment2);
    const int last = std::min(maxSegment1, quanta - 1 - minSegment2);
    Candidate best{0, HUGE_VAL, 0, 0, 0};
    for (int tseg1 = first; tseg1 <= last; ++tseg1) {
        const double sample = 100.0 * (tseg1 + 1) / quanta;
        const Candidate segments{0, std::abs(sample - samplePoint), 0, tseg1, quanta - 1 - tseg1};
        if (segments.isBetterThan(best))
            best = segments;
    }
    return best;
}

// The bit rate depends on the divider and the number of quanta only, so for each number of quanta
// just its best segments matter: 80 thousand candidates instead of a million.
Candidate bestCandidate(quint32 bitRate, int samplePoint)
{
    Candidate best{bitRate, std::abs(0.0 - samplePoint), 0, 0, 0};
    for (int quanta = minQuanta; quanta <= maxQuanta; ++quanta) {
        Candidate candidate = bestSegments(quanta, samplePoint);
        for (int divider = 1; divider <= maxDivider; ++divider) {
            const qint64 rate = clock_kHz * 1000 / (divider * quanta);
            candidate.rateDistance = std::abs(rate - qint64(bitRate));
            candidate.clk_div = divider;
            if (candidate.rateDistance <= best.rateDistance && candidate.isBetterThan(best))
                best = candidate;
        }
    }
    return best;
}

} // namespace

double bitRate_kHz(const BitTiming &timing)
{
    return double(clock_kHz) / timing.clk_div / quantaOf(timing);
}

double samplePoint_percent(const BitTiming &timing)
{
    return (timing.tseg1 + 1) * 100.0 / quantaOf(timing);
}

QStringList nominalPresetTexts()
{
    return textsOf(nominalPresets);
}

QStringList fastPresetTexts()
{
    return textsOf(fastPresets);
}

std::optional<BitTiming> nominalPreset(int index)
{
    return presetAt(nominalPresets, index);
}

std::optional<BitTiming> fastPreset(int index)
{
    return presetAt(fastPresets, index);
}

BitTiming bestFitTiming(quint32 bitRate, int samplePoint_percent)
{
    const Candidate best = bestCandidate(bitRate, samplePoint_percent);
    BitTiming timing;
    if (best.clk_div != 0)
        timing = {best.clk_div, best.tseg1, best.tseg2, timing.sjw};
    qDebug("T-BR:%u T-SP:%d", bitRate, samplePoint_percent);
    qDebug("Calculated: %.0f SamplePoint:%g Clk:%d Tseg1:%d Tseg2:%d",
           std::floor(bitRate_kHz(timing) * 1000), can::samplePoint_percent(timing), timing.clk_div,
           timing.tseg1, timing.tseg2);
    return timing;
}

void load_can_cfg_from_a2l(TerminalCanCfg &channel, const StreamingClass_A2L_Module &module)
{
    const quint8 active = module.config.active_interface;
    if (active == ACTIVE_A2L_IF_XCP_O_UDP || active == ACTIVE_A2L_IF_XCP_O_TCP)
        qWarning("The A2L module is for %s: the CAN channel stays as it is.",
                 valuenames::a2lInterfaces[active]);
    if (active != ACTIVE_A2L_IF_CCP_XCP_O_CAN)
        return;
    qDebug("Active Interface - ACTIVE_A2L_IF_CCP_XCP_O_CAN -- load_can_cfg_from_a2l");
    const StreamingClass_A2L_CFG &cfg = module.config.cfg;
    channel.enabled = 1;
    channel.can_mode = 0;
    channel.listen_only = 0; // a master has to send
    channel.single_shot = 1;
    channel.termination = 0;
    // What is found lies within the ranges of the registers.
    const BitTiming timing = bestFitTiming(cfg.baudrate, cfg.sample_point);
    channel.clk_div = static_cast<quint16>(timing.clk_div);
    channel.tseg1 = static_cast<quint8>(timing.tseg1);
    channel.tseg2 = static_cast<quint8>(timing.tseg2);
    channel.sjw = qBound<quint8>(1, cfg.sjw, 16);
    channel.fast_clk_div = 15;
    channel.fast_tseg1 = 11;
    channel.fast_tseg2 = 4;
    channel.fast_sjw = 1;
    channel.remote_11 = 0;
    channel.remote_29 = 0;
}

} // namespace can
