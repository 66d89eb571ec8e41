#include "MDF4Conversion/lib_mdf4/mdf4/mdirectfile.h"
#include "tests/support/memorydevice.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

namespace {

constexpr const char *anyName = "file";

QByteArray text(const MemoryFile &file)
{
    return {reinterpret_cast<const char *>(file.bytes.data()), static_cast<int>(file.bytes.size())};
}

std::filesystem::path pathIn(const QTemporaryDir &folder, const char *name)
{
    return std::filesystem::path(folder.path().toStdString()) / name;
}

QByteArray content(const std::filesystem::path &path)
{
    QFile file(QString::fromStdString(path.string()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_mDirectFile : public QObject
{
    Q_OBJECT

private slots:
    void allocateRoundsTheEndUpToEight();
    void spaceThatIsExtendedExistsWhenTheFileIsClosed();
    void spaceThatIsNotExtendedDoesNot();
    void writeBehindTheEndRaisesTheLogicalEnd();
    void bytesThatNoWriteReachedAreZero();
    void smallWritesWaitInMemory();
    void patchOfWaitingBytesDoesNotReachTheDevice();
    void patchOfWrittenBytesGoesToTheDeviceAlone();
    void patchAcrossWrittenAndWaitingBytesChangesBoth();
    void writeLongerThanTheMemoryGoesThrough();
    void writeFarBehindTheEndLeavesZeros();
    void readSeesWhatWaitsInMemory();
    void readBehindTheEndFails();
    void truncateMovesTheLogicalEnd();
    void firstFailureSticks();
    void writeWithoutOpenFails();
    void failureOfTheDeviceToSyncFailsClose();
    void failureOfTheDeviceToCloseFailsClose();
    void emptyPathIsRefused();
    void folderThatDoesNotExistIsReported();
    void existingFileLosesItsContent();
    void abortDeletesTheFile();
    void abortAfterCloseDeletesTheFile();
    void abortLeavesADeviceAlone();
    void fullDiskIsReportedAtClose();
    void offsetsBeyondFourGigabytesAreKept();
};

void tst_mDirectFile::allocateRoundsTheEndUpToEight()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QCOMPARE(file.allocate(5, false), std::uint64_t{0});
    QCOMPARE(file.allocate(8, false), std::uint64_t{8});
    QCOMPARE(file.allocate(1, false), std::uint64_t{16});
    QCOMPARE(file.logicalEnd(), std::uint64_t{17});
}

void tst_mDirectFile::spaceThatIsExtendedExistsWhenTheFileIsClosed()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 2, "ab"));
    QCOMPARE(file.allocate(16, true), std::uint64_t{8});
    QVERIFY(file.close());
    QCOMPARE(memory.bytes.size(), std::size_t{24});
}

void tst_mDirectFile::spaceThatIsNotExtendedDoesNot()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 2, "ab"));
    QCOMPARE(file.allocate(16, false), std::uint64_t{8});
    QVERIFY(file.close());
    QCOMPARE(memory.bytes.size(), std::size_t{2});
}

void tst_mDirectFile::writeBehindTheEndRaisesTheLogicalEnd()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(10, 3, "abc"));
    QCOMPARE(file.logicalEnd(), std::uint64_t{13});
    QVERIFY(file.write(2, 3, "abc"));
    QCOMPARE(file.logicalEnd(), std::uint64_t{13});
}

void tst_mDirectFile::bytesThatNoWriteReachedAreZero()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 1, "a"));
    QVERIFY(file.write(4, 1, "b"));
    QVERIFY(file.close());
    QCOMPARE(text(memory), QByteArray("a\0\0\0b", 5));
}

void tst_mDirectFile::smallWritesWaitInMemory()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    for (unsigned i = 0; i < 1000; ++i)
        QVERIFY(file.write(i * 8, 8, "01234567"));
    QCOMPARE(memory.writes, 0U);
    QVERIFY(file.close());
    QCOMPARE(memory.writes, 1U);
    QCOMPARE(text(memory), QByteArray("01234567").repeated(1000));
}

