#include "MDF4Conversion/views/widgetconverterrld2xxx.h"

#include "MDF4Conversion/rld2xxxprogram.h"
#include "app/ui/userprompt.h"

#include <QCoreApplication>
#include <QDir>

namespace {

constexpr int endWait_ms = 3000;
const QString black = QStringLiteral("black");
const QString red = QStringLiteral("red");

} // namespace

WidgetConverterRld2XXX::WidgetConverterRld2XXX(const PlannedConversion &conversion,
                                               UserPrompt &prompt, QWidget *parent)
    : WidgetConverterBase(conversion,
                          {QStringLiteral("File Statistics"), QStringLiteral("Field"),
                           QStringLiteral("What the converter has read, converted and written")},
                          parent)
    , m_prompt(prompt)
    , m_process(this)
    , m_output(conversion.outputFile)
{
    connectProcess();
}

WidgetConverterRld2XXX::~WidgetConverterRld2XXX()
{
    m_process.disconnect(this);
    if (!m_isRunning)
        return;
    if (!isWorkDone()) {
        stop(conversionstate::cancelled);
        return;
    }
    const QString failure = publishOutput();
    if (!failure.isEmpty())
        m_prompt.warn(QStringLiteral("File-conversion not finished"), failure);
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
    m_closing.invalidate();
    m_isClosingTold = false;
    appendColoredLine(
        QStringLiteral("Selected Format: ") + conversionbatch::keyOf(conversion().format), black);
    const QString program =
        rld2xxxprogram::find(QDir::currentPath(), QCoreApplication::applicationDirPath());
    if (program.isEmpty())
        return appendStartError(QStringLiteral("The converter module is missing"));
    if (!m_output.prepare())
        return appendStartError(m_output.failure().toHtmlEscaped());
    if (!m_memory.create(conversion().inputFile)) {
        m_output.discard();
        return appendStartError(QStringLiteral("Shared Memory allocation failed"));
    }
    m_isRunning = true;
    m_process.setProgram(program);
    m_process.setArguments(
        rld2xxxprogram::arguments(conversion(), m_output.growingFile(), m_memory.key()));
    m_process.start(QIODevice::ReadWrite);
}

void WidgetConverterRld2XXX::appendStartError(const QString &cause)
{
    appendColoredLine(QStringLiteral("rld2xxx::Error - %1, can't start a conversion!").arg(cause),
                      red);
}

// What a process has made that has ended by itself gets its name with the next poll.
void WidgetConverterRld2XXX::cancel()
{
    if (m_isRunning && !isWorkDone())
        stop(conversionstate::cancelled);
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
    if (!m_isRunning)
        return;
    if (isWorkDone())
        return conclude();
    const bool isToldOver = hasToldItsEnd();
    if (isToldOver) {
        tellThatItCloses();
    } else if (m_memory.lockedOut_ms() >= m_lockLimit_ms) {
        giveUp(QStringLiteral("The conversion process has kept the shared memory locked for %1 "
                              "seconds!")
                   .arg(m_lockLimit_ms / 1000.0));
    } else if (m_watch.isSilentTooLong(m_process.state() != QProcess::NotRunning, isToldOver)) {
        giveUp(QStringLiteral("The conversion process did not respond!"));
    }
}

void WidgetConverterRld2XXX::giveUp(const QString &cause)
{
    appendColoredLine(cause + QStringLiteral(" Conversion was interrupted."), red);
    stop(conversionstate::finishedWithErrors);
}

bool WidgetConverterRld2XXX::hasToldItsEnd() const
{
    const auto record = m_memory.read();
    return record && record->isFinished();
}

// Only a process that has ended has surely closed its files.
bool WidgetConverterRld2XXX::isWorkDone() const
{
    return m_process.state() == QProcess::NotRunning && hasToldItsEnd();
}

void WidgetConverterRld2XXX::tellThatItCloses()
{
    if (!m_closing.isValid())
        m_closing.start();
    if (m_isClosingTold || m_closing.elapsed() < m_closingNotice_ms)
        return;
    m_isClosingTold = true;
    appendColoredLine(QStringLiteral("The conversion process has told its end, but still runs. The "
                                     "file gets its name when the process has ended; cancelling "
                                     "removes it."),
                      black);
}

void WidgetConverterRld2XXX::conclude()
{
    evaluateRecord(); // its last figures count
    showOutput();
    if (!m_isRunning)
        return; // another version
    const QString failure = publishOutput();
    if (!failure.isEmpty()) {
        appendColoredLine(failure.toHtmlEscaped(), red);
        m_memory.finish(conversionstate::finishedWithErrors);
    }
    m_output.discard();
    m_isRunning = false;
}

// Only what the process has converted to the end becomes a file, be it with errors. Returns what went
// wrong for the user, or nothing.
QString WidgetConverterRld2XXX::publishOutput()
{
    if (m_process.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("The conversion process has crashed before it had closed its file!");
    if (state() != conversionstate::finished && state() != conversionstate::finishedWithErrors)
        return {};
    return m_output.publish() ? QString() : m_output.failure();
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

void WidgetConverterRld2XXX::killProcess()
{
    m_process.kill();
    if (m_process.waitForFinished(endWait_ms) || m_process.state() == QProcess::NotRunning)
        m_memory.setUnshared();
}

// The process is killed first: only then nobody writes another state.
void WidgetConverterRld2XXX::stop(quint8 state)
{
    killProcess();
    m_memory.finish(state);
    m_output.discard();
    m_isRunning = false;
}

QString WidgetConverterRld2XXX::rowStatus(const QString &) const
{
    return isFinished() ? QStringLiteral("ended") : QStringLiteral("running");
}
