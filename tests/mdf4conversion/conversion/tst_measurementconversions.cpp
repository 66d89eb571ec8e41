#include "MDF4Conversion/Interface_MDF4_Factory/measurementchannel.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "a2l/rationalfunction.h"
#include "tests/support/measurementlog.h"

#include <QRegularExpression>
#include <QTest>

#include <cmath>

using namespace A2lDataType;
using namespace A2lConversionType;

namespace {

using Log = MeasurementLog;

class NoMessages : public MDF4_Conversion_Msg_Interface
{
public:
    void info(const QString &) override {}
    void warning(const QString &) override {}
    void error(const QString &) override {}
    void progress(int, int) override {}
};

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

class tst_MeasurementConversions : public QObject
{
    Q_OBJECT

private slots:
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
    void channelsShareTheTableOfTheirMethods();
    void theRangeIsThatOfTheStoredValue_data();
    void theRangeIsThatOfTheStoredValue();
};

void tst_MeasurementConversions::withoutAMethodAValueIsIdentical()
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

void tst_MeasurementConversions::identicalHasTheUnitOfItsMethod()
{
    ByteLog log;
    log.addMethod(Identical);
    log.addValue("2A");
    const ConversionResult result = log.convert();
    QCOMPARE(result.channel(0, "M").conversion.type, 0);
    QCOMPARE(result.channel(0, "M").unit, std::string("rpm"));
}

void tst_MeasurementConversions::anUnknownConversionTypeIsIdentical()
{
    ByteLog log;
    log.addMethod(7);
    log.addValue("2A");
    QCOMPARE(log.convert().channel(0, "M").conversion.type, 0);
}

void tst_MeasurementConversions::linearHasFactorAndOffset()
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

void tst_MeasurementConversions::aFormulaIsWrittenOfX_data()
{
    QTest::addColumn<QString>("a2l");
    QTest::addColumn<QString>("mdf");
    QTest::newRow("X1") << text("X1*2") << text("X*2");
    QTest::newRow("several") << text("X1*X1+X1") << text("X*X+X");
    QTest::newRow("lower case") << text("(x1+4)/2") << text("(X+4)/2");
    QTest::newRow("X") << text("X+1") << text("X+1");
    QTest::newRow("inside of another name") << text("exp(X1)") << text("exp(X)");
}

void tst_MeasurementConversions::aFormulaIsWrittenOfX()
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

void tst_MeasurementConversions::aFormulaKeepsTheStoredValue()
{
    Log log(SWord, 2);
    log.addMethod(Form).formula = text("X1*2");
    log.addValue("FEFF");
    const ConversionResult result = log.convert();
    QCOMPARE(result.raw(0, "M"), QVector<double>{-2});
    QCOMPARE(result.channel(0, "M").bitCount, 16U);
}

void tst_MeasurementConversions::aMissingFormulaIsLeftOutWithAWarning_data()
{
    QTest::addColumn<QString>("formula");
    QTest::newRow("none") << QString();
    QTest::newRow("blanks") << text("  ");
}

void tst_MeasurementConversions::aMissingFormulaIsLeftOutWithAWarning()
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

void tst_MeasurementConversions::aRationalFunctionStoresThePhysicalValue()
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

void tst_MeasurementConversions::aRationalFunctionTakesEveryDataType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QByteArray>("hex");
    QTest::newRow("unsigned") << int(ULong) << 4 << QByteArray("F4010000");
    QTest::newRow("signed") << int(SWord) << 2 << QByteArray("F401");
    QTest::newRow("float") << int(Float32) << 4 << QByteArray("0000FA43");
    QTest::newRow("double") << int(Float64) << 8 << QByteArray("0000000000407F40");
}

void tst_MeasurementConversions::aRationalFunctionTakesEveryDataType()
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

void tst_MeasurementConversions::aPoleGivesAnInfinity()
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

void tst_MeasurementConversions::aNegativeDiscriminantGivesANaN()
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

void tst_MeasurementConversions::theInverseOfTheRationalFunction_data()
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

void tst_MeasurementConversions::theInverseOfTheRationalFunction()
{
    QFETCH(QVector<double>, abcdef);
    QFETCH(double, internal);
    QFETCH(double, physical);
    const a2l::RationalFunction function{abcdef[0], abcdef[1], abcdef[2],
                                         abcdef[3], abcdef[4], abcdef[5]};
    QCOMPARE(function.physical(internal), physical);
}

void tst_MeasurementConversions::tablesHoldTheirPairs_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("conversion");
    QTest::addColumn<double>("between");
    QTest::newRow("TAB_INTP") << int(TabIntp) << 4 << 26.0;
    QTest::newRow("TAB_NOINTP") << int(TabNoIntp) << 5 << 20.0;
}

void tst_MeasurementConversions::tablesHoldTheirPairs()
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

void tst_MeasurementConversions::tableKeysRiseAndTheFirstOfEqualOnesHolds()
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

void tst_MeasurementConversions::theFirstTextOfAKeyHolds()
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

void tst_MeasurementConversions::aTextTableHasOneReferenceMoreThanKeys()
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

void tst_MeasurementConversions::aMissingOrEmptyTableIsLeftOutWithAWarning_data()
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

void tst_MeasurementConversions::aMissingOrEmptyTableIsLeftOutWithAWarning()
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

void tst_MeasurementConversions::aTableThatIsTooLongIsLeftOutWithAWarning()
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

void tst_MeasurementConversions::channelsShareTheTableOfTheirMethods()
{
    ByteLog log;
    log.addMethod(TabIntp).table_name = text("Table");
    A2lCompuTab &table = log.module().compu_tabs.add();
    table.name = text("Table");
    table.pairs.add();
    NoMessages messages;
    const MeasurementChannels channels(log.module(), messages);
    const CCP_XCP_Signal signal(CCP_XCP_Signal::Ethernet, 0, 0, log.measurement);
    using Table = MDF4_DataChannel_Val2Val_Table_Interpolated;
    const auto one = channels.channelOf(signal, CCP_XCP_Signal::Ethernet);
    const auto other = channels.channelOf(signal, CCP_XCP_Signal::Ethernet);
    QCOMPARE(static_cast<const Table &>(*one).pairs.constData(),
             static_cast<const Table &>(*other).pairs.constData());
}

void tst_MeasurementConversions::theRangeIsThatOfTheStoredValue_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<double>("rangeMin");
    QTest::addColumn<double>("rangeMax");
    QTest::newRow("IDENTICAL") << int(Identical) << 10.0 << 60.0;
    QTest::newRow("LINEAR") << int(Linear) << -10.0 << 15.0;
    QTest::newRow("FORM") << int(Form) << 0.0 << 0.0;
    QTest::newRow("RAT_FUNC") << int(RatFunc) << 10.0 << 60.0;
}

void tst_MeasurementConversions::theRangeIsThatOfTheStoredValue()
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

QTEST_GUILESS_MAIN(tst_MeasurementConversions)
#include "tst_measurementconversions.moc"
