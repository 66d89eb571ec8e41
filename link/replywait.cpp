#include "link/replywait.h"

#include <utility>

void ReplyWait::open(Kind kind, quint16 sequence)
{
    const std::lock_guard lock(m_mutex);
    m_state = State::Waiting;
    m_kind = kind;
    m_sequence = sequence;
    m_reply = {};
}

bool ReplyWait::wait()
{
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [this] { return m_state != State::Waiting; });
    return m_state == State::Answered;
}

protocol::Message ReplyWait::takeReply()
{
    const std::lock_guard lock(m_mutex);
    m_state = State::Closed;
    return std::exchange(m_reply, {});
}

bool ReplyWait::answer(Kind kind, const protocol::Message &reply)
{
    const std::lock_guard lock(m_mutex);
    if (m_state != State::Waiting || m_kind != kind || reply.sequence == 0
        || m_sequence != reply.sequence)
        return false;
    m_reply = reply;
    m_state = State::Answered;
    m_ended.notify_all();
    return true;
}

void ReplyWait::giveUp()
{
    const std::lock_guard lock(m_mutex);
    if (m_state != State::Waiting)
        return;
    m_state = State::TimedOut;
    m_ended.notify_all();
}
