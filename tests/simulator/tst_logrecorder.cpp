#include "MDF4Conversion/rawlog/logfilereader.h"
#include "link/protocol/framereader.h"
#include "simulator/livestream.h"
#include "simulator/loggerstate.h"
#include "simulator/logrecorder.h"
#include "simulator/logstorage.h"
#include "tests/support/conversionharness.h"

#include <QDir>
#include <QMap>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using simulator::LogRecorder;

namespace {

constexpr qint64 second_us = 1'000'000;
const QDateTime start(QDate(2026, 2, 3), QTime(4, 5, 6), Qt::UTC);

// A logger with a folder, whose time is what the test says.
class Logger
{
public:
    Logger()
    {
        state.logFolder = m_folder.path();
        state.recordsLogs = true;
        state.configuration.event.event_name = QStringLiteral("Test");
    }

    // Records on to this uptime, in the steps that the simulator makes.
    void runUntil(qint64 end_us, qint64 limit = LogRecorder::maxLogBytes)
    {
        while (now_us < end_us) {
            now_us = qMin(end_us, now_us + LogRecorder::period_ms * 1000);
            advance(limit);
        }
    }
    void advance(qint64 limit = LogRecorder::maxLogBytes)
    {
        recorder.advance(now_us, start.addMSecs(now_us / 1000), limit);
    }
    void stop()
    {
        state.isLoggingStopped = true;
        advance();
    }

    [[nodiscard]] QStringList logs() const
    {
        QStringList paths;
        for (const simulator::StoredFile &file : simulator::storedFiles(m_folder.path()))
            paths += m_folder.filePath(file.name);
        return paths;
    }

    qint64 now_us = 0;
    simulator::LoggerState state;
    LogRecorder recorder{state};

private:
    QTemporaryDir m_folder;
};

QVector<StdLogEntry> entriesIn(const QString &path)
{
    QVector<StdLogEntry> entries;
    LogFileReader reader(path);
    for (bool atEnd = !reader.isOpen(); !atEnd;) {
        StdLogEntry entry;
        reader.next(entry, atEnd);
        if (!atEnd)
            entries += entry;
    }
    return entries;
}

QVector<StdLogEntry> entriesOf(const QByteArray &bytes)
{
    QVector<StdLogEntry> entries;
    protocol::FrameReader reader;
    for (const QByteArray &frame : reader.feed(bytes)) {
        StdLogEntry entry;
        entry.rebuild(reinterpret_cast<const uint8_t *>(frame.constData()),
                      std::size_t(frame.size()));
        entries += entry;
    }
    return entries;
}

// Kind, source, time and data of what was measured.
QStringList measured(const QVector<StdLogEntry> &entries)
{
    const QVector<int> kinds{rawlog::RLD_CAN, rawlog::RLD_AGM,      rawlog::RLD_D4MOD,
                             rawlog::RLD_GPS, rawlog::RLD_ETHERCAT, rawlog::RLD_ETH};
    QStringList list;
    for (const StdLogEntry &entry : entries) {
        if (!kinds.contains(entry.type))
            continue;
        const QByteArray data(reinterpret_cast<const char *>(entry.data.data()),
                              int(entry.data.size()));
        list += QStringLiteral("%1 %2 %3 %4 %5")
                    .arg(entry.type)
                    .arg(entry.number)
                    .arg(entry.timestamp)
                    .arg(entry.id)
                    .arg(QString::fromLatin1(data.toHex()));
    }
    return list;
}

void keepOnly(TerminalCanCfg &channel, const QVector<quint32> &ids)
{
    for (int i = channel.dbc_signals.size() - 1; i >= 0; --i) {
        if (!ids.contains(channel.dbc_signals.at(i)->msg_id))
            channel.dbc_signals.removeAt(i);
    }
}

void switchEverythingOff(simulator::LoggerState &state)
{
    for (TerminalCanCfg &can : state.configuration.can)
        can.enabled = 0;
    for (TerminalRs485Cfg &rs485 : state.configuration.rs485)
        rs485.d4mod.enabled = 0;
    for (TerminalEtherCatCfg &master : state.configuration.ethercat)
        master.enabled = 0;
    state.configuration.agm.enabled = 0;
    state.configuration.gps.gps_enabled = 0;
    state.configuration.eth.module_selection = 0;
}

} // namespace

