#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <array>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

constexpr int timeout_ms = 60000;
constexpr quint32 messageId = 0x123;
const QString fullDevice = QStringLiteral("/dev/full");

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

struct Run
{
    int exitCode = -1; // -1 for a crash or no end in time
    QString out;
    QString err;

    [[nodiscard]] QJsonArray json() const { return QJsonDocument::fromJson(out.toUtf8()).array(); }
};

// What a running program has written to standard error once it holds `part`.
QByteArray errorsUntil(QProcess &process, const char *part)
{
    process.setReadChannel(QProcess::StandardError);
    QByteArray err;
    while (!err.contains(part) && process.waitForReadyRead(timeout_ms))
        err += process.readAllStandardError();
    return err;
}

QByteArray configurationAndFrames(int count)
{
    ConversionHarness log;
    log.configuration.event.event_name = text("Drive");
    StreamingClass_DBC_Signal &signal =
        testlog::addSignal(log.configuration.can[0], text("Speed"), messageId, 0, 16);
    signal.unit = text("km/h");
    for (int i = 0; i < count; ++i)
        log.add(testlog::can(quint32(i) * 1000U, 0, messageId, "0102030405060708"));
    return log.log();
}

} // namespace

class tst_ZdsConvert : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void aLogIsConvertedBesideItself();
    void helpAndVersionArePrinted_data();
    void helpAndVersionArePrinted();
    void wrongUsageIs64AndSaysWhy_data();
    void wrongUsageIs64AndSaysWhy();
    void errorsInALogAre1();
    void aFileThatIsNotConvertedIs2AndTheOthersAre();
    void messagesAreLinesOfTheirKind();
    void entitiesAreWrittenAsCharacters();
    void quietShowsWarningsAndErrorsOnly();
    void theLogHoldsAllMessages();
    void aLogThatCantBeWrittenIs2();
    void messagesThatGetLostOnTheWayToTheLogAre2();
    void aSummaryThatCanNotBeWrittenIs2();
    void noProgressIsWrittenIntoAPipe();

    void jsonSummarisesEachFile();
    void jsonTellsOfAFileThatIsNotConverted();

    void patternsStandForTheFilesThatMatch();
    void patternsWorkInEveryPartOfAPath();
    void aFolderWithPatternCharactersIsTakenAsItIs();
    void aLogFileDoesNotReplaceARawLog();
    void aLogFileDoesNotReplaceAnInputOfAnotherName();
    void makingADemonstrationTakesNoFiles();
    void aPatternThatMatchesNothingIs2();
    void aFolderStandsForItsLogs();
    void aFolderWithoutLogsIs2();
    void aFileWithPatternCharactersIsTakenAsItIs();
    void aFileIsConvertedOnce();
    void aFileOfTwoNamesIsConvertedOnce();
    void patternsMindTheCaseAsTheShellDoes();
    void foldersTakeLogsInAnyCase();
    void namesAreUtf8WhateverTheLocale();
    void namesThatAreNoUtf8AreTold_data();
    void namesThatAreNoUtf8AreTold();
    void anOptionThatIsNoUtf8IsWrongUsage();

    void outputsGoIntoTheFolderThatIsAskedFor();
    void aMissingOutputFolderIs2AndStaysMissing();
    void anExistingOutputStaysAndTheNewOneIsNumbered();
    void logsOfOneNameGetNumberedOutputs();
    void processesIntoOneFolderGetAlong();

    void badInputsAre2AndNamed_data();
    void badInputsAre2AndNamed();
    void aPipeIsRefusedWithoutWaiting();
    void anUnreadableFileIs2();
    void aLogCutAnywhereIsConvertedOrRefused();
    void randomBytesBehindTheConfigurationAreSkipped();
    void randomBytesAsLogsAreRefused();

    void aRequestToEndIs130AndLeavesNothing_data();
    void aRequestToEndIs130AndLeavesNothing();
    void aReaderOfTheMessagesMayGoAway();
    void leftoversOfAKilledConversionAreCleared();
    void makeDemoMakesLogsThatConvert();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString path(const char *name) const { return path(text(name)); }
    QString make(const QString &name, const QByteArray &bytes) const;
    QString makeLog(const char *name, int frames = 10) const
    {
        return make(text(name), configurationAndFrames(frames));
    }
    QString left(const QString &folder = QString()) const;
    void start(QProcess &process, const QStringList &arguments) const;
    Run run(const QStringList &arguments) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

