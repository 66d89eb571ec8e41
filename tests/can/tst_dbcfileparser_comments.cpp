#include "dbctestfile.h"

#include <QtTest>

namespace {

QByteArray withComment(const QByteArray &statement)
{
    return engineMessage + signalLine("Speed") + "\n" + statement;
}

} // namespace

class tst_DbcFileParser_Comments : public QObject
{
    Q_OBJECT

private slots:
    void theDescriptionIs_data();
    void theDescriptionIs();
    void theIdentifierIsMasked();
    void allSignalsOfThatIdentifierAndNameGetIt();
    void onlyThatSignalGetsIt();
    void commentsInFrontOfTheirSignalCount();
    void aSemicolonAtTheEndOfALineEndsTheComment();
    void wholeLinesInsideACommentAreNoStatements();
    void linesInsideAValueTableAreNoStatements();
    void aCommentWhoseIdentifierIsNoNumberIsAnError_data();
    void aCommentWhoseIdentifierIsNoNumberIsAnError();
    void anIdentifierThatIsNoNumberIsFineWithoutAText();
    void manyCommentsOfOneSignalTakeNoTime();
};

void tst_DbcFileParser_Comments::theDescriptionIs_data()
{
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<QString>("description");
    const auto row = [](const char *name, const char *statement, const char *description) {
        QTest::newRow(name) << QByteArray(statement) << QString::fromUtf8(description);
    };
    row("the text", "CM_ SG_ 291 Speed \"of the engine\";", "of the engine");
    row("empty", "CM_ SG_ 291 Speed \"\";", "");
    row("indented, with tabs", "\t CM_\tSG_  291\tSpeed   \"text\";  ", "text");
    row("simplified", "CM_ SG_ 291 Speed \"  many \t blanks  \";", " many blanks ");
    row("with colons", "CM_ SG_ 291 Speed \"a: b\";", "a: b");
    row("over several lines", "CM_ SG_ 291 Speed \"one\n   two   \n\nfour\";",
        "one\r\ntwo\r\n\r\nfour");
    row("over several lines with CR LF", "CM_ SG_ 291 Speed \"one\r\ntwo\";\r\n", "one\r\ntwo");
    row("with quotes inside", "CM_ SG_ 291 Speed \"a \\\"b\\\" c\";", "a \\\"b\\\" c");
    row("blank in front of the semicolon", "CM_ SG_ 291 Speed \"text\" ;", "text\"");
    row("a wide character in front of the semicolon", "CM_ SG_ 291 Speed \"text\"\u20ac;",
        "text\"");
    row("the widest character in front of the semicolon", "CM_ SG_ 291 Speed \"text\"\U0001F600;",
        "text\"");
    row("semicolon on a line of its own", "CM_ SG_ 291 Speed \"text\"\n;", "text\"\r");
    row("the last one", "CM_ SG_ 291 Speed \"first\";\nCM_ SG_ 291 Speed \"second\";", "second");
    row("kept when the next has no quotes",
        "CM_ SG_ 291 Speed \"first\";\nCM_ SG_ 291 Speed second ;", "first");
    row("nothing with one quote", "CM_ SG_ 291 Speed \"text;", "");
    row("nothing with too few words", "CM_ SG_ 291 \"text\";", "");
    row("nothing for another kind", "CM_ BO_ 291 Speed \"text\";", "");
    row("nothing in other letters", "cm_ SG_ 291 Speed \"text\";", "");
    row("nothing for a longer keyword", "CM_X SG_ 291 Speed \"text\";", "");
    row("nothing with the name on the next line", "CM_ SG_ 291 Spe\ned \"text\";", "");
}

void tst_DbcFileParser_Comments::theDescriptionIs()
{
    QFETCH(QByteArray, statement);
    const LoadedDbc dbc(withComment(statement));
    QVERIFY2(dbc.ok, qPrintable(dbc.parser.errorText()));
    QTEST(dbc.at(0).description, "description");
}

void tst_DbcFileParser_Comments::theIdentifierIsMasked()
{
    const LoadedDbc dbc("BO_ 2147483939 A: 8 X\n" + signalLine("Speed")
                        + "\nCM_ SG_ 2147483939 Speed \"text\";\n");
    QCOMPARE(dbc.at(0).msg_id, quint32(0x123));
    QCOMPARE(dbc.at(0).description, QStringLiteral("text"));
}

