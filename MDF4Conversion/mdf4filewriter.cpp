#include "MDF4Conversion/mdf4filewriter.h"

#include "MDF4Conversion/lib_mdf4/mdf4/m4streams.h"
#include "MDF4Conversion/mdf4_channelgroup.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "MDF4Conversion/workerconvertmdf4.h"
#include "config/terminalstruct.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>

#include <cassert>

namespace {

constexpr quint64 recordId = 1;
constexpr int shortestFileName = 4;

QString a2lFile(const QString &port, int number, const QString &name)
{
    if (name.size() < shortestFileName)
        return QString();
    return QStringLiteral("[%1%2 | ").arg(port).arg(number) + name + QStringLiteral("] ");
}

QString a2lFiles(const TerminalStruct &configuration)
{
    QString files;
    for (std::size_t i = 0; i < configuration.can.size(); ++i)
        files += a2lFile(QStringLiteral("CAN"), int(i), configuration.can[i].a2l.a2l_file_name);
    files += a2lFile(QStringLiteral("ETH"), 0, configuration.eth.xcp.module.a2l_file_name);
    return files.isEmpty() ? QStringLiteral("no loaded a2l files") : files;
}

} // namespace

Mdf4Header mdf4Header(const TerminalStruct &configuration, const ConversionJob &job,
                      quint64 utcStart_us)
{
    Mdf4Header header;
    header.comment = a2lFiles(configuration);
    header.author = job.author;
    header.department = job.department;
    header.project = configuration.event.event_name;
    header.subject = QStringLiteral("---");
    header.startTime_ns = utcStart_us * 1000;
    return header;
}

Mdf4FileWriter::Mdf4FileWriter(MDF4_Conversion_Msg_Interface &messages,
                               const std::atomic<bool> &cancelled)
    : m_messages(messages)
    , m_cancelled(cancelled)
{}

Mdf4FileWriter::~Mdf4FileWriter()
{
    if (!m_closed)
        m_file.abort();
}

bool Mdf4FileWriter::fail(const QString &text)
{
    m_messages.error(text.toHtmlEscaped());
    return false;
}

bool Mdf4FileWriter::failFile()
{
    return fail(QCoreApplication::translate("Conversion", "Output file %1: %2")
                    .arg(QDir::toNativeSeparators(m_finalName),
                         QString::fromStdString(m_file.lastError())));
}

bool Mdf4FileWriter::create(const QString &path, const QString &finalName, const Mdf4Header &header)
{
    m_finalName = finalName;
    const std::string toolVersion = std::to_string(WorkerConvertMDF4::versionMajor) + "."
                                    + std::to_string(WorkerConvertMDF4::versionMinor);
    const std::string history =
        mdf4::fileHistoryComment({"Zelvo-ZDS", "Zelvo Data Acquisition", toolVersion});
    const std::string comment = mdf4::headerComment(
        {header.comment.toStdString(), header.author.toStdString(), header.department.toStdString(),
         header.project.toStdString(), header.subject.toStdString()});
    const bool ok = m_file.Create(path.toStdU16String())
                    && m_file.addFH(header.startTime_ns, history) != nullptr
                    && m_file.setComment(comment) && m_file.setStartTime(header.startTime_ns);
    return ok || failFile();
}

bool Mdf4FileWriter::writeGroups(const std::vector<MDF4_ChannelGroup *> &groups, quint64 start_us,
                                 int threads)
{
    std::vector<BlockPipeline::Source> sources;
    for (MDF4_ChannelGroup *group : groups) {
        if (m_cancelled)
            return false;
        if (!group->records().finish())
            return fail(group->records().failure());
        BlockPipeline::Source source;
        source.path = group->records().path();
        source.recordSize = group->recordSize();
        source.size = group->recordCount() * group->recordSize();
        assert((source.size == 0 || !source.path.isEmpty()) && "tmp-file mdf4-DataBlock not open");
        const auto fileSize = quint64(group->records().size());
        if (fileSize != source.size)
            qDebug() << "Size Mismatch, Modulo: " << fileSize % source.recordSize
                     << " | FileSize:" << fileSize << " | Record Size:" << source.recordSize;
        assert(fileSize == source.size
               && "Extracted data-size have to match a channel-grp record-sample in size.");
        source.blockSize = quint32(m4BlockSize(group->recordSize(), group->recordCount()));
        m_totalBytes += source.size;
        sources.push_back(source);
    }
    BlockPipeline blocks(sources, start_us, threads);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (m_cancelled || !writeGroup(*groups[i], sources[i], blocks))
            return false;
    }
    return !m_cancelled;
}

