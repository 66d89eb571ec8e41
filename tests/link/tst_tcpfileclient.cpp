#include "link/protocol/messagetypes.h"
#include "tests/app/messagesink.h"
#include "tests/link/filetransfer.h"
#include "tests/support/simulatedlogger.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace filetransfer;

class tst_TcpFileClient : public QObject
{
    Q_OBJECT

private slots:
    void theRightCountAndAnEndIsASuccessWithoutText();
    void theRequestIsOneLineWithTheLoggersName();
    void statusAndStartAreTold();
    void theLogTellsTheSteps();
    void moreThanOneBlockArrivesWhole();
    void bytesThatArriveWithTheEndAreNotLost();
    void anAnnouncedFileWithoutBytesBecomesAnEmptyFile();
    void oneByteTooManyIsTold();
    void bytesForAnEmptyFileAreTooMany();
    void anEarlyEndIsTold();
    void anEndWithoutBytesIsTold();
    void aRefusedConnectionIsTold();
    void thirtySecondsOfSilenceAreTooMuch();
    void silenceEndsTheTransfer();
    void silenceBeforeTheFirstByteEndsTheTransfer();
    void silenceBehindTheLastByteIsTheEnd();
    void silenceInPlaceOfAnEmptyFileFails();
    void bytesThatTrickleAreNoSilence();
    void impossibleSizesAreRefused_data();
    void impossibleSizesAreRefused();
    void namesThatAreNoLineAreRefused_data();
    void namesThatAreNoLineAreRefused();
    void withoutALocalNameNothingIsAskedFor();
    void anAbortWithoutTransferDoesNothing();
    void aClientFetchesSeveralFilesInTurn();
    void aFailureDoesNotDisturbTheNextTransfer();
    void theSimulatedLoggersFilesArrive_data();
    void theSimulatedLoggersFilesArrive();
};

void tst_TcpFileClient::theRightCountAndAnEndIsASuccessWithoutText()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    QVERIFY(transfer.fetch(peer, 10));
    QCOMPARE(transfer.text, QString());
    QCOMPARE(contentOf(transfer.path()), QByteArray("0123456789"));
    QCOMPARE(transfer.entries(), QStringList{QStringLiteral("a.rld")});
    QCOMPARE(transfer.client.received(), 10);
}

void tst_TcpFileClient::theRequestIsOneLineWithTheLoggersName()
{
    FilePeer peer(FilePeer::sending("1"));
    Transfer transfer;
    transfer.begin(peer.address(), peer.port(), 1, QString::fromUtf8("../Prüfstand 1.rld"));
    QVERIFY(transfer.finish());
    QCOMPARE(peer.requests, {QByteArray("download_log_file=../Pr\xFC"
                                        "fstand 1.rld\r\n")});
}

void tst_TcpFileClient::statusAndStartAreTold()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    QSignalSpy status(&transfer.client, &TcpFileClient::signal_status_text);
    QSignalSpy started(&transfer.client, &TcpFileClient::signal_downloading_started);
    QVERIFY(transfer.fetch(peer, 10));
    QCOMPARE(started.count(), 1);
    QCOMPARE(status.count(), 2);
    QCOMPARE(status.at(0).at(0).toString(), QStringLiteral("...connected starting download..."));
    QCOMPARE(status.at(1).at(0).toString(), QStringLiteral("...downloading..."));
}

void tst_TcpFileClient::theLogTellsTheSteps()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    const MessageSink sink;
    QVERIFY(transfer.fetch(peer, 10));
    QVERIFY(!transfer.fetch(peer, 11));
    const QString all = sink.messages().join(QLatin1Char('\n'));
    for (const char *line :
         {"Debug: TcpFileClient::start 10", "Debug: connected_request_file", "Debug: open file..",
          "Warning: TcpFileClient-Socket Error:", "Debug: Bytes received  10  of  10",
          "Debug: File transfer complete", "Debug: abort_and_set_error:"})
        QVERIFY2(all.contains(QLatin1String(line)), line);
}

void tst_TcpFileClient::moreThanOneBlockArrivesWhole()
{
    const QByteArray bytes = pattern(int(TcpFileClient::maxReadBytes) * 9 + 17);
    FilePeer peer(FilePeer::sending(bytes));
    Transfer transfer;
    QVERIFY(transfer.fetch(peer, bytes.size()));
    QCOMPARE(contentOf(transfer.path()), bytes);
}

void tst_TcpFileClient::bytesThatArriveWithTheEndAreNotLost()
{
    const QByteArray bytes = pattern(int(TcpFileClient::maxReadBytes) * 3);
    FilePeer peer([&bytes](QTcpSocket &socket, const QByteArray &) {
        socket.write(bytes);
        socket.waitForBytesWritten(100); // the client's thread is this one and doesn't read
        socket.disconnectFromHost();
    });
    Transfer transfer;
    QVERIFY(transfer.fetch(peer, bytes.size()));
    QCOMPARE(contentOf(transfer.path()), bytes);
}

