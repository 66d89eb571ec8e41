#pragma once

#include <QtGlobal>

// Entries per second from a running count.
class LiveRate
{
public:
    // The rate since the last call; 0 for the first one.
    quint64 update(quint64 count, qint64 elapsed_ms)
    {
        const quint64 rate = m_started && elapsed_ms > 0
                                 ? (count - m_count) * 1000 / static_cast<quint64>(elapsed_ms)
                                 : 0;
        m_count = count;
        m_started = true;
        return rate;
    }

private:
    quint64 m_count = 0;
    bool m_started = false;
};
