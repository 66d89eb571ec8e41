#include "MDF4Conversion/interface_mdf4_cpu_timestamps.h"

#include "MDF4Conversion/mdf4_conversion_msg_interface.h"

#include <QDebug>

#include <algorithm>
#include <cassert>

using logtime::highStep;

Interface_Data_CPU_Timestamps::Interface_Data_CPU_Timestamps(quint8 processor,
                                                             const MDF4_ConversionContext &handler)
{
    ReqType = rawlog::RLD_CYCLIC_TS;
    ReqNr = processor;
    setContext(&handler);
}

bool Interface_Data_CPU_Timestamps::extractData(const StdLogEntry &entry, RecordBuffer &)
{
    if (entry.type != ReqType || entry.number != ReqNr)
        return false;
    quint64 stamp = logtime::withLowWord(timestamp(), entry.timestamp);
    const QString text = QStringLiteral("Cyclic Timestamp event - (timestamp & "
                                        "TS_32BIT_MSK_32_LOW_BITS): %1 - timestamp from log: %2")
                             .arg(logtime::lowWord(stamp))
                             .arg(entry.timestamp);
    qDebug().noquote() << text;
    context().messages->info(text);
    qDebug() << "Cyclic Timestamp event count: " << sampleCount();

    if (sampleCount() == 0) {
        if (m_offsetCompensation || stamp == 0)
            stamp += highStep;
    } else if (stamp == timestamp()) {
        context().messages->error(
            QStringLiteral("Equal-Timestamps detected for Cyclic-CPU-TS Type msg. Processor %1, "
                           "timestamp %2: the second one is ignored.")
                .arg(ReqNr)
                .arg(stamp));
        return true;
    } else if (stamp < timestamp()) {
        stamp += highStep;
    }
    noteSample(stamp);
    return true;
}

void Interface_Data_CPU_Timestamps::compensateOffset()
{
    assert(sampleCount() == 0
           && "Offset-Compensation ist not allowed if there is already a valid timestamp.");
    m_offsetCompensation = true;
}

Interface_MDF4_CPU_Timestamps::Interface_MDF4_CPU_Timestamps(const MDF4_ConversionContext &handler)
    : MDF4_ChannelGroup(handler, QStringLiteral("Cyclic-CPU-Timestamps"), rawlog::RLD_CYCLIC_TS)
{}

bool Interface_MDF4_CPU_Timestamps::takeEntry(const StdLogEntry &entry)
{
    if (entry.type != rawlog::RLD_CYCLIC_TS)
        return false;
    RecordBuffer unused;
    const auto takes = [&](const auto &source) { return source->extractData(entry, unused); };
    if (std::none_of(m_sources.begin(), m_sources.end(), takes)) {
        auto source = std::make_unique<Interface_Data_CPU_Timestamps>(entry.number, context());
        if (m_initialAdjustmentMade)
            source->compensateOffset();
        if (source->extractData(entry, unused))
            m_sources.push_back(std::move(source));
    }
    updateLimits();
    return true;
}

bool Interface_MDF4_CPU_Timestamps::allComplete() const
{
    return std::all_of(m_sources.begin(), m_sources.end(),
                       [](const auto &source) { return source->isComplete(); });
}

void Interface_MDF4_CPU_Timestamps::noteInitialAdjustment()
{
    m_initialAdjustmentMade = true;
    for (const auto &source : m_sources)
        source->compensateOffset();
}

void Interface_MDF4_CPU_Timestamps::updateLimits()
{
    quint64 slowest = m_sources.front()->timestamp();
    quint64 fastest = slowest;
    for (const auto &source : m_sources) {
        slowest = std::min(slowest, source->timestamp());
        fastest = std::max(fastest, source->timestamp());
    }
    setLimits(slowest, fastest);
}
