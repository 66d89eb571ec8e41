#include "tests/support/measurementlog.h"

#include <QTest>

using namespace A2lDataType;
using namespace A2lConversionType;

namespace {

using Log = MeasurementLog;

constexpr quint8 bus = 0;
constexpr quint32 dtoId = 0x400;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

class tst_Measurements : public QObject
{
    Q_OBJECT

private slots:
    void dataTypesAreReadInBothByteOrders_data();
    void dataTypesAreReadInBothByteOrders();
    void byteOrderKeysHaveTheirOrder_data();
    void byteOrderKeysHaveTheirOrder();
    void anUnknownByteOrderKeyIsAnErrorThatNamesTheMeasurement_data();
    void anUnknownByteOrderKeyIsAnErrorThatNamesTheMeasurement();
    void anUnknownDataTypeIsLeftOutWithAWarning();
    void theMaskAndTheOperationAreApplied_data();
    void theMaskAndTheOperationAreApplied();
    void theSignIsExtendedBehindTheOperation();
    void anOverflowIsToldWithTheClassOfTheChannel_data();
    void anOverflowIsToldWithTheClassOfTheChannel();
    void anOverflowOnCanIsToldWithTheNameAlone();
};

void tst_Measurements::dataTypesAreReadInBothByteOrders_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QByteArray>("littleEndian");
    QTest::addColumn<uint>("mdfType");
    QTest::addColumn<double>("value");
    const auto row = [](const char *tag, int type, int bytes, const char *hex, uint mdfType,
                        double value) {
        QTest::newRow(tag) << type << bytes << QByteArray(hex) << mdfType << value;
    };
    row("UBYTE", UByte, 1, "FE", 0, 254);
    row("SBYTE", SByte, 1, "FE", 2, -2);
    row("UWORD", UWord, 2, "FEFF", 0, 65534);
    row("SWORD", SWord, 2, "FEFF", 2, -2);
    row("ULONG", ULong, 4, "FEFFFFFF", 0, 4294967294.0);
    row("SLONG", SLong, 4, "FEFFFFFF", 2, -2);
    row("A_UINT64", UInt64, 8, "0000000001000080", 0, 9223372041149743104.0);
    row("A_INT64", SInt64, 8, "FEFFFFFFFFFFFFFF", 2, -2);
    row("FLOAT32_IEEE", Float32, 4, "0000C0BF", 4, -1.5);
    row("FLOAT64_IEEE", Float64, 8, "000000000000F8BF", 4, -1.5);
}

void tst_Measurements::dataTypesAreReadInBothByteOrders()
{
    QFETCH(int, type);
    QFETCH(int, bytes);
    QFETCH(QByteArray, littleEndian);
    QFETCH(uint, mdfType);
    QFETCH(double, value);
    QByteArray bigEndian = QByteArray::fromHex(littleEndian);
    std::reverse(bigEndian.begin(), bigEndian.end());
    for (const quint8 order : {quint8(0), quint8(1)}) {
        Log log{quint8(type), quint8(bytes)};
        log.measurement.byte_order = order;
        log.addValue(order == 0 ? littleEndian : bigEndian.toHex());
        const ConversionResult result = log.convert();
        QCOMPARE(result.raw(0, "M"), QVector<double>{value});
        QCOMPARE(result.channel(0, "M").dataType, mdfType);
        QCOMPARE(result.channel(0, "M").bitCount, uint(bytes) * 8);
    }
}

void tst_Measurements::byteOrderKeysHaveTheirOrder_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<double>("value");
    QTest::newRow("LITTLE_ENDIAN") << 0 << double(0x2211);
    QTest::newRow("BIG_ENDIAN") << 1 << double(0x1122);
    QTest::newRow("MSB_LAST") << 2 << double(0x2211);
    QTest::newRow("MSB_FIRST") << 3 << double(0x1122);
}

void tst_Measurements::byteOrderKeysHaveTheirOrder()
{
    QFETCH(int, key);
    QFETCH(double, value);
    Log log(UWord, 2);
    log.measurement.byte_order = quint8(key);
    log.addValue("1122");
    QCOMPARE(log.convert().raw(0, "M"), QVector<double>{value});
}

void tst_Measurements::anUnknownByteOrderKeyIsAnErrorThatNamesTheMeasurement_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("MSB_FIRST_MSW_LAST") << 4;
    QTest::newRow("MSB_LAST_MSW_FIRST") << 5;
    QTest::newRow("none of them") << 255;
}

void tst_Measurements::anUnknownByteOrderKeyIsAnErrorThatNamesTheMeasurement()
{
    QFETCH(int, key);
    Log log(UWord, 2);
    log.measurement.byte_order = quint8(key);
    log.addValue("1122");
    const ConversionResult result = log.convert();
    QVERIFY(result.summary.written);
    QVERIFY(result.file.groups.empty());
    QCOMPARE(result.errors.size(), 1);
    QVERIFY(result.errors.first().startsWith(text("Measurement M ")));
}

void tst_Measurements::anUnknownDataTypeIsLeftOutWithAWarning()
{
    Log log(10, 2);
    log.addValue("1122");
    const ConversionResult result = log.convert();
    QVERIFY(result.file.groups.empty());
    QCOMPARE(result.warnings.size(), 1);
    QVERIFY(result.warnings.first().startsWith(text("a2lToCNDType - landed in default..")));
}

