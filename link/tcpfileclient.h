#pragma once

#include <QAbstractSocket>
#include <QFile>
#include <QHostAddress>
#include <QLockFile>
#include <QObject>
#include <QTimer>

#include <memory>

class QTcpSocket;

// Fetches one file of the logger over a connection of its own. What arrives goes to the local name
// with ".part" behind it, and gets the name itself when all is there; a file that fails leaves
// neither. Used on one thread, whose event loop runs.
class TcpFileClient : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 maxReadBytes = 0x40000; // at once, so that other events get their turn
    static constexpr int defaultSilenceLimit_ms = 30'000;
    // No logger stores more; a double, which settings and progress bars use, counts so far exactly.
    static constexpr qint64 maxFileBytes = qint64(1) << 53;

    explicit TcpFileClient(QObject *parent = nullptr);
    // A transfer under way ends as if it had failed, without a signal.
    ~TcpFileClient() override;

    // Fetches the file that the logger calls `remoteName`; `expected` bytes have to come. An empty
    // local name fails. Ends with signal_finished, which may be emitted before this returns. A
    // transfer under way must have ended.
    void start(const QHostAddress &address, quint16 port, const QString &remoteName,
               qint64 expected, const QString &localName);
    // How long the logger may send nothing before the transfer fails; for the next start.
    void setSilenceLimit(int milliseconds) { m_silence.setInterval(milliseconds); }
    [[nodiscard]] int silenceLimit() const { return m_silence.interval(); } // milliseconds

    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    [[nodiscard]] qint64 received() const { return m_received; } // bytes
    [[nodiscard]] qint64 expected() const { return m_expected; } // bytes
    // Where the file is. Another one than was asked for if that was taken meanwhile.
    [[nodiscard]] QString localName() const { return m_localName; }

signals:
    void signal_status_text(QString txt);
    void signal_downloading_started();
    // Once for each start. The text is empty, or tells the user why it failed.
    void signal_finished(bool successfull, QString txt);

public slots:
    void connected_request_file();
    void socket_error(QAbstractSocket::SocketError error);
    // Does nothing when no transfer is under way.
    void abort_and_set_error(QString error);
    void ReadData();
    void client_disconnected();

private:
    void silenceIsTooLong();
    void readOnce();
    bool openTarget();
    bool publish(QString *error);
    void end(bool isSuccess, const QString &text);
    void closeTarget();

    QTcpSocket *m_socket; // child of this
    QTimer m_silence{this};
    QString m_remoteName;
    QString m_localName;
    QFile m_target;                    // the growing file
    std::unique_ptr<QLockFile> m_lock; // keeps other programs off it
    qint64 m_received = 0;
    qint64 m_expected = 0;
    bool m_isDisconnectedConnected = false; // the signal `disconnected` of the socket
    bool m_isReadPending = false;
    bool m_isRunning = false;
};
