#include "cli/inspectionjson.h"

#include "cli/dbcjson.h"
#include "cli/fileinspection.h"
#include "cli/logtexts.h"
#include "config/record/recordjson.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

template <class T>
QJsonValue number(T value)
{
    return QJsonValue(static_cast<qint64>(value));
}

template <class T>
QJsonValue number(const std::optional<T> &value)
{
    return value ? number(*value) : QJsonValue();
}

QJsonObject silenceJson(const Silence &silence)
{
    return {{QStringLiteral("start_us"), number(silence.start_us)},
            {QStringLiteral("length_us"), number(silence.length_us)}};
}

QJsonObject streamJson(LogStatistics::StreamKey key, const StreamStatistics &stream,
                       const LogStatistics &log)
{
    return {{QStringLiteral("type"), key.first},
            {QStringLiteral("type_name"), entryTypeName(key.first)},
            {QStringLiteral("number"), key.second},
            {QStringLiteral("entries"), number(stream.entries)},
            {QStringLiteral("entries_per_second"), perSecond(stream.entries, log)},
            {QStringLiteral("bytes"), number(stream.bytes)},
            {QStringLiteral("incomplete"), number(stream.incomplete)},
            {QStringLiteral("out_of_order"), number(stream.outOfOrder)},
            {QStringLiteral("first_time_us"), number(stream.first_us)},
            {QStringLiteral("last_time_us"), number(stream.newest_us)},
            {QStringLiteral("gaps"), number(stream.gaps)},
            {QStringLiteral("longest_silence"), silenceJson(stream.longestSilence)}};
}

QJsonArray streamsJson(const LogStatistics &log)
{
    QJsonArray streams;
    for (const auto &[key, stream] : log.streams())
        streams.append(streamJson(key, stream, log));
    return streams;
}

QJsonObject skippedJson(const LogStatistics &log)
{
    QJsonArray stretches;
    for (const SkippedStretch &stretch : log.skippedStretches())
        stretches.append(QJsonObject{{QStringLiteral("position"), number(stretch.position)},
                                     {QStringLiteral("length"), number(stretch.length)}});
    return {{QStringLiteral("bytes"), number(log.skippedBytes())},
            {QStringLiteral("count"), number(log.skippedStretchCount())},
            {QStringLiteral("stretches"), stretches}};
}

QJsonObject syncJson(const StreamStatistics *stamps, const ProcessorStatistics &processor)
{
    QJsonObject sync{
        {QStringLiteral("stamps"), number(stamps ? stamps->entries : 0)},
        {QStringLiteral("equal_stamps"), number(processor.equalSyncStamps)},
        {QStringLiteral("longest_interval_us"), number(processor.longestSyncInterval)}};
    sync.insert(QStringLiteral("first_us"), stamps ? number(stamps->first_us) : QJsonValue());
    sync.insert(QStringLiteral("last_us"), stamps ? number(stamps->newest_us) : QJsonValue());
    return sync;
}

QJsonArray processorsJson(const LogStatistics &log)
{
    QJsonArray processors;
    for (const auto &[index, processor] : log.processors())
        processors.append(QJsonObject{
            {QStringLiteral("number"), index},
            {QStringLiteral("ring_buffer_overflows"), number(processor.ringBufferOverflows)},
            {QStringLiteral("restarts"), number(processor.restarts)},
            {QStringLiteral("temperature_min"), number(processor.minTemperature)},
            {QStringLiteral("temperature_max"), number(processor.maxTemperature)},
            {QStringLiteral("sync"),
             syncJson(log.find({rawlog::RLD_CYCLIC_TS, index}), processor)}});
    return processors;
}

QJsonObject logJson(const LogStatistics &log, qint64 firstEntryPosition)
{
    const StreamStatistics total = log.total();
    const QString utc = utcText(log.utcStart_us());
    return {{QStringLiteral("first_entry_position"), number(firstEntryPosition)},
            {QStringLiteral("entries"), number(total.entries)},
            {QStringLiteral("entries_per_second"), perSecond(total.entries, log)},
            {QStringLiteral("bytes"), number(total.bytes)},
            {QStringLiteral("first_time_us"), number(log.first_us())},
            {QStringLiteral("last_time_us"), number(log.last_us())},
            {QStringLiteral("duration_us"), number(duration_us(log))},
            {QStringLiteral("utc_start"), utc.isEmpty() ? QJsonValue() : QJsonValue(utc)},
            {QStringLiteral("longest_silence"), silenceJson(log.longestSilence())},
            {QStringLiteral("streams"), streamsJson(log)},
            {QStringLiteral("processors"), processorsJson(log)},
            {QStringLiteral("skipped"), skippedJson(log)},
            {QStringLiteral("damaged_entries"), number(log.damagedEntries())},
            {QStringLiteral("incomplete_entries"), number(total.incomplete)},
            {QStringLiteral("unknown_entries"), number(log.unknownEntries())},
            {QStringLiteral("out_of_order_entries"), number(total.outOfOrder)},
            {QStringLiteral("implausible_times"), number(log.implausibleTimes())}};
}

QJsonValue kindJson(FileHead::Kind kind)
{
    switch (kind) {
    case FileHead::Kind::Configuration:
        return QStringLiteral("configuration");
    case FileHead::Kind::RawLog:
        return QStringLiteral("raw_log");
    case FileHead::Kind::Database:
        return QStringLiteral("dbc");
    case FileHead::Kind::Unknown:
        break;
    }
    return {};
}

} // namespace

void writeInspectionJson(JsonWriter &json, const FileInspection &inspection)
{
    QJsonArray errors = QJsonArray::fromStringList(inspection.errors);
    if (!inspection.failure.isEmpty())
        errors.prepend(inspection.failure);
    json.beginObject();
    json.value(QStringLiteral("file"), inspection.file);
    json.value(QStringLiteral("kind"), kindJson(inspection.kind));
    json.value(QStringLiteral("size"), number(inspection.size));
    json.value(QStringLiteral("errors"), errors);
    json.value(QStringLiteral("warnings"), QJsonArray::fromStringList(inspection.warnings));
    if (inspection.configuration) {
        json.value(QStringLiteral("version"), inspection.configuration->version);
        json.key(QStringLiteral("configuration"));
        record::writeJson(json, *inspection.configuration);
    }
    if (inspection.log)
        json.value(QStringLiteral("log"), logJson(*inspection.log, inspection.firstEntryPosition));
    if (inspection.database)
        writeDbcJson(json, *inspection.database);
    json.end();
}
