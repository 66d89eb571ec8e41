#include "tests/link/views/downloaddialogbench.h"
#include "tests/support/filecontents.h"
#include "tests/support/loopbackaddress.h"

#include <QAccessible>
#include <QDesktopServices>
#include <QDir>
#include <QTimer>
#include <QUrl>

using Bench = DownloadDialogBench;

// What the window shows, and what follows its downloads.
class tst_DialogTcpFileTransferClientDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ConversionGlobal::OutputFormatFlags>(); }
    void theDialogBeginsByInitializing();
    void filesArriveInTheFolderForRawLogs();
    void theFileUnderWayIsShown();
    void progressSpeedAndTimeLeftAreShown();
    void progressIsShownEveryHalfSecondByItself();
    void bytesOfAllFilesAndTheTimeAreShown();
    void theBarDoesNotGoBackAfterAFailure();
    void theEndIsShown();
    void theTargetFolderIsOpened();
    void theWholeNameStandsInTheTooltip();
    void conversionsFollowTheLastFile();
    void onlyRawLogsAreConverted();
    void withoutAFormatNothingIsConverted();
    void aFailureIsShownAndOffersToRetry();
    void aRetryFetchesTheFileAndThenConverts();
    void anUnreachableLoggerIsToldForEachFile();
    void aFileInPlaceOfTheFolderForRawLogsIsTold();
    void aFolderThatCanNotBeMadeIsTold();
    void aShortageOfSpaceIsTold();
    void aShortageInARetryKeepsTheFailures();
    void textOfTheLoggerIsNotTakenForMarkup();
    void aLongNameDoesNotWidenTheWindow();
    void everyControlSaysWhatItIs();

public slots:
    void noteUrl(const QUrl &url) { m_url = url; }

private:
    QUrl m_url; // opened by the desktop
};

void tst_DialogTcpFileTransferClientDialog::theDialogBeginsByInitializing()
{
    Bench bench;
    QCOMPARE(bench.label("title"), QStringLiteral("...initializing download..."));
    QCOMPARE(bench.percent(), 0);
    QVERIFY(bench.button("retry")->isHidden());
}

void tst_DialogTcpFileTransferClientDialog::filesArriveInTheFolderForRawLogs()
{
    Bench bench;
    bench.run();
    for (int i = 0; i < 3; ++i)
        QCOMPARE(QFileInfo(bench.targetPath(i)).size(), bench.sizes.at(i));
    QCOMPARE(bench.prompt.shown, QStringList());
}

void tst_DialogTcpFileTransferClientDialog::theFileUnderWayIsShown()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=10"));
    bench.dialog().start();
    QVERIFY(bench.dialog().isVisible());
    QCOMPARE(bench.label("file"), QStringLiteral("a.rld"));
    QCOMPARE(bench.label("size"), QStringLiteral("1000 Bytes"));
    QCOMPARE(bench.label("count"), QStringLiteral("1 of 3"));
    QTRY_COMPARE(bench.label("title"), QStringLiteral("...downloading..."));
    QCOMPARE(bench.button("cancel")->text(), QStringLiteral("Cancel"));
}

void tst_DialogTcpFileTransferClientDialog::progressSpeedAndTimeLeftAreShown()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=500"));
    bench.dialog().start();
    bench.dialog().showProgress(1'000'000);
    QCOMPARE(bench.label("time_left"), QStringLiteral("---"));
    QTRY_COMPARE(bench.dialog().list().receivedBytes(), 500);
    bench.dialog().showProgress(1'000'500);
    QCOMPARE(bench.percent(), 500 * 100 / 3003);
    QCOMPARE(bench.label("speed"), QStringLiteral("8.0 Kbit/s"));
    QVERIFY(bench.label("time_left").startsWith(QStringLiteral("about ")));
    bench.dialog().showProgress(1'001'000);
    QCOMPARE(bench.label("speed"), QStringLiteral("0.0 Kbit/s"));
}

