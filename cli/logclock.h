#pragma once

#include "MDF4Conversion/rawlog/clocklimits.h"

#include <QtGlobal>

#include <optional>

// Extends the 32-bit microsecond clock of a log to 64 bits by counting its overflows, for all
// entries together: they come nearly in order of time, so that a bus may be silent for longer than
// an overflow takes (71.6 minutes) as long as anything else is recorded.
//
// A time is placed up to `lag` behind the newest one, as long as its own bus doesn't go back with
// it, else ahead of it. What leaps ahead by more than `lag` counts only when the following entry
// doesn't come back from it: a damaged entry then can't shift the rest of the log.
class LogClock
{
public:
    // How far an entry may lie behind the newest one of the log, in us (805.3 s), as for channels
    // and the sync stamps of the processors.
    static constexpr quint32 lag = rawlog::clockBackLimit_us;
    // How far it may lie behind the newest one of its own bus, in us.
    static constexpr qint64 lagOnBus = 10000000;

    enum class Verdict {
        Accepted,
        Leap, // open until the next entry: accepted unless that one says leapWasFalse
    };
    struct Reading
    {
        qint64 time_us = 0; // since the start of the clock's period in which the log begins
        Verdict verdict = Verdict::Accepted;
        bool leapWasFalse = false; // the leap before was one of a damaged entry
    };

    // The time of the next entry of the log; `newestOnBus` is the newest accepted one of its bus.
    [[nodiscard]] Reading read(quint32 timestamp_us, std::optional<qint64> newestOnBus);

private:
    // The time next to the newest one, when it can be that.
    [[nodiscard]] std::optional<qint64> nearTime(quint32 timestamp_us,
                                                 std::optional<qint64> newestOnBus) const;

    bool m_started = false;
    qint64 m_newest = 0;
    std::optional<qint64> m_leap;
};
