#include "simulator/commandsession.h"

#include "link/protocol/messagetypes.h"
#include "simulator/faults.h"

#include <QTcpSocket>
#include <QtEndian>

namespace simulator {
namespace {

using protocol::Message;

// A tool that asks without reading is let go.
constexpr qint64 maxUnsentBytes = 64 * 1024 * 1024;
constexpr int maxDelay_ms = 600'000;
constexpr int maxNoise = 1024 * 1024;

quint16 before(quint16 sequence)
{
    return sequence <= 1 ? quint16(0xFFFF) : quint16(sequence - 1);
}

void putLength(QByteArray &envelope, int at, quint32 length)
{
    qToLittleEndian(length, envelope.data() + at);
}

// The last message claims as many bytes more as stand here; the envelope's length stays.
void cutLastMessage(QByteArray &envelope, const Message &last)
{
    constexpr quint32 claimed = 100;
    const int at = envelope.size() - last.payload.size() - 4;
    putLength(envelope, at, quint32(last.payload.size()) + claimed);
}

} // namespace

CommandSession::CommandSession(QTcpSocket *socket, FaultSet &faults, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_faults(faults)
{
    m_socket->setParent(this);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, &CommandSession::read);
    connect(m_socket, &QTcpSocket::disconnected, this, &CommandSession::closed);
    connect(&m_pieceTimer, &QTimer::timeout, this, &CommandSession::sendPiece);
}

void CommandSession::read()
{
    m_reader.feed(m_socket->readAll(), [this](const Message &message) { emit received(message); });
    if (m_reader.isBroken())
        drop();
}

void CommandSession::drop()
{
    m_pieces.clear();
    m_pieceTimer.stop();
    m_socket->abort();
}

void CommandSession::finish()
{
    m_pieces.emplace_back();
    m_pieceTimer.start(0);
}

void CommandSession::send(QVector<Message> messages, const QString &word, const Message &push)
{
    if (m_faults.happens(Fault::LostReply, word))
        return;
    if (m_faults.happens(Fault::StaleSequence, word)) {
        for (Message &message : messages)
            message.sequence = before(message.sequence);
    }
    if (const auto malformed = m_faults.find(Fault::MalformedReply, word)) {
        for (Message &message : messages) {
            message.payload = message.type == protocol::TextCommand
                                  ? malformed->value.toLatin1()
                                  : message.payload.left(message.payload.size() / 2);
        }
    }
    if (m_faults.happens(Fault::PushWithReply, word))
        messages.append(push);
    QByteArray bytes = protocol::envelopeBytes(messages);
    if (m_faults.happens(Fault::CutMessage, word))
        cutLastMessage(bytes, messages.last());
    if (const auto length = m_faults.number(Fault::BrokenEnvelope, word))
        putLength(bytes, 1, *length);
    if (const auto noise = m_faults.number(Fault::NoiseBeforeReply, word))
        bytes.prepend(QByteArray(int(qMin(*noise, quint32(maxNoise))), '\x55'));
    const bool endsInside = m_faults.happens(Fault::DropInReply, word);
    if (const auto delay = m_faults.number(Fault::LateReply, word)) {
        QTimer::singleShot(int(qMin(*delay, quint32(maxDelay_ms))), this,
                           [this, bytes, endsInside] { enqueue(bytes, endsInside); });
        return;
    }
    enqueue(bytes, endsInside);
}

void CommandSession::enqueue(const QByteArray &bytes, bool endsInside)
{
    const QByteArray sent = endsInside ? bytes.left(bytes.size() / 2) : bytes;
    const quint32 pieceSize = m_faults.number(Fault::SplitReply).value_or(0);
    if (pieceSize == 0 && m_pieces.empty()) {
        write(sent);
    } else {
        const int step = pieceSize == 0 ? sent.size() : int(qMin(pieceSize, 0x7FFFFFFFU));
        for (qint64 at = 0; at < sent.size(); at += step)
            m_pieces.push_back(sent.mid(int(at), step));
        m_pieceTimer.start(0);
    }
    if (endsInside)
        finish();
}

void CommandSession::sendPiece()
{
    if (m_pieces.empty()) {
        m_pieceTimer.stop();
        return;
    }
    const QByteArray piece = m_pieces.front();
    m_pieces.pop_front();
    if (piece.isEmpty())
        m_socket->disconnectFromHost();
    else
        write(piece);
}

void CommandSession::write(const QByteArray &bytes)
{
    if (m_socket->state() != QAbstractSocket::ConnectedState)
        return;
    const auto limit = m_faults.number(Fault::DropCommandAfter);
    if (limit && m_sentBytes + bytes.size() >= *limit) {
        m_socket->write(bytes.left(int(qMax(qint64(0), *limit - m_sentBytes))));
        m_sentBytes = *limit;
        m_pieces.clear();
        finish();
        return;
    }
    m_socket->write(bytes);
    m_socket->flush();
    m_sentBytes += bytes.size();
    if (m_socket->bytesToWrite() > maxUnsentBytes)
        drop();
}

} // namespace simulator
