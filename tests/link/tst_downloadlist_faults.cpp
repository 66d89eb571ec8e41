#include "tests/link/downloadbench.h"
#include "tests/support/filepeer.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/loopbackaddress.h"
#include "tests/support/silentport.h"

#include <QTest>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using State = DownloadList::FileState;
using States = QVector<State>;
using downloadbench::Bench;

// Folders that take nothing, loggers that aren't there, and what a cancel leaves in each state.
class tst_DownloadList_Faults : public QObject
{
    Q_OBJECT

private slots:
    void aReadOnlyFolderFailsEveryFileWithItsCause();
    void aFileInPlaceOfTheFolderFailsEveryFile();
    void somethingInTheWayOfOneFileDoesNotKeepTheOthers();
    void aFullDiskFailsOneFileAndTheOthersGoOn();
    void aRetryWhenThereIsRoomAgainFetchesWhatFailed();

    void anUnreachableLoggerFailsEveryFileAndEnds();
    void aRetryWhenTheLoggerIsBackFetchesAll();
    void aLoggerThatDoesNotAnswerIsGivenUpAfterTheSilence();

    void cancelBeforeTheStartChangesNothing();
    void cancelWhileConnectingLeavesNothing();
    void cancelBeforeTheFirstByteLeavesNothing();
    void cancelBehindTheEndKeepsTheFiles();
    void aSecondCancelChangesNothing();
    void cancelDuringARetryKeepsWhatHasArrived();
    void aCancelledFileTellsSo();
    void aRetryBehindACancelFetchesTheRest();
};

namespace {

const States allFailed{State::Failed, State::Failed, State::Failed};

// An unreachable logger: nothing listens there.
struct UnreachableBench : Bench
{
    UnreachableBench() { address = freeLoopbackAddress(); }
};

// The first file is too large for the disk.
struct FullDiskBench : Bench
{
    static constexpr int room = 400'000;

    FullDiskBench()
    {
        contents[0] = pattern(2 * room);
        sizes[0] = contents.at(0).size();
        putOnLogger(0);
    }
    bool runOnFullDisk()
    {
        const FileSizeLimit limit(room);
        return run();
    }
};

} // namespace

void tst_DownloadList_Faults::aReadOnlyFolderFailsEveryFileWithItsCause()
{
#ifdef Q_OS_UNIX
    if (geteuid() == 0)
        QSKIP("root may write everywhere");
    Bench bench;
    QFile::setPermissions(bench.folder, QFile::ReadOwner | QFile::ExeOwner);
    const bool hasEnded = bench.run();
    QFile::setPermissions(bench.folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY(hasEnded);
    QCOMPARE(bench.states(), allFailed);
    for (const DownloadList::File &file : bench.list().files())
        QVERIFY2(file.error.startsWith(QStringLiteral("File-Error.(")), qPrintable(file.error));
    QCOMPARE(bench.entries(), QStringList());
#else
    QSKIP("folders can't be closed");
#endif
}

void tst_DownloadList_Faults::aFileInPlaceOfTheFolderFailsEveryFile()
{
    Bench bench;
    bench.folder = bench.target.filePath(QStringLiteral("raw_log_data"));
    writeFile(bench.folder, "a file");
    bench.list().setFreeSpaceSource([] { return std::nullopt; });
    QVERIFY(bench.run());
    QCOMPARE(bench.states(), allFailed);
    for (const DownloadList::File &file : bench.list().files())
        QVERIFY(!file.error.isEmpty());
    QCOMPARE(contentOf(bench.folder), QByteArray("a file"));
}

void tst_DownloadList_Faults::somethingInTheWayOfOneFileDoesNotKeepTheOthers()
{
    Bench bench;
    QVERIFY(QDir(bench.folder).mkpath(QStringLiteral("a.rld.part/theirs")));
    QVERIFY(bench.run());
    QCOMPARE(bench.states(), (States{State::Failed, State::Arrived, State::Arrived}));
    const QString &error = bench.list().files().at(0).error;
    QVERIFY2(error.startsWith(QStringLiteral("File-Error.(")), qPrintable(error));
    QCOMPARE(bench.entries(), (QStringList{QStringLiteral("a.rld.part"), QStringLiteral("b.rld"),
                                           QStringLiteral("c.rld")}));
}

void tst_DownloadList_Faults::aFullDiskFailsOneFileAndTheOthersGoOn()
{
    if (!FileSizeLimit::isPossible)
        QSKIP("This system has no limit that stands for a full disk.");
    FullDiskBench bench;
    QVERIFY(bench.runOnFullDisk());
    QCOMPARE(bench.states(), (States{State::Failed, State::Arrived, State::Arrived}));
    const QString &error = bench.list().files().at(0).error;
    QVERIFY2(error.startsWith(QStringLiteral("File-Error.(")), qPrintable(error));
    QCOMPARE(bench.entries(), bench.names.mid(1));
}

void tst_DownloadList_Faults::aRetryWhenThereIsRoomAgainFetchesWhatFailed()
{
    if (!FileSizeLimit::isPossible)
        QSKIP("This system has no limit that stands for a full disk.");
    FullDiskBench bench;
    QVERIFY(bench.runOnFullDisk());
    QCOMPARE(bench.list().retry(), QString());
    QVERIFY(bench.waitForEnd());
    QCOMPARE(bench.entries(), bench.names);
    QCOMPARE(contentOf(bench.list().arrived().at(0)), bench.contents.at(0));
}

void tst_DownloadList_Faults::anUnreachableLoggerFailsEveryFileAndEnds()
{
    UnreachableBench bench;
    QSignalSpy failed(&bench.list(), &DownloadList::fileFailed);
    QVERIFY(bench.list().start().isEmpty());
    QTRY_COMPARE(bench.ended->count(), 1);
    QCOMPARE(failed.count(), 3);
    QCOMPARE(bench.states(), allFailed);
    for (const DownloadList::File &file : bench.list().files())
        QVERIFY(!file.error.isEmpty());
    QCOMPARE(bench.entries(), QStringList());
    QVERIFY(!bench.list().isRunning());
    QCOMPARE(bench.list().percent(), 0);
}

void tst_DownloadList_Faults::aRetryWhenTheLoggerIsBackFetchesAll()
{
    UnreachableBench bench;
    bench.sizes = {3, 3, 3};
    QVERIFY(bench.run());
    FilePeer back(FilePeer::sending("abc"), bench.address, protocol::filePort);
    QCOMPARE(bench.list().retry(), QString());
    QVERIFY(bench.waitForEnd());
    QCOMPARE(bench.entries(), bench.names);
    QCOMPARE(back.requests.size(), 3);
    for (const DownloadList::File &file : bench.list().files())
        QCOMPARE(file.error, QString());
}

void tst_DownloadList_Faults::aLoggerThatDoesNotAnswerIsGivenUpAfterTheSilence()
{
    UnreachableBench bench;
    const SilentPort silent(bench.address, protocol::filePort);
    if (!silent.isSilent())
        QSKIP("This system has no port that is silent.");
    QVERIFY(bench.run());
    QCOMPARE(bench.states(), allFailed);
    QCOMPARE(bench.list().files().at(2).error,
             QStringLiteral("The logger sent nothing for 0.2 seconds."));
}

void tst_DownloadList_Faults::cancelBeforeTheStartChangesNothing()
{
    Bench bench;
    bench.list().cancel();
    QCOMPARE(bench.states(), States(3, State::Waiting));
    QVERIFY(bench.run());
    QCOMPARE(bench.list().arrived().size(), 3);
}

void tst_DownloadList_Faults::cancelWhileConnectingLeavesNothing()
{
    UnreachableBench bench;
    const SilentPort silent(bench.address, protocol::filePort);
    if (!silent.isSilent())
        QSKIP("This system has no port that is silent.");
    bench.list().client().setSilenceLimit(TcpFileClient::defaultSilenceLimit_ms);
    QVERIFY(bench.list().start().isEmpty());
    QCoreApplication::processEvents();
    QVERIFY(bench.list().isRunning());
    bench.list().cancel();
    QVERIFY(!bench.list().isRunning());
    QCoreApplication::processEvents();
    QCOMPARE(bench.ended->count(), 0);
    QCOMPARE(bench.states(), (States{State::Failed, State::Waiting, State::Waiting}));
    QCOMPARE(bench.entries(), QStringList());
}

void tst_DownloadList_Faults::cancelBeforeTheFirstByteLeavesNothing()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=0"));
    bench.list().client().setSilenceLimit(TcpFileClient::defaultSilenceLimit_ms);
    QSignalSpy status(&bench.list(), &DownloadList::statusText);
    QVERIFY(bench.list().start().isEmpty());
    QTRY_COMPARE(status.count(), 1); // it is connected
    bench.list().cancel();
    QCOMPARE(bench.states(), (States{State::Failed, State::Waiting, State::Waiting}));
    QCOMPARE(bench.entries(), QStringList());
}

