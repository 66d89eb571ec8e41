#include "MDF4Conversion/outputnames.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/views/widgetconvertermdf4.h"
#include "MDF4Conversion/workerconvertmdf4.h"
#include "tests/mdf4conversion/views/converterbench.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QSemaphore>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <memory>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

constexpr int manyFrames = 150000;

// Each gives a status.
QByteArray twoStamps()
{
    return rawlog::syncStampEntry(1000, 0) + rawlog::syncStampEntry(2000, 0);
}

// Holds every worker at its first word, until it is released.
QSemaphore &gate()
{
    static QSemaphore semaphore;
    return semaphore;
}

void holdWorkers(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (message.startsWith(QLatin1String("MDF4 conversion starts")))
        gate().acquire();
}

// Holds a worker at a sync stamp for longer than a window needs to close.
void holdAtSyncStamp(QtMsgType, const QMessageLogContext &, const QString &message)
{
    constexpr int hold_ms = 500;
    if (message.startsWith(QLatin1String("Cyclic Timestamp event - ")))
        (void)gate().tryAcquire(1, hold_ms);
}

// Holds a worker behind the last entry of its log.
QSemaphore &held()
{
    static QSemaphore semaphore;
    return semaphore;
}

void holdBehindTheLog(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (!message.startsWith(QLatin1String("MDF4 Converter Deleting LOG")))
        return;
    held().release();
    gate().acquire();
}

// As long as it lives, a worker is held there.
class HoldBehindTheLog
{
public:
    HoldBehindTheLog()
        : m_before(qInstallMessageHandler(holdBehindTheLog))
    {}
    ~HoldBehindTheLog()
    {
        gate().release();
        qInstallMessageHandler(m_before);
    }
    HoldBehindTheLog(const HoldBehindTheLog &) = delete;
    HoldBehindTheLog &operator=(const HoldBehindTheLog &) = delete;

private:
    const QtMessageHandler m_before;
};

// Shows the worker.
class OpenConverter : public WidgetConverterMdf4
{
public:
    using WidgetConverterMdf4::WidgetConverterMdf4;
    using WidgetConverterMdf4::worker;
};

// Counts the receivers of a signal of any object.
class Receivers : public QObject
{
public:
    static int of(const QObject &object, const char *signal)
    {
        return (object.*&Receivers::receivers)(signal);
    }
};

} // namespace

class tst_WidgetConverterMdf4 : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_bench = std::make_unique<ConverterBench>();
        m_names = std::make_shared<OutputNames>();
    }
    void cleanup()
    {
        m_widget.reset();
        m_bench.reset();
    }

    void aLogIsConverted();
    void theTreeCountsTheSamples();
    void errorsInTheLogMakeState4();
    void aFileThatIsNoLogIsState4();
    void cancellingIsState5AndLeavesNothing();
    void cancellingBeforeTheStartIsState5();
    void cancellingBehindTheEndChangesNothing();
    void aNameThatGotTakenIsNotReplaced();
    void closingWhileRunningLeavesNothing();
    void anUnusedTemporaryFolderIsRemoved();
    void aFullTemporaryFolderStaysAndIsTold();
    void aWorkerThatDoesNotEndIsTold();
    void aFloodOfStatusesEndsAtTheLimit();
    void reachedLimitsDisconnectTheRunningWorker();
    void messagesComeInPortions();
    void theStateFollowsTheLastMessage();

private:
    void make(const QString &log, bool withNames = true)
    {
        const PlannedConversion plan = m_bench->plan(log, ConversionGlobal::MDF4);
        ConversionJob job;
        job.outputFolder = m_bench->outputDir();
        if (withNames)
            job.names = m_names;
        m_widget = std::make_unique<OpenConverter>(plan, job, m_bench->prompt);
    }
    void convert(const QString &log)
    {
        make(log);
        m_widget->start();
        QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    }

    std::unique_ptr<ConverterBench> m_bench;
    std::shared_ptr<OutputNames> m_names;
    std::unique_ptr<OpenConverter> m_widget;
};

void tst_WidgetConverterMdf4::aLogIsConverted()
{
    convert(m_bench->makeLog(text("a.rld")));
    QCOMPARE(int(m_widget->state()), 3);
    QVERIFY(m_widget->messages().contains(text("Status: Logfile-conversion completed.")));
    QCOMPARE(m_widget->shareDone(), 1.0);
    QCOMPARE(m_bench->left(), text("a.mf4"));
    QCOMPARE(m_bench->prompt.shown, QStringList());
}

