#include "tests/link/downloadbench.h"

#include <QTest>

using State = DownloadList::FileState;
using downloadbench::Bench;

class tst_DownloadList : public QObject
{
    Q_OBJECT

private slots:
    void allFilesArriveInTheirOrder();
    void anEmptyListEndsAtOnce();
    void namesThatAreTakenAreNumbered();
    void filesOfOneLocalNameAreKeptApart();
    void hostileNamesStayInTheFolder();
    void aNameThatCanNotBeKeptFailsAlone();
    void aFailureDoesNotKeepTheOthers();
    void aRetryFetchesOnlyWhatFailed();
    void aRetryWhileOthersRunIsFetchedBehindThem();
    void addedFilesWaitBehindTheOthers();
    void addedFilesThatTheListHasAreNotFetchedTwice();
    void anAddedFileThatFailedIsFetchedAgain();
    void addedFilesOfAnotherSizeAreOtherFiles();
    void addingWithoutRoomChangesNothing();
    void addingToAListThatHasEndedBeginsAgain();
    void impossibleSizesFailAloneAndAreNotCounted();
    void aVanishedFolderFailsEveryFile();
    void aFolderThatVanishesMeanwhileFailsTheRest();
    void aShortageOfSpaceIsToldBeforeTheStart();
    void exactlyTheSpaceNeededIsEnough();
    void unknownSpaceDoesNotKeepFromStarting();
    void aRetryNeedsSpaceForWhatIsLeft();
    void whatKilledDownloadsLeftGivesItsRoomBack();
    void aHalfFileWithoutALockIsReplaced();
    void aNameThatAnotherComputerKeepsIsLeftToIt();
    void aRetryClearsTheFolderFirst();
    void aFileThatAnotherDownloadFetchesIsNotCleared();
    void cancelLeavesWhatHasArrived();
    void cancelInAFilesEndStartsNoOther();
    void percentIsOfAllBytes();
    void percentOfEmptyFilesIsThatOfFiles();
    void hugeSizesDoNotOverflow();
    void manyBadNamesDoNotExhaustTheStack();
};

void tst_DownloadList::allFilesArriveInTheirOrder()
{
    Bench bench;
    QSignalSpy started(&bench.list(), &DownloadList::fileStarted);
    QSignalSpy arrived(&bench.list(), &DownloadList::fileArrived);
    QVERIFY(bench.run());
    QCOMPARE(bench.entries(), bench.names);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(contentOf(bench.list().arrived().at(i)), bench.contents.at(i));
        QCOMPARE(started.at(i).at(0).toInt(), i);
        QCOMPARE(arrived.at(i).at(0).toInt(), i);
    }
    QCOMPARE(bench.list().percent(), 100);
    QVERIFY(!bench.list().isRunning());
}

void tst_DownloadList::anEmptyListEndsAtOnce()
{
    Bench bench;
    bench.names.clear();
    bench.sizes.clear();
    QVERIFY(bench.run());
    QCOMPARE(bench.list().percent(), 100);
}

void tst_DownloadList::namesThatAreTakenAreNumbered()
{
    Bench bench;
    writeFile(bench.target.filePath(QStringLiteral("a.rld")), "older");
    QVERIFY(bench.run());
    QCOMPARE(contentOf(bench.target.filePath(QStringLiteral("a.rld"))), QByteArray("older"));
    QCOMPARE(bench.list().arrived().at(0), bench.target.filePath(QStringLiteral("a_nr_2.rld")));
}

void tst_DownloadList::filesOfOneLocalNameAreKeptApart()
{
    Bench bench;
    bench.names = QStringList{QStringLiteral("a.rld"), QStringLiteral("a.rld")};
    bench.sizes = {bench.sizes.at(0), bench.sizes.at(0)};
    QVERIFY(bench.run());
    QCOMPARE(bench.entries(), (QStringList{QStringLiteral("a.rld"), QStringLiteral("a_nr_2.rld")}));
}

