#include "link/loggerstorage.h"

#include <QTest>

using namespace loggerstorage;

class tst_LoggerStorage : public QObject
{
    Q_OBJECT

private slots:
    void filesComeInTheOrderOfTheReply();
    void aListReadsTheSameWithoutItsLineEnd();
    void theLastCommaDividesNameAndSize();
    void aNameStaysAsTheLoggerGaveIt_data();
    void aNameStaysAsTheLoggerGaveIt();
    void aSizeIsReadToTheByte_data();
    void aSizeIsReadToTheByte();
    void anEmptyListIsNoError();
    void anEntryWithoutACommaIsAFileWithoutASize();
    void repliesThatAreNoListAreRefused_data();
    void repliesThatAreNoListAreRefused();
    void ofTooManyFilesTheLastOnesAreKept();
    void aListOfNothingButCommasIsReadAtOnce();
    void aShownNameIsBoundedAndHasNoControlCharacters();
    void mebibytesAreCut();
    void discSpaceNeedsTwoNumbers_data();
    void discSpaceNeedsTwoNumbers();
    void sizesAreShownInTheLargestFittingUnit_data();
    void sizesAreShownInTheLargestFittingUnit();
};

void tst_LoggerStorage::filesComeInTheOrderOfTheReply()
{
    const Listing listing = filesIn("logfiles=a.rld,100;b.rld,2097152;\r\n");
    QCOMPARE(listing.error, QString());
    QCOMPARE(listing.files.size(), 2);
    QCOMPARE(listing.files.at(0).name, QStringLiteral("a.rld"));
    QCOMPARE(listing.files.at(0).size.value_or(-1), 100);
    QCOMPARE(listing.files.at(1).name, QStringLiteral("b.rld"));
    QCOMPARE(listing.files.at(1).size.value_or(-1), 2097152);
}

void tst_LoggerStorage::aListReadsTheSameWithoutItsLineEnd()
{
    const Listing listing = filesIn("logfiles=a.rld,100");
    QCOMPARE(listing.files.size(), 1);
    QCOMPARE(listing.files.at(0).size.value_or(-1), 100);
}

void tst_LoggerStorage::theLastCommaDividesNameAndSize()
{
    const Listing listing = filesIn("logfiles=drive,to,work.rld,7;\r\n");
    QCOMPARE(listing.files.value(0).name, QStringLiteral("drive,to,work.rld"));
    QCOMPARE(listing.files.value(0).size.value_or(-1), 7);
}

void tst_LoggerStorage::aNameStaysAsTheLoggerGaveIt_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("path") << QStringLiteral("../../etc/passwd");
    QTest::newRow("two blanks") << QStringLiteral("a  b.rld");
    QTest::newRow("Latin-1") << QStringLiteral("pr\u00fcfung.rld");
    QTest::newRow("equals") << QStringLiteral("a=b.rld");
    QTest::newRow("markup") << QStringLiteral("<img src=x>.rld");
    QTest::newRow("line end") << QStringLiteral("a\r\nb.rld");
    QTest::newRow("none") << QString();
}

void tst_LoggerStorage::aNameStaysAsTheLoggerGaveIt()
{
    QFETCH(QString, name);
    const Listing listing =
        filesIn("logfiles=" + name.toLatin1() + ",1;" + name.toLatin1() + ",2;\r\n");
    QCOMPARE(listing.files.size(), 2);
    QCOMPARE(listing.files.at(0).name, name);
    QCOMPARE(listing.files.at(1).name, name);
}

void tst_LoggerStorage::aSizeIsReadToTheByte_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("bytes"); // -1: none
    QTest::newRow("0") << QByteArray("0") << qint64(0);
    QTest::newRow("above 2^53") << QByteArray("9007199254740993") << Q_INT64_C(9007199254740993);
    QTest::newRow("largest") << QByteArray("9223372036854775807")
                             << std::numeric_limits<qint64>::max();
    QTest::newRow("one more") << QByteArray("9223372036854775808") << qint64(-1);
    QTest::newRow("negative") << QByteArray("-1") << qint64(-1);
    QTest::newRow("fraction") << QByteArray("1.5") << qint64(-1);
    QTest::newRow("exponent") << QByteArray("1e3") << qint64(-1);
    QTest::newRow("hexadecimal") << QByteArray("0x10") << qint64(-1);
    QTest::newRow("none") << QByteArray() << qint64(-1);
    QTest::newRow("words") << QByteArray("large") << qint64(-1);
}

void tst_LoggerStorage::aSizeIsReadToTheByte()
{
    QFETCH(QByteArray, text);
    const Listing listing = filesIn("logfiles=a.rld," + text + ";\r\n");
    QCOMPARE(listing.files.size(), 1);
    QTEST(listing.files.at(0).size.value_or(-1), "bytes");
    QCOMPARE(listing.files.at(0).size_text, QString::fromLatin1(text));
}

void tst_LoggerStorage::anEmptyListIsNoError()
{
    for (const char *reply : {"logfiles=", "logfiles=\r\n", "logfiles=;;;\r\n"}) {
        const Listing listing = filesIn(reply);
        QCOMPARE(listing.error, QString());
        QVERIFY(listing.files.isEmpty());
    }
}

