#include "simulator/configurationrecords.h"

#include "config/terminalstruct.h"
#include "link/protocol/messagetypes.h"

namespace simulator {
namespace {

using namespace protocol;

// Calls visit(record) with the record of this type. False for a type without one.
template <class Configuration, class Visitor>
bool visitRecord(Configuration &configuration, int type, Visitor &&visit)
{
    const auto visitNumbered = [&](MessageType first, auto &records) {
        const int index = indexIn(type, first, int(records.size()));
        if (index >= 0)
            visit(records[std::size_t(index)]);
        return index >= 0;
    };
    const auto visitOne = [&](int its, auto &record) {
        if (type == its)
            visit(record);
        return type == its;
    };
    return visitOne(WholeConfiguration, configuration) || visitOne(Gps, configuration.gps)
           || visitOne(Agm, configuration.agm) || visitOne(Lte, configuration.lte)
           || visitOne(LogTrigger, configuration.trigger)
           || visitOne(AuxSupply, configuration.event) || visitNumbered(Can, configuration.can)
           || visitNumbered(Rs485, configuration.rs485)
           || visitNumbered(EtherCat, configuration.ethercat)
           || visitOne(Ethernet, configuration.eth);
}

template <class Record>
void switchRecordOff(Record &)
{}
void switchRecordOff(TerminalGpsCfg &gps)
{
    gps.gps_enabled = 0;
}
void switchRecordOff(TerminalAgmCfg &agm)
{
    agm.enabled = 0;
}
void switchRecordOff(TerminalCanCfg &can)
{
    can.enabled = 0;
}
void switchRecordOff(TerminalRs485Cfg &rs485)
{
    rs485.supply_out = 0;
    rs485.d4mod.enabled = 0;
}
void switchRecordOff(TerminalEtherCatCfg &ethercat)
{
    ethercat.enabled = 0;
}
void switchRecordOff(StreamingClass_Cfg_Ethernet &eth)
{
    eth.module_selection = 0;
    eth.tunneling.tunneling_enabled = 0;
    eth.tunneling.mirroring_enabled = 0;
}
void switchRecordOff(TerminalStruct &configuration)
{
    switchRecordOff(configuration.gps);
    switchRecordOff(configuration.agm);
    for (TerminalCanCfg &can : configuration.can)
        switchRecordOff(can);
    for (TerminalRs485Cfg &rs485 : configuration.rs485)
        switchRecordOff(rs485);
    for (TerminalEtherCatCfg &ethercat : configuration.ethercat)
        switchRecordOff(ethercat);
    switchRecordOff(configuration.eth);
}

} // namespace

std::optional<QByteArray> recordBytes(const TerminalStruct &configuration, int type)
{
    QByteArray bytes;
    if (!visitRecord(configuration, type,
                     [&bytes](const auto &record) { bytes = record::toBytes(record); }))
        return {};
    return bytes;
}

bool takeRecord(TerminalStruct &configuration, int type, const QByteArray &bytes)
{
    return record::frameIsWhole(bytes) && visitRecord(configuration, type, [&bytes](auto &record) {
               record::fromBytes(bytes, record);
           });
}

void switchOff(TerminalStruct &configuration, int type)
{
    visitRecord(configuration, type, [](auto &record) { switchRecordOff(record); });
}

} // namespace simulator
