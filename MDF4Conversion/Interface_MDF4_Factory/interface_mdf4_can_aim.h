#pragma once

#include "MDF4Conversion/entryclock.h"
#include "MDF4Conversion/mdf4_channelgroup.h"

#include <memory>

struct AimMsgMeta;

// Where the samples of the channels of an AIM message stand.
struct AimLayout
{
    quint32 canId = 0;
    quint8 frameBytes = 0;
    quint32 channels = 0;
    quint32 samples = 0;     // of each channel in one message
    quint32 sampleBytes = 0; // 1 to 8
    quint32 gapBytes = 0;    // between channels
    bool msbFirst = false;
    bool isSigned = false;

    // Empty for a description that no CAN frame can follow.
    [[nodiscard]] static std::optional<AimLayout> of(const AimMsgMeta &meta);
    [[nodiscard]] quint64 sampleAt(const StdLogEntry &entry, quint32 channel, quint32 sample) const;
    // Channels that lie in the frame as a whole; what others lack reads as 0.
    [[nodiscard]] quint32 channelsInFrame() const;
    // Bytes in the record: the smallest of 1, 2, 4 and 8 that holds a sample.
    [[nodiscard]] quint32 storedBytes() const;
};

// A channel of an AIM module; its group tells it which sample of the message comes next.
class MDF4_DataChannel_Linear_CAN_AIM : public MDF4_DataChannel_Linear
{
public:
    MDF4_DataChannel_Linear_CAN_AIM(const AimLayout &layout, quint32 channel);

    bool extractData(const StdLogEntry &entry, RecordBuffer &record) override;
    void setSample(quint32 sample) { m_sample = sample; }

private:
    const AimLayout m_layout;
    const quint32 m_channel;
    quint32 m_sample = 0;
};

// One message of an AIM module. It carries several samples of each channel; they are spread evenly
// from the time of the message before on, so the first message only sets the clock.
class Interface_MDF4_CAN_AIM : public MDF4_ChannelGroup
{
public:
    Interface_MDF4_CAN_AIM(const MDF4_ConversionContext &context, const QString &groupName,
                           quint8 canNumber, const AimLayout &layout, const AimMsgMeta &meta);

    bool takeEntry(const StdLogEntry &entry) override;
    void reportLosses() const override;
    [[nodiscard]] std::vector<EntrySelection> selections() const override;
    [[nodiscard]] quint64 newestTimestamp() const override { return m_clock.timestamp(); }

private:
    void takeSamples(const StdLogEntry &entry, quint64 begin_us, quint64 interval_us);

    const quint8 m_canNumber;
    const AimLayout m_layout;
    quint64 m_wrongLengths = 0; // entries
    EntryClock m_clock;         // of the messages
};
