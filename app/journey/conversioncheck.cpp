#include "app/journey/conversioncheck.h"

#include "MDF4Conversion/rawlog/entrytypes.h"
#include "MDF4Conversion/rawlog/logfilereader.h"
#include "tests/support/mdf4reader.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>
#include <vector>

namespace {

using Signal = StreamingClass_DBC_Signal;

struct Frame
{
    quint32 timestamp_us;
    std::vector<quint8> data;
};

// Frames by channel, width of the identifier and identifier.
struct FrameKey
{
    int channel;
    bool extended;
    quint32 id;

    bool operator<(const FrameKey &other) const
    {
        return std::tie(channel, extended, id) < std::tie(other.channel, other.extended, other.id);
    }
};
using Frames = std::map<FrameKey, std::vector<Frame>>;

Frames framesOf(LogFileReader &reader)
{
    Frames frames;
    for (bool atEnd = false; !atEnd;) {
        StdLogEntry entry;
        reader.next(entry, atEnd);
        if (atEnd || !entry.isComplete() || entry.type != rawlog::RLD_CAN)
            continue;
        const bool extended = (entry.id & rawlog::extendedIdFlag) != 0;
        const FrameKey key{entry.number, extended, rawlog::canIdentifier(entry.id)};
        frames[key].push_back({entry.timestamp, {entry.data.begin(), entry.data.end()}});
    }
    return frames;
}

// Bits are numbered as in a DBC file: from the least significant one of the first byte.
bool bitAt(const Frame &frame, int position)
{
    const auto byte = std::size_t(position / 8);
    return byte < frame.data.size() && (frame.data[byte] >> (position % 8) & 1) != 0;
}

qint64 rawValue(const Signal &signal, const Frame &frame)
{
    quint64 raw = 0;
    int position = signal.start_bit;
    for (int i = 0; i < signal.bit_length; ++i) {
        const quint64 bit = bitAt(frame, position) ? 1 : 0;
        if (signal.little_endian != 0) {
            raw |= bit << i;
            ++position;
        } else {
            raw = raw << 1 | bit;
            position += position % 8 == 0 ? 15 : -1;
        }
    }
    const bool isNegative = signal.is_signed != 0 && (raw >> (signal.bit_length - 1) & 1) != 0;
    return isNegative ? qint64(raw) - (qint64(1) << signal.bit_length) : qint64(raw);
}

bool areOfOneMessage(const Signal &a, const Signal &b)
{
    return a.msg_id == b.msg_id && a.extended_id == b.extended_id;
}

bool isRecorded(const Signal &signal)
{
    return (signal.selection_flags & Signal::recordFlag) != 0;
}

// What selects among the frames of a signal's message, and the values of it that are recorded.
struct Multiplexing
{
    const Signal *multiplexor = nullptr;
    std::set<qint32> recorded;
};

Multiplexing multiplexingOf(const TerminalCanCfg &channel, const Signal &signal)
{
    Multiplexing multiplexing;
    for (const Signal *other : channel.dbc_signals) {
        if (!areOfOneMessage(*other, signal))
            continue;
        if (other->mux_kind == MultiplexorSignal)
            multiplexing.multiplexor = other;
        else if (other->mux_kind == MultiplexedSignal && isRecorded(*other))
            multiplexing.recorded.insert(other->mux_value);
    }
    return multiplexing;
}

using Values = std::vector<double>;

Values valuesOf(const Signal &signal, const std::vector<Frame> &frames)
{
    Values values;
    for (const Frame &frame : frames)
        values.push_back(double(rawValue(signal, frame)) * signal.factor + signal.offset);
    return values;
}

std::vector<Frame> framesWith(const Signal &multiplexor, qint32 value,
                              const std::vector<Frame> &frames)
{
    std::vector<Frame> chosen;
    for (const Frame &frame : frames) {
        if (rawValue(multiplexor, frame) == value)
            chosen.push_back(frame);
    }
    return chosen;
}

// The values that were sent, in the order of the frames; each list is of one group. A multiplexed
// message has a group for each value of its multiplexor, which is no channel then.
std::vector<Values> sentValues(const TerminalCanCfg &channel, const Signal &signal,
                               const std::vector<Frame> &frames)
{
    const Multiplexing multiplexing = multiplexingOf(channel, signal);
    if (multiplexing.multiplexor == nullptr || multiplexing.recorded.empty())
        return {valuesOf(signal, frames)};
    if (signal.mux_kind == MultiplexorSignal)
        return {};
    const std::set<qint32> ofSignal{signal.mux_value};
    const bool isPlain = signal.mux_kind == PlainSignal;
    std::vector<Values> groups;
    for (const qint32 value : isPlain ? multiplexing.recorded : ofSignal)
        groups.push_back(valuesOf(signal, framesWith(*multiplexing.multiplexor, value, frames)));
    return groups;
}

class Mf4
{
public:
    bool open(const QString &path) { return m_reader.open(path.toStdWString()); }
    [[nodiscard]] QString error() const { return QString::fromStdString(m_reader.error()); }

