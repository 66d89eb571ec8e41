#include "MDF4Conversion/rawlog/entrytypes.h"

#include <array>

namespace rawlog {
namespace {

constexpr EntryKind kinds[] = {
    {RLD_CAN, "RLD_CAN", BodyHead::TimestampAndId},
    {RLD_AGM, "RLD_AGM", BodyHead::Timestamp},
    {RLD_TS_4, "RLD_TS_4", BodyHead::Timestamp},
    {RLD_D4MOD, "RLD_D4MOD", BodyHead::Timestamp},
    {RLD_TS_8, "RLD_TS_8", BodyHead::Timestamp},
    {RLD_GPS, "RLD_GPS", BodyHead::Timestamp},
    {RLD_ETHERCAT, "RLD_ETHERCAT", BodyHead::Timestamp},
    {RLD_CYCLIC_TS, "RLD_CYCLIC_TS", BodyHead::Timestamp},
    {RLD_ETH, "RLD_ETH", BodyHead::Timestamp},
    {RLD_ETH_INFO, "RLD_ETH_INFO", BodyHead::None},
    {TYPE_TRANSPARENT_DATA, "TYPE_TRANSPARENT_DATA", BodyHead::None},
    {RLD_UTC_START, "RLD_UTC_START", BodyHead::Ignored},
    {RLD_LIVE_240, "RLD_LIVE_240", BodyHead::None},
    {RLD_DBG_COUNTERS, "RLD_DBG_COUNTERS", BodyHead::None},
    {RLD_ETHERCAT_INFO, "RLD_ETHERCAT_INFO", BodyHead::None},
    {RLD_D4MOD_INFO, "RLD_D4MOD_INFO", BodyHead::None},
    {RLD_D4MOD_TED, "RLD_D4MOD_TED", BodyHead::None},
    {RLD_RS485_INFO, "RLD_RS485_INFO", BodyHead::None},
    {RLD_CCP_XCP_INFO, "RLD_CCP_XCP_INFO", BodyHead::None},
    {RLD_LTE, "RLD_LTE", BodyHead::None},
    {RLD_SYSTEM_INFO, "RLD_SYSTEM_INFO", BodyHead::None},
};

constexpr auto kindsByType = [] {
    std::array<const EntryKind *, 256> table{};
    for (const EntryKind &kind : kinds)
        table[kind.type] = &kind;
    return table;
}();

} // namespace

const EntryKind *entryKind(quint8 type)
{
    return kindsByType[type];
}

} // namespace rawlog
