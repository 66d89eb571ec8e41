#include "link/data_handler_class.h"

#include "link/rawqueue.h"
#include "link/socketconnect.h"

#include <QDebug>
#include <QNetworkProxy>
#include <QScopeGuard>
#include <QTcpSocket>
#include <QTimer>

#include <utility>

namespace {

constexpr int copyInterval_ms = 100;
constexpr int debugInterval_ms = 1000;
constexpr qint64 readBufferBytes = 4 << 20;
constexpr qint64 maxGatheredBytes = 4 << 20; // far more than a vehicle's buses fill in a cycle

} // namespace

Data_Handler_Class::Data_Handler_Class()
{
    moveToThread(this);
}

Data_Handler_Class::~Data_Handler_Class()
{
    quit();
    wait();
    m_end.waitedFor();
    dropGathered();
}

void Data_Handler_Class::run()
{
    const auto atEnd = qScopeGuard([this] { m_end.reached(); });
    QTcpSocket socket(this);
    QTimer copyTimer;
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.setReadBufferSize(readBufferBytes);
    m_socket = &socket;
    connect(&socket, &QTcpSocket::errorOccurred, this, &Data_Handler_Class::tcp_socket_error);
    connect(&socket, &QTcpSocket::disconnected, this, &Data_Handler_Class::socketDisconnected);
    connect(&socket, &QTcpSocket::readyRead, this, &Data_Handler_Class::read_socket_data);
    connect(&copyTimer, &QTimer::timeout, this, &Data_Handler_Class::copy_data_to_gui);
    copyTimer.start(copyInterval_ms);
    write_debug_output();

    qDebug() << "Data_Handler_Class executing event-looop: thread id - " << currentThreadId();
    exec();
    qDebug() << "Data_Handler_Class leaved event-looop: thread id - " << currentThreadId();
    socket.disconnect(this);
    socket.close();
    m_isConnected = false;
    m_socket = nullptr;
}

bool Data_Handler_Class::socket_connect(QHostAddress tcp_address, ushort tcp_port)
{
    m_lastError.clear();
    m_socket->abort();
    m_dataEnabled = false;
    m_reader.reset();
    dropGathered();
    m_isConnected = connectInTime(*m_socket, tcp_address, tcp_port);
    if (!m_isConnected && m_lastError.isEmpty())
        m_lastError = m_socket->errorString();
    return m_isConnected;
}

void Data_Handler_Class::socket_disconnect()
{
    m_socket->close();
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        m_socket->abort(); // the connection is still being made
    dropGathered();
}

bool Data_Handler_Class::is_socket_connected()
{
    return m_isConnected;
}

QString Data_Handler_Class::get_last_error()
{
    return m_lastError;
}

void Data_Handler_Class::read_socket_data()
{
    ++m_readCalls;
    const QList<QByteArray> frames = m_reader.feed(m_socket->readAll());
    if (!m_dataEnabled)
        return;
    for (const QByteArray &frame : frames)
        gather(frame);
}

// A flood is handed over at once: what the other side doesn't take is counted and bounded there.
void Data_Handler_Class::gather(const QByteArray &entry)
{
    m_gathered.append(new QByteArray(entry));
    m_gatheredBytes += entry.size() + RawQueue::costOfEntry;
    if (m_gatheredBytes > maxGatheredBytes)
        copy_data_to_gui();
}

void Data_Handler_Class::copy_data_to_gui()
{
    m_gatheredBytes = 0;
    if (!m_gathered.isEmpty())
        emit signal_data_copy_ONLY_DIRECT_CONNECTION(std::exchange(m_gathered, {}));
}

void Data_Handler_Class::socketDisconnected()
{
    m_isConnected = false;
    emit signal_disconnected();
}

void Data_Handler_Class::tcp_socket_error(QAbstractSocket::SocketError)
{
    const QString text = m_socket->errorString();
    qWarning("Warning TCP-Data-Socket-Error %s", text.toLatin1().constData());
    m_lastError = text; // closing forgets it
    m_isConnected = false;
    emit signal_socket_error(text);
    m_socket->close();
    m_socket->abort();
}

void Data_Handler_Class::write_debug_output()
{
    qDebug("TCP-Read requests:%i", m_readCalls);
    m_readCalls = 0;
    QTimer::singleShot(debugInterval_ms, this, &Data_Handler_Class::write_debug_output);
}

void Data_Handler_Class::dropGathered()
{
    qDeleteAll(m_gathered);
    m_gathered.clear();
    m_gatheredBytes = 0;
}
