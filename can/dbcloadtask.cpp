#include "can/dbcloadtask.h"

#include <QThread>

DbcLoadTask::DbcLoadTask(QObject *parent)
    : QObject(parent)
    , m_parser(std::make_unique<DbcFileParser>())
{}

DbcLoadTask::~DbcLoadTask()
{
    cancel();
    if (!m_thread)
        return;
    m_thread->wait();
    m_end.waitedFor();
}

void DbcLoadTask::start(const QString &path)
{
    Q_ASSERT(!isRunning());
    m_path = path;
    m_isCancelled = false;
    m_isLoaded = false;
    m_parser->setProgress([this](qint64 done, qint64 total) {
        threadcall::post(this, [this, done, total] { report(done, total); });
        return !m_isCancelled;
    });
    m_clock.start();
    m_thread.reset(QThread::create([this, path] {
        m_isLoaded = m_parser->load(path);
        if (m_isLoaded)
            m_parser->debugDump();
        m_end.reached();
    }));
    connect(m_thread.get(), &QThread::finished, this, &DbcLoadTask::finish);
    m_thread->start();
}

// What was queued before the end may come behind it.
void DbcLoadTask::report(qint64 done, qint64 total)
{
    if (!isRunning() || done <= 0 || total <= 0)
        return;
    const double part = qBound(0.0, double(done) / double(total), 1.0);
    const auto left_ms = qint64(double(m_clock.elapsed()) * (1 - part) / part);
    emit progressed(int(part * 100), left_ms);
}

void DbcLoadTask::finish()
{
    m_thread->wait();
    m_end.waitedFor();
    m_thread.reset();
    emit finished(m_isLoaded);
}

QString loadTimeLeftText(qint64 left_ms)
{
    const qint64 seconds = (left_ms + 500) / 1000;
    if (seconds < 1)
        return {};
    if (seconds < 120)
        return QStringLiteral("about %1 s left").arg(seconds);
    return QStringLiteral("about %1 min left").arg((seconds + 30) / 60);
}
