#include "MDF4Conversion/rld2xxxmemory.h"

#include "MDF4Conversion/conversionbatch.h"

#include <QSharedMemory>
#include <QUuid>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <utility>

namespace {

using namespace std::chrono_literals;

// A lock that nobody keeps is had in microseconds; the rest is for a busy machine.
constexpr auto answerIsDue = 50ms;
constexpr auto endIsDue = 100ms;

} // namespace

// The memory, on both threads. Whoever touches the record holds m_mutex, and as long as rld2xxx runs
// the memory's lock, too, which only run() takes, and never while it holds m_mutex.
class Rld2xxxMemory::Keeper
{
public:
    // Before there is a second thread.
    bool create(const QString &key)
    {
        m_memory.setKey(key);
        if (!m_memory.create(int(Rld2xxxRecord::size)) || !m_memory.lock())
            return false;
        m_copy = Rld2xxxRecord::fromMemory(m_memory.constData());
        m_copy.clear();
        m_copy.toMemory(m_memory.data());
        return m_memory.unlock();
    }
    QString key() const { return m_memory.key(); }

    // Of the thread: exchanges the record with the memory when asked to.
    void run()
    {
        std::unique_lock guard(m_mutex);
        while (!m_isOver) {
            m_wakeUp.wait(guard, [this] { return m_isAsked || m_isOver; });
            if (m_isOver)
                break;
            guard.unlock();
            const bool isLocked = m_memory.lock();
            guard.lock();
            exchange();
            if (isLocked)
                m_memory.unlock();
            m_isAsked = false;
            m_answered.notify_all();
        }
        guard.unlock();
        m_memory.detach(); // takes the lock, too
        guard.lock();
        m_hasEnded = true;
        m_answered.notify_all();
    }

    // Asks for an exchange, and waits for it unless one is late already.
    void ask()
    {
        std::unique_lock guard(m_mutex);
        if (!m_isShared) {
            exchange();
            return;
        }
        const bool isLate = std::exchange(m_isAsked, true);
        if (!isLate)
            m_askedAt = Clock::now();
        m_wakeUp.notify_all();
        m_answered.wait_for(guard, isLate ? 0ms : answerIsDue, [this] { return !m_isAsked; });
    }
    // Since the exchange was asked for that hasn't been made yet.
    std::chrono::milliseconds waited()
    {
        const std::lock_guard guard(m_mutex);
        const auto waited = m_isShared && m_isAsked ? Clock::now() - m_askedAt : Clock::duration(0);
        return std::chrono::duration_cast<std::chrono::milliseconds>(waited);
    }
    Rld2xxxRecord copy()
    {
        const std::lock_guard guard(m_mutex);
        return m_copy;
    }
    // Nothing can change the record any more.
    bool isFinal()
    {
        const std::lock_guard guard(m_mutex);
        return !m_isShared && m_copy.isFinished();
    }
    void setUnshared()
    {
        const std::lock_guard guard(m_mutex);
        m_isShared = false;
    }
    void finish(quint8 state)
    {
        const std::lock_guard guard(m_mutex);
        m_copy.finish(state);
        m_endState = state;
    }
    // True if the thread has ended.
    bool end()
    {
        std::unique_lock guard(m_mutex);
        m_isOver = true;
        m_wakeUp.notify_all();
        return m_answered.wait_for(guard, endIsDue, [this] { return m_hasEnded; });
    }

private:
    using Clock = std::chrono::steady_clock;

    // With m_mutex held. What this program has decided isn't overwritten by the other one.
    void exchange()
    {
        if (!m_memory.data())
            return;
        m_copy = Rld2xxxRecord::fromMemory(m_memory.constData());
        if (!m_endState)
            return;
        m_copy.finish(*m_endState);
        m_copy.toMemory(m_memory.data());
    }

    QSharedMemory m_memory;
    std::mutex m_mutex; // guards all below
    std::condition_variable m_wakeUp;
    std::condition_variable m_answered;
    Rld2xxxRecord m_copy;
    std::optional<quint8> m_endState;
    Clock::time_point m_askedAt; // for what is asked
    bool m_isShared = true;
    bool m_isAsked = false;
    bool m_isOver = false;
    bool m_hasEnded = false;
};

Rld2xxxMemory::Rld2xxxMemory() = default;

Rld2xxxMemory::~Rld2xxxMemory()
{
    release();
}

bool Rld2xxxMemory::create(const QString &inputFile)
{
    release();
    m_last.reset();
    auto keeper = std::make_shared<Keeper>();
    if (!keeper->create(QUuid::createUuid().toString() + QLatin1Char('-')
                        + conversionbatch::baseNameOf(inputFile)))
        return false;
    try {
        m_thread = std::thread([keeper] { keeper->run(); });
    } catch (const std::system_error &) {
        return false;
    }
    m_keeper = std::move(keeper);
    return true;
}

// A thread that still waits for the lock ends with whoever keeps that, and takes the memory along.
void Rld2xxxMemory::release()
{
    if (!m_keeper)
        return;
    if (m_keeper->end())
        m_thread.join();
    else
        m_thread.detach();
    m_keeper.reset();
}

QString Rld2xxxMemory::key() const
{
    return m_keeper ? m_keeper->key() : QString();
}

void Rld2xxxMemory::setUnshared()
{
    if (m_keeper)
        m_keeper->setUnshared();
}

std::optional<Rld2xxxRecord> Rld2xxxMemory::read()
{
    if (!m_keeper)
        return m_last;
    m_keeper->ask();
    m_last = m_keeper->copy();
    if (m_keeper->isFinal())
        release(); // a batch may have thousands
    return m_last;
}

qint64 Rld2xxxMemory::lockedOut_ms() const
{
    return m_keeper ? m_keeper->waited().count() : 0;
}

void Rld2xxxMemory::finish(quint8 state)
{
    if (m_keeper)
        m_keeper->finish(state);
    else if (m_last)
        m_last->finish(state);
    (void)read();
}
