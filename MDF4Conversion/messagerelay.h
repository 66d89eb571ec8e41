#pragma once

#include "MDF4Conversion/messagelimits.h"

#include <QString>

#include <deque>
#include <mutex>
#include <vector>

// Hands messages from the thread of a conversion to a window, which takes them when it has time. No
// more are held than will be shown: a log may raise millions, faster than a window shows them.
class MessageRelay
{
public:
    struct Message
    {
        MessageLimits::Kind kind;
        QString text;
    };

    // From any thread.
    void add(MessageLimits::Kind kind, const QString &text);
    // The oldest ones.
    [[nodiscard]] std::vector<Message> take(std::size_t atMost);

private:
    std::mutex m_mutex; // guards all below
    MessageLimits m_limits;
    std::deque<Message> m_messages;
};
