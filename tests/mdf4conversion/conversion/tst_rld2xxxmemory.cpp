#include "MDF4Conversion/conversionstate.h"
#include "MDF4Conversion/rld2xxxmemory.h"

#include <QElapsedTimer>
#include <QSharedMemory>
#include <QTest>

#include <memory>

class tst_Rld2xxxMemory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theKeyEndsWithTheNameOfTheLog();
    void theRecordBeginsWithZeros();
    void whatTheOtherProgramWritesIsRead();
    void finishingReachesTheOtherProgram();
    void withoutMemoryThereIsNoRecord();
    void memoryWhoseKeyIsTooLongIsRefused();

    void aHeldLockIsNotWaitedFor();
    void aLockThatIsGivenBackIsHadAgain();
    void aLockThatIsHeldByTurnsIsWaitedForAnewEachTime();
    void finishingBehindAHeldLockHoldsAtOnceAndArrivesLater();
    void anEndedProgramsLockIsNotTaken();
    void theRecordOutlivesTheMemory();
    void memoryWhoseLockIsHeldCanBeLeft();

private:
    static constexpr int inTime_ms = 5000; // far above what a call may take

    uchar *bytes() const { return static_cast<uchar *>(m_other->data()); }
    bool isLockedOut()
    {
        return QTest::qWaitFor([this] {
            (void)m_memory->read();
            return m_memory->lockedOut_ms() > 0;
        });
    }

    std::unique_ptr<Rld2xxxMemory> m_memory;
    std::unique_ptr<QSharedMemory> m_other; // as the other program sees it
};

void tst_Rld2xxxMemory::init()
{
    m_memory = std::make_unique<Rld2xxxMemory>();
    QVERIFY(m_memory->create(QStringLiteral("/logs/drive 1.rld")));
    m_other = std::make_unique<QSharedMemory>(m_memory->key());
    QVERIFY(m_other->attach());
}

void tst_Rld2xxxMemory::cleanup()
{
    m_other.reset();
    m_memory.reset();
}

void tst_Rld2xxxMemory::theKeyEndsWithTheNameOfTheLog()
{
    QVERIFY(m_memory->key().startsWith(QLatin1Char('{')));
    QVERIFY(m_memory->key().endsWith(QStringLiteral("}-drive 1")));
}

void tst_Rld2xxxMemory::theRecordBeginsWithZeros()
{
    QVERIFY(m_other->size() >= int(Rld2xxxRecord::size));
    for (std::size_t i = 0; i < Rld2xxxRecord::size; ++i)
        QCOMPARE(int(bytes()[i]), 0);
    QVERIFY(!m_memory->read()->isFinished());
}

void tst_Rld2xxxMemory::whatTheOtherProgramWritesIsRead()
{
    bytes()[0] = 3;
    bytes()[66] = 4;
    QTRY_COMPARE(m_memory->read()->version(), 3U);
    QCOMPARE(int(m_memory->read()->state()), 4);
}

void tst_Rld2xxxMemory::finishingReachesTheOtherProgram()
{
    m_memory->finish(conversionstate::cancelled);
    QTRY_COMPARE(int(bytes()[64]), 1);
    QCOMPARE(int(bytes()[66]), 5);
}

void tst_Rld2xxxMemory::withoutMemoryThereIsNoRecord()
{
    Rld2xxxMemory none;
    QVERIFY(!none.read());
    none.finish(conversionstate::cancelled);
    QVERIFY(!none.read());
    QCOMPARE(none.key(), QString());
}

void tst_Rld2xxxMemory::memoryWhoseKeyIsTooLongIsRefused()
{
    QVERIFY(!m_memory->create(QString(1000, QLatin1Char('n')) + QStringLiteral(".rld")));
    QVERIFY(!m_memory->read());
}

void tst_Rld2xxxMemory::aHeldLockIsNotWaitedFor()
{
    QVERIFY(m_other->lock());
    bytes()[0] = 3;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 20; ++i)
        QCOMPARE(m_memory->read()->version(), 0U);
    QVERIFY(clock.elapsed() < inTime_ms);
    QVERIFY(isLockedOut());
    QVERIFY(m_other->unlock());
}

void tst_Rld2xxxMemory::aLockThatIsGivenBackIsHadAgain()
{
    QVERIFY(m_other->lock());
    QVERIFY(isLockedOut());
    bytes()[0] = 3;
    QVERIFY(m_other->unlock());
    QTRY_COMPARE(m_memory->read()->version(), 3U);
    QTRY_VERIFY(m_memory->read() && m_memory->lockedOut_ms() == 0);
}

// Each turn is longer than a read waits, so that every answer is late.
void tst_Rld2xxxMemory::aLockThatIsHeldByTurnsIsWaitedForAnewEachTime()
{
    for (int turn = 0; turn < 3; ++turn) {
        QElapsedTimer held;
        held.start();
        QVERIFY(m_other->lock());
        QVERIFY(isLockedOut());
        QVERIFY(m_memory->lockedOut_ms() <= held.elapsed());
        QVERIFY(m_other->unlock());
        QTRY_COMPARE(m_memory->lockedOut_ms(), 0); // without being asked again
    }
}

void tst_Rld2xxxMemory::finishingBehindAHeldLockHoldsAtOnceAndArrivesLater()
{
    QVERIFY(m_other->lock());
    m_memory->finish(conversionstate::finishedWithErrors);
    QVERIFY(m_memory->read()->isFinished());
    QCOMPARE(int(m_memory->read()->state()), 4);
    QCOMPARE(int(bytes()[64]), 0);
    QVERIFY(m_other->unlock());
    QTRY_COMPARE(int(bytes()[64]), 1);
}

void tst_Rld2xxxMemory::anEndedProgramsLockIsNotTaken()
{
    QVERIFY(m_other->lock());
    QVERIFY(isLockedOut());
    bytes()[0] = 3;
    m_memory->setUnshared();
    QCOMPARE(m_memory->read()->version(), 3U);
    m_memory->finish(conversionstate::cancelled);
    QCOMPARE(int(bytes()[64]), 1);
    QVERIFY(m_other->unlock());
}

void tst_Rld2xxxMemory::theRecordOutlivesTheMemory()
{
    bytes()[0] = 3;
    m_memory->setUnshared();
    m_memory->finish(conversionstate::finished);
    QCOMPARE(m_memory->key(), QString()); // it has gone
    QCOMPARE(m_memory->read()->version(), 3U);
    m_memory->finish(conversionstate::finishedWithErrors);
    QCOMPARE(int(m_memory->read()->state()), 4);
}

void tst_Rld2xxxMemory::memoryWhoseLockIsHeldCanBeLeft()
{
    QVERIFY(m_other->lock());
    QVERIFY(isLockedOut());
    QElapsedTimer clock;
    clock.start();
    m_memory.reset();
    QVERIFY(clock.elapsed() < inTime_ms);
    QVERIFY(m_other->unlock());
}

QTEST_GUILESS_MAIN(tst_Rld2xxxMemory)
#include "tst_rld2xxxmemory.moc"
