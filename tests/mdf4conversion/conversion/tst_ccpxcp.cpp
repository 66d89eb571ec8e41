#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_splitted_byte_container.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/logconfiguration.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QRegularExpression>
#include <QTest>
#include <QtEndian>

using testlog::addElement;
using testlog::addOdt;
using testlog::addSplitElement;

namespace {

constexpr quint8 bus = 5;
constexpr quint32 dtoId = 0x400;
constexpr quint8 uByte = 0;
constexpr quint8 uWord = 2;
constexpr quint8 uLong = 4;

const QString oldLogText =
    QStringLiteral("Possibly converting an old log without Splitted / Not Splitted Flag..");

class Log : public ConversionHarness
{
public:
    StreamingClass_A2L_Module &module() { return configuration.can[bus].a2l; }
    StreamingClass_A2L_Module &ethModule() { return configuration.eth.xcp.module; }

    StreamingClass_A2L_DAQ &addDaq(quint32 canId = dtoId)
    {
        return testlog::addDaq(module(), canId);
    }
    void addMeasurement(const char *name, quint8 type)
    {
        testlog::addMeasurement(module(), QString::fromLatin1(name), type);
    }
    void addDto(quint32 timestamp_us, const char *hex)
    {
        add(testlog::can(timestamp_us, bus, dtoId, hex));
    }
};

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

QString joined(const QStringList &list)
{
    return list.join(QLatin1Char(' '));
}

// The streamed form of an element of version 1, which ends before the flag and the byte position.
QByteArray elementOfVersion1(const StreamingClass_A2L_ODT_ELEMENT &element)
{
    QByteArray bytes = record::toBytes(element).chopped(2);
    qToBigEndian(quint32(bytes.size()) - 4, bytes.data());
    qToBigEndian(qint32(1), bytes.data() + 4);
    return bytes;
}

// Lets the element stand in the log's configuration as a logger wrote it that didn't know of split
// values. A name that is one character shorter makes room: all frames around keep their lengths.
void makeOld(Log &log, StreamingClass_A2L_ODT_ELEMENT &element)
{
    const QByteArray old = elementOfVersion1(element);
    element.names.last().chop(1);
    const QByteArray current = record::toBytes(element);
    QByteArray block = rawlog::encodeConfiguration(log.configuration);
    QCOMPARE(old.size(), current.size());
    QCOMPARE(block.count(current), 1);
    block.replace(current, old);
    log.setConfigurationBlock(block);
}

} // namespace

class tst_CcpXcp : public QObject
{
    Q_OBJECT

private slots:
    void containerReportsWithoutAByte();
    void containerIsCompleteOnceAllBytesCame();
    void containerTakesTheNewByteWhenOneComesTwice();
    void containerDropsBytesBeyondTheValue();
    void containerIsEmptyAfterClear();

    void aDtoGivesTheValuesOfItsPid();
    void aDtoOfAnotherPidIdentifierOrBusIsNotTaken();
    void aDtoOfAnotherLengthIsNotTaken_data();
    void aDtoOfAnotherLengthIsNotTaken();
    void bit31OfTheIdentifierMarks29Bits();
    void aListWithoutIdentifierGivesNoGroup();
    void anElementMayCarrySeveralMeasurements();
    void anUnknownMeasurementIsSkipped();

    void eachListHasItsGroups();
    void signalsOfOneOdtShareAGroup();
    void signalsOfSeveralOdtsAreGroupsOfOneNameInTheOrderOfOdts();
    void groupsAreNamedByTheRule_data();
    void groupsAreNamedByTheRule();

    void aSplitValueIsCompleteWithItsLastPart();
    void aSplitValueCompletesInAnyOrder();
    void aRepeatedPartIsLoggedAndOverwrites();
    void eachValueIsGatheredAnew();
    void partsOfOneDtoCompleteAtOnce();
    void aSplitBigEndianValueIsTurned();
    void aSplitValueHasAGroupOfItsOwnSetOfOdts();
    void aRecordThatLacksAChannelIsDroppedAndTold();

    void aSplitValueWithoutAllItsPartsIsLeftBehind();
    void aWholeValueThatIsTooShortIsLeftBehind();
    void anOldLogConvertsThroughTheLeftBehindPath();
    void inAnOldLogAShortFirstPartIsNotConverted();
    void inAnOldLogTheFirstPartHolds();

