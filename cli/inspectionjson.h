#pragma once

#include <QJsonObject>

struct FileInspection;

// An inspection as JSON. Times are microseconds on the logger's clock, extended to 64 bits;
// "configuration" holds all records under their field names. What is not known is null.
[[nodiscard]] QJsonObject inspectionJson(const FileInspection &inspection);
