#include "MDF4Conversion/views/widgetconvertermdf4.h"

#include "MDF4Conversion/workerconvertmdf4.h"
#include "app/ui/userprompt.h"

#include <QDebug>
#include <QDir>
#include <QThread>

namespace {

constexpr unsigned long endWait_ms = 3000;
constexpr std::size_t messagesPerPoll = 1000; // of a tenth of a second, so that the window answers

bool isEmptyDir(const QString &path)
{
    return QDir(path)
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
        .isEmpty();
}

} // namespace

// Owns the worker that runs on it. The worker is deleted with it, when both have ended.
class WidgetConverterMdf4::Thread : public QThread
{
public:
    explicit Thread(const ConversionJob &job)
        : m_worker(std::make_unique<WorkerConvertMDF4>(job))
    {
        m_worker->moveToThread(this);
    }

    [[nodiscard]] WorkerConvertMDF4 &worker() { return *m_worker; }

    // Once it has ended, which may be now.
    void deleteWhenFinished()
    {
        connect(this, &QThread::finished, this, &QObject::deleteLater);
        if (isFinished())
            deleteLater();
    }

private:
    const std::unique_ptr<WorkerConvertMDF4> m_worker;
};

WidgetConverterMdf4::WidgetConverterMdf4(const PlannedConversion &conversion,
                                         const ConversionJob &job, UserPrompt &prompt,
                                         QWidget *parent)
    : WidgetConverterBase(conversion,
                          {QStringLiteral("Signals"), QStringLiteral("Signal"),
                           QStringLiteral("The signals of the log and how many samples of each "
                                          "were found")},
                          parent)
    , m_prompt(prompt)
    , m_job(job)
{
    m_job.inputFile = conversion.inputFile;
    m_job.outputFile = conversion.outputFile;
    m_job.temporaryDir = conversion.temporaryDir;
}

WidgetConverterMdf4::~WidgetConverterMdf4()
{
    if (!m_thread) {
        if (isEmptyDir(conversion().temporaryDir))
            QDir().rmdir(conversion().temporaryDir);
        return;
    }
    m_thread->worker().disconnect(this);
    if (!m_thread->isFinished()) {
        m_thread->worker().requestCancelProcess();
        m_state = conversionstate::cancelled;
        m_thread->quit(); // the worker's own news of its end isn't delivered any more
        m_thread->wait(endWait_ms);
    }
    if (m_thread->isFinished()) {
        cleanUpTemporaryDir();
    } else {
        m_prompt.inform(QStringLiteral("File-conversion not finished"),
                        QStringLiteral("Conversion of file %1 not finished, tmp files at %2 not "
                                       "deleted.")
                            .arg(conversion().inputFile, conversion().temporaryDir));
    }
    m_thread->deleteWhenFinished();
}

// The worker may have had to take another folder than the planned one, which is somebody else's
// then.
void WidgetConverterMdf4::cleanUpTemporaryDir()
{
    const QString &folder = m_thread->worker().summary().temporaryDir;
    if (folder.isEmpty() || !QDir(folder).exists())
        return;
    if (isEmptyDir(folder)) {
        QDir(folder).removeRecursively();
        return;
    }
    m_prompt.inform(QStringLiteral("File-conversion cleanup incomplete"),
                    QStringLiteral("Conversion cleanup incomplete for file %1. Unable to cleanup "
                                   "temporary files within directory %2.")
                        .arg(conversion().inputFile, folder));
}

void WidgetConverterMdf4::start()
{
    startClock();
    m_thread = new Thread(m_job);
    connectWorker();
    m_state = conversionstate::running;
    m_thread->start(QThread::InheritPriority);
    if (m_thread->isRunning() || m_thread->isFinished())
        return;
    delete m_thread;
    m_thread = nullptr;
    appendErrLine(QStringLiteral("The system gives no thread for the conversion."));
    m_state = conversionstate::finishedWithErrors;
}