void tst_Measurements::theMaskAndTheOperationAreApplied_data()
{
    QTest::addColumn<quint64>("mask");
    QTest::addColumn<int>("operation");
    QTest::addColumn<quint64>("shift");
    QTest::addColumn<double>("value"); // of 0xAB
    const quint64 all = ~quint64(0);
    QTest::newRow("all bits") << all << 0 << quint64(0) << double(0xAB);
    QTest::newRow("upper bits") << quint64(0xF0) << 0 << quint64(0) << double(0xA0);
    QTest::newRow("no bits") << quint64(0) << 0 << quint64(0) << 0.0;
    QTest::newRow("without operation a shift does nothing")
        << all << 0 << quint64(4) << double(0xAB);
    QTest::newRow("NOT") << quint64(0xF0) << 1 << quint64(4) << double(0x5F);
    QTest::newRow("left") << quint64(0xF0) << 2 << quint64(1) << double(0x40);
    QTest::newRow("right") << quint64(0xF0) << 3 << quint64(4) << double(0x0A);
    QTest::newRow("left, then NOT") << quint64(0xF0) << 4 << quint64(1) << double(0xBF);
    QTest::newRow("right, then NOT") << quint64(0xF0) << 5 << quint64(4) << double(0xF5);
    QTest::newRow("an operation above 5") << quint64(0xF0) << 6 << quint64(4) << double(0xA0);
    QTest::newRow("left by 64") << all << 2 << quint64(64) << 0.0;
    QTest::newRow("right by 64") << all << 3 << quint64(64) << 0.0;
    QTest::newRow("right by more than any value has") << all << 3 << all << 0.0;
}

void tst_Measurements::theMaskAndTheOperationAreApplied()
{
    QFETCH(quint64, mask);
    QFETCH(int, operation);
    QFETCH(quint64, shift);
    QFETCH(double, value);
    ByteLog log;
    log.measurement.bit_mask = mask;
    log.measurement.bit_operation = quint8(operation);
    log.measurement.shift_count = shift;
    log.addValue("AB");
    QCOMPARE(log.convert().raw(0, "M"), QVector<double>{value});
}

void tst_Measurements::theSignIsExtendedBehindTheOperation()
{
    Log log(SWord, 2);
    log.measurement.bit_mask = 0x0FFF;
    log.measurement.bit_operation = 2;
    log.measurement.shift_count = 4;
    log.addValue("FE0F"); // 0xFFE0 once shifted
    QCOMPARE(log.convert().raw(0, "M"), QVector<double>{-32});
}

void tst_Measurements::anOverflowIsToldWithTheClassOfTheChannel_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("className");
    const auto row = [](const char *tag, int type, const char *name) {
        QTest::newRow(tag) << type << text(name);
    };
    row("IDENTICAL", Identical, "MDF4_DataChannel_Identity_ETH_XCP");
    row("LINEAR", Linear, "MDF4_DataChannel_Linear_ETH_XCP");
    row("FORM", Form, "MDF4_DataChannel_Formula_ETH_XCP");
    row("RAT_FUNC", RatFunc, "MDF4_DataChannel_Formula_ETH_XCP");
    row("TAB_INTP", TabIntp, "MDF4_DataChannel_Val2Val_Table_Interpolated_ETH_XCP");
    row("TAB_NOINTP", TabNoIntp, "MDF4_DataChannel_Val2Val_Table_nonInterpolated_ETH_XCP");
    row("TAB_VERB", TabVerb, "MDF4_DataChannel_Val2Txt_Table_ETH_XCP");
}

void tst_Measurements::anOverflowIsToldWithTheClassOfTheChannel()
{
    QFETCH(int, type);
    QFETCH(QString, className);
    ByteLog log;
    A2lCompuMethod &method = log.addMethod(quint8(type));
    method.formula = text("X1");
    method.table_name = text("Table");
    A2lCompuTab &table = log.module().compu_tabs.add();
    table.name = text("Table");
    table.pairs.add();
    A2lCompuVTab &texts = log.module().compu_vtabs.add();
    texts.name = text("Table");
    texts.pairs.add();
    log.add(testlog::eth(1000, "002A") + testlog::eth(900, "002A"));
    QCOMPARE(log.convert().status(text("TS-Overflow")),
             text("TS-Overflow for M handled. ") + className);
}

void tst_Measurements::anOverflowOnCanIsToldWithTheNameAlone()
{
    ConversionHarness log;
    StreamingClass_A2L_Module &module = log.configuration.can[bus].a2l;
    testlog::addMeasurement(module, text("M"), UByte);
    testlog::addElement(testlog::addOdt(testlog::addDaq(module, dtoId), 0), text("M"), 1);
    for (const quint32 time : {1000U, 900U})
        log.add(testlog::can(time, bus, dtoId, "0000000000000000"));
    QCOMPARE(log.convert().status(text("TS-Overflow")), text("TS-Overflow for M handled."));
}

QTEST_GUILESS_MAIN(tst_Measurements)
#include "tst_measurements.moc"
