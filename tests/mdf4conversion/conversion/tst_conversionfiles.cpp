#include "MDF4Conversion/conversionfiles.h"
#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/outputnames.h"
#include "tests/support/lockfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <memory>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

constexpr int timeout_ms = 30000;
const QString holdOption = QStringLiteral("--hold");

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

void make(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("A file of the test can't be written.");
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ConversionJob givenNames(const QString &outputFile, const QString &temporaryDir)
{
    ConversionJob job;
    job.outputFile = outputFile;
    job.temporaryDir = temporaryDir;
    return job;
}

// A conversion into `folder` that has begun and isn't done.
std::unique_ptr<ConversionFiles> begunConversion(const QString &folder)
{
    const QDir dir(folder);
    auto files = std::make_unique<ConversionFiles>(
        givenNames(dir.filePath(text("other.mf4")), dir.filePath(text("tmp_9"))));
    if (!files->prepare())
        qFatal("%s", qPrintable(files->failure()));
    make(files->growingFile(), "half");
    make(dir.filePath(text("tmp_9/_1.bin")), "records");
    return files;
}

} // namespace

class tst_ConversionFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void theOutputGrowsUnderAnotherName();
    void publishGivesTheOutputItsName();
    void publishReplacesAnExistingOutput();
    void publishFailsWithoutAGrowingFile();
    void whatIsNotPublishedLeavesNothing();
    void anExistingTemporaryFolderIsUsedAndStays();

    void twoConversionsIntoOneOutputAreRefused();
    void anOutputThatAnotherComputerWritesIsRefusedWithItsName();
    void twoConversionsIntoOneFolderGetAlong();
    void leftoversOfADeadProcessAreCleared();
    void theEmptyFolderOfADeadProcessIsCleared();
    void theFilesOfALiveProcessStay();
    void foreignFilesStay();

    void conversionsWithFreeNamesGetOneEach();
    void aFileThatAppearsMeanwhileIsNotReplaced();
    void namesToTryFirstAreTakenWhenTheyAreFree();
    void namesToTryFirstGiveWayWhenTheyGotTaken();
    void freeNamesInAMissingFolderFail();

    void aMissingFolderFailsAndIsNamed();
    void aFolderInPlaceOfTheOutputFails();
    void aTemporaryFolderThatCantBeMadeFails();
    void aNameWithoutRoomForItsEndingsFailsWithItsCause();
    void aFolderWithoutWriteAccessFails();

private:
    QString path(const char *name) const { return m_folder->filePath(text(name)); }
    ConversionJob given(const char *outputFile, const char *temporaryDir) const
    {
        return givenNames(path(outputFile), path(temporaryDir));
    }
    // Of a process that begins, as all do, with the name of its input and tmp_1.
    ConversionJob freeNames() const
    {
        ConversionJob job;
        job.inputFile = text("a.rld");
        job.outputFolder = m_folder->path();
        job.names = std::make_shared<OutputNames>();
        return job;
    }
    QString left() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name)
            .join(QLatin1Char(' '));
    }
    // A process that has begun a conversion into the folder and waits.
    void startHolding(QProcess &process) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ConversionFiles::startHolding(QProcess &process) const
{
    process.start(QCoreApplication::applicationFilePath(), {holdOption, m_folder->path()});
    QVERIFY(process.waitForReadyRead(timeout_ms));
    QVERIFY(QFile::exists(path("other.mf4.part")));
}

void tst_ConversionFiles::theOutputGrowsUnderAnotherName()
{
    ConversionFiles files(given("a.mf4", "tmp_1"));
    QVERIFY(files.prepare());
    QCOMPARE(files.growingFile(), path("a.mf4.part"));
    QVERIFY(QDir(path("tmp_1")).exists());
    QVERIFY(!QFile::exists(path("a.mf4")));
}

void tst_ConversionFiles::publishGivesTheOutputItsName()
{
    {
        ConversionFiles files(given("a.mf4", "tmp_1"));
        QVERIFY(files.prepare());
        make(files.growingFile(), "whole");
        QVERIFY(files.publish());
    }
    QCOMPARE(contentOf(path("a.mf4")), QByteArray("whole"));
    QCOMPARE(left(), text("a.mf4"));
}

void tst_ConversionFiles::publishReplacesAnExistingOutput()
{
    make(path("a.mf4"), "old");
    ConversionFiles files(given("a.mf4", "tmp_1"));
    QVERIFY(files.prepare());
    QCOMPARE(contentOf(path("a.mf4")), QByteArray("old"));
    make(files.growingFile(), "new");
    QVERIFY(files.publish());
    QCOMPARE(contentOf(path("a.mf4")), QByteArray("new"));
}

void tst_ConversionFiles::publishFailsWithoutAGrowingFile()
{
    ConversionFiles files(given("a.mf4", "tmp_1"));
    QVERIFY(files.prepare());
    QVERIFY(!files.publish());
    QVERIFY(files.failure().contains(QDir::toNativeSeparators(path("a.mf4"))));
}

