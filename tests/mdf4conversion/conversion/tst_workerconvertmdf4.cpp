#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <csignal>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

constexpr quint32 messageId = 0x123;
const QString parsingText = QStringLiteral("parsing logfile data...");

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// Channel 0 has two signals of one message.
class Log : public ConversionHarness
{
public:
    Log()
    {
        testlog::addSignal(configuration.can[0], text("A"), messageId, 0, 8);
        testlog::addSignal(configuration.can[0], text("B"), messageId, 8, 8);
    }

    void addFrames(int count)
    {
        QByteArray frames;
        for (int i = 0; i < count; ++i)
            frames += testlog::can(quint32(i) * 1000U, 0, messageId, "0102030405060708");
        add(frames);
    }
};

#ifdef Q_OS_UNIX
// A limit of the process, put back at the end of the block.
class ScopedLimit
{
public:
    ScopedLimit(__rlimit_resource resource, rlim_t limit)
        : m_resource(resource)
    {
        getrlimit(m_resource, &m_before);
        rlimit changed = m_before;
        changed.rlim_cur = qMin(limit, m_before.rlim_max);
        setrlimit(m_resource, &changed);
    }
    ~ScopedLimit() { setrlimit(m_resource, &m_before); }

private:
    const __rlimit_resource m_resource;
    rlimit m_before{};
};
#endif

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

    void theHeaderTellsOfTheConversion();
    void theHeaderNamesTheA2lFilesOfMoreThanThreeCharacters();
    void valuesInTheHeaderAreEscaped();
    void theHistoryTellsTheTool();

    void groupsWithoutSamplesAreLeftOut();
    void recordsHoldTheTimeAndTheChannelsBackToBack();
    void theTimeChannelCountsMicroseconds();
    void theFileIsTheSameWhateverTheThreads();
    void recordsOfManyBlocksAreWhole();
    void sixteenHundredGroupsNeedFewFiles();

    void anEmptyOutputNameFails();
    void aMissingOutputFolderFailsAndIsNamed();
    void aFolderInPlaceOfTheOutputFails();
    void anOutputFolderWithoutWriteAccessFails();
    void aFullDiskWhileParsingLeavesNothing();
    void aFullDiskWhileWritingLeavesNothing();
    void aTemporaryFolderThatVanishesFails();
    void anExistingOutputIsReplacedWhole();
    void namesWithPercentSignsStayAsTheyAre();
    void aFolderWithPercentSignsIsWrittenInto();
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

void tst_WorkerConvertMDF4::theHeaderTellsOfTheConversion()
{
    Log log;
    log.job.author = text("author");
    log.job.department = text("host");
    log.configuration.event.event_name = text("Winter test");
    QCOMPARE(log.convert().file.headerComment,
             std::string("<HDcomment>\r\n"
                         "<TX>no loaded a2l files</TX>\r\n"
                         "<time_source>local PC reference timer</time_source>\r\n"
                         "<common_properties>\r\n"
                         "<e name=\"author\">author</e>\r\n"
                         "<e name=\"department\">host</e>\r\n"
                         "<e name=\"project\">Winter test</e>\r\n"
                         "<e name=\"subject\">---</e>\r\n"
                         "</common_properties>\r\n"
                         "</HDcomment>\r\n"));
}

void tst_WorkerConvertMDF4::theHeaderNamesTheA2lFilesOfMoreThanThreeCharacters()
{
    Log log;
    log.configuration.can[0].a2l.a2l_file_name = text("a.b");
    log.configuration.can[3].a2l.a2l_file_name = text("engine.a2l");
    log.configuration.can[11].a2l.a2l_file_name = text("%1.b");
    log.configuration.eth.xcp.module.a2l_file_name = text("radar.a2l");
    const QString comment = QString::fromStdString(log.convert().file.headerComment);
    QVERIFY(
        comment.contains(text("<TX>[CAN3 | engine.a2l] [CAN11 | %1.b] [ETH0 | radar.a2l] </TX>")));
}

void tst_WorkerConvertMDF4::valuesInTheHeaderAreEscaped()
{
    Log log;
    log.job.author = text("Müller & \"Söhne\"");
    log.configuration.event.event_name = text("<a> 'b'");
    const QString comment = QString::fromStdString(log.convert().file.headerComment);
    QVERIFY(comment.contains(text("<e name=\"author\">Müller &amp; &quot;Söhne&quot;</e>")));
    QVERIFY(comment.contains(text("<e name=\"project\">&lt;a&gt; ")));
    QVERIFY(!comment.contains(text("'b'")));
}

