#pragma once

#include "app/loggerlink.h"
#include "app/state/appcontroller.h"
#include "tests/app/scriptedsession.h"

#include <functional>

// The link of a main window under test: answers as the scripted session, keeps its state in the
// controller and writes down what the window asks for.
class ScriptedLink : public LoggerLink
{
    Q_OBJECT

public:
    explicit ScriptedLink(AppController *controller)
        : m_controller(controller)
    {}

    ScriptedSession session;
    bool connects = true;
    bool transparentModeWorks = true;
    bool filesWork = true;
    std::function<void()> whileConnecting; // events that are delivered then
    Capabilities has{0, 1, 1, 12, 1, 1, 10, 1};

    QStringList calls() const { return session.calls; }

    bool connectLogger(const QHostAddress &address) override
    {
        session.calls += QStringLiteral("connect %1").arg(address.toString());
        m_isCancelled = false;
        if (whileConnecting)
            whileConnecting();
        m_connected = connects && !m_isCancelled;
        if (!m_connected && !m_isCancelled)
            emit tcpError(QStringLiteral("Socket: refused"));
        return m_connected;
    }
    void cancelConnect() override
    {
        session.calls += QStringLiteral("cancel");
        m_isCancelled = true;
    }
    bool isConnected() const override { return m_connected; }
    Capabilities capabilities() const override { return has; }
    bool setTransparentMode(bool on) override
    {
        session.calls += QStringLiteral("transparent %1").arg(on);
        return transparentModeWorks;
    }
    LiveCounters liveCounters() const override { return {}; }
    bool saveConfiguration(const QString &path, QString *error) override
    {
        return fileCommand("save ", path, error);
    }
    bool loadConfiguration(const QString &path, QString *error) override
    {
        return fileCommand("load ", path, error);
    }
    void writeEmptyConfiguration() override { session.calls += QStringLiteral("write empty"); }
    Logger_Data_Handler_Class *handler() const override { return nullptr; }

    std::optional<SoftwareVersion> softwareVersion() override { return session.softwareVersion(); }
    bool readCapabilities() override { return session.readCapabilities(); }
    bool subsystemsReady() override { return session.subsystemsReady(); }
    bool stopLogging() override { return session.stopLogging(); }
    bool requestConfiguration() override { return session.requestConfiguration(); }
    std::optional<int> hardwareVersion() override { return session.hardwareVersion(); }
    bool sendUpdate(const QByteArray &image) override { return session.sendUpdate(image); }
    void enableData() override { session.enableData(); }
    void disconnectLogger() override
    {
        session.calls += QStringLiteral("disconnect");
        lose();
    }
    QString lastError() const override { return session.lastError(); }
    AppSta_t state() const override { return m_controller->appState(); }
    void setState(AppSta_t state) override { m_controller->slotSetAppState(state); }
    void tellVersion(const SoftwareVersion &version) override
    {
        emit versionReceived(version.major_number, version.minor_number);
    }

    // Both sockets go down.
    void lose()
    {
        m_connected = false;
        m_controller->slotSetAppState(APP_STA_DISCONN);
    }

private:
    bool fileCommand(const char *what, const QString &path, QString *error)
    {
        session.calls += QLatin1String(what) + path;
        if (!filesWork)
            *error = QStringLiteral("the reason");
        return filesWork;
    }

    AppController *m_controller;
    bool m_connected = false;
    bool m_isCancelled = false;
};
