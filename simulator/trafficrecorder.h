#pragma once

#include "link/protocol/envelope.h"

#include <QFile>
#include <QString>

namespace simulator {

// Writes the messages of the command port to a file, one JSON object in each line:
//   time      UTC, ISO 8601 with milliseconds
//   from      "tool" or "logger"
//   type, sequence
//   text      of a text command or reply
//   bytes     payload size of any other message
//   payload   its first bytes, hexadecimal
// Used on one thread.
class TrafficRecorder
{
public:
    enum class Sender { Tool, Logger };

    static constexpr int maxPayloadBytes = 64 * 1024; // of one line

    // Replaces the file.
    explicit TrafficRecorder(const QString &path);

    // False once the file couldn't be opened or written; failure() tells why.
    [[nodiscard]] bool ok() const { return m_failure.isEmpty(); }
    [[nodiscard]] const QString &failure() const { return m_failure; }

    void record(Sender sender, const protocol::Message &message);

private:
    QFile m_file;
    QString m_failure;
};

} // namespace simulator
