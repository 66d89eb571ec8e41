#include "tests/link/views/mainviewbench.h"

#include <QProgressDialog>
#include <QRegularExpression>
#include <QTimer>

// How the logger's page deletes files.
class tst_LoggerMainViewDeleting : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<MainViewBench>(); }
    void cleanup() { m_bench.reset(); }

    void deletingAsksFirst();
    void fewFilesAreNamedManyAreCounted();
    void deletedFilesAreGoneFromTheLoggerAndTheList();
    void aFailedDeleteStopsAndIsTold();
    void anUnknownReplyToADeleteIsTold();
    void aDeleteWithoutAnswerIsTold();
    void aNameThatWouldBeTwoCommandsIsNotSent();
    void aLongDeleteShowsItsProgress();
    void aCancelledDeleteLeavesTheRest();
    void aLossWhileTheQuestionIsOpenGivesNoSecondBox();
    void aLossWhileDeletingGivesNoBoxOfThePage();
    void filesThatAreBeingDownloadedAreNotDeleted();
    void manyFilesThatAreBeingDownloadedAreCounted();
    void theDeleteKeyDeletes();

private:
    // Answers Yes to the question of a delete of all files.
    void deleteAll()
    {
        m_bench->table()->selectAll();
        m_bench->prompt.answer = true;
        m_bench->button("pushButton_delete_selected_logfile")->click();
    }
    // Deletes ten files, each of which takes the logger a while, and cancels when the progress window
    // tells of the fourth one. Gives the window's texts until then.
    QStringList deleteTenSlowly(bool isCancelled);

    std::unique_ptr<MainViewBench> m_bench;
};

void tst_LoggerMainViewDeleting::deletingAsksFirst()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->select({0});
    m_bench->prompt.answer = false;
    m_bench->button("pushButton_delete_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Delete File|Delete file/s?\r\na.rld")}));
    QVERIFY(m_bench->isStored("a.rld"));
}

void tst_LoggerMainViewDeleting::fewFilesAreNamedManyAreCounted()
{
    for (int i = 10; i < 21; ++i)
        m_bench->store(QByteArray::number(i).constData(), 1);
    m_bench->connectAndRead();
    m_bench->table()->selectAll();
    m_bench->button("pushButton_delete_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown.takeLast(),
             QStringLiteral("Delete File|Delete selected files? (11 files)"));
    m_bench->select({0, 1});
    m_bench->button("pushButton_delete_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown.takeLast(),
             QStringLiteral("Delete File|Delete file/s?\r\n20\r\n19"));
}

void tst_LoggerMainViewDeleting::deletedFilesAreGoneFromTheLoggerAndTheList()
{
    for (const char *name : {"a.rld", "b.rld", "c.rld"})
        m_bench->store(name, 1);
    m_bench->connectAndRead();
    m_bench->select({0, 2});
    m_bench->prompt.answer = true;
    m_bench->button("pushButton_delete_selected_logfile")->click();
    QCOMPARE(m_bench->column(0), QStringList({QStringLiteral("b.rld")}));
    QVERIFY(!m_bench->isStored("a.rld") && !m_bench->isStored("c.rld"));
    QCOMPARE(m_bench->prompt.shown.size(), 1); // the question
}

void tst_LoggerMainViewDeleting::aFailedDeleteStopsAndIsTold()
{
    m_bench->store("a.rld", 1);
    m_bench->store("b.rld", 1);
    m_bench->connectAndRead();
    QVERIFY(QFile::remove(m_bench->storage.filePath(QStringLiteral("b.rld"))));
    m_bench->table()->selectAll();
    m_bench->prompt.answer = true;
    m_bench->button("pushButton_delete_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown.last(),
             QStringLiteral("Warning|CMD-Response error.\r\n Response: "
                            "ERROR_CODE_FILE_NOT_FOUND."));
    QVERIFY(m_bench->isStored("a.rld"));
    QCOMPARE(m_bench->column(0), QStringList({QStringLiteral("a.rld")})); // read anew
}

void tst_LoggerMainViewDeleting::anUnknownReplyToADeleteIsTold()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->logger.setFault(QStringLiteral("malformed-reply@sys_delete_logfile=foo"));
    m_bench->select({0});
    m_bench->prompt.answer = true;
    m_bench->button("pushButton_delete_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown.last(),
             QStringLiteral("Warning|CMD-Response error.\r\n Response: foo."));
}

void tst_LoggerMainViewDeleting::aDeleteWithoutAnswerIsTold()
{
    m_bench->store("a.rld", 1);
    m_bench->store("b.rld", 1);
    m_bench->connectAndRead();
    m_bench->logger.setFault(QStringLiteral("lost-reply@sys_delete_logfile"));
    deleteAll();
    QCOMPARE(m_bench->prompt.shown.size(), 2);
    QCOMPARE(m_bench->prompt.shown.last(),
             QStringLiteral("Warning|No CMD-Response. (sys_delete_logfile)"));
    QCOMPARE(m_bench->column(0), QStringList({QStringLiteral("a.rld")})); // no further one was sent
}

void tst_LoggerMainViewDeleting::aNameThatWouldBeTwoCommandsIsNotSent()
{
    m_bench->logger.setFault(QStringLiteral(
        "malformed-reply@sys_get_logfiles=logfiles=a)\r\nsys_disable_stop_logging(,1;"));
    m_bench->connectAndRead();
    const auto sent = m_bench->countCommands("sys_delete_logfile");
    deleteAll();
    QCOMPARE(m_bench->prompt.shown.last(),
             QStringLiteral("Warning|The file a)\uFFFD\uFFFDsys_disable_stop_logging( can't be "
                            "deleted: its name can't be sent to the logger."));
    QCOMPARE(sent->load(), 0);
}

