#pragma once

#include "config/terminalstruct.h"

#include <QByteArray>
#include <QString>

#include <memory>

// Large logs of one kind of entry, to measure with: classic CAN frames of 8 bytes, as a rule a
// tenth of a millisecond apart, the messages by turns over all channels. The signals wander slowly
// and carry a little noise, as those of sensors do. The same bytes for the same plan.
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
    quint32 interval_us = 100; // between two frames
};

// With every signal of every message to be recorded.
[[nodiscard]] std::unique_ptr<TerminalStruct> configuration(const Plan &plan);

// The entries of such a log one after the other, and on and on: Plan::entries doesn't count here.
class EntryStream
{
public:
    // The first entry's timestamp is one interval behind `start_us`.
    explicit EntryStream(const Plan &plan, quint32 start_us = 0);
    EntryStream(const EntryStream &) = delete;
    EntryStream &operator=(const EntryStream &) = delete;
    ~EntryStream();

    // The next `count` entries, back to back.
    [[nodiscard]] QByteArray next(int count);

private:
    class Frames;

    const Plan m_plan;
    const quint32 m_start_us;
    std::unique_ptr<Frames> m_frames;
    qint64 m_done = 0;
};

// Writes the log whole or not at all. Gives a null text, or one that names the file and the cause
// of the failure.
[[nodiscard]] QString write(const QString &path, const Plan &plan);

} // namespace benchlog
