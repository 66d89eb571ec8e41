#include "MDF4Conversion/logfileprocessing.h"

#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_factory.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "MDF4Conversion/mdf4filewriter.h"
#include "config/terminalstruct.h"

#include <QDebug>

#include <algorithm>
#include <cassert>

LogFileProcessing::LogFileProcessing(const ConversionJob &job,
                                     MDF4_Conversion_Msg_Interface &messages)
    : m_job(job)
    , m_messages(messages)
    , m_temporaryFiles(job.temporaryDir)
{
    m_context.inputFile = job.inputFile;
    m_context.outputFile = job.outputFile;
    m_context.temporaryDir = job.temporaryDir;
    m_context.messages = &messages;
    m_context.temporaryFiles = &m_temporaryFiles;
    m_cpuTimestamps = std::make_unique<Interface_MDF4_CPU_Timestamps>(m_context);
    m_context.cpuTimestamps = m_cpuTimestamps.get();
    m_metaData = std::make_unique<Interface_MetaDataAndDebugInfos>(m_context);
}

LogFileProcessing::~LogFileProcessing()
{
    qDebug("Destroying LogFileProcessing");
}

bool LogFileProcessing::buildInterfaces(const TerminalStruct &configuration,
                                        const std::atomic<bool> &cancelled)
{
    ChannelGroupList list(cancelled);
    Interface_MDF4_Factory::build(m_context, configuration, list);
    if (!list.failure().isEmpty())
        m_messages.error(list.failure().toHtmlEscaped());
    if (list.isClosed())
        return false;
    m_groups = list.take();
    m_temporaryFiles.setExpectedFiles(int(m_groups.size()));
    EntryIndex::Groups groups;
    for (const auto &group : m_groups)
        groups.push_back(group.get());
    m_index = std::make_unique<EntryIndex>(groups);
    return true;
}

// Sync stamps come first, so that they are known before any signal that follows them.
void LogFileProcessing::processEntry(const StdLogEntry &entry)
{
    if (!entry.isComplete())
        return;
    if (entry.type == rawlog::RLD_CYCLIC_TS)
        m_cpuTimestamps->takeEntry(entry);
    for (MDF4_ChannelGroup *group : m_index->takers(entry)) {
        const quint64 dropped = group->droppedRecords();
        // A record that lacked data says nothing about the start of the log.
        if (group->takeEntry(entry) && m_cpuTimestamps->firstTimestamps().empty()
            && group->droppedRecords() == dropped)
            noteFirstTimestamp(*group);
    }
    assert(m_metaData && "no info-interface set");
    m_metaData->takeEntry(entry);
}

void LogFileProcessing::noteFirstTimestamp(const MDF4_ChannelGroup &group)
{
    const quint64 timestamp = group.newestTimestamp();
    const QString channel =
        group.channels().empty() ? QStringLiteral("Unknown") : group.channels().front()->name;
    m_messages.info(QStringLiteral("First Extracted Timestamp from Signal: %1 - %2 usec")
                        .arg((group.sigGrpName + QLatin1Char('-') + channel).toHtmlEscaped(),
                             QString::number(timestamp)));
    m_cpuTimestamps->addFirstTimestamp(timestamp);
}

void LogFileProcessing::reportTimestampsAndDebugInfos()
{
    if (!m_cpuTimestamps->allComplete())
        m_messages.warning(QStringLiteral("One or more cyclic sync-timestamps are missing."));
    for (const auto &[number, processor] : m_metaData->processors()) {
        if (processor.minTemperature && processor.maxTemperature) {
            m_messages.info(QStringLiteral("Dbg-Infos[%1]: Internal-Temperature min:%2 max:%3 [°C]")
                                .arg(number)
                                .arg(*processor.minTemperature)
                                .arg(*processor.maxTemperature));
        }
        if (processor.restarts.value_or(0) >= rawlog::manyRestarts) {
            m_messages.warning(QStringLiteral("Dbg-Infos[%1]: "
                                              "Timestamp-Sync-Counter/LogController-Restart-"
                                              "Counter:%2")
                                   .arg(number)
                                   .arg(*processor.restarts));
        }
        if (processor.ringBufferOverflows.value_or(0) != 0) {
            m_messages.error(
                QStringLiteral("Dbg-Infos[%1]: Ringbuffer overflow protection counter:%2")
                    .arg(number)
                    .arg(*processor.ringBufferOverflows));
        }
    }
}

void LogFileProcessing::reportLosses()
{
    for (const auto &group : m_groups)
        group->reportLosses();
}

std::vector<MDF4_ChannelGroup *> LogFileProcessing::groupsWithSamples() const
{
    std::vector<MDF4_ChannelGroup *> groups;
    for (const auto &group : m_groups) {
        if (group->recordCount() != 0)
            groups.push_back(group.get());
    }
    return groups;
}

quint64 LogFileProcessing::smallestTimestamp() const
{
    const auto groups = groupsWithSamples();
    const auto earlier = [](const MDF4_ChannelGroup *a, const MDF4_ChannelGroup *b) {
        return a->firstTime() < b->firstTime();
    };
    const auto first = std::min_element(groups.begin(), groups.end(), earlier);
    return first == groups.end() ? 0 : (*first)->firstTime();
}

bool LogFileProcessing::writeMdf4(const TerminalStruct &configuration, const QString &path,
                                  const std::atomic<bool> &cancelled)
{
    Mdf4FileWriter writer(m_messages, cancelled);
    const Mdf4Header header = mdf4Header(configuration, m_job, m_metaData->startTime().value_or(0));
    m_messages.info(QStringLiteral("creating MDF4-File:%1").arg(m_job.outputFile.toHtmlEscaped()));
    if (m_job.outputFile.isEmpty() || !writer.create(path, m_job.outputFile, header))
        return false;
    const quint64 start = smallestTimestamp();
    m_messages.info(QStringLiteral("smallest timestamp value will be used for start-offset "
                                   "compensation. %1 [uSec] will be Subtracted from all Records.")
                        .arg(start));
    return writer.writeGroups(groupsWithSamples(), start, m_job.threads) && writer.close();
}

LogFileProcessing::SignalCounts LogFileProcessing::signalCounts() const
{
    std::map<QString, std::map<QString, quint64>> counts;
    for (const auto &group : m_groups) {
        for (const auto &channel : group->channels())
            counts[group->sigGrpName][channel->name] += group->recordCount();
    }
    SignalCounts texts;
    for (const auto &[group, channels] : counts) {
        for (const auto &[channel, count] : channels)
            texts[group][channel] = QString::number(count);
    }
    return texts;
}

void LogFileProcessing::fillSummary(ConversionSummary &summary) const
{
    summary.startOffset_us = smallestTimestamp();
    summary.utcStart_us = m_metaData->startTime().value_or(0);
    for (const auto &group : m_groups)
        summary.droppedRecords += group->droppedRecords();
    for (const MDF4_ChannelGroup *group : groupsWithSamples()) {
        ConversionSummary::Group row;
        row.name = group->sigGrpName;
        row.samples = group->recordCount();
        row.first_us = group->firstTime();
        row.last_us = group->lastTime();
        for (const auto &channel : group->channels())
            row.channels.append({channel->name, channel->unit, group->recordCount()});
        summary.lastTime_us = qMax(summary.lastTime_us, row.last_us);
        summary.groups.append(row);
    }
}
