#include "app/log/stdlogfileclass.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

namespace {

const QString fatalOption = QStringLiteral("--end-by-a-fatal-message");

} // namespace

class tst_StdLogFileClass : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theLevelDecidesWhatPasses_data();
    void theLevelDecidesWhatPasses();
    void aLineHasTimeWordContextAndMessage_data();
    void aLineHasTimeWordContextAndMessage();
    void theContextIsTheCategoryWhereNoFileIsKnown();
    void messagesOfTheProcessReachTheFile();
    void messagesBelowTheLevelDoNot();
    void noLineIsLostWhenItIsDestroyed();
    void messagesOfManyThreadsAllArriveWhole();
    void aFatalMessageIsInTheFileWhenTheProgramHasEnded();
    void theEarlierHandlerIsBackAfterwards();
    void theFolderIsMade();
    void theDefaultFileLiesInTheUsersStateFolder();

private:
    QString content() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void tst_StdLogFileClass::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->filePath(QStringLiteral("zds.log"));
}

QString tst_StdLogFileClass::content() const
{
    QFile file(m_path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void tst_StdLogFileClass::theLevelDecidesWhatPasses_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QVector<int>>("passing");
    QTest::newRow("0: nothing") << 0 << QVector<int>();
    QTest::newRow("1: fatal") << 1 << QVector<int>({QtFatalMsg});
    QTest::newRow("2: critical") << 2 << QVector<int>({QtFatalMsg, QtCriticalMsg});
    QTest::newRow("3: warning") << 3 << QVector<int>({QtFatalMsg, QtCriticalMsg, QtWarningMsg});
    QTest::newRow("4: info") << 4
                             << QVector<int>({QtFatalMsg, QtCriticalMsg, QtWarningMsg, QtInfoMsg});
    QTest::newRow("5: debug") << 5
                              << QVector<int>({QtFatalMsg, QtCriticalMsg, QtWarningMsg, QtInfoMsg,
                                               QtDebugMsg});
    QTest::newRow("6: nothing") << 6 << QVector<int>();
    QTest::newRow("-1: nothing") << -1 << QVector<int>();
}

void tst_StdLogFileClass::theLevelDecidesWhatPasses()
{
    QFETCH(int, level);
    QVector<int> passing;
    for (const QtMsgType type : {QtFatalMsg, QtCriticalMsg, QtWarningMsg, QtInfoMsg, QtDebugMsg})
        if (StdLogFileClass::passes(level, type))
            passing.append(type);
    QTEST(passing, "passing");
}

void tst_StdLogFileClass::aLineHasTimeWordContextAndMessage_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("word");
    QTest::newRow("debug") << int(QtDebugMsg) << QStringLiteral("Debug");
    QTest::newRow("info") << int(QtInfoMsg) << QStringLiteral("Info");
    QTest::newRow("warning") << int(QtWarningMsg) << QStringLiteral("Warning");
    QTest::newRow("critical") << int(QtCriticalMsg) << QStringLiteral("Critical");
    QTest::newRow("fatal") << int(QtFatalMsg) << QStringLiteral("Fatal");
}

void tst_StdLogFileClass::aLineHasTimeWordContextAndMessage()
{
    QFETCH(int, type);
    QFETCH(QString, word);
    const QDateTime time(QDate(2024, 2, 3), QTime(4, 5, 6, 78));
    const QMessageLogContext context("/some/where/file.cpp", 9, "function()", "default");
    QCOMPARE(StdLogFileClass::lineOf(static_cast<QtMsgType>(type), context,
                                     QStringLiteral("a text"), time),
             QStringLiteral("03-02-2024 04:05:06:078 [%1] file.cpp:9: a text\r\n").arg(word));
}

void tst_StdLogFileClass::theContextIsTheCategoryWhereNoFileIsKnown()
{
    const QMessageLogContext context(nullptr, 0, nullptr, "default");
    const QString line = StdLogFileClass::lineOf(QtInfoMsg, context, QStringLiteral("a text"),
                                                 QDateTime::currentDateTime());
    QVERIFY(line.endsWith(QStringLiteral(" [Info] default: a text\r\n")));
}

