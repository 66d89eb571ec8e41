#include "can/dbcloadtask.h"
#include "tests/support/messagecount.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class tst_DbcLoadTask : public QObject
{
    Q_OBJECT

private slots:
    void aFileIsReadInTheBackground();
    void theDiagnosticLogTellsWhatWasRead();
    void aFileWithAnErrorSaysSo();
    void aFileThatIsNotThereHasNoText();
    void theNextFileCanBeRead();
    void progressIsTold();
    void aLoadCanBeCancelled();
    void itEndsWithItsOwner();
    void theTimeLeftIsRounded();

private:
    QString file(const QByteArray &text)
    {
        const QString path = m_folder.filePath(QStringLiteral("%1.dbc").arg(++m_files));
        QFile written(path);
        if (!written.open(QIODevice::WriteOnly) || written.write(text) != text.size())
            qFatal("%s can't be written", qPrintable(path));
        return path;
    }
    static QByteArray signalLines(int count)
    {
        QByteArray text = "BO_ 291 Engine: 8 ECU\n";
        for (int i = 0; i < count; ++i)
            text += " SG_ Signal" + QByteArray::number(i) + " : 0|8@1+ (1,0) [0|0] \"\" ECU\n";
        return text;
    }

    QTemporaryDir m_folder;
    int m_files = 0;
};

void tst_DbcLoadTask::aFileIsReadInTheBackground()
{
    DbcLoadTask task;
    QSignalSpy finished(&task, &DbcLoadTask::finished);
    task.start(file(signalLines(3)));
    QVERIFY(task.isRunning());
    QVERIFY(finished.wait());
    QVERIFY(!task.isRunning());
    QCOMPARE(finished.first().first().toBool(), true);
    QCOMPARE(task.parser().signalList().size(), 3);
}

void tst_DbcLoadTask::theDiagnosticLogTellsWhatWasRead()
{
    const MessageCount described("Signal: Signal");
    DbcLoadTask task;
    QSignalSpy finished(&task, &DbcLoadTask::finished);
    task.start(file(signalLines(3)));
    QVERIFY(finished.wait());
    QCOMPARE(described.value(), 3);
}

void tst_DbcLoadTask::aFileWithAnErrorSaysSo()
{
    DbcLoadTask task;
    QSignalSpy finished(&task, &DbcLoadTask::finished);
    task.start(file("BO_ 1 M: 8 ECU\n SG_ broken\n"));
    QVERIFY(finished.wait());
    QCOMPARE(finished.first().first().toBool(), false);
    QVERIFY(task.parser().errorText().startsWith(QStringLiteral("DBC-File: ")));
}

void tst_DbcLoadTask::aFileThatIsNotThereHasNoText()
{
    DbcLoadTask task;
    QSignalSpy finished(&task, &DbcLoadTask::finished);
    task.start(m_folder.filePath(QStringLiteral("none.dbc")));
    QVERIFY(finished.wait());
    QCOMPARE(finished.first().first().toBool(), false);
    QCOMPARE(task.parser().errorText(), QString());
    QVERIFY(!task.parser().isCancelled());
}

void tst_DbcLoadTask::theNextFileCanBeRead()
{
    DbcLoadTask task;
    QSignalSpy finished(&task, &DbcLoadTask::finished);
    task.start(file(signalLines(3)));
    task.cancel();
    QVERIFY(finished.wait());
    task.start(file(signalLines(1)));
    QVERIFY(finished.wait());
    QCOMPARE(finished.last().first().toBool(), true);
    QCOMPARE(task.parser().signalList().size(), 1);
}

void tst_DbcLoadTask::progressIsTold()
{
    DbcLoadTask task;
    QSignalSpy finished(&task, &DbcLoadTask::finished);
    const QSignalSpy progressed(&task, &DbcLoadTask::progressed);
    task.start(file(signalLines(100'000)));
    QVERIFY(finished.wait(30'000));
    QVERIFY(!progressed.isEmpty());
    for (const QList<QVariant> &arguments : progressed) {
        QVERIFY(arguments.at(0).toInt() >= 0 && arguments.at(0).toInt() <= 100);
        QVERIFY(arguments.at(1).toLongLong() >= 0);
    }
}

void tst_DbcLoadTask::aLoadCanBeCancelled()
{
    DbcLoadTask task;
    QSignalSpy finished(&task, &DbcLoadTask::finished);
    task.start(file(signalLines(300'000)));
    task.cancel();
    QVERIFY(finished.wait(30'000));
    QCOMPARE(finished.first().first().toBool(), false);
    QVERIFY(task.parser().isCancelled());
    QCOMPARE(task.parser().errorText(), QString());
}

void tst_DbcLoadTask::itEndsWithItsOwner()
{
    auto task = std::make_unique<DbcLoadTask>();
    const QSignalSpy finished(task.get(), &DbcLoadTask::finished);
    task->start(file(signalLines(100'000)));
    task.reset();
    QVERIFY(finished.isEmpty());
}

void tst_DbcLoadTask::theTimeLeftIsRounded()
{
    QCOMPARE(loadTimeLeftText(300), QString());
    QCOMPARE(loadTimeLeftText(800), QStringLiteral("about 1 s left"));
    QCOMPARE(loadTimeLeftText(119'000), QStringLiteral("about 119 s left"));
    QCOMPARE(loadTimeLeftText(170'000), QStringLiteral("about 3 min left"));
}

QTEST_GUILESS_MAIN(tst_DbcLoadTask)
#include "tst_dbcloadtask.moc"