    void xcpOnEthernetTakesFramesOfSub1();
    void xcpOnEthernetTakesFramesOfAnyLength();
    void aFrameThatEndsBeforeAnElementIsDropped();
    void ethernetGroupsAreNamedByTheRule_data();
    void ethernetGroupsAreNamedByTheRule();
    void leftBehindSignalsOfEthernetAreLoggedAsSuch();
    void sourcesStandInTheirOrder();
};

void tst_CcpXcp::containerReportsWithoutAByte()
{
    CCP_XCP_Splitted_Byte_Container container(2);
    QCOMPARE(container.addReceivedByte(0, nullptr, 0), 2);
}

void tst_CcpXcp::containerIsCompleteOnceAllBytesCame()
{
    const quint8 bytes[] = {0x11, 0x22, 0x33};
    CCP_XCP_Splitted_Byte_Container container(3);
    QCOMPARE(container.addReceivedByte(1, bytes + 1, 2), 2);
    QCOMPARE(container.addReceivedByte(0, bytes, 1), 1);
    QCOMPARE(container.values(), (std::vector<quint8>{0x11, 0x22, 0x33}));
    QCOMPARE(container.addReceivedByte(0, nullptr, 0), 1);
}

void tst_CcpXcp::containerTakesTheNewByteWhenOneComesTwice()
{
    const quint8 bytes[] = {0x11, 0x22};
    CCP_XCP_Splitted_Byte_Container container(2);
    QCOMPARE(container.addReceivedByte(1, bytes, 1), 2);
    QTest::ignoreMessage(QtWarningMsg,
                         "CCP_XCP_Splitted_Byte_Container::addReceivedByte -> This byte 34 at pos: "
                         "1 was already received!");
    QCOMPARE(container.addReceivedByte(1, bytes + 1, 1), 4 | 2);
    QCOMPARE(container.values(), (std::vector<quint8>{0, 0x22}));
}

void tst_CcpXcp::containerDropsBytesBeyondTheValue()
{
    const quint8 bytes[] = {1, 2, 3, 4};
    CCP_XCP_Splitted_Byte_Container container(2);
    QCOMPARE(container.addReceivedByte(0, bytes, 4), 1);
    QCOMPARE(container.addReceivedByte(255, bytes, 4), 1);
    QCOMPARE(container.values(), (std::vector<quint8>{1, 2}));
}

void tst_CcpXcp::containerIsEmptyAfterClear()
{
    const quint8 byte = 1;
    CCP_XCP_Splitted_Byte_Container container(1);
    QCOMPARE(container.addReceivedByte(0, &byte, 1), 1);
    container.clear();
    QCOMPARE(container.addReceivedByte(0, nullptr, 0), 2);
    QCOMPARE(container.values(), std::vector<quint8>{0});
}

void tst_CcpXcp::aDtoGivesTheValuesOfItsPid()
{
    Log log;
    log.addMeasurement("A", uByte);
    log.addMeasurement("B", uWord);
    auto &odt = addOdt(log.addDaq(), 7);
    addElement(odt, text("A"), 1);
    addElement(odt, text("B"), 2);
    log.addDto(10, "07 11 2233 00000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.readFailure, QString());
    QCOMPARE(result.raw(0, "A"), QVector<double>{0x11});
    QCOMPARE(result.raw(0, "B"), QVector<double>{0x3322});
}

void tst_CcpXcp::aDtoOfAnotherPidIdentifierOrBusIsNotTaken()
{
    Log log;
    log.addMeasurement("A", uByte);
    addElement(addOdt(log.addDaq(), 7), text("A"), 1);
    log.addDto(1, "06 11 000000000000");
    log.add(testlog::can(2, bus, dtoId + 1, "0711000000000000"));
    log.add(testlog::can(3, bus + 1, dtoId, "0711000000000000"));
    log.add(rawlog::canEntry(4, bus, {dtoId, true, QByteArray::fromHex("0711000000000000")}));
    QVERIFY(log.convert().file.groups.empty());
}

void tst_CcpXcp::aDtoOfAnotherLengthIsNotTaken_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("seven bytes") << QByteArray("07110000000000");
    QTest::newRow("nine bytes") << QByteArray("071100000000000000");
}

void tst_CcpXcp::aDtoOfAnotherLengthIsNotTaken()
{
    QFETCH(QByteArray, frame);
    Log log;
    log.addMeasurement("A", uByte);
    addElement(addOdt(log.addDaq(), 7), text("A"), 1);
    log.addDto(1, frame);
    QVERIFY(log.convert().file.groups.empty());
}

