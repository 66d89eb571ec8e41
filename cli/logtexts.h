#pragma once

#include "cli/logstatistics.h"

#include <QString>

// Values of a log's statistics as they are shown.

// RLD_CAN and so on; empty for an unknown type.
[[nodiscard]] QString entryTypeName(quint8 type);
// Where the entries of a type come from, for people: "CAN 3". The name of the type where nothing
// says more, and its number for an unknown type.
[[nodiscard]] QString streamName(LogStatistics::StreamKey key);

// From the oldest to the newest entry.
[[nodiscard]] qint64 duration_us(const LogStatistics &log);
// Mean over the duration of the whole log, so that rates add up; 0 when it has none.
[[nodiscard]] double perSecond(quint64 entries, const LogStatistics &log);

// ISO 8601 with milliseconds; empty when not known.
[[nodiscard]] QString utcText(std::optional<quint64> utc_us);
