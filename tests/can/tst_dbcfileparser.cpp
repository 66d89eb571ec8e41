#include "can/dbcfileparser.h"
#include "dbctestfile.h"

#include <QtTest>

class tst_DbcFileParser : public QObject
{
    Q_OBJECT

private slots:
    void aSignalIsReadWithItsMessage();
    void signalsKeepTheOrderOfTheFile();
    void motorolaAndSignedAreTold();
    void bit31OfTheIdentifierMeans29Bits();
    void aWideIdentifierWithoutBit31Stays();
    void multiplexorAndMultiplexedSignalsAreTold();
    void aNegativeMultiplexorValueIsRead();
    void theLargestFieldsAreRead();
    void aBlankLineEndsTheMessage();
    void aLineOfColonsEndsTheMessage();
    void anyOtherLineEndsTheMessage();
    void keywordsMindTheCase();
    void aLongerWordThatBeginsAsAMessageDoesNotEndTheMessage();
    void signalsOfNoMessageStillBelongToTheMessageInFront();
    void signalsOfNoMessageBehindABlankLineAreIgnored();
    void tabsAndManyBlanksAreOneBlank();
    void unicodeBlanksAndControlCharactersAreBlanks();
    void colonsVanishEverywhere();
    void theUnitLosesBlanksAndColons_data();
    void theUnitLosesBlanksAndColons();
    void receiversAreNotRead();
    void crLfAndAMissingLastEndMakeNoDifference();
    void aFileOfCrAloneIsOneLine();
    void floatTypesAreReadAsWholeNumbersAndCounted();
    void onlyFloatTypesAreCounted();
    void onlySignalsOfSeveralMultiplexorValuesAreCounted_data();
    void onlySignalsOfSeveralMultiplexorValuesAreCounted();
    void whatIsPassedOverIsCounted();
    void signalsOfNoMessageAreCounted();
    void signalsThatDoNotFitTheirMessageAreCounted_data();
    void signalsThatDoNotFitTheirMessageAreCounted();
    void aFileWithoutSignalsIsFine_data();
    void aFileWithoutSignalsIsFine();
    void unitsSurviveInAnyEncoding_data();
    void unitsSurviveInAnyEncoding();
    void aNulByteIsACharacter();
};

void tst_DbcFileParser::aSignalIsReadWithItsMessage()
{
    const LoadedDbc dbc("VERSION \"\"\n\nBO_ 291 Engine: 8 ECU1\n"
                        " SG_ Speed : 24|16@1+ (0.25,-40) [-40|16343.75] \"rpm\" ECU2,ECU3\n");
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QCOMPARE(dbc.count(), 1);
    const StreamingClass_DBC_Signal &signal = dbc.at(0);
    QCOMPARE(signal.name, QStringLiteral("Speed"));
    QCOMPARE(signal.unit, QStringLiteral("rpm"));
    QCOMPARE(signal.description, QString());
    QCOMPARE(signal.mux_kind, quint8(PlainSignal));
    QCOMPARE(signal.mux_value, 0);
    QCOMPARE(signal.start_bit, quint16(24));
    QCOMPARE(signal.bit_length, quint16(16));
    QCOMPARE(signal.little_endian, quint8(1));
    QCOMPARE(signal.is_signed, quint8(0));
    QCOMPARE(signal.factor, 0.25);
    QCOMPARE(signal.offset, -40.0);
    QCOMPARE(signal.minimum, -40.0);
    QCOMPARE(signal.maximum, 16343.75);
    QCOMPARE(signal.selection_flags, quint8(0));
    QCOMPARE(signal.dlc, quint8(8));
    QCOMPARE(signal.msg_id, quint32(291));
    QCOMPARE(signal.extended_id, quint8(0));
}

void tst_DbcFileParser::signalsKeepTheOrderOfTheFile()
{
    const LoadedDbc dbc("BO_ 2 B: 8 X\n" + signalLine("b") + signalLine("a") + "BO_ 1 A: 4 X\n"
                        + signalLine("c"));
    QCOMPARE(dbc.names(), QStringLiteral("b a c"));
    QCOMPARE(dbc.at(1).msg_id, quint32(2));
    QCOMPARE(dbc.at(2).msg_id, quint32(1));
    QCOMPARE(dbc.at(2).dlc, quint8(4));
}

