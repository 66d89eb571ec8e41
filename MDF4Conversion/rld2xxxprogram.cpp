#include "MDF4Conversion/rld2xxxprogram.h"

#include "MDF4Conversion/conversionbatch.h"

#include <QDir>
#include <QFileInfo>

QString rld2xxxprogram::find(const QString &workingDir, const QString &toolDir)
{
    for (const QString &folder : {workingDir, toolDir}) {
        const QFileInfo program(QDir(folder), QStringLiteral("rld2xxx.exe"));
        if (program.isFile())
            return program.absoluteFilePath();
    }
    return {};
}

QStringList rld2xxxprogram::arguments(const PlannedConversion &conversion,
                                      const QString &growingFile, const QString &memoryKey)
{
    return {conversionbatch::keyOf(conversion.format), conversion.inputFile.trimmed(),
            growingFile.trimmed(), QStringLiteral("ABS"), memoryKey};
}