void tst_TcpFileClient::anAnnouncedFileWithoutBytesBecomesAnEmptyFile()
{
    FilePeer peer(FilePeer::sending({}));
    Transfer transfer;
    QVERIFY(transfer.fetch(peer, 0));
    QCOMPARE(contentOf(transfer.path()), QByteArray());
    QCOMPARE(transfer.entries(), QStringList{QStringLiteral("a.rld")});
}

void tst_TcpFileClient::oneByteTooManyIsTold()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    QVERIFY(!transfer.fetch(peer, 9));
    QCOMPARE(transfer.text, QStringLiteral("Received more data than expected. (10Bytes)"));
    QCOMPARE(transfer.entries(), QStringList());
}

void tst_TcpFileClient::bytesForAnEmptyFileAreTooMany()
{
    FilePeer peer(FilePeer::sending("0"));
    Transfer transfer;
    QVERIFY(!transfer.fetch(peer, 0));
    QCOMPARE(transfer.text, QStringLiteral("Received more data than expected. (1Bytes)"));
    QCOMPARE(transfer.entries(), QStringList());
}

void tst_TcpFileClient::anEarlyEndIsTold()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    QVERIFY(!transfer.fetch(peer, 11));
    QCOMPARE(transfer.text, QStringLiteral("disconnected"));
    QCOMPARE(transfer.entries(), QStringList());
}

void tst_TcpFileClient::anEndWithoutBytesIsTold()
{
    FilePeer peer(FilePeer::sending({}));
    Transfer transfer;
    QVERIFY(!transfer.fetch(peer, 1));
    QCOMPARE(transfer.text, QStringLiteral("disconnected"));
}

void tst_TcpFileClient::aRefusedConnectionIsTold()
{
    Transfer transfer;
    transfer.begin(freeLoopbackAddress(), protocol::filePort, 1);
    QVERIFY(!transfer.finish());
    QVERIFY2(transfer.text.contains(QStringLiteral("refused")), qPrintable(transfer.text));
    QCOMPARE(transfer.finished.count(), 0);
}

void tst_TcpFileClient::thirtySecondsOfSilenceAreTooMuch()
{
    QCOMPARE(TcpFileClient().silenceLimit(), 30'000);
}

void tst_TcpFileClient::silenceEndsTheTransfer()
{
    FilePeer peer([](QTcpSocket &socket, const QByteArray &) { socket.write("01234"); });
    Transfer transfer;
    transfer.client.setSilenceLimit(50);
    QVERIFY(!transfer.fetch(peer, 10));
    QCOMPARE(transfer.text, QStringLiteral("The logger sent nothing for 0.05 seconds."));
    QCOMPARE(transfer.client.received(), 5);
    QCOMPARE(transfer.entries(), QStringList());
}

void tst_TcpFileClient::silenceBeforeTheFirstByteEndsTheTransfer()
{
    FilePeer peer([](QTcpSocket &, const QByteArray &) {});
    Transfer transfer;
    transfer.client.setSilenceLimit(50);
    QVERIFY(!transfer.fetch(peer, 10));
    QCOMPARE(transfer.text, QStringLiteral("The logger sent nothing for 0.05 seconds."));
}

void tst_TcpFileClient::silenceBehindTheLastByteIsTheEnd()
{
    FilePeer peer([](QTcpSocket &socket, const QByteArray &) { socket.write("0123456789"); });
    Transfer transfer;
    transfer.client.setSilenceLimit(50);
    QVERIFY2(transfer.fetch(peer, 10), qPrintable(transfer.text));
    QCOMPARE(contentOf(transfer.path()), QByteArray("0123456789"));
    QCOMPARE(transfer.finished.count(), 0);
}

void tst_TcpFileClient::silenceInPlaceOfAnEmptyFileFails()
{
    FilePeer peer([](QTcpSocket &, const QByteArray &) {});
    Transfer transfer;
    transfer.client.setSilenceLimit(50);
    QVERIFY(!transfer.fetch(peer, 0));
    QCOMPARE(transfer.entries(), QStringList());
}

void tst_TcpFileClient::bytesThatTrickleAreNoSilence()
{
    constexpr int bytes = 10;
    constexpr int limit_ms = 200;
    FilePeer peer([](QTcpSocket &socket, const QByteArray &) {
        auto *timer = new QTimer(&socket);
        QObject::connect(timer, &QTimer::timeout, &socket, [&socket, timer, sent = 0]() mutable {
            socket.write("x");
            if (++sent == bytes) {
                timer->stop();
                socket.disconnectFromHost();
            }
        });
        timer->start(limit_ms / 5); // altogether twice the limit
    });
    Transfer transfer;
    transfer.client.setSilenceLimit(limit_ms);
    QVERIFY2(transfer.fetch(peer, bytes), qPrintable(transfer.text));
}

void tst_TcpFileClient::impossibleSizesAreRefused_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("negative") << qint64(-1);
    QTest::newRow("least") << std::numeric_limits<qint64>::min();
    QTest::newRow("over 2^53") << (qint64(1) << 53) + 1;
    QTest::newRow("greatest") << std::numeric_limits<qint64>::max();
}

