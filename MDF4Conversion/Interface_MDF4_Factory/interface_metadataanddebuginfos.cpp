#include "MDF4Conversion/Interface_MDF4_Factory/interface_metadataanddebuginfos.h"

#include "MDF4Conversion/Interface_MDF4_Factory/timestampedsource.h"

namespace {

constexpr std::size_t syncCounterAt = 4;
constexpr std::size_t countersSize = 6;

} // namespace

Interface_MetaDataAndDebugInfos::Interface_MetaDataAndDebugInfos(
    const MDF4_ConversionContext &handler)
    : MDF4_ChannelGroup(handler, QStringLiteral("Meta_and_Debug_Infos"), 0)
{}

bool Interface_MetaDataAndDebugInfos::takeEntry(const StdLogEntry &entry)
{
    switch (entry.type) {
    case rawlog::RLD_DBG_COUNTERS:
        takeCounters(entry);
        break;
    case rawlog::RLD_AGM:
        takeTemperature(entry);
        break;
    case rawlog::RLD_UTC_START:
        if (entry.data.size() >= sizeof(quint64))
            m_startTime = payload::at<quint64>(entry.data, 0);
        break;
    default:
        break;
    }
    return false;
}

void Interface_MetaDataAndDebugInfos::takeCounters(const StdLogEntry &entry)
{
    if (entry.data.size() < countersSize)
        return;
    Processor &processor = m_processors[entry.number];
    processor.ringBufferCounter =
        qMax(processor.ringBufferCounter, payload::at<quint32>(entry.data, 0));
    processor.syncCounter =
        qMax(processor.syncCounter, payload::at<quint16>(entry.data, syncCounterAt));
}

void Interface_MetaDataAndDebugInfos::takeTemperature(const StdLogEntry &entry)
{
    Processor &processor = m_processors[entry.number];
    const auto temperature = static_cast<qint8>(entry.info);
    processor.minTemperature = qMin(processor.minTemperature.value_or(temperature), temperature);
    processor.maxTemperature = qMax(processor.maxTemperature.value_or(temperature), temperature);
}
