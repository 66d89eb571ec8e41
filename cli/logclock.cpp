#include "cli/logclock.h"

LogClock::Reading LogClock::read(quint32 timestamp_us)
{
    Reading reading;
    if (!m_started) {
        m_started = true;
        m_newest = timestamp_us;
        reading.time_us = m_newest;
        return reading;
    }
    if (m_leap) {
        reading.leapWasFalse = isNear(timestamp_us - quint32(m_newest));
        if (!reading.leapWasFalse)
            m_newest = *m_leap;
        m_leap.reset();
    }
    const quint32 ahead = timestamp_us - quint32(m_newest);
    if (!isNear(ahead)) {
        reading.time_us = m_newest + ahead;
        reading.verdict = Verdict::Leap;
        m_leap = reading.time_us;
        return reading;
    }
    reading.time_us = m_newest + qint32(ahead);
    m_newest = qMax(m_newest, reading.time_us);
    return reading;
}
