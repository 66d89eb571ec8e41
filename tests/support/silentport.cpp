#include "tests/support/silentport.h"

#ifdef Q_OS_LINUX
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

SilentPort::SilentPort(const QHostAddress &address, quint16 port)
    : m_listening(socket(AF_INET, SOCK_STREAM, 0))
    , m_filling(socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(port);
    place.sin_addr.s_addr = htonl(address.toIPv4Address());
    const auto *where = reinterpret_cast<const sockaddr *>(&place);
    constexpr int placesInTheQueue = 0; // of which there is one more than it says
    if (bind(m_listening, where, sizeof place) != 0 || listen(m_listening, placesInTheQueue) != 0
        || connect(m_filling, where, sizeof place) != 0)
        qFatal("cannot listen on %s", qPrintable(address.toString()));
}

SilentPort::~SilentPort()
{
    close(m_filling);
    close(m_listening);
}
#else
SilentPort::SilentPort(const QHostAddress &, quint16) {}
SilentPort::~SilentPort() = default;
#endif