void tst_CcpXcp::bit31OfTheIdentifierMarks29Bits()
{
    Log log;
    log.addMeasurement("A", uByte);
    addElement(addOdt(log.addDaq(0x80000000U | 0x18DA0001U), 7), text("A"), 1);
    log.add(testlog::can(1, bus, 0x18DA0001, "072A000000000000"));
    QCOMPARE(log.convert().raw(0, "A"), QVector<double>{0x2A});
}

void tst_CcpXcp::aListWithoutIdentifierGivesNoGroup()
{
    Log log;
    log.addMeasurement("A", uByte);
    addElement(addOdt(log.addDaq(0), 7), text("A"), 1);
    log.add(testlog::can(1, bus, 0, "072A000000000000"));
    QVERIFY(log.convert().file.groups.empty());
}

void tst_CcpXcp::anElementMayCarrySeveralMeasurements()
{
    Log log;
    log.addMeasurement("Whole", uByte);
    log.addMeasurement("Same", uByte);
    addElement(addOdt(log.addDaq(), 0), text("Whole"), 1).names.append(text("Same"));
    log.addDto(1, "002A000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "Whole"), QVector<double>{0x2A});
    QCOMPARE(result.raw(0, "Same"), QVector<double>{0x2A});
}

void tst_CcpXcp::anUnknownMeasurementIsSkipped()
{
    Log log;
    log.addMeasurement("B", uByte);
    auto &odt = addOdt(log.addDaq(), 0);
    addElement(odt, text("Unknown"), 2);
    addElement(odt, text("B"), 1);
    log.addDto(1, "0001022A00000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0), QStringList(text("B")));
    QCOMPARE(result.raw(0, "B"), QVector<double>{0x2A});
}

void tst_CcpXcp::eachListHasItsGroups()
{
    Log log;
    log.addMeasurement("A", uByte);
    log.addMeasurement("B", uByte);
    addElement(addOdt(log.addDaq(), 0), text("A"), 1);
    addElement(addOdt(log.addDaq(), 1), text("B"), 1);
    log.addDto(1, "012B000000000000");
    log.addDto(2, "002A000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(joined(result.groupNames()), text("CAN_5_CCP_XCP CAN_5_CCP_XCP"));
    QCOMPARE(result.raw(0, "A"), QVector<double>{0x2A});
    QCOMPARE(result.raw(1, "B"), QVector<double>{0x2B});
}

void tst_CcpXcp::signalsOfOneOdtShareAGroup()
{
    Log log;
    log.addMeasurement("A", uByte);
    log.addMeasurement("B", uByte);
    auto &odt = addOdt(log.addDaq(), 0);
    addElement(odt, text("A"), 1);
    addElement(odt, text("B"), 1);
    log.addDto(1, "002A2B0000000000");
    QCOMPARE(joined(log.convert().channelNames(0)), text("A B"));
}

void tst_CcpXcp::signalsOfSeveralOdtsAreGroupsOfOneNameInTheOrderOfOdts()
{
    Log log;
    for (const char *name : {"A", "B", "C"})
        log.addMeasurement(name, uByte);
    auto &daq = log.addDaq();
    auto &first = addOdt(daq, 9);
    auto &second = addOdt(daq, 3);
    addElement(first, text("A"), 1);
    addElement(second, text("B"), 1);
    addElement(first, text("C"), 1);
    log.addDto(1, "09 01 02 0000000000");
    log.addDto(2, "03 03 00 0000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(joined(result.groupNames()), text("CAN_5_CCP_XCP CAN_5_CCP_XCP"));
    QCOMPARE(joined(result.channelNames(0)), text("A C"));
    QCOMPARE(joined(result.channelNames(1)), text("B"));
}

void tst_CcpXcp::groupsAreNamedByTheRule_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("custom");
    QTest::addColumn<QString>("name");
    QTest::newRow("neither") << 0 << text("Engine") << text("CAN_5_CCP_XCP");
    QTest::newRow("appended") << 1 << text("Engine") << text("CAN_5_Engine_CCP_XCP");
    QTest::newRow("alone") << 2 << text("Engine") << text("Engine_CCP_XCP");
    QTest::newRow("no text") << 2 << QString() << text("Unspecified_CCP_XCP");
}

void tst_CcpXcp::groupsAreNamedByTheRule()
{
    QFETCH(int, mode);
    QFETCH(QString, custom);
    QFETCH(QString, name);
    Log log;
    log.addMeasurement("A", uByte);
    addElement(addOdt(log.addDaq(), 0), text("A"), 1);
    log.configuration.can[bus].export_name_mode = quint8(mode);
    log.configuration.can[bus].export_custom_name = custom;
    log.addDto(1, "0000000000000000");
    QCOMPARE(log.convert().groupNames(), QStringList(name));
}

void tst_CcpXcp::aSplitValueIsCompleteWithItsLastPart()
{
    Log log;
    log.addMeasurement("Speed", uLong);
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 3, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 1, 3);
    log.addDto(1000, "00 112233 00000000");
    log.addDto(1200, "01 44 000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "Speed"), QVector<double>{0x44332211});
    QCOMPARE(result.summary.startOffset_us, quint64(1200));
}

void tst_CcpXcp::aSplitValueCompletesInAnyOrder()
{
    Log log;
    log.addMeasurement("Speed", uWord);
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 1, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 1, 1);
    log.addDto(1000, "0122000000000000");
    log.addDto(1200, "0011000000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x2211});
}

void tst_CcpXcp::aRepeatedPartIsLoggedAndOverwrites()
{
    Log log;
    log.addMeasurement("Speed", uLong);
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 2, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 2, 2);
    log.addDto(1000, "00 AAAA 0000000000");
    log.addDto(1100, "00 1122 0000000000");
    log.addDto(1200, "01 3344 0000000000");
    for (const char *byte : {"17 at pos: 0", "34 at pos: 1"}) {
        QTest::ignoreMessage(QtWarningMsg,
                             qPrintable(text("CCP_XCP_Splitted_Byte_Container::addReceivedByte -> "
                                             "This byte %1 was already received!")
                                            .arg(text(byte))));
    }
    QTest::ignoreMessage(QtWarningMsg, "Measurement: \"Speed\"  - Inconsistent data?!");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x44332211});
}

