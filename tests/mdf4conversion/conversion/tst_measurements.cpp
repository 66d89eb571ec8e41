#include "MDF4Conversion/Interface_MDF4_Factory/measurementchannel.h"
#include "a2l/rationalfunction.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QRegularExpression>
#include <QTest>

#include <cmath>

namespace {

constexpr quint8 bus = 0;
constexpr quint32 dtoId = 0x400;

enum DataType : quint8 {
    UByte,
    SByte,
    UWord,
    SWord,
    ULong,
    SLong,
    UInt64,
    SInt64,
    Float32,
    Float64
};
enum ConversionType : quint8 { Identical, Form, Linear, RatFunc, TabIntp, TabNoIntp, TabVerb };

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

// A log of one measurement M of an XCP slave on ethernet, where a DTO holds eight bytes of a value.
class Log : public ConversionHarness
{
public:
    explicit Log(quint8 type, quint8 size)
        : measurement(testlog::addMeasurement(module(), text("M"), type))
    {
        testlog::addElement(testlog::addOdt(testlog::addDaq(module(), 0), 0), text("M"), size);
    }

    StreamingClass_A2L_Module &module() { return configuration.eth.xcp.module; }

    A2lCompuMethod &addMethod(quint8 type)
    {
        measurement.conversion = text("Method");
        A2lCompuMethod &method = module().compu_methods.add();
        method.name = measurement.conversion;
        method.conversion_type = type;
        method.unit = text("rpm");
        return method;
    }

    void addValue(const QByteArray &hex) { add(testlog::eth(m_time++, ("00" + hex).constData())); }

    A2lMeasurement &measurement;

private:
    quint32 m_time = 1;
};

class ByteLog : public Log
{
public:
    ByteLog()
        : Log(UByte, 1)
    {}
};

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

    void withoutAMethodAValueIsIdentical();
    void identicalHasTheUnitOfItsMethod();
    void anUnknownConversionTypeIsIdentical();
    void linearHasFactorAndOffset();
    void aFormulaIsWrittenOfX_data();
    void aFormulaIsWrittenOfX();
    void aFormulaKeepsTheStoredValue();
    void aMissingFormulaIsLeftOutWithAWarning_data();
    void aMissingFormulaIsLeftOutWithAWarning();
    void aRationalFunctionStoresThePhysicalValue();
    void aRationalFunctionTakesEveryDataType_data();
    void aRationalFunctionTakesEveryDataType();
    void aPoleGivesAnInfinity();
    void aNegativeDiscriminantGivesANaN();
    void theInverseOfTheRationalFunction_data();
    void theInverseOfTheRationalFunction();
    void tablesHoldTheirPairs_data();
    void tablesHoldTheirPairs();
    void tableKeysRiseAndTheFirstOfEqualOnesHolds();
    void theFirstTextOfAKeyHolds();
    void aTextTableHasOneReferenceMoreThanKeys();
    void aMissingOrEmptyTableIsLeftOutWithAWarning_data();
    void aMissingOrEmptyTableIsLeftOutWithAWarning();
    void aTableThatIsTooLongIsLeftOutWithAWarning();

    void theRangeIsThatOfTheStoredValue_data();
    void theRangeIsThatOfTheStoredValue();
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

void tst_Measurements::withoutAMethodAValueIsIdentical()
{
    ByteLog log;
    log.addValue("2A");
    QTest::ignoreMessage(
        QtDebugMsg,
        QRegularExpression(text("^MDF4_DataChannel \\*Interface_MDF4_CCP::"
                                "a2lMeasurementToMDF4DataChannel\\(uint32_t canNr, "
                                "CCP_XCP_Signal\\* sigToFill, StreamingClass_A2L_Module\\* "
                                "a2lModule\\) -> sigToFill->compuMethod == NULL")));
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "M").conversion.type, 0);
    QCOMPARE(result.channel(0, "M").unit, std::string());
    QCOMPARE(result.raw(0, "M"), QVector<double>{0x2A});
}

void tst_Measurements::identicalHasTheUnitOfItsMethod()
{
    ByteLog log;
    log.addMethod(Identical);
    log.addValue("2A");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "M").conversion.type, 0);
    QCOMPARE(result.channel(0, "M").unit, std::string("rpm"));
}

void tst_Measurements::anUnknownConversionTypeIsIdentical()
{
    ByteLog log;
    log.addMethod(7);
    log.addValue("2A");
    QCOMPARE(log.convert().channel(0, "M").conversion.type, 0);
}

