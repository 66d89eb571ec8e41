#pragma once

#include "MDF4Conversion/conversioncontext.h"
#include "MDF4Conversion/entryselection.h"
#include "MDF4Conversion/mdf4_datachannel.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "MDF4Conversion/recordbuffer.h"
#include "MDF4Conversion/temporaryfiles.h"

#include <QString>

#include <memory>
#include <vector>

// The channels that share one sample, and the records that were made of them so far: 8 bytes of
// time in us, then each channel's bytes. The records wait in a temporary file, since only after the
// whole log is known which groups have samples and where time begins.
class MDF4_ChannelGroup
{
public:
    static constexpr quint32 timeBytes = 8;

    // ReqType 0 takes entries of all types.
    MDF4_ChannelGroup(const MDF4_ConversionContext &context, const QString &name, quint8 type);
    virtual ~MDF4_ChannelGroup() = default;
    MDF4_ChannelGroup(const MDF4_ChannelGroup &) = delete;
    MDF4_ChannelGroup &operator=(const MDF4_ChannelGroup &) = delete;

    // True if the entry belonged to this group.
    virtual bool takeEntry(const StdLogEntry &entry);

    // Which entries have to be offered to takeEntry(); all others it would refuse.
    [[nodiscard]] virtual std::vector<EntrySelection> selections() const { return {}; }

    void addChannel(std::unique_ptr<MDF4_DataChannel> channel);
    [[nodiscard]] const std::vector<std::unique_ptr<MDF4_DataChannel>> &channels() const
    {
        return m_channels;
    }

    QString sigGrpName;
    const quint8 ReqType;

    // Bytes of one record with its time.
    [[nodiscard]] quint32 recordSize() const { return timeBytes + m_dataSize; }
    [[nodiscard]] quint64 recordCount() const { return m_recordCount; }
    // Records that lacked the bytes of some channel and were left out.
    [[nodiscard]] quint64 droppedRecords() const { return m_droppedRecords; }
    // Tells what was left out, once the log is parsed.
    virtual void reportLosses() const;
    [[nodiscard]] TemporaryFile &records() { return m_records; }

    // The time of the entry that was taken last.
    [[nodiscard]] virtual quint64 newestTimestamp() const
    {
        return m_channels.empty() ? 0 : m_channels.front()->timestamp();
    }

    // Times of the records in us, before the start offset is taken off.
    [[nodiscard]] quint64 firstTime() const { return m_firstTime; }
    [[nodiscard]] quint64 lastTime() const { return m_lastTime; }

protected:
    [[nodiscard]] const MDF4_ConversionContext &context() const { return m_context; }

    // An empty record that begins with room for its time.
    RecordBuffer &beginRecord();
    // Writes the record, if it holds all channels.
    void endRecord(quint64 timestamp_us);
    // Forgets channels and records.
    void startAnew();

private:
    const MDF4_ConversionContext &m_context;
    std::vector<std::unique_ptr<MDF4_DataChannel>> m_channels;
    quint32 m_dataSize = 0;
    RecordBuffer &m_record; // shared: one record is built at a time
    TemporaryFile m_records;
    quint64 m_recordCount = 0;
    quint64 m_droppedRecords = 0;
    quint64 m_firstTime = 0;
    quint64 m_lastTime = 0;
};
