#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_can_dbc.h"

#include "MDF4Conversion/Interface_MDF4_Factory/namelist.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "can/dbcmessages.h"
#include "config/streamingclass_dbc_signal.h"
#include "config/terminalcancfg.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <map>

namespace {

using Signal = StreamingClass_DBC_Signal;

// Type and size of the stored value: the smallest of 1, 2, 4 and 8 bytes that holds it.
void setStorage(MDF4_DataChannel &channel, ExtractedValue::Kind kind, quint32 bitLength)
{
    switch (kind) {
    case ExtractedValue::Float:
        channel.dataType = MdfDataType::RealLittleEndian;
        channel.size = sizeof(float);
        return;
    case ExtractedValue::Double:
        channel.dataType = MdfDataType::RealLittleEndian;
        channel.size = sizeof(double);
        return;
    case ExtractedValue::Signed:
        channel.dataType = MdfDataType::SignedLittleEndian;
        break;
    case ExtractedValue::Unsigned:
        channel.dataType = MdfDataType::UnsignedLittleEndian;
        break;
    }
    channel.size = bitLength <= 8 ? 1 : bitLength <= 16 ? 2 : bitLength <= 32 ? 4 : 8;
}

DbcSource sourceOf(const Signal &signal, const EntrySelection &frames)
{
    DbcSource source;
    source.channel = frames.number.value_or(0);
    source.id = can::frameIdentifier(signal);
    source.extended = signal.extended_id != 0;
    source.dlc = signal.dlc;
    source.field = can::valueField(signal);
    source.multiplexor = frames.multiplexor;
    source.multiplexorValue = frames.multiplexorValue;
    return source;
}

// Builds the groups of one message after the other.
class GroupBuilder
{
public:
    GroupBuilder(const MDF4_ConversionContext &handler, const TerminalCanCfg &configuration,
                 quint8 number, ChannelGroupList &groups)
        : m_context(handler)
        , m_number(number)
        , m_port(canPortName(configuration, number))
        , m_groups(groups)
    {}

    void addMessage(const can::DbcMessageKey &key, const can::DbcMessage &message)
    {
        if (message.chosen.empty())
            return;
        warnAboutMultiplexors(key.first, message);
        EntrySelection frames;
        frames.type = rawlog::RLD_CAN;
        frames.number = m_number;
        frames.canId = key.first | (key.second ? rawlog::extendedIdFlag : 0);
        warnAboutFrames(key.first, message);
        if (!message.hasMultiplexed())
            addGroup(QLatin1String(groupnames::kinds::dbc), frames, message.chosen);
        else if (message.multiplexors.empty())
            addGroup(QLatin1String(groupnames::kinds::dbcMultiplexed), frames, message.chosen);
        else
            addMultiplexedGroups(frames, message);
    }

private:
    using Places = std::vector<std::size_t>; // in the list of recorded signals, ascending

    void warnAboutMultiplexors(quint32 id, const can::DbcMessage &message)
    {
        if (message.multiplexors.size() > 1) {
            m_context.messages->warning(
                QStringLiteral("CAN-DBC More than 1 Multiplexor available: CAN-%1 msgID:%2")
                    .arg(m_number)
                    .arg(id));
        }
        if (message.hasMultiplexed() && message.multiplexors.empty()) {
            m_context.messages->warning(
                QStringLiteral("CAN-DBC Multiplexed channels without Multiplexor: CAN-%1 msgID:%2")
                    .arg(m_number)
                    .arg(id));
        }
    }

    void warnAboutFrames(quint32 id, const can::DbcMessage &message)
    {
        QStringList beyond;
        const auto judge = [&](const Signal &signal) {
            if (can::valueField(signal).frameBytes() > signal.dlc)
                beyond.append(signal.name);
        };
        if (message.hasMultiplexed() && !message.multiplexors.empty())
            judge(*message.multiplexors.front());
        for (const Signal *signal : message.chosen)
            judge(*signal);
        if (beyond.isEmpty())
            return;
        m_context.messages->warning(
            QStringLiteral("CAN-DBC Signals that reach beyond their frame, what is missing reads "
                           "as 0: CAN-%1 msgID:%2: %3")
                .arg(QString::number(m_number), QString::number(id),
                     nameList(beyond).toHtmlEscaped()));
    }