void tst_Measurements::linearHasFactorAndOffset()
{
    ByteLog log;
    A2lCompuMethod &method = log.addMethod(Linear);
    method.linear_a = 0.5;
    method.linear_b = -40;
    log.addValue("64");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "M").conversion.type, 1);
    QCOMPARE(result.channel(0, "M").conversion.values, (std::vector<double>{-40, 0.5}));
    QCOMPARE(result.channel(0, "M").unit, std::string("rpm"));
    QCOMPARE(result.physical(0, "M"), QVector<double>{10});
}

void tst_Measurements::aFormulaIsWrittenOfX_data()
{
    QTest::addColumn<QString>("a2l");
    QTest::addColumn<QString>("mdf");
    QTest::newRow("X1") << text("X1*2") << text("X*2");
    QTest::newRow("several") << text("X1*X1+X1") << text("X*X+X");
    QTest::newRow("lower case") << text("(x1+4)/2") << text("(X+4)/2");
    QTest::newRow("X") << text("X+1") << text("X+1");
    QTest::newRow("inside of another name") << text("exp(X1)") << text("exp(X)");
}

void tst_Measurements::aFormulaIsWrittenOfX()
{
    QFETCH(QString, a2l);
    QFETCH(QString, mdf);
    ByteLog log;
    log.addMethod(Form).formula = a2l;
    log.addValue("2A");
    const ConversionResult result = log.convert();
    const mdf4reader::Conversion &conversion = result.channel(0, "M").conversion;
    QCOMPARE(conversion.type, 3);
    QVERIFY(conversion.values.empty());
    QCOMPARE(conversion.texts.size(), size_t(1));
    QCOMPARE(QString::fromStdString(*conversion.texts.front()), mdf);
}

void tst_Measurements::aFormulaKeepsTheStoredValue()
{
    Log log(SWord, 2);
    log.addMethod(Form).formula = text("X1*2");
    log.addValue("FEFF");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "M"), QVector<double>{-2});
    QCOMPARE(result.channel(0, "M").bitCount, 16U);
}

void tst_Measurements::aMissingFormulaIsLeftOutWithAWarning_data()
{
    QTest::addColumn<QString>("formula");
    QTest::newRow("none") << QString();
    QTest::newRow("blanks") << text("  ");
}

void tst_Measurements::aMissingFormulaIsLeftOutWithAWarning()
{
    QFETCH(QString, formula);
    ByteLog log;
    log.addMethod(Form).formula = formula;
    log.addValue("2A");
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings,
             QStringList(text("Measurement M is written without conversion: its computation method "
                              "Method has no formula.")));
    QCOMPARE(result.channel(0, "M").conversion.type, 0);
    QCOMPARE(result.raw(0, "M"), QVector<double>{0x2A});
}

void tst_Measurements::aRationalFunctionStoresThePhysicalValue()
{
    ByteLog log;
    A2lCompuMethod &method = log.addMethod(RatFunc); // internal = 10 physical
    method.coeff_b = 10;
    method.coeff_f = 1;
    log.addValue("FF");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "M"), QVector<double>{25.5});
    const mdf4reader::Channel &channel = result.channel(0, "M");
    QCOMPARE(channel.dataType, 4U);
    QCOMPARE(channel.bitCount, 64U);
    QCOMPARE(channel.conversion.type, 3);
    QCOMPARE(*channel.conversion.texts.front(), std::string("X"));
}

void tst_Measurements::aRationalFunctionTakesEveryDataType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QByteArray>("hex");
    QTest::newRow("unsigned") << int(ULong) << 4 << QByteArray("F4010000");
    QTest::newRow("signed") << int(SWord) << 2 << QByteArray("F401");
    QTest::newRow("float") << int(Float32) << 4 << QByteArray("0000FA43");
    QTest::newRow("double") << int(Float64) << 8 << QByteArray("0000000000407F40");
}

void tst_Measurements::aRationalFunctionTakesEveryDataType()
{
    QFETCH(int, type);
    QFETCH(int, bytes);
    QFETCH(QByteArray, hex);
    Log log{quint8(type), quint8(bytes)};
    A2lCompuMethod &method = log.addMethod(RatFunc);
    method.coeff_b = 8;
    method.coeff_f = 1;
    log.addValue(hex); // 500
    QCOMPARE(log.convert().raw(0, "M"), QVector<double>{62.5});
}

