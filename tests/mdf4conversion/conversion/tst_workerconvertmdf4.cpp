#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/framelog.h"

#include <QDir>
#include <QFile>
#include <QTest>

namespace {

using Log = FrameLog;

constexpr quint32 messageId = FrameLog::messageId;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class tst_WorkerConvertMDF4 : public QObject
{
    Q_OBJECT

private slots:
    void messagesComeInTheirOrder();
    void finishedIsEmittedOnceInEveryOutcome();
    void theSignalListIsSentEmptyAndWithCounts();
    void theSummaryTellsWhatWasFound();
    void aConfigurationWithoutARecordIsRefused();
    void namesOutOfALogStandEscapedInMessages();
    void version6IsConvertedWithoutTheDeprecationLine();
    void version5IsConvertedWithTheDeprecationLine();
    void newerVersionsAreRefused_data();
    void newerVersionsAreRefused();
    void aLogThatCantBeReadIsRefused_data();
    void aLogThatCantBeReadIsRefused();
    void aMissingLogIsRefusedAndNamed();
    void aFolderAsLogIsRefused();
    void aLogWithoutEntriesGivesAFileWithoutGroups();
    void skippedBytesAreReportedAheadOfTheNextEntry();
    void skippedBytesAtTheEndAreNotReported();
    void shortEntriesAreDroppedSilently();
    void progressRunsTo50WhileParsingAndTo100WhileWriting();
    void cancellingAtAnyStatusLeavesNothing_data();
    void cancellingAtAnyStatusLeavesNothing();
    void cancellingDuringTheWritingLeavesNoOutput();
    void aConversionThatWasCancelledKeepsAnExistingOutput();
    void theFileIsTheSameWhateverTheThreads();
    void recordsOfManyBlocksAreWhole();
    void startAndEndStandInTheDiagnostics();
    void aLogThatShrinksWhileItIsReadIsReported();
    void theUserIsThatOfTheEnvironment();
};

void tst_WorkerConvertMDF4::messagesComeInTheirOrder()
{
    Log log;
    log.add(rawlog::syncStampEntry(500, 0));
    log.addFrames(2);
    log.add(rawlog::debugCountersEntry(0, 0, 2));
    QCOMPARE(log.convert().messages,
             (QStringList{
                 text("Status: logfile-conversion started..."),
                 text("Status: Converter Software-Version:2.19 "),
                 text("Status: Main-Version of Log-Configuration:6"),
                 text("Status: grouping signal-channels..."),
                 text("Status: parsing logfile data..."),
                 text("Status: Cyclic Timestamp event - (timestamp & TS_32BIT_MSK_32_LOW_BITS): "
                      "500 - timestamp from log: 500"),
                 text("Status: First Extracted Timestamp from Signal: CAN_0_DBC-A - 0 usec"),
                 text("Warning: Dbg-Infos[0]: "
                      "Timestamp-Sync-Counter/LogController-Restart-Counter:2"),
                 text("Status: updating signallist..."),
                 text("Status: creating/writing MDF4..."),
                 text("Status: creating MDF4-File:") + log.job.outputFile,
                 text("Status: smallest timestamp value will be used for start-offset "
                      "compensation. 0 [uSec] will be Subtracted from all Records."),
                 text("Status: Writing: channel-group:CAN_0_DBC signal-count:2"),
                 text("Status: Signal:A Intervall min:1000 avg:1000.00 max:1000 [uSec]"),
                 text("Status: Signal:B Intervall min:1000 avg:1000.00 max:1000 [uSec]"),
                 text("Status: "),
                 text("Status: Writing MDF4 done."),
                 text("Status: Logfile-conversion completed."),
             }));
}

void tst_WorkerConvertMDF4::finishedIsEmittedOnceInEveryOutcome()
{
    for (const qint32 version : {6, 7}) {
        Log log;
        log.setMainVersion(version);
        int finished = 0;
        log.prepare = [&finished](WorkerConvertMDF4 &worker) {
            QObject::connect(&worker, &WorkerConvertMDF4::finished, [&finished] { ++finished; });
        };
        QCOMPARE(log.convert().summary.written, version == 6);
        QCOMPARE(finished, 1);
    }
}

void tst_WorkerConvertMDF4::theSignalListIsSentEmptyAndWithCounts()
{
    using Counts = std::map<QString, std::map<QString, QString>>;
    Log log;
    log.addFrames(3);
    QVector<std::pair<Counts, bool>> sent;
    log.prepare = [&sent](WorkerConvertMDF4 &worker) {
        QObject::connect(&worker, &WorkerConvertMDF4::sig_updateSignals,
                         [&sent](const Counts &counts, bool expandAll) {
                             sent.append({counts, expandAll});
                         });
    };
    log.convert();
    const auto counts = [](const QString &count) {
        return Counts{{text("CAN_0_DBC"), {{text("A"), count}, {text("B"), count}}}};
    };
    QCOMPARE(sent.size(), 2);
    QCOMPARE(sent[0], (std::pair(counts(text("0")), false)));
    QCOMPARE(sent[1], (std::pair(counts(text("3")), true)));
}

void tst_WorkerConvertMDF4::theSummaryTellsWhatWasFound()
{
    Log log;
    log.add(rawlog::utcStartEntry(1000000) + QByteArray("xyz"));
    log.addFrames(3);
    const ConversionSummary summary = log.convert().summary;
    QVERIFY(summary.written);
    QVERIFY(!summary.cancelled);
    QCOMPARE(summary.entries, quint64(4));
    QCOMPARE(summary.skippedBytes, quint64(3));
    QCOMPARE(summary.utcStart_us, quint64(1000000));
    QCOMPARE(summary.lastTime_us, quint64(2000));
    QCOMPARE(summary.errorCount, quint64(1));
    QCOMPARE(summary.warningCount, quint64(0));
    QCOMPARE(summary.groups.size(), 1);
    QCOMPARE(summary.groups[0].samples, quint64(3));
    QCOMPARE(summary.groups[0].channels.size(), 2);
}

void tst_WorkerConvertMDF4::aConfigurationWithoutARecordIsRefused()
{
    Log log;
    log.setConfigurationBlock(QByteArray(4, 0));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors.size(), 2);
    QVERIFY(result.errors.first().contains(text("its configuration is damaged")));
    QVERIFY(!result.summary.written);
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
}

