#pragma once

#include <QDateTime>

struct TerminalStruct;

namespace drive {

class Schedule;
class Vehicle;

// Each adds one source of the drive: its part of the configuration, and its entries to the
// schedule. The vehicle outlives the schedule.
void addLoggerStatus(TerminalStruct &configuration, Schedule &schedule);
void addGps(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addAgm(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addPowertrainBus(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addFleetBus(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addSurroundBus(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addEngineEcu(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addChassisEcu(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addAssistanceEcu(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addStrainGauges(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addAimModules(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);
void addEtherCat(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle);

// The same of a log that begins at `start_us`, when it is `utc`.
void recordLoggerStatus(Schedule &schedule, const QDateTime &utc, qint64 start_us);

// A sync stamp of each of the logger's processors right behind `start_us`.
void recordFirstSyncStamps(Schedule &schedule, qint64 start_us);

// Only the samples of the accelerometer block, at any rate up to 10 kHz.
void recordAgm(Schedule &schedule, const Vehicle &vehicle, qint64 period_us);

} // namespace drive
