#include "link/protocol/reply.h"

#include <map>

namespace protocol {

namespace {

const std::map<int, QString> &errorTexts()
{
    static const std::map<int, QString> texts{
        {-1000, QStringLiteral("Subsystem not connected")},
        {-1001, QStringLiteral("Logger not connected")},
        {-1100, QStringLiteral("ERROR_CODE_UNKNOWN_SYS_CMD")},
        {-1101, QStringLiteral("ERROR_CODE_FAILED_TO_DELETE")},
        {-1102, QStringLiteral("ERROR_CODE_FAILED_TO_SET_IP_ADDRESS")},
        {-1103, QStringLiteral("ERROR_CODE_INAVLID_CMD")},
        {-1104, QStringLiteral("ERROR_CODE_UNKNOWN")},
        {-1105, QStringLiteral("ERROR_CODE_FILE_NOT_FOUND")},
        {-1106, QStringLiteral("IP already assigned to wifi interface.")},
        {-1107, QStringLiteral("Failed to check interface addresses.")},
        {-1108, QStringLiteral("ERROR_CODE_UNKNOWN_TARGET_CPU -1108")}};
    return texts;
}

QString textOf(const QByteArray &reply)
{
    const int end = reply.indexOf('\0');
    return QString::fromLatin1(end < 0 ? reply : reply.left(end));
}

// A reply may have 100 MB, a message box shows its start.
QString startOf(const QString &text)
{
    constexpr int maxShown = 1000;
    return text.size() > maxShown ? text.left(maxShown) + QStringLiteral("...") : text;
}

QString withResponse(const char *text, const QByteArray &reply)
{
    return QString::fromLatin1(text).arg(startOf(textOf(reply)));
}

QString noResponse(const QString &word)
{
    return QStringLiteral("No CMD-Response. (%1)").arg(word);
}

} // namespace

bool isOk(const QByteArray &reply)
{
    return textOf(reply).simplified() == QLatin1String("OK");
}

bool isError(const QByteArray &reply)
{
    return textOf(reply).simplified().startsWith(QLatin1String("ERROR"));
}

QString replyKey(const QByteArray &reply)
{
    return textOf(reply).section(QLatin1Char('='), 0, 0).simplified();
}

QStringList replyValues(const QByteArray &reply)
{
    const QString text = textOf(reply).simplified();
    const int equals = text.indexOf(QLatin1Char('='));
    if (equals < 0)
        return {};
    QStringList values = text.mid(equals + 1).split(QLatin1Char(','));
    for (QString &value : values)
        value = value.simplified();
    return values;
}

QString errorText(const QByteArray &reply)
{
    const QString whole = textOf(reply);
    const int equals = whole.indexOf(QLatin1Char('='));
    bool isNumber = false;
    const int code = equals < 0 ? 0 : whole.mid(equals + 1).simplified().toInt(&isNumber);
    if (!isNumber)
        return startOf(whole);
    const auto text = errorTexts().find(code);
    return text == errorTexts().end() ? QString::number(code) : text->second;
}

QString argumentError(const QByteArray &reply)
{
    return withResponse("CMD-Response Argument error.\r\n Response: %1.", reply);
}

Outcome evaluateSetReply(const QByteArray &reply, const QString &word, SetReplyTexts texts)
{
    if (reply.isEmpty())
        return {false, noResponse(word), {}};
    if (isOk(reply))
        return {true, {}, {}};
    if (isError(reply))
        return {false, errorText(reply), {}};
    const char *unknown = texts == SetReplyTexts::Handler
                              ? "Unknown CMD-Response.\r\n Response: %1."
                              : "CMD-Response error.\r\n Response: %1.";
    return {false, withResponse(unknown, reply), {}};
}

Outcome evaluateGetReply(const QByteArray &reply, const QString &word, const QString &key,
                         ValueCount count)
{
    if (reply.isEmpty())
        return {false, noResponse(word), {}};
    if (isError(reply))
        return {false, errorText(reply), {}};
    if (replyKey(reply) != key)
        return {false, withResponse("Unknown CMD-Response.\r\n Response: %1.", reply), {}};
    const QStringList values = replyValues(reply);
    if (values.isEmpty())
        return {
            false, withResponse("CMD-Response without arguments.\r\n Response: %1.", reply), {}};
    if (values.size() < count.min || values.size() > count.max)
        return {false, argumentError(reply), {}};
    return {true, {}, values};
}

QByteArray errorReply(int code)
{
    return QStringLiteral("ERROR=%1").arg(code).toLatin1();
}

} // namespace protocol
