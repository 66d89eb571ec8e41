#pragma once

#include <QByteArray>
#include <QStringList>

struct TerminalStruct;

// The D4MOD modules on the simulated RS485 ports.
namespace simulator {

constexpr int maxD4ModChannels = 15;

// Channels that answer at a port: none unless the configuration supplies and enables them.
[[nodiscard]] int d4modChannelCount(const TerminalStruct &configuration, int port);

// Transducer data sheet of a channel, counted from 0.
[[nodiscard]] QByteArray d4modTed(int port, int channel);

// What the module tells about a channel, which counts from 1: channel, module UUID, 1-Wire UUID,
// 1-Wire status (0: fine), firmware major, minor and patch, bootloader major and minor, hardware
// major and minor, bus termination (0: enabled, 1: auto, 2: disabled), data sheet.
[[nodiscard]] QStringList d4modChannelInfos(int port, int channel);

} // namespace simulator
