#include "app/log/logfileworker.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_LogFileWorker : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void linesAreAppendedByAFlush();
    void aFlushWithoutLinesMakesNoFile();
    void theFileIsAppendedTo();
    void aDestroyedWorkerHasWrittenItsLines();
    void aRunningWorkerWritesOnItsOwn();
    void theFileIsRotatedBeforeItPassesTheLimit();
    void onlyThreeOldFilesAreKept();
    void linesWaitUntilTheFileCanBeWritten();
    void linesThatFindNoRoomAreCounted();

private:
    QByteArray content(const QString &suffix = {}) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void tst_LogFileWorker::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->filePath(QStringLiteral("zds.log"));
}

QByteArray tst_LogFileWorker::content(const QString &suffix) const
{
    QFile file(m_path + suffix);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void tst_LogFileWorker::linesAreAppendedByAFlush()
{
    LogFileWorker worker(m_path);
    worker.queue_log_msg(QStringLiteral("one\r\n"));
    worker.queue_log_msg(QString::fromUtf8("M\xC3\xBCnchen\r\n"));
    QVERIFY(!QFile::exists(m_path));
    worker.flush_logfile();
    QCOMPARE(content(), QByteArray("one\r\nM\xC3\xBCnchen\r\n"));
    worker.flush_logfile();
    QCOMPARE(content(), QByteArray("one\r\nM\xC3\xBCnchen\r\n"));
}

void tst_LogFileWorker::aFlushWithoutLinesMakesNoFile()
{
    LogFileWorker worker(m_path);
    worker.flush_logfile();
    QVERIFY(!QFile::exists(m_path));
}

void tst_LogFileWorker::theFileIsAppendedTo()
{
    for (const char *line : {"one\r\n", "two\r\n"}) {
        LogFileWorker worker(m_path);
        worker.queue_log_msg(QLatin1String(line));
    }
    QCOMPARE(content(), QByteArray("one\r\ntwo\r\n"));
}

void tst_LogFileWorker::aDestroyedWorkerHasWrittenItsLines()
{
    auto worker = std::make_unique<LogFileWorker>(m_path);
    worker->queue_log_msg(QStringLiteral("last words\r\n"));
    worker.reset();
    QCOMPARE(content(), QByteArray("last words\r\n"));
}

void tst_LogFileWorker::aRunningWorkerWritesOnItsOwn()
{
    LogFileWorker worker(m_path);
    worker.start();
    worker.queue_log_msg(QStringLiteral("one\r\n"));
    QTRY_COMPARE(content(), QByteArray("one\r\n"));
}

void tst_LogFileWorker::theFileIsRotatedBeforeItPassesTheLimit()
{
    LogFileWorker worker(m_path, {10, 3, 100});
    for (const char *line : {"12345", "67890", "x"}) {
        worker.queue_log_msg(QLatin1String(line));
        worker.flush_logfile();
    }
    QCOMPARE(content(), QByteArray("x"));
    QCOMPARE(content(QStringLiteral(".1")), QByteArray("1234567890"));
}

void tst_LogFileWorker::onlyThreeOldFilesAreKept()
{
    LogFileWorker worker(m_path, {1, 3, 100});
    for (int i = 0; i < 7; ++i) {
        worker.queue_log_msg(QString::number(i));
        worker.flush_logfile();
    }
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files),
             QStringList({QStringLiteral("zds.log"), QStringLiteral("zds.log.1"),
                          QStringLiteral("zds.log.2"), QStringLiteral("zds.log.3")}));
    QCOMPARE(content() + content(QStringLiteral(".1")) + content(QStringLiteral(".2"))
                 + content(QStringLiteral(".3")),
             QByteArray("6543"));
}

void tst_LogFileWorker::linesWaitUntilTheFileCanBeWritten()
{
    const QString folder = m_folder->filePath(QStringLiteral("later"));
    m_path = folder + QStringLiteral("/zds.log");
    LogFileWorker worker(m_path);
    worker.queue_log_msg(QStringLiteral("one\r\n"));
    worker.flush_logfile();
    QVERIFY(QDir().mkpath(folder));
    worker.queue_log_msg(QStringLiteral("two\r\n"));
    worker.flush_logfile();
    QCOMPARE(content(), QByteArray("one\r\ntwo\r\n"));
}

void tst_LogFileWorker::linesThatFindNoRoomAreCounted()
{
    const QString folder = m_folder->filePath(QStringLiteral("later"));
    m_path = folder + QStringLiteral("/zds.log");
    LogFileWorker worker(m_path, {1000, 3, 5});
    for (const char *line : {"one\r\n", "two\r\n", "three\r\n"})
        worker.queue_log_msg(QLatin1String(line));
    QVERIFY(QDir().mkpath(folder));
    worker.flush_logfile();
    QCOMPARE(content(), QByteArray("one\r\n... 2 lines dropped\r\n"));
}

QTEST_GUILESS_MAIN(tst_LogFileWorker)
#include "tst_logfileworker.moc"
