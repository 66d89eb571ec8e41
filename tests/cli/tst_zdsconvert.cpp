#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"
#include "tests/support/convertprogram.h"
#include "tests/support/logconfigurations.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

using namespace convertprogram;

namespace {

const QString fullDevice = QStringLiteral("/dev/full");

} // namespace

// What the program says and ends with.
class tst_ZdsConvert : public QObject, private ConvertProgram
{
    Q_OBJECT

private slots:
    void init() { beginAnew(); }

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
    void makingADemonstrationTakesNoFiles();
    void makeDemoMakesLogsThatConvert();
};

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

void tst_ZdsConvert::makingADemonstrationTakesNoFiles()
{
    makeLog("a.rld");
    QCOMPARE(run({text("--make-demo"), path("demo"), text("a.rld")}).exitCode, 64);
    QVERIFY(!QFileInfo::exists(path("demo")));
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
