#pragma once

#include <QString>

#include <atomic>

// Counts the messages of its scope, from all threads, that begin with a text.
class MessageCount
{
public:
    explicit MessageCount(const char *start)
    {
        wanted() = QString::fromLatin1(start);
        count() = 0;
        m_previous = qInstallMessageHandler(take);
    }
    ~MessageCount() { qInstallMessageHandler(m_previous); }
    MessageCount(const MessageCount &) = delete;
    MessageCount &operator=(const MessageCount &) = delete;

    [[nodiscard]] int value() const { return count(); }

private:
    static QString &wanted()
    {
        static QString text;
        return text;
    }
    static std::atomic<int> &count()
    {
        static std::atomic<int> value;
        return value;
    }
    static void take(QtMsgType, const QMessageLogContext &, const QString &text)
    {
        if (text.startsWith(wanted()))
            ++count();
    }

    QtMessageHandler m_previous;
};
