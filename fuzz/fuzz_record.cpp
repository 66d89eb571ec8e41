// Reads a record from any bytes. The first byte picks the class. What was read is a record like any
// other: writing and reading it again gives the same bytes.

#include "config/terminalstruct.h"

#include <cstdint>
#include <cstdlib>
#include <tuple>

namespace {

template <class R>
QByteArray rewritten(const QByteArray &bytes)
{
    QDataStream in(bytes);
    in.setVersion(record::dataStreamVersion);
    R read;
    in >> read;
    return record::toBytes(read);
}

template <class R>
void check(const QByteArray &bytes)
{
    const QByteArray once = rewritten<R>(bytes);
    if (rewritten<R>(once) != once)
        std::abort();
}

using Check = void (*)(const QByteArray &);

// The corpus files rely on the order.
constexpr Check checks[] = {
    check<A2lCompuMethod>,
    check<A2lCompuTab>,
    check<A2lCompuTabPair>,
    check<A2lCompuVTab>,
    check<A2lCompuVTabPair>,
    check<A2lMeasurement>,
    check<A2lModuleConfig>,
    check<StreamingClass_A2L_CFG>,
    check<StreamingClass_A2L_DAQ>,
    check<StreamingClass_A2L_Module>,
    check<StreamingClass_A2L_ODT>,
    check<StreamingClass_A2L_ODT_ELEMENT>,
    check<StreamingClass_A2L_RASTER_EVENT>,
    check<AimMsgMeta>,
    check<AuxSupplyCfg>,
    check<CanIdFilterElement>,
    check<EtherCatSignal>,
    check<EtherCatSlave>,
    check<EthTunnelingCfg>,
    check<LogTriggerCfg>,
    check<StreamingClass_Cfg_Ethernet>,
    check<StreamingClass_DBC_Signal>,
    check<TerminalAgmCfg>,
    check<TerminalCanCfg>,
    check<TerminalD4ModCfg>,
    check<TerminalEtherCatCfg>,
    check<TerminalGpsCfg>,
    check<TerminalLteCfg>,
    check<TerminalRs485Cfg>,
    check<TerminalStruct>,
    check<TunnelingFilter>,
    check<XcpRecord>,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto *bytes = reinterpret_cast<const char *>(data + 1);
    checks[data[0] % std::size(checks)](QByteArray(bytes, int(size - 1)));
    return 0;
}
