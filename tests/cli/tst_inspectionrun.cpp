#include "cli/console.h"
#include "cli/inspectionrun.h"
#include "cli/interruption.h"
#include "temporaryfiles.h"

#include <QtTest>

#include <csignal>

// Ctrl-C can't be taken back, so this test is alone in its program.
class tst_InspectionRun : public QObject
{
    Q_OBJECT

private slots:
    void controlCEndsTheRun();
};

void tst_InspectionRun::controlCEndsTheRun()
{
    const TemporaryFiles files;
    const QString file = files.write("a.rld", logBytes(TerminalStruct(), {}));
    Console console;
    InspectionRun run(console, InspectionRun::Output::Json);
    QCOMPARE(run.run({file}), AllDone);
    QCOMPARE(run.summaries().size(), 1);

    interruption::watch();
    std::raise(SIGINT);
    QCOMPARE(run.run({file}), Cancelled);
    QCOMPARE(run.summaries().size(), 1);
}

QTEST_GUILESS_MAIN(tst_InspectionRun)
#include "tst_inspectionrun.moc"
