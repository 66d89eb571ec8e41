// The part of Logger_Data_Handler_Class that decodes the live stream and hands it to the views.

#include "MDF4Conversion/rawlog/entrytypes.h"
#include "config/threadcall.h"
#include "eth/tunnelingmsg.h"
#include "link/logger_data_handler_class.h"
#include "modules/d4modtransparent.h"

#include <QDebug>
#include <QMetaMethod>

#include <algorithm>
#include <iostream>
#include <new>
#include <sstream>
#include <string>
#include <utility>

namespace {

template <class T>
void appendIfAny(QList<T *> &list, const std::optional<T> &value)
{
    if (value)
        list.append(new T(*value));
}

// Emits the list by `send`, unless it is empty, and deletes what was in it. The list is taken first:
// a receiver that spins an event loop must not meet it again.
template <class T, class Send>
void handOut(live::Deliveries &deliveries, QList<T *> &list, Send send)
{
    if (list.isEmpty())
        return;
    const QList<T *> taken = std::exchange(list, {});
    deliveries.run([&] { send(taken); });
    qDeleteAll(taken);
}

template <class T>
void drop(QList<T *> &list)
{
    qDeleteAll(std::exchange(list, {}));
}

} // namespace

// On the data worker's thread. A call that is still under way takes what was added.
void Logger_Data_Handler_Class::slot_take_logger_data(QList<QByteArray *> data)
{
    if (m_rawQueue.put(data))
        threadcall::post(this, [this] { slot_process_logger_data(); });
}

void Logger_Data_Handler_Class::slot_process_logger_data()
{
    const QList<QByteArray *> entries = m_rawQueue.takeAll();
    live::Deliveries deliveries; // some entries go to their receivers at once
    for (const QByteArray *entry : entries)
        deliveries.run([&] { decode(*entry); });
    qDeleteAll(entries);
    threadcall::post(this, [this] { send_signals_to_data_receivers(); });
    deliveries.rethrowFirst();
}

// Entries of a connection that has ended say nothing about the next one.
void Logger_Data_Handler_Class::dropLiveData()
{
    qDeleteAll(m_rawQueue.takeAll());
    for (auto &list : m_canMessages)
        drop(list);
    for (auto &list : m_d4modValues)
        drop(list);
    drop(m_agmSamples);
    drop(m_gpsFixes);
    drop(m_lteStatus);
    drop(m_tunnelingMessages);
    drop(m_ethernetFrames);
    m_ccpXcpInfos = {};
    m_ports = {};
    m_systemInfos = {};
    m_systemInfosAreNew = false;
}

Logger_Data_Handler_Class::Decoder Logger_Data_Handler_Class::decoderOf(quint8 type)
{
    using Handler = Logger_Data_Handler_Class;
    switch (type) {
    case rawlog::RLD_CAN:
        return &Handler::takeCan;
    case rawlog::RLD_AGM:
        return &Handler::takeAgm;
    case rawlog::RLD_D4MOD:
        return &Handler::takeD4mod;
    case rawlog::RLD_GPS:
        return &Handler::takeGps;
    case rawlog::RLD_ETHERCAT:
        return &Handler::takeEtherCat;
    case rawlog::RLD_ETH:
        return &Handler::takeEthernet;
    case rawlog::RLD_ETH_INFO:
        return &Handler::takeEthernetInfo;
    case rawlog::TYPE_TRANSPARENT_DATA:
        return &Handler::takeTransparentData;
    case rawlog::RLD_LIVE_240:
    case rawlog::RLD_DBG_COUNTERS:
        return &Handler::ignoreEntry;
    case rawlog::RLD_ETHERCAT_INFO:
        return &Handler::takeEtherCatInfos;
    case rawlog::RLD_D4MOD_INFO:
        return &Handler::takeDtiVoltages;
    case rawlog::RLD_D4MOD_TED:
        return &Handler::takeTed;
    case rawlog::RLD_RS485_INFO:
        return &Handler::takeRs485Infos;
    case rawlog::RLD_CCP_XCP_INFO:
        return &Handler::takeCcpXcpInfos;
    case rawlog::RLD_LTE:
        return &Handler::takeLte;
    case rawlog::RLD_SYSTEM_INFO:
        return &Handler::takeSystemInfos;
    default:
        return nullptr;
    }
}

