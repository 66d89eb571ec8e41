#pragma once

#include <QMetaObject>

#include <atomic>
#include <type_traits>
#include <utility>

// What goes from one thread to another without a lock of its own goes through here: calls of functions
// on the thread of another object, and the end of a thread.
namespace threadcall {

// A function on its way to another thread. The flag is set when the function stands where it stays,
// and read before it runs: what the sender wrote is seen by it, in terms of this code and not only of
// the event queue. So a race detector sees it, too, that knows nothing of Qt's locks. The same holds
// for what the function wrote, and whoever deletes it.
template <class Function>
class Carried
{
public:
    explicit Carried(Function function)
        : m_function(std::move(function))
    {
        m_isReady.store(true, std::memory_order_release);
    }
    Carried(Carried &&other) noexcept
        : m_function(std::move(other.m_function))
    {
        m_isReady.store(true, std::memory_order_release);
    }
    ~Carried() { (void)m_isReady.load(std::memory_order_acquire); }

    void operator()()
    {
        (void)m_isReady.load(std::memory_order_acquire);
        m_function();
        m_isReady.store(true, std::memory_order_release);
    }

private:
    std::atomic<bool> m_isReady{false};
    Function m_function;
};

// Runs the function when the event loop of the receiver's thread gets there, unless the receiver is
// gone by then.
template <class Function>
void post(QObject *receiver, Function function)
{
    QMetaObject::invokeMethod(receiver, Carried<Function>(std::move(function)),
                              Qt::QueuedConnection);
}

// The same, and waits for what it returns; no events run here meanwhile. The receiver lives on
// another thread, whose event loop runs.
template <class Function>
auto run(QObject *receiver, Function function)
{
    using Result = std::invoke_result_t<Function>;
    std::atomic<bool> isDone{false};
    const auto call = [receiver, &isDone](auto &&body) {
        auto whole = [&] {
            body();
            isDone.store(true, std::memory_order_release);
        };
        QMetaObject::invokeMethod(receiver, Carried<decltype(whole)>(whole),
                                  Qt::BlockingQueuedConnection);
        (void)isDone.load(std::memory_order_acquire);
    };
    if constexpr (std::is_void_v<Result>) {
        call(function);
    } else {
        Result result{};
        call([&] { result = function(); });
        return result;
    }
}

// What a thread wrote is seen by who has waited for its end.
class End
{
public:
    // The last thing that the thread does.
    void reached() { m_isReached.store(true, std::memory_order_release); }
    // Behind QThread::wait().
    void waitedFor() { (void)m_isReached.load(std::memory_order_acquire); }

private:
    std::atomic<bool> m_isReached{false};
};

} // namespace threadcall
