#include "link/logger_data_handler_class.h"

#include "link/cmd_handler_class.h"
#include "link/data_handler_class.h"
#include "modules/d4modtransparent.h"

#include <QDebug>

#include <utility>

using protocol::Command;
using protocol::ValueCount;

namespace {

constexpr int keepAliveTimeout_ms = 1000;

// Calls a slot of a socket worker on the worker's own thread and waits for it.
template <class Worker, class Function>
auto onThreadOf(Worker &worker, Function function)
{
    using Result = decltype(function());
    if constexpr (std::is_void_v<Result>) {
        QMetaObject::invokeMethod(&worker, function, Qt::BlockingQueuedConnection);
    } else {
        Result result{};
        QMetaObject::invokeMethod(
            &worker, [&] { result = function(); }, Qt::BlockingQueuedConnection);
        return result;
    }
}

} // namespace

Logger_Data_Handler_Class::Logger_Data_Handler_Class(AppController *controller, QObject *parent)
    : QObject(parent)
    , AppComponentBaseClass(controller, QStringLiteral("Logger_Data_Handler_Class"))
    , m_terminal(std::make_unique<TerminalStruct>(QStringLiteral("MASTER - Local")))
{
    qDebug() << "INITIAL Stream Term-Addr:" << static_cast<const void *>(m_terminal.get());
    m_commands = std::make_unique<CMD_Handler_Class>();
    m_data = std::make_unique<Data_Handler_Class>();
    for (int port = 0; port < live::rs485Ports; ++port)
        m_d4modTransparent.push_back(std::make_unique<D4MODTransparent>(*this, port));
    connectWorkers();
    m_commands->start();
    m_data->start();
}

// The workers end first: they hand over what the members below them hold.
Logger_Data_Handler_Class::~Logger_Data_Handler_Class()
{
    m_data.reset();
    m_commands.reset();
    dropLiveData();
}

void Logger_Data_Handler_Class::connectWorkers()
{
    using Handler = Logger_Data_Handler_Class;
    connect(
        m_commands.get(), &CMD_Handler_Class::signal_streaming_prot_received, this,
        [this](int type, QByteArray *data) {
            m_commands->recordTaken(data);
            slot_streaming_prot_received(type, data);
        },
        Qt::QueuedConnection);
    connect(m_data.get(), &Data_Handler_Class::signal_data_copy_ONLY_DIRECT_CONNECTION, this,
            &Handler::slot_take_logger_data, Qt::DirectConnection);
    connectNews(m_commands.get(), &CMD_Handler_Class::signal_disconnected,
                &Handler::disconnectLogger);
    connectNews(m_data.get(), &Data_Handler_Class::signal_disconnected, &Handler::disconnectLogger);
    connectNews(m_commands.get(), &CMD_Handler_Class::signal_socket_error,
                &Handler::check_emit_tcp_error_signal);
    connectNews(m_data.get(), &Data_Handler_Class::signal_socket_error,
                &Handler::check_emit_tcp_error_signal);
    connectNews(m_commands.get(), &CMD_Handler_Class::signal_cmd_timeout_error,
                &Handler::format_cmd_timeout_error);
    connectNews(m_commands.get(), &CMD_Handler_Class::signal_keep_alive_needed,
                &Handler::req_keep_alive);
}

// News is queued, and may be of a connection that has ended when the next one is up: it is told
// apart by the number that it was sent with, on whichever thread that was.
template <class Worker, class... Arguments>
void Logger_Data_Handler_Class::connectNews(Worker *worker, void (Worker::*signal)(Arguments...),
                                            void (Logger_Data_Handler_Class::*slot)(Arguments...))
{
    const auto queue = [this, slot](Arguments... arguments) {
        const auto deliver = [this, slot, number = m_connectionNumber.load(), arguments...] {
            if (number == m_connectionNumber)
                (this->*slot)(arguments...);
        };
        QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
    };
    connect(worker, signal, this, queue, Qt::DirectConnection);
}

bool Logger_Data_Handler_Class::connectLogger(const QHostAddress &address)
{
    const auto open = [&address](auto &worker, quint16 port) {
        return onThreadOf(worker, [&] { return worker.socket_connect(address, port); });
    };
    const auto lastError = [](auto &worker) {
        return onThreadOf(worker, [&] { return worker.get_last_error(); });
    };
    closeSockets();
    ++m_connectionNumber;
    m_showsErrors = false;
    bool areOpen = false;
    if (!open(*m_commands, protocol::commandPort))
        showSocketFailure(lastError(*m_commands));
    else if (!open(*m_data, protocol::dataPort))
        showSocketFailure(lastError(*m_data));
    else if (areOpen = areBothConnected(); !areOpen) // one of them was closed again at once
        showSocketFailure(lastError(*m_commands) + lastError(*m_data));
    if (!areOpen)
        disconnectLogger();
    m_showsErrors = areOpen;
    return areOpen;
}

bool Logger_Data_Handler_Class::areBothConnected() const
{
    return m_commands->isConnected() && m_data->isConnected();
}