    // Whether a group has these values under this name, and no others.
    [[nodiscard]] bool holds(const std::string &name, const std::vector<double> &values)
    {
        for (const mdf4reader::Group &group : m_reader.file().groups) {
            const mdf4reader::Channel *channel = group.channel(name);
            if (channel != nullptr && group.cycleCount == values.size()
                && areValues(group, *channel, values))
                return true;
        }
        return false;
    }

private:
    bool areValues(const mdf4reader::Group &group, const mdf4reader::Channel &channel,
                   const std::vector<double> &values)
    {
        const std::vector<unsigned char> records = m_reader.records(group);
        if (records.size() != values.size() * group.dataBytes)
            return false;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto value =
                mdf4reader::physicalValue(channel, records.data() + i * group.dataBytes);
            const double tolerance = 1e-9 * (1 + std::abs(values[i]));
            if (!value || std::abs(*value - values[i]) > tolerance)
                return false;
        }
        return true;
    }

    mdf4reader::Reader m_reader;
};

// From the first to the last frame of all.
struct Span
{
    quint32 first_us = 0xFFFFFFFF;
    quint32 last_us = 0;

    [[nodiscard]] double seconds() const
    {
        return last_us > first_us ? double(last_us - first_us) * 1e-6 : 0;
    }
};

Span spanOf(const Frames &frames)
{
    Span span;
    for (const auto &message : frames) {
        span.first_us = qMin(span.first_us, message.second.front().timestamp_us);
        span.last_us = qMax(span.last_us, message.second.back().timestamp_us);
    }
    return span;
}

// What is wrong with the times of a message's frames; null if none is missing, and none too many.
QString irregularity(const std::vector<Frame> &frames, const Span &log, qint64 period_us)
{
    qint64 before_us = log.first_us;
    const auto gapText = [&](qint64 until_us) {
        return QStringLiteral("sent every %1 ms, but not from %2 ms to %3 ms of the log")
            .arg(double(period_us) / 1000)
            .arg(double(before_us - log.first_us) / 1000)
            .arg(double(until_us - log.first_us) / 1000);
    };
    const double longest_us = 1.5 * double(period_us);
    const double shortest_us = 0.5 * double(period_us);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const qint64 time_us = frames[i].timestamp_us;
        if (double(time_us - before_us) > longest_us)
            return gapText(time_us);
        if (i > 0 && double(time_us - before_us) < shortest_us)
            return QStringLiteral("sent every %1 ms, but twice at %2 ms of the log")
                .arg(double(period_us) / 1000)
                .arg(double(time_us - log.first_us) / 1000);
        before_us = time_us;
    }
    return double(log.last_us - before_us) > longest_us ? gapText(log.last_us) : QString();
}

QString rangeText(const Values &values)
{
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    return QStringLiteral("%1 .. %2").arg(*low).arg(*high);
}

