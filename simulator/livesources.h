#pragma once

#include <QDateTime>

struct TerminalStruct;

namespace drive {
class Schedule;
class Vehicle;
} // namespace drive

// What a logger with a given configuration streams and records. The vehicle outlives the schedule; the
// configuration is read at once. Whatever the configuration holds, values are finite and frames
// stay within their buses' limits.
namespace simulator {

struct LoggerState;

// Every source of the logger.
void addLiveSources(const LoggerState &state, drive::Schedule &schedule,
                    const drive::Vehicle &vehicle);

struct LogStart
{
    qint64 start_us = 0; // the logger's uptime
    QDateTime utc;
};

// What goes into a log that begins then: the same entries as those of the live sources, with the
// log's own start and without the status that only a tool shows.
void addLogSources(const LoggerState &state, drive::Schedule &schedule,
                   const drive::Vehicle &vehicle, const LogStart &start);

// The sources one by one.
void addCanSources(const TerminalStruct &configuration, drive::Schedule &schedule,
                   const drive::Vehicle &vehicle);
void addEthernetSources(const TerminalStruct &configuration, drive::Schedule &schedule,
                        const drive::Vehicle &vehicle);
void addD4ModSources(const TerminalStruct &configuration, drive::Schedule &schedule,
                     const drive::Vehicle &vehicle);
void addEtherCatSources(const TerminalStruct &configuration, drive::Schedule &schedule,
                        const drive::Vehicle &vehicle);
void addStatusSources(const LoggerState &state, drive::Schedule &schedule,
                      const drive::Vehicle &vehicle);

} // namespace simulator
