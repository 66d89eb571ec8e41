#include "link/tcpfileclient.h"

#include "MDF4Conversion/exclusivemove.h"
#include "MDF4Conversion/growingfile.h"
#include "MDF4Conversion/nativepath.h"
#include "link/korvissystemtoolsclass.h"
#include "link/protocol/commands.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QNetworkProxy>
#include <QTcpSocket>

namespace {

// What waits to be read: enough for the sender to go on while a block is written, and a bound on
// memory when the disk is slower than the network.
constexpr qint64 socketBufferBytes = 4 * TcpFileClient::maxReadBytes;

QString fileError(const QString &cause)
{
    return QStringLiteral("File-Error.(%1)").arg(cause);
}

// The request is a line, as a command is; a name with a line end would be two requests.
bool isRequestable(const QString &name)
{
    return protocol::isArgument(name);
}

} // namespace

TcpFileClient::TcpFileClient(QObject *parent)
    : QObject(parent)
    , m_socket(new QTcpSocket(this))
{
    m_socket->setProxy(QNetworkProxy::NoProxy);
    m_socket->setReadBufferSize(socketBufferBytes);
    m_silence.setSingleShot(true);
    m_silence.setInterval(defaultSilenceLimit_ms);
    connect(&m_silence, &QTimer::timeout, this, &TcpFileClient::silenceIsTooLong);
    connect(m_socket, &QTcpSocket::connected, this, &TcpFileClient::connected_request_file);
    connect(m_socket, &QTcpSocket::readyRead, this, &TcpFileClient::ReadData);
    connect(m_socket, &QTcpSocket::errorOccurred, this, &TcpFileClient::socket_error);
}

TcpFileClient::~TcpFileClient()
{
    disconnect(m_socket, nullptr, this, nullptr);
    closeTarget();
}

void TcpFileClient::start(const QHostAddress &address, quint16 port, const QString &remoteName,
                          qint64 expected, const QString &localName)
{
    Q_ASSERT(!m_isRunning);
    qDebug() << "TcpFileClient::start" << expected;
    closeTarget();
    m_remoteName = remoteName;
    m_localName = localName;
    m_received = 0;
    m_expected = expected;
    m_isRunning = true;
    if (expected < 0 || expected > maxFileBytes)
        return abort_and_set_error(
            tr("The size that the logger tells can't be right: %1 bytes.").arg(expected));
    if (!isRequestable(remoteName))
        return abort_and_set_error(tr("The logger can't be asked for a file of this name."));
    if (localName.isEmpty())
        return abort_and_set_error(tr("The file can't be stored: its name holds nothing that a "
                                      "file can be called by, or the folder is gone."));
    if (!m_isDisconnectedConnected) {
        connect(m_socket, &QTcpSocket::disconnected, this, &TcpFileClient::client_disconnected);
        m_isDisconnectedConnected = true;
    }
    m_silence.start();
    m_socket->connectToHost(address, port, QIODevice::ReadWrite);
}

void TcpFileClient::connected_request_file()
{
    qDebug() << "connected_request_file";
    emit signal_status_text(QStringLiteral("...connected starting download..."));
    m_silence.start();
    m_socket->write(QStringLiteral("download_log_file=%1\r\n").arg(m_remoteName).toLatin1());
    m_socket->flush();
}

void TcpFileClient::ReadData()
{
    readOnce();
    if (!m_isRunning || m_isReadPending || m_socket->bytesAvailable() == 0)
        return;
    m_isReadPending = true;
    QTimer::singleShot(0, this, [this] {
        m_isReadPending = false;
        ReadData();
    });
}

void TcpFileClient::readOnce()
{
    if (!m_isRunning)
        return;
    const QByteArray bytes = m_socket->read(maxReadBytes);
    if (bytes.isEmpty())
        return;
    m_silence.start();
    if (m_received == 0) {
        emit signal_downloading_started();
        emit signal_status_text(QStringLiteral("...downloading..."));
    }
    m_received += bytes.size();
    if (!m_target.isOpen() && !openTarget())
        return;
    if (m_target.write(bytes) != bytes.size())
        abort_and_set_error(fileError(m_target.errorString()));
    else if (m_received > m_expected)
        abort_and_set_error(
            QStringLiteral("Received more data than expected. (%1Bytes)").arg(m_received));
}