void tst_DbcFileParser::motorolaAndSignedAreTold()
{
    const LoadedDbc dbc(engineMessage + " SG_ A : 7|64@0- (1E-3,-1.5e+2) [-1|1] \"\" X\n");
    QCOMPARE(dbc.at(0).little_endian, quint8(0));
    QCOMPARE(dbc.at(0).is_signed, quint8(1));
    QCOMPARE(dbc.at(0).factor, 0.001);
    QCOMPARE(dbc.at(0).offset, -150.0);
}

void tst_DbcFileParser::bit31OfTheIdentifierMeans29Bits()
{
    const LoadedDbc dbc("BO_ 2147483939 A: 8 X\n" + signalLine("a") + "BO_ 4294967295 B: 8 X\n"
                        + signalLine("b"));
    QCOMPARE(dbc.at(0).msg_id, quint32(0x123));
    QCOMPARE(dbc.at(0).extended_id, quint8(1));
    QCOMPARE(dbc.at(1).msg_id, quint32(0x1FFFFFFF));
    QCOMPARE(dbc.at(1).extended_id, quint8(1));
}

void tst_DbcFileParser::aWideIdentifierWithoutBit31Stays()
{
    const LoadedDbc dbc("BO_ 2147483647 A: 8 X\n" + signalLine("a"));
    QCOMPARE(dbc.at(0).msg_id, quint32(0x7FFFFFFF));
    QCOMPARE(dbc.at(0).extended_id, quint8(0));
}

void tst_DbcFileParser::multiplexorAndMultiplexedSignalsAreTold()
{
    const LoadedDbc dbc(engineMessage + signalLine("Page M") + signalLine("A m0")
                        + signalLine("B m15") + signalLine("C"));
    QCOMPARE(dbc.names(), QStringLiteral("Page A B C"));
    QCOMPARE(dbc.at(0).mux_kind, quint8(MultiplexorSignal));
    QCOMPARE(dbc.at(0).mux_value, 0);
    QCOMPARE(dbc.at(1).mux_kind, quint8(MultiplexedSignal));
    QCOMPARE(dbc.at(1).mux_value, 0);
    QCOMPARE(dbc.at(2).mux_kind, quint8(MultiplexedSignal));
    QCOMPARE(dbc.at(2).mux_value, 15);
    QCOMPARE(dbc.at(3).mux_kind, quint8(PlainSignal));
}

void tst_DbcFileParser::aNegativeMultiplexorValueIsRead()
{
    QCOMPARE(LoadedDbc(engineMessage + signalLine("A m-2")).at(0).mux_value, -2);
}

void tst_DbcFileParser::theLargestFieldsAreRead()
{
    const LoadedDbc dbc("BO_ 1 A: 255 X\n SG_ A m2147483647 : 65535|65535@1+ (1,0) "
                        "[-1.7976931348623157e308|1.7976931348623157e308] \"\" X\n");
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QCOMPARE(dbc.at(0).dlc, quint8(255));
    QCOMPARE(dbc.at(0).mux_value, 2147483647);
    QCOMPARE(dbc.at(0).start_bit, quint16(65535));
    QCOMPARE(dbc.at(0).bit_length, quint16(65535));
    QCOMPARE(dbc.at(0).maximum, std::numeric_limits<double>::max());
}

void tst_DbcFileParser::aBlankLineEndsTheMessage()
{
    const LoadedDbc dbc(engineMessage + signalLine("A") + " \t\n" + signalLine("Orphan"));
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.names(), QStringLiteral("A"));
    QCOMPARE(dbc.parser.summary().ignored_signals, 1);
}

void tst_DbcFileParser::aLineOfColonsEndsTheMessage()
{
    QCOMPARE(LoadedDbc(engineMessage + " : ::\n" + signalLine("Orphan")).names(), QString());
}

void tst_DbcFileParser::anyOtherLineEndsTheMessage()
{
    const LoadedDbc dbc(engineMessage + signalLine("A") + "EV_ Env: 0\n" + signalLine("Orphan"));
    QCOMPARE(dbc.names(), QStringLiteral("A"));
}

void tst_DbcFileParser::keywordsMindTheCase()
{
    const LoadedDbc dbc("bo_ 1 A: 8 X\n" + signalLine("A") + engineMessage + " sg_ B\n"
                        + signalLine("C"));
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.count(), 0);
}

