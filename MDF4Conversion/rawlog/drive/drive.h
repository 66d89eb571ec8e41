#pragma once

#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "config/terminalstruct.h"

// A demonstration drive: one vehicle, recorded by every source that a logger has.
namespace drive {

// Deterministic and endless. Used on one thread.
class Drive
{
public:
    Drive();
    Drive(const Drive &) = delete;
    Drive &operator=(const Drive &) = delete;

    [[nodiscard]] const TerminalStruct &configuration() const { return m_configuration; }

    // The entries from where the last call ended up to `end_us` after the start, back to back in
    // the order of their times.
    [[nodiscard]] QByteArray entriesUntil(qint64 end_us);

private:
    Vehicle m_vehicle;
    TerminalStruct m_configuration;
    Schedule m_schedule;
};

} // namespace drive
