#include "simulator/commandanswers.h"

#include "link/protocol/commands.h"
#include "link/protocol/reply.h"
#include "simulator/answer.h"
#include "simulator/loggerstate.h"
#include "simulator/logstorage.h"
#include "simulator/moduleanswers.h"

#include <QDateTime>
#include <QFile>
#include <QHostAddress>
#include <QRegularExpression>
#include <QStorageInfo>

#include <map>

namespace simulator {
namespace {

using protocol::Command;
using protocol::errorReply;

constexpr int maxLineBytes = 128 * 1024; // of a command

template <class Numbers>
QStringList texts(const Numbers &numbers)
{
    QStringList list;
    for (const int number : numbers)
        list.append(QString::number(number));
    return list;
}

QByteArray softwareVersionAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, texts(QVector<int>{state.version.major, state.version.minor}));
}

QByteArray capabilitiesAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, texts(state.capabilities));
}

QByteArray readyAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, {QString::number(int(state.isReady))});
}

QByteArray stopLogging(LoggerState &state, const Request &)
{
    state.isLoggingStopped = true;
    return okReply();
}

QByteArray hardwareVersionAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, {QString::number(state.hardwareVersion)});
}

QByteArray readLte(LoggerState &state, const Request &request)
{
    return valuesReply(request, {QString::fromLatin1(state.lteConfiguration)});
}

// The text is taken from the line itself: its line ends belong to it.
QByteArray writeLte(LoggerState &state, const Request &request)
{
    constexpr int maxBytes = 64 * 1024;
    const auto size = numberOf(request.arguments.at(0), 0, maxBytes);
    const int comma = request.line.indexOf(',');
    if (!size || request.line.mid(comma + 1 + *size).simplified() != ")")
        return errorReply(InvalidCommand);
    state.lteConfiguration = request.line.mid(comma + 1, *size);
    return okReply();
}

QByteArray restartLte(LoggerState &state, const Request &)
{
    ++state.lteRestarts;
    return okReply();
}

QByteArray setVbatOut(LoggerState &state, const Request &)
{
    state.hasVbatError = false;
    return okReply();
}

QByteArray setLan(LoggerState &state, const Request &request)
{
    const QHostAddress address(request.arguments.at(0));
    const QHostAddress mask(request.arguments.at(1));
    if (address.protocol() != QAbstractSocket::IPv4Protocol
        || mask.protocol() != QAbstractSocket::IPv4Protocol)
        return errorReply(FailedToSetIpAddress);
    if (address == QHostAddress(state.wifiAddress))
        return errorReply(AddressOfWifi);
    state.lanAddress = address.toString();
    state.lanMask = mask.toString();
    return okReply();
}

QByteArray lanAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, {state.lanAddress, state.lanMask});
}

QByteArray setWifi(LoggerState &state, const Request &request)
{
    static const QRegularExpression ssid(QStringLiteral("^[A-Za-z0-9_]{1,30}$"));
    if (!ssid.match(request.arguments.at(0)).hasMatch())
        return errorReply(InvalidCommand);
    state.wifiSsid = request.arguments.at(0);
    return okReply();
}

QByteArray wifiAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, {state.wifiSsid});
}

QByteArray setDebugLevels(LoggerState &state, const Request &request)
{
    constexpr int highestLevel = 6;
    std::array<int, 3> levels{};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const auto level = numberOf(request.arguments.at(int(i)), 0, highestLevel);
        if (!level)
            return errorReply(InvalidCommand);
        levels[i] = *level;
    }
    state.debugLevels = levels;
    return okReply();
}

QByteArray debugLevelsAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, texts(state.debugLevels));
}

QByteArray rtcStatusAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, {state.rtcStatus});
}

QByteArray dateTimeAnswer(LoggerState &state, const Request &request)
{
    const QDateTime now = state.utc();
    const QDate date = now.date();
    const QTime time = now.time();
    return valuesReply(request, texts(QVector<int>{date.day(), date.month(), date.year(),
                                                   time.hour(), time.minute(), time.second()}));
}

QByteArray setDateTime(LoggerState &state, const Request &request)
{
    QVector<int> numbers;
    for (const QString &argument : request.arguments)
        numbers.append(argument.toInt());
    const QDate date(numbers.at(2), numbers.at(1), numbers.at(0));
    const QTime time(numbers.at(3), numbers.at(4), numbers.at(5));
    if (!date.isValid() || !time.isValid())
        return errorReply(InvalidCommand);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    state.clockOffset_ms = now.msecsTo(QDateTime(date, time, Qt::UTC));
    state.rtcStatus = QStringLiteral("VALID");
    return okReply();
}

QByteArray logFilesAnswer(LoggerState &state, const Request &request)
{
    QString list;
    for (const StoredFile &file : storedFiles(state.logFolder))
        list += QStringLiteral("%1,%2;").arg(file.name).arg(file.size);
    return valuesReply(request, {list});
}

QByteArray discSpaceAnswer(LoggerState &state, const Request &request)
{
    DiscSpace space;
    if (state.discSpace) {
        space = *state.discSpace;
    } else if (!state.logFolder.isEmpty()) {
        const QStorageInfo storage(state.logFolder);
        space = {storage.bytesAvailable(), storage.bytesTotal()};
    }
    return valuesReply(request, {QString::number(space.free), QString::number(space.total)});
}

QByteArray deleteLogFile(LoggerState &state, const Request &request)
{
    const auto path = storedFilePath(state.logFolder, request.arguments.at(0));
    if (!path)
        return errorReply(FileNotFound);
    return QFile::remove(*path) ? okReply() : errorReply(FailedToDelete);
}

