#pragma once

#include "can/canframe.h"

#include <QByteArray>

// A frame together with its bytes, which a can::ReceivedFrame only points at.
class FrameBytes
{
public:
    FrameBytes(quint32 id, const char *hex, bool extended = false)
        : m_bytes(QByteArray::fromHex(hex))
    {
        m_frame.id = id;
        m_frame.extended = extended;
    }

    [[nodiscard]] FrameBytes at(quint32 timestamp_us) const
    {
        FrameBytes copy = *this;
        copy.m_frame.timestamp_us = timestamp_us;
        return copy;
    }
    [[nodiscard]] FrameBytes remote() const
    {
        FrameBytes copy = *this;
        copy.m_frame.remote = true;
        return copy;
    }

    // Valid as long as this object.
    operator can::ReceivedFrame() const
    {
        can::ReceivedFrame frame = m_frame;
        frame.data = {reinterpret_cast<const quint8 *>(m_bytes.constData()),
                      std::size_t(m_bytes.size())};
        return frame;
    }

private:
    can::ReceivedFrame m_frame;
    QByteArray m_bytes;
};
