#include "MDF4Conversion/rawlog/drivelog.h"

#include "MDF4Conversion/rawlog/drive/drive.h"
#include "MDF4Conversion/rawlog/rawlogfile.h"

namespace drivelog {
namespace {

constexpr qint64 second_us = 1'000'000;

} // namespace

QString fileName()
{
    return QStringLiteral("demo_drive.rld");
}

Result write(const QString &path, int seconds, const std::function<bool(int)> &progress)
{
    const qint64 length = qMax(seconds, 1);
    drive::Drive drive;
    RawLogFile file(path);
    Result result;
    bool ok = file.begin(drive.configuration());
    for (qint64 done = 0; ok && done < length; ++done) {
        if (!progress(int(done * 100 / length))) {
            result.cancelled = true;
            return result;
        }
        ok = file.add(drive.entriesUntil((done + 1) * second_us));
    }
    if (ok && file.finish())
        progress(100);
    result.failure = file.failure();
    return result;
}

} // namespace drivelog
