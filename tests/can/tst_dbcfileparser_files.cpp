#include "dbctestfile.h"
#include "tests/app/messagesink.h"

#include <QtTest>

#include <algorithm>
#include <memory>
#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {

// Some megabytes of messages, signals and comments.
QByteArray largeFile()
{
    QByteArray text;
    for (int i = 1; i <= 20000; ++i)
        text += "BO_ " + QByteArray::number(i) + " Message: 8 ECU1\n" + signalLine("A")
                + signalLine("B") + "\n";
    for (int i = 1; i <= 20000; ++i)
        text += "CM_ SG_ " + QByteArray::number(i) + " A \"a comment of some length\";\n";
    return text;
}

// The lines of the diagnostic log that are written while an object lives.
QStringList logged;

void collect(QtMsgType, const QMessageLogContext &, const QString &text)
{
    logged.append(text);
}

} // namespace

// What load() does with files, and what it tells while it does.
class tst_DbcFileParser_Files : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void whatCanNotBeOpenedGivesNoText_data();
    void whatCanNotBeOpenedGivesNoText();
    void aPipeIsNotWaitedFor();
    void aFileWithoutPermissionGivesNoText();
    void aFileThatCanNotBeReadGivesTheCause();
    void aFileThatIsTooLargeIsNotRead();
    void aFileThatDoesNotKnowItsSizeIsRead();
    void aLineOfMegabytesIsCutInTheMessage();
    void aLineIsNotCutInsideACharacter();
    void aTextWithPlaceholdersStaysAsItIs();
    void everyTruncationEndsWithATextOrSignals();
    void signalsInFrontOfAnErrorStay();
    void anObjectIsUsedAgain();
    void takenSignalsAreTheCallers();
    void progressGrowsToTheSizeOfTheFile();
    void aRefusalCancelsAtAnyStep();
    void afterACancelTheNextLoadIsFine();
    void clearedItHoldsNothing();
    void theLoadIsLogged();
    void theDumpShowsEverySignal();
    void theDumpOfManySignalsIsCut();

private:
    [[nodiscard]] QString write(const QByteArray &bytes) const
    {
        QFile file(m_folder->filePath(QStringLiteral("a.dbc")));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no test file");
        return file.fileName();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_DbcFileParser_Files::whatCanNotBeOpenedGivesNoText_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << QString();
    QTest::newRow("missing file") << QStringLiteral("missing.dbc");
    QTest::newRow("folder") << QDir::tempPath();
#ifdef Q_OS_UNIX
    QTest::newRow("device without end") << QStringLiteral("/dev/zero");
#endif
}

void tst_DbcFileParser_Files::whatCanNotBeOpenedGivesNoText()
{
    QFETCH(QString, path);
    DbcFileParser parser;
    QVERIFY(!parser.load(path));
    QCOMPARE(parser.errorText(), QString());
    QVERIFY(!parser.isCancelled());
    QVERIFY(parser.signalList().isEmpty());
}

