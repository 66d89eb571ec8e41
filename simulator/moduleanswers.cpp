#include "simulator/moduleanswers.h"

#include "link/protocol/reply.h"
#include "simulator/d4modmodules.h"
#include "simulator/ethercatslaves.h"
#include "simulator/loggerstate.h"

namespace simulator {
namespace {

using protocol::errorReply;

constexpr int highestCan = int(TerminalStruct::canChannels) - 1;
constexpr int highestRs485 = int(TerminalStruct::rs485Ports) - 1;
constexpr int highestNumber = 0x7FFFFFFF;

// Nothing unless the text is hexadecimal digits of exactly so many bytes.
std::optional<QByteArray> bytesOf(const QString &hex, int count)
{
    QString digits = hex;
    digits.remove(QLatin1Char(' '));
    digits.remove(QLatin1Char(','));
    if (digits.size() != 2 * count)
        return {};
    const QByteArray bytes = QByteArray::fromHex(digits.toLatin1());
    return bytes.size() == count ? std::optional(bytes) : std::nullopt;
}

Processor *processorOf(LoggerState &state, const QString &text)
{
    const int first = LoggerState::firstProcessor;
    const auto number = numberOf(text, first, first + int(state.processors.size()) - 1);
    return number ? &state.processors[std::size_t(*number - first)] : nullptr;
}

// The processor of an RS485 port; the ports behind the first four belong to none.
Processor *processorOfPort(LoggerState &state, int port)
{
    constexpr int portsEach = 2;
    const auto index = std::size_t(port / portsEach);
    return index < state.processors.size() ? &state.processors[index] : nullptr;
}

} // namespace

QByteArray writeCanMessage(LoggerState &state, const Request &request)
{
    constexpr quint32 highestStandardId = 0x7FF;
    constexpr int highestId = 0x1FFFFFFF;
    constexpr int maxBytes = 64;
    const QStringList &arguments = request.arguments;
    const auto channel = numberOf(arguments.at(0), 0, highestCan);
    const auto extended = numberOf(arguments.at(1), 0, 1);
    const auto remote = numberOf(arguments.at(2), 0, 1);
    const auto id = numberOf(arguments.at(3), 0, highestId);
    const auto length = numberOf(arguments.at(4), 0, maxBytes);
    if (!channel || !extended || !remote || !id || !length)
        return errorReply(InvalidCommand);
    const auto data = bytesOf(arguments.at(5), *length);
    if (!data || (*extended == 0 && quint32(*id) > highestStandardId))
        return errorReply(InvalidCommand);
    // AIM modules on the channel take their commands from here.
    if (state.transmittedFrames.size() == LoggerState::maxTransmittedFrames)
        state.transmittedFrames.removeFirst();
    state.transmittedFrames.append({*channel, *extended == 1, *remote == 1, quint32(*id), *data});
    return okReply();
}

QByteArray d4modChannelInfosAnswer(LoggerState &state, const Request &request)
{
    const auto port = numberOf(request.arguments.at(0), 0, highestRs485);
    const auto channel = numberOf(request.arguments.at(1), 1, maxD4ModChannels);
    if (!port || !channel)
        return errorReply(InvalidCommand);
    if (*channel > d4modChannelCount(state.configuration, *port))
        return errorReply(SubsystemNotConnected);
    return valuesReply(request, d4modChannelInfos(*port, *channel));
}

QByteArray writeCpuBuffer(LoggerState &state, const Request &request)
{
    Processor *processor = processorOf(state, request.arguments.at(0));
    if (!processor)
        return errorReply(UnknownProcessor);
    const auto offset = numberOf(request.arguments.at(1), 0, LoggerState::maxBufferBytes);
    const QStringList rest = request.arguments.mid(2);
    const auto count = numberOf(rest.at(0), 0, LoggerState::maxBufferBytes);
    if (!offset || !count || *offset + *count > LoggerState::maxBufferBytes)
        return errorReply(InvalidCommand);
    const auto bytes = bytesOf(rest.at(1), *count);
    if (!bytes)
        return errorReply(InvalidCommand);
    if (processor->buffer.size() < *offset + *count)
        processor->buffer.append(*offset + *count - processor->buffer.size(), '\0');
    processor->buffer.replace(*offset, *count, *bytes);
    return okReply();
}

// Modules in transparent mode read the staged bytes here and answer on the data port.
QByteArray writeRs485Buffer(LoggerState &state, const Request &request)
{
    const auto port = numberOf(request.arguments.at(0), 0, highestRs485);
    const auto offset = numberOf(request.arguments.at(1), 0, LoggerState::maxBufferBytes);
    const auto count = numberOf(request.arguments.at(2), 0, LoggerState::maxBufferBytes);
    if (!port || !offset || !count)
        return errorReply(InvalidCommand);
    const Processor *processor = processorOfPort(state, *port);
    if (!processor)
        return errorReply(UnknownProcessor);
    return *offset + *count <= processor->buffer.size() ? okReply() : errorReply(InvalidCommand);
}

QByteArray setRs485BaudRate(LoggerState &state, const Request &request)
{
    const auto port = numberOf(request.arguments.at(0), 0, highestRs485);
    if (!port || !numberOf(request.arguments.at(1), 1, highestNumber))
        return errorReply(InvalidCommand);
    return processorOfPort(state, *port) ? okReply() : errorReply(UnknownProcessor);
}

QByteArray setRs485SupplyOut(LoggerState &state, const Request &request)
{
    const auto port = numberOf(request.arguments.at(0), 0, highestRs485);
    const auto isOn = numberOf(request.arguments.at(1), 0, 1);
    if (!port || !isOn)
        return errorReply(InvalidCommand);
    if (!processorOfPort(state, *port))
        return errorReply(UnknownProcessor);
    state.configuration.rs485[std::size_t(*port)].supply_out = quint8(*isOn);
    return okReply();
}

QByteArray setCpuTransparentMode(LoggerState &state, const Request &request)
{
    Processor *processor = processorOf(state, request.arguments.at(0));
    if (!processor)
        return errorReply(UnknownProcessor);
    const auto isOn = numberOf(request.arguments.at(1), 0, 1);
    if (!isOn)
        return errorReply(InvalidCommand);
    processor->transparent = *isOn == 1;
    processor->buffer.clear();
    return okReply();
}

QByteArray setTransparentMode(LoggerState &state, const Request &request)
{
    const auto isOn = numberOf(request.arguments.at(0), 0, 1);
    if (!isOn)
        return errorReply(InvalidCommand);
    state.isTransparent = *isOn == 1;
    for (Processor &processor : state.processors)
        processor.transparent = state.isTransparent;
    return okReply();
}

QByteArray etherCatSlaveCountAnswer(LoggerState &, const Request &request)
{
    return valuesReply(request, {QString::number(etherCatBus().size())});
}

QByteArray etherCatSlaveInfosAnswer(LoggerState &, const Request &request)
{
    const auto number = numberOf(request.arguments.at(0), 0, etherCatBus().size() - 1);
    if (!number)
        return errorReply(SubsystemNotConnected);
    return valuesReply(request, etherCatSlaveInfos(*number));
}

QByteArray etherCatTxPdoCountAnswer(LoggerState &, const Request &request)
{
    const auto number = numberOf(request.arguments.at(0), 0, etherCatBus().size() - 1);
    if (!number)
        return errorReply(SubsystemNotConnected);
    return valuesReply(request, {QString::number(etherCatBus().at(*number).entries.size())});
}

QByteArray etherCatTxPdoInfosAnswer(LoggerState &, const Request &request)
{
    const auto number = numberOf(request.arguments.at(0), 0, etherCatBus().size() - 1);
    if (!number)
        return errorReply(SubsystemNotConnected);
    const int entries = etherCatBus().at(*number).entries.size();
    const auto entry = numberOf(request.arguments.at(1), 0, entries - 1);
    return entry ? valuesReply(request, etherCatTxPdoInfos(*number, *entry))
                 : errorReply(SubsystemNotConnected);
}

QByteArray clearEtherCatRequestedSlaves(LoggerState &state, const Request &)
{
    ++state.requestedSlavesCleared;
    return okReply();
}

} // namespace simulator
