#include "cli/logfindings.h"

#include "cli/console.h"
#include "cli/logstatistics.h"

namespace {

void addSkipped(const LogStatistics &statistics, QStringList &errors)
{
    if (statistics.skippedStretchCount() == 0)
        return;
    const SkippedStretch &first = statistics.skippedStretches().first();
    errors.append(
        counted(statistics.skippedBytes(), "1 byte is no entry", "%1 bytes are no entries")
        + counted(statistics.skippedStretchCount(), ": 1 stretch, at ",
                  ": %1 stretches, the first at ")
        + QString::number(first.position));
}

void addCount(QStringList &texts, quint64 count, const char *one, const char *many)
{
    if (count != 0)
        texts.append(counted(count, one, many));
}

void addProcessor(int number, const ProcessorStatistics &processor, QStringList &errors,
                  QStringList &warnings)
{
    const QString name = QStringLiteral("processor %1: ").arg(number);
    if (processor.equalSyncStamps != 0)
        errors.append(
            name
            + counted(processor.equalSyncStamps, "1 sync stamp repeats", "%1 sync stamps repeat"));
    if (processor.ringBufferOverflows.value_or(0) != 0)
        errors.append(name
                      + QStringLiteral("ring buffer overflow protection counter %1, data was lost")
                            .arg(*processor.ringBufferOverflows));
    if (processor.restarts.value_or(0) >= rawlog::manyRestarts)
        warnings.append(
            name + QStringLiteral("timestamp sync or restart counter %1").arg(*processor.restarts));
    if (processor.longestSyncInterval > LogStatistics::syncLimit_us)
        warnings.append(name
                        + QStringLiteral("no sync stamp for %1 s, one or more are missing")
                              .arg(double(processor.longestSyncInterval) / 1e6, 0, 'f', 1));
}

} // namespace

void addFindings(const LogStatistics &statistics, QStringList &errors, QStringList &warnings)
{
    const StreamStatistics total = statistics.total();
    addSkipped(statistics, errors);
    addCount(errors, statistics.damagedEntries(), "1 entry is shorter than the head of an entry",
             "%1 entries are shorter than the head of an entry");
    addCount(errors, total.incomplete, "1 entry is shorter than its type or its data needs",
             "%1 entries are shorter than their type or their data needs");
    addCount(errors, statistics.implausibleTimes(), "1 entry has a time far off its neighbours",
             "%1 entries have a time far off their neighbours");
    addCount(warnings, statistics.unknownEntries(), "1 entry is of an unknown type",
             "%1 entries are of unknown types");
    addCount(warnings, total.outOfOrder, "1 entry is older than one before it on its bus",
             "%1 entries are older than one before them on their bus");
    if (statistics.implausibleUtcStart_us())
        warnings.append(QStringLiteral("the wall clock at the start, %1 us since 1970, lies behind "
                                       "the year 2554 and is ignored")
                            .arg(*statistics.implausibleUtcStart_us()));
    for (const auto &[number, processor] : statistics.processors())
        addProcessor(number, processor, errors, warnings);
}
