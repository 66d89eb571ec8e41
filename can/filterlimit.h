#pragma once

#include <QStringList>

#include <array>
#include <optional>
#include <tuple>
#include <vector>

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

    // A signal's identifier, whether it is of 29 bits, and its flags.
    using Tick = std::tuple<quint32, quint8, quint8>;

private:
    struct Written
    {
        std::vector<Tick> ticks;
        QStringList cleared; // until it is told
    };
    std::array<std::optional<Written>, channels> m_written;
};

} // namespace can
