#include "MDF4Conversion/growingfile.h"
#include "tests/support/filecontents.h"
#include "tests/support/lockfiles.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class tst_GrowingFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void cleanup() { m_lock.reset(); }

    void partsAndLocksAreReservedNames();
    void aLockKeepsItsName();
    void aTakenLockIsRefusedToOthers();
    void theLockOfAnEndedProgramGivesWay();

    void theLockOfAnotherComputerStaysForADay();
    void aLockOfAnotherComputerThatIsSilentForADayGivesWay();
    void aFileThatStillGrowsKeepsTheLockOfAnotherComputer();
    void aFolderWhoseFileStillGrowsKeepsTheLockOfAnotherComputer();
    void theOtherComputerIsNamed();
    void aHolderOnThisComputerIsNotNamed();
    void theNameOfTheOtherComputerIsCut();
    void whatIsInTheWayOfTheLockIsNamed();
    void aFolderWithoutALockGetsNone();

    void leftoversOfAnEndedProgramAreCleared();
    void aLeftFolderIsClearedWithAllThatIsInIt();
    void aLockThatWasLeftEmptyIsCleared();
    void aLockThatWasLeftEmptyJustNowIsCleared();
    void anEmptyLockOfAnotherClockStays();
    void aLeftFolderIsRecognisedWithoutItsLock();
    void aLockThatWasLeftWhileItWasTakenOverIsCleared();
    void locksWithoutANameKeepNothing();
    void whatIsGrowingStays();
    void aGrowingFolderStays();
    void aFolderOfOtherFilesStays();
    void aFolderWithAnotherNumberStays();
    void aFolderOfFoldersStays();
    void aFolderWithALinkStays();
    void anEmptyFolderGoesWithoutItsLock();
    void aFolderWithoutALockIsLeftUnmarked();
    void aFolderBesideAFileThatIsNoLockStays();
    void whatHasNoLockStays();
    void aFileThatIsNoLockStaysWithItsPart();
    void aLinkIsClearedAndNotWhatItLeadsTo();
    void aLinkToALockKeepsNothing();
    void aMissingFolderIsNoTrouble();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    void make(const char *name, const QByteArray &bytes) const { writeFile(path(name), bytes); }
    void age(const char *name, qint64 by_ms) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadWrite)
            || !file.setFileTime(QDateTime::currentDateTimeUtc().addMSecs(-by_ms),
                                 QFileDevice::FileModificationTime))
            qFatal("%s", name);
    }
    QLockFile::LockError take(const char *name)
    {
        m_lock.reset();
        return growingfile::take(m_lock, path(name));
    }
    void clear() const { growingfile::clearLeftovers(QDir(m_folder->path())); }
    QString left() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDir::Name)
            .join(QLatin1Char(' '));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QLockFile> m_lock;
};