void tst_DbcFileParser_Files::aPipeIsNotWaitedFor()
{
#ifdef Q_OS_UNIX
    const QString pipe = m_folder->filePath(QStringLiteral("pipe.dbc"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    DbcFileParser parser;
    QVERIFY(!parser.load(pipe));
    QCOMPARE(parser.errorText(), QString());
#else
    QSKIP("There are no named pipes in folders here.");
#endif
}

void tst_DbcFileParser_Files::aFileWithoutPermissionGivesNoText()
{
    const QString path = write(engineMessage + signalLine("A"));
    QFile::setPermissions(path, {});
    if (QFile probe(path); probe.open(QIODevice::ReadOnly))
        QSKIP("Permissions don't hold for this user.");
    DbcFileParser parser;
    QVERIFY(!parser.load(path));
    QCOMPARE(parser.errorText(), QString());
    QVERIFY(parser.signalList().isEmpty());
}

void tst_DbcFileParser_Files::aFileThatCanNotBeReadGivesTheCause()
{
    const QString unreadable = QStringLiteral("/proc/self/mem"); // its first page never is
    if (!QFile::exists(unreadable))
        QSKIP("No file here opens and can't be read.");
    DbcFileParser parser;
    QVERIFY(!parser.load(unreadable));
    QVERIFY2(parser.errorText().startsWith(QStringLiteral("DBC-File: Unable to read the file: ")),
             qPrintable(parser.errorText()));
}

void tst_DbcFileParser_Files::aFileThatIsTooLargeIsNotRead()
{
    const QString path = write(engineMessage);
    QVERIFY(QFile::resize(path, qint64(1) << 30)); // holes: a line of 1 GiB
    DbcFileParser parser;
    int reports = 0;
    parser.setProgress([&](qint64, qint64) { return ++reports > 0; });
    QVERIFY(!parser.load(path));
    QCOMPARE(parser.errorText(),
             QStringLiteral("DBC-File: The file is too large, at most 256 MiB are read"));
    QCOMPARE(reports, 0);
}

void tst_DbcFileParser_Files::aFileThatDoesNotKnowItsSizeIsRead()
{
    const QString file = QStringLiteral("/proc/self/status"); // its size is 0
    if (!QFile::exists(file))
        QSKIP("No file here has an unknown size.");
    DbcFileParser parser;
    QVERIFY2(parser.load(file), qPrintable(parser.errorText()));
    QVERIFY(parser.signalList().isEmpty());
}

void tst_DbcFileParser_Files::aLineOfMegabytesIsCutInTheMessage()
{
    const QByteArray line = " SG_ " + QByteArray(0x500000, 'x');
    const LoadedDbc dbc(engineMessage + line);
    QVERIFY(!dbc.ok);
    QCOMPARE(dbc.parser.errorText(),
             QStringLiteral("DBC-File: Invalid line-structure, line number 2 \r\n( %1... )")
                 .arg(QString::fromLatin1(line.left(2000))));
}

void tst_DbcFileParser_Files::aLineIsNotCutInsideACharacter()
{
    for (int shift = 0; shift < 4; ++shift) {
        const QByteArray line = "BO_ " + QByteArray(shift, 'x')
                                + QString::fromUtf8("\U0001F600").repeated(600).toUtf8();
        const LoadedDbc dbc(line);
        const QString shown = dbc.parser.errorText().section(QStringLiteral("( "), 1);
        QVERIFY(!shown.contains(QChar(QChar::ReplacementCharacter)));
        QVERIFY(shown.endsWith(QString::fromUtf8("\U0001F600... )")));
    }
}

void tst_DbcFileParser_Files::aTextWithPlaceholdersStaysAsItIs()
{
    const LoadedDbc dbc("BO_ %1 %2 %3 %99\n");
    QCOMPARE(dbc.parser.errorText(),
             QStringLiteral("DBC-File: Unable to parse Message-ID, line number 1 \r\n"
                            "( BO_ %1 %2 %3 %99 )"));
}

void tst_DbcFileParser_Files::everyTruncationEndsWithATextOrSignals()
{
    const QByteArray whole =
        "\xEF\xBB\xBF"
        "VERSION \"\"\r\nBO_ 291 Engine: 8 ECU1\r\n"
        " SG_ Caf\u00e9 m3 : 7|16@0- (0.25,-40) [-40|1e3] \"m / s\" ECU2\r\n\r\n"
        "CM_ SG_ 291 Caf\u00e9 \"one\r\ntwo\";\r\nVAL_ 291 A 0 \"off\" ;\r\n"
        "SIG_VALTYPE_ 291 A : 1;\r\n";
    for (int size = 0; size <= whole.size(); ++size) {
        const LoadedDbc dbc(whole.left(size));
        QCOMPARE(dbc.ok, dbc.parser.errorText().isEmpty());
        QVERIFY(!dbc.ok || dbc.count() == dbc.parser.summary().signal_count);
    }
}

void tst_DbcFileParser_Files::signalsInFrontOfAnErrorStay()
{
    const LoadedDbc dbc(engineMessage + signalLine("A") + " SG_ B\n" + signalLine("C"));
    QVERIFY(!dbc.ok);
    QCOMPARE(dbc.names(), QStringLiteral("A"));
}

void tst_DbcFileParser_Files::anObjectIsUsedAgain()
{
    DbcFileParser parser;
    QVERIFY(!parser.load(write(engineMessage + signalLine("A") + " SG_ B\n")));
    QVERIFY(parser.load(write(engineMessage + signalLine("C"))));
    QCOMPARE(parser.errorText(), QString());
    QCOMPARE(parser.signalList().size(), 1);
    QCOMPARE(parser.signalList().first()->name, QStringLiteral("C"));
    QCOMPARE(parser.summary().signal_count, 1);
    QVERIFY(!parser.load(m_folder->filePath(QStringLiteral("missing"))));
    QVERIFY(parser.signalList().isEmpty());
}

void tst_DbcFileParser_Files::takenSignalsAreTheCallers()
{
    QList<StreamingClass_DBC_Signal *> taken;
    {
        DbcFileParser parser;
        QVERIFY(parser.load(write(engineMessage + signalLine("A"))));
        taken = parser.takeSignals();
        QVERIFY(parser.signalList().isEmpty());
    }
    QCOMPARE(taken.size(), 1);
    QCOMPARE(taken.first()->name, QStringLiteral("A"));
    qDeleteAll(taken);
}

void tst_DbcFileParser_Files::progressGrowsToTheSizeOfTheFile()
{
    const QByteArray bytes = largeFile();
    QVector<qint64> positions;
    DbcFileParser parser;
    parser.setProgress([&](qint64 done, qint64 total) {
        positions.append(done);
        return total == bytes.size();
    });
    QVERIFY(parser.load(write(bytes)));
    QVERIFY(std::is_sorted(positions.begin(), positions.end()));
    QCOMPARE(positions.first(), qint64(0));
    QVERIFY(positions.last() <= bytes.size());
    QVERIFY(positions.last() > bytes.size() * 2 / 3);
    QVERIFY(positions.size() >= 9); // three steps over more than 2 MiB
}

void tst_DbcFileParser_Files::aRefusalCancelsAtAnyStep()
{
    const QString path = write(largeFile());
    DbcFileParser parser;
    int calls = 0;
    parser.setProgress([&](qint64, qint64) { return ++calls > 0; });
    QVERIFY(parser.load(path));
    const int all = calls;
    for (int allowed = 0; allowed < all; ++allowed) {
        calls = 0;
        parser.setProgress([&](qint64, qint64) { return ++calls <= allowed; });
        QVERIFY(!parser.load(path));
        QCOMPARE(calls, allowed + 1);
        QVERIFY(parser.isCancelled());
        QCOMPARE(parser.errorText(), QString());
        QVERIFY(parser.signalList().isEmpty());
        QCOMPARE(parser.summary().messages, 0);
    }
}

void tst_DbcFileParser_Files::afterACancelTheNextLoadIsFine()
{
    const QString path = write(engineMessage + signalLine("A"));
    DbcFileParser parser;
    parser.setProgress([](qint64, qint64) { return false; });
    QVERIFY(!parser.load(path));
    QVERIFY(parser.isCancelled());
    parser.setProgress({});
    QVERIFY(parser.load(path));
    QVERIFY(!parser.isCancelled());
    QCOMPARE(parser.signalList().size(), 1);
}

void tst_DbcFileParser_Files::clearedItHoldsNothing()
{
    DbcFileParser parser;
    QVERIFY(!parser.load(write(engineMessage + signalLine("A") + " SG_ broken\n")));
    QCOMPARE(parser.signalList().size(), 1);
    parser.clear();
    QVERIFY(parser.signalList().isEmpty());
    QCOMPARE(parser.errorText(), QString());
    QCOMPARE(parser.summary().messages, 0);
}

void tst_DbcFileParser_Files::theLoadIsLogged()
{
    logged.clear();
    const QString path = write(engineMessage);
    DbcFileParser parser;
    const QtMessageHandler before = qInstallMessageHandler(collect);
    const bool ok = parser.load(path);
    qInstallMessageHandler(before);
    QVERIFY(ok);
    QCOMPARE(logged.size(), 2);
    QCOMPARE(logged.first(), QStringLiteral("readed filesize =  %1").arg(engineMessage.size()));
    QVERIFY(logged.last().startsWith(QStringLiteral("dbc-file load processtime=  ")));
    QVERIFY(logged.last().endsWith(QStringLiteral(" msec")));
}

void tst_DbcFileParser_Files::theDumpShowsEverySignal()
{
    const LoadedDbc dbc(engineMessage + signalLine("Page M") + signalLine("A m7") + signalLine("B")
                        + "\nCM_ SG_ 291 A \"first\";\n");
    logged.clear();
    const QtMessageHandler before = qInstallMessageHandler(collect);
    dbc.parser.debugDump();
    qInstallMessageHandler(before);
    const QString row(60, QLatin1Char('-'));
    const QStringList expected{row,
                               QStringLiteral("Debug DBC-Output"),
                               row,
                               QStringLiteral("Signal: Page msgID: 00000123 StBit:0 BitLen:8"),
                               QStringLiteral("Page Multiplexor-Signal "),
                               QStringLiteral("Signal: A msgID: 00000123 StBit:0 BitLen:8"),
                               QStringLiteral("A Multiplexed mux-value: 7 -Signal-Description "
                                              "first"),
                               QStringLiteral("Signal: B msgID: 00000123 StBit:0 BitLen:8"),
                               QStringLiteral("B -Signal-Description "),
                               row,
                               QStringLiteral(" -> Message-Count  1"),
                               QStringLiteral(" -> Signal-Count with mux 2")};
    QCOMPARE(logged, expected);
}

void tst_DbcFileParser_Files::theDumpOfManySignalsIsCut()
{
    QByteArray text = engineMessage;
    for (int i = 0; i < 502; ++i)
        text += signalLine("S" + QByteArray::number(i));
    const LoadedDbc dbc(text);
    const MessageSink log;
    dbc.parser.debugDump();
    const QStringList lines = log.messages();
    QCOMPARE(lines.filter(QStringLiteral("Debug: Signal: ")).size(), 500);
    QVERIFY(lines.contains(QStringLiteral("Debug: and 2 more signals")));
}

QTEST_GUILESS_MAIN(tst_DbcFileParser_Files)
#include "tst_dbcfileparser_files.moc"