void tst_ConversionFiles::whatIsNotPublishedLeavesNothing()
{
    {
        ConversionFiles files(given("a.mf4", "tmp_1"));
        QVERIFY(files.prepare());
        make(files.growingFile(), "half");
    }
    QCOMPARE(left(), QString());
}

void tst_ConversionFiles::anExistingTemporaryFolderIsUsedAndStays()
{
    QVERIFY(QDir().mkdir(path("tmp_1")));
    {
        ConversionFiles files(given("a.mf4", "tmp_1"));
        QVERIFY(files.prepare());
    }
    QCOMPARE(left(), text("tmp_1"));
}

void tst_ConversionFiles::twoConversionsIntoOneOutputAreRefused()
{
    ConversionFiles first(given("a.mf4", "tmp_1"));
    QVERIFY(first.prepare());
    make(first.growingFile(), "half");
    {
        ConversionFiles second(given("a.mf4", "tmp_2"));
        QVERIFY(!second.prepare());
        QVERIFY(second.failure().contains(text("another conversion")));
    }
    QCOMPARE(contentOf(first.growingFile()), QByteArray("half"));
    QVERIFY(first.publish());
}

void tst_ConversionFiles::anOutputThatAnotherComputerWritesIsRefusedWithItsName()
{
    make(path("a.mf4.part.lock"), lockOfAnotherComputer());
    ConversionFiles files(given("a.mf4", "tmp_1"));
    QVERIFY(!files.prepare());
    QVERIFY(files.failure().contains(text("The computer bench-pc is writing this file.")));
    QVERIFY(files.failure().contains(QDir::toNativeSeparators(path("a.mf4.part.lock"))));
}

void tst_ConversionFiles::twoConversionsIntoOneFolderGetAlong()
{
    const auto first = begunConversion(m_folder->path());
    ConversionFiles second(given("a.mf4", "tmp_1"));
    QVERIFY(second.prepare());
    QCOMPARE(contentOf(path("other.mf4.part")), QByteArray("half"));
    QCOMPARE(contentOf(path("tmp_9/_1.bin")), QByteArray("records"));
}

// Killed when its lock was gone, but not yet the folder.
void tst_ConversionFiles::theEmptyFolderOfADeadProcessIsCleared()
{
    for (const char *name : {"tmp_3", "tmp_4", "tmp_mine", "tmp_"})
        QVERIFY(QDir().mkdir(path(name)));
    make(path("tmp_4/theirs"), "of somebody else");
    {
        ConversionFiles files(given("a.mf4", "tmp_1"));
        QVERIFY(files.prepare());
    }
    QCOMPARE(left(), text("tmp_ tmp_4 tmp_mine"));
}

void tst_ConversionFiles::leftoversOfADeadProcessAreCleared()
{
    QProcess process;
    startHolding(process);
    process.kill();
    QVERIFY(process.waitForFinished(timeout_ms));
    QVERIFY(QFile::exists(path("other.mf4.part")));
    {
        ConversionFiles files(given("a.mf4", "tmp_1"));
        QVERIFY(files.prepare());
        QVERIFY(!QFile::exists(path("other.mf4.part")));
        QVERIFY(!QDir(path("tmp_9")).exists());
    }
    QCOMPARE(left(), QString());
}

void tst_ConversionFiles::theFilesOfALiveProcessStay()
{
    QProcess process;
    startHolding(process);
    {
        ConversionFiles files(given("a.mf4", "tmp_1"));
        QVERIFY(files.prepare());
    }
    QCOMPARE(contentOf(path("other.mf4.part")), QByteArray("half"));
    QCOMPARE(contentOf(path("tmp_9/_1.bin")), QByteArray("records"));
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished(timeout_ms));
}

void tst_ConversionFiles::foreignFilesStay()
{
    make(path("notes.mf4.part"), "no lock beside it");
    make(path("log.bin"), "not in a temporary folder");
    QVERIFY(QDir().mkdir(path("tmp_pictures")));
    make(path("tmp_pictures/a.bin"), "no lock beside it");
    ConversionFiles files(given("a.mf4", "tmp_1"));
    QVERIFY(files.prepare());
    QVERIFY(QFile::exists(path("notes.mf4.part")));
    QVERIFY(QFile::exists(path("log.bin")));
    QVERIFY(QFile::exists(path("tmp_pictures/a.bin")));
}

void tst_ConversionFiles::conversionsWithFreeNamesGetOneEach()
{
    {
        ConversionFiles first(freeNames());
        QVERIFY(first.prepare());
        ConversionFiles second(freeNames());
        QVERIFY2(second.prepare(), qPrintable(second.failure()));
        QVERIFY(first.temporaryDir() != second.temporaryDir());
        make(first.growingFile(), "first");
        make(second.growingFile(), "second");
        QVERIFY(second.publish());
        QVERIFY(first.publish());
        QCOMPARE(first.outputFile(), path("a.mf4"));
        QCOMPARE(second.outputFile(), path("a_1.mf4"));
    }
    QCOMPARE(contentOf(path("a.mf4")), QByteArray("first"));
    QCOMPARE(contentOf(path("a_1.mf4")), QByteArray("second"));
    QCOMPARE(left(), text("a.mf4 a_1.mf4"));
}

