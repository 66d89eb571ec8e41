#include "can/cantxrow.h"

#include <QtTest>

using can::FrameFormat;
using can::TxFrame;
using can::TxInputError;
using can::TxRowInput;

class tst_CanTxRow : public QObject
{
    Q_OBJECT

private slots:
    void aRowBecomesAFrame();
    void bytesBehindTheLengthAreNotRead();
    void anIdentifierIsLimited_data();
    void anIdentifierIsLimited();
    void aByteThatDoesNotParseIsNamed_data();
    void aByteThatDoesNotParseIsNamed();
    void aRemoteFrameCarriesZeros();
    void thereAreNoRemoteFramesOfTheFdFormat();
    void aTextNamesBytes_data();
    void aTextNamesBytes();
    void noMoreBytesAreTakenThanAskedFor();
    void aTextOfMegabytesIsNotReadToItsEnd();

private:
    static TxRowInput row(const char *id, const char *bytes)
    {
        TxRowInput input;
        input.id = QString::fromLatin1(id);
        input.bytes = QString::fromLatin1(bytes).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        input.length = input.bytes.size();
        return input;
    }
};

void tst_CanTxRow::aRowBecomesAFrame()
{
    TxRowInput input = row("18FEF100", "0 a fF 10");
    input.extended = true;
    const auto result = can::parseTxRow(input);
    QVERIFY(std::holds_alternative<TxFrame>(result));
    const auto &frame = std::get<TxFrame>(result);
    QCOMPARE(frame.id, 0x18FEF100U);
    QVERIFY(frame.extended && !frame.remote);
    QCOMPARE(frame.data.toHex(' '), QByteArray("00 0a ff 10"));
}

void tst_CanTxRow::bytesBehindTheLengthAreNotRead()
{
    TxRowInput input = row("1", "01 02 zz");
    input.length = 2;
    const auto result = can::parseTxRow(input);
    QVERIFY(std::holds_alternative<TxFrame>(result));
    QCOMPARE(std::get<TxFrame>(result).data.toHex(), QByteArray("0102"));
}

void tst_CanTxRow::anIdentifierIsLimited_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("isExtended");
    QTest::addColumn<QString>("error");
    const auto standard = QStringLiteral("Invalid Value: CAN-ID, 0 to 7FF hexadecimal");
    const auto extended = QStringLiteral("Invalid Value: CAN-ID, 0 to 1FFFFFFF hexadecimal");
    const auto newRow = [](const char *tag, const char *id, bool isExtended, const QString &error) {
        QTest::newRow(tag) << QString::fromLatin1(id) << isExtended << error;
    };
    newRow("highest of 11 bits", "7FF", false, {});
    newRow("above 11 bits", "800", false, standard);
    newRow("highest of 29 bits", "1fffffff", true, {});
    newRow("above 29 bits", "20000000", true, extended);
    newRow("more than 32 bits", "100000000", true, extended);
    newRow("empty", "", false, standard);
    newRow("no digits", "xyz", false, standard);
    newRow("a sign", "-1", false, standard);
    newRow("a prefix", "0x10", false, standard);
}

void tst_CanTxRow::anIdentifierIsLimited()
{
    QFETCH(QString, id);
    QFETCH(bool, isExtended);
    QFETCH(QString, error);
    TxRowInput input;
    input.id = id;
    input.extended = isExtended;
    const auto result = can::parseTxRow(input);
    QCOMPARE(std::holds_alternative<TxFrame>(result), error.isEmpty());
    if (!error.isEmpty())
        QCOMPARE(std::get<TxInputError>(result).text, error);
}

void tst_CanTxRow::aByteThatDoesNotParseIsNamed_data()
{
    QTest::addColumn<QString>("bytes");
    QTest::addColumn<int>("position");
    QTest::newRow("the first") << QStringLiteral("g0 00 00") << 0;
    QTest::newRow("the last") << QStringLiteral("00 00 0x") << 2;
    QTest::newRow("three digits") << QStringLiteral("00 100 00") << 1;
    QTest::newRow("missing") << QStringLiteral("00 00") << 2;
}

void tst_CanTxRow::aByteThatDoesNotParseIsNamed()
{
    QFETCH(QString, bytes);
    QFETCH(int, position);
    TxRowInput input = row("1", qPrintable(bytes));
    input.length = 3;
    const auto result = can::parseTxRow(input);
    QVERIFY(std::holds_alternative<TxInputError>(result));
    const auto &error = std::get<TxInputError>(result);
    QCOMPARE(error.text, QStringLiteral("Invalid Value: CAN-Data,BytePos %1").arg(position));
    QVERIFY(error.field == TxInputError::Field::Byte);
    QCOMPARE(error.byte, position);
}

void tst_CanTxRow::aRemoteFrameCarriesZeros()
{
    TxRowInput input = row("7", "zz 01");
    input.remote = true;
    const auto result = can::parseTxRow(input);
    QVERIFY(std::holds_alternative<TxFrame>(result));
    QVERIFY(std::get<TxFrame>(result).remote);
    QCOMPARE(std::get<TxFrame>(result).data.toHex(), QByteArray("0000"));
}

void tst_CanTxRow::thereAreNoRemoteFramesOfTheFdFormat()
{
    TxRowInput input = row("7", "12");
    input.remote = true;
    input.format = FrameFormat::Fd;
    const auto result = can::parseTxRow(input);
    QVERIFY(!std::get<TxFrame>(result).remote);
    QCOMPARE(std::get<TxFrame>(result).data.toHex(), QByteArray("12"));
}

void tst_CanTxRow::aTextNamesBytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("bytes");
    const auto row = [](const char *name, const char *text, const char *bytes) {
        QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(bytes);
    };
    row("nothing between", "01a2FF", "01 a2 FF");
    row("blanks", "01 a2\tFF", "01 a2 FF");
    row("single digits", "1 2 3", "01 02 03");
    row("prefixes", "0x2,0x3E", "02 3E");
    row("prefixes and blanks", "0X02, 0X3e", "02 3e");
    row("semicolons", "1;2;a", "01 02 0a");
    row("colons", "01:2:3f", "01 02 3f");
    row("dashes", "01-02-3-f", "01 02 03 0f");
    row("line breaks", "1\r\n2\n3\r", "01 02 03");
    row("brackets", "{0x1, 0x2}", "01 02");
    row("an odd number of digits", "0x123 4", "01 23 04");
    row("an even one", "0x0A0B", "0A 0B");
    row("zeros", "00 0", "00 00");
    row("one digit", "7", "07");
    row("no digit", "no, y", "");
    row("nothing", "", "");
}

void tst_CanTxRow::aTextNamesBytes()
{
    QFETCH(QString, text);
    QFETCH(QString, bytes);
    QCOMPARE(can::bytesInText(text, 64).join(QLatin1Char(' ')), bytes);
}

void tst_CanTxRow::noMoreBytesAreTakenThanAskedFor()
{
    QCOMPARE(can::bytesInText(QStringLiteral("1 2 3 4"), 2).size(), 2);
    QCOMPARE(can::bytesInText(QStringLiteral("01020304"), 3).size(), 3);
    QCOMPARE(can::bytesInText(QStringLiteral("1"), 0).size(), 0);
}

void tst_CanTxRow::aTextOfMegabytesIsNotReadToItsEnd()
{
    QVERIFY(
        can::bytesInText(QString(3'000'000, QLatin1Char(' ')) + QLatin1Char('1'), 64).isEmpty());
}

QTEST_GUILESS_MAIN(tst_CanTxRow)
#include "tst_cantxrow.moc"
