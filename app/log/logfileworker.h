#pragma once

#include <QObject>
#include <QString>

class QTimer;

// Writes lines to the log file, gathered for a second. Runs on the thread of its StdLogFileClass.
// The file is bounded: one that would pass the limit is renamed NAME.1, older ones NAME.2 and
// NAME.3, and what was NAME.3 is removed.
class LogFileWorker : public QObject
{
    Q_OBJECT

public:
    struct Limits
    {
        qint64 file_bytes = 10 * 1024 * 1024;
        int old_files = 3;
        // Lines are dropped, and counted in the next one that is written, when the file can't take
        // them and this much waits.
        int waiting_chars = 1024 * 1024;
    };

    explicit LogFileWorker(const QString &path);
    LogFileWorker(const QString &path, const Limits &limits);
    ~LogFileWorker() override;

public slots:
    void queue_log_msg(const QString &line);
    // Appends what was gathered to the file, which is open only as long as that takes.
    void flush_logfile();
    // Begins to flush every 1000 ms.
    void start();

private:
    void rotateFor(qint64 bytes) const;

    QString m_path;
    Limits m_limits;
    QString m_buffer;
    quint64 m_dropped = 0;
    QTimer *m_timer = nullptr; // a child, made on the worker's thread
};
