#include "cli/logclock.h"

std::optional<qint64> LogClock::nearTime(quint32 timestamp_us,
                                         std::optional<qint64> newestOnBus) const
{
    const auto difference = static_cast<qint32>(timestamp_us - quint32(m_newest));
    const qint64 time_us = m_newest + difference;
    if (qAbs(qint64(difference)) > qint64(lag)
        || time_us < newestOnBus.value_or(time_us) - lagOnBus)
        return std::nullopt;
    return time_us;
}

LogClock::Reading LogClock::read(quint32 timestamp_us, std::optional<qint64> newestOnBus)
{
    Reading reading;
    if (!m_started) {
        m_started = true;
        m_newest = timestamp_us;
        reading.time_us = m_newest;
        return reading;
    }
    if (m_leap) {
        reading.leapWasFalse = nearTime(timestamp_us, newestOnBus).has_value();
        if (!reading.leapWasFalse)
            m_newest = *m_leap;
        m_leap.reset();
    }
    if (const auto time_us = nearTime(timestamp_us, newestOnBus)) {
        reading.time_us = *time_us;
        m_newest = qMax(m_newest, reading.time_us);
        return reading;
    }
    reading.time_us = m_newest + (timestamp_us - quint32(m_newest));
    reading.verdict = Verdict::Leap;
    m_leap = reading.time_us;
    return reading;
}
