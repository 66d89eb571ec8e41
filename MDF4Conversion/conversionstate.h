#pragma once

#include <QtGlobal>

// The state of one conversion, a byte that other programs write, too: any value may arrive.
namespace conversionstate {

constexpr quint8 notStarted = 0;
constexpr quint8 running = 2;
constexpr quint8 finished = 3; // without errors
constexpr quint8 finishedWithErrors = 4;
constexpr quint8 cancelled = 5;

} // namespace conversionstate
