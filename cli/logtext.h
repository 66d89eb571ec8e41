#pragma once

#include <QString>

class LogStatistics;

// What was counted in a log, for people. Times are seconds since its first entry.
[[nodiscard]] QString logText(const LogStatistics &log);