QByteArray startProcess(LoggerState &state, const Request &request)
{
    constexpr int maxProcesses = 100;
    const QString name = request.arguments.at(0);
    if (name.isEmpty() || state.processes.size() >= maxProcesses)
        return errorReply(InvalidCommand);
    Process process;
    process.argument = request.arguments.value(1);
    for (int step = 1; step <= 4; ++step)
        process.lines.append(QStringLiteral("%1: step %2 of 4").arg(name).arg(step));
    process.lines.append(QStringLiteral("%1: finished").arg(name));
    state.processes.insert(name, process);
    return okReply();
}

QByteArray processStatusAnswer(LoggerState &state, const Request &request)
{
    enum Status { Running = 0, Finished = 1, Failed = 2 };
    const auto process = state.processes.find(request.arguments.at(0));
    if (process == state.processes.end())
        return errorReply(UnknownError);
    process->linesWritten = qMin(process->linesWritten + 1, process->lines.size());
    const bool isRunning = process->linesWritten < process->lines.size();
    const Status status = isRunning ? Running : process->fails ? Failed : Finished;
    const QStringList written = process->lines.mid(0, process->linesWritten);
    return valuesReply(request, {QString::number(status), written.join(QLatin1Char(';'))});
}

QByteArray killProcess(LoggerState &state, const Request &request)
{
    const bool wasThere = state.processes.remove(request.arguments.at(0)) > 0;
    return wasThere ? okReply() : errorReply(UnknownError);
}

QByteArray orientationAnswer(LoggerState &state, const Request &request)
{
    return valuesReply(request, texts(state.orientation));
}

QByteArray setOrientation(LoggerState &state, const Request &request)
{
    constexpr int positions = 24;
    std::array<int, 10> orientation{};
    for (std::size_t i = 0; i < orientation.size(); ++i) {
        const QString &argument = request.arguments.at(int(i));
        const auto number = i == 0 ? numberOf(argument, 1, positions) : numberOf(argument, 0, 1);
        if (!number)
            return errorReply(InvalidCommand);
        orientation[i] = *number;
    }
    state.orientation = orientation;
    return okReply();
}

const std::map<Command, AnswerFunction> &answerFunctions()
{
    using C = Command;
    static const std::map<C, AnswerFunction> functions{
        {C::GetSoftwareVersion, softwareVersionAnswer},
        {C::GetSystemCapabilities, capabilitiesAnswer},
        {C::GetSubsystemsReady, readyAnswer},
        {C::DisableStopLogging, stopLogging},
        {C::GetMasterCpuHardwareVersion, hardwareVersionAnswer},
        {C::ReadLteConfig, readLte},
        {C::WriteLteConfig, writeLte},
        {C::RestartLte, restartLte},
        {C::WriteCanMessage, writeCanMessage},
        {C::GetD4ModChannelInfos, d4modChannelInfosAnswer},
        {C::WriteCpuBuffer, writeCpuBuffer},
        {C::WriteRs485Buffer, writeRs485Buffer},
        {C::SetRs485BaudRate, setRs485BaudRate},
        {C::SetRs485SupplyOut, setRs485SupplyOut},
        {C::SetCpuTransparentMode, setCpuTransparentMode},
        {C::SetTransparentMode, setTransparentMode},
        {C::SetVbatOut, setVbatOut},
        {C::SetLanIpv4, setLan},
        {C::GetLanIpv4, lanAnswer},
        {C::SetWifiSsid, setWifi},
        {C::GetWifiSsid, wifiAnswer},
        {C::SetDebugLevel, setDebugLevels},
        {C::GetDebugLevels, debugLevelsAnswer},
        {C::GetRtcStatus, rtcStatusAnswer},
        {C::GetDateTime, dateTimeAnswer},
        {C::SetDateTime, setDateTime},
        {C::GetLogFiles, logFilesAnswer},
        {C::GetDiscSpace, discSpaceAnswer},
        {C::DeleteLogFile, deleteLogFile},
        {C::StartProcess, startProcess},
        {C::StartProcessWithArgument, startProcess},
        {C::GetProcessStatus, processStatusAnswer},
        {C::KillProcess, killProcess},
        {C::GetOrientation, orientationAnswer},
        {C::SetOrientation, setOrientation},
        {C::GetEtherCatSlaveCount, etherCatSlaveCountAnswer},
        {C::GetEtherCatSlaveInfos, etherCatSlaveInfosAnswer},
        {C::GetEtherCatTxPdoCount, etherCatTxPdoCountAnswer},
        {C::GetEtherCatTxPdoInfos, etherCatTxPdoInfosAnswer},
        {C::ClearEtherCatRequestedSlaves, clearEtherCatRequestedSlaves}};
    return functions;
}

bool isKnownWord(const QByteArray &line)
{
    const QString word = QString::fromLatin1(line).section(QLatin1Char('('), 0, 0).trimmed();
    for (const protocol::CommandRow &row : protocol::commandTable()) {
        if (row.word() == word)
            return true;
    }
    return false;
}

} // namespace

Answer answerCommand(LoggerState &state, const QByteArray &line)
{
    if (line.size() > maxLineBytes)
        return {errorReply(InvalidCommand)};
    const auto parsed = protocol::parseCommand(line);
    if (!parsed) {
        const bool isUnknownSystemCommand = line.startsWith("sys_") && !isKnownWord(line);
        return {errorReply(isUnknownSystemCommand ? UnknownSystemCommand : InvalidCommand)};
    }
    const Request request{parsed->command, parsed->arguments, line};
    Answer answer{answerFunctions().at(parsed->command)(state, request)};
    answer.restarts = parsed->command == Command::SetWifiSsid && protocol::isOk(answer.text);
    return answer;
}

} // namespace simulator
