#pragma once

#include <QString>

struct FileInspection;

// An inspection for people.
[[nodiscard]] QString inspectionText(const FileInspection &inspection);
