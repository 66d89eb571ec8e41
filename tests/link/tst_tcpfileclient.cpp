#include "link/protocol/messagetypes.h"
#include "link/tcpfileclient.h"
#include "tests/app/messagesink.h"
#include "tests/support/filepeer.h"
#include "tests/support/simulatedlogger.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#ifndef Q_OS_WIN
#include <csignal>
#include <sys/resource.h>
#endif

class tst_TcpFileClient : public QObject
{
    Q_OBJECT

private slots:
    void theRightCountAndAnEndIsASuccessWithoutText();
    void theRequestIsOneLineWithTheLoggersName();
    void statusAndStartAreTold();
    void theLogTellsTheSteps();
    void aFileIsCalledPartUntilItIsWhole();
    void moreThanOneBlockArrivesWhole();
    void bytesThatArriveWithTheEndAreNotLost();
    void anAnnouncedFileWithoutBytesBecomesAnEmptyFile();
    void oneByteTooManyIsTold();
    void bytesForAnEmptyFileAreTooMany();
    void anEarlyEndIsTold();
    void anEndWithoutBytesIsTold();
    void aRefusedConnectionIsTold();
    void silenceEndsTheTransfer();
    void silenceBeforeTheFirstByteEndsTheTransfer();
    void bytesThatTrickleAreNoSilence();
    void impossibleSizesAreRefused_data();
    void impossibleSizesAreRefused();
    void namesThatAreNoLineAreRefused_data();
    void namesThatAreNoLineAreRefused();
    void aMissingFolderIsTold();
    void aFolderThatVanishesIsTold();
    void aFullDiskIsTold();
    void anAbortLeavesNothing();
    void theDestructorLeavesNothing();
    void anAbortWithoutTransferDoesNothing();
    void anExistingFileIsNotReplaced();
    void whatAKilledProgramLeftIsReplaced();
    void aFileThatAnotherTransferWritesIsLeftAlone();
    void aLockWithoutOwnerDoesNotBlock();
    void aClientFetchesSeveralFilesInTurn();
    void aFailureDoesNotDisturbTheNextTransfer();
    void theSimulatedLoggersFilesArrive_data();
    void theSimulatedLoggersFilesArrive();
};

namespace {

QByteArray pattern(int bytes)
{
    QByteArray all(bytes, '\0');
    for (int i = 0; i < bytes; ++i)
        all[i] = char(i * 31 + i / 256);
    return all;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("no file");
}

// A client with a folder for what it fetches.
struct Transfer
{
    void begin(const QHostAddress &address, quint16 port, qint64 expected,
               const QString &name = QStringLiteral("a.rld"))
    {
        client.start(address, port, name, expected, path());
    }
    void begin(const FilePeer &peer, qint64 expected)
    {
        begin(peer.address(), peer.port(), expected);
    }
    // Whether it ended well; `text` is what it told.
    bool finish()
    {
        if (finished.isEmpty() && !finished.wait())
            qFatal("The transfer does not end.");
        const QList<QVariant> end = finished.takeFirst();
        text = end.at(1).toString();
        return end.at(0).toBool();
    }
    bool fetch(const FilePeer &peer, qint64 expected)
    {
        begin(peer, expected);
        return finish();
    }

    QString path(const char *name = "a.rld") const
    {
        return folder.filePath(QString::fromUtf8(name));
    }
    QStringList entries() const
    {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir folder;
    TcpFileClient client;
    QSignalSpy finished{&client, &TcpFileClient::signal_finished};
    QString text;
};

} // namespace

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

void tst_TcpFileClient::aFileIsCalledPartUntilItIsWhole()
{
    QTcpSocket *logger = nullptr;
    FilePeer peer([&logger](QTcpSocket &socket, const QByteArray &) {
        logger = &socket;
        socket.write("01234");
    });
    Transfer transfer;
    transfer.begin(peer, 10);
    QTRY_COMPARE(transfer.client.received(), 5);
    QVERIFY(QFile::exists(transfer.path("a.rld.part")));
    QVERIFY(!QFile::exists(transfer.path()));
    logger->write("56789");
    logger->disconnectFromHost();
    QVERIFY(transfer.finish());
    QCOMPARE(contentOf(transfer.path()), QByteArray("0123456789"));
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
    QVERIFY(transfer.text.contains(QString::number(size)));
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
    QVERIFY(!transfer.text.isEmpty());
    QCOMPARE(peer.requests.size(), 0);
}

void tst_TcpFileClient::aMissingFolderIsTold()
{
    FilePeer peer(FilePeer::sending("0"));
    Transfer transfer;
    QVERIFY(QDir(transfer.folder.path()).removeRecursively());
    QVERIFY(!transfer.fetch(peer, 1));
    QVERIFY2(transfer.text.startsWith(QStringLiteral("File-Error.(")), qPrintable(transfer.text));
}

void tst_TcpFileClient::aFolderThatVanishesIsTold()
{
    QTcpSocket *logger = nullptr;
    FilePeer peer([&logger](QTcpSocket &socket, const QByteArray &) {
        logger = &socket;
        socket.write("01234");
    });
    Transfer transfer;
    transfer.begin(peer, 10);
    QTRY_COMPARE(transfer.client.received(), 5);
    if (!QDir(transfer.folder.path()).removeRecursively())
        QSKIP("This system keeps a folder with an open file.");
    logger->write("56789");
    logger->disconnectFromHost();
    QVERIFY(!transfer.finish());
    QVERIFY2(transfer.text.startsWith(QStringLiteral("File-Error.(")), qPrintable(transfer.text));
}

#ifdef Q_OS_WIN
void tst_TcpFileClient::aFullDiskIsTold()
{
    QSKIP("A limit on the size of files stands for the full disk, and Windows has none.");
}
#else
void tst_TcpFileClient::aFullDiskIsTold()
{
    constexpr rlim_t room = 100'000;
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit previous{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &previous), 0);
    const rlimit limited{room, previous.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limited), 0);

    FilePeer peer(FilePeer::sending(pattern(int(room) + 1)));
    Transfer transfer;
    const bool isSuccess = transfer.fetch(peer, qint64(room) + 1);

    QCOMPARE(setrlimit(RLIMIT_FSIZE, &previous), 0);
    std::signal(SIGXFSZ, previousHandler);
    QVERIFY(!isSuccess);
    QVERIFY2(transfer.text.startsWith(QStringLiteral("File-Error.(")), qPrintable(transfer.text));
    QCOMPARE(transfer.entries(), QStringList());
}
#endif

