#include "link/protocol/messagetypes.h"

#include <QSet>
#include <QTest>

class tst_MessageTypes : public QObject
{
    Q_OBJECT

private slots:
    void recordsHaveTheTypesOfTheTable();
    void numbersCountFromTheFirstTypeOfTheirRun();
};

void tst_MessageTypes::recordsHaveTheTypesOfTheTable()
{
    QSet<int> expected{2, 3, 4, 5, 6, 40, 41};
    for (int i = 0; i < 12; ++i)
        expected.insert(20 + i);
    for (int i = 0; i < 10; ++i)
        expected += {50 + i, 70 + i, 80 + i};
    for (int type = -1; type < 300; ++type)
        QCOMPARE(protocol::isRecordType(type), expected.contains(type));
}

void tst_MessageTypes::numbersCountFromTheFirstTypeOfTheirRun()
{
    QCOMPARE(protocol::indexIn(20, protocol::Can, protocol::canTypes), 0);
    QCOMPARE(protocol::indexIn(31, protocol::Can, protocol::canTypes), 11);
    QCOMPARE(protocol::indexIn(32, protocol::Can, protocol::canTypes), -1);
    QCOMPARE(protocol::indexIn(19, protocol::Can, protocol::canTypes), -1);
}

QTEST_GUILESS_MAIN(tst_MessageTypes)
#include "tst_messagetypes.moc"
