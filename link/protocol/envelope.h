#pragma once

#include <QByteArray>
#include <QVector>

#include <functional>

// The envelope of the command socket, both directions, all integers little-endian:
//   0  0xAA
//   1  uint32 length of what follows
//   5  messages: uint8 type, uint16 sequence, int32 payload length, payload
namespace protocol {

struct Message
{
    quint8 type = 0;
    quint16 sequence = 0; // 0 answers nothing
    QByteArray payload;
};

[[nodiscard]] bool operator==(const Message &a, const Message &b);

constexpr quint32 maxEnvelopeLength = 100'000'000;

// The messages in one envelope.
[[nodiscard]] QByteArray envelopeBytes(const QVector<Message> &messages);
[[nodiscard]] inline QByteArray envelopeBytes(const Message &message)
{
    return envelopeBytes(QVector<Message>{message});
}

// Finds envelopes in a stream of bytes that arrives in pieces of any size. Memory grows with the
// bytes of the envelope in progress that have arrived: neither with an announced length nor with the
// number of messages, each of which costs many times the seven bytes that it can be as small as.
class EnvelopeReader
{
public:
    using Visitor = std::function<void(const Message &)>;

    // Hands out the messages of all envelopes that these bytes complete, one by one.
    void feed(const QByteArray &bytes, const Visitor &visit);

    // An envelope announced 0 or more than maxEnvelopeLength bytes. Nothing is read any more until a
    // reset: the connection has to be closed.
    [[nodiscard]] bool isBroken() const { return m_state == State::Broken; }
    void reset();

private:
    enum class State { Start, Length, Content, Broken };

    void takeLength(char byte);
    static void readMessages(const QByteArray &content, const Visitor &visit);

    State m_state = State::Start;
    int m_lengthBytes = 0;
    quint32 m_length = 0;
    QByteArray m_content;
};

} // namespace protocol
