#include "tests/support/filecontents.h"
#include "tests/support/killmoment.h"
#include "tests/support/simulatedlogger.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

// Ends a program at any moment of its downloads.
class tst_KilledDownload : public QObject
{
    Q_OBJECT

private slots:
    void noHalfFileCarriesAFinalName();
};

namespace {

constexpr int kills = KillMoment::kills;
constexpr quint32 seed = 20240501;
constexpr int end_ms = KillMoment::end_ms;

// A logger with files, and a program that downloads them.
struct Bench
{
    Bench()
    {
        for (int i = 0; i < 4; ++i) {
            const QString name = QStringLiteral("drive%1.rld").arg(i);
            contents[name] = pattern(2'000'000 + i, i);
            arguments += QStringList{name, QString::number(contents[name].size())};
            writeFile(storage.filePath(name), contents[name]);
        }
        logger.inspect(
            [this](simulator::LoggerSimulator &s) { s.state().logFolder = storage.path(); });
    }

    void begin(QProcess &program) const
    {
        program.start(QStringLiteral(ZDS_TEST_DOWNLOAD),
                      QStringList{logger.address().toString(), target.path()} + arguments);
        if (!program.waitForStarted(end_ms))
            qFatal("%s", qPrintable(program.errorString()));
        if (!program.waitForReadyRead(end_ms)) // it tells when it begins
            qFatal("The program does not begin.");
    }

    // Empty when every file with a final name is whole.
    QString fault() const
    {
        const QStringList entries = QDir(target.path()).entryList(QDir::Files | QDir::Hidden);
        for (const QString &entry : entries) {
            if (entry.contains(QLatin1String(".rld.part")))
                continue; // what has no final name, and its lock
            if (!contents.contains(entry))
                return QStringLiteral("%1 has come from nowhere").arg(entry);
            if (contentOf(target.filePath(entry)) != contents.value(entry))
                return QStringLiteral("%1 is not whole").arg(entry);
        }
        return {};
    }
    void remove(const QString &pattern) const
    {
        QDir folder(target.path());
        const QStringList entries = folder.entryList({pattern}, QDir::Files);
        for (const QString &entry : entries)
            folder.remove(entry);
    }
    bool hasHalfFile() const
    {
        return !QDir(target.path()).entryList({QStringLiteral("*.part")}, QDir::Files).isEmpty();
    }

    QMap<QString, QByteArray> contents;
    QStringList arguments;
    QTemporaryDir storage;
    QTemporaryDir target;
    SimulatedLogger logger;
};

} // namespace

void tst_KilledDownload::noHalfFileCarriesAFinalName()
{
    Bench bench;
    QProcess whole;
    bench.begin(whole);
    KillMoment moment(seed);
    QVERIFY(moment.measure(whole));

    int killed = 0;
    int halves = 0;
    for (int run = 0; killed < kills && run < KillMoment::maxRuns; ++run) {
        bench.remove(QStringLiteral("*.rld"));
        const bool isFresh = run % 2 == 0; // else among what an earlier one left
        if (isFresh)
            bench.remove(QStringLiteral("*"));
        QProcess program;
        bench.begin(program);
        killed += moment.waitIn(program) ? 1 : 0;
        program.kill();
        program.waitForFinished(end_ms);
        const QString fault = bench.fault();
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("run %1: %2").arg(run).arg(fault)));
        halves += isFresh && bench.hasHalfFile() ? 1 : 0;
    }
    QCOMPARE(killed, kills);
    QVERIFY2(halves > 0, "No download was killed in the middle of a file.");

    bench.remove(QStringLiteral("*.rld"));
    QProcess last;
    bench.begin(last);
    QVERIFY(last.waitForFinished(end_ms));
    QCOMPARE(last.exitCode(), 0);
    QCOMPARE(bench.fault(), QString());
    QCOMPARE(QDir(bench.target.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList(bench.contents.keys()));
}

QTEST_GUILESS_MAIN(tst_KilledDownload)
#include "tst_killeddownload.moc"
