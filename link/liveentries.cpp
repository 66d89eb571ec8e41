#include "link/liveentries.h"

#include "MDF4Conversion/rawlog/entrytypes.h"
#include "can/framelengths.h"

#include <QtEndian>

#include <memory>

namespace live {

namespace {

constexpr int entryOverhead = 4; // an entry is its length word and four bytes
constexpr int bodyStart = 8;
constexpr int payloadStart = 12; // behind the timestamp
constexpr int maxD4modChannels = 15;
constexpr int maxTedChannels = 16;
constexpr int maxEthernetLength = 1850;
constexpr quint8 rs485Interface = 1; // of transparent data

template <class T>
T read(const QByteArray &entry, int at)
{
    return qFromLittleEndian<T>(entry.constData() + at);
}

int lengthOf(const QByteArray &entry)
{
    return entry.size() - entryOverhead;
}

// Degrees in units of 1e-7 as sign and magnitude. The logger's own software divides in single
// precision, and the shown position is to be the same.
double degrees(quint32 signAndMagnitude)
{
    const float magnitude = float(signAndMagnitude & 0x7FFFFFFFU) / 1e7F;
    return double((signAndMagnitude & 0x80000000U) != 0 ? -magnitude : magnitude);
}

} // namespace

CAN_Msg_Class *canMessage(const QByteArray &entry)
{
    constexpr int idAt = 12;
    constexpr int dataAt = 16;
    constexpr quint32 rtrFlag = 1U << 29;
    const int dataLength = infoOf(entry);
    if (numberOf(entry) >= canChannels || entry.size() < dataAt + dataLength)
        return nullptr;
    const auto idWord = read<quint32>(entry, idAt);
    const bool isRemote = (idWord & rtrFlag) != 0;
    if (!can::isDataLength(dataLength, isRemote ? can::FrameFormat::Classic : can::FrameFormat::Fd))
        return nullptr;
    auto message = std::make_unique<CAN_Msg_Class>();
    message->timestamp_us = read<quint32>(entry, bodyStart);
    message->extended = (idWord & rawlog::extendedIdFlag) != 0;
    message->rtr = isRemote;
    message->id = rawlog::canIdentifier(idWord);
    message->data = entry.mid(dataAt, dataLength);
    return message.release();
}

std::optional<AGM_DataContainer> agmSample(const QByteArray &entry)
{
    AGM_DataContainer sample;
    constexpr int wordSize = 4;
    if (entry.size() < bodyStart + wordSize * int(sample.words.size()))
        return {};
    int at = bodyStart;
    for (quint32 &word : sample.words) {
        word = read<quint32>(entry, at);
        at += wordSize;
    }
    return sample;
}

QVector<D4Mod_Msg_Class> d4modValues(const QByteArray &entry)
{
    const int count = infoOf(entry);
    if (numberOf(entry) >= rs485Ports || count > maxD4modChannels
        || entry.size() < payloadStart + 2 * count)
        return {};
    QVector<D4Mod_Msg_Class> values;
    for (int i = 0; i < count; ++i)
        values.append({read<quint32>(entry, bodyStart), quint8(i),
                       read<quint16>(entry, payloadStart + 2 * i)});
    return values;
}

std::optional<GPS_DataContainer> gpsFix(const QByteArray &entry)
{
    constexpr int size = 34;
    if (entry.size() < size)
        return {};
    GPS_DataContainer fix;
    fix.timestamp_us = read<quint32>(entry, bodyStart);
    const auto flags = read<quint8>(entry, 12);
    fix.valid = (flags & 1) != 0;
    fix.second_flag = (flags & 2) != 0;
    fix.hour = read<quint8>(entry, 13);
    fix.minute = read<quint8>(entry, 14);
    fix.second = read<quint8>(entry, 15);
    fix.year = read<quint16>(entry, 16);
    fix.month = read<quint8>(entry, 18);
    fix.day = read<quint8>(entry, 19);
    fix.course = read<quint16>(entry, 20);
    fix.speed = read<quint16>(entry, 22);
    fix.latitude = degrees(read<quint32>(entry, 24));
    fix.longitude = degrees(read<quint32>(entry, 28));
    fix.altitude = read<qint16>(entry, 32);
    return fix;
}

std::optional<LTE_DataContainer> lteStatus(const QByteArray &entry)
{
    constexpr int size = 16;
    if (entry.size() < size)
        return {};
    return LTE_DataContainer{read<quint8>(entry, 8), read<quint8>(entry, 9),
                             read<quint8>(entry, 10), read<quint32>(entry, 12)};
}

std::optional<SystemInfos> systemInfos(const QByteArray &entry)
{
    constexpr int size = 20;
    if (entry.size() < size)
        return {};
    SystemInfos infos;
    infos.word_high = read<quint16>(entry, 8);
    infos.word_low = read<quint16>(entry, 10);
    infos.flags = read<quint32>(entry, 12);
    infos.further = read<quint32>(entry, 16);
    infos.received = true;
    return infos;
}

bool isEthernetEntry(const QByteArray &entry)
{
    return numberOf(entry) == 0 && lengthOf(entry) <= maxEthernetLength
           && entry.size() >= payloadStart;
}

ETH_Frame_Class *ethernetFrame(const QByteArray &entry)
{
    auto frame = std::make_unique<ETH_Frame_Class>();
    frame->timestamp_us = read<quint32>(entry, bodyStart);
    frame->data = entry.mid(payloadStart);
    return frame.release();
}

std::optional<XcpInfos> xcpInfos(const QByteArray &entry)
{
    constexpr int size = 12;
    if (entry.size() < size)
        return {};
    return XcpInfos{read<qint8>(entry, 8), read<qint8>(entry, 9), read<qint8>(entry, 10),
                    read<qint8>(entry, 11)};
}

std::optional<EtherCatInfos> etherCatInfos(const QByteArray &entry)
{
    constexpr int size = 15;
    if (entry.size() < size)
        return {};
    EtherCatInfos infos;
    infos.masterState = read<quint8>(entry, 9);
    infos.workingCounter = read<quint16>(entry, 10);
    // The logger sends it so: byte 11 belongs to both numbers.
    infos.lastError = quint16(read<quint8>(entry, 11) | read<quint8>(entry, 13) << 8);
    infos.lastErrorSlave = read<quint8>(entry, 14);
    return infos;
}

QVector<quint16> dtiVoltages(const QByteArray &entry)
{
    const int count = infoOf(entry);
    if (numberOf(entry) >= rs485Ports || count > maxD4modChannels
        || entry.size() < bodyStart + 2 * count)
        return {};
    QVector<quint16> voltages;
    for (int i = 0; i < count; ++i)
        voltages.append(read<quint16>(entry, bodyStart + 2 * i));
    return voltages;
}

QString tedText(const QByteArray &entry)
{
    if (numberOf(entry) >= rs485Ports || infoOf(entry) >= maxTedChannels)
        return {};
    const int end = entry.indexOf('\0', bodyStart);
    const QByteArray text = entry.mid(bodyStart, end < 0 ? -1 : end - bodyStart);
    return text.contains("@@") ? QString::fromLatin1(text) : QString();
}

std::optional<Rs485Infos> rs485Infos(const QByteArray &entry)
{
    constexpr int size = 11;
    if (numberOf(entry) >= rs485Ports || entry.size() < size)
        return {};
    return Rs485Infos{read<quint8>(entry, 8), read<quint16>(entry, 9)};
}

std::optional<CcpXcpInfos> ccpXcpInfos(const QByteArray &entry)
{
    constexpr int size = 10;
    if (numberOf(entry) >= canChannels || entry.size() < size)
        return {};
    return CcpXcpInfos{read<quint8>(entry, 8), read<quint8>(entry, 9)};
}

TransparentData transparentData(const QByteArray &entry)
{
    using Result = TransparentData::Result;
    const int length = lengthOf(entry);
    if (length <= 11)
        return {};
    if (infoOf(entry) != rs485Interface)
        return {Result::UnknownInterface, {}};
    if (numberOf(entry) >= rs485Ports)
        return {};
    // Entries are filled up to whole words; sub holds how many bytes of the last one count.
    const int sub = subOf(entry);
    const int dataLength = sub == 0 ? length - 8 : length - 12 + (sub & 3);
    return {Result::Data, entry.mid(payloadStart, dataLength)};
}

} // namespace live
