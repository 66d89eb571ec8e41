#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

// The text commands that the tool sends to the logger, in one table.
namespace protocol {

enum class Command {
    GetSoftwareVersion,
    GetSystemCapabilities,
    GetSubsystemsReady,
    DisableStopLogging,
    GetMasterCpuHardwareVersion,
    ReadLteConfig,
    WriteLteConfig,
    RestartLte,
    WriteCanMessage,
    GetD4ModChannelInfos,
    WriteCpuBuffer,
    WriteRs485Buffer,
    SetRs485BaudRate,
    SetRs485SupplyOut,
    SetCpuTransparentMode,
    SetTransparentMode,
    SetVbatOut,
    SetLanIpv4,
    GetLanIpv4,
    SetWifiSsid,
    GetWifiSsid,
    SetDebugLevel,
    GetDebugLevels,
    GetRtcStatus,
    GetDateTime,
    SetDateTime,
    GetLogFiles,
    GetDiscSpace,
    DeleteLogFile,
    StartProcess,
    StartProcessWithArgument,
    GetProcessStatus,
    KillProcess,
    GetOrientation,
    SetOrientation,
    GetEtherCatSlaveCount,
    GetEtherCatSlaveInfos,
    GetEtherCatTxPdoCount,
    GetEtherCatTxPdoInfos,
    ClearEtherCatRequestedSlaves
};

struct CommandRow
{
    Command command;
    const char *format; // with %1 to %n for the arguments
    int timeout_ms;
    bool hasLineEnd; // CR LF behind it
    const char *key; // of the reply, with the placeholders of the word; null when it is "OK"

    // The command's name in messages: the text before "(".
    [[nodiscard]] QString word() const;
    [[nodiscard]] int argumentCount() const;
};

// Every command, in the order of Command.
[[nodiscard]] const QVector<CommandRow> &commandTable();
[[nodiscard]] const CommandRow &commandRow(Command command);

// Whether a line of the logger's protocols can carry the text: it isn't empty, all of it is Latin-1,
// and it holds no line end, with which it would be two lines.
[[nodiscard]] bool isArgument(const QString &text);

// The bytes to send, in Latin-1. The arguments are inserted as they are, whatever they hold.
// Precondition: as many arguments as the row has placeholders.
[[nodiscard]] QByteArray commandText(Command command, const QStringList &arguments = {});

// The key of the reply to a command with these arguments; empty when it is "OK".
[[nodiscard]] QString replyKeyOf(Command command, const QStringList &arguments = {});

// A command as the logger reads it.
struct ParsedCommand
{
    Command command;
    QStringList arguments;
};

// Finds the row of a received line, with or without CR LF. Blanks around arguments don't count;
// the last argument takes all that is left, commas among it. Nothing for an unknown command or a
// wrong number of arguments.
[[nodiscard]] std::optional<ParsedCommand> parseCommand(const QByteArray &line);

} // namespace protocol
