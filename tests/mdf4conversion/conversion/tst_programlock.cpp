#include "MDF4Conversion/programlock.h"
#include "tests/support/filecontents.h"
#include "tests/support/lockfiles.h"

#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>

class tst_ProgramLock : public QObject
{
    Q_OBJECT

private slots:
    void aFreeLockIsTaken();
    void aHeldLockIsRefused();
    void aLockWithoutOwnerGivesWay();
    void theLockOfAnEndedProgramGivesWay();
    void theLockOfAnotherComputerDoesNotGiveWay();
    void aLockInAMissingFolderTellsItsError();
};

namespace {

struct Place
{
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a.lock"));
};

} // namespace

void tst_ProgramLock::aFreeLockIsTaken()
{
    const Place place;
    QLockFile lock(place.path);
    QVERIFY(takeProgramLock(lock));
    QVERIFY(lock.isLocked());
}

void tst_ProgramLock::aHeldLockIsRefused()
{
    const Place place;
    QLockFile holder(place.path);
    QVERIFY(takeProgramLock(holder));
    QLockFile lock(place.path);
    QVERIFY(!takeProgramLock(lock));
    QCOMPARE(lock.error(), QLockFile::LockFailedError);
    holder.unlock();
    QVERIFY(takeProgramLock(lock));
}

void tst_ProgramLock::aLockWithoutOwnerGivesWay()
{
    const Place place;
    for (const QByteArray &content : {QByteArray(), QByteArray("nonsense"), QByteArray("12")}) {
        writeFile(place.path, content);
        QLockFile lock(place.path);
        QVERIFY2(takeProgramLock(lock), content.constData());
    }
}

void tst_ProgramLock::theLockOfAnEndedProgramGivesWay()
{
    const Place place;
    writeFile(place.path, lockOfEndedProgram());
    QLockFile lock(place.path);
    QVERIFY(takeProgramLock(lock));
}

void tst_ProgramLock::theLockOfAnotherComputerDoesNotGiveWay()
{
    const Place place;
    writeFile(place.path, lockOfAnotherComputer());
    QLockFile lock(place.path);
    QVERIFY(!takeProgramLock(lock));
    const auto holder = holderOf(lock);
    QVERIFY(holder);
    QCOMPARE(holder->computer, QStringLiteral("bench-pc"));
    QVERIFY(holder->isOnAnotherComputer());
}

void tst_ProgramLock::aLockInAMissingFolderTellsItsError()
{
    const Place place;
    QLockFile lock(place.path + QStringLiteral("/b/c.lock"));
    QVERIFY(!takeProgramLock(lock));
    QVERIFY(lock.error() != QLockFile::NoError);
    QVERIFY(lock.error() != QLockFile::LockFailedError);
}

QTEST_GUILESS_MAIN(tst_ProgramLock)
#include "tst_programlock.moc"
