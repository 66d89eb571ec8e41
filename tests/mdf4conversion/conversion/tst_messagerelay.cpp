#include "MDF4Conversion/messagerelay.h"

#include <QTest>

#include <thread>

using Kind = MessageLimits::Kind;

namespace {

constexpr std::size_t all = 100000;

} // namespace

class tst_MessageRelay : public QObject
{
    Q_OBJECT

private slots:
    void messagesComeOutInTheirOrder();
    void noMoreAreTakenThanAskedFor();
    void noMoreAreHeldThanWillBeShown();
    void anotherThreadMayAdd();
};

void tst_MessageRelay::messagesComeOutInTheirOrder()
{
    MessageRelay relay;
    relay.add(Kind::Status, QStringLiteral("one"));
    relay.add(Kind::Error, QStringLiteral("two"));
    const auto messages = relay.take(all);
    QCOMPARE(messages.size(), std::size_t(2));
    QCOMPARE(messages[0].text, QStringLiteral("one"));
    QCOMPARE(int(messages[0].kind), int(Kind::Status));
    QCOMPARE(messages[1].text, QStringLiteral("two"));
    QCOMPARE(int(messages[1].kind), int(Kind::Error));
    QVERIFY(relay.take(all).empty());
}

void tst_MessageRelay::noMoreAreTakenThanAskedFor()
{
    MessageRelay relay;
    for (int i = 0; i < 5; ++i)
        relay.add(Kind::Status, QString::number(i));
    QCOMPARE(relay.take(3).back().text, QStringLiteral("2"));
    QCOMPARE(relay.take(3).front().text, QStringLiteral("3"));
}

void tst_MessageRelay::noMoreAreHeldThanWillBeShown()
{
    MessageRelay relay;
    for (int i = 0; i < 30000; ++i)
        relay.add(Kind::Status, QString());
    relay.add(Kind::Error, QStringLiteral("the error"));
    QCOMPARE(relay.take(all).size(), std::size_t(25001));
    relay.add(Kind::Status, QString());
    QVERIFY(relay.take(all).empty());
}

void tst_MessageRelay::anotherThreadMayAdd()
{
    MessageRelay relay;
    std::thread conversion([&relay] {
        for (int i = 0; i < 10000; ++i)
            relay.add(Kind::Status, QString::number(i));
    });
    int next = 0;
    while (next < 10000) {
        for (const MessageRelay::Message &message : relay.take(100)) {
            if (message.text != QString::number(next++))
                next = 20000;
        }
    }
    conversion.join();
    QCOMPARE(next, 10000);
}

QTEST_GUILESS_MAIN(tst_MessageRelay)
#include "tst_messagerelay.moc"
