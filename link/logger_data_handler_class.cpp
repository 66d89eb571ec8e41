#include "link/logger_data_handler_class.h"

#include "config/threadcall.h"
#include "link/cmd_handler_class.h"
#include "link/data_handler_class.h"
#include "link/socketconnect.h"
#include "modules/d4modtransparent.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QScopedValueRollback>
#include <QTimer>

#include <future>
#include <utility>

using protocol::Command;
using protocol::ValueCount;

namespace {

constexpr int keepAliveTimeout_ms = 1000;
constexpr int connectTick_ms = 1000;

QString timeoutText(int type)
{
    return QStringLiteral("Error sending data(timeout). Type:%1").arg(type);
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
    connect(m_commands.get(), &CMD_Handler_Class::signal_streaming_prot_received, this,
            &Handler::takeRecordOver, Qt::DirectConnection);
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
        threadcall::post(this, deliver);
    };
    connect(worker, signal, this, queue, Qt::DirectConnection);
}

bool Logger_Data_Handler_Class::connectLogger(const QHostAddress &address)
{
    if (m_isConnecting)
        return false;
    closeSockets();
    ++m_connectionNumber;
    m_showsErrors = false;
    m_connectIsCancelled = false;
    m_filterLimit.forgetWritten();
    const bool areOpen = openSockets(address);
    if (!areOpen) {
        if (!m_connectIsCancelled)
            showSocketFailure();
        disconnectLogger();
    }
    m_showsErrors = areOpen;
    return areOpen;
}

// The first one may be lost while the second one is opened.
bool Logger_Data_Handler_Class::openSockets(const QHostAddress &address)
{
    const QScopedValueRollback<bool> connecting(m_isConnecting, true);
    return openSocket(*m_commands, address, protocol::commandPort) && m_commands->isConnected()
           && openSocket(*m_data, address, protocol::dataPort) && areBothConnected();
}

// The worker connects on its own thread, while the user can look on and cancel here. When this loop
// ends early, since the program does, the attempt is ended, too.
template <class Worker>
bool Logger_Data_Handler_Class::openSocket(Worker &worker, const QHostAddress &address,
                                           quint16 port)
{
    QEventLoop meanwhile;
    bool isOver = false;
    std::promise<bool> promise; // goes to the worker, which may outlast this function with it
    std::future<bool> isOpen = promise.get_future();
    threadcall::post(&worker, [&, result = std::move(promise)]() mutable {
        const bool isConnected = worker.socket_connect(address, port);
        threadcall::post(&meanwhile, [&] {
            isOver = true;
            meanwhile.quit();
        });
        result.set_value(isConnected);
    });

    QElapsedTimer clock;
    clock.start();
    QTimer tick;
    connect(&tick, &QTimer::timeout, this, [this, &clock, port] {
        const qint64 left_ms = qMax(qint64(0), connectTimeout_ms - clock.elapsed());
        emit signal_connecting(port, int((left_ms + 999) / 1000));
    });
    tick.setTimerType(Qt::PreciseTimer);
    tick.start(connectTick_ms);
    meanwhile.exec();
    if (!isOver)
        cancelConnect();
    return isOpen.get();
}

void Logger_Data_Handler_Class::cancelConnect()
{
    if (!m_isConnecting)
        return;
    m_connectIsCancelled = true;
    closeSockets();
}

bool Logger_Data_Handler_Class::areBothConnected() const
{
    return m_commands->isConnected() && m_data->isConnected();
}

void Logger_Data_Handler_Class::showSocketFailure()
{
    const auto lastError = [](auto &worker) {
        return threadcall::run(&worker, [&worker] { return worker.get_last_error(); });
    };
    const QString ofCommands = lastError(*m_commands);
    const QString text = ofCommands.isEmpty() ? lastError(*m_data) : ofCommands;
    if (!text.isEmpty())
        emit signal_show_tcp_error(QStringLiteral("Socket: %1").arg(text));
}

bool Logger_Data_Handler_Class::isConnected() const
{
    return m_data->isConnected();
}

void Logger_Data_Handler_Class::closeSockets()
{
    threadcall::run(m_commands.get(), [this] { m_commands->socket_disconnect(); });
    threadcall::run(m_data.get(), [this] { m_data->socket_disconnect(); });
}

void Logger_Data_Handler_Class::disconnectLogger()
{
    closeSockets();
    if (m_isConnecting)
        return; // the attempt, whose events these are, fails now
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
    emit signal_show_error_if_connected(QStringLiteral("Timeout"), timeoutText(cmd_type));
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

// What is no number must not pass for version 0.0, to which an update would be offered.
bool Logger_Data_Handler_Class::getSoftwareVersion(int &major, int &minor)
{
    const auto values = sendGetCommand(Command::GetSoftwareVersion, ValueCount::exactly(2));
    if (!values)
        return false;
    bool isMajor = false;
    bool isMinor = false;
    const int readMajor = values->at(0).toInt(&isMajor);
    const int readMinor = values->at(1).toInt(&isMinor);
    if (!isMajor || !isMinor) {
        const QString reply = protocol::replyKeyOf(Command::GetSoftwareVersion) + QLatin1Char('=')
                              + values->join(QLatin1Char(','));
        m_lastCommandError = protocol::argumentError(reply.toLatin1());
        return false;
    }
    major = readMajor;
    minor = readMinor;
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

// The worker tells of a time-out itself.
bool Logger_Data_Handler_Class::sendStreaming(int type, const QByteArray &bytes)
{
    if (m_commands->sendStreamingMessage(type, bytes, m_writeTimeout_ms))
        return true;
    m_lastCommandError = timeoutText(type);
    return false;
}

bool Logger_Data_Handler_Class::requestConfiguration()
{
    if (!sendStreaming(protocol::ConfigurationRequest, {}))
        return false;
    const protocol::Message answer = m_commands->takeAnswer();
    if (answer.type == protocol::WholeConfiguration && record::frameIsWhole(answer.payload))
        return true;
    m_lastCommandError = QStringLiteral("The logger's answer is no whole configuration.");
    return false;
}

void Logger_Data_Handler_Class::enableLiveData()
{
    m_data->setDataEnabled(true);
}

bool Logger_Data_Handler_Class::sendSoftwareUpdate(const QByteArray &image)
{
    return sendStreaming(protocol::SoftwareUpdate, image);
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
