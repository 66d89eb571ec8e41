#pragma once

#include <QtGlobal>

// What can be relied on about the clock of the logger, which counts microseconds in 32 bits, in us.
namespace rawlog {

// A processor writes a sync stamp at least this often.
constexpr quint64 syncCycleLimit_us = 0x20000000; // 536.9 s
// An entry further behind the clock, or ahead of it, is of another overflow period.
constexpr quint64 clockBackLimit_us = 0x30000000;    // 805.3 s
constexpr quint64 clockForwardLimit_us = 0x50000000; // 1342.2 s

// The last UTC whose nanoseconds since 1970 fit 64 bits, as MDF4 has them: in the year 2554. What
// lies behind it is no time of day of a drive.
constexpr quint64 maxUtc_us = ~quint64(0) / 1000;

} // namespace rawlog