void tst_DownloadList_Faults::cancelBehindTheEndKeepsTheFiles()
{
    Bench bench;
    QVERIFY(bench.run());
    bench.list().cancel();
    QCOMPARE(bench.states(), States(3, State::Arrived));
    QCOMPARE(bench.entries(), bench.names);
}

void tst_DownloadList_Faults::aSecondCancelChangesNothing()
{
    Bench bench;
    QVERIFY(bench.list().start().isEmpty());
    bench.list().cancel();
    const States states = bench.states();
    bench.list().cancel();
    QCoreApplication::processEvents();
    QCOMPARE(bench.states(), states);
    QCOMPARE(bench.ended->count(), 0);
}

void tst_DownloadList_Faults::cancelDuringARetryKeepsWhatHasArrived()
{
    Bench bench;
    bench.removeFromLogger(1);
    QVERIFY(bench.run());
    bench.putOnLogger(1);
    bench.logger.setFault(QStringLiteral("stalled-file=1000"));
    bench.list().client().setSilenceLimit(TcpFileClient::defaultSilenceLimit_ms);
    QCOMPARE(bench.list().retry(), QString());
    QTRY_COMPARE(bench.list().client().received(), 1000);
    bench.list().cancel();
    QCOMPARE(bench.states(), (States{State::Arrived, State::Failed, State::Arrived}));
    QCOMPARE(bench.entries(), (QStringList{QStringLiteral("a.rld"), QStringLiteral("c.rld")}));
}

void tst_DownloadList_Faults::aCancelledFileTellsSo()
{
    Bench bench;
    QVERIFY(bench.list().start().isEmpty());
    bench.list().cancel();
    QCOMPARE(bench.list().files().at(0).error, QStringLiteral("cancelled"));
}

void tst_DownloadList_Faults::aRetryBehindACancelFetchesTheRest()
{
    Bench bench;
    QVERIFY(bench.list().start().isEmpty());
    bench.list().cancel();
    QCOMPARE(bench.list().retry(), QString());
    QVERIFY(bench.waitForEnd());
    QCOMPARE(bench.states(), States(3, State::Arrived));
    QCOMPARE(bench.entries(), bench.names);
}

QTEST_GUILESS_MAIN(tst_DownloadList_Faults)
#include "tst_downloadlist_faults.moc"
