#pragma once

#include "MDF4Conversion/mdf4_channelgroup.h"

#include <memory>
#include <vector>

struct TerminalStruct;

// Turns the configuration of a log into the channel groups of its conversion.
class Interface_MDF4_Factory
{
public:
    using Groups = std::vector<std::unique_ptr<MDF4_ChannelGroup>>;

    // In the order of the file: GPS, AGM, D4MOD, DBC, CCP and XCP on CAN, EtherCAT, XCP on ethernet,
    // AIM. The configuration outlives the groups.
    [[nodiscard]] static Groups build(const MDF4_ConversionContext &context,
                                      const TerminalStruct &configuration);
};
