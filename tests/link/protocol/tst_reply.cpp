#include "link/protocol/reply.h"

#include <QTest>

using namespace protocol;

class tst_Reply : public QObject
{
    Q_OBJECT

private slots:
    void okIsTheWholeSimplifiedText_data();
    void okIsTheWholeSimplifiedText();
    void anErrorStartsWithItsWord();
    void theKeyStandsBeforeTheFirstEqualsSign();
    void valuesAreDividedAtCommas_data();
    void valuesAreDividedAtCommas();
    void knownCodesHaveTexts_data();
    void knownCodesHaveTexts();
    void aNulByteEndsTheReply();
    void aSetCommandIsEvaluated_data();
    void aSetCommandIsEvaluated();
    void aGetterIsEvaluated_data();
    void aGetterIsEvaluated();
    void aCommandWithoutConnectionFailsWithItsText();
    void aTextForTheUserHoldsOnlyTheStartOfAHugeReply();
};

void tst_Reply::okIsTheWholeSimplifiedText_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("ok");
    QTest::newRow("plain") << QByteArray("OK") << true;
    QTest::newRow("with line end") << QByteArray(" OK\r\n") << true;
    QTest::newRow("behind a NUL") << QByteArray("OK\0x", 4) << true;
    QTest::newRow("lower case") << QByteArray("Ok") << false;
    QTest::newRow("longer") << QByteArray("OK 1") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void tst_Reply::okIsTheWholeSimplifiedText()
{
    QFETCH(QByteArray, reply);
    QTEST(isOk(reply), "ok");
}

void tst_Reply::anErrorStartsWithItsWord()
{
    QVERIFY(isError("ERROR=-7\r\n"));
    QVERIFY(isError("  ERROR"));
    QVERIFY(!isError("error=-7"));
    QVERIFY(!isError("x ERROR=-7"));
}

void tst_Reply::theKeyStandsBeforeTheFirstEqualsSign()
{
    QCOMPARE(replyKey("a=b=c"), QStringLiteral("a"));
    QCOMPARE(replyKey("foo\r\n"), QStringLiteral("foo"));
    QCOMPARE(replyKey("=1"), QString());
}

void tst_Reply::valuesAreDividedAtCommas_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QStringList>("values");
    const auto texts = [](std::initializer_list<const char *> list) {
        QStringList strings;
        for (const char *text : list)
            strings.append(QString::fromLatin1(text));
        return strings;
    };
    QTest::newRow("some") << QByteArray("v=1, 61\r\n") << texts({"1", "61"});
    QTest::newRow("an empty one") << QByteArray("v=1,,3") << texts({"1", "", "3"});
    QTest::newRow("a second equals sign") << QByteArray("v=a=b,c") << texts({"a=b", "c"});
    QTest::newRow("nothing behind it") << QByteArray("v=") << texts({""});
    QTest::newRow("no equals sign") << QByteArray("v,1") << QStringList();
    QTest::newRow("Latin-1") << QByteArray("v=M\xFCller") << QStringList(QStringLiteral("Müller"));
}

void tst_Reply::valuesAreDividedAtCommas()
{
    QFETCH(QByteArray, reply);
    QTEST(replyValues(reply), "values");
}

void tst_Reply::knownCodesHaveTexts_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *reply, const char *text) {
        QTest::newRow(reply) << QByteArray(reply) << QString::fromLatin1(text);
    };
    row("ERROR=-1000", "Subsystem not connected");
    row("ERROR=-1001", "Logger not connected");
    row("ERROR=-1100", "ERROR_CODE_UNKNOWN_SYS_CMD");
    row("ERROR=-1101", "ERROR_CODE_FAILED_TO_DELETE");
    row("ERROR=-1102", "ERROR_CODE_FAILED_TO_SET_IP_ADDRESS");
    row("ERROR=-1103", "ERROR_CODE_INAVLID_CMD");
    row("ERROR=-1104", "ERROR_CODE_UNKNOWN");
    row("ERROR=-1105\r\n", "ERROR_CODE_FILE_NOT_FOUND");
    row("ERROR=-1106", "IP already assigned to wifi interface.");
    row("ERROR=-1107", "Failed to check interface addresses.");
    row("ERROR=-1108", "ERROR_CODE_UNKNOWN_TARGET_CPU -1108");
    row("ERROR=-7", "-7");
    row("ERROR=x", "ERROR=x");
    row("ERROR=", "ERROR=");
    row("ERROR", "ERROR");
}

