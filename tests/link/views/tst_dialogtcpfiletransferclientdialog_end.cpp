#include "tests/link/views/downloaddialogbench.h"

#include <QDesktopServices>
#include <QDir>
#include <QUrl>

using Dialog = DialogTcpFileTransferClientDialog;
using Bench = DownloadDialogBench;

// How the window is left.
class tst_DialogTcpFileTransferClientDialog_End : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ConversionGlobal::OutputFormatFlags>(); }
    void givingUpAFailedFileConvertsTheOthers();
    void cancelRejectsAndLeavesNoHalfFile();
    void cancelWhileNothingAnswersClosesAtOnce();
    void cancelDuringARetryConvertsNothing();
    void cancelOffersWhatHasArrivedForConversion();
    void cancelBeforeAnythingHasArrivedOffersNothing();
    void theCancelButtonAsksNothing();
    void escapeAndClosingAskWhileSomethingRuns_data();
    void escapeAndClosingAskWhileSomethingRuns();
    void aQuestionThatIsAnsweredNoLeavesTheDownload();
    void aQuestionGoesWhenTheDownloadEnds();
    void afterTheEndNothingIsAsked();
    void keysOfTheFirstMomentCancelNothing_data();
    void keysOfTheFirstMomentCancelNothing();
    void whatRunsIsToldToWhoAsks();

public slots:
    void openNothing(const QUrl &) {}
};

void tst_DialogTcpFileTransferClientDialog_End::givingUpAFailedFileConvertsTheOthers()
{
    Bench bench;
    bench.removeFromLogger(1);
    bench.run();
    bench.button("cancel")->click();
    QCOMPARE(bench.converted->count(), 1);
    QCOMPARE(bench.converted->at(0).at(0).toStringList(), QStringList{bench.targetPath(0)});
    QVERIFY(!bench.dialog().isVisible());
}

void tst_DialogTcpFileTransferClientDialog_End::cancelRejectsAndLeavesNoHalfFile()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=10"));
    QSignalSpy rejected(&bench.dialog(), &QDialog::rejected);
    bench.dialog().start();
    QTRY_COMPARE(bench.dialog().list().receivedBytes(), 10);
    bench.button("cancel")->click();
    QCOMPARE(rejected.count(), 1);
    QVERIFY(!bench.dialog().isVisible());
    QVERIFY(QDir(QFileInfo(bench.targetPath(0)).path()).isEmpty());
}

void tst_DialogTcpFileTransferClientDialog_End::cancelOffersWhatHasArrivedForConversion()
{
    bool wasRejected = false;
    Bench bench;
    bench.fetchOneAndAHalf();
    QObject::connect(&bench.dialog(), &Dialog::signalOfferConversion,
                     [&] { wasRejected = !bench.dialog().isVisible(); });
    bench.button("cancel")->click();
    QCOMPARE(bench.converted->count(), 0);
    QCOMPARE(bench.offered->count(), 1);
    QCOMPARE(bench.offered->at(0).at(0).toStringList(), QStringList{bench.targetPath(0)});
    QCOMPARE(bench.offered->at(0).at(1).toString(), bench.eventFolder);
    QCOMPARE(bench.offered->at(0).at(2).value<ConversionGlobal::OutputFormatFlags>(),
             bench.formats);
    QVERIFY(wasRejected);
    QVERIFY(QFile::exists(bench.targetPath(0)));
}

void tst_DialogTcpFileTransferClientDialog_End::cancelBeforeAnythingHasArrivedOffersNothing()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=10"));
    bench.dialog().start();
    bench.button("cancel")->click();
    QCOMPARE(bench.offered->count(), 0);
    QCOMPARE(bench.converted->count(), 0);
}

void tst_DialogTcpFileTransferClientDialog_End::theCancelButtonAsksNothing()
{
    Bench bench;
    bench.fetchOneAndAHalf();
    bench.button("cancel")->click();
    QVERIFY(!bench.dialog().isVisible());
    QCOMPARE(bench.prompt.shown, QStringList());
}

void tst_DialogTcpFileTransferClientDialog_End::escapeAndClosingAskWhileSomethingRuns_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("escape") << true;
    QTest::newRow("frame") << false;
}

