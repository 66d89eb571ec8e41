#pragma once

#include <QStringList>

// Gathers the Qt messages of its scope as "Word: text".
class MessageSink
{
public:
    MessageSink()
    {
        gathered().clear();
        m_previous = qInstallMessageHandler(take);
    }
    ~MessageSink() { qInstallMessageHandler(m_previous); }
    MessageSink(const MessageSink &) = delete;
    MessageSink &operator=(const MessageSink &) = delete;

    [[nodiscard]] QStringList messages() const { return gathered(); }

private:
    static QStringList &gathered()
    {
        static QStringList messages;
        return messages;
    }
    static void take(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        static const char *words[] = {"Debug", "Warning", "Critical", "Fatal", "Info"};
        gathered() += QLatin1String(words[type]) + QStringLiteral(": ") + text;
    }

    QtMessageHandler m_previous;
};
