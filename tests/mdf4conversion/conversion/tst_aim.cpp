#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/aimlog.h"
#include "tests/support/logconfigurations.h"

#include <QTest>

namespace {

using Log = AimLog;

constexpr quint8 bus = AimLog::bus;
constexpr quint32 messageId = AimLog::messageId;
constexpr char channel1[] = "CAN_1_AIM_Module_AIM_CH_1";
constexpr char channel2[] = "CAN_1_AIM_Module_AIM_CH_2";

} // namespace

class tst_Aim : public QObject
{
    Q_OBJECT

private slots:
    void groupAndChannelsAreNamedAfterBusAndModule();
    void theGroupFollowsTheNamingRule_data();
    void theGroupFollowsTheNamingRule();
    void theFirstMessageOnlySetsTheClock();
    void samplesAreSpreadFromTheMessageBeforeOn();
    void anOverflowShortensTheIntervalByOne();
    void samplesOfAChannelStandSideBySide();
    void samplesAreRead_data();
    void samplesAreRead();
    void channelsAreAGapApart();
    void whatAGapPushesOutOfTheFrameReadsAs0();
    void aMessageIsKnownByItsNumberWithElevenAndTwentyNineBits();
    void aMessageOfAnotherLengthIsNotTakenAndLogged();
    void anotherBusOrIdentifierIsNotTaken();
    void aDescriptionThatNoFrameCanFollowIsReportedAndLeftOut_data();
    void aDescriptionThatNoFrameCanFollowIsReportedAndLeftOut();
    void modulesComeBehindAllOtherSources();
};

void tst_Aim::groupAndChannelsAreNamedAfterBusAndModule()
{
    Log log;
    log.addModule();
    log.addMessage(1000, "0000000000000000");
    log.addMessage(2000, "0000000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.groupNames(), QStringList(QStringLiteral("CAN_1_AIM_Module")));
    QCOMPARE(result.channelNames(0),
             (QStringList{QLatin1String(channel1), QLatin1String(channel2)}));
    QCOMPARE(result.channel(0, channel2).unit, std::string("V"));
}

void tst_Aim::theGroupFollowsTheNamingRule_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("custom");
    QTest::addColumn<QString>("name");
    const QString custom = QStringLiteral("Axle");
    QTest::newRow("appended") << 1 << custom << QStringLiteral("CAN_1_Axle_AIM_Module");
    QTest::newRow("alone") << 2 << custom << QStringLiteral("Axle_AIM_Module");
    QTest::newRow("no text") << 2 << QString() << QStringLiteral("Unspecified_AIM_Module");
}

void tst_Aim::theGroupFollowsTheNamingRule()
{
    QFETCH(int, mode);
    QFETCH(QString, custom);
    QFETCH(QString, name);
    Log log;
    log.addModule();
    log.configuration.can[bus].export_name_mode = quint8(mode);
    log.configuration.can[bus].export_custom_name = custom;
    log.addMessage(1000, "0000000000000000");
    log.addMessage(2000, "0000000000000000");
    QCOMPARE(log.convert().groupNames(), QStringList(name));
}

void tst_Aim::theFirstMessageOnlySetsTheClock()
{
    Log log;
    log.addModule();
    log.addMessage(1000, "0102030405060708");
    QVERIFY(log.convert().file.groups.empty());
}

void tst_Aim::samplesAreSpreadFromTheMessageBeforeOn()
{
    Log log;
    log.addModule();
    log.addMessage(1000, "0000000000000000");
    log.addMessage(2001, "0000000000000000"); // 1001 / 2 is 500
    log.addMessage(2011, "0000000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.summary.startOffset_us, quint64(1000));
    QCOMPARE(result.times(0), (QVector<quint64>{0, 500, 1001, 1006}));
}

void tst_Aim::anOverflowShortensTheIntervalByOne()
{
    Log log;
    log.addModule();
    log.addMessage(0xFFFFFF00, "0000000000000000");
    log.addMessage(0x00000100, "0000000000000000"); // (512 - 1) / 2 is 255
    const ConversionResult result = log.convert();
    QCOMPARE(result.summary.startOffset_us, quint64(0xFFFFFF00));
    QCOMPARE(result.times(0), (QVector<quint64>{0, 255}));
}

void tst_Aim::samplesOfAChannelStandSideBySide()
{
    Log log;
    log.addModule();
    log.addMessage(1000, "FFFFFFFFFFFFFFFF");
    log.addMessage(2000, "0100 0200 0300 0400");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, channel1), (QVector<double>{1, 2}));
    QCOMPARE(result.raw(0, channel2), (QVector<double>{3, 4}));
}