void tst_WidgetConverterMdf4::theTreeCountsTheSamples()
{
    convert(m_bench->makeLog(text("a.rld"), 7));
    auto *tree = m_widget->findChild<QTreeWidget *>();
    QStringList rows;
    for (QTreeWidgetItemIterator item(tree); *item; ++item) {
        if ((*item)->parent())
            rows += QStringLiteral("%1 %2 %3")
                        .arg((*item)->text(0), (*item)->text(1), (*item)->text(2));
    }
    rows.sort();
    QCOMPARE(rows, QStringList({text("Never 0 no samples"), text("Speed 7 ")}));
}

void tst_WidgetConverterMdf4::errorsInTheLogMakeState4()
{
    convert(m_bench->makeLog(text("a.rld"), 10, "rubbish"));
    QCOMPARE(int(m_widget->state()), 4);
    QVERIFY(m_widget->messages().contains(text("Error: 7 bytes have been skipped")));
    QCOMPARE(m_bench->left(), text("a.mf4"));
}

void tst_WidgetConverterMdf4::aFileThatIsNoLogIsState4()
{
    convert(QDir(m_bench->outputDir()).filePath(text("<b>missing.rld")));
    QCOMPARE(int(m_widget->state()), 4);
    QVERIFY(m_widget->messages().contains(text("<b>missing.rld: ")));
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterMdf4::cancellingIsState5AndLeavesNothing()
{
    make(m_bench->makeLog(text("a.rld"), manyFrames));
    m_widget->start();
    QVERIFY(QTest::qWaitFor([this] { return m_bench->left().contains(text("tmp_1")); }));
    m_widget->cancel();
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCoreApplication::processEvents();
    QCOMPARE(int(m_widget->state()), 5);
    QVERIFY(m_widget->messages().contains(text("Error: cancel conversion requested by user")));
    QCOMPARE(m_bench->left(), QString());
}

void tst_WidgetConverterMdf4::cancellingBeforeTheStartIsState5()
{
    make(m_bench->makeLog(text("a.rld")));
    QVERIFY(!m_widget->isFinished());
    m_widget->cancel();
    QVERIFY(m_widget->isFinished());
    QCOMPARE(int(m_widget->state()), 5);
}

void tst_WidgetConverterMdf4::cancellingBehindTheEndChangesNothing()
{
    convert(m_bench->makeLog(text("a.rld")));
    m_widget->cancel();
    QCOMPARE(int(m_widget->state()), 3);
}

void tst_WidgetConverterMdf4::aNameThatGotTakenIsNotReplaced()
{
    make(m_bench->makeLog(text("a.rld")));
    QFile other(m_bench->output("a.mf4"));
    QVERIFY(other.open(QIODevice::WriteOnly) && other.write("precious") == 8);
    other.close();
    m_widget->start();
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(int(m_widget->state()), 3);
    QCOMPARE(contentOf(m_bench->output("a.mf4")), QByteArray("precious"));
    QCOMPARE(m_bench->left(), text("a.mf4 a_1.mf4"));
}

void tst_WidgetConverterMdf4::closingWhileRunningLeavesNothing()
{
    const QByteArray stamp = rawlog::syncStampEntry(1000, 0);
    make(m_bench->makeLog(text("a.rld"), manyFrames, stamp));
    const QtMessageHandler before = qInstallMessageHandler(holdAtSyncStamp);
    m_widget->start();
    const bool isRunning =
        QTest::qWaitFor([this] { return m_bench->left().contains(text("tmp_1")); });
    m_widget.reset();
    qInstallMessageHandler(before);
    QVERIFY(isRunning);
    QCOMPARE(m_bench->left(), QString());
    QCOMPARE(m_bench->prompt.shown, QStringList());
}

void tst_WidgetConverterMdf4::anUnusedTemporaryFolderIsRemoved()
{
    make(m_bench->makeLog(text("a.rld")));
    QVERIFY(QDir(m_bench->outputDir()).mkdir(text("tmp_1")));
    m_widget.reset();
    QCOMPARE(m_bench->left(), QString());

    make(m_bench->makeLog(text("a.rld")));
    QVERIFY(QDir(m_bench->outputDir()).mkdir(text("tmp_1")));
    QVERIFY(QFile(m_bench->output("tmp_1/.hidden")).open(QIODevice::WriteOnly));
    m_widget.reset();
    QCOMPARE(m_bench->left(), text("tmp_1"));
}

void tst_WidgetConverterMdf4::aFullTemporaryFolderStaysAndIsTold()
{
    const QString log = m_bench->makeLog(text("a.rld"));
    make(log, false);
    const QString folder = m_bench->output("tmp_1");
    QVERIFY(QDir().mkdir(folder));
    QVERIFY(QFile(folder + text("/foreign")).open(QIODevice::WriteOnly));
    m_widget->start();
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    m_widget.reset();
    QCOMPARE(m_bench->prompt.shown,
             QStringList(text("File-conversion cleanup incomplete|Conversion cleanup incomplete "
                              "for file %1. Unable to cleanup temporary files within directory %2.")
                             .arg(log, folder)));
    QCOMPARE(m_bench->left(), text("a.mf4 tmp_1"));
}

void tst_WidgetConverterMdf4::aWorkerThatDoesNotEndIsTold()
{
    const QString log = m_bench->makeLog(text("a.rld"));
    make(log);
    const QtMessageHandler before = qInstallMessageHandler(holdWorkers);
    m_widget->start();
    m_widget.reset();
    gate().release();
    qInstallMessageHandler(before);
    QCOMPARE(m_bench->prompt.shown,
             QStringList(text("File-conversion not finished|Conversion of file %1 not finished, "
                              "tmp files at %2 not deleted.")
                             .arg(log, m_bench->output("tmp_1"))));
}

void tst_WidgetConverterMdf4::aFloodOfStatusesEndsAtTheLimit()
{
    make(m_bench->makeLog(text("a.rld")));
    QTest::ignoreMessage(QtDebugMsg, "Nfo Disconnected");
    QTest::ignoreMessage(QtDebugMsg, "Warn Disconnected");
    for (int line = 0; line < 25000; ++line)
        m_widget->appendNfoLine(text("x"));
    for (int line = 0; line < 1000; ++line)
        m_widget->appendWarnLine(text("x"));
    QCOMPARE(m_widget->findChild<QPlainTextEdit *>()->document()->blockCount(), 26002);
}

void tst_WidgetConverterMdf4::reachedLimitsDisconnectTheRunningWorker()
{
    ConversionHarness log;
    for (quint32 id = 0; id < 1001; ++id) // a warning for each message
        testlog::addSignal(log.configuration.can[0], text("Beyond"), id, 60, 8);
    make(m_bench->writeLog(text("a.rld"), log.log() + twoStamps().repeated(12501)));
    const HoldBehindTheLog hold;
    m_widget->start();
    QVERIFY(held().tryAcquire(1, ConverterBench::timeout_ms));
    const QObject &worker = *m_widget->worker();
    QCOMPARE(Receivers::of(worker, SIGNAL(sig_status(QString))), 1);
    QCOMPARE(Receivers::of(worker, SIGNAL(sig_warning(QString))), 1);
    for (int poll = 0; poll < 30; ++poll)
        m_widget->poll();
    QCOMPARE(Receivers::of(worker, SIGNAL(sig_status(QString))), 0);
    QCOMPARE(Receivers::of(worker, SIGNAL(sig_warning(QString))), 0);
    QCOMPARE(Receivers::of(worker, SIGNAL(sig_error(QString))), 1);
    QCOMPARE(int(m_widget->state()), 2);
}

void tst_WidgetConverterMdf4::messagesComeInPortions()
{
    make(m_bench->makeLog(text("a.rld"), 1, twoStamps().repeated(5000)));
    int most = 0;
    int shown = 1;       // a text without lines has one block
    const QObject scope; // of what the connection writes to
    connect(m_widget->findChild<QPlainTextEdit *>()->document(), &QTextDocument::blockCountChanged,
            &scope, [&](int count) {
                most = qMax(most, count - shown);
                shown = count;
            });
    m_widget->start();
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QVERIFY2(most > 1 && most <= 1000, qPrintable(QString::number(most)));
    QVERIFY(m_widget->messages().contains(text("Logfile-conversion completed.")));
}

void tst_WidgetConverterMdf4::theStateFollowsTheLastMessage()
{
    make(m_bench->makeLog(text("a.rld"), 1, twoStamps().repeated(1500)));
    m_widget->start();
    const auto *document = m_widget->findChild<QPlainTextEdit *>()->document();
    QTRY_VERIFY_WITH_TIMEOUT(document->blockCount() > 1, ConverterBench::timeout_ms);
    QCOMPARE(m_bench->left(), text("a.mf4")); // the worker has ended
    QCOMPARE(document->blockCount(), 1000);
    QCOMPARE(int(m_widget->state()), 2);
    QVERIFY(!m_widget->isFinished());
    m_widget->cancel(); // too late
    QVERIFY(ConverterBench::pollToTheEnd(*m_widget));
    QCOMPARE(int(m_widget->state()), 3);
    QVERIFY(document->blockCount() > 3000);
    QVERIFY(m_widget->messages().endsWith(text("Status: Logfile-conversion completed.")));
}

QTEST_MAIN(tst_WidgetConverterMdf4)
#include "tst_widgetconvertermdf4.moc"
