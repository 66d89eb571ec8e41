#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/logconfiguration.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QTest>

namespace {

// A log of every source.
class Log : public ConversionHarness
{
public:
    Log()
    {
        configuration.gps.gps_enabled = configuration.agm.enabled = 1;
        configuration.rs485[0].d4mod.enabled = 1;
        auto &signal = testlog::addSignal(configuration.can[0], QStringLiteral("S"), 1, 0, 12);
        signal.little_endian = 0;
        addModule(configuration.can[0].a2l, 2);
        addModule(configuration.eth.xcp.module, 0);
        AimMsgMeta &module = configuration.can[0].aim_modules.add();
        module.MsgId = 3;
        module.msgLength = 8;
        module.channelsInMsg = module.samplesInMsg = module.sampleSizeInBytes = 2;
        TerminalEtherCatCfg &master = configuration.ethercat[0];
        master.enabled = 1;
        EtherCatSignal &variable = master.slaves.add().slave_signals.add();
        variable.data_type = 7;
        variable.mdf4_flags = 1;
    }

    // One round of entries of all kinds.
    [[nodiscard]] static QByteArray entries(quint32 time)
    {
        return rawlog::syncStampEntry(time, 0) + testlog::can(time, 0, 1, "0102030405060708")
               + testlog::can(time, 0, 2, "0011223344556677")
               + testlog::can(time, 0, 3, "0102030405060708") + testlog::eth(time, "0011223344")
               + rawlog::gpsEntry(time, {}) + rawlog::agmEntry(time, 0, {})
               + rawlog::d4modEntry(time, 0, {1, 2}) + rawlog::d4modTedEntry(0, 0, "$LOCAT=A$")
               + rawlog::etherCatEntry(time, 0, QByteArray(4, 1)) + rawlog::utcStartEntry(time)
               + rawlog::debugCountersEntry(0, 0, 0);
    }

private:
    static void addModule(StreamingClass_A2L_Module &module, quint32 canId)
    {
        testlog::addMeasurement(module, QStringLiteral("M"), 4).conversion =
            QStringLiteral("Method");
        A2lCompuMethod &method = module.compu_methods.add();
        method.name = QStringLiteral("Method");
        method.conversion_type = 6;
        method.table_name = QStringLiteral("Table");
        A2lCompuVTab &table = module.compu_vtabs.add();
        table.name = QStringLiteral("Table");
        table.pairs.add();
        testlog::addElement(testlog::addOdt(testlog::addDaq(module, canId), 0), QStringLiteral("M"),
                            4);
    }
};

// Another value for about one byte in `distance`.
QByteArray damaged(QByteArray bytes, int distance, QRandomGenerator &random)
{
    for (int at = random.bounded(distance); at < bytes.size(); at += 1 + random.bounded(distance))
        bytes[at] = char(random.bounded(256));
    return bytes;
}

} // namespace

class tst_DamagedLogs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules(QStringLiteral("default=false")); }

    void theLogHasAllSources();
    void damagedEntriesGiveAWholeFile_data();
    void damagedEntriesGiveAWholeFile();
    void damagedConfigurationsGiveAWholeFileOrNone();
    void everyCutGivesTheEntriesBeforeIt();
};

void tst_DamagedLogs::theLogHasAllSources()
{
    Log log;
    for (const quint32 time : {1000U, 2000U})
        log.add(Log::entries(time));
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.groupNames().size(), 8);
}

void tst_DamagedLogs::damagedEntriesGiveAWholeFile_data()
{
    QTest::addColumn<int>("distance");
    for (const int distance : {10, 100, 1000})
        QTest::addRow("a byte in %d", distance) << distance;
}

void tst_DamagedLogs::damagedEntriesGiveAWholeFile()
{
    QFETCH(int, distance);
    QRandomGenerator random(static_cast<quint32>(distance));
    QByteArray entries;
    for (quint32 i = 0; i < 50; ++i)
        entries += Log::entries(i * 1000);
    for (int round = 0; round < 10; ++round) {
        Log log;
        log.add(damaged(entries, distance, random));
        const ConversionResult result = log.convert();
        QVERIFY(result.summary.written);
        QCOMPARE(result.readFailure, QString());
    }
}

void tst_DamagedLogs::damagedConfigurationsGiveAWholeFileOrNone()
{
    QRandomGenerator random(1);
    const QByteArray block = rawlog::encodeConfiguration(Log().configuration);
    for (int round = 0; round < 100; ++round) {
        Log log;
        log.setConfigurationBlock(damaged(block, 1 + random.bounded(2000), random));
        log.add(Log::entries(1000) + Log::entries(2000));
        const ConversionResult result = log.convert();
        QCOMPARE(result.readFailure, QString());
        const QString expected =
            result.summary.written ? QStringLiteral("log.mf4 log.rld") : QStringLiteral("log.rld");
        QCOMPARE(log.leftFiles().join(QLatin1Char(' ')), expected);
    }
}

void tst_DamagedLogs::everyCutGivesTheEntriesBeforeIt()
{
    const QByteArray frame = testlog::can(1000, 0, 1, "0102030405060708");
    for (int cut = 0; cut < frame.size(); ++cut) {
        Log log;
        log.add(frame + testlog::can(2000, 0, 1, "0102030405060708").left(cut));
        const ConversionResult result = log.convert();
        QCOMPARE(result.errors, QStringList());
        QCOMPARE(result.times(0), QVector<quint64>{0});
    }
}

QTEST_GUILESS_MAIN(tst_DamagedLogs)
#include "tst_damagedlogs.moc"
