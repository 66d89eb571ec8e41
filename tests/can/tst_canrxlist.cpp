#include "can/canframe.h"
#include "can/canrxlist.h"
#include "config/record/ownedlist.h"
#include "config/streamingclass_dbc_signal.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using can::RxListItem;

class tst_CanRxList : public QObject
{
    Q_OBJECT

private slots:
    void anIdentifierShowsItsWidth();
    void bytesAreTwoDigitsAndABlankEach();
    void theTextHasAHeadAndALineForEachItem();
    void theColumnsMeet();
    void aTextThatLooksLikeAPlaceholderStaysAsItIs();
    void aCommentOfSeveralLinesIsWrittenInOne();
    void aRemoteFrameSaysSo();
    void aCommentNamesTheSignalsOfItsIdentifier();
    void aCommentOfManySignalsIsCut();
    void aNameOfMegabytesIsCutInTheComment();
    void theFileHoldsTheText();
    void aFileThatCannotBeWrittenIsAnError();

private:
    static RxListItem item(quint32 id, const char *hex, quint64 count, const char *comment = "")
    {
        RxListItem item;
        item.id = id;
        item.data = QByteArray::fromHex(hex);
        item.count = count;
        item.comment = QString::fromUtf8(comment);
        return item;
    }
};

void tst_CanRxList::anIdentifierShowsItsWidth()
{
    QCOMPARE(can::identifierText(0x1a, false), QStringLiteral("01A"));
    QCOMPARE(can::identifierText(0x1a, true), QStringLiteral("0000001A"));
}

void tst_CanRxList::bytesAreTwoDigitsAndABlankEach()
{
    QCOMPARE(can::dataText(QByteArray::fromHex("0aff00")), QStringLiteral("0A FF 00 "));
    QCOMPARE(can::dataText({}), QString());
}

void tst_CanRxList::theTextHasAHeadAndALineForEachItem()
{
    RxListItem frame = item(0x123, "01ff", 42, "Speed");
    frame.period_us = 10000;
    QCOMPARE(
        can::rxListText({frame}),
        QStringLiteral("ID        DLC  Data      Period [uSec]      Count          Comment \r\n"
                       "123       2    01 FF             10000      42             Speed \r\n"));
}

void tst_CanRxList::theColumnsMeet()
{
    RxListItem extended = item(0x18FEF100, "0102030405060708090a0b0c", 4000000000, "X");
    extended.extended = true;
    extended.period_us = 4294967295;
    const QStringList lines = can::rxListText({item(1, "", 1, "X"), extended})
                                  .split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    const int comment = lines.at(0).indexOf(QStringLiteral("Comment"));
    QCOMPARE(lines.at(1).lastIndexOf(QLatin1Char('X')), comment);
    QCOMPARE(lines.at(2).lastIndexOf(QLatin1Char('X')), comment);
    QCOMPARE(lines.at(2).indexOf(QStringLiteral("4294967295")) + 10,
             lines.at(0).indexOf(QLatin1Char(']')) + 1);
}

void tst_CanRxList::aTextThatLooksLikeAPlaceholderStaysAsItIs()
{
    QVERIFY(can::rxListText({item(1, "00", 1, "%1 %2")}).endsWith(QStringLiteral("%1 %2 \r\n")));
}

void tst_CanRxList::aCommentOfSeveralLinesIsWrittenInOne()
{
    const QString text = can::rxListText({item(1, "00", 1, "Speed\r\nof the\n\tcar")});
    QCOMPARE(text.count(QLatin1Char('\n')), 2);
    QVERIFY(text.endsWith(QStringLiteral("Speed of the car \r\n")));
}

void tst_CanRxList::aRemoteFrameSaysSo()
{
    RxListItem frame = item(1, "", 1);
    frame.remote = true;
    QCOMPARE(can::commentText(frame), QStringLiteral("Remote frame"));
    frame.comment = QStringLiteral("Speed");
    QCOMPARE(can::commentText(frame), QStringLiteral("Remote frame: Speed"));
}

void tst_CanRxList::aCommentNamesTheSignalsOfItsIdentifier()
{
    OwnedList<StreamingClass_DBC_Signal> list;
    for (const char *name : {"A", "B", "C"}) {
        StreamingClass_DBC_Signal &signal = list.add();
        signal.name = QString::fromLatin1(name);
        signal.msg_id = 0x12;
        signal.extended_id = *name == 'B' ? 1 : 0;
    }
    const auto comments = can::signalComments(list.items());
    QCOMPARE(comments.size(), 2);
    QCOMPARE(comments.value(can::identifierKey(0x12, false)), QStringLiteral("A, C"));
    QCOMPARE(comments.value(can::identifierKey(0x12, true)), QStringLiteral("B"));
}

void tst_CanRxList::aCommentOfManySignalsIsCut()
{
    OwnedList<StreamingClass_DBC_Signal> list;
    for (int i = 0; i < 20; ++i)
        list.add().name = QStringLiteral("S%1").arg(i);
    QCOMPARE(can::signalComments(list.items()).value(0),
             QStringLiteral("S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, ..."));
}

void tst_CanRxList::aNameOfMegabytesIsCutInTheComment()
{
    OwnedList<StreamingClass_DBC_Signal> list;
    for (const char letter : {'a', 'b'})
        list.add().name = QString(3'000'000, QLatin1Char(letter));
    const auto cut = [](char letter) { return QString(199, QLatin1Char(letter)) + QChar(0x2026); };
    QCOMPARE(can::signalComments(list.items()).value(0),
             cut('a') + QStringLiteral(", ") + cut('b'));
}

void tst_CanRxList::theFileHoldsTheText()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("list.txt"));
    const std::vector<RxListItem> items = {item(1, "00", 1, "\xC2\xB0")};
    QString error;
    QVERIFY2(can::saveRxList(path, items, &error), qPrintable(error));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), can::rxListText(items));
}

void tst_CanRxList::aFileThatCannotBeWrittenIsAnError()
{
    const QTemporaryDir folder;
    QString error;
    QVERIFY(!can::saveRxList(folder.filePath(QStringLiteral("none/list.txt")), {}, &error));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_CanRxList)
#include "tst_canrxlist.moc"