bool Mdf4FileWriter::writeGroup(MDF4_ChannelGroup &group, const BlockPipeline::Source &source,
                                BlockPipeline &blocks)
{
    m_messages.info(
        QStringLiteral("Writing: channel-group:%1 signal-count:%2")
            .arg(group.sigGrpName.toHtmlEscaped(), QString::number(group.channels().size())));
    M4DGBlock *dg = m_file.addDG();
    M4CGBlock *cg = dg ? addGroup(group, dg) : nullptr;
    if (!cg)
        return m_file.failed() ? failFile() : false;
    m_file.noteCycleCount(*cg);
    m4DZStreamEx stream(m_file, dg, source.blockSize, source.recordSize);
    for (quint64 i = BlockPipeline::blockCount(source); i > 0; --i) {
        if (m_cancelled)
            return false;
        const BlockPipeline::Block block = blocks.next();
        if (!block.failure.isEmpty())
            return fail(block.failure);
        reportDisorder(group, block);
        if (!stream.writeCompressed(block.data))
            return failFile();
        reportProgress(block.data.originalSize);
    }
    m_file.addCycles(recordId, group.recordCount());
    if (!stream.close())
        return failFile();
    reportIntervals(group);
    return true;
}

M4CGBlock *Mdf4FileWriter::addGroup(const MDF4_ChannelGroup &group, M4DGBlock *dg)
{
    M4CGBlock *cg = m_file.addCG(dg, recordId, group.recordSize());
    if (!cg || !cg->addTimeChannel())
        return nullptr;
    quint32 byteOffset = MDF4_ChannelGroup::timeBytes;
    for (const auto &channel : group.channels()) {
        if (m_cancelled || !addChannel(*cg, *channel, byteOffset))
            return nullptr;
        byteOffset += channel->size;
    }
    return cg;
}

bool Mdf4FileWriter::addChannel(M4CGBlock &cg, const MDF4_DataChannel &channel, quint32 byteOffset)
{
    constexpr quint8 fixedLengthChannel = 0;
    const QString name = channel.name.isEmpty() ? QStringLiteral("Unnamed") : channel.name;
    M4CNBlock *cn =
        cg.addCN(name.toStdString(), fixedLengthChannel, static_cast<quint8>(channel.dataType),
                 byteOffset, channel.size, channel.rangeMin, channel.rangeMax);
    if (!cn || !cn->setUnit(channel.unit.toStdString()))
        return false;
    const std::unique_ptr<M4CCBlock> conversion = channel.conversionBlock();
    if (conversion && conversion->fits()) {
        if (!cn->setConversion(*conversion))
            return false;
    } else {
        m_messages.warning(QCoreApplication::translate(
                               "Conversion", "Signal %1 is written without conversion, its "
                                             "coefficients or its table can't be written.")
                               .arg(name.toHtmlEscaped()));
    }
    return true;
}

void Mdf4FileWriter::reportDisorder(const MDF4_ChannelGroup &group,
                                    const BlockPipeline::Block &block)
{
    for (const auto &[current, last] : block.disorder) {
        m_messages.error(QStringLiteral("Timestamp-error, current-ts smaller or equal than last-ts "
                                        "(ChannelGroup:%1) (currentTS %2 lastTS %3")
                             .arg(group.sigGrpName.toHtmlEscaped(), QString::number(current),
                                  QString::number(last)));
    }
}

void Mdf4FileWriter::reportProgress(quint64 bytes)
{
    m_doneBytes += bytes;
    const quint64 step = qMax<quint64>(m_totalBytes / 100, 1);
    const int percentage = int(qMin<quint64>(m_doneBytes / step, 100));
    if (percentage > m_lastPercentage) {
        m_lastPercentage = percentage;
        m_messages.progress(100, percentage);
    }
}

void Mdf4FileWriter::reportIntervals(const MDF4_ChannelGroup &group)
{
    for (const auto &channel : group.channels()) {
        m_messages.info(QStringLiteral("Signal:%1 Intervall min:%2 avg:%3 max:%4 [uSec]")
                            .arg(channel->name.toHtmlEscaped(),
                                 QString::number(channel->minInterval()),
                                 QString::number(channel->averageInterval(), 'f', 2),
                                 QString::number(channel->maxInterval())));
    }
    m_messages.info(QString());
}

bool Mdf4FileWriter::close()
{
    m_closed = m_file.close();
    return m_closed || failFile();
}
