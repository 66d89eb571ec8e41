#include "MDF4Conversion/rld2xxxwatch.h"

#include <cmath>

namespace {

using Counter = Rld2xxxRecord::Counter;

struct Field
{
    const char *group;
    const char *label;
    Counter counter;
};

constexpr Field fields[] = {
    {"Process", "File Size", Counter::FileSize},
    {"Process", "Bytes Read", Counter::BytesRead},
    {"Process", "Converted Elements", Counter::ConvertedElements},
    {"Process", "Filtered RLD Chunks", Counter::FilteredChunks},
    {"Pipeline", "RLD in pipeline", Counter::RldInPipeline},
    {"Pipeline", "Output Elements in pipeline", Counter::OutputElementsInPipeline},
    {"Pipeline", "Written Elements", Counter::WrittenElements},
};

} // namespace

uint percentRead(quint64 bytesRead, quint64 fileSize)
{
    if (bytesRead >= fileSize)
        return 100;
    return static_cast<uint>(std::lround(double(bytesRead) / double(fileSize) * 100.0));
}

Rld2xxxWatch::Finding Rld2xxxWatch::look(const Rld2xxxRecord &record)
{
    Finding finding;
    if (record.version() != 0 && !m_isVersionChecked) {
        m_isVersionChecked = true;
        if (record.version() != Rld2xxxRecord::compatibleVersion)
            finding.incompatibleVersion = record.version();
    }
    const quint64 fileSize = record.counter(Counter::FileSize);
    if (fileSize != 0)
        finding.percent = percentRead(record.counter(Counter::BytesRead), fileSize);
    for (const Field &field : fields) {
        finding.tree[QLatin1String(field.group)][QLatin1String(field.label)] =
            QString::number(record.counter(field.counter));
    }
    return finding;
}

bool Rld2xxxWatch::isSilentTooLong(bool processRuns, bool isFinished)
{
    if (processRuns || isFinished)
        return false;
    ++m_silentPolls;
    return m_silentPolls >= maxSilentPolls;
}
