#include "MDF4Conversion/conversionbatch.h"

#include "MDF4Conversion/outputnames.h"

#include <QFileInfo>
#include <QMetaEnum>

namespace {

using Format = ConversionGlobal::OutputFormat;

// In ascending order of their bits.
constexpr Format formatsInOrder[] = {ConversionGlobal::MDF4, ConversionGlobal::BLF,
                                     ConversionGlobal::ASC, ConversionGlobal::ASC_ZIP};

QLatin1String extensionOf(Format format)
{
    switch (format) {
    case ConversionGlobal::MDF4:
        return QLatin1String(".mf4");
    case ConversionGlobal::BLF:
        return QLatin1String(".blf");
    case ConversionGlobal::ASC:
        return QLatin1String(".asc");
    case ConversionGlobal::ASC_ZIP:
        return QLatin1String(".asc.zip");
    case ConversionGlobal::NONE:
        break;
    }
    return QLatin1String();
}

PlannedConversion planned(const QString &file, const QString &folder, Format format,
                          OutputNames &names)
{
    PlannedConversion conversion;
    conversion.format = format;
    conversion.inputFile = file;
    if (format == ConversionGlobal::MDF4) {
        conversion.outputFile = names.outputFile(file, folder);
        conversion.temporaryDir = names.temporaryDir(folder);
    } else {
        conversion.outputFile =
            folder + QLatin1Char('/') + conversionbatch::baseNameOf(file) + extensionOf(format);
        conversion.temporaryDir = folder + QStringLiteral("/tmp");
    }
    return conversion;
}

} // namespace

QVector<PlannedConversion> conversionbatch::plan(const QStringList &files, const QString &folder,
                                                 ConversionGlobal::OutputFormatFlags formats,
                                                 OutputNames &names)
{
    QVector<PlannedConversion> conversions;
    for (const QString &file : files) {
        for (const Format format : formatsInOrder) {
            if (formats.testFlag(format))
                conversions.append(planned(file, folder, format, names));
        }
    }
    return conversions;
}

QString conversionbatch::keyOf(Format format)
{
    return QLatin1String(QMetaEnum::fromType<Format>().valueToKey(format));
}

QString conversionbatch::baseNameOf(const QString &file)
{
    return QFileInfo(file).completeBaseName();
}

QString conversionbatch::title(ConversionGlobal::OutputFormatFlags formats)
{
    QString text = QStringLiteral(" Converting to ");
    for (const Format format : {ConversionGlobal::ASC, ConversionGlobal::BLF,
                                ConversionGlobal::MDF4, ConversionGlobal::ASC_ZIP}) {
        if (formats.testFlag(format))
            text += extensionOf(format) + QLatin1Char(' ');
    }
    return text;
}

QString conversionbatch::sequentialLabel(int number, int count)
{
    return QStringLiteral("...converting file %1 of %2...").arg(number).arg(count);
}

QString conversionbatch::parallelLabel(int count)
{
    return QStringLiteral("...converting %1 files...").arg(count);
}

QString conversionbatch::finishedLabel(int count)
{
    return QStringLiteral("...conversion of %1 file(s) finished...").arg(count);
}
