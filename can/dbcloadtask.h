#pragma once

#include "can/dbcfileparser.h"
#include "config/threadcall.h"

#include <QElapsedTimer>
#include <QObject>

#include <atomic>
#include <memory>

class QThread;

// Reads one DBC file after the other on a thread of its own, and writes what is in it to the
// diagnostic log. All functions and signals belong to the thread that made the object. The progress
// function of the parser runs on the reading thread, which shares the cancel flag.
class DbcLoadTask : public QObject
{
    Q_OBJECT

public:
    explicit DbcLoadTask(QObject *parent = nullptr);
    // Cancels and waits.
    ~DbcLoadTask() override;

    // Precondition: not running.
    void start(const QString &path);
    [[nodiscard]] bool isRunning() const { return m_thread != nullptr; }
    void cancel() { m_isCancelled = true; }
    // Whether the user wants the last file no more, which may have been read by then.
    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }

    // Of the last file, when it is finished.
    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] DbcFileParser &parser() { return *m_parser; }

signals:
    // Part of the work that is done, 0 to 100, and an estimate of the rest in ms.
    void progressed(int percent, qint64 left_ms);
    void finished(bool isLoaded);

private:
    void report(qint64 done, qint64 total);
    void finish();

    std::unique_ptr<DbcFileParser> m_parser; // the reading thread's until it ends
    std::unique_ptr<QThread> m_thread;
    std::atomic<bool> m_isCancelled{false};
    bool m_isLoaded = false; // written by the reading thread before it ends
    threadcall::End m_end;   // of the reading thread
    QString m_path;
    QElapsedTimer m_clock;
};

// "about 5 s left"; empty below one second.
[[nodiscard]] QString loadTimeLeftText(qint64 left_ms);
