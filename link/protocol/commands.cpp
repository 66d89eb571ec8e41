#include "link/protocol/commands.h"

namespace protocol {

namespace {

using C = Command;

constexpr bool withLineEnd = true;
constexpr bool withoutLineEnd = false;

const QVector<CommandRow> rows{
    {C::GetSoftwareVersion, "sys_get_software_version()", 1000, withLineEnd, "software_version"},
    {C::GetSystemCapabilities, "sys_get_system_capabilities()", 1000, withLineEnd,
     "sys_system_capabilities"},
    {C::GetSubsystemsReady, "sys_get_subsystems_rdy()", 1000, withLineEnd, "sys_subsystems_rdy"},
    {C::DisableStopLogging, "sys_disable_stop_logging()", 1000, withLineEnd, nullptr},
    {C::GetMasterCpuHardwareVersion, "get_mst_cpu_hw_version()", 1000, withLineEnd,
     "mst_cpu_hw_version"},
    {C::ReadLteConfig, "sys_read_lte_config()", 1000, withLineEnd, "sys_lte_config"},
    {C::WriteLteConfig, "sys_write_lte_config(%1,%2)", 1000, withLineEnd, nullptr},
    {C::RestartLte, "sys_restart_lte()", 1000, withLineEnd, nullptr},
    {C::WriteCanMessage, "write_can_%1_msg(%2,%3,%4,%5,%6)", 1000, withLineEnd, nullptr},
    {C::GetD4ModChannelInfos, "get_d4mod_%1_channel_infos( %2 )", 1000, withLineEnd,
     "d4mod_%1_channel_infos"},
    {C::WriteCpuBuffer, "write_cpu_%1_buff(%2,%3,%4)", 1000, withLineEnd, nullptr},
    {C::WriteRs485Buffer, "write_rs485_%1_buff(%2,%3)", 1000, withLineEnd, nullptr},
    {C::SetRs485BaudRate, "set_rs485_%1_baudrate(%2)", 1000, withLineEnd, nullptr},
    {C::SetRs485SupplyOut, "set_rs485_%1_supply_out(%2)", 1000, withLineEnd, nullptr},
    {C::SetCpuTransparentMode, "set_cpu_%1_transparent_mode(%2)", 1000, withLineEnd, nullptr},
    {C::SetTransparentMode, "sys_set_transparent_mode(%1)", 1000, withLineEnd, nullptr},
    {C::SetVbatOut, "set_vbat_out(1)", 1000, withLineEnd, nullptr},
    {C::SetLanIpv4, "sys_set_lan_ipv4(%1,%2)", 15000, withLineEnd, nullptr},
    {C::GetLanIpv4, "sys_get_lan_ipv4()", 3000, withLineEnd, "sys_lan_ipv4"},
    {C::SetWifiSsid, "sys_set_wifi_ssid(%1)", 3000, withLineEnd, nullptr},
    {C::GetWifiSsid, "sys_get_wifi_ssid()", 3000, withLineEnd, "sys_wifi_ssid"},
    {C::SetDebugLevel, "sys_set_debug_lvl(%1,%2,%3)", 2000, withLineEnd, nullptr},
    {C::GetDebugLevels, "sys_get_debug_lvl_nfo()", 3000, withLineEnd, "sys_debug_lvl_nfo"},
    {C::GetRtcStatus, "get_rtc_status()", 1000, withLineEnd, "rtc_status"},
    {C::GetDateTime, "get_datetime()", 1000, withLineEnd, "datetime"},
    {C::SetDateTime, "set_datetime(%1,%2,%3,%4,%5,%6)", 1000, withLineEnd, nullptr},
    {C::GetLogFiles, "sys_get_logfiles()", 2500, withLineEnd, "logfiles"},
    {C::GetDiscSpace, "sys_get_disc_space_info()", 7500, withLineEnd, "disc_space_info"},
    {C::DeleteLogFile, "sys_delete_logfile(%1)", 1000, withLineEnd, nullptr},
    {C::StartProcess, "sys_start_process(%1)", 30000, withLineEnd, nullptr},
    {C::StartProcessWithArgument, "sys_start_process(%1,%2)", 30000, withLineEnd, nullptr},
    {C::GetProcessStatus, "sys_get_proc_status(%1)", 3000, withLineEnd, "sys_proc_status"},
    {C::KillProcess, "sys_kill_proc(%1)", 30000, withLineEnd, nullptr},
    {C::GetOrientation, "get_orientation()", 1000, withLineEnd, "orientation"},
    {C::SetOrientation, "set_orientation(%1,%2,%3,%4,%5,%6,%7,%8,%9,%10)", 1000, withLineEnd,
     nullptr},
    {C::GetEtherCatSlaveCount, "get_ecm_0_slave_cnt()", 1000, withoutLineEnd, "ecm_0_slave_cnt"},
    {C::GetEtherCatSlaveInfos, "get_ecm_0_slave_infos(%1)", 1000, withoutLineEnd,
     "ecm_0_slave_infos"},
    {C::GetEtherCatTxPdoCount, "get_ecm_0_slave_tx_pdo_cnt(%1)", 1000, withoutLineEnd,
     "ecm_0_slave_tx_pdo_cnt"},
    {C::GetEtherCatTxPdoInfos, "get_ecm_0_slave_tx_pdo_infos(%1,%2)", 1000, withoutLineEnd,
     "ecm_0_slave_tx_pdo_infos"},
    {C::ClearEtherCatRequestedSlaves, "clr_ecm_0_req_slaves()", 1000, withoutLineEnd, nullptr}};

// A format as the texts between its placeholders, which count up from 1.
QStringList literalsOf(const QString &format)
{
    QStringList literals;
    int from = 0;
    for (int number = 1;; ++number) {
        const QString placeholder = QStringLiteral("%%1").arg(number);
        const int at = format.indexOf(placeholder, from);
        if (at < 0)
            break;
        literals.append(format.mid(from, at - from));
        from = at + placeholder.size();
    }
    literals.append(format.mid(from));
    return literals;
}

// All at once: an argument may hold what looks like a placeholder.
QString filled(const QString &format, const QStringList &arguments)
{
    const QStringList literals = literalsOf(format);
    QString text = literals.first();
    for (int i = 1; i < literals.size(); ++i)
        text += arguments.value(i - 1) + literals.at(i);
    return text;
}

std::optional<QStringList> argumentsIn(const QString &line, const QString &format)
{
    QStringList literals = literalsOf(format);
    for (QString &literal : literals)
        literal.remove(QLatin1Char(' '));
    if (literals.size() == 1)
        return line == literals.first() ? std::optional(QStringList()) : std::nullopt;
    if (!line.startsWith(literals.first()) || !line.endsWith(literals.last()))
        return std::nullopt;
    QStringList arguments;
    int from = literals.first().size();
    const int end = line.size() - literals.last().size();
    for (int i = 1; i < literals.size() - 1; ++i) {
        const int at = line.indexOf(literals.at(i), from);
        if (at < 0 || at > end)
            return std::nullopt;
        arguments.append(line.mid(from, at - from).trimmed());
        from = at + literals.at(i).size();
    }
    if (from > end)
        return std::nullopt;
    arguments.append(line.mid(from, end - from).trimmed());
    return arguments;
}

} // namespace

QString CommandRow::word() const
{
    return QString::fromLatin1(format).section(QLatin1Char('('), 0, 0);
}

int CommandRow::argumentCount() const
{
    return literalsOf(QString::fromLatin1(format)).size() - 1;
}

const QVector<CommandRow> &commandTable()
{
    return rows;
}

const CommandRow &commandRow(Command command)
{
    return rows.at(int(command));
}

bool isArgument(const QString &text)
{
    return !text.isEmpty() && !text.contains(QLatin1Char('\r')) && !text.contains(QLatin1Char('\n'))
           && QString::fromLatin1(text.toLatin1()) == text;
}

QByteArray commandText(Command command, const QStringList &arguments)
{
    const CommandRow &row = commandRow(command);
    Q_ASSERT(arguments.size() == row.argumentCount());
    const QString text = filled(QString::fromLatin1(row.format), arguments);
    return (row.hasLineEnd ? text + QStringLiteral("\r\n") : text).toLatin1();
}

QString replyKeyOf(Command command, const QStringList &arguments)
{
    const char *key = commandRow(command).key;
    return key ? filled(QString::fromLatin1(key), arguments) : QString();
}

// Two commands may share a word: the one that takes more of the line as arguments is meant.
std::optional<ParsedCommand> parseCommand(const QByteArray &line)
{
    const QString text = QString::fromLatin1(line).trimmed();
    std::optional<ParsedCommand> found;
    for (const CommandRow &row : rows) {
        const auto arguments = argumentsIn(text, QString::fromLatin1(row.format));
        if (arguments && (!found || arguments->size() > found->arguments.size()))
            found = ParsedCommand{row.command, *arguments};
    }
    return found;
}

} // namespace protocol
