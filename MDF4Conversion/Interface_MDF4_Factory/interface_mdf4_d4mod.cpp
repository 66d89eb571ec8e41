#include "MDF4Conversion/Interface_MDF4_Factory/interface_mdf4_d4mod.h"

#include "MDF4Conversion/Interface_MDF4_Factory/timestampedsource.h"
#include "MDF4Conversion/extractingchannel.h"
#include "config/d4mod_channel.h"

#include <algorithm>

namespace {

constexpr std::size_t valueBytes = 2;

// The text ends at the first NUL or with the entry.
QString textOf(const std::vector<quint8> &payload)
{
    const auto end = std::find(payload.begin(), payload.end(), quint8(0));
    return QString::fromLatin1(reinterpret_cast<const char *>(payload.data()),
                               int(end - payload.begin()));
}

} // namespace

MDF4_DataChannel_Linear_D4MOD::MDF4_DataChannel_Linear_D4MOD(int index)
    : m_index(index)
{
    name = QStringLiteral("Channel-Nr-%1").arg(index + 1);
    unit = QStringLiteral("unit");
    dataType = MdfDataType::UnsignedLittleEndian;
    size = valueBytes;
}

bool MDF4_DataChannel_Linear_D4MOD::extractData(const StdLogEntry &entry, RecordBuffer &record)
{
    const std::size_t place = std::size_t(m_index) * valueBytes;
    if (place + valueBytes > entry.data.size())
        return false;
    record.append(payload::at<quint16>(entry.data, place), valueBytes);
    return true;
}

void MDF4_DataChannel_Linear_D4MOD::applyTed(const QString &tedText)
{
    D4Mod_Channel ted;
    ted.parseTedBlock(tedText);
    name = ted.location.isEmpty() ? QStringLiteral("raw ADC") : ted.location;
    unit = ted.physical_unit.isEmpty() ? QStringLiteral("unit") : ted.physical_unit;
    factor = ted.use_scaling ? ted.sensitivity_b : 1;
    offset = ted.use_scaling ? ted.sensitivity_a : 0;
}

Interface_MDF4_D4MOD::Interface_MDF4_D4MOD(const MDF4_ConversionContext &handler, quint8 port)
    : MDF4_ChannelGroup(handler, QStringLiteral("RS485-%1-D4MOD").arg(port), 0)
    , m_port(port)
    , m_clock(handler, rawlog::RLD_D4MOD, port)
{}

bool Interface_MDF4_D4MOD::takeEntry(const StdLogEntry &entry)
{
    if (entry.number != m_port)
        return false;
    if (entry.type == rawlog::RLD_D4MOD)
        return takeSamples(entry);
    if (entry.type == rawlog::RLD_D4MOD_TED)
        takeTed(entry);
    return false; // a data sheet is no sample
}

void Interface_MDF4_D4MOD::takeTed(const StdLogEntry &entry)
{
    if (entry.info >= channels().size())
        return;
    auto &channel = static_cast<MDF4_DataChannel_Linear_D4MOD &>(*channels()[entry.info]);
    channel.applyTed(textOf(entry.data));
}

bool Interface_MDF4_D4MOD::takeSamples(const StdLogEntry &entry)
{
    const int count = entry.info;
    if (count == 0 || count > maxChannels || entry.data.size() < std::size_t(count) * valueBytes)
        return false;
    if (std::size_t(count) != channels().size())
        makeChannels(count);
    if (m_clock.checkTimestamp(entry.timestamp))
        context().messages->info(overflowHandledText(sigGrpName));
    RecordBuffer &record = beginRecord();
    for (const auto &channel : channels()) {
        channel->extractData(entry, record);
        channel->noteSample(m_clock.timestamp());
    }
    endRecord(m_clock.timestamp());
    return true;
}

void Interface_MDF4_D4MOD::makeChannels(int count)
{
    if (recordCount() != 0) {
        context().messages->warning(
            QStringLiteral(
                "%1 starts anew with %2 channels, %3 records with %4 channels are dropped.")
                .arg(sigGrpName.toHtmlEscaped())
                .arg(count)
                .arg(recordCount())
                .arg(channels().size()));
    }
    startAnew();
    for (int i = 0; i < count; ++i)
        addChannel(std::make_unique<MDF4_DataChannel_Linear_D4MOD>(i));
}

std::vector<EntrySelection> Interface_MDF4_D4MOD::selections() const
{
    EntrySelection samples;
    samples.type = rawlog::RLD_D4MOD;
    samples.number = m_port;
    EntrySelection dataSheets = samples;
    dataSheets.type = rawlog::RLD_D4MOD_TED;
    return {samples, dataSheets};
}
