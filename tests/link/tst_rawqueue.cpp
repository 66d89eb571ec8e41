#include "link/rawqueue.h"

#include <QTest>

#include <thread>

class tst_RawQueue : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheFirstEntriesCallTheOtherSide();
    void entriesKeepTheirOrder();
    void whatExceedsTheLimitIsDroppedAndCounted();
    void smallEntriesCountWithWhatTheyCost();
    void twoThreadsLoseNothing();
};

namespace {

QByteArray takenFrom(RawQueue &queue)
{
    const QList<QByteArray *> entries = queue.takeAll();
    QByteArray joined;
    for (const QByteArray *entry : entries)
        joined += *entry;
    qDeleteAll(entries);
    return joined;
}

} // namespace

void tst_RawQueue::onlyTheFirstEntriesCallTheOtherSide()
{
    RawQueue queue;
    QVERIFY(!queue.put({}));
    QVERIFY(queue.put({new QByteArray("a")}));
    QVERIFY(!queue.put({new QByteArray("b")}));
    (void)takenFrom(queue);
    QVERIFY(queue.put({new QByteArray("c")}));
}

void tst_RawQueue::entriesKeepTheirOrder()
{
    RawQueue queue;
    (void)queue.put({new QByteArray("a"), new QByteArray("b")});
    (void)queue.put({new QByteArray("c")});
    QCOMPARE(takenFrom(queue), QByteArray("abc"));
    QCOMPARE(takenFrom(queue), QByteArray());
}

void tst_RawQueue::whatExceedsTheLimitIsDroppedAndCounted()
{
    RawQueue queue;
    constexpr int allThereIs = int(RawQueue::maxBytes - RawQueue::costOfEntry);
    (void)queue.put({new QByteArray(allThereIs, 'x'), new QByteArray("y")});
    QCOMPARE(queue.dropped(), quint64(1));
    QCOMPARE(takenFrom(queue).size(), allThereIs);
    (void)queue.put({new QByteArray("z")});
    QCOMPARE(takenFrom(queue), QByteArray("z"));
    QCOMPARE(queue.dropped(), quint64(1));
}

void tst_RawQueue::smallEntriesCountWithWhatTheyCost()
{
    constexpr int count = int(RawQueue::maxBytes / RawQueue::costOfEntry) + 1;
    RawQueue queue;
    QList<QByteArray *> entries;
    for (int i = 0; i < count; ++i)
        entries.append(new QByteArray);
    (void)queue.put(entries);
    QCOMPARE(queue.dropped(), quint64(1));
}

void tst_RawQueue::twoThreadsLoseNothing()
{
    constexpr int count = 20'000;
    RawQueue queue;
    std::thread worker([&queue] {
        for (int i = 0; i < count; ++i)
            (void)queue.put({new QByteArray(1, char(i))});
    });
    QByteArray taken;
    while (taken.size() < count)
        taken += takenFrom(queue);
    worker.join();
    for (int i = 0; i < count; ++i)
        QCOMPARE(taken.at(i), char(i));
}

QTEST_GUILESS_MAIN(tst_RawQueue)
#include "tst_rawqueue.moc"
