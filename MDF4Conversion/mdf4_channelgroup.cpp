#include "MDF4Conversion/mdf4_channelgroup.h"

#include "MDF4Conversion/mdf4_conversion_msg_interface.h"

#include <cassert>

MDF4_ChannelGroup::MDF4_ChannelGroup(const MDF4_ConversionContext &handler, const QString &name,
                                     quint8 type)
    : sigGrpName(name)
    , ReqType(type)
    , m_context(handler)
    , m_record(handler.temporaryFiles->recordBuffer())
    , m_records(*handler.temporaryFiles, QString())
{}

void MDF4_ChannelGroup::addChannel(std::unique_ptr<MDF4_DataChannel> channel)
{
    channel->setContext(&m_context);
    m_dataSize += channel->size;
    m_channels.push_back(std::move(channel));
}

bool MDF4_ChannelGroup::takeEntry(const StdLogEntry &entry)
{
    if (ReqType != 0 && ReqType != entry.type)
        return false;
    RecordBuffer &record = beginRecord();
    bool taken = false;
    for (const auto &channel : m_channels)
        taken |= channel->extractData(entry, record);
    if (taken)
        endRecord(m_channels.front()->timestamp());
    return taken;
}

RecordBuffer &MDF4_ChannelGroup::beginRecord()
{
    m_record.clear();
    m_record.append(quint64(0), timeBytes);
    return m_record;
}

void MDF4_ChannelGroup::endRecord(quint64 timestamp_us)
{
    if (m_record.size() != recordSize()) {
        ++m_droppedRecords;
        return;
    }
    m_record.setWord(0, timestamp_us);
    m_records.append(m_record.data(), int(m_record.size()));
    if (m_recordCount == 0)
        m_firstTime = timestamp_us;
    m_lastTime = timestamp_us;
    ++m_recordCount;
}

void MDF4_ChannelGroup::reportLosses() const
{
    if (m_droppedRecords == 0)
        return;
    m_context.messages->warning(
        QStringLiteral("%1 records of channel-group %2 were left out, they "
                       "lacked the data of some of its channels.")
            .arg(QString::number(m_droppedRecords), sigGrpName.toHtmlEscaped()));
}

void MDF4_ChannelGroup::startAnew()
{
    m_channels.clear();
    m_records.clear();
    m_dataSize = 0;
    m_recordCount = 0;
    m_firstTime = m_lastTime = 0;
}
