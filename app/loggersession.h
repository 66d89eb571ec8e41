#pragma once

#include "app/state/appstate.h"

#include <QByteArray>
#include <QString>

#include <optional>

// Software version of a logger, as in "V1.61".
struct SoftwareVersion
{
    int major_number = 0;
    int minor_number = 0;

    // Numbers, not decimals: 1.8 is older than 1.61.
    [[nodiscard]] bool operator<(const SoftwareVersion &other) const
    {
        return major_number != other.major_number ? major_number < other.major_number
                                                  : minor_number < other.minor_number;
    }
    [[nodiscard]] bool operator==(const SoftwareVersion &other) const
    {
        return major_number == other.major_number && minor_number == other.minor_number;
    }
};

// What connecting and updating need of a connected logger, and the state they lead to. Failures
// leave their text in lastError().
class LoggerSession
{
public:
    LoggerSession() = default;
    virtual ~LoggerSession() = default;
    LoggerSession(const LoggerSession &) = delete;
    LoggerSession &operator=(const LoggerSession &) = delete;

    [[nodiscard]] virtual std::optional<SoftwareVersion> softwareVersion() = 0;
    [[nodiscard]] virtual bool readCapabilities() = 0;
    [[nodiscard]] virtual bool subsystemsReady() = 0;
    [[nodiscard]] virtual bool stopLogging() = 0;
    [[nodiscard]] virtual bool requestConfiguration() = 0;
    [[nodiscard]] virtual std::optional<int> hardwareVersion() = 0;
    // False if no acknowledgement comes in time.
    [[nodiscard]] virtual bool sendUpdate(const QByteArray &image) = 0;
    virtual void enableData() = 0;
    // Both sockets down, state APP_STA_DISCONN.
    virtual void disconnectLogger() = 0;
    [[nodiscard]] virtual QString lastError() const = 0;

    [[nodiscard]] virtual AppSta_t state() const = 0;
    virtual void setState(AppSta_t state) = 0;
    // For those who show the version of the logger.
    virtual void tellVersion(const SoftwareVersion &version) = 0;
};