// The simulated logger serves no such files, so they are announced without bytes.
void tst_DownloadList::hostileNamesStayInTheFolder()
{
    Bench bench;
    bench.names = QStringList{QStringLiteral("../up.rld"), QStringLiteral("/tmp/absolute.rld"),
                              QStringLiteral("..\\back.rld")};
    bench.sizes = {0, 0, 0};
    QVERIFY(bench.run());
    QCOMPARE(bench.entries(), (QStringList{QStringLiteral("absolute.rld"),
                                           QStringLiteral("back.rld"), QStringLiteral("up.rld")}));
}

void tst_DownloadList::aNameThatCanNotBeKeptFailsAlone()
{
    Bench bench;
    bench.names[1] = QStringLiteral("..");
    QVERIFY(bench.run());
    QCOMPARE(bench.states(), (QVector<State>{State::Arrived, State::Failed, State::Arrived}));
    QVERIFY(!bench.list().files().at(1).error.isEmpty());
}

void tst_DownloadList::aFailureDoesNotKeepTheOthers()
{
    Bench bench;
    bench.removeFromLogger(0);
    QSignalSpy failed(&bench.list(), &DownloadList::fileFailed);
    QVERIFY(bench.run());
    QCOMPARE(bench.states(), (QVector<State>{State::Failed, State::Arrived, State::Arrived}));
    QCOMPARE(bench.list().files().at(0).error, QStringLiteral("disconnected"));
    QCOMPARE(failed.count(), 1);
    QCOMPARE(failed.at(0).at(0).toInt(), 0);
    QCOMPARE(bench.list().count(State::Failed), 1);
    QCOMPARE(bench.entries(), bench.names.mid(1));
}

void tst_DownloadList::aRetryFetchesOnlyWhatFailed()
{
    Bench bench;
    bench.removeFromLogger(1);
    QVERIFY(bench.run());
    bench.putOnLogger(1);
    QSignalSpy started(&bench.list(), &DownloadList::fileStarted);
    QCOMPARE(bench.list().retry(), QString());
    QVERIFY(bench.waitForEnd());
    QCOMPARE(started.count(), 1);
    QCOMPARE(started.at(0).at(0).toInt(), 1);
    QCOMPARE(bench.list().arrived().size(), 3);
    QCOMPARE(contentOf(bench.list().arrived().at(1)), bench.contents.at(1));
    QCOMPARE(bench.entries(), bench.names);
    QCOMPARE(bench.list().files().at(1).error, QString());
}

void tst_DownloadList::aRetryWhileOthersRunIsFetchedBehindThem()
{
    Bench bench;
    bench.removeFromLogger(0);
    QSignalSpy started(&bench.list(), &DownloadList::fileStarted);
    QObject::connect(&bench.list(), &DownloadList::fileStarted, [&bench](int index) {
        if (index == 1) {
            bench.putOnLogger(0);
            QCOMPARE(bench.list().retry(), QString());
        }
    });
    QVERIFY(bench.run());
    QList<int> order;
    for (const QList<QVariant> &start : started)
        order += start.at(0).toInt();
    QCOMPARE(order, (QList<int>{0, 1, 2, 0}));
    QCOMPARE(bench.list().arrived().size(), 3);
}

