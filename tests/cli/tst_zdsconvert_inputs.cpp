#include "tests/support/convertprogram.h"
#include "tests/support/logconfigurations.h"
#include "tests/support/mdf4reader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace convertprogram;

// What arguments stand for, and inputs that are damaged or no logs at all.
class tst_ZdsConvertInputs : public QObject, private ConvertProgram
{
    Q_OBJECT

private slots:
    void init() { beginAnew(); }

    void patternsStandForTheFilesThatMatch();
    void patternsWorkInEveryPartOfAPath();
    void aFolderWithPatternCharactersIsTakenAsItIs();
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
    void badInputsAre2AndNamed_data();
    void badInputsAre2AndNamed();
    void aPipeIsRefusedWithoutWaiting();
    void anUnreadableFileIs2();
    void aLogCutAnywhereIsConvertedOrRefused();
    void randomBytesBehindTheConfigurationAreSkipped();
    void randomBytesAsLogsAreRefused();
};

void tst_ZdsConvertInputs::patternsStandForTheFilesThatMatch()
{
    for (const char *name : {"drive1.rld", "drive2.rld", "other.rld"})
        makeLog(name);
    QCOMPARE(run({text("drive?.rld")}).exitCode, 0);
    QCOMPARE(left(), text("drive1.mf4 drive1.rld drive2.mf4 drive2.rld other.rld"));
}

void tst_ZdsConvertInputs::patternsWorkInEveryPartOfAPath()
{
    for (const char *name : {"day1/a.rld", "day2/a.rld", "night/a.rld"})
        makeLog(name);
    QCOMPARE(run({path("day*/[ab].rld")}).exitCode, 0);
    QCOMPARE(left(path("day2")), text("a.mf4 a.rld"));
    QCOMPARE(left(path("night")), text("a.rld"));
}

void tst_ZdsConvertInputs::aFolderWithPatternCharactersIsTakenAsItIs()
{
    makeLog("logs[1]/a.rld");
    QCOMPARE(run({path("logs[1]/*.rld")}).exitCode, 0);
    QCOMPARE(left(path("logs[1]")), text("a.mf4 a.rld"));
}

