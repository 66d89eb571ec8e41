#include "simulator/answer.h"

namespace simulator {

QByteArray okReply()
{
    return QByteArrayLiteral("OK");
}

QByteArray valuesReply(const Request &request, const QStringList &values)
{
    const QString key = protocol::replyKeyOf(request.command, request.arguments);
    return (key + QLatin1Char('=') + values.join(QLatin1Char(','))).toLatin1();
}

std::optional<int> numberOf(const QString &text, int lowest, int highest)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

} // namespace simulator