class tst_LogRecorder : public QObject
{
    Q_OBJECT

private slots:
    void whatIsLiveIsWhatIsRecorded();
    void theConfigurationStandsAtTheHead();
    void aLogBeginsWithItsTimeAndSyncStamps();
    void stoppingFinishesTheLogAndGoingOnBeginsTheNext();
    void nothingIsRecordedUnlessItIsWanted_data();
    void nothingIsRecordedUnlessItIsWanted();
    void aChangedConfigurationGetsALogOfItsOwn();
    void aBusyTimeIsRecordedWhole();
    void aLongPauseEndsTheLog();
    void aFullLogIsFinishedAndNoneFollows();
    void whatFailsIsToldOnce();
    void anotherFolderGetsAnotherLog();
    void framesOfARecordedLogBecomeSamples();
    void everySourceOfALogIsConverted();
};

void tst_LogRecorder::whatIsLiveIsWhatIsRecorded()
{
    Logger logger;
    logger.now_us = 4'321'000;
    simulator::LiveStream stream(logger.state);
    stream.restart(logger.now_us);
    logger.advance();
    logger.runUntil(logger.now_us + 2 * second_us);
    QByteArray live;
    for (qint64 at = 4'321'000; at < logger.now_us;) {
        at += 20'000;
        live += stream.entriesUntil(at);
    }
    logger.stop();
    QCOMPARE(logger.logs().size(), 1);
    const QStringList recorded = measured(entriesIn(logger.logs().first()));
    QVERIFY(recorded.size() > 2000);
    QCOMPARE(recorded, measured(entriesOf(live)));
}

void tst_LogRecorder::theConfigurationStandsAtTheHead()
{
    Logger logger;
    logger.state.configuration.can[0].export_custom_name = QStringLiteral("mine");
    logger.runUntil(second_us);
    logger.stop();
    const LogFileReader reader(logger.logs().value(0));
    QVERIFY2(reader.isOpen(), qPrintable(reader.failure()));
    QVERIFY(record::toBytes(*reader.configuration())
            == record::toBytes(logger.state.configuration));
}