void tst_WorkerConvertMDF4::theHistoryTellsTheTool()
{
    Log log;
    const ConversionResult result = log.convert();
    QCOMPARE(result.file.fileHistories, 1U);
    QCOMPARE(result.file.fileHistoryComment,
             std::string("<FHcomment>\r\n"
                         "<TX>created</TX>\r\n"
                         "<tool_id>Zelvo-ZDS</tool_id>\r\n"
                         "<tool_vendor>Zelvo Data Acquisition</tool_vendor>\r\n"
                         "<tool_version>2.19</tool_version>\r\n"
                         "</FHcomment>\r\n"));
}

void tst_WorkerConvertMDF4::groupsWithoutSamplesAreLeftOut()
{
    Log log;
    testlog::addSignal(log.configuration.can[1], text("C"), messageId, 0, 8);
    log.addFrames(1);
    QCOMPARE(log.convert().file.groups.size(), size_t(1));
}

void tst_WorkerConvertMDF4::recordsHoldTheTimeAndTheChannelsBackToBack()
{
    Log log;
    log.addFrames(2);
    const ConversionResult result = log.convert();
    const std::vector<unsigned char> &records = result.records.at(0);
    const QByteArray bytes(reinterpret_cast<const char *>(records.data()), int(records.size()));
    QCOMPARE(bytes.toHex(' '), QByteArray("00 00 00 00 00 00 00 00 01 02 "
                                          "e8 03 00 00 00 00 00 00 01 02"));
    QCOMPARE(result.file.groups[0].cycleCount, std::uint64_t(2));
    QCOMPARE(result.file.groups[0].recordId, std::uint64_t(1));
}

void tst_WorkerConvertMDF4::theTimeChannelCountsMicroseconds()
{
    Log log;
    log.addFrames(1);
    const ConversionResult result = log.convert();
    const mdf4reader::Channel &time = result.file.groups.at(0).channels.at(0);
    QCOMPARE(time.name, std::string("Timestamp"));
    QCOMPARE(time.unit, std::string("s"));
    QCOMPARE(time.type, 2U);
    QCOMPARE(time.syncType, 1U);
    QCOMPARE(time.dataType, 0U);
    QCOMPARE(time.byteOffset, 0U);
    QCOMPARE(time.bitCount, 64U);
    QCOMPARE(time.conversion.type, 1);
    QCOMPARE(time.conversion.values, (std::vector<double>{0, 1e-6}));
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

void tst_WorkerConvertMDF4::sixteenHundredGroupsNeedFewFiles()
{
#ifdef Q_OS_UNIX
    constexpr int groups = 1600;
    ConversionHarness log;
    QByteArray frames;
    for (int i = 0; i < groups; ++i) {
        testlog::addSignal(log.configuration.can[0], text("S"), quint32(i), 0, 16);
        const QByteArray data = QByteArray::number(1000 + i % 1000).leftJustified(8, '0');
        frames += rawlog::canEntry(quint32(i), 0, {quint32(i), false, data});
    }
    log.add(frames);
    const ScopedLimit openFiles(RLIMIT_NOFILE, 256);
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.readFailure, QString());
    QCOMPARE(result.file.groups.size(), size_t(groups));
    QCOMPARE(result.times(groups - 1), QVector<quint64>{quint64(groups) - 1});
    QCOMPARE(log.leftFiles().join(QLatin1Char(' ')), text("log.mf4 log.rld"));
#else
    QSKIP("the number of open files can't be limited");
#endif
}

void tst_WorkerConvertMDF4::anEmptyOutputNameFails()
{
    Log log;
    log.addFrames(1);
    log.job.outputFile.clear();
    const ConversionResult result = log.convert();
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.contains(text("Error writing MDF4")));
    QCOMPARE(result.errors.last(), text("Logfile-conversion aborted."));
}

void tst_WorkerConvertMDF4::aMissingOutputFolderFailsAndIsNamed()
{
    Log log;
    log.addFrames(1);
    const QString folder = QDir(log.folder()).filePath(text("missing"));
    log.job.outputFile = folder + text("/log.mf4");
    log.job.temporaryDir = folder + text("/tmp_1");
    const ConversionResult result = log.convert();
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.first().contains(QDir::toNativeSeparators(folder)));
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
}

void tst_WorkerConvertMDF4::aFolderInPlaceOfTheOutputFails()
{
    Log log;
    log.addFrames(1);
    QVERIFY(QDir().mkdir(log.job.outputFile));
    const ConversionResult result = log.convert();
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.first().contains(QDir::toNativeSeparators(log.job.outputFile)));
    QCOMPARE(log.leftFiles().join(QLatin1Char(' ')), text("log.mf4 log.rld"));
}

