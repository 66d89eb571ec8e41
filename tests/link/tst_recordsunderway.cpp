#include "link/recordsunderway.h"

#include <QTest>

#include <thread>

class tst_RecordsUnderway : public QObject
{
    Q_OBJECT

private slots:
    void recordsKeepTheirOrder();
    void ofATypeOnlyTheNewestIsKept();
    void theNewestStandsWhereItArrived();
    void aRecordThatReplacesNoneNeedsACall();
    void aRecordAboveTheLimitIsRefused();
    void aRefusedRecordLeavesTheEarlierOne();
    void ofATypeOneIsCounted();
    void aTakenRecordMakesRoom();
    void aReplacedRecordMakesRoom();
    void twoThreadsEndWithTheNewest();
};

namespace {

using Outcome = RecordsUnderway::Outcome;

Outcome put(RecordsUnderway &records, int type, const QByteArray &data)
{
    return records.put(type, std::make_unique<QByteArray>(data));
}

// All records, as "type:data".
QStringList takenFrom(RecordsUnderway &records)
{
    QStringList taken;
    while (const auto record = records.takeFirst())
        taken += QStringLiteral("%1:%2").arg(record->type).arg(QString::fromLatin1(*record->data));
    return taken;
}

const QByteArray half(int(RecordsUnderway::maxBytes / 2), 'x');

} // namespace

void tst_RecordsUnderway::recordsKeepTheirOrder()
{
    RecordsUnderway records;
    (void)put(records, 20, "a");
    (void)put(records, 4, "b");
    QCOMPARE(takenFrom(records), QStringList({QStringLiteral("20:a"), QStringLiteral("4:b")}));
    QCOMPARE(takenFrom(records), QStringList());
}

void tst_RecordsUnderway::ofATypeOnlyTheNewestIsKept()
{
    RecordsUnderway records;
    for (const char *data : {"a", "b", "c"})
        (void)put(records, 3, data);
    QCOMPARE(takenFrom(records), QStringList{QStringLiteral("3:c")});
}

// A whole configuration behind a part of it is not to be changed by that part.
void tst_RecordsUnderway::theNewestStandsWhereItArrived()
{
    RecordsUnderway records;
    (void)put(records, 3, "old");
    (void)put(records, 4, "part");
    (void)put(records, 3, "new");
    QCOMPARE(takenFrom(records), QStringList({QStringLiteral("4:part"), QStringLiteral("3:new")}));
}

void tst_RecordsUnderway::aRecordThatReplacesNoneNeedsACall()
{
    RecordsUnderway records;
    QCOMPARE(put(records, 3, "a"), Outcome::Added);
    QCOMPARE(put(records, 4, "b"), Outcome::Added);
    QCOMPARE(put(records, 3, "c"), Outcome::Replaced);
    (void)takenFrom(records);
    QCOMPARE(put(records, 3, "d"), Outcome::Added);
}

void tst_RecordsUnderway::aRecordAboveTheLimitIsRefused()
{
    RecordsUnderway records;
    QCOMPARE(put(records, 3, QByteArray(int(RecordsUnderway::maxBytes) + 1, 'x')),
             Outcome::Refused);
    QCOMPARE(put(records, 3, "small"), Outcome::Added);
}

void tst_RecordsUnderway::aRefusedRecordLeavesTheEarlierOne()
{
    RecordsUnderway records;
    (void)put(records, 4, "early");
    (void)put(records, 3, half);
    QCOMPARE(put(records, 4, half + "x"), Outcome::Refused);
    QCOMPARE(takenFrom(records).first(), QStringLiteral("4:early"));
}

void tst_RecordsUnderway::ofATypeOneIsCounted()
{
    RecordsUnderway records;
    QCOMPARE(records.count(), 0);
    for (const int type : {3, 4, 3})
        (void)put(records, type, "x");
    QCOMPARE(records.count(), 2);
    (void)takenFrom(records);
    QCOMPARE(records.count(), 0);
}

void tst_RecordsUnderway::aTakenRecordMakesRoom()
{
    RecordsUnderway records;
    (void)put(records, 3, half);
    (void)put(records, 4, half);
    QCOMPARE(put(records, 5, "x"), Outcome::Refused);
    (void)records.takeFirst();
    QCOMPARE(put(records, 5, "x"), Outcome::Added);
}

void tst_RecordsUnderway::aReplacedRecordMakesRoom()
{
    RecordsUnderway records;
    (void)put(records, 3, half);
    (void)put(records, 4, half);
    QCOMPARE(put(records, 4, "x"), Outcome::Replaced);
    QCOMPARE(put(records, 5, "x"), Outcome::Added);
}

void tst_RecordsUnderway::twoThreadsEndWithTheNewest()
{
    constexpr int count = 20'000;
    RecordsUnderway records;
    std::thread worker([&records] {
        for (int i = 1; i <= count; ++i)
            (void)put(records, 3, QByteArray::number(i));
    });
    int last = 0;
    while (last < count) {
        if (const auto record = records.takeFirst()) {
            QVERIFY(record->data->toInt() > last);
            last = record->data->toInt();
        }
    }
    worker.join();
    QCOMPARE(takenFrom(records), QStringList());
}

QTEST_APPLESS_MAIN(tst_RecordsUnderway)
#include "tst_recordsunderway.moc"