void tst_Aim::samplesAreRead_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("msbFirst");
    QTest::addColumn<bool>("isSigned");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<uint>("storedBytes");
    QTest::addColumn<double>("value");
    QTest::newRow("byte") << 1 << false << false << QByteArray("FE") << 1U << 254.0;
    QTest::newRow("signed byte") << 1 << true << true << QByteArray("FE") << 1U << -2.0;
    QTest::newRow("Intel word") << 2 << false << false << QByteArray("0180") << 2U << 32769.0;
    QTest::newRow("big-endian word") << 2 << true << false << QByteArray("0180") << 2U << 384.0;
    QTest::newRow("signed big-endian word")
        << 2 << true << true << QByteArray("8001") << 2U << -32767.0;
    QTest::newRow("three bytes") << 3 << true << false << QByteArray("010203") << 4U << 66051.0;
    QTest::newRow("three signed bytes") << 3 << true << true << QByteArray("FFFFFE") << 4U << -2.0;
    QTest::newRow("four bytes") << 4 << false << true << QByteArray("FEFFFFFF") << 4U << -2.0;
    QTest::newRow("five bytes") << 5 << true << false << QByteArray("0100000000") << 8U
                                << 4294967296.0;
    QTest::newRow("eight bytes") << 8 << true << true << QByteArray("FFFFFFFFFFFFFFFE") << 8U
                                 << -2.0;
}

void tst_Aim::samplesAreRead()
{
    QFETCH(int, bytes);
    QFETCH(bool, msbFirst);
    QFETCH(bool, isSigned);
    QFETCH(QByteArray, message);
    QFETCH(uint, storedBytes);
    QFETCH(double, value);
    Log log;
    AimMsgMeta &meta = log.addModule();
    meta.msgLength = bytes;
    meta.channelsInMsg = meta.samplesInMsg = 1;
    meta.sampleSizeInBytes = quint8(bytes);
    meta.isMsbFirst = msbFirst;
    meta.isSigned = isSigned;
    log.addMessage(1000, QByteArray(bytes * 2, '0'));
    log.addMessage(2000, message);
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, channel1), QVector<double>{value});
    QCOMPARE(result.channel(0, channel1).bitCount, 8 * storedBytes);
    QCOMPARE(result.channel(0, channel1).dataType, isSigned ? 2U : 0U);
    QCOMPARE(result.channel(0, channel1).conversion.values, (std::vector<double>{0, 1}));
}

void tst_Aim::channelsAreAGapApart()
{
    Log log;
    AimMsgMeta &meta = log.addModule();
    meta.msgLength = 5;
    meta.samplesInMsg = 1;
    meta.gapBetweenChannelsInBytes = 1;
    log.addMessage(1000, "0000000000");
    log.addMessage(2000, "0100 FF 0200");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, channel1), QVector<double>{1});
    QCOMPARE(result.raw(0, channel2), QVector<double>{2});
}

void tst_Aim::whatAGapPushesOutOfTheFrameReadsAs0()
{
    Log log;
    AimMsgMeta &meta = log.addModule();
    meta.msgLength = 4;
    meta.samplesInMsg = 1;
    meta.gapBetweenChannelsInBytes = 255;
    log.addMessage(1000, "00000000");
    log.addMessage(2000, "01000200");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, channel1), QVector<double>{1});
    QCOMPARE(result.raw(0, channel2), QVector<double>{0});
}

