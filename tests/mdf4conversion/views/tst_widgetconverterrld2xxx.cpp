#include "MDF4Conversion/growingfile.h"
#include "MDF4Conversion/rld2xxxprogram.h"
#include "MDF4Conversion/views/widgetconverterrld2xxx.h"
#include "tests/mdf4conversion/views/converterbench.h"
#include "tests/support/lockfiles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPlainTextEdit>
#include <QProcess>
#include <QProgressBar>
#include <QTest>
#include <QTextBlock>
#include <QTreeWidget>

#include <memory>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

void make(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("A file of the test can't be written.");
}

const char noAnswer[] = "The conversion process did not respond! Conversion was interrupted.";

} // namespace

class tst_WidgetConverterRld2XXX : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<ConverterBench>(); }
    void cleanup()
    {
        m_widget.reset();
        m_bench.reset();
    }

    void theProgramIsLookedForInTheWorkingFolderFirst();
    void aLogIsConverted();
    void theArgumentsComeInTheirOrder();
    void statisticsAreShown();
    void errorsOfTheProcessAreShownInRedAndMakeState4();
    void lastWordsAreShown();

    void aMissingProgramIsTold();
    void anotherVersionStopsTheConversionOnce();
    void aFileSizeOf0LeavesTheBarUntouched();
    void theSixteenthPollWithoutAnswerStops();
    void aCrashIsNoAnswerAndLeavesNoHalfFile();
    void aFloodOfLinesEndsAtTheLimit();
    void aLineWithoutEndIsCut();

    void cancellingIsState5AndLeavesNoHalfFile();
    void cancellingKillsAProcessThatDoesNotListen();
    void aFileFromBeforeStaysWhenTheConversionIsCancelled();
    void closingWhileRunningEndsTheProcess();

    void aHeldLockKeepsTheWindowNeitherFromPollingNorFromCancelling();
    void aHeldLockEndsTheConversionAtItsLimit();
    void closingWhileTheLockIsHeldEndsTheProcess();
    void memoryThatCanNotBeHadIsTold();

    void theOutputGetsItsNameWhenTheProcessHasEnded();
    void aProcessThatClosesItsFilesIsWaitedFor();
    void cancellingWhileItClosesItsFilesLeavesNone();
    void closingWhileItClosesItsFilesLeavesNone();
    void cancellingBehindTheEndKeepsTheFile();
    void closingBehindTheEndKeepsTheFile();
    void aCrashBehindTheToldEndLeavesNoFile();
    void aFileThatCanNotHaveItsPlaceIsKept();
    void closingTellsOfAFileThatCanNotHaveItsPlace();
    void aFileFromBeforeIsReplacedByTheWholeOne();
    void anOutputThatWasNotMadeIsAnError();
    void aFolderInPlaceOfTheOutputIsTold();
    void whatAKilledConversionLeftIsCleared();

private:
    void start(const char *mode, const char *log = "a.rld",
               ConversionGlobal::OutputFormat format = ConversionGlobal::BLF)
    {
        ConverterBench::setStandIn(mode);
        m_widget = std::make_unique<WidgetConverterRld2XXX>(
            m_bench->plan(m_bench->makeLog(text(log)), format), m_bench->prompt);
        m_widget->start();
    }
    bool processEnds()
    {
        return QTest::qWaitFor([this] { return process()->state() == QProcess::NotRunning; },
                               ConverterBench::timeout_ms);
    }
    // Until the process has begun with its output.
    bool outputBegins()
    {
        return QTest::qWaitFor([this] { return contentOf(m_bench->growing("a.blf")) == "half"; },
                               ConverterBench::timeout_ms);
    }
    bool lockIsHeld()
    {
        return QTest::qWaitFor(
            [this] { return contentOf(m_bench->growing("a.blf")) == "half and held"; },
            ConverterBench::timeout_ms);
    }
    // Until the process, which lingers, has told its end in the record.
    bool tellsItsEnd()
    {
        return QTest::qWaitFor([this] { return m_widget->state() == conversionstate::finished; },
                               ConverterBench::timeout_ms);
    }
    // Without a poll.
    bool endsByItself()
    {
        const bool isTold = tellsItsEnd();
        process()->closeWriteChannel(); // which the stand-in waits for
        return processEnds() && isTold;
    }
    QString keptText() const
    {
        return text("The converted file is kept as %1 as long as this program runs.")
            .arg(QDir::toNativeSeparators(m_bench->growing("a.blf")));
    }
    QProcess *process() const { return m_widget->findChild<QProcess *>(); }
    QStringList lines() const { return m_widget->messages().split(QLatin1Char('\n')); }
    QColor colourOf(const QString &line) const
    {
        QTextCursor cursor = m_widget->findChild<QPlainTextEdit *>()->document()->find(line);
        return cursor.charFormat().foreground().color();
    }

    std::unique_ptr<ConverterBench> m_bench;
    std::unique_ptr<WidgetConverterRld2XXX> m_widget;
};

