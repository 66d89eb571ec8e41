#include "MDF4Conversion/rawlog/syntheticlogs.h"

#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/rawlogfile.h"

#include <QDir>

#include <array>

namespace syntheticlogs {
namespace {

constexpr quint32 messageId = 0x123;
constexpr quint8 messageBytes = 8;

struct Frame
{
    quint32 timestamp_us;
    quint8 channel;
};

struct SyncStamp
{
    int aheadOfFrame; // index in the list of frames
    quint32 timestamp_us;
    quint8 processor;
};

using Frames = std::array<Frame, 7>;

constexpr Frames framesAfterOverflow = {
    {{0xE0000123, 0}, {8192, 0}, {256, 3}, {0x30E00, 0}, {3584, 3}, {0x31000, 0}, {0x31000, 3}}};
constexpr Frames framesWithJumpBack = {{{291, 0},
                                        {8192, 0},
                                        {0x10000100, 3},
                                        {0x10030E00, 0},
                                        {0x20000E00, 3},
                                        {0x31000, 0},
                                        {0x31000, 3}}};

// At most 0x10000040 us apart for each processor: none is missing.
constexpr SyncStamp stampsAcrossOverflow[] = {{0, 0xE0000000, 0}, {0, 0xE0000010, 1},
                                              {1, 0xF0000000, 0}, {1, 0xF0000010, 1},
                                              {2, 0x00000040, 0}, {2, 0x00000050, 1}};
constexpr SyncStamp stampsBehindOverflow[] = {
    {3, 0x00030000, 0}, {3, 0x00030010, 1}, {5, 0x00030F00, 0}, {5, 0x00030F10, 1}};

template <std::size_t N>
QByteArray stampsAhead(const SyncStamp (&stamps)[N], int frame)
{
    QByteArray bytes;
    for (const SyncStamp &stamp : stamps) {
        if (stamp.aheadOfFrame == frame)
            bytes += rawlog::syncStampEntry(stamp.timestamp_us, stamp.processor);
    }
    return bytes;
}

QByteArray syncStamps(int run, int aheadOfFrame)
{
    switch (run) {
    case 2:
        return stampsAhead(stampsAcrossOverflow, aheadOfFrame);
    case 3:
        return stampsAhead(stampsBehindOverflow, aheadOfFrame);
    default:
        return {};
    }
}

// The signal counts the frames.
QByteArray frameEntry(const Frame &frame, int index)
{
    QByteArray data(messageBytes, '\0');
    data[0] = static_cast<char>(index);
    return rawlog::canEntry(frame.timestamp_us, frame.channel, {messageId, false, data});
}

StreamingClass_DBC_Signal testSignal()
{
    StreamingClass_DBC_Signal signal;
    signal.name = QStringLiteral("Test-Signal");
    signal.unit = QStringLiteral("unit");
    signal.bit_length = 32;
    signal.little_endian = 1;
    signal.factor = 1;
    signal.maximum = 0xFFFFFFFFU;
    signal.selection_flags = StreamingClass_DBC_Signal::recordFlag;
    signal.dlc = messageBytes;
    signal.msg_id = messageId;
    return signal;
}

} // namespace

QString fileName(int run)
{
    return QStringLiteral("SyntheticLog_Simulation_%1.rld").arg(run);
}

std::unique_ptr<TerminalStruct> configuration()
{
    auto configuration = std::make_unique<TerminalStruct>(QStringLiteral("Synthetic"));
    for (TerminalCanCfg &channel : configuration->can) {
        channel.enabled = 1;
        channel.dbc_signals.add() = testSignal();
    }
    return configuration;
}

QByteArray entries(int run)
{
    const Frames &frames = run == 4 ? framesWithJumpBack : framesAfterOverflow;
    QByteArray bytes;
    int index = 0;
    for (const Frame &frame : frames) {
        bytes += syncStamps(run, index);
        bytes += frameEntry(frame, index);
        ++index;
    }
    return bytes;
}

QString write(int run, const QString &folder)
{
    RawLogFile file(QDir(folder).filePath(fileName(run)));
    if (file.begin(*configuration()) && file.add(entries(run)))
        file.finish();
    return file.failure();
}

} // namespace syntheticlogs
