#pragma once

#include "config/terminalstruct.h"

#include <QByteArray>
#include <QString>

#include <memory>

// Small raw logs made by hand, for what a real logger seldom produces: timestamps on either side
// of the overflow of the 32-bit clock, on two CAN channels.
//
// Run 1 holds the frames alone: the first sample of channel 3 lies behind an overflow that channel
// 0 has seen, and nothing else tells so. In run 2 sync stamps of two processors run across the
// overflow ahead of that sample and place it. In run 3 the sync stamps begin after it, so their own
// start must be moved behind the overflow. Run 4 has no overflow at its start and ends with a jump
// back on both channels.
namespace syntheticlogs {

constexpr int runCount = 4;

// Name of the file of a run, 1 to runCount.
[[nodiscard]] QString fileName(int run);

// All channels alike, with the one signal that the frames carry.
[[nodiscard]] std::unique_ptr<TerminalStruct> configuration();

// The entries of a run, back to back.
[[nodiscard]] QByteArray entries(int run);

// Writes the file of a run into an existing folder. Gives a null text, or one that names the file
// and the cause of the failure.
[[nodiscard]] QString write(int run, const QString &folder);

} // namespace syntheticlogs
