#include "MDF4Conversion/rawlog/demolog.h"

#include "MDF4Conversion/rawlog/drivelog.h"
#include "MDF4Conversion/rawlog/syntheticlogs.h"

#include <QCoreApplication>
#include <QDir>

namespace demolog {
namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("DemoLog", text);
}

} // namespace

Result makeAll(const QString &folder, int seconds, const std::function<bool(int)> &progress)
{
    Result result;
    if (!QDir().mkpath(folder)) {
        result.failure = tr("%1: the folder could not be made").arg(folder);
        return result;
    }
    const QDir target(folder);
    for (int run = 1; run <= syntheticlogs::runCount; ++run) {
        result.failure = syntheticlogs::write(run, folder);
        if (!result.failure.isNull())
            return result;
        result.files += target.filePath(syntheticlogs::fileName(run));
    }
    const QString drive = target.filePath(drivelog::fileName());
    const drivelog::Result driven = drivelog::write(drive, seconds, progress);
    result.failure = driven.failure;
    result.cancelled = driven.cancelled;
    if (driven.failure.isNull() && !driven.cancelled)
        result.files += drive;
    return result;
}

} // namespace demolog
