#include "app/log/debuglog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

namespace {

// Prints and free space of a DebugLog under test.
struct Bench
{
    std::mutex mutex;
    QStringList prints;
    std::atomic<qint64> free_bytes{qint64(DebugLog::minFreeBytes)}; // below 0: can't be read

    DebugLog::Surroundings surroundings()
    {
        DebugLog::Surroundings s;
        s.print = [this](const std::string &line) {
            const std::lock_guard<std::mutex> lock(mutex);
            if (line.rfind("DebugLog::startThread - ID:", 0) != 0)
                prints += QString::fromStdString(line);
        };
        s.free_space = [this]() -> std::optional<quint64> {
            if (free_bytes < 0)
                return std::nullopt;
            return static_cast<quint64>(free_bytes);
        };
        s.now = [] { return QDateTime(QDate(2024, 2, 3), QTime(4, 5, 6, 78)); };
        return s;
    }
};

} // namespace

class tst_DebugLog : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aSecondInitChangesNothing();
    void anOutputOutOfRangeFails_data();
    void anOutputOutOfRangeFails();
    void eachLevelHasItsTag_data();
    void eachLevelHasItsTag();
    void anOutputTakesMessagesUpToItsThreshold();
    void aSilentOutputTakesNothing();
    void aMessageGoesToEveryOutput();
    void aFileIsNamedByPrefixTimeAndExtension();
    void aFileThatCannotBeOpenedIsPrinted();
    void aMessageForAClosedFileIsPrintedOnce();
    void theFileIsClosedWhenSpaceRunsOut();
    void theFileIsClosedWhenSpaceCannotBeRead();
    void theFirstLineNeedsSpaceToo();
    void theOutputsCanBeUsedWhileTheyAreDeclared();
    void theSpaceOfTheCurrentDriveCanBeRead();
    void theThreadTellsItsStart();
    void allIsWrittenBeforeItIsDestroyed();
    void messagesBeforeInitAreDropped();

private:
    std::string prefix() const { return m_folder->filePath(QStringLiteral("zds_")).toStdString(); }
    QByteArray content() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_DebugLog::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

QByteArray tst_DebugLog::content() const
{
    QFile file(m_folder->filePath(QStringLiteral("zds_20240203_040506.log")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void tst_DebugLog::aSecondInitChangesNothing()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(!log.init(5));
    QCOMPARE(bench.prints, QStringList({QStringLiteral("DebugLog -> You can init only once!")}));
    QVERIFY(!log.initConsole(1, DebugLog::Level::Info));
    QVERIFY(log.initConsole(0, DebugLog::Level::Info));
}

void tst_DebugLog::anOutputOutOfRangeFails_data()
{
    QTest::addColumn<int>("id");
    QTest::newRow("one too many") << 2;
    QTest::newRow("negative") << -1;
}

void tst_DebugLog::anOutputOutOfRangeFails()
{
    QFETCH(int, id);
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(2));
    QVERIFY(!log.initFile(id, DebugLog::Level::Info, prefix(), "log"));
    QCOMPARE(bench.prints,
             QStringList(
                 {QStringLiteral("DebugLog -> output id: %1 instead of 2. Init failed!").arg(id)}));
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void tst_DebugLog::eachLevelHasItsTag_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("tag");
    const auto row = [](DebugLog::Level level, const char *tag) {
        QTest::newRow(tag) << static_cast<int>(level) << QString::fromLatin1(tag);
    };
    row(DebugLog::Level::Error, " Error  |");
    row(DebugLog::Level::Warn, " Warn   |");
    row(DebugLog::Level::Info, " Info   |");
    row(DebugLog::Level::Debug, " Debug  |");
    row(DebugLog::Level::DebugT, " DebugT |");
}

void tst_DebugLog::eachLevelHasItsTag()
{
    QFETCH(int, level);
    QFETCH(QString, tag);
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(log.initConsole(0, DebugLog::Level::DebugT));
    log.log(static_cast<DebugLog::Level>(level), "text");
    log.flush();
    QCOMPARE(bench.prints,
             QStringList({QStringLiteral("2024-02-03 04:05:06.078 |%1 text").arg(tag)}));
}

void tst_DebugLog::anOutputTakesMessagesUpToItsThreshold()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(log.initConsole(0, DebugLog::Level::Warn));
    log.log(DebugLog::Level::Error, "1");
    log.log(DebugLog::Level::Warn, "2");
    log.log(DebugLog::Level::Info, "3");
    log.log(DebugLog::Level::Silent, "4");
    log.flush();
    QCOMPARE(bench.prints.size(), 2);
}

void tst_DebugLog::aSilentOutputTakesNothing()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(2));
    QVERIFY(log.initConsole(0, DebugLog::Level::Silent));
    log.log(DebugLog::Level::Error, "1");
    log.flush();
    QVERIFY(bench.prints.isEmpty());
}

void tst_DebugLog::aMessageGoesToEveryOutput()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(2));
    QVERIFY(log.initConsole(0, DebugLog::Level::Info));
    QVERIFY(log.initFile(1, DebugLog::Level::Info, prefix(), "log"));
    log.log(DebugLog::Level::Info, "text");
    log.flush();
    QCOMPARE(bench.prints.size(), 1);
    QVERIFY(content().endsWith("\n2024-02-03 04:05:06.078 | Info   | text\n"));
}

