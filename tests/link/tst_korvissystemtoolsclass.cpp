#include "link/korvissystemtoolsclass.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using Tools = KorvisSystemToolsClass;

class tst_KorvisSystemToolsClass : public QObject
{
    Q_OBJECT

private slots:
    void aFreeNameStaysAsItIs();
    void aTakenNameIsNumberedInFrontOfTheLastDot();
    void aTakenNameWithoutDotIsNumberedInFront();
    void numbersGoOnUntilOneIsFree();
    void caseDoesNotMakeANameFree();
    void theLockOfAGrowingFileHasItsName();
    void aGrowingFileWithoutALockLeavesItsNameFree();
    void foldersHiddenFilesAndDeadLinksTakeNames();
    void withoutTheFolderThereIsNoName();
    void theLocalNameIsTheLastComponent_data();
    void theLocalNameIsTheLastComponent();
    void everyLocalNameCanBeMadeInAFolder();
    void aLongNameKeepsItsExtensionAndLeavesRoomForSuffixes();
};

namespace {

// A folder with empty files.
struct Folder
{
    explicit Folder(std::initializer_list<const char *> names)
    {
        for (const char *name : names)
            add(QString::fromUtf8(name));
    }
    void add(const QString &name)
    {
        QFile file(directory.filePath(name));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("%s", qPrintable(name));
    }
    QString unique(const char *name) const
    {
        return Tools::uniqueFileName(directory.path(), QString::fromUtf8(name));
    }

    QTemporaryDir directory;
};

} // namespace

void tst_KorvisSystemToolsClass::aFreeNameStaysAsItIs()
{
    QCOMPARE(Folder({"b.rld"}).unique("a.rld"), QStringLiteral("a.rld"));
}

void tst_KorvisSystemToolsClass::aTakenNameIsNumberedInFrontOfTheLastDot()
{
    QCOMPARE(Folder({"a.rld"}).unique("a.rld"), QStringLiteral("a_nr_2.rld"));
    QCOMPARE(Folder({"a.b.rld"}).unique("a.b.rld"), QStringLiteral("a.b_nr_2.rld"));
}

void tst_KorvisSystemToolsClass::aTakenNameWithoutDotIsNumberedInFront()
{
    QCOMPARE(Folder({"drive"}).unique("drive"), QStringLiteral("nr_2_drive"));
}

void tst_KorvisSystemToolsClass::numbersGoOnUntilOneIsFree()
{
    QCOMPARE(Folder({"a.rld", "a_nr_2.rld"}).unique("a.rld"), QStringLiteral("a_nr_3.rld"));
    QCOMPARE(Folder({"a.rld", "a_nr_3.rld"}).unique("a.rld"), QStringLiteral("a_nr_2.rld"));
    QCOMPARE(Folder({"drive", "nr_2_drive"}).unique("drive"), QStringLiteral("nr_3_drive"));
}

void tst_KorvisSystemToolsClass::caseDoesNotMakeANameFree()
{
    QCOMPARE(Folder({"A.RLD", "a_NR_2.rld"}).unique("a.rld"), QStringLiteral("a_nr_3.rld"));
}

void tst_KorvisSystemToolsClass::theLockOfAGrowingFileHasItsName()
{
    QCOMPARE(Folder({"a.rld.part.lock"}).unique("a.rld"), QStringLiteral("a_nr_2.rld"));
    QCOMPARE(Folder({"a.rld", "A_nr_2.rld.PART.lock"}).unique("a.rld"),
             QStringLiteral("a_nr_3.rld"));
}

void tst_KorvisSystemToolsClass::aGrowingFileWithoutALockLeavesItsNameFree()
{
    QCOMPARE(Folder({"a.rld.part"}).unique("a.rld"), QStringLiteral("a.rld"));
}

void tst_KorvisSystemToolsClass::foldersHiddenFilesAndDeadLinksTakeNames()
{
    Folder folder({".a.rld"});
    QVERIFY(QDir(folder.directory.path()).mkdir(QStringLiteral("b.rld")));
    QCOMPARE(folder.unique(".a.rld"), QStringLiteral(".a_nr_2.rld"));
    QCOMPARE(folder.unique("b.rld"), QStringLiteral("b_nr_2.rld"));
#ifndef Q_OS_WIN
    QVERIFY(QFile::link(QStringLiteral("/nowhere/at/all"),
                        folder.directory.filePath(QStringLiteral("c.rld"))));
    QCOMPARE(folder.unique("c.rld"), QStringLiteral("c_nr_2.rld"));
#endif
}

