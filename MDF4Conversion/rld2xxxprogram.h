#pragma once

#include <QString>
#include <QStringList>

struct PlannedConversion;

// How the program that makes BLF and ASC files is found and called.
namespace rld2xxxprogram {

// "rld2xxx.exe" in the working folder, otherwise next to the tool, with its whole path. Empty if it
// is in neither.
[[nodiscard]] QString find(const QString &workingDir, const QString &toolDir);

// Format, input, output, "ABS" for absolute times, key of the shared memory. The output is the file
// to be written, which gets the conversion's name when it is whole.
[[nodiscard]] QStringList arguments(const PlannedConversion &conversion, const QString &growingFile,
                                    const QString &memoryKey);

} // namespace rld2xxxprogram
