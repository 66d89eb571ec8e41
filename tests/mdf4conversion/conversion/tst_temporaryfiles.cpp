#include "MDF4Conversion/channelgrouplist.h"
#include "MDF4Conversion/temporaryfiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <vector>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_TemporaryFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void whatWasAppendedStandsInTheFile();
    void noFileIsMadeWithoutBytes();
    void theFileIsCalledByItsBaseNameAndEndsInBin();
    void theFileIsDeletedWithItsObject();
    void clearGoesBackToAnEmptyFile();
    void moreThanABufferKeepsItsOrder();
    void aPieceLargerThanTheBufferIsTaken();
    void moreFilesThanHandlesKeepTheirBytes();
    void manyFilesShareTheBuffers();
    void aMissingFolderIsAFailureThatNamesTheFile();
    void aFolderThatVanishesIsAFailure();
    void theFirstFailureOfAnyFileStands();
    void aWriteThatFailsIsAFailure();

private:
    QStringList left() const { return QDir(m_folder->path()).entryList(QDir::Files); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_TemporaryFiles::whatWasAppendedStandsInTheFile()
{
    TemporaryFilePool pool(m_folder->path());
    TemporaryFile file(pool, QString());
    file.append("abc", 3);
    file.append("de", 2);
    QVERIFY(file.finish());
    QCOMPARE(file.size(), qint64(5));
    QCOMPARE(contentOf(file.path()), QByteArray("abcde"));
}

void tst_TemporaryFiles::noFileIsMadeWithoutBytes()
{
    TemporaryFilePool pool(m_folder->path());
    TemporaryFile file(pool, QString());
    QVERIFY(file.finish());
    QCOMPARE(file.path(), QString());
    QCOMPARE(left(), QStringList());
}

void tst_TemporaryFiles::theFileIsCalledByItsBaseNameAndEndsInBin()
{
    TemporaryFilePool pool(m_folder->path());
    TemporaryFile file(pool, QStringLiteral("Base"));
    file.append("a", 1);
    QVERIFY(file.finish());
    QCOMPARE(left().size(), 1);
    QVERIFY(left().first().startsWith(QStringLiteral("Base_")));
    QVERIFY(left().first().endsWith(QStringLiteral(".bin")));
}

void tst_TemporaryFiles::theFileIsDeletedWithItsObject()
{
    TemporaryFilePool pool(m_folder->path());
    {
        TemporaryFile file(pool, QString());
        file.append("a", 1);
        QVERIFY(file.finish());
        QCOMPARE(left().size(), 1);
    }
    QCOMPARE(left(), QStringList());
}

void tst_TemporaryFiles::clearGoesBackToAnEmptyFile()
{
    TemporaryFilePool pool(m_folder->path());
    TemporaryFile file(pool, QString());
    file.append("abc", 3);
    QVERIFY(file.finish());
    file.clear();
    QCOMPARE(file.size(), qint64(0));
    QCOMPARE(left(), QStringList());
    file.append("d", 1);
    QVERIFY(file.finish());
    QCOMPARE(contentOf(file.path()), QByteArray("d"));
}

void tst_TemporaryFiles::moreThanABufferKeepsItsOrder()
{
    TemporaryFilePool pool(m_folder->path());
    TemporaryFile file(pool, QString());
    QByteArray expected;
    for (int i = 0; expected.size() < 3 * pool.bufferSize(); ++i) {
        const QByteArray piece = QByteArray::number(i) + ' ';
        file.append(piece.constData(), piece.size());
        expected += piece;
    }
    QVERIFY(file.finish());
    QVERIFY(contentOf(file.path()) == expected);
}

void tst_TemporaryFiles::aPieceLargerThanTheBufferIsTaken()
{
    TemporaryFilePool pool(m_folder->path());
    TemporaryFile file(pool, QString());
    const QByteArray piece(2 * pool.bufferSize() + 7, 'x');
    file.append("a", 1);
    file.append(piece.constData(), piece.size());
    QVERIFY(file.finish());
    QVERIFY(contentOf(file.path()) == 'a' + piece);
}

void tst_TemporaryFiles::moreFilesThanHandlesKeepTheirBytes()
{
    constexpr int count = TemporaryFilePool::maxOpenFiles * 2 + 5;
    constexpr int rounds = 3;
    TemporaryFilePool pool(m_folder->path());
    pool.setExpectedFiles(TemporaryFilePool::totalBufferSize);
    std::vector<std::unique_ptr<TemporaryFile>> files;
    for (int i = 0; i < count; ++i)
        files.push_back(std::make_unique<TemporaryFile>(pool, QString()));
    // A full buffer each time, so that every file is opened in every round.
    for (int round = 0; round < rounds; ++round) {
        for (int i = 0; i < count; ++i) {
            const QByteArray piece(pool.bufferSize(), char('0' + (i + round) % 64));
            files[size_t(i)]->append(piece.constData(), piece.size());
        }
    }
    for (int i = 0; i < count; ++i) {
        QByteArray expected;
        for (int round = 0; round < rounds; ++round)
            expected += QByteArray(pool.bufferSize(), char('0' + (i + round) % 64));
        QVERIFY(files[size_t(i)]->finish());
        QVERIFY(contentOf(files[size_t(i)]->path()) == expected);
    }
}

void tst_TemporaryFiles::manyFilesShareTheBuffers()
{
    TemporaryFilePool pool(m_folder->path());
    pool.setExpectedFiles(1);
    QCOMPARE(pool.bufferSize(), TemporaryFilePool::maxBufferSize);
    for (const int files : {1600, int(ChannelGroupList::maxGroups)}) {
        pool.setExpectedFiles(files);
        QVERIFY(pool.bufferSize() * files <= TemporaryFilePool::totalBufferSize);
    }
    pool.setExpectedFiles(1000000);
    QCOMPARE(pool.bufferSize(), TemporaryFilePool::minBufferSize);
    pool.setExpectedFiles(0);
    QCOMPARE(pool.bufferSize(), TemporaryFilePool::maxBufferSize);
}

void tst_TemporaryFiles::aMissingFolderIsAFailureThatNamesTheFile()
{
    TemporaryFilePool pool(m_folder->filePath(QStringLiteral("missing")));
    TemporaryFile file(pool, QString());
    file.append("a", 1);
    QVERIFY(!file.finish());
    QVERIFY(pool.failure().contains(QDir::toNativeSeparators(file.path())));
}

void tst_TemporaryFiles::aFolderThatVanishesIsAFailure()
{
    TemporaryFilePool pool(m_folder->path());
    TemporaryFile first(pool, QString());
    first.append("a", 1);
    QVERIFY(first.finish());
    QVERIFY(QDir(m_folder->path()).removeRecursively());
    first.append("b", 1);
    QVERIFY(!first.finish());
    QVERIFY(!pool.failure().isEmpty());
}

void tst_TemporaryFiles::theFirstFailureOfAnyFileStands()
{
    TemporaryFilePool pool(m_folder->filePath(QStringLiteral("missing")));
    TemporaryFile first(pool, QStringLiteral("First"));
    TemporaryFile second(pool, QStringLiteral("Second"));
    for (TemporaryFile *file : {&first, &second}) {
        file->append("a", 1);
        QVERIFY(!file->finish());
    }
    QVERIFY(pool.failure().contains(QStringLiteral("First_")));
    QCOMPARE(second.failure(), pool.failure());
}

void tst_TemporaryFiles::aWriteThatFailsIsAFailure()
{
#ifdef Q_OS_UNIX
    TemporaryFilePool pool(m_folder->path());
    TemporaryFile file(pool, QString());
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit tight = before;
    tight.rlim_cur = 10;
    setrlimit(RLIMIT_FSIZE, &tight);
    file.append("12345678901", 11);
    const bool written = file.finish();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    QVERIFY(!written);
    QVERIFY(pool.failure().contains(QDir::toNativeSeparators(file.path())));
#else
    QSKIP("there is no limit for the size of files");
#endif
}

QTEST_GUILESS_MAIN(tst_TemporaryFiles)
#include "tst_temporaryfiles.moc"
