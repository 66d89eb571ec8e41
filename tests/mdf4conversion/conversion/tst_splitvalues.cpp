#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_splitted_byte_container.h"
#include "tests/support/daqlog.h"

#include <QTest>

using testlog::addElement;
using testlog::addOdt;
using testlog::addSplitElement;

namespace {

using Log = DaqLog;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

QString joined(const QStringList &list)
{
    return list.join(QLatin1Char(' '));
}

// A value of four bytes, two of them in each of two DTOs, whose pieces others share.
class SharedPiecesLog : public Log
{
public:
    static constexpr quint32 address = 0x1000;

    SharedPiecesLog() { addMeasurement("Speed", A2lDataType::ULong).ecu_address = address; }

    void addPieces(const QStringList &names)
    {
        auto &daq = addDaq();
        auto &first = testlog::addOdt(daq, 0);
        auto &second = testlog::addOdt(daq, 1);
        for (quint8 byte = 0; byte < 4; ++byte) {
            auto &element = addSplitElement(byte < 2 ? first : second, QString(), 1, byte);
            element.address = address + byte;
            element.names = names;
        }
        addDto(1000, "0011220000000000");
        addDto(1100, "0133440000000000");
    }
};

} // namespace

// Values that arrive in several ODT entries.
class tst_SplitValues : public QObject
{
    Q_OBJECT

private slots:
    void containerReportsWithoutAByte();
    void containerIsCompleteOnceAllBytesCame();
    void containerTakesTheNewByteWhenOneComesTwice();
    void containerDropsBytesBeyondTheValue();
    void containerIsEmptyAfterClear();
    void aSplitValueIsCompleteWithItsLastPart();
    void aSplitValueCompletesInAnyOrder();
    void aRepeatedPartIsLoggedAndOverwrites();
    void eachValueIsGatheredAnew();
    void partsOfOneDtoCompleteAtOnce();
    void aSplitBigEndianValueIsTurned();
    void aSplitValueHasAGroupOfItsOwnSetOfOdts();
    void aShorterValueOfTheSameAddressNeedsItsOwnBytesOnly();
    void aValueInsideALongerOneTakesItsOwnBytes();
    void aValueThatReachesBeyondALongerOneIsLeftOut();
    void aRecordThatLacksAChannelIsDroppedAndTold();
};

void tst_SplitValues::containerReportsWithoutAByte()
{
    CCP_XCP_Splitted_Byte_Container container(2);
    QCOMPARE(container.addReceivedByte(0, nullptr, 0), 2);
}

void tst_SplitValues::containerIsCompleteOnceAllBytesCame()
{
    const quint8 bytes[] = {0x11, 0x22, 0x33};
    CCP_XCP_Splitted_Byte_Container container(3);
    QCOMPARE(container.addReceivedByte(1, bytes + 1, 2), 2);
    QCOMPARE(container.addReceivedByte(0, bytes, 1), 1);
    QCOMPARE(container.values(), (std::vector<quint8>{0x11, 0x22, 0x33}));
    QCOMPARE(container.addReceivedByte(0, nullptr, 0), 1);
}

void tst_SplitValues::containerTakesTheNewByteWhenOneComesTwice()
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

void tst_SplitValues::containerDropsBytesBeyondTheValue()
{
    const quint8 bytes[] = {1, 2, 3, 4};
    CCP_XCP_Splitted_Byte_Container container(2);
    QCOMPARE(container.addReceivedByte(0, bytes, 4), 1);
    QCOMPARE(container.addReceivedByte(255, bytes, 4), 1);
    QCOMPARE(container.values(), (std::vector<quint8>{1, 2}));
}

void tst_SplitValues::containerIsEmptyAfterClear()
{
    const quint8 byte = 1;
    CCP_XCP_Splitted_Byte_Container container(1);
    QCOMPARE(container.addReceivedByte(0, &byte, 1), 1);
    container.clear();
    QCOMPARE(container.addReceivedByte(0, nullptr, 0), 2);
    QCOMPARE(container.values(), std::vector<quint8>{0});
}