void tst_DbcFileParser::aLongerWordThatBeginsAsAMessageDoesNotEndTheMessage()
{
    const LoadedDbc dbc(engineMessage + "BO_TX_BU_ 291 : ECU1,ECU2;\n" + signalLine("A"));
    QCOMPARE(dbc.names(), QStringLiteral("A"));
}

void tst_DbcFileParser::signalsOfNoMessageStillBelongToTheMessageInFront()
{
    const LoadedDbc dbc(engineMessage + signalLine("A")
                        + "BO_ 3221225472 VECTOR__INDEPENDENT_SIG_MSG: 0 Vector__XXX\n"
                        + signalLine("Loose"));
    QCOMPARE(dbc.names(), QStringLiteral("A Loose"));
    QCOMPARE(dbc.at(1).msg_id, quint32(291));
    QCOMPARE(dbc.parser.summary().messages, 1);
}

void tst_DbcFileParser::signalsOfNoMessageBehindABlankLineAreIgnored()
{
    const LoadedDbc dbc(engineMessage + signalLine("A")
                        + "\nBO_ 3221225472 VECTOR__INDEPENDENT_SIG_MSG: 0 Vector__XXX\n"
                        + signalLine("Loose"));
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.names(), QStringLiteral("A"));
}

void tst_DbcFileParser::tabsAndManyBlanksAreOneBlank()
{
    const LoadedDbc dbc("\tBO_   291\tEngine :  8   ECU1  \n"
                        "\t\tSG_\tA\t:\t24|16@1+\t(0.25,0)\t[0|1]\t\"rpm\"\tECU2\t\n");
    QCOMPARE(dbc.names(), QStringLiteral("A"));
    QCOMPARE(dbc.at(0).unit, QStringLiteral("rpm"));
}

void tst_DbcFileParser::unicodeBlanksAndControlCharactersAreBlanks()
{
    const LoadedDbc dbc("\v\fBO_\u00a0291\u2003Engine:\u30008\rECU1\n"
                        "\u00a0SG_\u2028Caf\u00e9 : 0|8@1+\f(1,0)\v[0|0] \"k\u00a0m\"\u0085ECU2\n");
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QCOMPARE(dbc.names(), QString::fromUtf8("Caf\u00e9"));
    QCOMPARE(dbc.at(0).unit, QStringLiteral("km"));
}

void tst_DbcFileParser::colonsVanishEverywhere()
{
    const LoadedDbc dbc(
        ": B:O_ 2:91 Engine 8: ECU1:\n:SG_: A:B : 0|1:6@1:+ (1,:0) [0|0:] \"\" X\n");
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QCOMPARE(dbc.names(), QStringLiteral("AB"));
    QCOMPARE(dbc.at(0).msg_id, quint32(291));
    QCOMPARE(dbc.at(0).bit_length, quint16(16));
}

void tst_DbcFileParser::theUnitLosesBlanksAndColons_data()
{
    QTest::addColumn<QByteArray>("inFile");
    QTest::addColumn<QString>("unit");
    QTest::newRow("plain") << QByteArray("\"km/h\"") << QStringLiteral("km/h");
    QTest::newRow("empty") << QByteArray("\"\"") << QString();
    QTest::newRow("blanks") << QByteArray("\"m / s\"") << QStringLiteral("m/s");
    QTest::newRow("colon") << QByteArray("\"1:1\"") << QStringLiteral("11");
    QTest::newRow("quote inside") << QByteArray("\"5\"6\"") << QStringLiteral("5\"6");
    QTest::newRow("word that ends in a quote") << QByteArray("\"5\" 6\"") << QStringLiteral("5");
    // The first word is a quote alone, which begins and ends with one.
    QTest::newRow("blank") << QByteArray("\" \"") << QString();
    QTest::newRow("blank in front") << QByteArray("\" rpm\"") << QString();
}

void tst_DbcFileParser::theUnitLosesBlanksAndColons()
{
    QFETCH(QByteArray, inFile);
    const LoadedDbc dbc(engineMessage + " SG_ A : 0|8@1+ (1,0) [0|0] " + inFile + " ECU2\n");
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QTEST(dbc.at(0).unit, "unit");
}

