#include "link/protocol/messagetypes.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/filecontents.h"
#include "tests/support/simulatedlogger.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A logger with a folder of files.
class LoggerWithFiles
{
public:
    LoggerWithFiles()
    {
        writeFile(path(QStringLiteral("drive.rld")), pattern(700'000));
        writeFile(path(QStringLiteral("empty.rld")), {});
        m_logger.inspect([folder = m_folder.path()](simulator::LoggerSimulator &s) {
            s.state().logFolder = folder;
        });
    }

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] SimulatedLogger &logger() { return m_logger; }

    // All that comes for this request.
    [[nodiscard]] QByteArray download(const QByteArray &name)
    {
        RawClient client(m_logger.address(), protocol::filePort);
        client.send("download_log_file=" + name + "\r\n");
        return client.receiveAll();
    }

private:
    QTemporaryDir m_folder;
    SimulatedLogger m_logger;
};

} // namespace

class tst_FilePort : public QObject
{
    Q_OBJECT

private slots:
    void aFileComesWholeAndTheConnectionEnds();
    void aRequestMayComeInPieces();
    void anEmptyFileIsAClosedConnection();
    void nothingOutsideTheFolderIsServed_data();
    void nothingOutsideTheFolderIsServed();
    void anEndlessRequestEndsTheConnection();
    void theListNamesEachFileWithItsSize();
    void aDeletedFileIsGone();
    void onlyFilesOfTheFolderAreDeleted();
    void discSpaceIsThatOfTheFolder();
    void faultShortFile();
    void faultLongFile();
    void faultStalledFile();
    void faultRefuseFileConnection();
};

