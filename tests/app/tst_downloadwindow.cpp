#include "MDF4Conversion/views/dialogconverter.h"
#include "app/dialogs.h"
#include "app/handlerlink.h"
#include "app/mainwindow.h"
#include "app/state/appcontroller.h"
#include "app/state/usersettings.h"
#include "link/views/dialogtcpfiletransferclientdialog.h"
#include "tests/app/scriptedprompt.h"
#include "tests/support/filecontents.h"
#include "tests/support/simulatedlogger.h"

#include <QDir>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

using Dialog = DialogTcpFileTransferClientDialog;
using State = DownloadList::FileState;

class tst_DownloadWindow : public QObject
{
    Q_OBJECT

private slots:
    void furtherFilesWaitBehindTheOthersInTheSameWindow();
    void aDoubleClickFetchesNothingTwice();
    void aFurtherFileNeedsRoomBesideThoseThatWait();
    void filesForAnotherFolderHaveToWait();
    void filesForOtherFormatsHaveToWait();
    void aDownloadThatHasEndedGivesWayToTheNext();
    void filesThatAreFetchedAreUnderWayOnTheirLogger();
    void thePageKeepsWhatIsFetchedOnTheLogger();
    void afterACancelWhatHadArrivedIsOfferedForConversion();
    void anOfferThatIsTakenConverts();
    void aCancelWithoutFormatsOffersNothing();
};

namespace {

// A logger with the files a.rld and b.rld, which stops in the middle of the first, and the parts of a
// main window.
struct Bench
{
    Bench()
    {
        for (const QString &name : names)
            writeFile(storage.filePath(name), pattern(1000));
        logger.inspect(
            [this](simulator::LoggerSimulator &s) { s.state().logFolder = storage.path(); });
        setDialogs(parts, prompt);
    }

    void stopInTheMiddle() { logger.setFault(QStringLiteral("stalled-file=10")); }
    void download(const QStringList &which)
    {
        QList<qint64> sizes;
        for (int i = 0; i < which.size(); ++i)
            sizes += 1000;
        parts.download(logger.address(), which, sizes, folder, formats, &window);
    }
    QList<Dialog *> dialogs() const
    {
        QList<Dialog *> shown;
        for (Dialog *dialog : window.findChildren<Dialog *>()) {
            if (dialog->isVisible())
                shown += dialog;
        }
        return shown;
    }
    QString listText() const
    {
        QStringList texts;
        for (const DownloadList::File &file : dialogs().at(0)->list().files())
            texts += QStringLiteral("%1 %2").arg(file.remoteName).arg(int(file.state));
        return texts.join(QStringLiteral(", "));
    }
    // The first file has arrived, the second is in its middle.
    void fetchOneAndAHalf()
    {
        download(names);
        QObject::connect(&dialogs().at(0)->list(), &DownloadList::fileStarted, &window,
                         [this](int index) {
                             if (index == 1)
                                 stopInTheMiddle();
                         });
        QTRY_COMPARE(dialogs().at(0)->list().receivedBytes(), 1010);
    }

    QStringList names{QStringLiteral("a.rld"), QStringLiteral("b.rld")};
    QTemporaryDir storage;
    QTemporaryDir target;
    QString folder = target.path();
    ConversionGlobal::OutputFormatFlags formats;
    SimulatedLogger logger;
    ScriptedPrompt prompt;
    MainWindowParts parts;
    QWidget window;
};

QString text(State a, State b)
{
    return QStringLiteral("a.rld %1, b.rld %2").arg(int(a)).arg(int(b));
}

} // namespace

void tst_DownloadWindow::furtherFilesWaitBehindTheOthersInTheSameWindow()
{
    Bench bench;
    bench.stopInTheMiddle();
    bench.download({QStringLiteral("a.rld")});
    bench.download({QStringLiteral("b.rld")});
    QCOMPARE(bench.dialogs().size(), 1);
    QCOMPARE(bench.listText(), text(State::Running, State::Waiting));
    QCOMPARE(bench.dialogs().at(0)->findChild<QLabel *>(QStringLiteral("label_count"))->text(),
             QStringLiteral("1 of 2"));
    QCOMPARE(bench.prompt.shown, QStringList());
}

void tst_DownloadWindow::aDoubleClickFetchesNothingTwice()
{
    Bench bench;
    bench.stopInTheMiddle();
    bench.download(bench.names);
    bench.download(bench.names);
    QCOMPARE(bench.dialogs().size(), 1);
    QCOMPARE(bench.listText(), text(State::Running, State::Waiting));
}

void tst_DownloadWindow::aFurtherFileNeedsRoomBesideThoseThatWait()
{
    Bench bench;
    bench.stopInTheMiddle();
    bench.download({QStringLiteral("a.rld")});
    Dialog *dialog = bench.dialogs().at(0);
    QTRY_COMPARE(dialog->list().receivedBytes(), 10);
    dialog->list().setFreeSpaceSource([] { return quint64(1989); });
    bench.download({QStringLiteral("b.rld")});
    QCOMPARE(bench.prompt.shown.size(), 1);
    QVERIFY2(bench.prompt.shown.at(0).contains(QStringLiteral("(1990 bytes)")),
             qPrintable(bench.prompt.shown.at(0)));
    QCOMPARE(dialog->list().files().size(), 1);
    dialog->list().setFreeSpaceSource([] { return quint64(1990); });
    bench.download({QStringLiteral("b.rld")});
    QCOMPARE(dialog->list().files().size(), 2);
}

