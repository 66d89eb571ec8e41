#include "cli/conversionjson.h"

#include "cli/console.h"

#include <QJsonArray>

namespace {

double secondsSince(quint64 start_us, quint64 time_us)
{
    return double(time_us - qMin(start_us, time_us)) * 1e-6;
}

QJsonObject groupJson(const ConversionSummary::Group &group, quint64 start_us)
{
    QJsonArray channels;
    for (const ConversionSummary::Channel &channel : group.channels) {
        channels.append(QJsonObject{{QStringLiteral("name"), channel.name},
                                    {QStringLiteral("unit"), channel.unit},
                                    {QStringLiteral("samples"), double(channel.samples)}});
    }
    return {{QStringLiteral("name"), group.name},
            {QStringLiteral("samples"), double(group.samples)},
            {QStringLiteral("first_time"), secondsSince(start_us, group.first_us)},
            {QStringLiteral("last_time"), secondsSince(start_us, group.last_us)},
            {QStringLiteral("channels"), channels}};
}

} // namespace

QJsonObject conversionJson(const QString &input, const ConversionSummary &summary, double seconds)
{
    QJsonArray groups;
    double channels = 0;
    double samples = 0;
    for (const ConversionSummary::Group &group : summary.groups) {
        groups.append(groupJson(group, summary.startOffset_us));
        channels += group.channels.size();
        samples += double(group.samples) * group.channels.size();
    }
    const QJsonObject messages{{QStringLiteral("status"), double(summary.statusCount)},
                               {QStringLiteral("warning"), double(summary.warningCount)},
                               {QStringLiteral("error"), double(summary.errorCount)}};
    const QJsonValue utcStart =
        summary.utcStart_us == 0 ? QJsonValue() : QJsonValue(utcText(summary.utcStart_us));
    return {
        {QStringLiteral("input"), input},
        {QStringLiteral("output"), summary.written ? QJsonValue(summary.outputFile) : QJsonValue()},
        {QStringLiteral("cancelled"), summary.cancelled},
        {QStringLiteral("groups"), groups},
        {QStringLiteral("group_count"), groups.size()},
        {QStringLiteral("channels"), channels},
        {QStringLiteral("samples"), samples},
        {QStringLiteral("entries"), double(summary.entries)},
        {QStringLiteral("first_time"), 0.0},
        {QStringLiteral("last_time"), secondsSince(summary.startOffset_us, summary.lastTime_us)},
        {QStringLiteral("start_offset_us"), double(summary.startOffset_us)},
        {QStringLiteral("utc_start"), utcStart},
        {QStringLiteral("skipped_bytes"), double(summary.skippedBytes)},
        {QStringLiteral("dropped_records"), double(summary.droppedRecords)},
        {QStringLiteral("messages"), messages},
        {QStringLiteral("seconds"), seconds}};
}
