#include "can/cantxrow.h"

#include <QRegularExpression>

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

QStringList bytesInText(const QString &text, int most)
{
    constexpr int digits = 2;      // of a byte
    constexpr int longest = 4'096; // characters that are looked at
    static const QRegularExpression numbers(QStringLiteral("(?:0[xX])?([0-9A-Fa-f]+)"));
    QStringList bytes;
    auto matches = numbers.globalMatch(text.left(longest));
    while (matches.hasNext() && bytes.size() < most) {
        QString number = matches.next().captured(1);
        if (number.size() % digits != 0)
            number.prepend(QLatin1Char('0'));
        for (int at = 0; at < number.size() && bytes.size() < most; at += digits)
            bytes += number.mid(at, digits);
    }
    return bytes;
}

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
