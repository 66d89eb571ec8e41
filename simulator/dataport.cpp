#include "simulator/dataport.h"

#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "link/protocol/messagetypes.h"
#include "simulator/faults.h"
#include "simulator/listening.h"
#include "simulator/loggerstate.h"

#include <QTcpSocket>

namespace simulator {
namespace {

constexpr quint32 noiseStream = 0x4E6F6973;
constexpr quint32 maxSpoiledBytes = 1024 * 1024;

} // namespace

DataPort::DataPort(LoggerState &state, FaultSet &faults, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_faults(faults)
    , m_server(this)
    , m_timer(this)
    , m_stream(state)
{
    m_timer.setInterval(batchPeriod_ms);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &DataPort::sendBatch);
    connect(&m_server, &QTcpServer::newConnection, this, &DataPort::acceptConnections);
}

DataPort::~DataPort()
{
    close();
}

bool DataPort::listen(const QHostAddress &address, QString *error)
{
    return listenOn(m_server, address, protocol::dataPort, error);
}

void DataPort::close()
{
    m_server.close();
    dropConnections();
}

void DataPort::dropConnections()
{
    const QList<Session> sessions = m_sessions;
    for (const Session &session : sessions)
        session.socket->abort();
}

void DataPort::setReplay(std::unique_ptr<LogReplay> replay)
{
    m_replay = std::move(replay);
    m_isOutdated = true;
}

void DataPort::acceptConnections()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        if (m_sessions.isEmpty())
            m_isOutdated = true; // what came up while nobody listened is past
        m_sessions.append({socket});
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] { removeSession(socket); });
        // The tool has nothing to say here.
        connect(socket, &QTcpSocket::readyRead, socket, [socket] { socket->readAll(); });
        if (m_faults.happens(Fault::RefuseDataConnection))
            socket->abort();
        else
            m_timer.start();
    }
}

void DataPort::removeSession(QTcpSocket *socket)
{
    for (int i = 0; i < m_sessions.size(); ++i) {
        if (m_sessions.at(i).socket == socket) {
            m_sessions.removeAt(i);
            socket->deleteLater();
            break;
        }
    }
    if (m_sessions.isEmpty())
        m_timer.stop();
}

QByteArray DataPort::nextBatch()
{
    const qint64 now_us = m_state.uptime_us();
    if (m_isOutdated) {
        m_stream.restart(now_us);
        if (m_replay)
            m_replay->restart(now_us);
        m_isOutdated = false;
    }
    m_stream.setLoad(m_load + m_faults.number(Fault::DataFlood).value_or(0), m_loadMessages);
    return m_replay ? m_replay->entriesUntil(now_us) : m_stream.entriesUntil(now_us);
}

void DataPort::sendBatch()
{
    QByteArray batch = nextBatch();
    spoil(batch);
    send(batch);
}

// A write may find the connection gone and take the session out of the list.
void DataPort::send(const QByteArray &entries)
{
    for (int i = m_sessions.size() - 1; i >= 0; --i)
        write(m_sessions[i], entries);
}

void DataPort::spoil(QByteArray &batch)
{
    const auto random = [this] { return drive::randomBits(noiseStream, m_noise++); };
    if (const auto count = m_faults.number(Fault::DataDamage)) {
        for (quint32 i = 0; i < qMin(*count, maxSpoiledBytes) && !batch.isEmpty(); ++i)
            batch[int(random() % quint64(batch.size()))] = char(random());
    }
    if (m_faults.happens(Fault::DataHollow)) {
        for (int type = 0; type <= 0xFF; ++type)
            batch += rawlog::entryBytes({quint8(type), 0, 1, 0xFF}, {});
    }
    if (const auto count = m_faults.number(Fault::DataGarbage)) {
        QByteArray garbage(int(qMin(*count, maxSpoiledBytes)), '\0');
        for (char &byte : garbage)
            byte = char(random());
        batch.prepend(garbage);
    }
}

void DataPort::write(Session &session, const QByteArray &entries)
{
    QTcpSocket *socket = session.socket;
    if (socket->bytesToWrite() + entries.size() > maxUnsentBytes) {
        m_droppedBytes += entries.size();
        return;
    }
    const auto limit = m_faults.number(Fault::DropDataAfter);
    const bool ends = limit && session.sentBytes + entries.size() >= *limit;
    const QByteArray sent =
        ends ? entries.left(int(qMax(qint64(0), *limit - session.sentBytes))) : entries;
    session.sentBytes += sent.size();
    socket->write(sent);
    if (ends)
        socket->disconnectFromHost();
}

} // namespace simulator
