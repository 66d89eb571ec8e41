#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_signal.h"
#include "MDF4Conversion/extractingchannel.h"

// The channels of CCP and XCP on CAN, and of XCP on ethernet.

struct CanCcpXcpSource : CCP_XCP_Signal
{
    explicit CanCcpXcpSource(const CCP_XCP_Signal &signal)
        : CCP_XCP_Signal(signal)
    {}
    [[nodiscard]] static QString overflowText(const QString &name, const char *)
    {
        return overflowHandledText(name);
    }
};

struct EthXcpSource : CCP_XCP_Signal
{
    explicit EthXcpSource(const CCP_XCP_Signal &signal)
        : CCP_XCP_Signal(signal)
    {}
    // Carries the class of the channel, e.g. MDF4_DataChannel_Linear_ETH_XCP.
    [[nodiscard]] static QString overflowText(const QString &name, const char *conversionName)
    {
        return QStringLiteral("TS-Overflow for %1 handled. MDF4_DataChannel_%2_ETH_XCP")
            .arg(name.toHtmlEscaped(), QLatin1String(conversionName));
    }
};

template <class Conversion>
using CcpXcpChannel = ExtractingChannel<Conversion, CanCcpXcpSource>;
template <class Conversion>
using EthXcpChannel = ExtractingChannel<Conversion, EthXcpSource>;

using MDF4_DataChannel_Identity_CCP_XCP = CcpXcpChannel<MDF4_DataChannel_Identity>;
using MDF4_DataChannel_Linear_CCP_XCP = CcpXcpChannel<MDF4_DataChannel_Linear>;
using MDF4_DataChannel_Formula_CCP_XCP = CcpXcpChannel<MDF4_DataChannel_Formula>;
using MDF4_DataChannel_Val2Val_Table_Interpolated_CCP_XCP =
    CcpXcpChannel<MDF4_DataChannel_Val2Val_Table_Interpolated>;
using MDF4_DataChannel_Val2Val_Table_nonInterpolated_CCP_XCP =
    CcpXcpChannel<MDF4_DataChannel_Val2Val_Table_nonInterpolated>;
using MDF4_DataChannel_Val2Txt_Table_CCP_XCP = CcpXcpChannel<MDF4_DataChannel_Val2Txt_Table>;

using MDF4_DataChannel_Identity_ETH_XCP = EthXcpChannel<MDF4_DataChannel_Identity>;
using MDF4_DataChannel_Linear_ETH_XCP = EthXcpChannel<MDF4_DataChannel_Linear>;
using MDF4_DataChannel_Formula_ETH_XCP = EthXcpChannel<MDF4_DataChannel_Formula>;
using MDF4_DataChannel_Val2Val_Table_Interpolated_ETH_XCP =
    EthXcpChannel<MDF4_DataChannel_Val2Val_Table_Interpolated>;
using MDF4_DataChannel_Val2Val_Table_nonInterpolated_ETH_XCP =
    EthXcpChannel<MDF4_DataChannel_Val2Val_Table_nonInterpolated>;
using MDF4_DataChannel_Val2Txt_Table_ETH_XCP = EthXcpChannel<MDF4_DataChannel_Val2Txt_Table>;
