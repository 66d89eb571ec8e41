#include "config/shorttext.h"

#include <QTest>

class tst_ShortText : public QObject
{
    Q_OBJECT

private slots:
    void whatIsTooLongEndsInAnEllipsis_data();
    void whatIsTooLongEndsInAnEllipsis();
};

void tst_ShortText::whatIsTooLongEndsInAnEllipsis_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("fits") << QStringLiteral("abcd") << QStringLiteral("abcd");
    QTest::newRow("one too many") << QStringLiteral("abcde") << QString::fromUtf8("abc\u2026");
    QTest::newRow("half a character at the cut")
        << QString::fromUtf8("ab\U0001F600de") << QString::fromUtf8("ab\u2026");
    QTest::newRow("a whole character in front of the cut")
        << QString::fromUtf8("a\U0001F600de") << QString::fromUtf8("a\U0001F600\u2026");
}

void tst_ShortText::whatIsTooLongEndsInAnEllipsis()
{
    QFETCH(QString, text);
    QTEST(shortText(text, 4), "shown");
}

QTEST_APPLESS_MAIN(tst_ShortText)
#include "tst_shorttext.moc"