void tst_StdLogFileClass::messagesOfTheProcessReachTheFile()
{
    StdLogFileClass log(5, m_path);
    qDebug("one");
    qInfo("two");
    log.flush();
    const QRegularExpression lines(QStringLiteral(
        R"(^\d\d-\d\d-\d{4} \d\d:\d\d:\d\d:\d{3} \[Debug\] tst_stdlogfileclass\.cpp:\d+: one\r\n)"
        R"(.+ \[Info\] tst_stdlogfileclass\.cpp:\d+: two\r\n$)"));
    QVERIFY2(lines.match(content()).hasMatch(), qPrintable(content()));
}

void tst_StdLogFileClass::messagesBelowTheLevelDoNot()
{
    StdLogFileClass log(4, m_path);
    qDebug("one");
    qInfo("two");
    log.flush();
    QVERIFY(!content().contains(QStringLiteral("one")));
    QVERIFY(content().contains(QStringLiteral("two")));
}

void tst_StdLogFileClass::noLineIsLostWhenItIsDestroyed()
{
    constexpr int lines = 5000;
    {
        const StdLogFileClass log(5, m_path);
        for (int i = 0; i < lines; ++i)
            qDebug("line %d", i);
    }
    QCOMPARE(content().count(QStringLiteral("\r\n")), lines);
    QVERIFY(content().endsWith(QStringLiteral("line 4999\r\n")));
}

void tst_StdLogFileClass::messagesOfManyThreadsAllArriveWhole()
{
    {
        const StdLogFileClass log(5, m_path);
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([] {
                for (int i = 0; i < 500; ++i)
                    qDebug("a line");
            });
        for (std::thread &thread : threads)
            thread.join();
    }
    QStringList lines = content().split(QStringLiteral("\r\n"));
    QVERIFY(lines.takeLast().isEmpty());
    QCOMPARE(lines.size(), 4 * 500);
    for (const QString &line : qAsConst(lines))
        QVERIFY2(line.endsWith(QStringLiteral(": a line")), qPrintable(line));
}

void tst_StdLogFileClass::aFatalMessageIsInTheFileWhenTheProgramHasEnded()
{
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(), {fatalOption, m_path});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);
    QVERIFY2(content().endsWith(QStringLiteral(": the end\r\n")), qPrintable(content()));
    QVERIFY(content().contains(QStringLiteral("before")));
}

void tst_StdLogFileClass::theEarlierHandlerIsBackAfterwards()
{
    {
        const StdLogFileClass log(5, m_path);
    }
    QTest::ignoreMessage(QtDebugMsg, "after the log");
    qDebug("after the log");
    QVERIFY(!content().contains(QStringLiteral("after")));
}

void tst_StdLogFileClass::theFolderIsMade()
{
    m_path = m_folder->filePath(QStringLiteral("a/b/zds.log"));
    {
        const StdLogFileClass log(5, m_path);
        qInfo("here");
    }
    QVERIFY(content().contains(QStringLiteral("here")));
}

void tst_StdLogFileClass::theDefaultFileLiesInTheUsersStateFolder()
{
#ifdef Q_OS_WIN
    QVERIFY(StdLogFileClass::defaultPath().endsWith(QStringLiteral("/zds.log")));
#else
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", "/some/state");
    QCOMPARE(StdLogFileClass::defaultPath(), QStringLiteral("/some/state/zds/zds.log"));
    qputenv("XDG_STATE_HOME", "relative");
    QVERIFY(StdLogFileClass::defaultPath().endsWith(QStringLiteral("/.local/state/zds/zds.log")));
    qputenv("XDG_STATE_HOME", before);
#endif
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == fatalOption) {
        const StdLogFileClass log(5, arguments.at(2));
        qInfo("before");
        qFatal("the end");
    }
    tst_StdLogFileClass test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_stdlogfileclass.moc"
