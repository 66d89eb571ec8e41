#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_signal.h"
#include "MDF4Conversion/channelgrouplist.h"
#include "MDF4Conversion/mdf4_channelgroup.h"
#include "config/groupnames.h"

#include <vector>

struct StreamingClass_A2L_Module;
struct StreamingClass_Cfg_Ethernet;
struct TerminalCanCfg;

// Measurements whose parts lie in the same ODTs of a DAQ list, so that they always complete with
// the same DTO.
class Interface_MDF4_CCP_XCP : public MDF4_ChannelGroup
{
public:
    Interface_MDF4_CCP_XCP(const MDF4_ConversionContext &context, const QString &groupName,
                           const EntrySelection &dtos);

    [[nodiscard]] std::vector<EntrySelection> selections() const override { return {m_dtos}; }

private:
    const EntrySelection m_dtos;
};

// CCP and XCP on CAN.
class Interface_MDF4_CAN_CCP_XCP : public Interface_MDF4_CCP_XCP
{
public:
    using Interface_MDF4_CCP_XCP::Interface_MDF4_CCP_XCP;

    // The groups of all DAQ lists of a CAN channel, in their order.
    static void build(const MDF4_ConversionContext &context, const TerminalCanCfg &configuration,
                      quint8 number, ChannelGroupList &groups);
};

// XCP on ethernet.
class Interface_MDF4_ETH_XCP : public Interface_MDF4_CCP_XCP
{
public:
    using Interface_MDF4_CCP_XCP::Interface_MDF4_CCP_XCP;

    static void build(const MDF4_ConversionContext &context,
                      const StreamingClass_Cfg_Ethernet &configuration, quint8 port,
                      ChannelGroupList &groups);
};
