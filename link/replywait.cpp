#include "link/replywait.h"

#include <QMutexLocker>

#include <utility>

void ReplyWait::open(Kind kind, quint16 sequence)
{
    const QMutexLocker lock(&m_mutex);
    m_state = State::Waiting;
    m_kind = kind;
    m_sequence = sequence;
    m_reply.clear();
}

bool ReplyWait::wait()
{
    QMutexLocker lock(&m_mutex);
    while (m_state == State::Waiting)
        m_ended.wait(&m_mutex);
    return m_state == State::Answered;
}

QByteArray ReplyWait::takeReply()
{
    const QMutexLocker lock(&m_mutex);
    m_state = State::Closed;
    return std::exchange(m_reply, {});
}

bool ReplyWait::answer(Kind kind, quint16 sequence, const QByteArray &reply)
{
    const QMutexLocker lock(&m_mutex);
    if (m_state != State::Waiting || m_kind != kind || sequence == 0 || m_sequence != sequence)
        return false;
    m_reply = reply;
    m_state = State::Answered;
    m_ended.wakeAll();
    return true;
}

void ReplyWait::giveUp()
{
    const QMutexLocker lock(&m_mutex);
    if (m_state != State::Waiting)
        return;
    m_state = State::TimedOut;
    m_ended.wakeAll();
}
