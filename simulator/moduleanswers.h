#pragma once

#include "simulator/answer.h"

// The answers to the commands that concern buses and modules: CAN, RS485 and EtherCAT.
namespace simulator {

QByteArray writeCanMessage(LoggerState &state, const Request &request);
QByteArray d4modChannelInfosAnswer(LoggerState &state, const Request &request);
QByteArray writeCpuBuffer(LoggerState &state, const Request &request);
QByteArray writeRs485Buffer(LoggerState &state, const Request &request);
QByteArray setRs485BaudRate(LoggerState &state, const Request &request);
QByteArray setRs485SupplyOut(LoggerState &state, const Request &request);
QByteArray setCpuTransparentMode(LoggerState &state, const Request &request);
QByteArray setTransparentMode(LoggerState &state, const Request &request);
QByteArray etherCatSlaveCountAnswer(LoggerState &state, const Request &request);
QByteArray etherCatSlaveInfosAnswer(LoggerState &state, const Request &request);
QByteArray etherCatTxPdoCountAnswer(LoggerState &state, const Request &request);
QByteArray etherCatTxPdoInfosAnswer(LoggerState &state, const Request &request);
QByteArray clearEtherCatRequestedSlaves(LoggerState &state, const Request &request);

} // namespace simulator