void tst_TcpFileClient::impossibleSizesAreRefused()
{
    QFETCH(qint64, size);
    FilePeer peer(FilePeer::sending("0"));
    Transfer transfer;
    QVERIFY(!transfer.fetch(peer, size));
    QCOMPARE(transfer.text,
             QStringLiteral("The size that the logger tells can't be right: %1 bytes.").arg(size));
    QCOMPARE(peer.requests.size(), 0);
}

void tst_TcpFileClient::namesThatAreNoLineAreRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("two lines") << QStringLiteral("a.rld\r\ndownload_log_file=b.rld");
    QTest::newRow("line feed") << QStringLiteral("a.rld\n");
    QTest::newRow("carriage return") << QStringLiteral("a\r.rld");
    QTest::newRow("not Latin-1") << QString(QChar(0x4E2D));
}

void tst_TcpFileClient::namesThatAreNoLineAreRefused()
{
    QFETCH(QString, name);
    FilePeer peer(FilePeer::sending("0"));
    Transfer transfer;
    transfer.begin(peer.address(), peer.port(), 1, name);
    QVERIFY(!transfer.finish());
    QCOMPARE(transfer.text, QStringLiteral("The logger can't be asked for a file of this name."));
    QCOMPARE(peer.requests.size(), 0);
}

void tst_TcpFileClient::withoutALocalNameNothingIsAskedFor()
{
    FilePeer peer(FilePeer::sending("0"));
    Transfer transfer;
    transfer.client.start(peer.address(), peer.port(), QStringLiteral("a.rld"), 1, {});
    QVERIFY(!transfer.finish());
    QCOMPARE(transfer.text,
             QStringLiteral("The file can't be stored: its name holds nothing that a "
                            "file can be called by, or the folder is gone."));
    QCOMPARE(peer.requests.size(), 0);
}

void tst_TcpFileClient::anAbortWithoutTransferDoesNothing()
{
    Transfer transfer;
    transfer.client.abort_and_set_error(QStringLiteral("nothing"));
    QCOMPARE(transfer.finished.count(), 0);
}

void tst_TcpFileClient::aClientFetchesSeveralFilesInTurn()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    for (const char *name : {"a.rld", "b.rld", "c.rld"}) {
        transfer.client.start(peer.address(), peer.port(), QString::fromLatin1(name), 10,
                              transfer.path(name));
        QVERIFY(transfer.finish());
        QCOMPARE(contentOf(transfer.path(name)), QByteArray("0123456789"));
    }
    QCOMPARE(transfer.finished.count(), 0);
}

void tst_TcpFileClient::aFailureDoesNotDisturbTheNextTransfer()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    QVERIFY(!transfer.fetch(peer, 9));
    QVERIFY(transfer.fetch(peer, 10));
    QVERIFY(!transfer.fetch(peer, 11));
    QCOMPARE(transfer.text, QStringLiteral("disconnected"));
    QCOMPARE(transfer.finished.count(), 0);
}

void tst_TcpFileClient::theSimulatedLoggersFilesArrive_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("text");
    QTest::newRow("no fault") << QString() << QString();
    QTest::newRow("short") << QStringLiteral("short-file=1") << QStringLiteral("disconnected");
    QTest::newRow("long") << QStringLiteral("long-file=1")
                          << QStringLiteral("Received more data than expected. (700001Bytes)");
    QTest::newRow("stalled") << QStringLiteral("stalled-file=1000")
                             << QStringLiteral("The logger sent nothing for 0.3 seconds.");
    QTest::newRow("silent") << QStringLiteral("stalled-file=0")
                            << QStringLiteral("The logger sent nothing for 0.3 seconds.");
    QTest::newRow("dropped") << QStringLiteral("refuse-file-connection")
                             << QStringLiteral("disconnected");
}

void tst_TcpFileClient::theSimulatedLoggersFilesArrive()
{
    QFETCH(QString, fault);
    QFETCH(QString, text);
    const QByteArray bytes = pattern(700'000);
    const QTemporaryDir storage;
    writeFile(storage.filePath(QStringLiteral("a.rld")), bytes);
    SimulatedLogger logger;
    logger.inspect(
        [&storage](simulator::LoggerSimulator &s) { s.state().logFolder = storage.path(); });
    if (!fault.isEmpty())
        logger.setFault(fault);

    Transfer transfer;
    transfer.client.setSilenceLimit(300);
    transfer.begin(logger.address(), protocol::filePort, bytes.size());
    QCOMPARE(transfer.finish(), fault.isEmpty());
    QCOMPARE(transfer.text, text);
    if (fault.isEmpty())
        QCOMPARE(contentOf(transfer.path()), bytes);
    else
        QCOMPARE(transfer.entries(), QStringList());
}

QTEST_GUILESS_MAIN(tst_TcpFileClient)
#include "tst_tcpfileclient.moc"
