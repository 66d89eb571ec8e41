#include "can/dbclines.h"

#include <QtTest>

#include <random>
#include <vector>

namespace {

using Strings = QList<QByteArray>;

QByteArray bytesOf(std::string_view text)
{
    return {text.data(), int(text.size())};
}

std::string_view view(const QByteArray &text)
{
    return {text.constData(), std::size_t(text.size())};
}

Strings linesOf(const QByteArray &text)
{
    dbc::Lines lines(view(text));
    Strings found;
    while (lines.next()) {
        found.append(bytesOf(lines.line()));
        if (lines.number() != found.size())
            return {"wrong number"};
    }
    return found;
}

Strings wordsOf(const QByteArray &text)
{
    dbc::Words words(view(text));
    Strings found;
    for (std::string_view word = words.next(); !word.empty(); word = words.next())
        found.append(bytesOf(word));
    return found;
}

QByteArray simplified(const QByteArray &text)
{
    std::string out;
    dbc::appendSimplified(out, view(text));
    return QByteArray::fromStdString(out);
}

// Blanks of every kind and length, letters, control characters, and what looks like a blank.
QString randomText(std::mt19937 &random)
{
    const QString characters = QString::fromUtf8(
        "  \t\n\v\f\r\u0085\u00a0\u1680\u2000\u2007\u200a\u2028\u2029\u202f\u205f\u3000"
        "ab:;\"\u0001\u001f\u0084\u00a1\u180e\u200b\u2010\u2060\u3001\u00e9\ufeff\u20ac");
    QString text;
    for (unsigned length = random() % 12; length > 0; --length)
        text += characters.at(int(random() % unsigned(characters.size())));
    return text + QChar(int(random() % 3) == 0 ? 0 : int('x'));
}

} // namespace

class tst_DbcLines : public QObject
{
    Q_OBJECT

private slots:
    void spaceIsWhatUnicodeSays();
    void theBytesOfABrokenSpaceAreNoSpace();
    void textsAreSimplifiedAndTrimmedAsByQt();
    void theStartOfACharacterIsFound();
    void wordsEndAtAnySpace();
    void linesEndWithLfOrCrLf();
    void aCrElsewhereStaysInTheLine();
    void theLastLineNeedsNoEnd();
    void colonsAreRemoved();
};

void tst_DbcLines::spaceIsWhatUnicodeSays()
{
    for (uint code = 0; code <= QChar::LastValidCodePoint; ++code) {
        if (code >= 0xD800 && code < 0xE000)
            continue;
        const QByteArray bytes = QString::fromUcs4(&code, 1).toUtf8();
        const std::size_t length = QChar::isSpace(code) ? std::size_t(bytes.size()) : 0;
        if (dbc::spaceLength(view(bytes), 0) != length)
            QFAIL(qPrintable(QString::number(code, 16)));
    }
}

void tst_DbcLines::theBytesOfABrokenSpaceAreNoSpace()
{
    for (const char *bytes : {"\xC2", "\xE2", "\xE2\x80", "\xE3\x80", "\xE1\x9A", "\x80", "\xA0"}) {
        QCOMPARE(dbc::spaceLength(bytes, 0), std::size_t(0));
        QCOMPARE(bytesOf(dbc::trimmed(bytes)), QByteArray(bytes));
    }
}

void tst_DbcLines::textsAreSimplifiedAndTrimmedAsByQt()
{
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const QString text = randomText(random);
        const QByteArray utf8 = text.toUtf8();
        QCOMPARE(simplified(utf8), text.simplified().toUtf8());
        QCOMPARE(bytesOf(dbc::trimmed(view(utf8))), text.trimmed().toUtf8());
    }
}

void tst_DbcLines::theStartOfACharacterIsFound()
{
    const QByteArray text = "a\u00e9\u20ac\U0001F600";
    const std::vector<std::size_t> starts = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6};
    for (std::size_t i = 0; i < starts.size(); ++i)
        QCOMPARE(dbc::characterStart(view(text), i), starts[i]);
    QCOMPARE(dbc::characterStart("\x80\x80", 1), std::size_t(0));
}

void tst_DbcLines::wordsEndAtAnySpace()
{
    QCOMPARE(wordsOf("\t a\vb\f c\xC2\xA0"
                     "d \r"),
             (Strings{"a", "b", "c", "d"}));
    QCOMPARE(wordsOf(" \t"), Strings());
    QCOMPARE(wordsOf(""), Strings());
}

void tst_DbcLines::linesEndWithLfOrCrLf()
{
    QCOMPARE(linesOf("a\nb\r\n\n\r\nc\n"), (Strings{"a", "b", "", "", "c"}));
    QCOMPARE(linesOf(""), Strings());
    QCOMPARE(linesOf("\n"), Strings{""});
}

void tst_DbcLines::aCrElsewhereStaysInTheLine()
{
    QCOMPARE(linesOf("a\rb\r\r\nc"), (Strings{"a\rb\r", "c"}));
}

void tst_DbcLines::theLastLineNeedsNoEnd()
{
    QCOMPARE(linesOf("a\nb"), (Strings{"a", "b"}));
    QCOMPARE(linesOf("a\nb\r"), (Strings{"a", "b"}));
}

void tst_DbcLines::colonsAreRemoved()
{
    std::string out = "left over from another line";
    dbc::copyWithoutColons(out, ":a: b::c:");
    QCOMPARE(QByteArray::fromStdString(out), QByteArray("a bc"));
    dbc::copyWithoutColons(out, ":");
    QVERIFY(out.empty());
}

QTEST_APPLESS_MAIN(tst_DbcLines)
#include "tst_dbclines.moc"