void tst_DbcFileParser::receiversAreNotRead()
{
    const LoadedDbc dbc(engineMessage + " SG_ A : 0|8@1+ (1,0) [0|0] \"\" \"(|@ , x y z\n");
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.names(), QStringLiteral("A"));
}

void tst_DbcFileParser::crLfAndAMissingLastEndMakeNoDifference()
{
    const QByteArray text = engineMessage + signalLine("A") + signalLine("B");
    QCOMPARE(LoadedDbc(QByteArray(text).replace('\n', "\r\n")).names(), QStringLiteral("A B"));
    QCOMPARE(LoadedDbc(text.left(text.size() - 1)).names(), QStringLiteral("A B"));
}

void tst_DbcFileParser::aFileOfCrAloneIsOneLine()
{
    const LoadedDbc dbc(
        "VERSION \"\"\r\rBO_ 291 Engine: 8 ECU1\r SG_ A : 0|8@1+ (1,0) [0|0] \"\" X");
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.count(), 0);
}

void tst_DbcFileParser::floatTypesAreReadAsWholeNumbersAndCounted()
{
    const LoadedDbc dbc(engineMessage + " SG_ A : 0|32@1- (1,0) [0|0] \"\" X\n"
                        + "\nSIG_VALTYPE_ 291 A : 1;\n");
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.at(0).bit_length, quint16(32));
    QCOMPARE(dbc.at(0).is_signed, quint8(1));
    QCOMPARE(dbc.parser.summary().float_types, 1);
}

void tst_DbcFileParser::onlyFloatTypesAreCounted()
{
    const LoadedDbc dbc("SIG_VALTYPE_\nSIG_VALTYPE_ 1 A : 0;\nSIG_VALTYPE_ 1 B:2 ; \n"
                        "SIG_VALTYPE_ ;\nSIG_VALTYPE_X 1 C : 1;\n");
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.parser.summary().float_types, 1);
}

void tst_DbcFileParser::onlySignalsOfSeveralMultiplexorValuesAreCounted_data()
{
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<int>("count");
    QTest::newRow("one value") << QByteArray("SG_MUL_VAL_ 291 A Page 8-8;") << 0;
    QTest::newRow("one value, blank behind") << QByteArray("SG_MUL_VAL_ 291 A Page 8-8 ;") << 0;
    QTest::newRow("several") << QByteArray("SG_MUL_VAL_ 291 A Page 8-8, 16-16;") << 1;
    QTest::newRow("several without blanks") << QByteArray("SG_MUL_VAL_ 291 A Page 8-8,9-9;") << 1;
    QTest::newRow("several apart by blanks")
        << QByteArray("SG_MUL_VAL_ 291 A Page 8-8 , 9-9;") << 1;
    QTest::newRow("range") << QByteArray(" SG_MUL_VAL_\t291 A Page 3-5") << 1;
    QTest::newRow("no value") << QByteArray("SG_MUL_VAL_ 291 A Page;") << 0;
    QTest::newRow("keyword alone") << QByteArray("SG_MUL_VAL_") << 0;
}

void tst_DbcFileParser::onlySignalsOfSeveralMultiplexorValuesAreCounted()
{
    QFETCH(QByteArray, statement);
    const LoadedDbc dbc(engineMessage + signalLine("Page M") + signalLine("A m8") + "\n" + statement
                        + "\n");
    QVERIFY(dbc.ok);
    QTEST(dbc.parser.summary().multiplexor_ranges, "count");
    QCOMPARE(dbc.at(1).mux_value, 8);
}

void tst_DbcFileParser::whatIsPassedOverIsCounted()
{
    const LoadedDbc dbc(engineMessage + signalLine("A") + "\n" + signalLine("Orphan")
                        + "VAL_ 291 A 0 \"off\"\n 1 \"on\" ;\nVAL_TABLE_ t 0 \"a\";\n"
                          "CM_ \"bus\";\nCM_ BU_ ECU1 \"node\";\nCM_ BO_ 291 \"message\";\n"
                          "CM_ SG_ 291 A \"taken\";\nCM_ SG_ 291 B \"of no signal\";\n"
                          "CM_ SG_ 291;\nCM_ SG_ 291 A without quotes;\n");
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    const DbcSummary &summary = dbc.parser.summary();
    QCOMPARE(summary.messages, 1);
    QCOMPARE(summary.signal_count, 1);
    QCOMPARE(summary.ignored_signals, 1);
    QCOMPARE(summary.value_tables, 1);
    QCOMPARE(summary.named_value_tables, 1);
    QCOMPARE(summary.other_comments, 3);
    QCOMPARE(summary.comments_without_signal, 3);
    QCOMPARE(dbc.at(0).description, QStringLiteral("taken"));
}

