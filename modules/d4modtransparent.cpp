#include "modules/d4modtransparent.h"

#include "link/protocol/commands.h"
#include "link/protocol/commandsender.h"
#include "link/protocol/reply.h"

#include <QDebug>

D4MODTransparent::D4MODTransparent(protocol::CommandSender &sender, int rs485Number,
                                   QObject *parent)
    : QObject(parent)
    , m_sender(sender)
    , m_rs485Number(rs485Number)
{}

bool D4MODTransparent::setTransparentMode(bool on, QString &error)
{
    const protocol::CommandRow &row = protocol::commandRow(protocol::Command::SetTransparentMode);
    const QByteArray reply = m_sender.sendCommand(
        protocol::commandText(row.command, {QString::number(on ? 1 : 0)}), row.timeout_ms);
    const protocol::Outcome outcome = protocol::evaluateSetReply(reply, row.word());
    error = outcome.error;
    return outcome.ok;
}

// Nobody reads a port before its modules are edited.
void D4MODTransparent::dataArrived(const QByteArray &data)
{
    if (!m_warnings.allows())
        return;
    qWarning() << "Data Arrived - but noone expected it.." << QString::fromLatin1(data)
               << "RS485:" << m_rs485Number;
}
