#pragma once

#include <QByteArray>
#include <QStringList>

#include <array>
#include <optional>

struct TerminalCanCfg;

namespace can {

// Keeps the records of the CAN channels within the filters of the hardware, on their way to the logger
// and back, and knows what that has cost. Used on one thread.
class FilterLimit
{
public:
    static constexpr int channels = 12;

    // A record before it is written: the logger must not be left with ticks that the tool clears.
    void limit(int can_nr, TerminalCanCfg &outgoing);

    // A record that has come. Gives the names of the signals that have lost their ticks: now, or when
    // this very record was written. A logger that refuses a write sends the ticks that it held.
    [[nodiscard]] QStringList take(int can_nr, TerminalCanCfg &arrived);

    // What was written to one logger isn't awaited from another.
    void forgetWritten() { m_written.fill(std::nullopt); }

private:
    struct Written
    {
        QByteArray ticks; // one byte for each signal
        QStringList cleared;
    };
    std::array<std::optional<Written>, channels> m_written; // and not seen again yet
};

} // namespace can
