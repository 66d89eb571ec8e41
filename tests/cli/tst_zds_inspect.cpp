#include "cli/exitcodes.h"
#include "config/configfile.h"
#include "samplelog.h"
#include "temporaryfiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <memory>

namespace {

struct Result
{
    int exitCode = -1;
    QString output;
    QString errors;
};

Result inspect(const QStringList &arguments, const QString &folder = {})
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral(ZDS_INSPECT), arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

// The program as the user runs it.
class tst_zds_inspect : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void whatIsFineEndsWith0AndIsSilentOnStandardError();
    void errorsInAFileEndWith1();
    void anUnreadableFileEndsWith2AndTheOthersAreShown();
    void aMissingFileEndsWith2();
    void wrongUsageEndsWith64_data();
    void wrongUsageEndsWith64();
    void helpNamesAllOptions();
    void versionIsShown();
    void jsonHasOneObjectForEachFile();
    void jsonIsTheOnlyOutputWhenAFileIsUnreadable();
    void aFolderStandsForItsConfigurationsAndLogs();
    void aPatternStandsForTheFilesThatMatch();
    void aFolderWithoutInputsEndsWith2();
    void saveAsIsSilent();
    void saveAsWithJsonReadsTheConfigurationOnly();
    void namesInAnyScriptAreFoundAndShown();
    void namesThatAreNoUtf8AreTold();
    void standardOutputStaysEmptyOnErrors();
    void outputThatCanNotBeWrittenEndsWith2();

private:
    std::unique_ptr<TemporaryFiles> m_files;
    QString m_zdc;
    QString m_log;
    QString m_damagedLog;
};

void tst_zds_inspect::init()
{
    m_files = std::make_unique<TemporaryFiles>();
    m_zdc = m_files->path("a.zdc");
    QVERIFY(configfile::save(*sampleConfiguration(), m_zdc));
    const QByteArray entries = rawlog::syncStampEntry(1, 0) + rawlog::syncStampEntry(2, 0);
    m_log = m_files->write("b.rld", logBytes(TerminalStruct(), entries));
    m_damagedLog = m_files->write("c.rld", logBytes(TerminalStruct(), entries + "noise"));
}

void tst_zds_inspect::whatIsFineEndsWith0AndIsSilentOnStandardError()
{
    const Result result = inspect({m_zdc, m_log});
    QCOMPARE(result.exitCode, int(AllDone));
    QCOMPARE(result.errors, QString());
    QVERIFY(result.output.startsWith(m_zdc + QStringLiteral(": configuration, ")));
    QVERIFY(result.output.contains(QStringLiteral("\n\n") + m_log + QStringLiteral(": raw log, ")));
}

void tst_zds_inspect::errorsInAFileEndWith1()
{
    const Result result = inspect({m_damagedLog, m_log});
    QCOMPARE(result.exitCode, int(DoneWithErrors));
    QVERIFY(result.errors.startsWith(QStringLiteral("Error: ") + m_damagedLog
                                     + QStringLiteral(": 5 bytes are no entries")));
    QCOMPARE(result.errors.count(QLatin1Char('\n')), 1);
    QVERIFY(result.output.contains(QStringLiteral("Skipped, 5 bytes in 1 stretch")));
}

void tst_zds_inspect::anUnreadableFileEndsWith2AndTheOthersAreShown()
{
    const QString empty = m_files->write("empty.rld", {});
    const Result result = inspect({empty, m_damagedLog, m_zdc});
    QCOMPARE(result.exitCode, int(SomeFileFailed));
    QVERIFY(result.errors.startsWith(QStringLiteral("Error: %1: the file is shorter than four "
                                                    "bytes\n")
                                         .arg(empty)));
    QVERIFY(result.output.contains(m_damagedLog));
    QVERIFY(result.output.contains(m_zdc));
}

void tst_zds_inspect::aMissingFileEndsWith2()
{
    const QString missing = m_files->path("missing.zdc");
    const Result result = inspect({missing});
    QCOMPARE(result.exitCode, int(SomeFileFailed));
    QCOMPARE(result.errors, QStringLiteral("Error: %1: the file does not exist\n").arg(missing));
}

