#include "MDF4Conversion/programlock.h"

#include <QFile>
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
    void aLockInAMissingFolderTellsItsError();
};

namespace {

struct Place
{
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a.lock"));
};

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s", qPrintable(path));
}

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
        write(place.path, content);
        QLockFile lock(place.path);
        QVERIFY2(takeProgramLock(lock), content.constData());
    }
}

void tst_ProgramLock::theLockOfAnEndedProgramGivesWay()
{
    const Place place;
    {
        QLockFile holder(place.path);
        QVERIFY(takeProgramLock(holder));
        QVERIFY(QFile::copy(place.path, place.path + QStringLiteral(".copy")));
    }
    QFile copy(place.path + QStringLiteral(".copy"));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QList<QByteArray> lines = copy.readAll().split('\n');
    lines[0] = "2147483000"; // beyond what systems number their processes
    write(place.path, lines.join('\n'));
    QLockFile lock(place.path);
    QVERIFY(takeProgramLock(lock));
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
