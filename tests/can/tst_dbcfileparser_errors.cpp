#include "can/dbcfileparser.h"

#include <QtTest>

namespace {

// A file that is named after its oddity, and the message that it must give.
struct Row
{
    const char *file;
    const char *error;
};

#define AT_LINE(what, line, text) "DBC-File: " what ", line number " line " \r\n( " text " )"

constexpr Row rows[] = {
    {"message_without_sender", AT_LINE("Invalid Message-Structure", "3", "BO_ 292 Idle: 8")},
    {"message_with_colon_glued_to_dlc",
     AT_LINE("Invalid Message-Structure", "3", "BO_ 292 Idle:8 ECU1")},
    {"message_keyword_in_symbol_list", AT_LINE("Invalid Message-Structure", "3", "\tBO_")},
    {"message_keyword_inside_comment",
     AT_LINE("Unable to parse Message-ID", "7", "BO_ is the keyword of a message\";")},
    {"message_id_hexadecimal",
     AT_LINE("Unable to parse Message-ID", "3", "BO_ 0x124 Idle: 8 ECU1")},
    {"message_id_negative", AT_LINE("Unable to parse Message-ID", "3", "BO_ -1 Idle: 8 ECU1")},
    {"message_id_of_33_bits",
     AT_LINE("Unable to parse Message-ID", "3", "BO_ 4294967296 Idle: 8 ECU1")},
    {"dlc_in_words", AT_LINE("Unable to parse DLC", "3", "BO_ 292 Idle: eight ECU1")},
    {"dlc_256", AT_LINE("Unable to parse DLC", "3", "BO_ 292 Idle: 256 ECU1")},
    {"dlc_negative", AT_LINE("Unable to parse DLC", "3", "BO_ 292 Idle: -1 ECU1")},
    {"signal_without_receiver",
     AT_LINE("Invalid line-structure", "4", " SG_ Speed : 0|16@1+ (1,0) [0|0] \"\"")},
    {"signal_without_blanks",
     AT_LINE("Invalid line-structure", "4", " SG_ Speed : 0|16@1+(1,0)[0|0] \"\" ECU2")},
    {"multiplexor_multiplexed_itself", AT_LINE("Unable to parse multiplexor-value", "4",
                                               " SG_ Page m0M : 0|8@1+ (1,0) [0|0] \"\" ECU2")},
    {"multiplexed_without_value", AT_LINE("Unable to parse multiplexor-value", "4",
                                          " SG_ Page m : 0|8@1+ (1,0) [0|0] \"\" ECU2")},
    {"multiplexed_with_value_of_33_bits",
     AT_LINE("Unable to parse multiplexor-value", "4",
             " SG_ Page m2147483648 : 0|8@1+ (1,0) [0|0] \"\" ECU2")},
    {"position_with_comma",
     AT_LINE("Invalid Signal-Structure", "4", " SG_ Speed : 0,16@1+ (1,0) [0|0] \"\" ECU2")},
    {"position_without_at",
     AT_LINE("Invalid Signal-Structure", "4", " SG_ Speed : 0|16 (1,0) [0|0] \"\" ECU2")},
    {"position_with_blanks",
     AT_LINE("Invalid Signal-Structure", "4", " SG_ Speed : 0 | 16 @ 1 + (1,0) [0|0] \"\" ECU2")},
    {"name_with_blank",
     AT_LINE("Invalid Signal-Structure", "4", " SG_ Engine Speed : 0|16@1+ (1,0) [0|0] \"\" ECU2")},
    {"start_bit_missing", AT_LINE("Invalid Signal-Structure (start-bit)", "4",
                                  " SG_ Speed : |16@1+ (1,0) [0|0] \"\" ECU2")},
    {"start_bit_letter",
     AT_LINE("Unable to parse start-bit", "4", " SG_ Speed : x|16@1+ (1,0) [0|0] \"\" ECU2")},
    {"start_bit_65536",
     AT_LINE("Unable to parse start-bit", "4", " SG_ Speed : 65536|16@1+ (1,0) [0|0] \"\" ECU2")},
    {"start_bit_behind_at",
     AT_LINE("Unable to parse start-bit", "4", " SG_ Speed : 16@1|0+ (1,0) [0|0] \"\" ECU2")},
    {"bit_length_missing",
     AT_LINE("Unable to parse bit-length", "4", " SG_ Speed : 0|@1+ (1,0) [0|0] \"\" ECU2")},
    {"bit_length_fraction",
     AT_LINE("Unable to parse bit-length", "4", " SG_ Speed : 0|8.5@1+ (1,0) [0|0] \"\" ECU2")},
    {"bit_length_65536",
     AT_LINE("Unable to parse bit-length", "4", " SG_ Speed : 0|65536@1+ (1,0) [0|0] \"\" ECU2")},
    {"byte_order_2",
     AT_LINE("Unable to parse endianess", "4", " SG_ Speed : 0|16@2+ (1,0) [0|0] \"\" ECU2")},
    {"byte_order_missing",
     AT_LINE("Unable to parse endianess", "4", " SG_ Speed : 0|16@ (1,0) [0|0] \"\" ECU2")},
    {"sign_missing",
     AT_LINE("Unable to parse value-type", "4", " SG_ Speed : 0|16@1 (1,0) [0|0] \"\" ECU2")},
    {"factor_with_decimal_comma", AT_LINE("Unable to parse factor & offset", "4",
                                          " SG_ Speed : 0|16@1+ (0,5,0) [0|0] \"\" ECU2")},
    {"factor_with_blank", AT_LINE("Unable to parse factor & offset", "4",
                                  " SG_ Speed : 0|16@1+ (1, 0) [0|0] \"\" ECU2")},
    {"factor_in_words", AT_LINE("Unable to parse factor & offset", "4",
                                " SG_ Speed : 0|16@1+ (one,0) [0|0] \"\" ECU2")},
    {"factor_not_a_number", AT_LINE("Unable to parse factor & offset", "4",
                                    " SG_ Speed : 0|16@1+ (nan,0) [0|0] \"\" ECU2")},
    {"factor_without_bracket",
     AT_LINE("Unable to parse factor & offset", "4", " SG_ Speed : 0|16@1+ 1,0) [0|0] \"\" ECU2")},
    {"offset_missing",
     AT_LINE("Unable to parse factor & offset", "4", " SG_ Speed : 0|16@1+ (1) [0|0] \"\" ECU2")},
    {"range_with_blank", AT_LINE("Unable to parse value -minimum & -maximum", "4",
                                 " SG_ Speed : 0|16@1+ (1,0) [0| 0] \"\" ECU2")},
    {"range_beyond_double", AT_LINE("Unable to parse value -minimum & -maximum", "4",
                                    " SG_ Speed : 0|16@1+ (1,0) [0|4.4E+481] \"\" ECU2")},
    {"range_with_three_numbers", AT_LINE("Unable to parse value -minimum & -maximum", "4",
                                         " SG_ Speed : 0|16@1+ (1,0) [0|1|2] \"\" ECU2")},
    {"range_without_bracket", AT_LINE("Unable to parse value -minimum & -maximum", "4",
                                      " SG_ Speed : 0|16@1+ (1,0) [0|1 \"\" ECU2")},
    {"unit_without_quotes",
     AT_LINE("Unable to parse value-unit", "4", " SG_ Speed : 0|16@1+ (1,0) [0|0] km ECU2")},
    {"unit_with_open_quote",
     AT_LINE("Unable to parse value-unit", "4", " SG_ Speed : 0|16@1+ (1,0) [0|0] \"km ECU2")},
    {"unit_missing_behind_multiplexor",
     AT_LINE("Unable to parse value-unit", "4", " SG_ Page M : 0|8@1+ (1,0) [0|0] ECU2")},
    {"three_bad_lines",
     AT_LINE("Unable to parse value-type", "5", " SG_ Bad : 0|16@1 (1,0) [0|0] \"\" ECU2")},
    {"value_table_without_semicolon",
     "DBC-File: Invalid Signal-ValueTable structure, \r\nline number 6 ( VAL_ 291 Speed 0 \"off\" "
     ")\r\nline number 7 (   1   \"on\" )"},
    {"comment_without_semicolon", "DBC-File: Invalid Description structure, \r\nline number 6 ( "
                                  "  CM_ SG_ 291 Speed \"no end )"},
    {"comment_with_hexadecimal_id", "DBC-File: Invalid Signal-Description MessageNr, \r\nline "
                                    "number 6 ( CM_ SG_ 0x123 Speed \"over )"},
};

} // namespace