void tst_Measurements::aPoleGivesAnInfinity()
{
    ByteLog log;
    A2lCompuMethod &method = log.addMethod(RatFunc);
    method.coeff_b = 5;
    method.coeff_c = 1;
    method.coeff_e = 1;
    log.addValue("05");
    const QVector<double> values = log.convert().raw(0, "M");
    QCOMPARE(values.size(), 1);
    QVERIFY(std::isinf(values.first()));
}

void tst_Measurements::aNegativeDiscriminantGivesANaN()
{
    Log log(SByte, 1);
    A2lCompuMethod &method = log.addMethod(RatFunc); // internal = physical squared
    method.coeff_a = 1;
    method.coeff_f = 1;
    log.addValue("F7");
    const QVector<double> values = log.convert().raw(0, "M");
    QCOMPARE(values.size(), 1);
    QVERIFY(std::isnan(values.first()));
}

void tst_Measurements::theInverseOfTheRationalFunction_data()
{
    QTest::addColumn<QVector<double>>("abcdef");
    QTest::addColumn<double>("internal");
    QTest::addColumn<double>("physical");
    QTest::newRow("linear") << QVector<double>{0, 10, 0, 0, 0, 1} << 255.0 << 25.5;
    QTest::newRow("with an offset") << QVector<double>{0, 2, 80, 0, 0, 1} << 100.0 << 10.0;
    QTest::newRow("hyperbola") << QVector<double>{0, 0, 6, 0, 1, 0} << 3.0 << 2.0;
    QTest::newRow("square") << QVector<double>{1, 0, 0, 0, 0, 1} << 9.0 << -3.0;
    QTest::newRow("negative square") << QVector<double>{-1, 0, 0, 0, 0, 1} << -9.0 << 3.0;
    QTest::newRow("square below") << QVector<double>{0, 0, 8, 1, 0, 0} << 2.0 << 2.0;
}

void tst_Measurements::theInverseOfTheRationalFunction()
{
    QFETCH(QVector<double>, abcdef);
    QFETCH(double, internal);
    QFETCH(double, physical);
    const a2l::RationalFunction function{abcdef[0], abcdef[1], abcdef[2],
                                         abcdef[3], abcdef[4], abcdef[5]};
    QCOMPARE(function.physical(internal), physical);
}

void tst_Measurements::tablesHoldTheirPairs_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("conversion");
    QTest::addColumn<double>("between");
    QTest::newRow("TAB_INTP") << int(TabIntp) << 4 << 26.0;
    QTest::newRow("TAB_NOINTP") << int(TabNoIntp) << 5 << 20.0;
}

void tst_Measurements::tablesHoldTheirPairs()
{
    QFETCH(int, type);
    QFETCH(int, conversion);
    QFETCH(double, between);
    ByteLog log;
    log.addMethod(quint8(type)).table_name = text("Table");
    A2lCompuTab &table = log.module().compu_tabs.add();
    table.name = text("Table");
    for (const auto &[x, y] :
         {std::pair(0.0, 10.0), std::pair(10.0, 20.0), std::pair(20.0, 40.0)}) {
        A2lCompuTabPair &pair = table.pairs.add();
        pair.x = x;
        pair.y = y;
    }
    log.addValue("0A");
    log.addValue("0D");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "M").conversion.type, conversion);
    QCOMPARE(result.channel(0, "M").conversion.values,
             (std::vector<double>{0, 10, 10, 20, 20, 40}));
    QCOMPARE(result.physical(0, "M"), (QVector<double>{20, between}));
}

void tst_Measurements::tableKeysRiseAndTheFirstOfEqualOnesHolds()
{
    ByteLog log;
    log.addMethod(TabIntp).table_name = text("Table");
    A2lCompuTab &table = log.module().compu_tabs.add();
    table.name = text("Table");
    for (const auto &[x, y] : {std::pair(20.0, 1.0), std::pair(10.0, 2.0), std::pair(20.0, 3.0),
                               std::pair(qQNaN(), 4.0), std::pair(5.0, qQNaN())}) {
        A2lCompuTabPair &pair = table.pairs.add();
        pair.x = x;
        pair.y = y;
    }
    log.addValue("0A");
    QCOMPARE(log.convert().channel(0, "M").conversion.values, (std::vector<double>{10, 2, 20, 1}));
}

