// The part of Logger_Data_Handler_Class that writes, loops back and applies configuration records.

#include "config/configfile.h"
#include "config/threadcall.h"
#include "link/cmd_handler_class.h"
#include "link/logger_data_handler_class.h"

#include <QDebug>
#include <QScopedValueRollback>

#include <utility>

namespace {

constexpr char cutRecord[] = "A record of the logger is not whole, it is dropped.";

// A record of a numbered run: port i of the array.
template <class Array>
auto *elementOf(Array &array, int index)
{
    return index >= 0 && index < int(array.size()) ? &array.at(std::size_t(index)) : nullptr;
}

template <class R>
QByteArray serialised(const R &record, const char *name)
{
    const QByteArray bytes = record::toBytes(record);
    qDebug().noquote() << QString::fromLatin1(name) + QStringLiteral(" - serialized data lenth:")
                       << bytes.size();
    return bytes;
}

} // namespace

bool Logger_Data_Handler_Class::saveConfiguration(const QString &path, QString *error) const
{
    return configfile::save(*m_terminal, path, error);
}

bool Logger_Data_Handler_Class::loadConfiguration(const QString &path, QString *error)
{
    TerminalStruct loaded;
    return configfile::load(loaded, path, error) && writeWholeConfiguration(loaded);
}

bool Logger_Data_Handler_Class::writeWholeConfiguration(const TerminalStruct &configuration)
{
    auto limited = std::make_unique<TerminalStruct>();
    record::copy(configuration, *limited);
    for (int i = 0; i < protocol::canTypes; ++i)
        m_filterLimit.limit(i, limited->can.at(std::size_t(i)));
    return writeRecord(protocol::WholeConfiguration, *limited, "write_terminal_struct");
}

template <class R>
bool Logger_Data_Handler_Class::writeRecord(int type, const R &record, const char *name)
{
    return sendRecord(type, serialised(record, name));
}

// The record holds the new value only while it is serialised.
template <class R, class Owner, class T>
bool Logger_Data_Handler_Class::writeField(int type, R &record, Owner &owner, T Owner::*field,
                                           T value, const char *name)
{
    const QByteArray bytes = [&] {
        const QScopedValueRollback<T> restored(owner.*field, value);
        return serialised(record, name);
    }();
    return sendRecord(type, bytes);
}

bool Logger_Data_Handler_Class::sendRecord(int type, const QByteArray &bytes)
{
    if (!isConnected()) {
        fakeTransfer(type, bytes);
        return true;
    }
    if (!sendStreaming(type, bytes))
        return false;
    const protocol::Message answer = m_commands->takeAnswer();
    if (answer.type == protocol::Acknowledgement || record::frameIsWhole(answer.payload))
        return true;
    m_lastCommandError = QStringLiteral("The logger's answer to a change is cut short: the tool "
                                        "can't tell what the logger holds. Type:%1")
                             .arg(type);
    emit signal_show_error_if_connected(QStringLiteral("Warning"), m_lastCommandError);
    return false;
}

void Logger_Data_Handler_Class::fakeTransfer(int type, const QByteArray &bytes)
{
    slot_streaming_prot_received(type, std::make_unique<QByteArray>(bytes).release());
    if (protocol::indexIn(type, protocol::Rs485, protocol::rs485Types) >= 0) {
        // Channels come from a connected module, and there is none.
        for (TerminalRs485Cfg &port : m_terminal->rs485)
            port.channels.clear();
    } else if (protocol::indexIn(type, protocol::EtherCat, protocol::etherCatTypes) >= 0) {
        qDebug() << "Fake Transfer Triggered from EtherCAT";
    } else if (protocol::indexIn(type, protocol::Ethernet, protocol::ethernetTypes) >= 0) {
        qDebug() << "Fake Transfer Triggered from Ethernet";
    }
}