void tst_DownloadList::addedFilesWaitBehindTheOthers()
{
    Bench bench;
    const QStringList last = bench.names.mid(2);
    const QList<qint64> lastSize = bench.sizes.mid(2);
    bench.names.removeLast();
    bench.sizes.removeLast();
    QSignalSpy started(&bench.list(), &DownloadList::fileStarted);
    QVERIFY(bench.list().start().isEmpty());
    QCOMPARE(bench.list().add(last, lastSize), QString());
    QCOMPARE(bench.states(), (QVector<State>{State::Running, State::Waiting, State::Waiting}));
    QVERIFY(bench.waitForEnd());
    QCOMPARE(started.count(), 3);
    QCOMPARE(started.at(2).at(0).toInt(), 2);
    QCOMPARE(bench.list().arrived().size(), 3);
    QCOMPARE(bench.list().totalBytes(), 300'000 + 300'001 + 300'002);
}

void tst_DownloadList::addedFilesThatTheListHasAreNotFetchedTwice()
{
    Bench bench;
    QObject::connect(&bench.list(), &DownloadList::fileStarted, [&bench](int index) {
        if (index == 1) // one has arrived, one runs, one waits
            QCOMPARE(bench.list().add(bench.names, bench.sizes), QString());
    });
    QVERIFY(bench.run());
    QCOMPARE(bench.list().files().size(), 3);
    QCOMPARE(bench.entries(), bench.names);
}

void tst_DownloadList::anAddedFileThatFailedIsFetchedAgain()
{
    Bench bench;
    bench.removeFromLogger(0);
    QObject::connect(&bench.list(), &DownloadList::fileStarted, [&bench](int index) {
        if (index != 1)
            return;
        bench.putOnLogger(0);
        QCOMPARE(bench.list().add(bench.names.mid(0, 1), bench.sizes.mid(0, 1)), QString());
    });
    QVERIFY(bench.run());
    QCOMPARE(bench.list().files().size(), 3);
    QCOMPARE(bench.list().arrived().size(), 3);
}

void tst_DownloadList::addedFilesOfAnotherSizeAreOtherFiles()
{
    Bench bench;
    QVERIFY(bench.list().start().isEmpty());
    QCOMPARE(bench.list().add(bench.names.mid(0, 1), {5}), QString());
    QCOMPARE(bench.list().files().size(), 4);
    QCOMPARE(bench.list().files().at(3).size, 5);
}

void tst_DownloadList::addingWithoutRoomChangesNothing()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=1000"));
    QVERIFY(bench.list().start().isEmpty());
    const quint64 needed = quint64(bench.list().bytesLeft()) + 5;
    bench.list().setFreeSpaceSource([needed] { return needed - 1; });
    QVERIFY(!bench.list().add({QStringLiteral("d.rld")}, {5}).isEmpty());
    QCOMPARE(bench.list().files().size(), 3);
    bench.list().setFreeSpaceSource([needed] { return needed; });
    QCOMPARE(bench.list().add({QStringLiteral("d.rld")}, {5}), QString());
    QCOMPARE(bench.list().files().size(), 4);
}

void tst_DownloadList::addingToAListThatHasEndedBeginsAgain()
{
    Bench bench;
    const QStringList last = bench.names.mid(2);
    const QList<qint64> lastSize = bench.sizes.mid(2);
    bench.names.removeLast();
    bench.sizes.removeLast();
    QVERIFY(bench.run());
    QCOMPARE(bench.list().add(last, lastSize), QString());
    QVERIFY(bench.waitForEnd());
    QCOMPARE(bench.list().arrived().size(), 3);
}

void tst_DownloadList::impossibleSizesFailAloneAndAreNotCounted()
{
    Bench bench;
    bench.sizes[0] = -5;
    bench.sizes[2] = (qint64(1) << 53) + 1;
    QCOMPARE(bench.list().totalBytes(), bench.sizes.at(1));
    QVERIFY(bench.run());
    QCOMPARE(bench.states(), (QVector<State>{State::Failed, State::Arrived, State::Failed}));
}

void tst_DownloadList::aVanishedFolderFailsEveryFile()
{
    Bench bench;
    bench.list().setFreeSpaceSource([] { return std::nullopt; });
    QVERIFY(QDir(bench.target.path()).removeRecursively());
    QVERIFY(bench.run());
    QCOMPARE(bench.states(), (QVector<State>{State::Failed, State::Failed, State::Failed}));
    QVERIFY(!QFile::exists(bench.target.path()));
}

void tst_DownloadList::aFolderThatVanishesMeanwhileFailsTheRest()
{
    Bench bench;
    QObject::connect(&bench.list(), &DownloadList::fileArrived,
                     [&bench] { QVERIFY(QDir(bench.target.path()).removeRecursively()); });
    QVERIFY(bench.run());
    QCOMPARE(bench.states(), (QVector<State>{State::Arrived, State::Failed, State::Failed}));
    for (int i : {1, 2})
        QCOMPARE(
            bench.list().files().at(i).error,
            QStringLiteral("The file can't be stored: its name holds nothing that a file can be "
                           "called by, or the folder is gone."));
    QVERIFY(!QFile::exists(bench.target.path()));
}

