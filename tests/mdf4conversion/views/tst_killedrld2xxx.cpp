#include "tests/support/filecontents.h"
#include "tests/support/killmoment.h"

#include <QDir>
#include <QProcess>
#include <QSharedMemory>
#include <QSystemSemaphore>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <csignal>
#include <unistd.h>
#endif

// Ends conversions with rld2xxx at any moment, together with rld2xxx and without it.
class tst_KilledRld2XXX : public QObject
{
    Q_OBJECT

private slots:
    void noHalfFileCarriesAFinalName();
};

namespace {

constexpr int kills = KillMoment::kills;
constexpr quint32 seed = 20261121;
constexpr int end_ms = KillMoment::end_ms;

// The conversion and the rld2xxx that it starts.
class Conversion : public QProcess
{
public:
    // As a power cut ends them.
    void killBoth()
    {
#ifdef Q_OS_UNIX
        if (state() != NotRunning)
            ::kill(-pid_t(processId()), SIGKILL);
#else
        kill();
#endif
        waitForFinished(end_ms);
    }
    void killTool()
    {
        kill();
        waitForFinished(end_ms);
    }

protected:
#ifdef Q_OS_UNIX
    void setupChildProcess() override
    {
        setsid();
    } // so that both can be told apart from the test
#endif
};

struct Bench
{
    Bench()
    {
        writeFile(log, "a log");
        QDir(folder.path()).mkdir(QStringLiteral("out"));
    }

    void begin(Conversion &program) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("STANDIN_RLD2XXX"), QStringLiteral("slow"));
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(QStringLiteral(ZDS_STANDIN_DIR));
        program.start(QStringLiteral(ZDS_TEST_RLD2XXX), {log, output});
        if (!program.waitForStarted(end_ms) || !program.waitForReadyRead(end_ms))
            qFatal("%s", qPrintable(program.errorString()));
    }

    QStringList entries() const
    {
        return QDir(QFileInfo(output).path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    // Where memory outlives the programs that share it, hundreds of runs would use up what there is.
    static void removeMemoryOf(Conversion &program)
    {
        const QString key =
            QString::fromLocal8Bit(program.readAll()).section(QLatin1Char('\n'), 1, 1);
        if (key.isEmpty())
            return;
        QSharedMemory(key).attach();                        // the last one removes it
        QSystemSemaphore(key, 1, QSystemSemaphore::Create); // the one that has made it removes it
    }
    bool isWholeOrMissing() const
    {
        return !QFile::exists(output) || contentOf(output).endsWith("\n100\n");
    }

    QTemporaryDir folder;
    QString log = folder.filePath(QStringLiteral("a.rld"));
    QString output = folder.filePath(QStringLiteral("out/a.blf"));
};

} // namespace

void tst_KilledRld2XXX::noHalfFileCarriesAFinalName()
{
    const Bench bench;
    Conversion whole;
    bench.begin(whole);
    KillMoment moment(seed);
    QVERIFY(moment.measure(whole));
    QVERIFY(QFile::exists(bench.output));
    QVERIFY(bench.isWholeOrMissing());

    int killed = 0;
    int halves = 0;
    for (int run = 0; killed < kills && run < KillMoment::maxRuns; ++run) {
        QFile::remove(bench.output);
        Conversion program;
        bench.begin(program);
        killed += moment.waitIn(program) ? 1 : 0;
        const bool isRld2xxxGone = killed > kills - 10; // behind all that go on by themselves
        if (run % 4 == 0 && !isRld2xxxGone)
            program.killTool();
        else
            program.killBoth();
        Bench::removeMemoryOf(program);
        QVERIFY2(bench.isWholeOrMissing(), qPrintable(QStringLiteral("run %1").arg(run)));
        halves += bench.entries().contains(QStringLiteral("a.blf.part")) ? 1 : 0;
    }
    QCOMPARE(killed, kills);
    QVERIFY2(halves > 0, "No conversion was killed in the middle.");

    Conversion last;
    bench.begin(last);
    QVERIFY(last.waitForFinished(end_ms));
    QCOMPARE(last.exitCode(), 0);
    QCOMPARE(bench.entries().join(QLatin1Char(' ')), QStringLiteral("a.blf"));
    QVERIFY(bench.isWholeOrMissing());
}

QTEST_GUILESS_MAIN(tst_KilledRld2XXX)
#include "tst_killedrld2xxx.moc"
