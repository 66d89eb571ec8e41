#include "app/log/stdlogfileclass.h"

#include "app/log/logfileworker.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMutexLocker>
#include <QReadWriteLock>
#include <QStandardPaths>

namespace {

// A message handler is a plain function, so it finds its object here. The lock keeps the object
// alive while another thread is in the handler.
QReadWriteLock instanceLock;
StdLogFileClass *instance = nullptr;

QString wordOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("Debug");
    case QtInfoMsg:
        return QStringLiteral("Info");
    case QtWarningMsg:
        return QStringLiteral("Warning");
    case QtCriticalMsg:
        return QStringLiteral("Critical");
    case QtFatalMsg:
        break;
    }
    return QStringLiteral("Fatal");
}

int levelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return 5;
    case QtInfoMsg:
        return 4;
    case QtWarningMsg:
        return 3;
    case QtCriticalMsg:
        return 2;
    case QtFatalMsg:
        break;
    }
    return 1;
}

QString textOf(const QMessageLogContext &context)
{
    if (!context.file)
        return QString::fromUtf8(context.category);
    const QString file = QFileInfo(QString::fromUtf8(context.file)).fileName();
    return QStringLiteral("%1:%2").arg(file).arg(context.line);
}

} // namespace

QString StdLogFileClass::defaultPath()
{
#ifdef Q_OS_WIN
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
#else
    // XDG base directories: the home of state, which Qt 5 doesn't know.
    QString home = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(home))
        home = QDir::homePath() + QStringLiteral("/.local/state");
    const QString folder = home + QStringLiteral("/zds");
#endif
    return folder + QStringLiteral("/zds.log");
}

QString StdLogFileClass::lineOf(QtMsgType type, const QMessageLogContext &context,
                                const QString &message, const QDateTime &time)
{
    return time.toString(QStringLiteral("dd-MM-yyyy HH:mm:ss:zzz")) + QStringLiteral(" [")
           + wordOf(type) + QStringLiteral("] ") + textOf(context) + QStringLiteral(": ") + message
           + QStringLiteral("\r\n");
}

bool StdLogFileClass::passes(int level, QtMsgType type)
{
    return level >= 1 && level <= 5 && levelOf(type) <= level;
}

StdLogFileClass::StdLogFileClass(int level, const QString &path, QObject *parent)
    : QObject(parent)
    , m_level(level)
    , m_path(path)
    , m_worker(new LogFileWorker(path))
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    m_thread.setObjectName(QStringLiteral("LogFileWorker"));
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::started, m_worker, &LogFileWorker::start);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();

    const QWriteLocker locker(&instanceLock);
    Q_ASSERT(!instance);
    instance = this;
    m_previous = qInstallMessageHandler(handleMessage);
}

StdLogFileClass::~StdLogFileClass()
{
    {
        const QWriteLocker locker(&instanceLock);
        qInstallMessageHandler(m_previous);
        instance = nullptr;
    }
    flush();
    m_thread.quit();
    m_thread.wait();
}

void StdLogFileClass::flush()
{
    const bool onItsThread = QThread::currentThread() == m_worker->thread();
    QMetaObject::invokeMethod(m_worker, "flush_logfile",
                              onItsThread ? Qt::DirectConnection : Qt::BlockingQueuedConnection);
}

void StdLogFileClass::handleMessage(QtMsgType type, const QMessageLogContext &context,
                                    const QString &message)
{
    const QReadLocker locker(&instanceLock);
    if (instance)
        instance->take(type, context, message);
}

void StdLogFileClass::take(QtMsgType type, const QMessageLogContext &context,
                           const QString &message)
{
    if (passes(m_level, type)) {
        const QMutexLocker locker(&m_mutex);
        const QString line = lineOf(type, context, message, QDateTime::currentDateTime());
        QMetaObject::invokeMethod(m_worker, "queue_log_msg", Qt::QueuedConnection,
                                  Q_ARG(QString, line));
    }
    if (type == QtFatalMsg)
        flush();
    if (m_previous && levelOf(type) <= levelOf(QtWarningMsg))
        m_previous(type, context, message); // warnings and worse stand on the console, too
}