void WidgetConverterMdf4::connectWorker()
{
    const WorkerConvertMDF4 *worker = &m_thread->worker();
    relayOnWorkerThread(&WorkerConvertMDF4::sig_error, MessageLimits::Kind::Error);
    relayOnWorkerThread(&WorkerConvertMDF4::sig_warning, MessageLimits::Kind::Warning);
    relayOnWorkerThread(&WorkerConvertMDF4::sig_status, MessageLimits::Kind::Status);
    connect(worker, &WorkerConvertMDF4::sig_updateSignals, this,
            qOverload<std::map<QString, std::map<QString, QString>>, bool>(
                &WidgetConverterMdf4::updateTree));
    connect(worker, &WorkerConvertMDF4::sig_progress, this,
            [this](int percentage) { updateProgress(uint(qMax(percentage, 0))); });
    connect(m_thread, &QThread::started, worker, &WorkerConvertMDF4::process);
    connect(worker, &WorkerConvertMDF4::finished, this, &WidgetConverterMdf4::setFinalState);
    connect(worker, &WorkerConvertMDF4::finished, m_thread, &QThread::quit);
}

// Queued, a flood would pile up in memory and leave this thread no time for anything else.
void WidgetConverterMdf4::relayOnWorkerThread(void (WorkerConvertMDF4::*signal)(QString),
                                              MessageLimits::Kind kind)
{
    connect(
        &m_thread->worker(), signal, this,
        [relay = m_relay, kind](const QString &text) { relay->add(kind, text); },
        Qt::DirectConnection);
}

void WidgetConverterMdf4::poll()
{
    const bool areAllShown = showMessages();
    if (m_hasWorkerEnded && areAllShown && !m_isOver)
        conclude();
}

// True when no further ones wait.
bool WidgetConverterMdf4::showMessages()
{
    const auto messages = m_relay->take(messagesPerPoll);
    if (messages.empty())
        return true;
    appendTogether([this, &messages] {
        for (const MessageRelay::Message &message : messages) {
            if (message.kind == MessageLimits::Kind::Error)
                appendErrLine(message.text);
            else if (message.kind == MessageLimits::Kind::Warning)
                appendWarnLine(message.text);
            else
                appendNfoLine(message.text);
        }
    });
    return messages.size() < messagesPerPoll;
}

void WidgetConverterMdf4::cancel()
{
    if (isFinished() || m_hasWorkerEnded)
        return;
    if (m_thread)
        m_thread->worker().requestCancelProcess();
    m_state = conversionstate::cancelled;
}

bool WidgetConverterMdf4::isFinished() const
{
    if (m_thread)
        return m_isOver && m_thread->isFinished();
    return m_state != conversionstate::notStarted && m_state != conversionstate::running;
}

void WidgetConverterMdf4::disconnectWarnings()
{
    qDebug("Warn Disconnected");
    if (m_thread)
        disconnect(worker(), &WorkerConvertMDF4::sig_warning, this, nullptr);
}

void WidgetConverterMdf4::disconnectStatus()
{
    qDebug("Nfo Disconnected");
    if (m_thread)
        disconnect(worker(), &WorkerConvertMDF4::sig_status, this, nullptr);
}

const WorkerConvertMDF4 *WidgetConverterMdf4::worker() const
{
    return m_thread ? &m_thread->worker() : nullptr;
}

// A worker may leave more messages than can be shown at once.
void WidgetConverterMdf4::setFinalState()
{
    m_hasWorkerEnded = true;
    poll();
}

// When all messages are shown: errors among them count.
void WidgetConverterMdf4::conclude()
{
    m_isOver = true;
    const QString &written = m_thread->worker().summary().outputFile;
    if (!written.isEmpty())
        showOutputFile(written); // a free name, if the planned one got taken meanwhile
    if (m_state == conversionstate::cancelled)
        return;
    m_state = errorCount() == 0 ? conversionstate::finished : conversionstate::finishedWithErrors;
}

QString WidgetConverterMdf4::rowStatus(const QString &count) const
{
    return count == QLatin1String("0") ? QStringLiteral("no samples") : QString();
}
