#include "can/cantxrow.h"

#include <algorithm>
#include <optional>

namespace can {
namespace {

// Digits only: no sign, no prefix.
std::optional<quint32> hexNumber(const QString &text)
{
    const auto isDigit = [](QChar c) {
        return (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
               || (c >= QLatin1Char('a') && c <= QLatin1Char('f'))
               || (c >= QLatin1Char('A') && c <= QLatin1Char('F'));
    };
    const QString digits = text.trimmed();
    if (!std::all_of(digits.begin(), digits.end(), isDigit))
        return {};
    bool isNumber = false;
    const quint32 number = digits.toUInt(&isNumber, 16);
    return isNumber ? std::optional(number) : std::nullopt;
}

QString identifierError(bool extended)
{
    return QStringLiteral("Invalid Value: CAN-ID, 0 to %1 hexadecimal")
        .arg(QString::number(maxId(extended), 16).toUpper());
}

} // namespace

std::variant<TxFrame, TxInputError> parseTxRow(const TxRowInput &input)
{
    const std::optional<quint32> id = hexNumber(input.id);
    if (!id || *id > maxId(input.extended))
        return TxInputError{identifierError(input.extended)};
    TxFrame frame;
    frame.id = *id;
    frame.extended = input.extended;
    frame.remote = input.remote && input.format == FrameFormat::Classic;
    if (frame.remote) {
        frame.data.fill('\0', input.length);
        return frame;
    }
    for (int i = 0; i < input.length; ++i) {
        const std::optional<quint32> byte = hexNumber(input.bytes.value(i));
        if (!byte || *byte > 0xFF)
            return TxInputError{QStringLiteral("Invalid Value: CAN-Data,BytePos %1").arg(i),
                                TxInputError::Field::Byte, i};
        frame.data.append(static_cast<char>(*byte));
    }
    return frame;
}

} // namespace can
