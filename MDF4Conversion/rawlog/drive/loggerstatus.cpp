#include "MDF4Conversion/rawlog/drive/drivestart.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

namespace drive {
namespace {

constexpr int processors = 3;
constexpr qint64 syncPeriod_us = 10'000'000;
constexpr qint64 counterPeriod_us = 5'000'000;

EntryMaker syncStamps(quint8 processor)
{
    return [processor](const Moment &moment) {
        return rawlog::syncStampEntry(moment.timestamp_us, processor);
    };
}

} // namespace

// Start time, sync stamps and counters of the logger's processors.
void addLoggerStatus(TerminalStruct &configuration, Schedule &schedule)
{
    configuration.event.event_name = QStringLiteral("Demonstration drive");
    recordLoggerStatus(schedule, driveStart(), 0);
}

void recordLoggerStatus(Schedule &schedule, const QDateTime &utc, qint64 start_us)
{
    schedule.once(start_us, [utc](const Moment &) {
        return rawlog::utcStartEntry(quint64(utc.toMSecsSinceEpoch()) * 1000);
    });
    for (int i = 0; i < processors; ++i) {
        const auto processor = static_cast<quint8>(i);
        schedule.every(syncPeriod_us, 100 + 370 * i, 0, syncStamps(processor));
        // Started once, and nothing lost.
        schedule.every(counterPeriod_us, 1'000'000 + 1000 * i, 0, [processor](const Moment &) {
            return rawlog::debugCountersEntry(processor, 0, 1);
        });
    }
}

void recordFirstSyncStamps(Schedule &schedule, qint64 start_us)
{
    for (int i = 0; i < processors; ++i)
        schedule.once(start_us + 50 + 370 * i, syncStamps(static_cast<quint8>(i)));
}

} // namespace drive
