#pragma once

#include <QByteArray>
#include <QList>

#include <atomic>
#include <mutex>

// Entries of the live stream on their way from the data worker's thread to the GUI thread. When
// that doesn't come to take them, only so much is kept: each entry counts with its bytes and what
// holding them costs.
class RawQueue
{
public:
    static constexpr qint64 maxBytes = 64LL << 20;
    static constexpr qint64 costOfEntry = 96;

    ~RawQueue();

    // Takes the entries over; what exceeds maxBytes is deleted and counted. True when the queue was
    // empty: then the other side has to be called.
    [[nodiscard]] bool put(const QList<QByteArray *> &entries);
    // All entries, which the caller owns from now on.
    [[nodiscard]] QList<QByteArray *> takeAll();

    [[nodiscard]] quint64 dropped() const { return m_dropped; }

private:
    std::mutex m_mutex; // guards the list and its size
    QList<QByteArray *> m_entries;
    qint64 m_bytes = 0;
    std::atomic<quint64> m_dropped{0};
};
