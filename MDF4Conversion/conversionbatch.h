#pragma once

#include "MDF4Conversion/conversionglobal.h"

#include <QString>
#include <QStringList>
#include <QVector>

class OutputNames;

// One raw log that becomes one file.
struct PlannedConversion
{
    ConversionGlobal::OutputFormat format = ConversionGlobal::NONE;
    QString inputFile;
    QString outputFile;
    QString temporaryDir;
};

// The conversions of a batch and the texts about it.
namespace conversionbatch {

// Bits that are formats, or may become some; what is set above them is a mistake of the caller.
constexpr uint knownBits = 0xFF;

// One for each pair of file and format, formats of a file in ascending order. MDF4 gets names from
// `names`; files of the other formats are named after their input, whatever has that name.
[[nodiscard]] QVector<PlannedConversion> plan(const QStringList &files, const QString &folder,
                                              ConversionGlobal::OutputFormatFlags formats,
                                              OutputNames &names);

// The format's name for users and programs: "ASC_ZIP".
[[nodiscard]] QString keyOf(ConversionGlobal::OutputFormat format);
// The name without folder and last extension.
[[nodiscard]] QString baseNameOf(const QString &file);

// " Converting to .asc .mf4 "
[[nodiscard]] QString title(ConversionGlobal::OutputFormatFlags formats);
// While conversion `number`, counted from 1, of `count` runs, one after the other.
[[nodiscard]] QString sequentialLabel(int number, int count);
// While all run.
[[nodiscard]] QString parallelLabel(int count);
[[nodiscard]] QString finishedLabel(int count);

} // namespace conversionbatch