void tst_zds_inspect::wrongUsageEndsWith64_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString saveAs = QStringLiteral("--save-as");
    QTest::newRow("no file") << QStringList();
    QTest::newRow("unknown option")
        << QStringList{QStringLiteral("--colour"), QStringLiteral("a.zdc")};
    QTest::newRow("help of windows") << QStringList{QStringLiteral("--help-all")};
    QTest::newRow("--save-as without a name") << QStringList{QStringLiteral("a.zdc"), saveAs};
    QTest::newRow("--save-as with an empty name")
        << QStringList{saveAs, QString(), QStringLiteral("a.zdc")};
    QTest::newRow("--save-as of two files") << QStringList{
        saveAs, QStringLiteral("out.zdc"), QStringLiteral("a.zdc"), QStringLiteral("b.rld")};
    QTest::newRow("--save-as of a pattern for two files")
        << QStringList{saveAs, QStringLiteral("out.zdc"), QStringLiteral("*.rld")};
    QTest::newRow("--save-as without an input") << QStringList{saveAs, QStringLiteral("out.zdc")};
}

void tst_zds_inspect::wrongUsageEndsWith64()
{
    QFETCH(QStringList, arguments);
    const Result result = inspect(arguments, m_files->folder());
    QCOMPARE(result.exitCode, int(UsageError));
    QVERIFY(result.errors.startsWith(QStringLiteral("Error: ")));
    QVERIFY(result.errors.endsWith(QStringLiteral("Error: Try zds-inspect --help.\n")));
    QCOMPARE(result.output, QString());
    QVERIFY(!QFileInfo::exists(m_files->path("out.zdc")));
}

void tst_zds_inspect::helpNamesAllOptions()
{
    const Result result = inspect({QStringLiteral("--help")});
    QCOMPARE(result.exitCode, int(AllDone));
    for (const char *option : {"--json", "--save-as <FILE.zdc>", "--help", "--version", "FILE..."})
        QVERIFY2(result.output.contains(QLatin1String(option)), option);
}

void tst_zds_inspect::versionIsShown()
{
    const Result result = inspect({QStringLiteral("--version")});
    QCOMPARE(result.exitCode, int(AllDone));
    QCOMPARE(result.output, QStringLiteral("zds-inspect 2.19\n"));
}

void tst_zds_inspect::jsonHasOneObjectForEachFile()
{
    const Result result = inspect({QStringLiteral("--json"), m_log, m_zdc});
    QCOMPARE(result.exitCode, int(AllDone));
    const QJsonArray files = QJsonDocument::fromJson(result.output.toUtf8()).array();
    QCOMPARE(files.size(), 2);
    QCOMPARE(files.at(0).toObject().value(QStringLiteral("file")).toString(), m_log);
    QCOMPARE(files.at(1).toObject().value(QStringLiteral("file")).toString(), m_zdc);
}

void tst_zds_inspect::jsonIsTheOnlyOutputWhenAFileIsUnreadable()
{
    const QString empty = m_files->write("empty.zdc", {});
    const Result result = inspect({QStringLiteral("--json"), empty, m_files->path("missing")});
    QCOMPARE(result.exitCode, int(SomeFileFailed));
    const QJsonArray files = QJsonDocument::fromJson(result.output.toUtf8()).array();
    QCOMPARE(files.size(), 1);
    QCOMPARE(files.at(0).toObject().value(QStringLiteral("errors")).toArray().size(), 1);
}

void tst_zds_inspect::aFolderStandsForItsConfigurationsAndLogs()
{
    (void)m_files->write("notes.txt", "not an input");
    const Result result = inspect({m_files->folder()});
    QCOMPARE(result.exitCode, int(DoneWithErrors));
    for (const QString &file : {m_zdc, m_log, m_damagedLog})
        QVERIFY2(result.output.contains(file), qPrintable(file));
    QVERIFY(!result.errors.contains(QStringLiteral("notes.txt")));
}

void tst_zds_inspect::aPatternStandsForTheFilesThatMatch()
{
    const Result result = inspect({QStringLiteral("[ab].*")}, m_files->folder());
    QCOMPARE(result.exitCode, int(AllDone));
    QVERIFY(result.output.startsWith(QStringLiteral("a.zdc: ")));
    QVERIFY(result.output.contains(QStringLiteral("\nb.rld: ")));
    QCOMPARE(inspect({QStringLiteral("x*")}, m_files->folder()).exitCode, int(SomeFileFailed));
}