bool TcpFileClient::openTarget()
{
    qDebug() << "open file..";
    // A folder that takes no lock is no reason to give up; it takes no file either, and that is
    // told with its cause.
    if (growingfile::take(m_lock, m_localName) == QLockFile::LockFailedError) {
        qDebug() << "open file err..";
        const QString refusal = growingfile::refusalText(m_localName);
        abort_and_set_error(
            fileError(refusal.isEmpty() ? tr("Another download is writing this file.") : refusal));
        return false;
    }
    const QString part = growingfile::partOf(m_localName);
    // What a killed program left, or a link that somebody put there, isn't written to.
    QFile::remove(part);
    m_target.setFileName(part);
    if (m_target.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return true;
    qDebug() << "open file err..";
    abort_and_set_error(fileError(m_target.errorString()));
    return false;
}

void TcpFileClient::client_disconnected()
{
    // The logger may close while its last bytes wait here.
    while (m_isRunning && m_socket->bytesAvailable() > 0)
        readOnce();
    if (!m_isRunning)
        return;
    qDebug() << "File transfer complete";
    if (m_received != m_expected)
        return abort_and_set_error(QStringLiteral("disconnected"));
    if (!m_target.isOpen() && !openTarget())
        return; // the file is empty
    QString error;
    if (!publish(&error))
        return abort_and_set_error(fileError(error));
    end(true, {});
}

// Gives the file its name. One that somebody took since the start is not replaced.
bool TcpFileClient::publish(QString *error)
{
    if (!m_target.flush()) {
        *error = m_target.errorString();
        return false;
    }
    m_target.close();
    const QFileInfo wanted(m_localName);
    std::error_code failure;
    constexpr int attempts = 100;
    for (int i = 0; i < attempts; ++i) {
        moveWithoutReplacing(nativePath(m_target.fileName()), nativePath(m_localName), failure);
        if (failure != std::errc::file_exists)
            break;
        const QString name =
            KorvisSystemToolsClass::uniqueFileName(wanted.path(), wanted.fileName());
        m_localName = QDir(wanted.path()).filePath(name);
    }
    if (failure)
        *error = QString::fromLocal8Bit(failure.message().c_str());
    return !failure;
}

void TcpFileClient::socket_error(QAbstractSocket::SocketError error)
{
    qWarning("TcpFileClient-Socket Error:%s", qPrintable(m_socket->errorString()));
    qDebug() << "Bytes received " << m_received << " of " << m_expected;
    // The end of a connection that stood is told by `disconnected`, others by nothing else.
    if (error != QAbstractSocket::RemoteHostClosedError)
        abort_and_set_error(m_socket->errorString());
}

// The timer is also due when this thread was held up; what came meanwhile is read first.
void TcpFileClient::silenceIsTooLong()
{
    QTimer::singleShot(0, this, [this] {
        if (!m_isRunning || m_silence.isActive())
            return;
        if (m_received > 0 && m_received == m_expected)
            m_socket->abort(); // only the end of the connection got lost; this is one
        else
            abort_and_set_error(
                tr("The logger sent nothing for %1 seconds.").arg(m_silence.interval() / 1000.0));
    });
}

void TcpFileClient::abort_and_set_error(QString error)
{
    if (!m_isRunning)
        return;
    qDebug() << "abort_and_set_error:" << error;
    // The socket that is closed here must not finish the transfer a second time.
    disconnect(m_socket, &QTcpSocket::disconnected, this, &TcpFileClient::client_disconnected);
    m_isDisconnectedConnected = false;
    m_isRunning = false;
    m_socket->abort();
    end(false, error);
}

void TcpFileClient::end(bool isSuccess, const QString &text)
{
    m_isRunning = false;
    m_silence.stop();
    closeTarget();
    emit signal_finished(isSuccess, text);
}

// A growing file that wasn't renamed goes.
void TcpFileClient::closeTarget()
{
    if (m_target.fileName().isEmpty())
        return;
    m_target.close();
    QFile::remove(m_target.fileName());
    m_target.setFileName({});
    m_lock.reset();
}