void tst_DbcFileParser::signalsOfNoMessageAreCounted()
{
    const LoadedDbc dbc(engineMessage + signalLine("A")
                        + "BO_ 3221225472 VECTOR__INDEPENDENT_SIG_MSG: 0 Vector__XXX\n"
                        + signalLine("Lost") + "BO_ 292 Gear: 8 ECU1\n" + signalLine("B"));
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QCOMPARE(dbc.count(), 3);
    QCOMPARE(dbc.at(1).msg_id, 291U);
    QCOMPARE(dbc.parser.summary().signals_of_no_message, 1);
}

void tst_DbcFileParser::signalsThatDoNotFitTheirMessageAreCounted_data()
{
    QTest::addColumn<QByteArray>("position");
    QTest::addColumn<int>("count");
    QTest::newRow("all of it") << QByteArray("0|64@1+") << 0;
    QTest::newRow("its last bit") << QByteArray("63|1@1+") << 0;
    QTest::newRow("beyond it") << QByteArray("63|2@1+") << 1;
    QTest::newRow("Motorola, all of it") << QByteArray("7|64@0+") << 0;
    QTest::newRow("Motorola, beyond it") << QByteArray("6|64@0+") << 1;
    QTest::newRow("more than 64 bits") << QByteArray("0|65@1+") << 1;
}

void tst_DbcFileParser::signalsThatDoNotFitTheirMessageAreCounted()
{
    QFETCH(QByteArray, position);
    const LoadedDbc dbc(engineMessage + " SG_ A : " + position + " (1,0) [0|0] \"\" X\n");
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QTEST(dbc.parser.summary().oversized_signals, "count");
}

void tst_DbcFileParser::aFileWithoutSignalsIsFine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("only comments") << QByteArray("CM_ SG_ 1 A \"text\";\nCM_ \"text\";\n");
    QTest::newRow("blank lines") << QByteArray("\n\r\n \n");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF");
    QTest::newRow("noise") << QByteArray("\x00\xFF\x80\x7F\n\xC3\r\x00", 8);
    QTest::newRow("messages without signals") << QByteArray("BO_ 1 A: 8 X\nBO_ 2 B: 8 X\n");
}

void tst_DbcFileParser::aFileWithoutSignalsIsFine()
{
    QFETCH(QByteArray, bytes);
    const LoadedDbc dbc(bytes);
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QCOMPARE(dbc.count(), 0);
}

void tst_DbcFileParser::unitsSurviveInAnyEncoding_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("unit");
    QTest::newRow("UTF-8") << QByteArray()
                           << QByteArray("\xC2\xB0"
                                         "C");
    QTest::newRow("UTF-8 with mark") << QByteArray("\xEF\xBB\xBF")
                                     << QByteArray("\xC2\xB0"
                                                   "C");
    QTest::newRow("Windows-1252") << QByteArray()
                                  << QByteArray("\xB0"
                                                "C");
}

void tst_DbcFileParser::unitsSurviveInAnyEncoding()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, unit);
    const LoadedDbc dbc(head + engineMessage + " SG_ A : 0|8@1+ (1,0) [0|0] \"" + unit
                        + "\" ECU2\nCM_ SG_ 291 A \"in " + unit + "\";\n");
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QCOMPARE(dbc.at(0).unit, QString::fromUtf8("\u00b0C"));
    QCOMPARE(dbc.at(0).description, QString::fromUtf8("in \u00b0C"));
}

void tst_DbcFileParser::aNulByteIsACharacter()
{
    const LoadedDbc dbc(engineMessage + signalLine(QByteArray("A\0B", 3)));
    QCOMPARE(dbc.at(0).name, QString::fromLatin1("A\0B", 3));
}

QTEST_GUILESS_MAIN(tst_DbcFileParser)
#include "tst_dbcfileparser.moc"
