#include "simulator/filesession.h"

#include "simulator/faults.h"
#include "simulator/loggerstate.h"
#include "simulator/logstorage.h"

#include <QTcpSocket>

namespace simulator {
namespace {

constexpr int maxRequestBytes = 4096;
constexpr qint64 chunkBytes = 256 * 1024;

} // namespace

FileSession::FileSession(QTcpSocket *socket, const LoggerState &state, const FaultSet &faults,
                         QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_state(state)
    , m_faults(faults)
{
    m_socket->setParent(this);
    connect(m_socket, &QTcpSocket::readyRead, this, &FileSession::read);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &FileSession::sendMore);
    connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
}

void FileSession::drop()
{
    m_socket->abort();
}

void FileSession::read()
{
    const QByteArray bytes = m_socket->readAll();
    if (m_file.isOpen())
        return; // one file for each connection
    m_request += bytes;
    const int end = m_request.indexOf('\n');
    if (end >= 0)
        begin(m_request.left(end).trimmed());
    else if (m_request.size() > maxRequestBytes)
        drop();
}

// The protocol knows no error: a file that can't be had is an empty one.
void FileSession::begin(const QByteArray &request)
{
    const QByteArray command = QByteArrayLiteral("download_log_file=");
    const QString name = QString::fromLatin1(request.mid(command.size()));
    const auto path = storedFilePath(m_state.logFolder, name);
    if (!request.startsWith(command) || !path) {
        m_socket->disconnectFromHost();
        return;
    }
    m_file.setFileName(*path);
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_socket->disconnectFromHost();
        return;
    }
    m_left = m_file.size();
    if (const auto missing = m_faults.number(Fault::ShortFile))
        m_left = qMax(qint64(0), m_left - *missing);
    if (const auto further = m_faults.number(Fault::LongFile))
        m_left += *further;
    if (const auto before = m_faults.number(Fault::StalledFile)) {
        m_isStalled = true;
        m_left = qMin(m_left, qint64(*before));
    }
    sendMore();
}

void FileSession::sendMore()
{
    if (!m_file.isOpen())
        return;
    while (m_left > 0 && m_socket->bytesToWrite() < chunkBytes) {
        QByteArray chunk = m_file.read(qMin(m_left, chunkBytes));
        if (chunk.isEmpty())
            chunk = QByteArray(int(qMin(m_left, chunkBytes)), '\0');
        m_left -= chunk.size();
        m_socket->write(chunk);
    }
    if (m_left == 0 && !m_isStalled)
        m_socket->disconnectFromHost();
}

} // namespace simulator