namespace {

constexpr qint64 overADay_ms = 25LL * 3600 * 1000;
constexpr qint64 underADay_ms = 23LL * 3600 * 1000;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

void tst_GrowingFile::partsAndLocksAreReservedNames()
{
    QCOMPARE(growingfile::partOf(text("a.rld")), text("a.rld.part"));
    QCOMPARE(growingfile::lockOf(text("a.rld")), text("a.rld.part.lock"));
    QVERIFY(growingfile::isReserved(text("a.rld.part")));
    QVERIFY(growingfile::isReserved(text("a.rld.PART.lock")));
    QVERIFY(growingfile::isReserved(text("a.rld.part.lock.rmlock")));
    QVERIFY(growingfile::isReserved(text("a.part.lock.rmlock.RMLOCK")));
    QVERIFY(growingfile::isReserved(text("a.part.lock.rld.rmlock")));
    QVERIFY(!growingfile::isReserved(text("a.part.rld")));
    QVERIFY(!growingfile::isReserved(text("a.rmlock")));
}

void tst_GrowingFile::aLockKeepsItsName()
{
    QCOMPARE(growingfile::nameKeptBy(text("a.rld.part.lock")), text("a.rld"));
    QCOMPARE(growingfile::nameKeptBy(text("a.rld.PART.Lock")), text("a.rld"));
    QCOMPARE(growingfile::nameKeptBy(text("a.rld.part")), QString());
    QCOMPARE(growingfile::nameKeptBy(text("a.rld.part.lock.rmlock")), QString());
}

void tst_GrowingFile::aTakenLockIsRefusedToOthers()
{
    QCOMPARE(take("a.rld"), QLockFile::NoError);
    std::unique_ptr<QLockFile> other;
    QCOMPARE(growingfile::take(other, path("a.rld")), QLockFile::LockFailedError);
    QVERIFY(!other);
}

void tst_GrowingFile::theLockOfAnEndedProgramGivesWay()
{
    make("a.rld.part.lock", lockOfEndedProgram());
    QCOMPARE(take("a.rld"), QLockFile::NoError);
}

void tst_GrowingFile::theLockOfAnotherComputerStaysForADay()
{
    make("a.rld.part.lock", lockOfAnotherComputer());
    QCOMPARE(take("a.rld"), QLockFile::LockFailedError);
    age("a.rld.part.lock", underADay_ms);
    QCOMPARE(take("a.rld"), QLockFile::LockFailedError);
}

void tst_GrowingFile::aLockOfAnotherComputerThatIsSilentForADayGivesWay()
{
    make("a.rld.part", "half");
    make("a.rld.part.lock", lockOfAnotherComputer());
    age("a.rld.part", overADay_ms);
    age("a.rld.part.lock", overADay_ms);
    QCOMPARE(take("a.rld"), QLockFile::NoError);
}

void tst_GrowingFile::aFileThatStillGrowsKeepsTheLockOfAnotherComputer()
{
    make("a.rld.part", "half");
    make("a.rld.part.lock", lockOfAnotherComputer());
    age("a.rld.part", underADay_ms);
    age("a.rld.part.lock", overADay_ms);
    QCOMPARE(take("a.rld"), QLockFile::LockFailedError);
}

void tst_GrowingFile::aFolderWhoseFileStillGrowsKeepsTheLockOfAnotherComputer()
{
    QVERIFY(QDir().mkdir(path("a.blf.part")));
    make("a.blf.part/a.blf", "half");
    make("a.blf.part.lock", lockOfAnotherComputer());
    age("a.blf.part.lock", overADay_ms);
    QCOMPARE(take("a.blf"), QLockFile::LockFailedError);
}

void tst_GrowingFile::theOtherComputerIsNamed()
{
    make("a.rld.part.lock", lockOfAnotherComputer());
    QCOMPARE(growingfile::refusalText(path("a.rld")),
             QStringLiteral("The computer bench-pc is writing this file. If nothing runs there any "
                            "more, delete %1.")
                 .arg(QDir::toNativeSeparators(path("a.rld.part.lock"))));
}

void tst_GrowingFile::aHolderOnThisComputerIsNotNamed()
{
    QCOMPARE(growingfile::refusalText(path("a.rld")), QString());
    QCOMPARE(take("a.rld"), QLockFile::NoError);
    QCOMPARE(growingfile::refusalText(path("a.rld")), QString());
}

void tst_GrowingFile::theNameOfTheOtherComputerIsCut()
{
    make("a.rld.part.lock", "12\nzds\n" + QByteArray(100'000, 'x') + '\n');
    QVERIFY(growingfile::refusalText(path("a.rld")).size() < 1000);
}

void tst_GrowingFile::whatIsInTheWayOfTheLockIsNamed()
{
    QVERIFY(QDir().mkdir(path("a.rld.part.lock")));
    QCOMPARE(take("a.rld"), QLockFile::LockFailedError);
    QCOMPARE(growingfile::refusalText(path("a.rld")),
             QStringLiteral("Something else is called %1, which this file needs while it grows. "
                            "Rename or delete it.")
                 .arg(QDir::toNativeSeparators(path("a.rld.part.lock"))));
}

// Ended meanwhile, this program would leave a lock that lets the next one remove the folder.
void tst_GrowingFile::aFolderWithoutALockGetsNone()
{
    QVERIFY(QDir().mkdir(path("a.mf4.part")));
    QCOMPARE(take("a.mf4"), QLockFile::LockFailedError);
    QCOMPARE(left(), text("a.mf4.part"));
    QVERIFY(growingfile::refusalText(path("a.mf4"))
                .contains(QDir::toNativeSeparators(path("a.mf4.part")) + QLatin1Char(',')));
}

void tst_GrowingFile::leftoversOfAnEndedProgramAreCleared()
{
    make("a.rld.part", "half");
    make("a.rld.part.lock", lockOfEndedProgram());
    make("b.mf4.part.lock", lockOfEndedProgram());
    make("a.rld", "of yesterday");
    clear();
    QCOMPARE(left(), text("a.rld"));
}

void tst_GrowingFile::aLeftFolderIsClearedWithAllThatIsInIt()
{
    QVERIFY(QDir().mkdir(path("a.blf.part")));
    make("a.blf.part/a.blf", "half");
    make("a.blf.part/.index", "of it");
    make("a.blf.part.lock", lockOfEndedProgram());
    clear();
    QCOMPARE(left(), QString());
}

void tst_GrowingFile::aLockThatWasLeftEmptyIsCleared()
{
    make("a.rld.part", "half");
    make("a.rld.part.lock", {});
    age("a.rld.part.lock", 2000);
    clear();
    QCOMPARE(left(), QString());
}

void tst_GrowingFile::aLockThatWasLeftEmptyJustNowIsCleared()
{
    make("a.rld.part", "half");
    make("a.rld.part.lock", {});
    clear();
    QCOMPARE(left(), QString());
}

// Nothing tells whether its program was ended.
void tst_GrowingFile::anEmptyLockOfAnotherClockStays()
{
    make("a.rld.part.lock", {});
    age("a.rld.part.lock", -60'000);
    clear();
    QCOMPARE(left(), text("a.rld.part.lock"));
}

void tst_GrowingFile::whatIsGrowingStays()
{
    QCOMPARE(take("a.rld"), QLockFile::NoError);
    make("a.rld.part", "half");
    clear();
    QCOMPARE(left(), text("a.rld.part a.rld.part.lock"));
}

void tst_GrowingFile::aLeftFolderIsRecognisedWithoutItsLock()
{
    for (const char *folder : {"a.blf.part", "a.blf.2.part"})
        QVERIFY(QDir().mkdir(path(folder)));
    make("a.blf.part/a.blf", "half");
    make("a.blf.2.part/a.blf", "half");
    clear();
    QCOMPARE(left(), QString());
}

void tst_GrowingFile::aLockThatWasLeftWhileItWasTakenOverIsCleared()
{
    make("a.rld.part", "half");
    make("a.rld.part.lock", lockOfEndedProgram());
    make("a.rld.part.lock.rmlock", lockOfEndedProgram());
    make("a.rld.part.lock.rmlock.rmlock", {});
    clear();
    QCOMPARE(left(), QString());
}

// Their name would be the folder itself, and what they keep would stand beside it.
void tst_GrowingFile::locksWithoutANameKeepNothing()
{
    QVERIFY(QDir().mkdir(path("out")));
    QVERIFY(QDir().mkdir(path("out.part")));
    QVERIFY(QDir().mkdir(path("out/.part")));
    make("out.part/drive.rld", "mine");
    make("out/.part.lock", lockOfEndedProgram());
    make("out/.part.lock.rmlock", lockOfEndedProgram());
    growingfile::clearLeftovers(QDir(path("out")));
    QCOMPARE(left(), text("out out.part"));
    QCOMPARE(contentOf(path("out.part/drive.rld")), QByteArray("mine"));
    QVERIFY(QDir(path("out/.part")).exists());
}

void tst_GrowingFile::aGrowingFolderStays()
{
    QCOMPARE(take("a.blf"), QLockFile::NoError);
    QVERIFY(QDir().mkdir(path("a.blf.part")));
    make("a.blf.part/a.blf", "half");
    clear();
    QCOMPARE(left(), text("a.blf.part a.blf.part.lock"));
    QCOMPARE(contentOf(path("a.blf.part/a.blf")), QByteArray("half"));
}

void tst_GrowingFile::aFolderOfOtherFilesStays()
{
    QVERIFY(QDir().mkdir(path("a.blf.part")));
    make("a.blf.part/b.blf", "mine");
    QVERIFY(QDir().mkdir(path("c.blf.part")));
    make("c.blf.part/c.blf", "mine");
    make("c.blf.part/notes", "mine");
    clear();
    QCOMPARE(left(), text("a.blf.part c.blf.part"));
}

void tst_GrowingFile::aFolderWithAnotherNumberStays()
{
    for (const char *folder :
         {"a.1001.part", "a.blf.02.part", "a.blf.1.part", "a.blf.x.part", "b.part"})
        QVERIFY(QDir().mkdir(path(folder)));
    for (const char *file : {"a.1001.part/a", "a.blf.02.part/a.blf", "a.blf.1.part/a.blf",
                             "a.blf.x.part/a.blf", "b.part/b.2"})
        make(file, "mine");
    clear();
    QCOMPARE(left(), text("a.1001.part a.blf.02.part a.blf.1.part a.blf.x.part b.part"));
    QCOMPARE(contentOf(path("b.part/b.2")), QByteArray("mine"));
}

void tst_GrowingFile::aFolderOfFoldersStays()
{
    QVERIFY(QDir().mkpath(path("project.part/project")));
    make("project.part/project/plan", "mine");
    clear();
    QCOMPARE(left(), text("project.part"));
    QCOMPARE(contentOf(path("project.part/project/plan")), QByteArray("mine"));
}

void tst_GrowingFile::aFolderWithALinkStays()
{
    make("drive.blf", "mine");
    QVERIFY(QDir().mkdir(path("a.blf.part")));
    if (!QFile::link(path("drive.blf"), path("a.blf.part/a.blf")))
        QSKIP("This system makes no link of that name.");
    QVERIFY(QDir().mkdir(path("b.blf.part")));
    make("b.blf.part/b.blf", "mine");
    QVERIFY(QFile::link(path("nowhere"), path("b.blf.part/dead")));
    clear();
    QCOMPARE(left(), text("a.blf.part b.blf.part drive.blf"));
    QVERIFY(QFileInfo(path("a.blf.part/a.blf")).isSymLink());
    QCOMPARE(contentOf(path("b.blf.part/b.blf")), QByteArray("mine"));
}

// As two kills leave it: before the first byte, and as the lock was taken over.
void tst_GrowingFile::anEmptyFolderGoesWithoutItsLock()
{
    QVERIFY(QDir().mkdir(path("a.blf.part")));
    clear();
    QCOMPARE(left(), QString());
}

// A lock beside it would let the next program remove all that somebody puts there.
void tst_GrowingFile::aFolderWithoutALockIsLeftUnmarked()
{
#ifdef Q_OS_WIN
    QSKIP("The rights of a folder don't keep its files here.");
#else
    QVERIFY(QDir().mkdir(path("a.blf.part")));
    make("a.blf.part/a.blf", "kept");
    QFile::setPermissions(path("a.blf.part"), QFile::ReadOwner | QFile::ExeOwner);
    const bool isKept = !QFile::remove(path("a.blf.part/a.blf"));
    if (isKept)
        clear();
    QFile::setPermissions(path("a.blf.part"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (!isKept)
        QSKIP("root may remove everything");
    QCOMPARE(left(), text("a.blf.part"));
#endif
}

void tst_GrowingFile::aFolderBesideAFileThatIsNoLockStays()
{
    QVERIFY(QDir().mkdir(path("a.blf.part")));
    make("a.blf.part/a.blf", "mine");
    make("a.blf.part.lock", "notes");
    clear();
    QCOMPARE(left(), text("a.blf.part a.blf.part.lock"));
    QCOMPARE(contentOf(path("a.blf.part/a.blf")), QByteArray("mine"));
}

void tst_GrowingFile::whatHasNoLockStays()
{
    make("a.rld.part", "of another program");
    make("b.part.lock.txt", "notes");
    clear();
    QCOMPARE(left(), text("a.rld.part b.part.lock.txt"));
}

void tst_GrowingFile::aFileThatIsNoLockStaysWithItsPart()
{
    make("a.rld.part", "of another program");
    make("a.rld.part.lock", "its own notes");
    age("a.rld.part.lock", 2000);
    clear();
    QCOMPARE(left(), text("a.rld.part a.rld.part.lock"));
}

void tst_GrowingFile::aLinkIsClearedAndNotWhatItLeadsTo()
{
#ifdef Q_OS_WIN
    QSKIP("A link is a file of its own here.");
#else
    QVERIFY(QDir().mkdir(path("mine")));
    make("mine/drive.rld", "mine");
    QVERIFY(QFile::link(path("mine"), path("a.blf.part")));
    make("a.blf.part.lock", lockOfEndedProgram());
    clear();
    QCOMPARE(left(), text("mine"));
    QCOMPARE(contentOf(path("mine/drive.rld")), QByteArray("mine"));
#endif
}

void tst_GrowingFile::aLinkToALockKeepsNothing()
{
#ifdef Q_OS_WIN
    QSKIP("A link is a file of its own here.");
#else
    make("old", lockOfEndedProgram());
    QVERIFY(QFile::link(path("old"), path("a.rld.part.lock")));
    make("a.rld.part", "mine");
    clear();
    QCOMPARE(left(), text("a.rld.part a.rld.part.lock old"));
#endif
}

void tst_GrowingFile::aMissingFolderIsNoTrouble()
{
    growingfile::clearLeftovers(QDir(path("missing")));
    QCOMPARE(left(), QString());
}

QTEST_GUILESS_MAIN(tst_GrowingFile)
#include "tst_growingfile.moc"
