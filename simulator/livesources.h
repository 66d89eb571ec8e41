#pragma once

struct TerminalStruct;

namespace drive {
class Schedule;
class Vehicle;
} // namespace drive

// What a logger with a given configuration streams. The vehicle outlives the schedule; the
// configuration is read at once. Whatever the configuration holds, values are finite and frames
// stay within their buses' limits.
namespace simulator {

struct LoggerState;

// Every source of the logger.
void addLiveSources(const LoggerState &state, drive::Schedule &schedule,
                    const drive::Vehicle &vehicle);

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