void Logger_Data_Handler_Class::decode(const QByteArray &entry)
{
    ++m_liveEntries;
    const quint8 type = live::typeOf(entry);
    try {
        if (const Decoder decoder = decoderOf(type))
            (this->*decoder)(entry);
        else if (m_warnings.allows())
            qDebug() << "unknown Protocoll type: " << type;
    } catch (const std::bad_alloc &) {
        if (m_warnings.allows())
            qDebug() << "SIFUP";
    }
}

void Logger_Data_Handler_Class::takeCan(const QByteArray &entry)
{
    if (CAN_Msg_Class *message = live::canMessage(entry))
        m_canMessages.at(live::numberOf(entry)).append(message);
    else if (m_warnings.allows())
        qWarning() << "An impossible CAN frame is dropped. Channel:" << live::numberOf(entry)
                   << "bytes:" << live::infoOf(entry);
}

void Logger_Data_Handler_Class::takeAgm(const QByteArray &entry)
{
    appendIfAny(m_agmSamples, live::agmSample(entry));
}

void Logger_Data_Handler_Class::takeD4mod(const QByteArray &entry)
{
    for (const D4Mod_Msg_Class &value : live::d4modValues(entry))
        m_d4modValues.at(live::numberOf(entry)).append(new D4Mod_Msg_Class(value));
}

void Logger_Data_Handler_Class::takeGps(const QByteArray &entry)
{
    appendIfAny(m_gpsFixes, live::gpsFix(entry));
}

void Logger_Data_Handler_Class::takeEtherCat(const QByteArray &entry)
{
    constexpr int typeAt = 4;
    QByteArray fromType = entry.mid(typeAt);
    emit signal_ethercat_data_prot(
        live::numberOf(entry), reinterpret_cast<unsigned char *>(fromType.data()), fromType.size());
}

void Logger_Data_Handler_Class::takeEthernet(const QByteArray &entry)
{
    if (!live::isEthernetEntry(entry))
        return;
    if (live::subOf(entry) == live::xcpFrameSub)
        m_ethernetFrames.append(live::ethernetFrame(entry));
    else if (live::subOf(entry) == live::tunnelingSub)
        takeTunnelingBlock(entry);
}

void Logger_Data_Handler_Class::takeTunnelingBlock(const QByteArray &entry)
{
    std::ostringstream warnings;
    m_tunnelingMessages += TunnelingMsgCreator::newTunnelingMessage(entry, &warnings);
    const std::string text = warnings.str();
    if (!text.empty() && m_warnings.allows())
        std::cerr << text;
}

void Logger_Data_Handler_Class::takeEthernetInfo(const QByteArray &entry)
{
    constexpr quint8 xcpSub = 1;
    constexpr quint8 hsfzSub = 2;
    constexpr quint8 firstMirroringSub = 3;
    const quint8 port = live::numberOf(entry);
    if (port != 0)
        return;
    const auto copied = [&entry] {
        auto *copy = new quint8[std::size_t(entry.size())];
        std::copy(entry.begin(), entry.end(), copy);
        return copy;
    };
    const quint8 sub = live::subOf(entry);
    if (sub == xcpSub) {
        if (const auto infos = live::xcpInfos(entry))
            emit sigEthXcpNfos(port, infos->mainState, infos->subState, infos->subStateStep,
                               infos->lastError);
    } else if (sub == hsfzSub
               && isSignalConnected(
                   QMetaMethod::fromSignal(&Logger_Data_Handler_Class::sigEthHSFZNfo))) {
        emit sigEthHSFZNfo(port, copied(), uint(entry.size()));
    } else if (sub >= firstMirroringSub
               && isSignalConnected(
                   QMetaMethod::fromSignal(&Logger_Data_Handler_Class::sigEthMirroringNfo))) {
        emit sigEthMirroringNfo(port, copied(), uint(entry.size()));
    }
}

void Logger_Data_Handler_Class::takeTransparentData(const QByteArray &entry)
{
    using Result = live::TransparentData::Result;
    const live::TransparentData transparent = live::transparentData(entry);
    if (transparent.result == Result::UnknownInterface && m_warnings.allows())
        qCritical() << "TYPE_TRANSPARENT_DATA arrived with unknown interface type";
    if (transparent.result == Result::Data && !transparent.data.isEmpty())
        d4modTransparent(live::numberOf(entry))->dataArrived(transparent.data);
}

