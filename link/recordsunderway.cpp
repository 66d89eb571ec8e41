#include "link/recordsunderway.h"

#include <algorithm>
#include <utility>

RecordsUnderway::Outcome RecordsUnderway::put(int type, std::unique_ptr<QByteArray> data)
{
    const std::lock_guard lock(m_mutex);
    const auto earlier = std::find_if(m_records.begin(), m_records.end(),
                                      [type](const Record &record) { return record.type == type; });
    const bool replaces = earlier != m_records.end();
    const qint64 others = m_bytes - (replaces ? earlier->data->size() : 0);
    if (others + data->size() > maxBytes)
        return Outcome::Refused;
    m_bytes = others + data->size();
    if (replaces)
        m_records.erase(earlier);
    m_records.push_back({type, std::move(data)});
    return replaces ? Outcome::Replaced : Outcome::Added;
}

std::optional<RecordsUnderway::Record> RecordsUnderway::takeFirst()
{
    const std::lock_guard lock(m_mutex);
    if (m_records.empty())
        return std::nullopt;
    Record first = std::move(m_records.front());
    m_records.pop_front();
    m_bytes -= first.data->size();
    return first;
}

int RecordsUnderway::count() const
{
    const std::lock_guard lock(m_mutex);
    return int(m_records.size());
}