void tst_DownloadList::aShortageOfSpaceIsToldBeforeTheStart()
{
    Bench bench;
    bench.sizes = {qint64(1) << 30, qint64(1) << 29, 0};
    QSignalSpy started(&bench.list(), &DownloadList::fileStarted);
    bench.list().setFreeSpaceSource([] { return quint64(3) << 20; });
    QCOMPARE(bench.list().start(),
             QStringLiteral("There is not enough free space in %1.\r\nNeeded: 1.50 GiB (1610612736 "
                            "bytes)\r\nAvailable: 3.00 MiB (3145728 bytes)")
                 .arg(QDir::toNativeSeparators(bench.target.path())));
    QCOMPARE(started.count(), 0);
    QVERIFY(!bench.list().isRunning());
}

void tst_DownloadList::exactlyTheSpaceNeededIsEnough()
{
    Bench bench;
    const quint64 needed = quint64(bench.list().totalBytes());
    bench.list().setFreeSpaceSource([needed] { return needed - 1; });
    QVERIFY(!bench.list().start().isEmpty());
    bench.list().setFreeSpaceSource([needed] { return needed; });
    QVERIFY(bench.run());
}

void tst_DownloadList::unknownSpaceDoesNotKeepFromStarting()
{
    Bench bench;
    bench.list().setFreeSpaceSource([] { return std::nullopt; });
    QVERIFY(bench.run());
    QCOMPARE(bench.list().arrived().size(), 3);
}

void tst_DownloadList::aRetryNeedsSpaceForWhatIsLeft()
{
    Bench bench;
    bench.removeFromLogger(1);
    QVERIFY(bench.run());
    const quint64 needed = quint64(bench.sizes.at(1));
    bench.list().setFreeSpaceSource([needed] { return needed - 1; });
    QVERIFY(!bench.list().retry().isEmpty());
    QCOMPARE(bench.states().at(1), State::Failed);
}

void tst_DownloadList::whatKilledDownloadsLeftGivesItsRoomBack()
{
    Bench bench;
    bench.leaveHalfFile("killed.rld");
    writeFile(bench.target.filePath(QStringLiteral("notes.part")), "no lock beside it");
    QStringList seen;
    bench.list().setFreeSpaceSource([&] {
        seen = bench.entries();
        return std::nullopt;
    });
    QVERIFY(bench.run());
    QCOMPARE(seen, QStringList{QStringLiteral("notes.part")});
}

void tst_DownloadList::aHalfFileWithoutALockIsReplaced()
{
    Bench bench;
    writeFile(bench.target.filePath(QStringLiteral("a.rld.part")), "half");
    QVERIFY(bench.run());
    QCOMPARE(bench.entries(), bench.names);
    QCOMPARE(contentOf(bench.target.filePath(QStringLiteral("a.rld"))), bench.contents.at(0));
}

void tst_DownloadList::aNameThatAnotherComputerKeepsIsLeftToIt()
{
    Bench bench;
    const QString lock = bench.target.filePath(QStringLiteral("a.rld.part.lock"));
    writeFile(lock, lockOfAnotherComputer());
    QVERIFY(bench.run());
    QVERIFY(QFile::exists(lock));
    QCOMPARE(bench.list().arrived().at(0), bench.target.filePath(QStringLiteral("a_nr_2.rld")));
}

void tst_DownloadList::aRetryClearsTheFolderFirst()
{
    Bench bench;
    bench.removeFromLogger(1);
    QVERIFY(bench.run());
    bench.leaveHalfFile("killed.rld");
    QStringList seen;
    bench.list().setFreeSpaceSource([&] {
        seen = bench.entries();
        return quint64(0);
    });
    QVERIFY(!bench.list().retry().isEmpty());
    QCOMPARE(seen, (QStringList{QStringLiteral("a.rld"), QStringLiteral("c.rld")}));
}

