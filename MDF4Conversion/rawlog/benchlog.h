#pragma once

#include "config/terminalstruct.h"

#include <QString>

#include <memory>

// Large logs of one kind of entry, to measure with: classic CAN frames of 8 bytes, a tenth of a
// millisecond apart, the messages by turns over all channels. The signals wander slowly and carry a
// little noise, as those of sensors do. The same bytes for the same plan.
namespace benchlog {

enum class Widths {
    Bytes, // 8 signals of 8 bits
    Mixed  // 8 signals of 1 to 16 bits
};

struct Plan
{
    qint64 entries = 5'000'000;
    int messages = 60; // 1 to 24,576: 2,048 identifiers on each of 12 channels
    Widths widths = Widths::Bytes;
};

// With every signal of every message to be recorded.
[[nodiscard]] std::unique_ptr<TerminalStruct> configuration(const Plan &plan);

// Writes the log whole or not at all. Gives a null text, or one that names the file and the cause
// of the failure.
[[nodiscard]] QString write(const QString &path, const Plan &plan);

} // namespace benchlog
