#include "MDF4Conversion/rawlog/demolog.h"
#include "MDF4Conversion/rawlog/drivelog.h"
#include "MDF4Conversion/rawlog/logfilereader.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

namespace {

bool goOn(int)
{
    return true;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_DemoLog : public QObject
{
    Q_OBJECT

private slots:
    void fourSyntheticLogsAndADriveAreMade();
    void theFolderIsMadeWithItsParents();
    void everyLogOpensAndHasNothingToSkip();
    void theDriveIsTheSameEachTime();
    void aLongerDriveBeginsAsAShorterOne();
    void progressRunsFromZeroToOneHundred();
    void cancellingLeavesNoDrive();
    void cancellingLeavesAnOlderDriveAsItWas();
    void aDriveLastsASecondAtLeast();
    void aFileInThePlaceOfTheFolderIsNamed();
    void aFolderInThePlaceOfALogIsNamed();
};

void tst_DemoLog::fourSyntheticLogsAndADriveAreMade()
{
    const QTemporaryDir folder;
    const demolog::Result result = demolog::makeAll(folder.path(), 1, goOn);
    QVERIFY(result.failure.isNull());
    QVERIFY(!result.cancelled);
    QCOMPARE(result.files.size(), 5);
    const QStringList names = {QStringLiteral("SyntheticLog_Simulation_1.rld"),
                               QStringLiteral("SyntheticLog_Simulation_2.rld"),
                               QStringLiteral("SyntheticLog_Simulation_3.rld"),
                               QStringLiteral("SyntheticLog_Simulation_4.rld"),
                               QStringLiteral("demo_drive.rld")};
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files, QDir::Name), names);
    for (const QString &path : result.files)
        QVERIFY(QFileInfo(path).isFile());
}

void tst_DemoLog::theFolderIsMadeWithItsParents()
{
    const QTemporaryDir folder;
    const QString deep = folder.filePath(QStringLiteral("a/b/c"));
    QCOMPARE(demolog::makeAll(deep, 1, goOn).files.size(), 5);
    QVERIFY(QDir(deep).exists(QStringLiteral("demo_drive.rld")));
}

void tst_DemoLog::everyLogOpensAndHasNothingToSkip()
{
    const QTemporaryDir folder;
    for (const QString &path : demolog::makeAll(folder.path(), 2, goOn).files) {
        LogFileReader reader(path);
        QVERIFY(reader.isOpen());
        StdLogEntry entry;
        bool atEnd = false;
        for (reader.next(entry, atEnd); !atEnd; reader.next(entry, atEnd)) {
            QVERIFY(entry.isComplete());
            QCOMPARE(reader.skipCount(), quint64(0));
        }
        QCOMPARE(reader.position(), reader.fileSize());
    }
}

void tst_DemoLog::theDriveIsTheSameEachTime()
{
    const QTemporaryDir folder;
    const QString first = folder.filePath(QStringLiteral("1.rld"));
    const QString second = folder.filePath(QStringLiteral("2.rld"));
    QVERIFY(drivelog::write(first, 3, goOn).failure.isNull());
    QVERIFY(drivelog::write(second, 3, goOn).failure.isNull());
    QVERIFY(!contentOf(first).isEmpty());
    QVERIFY(contentOf(first) == contentOf(second));
}

void tst_DemoLog::aLongerDriveBeginsAsAShorterOne()
{
    const QTemporaryDir folder;
    const QString shorter = folder.filePath(QStringLiteral("1.rld"));
    const QString longer = folder.filePath(QStringLiteral("2.rld"));
    QVERIFY(drivelog::write(shorter, 2, goOn).failure.isNull());
    QVERIFY(drivelog::write(longer, 4, goOn).failure.isNull());
    QVERIFY(contentOf(longer).startsWith(contentOf(shorter)));
}

void tst_DemoLog::progressRunsFromZeroToOneHundred()
{
    const QTemporaryDir folder;
    QVector<int> told;
    const auto note = [&told](int percent) {
        told += percent;
        return true;
    };
    QVERIFY(demolog::makeAll(folder.path(), 4, note).failure.isNull());
    QCOMPARE(told, (QVector<int>{0, 25, 50, 75, 100}));
}

void tst_DemoLog::cancellingLeavesNoDrive()
{
    const QTemporaryDir folder;
    const demolog::Result result =
        demolog::makeAll(folder.path(), 4, [](int percent) { return percent < 50; });
    QVERIFY(result.cancelled);
    QVERIFY(result.failure.isNull());
    QCOMPARE(result.files.size(), 4);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 4);
}

void tst_DemoLog::cancellingLeavesAnOlderDriveAsItWas()
{
    const QTemporaryDir folder;
    QVERIFY(demolog::makeAll(folder.path(), 1, goOn).failure.isNull());
    const QString drive = folder.filePath(drivelog::fileName());
    const QByteArray before = contentOf(drive);
    QVERIFY(demolog::makeAll(folder.path(), 3, [](int percent) { return percent < 30; }).cancelled);
    QVERIFY(contentOf(drive) == before);
}

void tst_DemoLog::aDriveLastsASecondAtLeast()
{
    const QTemporaryDir folder;
    QVERIFY(drivelog::write(folder.filePath(QStringLiteral("1.rld")), 1, goOn).failure.isNull());
    QVERIFY(drivelog::write(folder.filePath(QStringLiteral("0.rld")), 0, goOn).failure.isNull());
    QVERIFY(contentOf(folder.filePath(QStringLiteral("0.rld")))
            == contentOf(folder.filePath(QStringLiteral("1.rld"))));
}

void tst_DemoLog::aFileInThePlaceOfTheFolderIsNamed()
{
    const QTemporaryDir folder;
    const QString taken = folder.filePath(QStringLiteral("taken"));
    QFile file(taken);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const demolog::Result result = demolog::makeAll(taken, 1, goOn);
    QVERIFY(result.failure.contains(QStringLiteral("taken")));
    QVERIFY(result.files.isEmpty());
}

void tst_DemoLog::aFolderInThePlaceOfALogIsNamed()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(drivelog::fileName()));
    const demolog::Result result = demolog::makeAll(folder.path(), 1, goOn);
    QVERIFY(result.failure.contains(drivelog::fileName()));
    QCOMPARE(result.files.size(), 4);
}

QTEST_GUILESS_MAIN(tst_DemoLog)
#include "tst_demolog.moc"
