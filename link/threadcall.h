#pragma once

#include <QMetaObject>

#include <type_traits>
#include <utility>

// Calls of functions on the thread of another object.
namespace threadcall {

// Runs the function when the event loop of the receiver's thread gets there, unless the receiver is
// gone by then.
template <class Function>
void post(QObject *receiver, Function function)
{
    QMetaObject::invokeMethod(receiver, std::move(function), Qt::QueuedConnection);
}

// The same, and waits for what it returns; no events run here meanwhile. The receiver lives on
// another thread, whose event loop runs.
template <class Function>
auto run(QObject *receiver, Function function)
{
    using Result = std::invoke_result_t<Function>;
    if constexpr (std::is_void_v<Result>) {
        QMetaObject::invokeMethod(receiver, function, Qt::BlockingQueuedConnection);
    } else {
        Result result{};
        QMetaObject::invokeMethod(
            receiver, [&] { result = function(); }, Qt::BlockingQueuedConnection);
        return result;
    }
}

} // namespace threadcall