void tst_WorkerConvertMDF4::namesOutOfALogStandEscapedInMessages()
{
    ConversionHarness log;
    testlog::addSignal(log.configuration.can[0], text("<img src=\"x\">&"), 0x123, 0, 16);
    log.add(testlog::can(1000, 0, 0x123, "0102030405060708"));
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QVERIFY(!result.status(text("Signal:&lt;img src=&quot;x&quot;&gt;&amp; Intervall")).isEmpty());
    QVERIFY(result.messages.filter(text("<img")).isEmpty());
}

void tst_WorkerConvertMDF4::version6IsConvertedWithoutTheDeprecationLine()
{
    Log log;
    log.setMainVersion(6);
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QVERIFY(result.statuses.filter(text("deprecated")).isEmpty());
}

void tst_WorkerConvertMDF4::version5IsConvertedWithTheDeprecationLine()
{
    Log log;
    log.setMainVersion(5);
    log.addFrames(2);
    const ConversionResult result = log.convert();
    QCOMPARE(result.times(0).size(), 2);
    QVERIFY(result.statuses.contains(text("Main-Version of Log-Configuration:5")));
    QCOMPARE(result.status(text("deprecated")),
             text("Logfile, written by software with Log-Cfg.Vers. &lt; 6 using deprecated "
                  "timestamp-handling."));
}

void tst_WorkerConvertMDF4::newerVersionsAreRefused_data()
{
    QTest::addColumn<qint32>("version");
    QTest::addColumn<QString>("number");
    QTest::newRow("7") << 7 << text("7");
    QTest::newRow("largest") << -1 << text("4294967295");
}

void tst_WorkerConvertMDF4::newerVersionsAreRefused()
{
    QFETCH(qint32, version);
    QFETCH(QString, number);
    Log log;
    log.setMainVersion(version);
    log.addFrames(2);
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors,
             (QStringList{text("Incompatible logfile, logfile-Version:%1 converter supporting up "
                               "to 6.")
                              .arg(number),
                          text("Logfile-conversion aborted.")}));
    QVERIFY(!result.statuses.contains(text("grouping signal-channels...")));
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
}

void tst_WorkerConvertMDF4::aLogThatCantBeReadIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("three bytes") << QByteArray(3, 1);
    QTest::newRow("no configuration") << QByteArray(4, 0);
    QTest::newRow("no configuration, but entries")
        << QByteArray(4, 0) + testlog::can(1, 0, messageId, "0102030405060708");
    QTest::newRow("a configuration that is cut")
        << QByteArray::fromHex("10000000") + QByteArray(15, 1);
    QTest::newRow("a giant configuration") << QByteArray(64, char(0xFF));
}

