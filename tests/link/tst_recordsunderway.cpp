#include "link/recordsunderway.h"

#include <QTest>

#include <memory>

class tst_RecordsUnderway : public QObject
{
    Q_OBJECT

private slots:
    void aReleasedRecordIsTheReceivers();
    void aRecordAboveTheLimitIsRefused();
    void aReleasedRecordMakesRoom();
    void recordsWithoutContentCountToo();
};

void tst_RecordsUnderway::aReleasedRecordIsTheReceivers()
{
    std::unique_ptr<QByteArray> taken;
    {
        RecordsUnderway records;
        (void)records.put("left behind");
        taken.reset(records.put("taken"));
        records.release(taken.get());
    }
    QCOMPARE(*taken, QByteArray("taken"));
}

void tst_RecordsUnderway::aRecordAboveTheLimitIsRefused()
{
    RecordsUnderway records;
    QVERIFY(!records.put(QByteArray(int(RecordsUnderway::maxBytes), 'x')));
    QVERIFY(records.put("small"));
}

void tst_RecordsUnderway::aReleasedRecordMakesRoom()
{
    const QByteArray half(int(RecordsUnderway::maxBytes / 2), 'x');
    RecordsUnderway records;
    const std::unique_ptr<QByteArray> first(records.put(half));
    QVERIFY(!records.put(half));
    records.release(first.get());
    QVERIFY(records.put(half));
}

void tst_RecordsUnderway::recordsWithoutContentCountToo()
{
    RecordsUnderway records;
    qint64 count = 0;
    while (records.put({}))
        ++count;
    QCOMPARE(count, RecordsUnderway::maxBytes / RecordsUnderway::costOfRecord);
}

QTEST_APPLESS_MAIN(tst_RecordsUnderway)
#include "tst_recordsunderway.moc"
