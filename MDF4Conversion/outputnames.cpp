#include "MDF4Conversion/outputnames.h"

#include "MDF4Conversion/growingfile.h"

#include <QFileInfo>

bool OutputNames::isFree(const QString &path) const
{
    return !m_taken.contains(path) && !QFileInfo::exists(path)
           && !QFileInfo::exists(growingfile::lockOf(path));
}

QString OutputNames::take(const QString &path)
{
    m_taken.insert(path);
    return path;
}

QString OutputNames::outputFile(const QString &inputFile, const QString &folder)
{
    const QMutexLocker lock(&m_mutex);
    const QString baseName = QFileInfo(inputFile).completeBaseName();
    const QString outputPattern = QStringLiteral("%1/%2.mf4");
    QString output = outputPattern.arg(folder, baseName);
    while (!isFree(output)) {
        output = outputPattern.arg(folder,
                                   baseName + QLatin1Char('_') + QString::number(m_outputNumber));
        ++m_outputNumber;
    }
    return take(output);
}

QString OutputNames::temporaryDir(const QString &folder)
{
    const QMutexLocker lock(&m_mutex);
    QString temporary;
    do {
        temporary = QStringLiteral("%1/tmp_%2").arg(folder, QString::number(m_temporaryNumber));
        ++m_temporaryNumber;
    } while (!isFree(temporary));
    return take(temporary);
}