// The number byte of these entries means nothing: there is one bus.
void Logger_Data_Handler_Class::takeEtherCatInfos(const QByteArray &entry)
{
    if (const auto infos = live::etherCatInfos(entry))
        emit signal_ethercat_infos(0, infos->masterState, infos->workingCounter, infos->lastError,
                                   infos->lastErrorSlave);
}

void Logger_Data_Handler_Class::takeDtiVoltages(const QByteArray &entry)
{
    const QVector<quint16> voltages = live::dtiVoltages(entry);
    if (voltages.isEmpty())
        return;
    PortStatus &port = m_ports.at(live::numberOf(entry));
    std::copy(voltages.begin(), voltages.end(), port.dtiVoltages_mV.begin());
}

void Logger_Data_Handler_Class::takeTed(const QByteArray &entry)
{
    const QString text = live::tedText(entry);
    if (!text.isNull())
        m_ports.at(live::numberOf(entry)).teds.append({live::infoOf(entry), text});
}

void Logger_Data_Handler_Class::takeRs485Infos(const QByteArray &entry)
{
    if (const auto infos = live::rs485Infos(entry))
        m_ports.at(live::numberOf(entry)).infos = infos;
}

void Logger_Data_Handler_Class::takeCcpXcpInfos(const QByteArray &entry)
{
    if (const auto infos = live::ccpXcpInfos(entry))
        m_ccpXcpInfos.at(live::numberOf(entry)) = infos;
}

void Logger_Data_Handler_Class::takeLte(const QByteArray &entry)
{
    appendIfAny(m_lteStatus, live::lteStatus(entry));
}

void Logger_Data_Handler_Class::takeSystemInfos(const QByteArray &entry)
{
    const auto infos = live::systemInfos(entry);
    if (!infos)
        return;
    m_systemInfos = *infos;
    m_systemInfosAreNew = true;
}

void Logger_Data_Handler_Class::send_signals_to_data_receivers()
{
    live::Deliveries out;
    for (int can = 0; can < live::canChannels; ++can) {
        handOut(out, m_canMessages.at(std::size_t(can)),
                [this, can](const auto &list) { emit signal_can_msg_list(can, list); });
        if (const auto infos = std::exchange(m_ccpXcpInfos.at(std::size_t(can)), {}))
            out.run([&] {
                emit signal_ccp_xcp_infos(can, infos->sessionStatus, infos->lastSlaveResponse);
            });
    }
    handOut(out, m_agmSamples, [this](const auto &list) { emit signal_agm_data_list(list); });
    handOut(out, m_gpsFixes, [this](const auto &list) { emit signal_gps_data_list(list); });
    for (int port = 0; port < live::rs485Ports; ++port)
        sendPortSignals(port, out);
    handOut(out, m_lteStatus, [this](const auto &list) { emit signal_lte_data_list(list); });
    handOut(out, m_tunnelingMessages,
            [this](const auto &list) { emit sigEthTunnelingMsgList(0, list); });
    handOut(out, m_ethernetFrames,
            [this](const auto &list) { emit signal_ethernet_frame_list(0, list); });
    if (std::exchange(m_systemInfosAreNew, false))
        out.run([this] { emit signal_system_infos_received(); });
    out.rethrowFirst();
}

void Logger_Data_Handler_Class::sendPortSignals(int rs485_nr, live::Deliveries &out)
{
    handOut(out, m_d4modValues.at(std::size_t(rs485_nr)),
            [this, rs485_nr](const auto &list) { emit signal_d4mod_msg_list(rs485_nr, list); });
    const PortStatus status = std::exchange(m_ports.at(std::size_t(rs485_nr)), {});
    for (const auto &ted : status.teds)
        out.run([&] { emit signal_d4mod_TED_infos(rs485_nr, ted.first, ted.second); });
    if (status.infos)
        out.run([&] {
            emit signal_rs485_infos(rs485_nr, status.infos->sessionStatus,
                                    status.infos->voltage_mV);
        });
    for (std::size_t channel = 0; channel < status.dtiVoltages_mV.size(); ++channel) {
        if (const auto voltage = status.dtiVoltages_mV.at(channel))
            out.run([&] { emit signal_d4mod_infos(rs485_nr, int(channel), *voltage); });
    }
}