// On the command worker's thread. What is cut short must not take the place of a whole record that
// still waits.
void Logger_Data_Handler_Class::takeRecordOver(int type, QByteArray *data)
{
    std::unique_ptr<QByteArray> owned(data);
    if (type != protocol::Lte && !record::frameIsWhole(*owned)) {
        if (m_refusedRecords.allows())
            qWarning(cutRecord);
        return;
    }
    switch (m_recordsUnderway.put(type, std::move(owned))) {
    case RecordsUnderway::Outcome::Added:
        threadcall::post(this, [this] { applyFirstRecord(); });
        break;
    case RecordsUnderway::Outcome::Replaced:
        break;
    case RecordsUnderway::Outcome::Refused:
        if (m_refusedRecords.allows())
            qWarning() << "Records come faster than they are read, one is dropped.";
        break;
    }
}

void Logger_Data_Handler_Class::applyFirstRecord()
{
    if (auto record = m_recordsUnderway.takeFirst())
        slot_streaming_prot_received(record->type, record->data.release());
}

// Only so many: a logger that sends without end would keep this from returning.
void Logger_Data_Handler_Class::applyWaitingRecords()
{
    for (int left = m_recordsUnderway.count(); left > 0; --left)
        applyFirstRecord();
}

void Logger_Data_Handler_Class::slot_streaming_prot_received(int type, QByteArray *data)
{
    const std::unique_ptr<QByteArray> owned(data);
    if (m_recordLines.allows())
        qDebug() << "slot_streaming_prot_received TYPE:" << type;
    if (!applyRecord(type, *owned) && m_warnings.allows())
        qWarning() << "slot_streaming_prot_received -> UNKNOWN-Type";
}

// What is cut short would read as a record of defaults.
template <class R>
bool Logger_Data_Handler_Class::takeRecord(const QByteArray &data, R &record)
{
    if (record::frameIsWhole(data))
        return record::fromBytes(data, record);
    if (m_warnings.allows())
        qWarning(cutRecord);
    return false;
}

// Views shall see a channel only after its filters fit the hardware, and hear last of what that has
// cost.
template <class EmitUpdates>
void Logger_Data_Handler_Class::takeChannels(int firstCan, int count, EmitUpdates emitUpdates)
{
    QVector<QStringList> cleared;
    for (int i = firstCan; i < firstCan + count; ++i)
        cleared.append(m_filterLimit.take(i, m_terminal->can.at(std::size_t(i))));
    emitUpdates();
    for (int i = 0; i < count; ++i) {
        if (!cleared.at(i).isEmpty())
            emit signalFilterLimitCleared(firstCan + i, cleared.at(i));
    }
}

// False for a type that carries no record of ours.
bool Logger_Data_Handler_Class::applyRecord(int type, const QByteArray &data)
{
    using namespace protocol;
    switch (type) {
    case WholeConfiguration:
        if (takeRecord(data, *m_terminal))
            takeChannels(0, canTypes, [this] { emit signal_full_update(); });
        return true;
    case Gps:
        if (takeRecord(data, m_terminal->gps))
            emit signal_update_cfg_gps();
        return true;
    case Agm:
        if (takeRecord(data, m_terminal->agm))
            emit sigUpdCfgAgm();
        return true;
    case Lte:
        return true;
    case LogTrigger:
        if (takeRecord(data, m_terminal->trigger))
            emit signal_update_cfg_logtrigger();
        return true;
    case AuxSupply:
        if (takeRecord(data, m_terminal->event))
            emit signal_full_update();
        return true;
    default:
        break;
    }
    if (auto *channel = elementOf(m_terminal->can, indexIn(type, Can, canTypes))) {
        if (takeRecord(data, *channel)) {
            takeChannels(type - Can, 1, [this, type] {
                emit signal_update_cfg_can(type - Can);
                emit signal_update_cfg_logtrigger(); // its signals come from the channels
            });
        }
        return true;
    }
    if (auto *port = elementOf(m_terminal->rs485, indexIn(type, Rs485, rs485Types))) {
        if (takeRecord(data, *port))
            emit signal_update_cfg_rs485(type - Rs485);
        return true;
    }
    if (auto *master = elementOf(m_terminal->ethercat, indexIn(type, EtherCat, etherCatTypes))) {
        if (takeRecord(data, *master))
            emit signal_update_cfg_ethercat(type - EtherCat);
        return true;
    }
    if (type == Ethernet) {
        if (takeRecord(data, m_terminal->eth))
            emit signal_update_cfg_ethernet(type - Ethernet);
        return true;
    }
    return false;
}

