#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/timestampedsource.h"
#include "MDF4Conversion/channelgrouplist.h"
#include "MDF4Conversion/mdf4_channelgroup.h"

#include <optional>

struct EtherCatSignal;
struct TerminalEtherCatCfg;

// CoE base data types, by the codes of their object dictionary (CiA 301), as far as the conversion
// extracts them.
enum EtherCatType : quint8 {
    ECT_BOOLEAN = 0x01,
    ECT_INTEGER8 = 0x02,
    ECT_INTEGER16 = 0x03,
    ECT_INTEGER32 = 0x04,
    ECT_UNSIGNED8 = 0x05,
    ECT_UNSIGNED16 = 0x06,
    ECT_UNSIGNED32 = 0x07,
    ECT_REAL32 = 0x08,
    ECT_OCTET_STRING = 0x0A,
    ECT_REAL64 = 0x11,
    ECT_BIT1 = 0x30,
    ECT_BIT8 = 0x37
};

// How a data type is stored in a record.
struct EtherCatTypeForm
{
    MdfDataType dataType;
    quint32 size; // bytes
    ExtractedValue::Kind kind;
    bool isBit;
};

// Empty for a code without an extraction. `bitLength` sizes an octet string, at most 8 bytes.
[[nodiscard]] std::optional<EtherCatTypeForm> etherCatTypeForm(quint8 code, quint16 bitLength);

// One variable of the process image of a bus.
struct EtherCatSource
{
    quint8 bus = 0;
    quint8 code = 0;
    quint32 bitOffset = 0; // in the process image
    EtherCatTypeForm form{};

    [[nodiscard]] quint8 entryType() const { return rawlog::RLD_ETHERCAT; }
    [[nodiscard]] quint8 entryNumber() const { return bus; }
    // The image of this bus reaches far enough to hold the variable.
    [[nodiscard]] bool concerns(const StdLogEntry &entry) const;
    [[nodiscard]] bool value(const StdLogEntry &entry, ExtractedValue &result) const;
    [[nodiscard]] static QString overflowText(const QString &name, const char *)
    {
        return overflowHandledText(name);
    }

private:
    [[nodiscard]] std::size_t firstByte() const { return rawlog::etherCatHeadSize + bitOffset / 8; }
};

using MDF4_DataChannel_Linear_Ethercat = ExtractingChannel<MDF4_DataChannel_Linear, EtherCatSource>;

// The selected variables of one EtherCAT bus.
class Interface_MDF4_Ethercat : public MDF4_ChannelGroup
{
public:
    Interface_MDF4_Ethercat(const MDF4_ConversionContext &context, quint8 bus,
                            const TerminalEtherCatCfg &configuration);

    [[nodiscard]] std::vector<EntrySelection> selections() const override;

    // The group of a bus, if any variable of it is selected.
    static void build(const MDF4_ConversionContext &context, quint8 bus,
                      const TerminalEtherCatCfg &configuration, ChannelGroupList &groups);

private:
    void addVariable(const EtherCatSignal &variable);

    const quint8 m_bus;
};