void tst_mDirectFile::patchOfWaitingBytesDoesNotReachTheDevice()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 6, "abcdef"));
    QVERIFY(file.write(2, 2, "XY"));
    QCOMPARE(memory.writes, 0U);
    QVERIFY(file.close());
    QCOMPARE(text(memory), QByteArray("abXYef"));
}

void tst_mDirectFile::patchOfWrittenBytesGoesToTheDeviceAlone()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 6, "abcdef"));
    QVERIFY(file.flush());
    QVERIFY(file.write(6, 3, "ghi"));
    QVERIFY(file.write(2, 2, "XY"));
    QCOMPARE(text(memory), QByteArray("abXYef"));
    QVERIFY(file.close());
    QCOMPARE(text(memory), QByteArray("abXYefghi"));
}

void tst_mDirectFile::patchAcrossWrittenAndWaitingBytesChangesBoth()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 4, "abcd"));
    QVERIFY(file.flush());
    QVERIFY(file.write(4, 4, "efgh"));
    QVERIFY(file.write(2, 4, "WXYZ"));
    QVERIFY(file.close());
    QCOMPARE(text(memory), QByteArray("abWXYZgh"));
}

void tst_mDirectFile::writeLongerThanTheMemoryGoesThrough()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    const QByteArray big(1000000, 'x');
    QVERIFY(file.write(0, 3, "abc"));
    QVERIFY(file.write(1, static_cast<std::size_t>(big.size()), big.constData()));
    QVERIFY(file.write(1000001, 1, "z"));
    QVERIFY(file.close());
    QCOMPARE(text(memory), "a" + big + "z");
}

void tst_mDirectFile::writeFarBehindTheEndLeavesZeros()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 1, "a"));
    QVERIFY(file.write(200000, 1, "b"));
    QVERIFY(file.write(100000, 1, "c"));
    QVERIFY(file.close());
    QCOMPARE(text(memory), "a" + QByteArray(99999, '\0') + "c" + QByteArray(99999, '\0') + "b");
}

void tst_mDirectFile::readSeesWhatWaitsInMemory()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 6, "abcdef"));
    char read[3] = {};
    QVERIFY(file.read(2, 3, read));
    QCOMPARE(QByteArray(read, 3), QByteArray("cde"));
}

void tst_mDirectFile::readBehindTheEndFails()
{
    const QTemporaryDir folder;
    mDirectFile file;
    QVERIFY(file.open(pathIn(folder, "f")));
    QVERIFY(file.write(0, 2, "ab"));
    char read[3] = {};
    QVERIFY(!file.read(0, 3, read));
    QVERIFY(file.failed());
}

void tst_mDirectFile::truncateMovesTheLogicalEnd()
{
    MemoryFile memory;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 6, "abcdef"));
    QVERIFY(file.truncate(3));
    QCOMPARE(file.logicalEnd(), std::uint64_t{3});
    QVERIFY(file.close());
    QCOMPARE(text(memory), QByteArray("abc"));
}

void tst_mDirectFile::firstFailureSticks()
{
    MemoryFile memory;
    memory.limit = 4;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(file.write(0, 6, "abcdef"));
    QVERIFY(!file.flush());
    memory.limit = 100;
    QVERIFY(!file.write(0, 1, "a"));
    QVERIFY(!file.fail("something else"));
    QVERIFY(!file.close());
    QVERIFY(file.failed());
    QCOMPARE(file.lastError(), std::string("cannot write the file: device full"));
}

void tst_mDirectFile::writeWithoutOpenFails()
{
    mDirectFile file;
    QVERIFY(!file.write(0, 1, "a"));
    QCOMPARE(file.lastError(), std::string("the file is not open"));
}

