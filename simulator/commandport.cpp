#include "simulator/commandport.h"

#include "link/protocol/commands.h"
#include "link/protocol/messagetypes.h"
#include "link/protocol/reply.h"
#include "simulator/commandanswers.h"
#include "simulator/commandsession.h"
#include "simulator/configurationrecords.h"
#include "simulator/faults.h"
#include "simulator/listening.h"
#include "simulator/loggerstate.h"

#include <QTcpSocket>

namespace simulator {
namespace {

using protocol::Message;

QByteArray lineEnd()
{
    return QByteArrayLiteral("\r\n");
}

QString wordOf(const QByteArray &line)
{
    return QString::fromLatin1(line.left(line.indexOf('('))).trimmed();
}

// What the faults make of a value that the logger tells about itself.
std::optional<QByteArray> falseValue(FaultSet &faults, const QByteArray &line, const QString &word)
{
    using protocol::Command;
    const auto parsed = protocol::parseCommand(line);
    if (!parsed)
        return {};
    const QString key = protocol::replyKeyOf(parsed->command, parsed->arguments);
    const auto reply = [&key](const QString &value) {
        return std::optional((key + QLatin1Char('=') + value).toLatin1());
    };
    if (parsed->command == Command::GetSoftwareVersion) {
        if (const auto version = faults.find(Fault::WrongVersion, word))
            return reply(QString(version->value).replace(QLatin1Char('.'), QLatin1Char(',')));
    }
    if (parsed->command == Command::GetSystemCapabilities) {
        if (const auto capabilities = faults.find(Fault::WrongCapabilities, word))
            return reply(capabilities->value);
    }
    if (parsed->command == Command::GetSubsystemsReady && faults.happens(Fault::NotReady, word))
        return reply(QStringLiteral("0"));
    return {};
}

} // namespace

CommandPort::CommandPort(LoggerState &state, FaultSet &faults, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_faults(faults)
    , m_server(this)
{
    connect(&m_server, &QTcpServer::newConnection, this, &CommandPort::acceptConnections);
}

CommandPort::~CommandPort()
{
    close();
}

bool CommandPort::listen(const QHostAddress &address, QString *error)
{
    return listenOn(m_server, address, protocol::commandPort, error);
}

void CommandPort::close()
{
    m_server.close();
    dropConnections();
}

void CommandPort::dropConnections()
{
    const QList<CommandSession *> sessions = m_sessions;
    for (CommandSession *session : sessions)
        session->drop();
}

void CommandPort::acceptConnections()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        auto *session = new CommandSession(socket, m_faults, this);
        m_sessions.append(session);
        connect(session, &CommandSession::received, this,
                [this, session](const Message &message) { handle(session, message); });
        connect(session, &CommandSession::closed, this,
                [this, session] { removeSession(session); });
        if (m_faults.happens(Fault::RefuseCommandConnection))
            session->drop();
    }
}

void CommandPort::removeSession(CommandSession *session)
{
    if (!m_sessions.removeOne(session))
        return;
    session->deleteLater();
    if (!m_sessions.isEmpty() || !m_state.isLoggingStopped)
        return;
    m_state.isLoggingStopped = false;
    emit loggingSwitched();
}

void CommandPort::handle(CommandSession *session, const Message &message)
{
    emit received(message);
    if (message.type == protocol::TextCommand)
        handleText(session, message);
    else if (message.type == protocol::SoftwareUpdate)
        handleUpdate(session, message);
    else
        handleRecord(session, message);
}

QByteArray CommandPort::textAnswer(const QByteArray &line, const QString &word, bool &restarts)
{
    if (const auto code = m_faults.find(Fault::ErrorReply, word))
        return "ERROR=" + code->value.toLatin1();
    if (const auto value = falseValue(m_faults, line, word))
        return *value;
    const Answer answer = answerCommand(m_state, line);
    restarts = answer.restarts;
    return answer.text;
}

void CommandPort::handleText(CommandSession *session, const Message &message)
{
    bool restarts = false;
    const QString word = wordOf(message.payload);
    const bool wasStopped = m_state.isLoggingStopped;
    const QByteArray text = textAnswer(message.payload, word, restarts);
    if (m_state.isLoggingStopped != wasStopped)
        emit loggingSwitched();
    send(session, {protocol::TextCommand, message.sequence, text + lineEnd()}, word);
    if (word.endsWith(QLatin1String("_supply_out")))
        emit configurationChanged();
    if (restarts)
        restart();
}

// A write is answered by the record that the logger really holds then.
void CommandPort::handleRecord(CommandSession *session, const Message &message)
{
    const QString word = QString::number(message.type);
    int type = message.type;
    if (type == protocol::ConfigurationRequest) {
        type = protocol::WholeConfiguration;
    } else if (!m_faults.happens(Fault::RefusedWrite, word)) {
        const bool isTaken = takeRecord(m_state.configuration, type, message.payload);
        if (isTaken && m_faults.happens(Fault::ChangedWrite, word))
            switchOff(m_state.configuration, type);
        if (isTaken)
            emit configurationChanged();
    }
    if (const auto bytes = recordBytes(m_state.configuration, type))
        send(session, {quint8(type), message.sequence, *bytes}, word);
}

void CommandPort::handleUpdate(CommandSession *session, const Message &message)
{
    m_state.updateImage = message.payload;
    send(session, {protocol::Acknowledgement, message.sequence, {}}, QString::number(message.type));
    m_state.version = m_state.updatedVersion;
    restart();
}

void CommandPort::push(int type)
{
    const auto bytes = recordBytes(m_state.configuration, type);
    if (!bytes)
        return;
    const QList<CommandSession *> sessions = m_sessions; // one that is found gone leaves the list
    for (CommandSession *session : sessions)
        send(session, {quint8(type), 0, *bytes}, QStringLiteral("push"));
}

void CommandPort::send(CommandSession *session, const Message &message, const QString &word)
{
    emit sent(message);
    const Message push{protocol::Gps, 0, record::toBytes(m_state.configuration.gps)};
    session->send({message}, word, push);
}

// The answer that stands in the sockets still goes out.
void CommandPort::restart()
{
    m_server.close();
    for (CommandSession *session : qAsConst(m_sessions))
        session->finish();
    emit restartWanted();
}

} // namespace simulator
