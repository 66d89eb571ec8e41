#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_ethercat.h"

#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "config/terminalethercatcfg.h"

namespace {

constexpr quint8 intoMdf4Flag = 1;
constexpr quint32 maxBytes = 8;

struct TypeRow
{
    quint8 code;
    EtherCatTypeForm form;
};

constexpr auto unsignedType = MdfDataType::UnsignedLittleEndian;
constexpr auto signedType = MdfDataType::SignedLittleEndian;
constexpr auto realType = MdfDataType::RealLittleEndian;

constexpr TypeRow wholeTypes[] = {
    {ECT_INTEGER8, {signedType, 1, ExtractedValue::Signed, false}},
    {ECT_INTEGER16, {signedType, 2, ExtractedValue::Signed, false}},
    {ECT_INTEGER32, {signedType, 4, ExtractedValue::Signed, false}},
    {ECT_UNSIGNED8, {unsignedType, 1, ExtractedValue::Unsigned, false}},
    {ECT_UNSIGNED16, {unsignedType, 2, ExtractedValue::Unsigned, false}},
    {ECT_UNSIGNED32, {unsignedType, 4, ExtractedValue::Unsigned, false}},
    {ECT_REAL32, {realType, 4, ExtractedValue::Float, false}},
    {ECT_REAL64, {realType, 8, ExtractedValue::Double, false}},
};

std::vector<const EtherCatSignal *> selectedVariables(const TerminalEtherCatCfg &configuration)
{
    std::vector<const EtherCatSignal *> selected;
    for (const EtherCatSlave *slave : configuration.slaves) {
        for (const EtherCatSignal *variable : slave->slave_signals) {
            if (variable->mdf4_flags & intoMdf4Flag)
                selected.push_back(variable);
        }
    }
    return selected;
}

} // namespace

std::optional<EtherCatTypeForm> etherCatTypeForm(quint8 code, quint16 bitLength)
{
    if (code == ECT_BOOLEAN || (code >= ECT_BIT1 && code <= ECT_BIT8))
        return EtherCatTypeForm{unsignedType, 1, ExtractedValue::Unsigned, true};
    if (code == ECT_OCTET_STRING) {
        const quint32 bytes = qBound(1U, (bitLength + 7U) / 8, maxBytes);
        return EtherCatTypeForm{unsignedType, bytes, ExtractedValue::Unsigned, false};
    }
    for (const TypeRow &row : wholeTypes) {
        if (row.code == code)
            return row.form;
    }
    return std::nullopt;
}

bool EtherCatSource::concerns(const StdLogEntry &entry) const
{
    return entry.type == rawlog::RLD_ETHERCAT && entry.number == bus
           && firstByte() + form.size <= entry.data.size();
}

bool EtherCatSource::value(const StdLogEntry &entry, ExtractedValue &result) const
{
    const can::Bytes image{entry.data.data(), entry.data.size()};
    const quint32 position = static_cast<quint32>(firstByte()) * 8;
    result.kind = form.kind;
    if (form.isBit) {
        const quint32 bit = code == ECT_BOOLEAN ? bitOffset % 8 : quint32(code - ECT_BIT1);
        result.bits = can::extractBits(image, position + bit, 1, can::BitOrder::Intel);
        return true;
    }
    const quint32 bits = form.size * 8;
    result.bits = can::extractBits(image, position, bits, can::BitOrder::Intel);
    if (form.kind == ExtractedValue::Signed)
        result.bits = can::signExtended(result.bits, bits);
    return true;
}

Interface_MDF4_Ethercat::Interface_MDF4_Ethercat(const MDF4_ConversionContext &handler, quint8 bus,
                                                 const TerminalEtherCatCfg &configuration)
    : MDF4_ChannelGroup(handler, QStringLiteral("Ethercat-%1").arg(bus), rawlog::RLD_ETHERCAT)
    , m_bus(bus)
{
    for (const EtherCatSignal *variable : selectedVariables(configuration))
        addVariable(*variable);
}

void Interface_MDF4_Ethercat::build(const MDF4_ConversionContext &handler, quint8 bus,
                                    const TerminalEtherCatCfg &configuration,
                                    ChannelGroupList &groups)
{
    const std::size_t selected = selectedVariables(configuration).size();
    if (selected == 0 || !groups.reserve(selected))
        return;
    auto group = std::make_unique<Interface_MDF4_Ethercat>(handler, bus, configuration);
    if (!group->channels().empty())
        groups.add(std::move(group));
}

void Interface_MDF4_Ethercat::addVariable(const EtherCatSignal &variable)
{
    const auto form = etherCatTypeForm(variable.data_type, variable.bit_length);
    if (!form) {
        context().messages->error(
            QStringLiteral("ERROR - MDF4 CONVERSION: Trying to Convert an Unknown EtherCAT Type to "
                           "MDF4! Type:%1")
                .arg(variable.data_type));
        return;
    }
    EtherCatSource source;
    source.bus = m_bus;
    source.code = variable.data_type;
    source.bitOffset = variable.start_bit;
    source.form = *form;
    auto channel = std::make_unique<MDF4_DataChannel_Linear_Ethercat>(source);
    channel->name = variable.name.isEmpty() ? QStringLiteral("Add a Note...") : variable.name;
    channel->unit = variable.unit;
    channel->dataType = form->dataType;
    channel->size = form->size;
    // A variable that was found but never scaled carries a multiplier of 0.
    channel->factor = variable.multiplier != 0 ? variable.multiplier : 1;
    channel->offset = variable.multiplier != 0 ? variable.offset : 0;
    addChannel(std::move(channel));
}

std::vector<EntrySelection> Interface_MDF4_Ethercat::selections() const
{
    EntrySelection images;
    images.type = ReqType;
    images.number = m_bus;
    return {images};
}