void tst_mDirectFile::failureOfTheDeviceToSyncFailsClose()
{
    MemoryFile memory;
    memory.failSync = true;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(!file.close());
    QCOMPARE(file.lastError(), std::string("cannot write the file: device full"));
}

void tst_mDirectFile::failureOfTheDeviceToCloseFailsClose()
{
    MemoryFile memory;
    memory.failClose = true;
    mDirectFile file(std::make_unique<MemoryDevice>(memory));
    QVERIFY(file.open(anyName));
    QVERIFY(!file.close());
    QCOMPARE(file.lastError(), std::string("cannot close the file: device full"));
}

void tst_mDirectFile::emptyPathIsRefused()
{
    mDirectFile file;
    QVERIFY(!file.open({}));
    QCOMPARE(file.lastError(), std::string("no file name given"));
}

void tst_mDirectFile::folderThatDoesNotExistIsReported()
{
    const QTemporaryDir folder;
    mDirectFile file;
    QVERIFY(!file.open(pathIn(folder, "none") / "f"));
    QVERIFY(file.lastError().find("cannot create the file: ") == 0);
}

void tst_mDirectFile::existingFileLosesItsContent()
{
    const QTemporaryDir folder;
    const auto path = pathIn(folder, "f");
    for (const char *written : {"a longer one", "short"}) {
        mDirectFile file;
        QVERIFY(file.open(path));
        QVERIFY(file.write(0, strlen(written), written));
        QVERIFY(file.close());
    }
    QCOMPARE(content(path), QByteArray("short"));
}

void tst_mDirectFile::abortDeletesTheFile()
{
    const QTemporaryDir folder;
    const auto path = pathIn(folder, "f");
    mDirectFile file;
    QVERIFY(file.open(path));
    QVERIFY(std::filesystem::exists(path));
    file.abort();
    QVERIFY(!std::filesystem::exists(path));
    QVERIFY(!file.isOpen());
}

void tst_mDirectFile::abortAfterCloseDeletesTheFile()
{
    const QTemporaryDir folder;
    const auto path = pathIn(folder, "f");
    mDirectFile file;
    QVERIFY(file.open(path));
    QVERIFY(file.close());
    file.abort();
    QVERIFY(!std::filesystem::exists(path));
}

void tst_mDirectFile::abortLeavesADeviceAlone()
{
    if (!std::filesystem::exists("/dev/null"))
        QSKIP("no such device here");
    mDirectFile file;
    QVERIFY(file.open("/dev/null"));
    file.abort();
    QVERIFY(std::filesystem::exists("/dev/null"));
}

void tst_mDirectFile::fullDiskIsReportedAtClose()
{
    if (!std::filesystem::exists("/dev/full"))
        QSKIP("no such device here");
    mDirectFile file;
    QVERIFY(file.open("/dev/full"));
    QVERIFY(file.write(0, 1, "a"));
    QVERIFY(!file.close());
    QCOMPARE(file.lastError(), "cannot write the file: " + std::string(strerror(ENOSPC)));
}

void tst_mDirectFile::offsetsBeyondFourGigabytesAreKept()
{
#ifdef _WIN32
    QSKIP("a hole takes its space on the disk here");
#endif
    constexpr std::uint64_t fiveGigabytes = std::uint64_t{5} << 30; // a hole on the disk
    const QTemporaryDir folder;
    const auto path = pathIn(folder, "f");
    mDirectFile file;
    QVERIFY(file.open(path));
    QVERIFY(file.write(fiveGigabytes, 3, "abc"));
    QCOMPARE(file.allocate(1, false), fiveGigabytes + 8);
    char read[3] = {};
    QVERIFY(file.read(fiveGigabytes, 3, read));
    QCOMPARE(QByteArray(read, 3), QByteArray("abc"));
    QVERIFY(file.close());
    QCOMPARE(std::filesystem::file_size(path), fiveGigabytes + 3);
}

QTEST_GUILESS_MAIN(tst_mDirectFile)
#include "tst_mdirectfile.moc"