void tst_DownloadList::aFileThatAnotherDownloadFetchesIsNotCleared()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=1000"));
    bench.list().client().setSilenceLimit(60'000);
    QVERIFY(bench.list().start().isEmpty());
    QTRY_COMPARE(bench.list().client().received(), 1000);
    DownloadList other(bench.logger.address(), protocol::filePort, {}, {}, bench.target.path());
    QVERIFY(other.start().isEmpty());
    QVERIFY(QFile::exists(bench.target.filePath(QStringLiteral("a.rld.part"))));
}

void tst_DownloadList::cancelLeavesWhatHasArrived()
{
    Bench bench;
    QObject::connect(&bench.list(), &DownloadList::fileStarted, [&bench](int index) {
        if (index == 1)
            bench.logger.setFault(QStringLiteral("stalled-file=1000"));
    });
    QVERIFY(bench.list().start().isEmpty());
    QTRY_COMPARE(bench.list().client().received(), 1000);
    bench.list().cancel();
    QCOMPARE(bench.entries(), QStringList{QStringLiteral("a.rld")});
    QCoreApplication::processEvents();
    QCOMPARE(bench.ended->count(), 0);
    QCOMPARE(bench.states(), (QVector<State>{State::Arrived, State::Failed, State::Waiting}));
}

void tst_DownloadList::cancelInAFilesEndStartsNoOther()
{
    Bench bench;
    QSignalSpy started(&bench.list(), &DownloadList::fileStarted);
    QSignalSpy arrived(&bench.list(), &DownloadList::fileArrived);
    QObject::connect(&bench.list(), &DownloadList::fileArrived,
                     [&bench] { bench.list().cancel(); });
    QVERIFY(bench.list().start().isEmpty());
    QVERIFY(arrived.wait());
    QCoreApplication::processEvents();
    QCOMPARE(started.count(), 1);
    QVERIFY(!bench.list().isRunning());
    QCOMPARE(bench.states(), (QVector<State>{State::Arrived, State::Waiting, State::Waiting}));
}

void tst_DownloadList::percentIsOfAllBytes()
{
    Bench bench;
    bench.sizes = {300'000, 300'001, 10'000'000};
    QCOMPARE(bench.list().percent(), 0);
    QVERIFY(bench.run()); // the third is shorter than announced
    QCOMPARE(bench.list().percent(), 5);
    QCOMPARE(bench.list().receivedBytes(), 600'001);
    QCOMPARE(bench.list().bytesLeft(), 0);
}

void tst_DownloadList::percentOfEmptyFilesIsThatOfFiles()
{
    Bench bench;
    bench.sizes = {0, 0, 0};
    for (int i = 0; i < 2; ++i)
        writeFile(bench.storage.filePath(bench.names.at(i)), {});
    QCOMPARE(bench.list().percent(), 0);
    QVERIFY(bench.run());
    QCOMPARE(bench.list().percent(), 66);
}

void tst_DownloadList::hugeSizesDoNotOverflow()
{
    QStringList names;
    QList<qint64> sizes;
    for (int i = 0; i < 5000; ++i) {
        names += QStringLiteral("a.rld");
        sizes += TcpFileClient::maxFileBytes;
    }
    const DownloadList list(QHostAddress::LocalHost, 1, names, sizes, QStringLiteral("."));
    QVERIFY(list.totalBytes() > TcpFileClient::maxFileBytes);
    QCOMPARE(list.percent(), 0);
}

void tst_DownloadList::manyBadNamesDoNotExhaustTheStack()
{
    Bench bench;
    bench.names.clear();
    bench.sizes.clear();
    for (int i = 0; i < 20'000; ++i) {
        bench.names += QStringLiteral("..");
        bench.sizes += 1;
    }
    const auto silent = [](QtMsgType, const QMessageLogContext &, const QString &) {};
    const QtMessageHandler previous = qInstallMessageHandler(silent);
    const bool hasEnded = bench.run();
    qInstallMessageHandler(previous);
    QVERIFY(hasEnded);
    QCOMPARE(bench.list().count(State::Failed), 20'000);
}

QTEST_GUILESS_MAIN(tst_DownloadList)
#include "tst_downloadlist.moc"
