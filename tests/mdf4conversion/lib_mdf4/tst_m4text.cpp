#include "MDF4Conversion/lib_mdf4/mdf4/m4text.h"

#include <QtTest>

class tst_M4Text : public QObject
{
    Q_OBJECT

private slots:
    void textIsPutInOrder_data();
    void textIsPutInOrder();
    void xmlValueIsPutInOrder_data();
    void xmlValueIsPutInOrder();
    void fileHistoryCommentToTheLetter();
    void headerCommentToTheLetter();
    void valuesOfCommentsAreEscaped();
};

namespace {

std::string bytes(const QByteArray &text)
{
    return text.toStdString();
}

} // namespace

void tst_M4Text::textIsPutInOrder_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray replacement("\xEF\xBF\xBD");
    QTest::newRow("plain") << QByteArray("km/h") << QByteArray("km/h");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("two bytes") << QByteArray("\xC2\xB0") << QByteArray("\xC2\xB0");
    QTest::newRow("three bytes") << QByteArray("\xE2\x82\xAC") << QByteArray("\xE2\x82\xAC");
    QTest::newRow("four bytes") << QByteArray("\xF0\x9F\x9A\x97") << QByteArray("\xF0\x9F\x9A\x97");
    QTest::newRow("embedded NUL") << QByteArray("a\0b", 3) << QByteArray("a");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBFname") << QByteArray("name");
    QTest::newRow("mark within") << QByteArray("a\xEF\xBB\xBF") << QByteArray("a\xEF\xBB\xBF");
    QTest::newRow("Latin-1") << QByteArray("\xB0"
                                           "C")
                             << replacement + "C";
    QTest::newRow("cut sequence") << QByteArray("a\xE2\x82") << "a" + replacement;
    QTest::newRow("cut by a letter") << QByteArray("\xE2\x82z") << replacement + "z";
    QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80") << replacement;
    QTest::newRow("overlong") << QByteArray("\xC0\xAF") << replacement;
    QTest::newRow("overlong of three") << QByteArray("\xE0\x80\xAF") << replacement;
    QTest::newRow("above Unicode") << QByteArray("\xF4\x90\x80\x80") << replacement;
    QTest::newRow("no lead byte") << QByteArray("\xFF\xFE") << replacement + replacement;
    QTest::newRow("markup stays") << QByteArray("<&>") << QByteArray("<&>");
}

void tst_M4Text::textIsPutInOrder()
{
    QFETCH(const QByteArray, input);
    QFETCH(const QByteArray, expected);
    QCOMPARE(mdf4::cleanText(bytes(input)), bytes(expected));
}

void tst_M4Text::xmlValueIsPutInOrder_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("markup") << QByteArray("a&b<c>d\"e'f")
                            << QByteArray("a&amp;b&lt;c&gt;d&quot;e&apos;f");
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << QByteArray("ab");
    QTest::newRow("control characters") << QByteArray("a\x01\x0B\x1F"
                                                      "b")
                                        << QByteArray("ab");
    QTest::newRow("tab and line ends") << QByteArray("a\t\r\nb") << QByteArray("a\t\r\nb");
    QTest::newRow("U+FFFE, U+FFFF") << QByteArray("a\xEF\xBF\xBE\xEF\xBF\xBF"
                                                  "b")
                                    << QByteArray("ab");
    QTest::newRow("surrogate") << QByteArray("a\xED\xA0\x80") << QByteArray("a\xEF\xBF\xBD");
    QTest::newRow("not ASCII") << QByteArray("M\xC3\xBCller") << QByteArray("M\xC3\xBCller");
}

void tst_M4Text::xmlValueIsPutInOrder()
{
    QFETCH(const QByteArray, input);
    QFETCH(const QByteArray, expected);
    QCOMPARE(mdf4::xmlValue(bytes(input)), bytes(expected));
}

void tst_M4Text::fileHistoryCommentToTheLetter()
{
    QCOMPARE(mdf4::fileHistoryComment({"tool", "vendor", "2.19"}),
             std::string("<FHcomment>\r\n"
                         "<TX>created</TX>\r\n"
                         "<tool_id>tool</tool_id>\r\n"
                         "<tool_vendor>vendor</tool_vendor>\r\n"
                         "<tool_version>2.19</tool_version>\r\n"
                         "</FHcomment>\r\n"));
}

void tst_M4Text::headerCommentToTheLetter()
{
    QCOMPARE(mdf4::headerComment({"no loaded a2l files", "me", "host", "drive", "---"}),
             std::string("<HDcomment>\r\n"
                         "<TX>no loaded a2l files</TX>\r\n"
                         "<time_source>local PC reference timer</time_source>\r\n"
                         "<common_properties>\r\n"
                         "<e name=\"author\">me</e>\r\n"
                         "<e name=\"department\">host</e>\r\n"
                         "<e name=\"project\">drive</e>\r\n"
                         "<e name=\"subject\">---</e>\r\n"
                         "</common_properties>\r\n"
                         "</HDcomment>\r\n"));
}

void tst_M4Text::valuesOfCommentsAreEscaped()
{
    const std::string header = mdf4::headerComment({"<c>", "a&b", "", "", ""});
    QVERIFY(header.find("<TX>&lt;c&gt;</TX>") != std::string::npos);
    QVERIFY(header.find("<e name=\"author\">a&amp;b</e>") != std::string::npos);
    const std::string history = mdf4::fileHistoryComment({"\"x\"", "", ""});
    QVERIFY(history.find("<tool_id>&quot;x&quot;</tool_id>") != std::string::npos);
}

QTEST_GUILESS_MAIN(tst_M4Text)
#include "tst_m4text.moc"
