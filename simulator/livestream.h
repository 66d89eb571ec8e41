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

    static constexpr int usualLoadMessages = 240;

    // CAN frames a second on top of the configured sources, 0: none. So many messages (1 to 24,576)
    // by turns, the first on channel 0, the next one on channel 1, and on and on over all twelve.
    void setLoad(quint32 framesPerSecond, int messages = usualLoadMessages);

    // What came up since the last call, or since the restart. After a gap of more than a second
    // only the last second.
    [[nodiscard]] QByteArray entriesUntil(qint64 now_us);

private:
    [[nodiscard]] QByteArray loadUntil(qint64 now_us);

    const LoggerState &m_state;
    drive::Vehicle m_vehicle;
    std::unique_ptr<drive::Schedule> m_schedule;
    qint64 m_end_us = 0; // of the last entries
    struct Load
    {
        quint32 frames = 0; // a second
        int messages = usualLoadMessages;
    };
    Load m_load;
    Load m_runningLoad;      // of m_loadEntries
    qint64 m_loadFrames = 0; // made since m_loadStart_us
    qint64 m_loadStart_us = 0;
    std::unique_ptr<benchlog::EntryStream> m_loadEntries;
};

} // namespace simulator
