#include "can/ccpxcpstatus.h"

#include "a2l/records/streamingclass_a2l_module.h"

#include <map>

namespace can {
namespace {

using Texts = std::map<quint8, const char *>;

// %1 is the protocol.
const Texts &statusTexts()
{
    static const Texts texts = {
        {0, "Inactive"},
        {1, "CAN is disabled"},
        {2, "%1 Connect..."},
        {3, "Connected..."},
        {4, "Checking CCP version..."},
        {5, "Initializing DAQ-Session step 1..."},
        {6, "Initializing DAQ-Session step 2..."},
        {7, "Error, no DAQ-List set."},
        {8, "Error, DAQ-List wrong FirstID."},
        {9, "Error, Invalid ODT count."},
        {10, "Error, no DAQ memory."},
        {11, "Initializing DAQ-Session step 3..."},
        {12, "Initializing DAQ-Session step 4..."},
        {13, "Initializing DAQ-Session step 5..."},
        {14, "Initializing DAQ-Session step 6..."},
        {15, "Preparing synchronized start..."},
        {16, "Starting DAQ-Data..."},
        {17, "Synchronized start DAQ-Data..."},
        {18, "XCP Session Active/Running"},
        {20, "%1 Disconnect..."},
        {21, "The Session restarts soon..."},
        {66, "Freeing DAQ.."},
        {67, "Allocating DAQ.."},
        {68, "Allocating ODTs.."},
        {69, "Allocating ODT Entries.."},
        {70, "Getting DAQ Clock.."},
    };
    return texts;
}

const Texts &responseTexts()
{
    static const Texts texts = {
        {1, "LastErr:DAQ overload"},
        {16, "LastErr:CMD processor busy"},
        {17, "LastErr:DAQ processor busy"},
        {18, "LastErr:Internal timeout"},
        {24, "LastErr:Key request"},
        {25, "LastErr:Session status request"},
        {32, "LastErr:Cold start request"},
        {33, "LastErr:CAL data init request"},
        {34, "LastErr:DAQ data init request"},
        {35, "LastErr:Code update request"},
        {48, "LastErr:Unknown command"},
        {49, "LastErr:CMD syntax fault"},
        {50, "LastErr:Parameter out of range"},
        {51, "LastErr:Access denied"},
        {52, "LastErr:Overload"},
        {53, "LastErr:Access locked"},
        {54, "LastErr:Function not available"},
    };
    return texts;
}

} // namespace

SessionProtocol sessionProtocol(const StreamingClass_A2L_Module &module)
{
    return module.config.cfg.version_text.isEmpty() ? SessionProtocol::Ccp : SessionProtocol::Xcp;
}

QString sessionStatusText(quint8 status, SessionProtocol protocol)
{
    const auto found = statusTexts().find(status);
    if (found == statusTexts().end())
        return QStringLiteral("Unknown status %1").arg(status);
    const auto name =
        protocol == SessionProtocol::Ccp ? QStringLiteral("CCP") : QStringLiteral("XCP");
    return QString::fromLatin1(found->second).replace(QStringLiteral("%1"), name);
}

QString slaveResponseText(quint8 code)
{
    const auto found = responseTexts().find(code);
    if (found == responseTexts().end())
        return QStringLiteral("Unknown error %1").arg(code);
    return QString::fromLatin1(found->second);
}

} // namespace can
