#include "cli/console.h"
#include "cli/inspectionrun.h"
#include "cli/interruption.h"
#include "config/record/jsonwriter.h"
#include "temporaryfiles.h"

#include <QBuffer>
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
    QBuffer out;
    QVERIFY(out.open(QIODevice::WriteOnly));
    JsonWriter json(out);
    InspectionRun run(console);
    run.writeJsonTo(json);
    QCOMPARE(run.run({file}), AllDone);
    QCOMPARE(out.data().count("raw_log"), 1);

    interruption::watch();
    std::raise(SIGINT);
    QCOMPARE(run.run({file}), Cancelled);
    QCOMPARE(out.data().count("raw_log"), 1);
}

QTEST_GUILESS_MAIN(tst_InspectionRun)
#include "tst_inspectionrun.moc"
