#pragma once

#include "config/threadcall.h"
#include "tests/support/peerlogger.h"

#include <QNetworkProxy>
#include <QTcpSocket>
#include <QVariantList>

#include <functional>
#include <memory>
#include <mutex>
#include <thread>

// A socket worker on its thread, connected to a port of a peer.
template <class Worker, quint16 port>
struct ConnectedWorker
{
    explicit ConnectedWorker(PeerLogger::Answer answer = {})
        : peer(std::move(answer))
    {
        worker.start();
        isConnected = connectTo(peer.address());
    }

    template <class Function>
    auto onThread(Function function)
    {
        return threadcall::run(&worker, function);
    }
    bool connectTo(const QHostAddress &address)
    {
        return onThread([&] { return worker.socket_connect(address, port); });
    }
    QString lastError()
    {
        return onThread([this] { return worker.get_last_error(); });
    }
    bool usesAProxy()
    {
        return onThread([this] {
            const auto *socket = worker.template findChild<QTcpSocket *>();
            return !socket || socket->proxy().type() != QNetworkProxy::NoProxy;
        });
    }

    PeerLogger peer;
    Worker worker;
    bool isConnected = false;
};

// What a signal of a worker has brought so far. It is gathered on the worker's thread, whose event loop
// runs.
template <class List>
class Gathered
{
public:
    // `take` adds the signal's arguments to the list that it is given first.
    template <class Worker, class... Arguments, class Take>
    Gathered(Worker &worker, void (Worker::*signal)(Arguments...), Take take)
    {
        threadcall::run(&worker, [&worker, signal, take, shared = m_shared] {
            QObject::connect(&worker, signal, [shared, take](Arguments... arguments) {
                const std::lock_guard lock(shared->mutex);
                take(shared->list, arguments...);
            });
        });
    }

    [[nodiscard]] List all() const
    {
        const std::lock_guard lock(m_shared->mutex);
        return m_shared->list;
    }
    [[nodiscard]] int size() const { return all().size(); }

private:
    struct Shared
    {
        std::mutex mutex; // guards the list
        List list;
    };

    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>(); // the connection's, too
};

// The arguments of each time that a worker has emitted a signal.
class Told : public Gathered<QList<QVariantList>>
{
public:
    template <class Worker, class... Arguments>
    Told(Worker &worker, void (Worker::*signal)(Arguments...))
        : Gathered(worker, signal, [](QList<QVariantList> &list, const Arguments &...arguments) {
            list.append(QVariantList{QVariant::fromValue(arguments)...});
        })
    {}
};

// Does something on a thread of its own once the peer has got a message.
class OnceAsked
{
public:
    OnceAsked(PeerLogger &peer, std::function<void()> action)
        : m_thread([&peer, done = std::move(action)] {
            while (peer.received().isEmpty())
                std::this_thread::yield();
            done();
        })
    {}
    ~OnceAsked() { m_thread.join(); }
    OnceAsked(const OnceAsked &) = delete;
    OnceAsked &operator=(const OnceAsked &) = delete;

private:
    std::thread m_thread;
};
