#include "cli/dbcjson.h"

#include "can/canfilters.h"
#include "can/dbcfileparser.h"
#include "cli/interruption.h"
#include "config/record/recordjson.h"

#include <QJsonObject>

#include <algorithm>
#include <iterator>

namespace {

QJsonObject summaryJson(const DbcFileParser &parser)
{
    const DbcSummary &summary = parser.summary();
    const auto filters = can::filtersFromSignals(parser.signalList(), can::SelectedOnly::No).size();
    QJsonObject json{{QStringLiteral("filters"), int(filters)}};
    const auto add = [&](const dbc::SummaryCount &row) {
        json.insert(QLatin1String(row.key), summary.*row.count);
    };
    std::for_each(std::begin(dbc::readCounts), std::end(dbc::readCounts), add);
    std::for_each(std::begin(dbc::passedOverCounts), std::end(dbc::passedOverCounts), add);
    return json;
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
