#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/framelog.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <csignal>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

using Log = FrameLog;

constexpr quint32 messageId = FrameLog::messageId;
const QString parsingText = QStringLiteral("parsing logfile data...");

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

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

class tst_ConversionOutput : public QObject
{
    Q_OBJECT

private slots:
    void theHeaderTellsOfTheConversion();
    void theHeaderNamesTheA2lFilesOfMoreThanThreeCharacters();
    void valuesInTheHeaderAreEscaped();
    void theHistoryTellsTheTool();
    void groupsWithoutSamplesAreLeftOut();
    void recordsHoldTheTimeAndTheChannelsBackToBack();
    void theTimeChannelCountsMicroseconds();
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
};

void tst_ConversionOutput::theHeaderTellsOfTheConversion()
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

void tst_ConversionOutput::theHeaderNamesTheA2lFilesOfMoreThanThreeCharacters()
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

void tst_ConversionOutput::valuesInTheHeaderAreEscaped()
{
    Log log;
    log.job.author = text("Müller & \"Söhne\"");
    log.configuration.event.event_name = text("<a> 'b'");
    const QString comment = QString::fromStdString(log.convert().file.headerComment);
    QVERIFY(comment.contains(text("<e name=\"author\">Müller &amp; &quot;Söhne&quot;</e>")));
    QVERIFY(comment.contains(text("<e name=\"project\">&lt;a&gt; ")));
    QVERIFY(!comment.contains(text("'b'")));
}

void tst_ConversionOutput::theHistoryTellsTheTool()
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

void tst_ConversionOutput::groupsWithoutSamplesAreLeftOut()
{
    Log log;
    testlog::addSignal(log.configuration.can[1], text("C"), messageId, 0, 8);
    log.addFrames(1);
    QCOMPARE(log.convert().file.groups.size(), size_t(1));
}

void tst_ConversionOutput::recordsHoldTheTimeAndTheChannelsBackToBack()
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

void tst_ConversionOutput::theTimeChannelCountsMicroseconds()
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

void tst_ConversionOutput::sixteenHundredGroupsNeedFewFiles()
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

void tst_ConversionOutput::anEmptyOutputNameFails()
{
    Log log;
    log.addFrames(1);
    log.job.outputFile.clear();
    const ConversionResult result = log.convert();
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.contains(text("Error writing MDF4")));
    QCOMPARE(result.errors.last(), text("Logfile-conversion aborted."));
}

void tst_ConversionOutput::aMissingOutputFolderFailsAndIsNamed()
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

void tst_ConversionOutput::aFolderInPlaceOfTheOutputFails()
{
    Log log;
    log.addFrames(1);
    QVERIFY(QDir().mkdir(log.job.outputFile));
    const ConversionResult result = log.convert();
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.first().contains(QDir::toNativeSeparators(log.job.outputFile)));
    QCOMPARE(log.leftFiles().join(QLatin1Char(' ')), text("log.mf4 log.rld"));
}

void tst_ConversionOutput::anOutputFolderWithoutWriteAccessFails()
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

void tst_ConversionOutput::aFullDiskWhileParsingLeavesNothing()
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

void tst_ConversionOutput::aFullDiskWhileWritingLeavesNothing()
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

void tst_ConversionOutput::aTemporaryFolderThatVanishesFails()
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

void tst_ConversionOutput::anExistingOutputIsReplacedWhole()
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

void tst_ConversionOutput::namesWithPercentSignsStayAsTheyAre()
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

void tst_ConversionOutput::aFolderWithPercentSignsIsWrittenInto()
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

QTEST_GUILESS_MAIN(tst_ConversionOutput)
#include "tst_conversionoutput.moc"