void tst_DialogTcpFileTransferClientDialog::progressIsShownEveryHalfSecondByItself()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=500"));
    bench.dialog().start();
    const auto *timer = bench.dialog().findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(timer->interval(), 500);
    QVERIFY(!timer->isSingleShot());
    QTRY_COMPARE(bench.percent(), 500 * 100 / 3003);
}

void tst_DialogTcpFileTransferClientDialog::bytesOfAllFilesAndTheTimeAreShown()
{
    Bench bench;
    bench.fetchOneAndAHalf();
    bench.dialog().showProgress(3'661'000);
    QCOMPARE(bench.label("bytes"), QStringLiteral("1.0 of 2.9 KiB"));
    QCOMPARE(bench.label("elapsed"), QStringLiteral("1:01:01 elapsed"));
}

void tst_DialogTcpFileTransferClientDialog::theBarDoesNotGoBackAfterAFailure()
{
    int before = 0;
    bool wentBack = false;
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=500"));
    bench.dialog().list().client().setSilenceLimit(300);
    QObject::connect(&bench.dialog().list(), &DownloadList::fileStarted, [&bench](int index) {
        if (index > 0) // what fails next has received less
            bench.logger.setFault(QStringLiteral("stalled-file=10"));
    });
    QObject::connect(bench.child<QProgressBar>(QStringLiteral("progressBar")),
                     &QProgressBar::valueChanged, [&](int value) {
                         wentBack = wentBack || value < before;
                         before = value;
                     });
    bench.dialog().start();
    QTRY_COMPARE(bench.dialog().list().receivedBytes(), 500);
    bench.dialog().slot_check_progress();
    bench.waitForEnd();
    QCOMPARE(bench.percent(), 500 * 100 / 3003);
    QVERIFY(!wentBack);
    bench.logger.clearFaults();
    bench.button("retry")->click();
    QCOMPARE(bench.percent(), 0); // anew
}

void tst_DialogTcpFileTransferClientDialog::theEndIsShown()
{
    Bench bench;
    bench.run();
    QCOMPARE(bench.label("title"), QStringLiteral("Download finished."));
    QCOMPARE(bench.percent(), 100);
    QCOMPARE(bench.label("count"), QStringLiteral("3 of 3"));
    const QString folder = QFileInfo(bench.targetPath(0)).path();
    QVERIFY(folder.endsWith(bench.label("file").right(20)));
    QVERIFY(bench.button("retry")->isHidden());
    QVERIFY(bench.dialog().isVisible());
    QSignalSpy accepted(&bench.dialog(), &QDialog::accepted);
    bench.button("cancel")->click();
    QCOMPARE(accepted.count(), 1);
    QVERIFY(!bench.dialog().isVisible());
}

void tst_DialogTcpFileTransferClientDialog::theTargetFolderIsOpened()
{
    Bench bench;
    bench.run();
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "noteUrl");
    bench.button("open_folder")->click();
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QCOMPARE(m_url.toLocalFile(), QFileInfo(bench.targetPath(0)).path());
}

void tst_DialogTcpFileTransferClientDialog::theWholeNameStandsInTheTooltip()
{
    Bench bench;
    const QString name = QString(300, QLatin1Char('x')) + QStringLiteral("<b>&.rld");
    bench.names = QStringList{name};
    bench.sizes = {5};
    bench.dialog().start();
    QVERIFY(bench.label("file").size() < name.size());
    const QString tip = bench.child<QLabel>(QStringLiteral("label_file"))->toolTip();
    QVERIFY2(tip.contains(name.toHtmlEscaped()), qPrintable(tip));
    QVERIFY(!tip.contains(name));
}

void tst_DialogTcpFileTransferClientDialog::conversionsFollowTheLastFile()
{
    Bench bench;
    bench.run();
    QCOMPARE(bench.converted->count(), 1);
    QCOMPARE(bench.converted->at(0).at(0).toStringList(),
             (QStringList{bench.targetPath(0), bench.targetPath(1)}));
    QCOMPARE(bench.converted->at(0).at(1).toString(), bench.eventFolder);
    QCOMPARE(bench.converted->at(0).at(2).value<ConversionGlobal::OutputFormatFlags>(),
             bench.formats);
    bench.button("cancel")->click();
    QCOMPARE(bench.converted->count(), 1);
}

