#pragma once

#include "link/protocol/commands.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

// What the functions that answer commands share.
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

struct Request
{
    protocol::Command command;
    QStringList arguments;
    QByteArray line; // as it came
};

// Carries a request out and answers it, without a line end.
using AnswerFunction = QByteArray (*)(LoggerState &, const Request &);

[[nodiscard]] QByteArray okReply();
// "key=value,value" under the key of the request.
[[nodiscard]] QByteArray valuesReply(const Request &request, const QStringList &values);

// A decimal number within these limits.
[[nodiscard]] std::optional<int> numberOf(const QString &text, int lowest, int highest);

} // namespace simulator
