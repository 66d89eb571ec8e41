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

namespace {

// One group for each message of each AIM module of a CAN channel.
void buildAim(const MDF4_ConversionContext &handler, const TerminalCanCfg &configuration,
              quint8 number, ChannelGroupList &groups)
{
    for (const AimMsgMeta *meta : configuration.aim_modules) {
        const auto layout = AimLayout::of(*meta);
        // What is left out counts, too, or a message would be told for each of any number.
        if (!groups.reserve(layout ? layout->channels : 0))
            return;
        if (!layout) {
            handler.messages->error(
                QStringLiteral("AIM module %1 on CAN-%2 is left out: its samples don't fit a CAN "
                               "message.")
                    .arg(meta->name.toHtmlEscaped(), QString::number(number)));
            continue;
        }
        const QString name = groupnames::groupName(canPortName(configuration, number), QString())
                             + QStringLiteral("_AIM_") + meta->name;
        groups.add(std::make_unique<Interface_MDF4_CAN_AIM>(handler, name, number, *layout, *meta));
    }
}

} // namespace

void Interface_MDF4_Factory::build(const MDF4_ConversionContext &handler,
                                   const TerminalStruct &configuration, ChannelGroupList &groups)
{
    if (configuration.gps.gps_enabled)
        groups.add(std::make_unique<Interface_MDF4_GPS>(handler));
    if (configuration.agm.enabled)
        groups.add(std::make_unique<Interface_MDF4_AGM>(handler));
    for (quint8 port = 0; port < configuration.rs485.size(); ++port) {
        if (configuration.rs485[port].d4mod.enabled)
            groups.add(std::make_unique<Interface_MDF4_D4MOD>(handler, port));
    }
    for (quint8 number = 0; number < configuration.can.size(); ++number)
        Interface_MDF4_CAN_DBC::build(handler, configuration.can[number], number, groups);
    for (quint8 number = 0; number < configuration.can.size(); ++number)
        Interface_MDF4_CAN_CCP_XCP::build(handler, configuration.can[number], number, groups);
    for (quint8 bus = 0; bus < configuration.ethercat.size(); ++bus) {
        if (configuration.ethercat[bus].enabled)
            Interface_MDF4_Ethercat::build(handler, bus, configuration.ethercat[bus], groups);
    }
    Interface_MDF4_ETH_XCP::build(handler, configuration.eth, 0, groups);
    for (quint8 number = 0; number < configuration.can.size(); ++number)
        buildAim(handler, configuration.can[number], number, groups);
}
