#include "cli/texttable.h"

#include <QtTest>

class tst_TextTable : public QObject
{
    Q_OBJECT

private slots:
    void columnsLineUp();
    void aColumnWithoutContentIsLeftOut();
    void aTableWithoutTitlesHasNoHead();
    void controlCharactersAreReplaced();
    void charactersBeyondTheFirstPlaneStay();
    void longTextsAreCut();
    void noCharacterIsCutInTwo();
    void rowsBeyondTheLimitAreCounted();
    void rowsBeyondTheLimitAreNotMade();
};

void tst_TextTable::columnsLineUp()
{
    TextTable table({"Name", ">Value", "Unit"});
    table.addRow({QStringLiteral("µ"), QStringLiteral("7"), QStringLiteral("V")});
    table.addRow({QStringLiteral("longer"), QStringLiteral("123456"), {}});
    QCOMPARE(table.text(QStringLiteral("--")), QStringLiteral("--Name     Value  Unit\n"
                                                              "--µ            7  V\n"
                                                              "--longer  123456\n"));
}

void tst_TextTable::aColumnWithoutContentIsLeftOut()
{
    TextTable table({"Empty", "A", "None", "B"});
    table.addRow({{}, QStringLiteral("1"), {}, QStringLiteral("2")});
    QCOMPARE(table.text({}), QStringLiteral("A  B\n1  2\n"));
}

void tst_TextTable::aTableWithoutTitlesHasNoHead()
{
    TextTable table;
    QVERIFY(table.isEmpty());
    table.addRow({QStringLiteral("key"), QStringLiteral("value")});
    QCOMPARE(table.text({}), QStringLiteral("key  value\n"));
}

void tst_TextTable::controlCharactersAreReplaced()
{
    QCOMPARE(printable(QStringLiteral("a\u001b[31mb\nc\td\u202Ee")),
             QStringLiteral("a?[31mb?c?d?e"));
}

void tst_TextTable::charactersBeyondTheFirstPlaneStay()
{
    const QString text = QString::fromUtf8("\xF0\x9F\x9A\x97 °C");
    QCOMPARE(printable(text), text);
}

void tst_TextTable::longTextsAreCut()
{
    TextTable table({"Text"});
    table.addRow({QString(TextTable::maxCellLength, QLatin1Char('x'))});
    table.addRow({QString(TextTable::maxCellLength + 1, QLatin1Char('y'))});
    const QStringList lines = table.text({}).split(QLatin1Char('\n'));
    QCOMPARE(lines.at(1), QString(TextTable::maxCellLength, QLatin1Char('x')));
    QCOMPARE(lines.at(2), QString(TextTable::maxCellLength - 1, QLatin1Char('y')) + QChar(0x2026));
}

void tst_TextTable::noCharacterIsCutInTwo()
{
    TextTable table({"Text"});
    const QString car = QString::fromUtf8("\xF0\x9F\x9A\x97");
    const QString start(TextTable::maxCellLength - 2, QLatin1Char('x'));
    table.addRow(QStringList{start + car + QStringLiteral("y")});
    QCOMPARE(table.text({}).split(QLatin1Char('\n')).at(1), start + QChar(0x2026));
}

void tst_TextTable::rowsBeyondTheLimitAreNotMade()
{
    TextTable table({"Number"});
    int made = 0;
    for (int i = 0; i < TextTable::maxRows + 2; ++i)
        table.addRow([&made] { return QStringList{QString::number(++made)}; });
    QCOMPARE(made, int(TextTable::maxRows));
    QVERIFY(table.text({}).endsWith(QStringLiteral("\n... and 2 more\n")));
}

void tst_TextTable::rowsBeyondTheLimitAreCounted()
{
    TextTable table({"Number"});
    for (int i = 0; i < TextTable::maxRows + 2; ++i)
        table.addRow({QStringLiteral("1")});
    const QString text = table.text({});
    QCOMPARE(text.count(QLatin1Char('\n')), 1 + TextTable::maxRows + 1);
    QVERIFY(text.endsWith(QStringLiteral("\n... and 2 more\n")));
}

QTEST_GUILESS_MAIN(tst_TextTable)
#include "tst_texttable.moc"
