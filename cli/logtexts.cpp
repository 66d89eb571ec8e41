#include "cli/logtexts.h"

#include "cli/console.h"

using namespace rawlog;

namespace {

struct SourceName
{
    quint8 type;
    const char *name;
};

constexpr SourceName sourceNames[] = {
    {RLD_CAN, "CAN"},
    {RLD_AGM, "Accelerometer"},
    {RLD_D4MOD, "RS485 D4MOD"},
    {RLD_GPS, "GPS"},
    {RLD_ETHERCAT, "EtherCAT"},
    {RLD_CYCLIC_TS, "Sync stamps"},
    {RLD_ETH, "Ethernet"},
    {RLD_ETH_INFO, "Ethernet status"},
    {RLD_UTC_START, "UTC start"},
    {RLD_DBG_COUNTERS, "Counters"},
    {RLD_D4MOD_TED, "RS485 TED"},
};

} // namespace

QString entryTypeName(quint8 type)
{
    const EntryKind *kind = entryKind(type);
    return kind ? QLatin1String(kind->name) : QString();
}

QString streamName(LogStatistics::StreamKey key)
{
    const auto [type, number] = key;
    QString name = entryTypeName(type);
    if (name.isEmpty())
        name = QStringLiteral("unknown type %1,").arg(type);
    for (const SourceName &source : sourceNames) {
        if (source.type == type)
            name = QLatin1String(source.name);
    }
    return QStringLiteral("%1 %2").arg(name).arg(number);
}

qint64 duration_us(const LogStatistics &log)
{
    return log.first_us() && log.last_us() ? *log.last_us() - *log.first_us() : 0;
}

double perSecond(quint64 entries, const LogStatistics &log)
{
    const qint64 duration = duration_us(log);
    return duration == 0 ? 0.0 : double(entries) * 1e6 / double(duration);
}

QString utcText(std::optional<quint64> utc_us)
{
    return utc_us ? utcText(*utc_us) : QString();
}
