#include "cli/console.h"

#include <QTest>

class tst_Console : public QObject
{
    Q_OBJECT

private slots:
    void aMessageIsPlainTextOnOneLine_data();
    void aMessageIsPlainTextOnOneLine();
    void controlCharactersDoNotReachTheTerminal();
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

void tst_Console::controlCharactersDoNotReachTheTerminal()
{
    const QString name = QStringLiteral("a\x1B[2Jb\x07");
    const QChar replaced(QChar::ReplacementCharacter);
    QCOMPARE(plainMessage(name), QLatin1Char('a') + replaced + QStringLiteral("[2Jb") + replaced);
}

QTEST_GUILESS_MAIN(tst_Console)
#include "tst_console.moc"
