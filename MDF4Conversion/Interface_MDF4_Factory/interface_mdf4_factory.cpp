#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_factory.h"

#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_agm.h"
#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_can_aim.h"
#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_can_dbc.h"
#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_ccp_xcp.h"
#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_d4mod.h"
#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_ethercat.h"
#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_gps.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "config/terminalstruct.h"

#include <iterator>

namespace {

using Groups = Interface_MDF4_Factory::Groups;

void append(Groups &groups, Groups &&further)
{
    groups.insert(groups.end(), std::make_move_iterator(further.begin()),
                  std::make_move_iterator(further.end()));
}

// One group for each message of each AIM module of a CAN channel.
void appendAim(Groups &groups, const MDF4_ConversionContext &handler,
               const TerminalCanCfg &configuration, quint8 number)
{
    for (const AimMsgMeta *meta : configuration.aim_modules) {
        const auto layout = AimLayout::of(*meta);
        if (!layout) {
            handler.messages->error(
                QStringLiteral("AIM module %1 on CAN-%2 is left out: its samples don't fit a CAN "
                               "message.")
                    .arg(meta->name, QString::number(number)));
            continue;
        }
        const QString name = groupnames::groupName(canPortName(configuration, number), QString())
                             + QStringLiteral("_AIM_") + meta->name;
        groups.push_back(
            std::make_unique<Interface_MDF4_CAN_AIM>(handler, name, number, *layout, *meta));
    }
}

} // namespace

Groups Interface_MDF4_Factory::build(const MDF4_ConversionContext &handler,
                                     const TerminalStruct &configuration)
{
    Groups groups;
    if (configuration.gps.gps_enabled)
        groups.push_back(std::make_unique<Interface_MDF4_GPS>(handler));
    if (configuration.agm.enabled)
        groups.push_back(std::make_unique<Interface_MDF4_AGM>(handler));
    for (quint8 port = 0; port < configuration.rs485.size(); ++port) {
        if (configuration.rs485[port].d4mod.enabled)
            groups.push_back(std::make_unique<Interface_MDF4_D4MOD>(handler, port));
    }
    for (quint8 number = 0; number < configuration.can.size(); ++number)
        append(groups, Interface_MDF4_CAN_DBC::build(handler, configuration.can[number], number));
    for (quint8 number = 0; number < configuration.can.size(); ++number)
        append(groups,
               Interface_MDF4_CAN_CCP_XCP::build(handler, configuration.can[number], number));
    for (quint8 bus = 0; bus < configuration.ethercat.size(); ++bus) {
        if (!configuration.ethercat[bus].enabled)
            continue;
        auto group =
            std::make_unique<Interface_MDF4_Ethercat>(handler, bus, configuration.ethercat[bus]);
        if (!group->channels().empty())
            groups.push_back(std::move(group));
    }
    append(groups, Interface_MDF4_ETH_XCP::build(handler, configuration.eth, 0));
    for (quint8 number = 0; number < configuration.can.size(); ++number)
        appendAim(groups, handler, configuration.can[number], number);
    return groups;
}
