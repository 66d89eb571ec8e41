#pragma once

#include <QMutex>
#include <QObject>
#include <QString>
#include <QThread>

class LogFileWorker;

// Takes every Qt message of the process, from any thread, and has it written to the log file on a
// thread of its own. At most one lives at a time. What was handed over is in the file when it has
// been destroyed, and before a fatal message ends the program.
class StdLogFileClass : public QObject
{
    Q_OBJECT

public:
    // How much passes: 1 fatal, 2 also critical, 3 also warnings, 4 also infos, 5 also debug lines.
    // Any other level lets nothing through.
    StdLogFileClass(int level, const QString &path, QObject *parent = nullptr);
    ~StdLogFileClass() override;

    // The log of the program: "zds.log" in the folder where the system keeps the user's state.
    [[nodiscard]] static QString defaultPath();
    // "dd-MM-yyyy HH:mm:ss:zzz [Word] context: message", ended by CR LF. The context is the source
    // file and line if they are known, otherwise the category.
    [[nodiscard]] static QString lineOf(QtMsgType type, const QMessageLogContext &context,
                                        const QString &message, const QDateTime &time);
    [[nodiscard]] static bool passes(int level, QtMsgType type);

    [[nodiscard]] QString path() const { return m_path; }

public slots:
    // Returns when all that was logged before is in the file.
    void flush();

private:
    static void handleMessage(QtMsgType type, const QMessageLogContext &context,
                              const QString &message);
    void take(QtMsgType type, const QMessageLogContext &context, const QString &message);

    const int m_level;
    const QString m_path;
    QMutex m_mutex; // keeps lines in the order of their times
    QThread m_thread;
    LogFileWorker *m_worker; // lives on m_thread, which deletes it when it ends
    QtMessageHandler m_previous = nullptr;
};
