#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "tests/support/conversionharness.h"

#include <QTest>

namespace {

constexpr quint8 bus = 3;
constexpr quint8 intoMdf4 = 1;

class Log : public ConversionHarness
{
public:
    Log() { configuration.ethercat[bus].enabled = 1; }

    EtherCatSignal &addVariable(quint8 type, quint16 startBit, quint16 bitLength = 8)
    {
        auto &slaves = configuration.ethercat[bus].slaves;
        if (slaves.isEmpty())
            slaves.add();
        EtherCatSignal &variable = slaves.at(0)->slave_signals.add();
        variable.name = QStringLiteral("V");
        variable.data_type = type;
        variable.start_bit = startBit;
        variable.bit_length = bitLength;
        variable.mdf4_flags = intoMdf4;
        return variable;
    }

    void addImage(quint32 timestamp_us, const char *hex)
    {
        add(rawlog::etherCatEntry(timestamp_us, bus, QByteArray::fromHex(hex)));
    }
};

} // namespace

class tst_Ethercat : public QObject
{
    Q_OBJECT

private slots:
    void aMasterThatIsOffGivesNoGroup();
    void aMasterWithoutVariablesGivesNoGroup();
    void variablesWithoutTheirFlagAreLeftOut();
    void theGroupIsCalledAfterItsBus();
    void variablesOfAllSlavesAreInListOrder();
    void entriesOfOtherBusesAreNotTaken();
    void wholeTypesAreReadInTheirSize_data();
    void wholeTypesAreReadInTheirSize();
    void bitTypesAreTestedInTheirByte_data();
    void bitTypesAreTestedInTheirByte();
    void anOctetStringHasTheBytesOfItsBitLength_data();
    void anOctetStringHasTheBytesOfItsBitLength();
    void aTypeWithoutExtractionIsReportedAndLeftOut_data();
    void aTypeWithoutExtractionIsReportedAndLeftOut();
    void aVariableWithoutANameGetsANote();
    void aVariableIsScaledByItsMultiplier();
    void aMultiplierOf0MeansNoScaling();
    void theImageBeginsBehindItsHead();
    void anImageThatEndsBeforeAVariableIsDroppedAndTold();
};

void tst_Ethercat::aMasterThatIsOffGivesNoGroup()
{
    Log log;
    log.configuration.ethercat[bus].enabled = 0;
    log.addVariable(5, 0);
    log.addImage(1, "01");
    QVERIFY(log.convert().file.groups.empty());
}

void tst_Ethercat::aMasterWithoutVariablesGivesNoGroup()
{
    Log log;
    log.addImage(1, "01");
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QVERIFY(result.file.groups.empty());
}

void tst_Ethercat::variablesWithoutTheirFlagAreLeftOut()
{
    Log log;
    log.addVariable(5, 0).mdf4_flags = 0xFE;
    log.addVariable(5, 8).name = QStringLiteral("W");
    log.addImage(1, "0102");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0), QStringList(QStringLiteral("W")));
    QCOMPARE(result.raw(0, "W"), QVector<double>{2});
}

void tst_Ethercat::theGroupIsCalledAfterItsBus()
{
    Log log;
    log.addVariable(5, 0);
    log.addImage(1, "01");
    QCOMPARE(log.convert().groupNames(), QStringList(QStringLiteral("Ethercat-3")));
}

void tst_Ethercat::variablesOfAllSlavesAreInListOrder()
{
    Log log;
    log.addVariable(5, 8);
    log.addVariable(5, 0).name = QStringLiteral("W");
    EtherCatSignal &third = log.configuration.ethercat[bus].slaves.add().slave_signals.add();
    third.name = QStringLiteral("A");
    third.data_type = 5;
    third.start_bit = 16;
    third.mdf4_flags = intoMdf4;
    log.addImage(1, "010203");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0).join(QLatin1Char(' ')), QStringLiteral("V W A"));
    QCOMPARE(result.raw(0, "A"), QVector<double>{3});
}

void tst_Ethercat::entriesOfOtherBusesAreNotTaken()
{
    Log log;
    log.addVariable(5, 0);
    log.addImage(1, "01");
    log.add(rawlog::etherCatEntry(2, bus + 1, QByteArray::fromHex("02")));
    QCOMPARE(log.convert().raw(0, "V"), QVector<double>{1});
}

void tst_Ethercat::wholeTypesAreReadInTheirSize_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<uint>("dataType");
    QTest::addColumn<double>("value");
    QTest::newRow("INTEGER8") << 0x02 << QByteArray("80") << 2U << -128.0;
    QTest::newRow("INTEGER16") << 0x03 << QByteArray("FEFF") << 2U << -2.0;
    QTest::newRow("INTEGER32") << 0x04 << QByteArray("00000080") << 2U << -2147483648.0;
    QTest::newRow("UNSIGNED8") << 0x05 << QByteArray("FF") << 0U << 255.0;
    QTest::newRow("UNSIGNED16") << 0x06 << QByteArray("0180") << 0U << 32769.0;
    QTest::newRow("UNSIGNED32") << 0x07 << QByteArray("FFFFFFFF") << 0U << 4294967295.0;
    QTest::newRow("REAL32") << 0x08 << QByteArray("0000C0BF") << 4U << -1.5;
    QTest::newRow("REAL64") << 0x11 << QByteArray("000000000000F83F") << 4U << 1.5;
}

void tst_Ethercat::wholeTypesAreReadInTheirSize()
{
    QFETCH(int, code);
    QFETCH(QByteArray, bytes);
    QFETCH(uint, dataType);
    QFETCH(double, value);
    Log log;
    log.addVariable(quint8(code), 16);
    log.addImage(1, ("AAAA" + bytes + "AA").constData());
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "V").dataType, dataType);
    QCOMPARE(result.channel(0, "V").bitCount, uint(bytes.size()) * 4);
    QCOMPARE(result.raw(0, "V"), QVector<double>{value});
}