QStringList tst_LoggerMainViewDeleting::deleteTenSlowly(bool isCancelled)
{
    for (int i = 0; i < 10; ++i)
        m_bench->store(QByteArray::number(i).constData(), 1);
    m_bench->connectAndRead();
    m_bench->logger.setFault(QStringLiteral("late-reply@sys_delete_logfile=150"));
    QStringList texts;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] {
        auto *progress = m_bench->page->findChild<QProgressDialog *>();
        if (!progress || texts.contains(progress->labelText()))
            return;
        texts += progress->labelText();
        if (texts.size() == 1)
            texts.prepend(progress->windowTitle() + QLatin1Char('|')
                          + progress->findChild<QPushButton *>()->text());
        if (isCancelled && progress->labelText().startsWith(QStringLiteral("Deleting file 4 ")))
            progress->findChild<QPushButton *>()->click();
    });
    look.start(0);
    deleteAll();
    return texts;
}

void tst_LoggerMainViewDeleting::aLongDeleteShowsItsProgress()
{
    const QStringList texts = deleteTenSlowly(false);
    QCOMPARE(texts.value(0), QStringLiteral("Delete log files|Cancel"));
    QVERIFY(texts.size() > 5);
    static const QRegularExpression pattern(
        QStringLiteral("^Deleting file (\\d+) of 10, about (\\d+) s left$"));
    int file = 1;
    for (const QString &text : texts.mid(1)) {
        const QRegularExpressionMatch match = pattern.match(text);
        QVERIFY2(match.hasMatch(), qPrintable(text));
        QVERIFY2(match.captured(1).toInt() > file, qPrintable(text));
        file = match.captured(1).toInt();
        // Each takes 150 ms at least.
        QVERIFY2(match.captured(2).toInt() >= (11 - file) * 150 / 1000 + 1, qPrintable(text));
    }
    QCOMPARE(file, 10);
    QVERIFY(m_bench->column(0).isEmpty());
}

void tst_LoggerMainViewDeleting::aCancelledDeleteLeavesTheRest()
{
    const QStringList texts = deleteTenSlowly(true);
    QVERIFY2(texts.last().startsWith(QStringLiteral("Deleting file 4 of 10, about ")),
             qPrintable(texts.last()));
    QCOMPARE(m_bench->column(0).join(QString()), QStringLiteral("6543210")); // read anew
    QCOMPARE(m_bench->prompt.shown.size(), 1);                               // the question
}

void tst_LoggerMainViewDeleting::aLossWhileTheQuestionIsOpenGivesNoSecondBox()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->select({0});
    m_bench->prompt.answer = true;
    m_bench->prompt.duringABox = [this] { m_bench->handler.disconnectLogger(); };
    m_bench->button("pushButton_delete_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown.size(), 1); // the question
}

void tst_LoggerMainViewDeleting::aLossWhileDeletingGivesNoBoxOfThePage()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->logger.setFault(QStringLiteral("drop-in-reply@sys_delete_logfile"));
    deleteAll();
    QVERIFY(!m_bench->handler.areBothConnected());
    QCOMPARE(m_bench->prompt.shown.size(), 1); // the question
}

void tst_LoggerMainViewDeleting::filesThatAreBeingDownloadedAreNotDeleted()
{
    MainViewBench &bench = *m_bench;
    for (const char *name : {"a.rld", "b.rld", "c.rld"})
        bench.store(name, 10);
    bench.connectAndRead();
    bench.page->setFilesUnderWay([] { return QStringList{QStringLiteral("b.rld")}; });
    bench.prompt.answer = true;
    bench.select({0, 1});
    bench.button("pushButton_delete_selected_logfile")->click();
    QCOMPARE(bench.prompt.shown,
             QStringList{QStringLiteral("Delete File|These files are being downloaded and can't be "
                                        "deleted until that has ended:\r\nb.rld")});
    QVERIFY(bench.isStored("b.rld"));
    QVERIFY(bench.isStored("c.rld"));
    bench.select({2});
    bench.button("pushButton_delete_selected_logfile")->click();
    QVERIFY(!bench.isStored("a.rld"));
}

void tst_LoggerMainViewDeleting::manyFilesThatAreBeingDownloadedAreCounted()
{
    MainViewBench &bench = *m_bench;
    QStringList names;
    for (int i = 10; i < 22; ++i) {
        names += QString::number(i);
        bench.store(qPrintable(names.last()), 10);
    }
    bench.connectAndRead();
    bench.page->setFilesUnderWay([names] { return names; });
    bench.table()->selectAll();
    bench.button("pushButton_delete_selected_logfile")->click();
    QVERIFY2(bench.prompt.shown.value(0).endsWith(QStringLiteral("\r\n12\r\nand 2 more")),
             qPrintable(bench.prompt.shown.value(0)));
}

void tst_LoggerMainViewDeleting::theDeleteKeyDeletes()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_bench->page.get()));
    m_bench->select({0});
    m_bench->table()->setFocus();
    QTest::keyClick(m_bench->table(), Qt::Key_Delete);
    QCOMPARE(m_bench->prompt.shown.size(), 1);
}

QTEST_MAIN(tst_LoggerMainViewDeleting)
#include "tst_logger_main_view_deleting.moc"