void tst_LogRecorder::aLogBeginsWithItsTimeAndSyncStamps()
{
    Logger logger;
    logger.now_us = 25 * second_us;
    logger.runUntil(26 * second_us);
    logger.stop();
    const QString path = logger.logs().value(0);
    QCOMPARE(QFileInfo(path).fileName(), QStringLiteral("2026-02-03_04-05-31_Test.rld"));
    const QVector<StdLogEntry> entries = entriesIn(path);
    QVERIFY(!entries.isEmpty());
    QCOMPARE(int(entries.first().type), int(rawlog::RLD_UTC_START));
    QCOMPARE(qFromLittleEndian<quint64>(entries.first().data.data()),
             quint64(start.addMSecs(25'100).toMSecsSinceEpoch()) * 1000);
    QMap<int, quint32> stamps; // by processor
    for (const StdLogEntry &entry : entries) {
        if (entry.type == rawlog::RLD_CYCLIC_TS)
            stamps[entry.number] = entry.timestamp;
    }
    const auto begin_us = quint32(drive::clockAtStart_us + 25'100'000);
    QCOMPARE(stamps.keys(), (QList<int>{0, 1, 2}));
    for (const quint32 stamp : qAsConst(stamps))
        QVERIFY(stamp >= begin_us && stamp < begin_us + 1000);
}

void tst_LogRecorder::stoppingFinishesTheLogAndGoingOnBeginsTheNext()
{
    Logger logger;
    logger.runUntil(second_us);
    QVERIFY(logger.recorder.isRecording());
    QCOMPARE(logger.logs().size(), 0);
    logger.stop();
    QCOMPARE(logger.logs().size(), 1);
    logger.runUntil(3 * second_us);
    QVERIFY(!logger.recorder.isRecording());
    logger.state.isLoggingStopped = false;
    logger.runUntil(4 * second_us);
    logger.recorder.finish();
    QCOMPARE(logger.logs().size(), 2);
    const QVector<StdLogEntry> second = entriesIn(logger.logs().last());
    for (const StdLogEntry &entry : second)
        QVERIFY(entry.timestamp == 0 || entry.timestamp >= drive::clockAtStart_us + 3 * second_us);
}

void tst_LogRecorder::nothingIsRecordedUnlessItIsWanted_data()
{
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<bool>("hasFolder");
    QTest::newRow("switched off") << false << true;
    QTest::newRow("no storage") << true << false;
}

void tst_LogRecorder::nothingIsRecordedUnlessItIsWanted()
{
    QFETCH(bool, isOn);
    QFETCH(bool, hasFolder);
    Logger logger;
    logger.state.recordsLogs = isOn;
    if (!hasFolder)
        logger.state.logFolder.clear();
    logger.runUntil(second_us);
    QVERIFY(!logger.recorder.isRecording());
}

// Several writes in a row make one new log, and no entry stands under the wrong configuration.
void tst_LogRecorder::aChangedConfigurationGetsALogOfItsOwn()
{
    Logger logger;
    logger.runUntil(2 * second_us);
    for (const int channel : {0, 1, 2}) {
        logger.state.configuration.can[std::size_t(channel)].enabled = 0;
        logger.recorder.configurationChanged();
        logger.runUntil(logger.now_us + second_us / 2);
    }
    logger.runUntil(6 * second_us);
    logger.stop();
    QCOMPARE(logger.logs().size(), 2);
    for (const QString &path : logger.logs()) {
        const LogFileReader reader(path);
        const bool isEnabled = reader.configuration()->can[0].enabled != 0;
        QCOMPARE(isEnabled, path == logger.logs().first());
        bool hasFrames = false;
        for (const StdLogEntry &entry : entriesIn(path))
            hasFrames = hasFrames || (entry.type == rawlog::RLD_CAN && entry.number == 0);
        QCOMPARE(hasFrames, isEnabled);
    }
}

void tst_LogRecorder::aBusyTimeIsRecordedWhole()
{
    Logger steady;
    Logger busy;
    for (Logger *logger : {&steady, &busy}) {
        switchEverythingOff(logger->state);
        logger->state.configuration.can[0].enabled = 1;
        logger->advance();
    }
    steady.runUntil(12 * second_us);
    busy.now_us = 12 * second_us;
    busy.advance();
    steady.stop();
    busy.stop();
    QCOMPARE(measured(entriesIn(busy.logs().value(0))),
             measured(entriesIn(steady.logs().value(0))));
}

void tst_LogRecorder::aLongPauseEndsTheLog()
{
    Logger logger;
    logger.runUntil(second_us);
    logger.now_us += LogRecorder::longestPause_us + second_us;
    logger.advance();
    QCOMPARE(logger.logs().size(), 1);
    QVERIFY(logger.recorder.isRecording());
    logger.runUntil(logger.now_us + second_us);
    logger.stop();
    const QString second = logger.logs().last();
    QVERIFY(QFileInfo(second).size() < 2 * QFileInfo(logger.logs().first()).size());
}

void tst_LogRecorder::aFullLogIsFinishedAndNoneFollows()
{
    constexpr qint64 limit = 200'000;
    Logger logger;
    logger.runUntil(30 * second_us, limit);
    QCOMPARE(logger.logs().size(), 1);
    QVERIFY(!logger.recorder.isRecording());
    QVERIFY(QFileInfo(logger.logs().first()).size() >= limit);
    QVERIFY(QFileInfo(logger.logs().first()).size() < 2 * limit);
    logger.stop();
    logger.state.isLoggingStopped = false;
    logger.runUntil(31 * second_us);
    QVERIFY(logger.recorder.isRecording());
}

void tst_LogRecorder::whatFailsIsToldOnce()
{
    Logger logger;
    logger.state.logFolder += QStringLiteral("/missing");
    const QSignalSpy failures(&logger.recorder, &LogRecorder::failed);
    logger.runUntil(5 * second_us);
    QCOMPARE(failures.size(), 1);
    QVERIFY(failures.first().first().toString().contains(QLatin1String("missing")));
}

void tst_LogRecorder::anotherFolderGetsAnotherLog()
{
    const QTemporaryDir other;
    Logger logger;
    logger.runUntil(second_us);
    logger.state.logFolder = other.path();
    logger.runUntil(2 * second_us);
    QCOMPARE(logger.logs().size(), 1);
    logger.stop();
    QCOMPARE(simulator::storedFiles(other.path()).size(), 1);
}

void tst_LogRecorder::framesOfARecordedLogBecomeSamples()
{
    constexpr quint32 engine = 0x0A5;
    constexpr quint32 brake = 0x1F1;
    Logger logger;
    switchEverythingOff(logger.state);
    logger.state.configuration.can[0].enabled = 1;
    keepOnly(logger.state.configuration.can[0], {engine, brake});
    logger.advance();
    logger.runUntil(5 * second_us);
    logger.stop();

    QMap<quint32, quint64> frames;
    QVector<double> speeds;
    for (const StdLogEntry &entry : entriesIn(logger.logs().value(0))) {
        if (entry.type != rawlog::RLD_CAN)
            continue;
        ++frames[entry.id];
        if (entry.id == engine)
            speeds += qFromLittleEndian<quint16>(entry.data.data()) * 0.25;
    }
    QCOMPARE(frames.keys(), (QList<quint32>{engine, brake}));

    ConversionHarness harness;
    harness.job.inputFile = logger.logs().first();
    const ConversionResult result = harness.convertFile();
    QVERIFY2(result.summary.written, qPrintable(result.messages.join(QLatin1Char('\n'))));
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.warnings, QStringList());
    QCOMPARE(result.summary.utcStart_us, quint64(start.toMSecsSinceEpoch()) * 1000);
    quint64 samples = 0;
    bool anySpeed = false;
    for (int group = 0; group < result.summary.groups.size(); ++group) {
        const quint64 inGroup = result.summary.groups.at(group).samples;
        if (!result.channelNames(group).contains(QStringLiteral("EngineSpeed")))
            continue;
        anySpeed = true;
        QCOMPARE(inGroup, frames[engine]);
        QCOMPARE(result.physical(group, "EngineSpeed"), speeds);
    }
    for (const ConversionSummary::Group &group : result.summary.groups) {
        for (const ConversionSummary::Channel &channel : group.channels) {
            if (channel.name == QLatin1String("BrakePressure"))
                samples += channel.samples;
        }
    }
    QVERIFY(anySpeed);
    QCOMPARE(samples, frames[brake]);
}

void tst_LogRecorder::everySourceOfALogIsConverted()
{
    Logger logger;
    logger.advance();
    logger.runUntil(6 * second_us);
    logger.stop();
    ConversionHarness harness;
    harness.job.inputFile = logger.logs().value(0);
    const ConversionResult result = harness.convertFile();
    QVERIFY2(result.summary.written, qPrintable(result.messages.join(QLatin1Char('\n'))));
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.warnings, QStringList());
    QCOMPARE(result.summary.skippedBytes, quint64(0));
    quint64 accelerations = 0;
    for (const ConversionSummary::Group &group : result.summary.groups)
        accelerations = qMax(accelerations, group.samples);
    QCOMPARE(accelerations, quint64(6000)); // the fastest source, at 1 kHz
}

QTEST_GUILESS_MAIN(tst_LogRecorder)
#include "tst_logrecorder.moc"
