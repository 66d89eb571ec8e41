#pragma once

#include <QElapsedTimer>

// Bounds how often something is logged that a peer can provoke. Used by one thread.
class MessageRate
{
public:
    explicit MessageRate(int perSecond = 10)
        : m_perSecond(perSecond)
    {}

    // Whether the next message may be written.
    [[nodiscard]] bool allows()
    {
        if (!m_second.isValid() || m_second.elapsed() >= 1000) {
            m_second.start();
            m_written = 0;
        }
        return m_written++ < m_perSecond;
    }

private:
    const int m_perSecond;
    int m_written = 0;
    QElapsedTimer m_second;
};
