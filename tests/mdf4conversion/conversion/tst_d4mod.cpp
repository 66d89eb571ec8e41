#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"

#include <QTest>

using rawlog::d4modEntry;
using rawlog::d4modTedEntry;

namespace {

constexpr quint8 port = 4;

class Log : public ConversionHarness
{
public:
    Log() { configuration.rs485[port].d4mod.enabled = 1; }
};

// An entry that announces `channels` and holds these payload bytes.
QByteArray rawEntry(quint8 channels, const char *hex)
{
    return rawlog::timestampedEntry({rawlog::RLD_D4MOD, port, 0, channels}, 1,
                                    QByteArray::fromHex(hex));
}

} // namespace

class tst_D4mod : public QObject
{
    Q_OBJECT

private slots:
    void aPortThatIsOffGivesNoGroup();
    void theGroupIsCalledAfterItsPort();
    void portsAreInAscendingOrder();
    void entriesOfOtherPortsAreNotTaken();
    void channelsAreMadeOfTheFirstEntryAndCountFrom1();
    void channelsAreUnsignedWordsWithFactor1();
    void aSampleGivesItsValuesInChannelOrder();
    void furtherPayloadIsIgnored();

    void aTedTextNamesItsChannel();
    void aTedTextWithoutAChannelNamesItRawAdc();
    void aTedTextWithoutAUnitGivesUnit();
    void aLinearTedTextScalesItsChannel();
    void aTedTextOfAnotherEquationDoesNotScale();
    void aTedTextEndsAtItsNul();
    void aTedTextBeforeTheFirstSampleIsIgnored();
    void aTedTextOfAnUnknownChannelIsIgnored();
    void theLastTedTextHolds();
    void aTedTextIsNoSample();

    void aGrowingChannelCountDiscardsTheEarlierSamples();
    void aShrinkingChannelCountStartsAnew();
    void anEqualChannelCountKeepsTheTedNames();

    void anEntryWithoutAllItsValuesIsNotTaken();
    void anEntryWithoutChannelsIsNotTaken();
    void anEntryOfSixteenChannelsIsNotTaken();
    void anOverflowIsHandledOnce();
};

void tst_D4mod::aPortThatIsOffGivesNoGroup()
{
    Log log;
    log.configuration.rs485[port].d4mod.enabled = 0;
    log.add(d4modEntry(1, port, {1, 2}));
    QVERIFY(log.convert().file.groups.empty());
}

void tst_D4mod::theGroupIsCalledAfterItsPort()
{
    Log log;
    log.add(d4modEntry(1, port, {1}));
    QCOMPARE(log.convert().groupNames(), QStringList(QStringLiteral("RS485-4-D4MOD")));
}

void tst_D4mod::portsAreInAscendingOrder()
{
    Log log;
    log.configuration.rs485[9].d4mod.enabled = 1;
    log.configuration.rs485[0].d4mod.enabled = 1;
    log.add(d4modEntry(1, 9, {1}) + d4modEntry(2, port, {1}) + d4modEntry(3, 0, {1}));
    QCOMPARE(log.convert().groupNames().join(QLatin1Char(' ')),
             QStringLiteral("RS485-0-D4MOD RS485-4-D4MOD RS485-9-D4MOD"));
}

void tst_D4mod::entriesOfOtherPortsAreNotTaken()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + d4modEntry(2, port + 1, {9}) + d4modEntry(3, port, {2}));
    QCOMPARE(log.convert().raw(0, "Channel-Nr-1"), (QVector<double>{1, 2}));
}

void tst_D4mod::channelsAreMadeOfTheFirstEntryAndCountFrom1()
{
    Log log;
    log.add(d4modEntry(1, port, {1, 2, 3}));
    QCOMPARE(log.convert().channelNames(0).join(QLatin1Char(' ')),
             QStringLiteral("Channel-Nr-1 Channel-Nr-2 Channel-Nr-3"));
}

void tst_D4mod::channelsAreUnsignedWordsWithFactor1()
{
    Log log;
    log.add(d4modEntry(1, port, {0xFFFF}));
    const ConversionResult result = log.convert();
    const mdf4reader::Channel &channel = result.channel(0, "Channel-Nr-1");
    QCOMPARE(channel.dataType, 0U);
    QCOMPARE(channel.bitCount, 16U);
    QCOMPARE(channel.unit, std::string("unit"));
    QCOMPARE(channel.conversion.values, (std::vector<double>{0, 1}));
    QCOMPARE(result.raw(0, "Channel-Nr-1"), QVector<double>{65535});
}

void tst_D4mod::aSampleGivesItsValuesInChannelOrder()
{
    Log log;
    log.add(rawEntry(3, "3412 7856 BC9A"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "Channel-Nr-1"), QVector<double>{0x1234});
    QCOMPARE(result.raw(0, "Channel-Nr-2"), QVector<double>{0x5678});
    QCOMPARE(result.raw(0, "Channel-Nr-3"), QVector<double>{0x9ABC});
}

void tst_D4mod::furtherPayloadIsIgnored()
{
    Log log;
    log.add(rawEntry(1, "3412 FFFF"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0).size(), 1);
    QCOMPARE(result.raw(0, "Channel-Nr-1"), QVector<double>{0x1234});
}

void tst_D4mod::aTedTextNamesItsChannel()
{
    Log log;
    log.add(d4modEntry(1, port, {1, 2}));
    log.add(d4modTedEntry(port, 1, "$LOCAT=Axle front$PHYSU=kN$"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0),
             (QStringList{QStringLiteral("Channel-Nr-1"), QStringLiteral("Axle front")}));
    QCOMPARE(result.channel(0, "Axle front").unit, std::string("kN"));
}

