#pragma once

#include <QtGlobal>

#include <optional>

// Extends the 32-bit microsecond clock of a log to 64 bits by counting its overflows, for all
// entries together: they come nearly in order of time, so that a bus may be silent for longer than
// an overflow takes (71.6 minutes) as long as anything else is recorded.
//
// A time is placed up to `lag` behind the newest one, else ahead of it. A leap ahead of more than
// `lag` counts only when the following entry doesn't come back from it: a damaged entry then can't
// shift the rest of the log.
class LogClock
{
public:
    // How far an entry may lie behind the newest one, in us (805.3 s), as for channels and the sync
    // stamps of the processors.
    static constexpr quint32 lag = 0x30000000;

    enum class Verdict {
        Accepted, // time is the time of the entry
        Leap,     // open until the next entry: accepted when that one is not `leapWasFalse`
    };
    struct Reading
    {
        qint64 time_us = 0; // since the start of the clock's period in which the log begins
        Verdict verdict = Verdict::Accepted;
        bool leapWasFalse = false; // the leap before was one of a damaged entry
    };

    [[nodiscard]] Reading read(quint32 timestamp_us);

private:
    [[nodiscard]] static bool isNear(quint32 difference)
    {
        return difference <= lag || difference >= quint32(-qint64(lag));
    }

    bool m_started = false;
    qint64 m_newest = 0;
    std::optional<qint64> m_leap;
};
