#include "bench/plaincopy.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTcpSocket> // on Windows it starts the system's sockets

#include <thread>
#include <vector>

#ifdef Q_OS_WIN
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace {

#ifdef Q_OS_WIN
using Handle = SOCKET;
using Length = int;
void closeHandle(Handle handle)
{
    closesocket(handle);
}
#else
using Handle = int;
using Length = size_t;
void closeHandle(Handle handle)
{
    close(handle);
}
#endif

constexpr qint64 blockBytes = 256 * 1024;
constexpr Handle none = static_cast<Handle>(-1);

// A socket that closes itself.
class Socket
{
public:
    explicit Socket(Handle handle)
        : m_handle(handle)
    {}
    ~Socket()
    {
        if (m_handle != none)
            closeHandle(m_handle);
    }
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;

    [[nodiscard]] Handle handle() const { return m_handle; }
    [[nodiscard]] bool isOpen() const { return m_handle != none; }

private:
    Handle m_handle;
};

bool sendFile(Handle socket, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    std::vector<char> block(blockBytes);
    qint64 size = 0;
    while ((size = file.read(block.data(), blockBytes)) > 0) {
        for (qint64 sent = 0; sent < size;) {
            const auto count = send(socket, block.data() + sent, Length(size - sent), 0);
            if (count <= 0)
                return false;
            sent += count;
        }
    }
    return size == 0;
}

bool receiveFile(Handle socket, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    std::vector<char> block(blockBytes);
    while (true) {
        const auto count = recv(socket, block.data(), Length(blockBytes), 0);
        if (count <= 0)
            return count == 0;
        if (file.write(block.data(), count) != count)
            return false;
    }
}

} // namespace

double plainCopySeconds(const QString &from, const QString &to)
{
    const QTcpSocket system;
    const Socket server(socket(AF_INET, SOCK_STREAM, 0));
    const Socket client(socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto *name = reinterpret_cast<sockaddr *>(&address);
    if (!server.isOpen() || !client.isOpen() || bind(server.handle(), name, length) != 0
        || listen(server.handle(), 1) != 0 || getsockname(server.handle(), name, &length) != 0
        || connect(client.handle(), name, length) != 0)
        return 0;
    const Handle accepted = accept(server.handle(), nullptr, nullptr);

    QElapsedTimer clock;
    clock.start();
    bool isSent = false;
    std::thread sender([&isSent, &from, accepted] {
        const Socket connection(accepted);
        isSent = connection.isOpen() && sendFile(connection.handle(), from);
    });
    const bool isReceived = receiveFile(client.handle(), to);
    sender.join();
    return isSent && isReceived ? double(clock.nsecsElapsed()) / 1e9 : 0;
}
