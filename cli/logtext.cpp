#include "cli/logtext.h"

#include "cli/console.h"
#include "cli/logtexts.h"
#include "cli/textsections.h"

namespace {

constexpr int listedStretches = 20;

QString secondsText(qint64 time_us)
{
    return QString::number(double(time_us) / 1e6, 'f', 6);
}

QString sinceStart(const LogStatistics &log, std::optional<qint64> time_us)
{
    return time_us ? secondsText(*time_us - log.first_us().value_or(0)) : QString();
}

QString rateText(double perSecond)
{
    return QString::number(perSecond, 'f', perSecond < 100 ? 2 : 0);
}

QString silenceText(const LogStatistics &log, const Silence &silence)
{
    return QStringLiteral("%1 s at %2 s")
        .arg(secondsText(silence.length_us), sinceStart(log, silence.start_us));
}

QString summaryText(const LogStatistics &log)
{
    const StreamStatistics total = log.total();
    TextTable table;
    table.addRow({QStringLiteral("Entries"),
                  QString::number(total.entries) + counted(total.bytes, ", 1 byte", ", %1 bytes")});
    if (log.utcStart_us())
        table.addRow({QStringLiteral("Start"), utcText(log.utcStart_us())});
    if (log.first_us()) {
        table.addRow(
            {QStringLiteral("First time"),
             QStringLiteral("%1 s on the logger's clock").arg(secondsText(*log.first_us()))});
        table.addRow(
            {QStringLiteral("Last time"),
             QStringLiteral("%1 s on the logger's clock").arg(secondsText(*log.last_us()))});
        table.addRow(
            {QStringLiteral("Duration"),
             QStringLiteral("%1 s, %2 entries a second")
                 .arg(secondsText(duration_us(log)), rateText(perSecond(total.entries, log)))});
        table.addRow({QStringLiteral("Longest silence"), silenceText(log, log.longestSilence())});
    }
    return section(QStringLiteral("Log"), table);
}

QString streamsText(const LogStatistics &log)
{
    TextTable table({"Source", ">Entries", ">Bytes", ">Per second", ">First [s]", ">Last [s]",
                     ">Gaps > 1.5 s", "Longest gap"});
    for (const auto &[key, stream] : log.streams())
        table.addRow({streamName(key), QString::number(stream.entries),
                      QString::number(stream.bytes), rateText(perSecond(stream.entries, log)),
                      sinceStart(log, stream.first_us), sinceStart(log, stream.newest_us),
                      stream.newest_us ? QString::number(stream.gaps) : QString(),
                      stream.gaps != 0 ? silenceText(log, stream.longestSilence) : QString()});
    return section(QStringLiteral("Entries"), table);
}

template <class T>
QString valueText(const std::optional<T> &value)
{
    return value ? QString::number(*value) : QString();
}

QString processorsText(const LogStatistics &log)
{
    TextTable table({">Processor", ">Lowest [°C]", ">Highest [°C]", ">Ring buffer overflows",
                     ">Restarts", ">Sync stamps", ">Longest interval [s]"});
    for (const auto &[number, processor] : log.processors()) {
        const StreamStatistics *stamps = log.find({rawlog::RLD_CYCLIC_TS, number});
        table.addRow({QString::number(number), valueText(processor.minTemperature),
                      valueText(processor.maxTemperature), valueText(processor.ringBufferOverflows),
                      valueText(processor.restarts),
                      stamps ? QString::number(stamps->entries) : QString(),
                      stamps ? secondsText(processor.longestSyncInterval) : QString()});
    }
    return section(QStringLiteral("Processors"), table);
}

QString damageText(const LogStatistics &log)
{
    const StreamStatistics total = log.total();
    TextTable table;
    const auto addCount = [&table](const QString &what, quint64 count) {
        if (count != 0)
            table.addRow({what, QString::number(count)});
    };
    addCount(QStringLiteral("Without a whole head"), log.damagedEntries());
    addCount(QStringLiteral("Incomplete"), total.incomplete);
    addCount(QStringLiteral("Of unknown type"), log.unknownEntries());
    addCount(QStringLiteral("Older than their predecessor"), total.outOfOrder);
    addCount(QStringLiteral("With an implausible time"), log.implausibleTimes());
    return section(QStringLiteral("Conspicuous entries"), table);
}

QString skippedText(const LogStatistics &log)
{
    TextTable table({">Position", ">Bytes"});
    for (const SkippedStretch &stretch : log.skippedStretches().mid(0, listedStretches))
        table.addRow({QString::number(stretch.position), QString::number(stretch.length)});
    QString text =
        section(counted(log.skippedBytes(), "Skipped, 1 byte", "Skipped, %1 bytes")
                    + counted(log.skippedStretchCount(), " in 1 stretch", " in %1 stretches"),
                table);
    if (log.skippedStretchCount() > quint64(listedStretches))
        text += QStringLiteral("%1... and %2 more\n")
                    .arg(sectionIndent)
                    .arg(log.skippedStretchCount() - quint64(listedStretches));
    return text;
}

} // namespace

QString logText(const LogStatistics &log)
{
    return summaryText(log) + streamsText(log) + processorsText(log) + damageText(log)
           + skippedText(log);
}