void tst_Measurements::theFirstTextOfAKeyHolds()
{
    ByteLog log;
    log.addMethod(TabVerb).table_name = text("Table");
    A2lCompuVTab &table = log.module().compu_vtabs.add();
    table.name = text("Table");
    for (const char *name : {"first", "second"}) {
        A2lCompuVTabPair &pair = table.pairs.add();
        pair.value = 1;
        pair.text = text(name);
    }
    log.addValue("01");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "M").conversion.values, std::vector<double>{1});
    QCOMPARE(result.texts(0, "M"), QStringList(text("first")));
}

void tst_Measurements::aTextTableHasOneReferenceMoreThanKeys()
{
    ByteLog log;
    log.addMethod(TabVerb).table_name = text("Table");
    A2lCompuVTab &table = log.module().compu_vtabs.add();
    table.name = text("Table");
    for (const auto &[value, name] :
         {std::pair(0, "off"), std::pair(1, "on"), std::pair(-1, "?")}) {
        A2lCompuVTabPair &pair = table.pairs.add();
        pair.value = value;
        pair.text = text(name);
    }
    for (const char *value : {"01", "00", "07"})
        log.addValue(value);
    const ConversionResult result = log.convert();
    const mdf4reader::Conversion &conversion = result.channel(0, "M").conversion;
    QCOMPARE(conversion.type, 7);
    QCOMPARE(conversion.values, (std::vector<double>{0, 1, -1}));
    QCOMPARE(conversion.texts.size(), size_t(4));
    QVERIFY(!conversion.texts.back());
    QCOMPARE(result.texts(0, "M"), (QStringList{text("on"), text("off"), QString()}));
}

void tst_Measurements::aMissingOrEmptyTableIsLeftOutWithAWarning_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("empty");
    for (const bool empty : {false, true}) {
        const char *kind = empty ? "empty" : "missing";
        QTest::addRow("TAB_INTP, %s", kind) << int(TabIntp) << empty;
        QTest::addRow("TAB_NOINTP, %s", kind) << int(TabNoIntp) << empty;
        QTest::addRow("TAB_VERB, %s", kind) << int(TabVerb) << empty;
    }
}

void tst_Measurements::aMissingOrEmptyTableIsLeftOutWithAWarning()
{
    QFETCH(int, type);
    QFETCH(bool, empty);
    ByteLog log;
    log.addMethod(quint8(type)).table_name = text("Table");
    if (empty && type == TabVerb)
        log.module().compu_vtabs.add().name = text("Table");
    else if (empty)
        log.module().compu_tabs.add().name = text("Table");
    log.addValue("2A");
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings.size(), 1);
    QVERIFY(result.warnings.first().contains(text("Measurement M ")));
    QVERIFY(result.warnings.first().contains(text("Table")));
    QCOMPARE(result.channel(0, "M").conversion.type, 0);
    QCOMPARE(result.raw(0, "M"), QVector<double>{0x2A});
}

void tst_Measurements::aTableThatIsTooLongIsLeftOutWithAWarning()
{
    ByteLog log;
    log.addMethod(TabIntp).table_name = text("Table");
    A2lCompuTab &table = log.module().compu_tabs.add();
    table.name = text("Table");
    for (int i = 0; i < 0x8000; ++i) // twice as many values don't fit 16 bits
        table.pairs.add().x = i;
    log.addValue("2A");
    const ConversionResult result = log.convert();
    QCOMPARE(result.warnings.size(), 1);
    QCOMPARE(result.channel(0, "M").conversion.type, 0);
}

void tst_Measurements::theRangeIsThatOfTheStoredValue_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<double>("rangeMin");
    QTest::addColumn<double>("rangeMax");
    QTest::newRow("IDENTICAL") << int(Identical) << 10.0 << 60.0;
    QTest::newRow("LINEAR") << int(Linear) << -10.0 << 15.0;
    QTest::newRow("FORM") << int(Form) << 0.0 << 0.0;
    QTest::newRow("RAT_FUNC") << int(RatFunc) << 10.0 << 60.0;
}

void tst_Measurements::theRangeIsThatOfTheStoredValue()
{
    QFETCH(int, type);
    QFETCH(double, rangeMin);
    QFETCH(double, rangeMax);
    ByteLog log;
    A2lCompuMethod &method = log.addMethod(quint8(type));
    method.formula = text("X1");
    method.linear_a = -2;
    method.linear_b = 40;
    method.coeff_b = 10;
    method.coeff_f = 1;
    log.measurement.lower_limit = 10;
    log.measurement.upper_limit = 60;
    log.addValue("2A");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "M").rangeMin, rangeMin);
    QCOMPARE(result.channel(0, "M").rangeMax, rangeMax);
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
