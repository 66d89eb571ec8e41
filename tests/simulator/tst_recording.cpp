#include "link/protocol/messagetypes.h"
#include "simulator/logstorage.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/simulatedlogger.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A logger that records, with the clients of its tool.
class RecordingLogger
{
public:
    RecordingLogger()
    {
        m_logger.inspect([folder = m_folder.path()](simulator::LoggerSimulator &s) {
            s.state().logFolder = folder;
            s.state().recordsLogs = true;
        });
    }

    [[nodiscard]] const QHostAddress &address() const { return m_logger.address(); }
    [[nodiscard]] bool isRecording()
    {
        return m_logger.inspect(
            [](simulator::LoggerSimulator &s) { return s.recorder().isRecording(); });
    }
    [[nodiscard]] int finishedLogs() const
    {
        return simulator::storedFiles(m_folder.path()).size();
    }
    [[nodiscard]] int growingLogs() const
    {
        return QDir(m_folder.path()).entryList({QStringLiteral("*.recording")}, QDir::Files).size();
    }
    [[nodiscard]] QStringList allFiles() const
    {
        return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden);
    }
    void close()
    {
        m_logger.inspect([](simulator::LoggerSimulator &s) { s.close(); });
    }

private:
    QTemporaryDir m_folder;
    SimulatedLogger m_logger;
};

} // namespace

class tst_Recording : public QObject
{
    Q_OBJECT

private slots:
    void itGoesOnWhileNobodyIsConnected();
    void theToolStopsItAndFindsTheLog();
    void theEndOfTheConnectionBeginsTheNextLog();
    void theEndOfTheLoggerFinishesTheLog();
    void theEndOfTheLoggerBeginsNoLog();
};

void tst_Recording::itGoesOnWhileNobodyIsConnected()
{
    RecordingLogger logger;
    QTRY_COMPARE(logger.growingLogs(), 1);
    QCOMPARE(logger.finishedLogs(), 0);
}

void tst_Recording::theToolStopsItAndFindsTheLog()
{
    RecordingLogger logger;
    QTRY_VERIFY(logger.isRecording());
    RawClient client(logger.address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_get_logfiles()"), QByteArray("logfiles="));
    QCOMPARE(client.ask("sys_disable_stop_logging()"), QByteArray("OK"));
    QVERIFY(!logger.isRecording());
    const QByteArray list = client.ask("sys_get_logfiles()");
    QCOMPARE(list.count(';'), 1);
    const QByteArray name = list.mid(9, list.lastIndexOf(',') - 9);
    RawClient files(logger.address(), protocol::filePort);
    files.send("download_log_file=" + name + "\r\n");
    const QByteArray size = list.mid(list.lastIndexOf(',') + 1).chopped(1);
    QCOMPARE(files.receiveAll().size(), size.toInt());
}

void tst_Recording::theEndOfTheConnectionBeginsTheNextLog()
{
    RecordingLogger logger;
    QTRY_VERIFY(logger.isRecording());
    {
        RawClient client(logger.address(), protocol::commandPort);
        QCOMPARE(client.ask("sys_disable_stop_logging()"), QByteArray("OK"));
    }
    QTRY_VERIFY(logger.isRecording());
    QCOMPARE(logger.finishedLogs(), 1);
}

void tst_Recording::theEndOfTheLoggerFinishesTheLog()
{
    RecordingLogger logger;
    QTRY_VERIFY(logger.isRecording());
    logger.close();
    QCOMPARE(logger.finishedLogs(), 1);
    QCOMPARE(logger.allFiles().size(), 1);
}

void tst_Recording::theEndOfTheLoggerBeginsNoLog()
{
    RecordingLogger logger;
    QTRY_VERIFY(logger.isRecording());
    RawClient client(logger.address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_disable_stop_logging()"), QByteArray("OK"));
    logger.close();
    QVERIFY(client.waitForEnd());
    QVERIFY(!logger.isRecording());
    QCOMPARE(logger.allFiles().size(), 1);
}

QTEST_GUILESS_MAIN(tst_Recording)
#include "tst_recording.moc"
