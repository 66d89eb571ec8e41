#include "MDF4Conversion/messagerelay.h"

#include <algorithm>
#include <iterator>

void MessageRelay::add(MessageLimits::Kind kind, const QString &text)
{
    const std::lock_guard lock(m_mutex);
    if (m_limits.admit(kind) != MessageLimits::Verdict::Drop)
        m_messages.push_back({kind, text});
}

std::vector<MessageRelay::Message> MessageRelay::take(std::size_t atMost)
{
    const std::lock_guard lock(m_mutex);
    const auto end = m_messages.begin() + std::ptrdiff_t(std::min(atMost, m_messages.size()));
    std::vector<Message> taken(std::make_move_iterator(m_messages.begin()),
                               std::make_move_iterator(end));
    m_messages.erase(m_messages.begin(), end);
    return taken;
}
