#include "MDF4Conversion/sampleclock.h"

#include "MDF4Conversion/mdf4_conversion_msg_interface.h"

using logtime::highStep;
using logtime::lowWord;

namespace {

quint64 distance(quint64 a, quint64 b)
{
    return a > b ? a - b : b - a;
}

// Lifts the high word until the timestamp reaches the fastest processor. A timestamp that is too
// far ahead keeps its value.
quint64 raisedToSyncStamps(quint64 from, const MDF4_ConversionContext &context)
{
    quint64 timestamp = from;
    const quint64 fastest = context.cpuTimestamps->fastest();
    const quint64 fastestHigh = logtime::highPart(fastest);
    if (timestamp < fastestHigh)
        timestamp = logtime::withLowWord(fastestHigh, lowWord(timestamp));
    if (timestamp >= fastestHigh && timestamp < fastest)
        timestamp += highStep;
    context.messages->info(
        QStringLiteral("Timestamp adjustment applied, signal not captured for a long period, "
                       "adjustment made based on sync-timestamps. Timestamp adjusted from %1 to "
                       "%2.")
            .arg(from)
            .arg(timestamp));
    return timestamp;
}

} // namespace

bool SampleClock::check(quint32 now, const MDF4_ConversionContext &context, quint8 type,
                        quint8 number)
{
    return !noteUncorrected(now, *context.cpuTimestamps) && correct(now, context, type, number);
}

bool SampleClock::correct(quint32 now, const MDF4_ConversionContext &context, quint8 type,
                          quint8 number)
{
    SyncTimeline &stamps = *context.cpuTimestamps;
    quint64 timestamp = logtime::withLowWord(m_timestamp, now);
    bool adjusted = false;
    if (now < lowWord(m_timestamp)) {
        timestamp += highStep;
        adjusted = true;
        context.messages->info(
            QStringLiteral("-&gt;(timestamp_now &lt; timestamp_last), apply 32-Bit "
                           "overflow-adjustment (now:%1 last:%2), adjusted:%3. ReqType: %4, "
                           "ReqNr: %5")
                .arg(now)
                .arg(lowWord(m_timestamp))
                .arg(timestamp)
                .arg(type)
                .arg(number));
    } else if (!stamps.hasSources() && m_count == 0 && !stamps.firstTimestamps().empty()) {
        const quint64 difference = distance(timestamp, stamps.firstTimestamps().front());
        if (difference > SyncTimeline::forwardLimit) {
            context.messages->info(
                QStringLiteral("Initial timestamp adjustment applied, difference of %1 uSeconds at "
                               "logstart between signal-timestamps. Signals were captured during "
                               "32-Bit timestamp-overflow, timestamp %2 was adjusted to %3.)")
                    .arg(difference)
                    .arg(timestamp)
                    .arg(timestamp + highStep));
            stamps.noteInitialAdjustment();
            timestamp += highStep;
            adjusted = true;
        }
    }
    if (stamps.hasSources() && stamps.isImplausible(timestamp)) {
        timestamp = raisedToSyncStamps(timestamp, context);
        adjusted = true;
    }
    noteSample(timestamp);
    return adjusted;
}
