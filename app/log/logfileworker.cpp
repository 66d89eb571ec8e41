#include "app/log/logfileworker.h"

#include <QFile>
#include <QFileInfo>
#include <QTimer>

namespace {

constexpr int flushPeriod_ms = 1000;

} // namespace

LogFileWorker::LogFileWorker(const QString &path)
    : LogFileWorker(path, Limits{})
{}

LogFileWorker::LogFileWorker(const QString &path, const Limits &limits)
    : m_path(path)
    , m_limits(limits)
{}

LogFileWorker::~LogFileWorker()
{
    flush_logfile();
}

void LogFileWorker::start()
{
    m_timer = new QTimer(this);
    connect(m_timer, &QTimer::timeout, this, &LogFileWorker::flush_logfile);
    m_timer->start(flushPeriod_ms);
}

void LogFileWorker::queue_log_msg(const QString &line)
{
    if (m_buffer.size() + line.size() > m_limits.waiting_chars)
        flush_logfile();
    if (m_buffer.size() + line.size() > m_limits.waiting_chars)
        ++m_dropped;
    else
        m_buffer += line;
}

void LogFileWorker::flush_logfile()
{
    if (m_buffer.isEmpty() && m_dropped == 0)
        return;
    QByteArray bytes = m_buffer.toUtf8();
    if (m_dropped > 0)
        bytes += QStringLiteral("... %1 lines dropped\r\n").arg(m_dropped).toUtf8();
    rotateFor(bytes.size());
    QFile file(m_path);
    if (!file.open(QIODevice::Append))
        return;
    const qint64 sizeBefore = file.size();
    if (file.write(bytes) == bytes.size() && file.flush()) {
        m_buffer.clear();
        m_dropped = 0;
    } else {
        file.resize(sizeBefore); // half a batch would stand twice after the next attempt
    }
}

void LogFileWorker::rotateFor(qint64 bytes) const
{
    const qint64 size = QFileInfo(m_path).size();
    if (size == 0 || size + bytes <= m_limits.file_bytes)
        return;
    const auto oldFile = [this](int number) {
        return number == 0 ? m_path : m_path + QStringLiteral(".%1").arg(number);
    };
    QFile::remove(oldFile(m_limits.old_files));
    for (int number = m_limits.old_files - 1; number >= 0; --number)
        QFile::rename(oldFile(number), oldFile(number + 1));
}
