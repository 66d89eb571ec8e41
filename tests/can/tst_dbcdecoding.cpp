#include "can/dbcdecoding.h"

#include <QTextCodec>
#include <QtTest>

namespace {

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), std::size_t(bytes.size())};
}

QString decoded(const QByteArray &bytes)
{
    const QByteArray utf8 = dbc::decoded(bytes);
    return QString::fromStdString(utf8.toStdString()); // beyond a NUL, too
}

} // namespace

class tst_DbcDecoding : public QObject
{
    Q_OBJECT

private slots:
    void everyCodePointIsUtf8();
    void whatIsNotWellFormedIsNoUtf8_data();
    void whatIsNotWellFormedIsNoUtf8();
    void aWrongByteIsFoundBehindAnyNumberOfLetters();
    void utf8StaysAsItIs();
    void theByteOrderMarkIsTakenOff();
    void otherBytesAreWindows1252();
    void undefinedBytesBecomeControlCharacters();
    void markedUtf16AndUtf32AreRead_data();
    void markedUtf16AndUtf32AreRead();
    void aMarkOfUtf8InFrontOfOtherBytesIsWindows1252();
    void aMarkInsideTheTextIsACharacter();
};

void tst_DbcDecoding::everyCodePointIsUtf8()
{
    for (uint code = 0; code <= QChar::LastValidCodePoint; ++code) {
        if (code >= 0xD800 && code < 0xE000)
            continue;
        if (!dbc::isUtf8(view(QString::fromUcs4(&code, 1).toUtf8())))
            QFAIL(qPrintable(QString::number(code, 16)));
    }
}

void tst_DbcDecoding::whatIsNotWellFormedIsNoUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("continuation alone") << QByteArray("\x80");
    QTest::newRow("start alone") << QByteArray("\xC3");
    QTest::newRow("start in front of a letter") << QByteArray("\xC3z");
    QTest::newRow("two of three") << QByteArray("\xE2\x82");
    QTest::newRow("three of four") << QByteArray("\xF0\x9F\x98");
    QTest::newRow("overlong, two bytes") << QByteArray("\xC1\xBF");
    QTest::newRow("overlong, three bytes") << QByteArray("\xE0\x9F\xBF");
    QTest::newRow("overlong, four bytes") << QByteArray("\xF0\x8F\xBF\xBF");
    QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80");
    QTest::newRow("above U+10FFFF") << QByteArray("\xF4\x90\x80\x80");
    QTest::newRow("five bytes") << QByteArray("\xF8\x88\x80\x80\x80");
    QTest::newRow("FF") << QByteArray("\xFF");
}

void tst_DbcDecoding::whatIsNotWellFormedIsNoUtf8()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!dbc::isUtf8(view(bytes)));
}

void tst_DbcDecoding::aWrongByteIsFoundBehindAnyNumberOfLetters()
{
    for (int letters = 0; letters < 20; ++letters) {
        const QByteArray fine = QByteArray(letters, 'a') + "\xC3\xA9" + QByteArray(letters, 'b');
        QVERIFY(dbc::isUtf8(view(fine)));
        QVERIFY(!dbc::isUtf8(view(QByteArray(letters, 'a') + '\xE9' + QByteArray(letters, 'b'))));
    }
}

void tst_DbcDecoding::utf8StaysAsItIs()
{
    const QByteArray text("\xC2\xB0"
                          "C, 100 \xCE\xA9, \xF0\x9F\x98\x80, \0 and \r\n",
                          27);
    QCOMPARE(dbc::decoded(text), text);
    QCOMPARE(dbc::decoded({}), QByteArray());
}

void tst_DbcDecoding::theByteOrderMarkIsTakenOff()
{
    QCOMPARE(dbc::decoded("\xEF\xBB\xBF"
                          "BO_"),
             QByteArray("BO_"));
}

void tst_DbcDecoding::otherBytesAreWindows1252()
{
    QTextCodec *codec = QTextCodec::codecForName("windows-1252");
    QVERIFY(codec);
    for (int byte = 0; byte < 256; ++byte) {
        if (QByteArray("\x81\x8D\x8F\x90\x9D").contains(char(byte)))
            continue;
        const QByteArray bytes = 'a' + QByteArray(1, char(byte)) + "\xFF"; // FF: never UTF-8
        QCOMPARE(decoded(bytes), codec->toUnicode(bytes));
    }
}

void tst_DbcDecoding::undefinedBytesBecomeControlCharacters()
{
    QCOMPARE(decoded("\x81\x8D\x8F\x90\x9D"), QString::fromUtf8("\u0081\u008D\u008F\u0090\u009D"));
}

void tst_DbcDecoding::markedUtf16AndUtf32AreRead_data()
{
    QTest::addColumn<QByteArray>("codec");
    for (const char *name : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_DbcDecoding::markedUtf16AndUtf32AreRead()
{
    QFETCH(QByteArray, codec);
    const QString text = QString::fromUtf8("BO_ 1 \u00b0C\u20ac\r\n");
    const QString marked = QChar(QChar::ByteOrderMark) + text;
    QTextCodec::ConverterState withoutMark(QTextCodec::IgnoreHeader);
    const QByteArray bytes = QTextCodec::codecForName(codec)->fromUnicode(
        marked.constData(), marked.size(), &withoutMark);
    QCOMPARE(decoded(bytes), text);
}

void tst_DbcDecoding::aMarkOfUtf8InFrontOfOtherBytesIsWindows1252()
{
    QCOMPARE(decoded("\xEF\xBB\xBF\xE9"), QString::fromUtf8("\u00ef\u00bb\u00bf\u00e9"));
}

void tst_DbcDecoding::aMarkInsideTheTextIsACharacter()
{
    QCOMPARE(dbc::toText("\xEF\xBB\xBFSpeed"), QString::fromUtf8("\u0020\uFEFFSpeed").mid(1));
    QCOMPARE(dbc::toText("Speed"), QStringLiteral("Speed"));
    QCOMPARE(dbc::toText({}), QString());
}

QTEST_APPLESS_MAIN(tst_DbcDecoding)
#include "tst_dbcdecoding.moc"
