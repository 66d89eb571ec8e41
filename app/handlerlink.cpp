#include "app/handlerlink.h"

#include "app/state/appcontroller.h"

HandlerLink::HandlerLink(AppController *controller)
    : m_handler(std::make_unique<Logger_Data_Handler_Class>(controller))
{
    m_handler->setObjectName(m_handler->componentName());
    m_handler->registerToController();
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_connecting, this,
            &LoggerLink::connecting);
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_show_tcp_error, this,
            &LoggerLink::tcpError);
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_show_error_if_connected, this,
            &LoggerLink::errorWhileConnected);
}

bool HandlerLink::connectLogger(const QHostAddress &address)
{
    return m_handler->connectLogger(address);
}

void HandlerLink::cancelConnect()
{
    m_handler->cancelConnect();
}

bool HandlerLink::isConnected() const
{
    return m_handler->isConnected();
}

Capabilities HandlerLink::capabilities() const
{
    return m_handler->capabilities();
}

bool HandlerLink::setTransparentMode(bool on)
{
    return m_handler->setTransparentMode(on);
}

LoggerLink::LiveCounters HandlerLink::liveCounters() const
{
    const auto counters = m_handler->liveCounters();
    return {counters.entries, counters.dropped};
}

bool HandlerLink::saveConfiguration(const QString &path, QString *error)
{
    return m_handler->saveConfiguration(path, error);
}

bool HandlerLink::loadConfiguration(const QString &path, QString *error)
{
    error->clear(); // stays so where only the sending fails
    return m_handler->loadConfiguration(path, error) || error->isEmpty();
}

void HandlerLink::writeEmptyConfiguration()
{
    m_handler->writeWholeConfiguration(TerminalStruct());
}

std::optional<SoftwareVersion> HandlerLink::softwareVersion()
{
    SoftwareVersion version;
    if (!m_handler->getSoftwareVersion(version.major_number, version.minor_number))
        return std::nullopt;
    return version;
}

bool HandlerLink::readCapabilities()
{
    return m_handler->getSystemCapabilities();
}

bool HandlerLink::subsystemsReady()
{
    return m_handler->subsystemsReady();
}

bool HandlerLink::stopLogging()
{
    return m_handler->disableStopLogging();
}

bool HandlerLink::requestConfiguration()
{
    return m_handler->requestConfiguration();
}

std::optional<int> HandlerLink::hardwareVersion()
{
    int version = 0;
    if (!m_handler->getHardwareVersion(version))
        return std::nullopt;
    return version;
}

bool HandlerLink::sendUpdate(const QByteArray &image)
{
    return m_handler->sendSoftwareUpdate(image);
}

void HandlerLink::enableData()
{
    m_handler->enableLiveData();
}

void HandlerLink::disconnectLogger()
{
    m_handler->disconnectLogger();
}

QString HandlerLink::lastError() const
{
    return m_handler->lastCommandError();
}

AppSta_t HandlerLink::state() const
{
    return m_handler->appController()->appState();
}

void HandlerLink::setState(AppSta_t state)
{
    m_handler->setAppState(state);
}

void HandlerLink::tellVersion(const SoftwareVersion &version)
{
    emit versionReceived(version.major_number, version.minor_number);
}
