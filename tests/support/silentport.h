#pragma once

#include <QHostAddress>

// A port of the loopback network that neither takes nor refuses connections, as one behind a cable
// that was pulled. A Linux matter: other systems refuse what their queue has no room for.
class SilentPort
{
public:
    SilentPort(const QHostAddress &address, quint16 port);
    SilentPort(const SilentPort &) = delete;
    SilentPort &operator=(const SilentPort &) = delete;
    ~SilentPort();

    // Where it is false, tests that need one have to be skipped.
    [[nodiscard]] bool isSilent() const { return m_listening >= 0; }

private:
    int m_listening = -1;
    int m_filling = -1; // takes the one place in the queue
};
