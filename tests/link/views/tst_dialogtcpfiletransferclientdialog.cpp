#include "link/protocol/messagetypes.h"
#include "link/views/dialogtcpfiletransferclientdialog.h"
#include "tests/app/scriptedprompt.h"
#include "tests/support/simulatedlogger.h"

#include <QAccessible>
#include <QDesktopServices>
#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QUrl>

using Dialog = DialogTcpFileTransferClientDialog;
using State = DownloadList::FileState;

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
    void givingUpAFailedFileConvertsTheOthers();
    void cancelRejectsAndLeavesNoHalfFile();
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

namespace {

// A logger with the files a.rld, b.RLD and c.txt, and a dialog that fetches them.
struct Bench
{
    Bench()
    {
        for (int i = 0; i < names.size(); ++i) {
            sizes += 1000 + i;
            putOnLogger(i);
        }
        logger.inspect(
            [this](simulator::LoggerSimulator &s) { s.state().logFolder = storage.path(); });
    }

    Dialog &dialog()
    {
        if (!m_dialog) {
            m_dialog = std::make_unique<Dialog>(logger.address(), protocol::filePort, names, sizes,
                                                eventFolder, formats, prompt);
            m_dialog->list().client().setSilenceLimit(5000);
            converted = std::make_unique<QSignalSpy>(m_dialog.get(), &Dialog::signalConvert);
            offered = std::make_unique<QSignalSpy>(m_dialog.get(), &Dialog::signalOfferConversion);
        }
        return *m_dialog;
    }
    void run()
    {
        dialog().start();
        waitForEnd();
    }
    // The first file has arrived, the second stops behind ten bytes.
    void fetchOneAndAHalf()
    {
        QObject::connect(&dialog().list(), &DownloadList::fileStarted, [this](int index) {
            if (index == 1)
                logger.setFault(QStringLiteral("stalled-file=10"));
        });
        dialog().start();
        QTRY_COMPARE(dialog().list().receivedBytes(), 1010);
    }
    void waitForEnd() { QTRY_COMPARE(button("cancel")->text(), QStringLiteral("Close")); }

    template <class T>
    T *child(const QString &name)
    {
        return dialog().findChild<T *>(name);
    }
    QString label(const char *name)
    {
        return child<QLabel>(QStringLiteral("label_") + QLatin1String(name))->text();
    }
    QPushButton *button(const char *name)
    {
        return child<QPushButton>(QStringLiteral("pushButton_") + QLatin1String(name));
    }
    int percent() { return child<QProgressBar>(QStringLiteral("progressBar"))->value(); }
    QPlainTextEdit *failures()
    {
        return child<QPlainTextEdit>(QStringLiteral("plainTextEdit_failures"));
    }

    void putOnLogger(int index)
    {
        QFile file(storage.filePath(names.at(index)));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("%s", qPrintable(file.fileName()));
        file.write(QByteArray(int(sizes.at(index)), 'x'));
    }
    void removeFromLogger(int index) { QFile::remove(storage.filePath(names.at(index))); }
    QString targetPath(int index) const
    {
        return eventFolder + QStringLiteral("/raw_log_data/") + names.at(index);
    }

    QStringList names{QStringLiteral("a.rld"), QStringLiteral("b.RLD"), QStringLiteral("c.txt")};
    QList<qint64> sizes;
    ConversionGlobal::OutputFormatFlags formats = ConversionGlobal::MDF4 | ConversionGlobal::ASC;
    QTemporaryDir storage;
    QTemporaryDir folder;
    QString eventFolder = folder.filePath(QStringLiteral("event 1"));
    SimulatedLogger logger;
    ScriptedPrompt prompt;
    std::unique_ptr<QSignalSpy> converted;
    std::unique_ptr<QSignalSpy> offered;

private:
    std::unique_ptr<Dialog> m_dialog;
};

} // namespace

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

void tst_DialogTcpFileTransferClientDialog::givingUpAFailedFileConvertsTheOthers()
{
    Bench bench;
    bench.removeFromLogger(1);
    bench.run();
    bench.button("cancel")->click();
    QCOMPARE(bench.converted->count(), 1);
    QCOMPARE(bench.converted->at(0).at(0).toStringList(), QStringList{bench.targetPath(0)});
    QVERIFY(!bench.dialog().isVisible());
}

void tst_DialogTcpFileTransferClientDialog::cancelRejectsAndLeavesNoHalfFile()
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

void tst_DialogTcpFileTransferClientDialog::cancelOffersWhatHasArrivedForConversion()
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

void tst_DialogTcpFileTransferClientDialog::cancelBeforeAnythingHasArrivedOffersNothing()
{
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=10"));
    bench.dialog().start();
    bench.button("cancel")->click();
    QCOMPARE(bench.offered->count(), 0);
    QCOMPARE(bench.converted->count(), 0);
}

void tst_DialogTcpFileTransferClientDialog::theCancelButtonAsksNothing()
{
    Bench bench;
    bench.fetchOneAndAHalf();
    bench.button("cancel")->click();
    QVERIFY(!bench.dialog().isVisible());
    QCOMPARE(bench.prompt.shown, QStringList());
}

void tst_DialogTcpFileTransferClientDialog::escapeAndClosingAskWhileSomethingRuns_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("escape") << true;
    QTest::newRow("frame") << false;
}

void tst_DialogTcpFileTransferClientDialog::escapeAndClosingAskWhileSomethingRuns()
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

void tst_DialogTcpFileTransferClientDialog::aQuestionThatIsAnsweredNoLeavesTheDownload()
{
    Bench bench;
    bench.fetchOneAndAHalf();
    QTest::keyClick(&bench.dialog(), Qt::Key_Escape);
    QVERIFY(!bench.dialog().close());
    QCOMPARE(bench.prompt.shown.size(), 2);
    QVERIFY(bench.dialog().isVisible());
    QVERIFY(bench.dialog().list().isRunning());
}

void tst_DialogTcpFileTransferClientDialog::aQuestionGoesWhenTheDownloadEnds()
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

void tst_DialogTcpFileTransferClientDialog::afterTheEndNothingIsAsked()
{
    Bench bench;
    bench.run();
    QTest::keyClick(&bench.dialog(), Qt::Key_Escape);
    QVERIFY(!bench.dialog().isVisible());
    QCOMPARE(bench.prompt.shown, QStringList());
}

void tst_DialogTcpFileTransferClientDialog::keysOfTheFirstMomentCancelNothing_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("return") << int(Qt::Key_Return);
    QTest::newRow("space") << int(Qt::Key_Space);
}

// They were meant for the window that had the focus before.
void tst_DialogTcpFileTransferClientDialog::keysOfTheFirstMomentCancelNothing()
{
    QFETCH(int, key);
    Bench bench;
    bench.logger.setFault(QStringLiteral("stalled-file=10"));
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "noteUrl");
    bench.dialog().start();
    QWidget *focused = bench.dialog().focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &bench.dialog(), Qt::Key(key));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QVERIFY(bench.dialog().isVisible());
    QVERIFY(bench.dialog().list().isRunning());
}

void tst_DialogTcpFileTransferClientDialog::whatRunsIsToldToWhoAsks()
{
    Bench bench;
    QCOMPARE(bench.dialog().runningWork(), QString());
    bench.fetchOneAndAHalf();
    QCOMPARE(bench.dialog().runningWork(), QStringLiteral("Files that haven't arrived: 2 of 3."));
    bench.dialog().cancel_transfer();
    QCOMPARE(bench.dialog().runningWork(), QString());
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
