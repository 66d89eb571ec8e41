#pragma once

#include "link/messagerate.h"

#include <QObject>

namespace protocol {
class CommandSender;
}

// The dialogue with the modules of one RS485 port while the logger passes its bytes through. Lives
// on the GUI thread.
class D4MODTransparent : public QObject
{
    Q_OBJECT

public:
    // The sender outlives this object.
    D4MODTransparent(protocol::CommandSender &sender, int rs485Number, QObject *parent = nullptr);

    // Switches all CPUs; the texts of a failure are in `error`.
    [[nodiscard]] bool setTransparentMode(bool on, QString &error);

    // Bytes from the port.
    void dataArrived(const QByteArray &data);

private:
    protocol::CommandSender &m_sender;
    const int m_rs485Number;
    MessageRate m_warnings;
};