void tst_Aim::aMessageIsKnownByItsNumberWithElevenAndTwentyNineBits()
{
    Log log;
    log.addModule();
    const QByteArray data(8, 0);
    log.add(rawlog::canEntry(1000, bus, {messageId, false, data}));
    log.add(rawlog::canEntry(2000, bus, {messageId, true, data}));
    QCOMPARE(log.convert().times(0).size(), 2);
}

void tst_Aim::aMessageOfAnotherLengthIsNotTakenAndLogged()
{
    Log log;
    log.addModule();
    log.addMessage(1000, "0000000000000000");
    log.addMessage(1500, "00000000000000");
    log.addMessage(2000, "0000000000000000");
    QTest::ignoreMessage(QtWarningMsg, "Wrong datalength - add this as warning!");
    QCOMPARE(log.convert().times(0), (QVector<quint64>{0, 500}));
}

void tst_Aim::anotherBusOrIdentifierIsNotTaken()
{
    Log log;
    log.addModule();
    for (const quint32 time : {1000U, 2000U}) {
        log.add(testlog::can(time, bus, messageId + 1, "0000000000000000"));
        log.add(testlog::can(time, bus + 1, messageId, "0000000000000000"));
    }
    QVERIFY(log.convert().file.groups.empty());
}

void tst_Aim::aDescriptionThatNoFrameCanFollowIsReportedAndLeftOut_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("channels");
    QTest::addColumn<int>("samples");
    QTest::addColumn<int>("size");
    constexpr int largest = std::numeric_limits<qint32>::max();
    constexpr int smallest = std::numeric_limits<qint32>::min();
    QTest::newRow("no length") << 0 << 2 << 2 << 2;
    QTest::newRow("no channels") << 8 << 0 << 2 << 2;
    QTest::newRow("no samples") << 8 << 2 << 0 << 2;
    QTest::newRow("no size") << 8 << 2 << 2 << 0;
    QTest::newRow("negative counts") << 8 << -1 << -1 << 2;
    QTest::newRow("negative length") << -8 << 2 << 2 << 2;
    QTest::newRow("smallest counts") << 8 << smallest << smallest << 2;
    QTest::newRow("largest channels") << 8 << largest << 2 << 2;
    QTest::newRow("largest samples") << 8 << 2 << largest << 2;
    QTest::newRow("counts whose product wraps") << 8 << 0x10000 << 0x10000 << 1;
    QTest::newRow("samples of nine bytes") << 18 << 1 << 2 << 9;
    QTest::newRow("samples of 255 bytes") << 64 << 1 << 1 << 255;
    QTest::newRow("longer than a frame") << 65 << 2 << 2 << 2;
    QTest::newRow("more samples than the message holds") << 8 << 3 << 2 << 2;
}

void tst_Aim::aDescriptionThatNoFrameCanFollowIsReportedAndLeftOut()
{
    QFETCH(int, length);
    QFETCH(int, channels);
    QFETCH(int, samples);
    QFETCH(int, size);
    Log log;
    AimMsgMeta &meta = log.addModule();
    meta.msgLength = length;
    meta.channelsInMsg = channels;
    meta.samplesInMsg = samples;
    meta.sampleSizeInBytes = quint8(size);
    log.addMessage(1000, "0000000000000000");
    log.addMessage(2000, "0000000000000000");
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QVERIFY(result.file.groups.empty());
    QCOMPARE(result.errors.size(), 1);
    QVERIFY(result.errors.first().contains(QStringLiteral("Module")));
}

void tst_Aim::modulesComeBehindAllOtherSources()
{
    Log log;
    log.addModule();
    log.configuration.gps.gps_enabled = 1;
    testlog::addSignal(log.configuration.can[11], QStringLiteral("S"), 1, 0, 8);
    log.addMessage(1000, "0000000000000000");
    log.addMessage(2000, "0000000000000000");
    log.add(testlog::can(3000, 11, 1, "0000000000000000"));
    log.add(rawlog::gpsEntry(4000, {}));
    QCOMPARE(log.convert().groupNames().join(QLatin1Char(' ')),
             QStringLiteral("GPS CAN_11_DBC CAN_1_AIM_Module"));
}

QTEST_GUILESS_MAIN(tst_Aim)
#include "tst_aim.moc"
