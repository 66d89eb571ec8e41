#pragma once

#include <QByteArray>

// The logger's answers to the text commands.
namespace simulator {

struct LoggerState;

struct Answer
{
    QByteArray text;       // without line end
    bool restarts = false; // the logger restarts when it has answered
};

// Carries the command out and answers it. `line` may hold anything.
[[nodiscard]] Answer answerCommand(LoggerState &state, const QByteArray &line);

} // namespace simulator
