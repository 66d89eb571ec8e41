#pragma once

#include "link/protocol/envelope.h"

#include <condition_variable>
#include <mutex>

// One open command: the caller's thread waits without events until the socket's thread has the
// answer, or its timer says that there is none.
class ReplyWait
{
public:
    enum class Kind { Text, Streaming };

    // Caller's thread: opens the command, before it is sent.
    void open(Kind kind, quint16 sequence);
    // Caller's thread: waits for the end. True when the answer has come.
    [[nodiscard]] bool wait();
    // Caller's thread: the answer, behind a wait. Without one it has type 0 and no payload.
    [[nodiscard]] protocol::Message takeReply();

    // Socket's thread: takes the answer if a command of this kind and of its number is open. A late
    // answer has another number, or nobody waits for it any more.
    bool answer(Kind kind, const protocol::Message &reply);
    // Socket's thread: no answer will come.
    void giveUp();

private:
    enum class State { Closed, Waiting, Answered, TimedOut };

    std::mutex m_mutex; // guards all that follows
    std::condition_variable m_ended;
    State m_state = State::Closed;
    Kind m_kind = Kind::Text;
    quint16 m_sequence = 0;
    protocol::Message m_reply;
};
