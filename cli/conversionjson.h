#pragma once

#include "MDF4Conversion/conversionsummary.h"

#include <QJsonObject>
#include <QString>

// A conversion as JSON. Times are seconds: first_time and last_time since the start of the file,
// utc_start an ISO 8601 text. "output" is null when there is none.
[[nodiscard]] QJsonObject conversionJson(const QString &input, const ConversionSummary &summary,
                                         double seconds);