void tst_Reply::knownCodesHaveTexts()
{
    QFETCH(QByteArray, reply);
    QTEST(errorText(reply), "text");
}

void tst_Reply::aNulByteEndsTheReply()
{
    QCOMPARE(replyValues(QByteArray("a=1\0,2", 6)), QStringList(QStringLiteral("1")));
}

void tst_Reply::aSetCommandIsEvaluated_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("handlerError");
    QTest::addColumn<QString>("viewError");
    const auto row = [](const char *name, const QByteArray &reply, const char *handlerError,
                        const char *viewError) {
        QTest::newRow(name) << reply << QString::fromLatin1(handlerError)
                            << QString::fromLatin1(viewError);
    };
    row("silence", {}, "No CMD-Response. (set_x)", "No CMD-Response. (set_x)");
    row("OK", "OK\r\n", "", "");
    row("error", "ERROR=-1104", "ERROR_CODE_UNKNOWN", "ERROR_CODE_UNKNOWN");
    row("garbage", "foo", "Unknown CMD-Response.\r\n Response: foo.",
        "CMD-Response error.\r\n Response: foo.");
    row("placeholders in garbage", "%1 %2", "Unknown CMD-Response.\r\n Response: %1 %2.",
        "CMD-Response error.\r\n Response: %1 %2.");
}

void tst_Reply::aSetCommandIsEvaluated()
{
    QFETCH(QByteArray, reply);
    const QString word = QStringLiteral("set_x");
    const Outcome handler = evaluateSetReply(reply, word);
    QTEST(handler.error, "handlerError");
    QCOMPARE(handler.ok, handler.error.isEmpty());
    QTEST(evaluateSetReply(reply, word, SetReplyTexts::View).error, "viewError");
}

void tst_Reply::aGetterIsEvaluated_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QByteArray &reply, const char *error) {
        QTest::newRow(name) << reply << QString::fromLatin1(error);
    };
    row("silence", {}, "No CMD-Response. (get_x)");
    row("two values", "x=1,2\r\n", "");
    row("error", "ERROR=-7", "-7");
    row("no equals sign", "foo", "Unknown CMD-Response.\r\n Response: foo.");
    row("another key", "y=1,2", "Unknown CMD-Response.\r\n Response: y=1,2.");
    row("no values", "x", "CMD-Response without arguments.\r\n Response: x.");
    row("one value", "x=1", "CMD-Response Argument error.\r\n Response: x=1.");
    row("three values", "x=1,2,3", "CMD-Response Argument error.\r\n Response: x=1,2,3.");
}

void tst_Reply::aGetterIsEvaluated()
{
    QFETCH(QByteArray, reply);
    const Outcome outcome = evaluateGetReply(reply, QStringLiteral("get_x"), QStringLiteral("x"),
                                             ValueCount::exactly(2));
    QTEST(outcome.error, "error");
    QCOMPARE(outcome.ok, outcome.error.isEmpty());
    QCOMPARE(outcome.values.size(), outcome.ok ? 2 : 0);
}

void tst_Reply::aCommandWithoutConnectionFailsWithItsText()
{
    QCOMPARE(errorReply(loggerNotConnected), QByteArray("ERROR=-1001"));
    QCOMPARE(errorText(errorReply(loggerNotConnected)), QStringLiteral("Logger not connected"));
}

void tst_Reply::aTextForTheUserHoldsOnlyTheStartOfAHugeReply()
{
    const QString word = QStringLiteral("word");
    const QByteArray huge(1 << 20, 'x');
    const QStringList texts{errorText("ERROR=" + huge), evaluateSetReply(huge, word).error,
                            evaluateGetReply(huge, word, word, {}).error};
    for (const QString &text : texts) {
        QVERIFY(text.contains(QStringLiteral("xxx...")));
        QVERIFY(text.size() < 2000);
    }
}

QTEST_GUILESS_MAIN(tst_Reply)
#include "tst_reply.moc"
