#pragma once

#include <QByteArray>

namespace protocol {

// Sends text commands for an object that doesn't own the command socket. Called on the GUI thread.
class CommandSender
{
public:
    virtual ~CommandSender() = default;

    // Waits for the reply, at most timeout_ms. Empty when none came in time.
    [[nodiscard]] virtual QByteArray sendCommand(const QByteArray &command, int timeout_ms) = 0;
};

} // namespace protocol
