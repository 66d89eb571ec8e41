#include "MDF4Conversion/views/dialogconverter.h"
#include "app/dialogs.h"
#include "app/loggerlink.h"
#include "app/mainwindow.h"
#include "link/views/dialogtcpfiletransferclientdialog.h"
#include "tests/app/scriptedprompt.h"
#include "tests/support/filecontents.h"
#include "tests/support/simulatedlogger.h"

#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <memory>

using Download = DialogTcpFileTransferClientDialog;

// The windows behind "download" and "convert" of the main one.
class tst_Dialogs : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aDownloadFetchesIntoTheEventFolder();
    void aDownloadConvertsWhatHasArrived();
    void withoutAFormatNothingIsConverted();
    void theConverterTakesInputWhileTheDownloadWindowIsOpen();
    void theMainWindowTakesInputWhileADownloadRuns();
    void aDownloadWindowThatIsClosedIsGone();
    void aDownloadThatCanNotBeginIsToldAndGone();
    void aConversionIsShownAtOnce();

private:
    void download(ConversionGlobal::OutputFormatFlags formats)
    {
        m_parts->download(m_logger->address(), {QStringLiteral("a.rld")}, {6}, m_folder->path(),
                          formats, m_window.get());
    }
    bool downloadEnds() const
    {
        return QTest::qWaitFor([this] {
            const auto *title =
                downloadWindow()->findChild<QLabel *>(QStringLiteral("label_title"));
            return title->text() == QLatin1String("Download finished.");
        });
    }
    Download *downloadWindow() const { return m_window->findChild<Download *>(); }
    DialogConverter *converter() const { return m_window->findChild<DialogConverter *>(); }
    // As the user's mouse does it, which a modal window keeps off the others.
    static void click(QWidget *button)
    {
        QWidget *window = button->window();
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                          button->mapTo(window, button->rect().center()));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_storage;
    std::unique_ptr<SimulatedLogger> m_logger;
    std::unique_ptr<ScriptedPrompt> m_prompt;
    std::unique_ptr<MainWindowParts> m_parts;
    std::unique_ptr<QMainWindow> m_window;
};

void tst_Dialogs::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_storage = std::make_unique<QTemporaryDir>();
    writeFile(m_storage->filePath(QStringLiteral("a.rld")), "no log");
    m_logger = std::make_unique<SimulatedLogger>();
    m_logger->inspect(
        [this](simulator::LoggerSimulator &s) { s.state().logFolder = m_storage->path(); });
    m_prompt = std::make_unique<ScriptedPrompt>();
    m_parts = std::make_unique<MainWindowParts>();
    setDialogs(*m_parts, *m_prompt);
    m_window = std::make_unique<QMainWindow>();
    m_window->setCentralWidget(new QPushButton(m_window.get()));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_Dialogs::cleanup()
{
    m_window.reset();
    m_logger.reset();
}

void tst_Dialogs::aDownloadFetchesIntoTheEventFolder()
{
    download({});
    QVERIFY(downloadWindow()->isVisible());
    QVERIFY(downloadEnds());
    QCOMPARE(contentOf(m_folder->filePath(QStringLiteral("raw_log_data/a.rld"))),
             QByteArray("no log"));
}

void tst_Dialogs::aDownloadConvertsWhatHasArrived()
{
    download(ConversionGlobal::MDF4);
    QVERIFY(downloadEnds());
    QVERIFY(converter());
    QVERIFY(converter()->isVisible());
    QVERIFY(converter()->windowTitle().endsWith(QStringLiteral(" Converting to .mf4 ")));
    QTRY_COMPARE(m_prompt->shown.size(), 1); // it has ended, and told so
}

void tst_Dialogs::withoutAFormatNothingIsConverted()
{
    download({});
    QVERIFY(downloadEnds());
    QVERIFY(!converter());
}

void tst_Dialogs::theConverterTakesInputWhileTheDownloadWindowIsOpen()
{
    download(ConversionGlobal::MDF4);
    QVERIFY(downloadEnds());
    auto *ok = converter()->findChild<QPushButton *>(QStringLiteral("pushButtonOk"));
    QTRY_VERIFY(ok->isEnabled());
    QVERIFY(downloadWindow()->isVisible());
    QVERIFY(QTest::qWaitForWindowExposed(converter()));
    click(ok);
    QTRY_VERIFY(!converter());
    QVERIFY(downloadWindow()->isVisible());
}

void tst_Dialogs::theMainWindowTakesInputWhileADownloadRuns()
{
    m_logger->setFault(QStringLiteral("stalled-file=1"));
    download({});
    QVERIFY(QTest::qWaitForWindowExposed(downloadWindow()));
    auto *button = m_window->findChild<QPushButton *>();
    bool isClicked = false;
    connect(button, &QPushButton::clicked, [&isClicked] { isClicked = true; });
    click(button);
    QTRY_VERIFY(isClicked);
}

void tst_Dialogs::aDownloadWindowThatIsClosedIsGone()
{
    download({});
    QVERIFY(downloadEnds());
    downloadWindow()->close();
    QTRY_VERIFY(!downloadWindow());
}

void tst_Dialogs::aDownloadThatCanNotBeginIsToldAndGone()
{
    writeFile(m_folder->filePath(QStringLiteral("raw_log_data")), "a file");
    download({});
    QCOMPARE(m_prompt->shown.size(), 1);
    QVERIFY(m_prompt->shown.at(0).startsWith(QStringLiteral("Error|Failed to create directory, ")));
    QTRY_VERIFY(!downloadWindow());
}

void tst_Dialogs::aConversionIsShownAtOnce()
{
    m_parts->convert(ConversionGlobal::MDF4, {m_storage->filePath(QStringLiteral("a.rld"))},
                     m_folder->path(), m_window.get());
    QVERIFY(converter());
    QVERIFY(converter()->isVisible());
    QTRY_COMPARE(m_prompt->shown.size(), 1);
    converter()->close();
    QTRY_VERIFY(!converter());
}

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
