#pragma once

#include <QByteArray>

#include <optional>

// The logger's answers to the text commands.
namespace simulator {

struct LoggerState;

// Error codes of the logger.
enum ErrorCode {
    SubsystemNotConnected = -1000,
    UnknownSystemCommand = -1100,
    FailedToDelete = -1101,
    FailedToSetIpAddress = -1102,
    InvalidCommand = -1103,
    UnknownError = -1104,
    FileNotFound = -1105,
    AddressOfWifi = -1106,
    UnknownProcessor = -1108
};

struct Answer
{
    QByteArray text;       // without line end
    bool restarts = false; // the logger restarts when it has answered
};

// Carries the command out and answers it. `line` may hold anything.
[[nodiscard]] Answer answerCommand(LoggerState &state, const QByteArray &line);

} // namespace simulator
