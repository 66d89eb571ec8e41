#pragma once

#include "app/loggerlink.h"
#include "link/logger_data_handler_class.h"

// The link of the program: Logger_Data_Handler_Class, which it owns and registers.
class HandlerLink : public LoggerLink
{
    Q_OBJECT

public:
    explicit HandlerLink(AppController *controller);

    [[nodiscard]] bool connectLogger(const QHostAddress &address) override;
    void cancelConnect() override;
    [[nodiscard]] bool isConnected() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] bool setTransparentMode(bool on) override;
    [[nodiscard]] LiveCounters liveCounters() const override;
    [[nodiscard]] bool saveConfiguration(const QString &path, QString *error) override;
    [[nodiscard]] bool loadConfiguration(const QString &path, QString *error) override;
    void writeEmptyConfiguration() override;
    [[nodiscard]] Logger_Data_Handler_Class *handler() const override { return m_handler.get(); }

    [[nodiscard]] std::optional<SoftwareVersion> softwareVersion() override;
    [[nodiscard]] bool readCapabilities() override;
    [[nodiscard]] bool subsystemsReady() override;
    [[nodiscard]] bool stopLogging() override;
    [[nodiscard]] bool requestConfiguration() override;
    [[nodiscard]] std::optional<int> hardwareVersion() override;
    [[nodiscard]] bool sendUpdate(const QByteArray &image) override;
    void enableData() override;
    void disconnectLogger() override;
    [[nodiscard]] QString lastError() const override;
    [[nodiscard]] AppSta_t state() const override;
    void setState(AppSta_t state) override;
    void tellVersion(const SoftwareVersion &version) override;

private:
    std::unique_ptr<Logger_Data_Handler_Class> m_handler;
};