void tst_DownloadWindow::filesForAnotherFolderHaveToWait()
{
    Bench bench;
    bench.stopInTheMiddle();
    bench.download({QStringLiteral("a.rld")});
    bench.folder = bench.target.filePath(QStringLiteral("other"));
    bench.download({QStringLiteral("b.rld")});
    QCOMPARE(bench.dialogs().size(), 1);
    QCOMPARE(bench.dialogs().at(0)->list().files().size(), 1);
    QCOMPARE(bench.prompt.shown, QStringList{QStringLiteral(
                                     "Download|A download is running. Files for another folder, or "
                                     "to be converted otherwise, can be downloaded when it has "
                                     "ended.")});
    QVERIFY(!QFile::exists(bench.folder));
}

void tst_DownloadWindow::filesForOtherFormatsHaveToWait()
{
    Bench bench;
    bench.stopInTheMiddle();
    bench.download({QStringLiteral("a.rld")});
    bench.formats = ConversionGlobal::MDF4;
    bench.download({QStringLiteral("b.rld")});
    QCOMPARE(bench.dialogs().at(0)->list().files().size(), 1);
    QCOMPARE(bench.prompt.shown.size(), 1);
}

void tst_DownloadWindow::aDownloadThatHasEndedGivesWayToTheNext()
{
    Bench bench;
    bench.download({QStringLiteral("a.rld")});
    const QPointer<Dialog> first = bench.dialogs().at(0);
    QTRY_COMPARE(first->list().arrived().size(), 1);
    QTRY_VERIFY(!first->list().isRunning());
    bench.download({QStringLiteral("b.rld")});
    QCOMPARE(bench.dialogs().size(), 1);
    QVERIFY(bench.dialogs().at(0) != first);
    QTRY_VERIFY(first.isNull());
    QTRY_COMPARE(bench.dialogs().at(0)->list().arrived().size(), 1);
    QCOMPARE(bench.prompt.shown, QStringList());
}

void tst_DownloadWindow::filesThatAreFetchedAreUnderWayOnTheirLogger()
{
    Bench bench;
    QCOMPARE(bench.parts.filesUnderWay(bench.logger.address()), QStringList());
    bench.fetchOneAndAHalf();
    bench.download({QStringLiteral("c.rld")});
    QCOMPARE(bench.parts.filesUnderWay(bench.logger.address()),
             (QStringList{QStringLiteral("b.rld"), QStringLiteral("c.rld")}));
    QCOMPARE(bench.parts.filesUnderWay(QHostAddress(QStringLiteral("127.0.0.2"))), QStringList());
    bench.dialogs().at(0)->cancel_transfer();
    QCOMPARE(bench.parts.filesUnderWay(bench.logger.address()), QStringList());
}

void tst_DownloadWindow::thePageKeepsWhatIsFetchedOnTheLogger()
{
    Bench bench;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, bench.target.path());
    UserSettings settings(bench.target.filePath(QStringLiteral("usr.ini")));
    QVERIFY(settings.setIpAddress(bench.logger.address().toString()));
    AppController controller;
    bench.parts.link = std::make_unique<HandlerLink>(&controller);
    bench.parts.prompt = &bench.prompt;
    bench.parts.settings = &settings;
    MainWindow window(&controller, QStringLiteral("MainWindow"), std::move(bench.parts));
    window.registerToController();
    bench.prompt.answer = true; // to stop logging, and to delete
    window.findChild<QPushButton *>(QStringLiteral("pushButton_connect_disconnect"))->click();
    auto *table = window.findChild<QTableWidget *>(QStringLiteral("tableWidget_logfiles"));
    QTRY_COMPARE(table->rowCount(), 2);
    bench.stopInTheMiddle();
    window.start_dialog_file_download({QStringLiteral("a.rld")}, {1000}, bench.folder, {});
    bench.prompt.shown.clear();
    table->selectAll();
    window.findChild<QPushButton *>(QStringLiteral("pushButton_delete_selected_logfile"))->click();
    QCOMPARE(bench.prompt.shown,
             QStringList{QStringLiteral("Delete File|These files are being downloaded and can't be "
                                        "deleted until that has ended:\r\na.rld")});
    QCOMPARE(table->rowCount(), 2);
}

void tst_DownloadWindow::afterACancelWhatHadArrivedIsOfferedForConversion()
{
    Bench bench;
    bench.formats = ConversionGlobal::MDF4;
    bench.fetchOneAndAHalf();
    bench.dialogs().at(0)->cancel_transfer();
    QCOMPARE(bench.prompt.shown,
             QStringList{QStringLiteral("Download|The download was cancelled. Log files that had "
                                        "arrived and stay: 1.\n\nConvert them now?")});
    QVERIFY(bench.dialogs().isEmpty());
    QVERIFY(bench.window.findChildren<DialogConverter *>().isEmpty());
}

void tst_DownloadWindow::anOfferThatIsTakenConverts()
{
    Bench bench;
    bench.formats = ConversionGlobal::MDF4;
    bench.prompt.answer = true;
    bench.fetchOneAndAHalf();
    bench.dialogs().at(0)->cancel_transfer();
    QCOMPARE(bench.window.findChildren<DialogConverter *>().size(), 1);
}

void tst_DownloadWindow::aCancelWithoutFormatsOffersNothing()
{
    Bench bench;
    bench.fetchOneAndAHalf();
    bench.dialogs().at(0)->cancel_transfer();
    QCOMPARE(bench.prompt.shown, QStringList());
    QVERIFY(QFile::exists(bench.folder + QStringLiteral("/raw_log_data/a.rld")));
}

QTEST_MAIN(tst_DownloadWindow)
#include "tst_downloadwindow.moc"
