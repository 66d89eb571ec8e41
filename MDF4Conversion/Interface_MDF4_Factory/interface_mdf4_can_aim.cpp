#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_can_aim.h"

#include "MDF4Conversion/extractingchannel.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "can/bitextraction.h"
#include "config/aimmsgmeta.h"

#include <QDebug>

namespace {

constexpr qint32 maxFrameBytes = 64;
constexpr qint32 maxSampleBytes = 8;

} // namespace

std::optional<AimLayout> AimLayout::of(const AimMsgMeta &meta)
{
    const auto inFrame = [](qint32 value) { return value >= 1 && value <= maxFrameBytes; };
    if (!inFrame(meta.msgLength) || !inFrame(meta.channelsInMsg) || !inFrame(meta.samplesInMsg)
        || meta.sampleSizeInBytes < 1 || meta.sampleSizeInBytes > maxSampleBytes
        || meta.channelsInMsg * meta.samplesInMsg * meta.sampleSizeInBytes > meta.msgLength)
        return std::nullopt;
    AimLayout layout;
    layout.canId = static_cast<quint32>(meta.MsgId) & rawlog::extendedIdMask;
    layout.frameBytes = static_cast<quint8>(meta.msgLength);
    layout.channels = static_cast<quint32>(meta.channelsInMsg);
    layout.samples = static_cast<quint32>(meta.samplesInMsg);
    layout.sampleBytes = meta.sampleSizeInBytes;
    layout.gapBytes = meta.gapBetweenChannelsInBytes;
    layout.msbFirst = meta.isMsbFirst;
    layout.isSigned = meta.isSigned;
    return layout;
}

quint32 AimLayout::storedBytes() const
{
    quint32 bytes = 1;
    while (bytes < sampleBytes)
        bytes *= 2;
    return bytes;
}

quint32 AimLayout::channelsInFrame() const
{
    const quint32 channelBytes = samples * sampleBytes;
    quint32 inFrame = 0;
    while (inFrame < channels && inFrame * (channelBytes + gapBytes) + channelBytes <= frameBytes)
        ++inFrame;
    return inFrame;
}

quint64 AimLayout::sampleAt(const StdLogEntry &entry, quint32 channel, quint32 sample) const
{
    const quint32 bits = sampleBytes * 8;
    const quint32 position = (samples * bits + gapBytes * 8) * channel + sample * bits;
    const quint64 value =
        can::extractBits({entry.data.data(), entry.data.size()}, position, bits,
                         msbFirst ? can::BitOrder::WholeBigEndian : can::BitOrder::Intel);
    return isSigned ? can::signExtended(value, bits) : value;
}

MDF4_DataChannel_Linear_CAN_AIM::MDF4_DataChannel_Linear_CAN_AIM(const AimLayout &layout,
                                                                 quint32 channel)
    : m_layout(layout)
    , m_channel(channel)
{
    dataType =
        layout.isSigned ? MdfDataType::SignedLittleEndian : MdfDataType::UnsignedLittleEndian;
    size = layout.storedBytes();
}

bool MDF4_DataChannel_Linear_CAN_AIM::extractData(const StdLogEntry &entry, RecordBuffer &record)
{
    record.append(m_layout.sampleAt(entry, m_channel, m_sample), size);
    return true;
}

Interface_MDF4_CAN_AIM::Interface_MDF4_CAN_AIM(const MDF4_ConversionContext &handler,
                                               const QString &groupName, quint8 canNumber,
                                               const AimLayout &layout, const AimMsgMeta &meta)
    : MDF4_ChannelGroup(handler, groupName, rawlog::RLD_CAN)
    , m_canNumber(canNumber)
    , m_layout(layout)
    , m_clock(handler, rawlog::RLD_CAN, canNumber)
{
    for (quint32 i = 0; i < layout.channels; ++i) {
        auto channel = std::make_unique<MDF4_DataChannel_Linear_CAN_AIM>(layout, i);
        channel->name = QStringLiteral("CAN_%1_AIM_%2_AIM_CH_%3")
                            .arg(QString::number(canNumber), meta.name, QString::number(i + 1));
        channel->unit = meta.unit;
        addChannel(std::move(channel));
    }
    const quint32 inFrame = layout.channelsInFrame();
    if (inFrame < layout.channels) {
        handler.messages->warning(
            QStringLiteral("AIM module %1 on CAN-%2: from %3 on its channels reach beyond its "
                           "message of %4 bytes, what is missing reads as 0.")
                .arg(meta.name.toHtmlEscaped(), QString::number(canNumber),
                     channels()[inFrame]->name.toHtmlEscaped(),
                     QString::number(layout.frameBytes)));
    }
}

bool Interface_MDF4_CAN_AIM::takeEntry(const StdLogEntry &entry)
{
    if (entry.type != rawlog::RLD_CAN || entry.number != m_canNumber
        || rawlog::canIdentifier(entry.id) != m_layout.canId)
        return false;
    if (entry.info != m_layout.frameBytes) {
        // Any number of them may come: how many is told at the end.
        if (m_wrongLengths++ == 0)
            qWarning("Wrong datalength - add this as warning!");
        return false;
    }
    const bool isFirst = m_clock.sampleCount() == 0;
    const quint64 last = m_clock.timestamp();
    if (m_clock.checkTimestamp(entry.timestamp))
        context().messages->info(overflowHandledText(sigGrpName));
    if (isFirst) {
        qDebug() << "Writing first timestamp:" << m_clock.timestamp();
        return true;
    }
    quint64 interval = m_clock.timestamp() - last;
    if (logtime::lowWord(m_clock.timestamp()) < logtime::lowWord(last)) {
        --interval;
        qDebug() << "TsDiff with overflow:" << interval;
    }
    takeSamples(entry, last, interval / m_layout.samples);
    return true;
}

void Interface_MDF4_CAN_AIM::takeSamples(const StdLogEntry &entry, quint64 begin_us,
                                         quint64 interval_us)
{
    for (quint32 sample = 0; sample < m_layout.samples; ++sample) {
        const quint64 time = begin_us + sample * interval_us;
        RecordBuffer &record = beginRecord();
        for (const auto &channel : channels()) {
            auto &aim = static_cast<MDF4_DataChannel_Linear_CAN_AIM &>(*channel);
            aim.setSample(sample);
            aim.extractData(entry, record);
            aim.noteSample(time);
        }
        endRecord(time);
    }
}

void Interface_MDF4_CAN_AIM::reportLosses() const
{
    MDF4_ChannelGroup::reportLosses();
    if (m_wrongLengths == 0)
        return;
    context().messages->info(
        QStringLiteral(
            "%1 messages of channel-group %2 were left out, they don't have its %3 bytes.")
            .arg(QString::number(m_wrongLengths), sigGrpName.toHtmlEscaped(),
                 QString::number(m_layout.frameBytes)));
}

// The message is known by its number, whether sent with 11 or 29 bits.
std::vector<EntrySelection> Interface_MDF4_CAN_AIM::selections() const
{
    EntrySelection standard;
    standard.type = ReqType;
    standard.number = m_canNumber;
    standard.canId = m_layout.canId;
    EntrySelection extended = standard;
    extended.canId = m_layout.canId | rawlog::extendedIdFlag;
    return {standard, extended};
}
