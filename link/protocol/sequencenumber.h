#pragma once

#include <QtGlobal>

namespace protocol {

// Counts messages from 121 on. 0 is left out when it wraps: it means that a message answers nothing.
class SequenceNumber
{
public:
    explicit constexpr SequenceNumber(quint16 last = 120)
        : m_last(last)
    {}

    constexpr quint16 next()
    {
        ++m_last;
        if (m_last == 0)
            m_last = 1;
        return m_last;
    }

private:
    quint16 m_last;
};

} // namespace protocol