void tst_WorkerConvertMDF4::aLogThatCantBeReadIsRefused()
{
    QFETCH(QByteArray, bytes);
    ConversionHarness log;
    QFile file(log.job.inputFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();
    const ConversionResult result = log.convertFile();
    QVERIFY(!result.summary.written);
    QCOMPARE(result.errors.first(), text("File-error, unable to load log-configuration."));
    QCOMPARE(result.errors.last(), text("Logfile-conversion aborted."));
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
}

void tst_WorkerConvertMDF4::aMissingLogIsRefusedAndNamed()
{
    ConversionHarness log;
    const ConversionResult result = log.convertFile();
    QCOMPARE(result.errors.first(), text("File-error, unable to load log-configuration."));
    QVERIFY(result.errors.at(1).startsWith(QDir::toNativeSeparators(log.job.inputFile)));
    QCOMPARE(log.leftFiles(), QStringList());
}

void tst_WorkerConvertMDF4::aFolderAsLogIsRefused()
{
    ConversionHarness log;
    QVERIFY(QDir().mkdir(log.job.inputFile));
    QCOMPARE(log.convertFile().errors.first(),
             text("File-error, unable to load log-configuration."));
}

void tst_WorkerConvertMDF4::aLogWithoutEntriesGivesAFileWithoutGroups()
{
    Log log;
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QCOMPARE(result.readFailure, QString());
    QVERIFY(result.file.groups.empty());
    QCOMPARE(result.progress.last(), 100);
    QCOMPARE(log.leftFiles().join(QLatin1Char(' ')), text("log.mf4 log.rld"));
}

void tst_WorkerConvertMDF4::skippedBytesAreReportedAheadOfTheNextEntry()
{
    Log log;
    log.addFrames(1);
    const int position = log.log().size();
    log.add(QByteArray(7, 'x') + testlog::can(5000, 0, messageId, "0102030405060708"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors,
             QStringList(text("7 bytes have been skipped between two log entries, starting at "
                              "fileposition %1.")
                             .arg(position)));
    QCOMPARE(result.times(0), (QVector<quint64>{0, 5000}));
}

void tst_WorkerConvertMDF4::skippedBytesAtTheEndAreNotReported()
{
    Log log;
    log.addFrames(2);
    log.add(testlog::can(5000, 0, messageId, "0102030405060708").chopped(1));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.times(0).size(), 2);
}

void tst_WorkerConvertMDF4::shortEntriesAreDroppedSilently()
{
    Log log;
    log.addFrames(1);
    log.add(QByteArray::fromHex("AA550000 AA550200 0102 AA550300 010203"));
    log.add(testlog::can(5000, 0, messageId, "0102030405060708"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.summary.entries, quint64(2));
}

void tst_WorkerConvertMDF4::progressRunsTo50WhileParsingAndTo100WhileWriting()
{
    Log log;
    log.addFrames(200000); // more than one chunk of the reader
    QVector<int> whenWriting;
    int last = -1;
    log.prepare = [&last](WorkerConvertMDF4 &worker) {
        QObject::connect(&worker, &WorkerConvertMDF4::sig_progress,
                         [&last](int percentage) { last = percentage; });
    };
    log.onStatus = [&](const QString &status) {
        if (status == text("creating/writing MDF4..."))
            whenWriting.append(last);
    };
    const ConversionResult result = log.convert();
    QCOMPARE(result.progress.first(), 0);
    QCOMPARE(result.progress.last(), 100);
    QVERIFY(std::is_sorted(result.progress.begin(), result.progress.end()));
    QVERIFY(result.progress.size() > 4);
    QCOMPARE(whenWriting.size(), 1);
    QVERIFY(whenWriting.first() > 0 && whenWriting.first() <= 50);
}

void tst_WorkerConvertMDF4::cancellingAtAnyStatusLeavesNothing_data()
{
    QTest::addColumn<QString>("status");
    for (const char *status :
         {"logfile-conversion started...", "grouping signal-channels...", "parsing logfile data...",
          "First Extracted Timestamp", "updating signallist...", "creating/writing MDF4...",
          "creating MDF4-File:", "Writing: channel-group:"})
        QTest::newRow(status) << text(status);
}

void tst_WorkerConvertMDF4::cancellingAtAnyStatusLeavesNothing()
{
    QFETCH(QString, status);
    Log log;
    log.addFrames(100);
    WorkerConvertMDF4 *running = nullptr;
    log.prepare = [&running](WorkerConvertMDF4 &worker) { running = &worker; };
    log.onStatus = [&](const QString &told) {
        if (told.startsWith(status))
            running->requestCancelProcess();
    };
    const ConversionResult result = log.convert();
    QVERIFY(!result.summary.written);
    QVERIFY(result.summary.cancelled);
    QCOMPARE(result.errors, (QStringList{text("cancel conversion requested by user"),
                                         text("Logfile-conversion aborted.")}));
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
}

void tst_WorkerConvertMDF4::cancellingDuringTheWritingLeavesNoOutput()
{
    Log log;
    log.addFrames(100);
    WorkerConvertMDF4 *running = nullptr;
    bool partExisted = false;
    log.prepare = [&running](WorkerConvertMDF4 &worker) { running = &worker; };
    log.onStatus = [&](const QString &told) {
        if (!told.startsWith(text("Writing: channel-group")))
            return;
        partExisted = QFile::exists(log.job.outputFile + text(".part"));
        running->requestCancelProcess();
    };
    QVERIFY(!log.convert().summary.written);
    QVERIFY(partExisted);
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
}

void tst_WorkerConvertMDF4::aConversionThatWasCancelledKeepsAnExistingOutput()
{
    Log log;
    log.addFrames(100);
    QFile old(log.job.outputFile);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    log.prepare = [](WorkerConvertMDF4 &worker) { worker.requestCancelProcess(); };
    QCOMPARE(log.convert().bytes, QByteArray("old"));
}

void tst_WorkerConvertMDF4::theFileIsTheSameWhateverTheThreads()
{
    QByteArray first;
    for (const int threads : {1, 2, 3}) {
        Log log;
        log.addFrames(1000);
        log.configuration.gps.gps_enabled = 1;
        log.add(rawlog::gpsEntry(1000000, {}));
        log.job.threads = threads;
        const QByteArray bytes = log.convert().bytes;
        QVERIFY(!bytes.isEmpty());
        if (first.isEmpty())
            first = bytes;
        QVERIFY(bytes == first);
    }
}

void tst_WorkerConvertMDF4::recordsOfManyBlocksAreWhole()
{
    constexpr int count = 450000; // of 10 bytes: more than the 4 MiB of one block
    Log log;
    log.addFrames(count);
    log.job.threads = 2;
    const ConversionResult result = log.convert();
    QCOMPARE(result.readFailure, QString());
    QCOMPARE(result.file.groups.at(0).blocks.size(), size_t(2));
    QCOMPARE(result.file.groups.at(0).equalLength, std::uint64_t(0x400000));
    const QVector<quint64> times = result.times(0);
    QCOMPARE(times.size(), count);
    for (int i = 0; i < count; ++i)
        QCOMPARE(times[i], quint64(i) * 1000);
}

void tst_WorkerConvertMDF4::startAndEndStandInTheDiagnostics()
{
    Log log;
    QTest::ignoreMessage(QtDebugMsg, "MDF4 conversion starts..");
    QTest::ignoreMessage(QtDebugMsg, "MDF4 Converter Deleting LOG..");
    QTest::ignoreMessage(QtDebugMsg, "Destroying LogFileProcessing");
    QVERIFY(log.convert().summary.written);
}

void tst_WorkerConvertMDF4::aLogThatShrinksWhileItIsReadIsReported()
{
    constexpr int frames = 300000; // two chunks of the reader and more
    constexpr qint64 size = 4000000;
    Log log;
    log.addFrames(frames);
    log.onStatus = [&log](const QString &status) {
        if (status.startsWith(text("First Extracted")))
            QFile::resize(log.job.inputFile, size);
    };
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors.size(), 1);
    QVERIFY(result.errors.first().startsWith(QDir::toNativeSeparators(log.job.inputFile)));
    QCOMPARE(result.readFailure, QString());
    QVERIFY(result.times(0).size() < frames);
}

void tst_WorkerConvertMDF4::theUserIsThatOfTheEnvironment()
{
    const QByteArray user = qgetenv("USER");
    const QByteArray userName = qgetenv("USERNAME");
    qputenv("USER", "first");
    qunsetenv("USERNAME");
    QCOMPARE(environmentUser(), text("first"));
    qputenv("USERNAME", "second");
    QCOMPARE(environmentUser(), text("second"));
    qputenv("USER", user);
    qputenv("USERNAME", userName);
}

QTEST_GUILESS_MAIN(tst_WorkerConvertMDF4)
#include "tst_workerconvertmdf4.moc"
