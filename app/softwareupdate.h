#pragma once

#include "app/loggersession.h"

#include <functional>

class UserPrompt;

// The logger's software, which the tool only transports: opaque bytes.
namespace updateimage {

// The longest payload that fits an envelope of the command socket.
inline constexpr qint64 maxBytes = 99'999'992;

// The image that was built in; nothing if there is none.
[[nodiscard]] std::optional<QByteArray> builtIn();
// Nothing if the file can't be read whole or is too long to be sent.
[[nodiscard]] std::optional<QByteArray> readFrom(const QString &path);

} // namespace updateimage

// Sends the software to a logger. Every way ends disconnected.
class SoftwareUpdate
{
public:
    using ImageSource = std::function<std::optional<QByteArray>()>;
    // Told when the update is sent: the logger can be connected to again after so many seconds.
    using Sent = std::function<void(int delay_s)>;

    SoftwareUpdate(LoggerSession &session, UserPrompt &prompt, ImageSource image, Sent sent);

    // False after a failure, of which the user was told.
    bool run(const SoftwareVersion &version);

    // How long the logger needs to come back: 60 s, or 30 s with the faster hardware 2, which
    // loggers from version 1.8 on can tell.
    [[nodiscard]] int reconnectDelay_s(const SoftwareVersion &version) const;

private:
    LoggerSession &m_session;
    UserPrompt &m_prompt;
    const ImageSource m_image;
    const Sent m_sent;
};
