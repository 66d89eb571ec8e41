#include "MDF4Conversion/Interface_MDF4_Factory/interface_metadataanddebuginfos.h"

#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "MDF4Conversion/rawlog/clocklimits.h"

Interface_MetaDataAndDebugInfos::Interface_MetaDataAndDebugInfos(
    const MDF4_ConversionContext &handler)
    : MDF4_ChannelGroup(handler, QStringLiteral("Meta_and_Debug_Infos"), 0)
{}

bool Interface_MetaDataAndDebugInfos::takeEntry(const StdLogEntry &entry)
{
    rawlog::noteHealth(entry, m_processors);
    if (const auto utc_us = rawlog::utcStart_us(entry)) {
        if (*utc_us <= rawlog::maxUtc_us)
            m_startTime = utc_us;
        else
            context().messages->warning(
                QStringLiteral("The UTC start of the log, %1 us since 1970, lies behind the year "
                               "2554 and is ignored.")
                    .arg(*utc_us));
    }
    return false;
}
