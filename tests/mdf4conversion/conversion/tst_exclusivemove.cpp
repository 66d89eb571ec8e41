#include "MDF4Conversion/exclusivemove.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#ifndef Q_OS_WIN
#include <cerrno>
#include <unistd.h>
#endif

namespace {

using Move = void (*)(const std::filesystem::path &, const std::filesystem::path &,
                      std::error_code &);

#ifndef Q_OS_WIN
void moveByRealLink(const std::filesystem::path &from, const std::filesystem::path &to,
                    std::error_code &error)
{
    moveByLink(from, to, error, link);
}

// As on a file system where a file has one name only.
void moveWithoutLinks(const std::filesystem::path &from, const std::filesystem::path &to,
                      std::error_code &error)
{
    moveByLink(from, to, error, [](const char *, const char *) {
        errno = EPERM;
        return -1;
    });
}
#endif

} // namespace

Q_DECLARE_METATYPE(Move)

class tst_ExclusiveMove : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void aFreeNameIsTaken_data() { addMoves(); }
    void aFreeNameIsTaken();
    void anExistingFileIsRefusedAndBothStay_data() { addMoves(); }
    void anExistingFileIsRefusedAndBothStay();
    void aMissingFileLeavesNothing_data() { addMoves(); }
    void aMissingFileLeavesNothing();
#ifndef Q_OS_WIN
    void untilTheLinkIsMadeTheNameIsFree();
    void aNameThatIsTakenWhileTheLinkIsMadeIsNotReplaced();
#endif

private:
    static void addMoves()
    {
        QTest::addColumn<Move>("move");
        QTest::newRow("as the file system can") << Move(moveWithoutReplacing);
#ifndef Q_OS_WIN
        QTest::newRow("by a link") << Move(moveByRealLink);
        QTest::newRow("without links") << Move(moveWithoutLinks);
#endif
    }
    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder->filePath(QString::fromLatin1(name));
    }
    [[nodiscard]] std::filesystem::path native(const char *name) const
    {
        return path(name).toStdU16String();
    }
    void make(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("A file of the test can't be written.");
    }
    [[nodiscard]] QByteArray contentOf(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ExclusiveMove::aFreeNameIsTaken()
{
    QFETCH(Move, move);
    make("from", "new");
    std::error_code error = std::make_error_code(std::errc::io_error);
    move(native("from"), native("to"), error);
    QVERIFY(!error);
    QCOMPARE(contentOf("to"), QByteArray("new"));
    QVERIFY(!QFile::exists(path("from")));
}

void tst_ExclusiveMove::anExistingFileIsRefusedAndBothStay()
{
    QFETCH(Move, move);
    make("from", "new");
    make("to", "old");
    std::error_code error;
    move(native("from"), native("to"), error);
    QVERIFY(error == std::errc::file_exists);
    QCOMPARE(contentOf("from"), QByteArray("new"));
    QCOMPARE(contentOf("to"), QByteArray("old"));
}

void tst_ExclusiveMove::aMissingFileLeavesNothing()
{
    QFETCH(Move, move);
    std::error_code error;
    move(native("from"), native("to"), error);
    QVERIFY(error == std::errc::no_such_file_or_directory);
    QVERIFY(!QFile::exists(path("to")));
}

#ifndef Q_OS_WIN
// Whoever ends the program there leaves nothing under the final name.
void tst_ExclusiveMove::untilTheLinkIsMadeTheNameIsFree()
{
    static bool wasFree = false;
    make("from", "new");
    std::error_code error;
    moveByLink(native("from"), native("to"), error, [](const char *from, const char *to) {
        wasFree = access(to, F_OK) != 0;
        return link(from, to);
    });
    QVERIFY(!error);
    QVERIFY(wasFree);
    QCOMPARE(contentOf("to"), QByteArray("new"));
}

void tst_ExclusiveMove::aNameThatIsTakenWhileTheLinkIsMadeIsNotReplaced()
{
    make("from", "new");
    std::error_code error;
    moveByLink(native("from"), native("to"), error, [](const char *from, const char *to) {
        QFile other(QFile::decodeName(to));
        if (!other.open(QIODevice::WriteOnly) || other.write("old") != 3)
            qFatal("A file of the test can't be written.");
        other.close();
        return link(from, to);
    });
    QVERIFY(error == std::errc::file_exists);
    QCOMPARE(contentOf("from"), QByteArray("new"));
    QCOMPARE(contentOf("to"), QByteArray("old"));
}
#endif

QTEST_GUILESS_MAIN(tst_ExclusiveMove)
#include "tst_exclusivemove.moc"
