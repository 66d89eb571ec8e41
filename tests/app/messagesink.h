#pragma once

#include <QMutex>
#include <QStringList>

// Gathers the Qt messages of its scope, from all threads, as "Word: text".
class MessageSink
{
public:
    MessageSink()
    {
        const QMutexLocker lock(&mutex());
        gathered().clear();
        m_previous = qInstallMessageHandler(take);
    }
    ~MessageSink() { qInstallMessageHandler(m_previous); }
    MessageSink(const MessageSink &) = delete;
    MessageSink &operator=(const MessageSink &) = delete;

    [[nodiscard]] QStringList messages() const
    {
        const QMutexLocker lock(&mutex());
        return gathered();
    }

private:
    static QStringList &gathered()
    {
        static QStringList messages;
        return messages;
    }
    static QMutex &mutex()
    {
        static QMutex mutex;
        return mutex;
    }
    static void take(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        static const char *words[] = {"Debug", "Warning", "Critical", "Fatal", "Info"};
        const QMutexLocker lock(&mutex());
        gathered() += QLatin1String(words[type]) + QStringLiteral(": ") + text;
    }

    QtMessageHandler m_previous;
};
