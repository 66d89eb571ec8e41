#include "link/rawqueue.h"

#include <utility>

RawQueue::~RawQueue()
{
    qDeleteAll(m_entries);
}

bool RawQueue::put(const QList<QByteArray *> &entries)
{
    const std::lock_guard lock(m_mutex);
    const bool wasEmpty = m_entries.isEmpty();
    for (QByteArray *entry : entries) {
        const qint64 cost = entry->size() + costOfEntry;
        if (m_bytes + cost > maxBytes) {
            ++m_dropped;
            delete entry;
            continue;
        }
        m_bytes += cost;
        m_entries.append(entry);
    }
    return wasEmpty && !m_entries.isEmpty();
}

QList<QByteArray *> RawQueue::takeAll()
{
    const std::lock_guard lock(m_mutex);
    m_bytes = 0;
    return std::exchange(m_entries, {});
}
