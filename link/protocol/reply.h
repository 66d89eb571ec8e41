#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The text replies of the logger: "OK", "ERROR=<code>" or "key=value,value". One line of 8-bit
// text, read up to the first NUL byte.
namespace protocol {

[[nodiscard]] bool isOk(const QByteArray &reply);
[[nodiscard]] bool isError(const QByteArray &reply);
// The text before the first "=".
[[nodiscard]] QString replyKey(const QByteArray &reply);
// What is behind the first "=", divided at each comma. Empty without "=".
[[nodiscard]] QStringList replyValues(const QByteArray &reply);
// The text of an error reply's code; the code itself when it is unknown; else the reply, of which no
// text for the user holds more than the first 1000 characters.
[[nodiscard]] QString errorText(const QByteArray &reply);

// What came of a command. On failure `error` tells why, for the user.
struct Outcome
{
    bool ok = false;
    QString error;
    QStringList values; // of a getter

    [[nodiscard]] explicit operator bool() const { return ok; }
};

// Who shows the failure of a command that sets something decides on its text.
enum class SetReplyTexts { Handler, View };

// Evaluates the reply to a command that answers "OK". `word` is the command's.
[[nodiscard]] Outcome evaluateSetReply(const QByteArray &reply, const QString &word,
                                       SetReplyTexts texts = SetReplyTexts::Handler);

// How many values a getter needs.
struct ValueCount
{
    int min = 1;
    int max = 0x7FFFFFFF;

    static constexpr ValueCount exactly(int count) { return {count, count}; }
    static constexpr ValueCount atLeast(int count) { return {count, 0x7FFFFFFF}; }
};

// Evaluates the reply to a command that answers "key=values".
[[nodiscard]] Outcome evaluateGetReply(const QByteArray &reply, const QString &word,
                                       const QString &key, ValueCount count);

// What is told of a getter's reply whose values have the wrong number, or can't be what they stand for.
[[nodiscard]] QString argumentError(const QByteArray &reply);

// The reply "ERROR=<code>" as the logger, or the tool in its place, writes it.
[[nodiscard]] QByteArray errorReply(int code);

constexpr int loggerNotConnected = -1001;

} // namespace protocol
