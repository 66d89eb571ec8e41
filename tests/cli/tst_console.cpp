#include "cli/console.h"

#include <QTest>

class tst_Console : public QObject
{
    Q_OBJECT

private slots:
    void aMessageIsPlainTextOnOneLine_data();
    void aMessageIsPlainTextOnOneLine();
    void sizesAreMegabytesAndGigabytes_data();
    void sizesAreMegabytesAndGigabytes();
    void durationsAreRoundedUpToSeconds_data();
    void durationsAreRoundedUpToSeconds();
};

void tst_Console::aMessageIsPlainTextOnOneLine_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("plain");
    const auto row = [](const char *tag, const char *message, const char *plain) {
        QTest::newRow(tag) << QString::fromLatin1(message) << QString::fromLatin1(plain);
    };
    row("plain", "No < and >", "No < and >");
    row("less and greater", "-&gt;(a &lt; b)", "->(a < b)");
    row("quotes", "&quot;a&quot;", "\"a\"");
    row("ampersand", "a &amp; b", "a & b");
    row("an entity that was escaped", "&amp;lt;", "&lt;");
    row("lines", "one\r\ntwo\nthree", "one two three");
    row("empty", "", "");
}

void tst_Console::aMessageIsPlainTextOnOneLine()
{
    QFETCH(QString, message);
    QFETCH(QString, plain);
    QCOMPARE(plainMessage(message), plain);
}

void tst_Console::sizesAreMegabytesAndGigabytes_data()
{
    QTest::addColumn<double>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0.0 << QStringLiteral("0.0 MB");
    QTest::newRow("megabytes") << 12.34e6 << QStringLiteral("12.3 MB");
    QTest::newRow("gigabytes") << 1.2e9 << QStringLiteral("1.20 GB");
}

void tst_Console::sizesAreMegabytesAndGigabytes()
{
    QFETCH(double, bytes);
    QFETCH(QString, text);
    QCOMPARE(sizeText(bytes), text);
}

void tst_Console::durationsAreRoundedUpToSeconds_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0.0 << QStringLiteral("0:00");
    QTest::newRow("a begun second") << 6.1 << QStringLiteral("0:07");
    QTest::newRow("a minute") << 60.0 << QStringLiteral("1:00");
    QTest::newRow("ten minutes") << 750.0 << QStringLiteral("12:30");
    QTest::newRow("hours") << 3723.0 << QStringLiteral("1:02:03");
    QTest::newRow("negative") << -5.0 << QStringLiteral("0:00");
    QTest::newRow("endless") << qInf() << QStringLiteral("277777:46:40");
}

void tst_Console::durationsAreRoundedUpToSeconds()
{
    QFETCH(double, seconds);
    QFETCH(QString, text);
    QCOMPARE(durationText(seconds), text);
}

QTEST_GUILESS_MAIN(tst_Console)
#include "tst_console.moc"
