#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_ccp_xcp.h"

#include "MDF4Conversion/Interface_MDF4_Factory/daqsignals.h"
#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_can_dbc.h"
#include "MDF4Conversion/Interface_MDF4_Factory/measurementchannel.h"
#include "MDF4Conversion/Interface_MDF4_Factory/namelist.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "a2l/records/a2lmeasurement.h"
#include "config/streamingclass_cfg_ethernet.h"
#include "config/terminalcancfg.h"

#include <QDebug>

#include <algorithm>
#include <map>

namespace {

using Signals = std::vector<CCP_XCP_Signal>;

// What tells CAN and ethernet apart when the groups of a module are built.
struct Port
{
    CCP_XCP_Signal::Link link;
    quint8 number;
    groupnames::PortName name;
    QString kind;
    const char *leftBehindText;
};

template <class Group>
class GroupBuilder
{
public:
    GroupBuilder(const MDF4_ConversionContext &handler, const StreamingClass_A2L_Module &module,
                 Port port, ChannelGroupList &groups)
        : m_context(handler)
        , m_port(std::move(port))
        , m_channels(module, *handler.messages)
        , m_daqSignals(module, m_port.link, m_port.number, *handler.messages)
        , m_groups(groups)
    {}

    void build()
    {
        Signals leftBehind;
        for (const StreamingClass_A2L_DAQ *daq : m_daqSignals.daqLists()) {
            if (m_groups.isClosed())
                return;
            Signals complete;
            for (CCP_XCP_Signal &signal : m_daqSignals.signalsOf(*daq)) {
                Signals &target = signal.isComplete() ? complete : leftBehind;
                target.push_back(std::move(signal));
            }
            addGroupsByOdt(complete);
        }
        addLeftBehind(leftBehind);
        warnOfLeftOut(QStringLiteral("the module doesn't describe them"),
                      m_daqSignals.unknownNames());
        warnOfLeftOut(QStringLiteral("they lie beyond the end of their DTO"),
                      m_daqSignals.namesBeyondDto());
    }

private:
    // Signals with the same PIDs share a group; the groups follow their first PID's ODT.
    void addGroupsByOdt(const Signals &complete)
    {
        std::vector<std::vector<quint8>> order;
        std::map<std::vector<quint8>, Signals> byPids;
        for (const CCP_XCP_Signal &signal : complete) {
            Signals &members = byPids[signal.pids()];
            if (members.empty())
                order.push_back(signal.pids());
            members.push_back(signal);
        }
        for (const auto &pids : order)
            addGroup(byPids[pids]);
    }

    // Logs of old loggers don't tell whether a value was split. What lies whole in its first part
    // can be converted nevertheless.
    void addLeftBehind(const Signals &leftBehind)
    {
        if (leftBehind.empty())
            return;
        m_context.messages->info(QStringLiteral(
            "Possibly converting an old log without Splitted / Not Splitted Flag.."));
        qDebug() << m_port.leftBehindText << leftBehind.size();
        QStringList lost;
        for (const CCP_XCP_Signal &signal : leftBehind) {
            if (m_groups.isClosed())
                return;
            if (!signal.isSplitted() && signal.parts().front().Len == signal.valueSize())
                addGroup({signal.withFirstPartOnly()});
            else
                lost.append(signal.measurement().name);
        }
        lost.removeDuplicates(); // of several lists
        warnOfLeftOut(QStringLiteral("their parts in the DAQ lists don't make up the whole value"),
                      lost);
    }

    void warnOfLeftOut(const QString &reason, const QStringList &names)
    {
        if (names.isEmpty())
            return;
        m_context.messages->warning(QStringLiteral("Measurements of %1-%2 are left out, %3: %4")
                                        .arg(m_port.name.label.toHtmlEscaped(),
                                             QString::number(m_port.number), reason,
                                             nameList(names).toHtmlEscaped()));
    }

    void addGroup(const Signals &members)
    {
        if (!m_groups.reserve(members.size()))
            return;
        EntrySelection dtos;
        dtos.type = members.front().entryType();
        dtos.number = m_port.number;
        if (m_port.link == CCP_XCP_Signal::Can)
            dtos.canId = members.front().canId();
        else
            dtos.sub = rawlog::ethSubXcp;
        dtos.firstBytes = members.front().pids();
        auto group = std::make_unique<Group>(m_context,
                                             groupnames::groupName(m_port.name, m_port.kind), dtos);
        for (const CCP_XCP_Signal &signal : members)
            group->addChannel(m_channels.channelOf(signal, m_port.link));
        m_groups.add(std::move(group));
    }

    const MDF4_ConversionContext &m_context;
    const Port m_port;
    MeasurementChannels m_channels;
    DaqSignals m_daqSignals;
    ChannelGroupList &m_groups;
};

} // namespace

Interface_MDF4_CCP_XCP::Interface_MDF4_CCP_XCP(const MDF4_ConversionContext &handler,
                                               const QString &groupName, const EntrySelection &dtos)
    : MDF4_ChannelGroup(handler, groupName, dtos.type)
    , m_dtos(dtos)
{}

void Interface_MDF4_CAN_CCP_XCP::build(const MDF4_ConversionContext &handler,
                                       const TerminalCanCfg &configuration, quint8 number,
                                       ChannelGroupList &groups)
{
    Port port{CCP_XCP_Signal::Can, number, canPortName(configuration, number),
              QLatin1String(groupnames::kinds::canCcpXcp),
              "Incomplete and/or Left Behind Signals: "};
    GroupBuilder<Interface_MDF4_CAN_CCP_XCP>(handler, configuration.a2l, std::move(port), groups)
        .build();
}

void Interface_MDF4_ETH_XCP::build(const MDF4_ConversionContext &handler,
                                   const StreamingClass_Cfg_Ethernet &configuration, quint8 number,
                                   ChannelGroupList &groups)
{
    Port port{CCP_XCP_Signal::Ethernet,
              number,
              {QLatin1String(groupnames::ethernetLabel), number, configuration.further_byte,
               configuration.custom_name},
              QLatin1String(groupnames::kinds::ethernetXcp),
              "Incomplete and/or Left Behind Signals Eth XCP: "};
    GroupBuilder<Interface_MDF4_ETH_XCP>(handler, configuration.xcp.module, std::move(port), groups)
        .build();
}
