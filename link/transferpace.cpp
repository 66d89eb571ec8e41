#include "link/transferpace.h"

#include <iterator>

namespace {

// The pace of a weak WLAN jumps; over ten seconds it tells more.
constexpr qint64 window_ms = 10'000;
constexpr qint64 maxSeconds = 365LL * 24 * 3600; // an estimate beyond it says nothing

constexpr qint64 secondsPerMinute = 60;
constexpr qint64 secondsPerHour = 3600;
constexpr qint64 veryLong_s = 24 * secondsPerHour;

} // namespace

void TransferPace::add(qint64 now_ms, qint64 bytes)
{
    if (!m_samples.empty() && bytes < m_samples.back().bytes)
        m_samples.clear();
    m_samples.push_back({now_ms, bytes});
    while (m_samples.size() > 2 && now_ms - m_samples.front().time_ms > window_ms)
        m_samples.pop_front();
}

double TransferPace::pace(const Sample &from, const Sample &to)
{
    const qint64 duration_ms = to.time_ms - from.time_ms;
    if (duration_ms <= 0)
        return 0;
    return double(to.bytes - from.bytes) * 1000.0 / double(duration_ms);
}

qint64 TransferPace::bytesPerSecond() const
{
    if (m_samples.size() < 2)
        return 0;
    return qRound64(pace(m_samples[m_samples.size() - 2], m_samples.back()));
}

std::optional<qint64> TransferPace::secondsFor(qint64 bytes) const
{
    if (m_samples.size() < 2)
        return std::nullopt;
    const double bytesPerSecond = pace(m_samples.front(), m_samples.back());
    if (bytesPerSecond <= 0)
        return std::nullopt;
    return qRound64(qMin(double(bytes) / bytesPerSecond, double(maxSeconds)));
}

QString speedText(qint64 bytesPerSecond)
{
    if (bytesPerSecond > 1'000'000)
        return QStringLiteral("%1 Mbit/s").arg(double(bytesPerSecond) / 125000.0, 0, 'f', 3);
    return QStringLiteral("%1 Kbit/s").arg(double(bytesPerSecond) / 125.0, 0, 'f', 1);
}

QString amountText(qint64 received, qint64 total)
{
    static constexpr const char *units[] = {"bytes", "KiB", "MiB", "GiB", "TiB"};
    std::size_t unit = 0;
    double size = 1;
    for (; unit + 1 < std::size(units) && double(total) >= size * 1024; ++unit)
        size *= 1024;
    const int decimals = unit == 0 ? 0 : 1;
    return QStringLiteral("%1 of %2 %3")
        .arg(double(received) / size, 0, 'f', decimals)
        .arg(double(total) / size, 0, 'f', decimals)
        .arg(QLatin1String(units[unit]));
}

QString timeLeftText(qint64 seconds)
{
    const qint64 hours = seconds / secondsPerHour;
    const qint64 minutes = seconds / secondsPerMinute % 60;
    const qint64 rest = seconds % secondsPerMinute;
    if (seconds >= veryLong_s)
        return QStringLiteral("very long... aprox. %1 hours").arg(hours);
    if (hours > 0)
        return QStringLiteral("about %1 hours %2 minutes %3 seconds")
            .arg(hours)
            .arg(minutes)
            .arg(rest);
    if (minutes > 0)
        return QStringLiteral("about %1 minutes %2 seconds").arg(minutes).arg(rest);
    return QStringLiteral("about %1 seconds").arg(rest);
}