void tst_ConversionFiles::aFileThatAppearsMeanwhileIsNotReplaced()
{
    {
        ConversionFiles files(freeNames());
        QVERIFY(files.prepare());
        make(files.growingFile(), "new");
        make(path("a.mf4"), "of somebody else");
        make(path("a_1.mf4"), "too");
        QVERIFY2(files.publish(), qPrintable(files.failure()));
        QCOMPARE(files.outputFile(), path("a_2.mf4"));
    }
    QCOMPARE(contentOf(path("a.mf4")), QByteArray("of somebody else"));
    QCOMPARE(contentOf(path("a_2.mf4")), QByteArray("new"));
    QCOMPARE(left(), text("a.mf4 a_1.mf4 a_2.mf4"));
}

void tst_ConversionFiles::namesToTryFirstAreTakenWhenTheyAreFree()
{
    ConversionJob job = freeNames();
    job.outputFile = path("chosen.mf4");
    job.temporaryDir = path("tmp_7");
    ConversionFiles files(job);
    QVERIFY(files.prepare());
    QCOMPARE(files.outputFile(), path("chosen.mf4"));
    QCOMPARE(files.temporaryDir(), path("tmp_7"));
}

void tst_ConversionFiles::namesToTryFirstGiveWayWhenTheyGotTaken()
{
    ConversionJob job = freeNames();
    job.outputFile = path("chosen.mf4");
    job.temporaryDir = path("tmp_7");
    make(path("chosen.mf4"), "of somebody else");
    QVERIFY(QDir().mkdir(path("tmp_7")));
    make(path("tmp_7/theirs"), "of somebody else");
    ConversionFiles files(job);
    QVERIFY(files.prepare());
    QCOMPARE(files.outputFile(), path("a.mf4"));
    QCOMPARE(files.temporaryDir(), path("tmp_1"));
}

void tst_ConversionFiles::freeNamesInAMissingFolderFail()
{
    ConversionJob job = freeNames();
    job.outputFolder = path("missing");
    ConversionFiles files(job);
    QVERIFY(!files.prepare());
    QVERIFY(files.failure().contains(QDir::toNativeSeparators(path("missing"))));
    QCOMPARE(left(), QString());
}

void tst_ConversionFiles::aMissingFolderFailsAndIsNamed()
{
    ConversionFiles files(given("missing/a.mf4", "missing/tmp_1"));
    QVERIFY(!files.prepare());
    QVERIFY(files.failure().contains(QDir::toNativeSeparators(path("missing"))));
    QCOMPARE(left(), QString());
}

void tst_ConversionFiles::aFolderInPlaceOfTheOutputFails()
{
    QVERIFY(QDir().mkdir(path("a.mf4")));
    ConversionFiles files(given("a.mf4", "tmp_1"));
    QVERIFY(!files.prepare());
    QVERIFY(files.failure().contains(QDir::toNativeSeparators(path("a.mf4"))));
}

void tst_ConversionFiles::aTemporaryFolderThatCantBeMadeFails()
{
    make(path("tmp_1"), "a file has its name");
    {
        ConversionFiles files(given("a.mf4", "tmp_1"));
        QVERIFY(!files.prepare());
        const QString start = QStringLiteral("The temporary folder %1 cannot be made: ")
                                  .arg(QDir::toNativeSeparators(path("tmp_1")));
        QVERIFY(files.failure().startsWith(start));
        QVERIFY(files.failure().size() > start.size());
    }
    QCOMPARE(left(), text("tmp_1"));
}

void tst_ConversionFiles::aNameWithoutRoomForItsEndingsFailsWithItsCause()
{
    const QString name = QString(250, QLatin1Char('a'));
    ConversionFiles files(givenNames(m_folder->filePath(name), path("tmp_1")));
    QVERIFY(!files.prepare());
    const QString start = QDir::toNativeSeparators(m_folder->filePath(name))
                          + QStringLiteral(": cannot be written: ");
    QVERIFY(files.failure().startsWith(start));
    QVERIFY(files.failure().size() > start.size());
    QCOMPARE(left(), QString());
}

void tst_ConversionFiles::aFolderWithoutWriteAccessFails()
{
#ifdef Q_OS_UNIX
    if (geteuid() == 0)
        QSKIP("root may write everywhere");
    QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner);
    ConversionFiles files(given("a.mf4", "tmp_1"));
    QVERIFY(!files.prepare());
    QVERIFY(files.failure().contains(path("a.mf4")));
    QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
#else
    QSKIP("folders can't be closed");
#endif
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == holdOption) {
        const auto running = begunConversion(arguments[2]);
        std::puts("ready");
        std::fflush(stdout);
        std::getchar(); // until it is killed or told to end
        return 0;
    }
    tst_ConversionFiles test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_conversionfiles.moc"