void tst_DialogTcpFileTransferClientDialog::onlyRawLogsAreConverted()
{
    Bench bench;
    bench.names = QStringList{QStringLiteral("c.txt")};
    bench.sizes = {1002};
    bench.run();
    QCOMPARE(bench.label("title"), QStringLiteral("Download finished."));
    QCOMPARE(bench.converted->count(), 0);
}

void tst_DialogTcpFileTransferClientDialog::withoutAFormatNothingIsConverted()
{
    Bench bench;
    bench.formats = {};
    bench.run();
    QCOMPARE(bench.label("title"), QStringLiteral("Download finished."));
    QCOMPARE(bench.converted->count(), 0);
}

void tst_DialogTcpFileTransferClientDialog::aFailureIsShownAndOffersToRetry()
{
    Bench bench;
    bench.removeFromLogger(1);
    bench.run();
    QCOMPARE(bench.label("title"), QStringLiteral("Download failed."));
    QCOMPARE(bench.failures()->toPlainText(),
             QStringLiteral("b.RLD: Download failed. disconnected"));
    QVERIFY(bench.failures()->isVisible());
    QCOMPARE(bench.label("count"), QStringLiteral("2 of 3"));
    QVERIFY(bench.button("retry")->isVisible());
    QVERIFY(bench.button("retry")->isEnabled());
    QVERIFY(bench.percent() < 100);
    QCOMPARE(bench.converted->count(), 0);
    QVERIFY(QFile::exists(bench.targetPath(2))); // the others went on
}

void tst_DialogTcpFileTransferClientDialog::aRetryFetchesTheFileAndThenConverts()
{
    Bench bench;
    bench.removeFromLogger(1);
    bench.run();
    bench.putOnLogger(1);
    QSignalSpy started(&bench.dialog().list(), &DownloadList::fileStarted);
    bench.button("retry")->click();
    QVERIFY(!bench.failures()->isVisible());
    QCOMPARE(bench.button("cancel")->text(), QStringLiteral("Cancel"));
    QTRY_COMPARE(bench.label("title"), QStringLiteral("Download finished."));
    QCOMPARE(started.count(), 1);
    QCOMPARE(bench.percent(), 100);
    QCOMPARE(bench.converted->count(), 1);
    QCOMPARE(bench.converted->at(0).at(0).toStringList(),
             (QStringList{bench.targetPath(0), bench.targetPath(1)}));
}

void tst_DialogTcpFileTransferClientDialog::anUnreachableLoggerIsToldForEachFile()
{
    Bench bench;
    bench.address = freeLoopbackAddress();
    bench.run();
    QCOMPARE(bench.label("title"), QStringLiteral("Download failed."));
    QCOMPARE(bench.label("count"), QStringLiteral("0 of 3"));
    const QStringList lines = bench.failures()->toPlainText().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 3);
    for (int i = 0; i < 3; ++i) {
        const QString start = bench.names.at(i) + QStringLiteral(": Download failed. ");
        QVERIFY(lines.at(i).startsWith(start));
        QVERIFY(lines.at(i).size() > start.size());
    }
    QVERIFY(bench.button("retry")->isEnabled());
}

void tst_DialogTcpFileTransferClientDialog::aFileInPlaceOfTheFolderForRawLogsIsTold()
{
    Bench bench;
    QVERIFY(QDir().mkpath(bench.eventFolder));
    writeFile(bench.eventFolder + QStringLiteral("/raw_log_data"), "a file");
    bench.dialog().start();
    QCOMPARE(bench.prompt.shown.size(), 1);
    QVERIFY(
        bench.prompt.shown.at(0).startsWith(QStringLiteral("Error|Failed to create directory, ")));
    QVERIFY(!bench.dialog().isVisible());
}

