#include "tests/support/allocationlimit.h"
#include "tests/support/dbclog.h"

#include <QTest>

class tst_OutOfMemory : public QObject
{
    Q_OBJECT

private slots:
    void memoryThatRunsOutIsTold_data();
    void memoryThatRunsOutIsTold();
};

void tst_OutOfMemory::memoryThatRunsOutIsTold_data()
{
    QTest::addColumn<QString>("status");
    QTest::newRow("buffers of records") << QStringLiteral("parsing logfile data...");
    QTest::newRow("blocks of the file") << QStringLiteral("creating/writing MDF4...");
}

void tst_OutOfMemory::memoryThatRunsOutIsTold()
{
    QFETCH(QString, status);
    DbcLog log;
    log.addSignal("S", 0, 8);
    for (int i = 0; i < 10000; ++i)
        log.addFrame(quint32(i), "0102030405060708");
    std::unique_ptr<AllocationLimit> limit;
    log.onStatus = [&](const QString &told) {
        if (told == status)
            limit = std::make_unique<AllocationLimit>(64 * 1024);
    };
    const ConversionResult result = log.convert();
    limit.reset();
    QVERIFY(!result.summary.written);
    QVERIFY(result.errors.first().contains(QStringLiteral("not enough memory")));
    QCOMPARE(result.errors.last(), QStringLiteral("Logfile-conversion aborted."));
    QCOMPARE(log.leftFiles(), QStringList(QStringLiteral("log.rld")));
}

QTEST_GUILESS_MAIN(tst_OutOfMemory)
#include "tst_outofmemory.moc"