void tst_DialogTcpFileTransferClientDialog_End::escapeAndClosingAskWhileSomethingRuns()
{
    QFETCH(bool, byKey);
    Bench bench;
    bench.fetchOneAndAHalf();
    bench.prompt.answer = true;
    if (byKey)
        QTest::keyClick(&bench.dialog(), Qt::Key_Escape);
    else
        bench.dialog().close();
    QCOMPARE(bench.prompt.shown,
             QStringList{QStringLiteral("Cancel download|Files that haven't arrived: 2 of 3.\n\n"
                                        "Cancel and close this window? Files that have arrived "
                                        "stay, the one under way is removed.")});
    QVERIFY(!bench.dialog().isVisible());
    QVERIFY(QFile::exists(bench.targetPath(0)));
    QVERIFY(!bench.dialog().list().isRunning());
}

void tst_DialogTcpFileTransferClientDialog_End::aQuestionThatIsAnsweredNoLeavesTheDownload()
{
    Bench bench;
    bench.fetchOneAndAHalf();
    QTest::keyClick(&bench.dialog(), Qt::Key_Escape);
    QVERIFY(!bench.dialog().close());
    QCOMPARE(bench.prompt.shown.size(), 2);
    QVERIFY(bench.dialog().isVisible());
    QVERIFY(bench.dialog().list().isRunning());
}

void tst_DialogTcpFileTransferClientDialog_End::aQuestionGoesWhenTheDownloadEnds()
{
    Bench bench;
    bench.prompt.answer = true;
    bench.prompt.duringABox = [&bench] { bench.waitForEnd(); };
    bench.dialog().start();
    QTest::keyClick(&bench.dialog(), Qt::Key_Escape);
    QCOMPARE(bench.prompt.shown.size(), 1);
    QVERIFY(bench.prompt.withdrawn);
    QVERIFY(bench.dialog().isVisible());
    QCOMPARE(bench.label("title"), QStringLiteral("Download finished."));
}

void tst_DialogTcpFileTransferClientDialog_End::afterTheEndNothingIsAsked()
{
    Bench bench;
    bench.run();
    QTest::keyClick(&bench.dialog(), Qt::Key_Escape);
    QVERIFY(!bench.dialog().isVisible());
    QCOMPARE(bench.prompt.shown, QStringList());
}

void tst_DialogTcpFileTransferClientDialog_End::keysOfTheFirstMomentCancelNothing_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("return") << int(Qt::Key_Return);
    QTest::newRow("space") << int(Qt::Key_Space);
}

// They were meant for the window that had the focus before.
void tst_DialogTcpFileTransferClientDialog_End::keysOfTheFirstMomentCancelNothing()
{
    QFETCH(int, key);
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=10"));
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openNothing");
    bench.dialog().start();
    QWidget *focused = bench.dialog().focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &bench.dialog(), Qt::Key(key));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QVERIFY(bench.dialog().isVisible());
    QVERIFY(bench.dialog().list().isRunning());
}

void tst_DialogTcpFileTransferClientDialog_End::whatRunsIsToldToWhoAsks()
{
    Bench bench;
    QCOMPARE(bench.dialog().runningWork(), QString());
    bench.fetchOneAndAHalf();
    QCOMPARE(bench.dialog().runningWork(), QStringLiteral("Files that haven't arrived: 2 of 3."));
    bench.dialog().cancel_transfer();
    QCOMPARE(bench.dialog().runningWork(), QString());
}

void tst_DialogTcpFileTransferClientDialog_End::cancelWhileNothingAnswersClosesAtOnce()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=0"));
    QSignalSpy rejected(&bench.dialog(), &QDialog::rejected);
    bench.dialog().start();
    bench.button("cancel")->click();
    QCOMPARE(rejected.count(), 1);
    QVERIFY(!bench.dialog().isVisible());
    QVERIFY(!bench.dialog().list().isRunning());
}

void tst_DialogTcpFileTransferClientDialog_End::cancelDuringARetryConvertsNothing()
{
    Bench bench;
    bench.removeFromLogger(1);
    bench.run();
    bench.putOnLogger(1);
    bench.logger.setFault(QStringLiteral("stalled-file=10"));
    bench.button("retry")->click();
    QTRY_COMPARE(bench.dialog().list().client().received(), 10);
    bench.button("cancel")->click();
    QVERIFY(!bench.dialog().isVisible());
    QCOMPARE(bench.converted->count(), 0);
    QVERIFY(QFile::exists(bench.targetPath(0)));
    QVERIFY(!QFile::exists(bench.targetPath(1)));
}

QTEST_MAIN(tst_DialogTcpFileTransferClientDialog_End)
#include "tst_dialogtcpfiletransferclientdialog_end.moc"