void tst_KorvisSystemToolsClass::withoutTheFolderThereIsNoName()
{
    const QTemporaryDir folder;
    QCOMPARE(Tools::uniqueFileName(folder.filePath(QStringLiteral("none")), QStringLiteral("a")),
             QString());
    QCOMPARE(Tools::uniqueFileName(QString(), QStringLiteral("a")), QString());
}

void tst_KorvisSystemToolsClass::theLocalNameIsTheLastComponent_data()
{
    QTest::addColumn<QString>("remote");
    QTest::addColumn<QString>("local");
    const auto row = [](const char *tag, const QString &remote, const char *local) {
        QTest::newRow(tag) << remote << QString::fromUtf8(local);
    };
    row("plain", QStringLiteral("2024-05-01_drive.rld"), "2024-05-01_drive.rld");
    row("growing file", QStringLiteral("a.rld.part"), "a.rld.part_");
    row("lock of a growing file", QStringLiteral("a.rld.PART.lock"), "a.rld.PART.lock_");
    row("takeover of that lock", QStringLiteral("a.rld.part.lock.rmlock"),
        "a.rld.part.lock.rmlock_");
    row("umlauts", QString::fromUtf8("Prüfstand.rld"), "Prüfstand.rld");
    row("parent", QStringLiteral("../../etc/passwd"), "passwd");
    row("absolute", QStringLiteral("/etc/passwd"), "passwd");
    row("backslashes", QStringLiteral("..\\..\\autoexec.bat"), "autoexec.bat");
    row("both slashes", QStringLiteral("a/b\\c.rld"), "c.rld");
    row("drive", QStringLiteral("C:evil.rld"), "C_evil.rld");
    row("stream of a file", QStringLiteral("a.rld:hidden"), "a.rld_hidden");
    row("control characters", QStringLiteral("a\r\n\t\x7f.rld"), "a____.rld");
    row("zero", QStringLiteral("a") + QChar(0) + QStringLiteral(".rld"), "a_.rld");
    row("upper control", QStringLiteral("a") + QChar(0x85) + QStringLiteral(".rld"), "a_.rld");
    row("turned writing", QStringLiteral("a") + QChar(0x202E) + QStringLiteral("dlr.exe"),
        "a_dlr.exe");
    row("what Windows refuses", QStringLiteral("<a>\"b|c?d*.rld"), "_a__b_c_d_.rld");
    row("trailing dot", QStringLiteral("a.rld."), "a.rld_");
    row("blanks around", QStringLiteral("  a.rld  "), "a.rld");
    row("dot", QStringLiteral("."), "");
    row("dots", QStringLiteral(".."), "");
    row("dots behind a folder", QStringLiteral("a/.."), "");
    row("folder", QStringLiteral("a/"), "");
    row("nothing", QString(), "");
    row("blank", QStringLiteral("  "), "");
    row("device", QStringLiteral("nul"), "_nul");
    row("device with extension", QStringLiteral("Aux.rld"), "_Aux.rld");
    row("port", QStringLiteral("COM7.rld"), "_COM7.rld");
    row("port with superscript", QStringLiteral("LPT") + QChar(0xB2), "_LPT²");
    row("no device", QStringLiteral("COMA.rld"), "COMA.rld");
    row("no device either", QStringLiteral("console.rld"), "console.rld");
}

void tst_KorvisSystemToolsClass::theLocalNameIsTheLastComponent()
{
    QFETCH(QString, remote);
    QFETCH(QString, local);
    QCOMPARE(Tools::localNameOf(remote), local);
}

void tst_KorvisSystemToolsClass::everyLocalNameCanBeMadeInAFolder()
{
    const QTemporaryDir folder;
    for (int code = 0; code < 256; ++code) {
        const QString name = Tools::localNameOf(QStringLiteral("a") + QChar(code));
        if (name.isEmpty())
            continue; // a slash
        QFile file(folder.filePath(name));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(name));
        QCOMPARE(QFileInfo(file).fileName(), name);
    }
}

void tst_KorvisSystemToolsClass::aLongNameKeepsItsExtensionAndLeavesRoomForSuffixes()
{
    const QString name = Tools::localNameOf(QString(3000, QChar(0xFC)) + QStringLiteral(".rld"));
    QVERIFY(name.endsWith(QStringLiteral("\u00fc.rld")));
    QVERIFY(name.toUtf8().size() > 190);
    Folder folder({});
    folder.add(name);
    const QString second = folder.unique(name.toUtf8().constData());
    folder.add(second + QStringLiteral(".part.lock"));
    QVERIFY(Tools::localNameOf(QString(3000, QLatin1Char('.'))).size() <= 200);
}

QTEST_GUILESS_MAIN(tst_KorvisSystemToolsClass)
#include "tst_korvissystemtoolsclass.moc"
