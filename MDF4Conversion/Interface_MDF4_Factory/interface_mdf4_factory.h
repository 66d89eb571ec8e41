#pragma once

#include "MDF4Conversion/channelgrouplist.h"

struct MDF4_ConversionContext;
struct TerminalStruct;

// Turns the configuration of a log into the channel groups of its conversion.
class Interface_MDF4_Factory
{
public:
    // In the order of the file: GPS, AGM, D4MOD, DBC, CCP and XCP on CAN, EtherCAT, XCP on ethernet,
    // AIM. Ends early when the list is closed. The configuration outlives the groups.
    static void build(const MDF4_ConversionContext &context, const TerminalStruct &configuration,
                      ChannelGroupList &groups);
};
