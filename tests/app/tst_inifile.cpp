#include "app/state/inifile.h"

#include <QTest>

namespace {

const QString section = QStringLiteral("general");
const QString key = QStringLiteral("name");

} // namespace

class tst_IniFile : public QObject
{
    Q_OBJECT

private slots:
    void valueOfALine_data();
    void valueOfALine();
    void aKeyOfAnotherSectionIsNotFound();
    void theLastOfTwoLinesCounts();
    void whatIsWrittenReadsTheSame_data();
    void whatIsWrittenReadsTheSame();
    void aLineBreakInAValueBecomesABlank();
    void aNewKeyGoesToTheEndOfItsSection();
    void aChangedKeyStaysInItsPlace();
    void aNewSectionGoesToTheEnd();
    void commentsAndForeignKeysSurviveAChange();
    void aRemovedKeyIsGone();
    void anyBytesAreTaken();
};

void tst_IniFile::valueOfALine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *tag, const char *text, const char *value) {
        QTest::newRow(tag) << QByteArray(text) << QString::fromUtf8(value);
    };
    row("equals sign", "[general]\nname=abc\n", "abc");
    row("colon", "[general]\nname:abc\n", "abc");
    row("the first divider counts", "[general]\nname=C:\\logs=1\n", "C:\\logs=1");
    row("blanks around", "  [ general ] \n\t name \t=  a b \t\n", "a b");
    row("no case in the names", "[GENERAL]\nNaMe = abc\n", "abc");
    row("comment behind the value", "[general]\nname = abc ; a comment\n", "abc");
    row("comment behind the section", "[general] ; a comment\nname = abc\n", "abc");
    row("comment line between", "[general]\n; name = no\nname = abc\n", "abc");
    row("empty value", "[general]\nname =\n", "");
    row("quoted comment sign", "[general]\nname = \"a;b\"\n", "a;b");
    row("quoted blanks", "[general]\nname = \" a \" ; a comment\n", " a ");
    row("quoted quote", "[general]\nname = \"a\"\"b\"\n", "a\"b");
    row("CR LF", "[general]\r\nname = abc\r\n", "abc");
    row("no end of line", "[general]\nname = abc", "abc");
    row("byte order mark", "\xEF\xBB\xBF[general]\nname = abc\n", "abc");
    row("UTF-8", "[general]\nname = M\xC3\xBCnchen\n", "M\xC3\xBCnchen");
    row("section opened twice", "[general]\n[other]\nname = x\n[general]\nname = abc\n", "abc");
}

void tst_IniFile::valueOfALine()
{
    QFETCH(QByteArray, text);
    const auto value = IniFile(text).value(section, key);
    QVERIFY(value.has_value());
    QTEST(*value, "value");
}

void tst_IniFile::aKeyOfAnotherSectionIsNotFound()
{
    QVERIFY(!IniFile("name=1\n[other]\nname=2\n[general\nname=3\n[general]\nname\n=4\n")
                 .value(section, key)
                 .has_value());
}

void tst_IniFile::theLastOfTwoLinesCounts()
{
    QCOMPARE(*IniFile("[general]\nname=1\nname=2\n").value(section, key), QStringLiteral("2"));
}

void tst_IniFile::whatIsWrittenReadsTheSame_data()
{
    QTest::addColumn<QString>("value");
    for (const char *value : {"", "abc", " a ", "a;b", "\"", "\"\"", "\"a\"", "a\"b;c", "C:\\x y\\",
                              "=:", "[general]", "\t", "M\xC3\xBCnchen"})
        QTest::newRow(value) << QString::fromUtf8(value);
}

void tst_IniFile::whatIsWrittenReadsTheSame()
{
    QFETCH(QString, value);
    IniFile file;
    file.setValue(section, key, value);
    QCOMPARE(*file.value(section, key), value);
    QCOMPARE(*IniFile(file.text()).value(section, key), value);
}

void tst_IniFile::aLineBreakInAValueBecomesABlank()
{
    IniFile file;
    file.setValue(section, key, QStringLiteral("a\n[b]\r\nc=d"));
    QCOMPARE(file.text(), QByteArray("[general]\nname = a [b]  c=d\n"));
    QCOMPARE(*file.value(section, key), QStringLiteral("a [b]  c=d"));
}

void tst_IniFile::aNewKeyGoesToTheEndOfItsSection()
{
    IniFile file("[General]\nfirst = 1\n[other]\nx = 2\n");
    file.setValue(section, key, QStringLiteral("abc"));
    QCOMPARE(file.text(), QByteArray("[General]\nfirst = 1\nname = abc\n[other]\nx = 2\n"));
}

void tst_IniFile::aChangedKeyStaysInItsPlace()
{
    IniFile file("[general]\nNAME = 1\nlast = 2\n");
    file.setValue(section, key, QStringLiteral("abc"));
    QCOMPARE(file.text(), QByteArray("[general]\nname = abc\nlast = 2\n"));
}

void tst_IniFile::aNewSectionGoesToTheEnd()
{
    IniFile file("; head\nx = 1\n");
    file.setValue(section, key, QStringLiteral("abc"));
    QCOMPARE(file.text(), QByteArray("; head\nx = 1\n[general]\nname = abc\n"));
}

void tst_IniFile::commentsAndForeignKeysSurviveAChange()
{
    const QByteArray before = "; mine\n\n[general]\nforeign = 7 ; why\nnonsense\n";
    IniFile file(before);
    file.setValue(section, key, QStringLiteral("abc"));
    QCOMPARE(file.text(), before + "name = abc\n");
}

void tst_IniFile::aRemovedKeyIsGone()
{
    IniFile file("[general]\nname=1\nother=2\nNAME=3\n");
    file.remove(section, key);
    QCOMPARE(file.text(), QByteArray("[general]\nother=2\n"));
    QVERIFY(!file.value(section, key).has_value());
}

void tst_IniFile::anyBytesAreTaken()
{
    QByteArray bytes;
    for (int i = 0; i < 4096; ++i)
        bytes += static_cast<char>((i * 151 + i / 7) & 0xFF);
    IniFile file(bytes);
    file.setValue(section, key, QStringLiteral("abc"));
    QCOMPARE(*IniFile(file.text()).value(section, key), QStringLiteral("abc"));
}

QTEST_GUILESS_MAIN(tst_IniFile)
#include "tst_inifile.moc"
