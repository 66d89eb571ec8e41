#include "can/dbcnumbers.h"

#include <QtTest>

namespace {

// Texts on both sides of each limit, for all kinds of numbers.
const QList<QByteArray> texts =
    QByteArray("0 7 007 +7 -7 -0 ++7 +-7 - + 7a 0x7 7.0 1e3 255 256 65535 65536 "
               "2147483647 2147483648 -2147483648 -2147483649 4294967295 4294967296 "
               "1.5 -1.5e+2 .5 5. 1e 1e5 1E-3 1e400 -1e400 1e-400 0e-400 4.9e-324 1,5 "
               "0.1 1_0 1.7976931348623157e308 1.7976931348623159e308 0.00390625 "
               "16383.75 18446744073709551615")
        .split(' ')
    + QList<QByteArray>{"", "1 5"};

QString quoted(const QByteArray &text)
{
    return QLatin1Char('"') + QString::fromLatin1(text) + QLatin1Char('"');
}

std::string_view view(const QByteArray &text)
{
    return {text.constData(), std::size_t(text.size())};
}

} // namespace

class tst_DbcNumbers : public QObject
{
    Q_OBJECT

private slots:
    void wholeNumbersAreThoseOfQt();
    void realNumbersAreThoseOfQt();
    void infinityAndNotANumberAreNoNumbers();
    void aMinusSignBeyondAsciiIsNone();
    void aFieldTakesItsRange();
    void aPairIsTwoNumbersAndNoMore();
};

void tst_DbcNumbers::wholeNumbersAreThoseOfQt()
{
    for (const QByteArray &text : texts) {
        bool ok = false;
        const uint whole = QString::fromLatin1(text).toUInt(&ok);
        const std::optional<quint32> found = dbc::toUnsigned(view(text));
        QVERIFY2(found.has_value() == ok, qPrintable(quoted(text)));
        QCOMPARE(found.value_or(0), whole);
        const int number = QString::fromLatin1(text).toInt(&ok);
        const std::optional<qint32> foundSigned = dbc::toSigned(view(text));
        QVERIFY2(foundSigned.has_value() == ok, qPrintable(quoted(text)));
        QCOMPARE(foundSigned.value_or(0), number);
    }
}

void tst_DbcNumbers::realNumbersAreThoseOfQt()
{
    for (const QByteArray &text : texts) {
        bool ok = false;
        const double real = QString::fromLatin1(text).toDouble(&ok);
        const std::optional<double> found = dbc::toReal(view(text));
        QVERIFY2(found.has_value() == ok, qPrintable(quoted(text)));
        if (ok)
            QVERIFY2(*found == real, qPrintable(quoted(text)));
    }
}

void tst_DbcNumbers::infinityAndNotANumberAreNoNumbers()
{
    for (const char *text : {"inf", "-inf", "+inf", "infinity", "nan", "-nan", "NAN", "nan(1)"})
        QVERIFY2(!dbc::toReal(text), text);
}

void tst_DbcNumbers::aMinusSignBeyondAsciiIsNone()
{
    QVERIFY(!dbc::toSigned("\u22125"));
    QVERIFY(!dbc::toReal("\u22125"));
}

void tst_DbcNumbers::aFieldTakesItsRange()
{
    QCOMPARE(dbc::toField<quint8>("255").value_or(0), quint8(255));
    QVERIFY(!dbc::toField<quint8>("256"));
    QVERIFY(!dbc::toField<quint8>("-1"));
    QCOMPARE(dbc::toField<quint16>("65535").value_or(0), quint16(65535));
    QVERIFY(!dbc::toField<quint16>("65536"));
}

void tst_DbcNumbers::aPairIsTwoNumbersAndNoMore()
{
    double first = 0;
    double second = 0;
    QVERIFY(dbc::toRealPair("0.25|-40", '|', first, second));
    QCOMPARE(first, 0.25);
    QCOMPARE(second, -40.0);
    for (const char *text : {"", "1", "|", "1|", "|2", "1|2|3", "1|2|", "1,2"})
        QVERIFY2(!dbc::toRealPair(text, '|', first, second), text);
}

QTEST_APPLESS_MAIN(tst_DbcNumbers)
#include "tst_dbcnumbers.moc"
