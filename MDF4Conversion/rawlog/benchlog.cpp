#include "MDF4Conversion/rawlog/benchlog.h"

#include "MDF4Conversion/rawlog/entrytypes.h"
#include "MDF4Conversion/rawlog/rawlogfile.h"

#include <QtEndian>

#include <array>
#include <vector>

namespace benchlog {
namespace {

constexpr quint8 frameBytes = 8;
constexpr int entrySize = int(rawlog::entryHeadSize) + 8 + frameBytes;
constexpr qint64 entriesInBlock = 40'000;
constexpr int channels = int(TerminalStruct::canChannels);
constexpr int maxMessages = channels * 2048;

constexpr std::size_t signalCount = 8;
using WidthList = std::array<quint8, signalCount>; // bits, 64 in all
constexpr WidthList byteWidths = {8, 8, 8, 8, 8, 8, 8, 8};
constexpr WidthList mixedWidths = {16, 12, 10, 8, 8, 6, 3, 1};

const WidthList &widthsOf(const Plan &plan)
{
    return plan.widths == Widths::Mixed ? mixedWidths : byteWidths;
}

int messagesOf(const Plan &plan)
{
    return qBound(1, plan.messages, maxMessages);
}

// Message i is on channel i modulo 12.
quint32 identifierOf(int message)
{
    return static_cast<quint32>(message / channels);
}

// One signal: a ramp that turns at its ends, at 2^-16 of full range for each unit.
struct Ramp
{
    quint16 position;
    quint16 step; // of the position, for each frame

    // The top bits of the triangle with noise on its lowest.
    quint64 next(quint8 width, quint16 noise)
    {
        position = static_cast<quint16>(position + step);
        const bool falling = (position & 0x8000) != 0;
        const auto twice = static_cast<quint16>(position << 1);
        const quint32 level = falling ? 0xFFFFU - twice : twice;
        const quint32 spread = 0x10000U >> width; // one step of the signal
        const quint32 value = level + noise % (2 * spread);
        return quint64(qMin(value, 0xFFFFU) >> (16 - width));
    }
};

// A 64-bit linear congruential generator with Knuth's constants for MMIX.
class Random
{
public:
    quint64 next() { return m_state = m_state * 6364136223846793005ULL + 1442695040888963407ULL; }

private:
    quint64 m_state = 20240514;
};

} // namespace

class EntryStream::Frames
{
public:
    explicit Frames(const Plan &plan)
        : m_widths(widthsOf(plan))
    {
        Random random;
        m_ramps.resize(std::size_t(messagesOf(plan)));
        for (auto &ramps : m_ramps) {
            for (Ramp &ramp : ramps) {
                ramp.position = static_cast<quint16>(random.next() >> 48);
                // There and back in 500 frames or more.
                ramp.step = static_cast<quint16>(1 + (random.next() >> 57));
            }
        }
    }

    quint64 next(int message)
    {
        quint64 noise = m_random.next();
        quint64 data = 0;
        int position = 0;
        for (std::size_t i = 0; i < signalCount; ++i) {
            Ramp &ramp = m_ramps[std::size_t(message)][i];
            const auto ownNoise = static_cast<quint16>(noise >> (8 + 5 * i));
            data |= ramp.next(m_widths[i], ownNoise) << position;
            position += m_widths[i];
        }
        return data;
    }

private:
    const WidthList &m_widths;
    Random m_random;
    std::vector<std::array<Ramp, signalCount>> m_ramps;
};

namespace {

void putEntry(char *to, quint32 timestamp_us, int message, quint64 data)
{
    using namespace rawlog;
    qToLittleEndian(syncWord, to);
    qToLittleEndian(static_cast<quint16>(entrySize - int(lengthOverhead)), to + 2);
    to[4] = char(RLD_CAN);
    to[5] = static_cast<char>(message % channels);
    to[6] = 0;
    to[7] = char(frameBytes);
    qToLittleEndian(timestamp_us, to + 8);
    qToLittleEndian(identifierOf(message), to + 12);
    qToLittleEndian(data, to + 16);
}

StreamingClass_DBC_Signal signalOf(int message, std::size_t index, int position, quint8 width)
{
    StreamingClass_DBC_Signal signal;
    signal.name = QStringLiteral("Message_%1_Signal_%2").arg(message).arg(index);
    signal.unit = QStringLiteral("V");
    signal.start_bit = static_cast<quint16>(position);
    signal.bit_length = width;
    signal.little_endian = 1;
    signal.factor = 0.01;
    signal.maximum = 0.01 * double((1U << width) - 1);
    signal.selection_flags = StreamingClass_DBC_Signal::recordFlag;
    signal.dlc = frameBytes;
    signal.msg_id = identifierOf(message);
    return signal;
}

} // namespace

std::unique_ptr<TerminalStruct> configuration(const Plan &plan)
{
    auto configuration = std::make_unique<TerminalStruct>(QStringLiteral("Benchmark"));
    for (int message = 0; message < messagesOf(plan); ++message) {
        TerminalCanCfg &channel = configuration->can[std::size_t(message % channels)];
        channel.enabled = 1;
        int position = 0;
        for (std::size_t i = 0; i < signalCount; ++i) {
            const quint8 width = widthsOf(plan)[i];
            channel.dbc_signals.add() = signalOf(message, i, position, width);
            position += width;
        }
    }
    return configuration;
}

EntryStream::EntryStream(const Plan &plan, quint32 start_us)
    : m_plan(plan)
    , m_start_us(start_us)
    , m_frames(std::make_unique<Frames>(plan))
{}

EntryStream::~EntryStream() = default;

QByteArray EntryStream::next(int count)
{
    const int messages = messagesOf(m_plan);
    QByteArray entries(count * entrySize, Qt::Uninitialized);
    char *to = entries.data();
    for (int i = 0; i < count; ++i, ++m_done, to += entrySize) {
        const auto message = static_cast<int>(m_done % messages);
        const auto since_us = static_cast<quint32>(quint64(m_done + 1) * m_plan.interval_us);
        putEntry(to, m_start_us + since_us, message, m_frames->next(message));
    }
    return entries;
}

QString write(const QString &path, const Plan &plan)
{
    RawLogFile file(path);
    bool ok = file.begin(*configuration(plan));
    EntryStream entries(plan);
    for (qint64 done = 0; ok && done < plan.entries;) {
        const auto count = static_cast<int>(qMin(entriesInBlock, plan.entries - done));
        ok = file.add(entries.next(count));
        done += count;
    }
    if (ok)
        file.finish();
    return file.failure();
}

} // namespace benchlog
