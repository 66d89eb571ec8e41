#include "config/record/ownedlist.h"

#include <QTest>

class tst_OwnedList : public QObject
{
    Q_OBJECT

private slots:
    void whatAListHoldsIsFreedWithIt();
    void removedElementsAreFreed();
    void aTakenElementOutlivesTheList();
    void movingLeavesTheElementsAlive();
    void anAssignedListFreesWhatItHeld();
    void swappingExchangesTheElements();
    void elementsStandInTheOrderOfTheirAppending();
};

namespace {

struct Counted
{
    Counted() { ++alive; }
    ~Counted() { --alive; }
    Q_DISABLE_COPY(Counted)

    int number = 0;
    static int alive;
};
int Counted::alive = 0;

OwnedList<Counted> listOf(int count)
{
    OwnedList<Counted> list;
    for (int i = 0; i < count; ++i)
        list.add().number = i;
    return list;
}

} // namespace

void tst_OwnedList::whatAListHoldsIsFreedWithIt()
{
    {
        const OwnedList<Counted> list = listOf(3);
        QCOMPARE(Counted::alive, 3);
        QCOMPARE(list.size(), 3);
    }
    QCOMPARE(Counted::alive, 0);
}

void tst_OwnedList::removedElementsAreFreed()
{
    OwnedList<Counted> list = listOf(3);
    list.removeAt(1);
    QCOMPARE(Counted::alive, 2);
    QCOMPARE(list.at(1)->number, 2);
    list.clear();
    QCOMPARE(Counted::alive, 0);
    QVERIFY(list.isEmpty());
}

void tst_OwnedList::aTakenElementOutlivesTheList()
{
    OwnedList<Counted> list = listOf(2);
    const std::unique_ptr<Counted> taken = list.takeAt(0);
    list.clear();
    QCOMPARE(Counted::alive, 1);
    QCOMPARE(taken->number, 0);
}

void tst_OwnedList::movingLeavesTheElementsAlive()
{
    OwnedList<Counted> from = listOf(2);
    Counted *const first = from.at(0);
    const OwnedList<Counted> to(std::move(from));
    QCOMPARE(to.at(0), first);
    QCOMPARE(Counted::alive, 2);
}

void tst_OwnedList::anAssignedListFreesWhatItHeld()
{
    OwnedList<Counted> list = listOf(5);
    list = listOf(2);
    QCOMPARE(list.size(), 2);
    QCOMPARE(Counted::alive, 2);
}

void tst_OwnedList::swappingExchangesTheElements()
{
    OwnedList<Counted> one = listOf(1);
    OwnedList<Counted> two = listOf(2);
    one.swap(two);
    QCOMPARE(one.size(), 2);
    QCOMPARE(two.size(), 1);
}

void tst_OwnedList::elementsStandInTheOrderOfTheirAppending()
{
    OwnedList<Counted> list = listOf(2);
    auto third = std::make_unique<Counted>();
    third->number = 2;
    Counted *const appended = list.append(std::move(third));
    QCOMPARE(list.items().last(), appended);
    int expected = 0;
    for (const Counted *item : list)
        QCOMPARE(item->number, expected++);
    QCOMPARE(expected, 3);
}

QTEST_GUILESS_MAIN(tst_OwnedList)
#include "tst_ownedlist.moc"
