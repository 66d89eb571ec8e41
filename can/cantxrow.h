#pragma once

#include "can/canframe.h"
#include "can/framelengths.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <variant>

// The row in which a frame to be sent is typed.
namespace can {

struct TxRowInput
{
    QString id; // hexadecimal
    bool extended = false;
    bool remote = false;
    FrameFormat format = FrameFormat::Classic;
    int length = 0;    // bytes
    QStringList bytes; // hexadecimal, at least as many as the length says
};

struct TxFrame
{
    quint32 id = 0;
    bool extended = false;
    bool remote = false;
    // As long as the frame says; of a remote frame, which carries none, zeros.
    QByteArray data;
};

struct TxInputError
{
    enum class Field { Identifier, Byte };

    QString text;
    Field field = Field::Identifier;
    int byte = 0; // where a byte is wrong
};

// There are no remote frames of the FD format: the flag doesn't count there.
[[nodiscard]] std::variant<TxFrame, TxInputError> parseTxRow(const TxRowInput &input);

} // namespace can