void tst_WorkerConvertMDF4::anOutputFolderWithoutWriteAccessFails()
{
#ifdef Q_OS_UNIX
    if (geteuid() == 0)
        QSKIP("root may write everywhere");
    Log log;
    log.addFrames(1);
    const QString folder = QDir(log.folder()).filePath(text("closed"));
    QVERIFY(QDir().mkdir(folder));
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    log.job.outputFile = folder + text("/log.mf4");
    log.job.temporaryDir = folder + text("/tmp_1");
    const ConversionResult result = log.convert();
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.first().contains(QDir::toNativeSeparators(log.job.outputFile)));
#else
    QSKIP("folders can't be closed");
#endif
}

void tst_WorkerConvertMDF4::aFullDiskWhileParsingLeavesNothing()
{
#ifdef Q_OS_UNIX
    Log log;
    log.addFrames(60000); // 600 KB of records
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    std::unique_ptr<ScopedLimit> limit;
    log.onStatus = [&limit](const QString &status) {
        if (status == parsingText)
            limit = std::make_unique<ScopedLimit>(RLIMIT_FSIZE, 100000);
    };
    const ConversionResult result = log.convert();
    limit.reset();
    std::signal(SIGXFSZ, handler);
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.first().startsWith(text("Temporary file ")));
    QCOMPARE(result.errors.last(), text("Logfile-conversion aborted."));
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
#else
    QSKIP("there is no limit for the size of files");
#endif
}

void tst_WorkerConvertMDF4::aFullDiskWhileWritingLeavesNothing()
{
#ifdef Q_OS_UNIX
    Log log;
    log.addFrames(1000);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    std::unique_ptr<ScopedLimit> limit;
    log.onStatus = [&limit](const QString &status) {
        if (status.startsWith(text("Writing: channel-group")))
            limit = std::make_unique<ScopedLimit>(RLIMIT_FSIZE, 1500);
    };
    const ConversionResult result = log.convert();
    limit.reset();
    std::signal(SIGXFSZ, handler);
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.contains(text("Error writing MDF4")));
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
#else
    QSKIP("there is no limit for the size of files");
#endif
}

void tst_WorkerConvertMDF4::aTemporaryFolderThatVanishesFails()
{
#ifdef Q_OS_UNIX
    Log log;
    log.addFrames(100);
    log.onStatus = [&log](const QString &status) {
        if (status == parsingText)
            QDir(log.job.temporaryDir).removeRecursively();
    };
    const ConversionResult result = log.convert();
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.first().startsWith(text("Temporary file ")));
    QCOMPARE(log.leftFiles(), QStringList(text("log.rld")));
#else
    QSKIP("files that are open keep their folder");
#endif
}

void tst_WorkerConvertMDF4::anExistingOutputIsReplacedWhole()
{
    Log log;
    log.addFrames(1);
    QFile old(log.job.outputFile);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(100000, 'x'));
    old.close();
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QCOMPARE(result.readFailure, QString());
    QVERIFY(result.bytes.size() < 100000);
}

void tst_WorkerConvertMDF4::namesWithPercentSignsStayAsTheyAre()
{
    Log log;
    log.configuration.can[0].export_name_mode = 2;
    log.configuration.can[0].export_custom_name = text("%2%3");
    log.configuration.can[0].dbc_signals.at(0)->name = text("%4%2");
    testlog::addMeasurement(log.configuration.eth.xcp.module, text("%2%1"), 0).byte_order = 4;
    testlog::addElement(testlog::addOdt(testlog::addDaq(log.configuration.eth.xcp.module, 0), 0),
                        text("%2%1"), 1);
    AimMsgMeta &module = log.configuration.can[1].aim_modules.add();
    module.name = text("%2");
    log.addFrames(1);
    log.addFrames(1);
    const ConversionResult result = log.convert();
    QVERIFY(result.statuses.contains(
        text("First Extracted Timestamp from Signal: %2%3_DBC-%4%2 - 0 usec")));
    QVERIFY(result.statuses.contains(text("Writing: channel-group:%2%3_DBC signal-count:2")));
    QVERIFY(result.statuses.contains(text("Signal:%4%2 Intervall min:0 avg:0.00 max:0 [uSec]")));
    QCOMPARE(result.errors.size(), 3);
    QVERIFY(result.errors[0].startsWith(text("Measurement %2%1 is left out")));
    QVERIFY(result.errors[1].startsWith(text("AIM module %2 on CAN-1 is left out")));
    QVERIFY(result.errors[2].endsWith(text("(ChannelGroup:%2%3_DBC) (currentTS 0 lastTS 0")));
}

void tst_WorkerConvertMDF4::aFolderWithPercentSignsIsWrittenInto()
{
    Log log;
    log.addFrames(1);
    const QDir folder(QDir(log.folder()).filePath(text("%1 %2 %3 %4")));
    QVERIFY(folder.mkpath(text(".")));
    log.job.outputFile = folder.filePath(text("%1.mf4"));
    log.job.temporaryDir = folder.filePath(text("tmp_1"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.readFailure, QString());
    QCOMPARE(result.times(0).size(), 1);
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