void tst_LoggerStorage::anEntryWithoutACommaIsAFileWithoutASize()
{
    const Listing listing = filesIn("logfiles=a.rld;b.rld,2;\r\n");
    QCOMPARE(listing.files.size(), 2);
    QCOMPARE(listing.files.at(0).name, QStringLiteral("a.rld"));
    QVERIFY(!listing.files.at(0).size);
}

void tst_LoggerStorage::repliesThatAreNoListAreRefused_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("error");
    QTest::newRow("none") << QByteArray() << QStringLiteral("No CMD-Response. (sys_get_logfiles)");
    QTest::newRow("another key") << QByteArray(
        "foo=a,1;\r\n") << QStringLiteral("Unknown CMD-Response.\r\n Response: foo=a,1;\r\n.");
    QTest::newRow("error code") << QByteArray("ERROR=-1001\r\n")
                                << QStringLiteral("Logger not connected");
    QTest::newRow("key alone")
        << QByteArray("logfiles\r\n")
        << QStringLiteral("CMD-Response without arguments.\r\n Response: logfiles\r\n.");
}

void tst_LoggerStorage::repliesThatAreNoListAreRefused()
{
    QFETCH(QByteArray, reply);
    const Listing listing = filesIn(reply);
    QTEST(listing.error, "error");
    QVERIFY(listing.files.isEmpty());
}

void tst_LoggerStorage::ofTooManyFilesTheLastOnesAreKept()
{
    QByteArray reply = "logfiles=";
    for (int i = 0; i < Listing::maxFiles + 3; ++i)
        reply += QByteArray::number(i) + ".rld,1;";
    const Listing listing = filesIn(reply);
    QCOMPARE(listing.files.size(), Listing::maxFiles);
    QCOMPARE(listing.left_out, 3);
    QCOMPARE(listing.files.first().name, QStringLiteral("3.rld"));
}

void tst_LoggerStorage::aListOfNothingButCommasIsReadAtOnce()
{
    const Listing listing = filesIn("logfiles=" + QByteArray(20'000'000, ','));
    QCOMPARE(listing.files.size(), 1);
    QCOMPARE(listing.files.first().name.size(), 19'999'999);
}

void tst_LoggerStorage::aShownNameIsBoundedAndHasNoControlCharacters()
{
    QCOMPARE(shownName(QStringLiteral("a.rld")), QStringLiteral("a.rld"));
    QCOMPARE(shownName(QStringLiteral("a\r\nb\x7f")), QStringLiteral("a\uFFFD\uFFFDb\uFFFD"));
    QCOMPARE(shownName(QString(100'000, QLatin1Char('x'))).size(), 258);
}

void tst_LoggerStorage::mebibytesAreCut()
{
    QCOMPARE(mebibytes(0), 0);
    QCOMPARE(mebibytes(1048575), 0);
    QCOMPARE(mebibytes(1048576), 1);
    QCOMPARE(mebibytes(std::numeric_limits<qint64>::max()), Q_INT64_C(8796093022207));
}

void tst_LoggerStorage::discSpaceNeedsTwoNumbers_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<bool>("isSpace");
    const auto row = [](const char *values, bool isSpace) {
        QTest::newRow(values) << QString::fromLatin1(values).split(QLatin1Char(',')) << isSpace;
    };
    row("1024,4096", true);
    row("1024,4096,7", true);
    row("1024", false);
    row("", false);
    row("1024,", false);
    row("-1,4096", false);
    row("1024,much", false);
}

void tst_LoggerStorage::discSpaceNeedsTwoNumbers()
{
    QFETCH(QStringList, values);
    QFETCH(bool, isSpace);
    const auto space = discSpaceIn(values);
    QCOMPARE(space.has_value(), isSpace);
    if (space) {
        QCOMPARE(space->free, 1024);
        QCOMPARE(space->total, 4096);
    }
}

void tst_LoggerStorage::sizesAreShownInTheLargestFittingUnit_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << qint64(0) << QStringLiteral("0 [KiB]");
    QTest::newRow("below 1 KiB") << qint64(1023) << QStringLiteral("0 [KiB]");
    QTest::newRow("1 KiB") << qint64(1024) << QStringLiteral("1 [KiB]");
    QTest::newRow("below 1 MiB") << qint64(1048575) << QStringLiteral("1023 [KiB]");
    QTest::newRow("1 MiB") << qint64(1048576) << QStringLiteral("1 [MiB]");
    QTest::newRow("below 1 GiB") << qint64(1073741823) << QStringLiteral("1023 [MiB]");
    QTest::newRow("1 GiB") << qint64(1073741824) << QStringLiteral("1 [GiB]");
    QTest::newRow("largest") << std::numeric_limits<qint64>::max()
                             << QStringLiteral("8589934591 [GiB]");
}

void tst_LoggerStorage::sizesAreShownInTheLargestFittingUnit()
{
    QFETCH(qint64, bytes);
    QTEST(sizeText(bytes), "text");
}

QTEST_GUILESS_MAIN(tst_LoggerStorage)
#include "tst_loggerstorage.moc"