QString tst_ZdsConvert::make(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(bytes) != bytes.size())
        qFatal("A file of the test can't be written.");
    return file.fileName();
}

// All that stands in a folder, hidden things too.
QString tst_ZdsConvert::left(const QString &folder) const
{
    return QDir(folder.isEmpty() ? m_folder->path() : folder)
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name)
        .join(QLatin1Char(' '));
}

void tst_ZdsConvert::start(QProcess &process, const QStringList &arguments) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LANG", "LC_ALL"})
        environment.insert(text(name), text("C"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder->path());
    process.start(text(ZDS_CONVERT), arguments);
}

Run tst_ZdsConvert::run(const QStringList &arguments) const
{
    QProcess process;
    start(process, arguments);
    Run result;
    if (!process.waitForFinished(timeout_ms))
        process.kill();
    else if (process.exitStatus() == QProcess::NormalExit)
        result.exitCode = process.exitCode();
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

void tst_ZdsConvert::aLogIsConvertedBesideItself()
{
    const QString log = makeLog("drive.rld");
    const Run result = run({log});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QString());
    QCOMPARE(left(), text("drive.mf4 drive.rld"));
}

void tst_ZdsConvert::helpAndVersionArePrinted_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("printed");
    QTest::newRow("help") << text("--help") << text("FILE.rld");
    QTest::newRow("version") << text("--version") << text("zds-convert 2.19");
}

void tst_ZdsConvert::helpAndVersionArePrinted()
{
    QFETCH(QString, option);
    QFETCH(QString, printed);
    const Run result = run({option});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.contains(printed));
    QCOMPARE(result.err, QString());
}

void tst_ZdsConvert::wrongUsageIs64AndSaysWhy_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("said");
    const auto row = [](const char *tag, const QStringList &arguments, const char *said) {
        QTest::newRow(tag) << arguments << text(said);
    };
    row("no file", {}, "No file");
    row("only options", {text("--json")}, "No file");
    row("unknown option", {text("--turbo"), text("a.rld")}, "turbo");
    row("no value", {text("-o")}, "o");
    row("other format", {text("--format"), text("blf"), text("a.rld")}, "blf");
    row("no jobs", {text("--jobs"), text("0"), text("a.rld")}, "--jobs");
    row("too many jobs", {text("--jobs"), text("65"), text("a.rld")}, "--jobs");
    row("jobs in words", {text("--jobs"), text("two"), text("a.rld")}, "--jobs");
    row("no seconds", {text("--make-demo"), text("demo"), text("--seconds"), text("0")},
        "--seconds");
    row("seconds of no demonstration", {text("--seconds"), text("5"), text("a.rld")},
        "--make-demo");
    row("help of windows", {text("--help-all")}, "help-all");
}

void tst_ZdsConvert::wrongUsageIs64AndSaysWhy()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, said);
    makeLog("a.rld");
    const Run result = run(arguments);
    QCOMPARE(result.exitCode, 64);
    QVERIFY2(result.err.startsWith(text("Error: ")) && result.err.contains(said),
             qPrintable(result.err));
    QCOMPARE(left(), text("a.rld"));
}

void tst_ZdsConvert::errorsInALogAre1()
{
    const QByteArray frame = testlog::can(90000, 0, messageId, "0102030405060708");
    make(text("a.rld"), configurationAndFrames(3) + "xyz" + frame);
    const Run result = run({text("a.rld")});
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.err.contains(
        text("Error: 3 bytes have been skipped between two log entries, starting at")));
    QCOMPARE(left(), text("a.mf4 a.rld"));
}