void tst_FilePort::aFileComesWholeAndTheConnectionEnds()
{
    LoggerWithFiles files;
    QCOMPARE(files.download("drive.rld"), pattern(700'000));
}

void tst_FilePort::aRequestMayComeInPieces()
{
    LoggerWithFiles files;
    RawClient client(files.logger().address(), protocol::filePort);
    client.send("download_log");
    client.send("_file=drive.rld\r");
    client.send("\n");
    QCOMPARE(client.receiveAll(), pattern(700'000));
}

void tst_FilePort::anEmptyFileIsAClosedConnection()
{
    LoggerWithFiles files;
    RawClient client(files.logger().address(), protocol::filePort);
    client.send("download_log_file=empty.rld\r\n");
    QVERIFY(client.waitForEnd());
}

void tst_FilePort::nothingOutsideTheFolderIsServed_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("unknown") << QByteArray("other.rld");
    QTest::newRow("parent") << QByteArray("../secret.rld");
    QTest::newRow("parent and back") << QByteArray("sub/../drive.rld");
    QTest::newRow("in a folder below") << QByteArray("sub/inner.rld");
    QTest::newRow("folder") << QByteArray("sub");
    QTest::newRow("absolute") << QByteArray("/etc/passwd");
    QTest::newRow("link") << QByteArray("link.rld");
    QTest::newRow("hidden") << QByteArray(".hidden");
    QTest::newRow("dots") << QByteArray("..");
    QTest::newRow("nothing") << QByteArray();
}

void tst_FilePort::nothingOutsideTheFolderIsServed()
{
    QFETCH(QByteArray, name);
    LoggerWithFiles files;
    QVERIFY(QDir().mkpath(files.path(QStringLiteral("sub"))));
    writeFile(files.path(QStringLiteral("sub/inner.rld")), "inner");
    writeFile(files.path(QStringLiteral(".hidden")), "hidden");
    QVERIFY(QFile::link(files.path(QStringLiteral("sub/inner.rld")),
                        files.path(QStringLiteral("link.rld"))));
    QCOMPARE(files.download(name), QByteArray());
}

void tst_FilePort::anEndlessRequestEndsTheConnection()
{
    LoggerWithFiles files;
    RawClient client(files.logger().address(), protocol::filePort);
    client.send("download_log_file=" + QByteArray(10'000, 'x'));
    QVERIFY(client.waitForEnd());
}

void tst_FilePort::theListNamesEachFileWithItsSize()
{
    LoggerWithFiles files;
    RawClient client(files.logger().address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_get_logfiles()"),
             QByteArray("logfiles=drive.rld,700000;empty.rld,0;"));
}

void tst_FilePort::aDeletedFileIsGone()
{
    LoggerWithFiles files;
    RawClient client(files.logger().address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_delete_logfile(drive.rld)"), QByteArray("OK"));
    QVERIFY(!QFile::exists(files.path(QStringLiteral("drive.rld"))));
    QCOMPARE(client.ask("sys_get_logfiles()"), QByteArray("logfiles=empty.rld,0;"));
    QCOMPARE(client.ask("sys_delete_logfile(drive.rld)"), QByteArray("ERROR=-1105"));
}

void tst_FilePort::onlyFilesOfTheFolderAreDeleted()
{
    QTemporaryDir outside;
    const QString path = outside.filePath(QStringLiteral("kept.rld"));
    writeFile(path, "kept");
    LoggerWithFiles files;
    RawClient client(files.logger().address(), protocol::commandPort);
    const QString relative = QDir(files.path(QString())).relativeFilePath(path);
    for (const QString &name : {path, relative}) {
        QCOMPARE(client.ask("sys_delete_logfile(" + name.toLatin1() + ")"),
                 QByteArray("ERROR=-1105"));
    }
    QVERIFY(QFile::exists(path));
}

void tst_FilePort::discSpaceIsThatOfTheFolder()
{
    LoggerWithFiles files;
    RawClient client(files.logger().address(), protocol::commandPort);
    const QByteArray reply = client.ask("sys_get_disc_space_info()");
    QVERIFY(reply.startsWith("disc_space_info="));
    const QList<QByteArray> values = reply.mid(reply.indexOf('=') + 1).split(',');
    QCOMPARE(values.size(), 2);
    QVERIFY(values.at(0).toLongLong() > 0);
    QVERIFY(values.at(0).toLongLong() <= values.at(1).toLongLong());
    files.logger().inspect([](simulator::LoggerSimulator &s) {
        s.state().discSpace = simulator::DiscSpace{5, 17};
    });
    QCOMPARE(client.ask("sys_get_disc_space_info()"), QByteArray("disc_space_info=5,17"));
}

void tst_FilePort::faultShortFile()
{
    LoggerWithFiles files;
    files.logger().setFault(QStringLiteral("short-file=10"));
    QCOMPARE(files.download("drive.rld"), pattern(699'990));
    QCOMPARE(files.download("empty.rld"), QByteArray());
}

void tst_FilePort::faultLongFile()
{
    LoggerWithFiles files;
    files.logger().setFault(QStringLiteral("long-file"));
    const QByteArray received = files.download("drive.rld");
    QCOMPARE(received.size(), 700'001);
    QVERIFY(received.startsWith(pattern(700'000)));
}

void tst_FilePort::faultStalledFile()
{
    LoggerWithFiles files;
    files.logger().setFault(QStringLiteral("stalled-file=1000"));
    RawClient client(files.logger().address(), protocol::filePort);
    client.send("download_log_file=drive.rld\r\n");
    QCOMPARE(client.receiveUntil(1000), pattern(1000));
    QVERIFY(!client.socket().waitForReadyRead(50));
    QVERIFY(client.isConnected());
}

void tst_FilePort::faultRefuseFileConnection()
{
    LoggerWithFiles files;
    files.logger().setFault(QStringLiteral("refuse-file-connection=1"));
    RawClient refused(files.logger().address(), protocol::filePort);
    QVERIFY(refused.waitForEnd());
    QCOMPARE(files.download("drive.rld").size(), 700'000);
}

QTEST_GUILESS_MAIN(tst_FilePort)
#include "tst_fileport.moc"