void tst_CcpXcp::eachValueIsGatheredAnew()
{
    Log log;
    log.addMeasurement("Speed", uWord);
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 1, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 1, 1);
    log.addDto(1000, "0011000000000000");
    log.addDto(1100, "0122000000000000");
    log.addDto(1200, "0133000000000000"); // the first part of this round is lost
    log.addDto(1300, "0044000000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), (QVector<double>{0x2211, 0x3344}));
}

void tst_CcpXcp::partsOfOneDtoCompleteAtOnce()
{
    Log log;
    log.addMeasurement("Speed", uWord);
    auto &odt = addOdt(log.addDaq(), 0);
    addSplitElement(odt, text("Speed"), 1, 1);
    addSplitElement(odt, text("Speed"), 1, 0);
    log.addDto(1000, "0022110000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x2211});
}

void tst_CcpXcp::aSplitBigEndianValueIsTurned()
{
    Log log;
    testlog::addMeasurement(log.module(), text("Speed"), uLong).byte_order = 3;
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 3, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 1, 3);
    log.addDto(1000, "0011223300000000");
    log.addDto(1200, "0144000000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x11223344});
}

void tst_CcpXcp::aSplitValueHasAGroupOfItsOwnSetOfOdts()
{
    Log log;
    log.addMeasurement("Speed", uWord);
    log.addMeasurement("Whole", uByte);
    log.addMeasurement("Torque", uWord);
    auto &daq = log.addDaq();
    auto &first = addOdt(daq, 0);
    auto &second = addOdt(daq, 1);
    addSplitElement(first, text("Speed"), 1, 0);
    addElement(first, text("Whole"), 1);
    addSplitElement(first, text("Torque"), 1, 0);
    addSplitElement(second, text("Speed"), 1, 1);
    addSplitElement(second, text("Torque"), 1, 1);
    log.addDto(1000, "0011223300000000");
    log.addDto(1100, "0144550000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(joined(result.channelNames(0)), text("Speed Torque"));
    QCOMPARE(joined(result.channelNames(1)), text("Whole"));
    QCOMPARE(result.raw(0, "Speed"), QVector<double>{0x4411});
    QCOMPARE(result.raw(0, "Torque"), QVector<double>{0x5533});
}

void tst_CcpXcp::aRecordThatLacksAChannelIsDroppedAndTold()
{
    Log log;
    log.addMeasurement("A", uLong);
    log.addMeasurement("B", uLong);
    auto &odt = addOdt(log.addDaq(), 0);
    addElement(odt, text("A"), 4);
    addElement(odt, text("B"), 4); // ends a byte behind the DTO
    log.addDto(1000, "0011223344556677");
    const ConversionResult result = log.convert();
    QVERIFY(result.file.groups.empty());
    QCOMPARE(result.warnings,
             QStringList(text("1 records of channel-group CAN_5_CCP_XCP were left out, they lacked "
                              "the data of some of its channels.")));
}

void tst_CcpXcp::aSplitValueWithoutAllItsPartsIsLeftBehind()
{
    Log log;
    log.addMeasurement("Speed", uLong);
    addSplitElement(addOdt(log.addDaq(), 0), text("Speed"), 3, 0);
    log.addDto(1000, "0011223300000000");
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(text("^Incomplete and/or Left Behind Signals: +1$")));
    const ConversionResult result = log.convert();
    QVERIFY(result.statuses.contains(oldLogText));
    QVERIFY(result.file.groups.empty());
}

void tst_CcpXcp::aWholeValueThatIsTooShortIsLeftBehind()
{
    Log log;
    log.addMeasurement("Speed", uLong);
    log.addMeasurement("A", uByte);
    auto &odt = addOdt(log.addDaq(), 0);
    addElement(odt, text("Speed"), 2);
    addElement(odt, text("A"), 1);
    log.addDto(1000, "0011222A00000000");
    const ConversionResult result = log.convert();
    QVERIFY(result.statuses.contains(oldLogText));
    QCOMPARE(result.groupNames().size(), 1);
    QCOMPARE(result.raw(0, "A"), QVector<double>{0x2A});
}

void tst_CcpXcp::anOldLogConvertsThroughTheLeftBehindPath()
{
    Log log;
    log.addMeasurement("Speed", uWord);
    auto &element = addElement(addOdt(log.addDaq(), 0), text("Speed"), 2);
    makeOld(log, element);
    log.addDto(1000, "0011220000000000");
    log.addDto(1100, "0033440000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.statuses.count(oldLogText), 1);
    QCOMPARE(result.groupNames(), QStringList(text("CAN_5_CCP_XCP")));
    QCOMPARE(result.raw(0, "Speed"), (QVector<double>{0x2211, 0x4433}));
}

void tst_CcpXcp::inAnOldLogAShortFirstPartIsNotConverted()
{
    Log log;
    log.addMeasurement("Speed", uWord);
    auto &element = addElement(addOdt(log.addDaq(), 0), text("Speed"), 1);
    makeOld(log, element);
    log.addDto(1000, "0011220000000000");
    const ConversionResult result = log.convert();
    QVERIFY(result.statuses.contains(oldLogText));
    QVERIFY(result.file.groups.empty());
}

void tst_CcpXcp::inAnOldLogTheFirstPartHolds()
{
    Log log;
    log.addMeasurement("Speed", uWord);
    auto &daq = log.addDaq();
    addElement(addOdt(daq, 0), text("Speed"), 2);
    auto &second = addElement(addOdt(daq, 1), text("Speed"), 2);
    makeOld(log, second);
    log.addDto(1000, "0011220000000000");
    log.addDto(1100, "0133440000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x2211});
}

void tst_CcpXcp::xcpOnEthernetTakesFramesOfSub1()
{
    Log log;
    testlog::addMeasurement(log.ethModule(), text("Speed"), uWord);
    addElement(addOdt(testlog::addDaq(log.ethModule(), 0), 4), text("Speed"), 2);
    const QByteArray dto = QByteArray::fromHex("041122");
    log.add(testlog::eth(1000, "041122"));
    for (const quint8 sub : {0, 2, 3})
        log.add(rawlog::timestampedEntry({rawlog::RLD_ETH, 0, sub, 0}, 1100, dto));
    log.add(rawlog::timestampedEntry({rawlog::RLD_ETH, 1, 1, 0}, 1200, dto));
    const ConversionResult result = log.convert();
    QCOMPARE(result.groupNames(), QStringList(text("ETH_0_XCP")));
    QCOMPARE(result.raw(0, "Speed"), QVector<double>{0x2211});
}

void tst_CcpXcp::xcpOnEthernetTakesFramesOfAnyLength()
{
    Log log;
    testlog::addMeasurement(log.ethModule(), text("Last"), uByte);
    auto &odt = addOdt(testlog::addDaq(log.ethModule(), 0), 4);
    for (int i = 0; i < 20; ++i)
        addElement(odt, text("Unknown"), 8);
    addElement(odt, text("Last"), 1);
    log.add(testlog::eth(1000, ("04" + QByteArray(320, '0') + "2A").constData()));
    QCOMPARE(log.convert().raw(0, "Last"), QVector<double>{0x2A});
}

void tst_CcpXcp::aFrameThatEndsBeforeAnElementIsDropped()
{
    Log log;
    testlog::addMeasurement(log.ethModule(), text("A"), uByte);
    testlog::addMeasurement(log.ethModule(), text("B"), uWord);
    auto &odt = addOdt(testlog::addDaq(log.ethModule(), 0), 4);
    addElement(odt, text("A"), 1);
    addElement(odt, text("B"), 2);
    log.add(testlog::eth(1000, "04112233") + testlog::eth(1100, "041122")
            + testlog::eth(1200, "04"));
    log.add(testlog::eth(1300, ""));
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "A"), QVector<double>{0x11});
    QCOMPARE(result.summary.droppedRecords, quint64(1));
}

void tst_CcpXcp::ethernetGroupsAreNamedByTheRule_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("custom");
    QTest::addColumn<QString>("name");
    QTest::newRow("neither") << 0 << text("Radar") << text("ETH_0_XCP");
    QTest::newRow("appended") << 1 << text("Radar") << text("ETH_0_Radar_XCP");
    QTest::newRow("alone") << 2 << text("Radar") << text("Radar_XCP");
    QTest::newRow("no text") << 1 << QString() << text("ETH_0_Unspecified_XCP");
}

