#pragma once

#include "MDF4Conversion/blockpipeline.h"
#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdf4file.h"

#include <QString>

#include <atomic>
#include <vector>

class MDF4_ChannelGroup;
class MDF4_Conversion_Msg_Interface;
class MDF4_DataChannel;
struct TerminalStruct;

// What the head of the file tells.
struct Mdf4Header
{
    QString comment; // the A2L files of the configuration
    QString author;
    QString department;
    QString project;
    QString subject;
    quint64 startTime_ns = 0; // UTC since 1970; 0 when the log doesn't tell
};

[[nodiscard]] Mdf4Header mdf4Header(const TerminalStruct &configuration, const ConversionJob &job,
                                    quint64 utcStart_us);

// Writes the channel groups of a conversion into an MDF4 file. Used on the thread of the conversion;
// compressing is spread over several. Failures are reported as errors, and every operation returns
// false then; a file that isn't closed successfully is deleted.
class Mdf4FileWriter
{
public:
    Mdf4FileWriter(MDF4_Conversion_Msg_Interface &messages, const std::atomic<bool> &cancelled);
    ~Mdf4FileWriter();

    // The file grows as `path`; texts call it `finalName`.
    [[nodiscard]] bool create(const QString &path, const QString &finalName,
                              const Mdf4Header &header);
    // All of them have samples; `start_us` is taken off their times.
    [[nodiscard]] bool writeGroups(const std::vector<MDF4_ChannelGroup *> &groups, quint64 start_us,
                                   int threads);
    [[nodiscard]] bool close();

private:
    [[nodiscard]] bool writeGroup(MDF4_ChannelGroup &group, const BlockPipeline::Source &source,
                                  BlockPipeline &blocks);
    [[nodiscard]] M4CGBlock *addGroup(const MDF4_ChannelGroup &group, M4DGBlock *dg);
    [[nodiscard]] bool addChannel(M4CGBlock &cg, const MDF4_DataChannel &channel,
                                  quint32 byteOffset);
    void reportDisorder(const MDF4_ChannelGroup &group, const BlockPipeline::Block &block);
    void reportProgress(quint64 bytes);
    void reportIntervals(const MDF4_ChannelGroup &group);
    bool fail(const QString &text);
    // What the file itself couldn't do.
    bool failFile();

    MDF4_Conversion_Msg_Interface &m_messages;
    const std::atomic<bool> &m_cancelled;
    MDF4File m_file;
    QString m_finalName;
    bool m_closed = false;
    quint64 m_totalBytes = 0;
    quint64 m_doneBytes = 0;
    int m_lastPercentage = 0;
};
