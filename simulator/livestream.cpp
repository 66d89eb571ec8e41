#include "simulator/livestream.h"

#include "simulator/livesources.h"

namespace simulator {
namespace {

constexpr qint64 second_us = 1'000'000;

constexpr quint32 maxLoad = 5'000'000; // frames/s

} // namespace

void LiveStream::setLoad(quint32 framesPerSecond, int messages)
{
    m_load = {qMin(framesPerSecond, maxLoad), messages};
}

void LiveStream::restart(qint64 now_us)
{
    m_end_us = now_us;
    m_schedule = std::make_unique<drive::Schedule>(now_us);
    addLiveSources(m_state, *m_schedule, m_vehicle);
    m_loadEntries.reset();
}

QByteArray LiveStream::entriesUntil(qint64 now_us)
{
    if (!m_schedule || now_us - m_end_us > second_us)
        restart(qMax(qint64(0), now_us - second_us));
    QByteArray entries;
    m_schedule->recordUntil(now_us, entries);
    entries += loadUntil(now_us);
    m_end_us = now_us;
    return entries;
}

QByteArray LiveStream::loadUntil(qint64 now_us)
{
    if (m_load.frames == 0)
        return {};
    if (!m_loadEntries || m_load.frames != m_runningLoad.frames
        || m_load.messages != m_runningLoad.messages) {
        const auto interval_us = quint32(second_us / qMin(qint64(m_load.frames), second_us));
        m_runningLoad = m_load;
        m_loadStart_us = m_end_us;
        m_loadFrames = 0;
        m_loadEntries = std::make_unique<benchlog::EntryStream>(
            benchlog::Plan{0, m_load.messages, benchlog::Widths::Bytes, interval_us},
            quint32(drive::clockAtStart_us + m_loadStart_us));
    }
    const qint64 due = (now_us - m_loadStart_us) * m_load.frames / second_us;
    const auto count = int(due - m_loadFrames);
    m_loadFrames = due;
    return m_loadEntries->next(count);
}

} // namespace simulator