void tst_D4mod::aTedTextWithoutAChannelNamesItRawAdc()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + d4modTedEntry(port, 0, "$PHYSU=kN$"));
    QCOMPARE(log.convert().channelNames(0), QStringList(QStringLiteral("raw ADC")));
}

void tst_D4mod::aTedTextWithoutAUnitGivesUnit()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + d4modTedEntry(port, 0, "$LOCAT=Axle$"));
    QCOMPARE(log.convert().channel(0, "Axle").unit, std::string("unit"));
}

void tst_D4mod::aLinearTedTextScalesItsChannel()
{
    Log log;
    log.add(d4modEntry(1, port, {1000}));
    log.add(d4modTedEntry(port, 0, "$LOCAT=Axle$SENEQ=0$SENSA=-2.5$SENSB=0.25$"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "Axle").conversion.values, (std::vector<double>{-2.5, 0.25}));
    QCOMPARE(result.raw(0, "Axle"), QVector<double>{1000});
    QCOMPARE(result.physical(0, "Axle"), QVector<double>{247.5});
}

void tst_D4mod::aTedTextOfAnotherEquationDoesNotScale()
{
    Log log;
    log.add(d4modEntry(1, port, {1000}));
    log.add(d4modTedEntry(port, 0, "$LOCAT=Axle$SENEQ=1$SENSA=-2.5$SENSB=0.25$"));
    QCOMPARE(log.convert().channel(0, "Axle").conversion.values, (std::vector<double>{0, 1}));
}

void tst_D4mod::aTedTextEndsAtItsNul()
{
    Log log;
    log.add(d4modEntry(1, port, {1}));
    log.add(d4modTedEntry(port, 0, QByteArray("$LOCAT=Axle$\0$PHYSU=kN$", 23)));
    QCOMPARE(log.convert().channel(0, "Axle").unit, std::string("unit"));
}

void tst_D4mod::aTedTextBeforeTheFirstSampleIsIgnored()
{
    Log log;
    log.add(d4modTedEntry(port, 0, "$LOCAT=Axle$") + d4modEntry(1, port, {1}));
    QCOMPARE(log.convert().channelNames(0), QStringList(QStringLiteral("Channel-Nr-1")));
}

void tst_D4mod::aTedTextOfAnUnknownChannelIsIgnored()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + d4modTedEntry(port, 1, "$LOCAT=Axle$"));
    log.add(d4modTedEntry(port, 255, "$LOCAT=Axle$"));
    QCOMPARE(log.convert().channelNames(0), QStringList(QStringLiteral("Channel-Nr-1")));
}

void tst_D4mod::theLastTedTextHolds()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + d4modTedEntry(port, 0, "$LOCAT=Axle$PHYSU=kN$"));
    log.add(d4modTedEntry(port, 0, "$LOCAT=Frame$"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0), QStringList(QStringLiteral("Frame")));
    QCOMPARE(result.channel(0, "Frame").unit, std::string("unit"));
}

void tst_D4mod::aTedTextIsNoSample()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + d4modTedEntry(port, 0, "$LOCAT=Axle$"));
    QCOMPARE(log.convert().times(0).size(), 1);
}

void tst_D4mod::aGrowingChannelCountDiscardsTheEarlierSamples()
{
    Log log;
    log.add(d4modEntry(100, port, {1}) + d4modEntry(200, port, {2}));
    log.add(d4modEntry(300, port, {3, 4}) + d4modEntry(400, port, {5, 6}));
    const ConversionResult result = log.convert();
    QCOMPARE(result.times(0), (QVector<quint64>{0, 100}));
    QCOMPARE(result.raw(0, "Channel-Nr-1"), (QVector<double>{3, 5}));
    QCOMPARE(result.raw(0, "Channel-Nr-2"), (QVector<double>{4, 6}));
}

void tst_D4mod::aShrinkingChannelCountStartsAnew()
{
    Log log;
    log.add(d4modEntry(100, port, {1, 2}) + d4modEntry(200, port, {3}));
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0).size(), 1);
    QCOMPARE(result.raw(0, "Channel-Nr-1"), QVector<double>{3});
}

void tst_D4mod::anEqualChannelCountKeepsTheTedNames()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + d4modTedEntry(port, 0, "$LOCAT=Axle$"));
    log.add(d4modEntry(2, port, {2}));
    QCOMPARE(log.convert().raw(0, "Axle"), (QVector<double>{1, 2}));
}

void tst_D4mod::anEntryWithoutAllItsValuesIsNotTaken()
{
    Log log;
    log.add(d4modEntry(1, port, {1, 2}) + rawEntry(2, "112233"));
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "Channel-Nr-2"), QVector<double>{2});
}

void tst_D4mod::anEntryWithoutChannelsIsNotTaken()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + rawEntry(0, "1122"));
    QCOMPARE(log.convert().raw(0, "Channel-Nr-1"), QVector<double>{1});
}

void tst_D4mod::anEntryOfSixteenChannelsIsNotTaken()
{
    Log log;
    log.add(d4modEntry(1, port, {1}) + rawEntry(16, QByteArray(64, '1').constData()));
    QCOMPARE(log.convert().raw(0, "Channel-Nr-1"), QVector<double>{1});
}

void tst_D4mod::anOverflowIsHandledOnce()
{
    Log log;
    log.add(d4modEntry(0xFFFFFF00, port, {1, 2}) + d4modEntry(0x100, port, {3, 4}));
    const ConversionResult result = log.convert();
    QCOMPARE(result.times(0), (QVector<quint64>{0, 0x200}));
    QVERIFY(!result.status(QStringLiteral("TS-Overflow for")).isEmpty());
}

QTEST_GUILESS_MAIN(tst_D4mod)
#include "tst_d4mod.moc"