bool Logger_Data_Handler_Class::cmd_write_gps_enabled(quint8 value)
{
    return writeField(protocol::Gps, m_terminal->gps, m_terminal->gps, &TerminalGpsCfg::gps_enabled,
                      value, "cmd_write_gps_enabled");
}

bool Logger_Data_Handler_Class::cmd_write_agm_enabled(quint8 value)
{
    return writeField(protocol::Agm, m_terminal->agm, m_terminal->agm, &TerminalAgmCfg::enabled,
                      value, "cmd_write_agm_enabled");
}

bool Logger_Data_Handler_Class::writeAgm(const TerminalAgmCfg &record)
{
    return writeRecord(protocol::Agm, record, "write_agm");
}

bool Logger_Data_Handler_Class::cmd_write_logtrigger_cfg(const LogTriggerCfg &record)
{
    return writeRecord(protocol::LogTrigger, record, "cmd_write_logtrigger_cfg");
}

bool Logger_Data_Handler_Class::writeEventMeasurement(const AuxSupplyCfg &record)
{
    return writeRecord(protocol::AuxSupply, record, "write_event_measurement");
}

bool Logger_Data_Handler_Class::cmd_write_aux_supply_control(quint8 mode)
{
    return writeField(protocol::AuxSupply, m_terminal->event, m_terminal->event,
                      &AuxSupplyCfg::aux_mode, mode, "cmd_write_aux_supply_control");
}

bool Logger_Data_Handler_Class::cmd_write_can_enabled(int can_nr, quint8 value)
{
    TerminalCanCfg edited;
    record::copy(m_terminal->can.at(std::size_t(can_nr)), edited);
    edited.enabled = value;
    return writeLimitedCan(can_nr, edited, "cmd_write_can_enabled");
}

bool Logger_Data_Handler_Class::writeCcpXcpEnabled(int can_nr, quint8 value)
{
    TerminalCanCfg edited;
    record::copy(m_terminal->can.at(std::size_t(can_nr)), edited);
    edited.a2l.config.enabled = value;
    return writeLimitedCan(can_nr, edited, "write_ccp_xcp_enabled");
}

bool Logger_Data_Handler_Class::writeCan(int can_nr, const TerminalCanCfg &record)
{
    return writeLimitedCan(can_nr, record, "write_can");
}

bool Logger_Data_Handler_Class::writeLimitedCan(int can_nr, const TerminalCanCfg &record,
                                                const char *name)
{
    TerminalCanCfg limited;
    record::copy(record, limited);
    m_filterLimit.limit(can_nr, limited);
    return writeRecord(protocol::Can + can_nr, limited, name);
}

bool Logger_Data_Handler_Class::cmd_write_eth_module_selection(int eth_nr, quint8 selection)
{
    const int type = protocol::Ethernet + eth_nr;
    qDebug() << "Logger_Data_Handler_Class::cmd_write_eth_module_selection() - selection: t:"
             << type << selection;
    return writeField(type, m_terminal->eth, m_terminal->eth,
                      &StreamingClass_Cfg_Ethernet::module_selection, selection,
                      "cmd_write_eth_module_selection");
}

bool Logger_Data_Handler_Class::cmd_write_xcp_enabled(int eth_nr, quint8 value)
{
    return writeField(protocol::Ethernet + eth_nr, m_terminal->eth,
                      m_terminal->eth.xcp.module.config, &A2lModuleConfig::enabled, value,
                      "cmd_write_xcp_enabled");
}

