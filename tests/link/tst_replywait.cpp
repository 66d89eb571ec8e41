#include "link/replywait.h"

#include <QTest>

#include <thread>

class tst_ReplyWait : public QObject
{
    Q_OBJECT

private slots:
    void anAnswerEndsTheWait();
    void givingUpEndsTheWaitWithoutAnAnswer();
    void anotherNumberIsNoAnswer();
    void anotherKindIsNoAnswer();
    void theNumberZeroIsNoAnswer();
    void nobodyTakesASecondAnswer();
    void aNewCommandForgetsTheOldReply();
};

void tst_ReplyWait::anAnswerEndsTheWait()
{
    ReplyWait wait;
    wait.open(ReplyWait::Kind::Text, 121);
    std::thread peer([&wait] { wait.answer(ReplyWait::Kind::Text, {1, 121, "OK"}); });
    QVERIFY(wait.wait());
    peer.join();
    QCOMPARE(wait.takeReply(), (protocol::Message{1, 121, "OK"}));
}

void tst_ReplyWait::givingUpEndsTheWaitWithoutAnAnswer()
{
    ReplyWait wait;
    wait.open(ReplyWait::Kind::Streaming, 121);
    std::thread peer([&wait] { wait.giveUp(); });
    QVERIFY(!wait.wait());
    peer.join();
    QCOMPARE(wait.takeReply(), protocol::Message());
}

void tst_ReplyWait::anotherNumberIsNoAnswer()
{
    ReplyWait wait;
    wait.open(ReplyWait::Kind::Text, 122);
    QVERIFY(!wait.answer(ReplyWait::Kind::Text, {1, 121, "late"}));
    wait.giveUp();
    QVERIFY(!wait.wait());
}

void tst_ReplyWait::anotherKindIsNoAnswer()
{
    ReplyWait wait;
    wait.open(ReplyWait::Kind::Text, 121);
    QVERIFY(!wait.answer(ReplyWait::Kind::Streaming, {4, 121, {}}));
    QVERIFY(wait.answer(ReplyWait::Kind::Text, {1, 121, "OK"}));
}

void tst_ReplyWait::theNumberZeroIsNoAnswer()
{
    ReplyWait wait;
    wait.open(ReplyWait::Kind::Streaming, 0);
    QVERIFY(!wait.answer(ReplyWait::Kind::Streaming, {4, 0, {}}));
}

void tst_ReplyWait::nobodyTakesASecondAnswer()
{
    ReplyWait wait;
    wait.open(ReplyWait::Kind::Text, 121);
    QVERIFY(wait.answer(ReplyWait::Kind::Text, {1, 121, "first"}));
    QVERIFY(!wait.answer(ReplyWait::Kind::Text, {1, 121, "second"}));
    QCOMPARE(wait.takeReply().payload, QByteArray("first"));
}

void tst_ReplyWait::aNewCommandForgetsTheOldReply()
{
    ReplyWait wait;
    wait.open(ReplyWait::Kind::Text, 121);
    wait.answer(ReplyWait::Kind::Text, {1, 121, "old"});
    wait.open(ReplyWait::Kind::Text, 122);
    QCOMPARE(wait.takeReply(), protocol::Message());
}

QTEST_GUILESS_MAIN(tst_ReplyWait)
#include "tst_replywait.moc"
