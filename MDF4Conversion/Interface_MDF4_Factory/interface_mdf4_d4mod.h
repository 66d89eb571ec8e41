#pragma once

#include "MDF4Conversion/entryclock.h"
#include "MDF4Conversion/mdf4_channelgroup.h"

// One strain-gauge channel of an RS485 port: a raw ADC value of 16 bits at its own place in the
// entry.
class MDF4_DataChannel_Linear_D4MOD : public MDF4_DataChannel_Linear
{
public:
    explicit MDF4_DataChannel_Linear_D4MOD(int index);

    bool extractData(const StdLogEntry &entry, RecordBuffer &record) override;

    // Takes name, unit and scaling out of the transducer's data sheet.
    void applyTed(const QString &tedText);

private:
    const int m_index;
};

// The samples of one RS485 port. How many channels it has is only known from its entries: an entry
// with another count starts the group anew, without the samples before.
class Interface_MDF4_D4MOD : public MDF4_ChannelGroup
{
public:
    static constexpr int maxChannels = 15;

    Interface_MDF4_D4MOD(const MDF4_ConversionContext &context, quint8 port);

    bool takeEntry(const StdLogEntry &entry) override;
    [[nodiscard]] std::vector<EntrySelection> selections() const override;
    [[nodiscard]] quint64 newestTimestamp() const override { return m_clock.timestamp(); }

private:
    void takeTed(const StdLogEntry &entry);
    bool takeSamples(const StdLogEntry &entry);
    void makeChannels(int count);

    const quint8 m_port;
    EntryClock m_clock; // all channels share it
};