void tst_DebugLog::aFileIsNamedByPrefixTimeAndExtension()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(log.initFile(0, DebugLog::Level::Info, prefix(), "txt"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files),
             QStringList({QStringLiteral("zds_20240203_040506.txt")}));
    QVERIFY(log.initFile(0, DebugLog::Level::Info, prefix(), "log"));
    QCOMPARE(content(),
             QByteArray::fromStdString("Starting Log File: " + prefix() + "20240203_040506.log\n"));
}

void tst_DebugLog::aFileThatCannotBeOpenedIsPrinted()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(!log.initFile(0, DebugLog::Level::Info, prefix() + "missing/", "log"));
    QCOMPARE(bench.prints.first().toStdString(),
             "DebugLog-> Failed to open file " + prefix() + "missing/20240203_040506.log!");
}

void tst_DebugLog::aMessageForAClosedFileIsPrintedOnce()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(!log.initFile(0, DebugLog::Level::Info, prefix() + "missing/", "log"));
    log.log(DebugLog::Level::Info, "1");
    log.log(DebugLog::Level::Info, "2");
    log.flush();
    QCOMPARE(bench.prints.mid(1), QStringList({QStringLiteral("File was not open..")}));
}

void tst_DebugLog::theFileIsClosedWhenSpaceRunsOut()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(log.initFile(0, DebugLog::Level::Info, prefix(), "log"));
    log.log(DebugLog::Level::Info, "enough");
    log.flush();
    bench.free_bytes = qint64(DebugLog::minFreeBytes) - 1;
    log.log(DebugLog::Level::Info, "too little");
    log.flush();
    bench.free_bytes = qint64(DebugLog::minFreeBytes);
    log.log(DebugLog::Level::Info, "closed for good");
    log.flush();
    QVERIFY(content().endsWith(
        " | Info   | enough\n2024-02-03 04:05:06.078 | Error  | System -> Storage space run out! "
        "Closing Logfile!\n"));
    QCOMPARE(bench.prints.last(), QStringLiteral("File was not open.."));
}

void tst_DebugLog::theFileIsClosedWhenSpaceCannotBeRead()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(log.initFile(0, DebugLog::Level::Info, prefix(), "log"));
    bench.free_bytes = -1;
    log.log(DebugLog::Level::Info, "text");
    log.flush();
    QVERIFY(content().endsWith(
        " | Error  | System -> Can't check free storage space! Closing Logfile!\n"));
    QVERIFY(!content().contains("text"));
}

void tst_DebugLog::theFirstLineNeedsSpaceToo()
{
    Bench bench;
    bench.free_bytes = qint64(DebugLog::minFreeBytes) - 1;
    DebugLog log(bench.surroundings());
    QVERIFY(log.init(1));
    QVERIFY(!log.initFile(0, DebugLog::Level::Info, prefix(), "log"));
    QCOMPARE(content(), QByteArray("2024-02-03 04:05:06.078 | Error  | System -> Storage space run "
                                   "out! Closing Logfile!\n"));
}

void tst_DebugLog::theOutputsCanBeUsedWhileTheyAreDeclared()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    std::thread user([&log] {
        while (!log.initConsole(0, DebugLog::Level::Info))
            std::this_thread::yield();
    });
    QVERIFY(log.init(1));
    user.join();
    log.log(DebugLog::Level::Info, "text");
    log.flush();
    QVERIFY(bench.prints.last().endsWith(QStringLiteral("| Info   | text")));
}

void tst_DebugLog::theSpaceOfTheCurrentDriveCanBeRead()
{
    QVERIFY(freeSpaceOfCurrentDrive().has_value());
}

void tst_DebugLog::theThreadTellsItsStart()
{
    std::mutex mutex;
    QStringList prints;
    {
        DebugLog::Surroundings surroundings;
        surroundings.print = [&](const std::string &line) {
            const std::lock_guard<std::mutex> lock(mutex);
            prints += QString::fromStdString(line);
        };
        DebugLog log(surroundings);
        QVERIFY(log.init(0));
    }
    QCOMPARE(prints.size(), 1);
    QVERIFY(prints.first().startsWith(QStringLiteral("DebugLog::startThread - ID:")));
}

void tst_DebugLog::allIsWrittenBeforeItIsDestroyed()
{
    Bench bench;
    {
        DebugLog log(bench.surroundings());
        QVERIFY(log.init(1));
        QVERIFY(log.initFile(0, DebugLog::Level::Info, prefix(), "log"));
        for (int i = 0; i < 1000; ++i)
            log.log(DebugLog::Level::Info, std::to_string(i));
    }
    QCOMPARE(content().count('\n'), 1001);
    QVERIFY(content().endsWith(" 999\n"));
}

void tst_DebugLog::messagesBeforeInitAreDropped()
{
    Bench bench;
    DebugLog log(bench.surroundings());
    log.log(DebugLog::Level::Error, "early");
    log.flush();
    QVERIFY(log.init(1));
    QVERIFY(log.initConsole(0, DebugLog::Level::Info));
    log.flush();
    QVERIFY(bench.prints.isEmpty());
}

QTEST_GUILESS_MAIN(tst_DebugLog)
#include "tst_debuglog.moc"
