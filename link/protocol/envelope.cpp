#include "link/protocol/envelope.h"

#include <QtEndian>

#include <utility>

namespace protocol {

namespace {

constexpr char startByte = char(0xAA);
constexpr int lengthSize = 4;
constexpr int messageHeadSize = 7; // type, sequence, payload length

template <class T>
void append(QByteArray &bytes, T value)
{
    char raw[sizeof(T)];
    qToLittleEndian(value, raw);
    bytes.append(raw, int(sizeof raw));
}

} // namespace

bool operator==(const Message &a, const Message &b)
{
    return a.type == b.type && a.sequence == b.sequence && a.payload == b.payload;
}

QByteArray envelopeBytes(const QVector<Message> &messages)
{
    int length = 0;
    for (const Message &message : messages)
        length += messageHeadSize + message.payload.size();
    QByteArray bytes;
    bytes.reserve(1 + lengthSize + length);
    bytes.append(startByte);
    append(bytes, quint32(length));
    for (const Message &message : messages) {
        append(bytes, message.type);
        append(bytes, message.sequence);
        append(bytes, qint32(message.payload.size()));
        bytes.append(message.payload);
    }
    return bytes;
}

void EnvelopeReader::reset()
{
    *this = EnvelopeReader();
}

void EnvelopeReader::feed(const QByteArray &bytes, const Visitor &visit)
{
    int at = 0;
    while (at < bytes.size() && m_state != State::Broken) {
        switch (m_state) {
        case State::Start: {
            const int start = bytes.indexOf(startByte, at);
            if (start < 0)
                return;
            at = start + 1;
            m_lengthBytes = 0;
            m_length = 0;
            m_state = State::Length;
            break;
        }
        case State::Length:
            takeLength(bytes.at(at++));
            break;
        case State::Content: {
            const int missing = int(m_length) - m_content.size();
            const int taken = qMin(missing, bytes.size() - at);
            m_content.append(bytes.constData() + at, taken);
            at += taken;
            if (taken == missing) {
                m_state = State::Start;
                readMessages(std::exchange(m_content, {}), visit);
            }
            break;
        }
        case State::Broken:
            break;
        }
    }
}

void EnvelopeReader::takeLength(char byte)
{
    m_length |= quint32(quint8(byte)) << (8 * m_lengthBytes);
    if (++m_lengthBytes < lengthSize)
        return;
    const bool isPlausible = m_length != 0 && m_length <= maxEnvelopeLength;
    m_state = isPlausible ? State::Content : State::Broken;
}

// A message that claims more bytes than remain ends the envelope; what was read before it stands.
void EnvelopeReader::readMessages(const QByteArray &content, const Visitor &visit)
{
    int at = 0;
    while (content.size() - at >= messageHeadSize) {
        const char *head = content.constData() + at;
        const auto length = qFromLittleEndian<qint32>(head + 3);
        at += messageHeadSize;
        if (length < 0 || length > content.size() - at)
            return;
        visit({quint8(head[0]), qFromLittleEndian<quint16>(head + 1), content.mid(at, length)});
        at += length;
    }
}

} // namespace protocol