void tst_DialogTcpFileTransferClientDialog::aFolderThatCanNotBeMadeIsTold()
{
    Bench bench;
    QFile inTheWay(bench.eventFolder);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    QSignalSpy rejected(&bench.dialog(), &QDialog::rejected);
    bench.dialog().start();
    const QString folder = bench.eventFolder + QStringLiteral("/raw_log_data");
    QCOMPARE(
        bench.prompt.shown,
        QStringList{QStringLiteral("Error|Failed to create directory, %1 \r\n%1").arg(folder)});
    QCOMPARE(rejected.count(), 1);
    QVERIFY(!bench.dialog().isVisible());
}

void tst_DialogTcpFileTransferClientDialog::aShortageOfSpaceIsTold()
{
    Bench bench;
    bench.dialog().list().setFreeSpaceSource([] { return quint64(5); });
    QSignalSpy rejected(&bench.dialog(), &QDialog::rejected);
    bench.dialog().start();
    QCOMPARE(bench.prompt.shown.size(), 1);
    QVERIFY(bench.prompt.shown.at(0).startsWith(
        QStringLiteral("Download|There is not enough free space in ")));
    QVERIFY(bench.prompt.shown.at(0).contains(QStringLiteral("(3003 bytes)")));
    QVERIFY(bench.prompt.shown.at(0).contains(QStringLiteral("(5 bytes)")));
    QCOMPARE(rejected.count(), 1);
    QVERIFY(!bench.dialog().isVisible());
}

void tst_DialogTcpFileTransferClientDialog::aShortageInARetryKeepsTheFailures()
{
    Bench bench;
    bench.removeFromLogger(1);
    bench.run();
    bench.dialog().list().setFreeSpaceSource([] { return quint64(5); });
    bench.button("retry")->click();
    QCOMPARE(bench.prompt.shown.size(), 1);
    QCOMPARE(bench.failures()->toPlainText(),
             QStringLiteral("b.RLD: Download failed. disconnected"));
    QVERIFY(bench.button("retry")->isEnabled());
    QCOMPARE(bench.button("cancel")->text(), QStringLiteral("Close"));
}

void tst_DialogTcpFileTransferClientDialog::textOfTheLoggerIsNotTakenForMarkup()
{
    Bench bench;
    bench.names = QStringList{QStringLiteral("<b>bold</b>.rld")};
    bench.sizes = {5};
    bench.dialog().start();
    QCOMPARE(bench.label("file"), QStringLiteral("<b>bold</b>.rld"));
    bench.waitForEnd();
    QCOMPARE(bench.child<QLabel>(QStringLiteral("label_file"))->textFormat(), Qt::PlainText);
    QVERIFY(bench.failures()->toPlainText().startsWith(QStringLiteral("<b>bold</b>.rld: ")));
}

void tst_DialogTcpFileTransferClientDialog::aLongNameDoesNotWidenTheWindow()
{
    Bench bench;
    bench.names = QStringList{QString(4000, QLatin1Char('x'))};
    bench.sizes = {5};
    bench.dialog().start();
    QVERIFY(bench.label("file").size() < 200);
    bench.waitForEnd();
    QVERIFY(bench.dialog().width() < 700);
}

void tst_DialogTcpFileTransferClientDialog::everyControlSaysWhatItIs()
{
    Bench bench;
    bench.run();
    const QList<QWidget *> controls{bench.button("open_folder"), bench.button("retry"),
                                    bench.button("cancel"), bench.failures(),
                                    bench.child<QProgressBar>(QStringLiteral("progressBar"))};
    for (const QWidget *control : controls) {
        QVERIFY2(!control->toolTip().isEmpty(), qPrintable(control->objectName()));
        QAccessibleInterface *accessible =
            QAccessible::queryAccessibleInterface(const_cast<QWidget *>(control));
        QVERIFY(accessible);
        QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(), qPrintable(control->objectName()));
    }
}

QTEST_MAIN(tst_DialogTcpFileTransferClientDialog)
#include "tst_dialogtcpfiletransferclientdialog.moc"
