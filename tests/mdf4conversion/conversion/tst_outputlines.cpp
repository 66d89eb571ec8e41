#include "MDF4Conversion/outputlines.h"

#include <QTest>

namespace {

QStringList texts(std::initializer_list<const char *> lines)
{
    QStringList list;
    for (const char *line : lines)
        list += QString::fromLatin1(line);
    return list;
}

} // namespace

class tst_OutputLines : public QObject
{
    Q_OBJECT

private slots:
    void linesComeOutWithoutTheirEnds();
    void aLineMayArriveInPieces();
    void theLastLineNeedsNoEnd();
    void emptyLinesAreLines();
    void aLineWithoutEndIsCut();
    void aLineOfTheGreatestLengthIsOneLine();
};

void tst_OutputLines::linesComeOutWithoutTheirEnds()
{
    OutputLines lines;
    QCOMPARE(lines.feed("one\ntwo\n"), texts({"one", "two"}));
    QCOMPARE(lines.finish(), QStringList());
}

void tst_OutputLines::aLineMayArriveInPieces()
{
    OutputLines lines;
    QCOMPARE(lines.feed("on"), QStringList());
    QCOMPARE(lines.feed("e\ntw"), texts({"one"}));
    QCOMPARE(lines.feed("o\n"), texts({"two"}));
}

void tst_OutputLines::theLastLineNeedsNoEnd()
{
    OutputLines lines;
    QCOMPARE(lines.feed("one\ntwo"), texts({"one"}));
    QCOMPARE(lines.finish(), texts({"two"}));
    QCOMPARE(lines.finish(), QStringList());
}

void tst_OutputLines::emptyLinesAreLines()
{
    OutputLines lines;
    QCOMPARE(lines.feed("\n\na\n"), texts({"", "", "a"}));
}

void tst_OutputLines::aLineWithoutEndIsCut()
{
    OutputLines lines;
    int pieces = 0;
    for (int i = 0; i < 100; ++i) {
        for (const QString &piece : lines.feed(QByteArray(1100, 'x'))) {
            QCOMPARE(piece.size(), int(OutputLines::maxLineBytes));
            ++pieces;
        }
    }
    QCOMPARE(pieces, 110000 / OutputLines::maxLineBytes);
    QCOMPARE(lines.feed("\n"), texts({""}));
}

void tst_OutputLines::aLineOfTheGreatestLengthIsOneLine()
{
    OutputLines lines;
    const QByteArray line(OutputLines::maxLineBytes - 1, 'x');
    QCOMPARE(lines.feed(line + "\nnext\n").size(), 2);
}

QTEST_GUILESS_MAIN(tst_OutputLines)
#include "tst_outputlines.moc"