// False at the first signal that lacks samples.
bool checkSignal(const QString &name, const Signal &signal, const std::vector<Values> &sent,
                 Mf4 &converted, ConversionCheck &check)
{
    for (const Values &values : sent) {
        if (values.empty() || !converted.holds(signal.name.toStdString(), values)) {
            check.failure = QStringLiteral("%1: the %2 values that were sent are not there")
                                .arg(name)
                                .arg(values.size());
            return false;
        }
        check.samples += values.size();
        check.found += QStringLiteral("%1: %2 samples, %3 %4")
                           .arg(name)
                           .arg(values.size())
                           .arg(rangeText(values), signal.unit);
    }
    return true;
}

// Whether the log says that it records the signal just as it was chosen.
bool isInHead(const TerminalCanCfg &head, const Signal &chosen)
{
    const QByteArray bytes = record::toBytes(chosen);
    const auto &held = head.dbc_signals;
    return std::any_of(held.begin(), held.end(), [&bytes](const Signal *signal) {
        return record::toBytes(*signal) == bytes;
    });
}

// Compares one log and its conversion with what was chosen, signal by signal.
class Comparison
{
public:
    Comparison(const ExpectedLog &expected, const TerminalStruct &head, const Frames &frames,
               Mf4 &converted, ConversionCheck &check)
        : m_expected(expected)
        , m_head(head)
        , m_frames(frames)
        , m_span(spanOf(frames))
        , m_converted(converted)
        , m_check(check)
    {
        check.length_s = m_span.seconds();
    }

    // False at the first signal that is not as it has to be.
    bool run()
    {
        const auto &channels = m_expected.configuration.can;
        for (std::size_t number = 0; number < channels.size(); ++number) {
            for (const Signal *signal : channels[number].dbc_signals) {
                if (isRecorded(*signal) && !compare(int(number), *signal))
                    return false;
            }
        }
        return true;
    }

private:
    bool compare(int number, const Signal &signal)
    {
        const QString name = QStringLiteral("CAN-%1 %2").arg(number).arg(signal.name);
        const auto fail = [&](const QString &cause) {
            m_check.failure = name + QStringLiteral(": ") + cause;
            return false;
        };
        if (!isInHead(m_head.can[std::size_t(number)], signal))
            return fail(QStringLiteral("the log doesn't hold it as it was chosen"));
        const auto message = m_frames.find({number, signal.extended_id != 0, signal.msg_id});
        if (message == m_frames.end())
            return fail(QStringLiteral("its message is not in the log"));
        const qint64 period_us = periodOf(message->first);
        if (period_us <= 0)
            return fail(QStringLiteral("nobody knows how often it is sent"));
        const QString irregular = irregularity(message->second, m_span, period_us);
        if (!irregular.isNull())
            return fail(irregular);
        const TerminalCanCfg &channel = m_expected.configuration.can[std::size_t(number)];
        return checkSignal(name, signal, sentValues(channel, signal, message->second), m_converted,
                           m_check);
    }

    [[nodiscard]] qint64 periodOf(const FrameKey &key) const
    {
        for (const MessageCycle &cycle : m_expected.cycles) {
            if (cycle.channel == key.channel && cycle.extended == key.extended
                && cycle.id == key.id)
                return cycle.period_us;
        }
        return 0;
    }

    const ExpectedLog &m_expected;
    const TerminalStruct &m_head;
    const Frames &m_frames;
    const Span m_span;
    Mf4 &m_converted;
    ConversionCheck &m_check;
};

} // namespace

ConversionCheck checkConversion(const QString &rawLog, const QString &mf4,
                                const ExpectedLog &expected)
{
    ConversionCheck check;
    LogFileReader reader(rawLog);
    Mf4 converted;
    if (!reader.isOpen())
        check.failure = QStringLiteral("%1: %2").arg(rawLog, reader.failure());
    else if (!converted.open(mf4))
        check.failure = QStringLiteral("%1: %2").arg(mf4, converted.error());
    if (!check.failure.isNull())
        return check;
    const Frames frames = framesOf(reader);
    const bool ok = Comparison(expected, *reader.configuration(), frames, converted, check).run();
    if (ok && check.found.isEmpty())
        check.failure = QStringLiteral("%1: no signal was chosen").arg(rawLog);
    return check;
}