void tst_zds_inspect::aFolderWithoutInputsEndsWith2()
{
    const TemporaryFiles none;
    const Result result = inspect({none.folder()});
    QCOMPARE(result.exitCode, int(SomeFileFailed));
    QCOMPARE(result.errors,
             QStringLiteral("Error: %1: there is no *.zdc or *.rld or *.dbc in this folder\n")
                 .arg(none.folder()));
}

void tst_zds_inspect::saveAsIsSilent()
{
    const QString out = m_files->path("out.zdc");
    const Result result = inspect({QStringLiteral("--save-as"), out, m_damagedLog});
    QCOMPARE(result.exitCode, int(AllDone));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, QString());
    QVERIFY(configfile::save(TerminalStruct(), m_files->path("default.zdc")));
    QCOMPARE(TemporaryFiles::contentOf(out),
             TemporaryFiles::contentOf(m_files->path("default.zdc")));
}

void tst_zds_inspect::saveAsWithJsonReadsTheConfigurationOnly()
{
    const QString out = m_files->path("out.zdc");
    const Result result =
        inspect({QStringLiteral("--json"), QStringLiteral("--save-as"), out, m_log});
    QCOMPARE(result.exitCode, int(AllDone));
    const QJsonObject json =
        QJsonDocument::fromJson(result.output.toUtf8()).array().at(0).toObject();
    QVERIFY(json.contains(QStringLiteral("configuration")));
    QVERIFY(!json.contains(QStringLiteral("log")));
    QVERIFY(QFileInfo::exists(out));
}

void tst_zds_inspect::namesInAnyScriptAreFoundAndShown()
{
    const QString file = m_files->write("Fährt 試験 [1].rld", logBytes(TerminalStruct(), {}));
    const Result result = inspect({file});
    QCOMPARE(result.exitCode, int(AllDone));
    QVERIFY(result.output.startsWith(file + QStringLiteral(": raw log")));
}

void tst_zds_inspect::namesThatAreNoUtf8AreTold()
{
#ifdef Q_OS_UNIX
    const auto inspectAs = [this](const char *arguments) {
        QProcess shell;
        shell.setWorkingDirectory(m_files->folder());
        shell.start(QStringLiteral("sh"),
                    {QStringLiteral("-c"), QLatin1String(arguments), QStringLiteral(ZDS_INSPECT)});
        return shell.waitForFinished()
                   ? Result{shell.exitCode(), {}, QString::fromUtf8(shell.readAllStandardError())}
                   : Result();
    };
    const QString told = QString::fromUtf8("\xEF\xBF\xBD.zdc: its name is not valid UTF-8\n");
    const Result missing = inspectAs("exec \"$0\" \"$(printf '\\344.zdc')\"");
    QCOMPARE(missing.exitCode, int(SomeFileFailed));
    QCOMPARE(missing.errors, QStringLiteral("Error: ") + told);
    const Result target = inspectAs("exec \"$0\" --save-as \"$(printf '\\344.zdc')\" b.rld");
    QCOMPARE(target.exitCode, int(UsageError));
    QVERIFY(target.errors.contains(told));
#else
    QSKIP("Names are Unicode here.");
#endif
}

void tst_zds_inspect::standardOutputStaysEmptyOnErrors()
{
    const Result result = inspect({m_files->write("random.bin", QByteArray(100, '\x5c'))});
    QCOMPARE(result.exitCode, int(SomeFileFailed));
    QCOMPARE(result.output, QString());
    QVERIFY(result.errors.endsWith(
        QStringLiteral("random.bin: it is no configuration, raw log or DBC file\n")));
}

void tst_zds_inspect::outputThatCanNotBeWrittenEndsWith2()
{
    const QString full = QStringLiteral("/dev/full");
    if (!QFileInfo::exists(full))
        QSKIP("There is no device that is always full here.");
    QProcess process;
    process.setStandardOutputFile(full);
    process.start(QStringLiteral(ZDS_INSPECT), {m_zdc}, QIODevice::ReadOnly);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), int(SomeFileFailed));
    QCOMPARE(process.readAllStandardError(),
             QByteArray("Error: The output could not be written.\n"));
}

QTEST_GUILESS_MAIN(tst_zds_inspect)
#include "tst_zds_inspect.moc"