// Every message of the parser, by a small file in tests/data/dbc that is named after its oddity.
class tst_DbcFileParser_Errors : public QObject
{
    Q_OBJECT

private slots:
    void anOddFileGivesItsMessage_data();
    void anOddFileGivesItsMessage();
    void everyFileHasItsMessage();
};

void tst_DbcFileParser_Errors::anOddFileGivesItsMessage_data()
{
    QTest::addColumn<QString>("error");
    for (const Row &row : rows)
        QTest::newRow(row.file) << QString::fromLatin1(row.error);
}

void tst_DbcFileParser_Errors::anOddFileGivesItsMessage()
{
    QFETCH(QString, error);
    DbcFileParser parser;
    QVERIFY(!parser.load(
        QStringLiteral(ZDS_DBC_DIR "/%1.dbc").arg(QLatin1String(QTest::currentDataTag()))));
    QCOMPARE(parser.errorText(), error);
    QVERIFY(!parser.isCancelled());
}

void tst_DbcFileParser_Errors::everyFileHasItsMessage()
{
    const QDir folder(QStringLiteral(ZDS_DBC_DIR));
    QCOMPARE(folder.entryList({QStringLiteral("*.dbc")}).size(), int(std::size(rows)));
}

QTEST_GUILESS_MAIN(tst_DbcFileParser_Errors)
#include "tst_dbcfileparser_errors.moc"
