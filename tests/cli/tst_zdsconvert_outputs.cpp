#include "tests/support/convertprogram.h"
#include "tests/support/logconfigurations.h"
#include "tests/support/mdf4reader.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <array>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace convertprogram;

// Where outputs go, and that nothing else is touched or left behind.
class tst_ZdsConvertOutputs : public QObject, private ConvertProgram
{
    Q_OBJECT

private slots:
    void init() { beginAnew(); }

    void outputsGoIntoTheFolderThatIsAskedFor();
    void aMissingOutputFolderIs2AndStaysMissing();
    void anExistingOutputStaysAndTheNewOneIsNumbered();
    void logsOfOneNameGetNumberedOutputs();
    void processesIntoOneFolderGetAlong();
    void aLogFileDoesNotReplaceARawLog();
    void aLogFileDoesNotReplaceAnInputOfAnotherName();
    void aRequestToEndIs130AndLeavesNothing_data();
    void aRequestToEndIs130AndLeavesNothing();
    void aReaderOfTheMessagesMayGoAway();
    void leftoversOfAKilledConversionAreCleared();
};

void tst_ZdsConvertOutputs::outputsGoIntoTheFolderThatIsAskedFor()
{
    makeLog("logs/a.rld");
    QVERIFY(QDir(folder()).mkdir(text("out")));
    QCOMPARE(run({text("-o"), text("out"), text("logs")}).exitCode, 0);
    QCOMPARE(left(path("logs")), text("a.rld"));
    QCOMPARE(left(path("out")), text("a.mf4"));
}

void tst_ZdsConvertOutputs::aMissingOutputFolderIs2AndStaysMissing()
{
    makeLog("a.rld");
    const Run result = run({text("-o"), text("missing"), text("a.rld")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains(path("missing")));
    QCOMPARE(left(), text("a.rld"));
}

void tst_ZdsConvertOutputs::anExistingOutputStaysAndTheNewOneIsNumbered()
{
    makeLog("a.rld");
    make(text("a.mf4"), "old");
    QCOMPARE(run({text("a.rld")}).exitCode, 0);
    QCOMPARE(left(), text("a.mf4 a.rld a_1.mf4"));
    QCOMPARE(QFileInfo(path("a.mf4")).size(), qint64(3));
}

void tst_ZdsConvertOutputs::logsOfOneNameGetNumberedOutputs()
{
    makeLog("x/a.rld");
    makeLog("y/a.rld");
    QVERIFY(QDir(folder()).mkdir(text("out")));
    QCOMPARE(run({text("-o"), text("out"), text("x"), text("y")}).exitCode, 0);
    QCOMPARE(left(path("out")), text("a.mf4 a_1.mf4"));
}

void tst_ZdsConvertOutputs::processesIntoOneFolderGetAlong()
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

void tst_ZdsConvertOutputs::aLogFileDoesNotReplaceARawLog()
{
    makeLog("a.rld");
    makeLog("keep.rld");
    const qint64 size = QFileInfo(path("keep.rld")).size();
    QCOMPARE(run({text("--log"), path("keep.rld"), text("a.rld")}).exitCode, 64);
    QCOMPARE(QFileInfo(path("keep.rld")).size(), size);
}

void tst_ZdsConvertOutputs::aLogFileDoesNotReplaceAnInputOfAnotherName()
{
    makeLog("drive.log");
    QVERIFY(QDir(folder()).mkdir(text("sub")));
    const qint64 size = QFileInfo(path("drive.log")).size();
    const Run result = run({text("--log"), text("sub/../drive.log"), text("drive.log")});
    QCOMPARE(result.exitCode, 64);
    QVERIFY(result.err.contains(text("drive.log")));
    QCOMPARE(QFileInfo(path("drive.log")).size(), size);
}

void tst_ZdsConvertOutputs::aRequestToEndIs130AndLeavesNothing_data()
{
#ifdef Q_OS_UNIX
    QTest::addColumn<int>("signal");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("request to end") << SIGTERM;
    QTest::newRow("closed terminal") << SIGHUP;
#endif
}

void tst_ZdsConvertOutputs::aRequestToEndIs130AndLeavesNothing()
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

void tst_ZdsConvertOutputs::aReaderOfTheMessagesMayGoAway()
{
#ifdef Q_OS_UNIX
    const QByteArray frame = testlog::can(1, 0, messageId, "0102030405060708");
    make(text("long.rld"), configurationAndFrames(0) + frame.repeated(100000));
    QProcess shell;
    shell.setWorkingDirectory(folder());
    shell.start(text("sh"), {text("-c"), text("\"$0\" long.rld 2>&1 | head -n 1"), program()});
    QVERIFY(shell.waitForFinished(timeout_ms));
    QCOMPARE(left(), text("long.mf4 long.rld"));
#else
    QSKIP("there are no shell pipelines");
#endif
}

void tst_ZdsConvertOutputs::leftoversOfAKilledConversionAreCleared()
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

QTEST_GUILESS_MAIN(tst_ZdsConvertOutputs)
#include "tst_zdsconvert_outputs.moc"