bool Logger_Data_Handler_Class::cmd_write_tunneling_enabled(int eth_nr, quint8 value)
{
    return writeField(protocol::Ethernet + eth_nr, m_terminal->eth, m_terminal->eth.tunneling,
                      &EthTunnelingCfg::tunneling_enabled, value, "cmd_write_tunneling_enabled");
}

bool Logger_Data_Handler_Class::cmd_write_mirroring_enabled(int eth_nr, quint8 value)
{
    return writeField(protocol::Ethernet + eth_nr, m_terminal->eth, m_terminal->eth.tunneling,
                      &EthTunnelingCfg::mirroring_enabled, value, "cmd_write_mirroring_enabled");
}

bool Logger_Data_Handler_Class::cmd_write_eth_cfg(int eth_nr,
                                                  const StreamingClass_Cfg_Ethernet &record)
{
    return writeRecord(protocol::Ethernet + eth_nr, record, "cmd_write_eth_cfg");
}

bool Logger_Data_Handler_Class::cmd_write_rs485_supply_out_enabled(int rs485_nr, quint8 value)
{
    auto &port = m_terminal->rs485.at(std::size_t(rs485_nr));
    return writeField(protocol::Rs485 + rs485_nr, port, port, &TerminalRs485Cfg::supply_out, value,
                      "cmd_write_rs485_supply_out_enabled");
}

bool Logger_Data_Handler_Class::cmd_write_rs485_voltage_lvl(int rs485_nr, quint16 voltage_mV)
{
    auto &port = m_terminal->rs485.at(std::size_t(rs485_nr));
    return writeField(protocol::Rs485 + rs485_nr, port, port, &TerminalRs485Cfg::voltage,
                      voltage_mV, "cmd_write_rs485_voltage_lvl");
}

bool Logger_Data_Handler_Class::cmd_write_d4mod_enabled(int rs485_nr, quint8 value)
{
    auto &port = m_terminal->rs485.at(std::size_t(rs485_nr));
    return writeField(protocol::Rs485 + rs485_nr, port, port.d4mod, &TerminalD4ModCfg::enabled,
                      value, "cmd_write_d4mod_enabled");
}

bool Logger_Data_Handler_Class::cmd_write_d4mod_mode(int rs485_nr, quint8 mode, quint8 rate,
                                                     qint32 mode_value)
{
    auto &port = m_terminal->rs485.at(std::size_t(rs485_nr));
    const QByteArray bytes = [&] {
        const QScopedValueRollback<quint8> restoredMode(port.d4mod.mode, mode);
        const QScopedValueRollback<quint8> restoredRate(port.d4mod.rate, rate);
        const QScopedValueRollback<qint32> restoredValue(port.d4mod.mode_value, mode_value);
        return serialised(port, "cmd_write_d4mod_mode");
    }();
    return sendRecord(protocol::Rs485 + rs485_nr, bytes);
}

bool Logger_Data_Handler_Class::cmd_write_ethercat_enabled(int ethercat_nr, quint8 value)
{
    auto &master = m_terminal->ethercat.at(std::size_t(ethercat_nr));
    return writeField(protocol::EtherCat + ethercat_nr, master, master,
                      &TerminalEtherCatCfg::enabled, value, "cmd_write_ethercat_enabled");
}

bool Logger_Data_Handler_Class::cmd_write_ethercat_sample_rate(int ethercat_nr, quint16 value)
{
    auto &master = m_terminal->ethercat.at(std::size_t(ethercat_nr));
    return writeField(protocol::EtherCat + ethercat_nr, master, master,
                      &TerminalEtherCatCfg::sample_rate, value, "cmd_write_ethercat_sample_rate");
}

bool Logger_Data_Handler_Class::writeEtherCat(int ethercat_nr, const TerminalEtherCatCfg &record)
{
    return writeRecord(protocol::EtherCat + ethercat_nr, record, "write_ethercat");
}