void tst_ZdsConvert::aFileThatIsNotConvertedIs2AndTheOthersAre()
{
    makeLog("a.rld");
    make(text("b.rld"), "no log");
    makeLog("c.rld");
    const Run result = run({text("a.rld"), text("missing.rld"), text("b.rld"), text("c.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(text("missing.rld")));
    QCOMPARE(left(), text("a.mf4 a.rld b.rld c.mf4 c.rld"));
}

void tst_ZdsConvert::messagesAreLinesOfTheirKind()
{
    makeLog("a.rld");
    QString err = run({text("a.rld")}).err;
    QVERIFY(err.endsWith(QLatin1Char('\n')));
    err.chop(1);
    const QStringList lines = err.split(QLatin1Char('\n'));
    QCOMPARE(lines.first(), text("Status: logfile-conversion started..."));
    QVERIFY(lines.contains(text("Status: Logfile-conversion completed.")));
    QVERIFY2(lines.last().contains(text("a.mf4: 1 group, 10 records, ")), qPrintable(lines.last()));
    for (const QString &line : lines)
        QVERIFY2(line.startsWith(text("Status: ")), qPrintable(line));
}

void tst_ZdsConvert::entitiesAreWrittenAsCharacters()
{
    ConversionHarness log;
    log.setMainVersion(5);
    make(text("old.rld"), log.log());
    const Run result = run({text("old.rld")});
    QVERIFY(result.err.contains(text("Status: Logfile, written by software with Log-Cfg.Vers. < 6 "
                                     "using deprecated timestamp-handling.\n")));
}

void tst_ZdsConvert::quietShowsWarningsAndErrorsOnly()
{
    make(text("a.rld"), configurationAndFrames(3) + rawlog::debugCountersEntry(0, 1, 2));
    const Run result = run({text("--quiet"), text("a.rld")});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err,
             text("Warning: Dbg-Infos[0]: Timestamp-Sync-Counter/LogController-Restart-Counter:2\n"
                  "Error: Dbg-Infos[0]: Ringbuffer overflow protection counter:1\n"));
}

void tst_ZdsConvert::theLogHoldsAllMessages()
{
    makeLog("a.rld");
    const Run loud = run({text("--log"), text("loud.txt"), text("a.rld")});
    QFile log(path("loud.txt"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(log.readAll()), loud.err);
    run({text("--quiet"), text("--log"), text("quiet.txt"), text("a.rld")});
    QFile quiet(path("quiet.txt"));
    QVERIFY(quiet.open(QIODevice::ReadOnly));
    QVERIFY(quiet.readAll().contains("Status: Logfile-conversion completed.\n"));
}

void tst_ZdsConvert::aLogThatCantBeWrittenIs2()
{
    makeLog("a.rld");
    const Run result = run({text("--log"), text("missing/log.txt"), text("a.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(QDir::toNativeSeparators(text("missing/log.txt"))));
    QCOMPARE(left(), text("a.rld"));
}

void tst_ZdsConvert::messagesThatGetLostOnTheWayToTheLogAre2()
{
    if (!QFileInfo::exists(fullDevice))
        QSKIP("There is no device that is always full here.");
    makeLog("a.rld");
    const Run result = run({text("--log"), fullDevice, text("a.rld")});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.err.count(text("Error: /dev/full: ")), 1);
    QCOMPARE(left(), text("a.mf4 a.rld"));
}

void tst_ZdsConvert::aSummaryThatCanNotBeWrittenIs2()
{
    if (!QFileInfo::exists(fullDevice))
        QSKIP("There is no device that is always full here.");
    makeLog("a.rld");
    QProcess process;
    process.setStandardOutputFile(fullDevice);
    start(process, {text("--quiet"), text("--json"), text("a.rld")});
    QVERIFY(process.waitForFinished(timeout_ms));
    QCOMPARE(process.exitCode(), 2);
    QCOMPARE(process.readAllStandardError(),
             QByteArray("Error: The output could not be written.\n"));
}

void tst_ZdsConvert::noProgressIsWrittenIntoAPipe()
{
    makeLog("a.rld", 1000);
    const QString err = run({text("a.rld")}).err;
    QVERIFY(!err.contains(QLatin1Char('\r')));
    QVERIFY(!err.contains(QLatin1Char('%')));
}

void tst_ZdsConvert::jsonSummarisesEachFile()
{
    make(text("a.rld"), configurationAndFrames(3) + rawlog::utcStartEntry(1700000000123456));
    make(text("b.rld"), configurationAndFrames(5) + rawlog::debugCountersEntry(0, 1, 2));
    const Run result = run({text("--json"), text("a.rld"), text("b.rld")});
    const QJsonArray files = result.json();
    QCOMPARE(files.size(), 2);
    const QJsonObject a = files[0].toObject();
    QCOMPARE(a[text("input")].toString(), text("a.rld"));
    QVERIFY(a[text("output")].toString().endsWith(text("a.mf4")));
    QCOMPARE(a[text("group_count")].toInt(), 1);
    QCOMPARE(a[text("channels")].toInt(), 1);
    QCOMPARE(a[text("samples")].toInt(), 3);
    QCOMPARE(a[text("entries")].toInt(), 4);
    QCOMPARE(a[text("first_time")].toDouble(-1), 0.0);
    QCOMPARE(a[text("last_time")].toDouble(), 0.002);
    QCOMPARE(a[text("skipped_bytes")].toInt(-1), 0);
    QCOMPARE(a[text("utc_start")].toString(), text("2023-11-14T22:13:20.123Z"));
    QCOMPARE(a[text("cancelled")].toBool(true), false);
    QVERIFY(a[text("seconds")].toDouble(-1) >= 0);
    const QJsonObject group = a[text("groups")].toArray().at(0).toObject();
    QCOMPARE(group[text("name")].toString(), text("CAN_0_DBC"));
    const QJsonObject channel = group[text("channels")].toArray().at(0).toObject();
    QCOMPARE(channel[text("name")].toString(), text("Speed"));
    QCOMPARE(channel[text("unit")].toString(), text("km/h"));
    QCOMPARE(channel[text("samples")].toInt(), 3);
    const QJsonObject messages = files[1].toObject()[text("messages")].toObject();
    QCOMPARE(messages[text("warning")].toInt(), 1);
    QCOMPARE(messages[text("error")].toInt(), 1);
    QVERIFY(messages[text("status")].toInt() > 5);
}

void tst_ZdsConvert::jsonTellsOfAFileThatIsNotConverted()
{
    make(text("a.rld"), "no log");
    const QJsonArray files = run({text("--json"), text("a.rld")}).json();
    QCOMPARE(files.size(), 1);
    QVERIFY(files[0].toObject()[text("output")].isNull());
    QVERIFY(files[0].toObject()[text("messages")].toObject()[text("error")].toInt() > 0);
}

void tst_ZdsConvert::patternsStandForTheFilesThatMatch()
{
    for (const char *name : {"drive1.rld", "drive2.rld", "other.rld"})
        makeLog(name);
    QCOMPARE(run({text("drive?.rld")}).exitCode, 0);
    QCOMPARE(left(), text("drive1.mf4 drive1.rld drive2.mf4 drive2.rld other.rld"));
}

void tst_ZdsConvert::patternsWorkInEveryPartOfAPath()
{
    for (const char *name : {"day1/a.rld", "day2/a.rld", "night/a.rld"})
        makeLog(name);
    QCOMPARE(run({path("day*/[ab].rld")}).exitCode, 0);
    QCOMPARE(left(path("day2")), text("a.mf4 a.rld"));
    QCOMPARE(left(path("night")), text("a.rld"));
}

void tst_ZdsConvert::aFolderWithPatternCharactersIsTakenAsItIs()
{
    makeLog("logs[1]/a.rld");
    QCOMPARE(run({path("logs[1]/*.rld")}).exitCode, 0);
    QCOMPARE(left(path("logs[1]")), text("a.mf4 a.rld"));
}

void tst_ZdsConvert::aLogFileDoesNotReplaceARawLog()
{
    makeLog("a.rld");
    makeLog("keep.rld");
    const qint64 size = QFileInfo(path("keep.rld")).size();
    QCOMPARE(run({text("--log"), path("keep.rld"), text("a.rld")}).exitCode, 64);
    QCOMPARE(QFileInfo(path("keep.rld")).size(), size);
}

void tst_ZdsConvert::aLogFileDoesNotReplaceAnInputOfAnotherName()
{
    makeLog("drive.log");
    QVERIFY(QDir(m_folder->path()).mkdir(text("sub")));
    const qint64 size = QFileInfo(path("drive.log")).size();
    const Run result = run({text("--log"), text("sub/../drive.log"), text("drive.log")});
    QCOMPARE(result.exitCode, 64);
    QVERIFY(result.err.contains(text("drive.log")));
    QCOMPARE(QFileInfo(path("drive.log")).size(), size);
}

void tst_ZdsConvert::makingADemonstrationTakesNoFiles()
{
    makeLog("a.rld");
    QCOMPARE(run({text("--make-demo"), path("demo"), text("a.rld")}).exitCode, 64);
    QVERIFY(!QFileInfo::exists(path("demo")));
}

void tst_ZdsConvert::aPatternThatMatchesNothingIs2()
{
    makeLog("a.rld");
    const Run result = run({text("b*.rld"), text("a.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(text("Error: b*.rld: ")));
    QCOMPARE(left(), text("a.mf4 a.rld"));
}

void tst_ZdsConvert::aFolderStandsForItsLogs()
{
    makeLog("logs/a.rld");
    makeLog("logs/b.rld");
    make(text("logs/notes.txt"), "notes");
    QCOMPARE(run({text("logs")}).exitCode, 0);
    QCOMPARE(left(path("logs")), text("a.mf4 a.rld b.mf4 b.rld notes.txt"));
}

void tst_ZdsConvert::aFolderWithoutLogsIs2()
{
    QVERIFY(QDir(m_folder->path()).mkdir(text("logs")));
    const Run result = run({text("logs")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.startsWith(text("Error: logs: ")));
}

void tst_ZdsConvert::aFileWithPatternCharactersIsTakenAsItIs()
{
#ifdef Q_OS_UNIX
    makeLog("a[1]*?.rld");
    makeLog("a1xy.rld");
    QCOMPARE(run({text("a[1]*?.rld")}).exitCode, 0);
    QCOMPARE(left(), text("a1xy.rld a[1]*?.mf4 a[1]*?.rld"));
#else
    QSKIP("names can't hold pattern characters");
#endif
}

void tst_ZdsConvert::aFileIsConvertedOnce()
{
    makeLog("a.rld");
    QCOMPARE(run({text("--json"), text("a.rld"), text("a.rld"), text("*.rld")}).json().size(), 1);
    QCOMPARE(left(), text("a.mf4 a.rld"));
}

void tst_ZdsConvert::aFileOfTwoNamesIsConvertedOnce()
{
    makeLog("a.rld");
    QVERIFY(QDir(m_folder->path()).mkdir(text("sub")));
    const Run result = run({text("--json"), text("a.rld"), text("sub/../a.rld"), path("a.rld")});
    QCOMPARE(result.json().size(), 1);
    QCOMPARE(left(), text("a.mf4 a.rld sub"));
}

void tst_ZdsConvert::patternsMindTheCaseAsTheShellDoes()
{
#ifdef Q_OS_UNIX
    makeLog("a.rld");
    makeLog("B.RLD");
    QCOMPARE(run({text("*.rld")}).exitCode, 0);
    QCOMPARE(left(), text("B.RLD a.mf4 a.rld"));
#else
    QSKIP("the shell doesn't mind the case");
#endif
}

void tst_ZdsConvert::foldersTakeLogsInAnyCase()
{
    makeLog("logs/a.rld");
    makeLog("logs/B.RLD");
    QCOMPARE(run({text("logs")}).exitCode, 0);
    QCOMPARE(left(path("logs")), text("B.RLD B.mf4 a.mf4 a.rld"));
}

void tst_ZdsConvert::namesThatAreNoUtf8AreTold_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("by name") << text("$(printf 'in/b\\344.rld')");
    QTest::newRow("in a folder") << text("in");
    QTest::newRow("by a pattern") << text("'in/*.rld'");
}

void tst_ZdsConvert::namesThatAreNoUtf8AreTold()
{
#ifdef Q_OS_UNIX
    QFETCH(QString, argument);
    constexpr int noSuchNames = 77;
    makeLog("in/a.rld");
    QProcess shell;
    shell.setWorkingDirectory(m_folder->path());
    shell.start(text("sh"), {text("-c"),
                             text("cp in/a.rld \"$(printf 'in/b\\344.rld')\" || exit 77; "
                                  "exec \"$0\" --quiet in/a.rld ")
                                 + argument,
                             text(ZDS_CONVERT)});
    QVERIFY(shell.waitForFinished(timeout_ms));
    if (shell.exitCode() == noSuchNames)
        QSKIP("the file system takes valid names only");
    QCOMPARE(QString::fromUtf8(shell.readAllStandardError()),
             text("Error: in/b\uFFFD.rld: its name is not valid UTF-8\n"));
    QCOMPARE(shell.exitCode(), 2);
    QVERIFY(QFileInfo::exists(path("in/a.mf4")));
#else
    QSKIP("names are Unicode");
#endif
}

void tst_ZdsConvert::anOptionThatIsNoUtf8IsWrongUsage()
{
#ifdef Q_OS_UNIX
    makeLog("a.rld");
    QProcess shell;
    shell.setWorkingDirectory(m_folder->path());
    shell.start(text("sh"), {text("-c"), text("exec \"$0\" --log \"$(printf 'b\\344.txt')\" a.rld"),
                             text(ZDS_CONVERT)});
    QVERIFY(shell.waitForFinished(timeout_ms));
    QCOMPARE(shell.exitCode(), 64);
    QVERIFY(shell.readAllStandardError().contains("its name is not valid UTF-8"));
    QCOMPARE(left(), text("a.rld"));
#else
    QSKIP("names are Unicode");
#endif
}

void tst_ZdsConvert::namesAreUtf8WhateverTheLocale()
{
    makeLog("Prüfstand/測定 ñ.rld");
    const Run result = run({text("--json"), text("Prüfstand/測定 ñ.rld")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(left(path("Prüfstand")), text("測定 ñ.mf4 測定 ñ.rld"));
    QVERIFY(result.err.contains(text("測定 ñ.mf4")));
    QCOMPARE(result.json().at(0).toObject()[text("input")].toString(),
             text("Prüfstand/測定 ñ.rld"));
}

void tst_ZdsConvert::outputsGoIntoTheFolderThatIsAskedFor()
{
    makeLog("logs/a.rld");
    QVERIFY(QDir(m_folder->path()).mkdir(text("out")));
    QCOMPARE(run({text("-o"), text("out"), text("logs")}).exitCode, 0);
    QCOMPARE(left(path("logs")), text("a.rld"));
    QCOMPARE(left(path("out")), text("a.mf4"));
}

void tst_ZdsConvert::aMissingOutputFolderIs2AndStaysMissing()
{
    makeLog("a.rld");
    const Run result = run({text("-o"), text("missing"), text("a.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(path("missing")));
    QCOMPARE(left(), text("a.rld"));
}

void tst_ZdsConvert::anExistingOutputStaysAndTheNewOneIsNumbered()
{
    makeLog("a.rld");
    make(text("a.mf4"), "old");
    QCOMPARE(run({text("a.rld")}).exitCode, 0);
    QCOMPARE(left(), text("a.mf4 a.rld a_1.mf4"));
    QCOMPARE(QFileInfo(path("a.mf4")).size(), qint64(3));
}

void tst_ZdsConvert::logsOfOneNameGetNumberedOutputs()
{
    makeLog("x/a.rld");
    makeLog("y/a.rld");
    QVERIFY(QDir(m_folder->path()).mkdir(text("out")));
    QCOMPARE(run({text("-o"), text("out"), text("x"), text("y")}).exitCode, 0);
    QCOMPARE(left(path("out")), text("a.mf4 a_1.mf4"));
}

void tst_ZdsConvert::processesIntoOneFolderGetAlong()
{
    constexpr int rounds = 5;
    constexpr int count = 4;
    for (int i = 0; i < count; ++i)
        makeLog(qPrintable(QStringLiteral("in%1/a.rld").arg(i)), 100 + i);
    for (int round = 0; round < rounds; ++round) {
        const QString out = path(QStringLiteral("out%1").arg(round));
        QVERIFY(QDir().mkdir(out));
        std::array<QProcess, count> processes;
        for (int i = 0; i < count; ++i)
            start(processes[std::size_t(i)],
                  {text("--json"), text("-o"), out, QStringLiteral("in%1/a.rld").arg(i)});
        for (int i = 0; i < count; ++i) {
            QProcess &process = processes[std::size_t(i)];
            QVERIFY(process.waitForFinished(timeout_ms));
            QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
            const QJsonObject summary =
                QJsonDocument::fromJson(process.readAllStandardOutput()).array()[0].toObject();
            mdf4reader::Reader reader;
            QVERIFY(reader.open(summary[text("output")].toString().toStdU16String()));
            QCOMPARE(reader.file().groups.size(), std::size_t(1));
            QCOMPARE(int(reader.file().groups[0].cycleCount), 100 + i);
        }
        QCOMPARE(left(out), text("a.mf4 a_1.mf4 a_2.mf4 a_3.mf4"));
    }
}

void tst_ZdsConvert::badInputsAre2AndNamed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a configuration of 0 bytes") << QByteArray(4, 0);
    QTest::newRow("text") << QByteArray("This is no log, but a text of some length.");
    QTest::newRow("a configuration of 4 GiB") << QByteArray(1000, char(0xFF));
}

void tst_ZdsConvert::badInputsAre2AndNamed()
{
    QFETCH(QByteArray, bytes);
    make(text("bad.rld"), bytes);
    const Run result = run({text("bad.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(
        text("Error: File-error, unable to load log-configuration.\nError: bad.rld: ")));
    QCOMPARE(left(), text("bad.rld"));
}

void tst_ZdsConvert::aPipeIsRefusedWithoutWaiting()
{
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe.rld")).constData(), 0600), 0);
    const Run result = run({text("pipe.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(text("pipe.rld")));
    QCOMPARE(left(), text("pipe.rld"));
#else
    QSKIP("there are no named pipes in folders");
#endif
}

void tst_ZdsConvert::anUnreadableFileIs2()
{
#ifdef Q_OS_UNIX
    if (geteuid() == 0)
        QSKIP("root may read everything");
    const QString log = makeLog("a.rld");
    QVERIFY(QFile::setPermissions(log, QFile::Permissions()));
    const Run result = run({text("a.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(text("Error: a.rld: ")));
#else
    QSKIP("files can't be closed");
#endif
}

void tst_ZdsConvert::aLogCutAnywhereIsConvertedOrRefused()
{
    constexpr int cuts = 200;
    const QByteArray log = configurationAndFrames(20);
    const int configurationEnd = configurationAndFrames(0).size();
    QVector<int> sizes;
    for (int i = 0; i < cuts; ++i) {
        // A third of the cuts lies in the entries.
        const int size = i < cuts / 3 ? log.size() - 1 - i * 7 : configurationEnd - i * 11;
        sizes.append(qMax(size, 0));
        make(QStringLiteral("logs/%1.rld").arg(i, 3, 10, QLatin1Char('0')), log.left(sizes[i]));
    }
    QVERIFY(QDir(m_folder->path()).mkdir(text("out")));
    const Run result =
        run({text("--json"), text("--quiet"), text("-o"), text("out"), text("logs")});
    QCOMPARE(result.exitCode, 2);
    const QJsonArray files = result.json();
    QCOMPARE(files.size(), cuts);
    int written = 0;
    for (int i = 0; i < cuts; ++i) {
        const QJsonValue output = files[i].toObject()[text("output")];
        QCOMPARE(!output.isNull(), sizes[i] >= configurationEnd);
        if (output.isNull())
            continue;
        ++written;
        mdf4reader::Reader reader;
        QVERIFY(reader.open(path(output.toString()).toStdU16String()));
    }
    QVERIFY(written > 20);
    QCOMPARE(left(path("out")).split(QLatin1Char(' ')).size(), written);
}

void tst_ZdsConvert::randomBytesBehindTheConfigurationAreSkipped()
{
    QRandomGenerator random(1);
    QByteArray log = configurationAndFrames(0);
    for (int i = 0; i < 100000; ++i)
        log += char(random.bounded(256));
    make(text("a.rld"), log + testlog::can(1, 0, messageId, "0102030405060708"));
    const Run result = run({text("--quiet"), text("a.rld")});
    QVERIFY(result.exitCode == 0 || result.exitCode == 1);
    QCOMPARE(left(), text("a.mf4 a.rld"));
}

void tst_ZdsConvert::randomBytesAsLogsAreRefused()
{
    QRandomGenerator random(2);
    for (int i = 0; i < 20; ++i) {
        QByteArray bytes;
        for (int size = random.bounded(5000); size > 0; --size)
            bytes += char(random.bounded(256));
        make(QStringLiteral("logs/%1.rld").arg(i), bytes);
    }
    const Run result = run({text("--quiet"), text("logs")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(!left(path("logs")).contains(text("tmp")));
}

void tst_ZdsConvert::aRequestToEndIs130AndLeavesNothing_data()
{
#ifdef Q_OS_UNIX
    QTest::addColumn<int>("signal");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("request to end") << SIGTERM;
    QTest::newRow("closed terminal") << SIGHUP;
#endif
}

void tst_ZdsConvert::aRequestToEndIs130AndLeavesNothing()
{
#ifdef Q_OS_UNIX
    QFETCH(int, signal);
    const QByteArray frame = testlog::can(1, 0, messageId, "0102030405060708");
    make(text("long.rld"), configurationAndFrames(0) + frame.repeated(2000000));
    makeLog("next.rld");
    QProcess process;
    start(process, {text("--json"), text("long.rld"), text("next.rld")});
    QByteArray err = errorsUntil(process, "First Extracted");
    QCOMPARE(::kill(pid_t(process.processId()), signal), 0);
    QVERIFY(process.waitForFinished(timeout_ms));
    err += process.readAllStandardError();
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 130);
    QVERIFY(err.contains("Error: cancel conversion requested by user\n"));
    QCOMPARE(left(), text("long.rld next.rld"));
    const QJsonArray files = QJsonDocument::fromJson(process.readAllStandardOutput()).array();
    QCOMPARE(files.size(), 1);
    QVERIFY(files[0].toObject()[text("cancelled")].toBool());
#else
    QSKIP("there is no signal to send");
#endif
}

void tst_ZdsConvert::aReaderOfTheMessagesMayGoAway()
{
#ifdef Q_OS_UNIX
    const QByteArray frame = testlog::can(1, 0, messageId, "0102030405060708");
    make(text("long.rld"), configurationAndFrames(0) + frame.repeated(100000));
    QProcess shell;
    shell.setWorkingDirectory(m_folder->path());
    shell.start(text("sh"),
                {text("-c"), text("\"$0\" long.rld 2>&1 | head -n 1"), text(ZDS_CONVERT)});
    QVERIFY(shell.waitForFinished(timeout_ms));
    QCOMPARE(left(), text("long.mf4 long.rld"));
#else
    QSKIP("there are no shell pipelines");
#endif
}

void tst_ZdsConvert::leftoversOfAKilledConversionAreCleared()
{
    const QByteArray frame = testlog::can(1, 0, messageId, "0102030405060708");
    make(text("long.rld"), configurationAndFrames(0) + frame.repeated(2000000));
    makeLog("next.rld");
    QProcess process;
    start(process, {text("long.rld")});
    QVERIFY(errorsUntil(process, "First Extracted").contains("First Extracted"));
    process.kill();
    QVERIFY(process.waitForFinished(timeout_ms));
    QVERIFY(left().contains(text("tmp_1")));
    QVERIFY(!left().split(QLatin1Char(' ')).contains(text("long.mf4")));
    QCOMPARE(run({text("next.rld")}).exitCode, 0);
    QCOMPARE(left(), text("long.rld next.mf4 next.rld"));
}

void tst_ZdsConvert::makeDemoMakesLogsThatConvert()
{
    const Run made = run({text("--make-demo"), text("demo"), text("--seconds"), text("1")});
    QCOMPARE(made.exitCode, 0);
    QCOMPARE(made.out.count(QLatin1Char('\n')), 5);
    const Run converted = run({text("--json"), text("--quiet"), text("demo")});
    QVERIFY2(converted.exitCode == 0, qPrintable(converted.err));
    QCOMPARE(converted.json().size(), 5);
}

QTEST_GUILESS_MAIN(tst_ZdsConvert)
#include "tst_zdsconvert.moc"
