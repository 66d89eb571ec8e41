#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/dbcsource.h"
#include "MDF4Conversion/channelgrouplist.h"
#include "MDF4Conversion/mdf4_channelgroup.h"
#include "config/groupnames.h"

#include <vector>

struct StreamingClass_DBC_Signal;
struct TerminalCanCfg;

// The recorded DBC signals of one message, or of one multiplexor value of it.
class Interface_MDF4_CAN_DBC : public MDF4_ChannelGroup
{
public:
    Interface_MDF4_CAN_DBC(const MDF4_ConversionContext &context, const QString &groupName,
                           const EntrySelection &frames);

    // A recorded signal of the message.
    void addSignal(const StreamingClass_DBC_Signal &signal);

    bool takeEntry(const StdLogEntry &entry) override;
    [[nodiscard]] std::vector<EntrySelection> selections() const override { return {m_frames}; }

    // The groups of all messages of a channel: by identifier, standard before extended of the same
    // number, multiplexor values ascending.
    static void build(const MDF4_ConversionContext &context, const TerminalCanCfg &configuration,
                      quint8 number, ChannelGroupList &groups);

private:
    void noteTime(quint32 now);

    const EntrySelection m_frames;
    // As long as all signals expect the same frames they share one clock, and a frame is taken apart
    // in one go.
    bool m_sameFrames = true;
    DbcSource m_firstSource;
    struct StoredField
    {
        can::BitField field;
        quint8 bytes = 0; // in the record
    };
    std::vector<StoredField> m_fields;
    SampleClock m_clock;
};

// How the groups of a CAN channel are called.
[[nodiscard]] groupnames::PortName canPortName(const TerminalCanCfg &configuration, quint8 number);
