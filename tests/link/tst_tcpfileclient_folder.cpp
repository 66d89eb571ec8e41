#include "tests/link/filetransfer.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/lockfiles.h"

#include <QTest>

using namespace filetransfer;

// What a download leaves in its folder.
class tst_TcpFileClient_Folder : public QObject
{
    Q_OBJECT

private slots:
    void aFileIsCalledPartUntilItIsWhole();
    void aMissingFolderIsTold();
    void aFolderThatVanishesIsTold();
    void aFullDiskIsTold();
    void anAbortLeavesNothing();
    void theDestructorLeavesNothing();
    void anExistingFileIsNotReplaced();
    void whatAKilledProgramLeftIsReplaced();
    void aFileThatAnotherTransferWritesIsLeftAlone();
    void aLockWithoutOwnerDoesNotBlock();
    void aFileThatAnotherComputerWritesIsToldWithItsName();
    void aFolderInPlaceOfTheLockIsTold();
};

void tst_TcpFileClient_Folder::aFileIsCalledPartUntilItIsWhole()
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

void tst_TcpFileClient_Folder::aMissingFolderIsTold()
{
    FilePeer peer(FilePeer::sending("0"));
    Transfer transfer;
    QVERIFY(QDir(transfer.folder.path()).removeRecursively());
    QVERIFY(!transfer.fetch(peer, 1));
    QVERIFY2(transfer.text.startsWith(QStringLiteral("File-Error.(")), qPrintable(transfer.text));
}

void tst_TcpFileClient_Folder::aFolderThatVanishesIsTold()
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

void tst_TcpFileClient_Folder::aFullDiskIsTold()
{
    if (!FileSizeLimit::isPossible)
        QSKIP("This system has no limit that stands for a full disk.");
    constexpr int room = 100'000;
    FilePeer peer(FilePeer::sending(pattern(room + 1)));
    Transfer transfer;
    bool isSuccess = false;
    {
        const FileSizeLimit limit(room);
        isSuccess = transfer.fetch(peer, room + 1);
    }
    QVERIFY(!isSuccess);
    QVERIFY2(transfer.text.startsWith(QStringLiteral("File-Error.(")), qPrintable(transfer.text));
    QCOMPARE(transfer.entries(), QStringList());
}

void tst_TcpFileClient_Folder::anAbortLeavesNothing()
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

void tst_TcpFileClient_Folder::theDestructorLeavesNothing()
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

void tst_TcpFileClient_Folder::anExistingFileIsNotReplaced()
{
    Transfer transfer;
    FilePeer peer([&transfer](QTcpSocket &socket, const QByteArray &) {
        writeFile(transfer.path(), "other"); // takes the name while the transfer runs
        socket.write("0123456789");
        socket.disconnectFromHost();
    });
    QVERIFY(transfer.fetch(peer, 10));
    QCOMPARE(contentOf(transfer.path()), QByteArray("other"));
    QCOMPARE(contentOf(transfer.path("a_nr_2.rld")), QByteArray("0123456789"));
    QCOMPARE(transfer.client.localName(), transfer.path("a_nr_2.rld"));
}

void tst_TcpFileClient_Folder::whatAKilledProgramLeftIsReplaced()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    writeFile(transfer.path("a.rld.part"), "some more bytes than the file has");
    QVERIFY(transfer.fetch(peer, 10));
    QCOMPARE(contentOf(transfer.path()), QByteArray("0123456789"));
    QCOMPARE(transfer.entries(), QStringList{QStringLiteral("a.rld")});
}

void tst_TcpFileClient_Folder::aFileThatAnotherTransferWritesIsLeftAlone()
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

void tst_TcpFileClient_Folder::aLockWithoutOwnerDoesNotBlock()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    writeFile(transfer.path("a.rld.part.lock"), {});
    QVERIFY2(transfer.fetch(peer, 10), qPrintable(transfer.text));
    QCOMPARE(transfer.entries(), QStringList{QStringLiteral("a.rld")});
}

void tst_TcpFileClient_Folder::aFileThatAnotherComputerWritesIsToldWithItsName()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    writeFile(transfer.path("a.rld.part"), "half");
    writeFile(transfer.path("a.rld.part.lock"), lockOfAnotherComputer());
    QVERIFY(!transfer.fetch(peer, 10));
    QCOMPARE(transfer.text,
             QStringLiteral("File-Error.(The computer bench-pc is writing this file. If nothing "
                            "runs there any more, delete %1.)")
                 .arg(QDir::toNativeSeparators(transfer.path("a.rld.part.lock"))));
    QCOMPARE(contentOf(transfer.path("a.rld.part")), QByteArray("half"));
}

void tst_TcpFileClient_Folder::aFolderInPlaceOfTheLockIsTold()
{
    FilePeer peer(FilePeer::sending("0123456789"));
    Transfer transfer;
    QVERIFY(QDir().mkpath(transfer.path("a.rld.part.lock/theirs")));
    QVERIFY(!transfer.fetch(peer, 10));
    QCOMPARE(transfer.text,
             QStringLiteral("File-Error.(Something else is called %1, which this file needs while "
                            "it grows. Rename or delete it.)")
                 .arg(QDir::toNativeSeparators(transfer.path("a.rld.part.lock"))));
    QCOMPARE(transfer.entries(), QStringList{QStringLiteral("a.rld.part.lock")});
}

QTEST_GUILESS_MAIN(tst_TcpFileClient_Folder)
#include "tst_tcpfileclient_folder.moc"
