#include "MDF4Conversion/progressfigures.h"

#include <cmath>

namespace {

constexpr double shortestEstimate_s = 0.5; // before, any estimate is a guess

} // namespace

ProgressFigures progressFigures(double done, double bytes, double elapsed_s)
{
    ProgressFigures figures;
    figures.elapsed_s = elapsed_s;
    if (done > 0 && elapsed_s > shortestEstimate_s) {
        figures.left_s = elapsed_s / done - elapsed_s;
        figures.bytesPerSecond = bytes * done / elapsed_s;
    }
    return figures;
}

QString textWhileRunning(const ProgressFigures &figures)
{
    QString text = QStringLiteral("%1 elapsed").arg(durationText(figures.elapsed_s));
    if (figures.left_s)
        text += QStringLiteral(", %1 left").arg(durationText(*figures.left_s));
    if (figures.bytesPerSecond)
        text += QStringLiteral(", %1/s").arg(sizeText(*figures.bytesPerSecond));
    return text;
}

QString textWhenDone(const ProgressFigures &figures)
{
    QString text = durationText(figures.elapsed_s);
    if (figures.bytesPerSecond)
        text += QStringLiteral(", %1/s").arg(sizeText(*figures.bytesPerSecond));
    return text;
}

QString sizeText(double bytes)
{
    return bytes < 1e9 ? QStringLiteral("%1 MB").arg(bytes / 1e6, 0, 'f', 1)
                       : QStringLiteral("%1 GB").arg(bytes / 1e9, 0, 'f', 2);
}

QString durationText(double seconds)
{
    const auto whole = static_cast<qint64>(std::ceil(qBound(0.0, seconds, 1e9)));
    const auto twoDigits = [](qint64 value) {
        return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
    };
    const QString minutesAndSeconds =
        twoDigits(whole / 60 % 60) + QLatin1Char(':') + twoDigits(whole % 60);
    if (whole >= 3600)
        return QStringLiteral("%1:%2").arg(whole / 3600).arg(minutesAndSeconds);
    return whole >= 600 ? minutesAndSeconds : minutesAndSeconds.mid(1);
}

double shareOfAll(const std::vector<PartOfWork> &parts)
{
    double weight = 0;
    double done = 0;
    for (const PartOfWork &part : parts) {
        const double counted = qMax(part.weight, 1.0);
        weight += counted;
        done += counted * part.done;
    }
    return weight > 0 ? done / weight : 0;
}
