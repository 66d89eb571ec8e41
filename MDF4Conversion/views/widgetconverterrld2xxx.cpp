#include "MDF4Conversion/views/widgetconverterrld2xxx.h"

#include "MDF4Conversion/rld2xxxprogram.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int endWait_ms = 3000;
const QString black = QStringLiteral("black");
const QString red = QStringLiteral("red");

} // namespace

WidgetConverterRld2XXX::FileStamp WidgetConverterRld2XXX::FileStamp::of(const QString &path)
{
    const QFileInfo file(path);
    return {file.exists(), file.size(), file.lastModified()};
}

bool WidgetConverterRld2XXX::FileStamp::operator==(const FileStamp &other) const
{
    return exists == other.exists && size == other.size && modified == other.modified;
}

WidgetConverterRld2XXX::WidgetConverterRld2XXX(const PlannedConversion &conversion, QWidget *parent)
    : WidgetConverterBase(conversion,
                          {QStringLiteral("File Statistics"), QStringLiteral("Field"),
                           QStringLiteral("What the converter has read, converted and written")},
                          parent)
    , m_process(this)
{
    connectProcess();
}

WidgetConverterRld2XXX::~WidgetConverterRld2XXX()
{
    m_process.disconnect(this);
    if (m_process.state() == QProcess::NotRunning)
        return;
    if (isFinished() && m_process.waitForFinished(endWait_ms))
        return;
    stop(isFinished() ? state() : conversionstate::cancelled);
}

void WidgetConverterRld2XXX::connectProcess()
{
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            [this] { collect(m_out, m_process.readAllStandardOutput()); });
    connect(&m_process, &QProcess::readyReadStandardError, this,
            [this] { collect(m_err, m_process.readAllStandardError()); });
    // A process may have last words behind the news that the conversion is over.
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, [this] {
        m_memory.setUnshared();
        collectRest();
        if (isFinished())
            showOutput();
    });
}

void WidgetConverterRld2XXX::start()
{
    startClock();
    m_watch = Rld2xxxWatch();
    appendColoredLine(
        QStringLiteral("Selected Format: ") + conversionbatch::keyOf(conversion().format), black);
    const QString program =
        rld2xxxprogram::find(QDir::currentPath(), QCoreApplication::applicationDirPath());
    if (program.isEmpty()) {
        appendColoredLine(QStringLiteral("rld2xxx::Error - The converter module is missing, can't "
                                         "start a conversion!"),
                          red);
        return;
    }
    if (!m_memory.create(conversion().inputFile)) {
        appendColoredLine(QStringLiteral("rld2xxx::Error - Shared Memory allocation failed, can't "
                                         "start a conversion!"),
                          red);
        return;
    }
    m_memory.clear();
    m_outputBefore = FileStamp::of(conversion().outputFile);
    m_process.setProgram(program);
    m_process.setArguments(rld2xxxprogram::arguments(conversion(), m_memory.key()));
    m_process.start(QIODevice::ReadWrite);
}

void WidgetConverterRld2XXX::cancel()
{
    if (!isFinished())
        stop(conversionstate::cancelled);
}

bool WidgetConverterRld2XXX::isFinished() const
{
    const auto record = m_memory.read();
    return !record || record->isFinished();
}

quint8 WidgetConverterRld2XXX::state() const
{
    const auto record = m_memory.read();
    return record ? record->state() : conversionstate::finishedWithErrors;
}

void WidgetConverterRld2XXX::poll()
{
    evaluateRecord();
    showOutput();
    if (isFinished())
        evaluateRecord(); // it may have ended meanwhile: its last figures count
    if (!m_watch.isSilentTooLong(m_process.state() != QProcess::NotRunning, isFinished()))
        return;
    appendColoredLine(
        QStringLiteral("The conversion process did not respond! Conversion was interrupted."), red);
    stop(conversionstate::finishedWithErrors);
}

void WidgetConverterRld2XXX::evaluateRecord()
{
    const auto record = m_memory.read();
    if (!record)
        return;
    const Rld2xxxWatch::Finding finding = m_watch.look(*record);
    if (finding.incompatibleVersion) {
        stop(conversionstate::finishedWithErrors);
        appendColoredLine(QStringLiteral("Wrong converter version included. "
                                         "%Compatible: %1.0 Found: %2.0 ")
                              .arg(Rld2xxxRecord::compatibleVersion)
                              .arg(*finding.incompatibleVersion),
                          red);
    }
    if (finding.percent)
        updateProgress(*finding.percent);
    updateTree(finding.tree, true);
}

// What is beyond the limit of lines is read, so that the process can go on, and dropped.
void WidgetConverterRld2XXX::collect(Stream &stream, const QByteArray &bytes)
{
    const QStringList lines = stream.splitter.feed(bytes);
    if (stream.lines.size() < MessageLimits::limit(MessageLimits::Kind::Plain))
        stream.lines += lines;
}

void WidgetConverterRld2XXX::collectRest()
{
    collect(m_out, m_process.readAllStandardOutput());
    collect(m_err, m_process.readAllStandardError());
    m_out.lines += m_out.splitter.finish();
    m_err.lines += m_err.splitter.finish();
}

void WidgetConverterRld2XXX::showOutput()
{
    if (m_out.lines.isEmpty() && m_err.lines.isEmpty())
        return;
    appendTogether([this] {
        for (Stream *stream : {&m_out, &m_err}) {
            const QStringList lines = std::exchange(stream->lines, {});
            for (const QString &line : lines)
                appendColoredLine(line.toHtmlEscaped(), stream->color);
        }
    });
}

// The process is killed first: only then nobody writes another state.
void WidgetConverterRld2XXX::stop(quint8 state)
{
    m_process.kill();
    if (m_process.waitForFinished(endWait_ms) || m_process.state() == QProcess::NotRunning)
        m_memory.setUnshared();
    m_memory.finish(state);
    removeUnfinishedOutput();
}

// The process writes under the final name, where nothing half may stay. What it hasn't touched is a
// file from before.
void WidgetConverterRld2XXX::removeUnfinishedOutput()
{
    const QString output = conversion().outputFile.trimmed();
    if (!(FileStamp::of(output) == m_outputBefore))
        QFile::remove(output);
}

QString WidgetConverterRld2XXX::rowStatus(const QString &) const
{
    return isFinished() ? QStringLiteral("ended") : QStringLiteral("running");
}