void tst_Ethercat::bitTypesAreTestedInTheirByte_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("startBit");
    QTest::addColumn<int>("setBit"); // of the second byte
    QTest::newRow("BOOLEAN at bit 0") << 0x01 << 8 << 0;
    QTest::newRow("BOOLEAN at bit 5") << 0x01 << 13 << 5;
    for (int i = 0; i < 8; ++i) {
        const QByteArray tag = "BIT" + QByteArray::number(i + 1);
        QTest::newRow(tag.constData()) << '0' + i << 8 << i;
    }
    QTest::newRow("BIT3 at another bit of the byte") << int('2') << 15 << 2;
}

void tst_Ethercat::bitTypesAreTestedInTheirByte()
{
    QFETCH(int, code);
    QFETCH(int, startBit);
    QFETCH(int, setBit);
    Log log;
    log.addVariable(quint8(code), quint16(startBit), 1);
    const int mask = 1 << setBit;
    log.add(rawlog::etherCatEntry(1, bus, QByteArray(1, 0) + char(mask)));
    log.add(rawlog::etherCatEntry(2, bus, QByteArray(1, char(0xFF)) + char(~mask)));
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "V").bitCount, 8U);
    QCOMPARE(result.raw(0, "V"), (QVector<double>{1, 0}));
}

void tst_Ethercat::anOctetStringHasTheBytesOfItsBitLength_data()
{
    QTest::addColumn<int>("bitLength");
    QTest::addColumn<quint64>("value");
    QTest::newRow("a byte") << 8 << quint64(0x01);
    QTest::newRow("three bytes") << 24 << quint64(0x030201);
    QTest::newRow("a begun byte counts") << 17 << quint64(0x030201);
    QTest::newRow("eight bytes") << 64 << quint64(0x0807060504030201);
    QTest::newRow("no more than eight") << 80 << quint64(0x0807060504030201);
}

void tst_Ethercat::anOctetStringHasTheBytesOfItsBitLength()
{
    QFETCH(int, bitLength);
    QFETCH(quint64, value);
    Log log;
    log.addVariable(10, 0, quint16(bitLength));
    log.addImage(1, "0102030405060708090A");
    QCOMPARE(log.convert().bits(0, "V"), QVector<quint64>{value});
}

void tst_Ethercat::aTypeWithoutExtractionIsReportedAndLeftOut_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {0, 9, 11, 18, 47, 56, 255})
        QTest::newRow(QByteArray::number(code).constData()) << code;
}

void tst_Ethercat::aTypeWithoutExtractionIsReportedAndLeftOut()
{
    QFETCH(int, code);
    Log log;
    log.addVariable(quint8(code), 0);
    log.addVariable(5, 8).name = QStringLiteral("W");
    log.addImage(1, "0102");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channelNames(0), QStringList(QStringLiteral("W")));
    QCOMPARE(result.errors,
             QStringList(QStringLiteral("ERROR - MDF4 CONVERSION: Trying to Convert an Unknown "
                                        "EtherCAT Type to MDF4! Type:%1")
                             .arg(code)));
}

void tst_Ethercat::aVariableWithoutANameGetsANote()
{
    Log log;
    log.addVariable(5, 0).name.clear();
    log.addImage(1, "01");
    QCOMPARE(log.convert().channelNames(0), QStringList(QStringLiteral("Add a Note...")));
}

void tst_Ethercat::aVariableIsScaledByItsMultiplier()
{
    Log log;
    EtherCatSignal &variable = log.addVariable(5, 0);
    variable.unit = QStringLiteral("bar");
    variable.multiplier = 0.5;
    variable.offset = -3;
    log.addImage(1, "10");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "V").conversion.values, (std::vector<double>{-3, 0.5}));
    QCOMPARE(result.channel(0, "V").unit, std::string("bar"));
    QCOMPARE(result.physical(0, "V"), QVector<double>{5});
}

void tst_Ethercat::aMultiplierOf0MeansNoScaling()
{
    Log log;
    EtherCatSignal &variable = log.addVariable(5, 0);
    variable.multiplier = 0;
    variable.offset = -3;
    log.addImage(1, "10");
    QCOMPARE(log.convert().channel(0, "V").conversion.values, (std::vector<double>{0, 1}));
}

void tst_Ethercat::theImageBeginsBehindItsHead()
{
    Log log;
    log.addVariable(5, 0);
    const QByteArray head = QByteArray::fromHex("A0A1A2A3A4A5A6A7A8A9AAAB");
    log.add(rawlog::timestampedEntry({rawlog::RLD_ETHERCAT, bus, 0, 0}, 1, head + '\x2A'));
    QCOMPARE(log.convert().raw(0, "V"), QVector<double>{0x2A});
}

void tst_Ethercat::anImageThatEndsBeforeAVariableIsDroppedAndTold()
{
    Log log;
    log.addVariable(5, 0);
    log.addVariable(7, 8).name = QStringLiteral("W");
    log.addImage(1, "01 01000000");
    log.addImage(2, "02 020000");
    log.addImage(3, "");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "V"), QVector<double>{1});
    QCOMPARE(result.summary.droppedRecords, quint64(1));
    QCOMPARE(result.warnings,
             QStringList(QStringLiteral("1 records of channel-group Ethercat-3 were left out, "
                                        "they lacked the data of some of its channels.")));
}

QTEST_GUILESS_MAIN(tst_Ethercat)
#include "tst_ethercat.moc"
