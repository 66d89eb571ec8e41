#include "simulator/logrecorder.h"

#include "simulator/livesources.h"
#include "simulator/loggerstate.h"

namespace simulator {
namespace {

constexpr qint64 second_us = 1'000'000;

} // namespace

LogRecorder::LogRecorder(const LoggerState &state, QObject *parent)
    : QObject(parent)
    , m_state(state)
{}

LogRecorder::~LogRecorder()
{
    finish();
}

bool LogRecorder::isWanted() const
{
    return m_state.recordsLogs && !m_state.isLoggingStopped && !m_state.logFolder.isEmpty();
}

bool LogRecorder::isConfigurationOld(qint64 now_us)
{
    if (m_hasChanged)
        m_changed_us = now_us;
    m_hasChanged = false;
    return m_changed_us >= 0 && now_us - m_changed_us >= quietTime_us;
}

void LogRecorder::advance(qint64 now_us, const QDateTime &utc, qint64 limit)
{
    const bool isSameLog = isWanted() && m_folder == m_state.logFolder
                           && now_us - m_end_us <= longestPause_us && !isConfigurationOld(now_us);
    if (isRecording() && now_us - m_end_us <= longestPause_us)
        record(now_us);
    if (isRecording() && m_file->size() >= limit)
        pause({});
    if (!isSameLog)
        finish();
    if (!isWanted() || m_folder != m_state.logFolder)
        m_isPaused = false;
    if (isWanted() && !isRecording() && !m_isPaused)
        begin(now_us, utc);
}

void LogRecorder::begin(qint64 now_us, const QDateTime &utc)
{
    if (m_folder != m_state.logFolder)
        recoverRecordings(m_state.logFolder);
    m_folder = m_state.logFolder;
    m_hasChanged = false;
    m_changed_us = -1;
    m_file = std::make_unique<RecordingFile>(
        m_folder, recordingName(utc, m_state.configuration.event.event_name));
    m_schedule = std::make_unique<drive::Schedule>(now_us);
    addLogSources(m_state, *m_schedule, m_vehicle, {now_us, utc});
    m_end_us = now_us;
    if (m_file->begin(m_state.configuration))
        return;
    m_file->remove();
    const QString failure = m_file->failure();
    m_file.reset();
    pause(failure);
}

void LogRecorder::record(qint64 now_us)
{
    bool ok = true;
    while (ok && m_end_us < now_us) {
        m_end_us = qMin(now_us, m_end_us + second_us);
        QByteArray entries;
        m_schedule->recordUntil(m_end_us, entries);
        ok = m_file->add(entries);
    }
    if (!ok)
        pause(m_file->failure());
}

void LogRecorder::pause(const QString &failure)
{
    m_isPaused = true;
    finish();
    if (!failure.isNull())
        emit failed(failure);
}

void LogRecorder::finish()
{
    const std::unique_ptr<RecordingFile> file = std::move(m_file);
    m_schedule.reset();
    if (!file)
        return;
    if (file->finish())
        emit finished(file->path());
    else
        emit failed(file->failure());
}

} // namespace simulator