void tst_SplitValues::aSplitValueIsCompleteWithItsLastPart()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::ULong);
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 3, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 1, 3);
    log.addDto(1000, "00 112233 00000000");
    log.addDto(1200, "01 44 000000000000");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "Speed"), QVector<double>{0x44332211});
    QCOMPARE(result.summary.startOffset_us, quint64(1200));
}

void tst_SplitValues::aSplitValueCompletesInAnyOrder()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::UWord);
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 1, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 1, 1);
    log.addDto(1000, "0122000000000000");
    log.addDto(1200, "0011000000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x2211});
}

void tst_SplitValues::aRepeatedPartIsLoggedAndOverwrites()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::ULong);
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

void tst_SplitValues::eachValueIsGatheredAnew()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::UWord);
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 1, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 1, 1);
    log.addDto(1000, "0011000000000000");
    log.addDto(1100, "0122000000000000");
    log.addDto(1200, "0133000000000000"); // the first part of this round is lost
    log.addDto(1300, "0044000000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), (QVector<double>{0x2211, 0x3344}));
}

void tst_SplitValues::partsOfOneDtoCompleteAtOnce()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::UWord);
    auto &odt = addOdt(log.addDaq(), 0);
    addSplitElement(odt, text("Speed"), 1, 1);
    addSplitElement(odt, text("Speed"), 1, 0);
    log.addDto(1000, "0022110000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x2211});
}

void tst_SplitValues::aSplitBigEndianValueIsTurned()
{
    Log log;
    testlog::addMeasurement(log.module(), text("Speed"), A2lDataType::ULong).byte_order = 3;
    auto &daq = log.addDaq();
    addSplitElement(addOdt(daq, 0), text("Speed"), 3, 0);
    addSplitElement(addOdt(daq, 1), text("Speed"), 1, 3);
    log.addDto(1000, "0011223300000000");
    log.addDto(1200, "0144000000000000");
    QCOMPARE(log.convert().raw(0, "Speed"), QVector<double>{0x11223344});
}

void tst_SplitValues::aSplitValueHasAGroupOfItsOwnSetOfOdts()
{
    Log log;
    log.addMeasurement("Speed", A2lDataType::UWord);
    log.addMeasurement("Whole", A2lDataType::UByte);
    log.addMeasurement("Torque", A2lDataType::UWord);
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

// A measurement that begins at a piece of a longer one shares all its elements.
void tst_SplitValues::aValueInsideALongerOneTakesItsOwnBytes()
{
    SharedPiecesLog log;
    log.addMeasurement("Middle", A2lDataType::UWord).ecu_address = SharedPiecesLog::address + 1;
    log.addPieces({text("Speed"), text("Middle")});
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings, QStringList());
    QCOMPARE(result.raw(0, "Speed"), QVector<double>{0x44332211});
    QCOMPARE(result.raw(0, "Middle"), QVector<double>{0x3322});
}

void tst_SplitValues::aValueThatReachesBeyondALongerOneIsLeftOut()
{
    SharedPiecesLog log;
    log.addMeasurement("Last", A2lDataType::UWord).ecu_address = SharedPiecesLog::address + 3;
    log.addPieces({text("Speed"), text("Last")});
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings.size(), 1);
    QCOMPARE(joined(result.channelNames(0)), text("Speed"));
}

// Measurements of one address share its elements, whatever their sizes.
void tst_SplitValues::aShorterValueOfTheSameAddressNeedsItsOwnBytesOnly()
{
    SharedPiecesLog log;
    log.addMeasurement("LowByte", A2lDataType::UByte).ecu_address = SharedPiecesLog::address;
    log.addPieces({text("Speed"), text("LowByte")});
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings, QStringList());
    QCOMPARE(result.groupNames().size(), 2);
    QCOMPARE(result.raw(0, "Speed"), QVector<double>{0x44332211});
    QCOMPARE(result.raw(1, "LowByte"), QVector<double>{0x11});
    QCOMPARE(result.times(1), QVector<quint64>{0});
}

void tst_SplitValues::aRecordThatLacksAChannelIsDroppedAndTold()
{
    Log log;
    log.addMeasurement("A", A2lDataType::ULong);
    log.addMeasurement("B", A2lDataType::ULong);
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

QTEST_GUILESS_MAIN(tst_SplitValues)
#include "tst_splitvalues.moc"