void tst_WidgetConverterRld2XXX::theProgramIsLookedForInTheWorkingFolderFirst()
{
    const QTemporaryDir working;
    const QTemporaryDir tool;
    const auto find = [&] { return rld2xxxprogram::find(working.path(), tool.path()); };
    const QString name = text("rld2xxx.exe");
    QCOMPARE(find(), QString());
    QVERIFY(QFile(tool.filePath(name)).open(QIODevice::WriteOnly));
    QCOMPARE(find(), tool.filePath(name));
    QVERIFY(QFile(working.filePath(name)).open(QIODevice::WriteOnly));
    QCOMPARE(find(), working.filePath(name));
}

void tst_WidgetConverterRld2XXX::aLogIsConverted()
{
    start("");
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    m_widget->poll(); // it may have ended before the first one
    QCOMPARE(int(m_widget->state()), 3);
    QCOMPARE(m_widget->findChild<QProgressBar *>()->value(), 100);
    QCOMPARE(lines(), QStringList(text("Selected Format: BLF")));
    QCOMPARE(m_bench->left(), text("a.blf"));
}

void tst_WidgetConverterRld2XXX::theArgumentsComeInTheirOrder()
{
    start("", "with blank .rld", ConversionGlobal::ASC_ZIP);
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(QString::fromUtf8(contentOf(m_bench->output("with blank .asc.zip"))),
             QStringList({text("ASC_ZIP"), m_widget->conversion().inputFile,
                          m_bench->growing("with blank .asc.zip"), text("ABS")})
                 .join(QLatin1Char('\n')));
}

void tst_WidgetConverterRld2XXX::statisticsAreShown()
{
    start("");
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    m_widget->poll();
    const auto *tree = m_widget->findChild<QTreeWidget *>();
    QStringList rows;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *group = tree->topLevelItem(i);
        QVERIFY(group->isExpanded());
        for (int k = 0; k < group->childCount(); ++k)
            rows += QStringLiteral("%1/%2 %3")
                        .arg(group->text(0), group->child(k)->text(0), group->child(k)->text(1));
    }
    const QString size = QString::number(qint64(m_widget->inputSize()));
    QCOMPARE(rows, QStringList(
                       {text("Pipeline/Output Elements in pipeline 0"),
                        text("Pipeline/RLD in pipeline 0"), text("Pipeline/Written Elements 1100"),
                        text("Process/Bytes Read ") + size, text("Process/Converted Elements 1200"),
                        text("Process/File Size ") + size, text("Process/Filtered RLD Chunks 0")}));
}

void tst_WidgetConverterRld2XXX::errorsOfTheProcessAreShownInRedAndMakeState4()
{
    start("errors");
    QVERIFY(processEnds());
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(int(m_widget->state()), 4);
    QCOMPARE(lines(), QStringList({text("Selected Format: BLF"), text("reading <b>a</b> & more"),
                                   text("bad <block>")}));
    QCOMPARE(colourOf(text("reading")), QColor(Qt::black));
    QCOMPARE(colourOf(text("bad")), QColor(Qt::red));
    QVERIFY(contentOf(m_bench->output("a.blf")).startsWith("BLF"));
}

void tst_WidgetConverterRld2XXX::lastWordsAreShown()
{
    start("last-words");
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QVERIFY(QTest::qWaitFor([this] { return lines().contains(text("closing")); },
                            ConverterBench::timeout_ms));
    QCOMPARE(int(m_widget->state()), 3);
}

