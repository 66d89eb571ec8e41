#pragma once

#include <QByteArray>

#include <deque>
#include <mutex>

// Configuration records on their way from the command worker's thread to the GUI thread. The event
// queue holds pointers to them only: what nobody takes any more is deleted here.
class RecordsUnderway
{
public:
    static constexpr qint64 maxBytes = 256LL << 20;
    static constexpr qint64 costOfRecord = 512; // of a record without content, with its event

    RecordsUnderway() = default;
    RecordsUnderway(const RecordsUnderway &) = delete;
    RecordsUnderway &operator=(const RecordsUnderway &) = delete;
    ~RecordsUnderway();

    // Holds a copy, which is to be sent on its way. Null when too much is under way.
    [[nodiscard]] QByteArray *put(const QByteArray &bytes);
    // The receiver owns the record from now on.
    void release(const QByteArray *record);

private:
    std::mutex m_mutex; // guards all that follows
    std::deque<QByteArray *> m_records;
    qint64 m_bytes = 0;
};
