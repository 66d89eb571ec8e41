#pragma once

#include "config/terminalstruct.h"

#include <QByteArray>
#include <QDateTime>
#include <QElapsedTimer>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <optional>

// What the simulated logger is and knows. Used on the simulator's thread only.
namespace simulator {

struct SoftwareVersion
{
    int major = 1;
    int minor = 61;

    [[nodiscard]] QString text() const { return QStringLiteral("%1.%2").arg(major).arg(minor); }
};

// Reads "major.minor".
[[nodiscard]] std::optional<SoftwareVersion> softwareVersion(const QString &text);

struct DiscSpace
{
    qint64 free = 0; // bytes
    qint64 total = 0;
};

// A process of the logger that a command has started. Each request of its status finds it one line
// further.
struct Process
{
    QString argument;
    QStringList lines; // all that it will have written at its end
    bool fails = false;
    int linesWritten = 0;
};

// A frame that the tool asked the logger to send.
struct TransmittedFrame
{
    int channel = 0;
    bool extended = false;
    bool remote = false;
    quint32 id = 0;
    QByteArray data;
};

// One of the further processors; each serves two RS485 ports.
struct Processor
{
    bool transparent = false;
    QByteArray buffer; // staged for an RS485 port
};

struct LoggerState
{
    static constexpr int firstProcessor = 8;
    static constexpr int maxBufferBytes = 4096;
    static constexpr int maxTransmittedFrames = 1000;

    LoggerState();

    // Since the logger was switched on; live data and logs count from here.
    [[nodiscard]] qint64 uptime_us() const { return clock.nsecsElapsed() / 1000; }
    // By the logger's clock.
    [[nodiscard]] QDateTime utc() const
    {
        return QDateTime::currentDateTimeUtc().addMSecs(clockOffset_ms);
    }

    QElapsedTimer clock;
    SoftwareVersion version;
    SoftwareVersion updatedVersion; // after an update
    QByteArray updateImage;         // as it last came
    int restartDelay_ms = 2000;     // from a restart to the next connection
    int hardwareVersion = 2;
    // The accelerometer block, GPS, CAN channels, LTE, ethernet, RS485 ports and EtherCAT masters
    // follow the first value.
    QVector<int> capabilities{1, 1, 1, 12, 1, 1, 10, 1};
    bool isReady = true;
    bool isLoggingStopped = false; // until the command connection ends

    TerminalStruct configuration;

    QByteArray lteConfiguration;
    int lteRestarts = 0;

    QString rtcStatus = QStringLiteral("VALID");
    qint64 clockOffset_ms = 0; // of the logger's clock from the computer's, both UTC

    QString lanAddress = QStringLiteral("192.168.0.10");
    QString lanMask = QStringLiteral("255.255.255.0");
    QString wifiAddress = QStringLiteral("192.168.20.1");
    QString wifiSsid = QStringLiteral("ZDS_SIM");
    std::array<int, 3> debugLevels{2, 0, 2}; // events, debug, eth0
    bool hasVbatError = false;

    // Mount position 1 to 24, then the inverted axes: accelerometer, gyroscope, magnetometer.
    std::array<int, 10> orientation{1, 0, 0, 0, 0, 0, 0, 0, 0, 0};

    QString logFolder;                  // empty: no storage
    bool recordsLogs = false;           // into the folder, while logging isn't stopped
    std::optional<DiscSpace> discSpace; // else that of the folder
    QHash<QString, Process> processes;  // by name

    std::array<Processor, 2> processors; // CPU 8 and 9
    bool isTransparent = false;          // all processors
    QVector<TransmittedFrame> transmittedFrames;
    int requestedSlavesCleared = 0;
};

} // namespace simulator
