#pragma once

#include "MDF4Conversion/rawlog/benchlog.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"

#include <QByteArray>

#include <memory>

namespace simulator {

struct LoggerState;

// The entries that the logger makes from moment to moment, in the time of its own clock. Used on
// one thread.
class LiveStream
{
public:
    // The state outlives the stream.
    explicit LiveStream(const LoggerState &state)
        : m_state(state)
    {}

    // The sources follow the configuration anew from `now_us` on.
    void restart(qint64 now_us);

    // CAN frames a second, by turns on twelve channels, on top of the configured sources. 0: none.
    void setLoad(quint32 framesPerSecond);

    // What came up since the last call, or since the restart. After a gap of more than a second
    // only the last second.
    [[nodiscard]] QByteArray entriesUntil(qint64 now_us);

private:
    [[nodiscard]] QByteArray loadUntil(qint64 now_us);

    const LoggerState &m_state;
    drive::Vehicle m_vehicle;
    std::unique_ptr<drive::Schedule> m_schedule;
    qint64 m_end_us = 0; // of the last entries
    quint32 m_load = 0;
    quint32 m_runningLoad = 0; // of m_loadEntries
    qint64 m_loadFrames = 0;   // made since m_loadStart_us
    qint64 m_loadStart_us = 0;
    std::unique_ptr<benchlog::EntryStream> m_loadEntries;
};

} // namespace simulator
