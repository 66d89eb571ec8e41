#pragma once

#include <QByteArray>
#include <QVector>

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
// bytes that have arrived, never with an announced length.
class EnvelopeReader
{
public:
    // The messages of all envelopes that these bytes complete.
    [[nodiscard]] QVector<Message> feed(const QByteArray &bytes);

    // An envelope announced 0 or more than maxEnvelopeLength bytes. Nothing is read any more until a
    // reset: the connection has to be closed.
    [[nodiscard]] bool isBroken() const { return m_state == State::Broken; }
    void reset();

private:
    enum class State { Start, Length, Content, Broken };

    void takeLength(char byte);
    static void readMessages(const QByteArray &content, QVector<Message> &messages);

    State m_state = State::Start;
    int m_lengthBytes = 0;
    quint32 m_length = 0;
    QByteArray m_content;
};

} // namespace protocol