void tst_TcpFileClient::anAbortLeavesNothing()
{
    FilePeer peer([](QTcpSocket &socket, const QByteArray &) { socket.write("01234"); });
    Transfer transfer;
    transfer.begin(peer, 10);
    QTRY_COMPARE(transfer.client.received(), 5);
    transfer.client.abort_and_set_error(QStringLiteral("enough"));
    QVERIFY(!transfer.finish());
    QCOMPARE(transfer.text, QStringLiteral("enough"));
    QCOMPARE(transfer.entries(), QStringList());
    QVERIFY(!transfer.client.isRunning());
}

void tst_TcpFileClient::theDestructorLeavesNothing()
{
    FilePeer peer([](QTcpSocket &socket, const QByteArray &) { socket.write("01234"); });
    const QTemporaryDir folder;
    {
        TcpFileClient client;
        client.start(peer.address(), peer.port(), QStringLiteral("a.rld"), 10,
                     folder.filePath(QStringLiteral("a.rld")));
        QTRY_COMPARE(client.received(), 5);
    }
    QVERIFY(QDir(folder.path()).isEmpty());
}

void tst_TcpFileClient::anAbortWithoutTransferDoesNothing()
{
    Transfer transfer;
    transfer.client.abort_and_set_error(QStringLiteral("nothing"));
    QCOMPARE(transfer.finished.count(), 0);
}

void tst_TcpFileClient::anExistingFileIsNotReplaced()
{
    Transfer transfer;
    FilePeer peer([&transfer](QTcpSocket &socket, const QByteArray &) {
        QFile other(transfer.path()); // takes the name while the transfer runs
        QVERIFY(other.open(QIODevice::WriteOnly));
        other.write("other");
        socket.write("0123456789");
        socket.disconnectFromHost();
    });
    QVERIFY(transfer.fetch(peer, 10));
    QCOMPARE(contentOf(transfer.path()), QByteArray("other"));
    QCOMPARE(contentOf(transfer.path("a_nr_2.rld")), QByteArray("0123456789"));
    QCOMPARE(transfer.client.localName(), transfer.path("a_nr_2.rld"));
}

void tst_TcpFileClient::whatAKilledProgramLeftIsReplaced()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    QFile left(transfer.path("a.rld.part"));
    QVERIFY(left.open(QIODevice::WriteOnly));
    left.write("some more bytes than the file has");
    left.close();
    QVERIFY(transfer.fetch(peer, 10));
    QCOMPARE(contentOf(transfer.path()), QByteArray("0123456789"));
    QCOMPARE(transfer.entries(), QStringList{QStringLiteral("a.rld")});
}

void tst_TcpFileClient::aFileThatAnotherTransferWritesIsLeftAlone()
{
    QTcpSocket *logger = nullptr;
    FilePeer slow([&logger](QTcpSocket &socket, const QByteArray &) {
        logger = &socket;
        socket.write("01234");
    });
    FilePeer fast(FilePeer::sending("abc"));
    Transfer first;
    first.begin(slow, 10);
    QTRY_COMPARE(first.client.received(), 5);

    TcpFileClient second;
    QSignalSpy finished(&second, &TcpFileClient::signal_finished);
    second.start(fast.address(), fast.port(), QStringLiteral("a.rld"), 3, first.path());
    QVERIFY(finished.wait());
    QCOMPARE(finished.at(0).at(0).toBool(), false);
    QCOMPARE(finished.at(0).at(1).toString(),
             QStringLiteral("File-Error.(Another download is writing this file.)"));

    logger->write("56789");
    logger->disconnectFromHost();
    QVERIFY(first.finish());
    QCOMPARE(contentOf(first.path()), QByteArray("0123456789"));
}

void tst_TcpFileClient::aLockWithoutOwnerDoesNotBlock()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    QFile lock(transfer.path("a.rld.part.lock"));
    QVERIFY(lock.open(QIODevice::WriteOnly));
    lock.close();
    QVERIFY2(transfer.fetch(peer, 10), qPrintable(transfer.text));
    QCOMPARE(transfer.entries(), QStringList{QStringLiteral("a.rld")});
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
    QTest::newRow("dropped") << QStringLiteral("refuse-file-connection")
                             << QStringLiteral("disconnected");
}

void tst_TcpFileClient::theSimulatedLoggersFilesArrive()
{
    QFETCH(QString, fault);
    QFETCH(QString, text);
    const QByteArray bytes = pattern(700'000);
    const QTemporaryDir storage;
    QFile stored(storage.filePath(QStringLiteral("a.rld")));
    QVERIFY(stored.open(QIODevice::WriteOnly));
    stored.write(bytes);
    stored.close();
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