void tst_CcpXcp::ethernetGroupsAreNamedByTheRule()
{
    QFETCH(int, mode);
    QFETCH(QString, custom);
    QFETCH(QString, name);
    Log log;
    testlog::addMeasurement(log.ethModule(), text("A"), uByte);
    addElement(addOdt(testlog::addDaq(log.ethModule(), 0), 0), text("A"), 1);
    log.configuration.eth.further_byte = quint8(mode);
    log.configuration.eth.custom_name = custom;
    log.add(testlog::eth(1, "0000"));
    QCOMPARE(log.convert().groupNames(), QStringList(name));
}

void tst_CcpXcp::leftBehindSignalsOfEthernetAreLoggedAsSuch()
{
    Log log;
    testlog::addMeasurement(log.ethModule(), text("A"), uWord);
    addElement(addOdt(testlog::addDaq(log.ethModule(), 0), 0), text("A"), 1);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(text(
                                         "^Incomplete and/or Left Behind Signals Eth XCP: +1$")));
    QVERIFY(log.convert().statuses.contains(oldLogText));
}

void tst_CcpXcp::sourcesStandInTheirOrder()
{
    Log log;
    log.configuration.gps.gps_enabled = 1;
    log.configuration.agm.enabled = 1;
    log.configuration.rs485[0].d4mod.enabled = 1;
    testlog::addSignal(log.configuration.can[11], text("S"), 1, 0, 8);
    log.addMeasurement("A", uByte);
    addElement(addOdt(log.addDaq(), 0), text("A"), 1);
    auto &master = log.configuration.ethercat[0];
    master.enabled = 1;
    EtherCatSignal &variable = master.slaves.add().slave_signals.add();
    variable.data_type = 5;
    variable.mdf4_flags = 1;
    testlog::addMeasurement(log.ethModule(), text("E"), uByte);
    addElement(addOdt(testlog::addDaq(log.ethModule(), 0), 0), text("E"), 1);
    log.add(testlog::eth(1, "0000") + rawlog::etherCatEntry(2, 0, QByteArray(1, 0)));
    log.addDto(3, "0000000000000000");
    log.add(testlog::can(4, 11, 1, "0000000000000000") + rawlog::d4modEntry(5, 0, {1}));
    log.add(rawlog::agmEntry(6, 0, {}) + rawlog::gpsEntry(7, {}));
    QCOMPARE(joined(log.convert().groupNames()),
             text("GPS Accelerometer/Gyroscope RS485-0-D4MOD CAN_11_DBC CAN_5_CCP_XCP Ethercat-0 "
                  "ETH_0_XCP"));
}

QTEST_GUILESS_MAIN(tst_CcpXcp)
#include "tst_ccpxcp.moc"
