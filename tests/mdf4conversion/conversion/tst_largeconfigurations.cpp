#include "MDF4Conversion/channelgrouplist.h"
#include "tests/support/dbclog.h"
#include "tests/support/logconfigurations.h"

#include <QTest>

namespace {

constexpr int maxGroups = int(ChannelGroupList::maxGroups);
constexpr int maxChannels = int(ChannelGroupList::maxChannels);

class Log : public DbcLog
{
public:
    // Messages of one byte with consecutive identifiers.
    void addAimMessages(int count)
    {
        for (int i = 0; i < count; ++i) {
            AimMsgMeta &meta = can().aim_modules.add();
            meta.MsgId = quint32(i);
            meta.msgLength = meta.channelsInMsg = meta.samplesInMsg = 1;
            meta.sampleSizeInBytes = 1;
        }
    }
};

QStringList givenUp()
{
    return {QStringLiteral("The configuration of the log describes more than 65536 channel groups "
                           "or 262144 channels, more than a conversion can hold."),
            QStringLiteral("Logfile-conversion aborted.")};
}

} // namespace

class tst_LargeConfigurations : public QObject
{
    Q_OBJECT

private slots:
    void asManyGroupsAsAConversionHoldsAreConverted();
    void oneGroupMoreGivesTheConversionUp();
    void oneChannelMoreGivesTheConversionUp_data();
    void oneChannelMoreGivesTheConversionUp();
    void plainSignalsOfManyMultiplexorValuesGiveTheConversionUp();
    void modulesThatAreLeftOutAreToldOfUpToTheLimit();
    void cancellingEndsTheBuildingOfGroups();
};

void tst_LargeConfigurations::asManyGroupsAsAConversionHoldsAreConverted()
{
    constexpr int sampled = maxGroups / 64; // every so many groups
    Log log;
    log.addAimMessages(maxGroups);
    for (const quint32 time : {1000U, 2000U}) {
        for (int i = sampled; i <= maxGroups; i += sampled)
            log.add(testlog::can(time, DbcLog::bus, quint32(i - 1), "01"));
    }
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, QStringList());
    QCOMPARE(result.summary.groups.size(), maxGroups / sampled);
}

void tst_LargeConfigurations::oneGroupMoreGivesTheConversionUp()
{
    Log log;
    log.addAimMessages(maxGroups + 1);
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, givenUp());
    QCOMPARE(log.leftFiles(), QStringList(QStringLiteral("log.rld")));
}

void tst_LargeConfigurations::oneChannelMoreGivesTheConversionUp_data()
{
    QTest::addColumn<int>("channels");
    QTest::addColumn<bool>("written");
    QTest::newRow("as many as there may be") << maxChannels << true;
    QTest::newRow("one more") << maxChannels + 1 << false;
}

void tst_LargeConfigurations::oneChannelMoreGivesTheConversionUp()
{
    QFETCH(int, channels);
    QFETCH(bool, written);
    Log log;
    for (int i = 0; i < channels; ++i)
        log.addSignal(QByteArray(), 0, 8);
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors, written ? QStringList() : givenUp());
    QCOMPARE(result.summary.written, written);
}

void tst_LargeConfigurations::plainSignalsOfManyMultiplexorValuesGiveTheConversionUp()
{
    Log log;
    log.addMultiplexor("Mux", 0, 8);
    for (int i = 0; i < 30000; ++i) {
        log.addMultiplexed("M", i, 8);
        log.addSignal(QByteArray(), 0, 8);
    }
    QCOMPARE(log.convert().errors, givenUp());
}

void tst_LargeConfigurations::modulesThatAreLeftOutAreToldOfUpToTheLimit()
{
    Log log;
    for (int i = 0; i < maxGroups + 10; ++i)
        log.can().aim_modules.add();
    const ConversionResult result = log.convert();
    QCOMPARE(result.errors.size(), maxGroups + givenUp().size());
    QCOMPARE(result.errors.mid(maxGroups), givenUp());
}

void tst_LargeConfigurations::cancellingEndsTheBuildingOfGroups()
{
    Log log;
    for (const quint32 id : {1U, 2U}) {
        log.addMultiplexor("First", 0, 8, id);
        log.addMultiplexor("Second", 0, 8, id);
        log.addMultiplexed("M", 1, 8, id);
    }
    log.prepare = [](WorkerConvertMDF4 &worker) {
        QObject::connect(&worker, &WorkerConvertMDF4::sig_warning, &worker,
                         &WorkerConvertMDF4::requestCancelProcess);
    };
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings.size(), 1);
    QCOMPARE(result.errors, (QStringList{QStringLiteral("cancel conversion requested by user"),
                                         QStringLiteral("Logfile-conversion aborted.")}));
}

QTEST_GUILESS_MAIN(tst_LargeConfigurations)
#include "tst_largeconfigurations.moc"