void Logger_Data_Handler_Class::showSocketFailure(const QString &text)
{
    if (!text.isEmpty())
        emit signal_show_tcp_error(QStringLiteral("Socket: %1").arg(text));
}

bool Logger_Data_Handler_Class::isConnected() const
{
    return m_data->isConnected();
}

void Logger_Data_Handler_Class::closeSockets()
{
    onThreadOf(*m_commands, [this] { m_commands->socket_disconnect(); });
    onThreadOf(*m_data, [this] { m_data->socket_disconnect(); });
}

void Logger_Data_Handler_Class::disconnectLogger()
{
    closeSockets();
    m_showsErrors = false;
    dropLiveData();
    setAppState(APP_STA_DISCONN);
}

void Logger_Data_Handler_Class::check_emit_tcp_error_signal(QString error_txt)
{
    if (std::exchange(m_showsErrors, false))
        emit signal_show_tcp_error(QStringLiteral("Socket: %1").arg(error_txt));
}

void Logger_Data_Handler_Class::format_cmd_timeout_error(int cmd_type)
{
    emit signal_show_error_if_connected(
        QStringLiteral("Timeout"),
        QStringLiteral("Error sending data(timeout). Type:%1").arg(cmd_type));
}

void Logger_Data_Handler_Class::req_keep_alive()
{
    (void)sendCommand(protocol::commandText(Command::GetSoftwareVersion), keepAliveTimeout_ms);
}

QByteArray Logger_Data_Handler_Class::sendCommand(const QByteArray &command, int timeout_ms)
{
    return m_commands->sendCommand(command, timeout_ms);
}

bool Logger_Data_Handler_Class::sendSetCommand(Command command, const QStringList &arguments)
{
    const protocol::CommandRow &row = protocol::commandRow(command);
    const auto outcome = protocol::evaluateSetReply(
        sendCommand(protocol::commandText(command, arguments), row.timeout_ms), row.word());
    if (!outcome)
        m_lastCommandError = outcome.error;
    return outcome.ok;
}

std::optional<QStringList> Logger_Data_Handler_Class::sendGetCommand(Command command,
                                                                     ValueCount count,
                                                                     const QStringList &arguments)
{
    const protocol::CommandRow &row = protocol::commandRow(command);
    const auto outcome = protocol::evaluateGetReply(
        sendCommand(protocol::commandText(command, arguments), row.timeout_ms), row.word(),
        protocol::replyKeyOf(command, arguments), count);
    if (outcome)
        return outcome.values;
    m_lastCommandError = outcome.error;
    return {};
}

bool Logger_Data_Handler_Class::getSoftwareVersion(int &major, int &minor)
{
    const auto values = sendGetCommand(Command::GetSoftwareVersion, ValueCount::exactly(2));
    if (!values)
        return false;
    major = values->at(0).toInt();
    minor = values->at(1).toInt();
    return true;
}

bool Logger_Data_Handler_Class::getSystemCapabilities()
{
    const auto values =
        sendGetCommand(Command::GetSystemCapabilities, ValueCount::atLeast(Capabilities::needed));
    const auto capabilities = values ? Capabilities::fromValues(*values) : std::nullopt;
    if (capabilities)
        m_capabilities = *capabilities;
    return capabilities.has_value();
}

bool Logger_Data_Handler_Class::subsystemsReady()
{
    const auto values = sendGetCommand(Command::GetSubsystemsReady, ValueCount::exactly(1));
    return values && values->first().toInt() == 1;
}

bool Logger_Data_Handler_Class::getHardwareVersion(int &version)
{
    const auto values =
        sendGetCommand(Command::GetMasterCpuHardwareVersion, ValueCount::atLeast(1));
    if (values)
        version = values->first().toInt();
    return values.has_value();
}

bool Logger_Data_Handler_Class::disableStopLogging()
{
    return sendSetCommand(Command::DisableStopLogging);
}

bool Logger_Data_Handler_Class::requestConfiguration()
{
    return m_commands->sendStreamingMessage(protocol::ConfigurationRequest, {}, m_writeTimeout_ms)
           && record::frameIsWhole(m_commands->takeEcho());
}

void Logger_Data_Handler_Class::enableLiveData()
{
    m_data->setDataEnabled(true);
}

bool Logger_Data_Handler_Class::sendSoftwareUpdate(const QByteArray &image)
{
    return m_commands->sendStreamingMessage(protocol::SoftwareUpdate, image, m_writeTimeout_ms);
}

bool Logger_Data_Handler_Class::setTransparentMode(bool on)
{
    return m_d4modTransparent.front()->setTransparentMode(on, m_lastCommandError);
}

bool Logger_Data_Handler_Class::writeCanMessage(const CanMessageToSend &message)
{
    return sendSetCommand(Command::WriteCanMessage,
                          {QString::number(message.can_nr), QString::number(message.extended),
                           QString::number(message.remote), QString::number(message.id),
                           QString::number(message.data.size()),
                           QString::fromLatin1(message.data.toHex())});
}

D4MODTransparent *Logger_Data_Handler_Class::d4modTransparent(int rs485_nr) const
{
    return m_d4modTransparent.at(std::size_t(rs485_nr)).get();
}
