#include "link/protocol/framereader.h"

namespace protocol {

namespace {

constexpr char sync1 = char(0xAA);
constexpr char sync2 = 0x55;
constexpr int minLength = 4; // type, number, sub, info

} // namespace

void FrameReader::reset()
{
    *this = FrameReader();
}

QList<QByteArray> FrameReader::feed(const QByteArray &bytes)
{
    QList<QByteArray> frames;
    int at = 0;
    while (at < bytes.size()) {
        if (m_state == State::Sync1) {
            at = bytes.indexOf(sync1, at);
            if (at < 0)
                return frames;
        }
        if (m_state != State::Body) {
            takeHeadByte(bytes.at(at++));
            continue;
        }
        const int taken = qMin(m_missing, bytes.size() - at);
        m_frame.append(bytes.constData() + at, taken);
        at += taken;
        m_missing -= taken;
        if (m_missing == 0) {
            frames.append(m_frame);
            reset();
        }
    }
    return frames;
}

void FrameReader::takeHeadByte(char byte)
{
    m_frame.append(byte);
    switch (m_state) {
    case State::Sync1:
        m_state = State::Sync2;
        return;
    case State::Sync2:
        if (byte != sync2)
            break;
        m_state = State::LengthLow;
        return;
    case State::LengthLow:
        m_state = State::LengthHigh;
        return;
    case State::LengthHigh:
        m_missing = quint8(m_frame.at(2)) | quint8(byte) << 8;
        if (m_missing < minLength)
            break;
        m_frame.reserve(m_frame.size() + m_missing); // at most 64 KiB
        m_state = State::Body;
        return;
    case State::Body:
        break;
    }
    reset();
}

} // namespace protocol
