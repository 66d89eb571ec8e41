#include "link/recordsunderway.h"

#include <QtAlgorithms>

#include <algorithm>
#include <memory>

RecordsUnderway::~RecordsUnderway()
{
    qDeleteAll(m_records);
}

QByteArray *RecordsUnderway::put(const QByteArray &bytes)
{
    const std::lock_guard lock(m_mutex);
    if (m_bytes + bytes.size() + costOfRecord > maxBytes)
        return nullptr;
    auto record = std::make_unique<QByteArray>(bytes);
    m_records.push_back(record.get());
    m_bytes += bytes.size() + costOfRecord;
    return record.release();
}

// They arrive in the order in which they were sent: the search ends with the first.
void RecordsUnderway::release(const QByteArray *record)
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find(m_records.begin(), m_records.end(), record);
    if (found == m_records.end())
        return;
    m_bytes -= record->size() + costOfRecord;
    m_records.erase(found);
}
