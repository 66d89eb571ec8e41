#include "cli/inspectionrun.h"

#include "MDF4Conversion/progressfigures.h"
#include "cli/console.h"
#include "cli/inspectionjson.h"
#include "cli/inspectiontext.h"
#include "cli/interruption.h"
#include "config/configfile.h"

#include <QFileInfo>

namespace {

constexpr qint64 progressInterval_ms = 100;

// "file.rld  45 %  1.20 GB/s"
QString progressText(const QString &file, qint64 done, qint64 size, qint64 elapsed_ms)
{
    const qint64 percent = size == 0 ? 100 : done * 100 / size;
    QString text = QFileInfo(file).fileName() + QStringLiteral("  %1 %").arg(percent);
    if (elapsed_ms > 0)
        text += QStringLiteral("  %1/s").arg(sizeText(double(done) * 1000.0 / double(elapsed_ms)));
    return text;
}

} // namespace

ExitCode InspectionRun::run(const QStringList &files)
{
    ExitCode code = AllDone;
    for (const QString &file : files) {
        const ExitCode ofFile = interruption::requested() ? Cancelled : inspect(file);
        if (ofFile == Cancelled)
            return Cancelled;
        code = qMax(code, ofFile);
    }
    return code;
}

ExitCode InspectionRun::inspect(const QString &file)
{
    m_clock.start();
    m_shownAt_ms = 0;
    const auto scope =
        m_saveAs.isEmpty() ? InspectionScope::Everything : InspectionScope::ConfigurationOnly;
    FileInspection inspection = inspectFile(
        file, scope, [&](qint64 done, qint64 size) { return showProgress(file, done, size); });
    m_console.clearProgress();
    if (inspection.cancelled)
        return Cancelled;
    if (!m_saveAs.isEmpty() && inspection.failure.isEmpty())
        (void)save(inspection, inspection.failure);
    show(inspection);
    if (interruption::requested())
        return Cancelled;
    if (!inspection.failure.isEmpty())
        return SomeFileFailed;
    return inspection.errors.isEmpty() ? AllDone : DoneWithErrors;
}

bool InspectionRun::save(const FileInspection &inspection, QString &failure) const
{
    if (!inspection.configuration) {
        failure = QStringLiteral("it holds no configuration");
        return false;
    }
    if (!inspection.configurationIsWhole) {
        failure = QStringLiteral("a damaged configuration is not saved");
        return false;
    }
    // A slip of the command line must not cost a recording, or anything else.
    const FileHead target = readFileHead(m_saveAs);
    if (target.kind == FileHead::Kind::RawLog) {
        failure =
            QStringLiteral("%1 is a raw log and is not overwritten").arg(displayName(m_saveAs));
        return false;
    }
    const QFileInfo info(m_saveAs);
    const bool isNamedSo = info.suffix().compare(QLatin1String("zdc"), Qt::CaseInsensitive) == 0;
    const bool isConfiguration =
        target.kind == FileHead::Kind::Configuration && (target.framesAreWhole || isNamedSo);
    if (info.exists() && !isConfiguration) {
        failure = QStringLiteral("%1 is no configuration and is not overwritten")
                      .arg(displayName(m_saveAs));
        return false;
    }
    return configfile::save(*inspection.configuration, m_saveAs, &failure);
}

void InspectionRun::show(const FileInspection &inspection)
{
    if (m_json)
        writeInspectionJson(*m_json, inspection);
    else if (m_saveAs.isEmpty())
        showText(inspection);
    const QString prefix = displayName(inspection.file) + QStringLiteral(": ");
    for (const QString &warning : inspection.warnings)
        m_console.warning(prefix + warning);
    for (const QString &error : inspection.errors)
        m_console.error(prefix + error);
    if (!inspection.failure.isEmpty())
        m_console.error(prefix + inspection.failure);
}

void InspectionRun::showText(const FileInspection &inspection)
{
    const QString text = inspectionText(inspection);
    if (text.isEmpty())
        return;
    m_console.print((m_isFirst ? QString() : QStringLiteral("\n")) + text.trimmed());
    m_isFirst = false;
}

bool InspectionRun::showProgress(const QString &file, qint64 done, qint64 size)
{
    const qint64 now_ms = m_clock.elapsed();
    if (now_ms - m_shownAt_ms >= progressInterval_ms) {
        m_shownAt_ms = now_ms;
        m_console.showProgress(progressText(file, done, size, now_ms));
    }
    return !interruption::requested();
}