void tst_DbcFileParser_Comments::allSignalsOfThatIdentifierAndNameGetIt()
{
    const LoadedDbc dbc(engineMessage + signalLine("Speed") + signalLine("Other")
                        + signalLine("Speed") + "BO_ 2147483939 Extended: 8 X\n"
                        + signalLine("Speed") + "\nCM_ SG_ 291 Speed \"text\";\n");
    for (const int index : {0, 2, 3})
        QCOMPARE(dbc.at(index).description, QStringLiteral("text"));
    QCOMPARE(dbc.at(1).description, QString());
}

void tst_DbcFileParser_Comments::onlyThatSignalGetsIt()
{
    const LoadedDbc dbc(engineMessage + signalLine("Speed") + signalLine("speed")
                        + "BO_ 292 Other: 8 X\n" + signalLine("Speed")
                        + "\nCM_ SG_ 291 Speed \"text\";\n");
    QCOMPARE(dbc.at(0).description, QStringLiteral("text"));
    QCOMPARE(dbc.at(1).description, QString());
    QCOMPARE(dbc.at(2).description, QString());
}

void tst_DbcFileParser_Comments::commentsInFrontOfTheirSignalCount()
{
    const LoadedDbc dbc("CM_ SG_ 291 Speed \"text\";\n" + engineMessage + signalLine("Speed"));
    QCOMPARE(dbc.at(0).description, QStringLiteral("text"));
}

void tst_DbcFileParser_Comments::aSemicolonAtTheEndOfALineEndsTheComment()
{
    const LoadedDbc dbc(withComment("CM_ SG_ 291 Speed \"one\" two;\nthree\";\n"));
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.at(0).description, QStringLiteral("one\" tw"));
}

void tst_DbcFileParser_Comments::wholeLinesInsideACommentAreNoStatements()
{
    const LoadedDbc dbc(withComment("CM_ \"one\nCM_ SG_ 291 Speed \"two\"\n;\n"));
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.at(0).description, QString());
    QCOMPARE(dbc.parser.summary().other_comments, 1);
}

void tst_DbcFileParser_Comments::linesInsideAValueTableAreNoStatements()
{
    const LoadedDbc dbc(withComment("VAL_ 291 Speed 0 \"off\"\nCM_ SG_ 291 Speed \"two\"\n;\n"));
    QVERIFY(dbc.ok);
    QCOMPARE(dbc.at(0).description, QString());
    QCOMPARE(dbc.parser.summary().value_tables, 1);
}

void tst_DbcFileParser_Comments::aCommentWhoseIdentifierIsNoNumberIsAnError_data()
{
    QTest::addColumn<QByteArray>("identifier");
    for (const char *text : {"x", "-291", "0x123", "291.0", "4294967296", "291:", "291\n1"})
        QTest::newRow(text) << QByteArray(text);
}

void tst_DbcFileParser_Comments::aCommentWhoseIdentifierIsNoNumberIsAnError()
{
    QFETCH(QByteArray, identifier);
    const LoadedDbc dbc(withComment("CM_ SG_ " + identifier + " Speed \"text\";\n"));
    QVERIFY(!dbc.ok);
    QVERIFY(dbc.parser.errorText().startsWith(
        QStringLiteral("DBC-File: Invalid Signal-Description MessageNr, \r\nline number 4 ( ")));
}

void tst_DbcFileParser_Comments::anIdentifierThatIsNoNumberIsFineWithoutAText()
{
    QVERIFY(LoadedDbc(withComment("CM_ SG_ x \"text\";\n")).ok);
}

// A walk over all records for each comment would be some 2 * 10^9 steps.
void tst_DbcFileParser_Comments::manyCommentsOfOneSignalTakeNoTime()
{
    constexpr int count = 45000;
    const LoadedDbc dbc(engineMessage + signalLine("A").repeated(count) + "\n"
                        + QByteArray("CM_ SG_ 291 A \"x\";\n").repeated(count));
    QCOMPARE(dbc.count(), count);
    QCOMPARE(dbc.at(count - 1).description, QStringLiteral("x"));
}

QTEST_GUILESS_MAIN(tst_DbcFileParser_Comments)
#include "tst_dbcfileparser_comments.moc"
