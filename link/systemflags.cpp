#include "link/systemflags.h"

namespace {

constexpr quint32 auxFault = 1U << 8;
constexpr quint32 loggingRuns = 1U << 11;
constexpr quint32 auxIsOn = 1U << 12;

} // namespace

bool systemflags::isLogging(quint32 flags)
{
    return (flags & loggingRuns) != 0;
}

bool systemflags::hasAuxSupplyFault(quint32 flags)
{
    return (flags & auxFault) != 0;
}

QString systemflags::loggingText(quint32 flags)
{
    return isLogging(flags) ? QStringLiteral("recording") : QStringLiteral("stopped");
}

QString systemflags::auxSupplyText(quint32 flags)
{
    const bool isOn = (flags & auxIsOn) != 0;
    if (hasAuxSupplyFault(flags))
        return isOn ? QStringLiteral("on/fault occured") : QStringLiteral("off/fault occured");
    return isOn ? QStringLiteral("on") : QStringLiteral("off");
}
