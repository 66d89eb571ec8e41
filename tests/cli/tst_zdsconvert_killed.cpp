#include "tests/support/convertprogram.h"
#include "tests/support/mdf4reader.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QThread>

using namespace convertprogram;

namespace {

constexpr int moments = 50;
constexpr quint32 seed = 20261121;
constexpr int frames = 20000;
constexpr int longestPause_us = 4000; // behind a message, to reach what happens without one

} // namespace

// Ends conversions at any moment, as a power cut or a task manager does, and looks at the folder.
class tst_ZdsConvertKilled : public QObject, private ConvertProgram
{
    Q_OBJECT

private slots:
    void noMomentLeavesHalfAFileOrSpoilsTheNextConversion();

private:
    // The number of messages that a whole conversion writes.
    int messageCount() const;
    // Starts a conversion and kills it behind so many messages and a pause. True if that was before
    // its own end.
    bool killBehind(int messages, int pause_us) const;
    // The groups of a file that can be read to its end have all records.
    bool isWhole(const QString &file) const;
};

int tst_ZdsConvertKilled::messageCount() const
{
    const int count = run({text("long.rld")}).err.count(QLatin1Char('\n'));
    QFile::remove(path("long.mf4"));
    return count;
}

bool tst_ZdsConvertKilled::killBehind(int messages, int pause_us) const
{
    QProcess process;
    start(process, {text("long.rld")});
    process.setReadChannel(QProcess::StandardError);
    int read = 0;
    while (read < messages && process.waitForReadyRead(timeout_ms))
        read += process.readAllStandardError().count('\n');
    QThread::usleep(quint32(pause_us));
    process.kill();
    process.waitForFinished(timeout_ms);
    return process.exitStatus() == QProcess::CrashExit;
}

bool tst_ZdsConvertKilled::isWhole(const QString &file) const
{
    mdf4reader::Reader reader;
    if (!reader.open(file.toStdU16String()) || reader.file().groups.size() != 1)
        return false;
    const mdf4reader::Group &group = reader.file().groups.front();
    constexpr std::size_t timeAndData = 8 + 2;
    return group.cycleCount == frames
           && reader.records(group).size() == std::size_t(frames) * timeAndData;
}

void tst_ZdsConvertKilled::noMomentLeavesHalfAFileOrSpoilsTheNextConversion()
{
    beginAnew();
    makeLog("long.rld", frames);
    makeLog("next.rld");
    QCOMPARE(run({text("long.rld")}).exitCode, 0);
    QVERIFY(isWhole(path("long.mf4")));
    QFile::remove(path("long.mf4"));
    const int messages = messageCount();
    QVERIFY(messages > 10);

    QRandomGenerator random(seed);
    int killed = 0;
    for (int moment = 0; killed < moments && moment < 4 * moments; ++moment) {
        const int behind = random.bounded(messages + 1);
        const int pause_us = random.bounded(longestPause_us);
        killed += killBehind(behind, pause_us) ? 1 : 0;
        const QString told =
            QStringLiteral("moment %1: behind %2 of %3 messages and %4 us, left %5")
                .arg(moment)
                .arg(behind)
                .arg(messages)
                .arg(pause_us)
                .arg(left());
        const bool isPublished = QFile::exists(path("long.mf4"));
        QVERIFY2(!isPublished || isWhole(path("long.mf4")), qPrintable(told));

        QVERIFY2(run({text("next.rld")}).exitCode == 0, qPrintable(told));
        QVERIFY2(left()
                     == (isPublished ? text("long.mf4 long.rld next.mf4 next.rld")
                                     : text("long.rld next.mf4 next.rld")),
                 qPrintable(told + text(", then ") + left()));
        QFile::remove(path("long.mf4"));
        QFile::remove(path("next.mf4"));
    }
    QCOMPARE(killed, moments); // the others had ended before
}

QTEST_GUILESS_MAIN(tst_ZdsConvertKilled)
#include "tst_zdsconvert_killed.moc"
