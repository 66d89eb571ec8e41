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

// The bytes that a text names, as two hexadecimal digits each, at most `most`. Whatever is no digit
// separates numbers, "0x" ahead of one doesn't count. A number of more digits is several bytes, the
// first one its highest; an odd one gets a 0 in front.
[[nodiscard]] QStringList bytesInText(const QString &text, int most);

// There are no remote frames of the FD format: the flag doesn't count there.
[[nodiscard]] std::variant<TxFrame, TxInputError> parseTxRow(const TxRowInput &input);

} // namespace can