void tst_WidgetConverterRld2XXX::aMissingProgramIsTold()
{
    m_bench->hideStandIn();
    start("");
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 4);
    QCOMPARE(lines().last(), text("rld2xxx::Error - The converter module is missing, can't start a "
                                  "conversion!"));
    QCOMPARE(colourOf(text("rld2xxx::Error")), QColor(Qt::red));
}

void tst_WidgetConverterRld2XXX::anotherVersionStopsTheConversionOnce()
{
    start("version-2");
    QVERIFY(outputBegins());
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    for (int poll = 0; poll < 20; ++poll)
        m_widget->poll();
    QCOMPARE(int(m_widget->state()), 4);
    QCOMPARE(process()->state(), QProcess::NotRunning);
    const QString line = text("Wrong converter version included. %Compatible: 3.0 Found: 2.0 ");
    QCOMPARE(lines(), QStringList({text("Selected Format: BLF"), line}));
    QCOMPARE(colourOf(text("Wrong")), QColor(Qt::red));
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::aFileSizeOf0LeavesTheBarUntouched()
{
    start("size-0");
    QVERIFY(outputBegins());
    m_widget->updateProgress(7);
    const auto *tree = m_widget->findChild<QTreeWidget *>();
    QVERIFY(QTest::qWaitFor([this, tree] {
        m_widget->poll();
        return tree->topLevelItemCount() == 2
               && tree->topLevelItem(1)->child(0)->text(1) != text("0");
    }));
    QCOMPARE(m_widget->findChild<QProgressBar *>()->value(), 7);
}

void tst_WidgetConverterRld2XXX::theSixteenthPollWithoutAnswerStops()
{
    start("silent");
    QVERIFY(processEnds());
    for (int poll = 1; poll <= 15; ++poll)
        m_widget->poll();
    QCOMPARE(lines(), QStringList(text("Selected Format: BLF")));
    QVERIFY(!m_widget->isFinished());
    m_widget->poll();
    QCOMPARE(lines(), QStringList({text("Selected Format: BLF"), text(noAnswer)}));
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 4);
    m_widget->poll();
    QCOMPARE(lines().size(), 2);
}

void tst_WidgetConverterRld2XXX::aCrashIsNoAnswerAndLeavesNoHalfFile()
{
    start("crash");
    QVERIFY(processEnds());
    QCOMPARE(m_bench->left(), text("a.blf.part a.blf.part.lock"));
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(lines().last(), text(noAnswer));
    QCOMPARE(int(m_widget->state()), 4);
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::aFloodOfLinesEndsAtTheLimit()
{
    start("flood");
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(int(m_widget->state()), 3);
    QCOMPARE(lines().size(), 10001);
    QCOMPARE(lines().last(),
             text("Warning: Line Limit reached, no further messages are reported...."));
}

void tst_WidgetConverterRld2XXX::aLineWithoutEndIsCut()
{
    start("flood-without-line-ends");
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QVERIFY(processEnds());
    m_widget->poll();
    QCOMPARE(lines()[1].size(), int(OutputLines::maxLineBytes));
    QCOMPARE(lines().size(), 1 + 2000000 / OutputLines::maxLineBytes);
}

void tst_WidgetConverterRld2XXX::cancellingIsState5AndLeavesNoHalfFile()
{
    start("endless");
    QVERIFY(outputBegins());
    m_widget->poll();
    QVERIFY(!m_widget->isFinished());
    m_widget->cancel();
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 5);
    QCOMPARE(process()->state(), QProcess::NotRunning);
    QCOMPARE(m_bench->left(), QString());
    m_widget->poll();
    QCOMPARE(lines(), QStringList(text("Selected Format: BLF")));
}

