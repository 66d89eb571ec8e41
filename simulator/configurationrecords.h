#pragma once

#include <QByteArray>

#include <optional>

struct TerminalStruct;

// The records of the configuration as the message types of the command port carry them.
namespace simulator {

// The record that a message of this type carries; nothing for a type without one.
[[nodiscard]] std::optional<QByteArray> recordBytes(const TerminalStruct &configuration, int type);

// Replaces the record that a message of this type carries. False, and nothing is changed, for
// another type or bytes that are no whole record.
[[nodiscard]] bool takeRecord(TerminalStruct &configuration, int type, const QByteArray &bytes);

// Switches off what the record of this type switches on.
void switchOff(TerminalStruct &configuration, int type);

} // namespace simulator
