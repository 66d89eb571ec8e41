#pragma once

#include "app/loggersession.h"

#include <QStringList>

// A logger that answers as told, and writes down what it was asked.
class ScriptedSession : public LoggerSession
{
public:
    std::optional<SoftwareVersion> version = SoftwareVersion{1, 61};
    bool capabilities = true;
    bool ready = true;
    bool stops = true;
    bool configuration = true;
    std::optional<int> hardware = 2;
    bool acknowledgesUpdate = true;
    AppSta_t current = APP_STA_CONN_INIT;

    QStringList calls;
    QByteArray sentImage;

    std::optional<SoftwareVersion> softwareVersion() override
    {
        calls += QStringLiteral("version");
        return version;
    }
    bool readCapabilities() override { return called("capabilities", capabilities); }
    bool subsystemsReady() override { return called("ready", ready); }
    bool stopLogging() override { return called("stop", stops); }
    bool requestConfiguration() override { return called("configuration", configuration); }
    std::optional<int> hardwareVersion() override
    {
        calls += QStringLiteral("hardware");
        return hardware;
    }
    bool sendUpdate(const QByteArray &image) override
    {
        sentImage = image;
        return called("update", acknowledgesUpdate);
    }
    void enableData() override { calls += QStringLiteral("data"); }
    void disconnectLogger() override
    {
        calls += QStringLiteral("disconnect");
        current = APP_STA_DISCONN;
    }
    QString lastError() const override { return QStringLiteral("the reason"); }
    AppSta_t state() const override { return current; }
    void setState(AppSta_t state) override
    {
        calls += QStringLiteral("state %1").arg(state);
        current = state;
    }
    void tellVersion(const SoftwareVersion &told) override
    {
        calls += QStringLiteral("tell %1.%2").arg(told.major_number).arg(told.minor_number);
    }

private:
    bool called(const char *name, bool outcome)
    {
        calls += QLatin1String(name);
        return outcome;
    }
};