void tst_WidgetConverterRld2XXX::cancellingKillsAProcessThatDoesNotListen()
{
    start("deaf");
    QVERIFY(outputBegins());
    m_widget->cancel();
    QCOMPARE(process()->state(), QProcess::NotRunning);
    QCOMPARE(int(m_widget->state()), 5);
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::aFileFromBeforeStaysWhenTheConversionIsCancelled()
{
    make(m_bench->output("a.blf"), "of yesterday");
    start("endless");
    QVERIFY(outputBegins());
    m_widget->cancel();
    QCOMPARE(contentOf(m_bench->output("a.blf")), QByteArray("of yesterday"));
    QCOMPARE(m_bench->left(), text("a.blf"));
}

void tst_WidgetConverterRld2XXX::closingWhileRunningEndsTheProcess()
{
    start("deaf");
    QVERIFY(outputBegins());
    QElapsedTimer clock;
    clock.start();
    m_widget.reset();
    QVERIFY(clock.elapsed() < ConverterBench::timeout_ms);
    QCOMPARE(m_bench->left(), QString());
}

// The stand-in keeps the lock for a minute, for which each of these would wait.
void tst_WidgetConverterRld2XXX::aHeldLockKeepsTheWindowNeitherFromPollingNorFromCancelling()
{
    start("holds-lock");
    QVERIFY(lockIsHeld());
    QElapsedTimer clock;
    clock.start();
    for (int poll = 0; poll < 20; ++poll)
        m_widget->poll();
    QVERIFY(!m_widget->isFinished());
    m_widget->cancel();
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 5);
    QVERIFY(clock.elapsed() < ConverterBench::timeout_ms);
    QCOMPARE(process()->state(), QProcess::NotRunning);
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::aHeldLockEndsTheConversionAtItsLimit()
{
    start("holds-lock");
    m_widget->setLockLimit(500);
    QVERIFY(lockIsHeld());
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(int(m_widget->state()), 4);
    QCOMPARE(lines().last(),
             text("The conversion process has kept the shared memory locked for 0.5 "
                  "seconds! Conversion was interrupted."));
    QCOMPARE(colourOf(text("locked for")), QColor(Qt::red));
    QCOMPARE(process()->state(), QProcess::NotRunning);
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::closingWhileTheLockIsHeldEndsTheProcess()
{
    start("holds-lock");
    QVERIFY(lockIsHeld());
    QElapsedTimer clock;
    clock.start();
    m_widget.reset();
    QVERIFY(clock.elapsed() < ConverterBench::timeout_ms);
    QCOMPARE(m_bench->left(), QString());
}

// The key holds the name of the log, and names of memories have a limit.
void tst_WidgetConverterRld2XXX::memoryThatCanNotBeHadIsTold()
{
    start("", (QByteArray(230, 'n') + ".rld").constData());
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 4);
    QCOMPARE(lines().last(), text("rld2xxx::Error - Shared Memory allocation failed, can't start a "
                                  "conversion!"));
    QCOMPARE(colourOf(text("rld2xxx::Error")), QColor(Qt::red));
    QCOMPARE(process()->state(), QProcess::NotRunning);
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::theOutputGetsItsNameWhenTheProcessHasEnded()
{
    start("lingering");
    QVERIFY(tellsItsEnd());
    m_widget->poll();
    QVERIFY(!m_widget->isFinished());
    QCOMPARE(m_bench->left(), text("a.blf.part a.blf.part.lock"));
    QVERIFY(endsByItself());
    m_widget->poll();
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 3);
    QCOMPARE(m_bench->left(), text("a.blf"));
}

void tst_WidgetConverterRld2XXX::aProcessThatClosesItsFilesIsWaitedFor()
{
    start("lingering");
    m_widget->setClosingNotice(0);
    QVERIFY(tellsItsEnd());
    m_widget->poll();
    m_widget->poll();
    QCOMPARE(lines(),
             QStringList({text("Selected Format: BLF"),
                          text("The conversion process has told its end, but still runs. The file "
                               "gets its name when the process has ended; cancelling removes "
                               "it.")}));
    QVERIFY(!m_widget->isFinished());
    QVERIFY(process()->state() != QProcess::NotRunning);
    QCOMPARE(m_bench->left(), text("a.blf.part a.blf.part.lock"));
    QVERIFY(endsByItself());
    m_widget->poll();
    QCOMPARE(int(m_widget->state()), 3);
    QVERIFY(contentOf(m_bench->output("a.blf")).startsWith("BLF"));
}

void tst_WidgetConverterRld2XXX::cancellingWhileItClosesItsFilesLeavesNone()
{
    start("lingering");
    QVERIFY(tellsItsEnd());
    m_widget->cancel();
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 5);
    QCOMPARE(process()->state(), QProcess::NotRunning);
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::closingWhileItClosesItsFilesLeavesNone()
{
    start("lingering");
    QVERIFY(tellsItsEnd());
    m_widget.reset();
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::cancellingBehindTheEndKeepsTheFile()
{
    start("lingering");
    QVERIFY(endsByItself());
    m_widget->cancel();
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(int(m_widget->state()), 3);
    QCOMPARE(m_bench->left(), text("a.blf"));
}

void tst_WidgetConverterRld2XXX::closingBehindTheEndKeepsTheFile()
{
    start("lingering");
    QVERIFY(endsByItself());
    m_widget.reset();
    QCOMPARE(m_bench->left(), text("a.blf"));
    QCOMPARE(m_bench->prompt.shown, QStringList());
}

void tst_WidgetConverterRld2XXX::aCrashBehindTheToldEndLeavesNoFile()
{
    start("lingering");
    QVERIFY(tellsItsEnd());
    process()->kill();
    QVERIFY(processEnds());
    m_widget->poll();
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 4);
    const QString line = text("The conversion process has crashed before it had closed its file!");
    QCOMPARE(lines().last(), line);
    QCOMPARE(colourOf(line), QColor(Qt::red));
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::aFileThatCanNotHaveItsPlaceIsKept()
{
    start("lingering");
    QVERIFY(endsByItself());
    QVERIFY(QDir().mkdir(m_bench->output("a.blf")));
    m_widget->poll();
    QCOMPARE(int(m_widget->state()), 4);
    QVERIFY2(lines().last().endsWith(keptText()), qPrintable(lines().last()));
    QCOMPARE(colourOf(text("is kept as")), QColor(Qt::red));
    start("", "b.rld"); // clears what was left
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QVERIFY(contentOf(m_bench->growing("a.blf")).startsWith("BLF"));
}

void tst_WidgetConverterRld2XXX::closingTellsOfAFileThatCanNotHaveItsPlace()
{
    start("lingering");
    QVERIFY(endsByItself());
    QVERIFY(QDir().mkdir(m_bench->output("a.blf")));
    m_widget.reset();
    const QString shown = m_bench->prompt.shown.value(0);
    QVERIFY2(shown.startsWith(text("File-conversion not finished|")), qPrintable(shown));
    QVERIFY2(shown.endsWith(keptText()), qPrintable(shown));
    QVERIFY(contentOf(m_bench->growing("a.blf")).startsWith("BLF"));
}

void tst_WidgetConverterRld2XXX::aFileFromBeforeIsReplacedByTheWholeOne()
{
    make(m_bench->output("a.blf"), "of yesterday");
    start("");
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QVERIFY(contentOf(m_bench->output("a.blf")).startsWith("BLF"));
    QCOMPARE(m_bench->left(), text("a.blf"));
}

void tst_WidgetConverterRld2XXX::anOutputThatWasNotMadeIsAnError()
{
    start("no-output");
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(int(m_widget->state()), 4);
    QVERIFY(
        lines().last().startsWith(QDir::toNativeSeparators(m_bench->output("a.blf")) + text(": ")));
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterRld2XXX::aFolderInPlaceOfTheOutputIsTold()
{
    QVERIFY(QDir().mkdir(m_bench->output("a.blf")));
    start("");
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 4);
    QCOMPARE(lines().last(),
             QStringLiteral("rld2xxx::Error - %1: is not a regular file, can't start a conversion!")
                 .arg(QDir::toNativeSeparators(m_bench->output("a.blf"))));
    QCOMPARE(m_bench->left(), text("a.blf"));
}

void tst_WidgetConverterRld2XXX::whatAKilledConversionLeftIsCleared()
{
    QVERIFY(QDir().mkdir(growingfile::partOf(m_bench->output("killed.blf"))));
    make(m_bench->growing("killed.blf"), "half");
    make(growingfile::lockOf(m_bench->output("killed.blf")), lockOfEndedProgram());
    start("");
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(m_bench->left(), text("a.blf"));
}

QTEST_MAIN(tst_WidgetConverterRld2XXX)
#include "tst_widgetconverterrld2xxx.moc"
