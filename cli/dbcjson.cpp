#include "cli/dbcjson.h"

#include "can/canfilters.h"
#include "can/dbcfileparser.h"
#include "cli/interruption.h"
#include "config/record/recordjson.h"

#include <QJsonObject>

namespace {

QJsonObject summaryJson(const DbcFileParser &parser)
{
    const DbcSummary &summary = parser.summary();
    const auto filters = can::filtersFromSignals(parser.signalList(), can::SelectedOnly::No).size();
    return {{QStringLiteral("messages"), summary.messages},
            {QStringLiteral("signals"), summary.signal_count},
            {QStringLiteral("filters"), int(filters)},
            {QStringLiteral("ignored_signals"), summary.ignored_signals},
            {QStringLiteral("float_types"), summary.float_types},
            {QStringLiteral("multiplexor_ranges"), summary.multiplexor_ranges},
            {QStringLiteral("value_tables"), summary.value_tables},
            {QStringLiteral("comments_without_signal"), summary.comments_without_signal},
            {QStringLiteral("other_comments"), summary.other_comments}};
}

} // namespace

void writeDbcJson(JsonWriter &json, const DbcFileParser &parser)
{
    json.value(QStringLiteral("ok"), parser.errorText().isEmpty());
    json.value(QStringLiteral("error"), parser.errorText());
    json.value(QStringLiteral("summary"), summaryJson(parser));
    json.key(QStringLiteral("signals"));
    json.beginArray();
    for (const StreamingClass_DBC_Signal *signal : parser.signalList()) {
        if (interruption::requested()) // one comment for many signals makes far more than the file
            break;
        record::writeJson(json, *signal);
    }
    json.end();
}
