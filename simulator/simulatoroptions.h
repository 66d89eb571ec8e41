#pragma once

#include "simulator/faults.h"
#include "simulator/loggerstate.h"

#include <QHostAddress>
#include <QString>
#include <QStringList>

#include <optional>

// The command line of zds-logger-sim.
namespace simulator {

struct SimulatorOptions
{
    bool showsHelp = false;
    QHostAddress address{QHostAddress::LocalHost};
    QString configurationPath;
    QString logFolder;
    bool recordsLogs = true;
    SoftwareVersion version;
    QVector<FaultSetting> faults;
    QString recordPath;
    QString replayPath;
    quint32 load = 0; // CAN frames/s
    std::optional<int> restartDelay_ms;
};

struct ParsedOptions
{
    SimulatorOptions options;
    QString error; // for the user; null when the command line is fine
};

// `arguments` begin with the program's name.
[[nodiscard]] ParsedOptions parseOptions(const QStringList &arguments);

// All options and faults.
[[nodiscard]] QString helpText();

} // namespace simulator