void tst_ZdsConvertInputs::aPatternThatMatchesNothingIs2()
{
    makeLog("a.rld");
    const Run result = run({text("b*.rld"), text("a.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(text("Error: b*.rld: ")));
    QCOMPARE(left(), text("a.mf4 a.rld"));
}

void tst_ZdsConvertInputs::aFolderStandsForItsLogs()
{
    makeLog("logs/a.rld");
    makeLog("logs/b.rld");
    make(text("logs/notes.txt"), "notes");
    QCOMPARE(run({text("logs")}).exitCode, 0);
    QCOMPARE(left(path("logs")), text("a.mf4 a.rld b.mf4 b.rld notes.txt"));
}

void tst_ZdsConvertInputs::aFolderWithoutLogsIs2()
{
    QVERIFY(QDir(folder()).mkdir(text("logs")));
    const Run result = run({text("logs")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.startsWith(text("Error: logs: ")));
}

void tst_ZdsConvertInputs::aFileWithPatternCharactersIsTakenAsItIs()
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

void tst_ZdsConvertInputs::aFileIsConvertedOnce()
{
    makeLog("a.rld");
    QCOMPARE(run({text("--json"), text("a.rld"), text("a.rld"), text("*.rld")}).json().size(), 1);
    QCOMPARE(left(), text("a.mf4 a.rld"));
}

void tst_ZdsConvertInputs::aFileOfTwoNamesIsConvertedOnce()
{
    makeLog("a.rld");
    QVERIFY(QDir(folder()).mkdir(text("sub")));
    const Run result = run({text("--json"), text("a.rld"), text("sub/../a.rld"), path("a.rld")});
    QCOMPARE(result.json().size(), 1);
    QCOMPARE(left(), text("a.mf4 a.rld sub"));
}

void tst_ZdsConvertInputs::patternsMindTheCaseAsTheShellDoes()
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

void tst_ZdsConvertInputs::foldersTakeLogsInAnyCase()
{
    makeLog("logs/a.rld");
    makeLog("logs/B.RLD");
    QCOMPARE(run({text("logs")}).exitCode, 0);
    QCOMPARE(left(path("logs")), text("B.RLD B.mf4 a.mf4 a.rld"));
}

void tst_ZdsConvertInputs::namesAreUtf8WhateverTheLocale()
{
    makeLog("Prüfstand/測定 ñ.rld");
    const Run result = run({text("--json"), text("Prüfstand/測定 ñ.rld")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(left(path("Prüfstand")), text("測定 ñ.mf4 測定 ñ.rld"));
    QVERIFY(result.err.contains(text("測定 ñ.mf4")));
    QCOMPARE(result.json().at(0).toObject()[text("input")].toString(),
             text("Prüfstand/測定 ñ.rld"));
}

void tst_ZdsConvertInputs::namesThatAreNoUtf8AreTold_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("by name") << text("$(printf 'in/b\\344.rld')");
    QTest::newRow("in a folder") << text("in");
    QTest::newRow("by a pattern") << text("'in/*.rld'");
}

void tst_ZdsConvertInputs::namesThatAreNoUtf8AreTold()
{
#ifdef Q_OS_UNIX
    QFETCH(QString, argument);
    constexpr int noSuchNames = 77;
    makeLog("in/a.rld");
    QProcess shell;
    shell.setWorkingDirectory(folder());
    shell.start(text("sh"), {text("-c"),
                             text("cp in/a.rld \"$(printf 'in/b\\344.rld')\" || exit 77; "
                                  "exec \"$0\" --quiet in/a.rld ")
                                 + argument,
                             program()});
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

void tst_ZdsConvertInputs::anOptionThatIsNoUtf8IsWrongUsage()
{
#ifdef Q_OS_UNIX
    makeLog("a.rld");
    QProcess shell;
    shell.setWorkingDirectory(folder());
    shell.start(text("sh"), {text("-c"), text("exec \"$0\" --log \"$(printf 'b\\344.txt')\" a.rld"),
                             program()});
    QVERIFY(shell.waitForFinished(timeout_ms));
    QCOMPARE(shell.exitCode(), 64);
    QVERIFY(shell.readAllStandardError().contains("its name is not valid UTF-8"));
    QCOMPARE(left(), text("a.rld"));
#else
    QSKIP("names are Unicode");
#endif
}

void tst_ZdsConvertInputs::badInputsAre2AndNamed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a configuration of 0 bytes") << QByteArray(4, 0);
    QTest::newRow("text") << QByteArray("This is no log, but a text of some length.");
    QTest::newRow("a configuration of 4 GiB") << QByteArray(1000, char(0xFF));
}

void tst_ZdsConvertInputs::badInputsAre2AndNamed()
{
    QFETCH(QByteArray, bytes);
    make(text("bad.rld"), bytes);
    const Run result = run({text("bad.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(
        text("Error: File-error, unable to load log-configuration.\nError: bad.rld: ")));
    QCOMPARE(left(), text("bad.rld"));
}

void tst_ZdsConvertInputs::aPipeIsRefusedWithoutWaiting()
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

void tst_ZdsConvertInputs::anUnreadableFileIs2()
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

void tst_ZdsConvertInputs::aLogCutAnywhereIsConvertedOrRefused()
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
    QVERIFY(QDir(folder()).mkdir(text("out")));
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

void tst_ZdsConvertInputs::randomBytesBehindTheConfigurationAreSkipped()
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

void tst_ZdsConvertInputs::randomBytesAsLogsAreRefused()
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

QTEST_GUILESS_MAIN(tst_ZdsConvertInputs)
#include "tst_zdsconvert_inputs.moc"