    // Each value of the multiplexor has a group of its own, with the plain signals, too.
    void addMultiplexedGroups(EntrySelection frames, const can::DbcMessage &message)
    {
        Places plain;
        std::map<qint32, Places> byValue;
        for (std::size_t place = 0; place < message.chosen.size(); ++place) {
            const Signal &signal = *message.chosen[place];
            Places &places =
                signal.mux_kind == MultiplexedSignal ? byValue[signal.mux_value] : plain;
            places.push_back(place);
        }
        frames.multiplexor = can::multiplexorField(*message.multiplexors.front());
        for (const auto &[value, own] : byValue) {
            if (m_groups.isClosed())
                return;
            frames.multiplexorValue = can::multiplexorBits(value);
            Places places;
            std::merge(plain.begin(), plain.end(), own.begin(), own.end(),
                       std::back_inserter(places));
            std::vector<Signal *> members;
            for (const std::size_t place : places)
                members.push_back(message.chosen[place]);
            addGroup(QLatin1String(groupnames::kinds::dbcMultiplexed), frames, members);
        }
    }

    void addGroup(const QString &kind, const EntrySelection &frames,
                  const std::vector<Signal *> &members)
    {
        if (!m_groups.reserve(members.size()))
            return;
        auto group = std::make_unique<Interface_MDF4_CAN_DBC>(
            m_context, groupnames::groupName(m_port, kind), frames);
        for (const Signal *signal : members)
            group->addSignal(*signal);
        m_groups.add(std::move(group));
    }

    const MDF4_ConversionContext &m_context;
    const quint8 m_number;
    const groupnames::PortName m_port;
    ChannelGroupList &m_groups;
};

} // namespace

groupnames::PortName canPortName(const TerminalCanCfg &configuration, quint8 number)
{
    return {QLatin1String(groupnames::canLabel), number, configuration.export_name_mode,
            configuration.export_custom_name};
}

Interface_MDF4_CAN_DBC::Interface_MDF4_CAN_DBC(const MDF4_ConversionContext &handler,
                                               const QString &groupName,
                                               const EntrySelection &frames)
    : MDF4_ChannelGroup(handler, groupName, rawlog::RLD_CAN)
    , m_frames(frames)
{}

void Interface_MDF4_CAN_DBC::addSignal(const StreamingClass_DBC_Signal &signal)
{
    const DbcSource source = sourceOf(signal, m_frames);
    auto channel = std::make_unique<MDF4_DataChannel_Linear_CAN_DBC>(source);
    channel->name = signal.name;
    channel->unit = signal.unit;
    channel->factor = signal.factor;
    channel->offset = signal.offset;
    setStorage(*channel, source.field.kind, source.field.bitLength);
    channel->setPhysicalRange(signal.minimum, signal.maximum);
    if (channels().empty())
        m_firstSource = source;
    m_fields.push_back({source.field, static_cast<quint8>(channel->size)});
    if (m_sameFrames)
        channel->shareClock(m_clock);
    addChannel(std::move(channel));
    if (m_sameFrames && source.dlc != m_firstSource.dlc) {
        m_sameFrames = false;
        for (const auto &member : channels())
            member->useOwnClock();
    }
}

// A message whose signals expect frames of different length never fills a record, but it says so.
bool Interface_MDF4_CAN_DBC::takeEntry(const StdLogEntry &entry)
{
    assert(context().messages && "no msg-handler set");
    if (!m_sameFrames)
        return MDF4_ChannelGroup::takeEntry(entry);
    if (!m_firstSource.concerns(entry))
        return false;
    noteTime(entry.timestamp);
    const can::Bytes frame{entry.data.data(), entry.data.size()};
    RecordBuffer &record = beginRecord();
    for (const StoredField &stored : m_fields)
        record.append(stored.field.bitsIn(frame), stored.bytes);
    endRecord(m_clock.timestamp());
    return true;
}

// All channels judge the time alike; where it needs a correction, each of them tells so.
void Interface_MDF4_CAN_DBC::noteTime(quint32 now)
{
    if (m_clock.noteUncorrected(now, *context().cpuTimestamps))
        return;
    const SampleClock before = m_clock;
    for (const auto &channel : channels()) {
        m_clock = before;
        if (channel->checkTimestamp(now))
            context().messages->info(overflowHandledText(channel->name));
    }
}

void Interface_MDF4_CAN_DBC::build(const MDF4_ConversionContext &handler,
                                   const TerminalCanCfg &configuration, quint8 number,
                                   ChannelGroupList &groups)
{
    GroupBuilder builder(handler, configuration, number, groups);
    for (const auto &[key, message] :
         can::dbcMessages(configuration.dbc_signals.items(), Signal::recordFlag)) {
        if (groups.isClosed())
            return;
        builder.addMessage(key, message);
    }
}
