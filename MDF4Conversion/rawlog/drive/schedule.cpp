#include "MDF4Conversion/rawlog/drive/schedule.h"

#include "MDF4Conversion/rawlog/drive/drivemath.h"

namespace drive {
void Schedule::every(qint64 period_us, qint64 first_us, qint64 jitter_us, EntryMaker make)
{
    m_recurring.push_back({period_us, first_us, jitter_us, std::move(make)});
    if (first_us >= m_start_us)
        enqueue(m_recurring.size() - 1, 0);
    else if (period_us > 0)
        enqueue(m_recurring.size() - 1,
                quint64((m_start_us - first_us + period_us - 1) / period_us));
}

void Schedule::enqueue(std::size_t index, quint64 tick)
{
    const Recurring &what = m_recurring[index];
    Moment moment;
    moment.due_us = what.first_us + qint64(tick) * what.period_us;
    moment.time_us = moment.due_us;
    if (what.jitter_us > 0)
        moment.time_us += qint64(randomBits(quint32(index), tick) % quint64(what.jitter_us));
    moment.timestamp_us = static_cast<quint32>(clockAtStart_us + moment.time_us);
    moment.tick = tick;
    m_queue.push({index, moment});
}

void Schedule::recordUntil(qint64 end_us, QByteArray &entries)
{
    while (!m_queue.empty() && m_queue.top().moment.time_us < end_us) {
        const Due due = m_queue.top();
        m_queue.pop();
        const Recurring &what = m_recurring[due.index];
        entries += what.make(due.moment);
        if (what.period_us > 0)
            enqueue(due.index, due.moment.tick + 1);
    }
}

} // namespace drive
