#include "MDF4Conversion/rawlog/benchlog.h"
#include "MDF4Conversion/rawlog/logfilereader.h"

#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <map>

using benchlog::Plan;
using benchlog::Widths;

namespace {

// A log that is removed with its folder.
class Log
{
public:
    explicit Log(const Plan &plan)
        : failure(benchlog::write(path(), plan))
    {}
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("b.rld")); }

private:
    QTemporaryDir m_folder;

public:
    const QString failure;
};

QVector<StdLogEntry> entriesOf(const QString &path)
{
    LogFileReader reader(path);
    QVector<StdLogEntry> entries;
    StdLogEntry entry;
    bool atEnd = false;
    for (reader.next(entry, atEnd); !atEnd; reader.next(entry, atEnd))
        entries += entry;
    return entries;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_BenchLog : public QObject
{
    Q_OBJECT

private slots:
    void aLogHasTheEntriesOfItsPlan_data();
    void aLogHasTheEntriesOfItsPlan();
    void messagesComeByTurnsOverAllChannels();
    void everyFrameHasEightBytesOfTheirSignals();
    void timesRiseByATenthOfAMillisecond();
    void signalsFillTheFrame_data();
    void signalsFillTheFrame();
    void valuesWanderSlowly();
    void theSamePlanGivesTheSameBytes();
    void aMissingFolderIsNamed();
    void portionsOfAStreamMakeNoDifference();
};

void tst_BenchLog::aLogHasTheEntriesOfItsPlan_data()
{
    QTest::addColumn<int>("entries");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("a block of the writer") << 40'000;
    QTest::newRow("more than a block") << 100'001;
}

void tst_BenchLog::aLogHasTheEntriesOfItsPlan()
{
    QFETCH(int, entries);
    const Log log({entries, 7, Widths::Bytes});
    QVERIFY(log.failure.isNull());
    QCOMPARE(entriesOf(log.path()).size(), entries);
}

void tst_BenchLog::messagesComeByTurnsOverAllChannels()
{
    const Log log({600, 30, Widths::Bytes});
    std::map<QPair<int, quint32>, int> frames;
    for (const StdLogEntry &entry : entriesOf(log.path()))
        ++frames[{entry.number, entry.id}];
    QCOMPARE(frames.size(), std::size_t(30));
    for (const auto &message : frames) {
        QCOMPARE(message.second, 20);
        QVERIFY(message.first.first < 12);
    }
}

void tst_BenchLog::everyFrameHasEightBytesOfTheirSignals()
{
    const Plan plan{500, 50, Widths::Mixed};
    const Log log(plan);
    const LogFileReader reader(log.path());
    for (const StdLogEntry &entry : entriesOf(log.path())) {
        QVERIFY(entry.isComplete());
        QCOMPARE(int(entry.info), 8);
        int signalsOfMessage = 0;
        for (const auto *signal : reader.configuration()->can[entry.number].dbc_signals)
            signalsOfMessage += signal->msg_id == entry.id && signal->dlc == 8 ? 1 : 0;
        QCOMPARE(signalsOfMessage, 8);
    }
}

void tst_BenchLog::timesRiseByATenthOfAMillisecond()
{
    const Log log({50, 60, Widths::Bytes});
    quint32 expected = 100;
    for (const StdLogEntry &entry : entriesOf(log.path())) {
        QCOMPARE(entry.timestamp, expected);
        expected += 100;
    }
}

void tst_BenchLog::signalsFillTheFrame_data()
{
    QTest::addColumn<bool>("mixed");
    QTest::newRow("bytes") << false;
    QTest::newRow("mixed widths") << true;
}

void tst_BenchLog::signalsFillTheFrame()
{
    QFETCH(bool, mixed);
    const auto configuration =
        benchlog::configuration({0, 1, mixed ? Widths::Mixed : Widths::Bytes});
    int bits = 0;
    for (const auto *signal : configuration->can[0].dbc_signals) {
        QCOMPARE(int(signal->start_bit), bits);
        bits += signal->bit_length;
    }
    QCOMPARE(bits, 64);
}

void tst_BenchLog::valuesWanderSlowly()
{
    const Log log({2'000, 1, Widths::Bytes});
    const QVector<StdLogEntry> entries = entriesOf(log.path());
    for (std::size_t i = 0; i < 8; ++i) {
        QSet<int> values;
        int largestStep = 0;
        for (int k = 1; k < entries.size(); ++k) {
            values.insert(entries[k].data[i]);
            largestStep = qMax(largestStep, qAbs(entries[k].data[i] - entries[k - 1].data[i]));
        }
        QVERIFY(values.size() > 2);
        QVERIFY(largestStep > 0 && largestStep <= 3);
    }
}

void tst_BenchLog::theSamePlanGivesTheSameBytes()
{
    const Log first({1'000, 9, Widths::Mixed});
    const Log second({1'000, 9, Widths::Mixed});
    QVERIFY(!contentOf(first.path()).isEmpty());
    QVERIFY(contentOf(first.path()) == contentOf(second.path()));
}

void tst_BenchLog::aMissingFolderIsNamed()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("none/b.rld"));
    QVERIFY(benchlog::write(path, Plan()).contains(QStringLiteral("b.rld")));
}

void tst_BenchLog::portionsOfAStreamMakeNoDifference()
{
    const Plan plan{1, 24, Widths::Mixed, 10};
    benchlog::EntryStream whole(plan, 5000);
    benchlog::EntryStream pieces(plan, 5000);
    const QByteArray bytes = whole.next(100);
    QByteArray joined;
    for (const int count : {33, 0, 67})
        joined += pieces.next(count);
    QCOMPARE(joined, bytes);
    StdLogEntry last;
    const int size = bytes.size() / 100;
    last.rebuild(reinterpret_cast<const uint8_t *>(bytes.constData()) + 99 * size,
                 std::size_t(size));
    QVERIFY(last.isComplete());
    QCOMPARE(last.timestamp, 6000U);
}

QTEST_GUILESS_MAIN(tst_BenchLog)
#include "tst_benchlog.moc"
