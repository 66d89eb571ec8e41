#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/interface_metadataanddebuginfos.h"
#include "MDF4Conversion/channelgrouplist.h"
#include "MDF4Conversion/conversioncontext.h"
#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/conversionsummary.h"
#include "MDF4Conversion/entryindex.h"
#include "MDF4Conversion/interface_mdf4_cpu_timestamps.h"
#include "MDF4Conversion/mdf4_channelgroup.h"
#include "MDF4Conversion/temporaryfiles.h"

#include <atomic>
#include <map>
#include <memory>
#include <vector>

struct TerminalStruct;

// Holds the source interfaces of one conversion and hands each entry to them; afterwards it writes
// the MDF4 file of what they have gathered. Used on the thread of the conversion.
class LogFileProcessing
{
public:
    // Counts of samples by channel name, by group name.
    using SignalCounts = std::map<QString, std::map<QString, QString>>;

    LogFileProcessing(const ConversionJob &job, MDF4_Conversion_Msg_Interface &messages);
    ~LogFileProcessing();

    // False when the groups can't be had, which is told as an error, or when it was cancelled.
    [[nodiscard]] bool buildInterfaces(const TerminalStruct &configuration,
                                       const std::atomic<bool> &cancelled);
    void processEntry(const StdLogEntry &entry);

    // Statuses, warnings and errors about what the log tells of the logger, once it is parsed.
    void reportTimestampsAndDebugInfos();
    void reportLosses();

    // Writes all groups with samples into `path`, under which the file grows. The texts name the
    // output file of the job. False when it failed or was cancelled; the file is gone then.
    bool writeMdf4(const TerminalStruct &configuration, const QString &path,
                   const std::atomic<bool> &cancelled);

    // What went wrong with the temporary files; empty as long as nothing did.
    [[nodiscard]] const QString &temporaryFileFailure() const { return m_temporaryFiles.failure(); }

    [[nodiscard]] SignalCounts signalCounts() const;
    void fillSummary(ConversionSummary &summary) const;

private:
    void noteFirstTimestamp(const MDF4_ChannelGroup &group);
    [[nodiscard]] quint64 smallestTimestamp() const;
    [[nodiscard]] std::vector<MDF4_ChannelGroup *> groupsWithSamples() const;

    const ConversionJob m_job;
    MDF4_Conversion_Msg_Interface &m_messages;
    TemporaryFilePool m_temporaryFiles;
    MDF4_ConversionContext m_context;
    std::unique_ptr<Interface_MDF4_CPU_Timestamps> m_cpuTimestamps;
    std::unique_ptr<Interface_MetaDataAndDebugInfos> m_metaData;
    ChannelGroupList::Groups m_groups;
    std::unique_ptr<EntryIndex> m_index;
};
