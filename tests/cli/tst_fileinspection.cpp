#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "cli/fileinspection.h"
#include "cli/logtexts.h"
#include "config/configfile.h"
#include "temporaryfiles.h"

#include <QtTest>

#include <memory>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace rawlog;

namespace {

bool readOn(qint64, qint64)
{
    return true;
}

FileInspection inspect(const QString &path)
{
    return inspectFile(path, InspectionScope::Everything, readOn);
}

QByteArray canAt(quint32 timestamp_us)
{
    return canEntry(timestamp_us, 2, {0x123, false, QByteArray(8, '\x55')});
}

} // namespace

class tst_FileInspection : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<TemporaryFiles>(); }
    void aConfigurationIsReadWhateverItsName();
    void aLogIsReadWhateverItsName();
    void aLogWithoutEntriesIsFine();
    void onlyTheConfigurationIsReadWhenAskedFor();
    void garbageBetweenEntriesIsSkippedAndAnError();
    void theTruncatedLastEntryIsSkipped();
    void fewBytesBehindTheLastEntryAreSkipped();
    void anEntryTooShortForItsHeadIsDamaged();
    void ringBufferOverflowsAreAnError();
    void equalSyncStampsAreAnError();
    void restartsAreAWarning();
    void missingSyncStampsAreAWarning();
    void unknownTypesAreAWarning();
    void aWallClockOfNoDriveIsAWarningAndNotTaken();
    void aNewerConfigurationIsAWarning();
    void aConfigurationWithABrokenFrameIsAnError();
    void aRefusalToGoOnCancels();
    void progressGrowsToTheSizeOfTheFile();
    void unreadableFilesGiveTheCause_data();
    void unreadableFilesGiveTheCause();
    void everyTruncationOfAConfigurationIsRefused();
    void everyTruncationOfALogEndsWell();
    void randomBytesEndWell();
    void aPipeIsNotOpened();
    void aFileWithoutPermissionGivesTheCause();

private:
    [[nodiscard]] FileInspection inspectLog(const QByteArray &entries) const
    {
        return inspect(m_files->write("a.rld", logBytes(TerminalStruct(), entries)));
    }
    [[nodiscard]] QByteArray configurationBytes() const
    {
        TerminalStruct configuration;
        configuration.event.event_name = QStringLiteral("Test drive");
        const QString file = m_files->path("written.zdc");
        if (!configfile::save(configuration, file))
            qFatal("no configuration");
        return TemporaryFiles::contentOf(file);
    }

    std::unique_ptr<TemporaryFiles> m_files;
};

void tst_FileInspection::aConfigurationIsReadWhateverItsName()
{
    const FileInspection inspection = inspect(m_files->write("a.rld", configurationBytes()));
    QCOMPARE(inspection.failure, QString());
    QCOMPARE(inspection.kind, FileHead::Kind::Configuration);
    QCOMPARE(inspection.configuration->event.event_name, QStringLiteral("Test drive"));
    QVERIFY(!inspection.log);
}

void tst_FileInspection::aLogIsReadWhateverItsName()
{
    TerminalStruct configuration;
    configuration.gps.gps_enabled = 1;
    const FileInspection inspection =
        inspect(m_files->write("a.zdc", logBytes(configuration, canAt(1) + canAt(2))));
    QCOMPARE(inspection.failure, QString());
    QCOMPARE(inspection.kind, FileHead::Kind::RawLog);
    QCOMPARE(int(inspection.configuration->gps.gps_enabled), 1);
    QCOMPARE(inspection.log->total().entries, quint64(2));
    QVERIFY(inspection.errors.isEmpty());
    QVERIFY(inspection.warnings.isEmpty());
}

void tst_FileInspection::aLogWithoutEntriesIsFine()
{
    const FileInspection inspection = inspectLog({});
    QCOMPARE(inspection.failure, QString());
    QVERIFY(inspection.errors.isEmpty());
    QCOMPARE(inspection.log->total().entries, quint64(0));
    QCOMPARE(inspection.firstEntryPosition, inspection.size);
}

void tst_FileInspection::onlyTheConfigurationIsReadWhenAskedFor()
{
    const QString file = m_files->write("a.rld", logBytes(TerminalStruct(), "garbage"));
    const FileInspection inspection = inspectFile(file, InspectionScope::ConfigurationOnly, readOn);
    QVERIFY(inspection.configuration);
    QVERIFY(!inspection.log);
    QVERIFY(inspection.errors.isEmpty());
}

void tst_FileInspection::garbageBetweenEntriesIsSkippedAndAnError()
{
    const FileInspection inspection = inspectLog(canAt(1) + "noise" + canAt(2) + "x" + canAt(3));
    const qint64 start = inspection.firstEntryPosition;
    const QVector<SkippedStretch> stretches = inspection.log->skippedStretches();
    QCOMPARE(stretches.size(), 2);
    QCOMPARE(stretches.at(0).position, start + 24);
    QCOMPARE(stretches.at(0).length, quint64(5));
    QCOMPARE(stretches.at(1).position, start + 24 + 5 + 24);
    QCOMPARE(stretches.at(1).length, quint64(1));
    QCOMPARE(inspection.errors,
             QStringList{QStringLiteral("6 bytes are no entries: 2 stretches, the first at %1")
                             .arg(start + 24)});
}

void tst_FileInspection::theTruncatedLastEntryIsSkipped()
{
    const FileInspection inspection = inspectLog(canAt(1) + canAt(2).left(23));
    QCOMPARE(inspection.log->total().entries, quint64(1));
    QCOMPARE(inspection.log->skippedStretches().size(), 1);
    QCOMPARE(inspection.log->skippedStretches().first().position,
             inspection.firstEntryPosition + 24);
    QCOMPARE(inspection.log->skippedBytes(), quint64(23));
    QCOMPARE(inspection.errors,
             QStringList{QStringLiteral("23 bytes are no entries: 1 stretch, at %1")
                             .arg(inspection.firstEntryPosition + 24)});
}

void tst_FileInspection::fewBytesBehindTheLastEntryAreSkipped()
{
    const FileInspection inspection = inspectLog(canAt(1) + QByteArray("\xAA\x55", 2));
    QCOMPARE(inspection.log->skippedBytes(), quint64(2));
    QCOMPARE(inspection.log->skippedStretches().first().position,
             inspection.firstEntryPosition + 24);
}

void tst_FileInspection::anEntryTooShortForItsHeadIsDamaged()
{
    const FileInspection inspection =
        inspectLog(canAt(1) + QByteArray("\xAA\x55\x01\0\x01", 5) + canAt(2));
    QCOMPARE(inspection.log->damagedEntries(), quint64(1));
    QCOMPARE(inspection.log->skippedBytes(), quint64(0));
    QCOMPARE(inspection.errors,
             QStringList{QStringLiteral("1 entry is shorter than the head of an entry")});
}

void tst_FileInspection::ringBufferOverflowsAreAnError()
{
    const FileInspection inspection = inspectLog(debugCountersEntry(4, 17, 1));
    QCOMPARE(inspection.errors, QStringList{QStringLiteral(
                                    "processor 4: ring buffer overflow protection counter 17, data "
                                    "was lost")});
    QVERIFY(inspection.warnings.isEmpty());
}

void tst_FileInspection::equalSyncStampsAreAnError()
{
    const FileInspection inspection = inspectLog(syncStampEntry(5, 1) + syncStampEntry(5, 1));
    QCOMPARE(inspection.errors, QStringList{QStringLiteral("processor 1: 1 sync stamp repeats")});
}

void tst_FileInspection::restartsAreAWarning()
{
    const FileInspection inspection = inspectLog(debugCountersEntry(0, 0, 2));
    QVERIFY(inspection.errors.isEmpty());
    QCOMPARE(inspection.warnings,
             QStringList{QStringLiteral("processor 0: timestamp sync or restart counter 2")});
}

void tst_FileInspection::missingSyncStampsAreAWarning()
{
    const FileInspection fine = inspectLog(syncStampEntry(0, 0) + syncStampEntry(0x20000000, 0));
    QVERIFY(fine.warnings.isEmpty());
    const FileInspection late = inspectLog(syncStampEntry(0, 0) + syncStampEntry(0x20000001, 0));
    QCOMPARE(late.warnings,
             QStringList{QStringLiteral(
                 "processor 0: no sync stamp for 536.9 s, one or more are missing")});
}

void tst_FileInspection::unknownTypesAreAWarning()
{
    QTest::ignoreMessage(
        QtCriticalMsg,
        "StdLogEntry::rebuild( uint8_t * data, size_t maxLen ) Landed in Default...");
    const FileInspection inspection = inspectLog(entryBytes({99, 0, 0, 0}, {}));
    QVERIFY(inspection.errors.isEmpty());
    QCOMPARE(inspection.warnings, QStringList{QStringLiteral("1 entry is of an unknown type")});
}

void tst_FileInspection::aWallClockOfNoDriveIsAWarningAndNotTaken()
{
    const FileInspection last = inspectLog(utcStartEntry(~quint64(0) / 1000));
    QVERIFY(last.warnings.isEmpty());
    QCOMPARE(utcText(last.log->utcStart_us()), QStringLiteral("2554-07-21T23:34:33.709Z"));
    const FileInspection beyond = inspectLog(utcStartEntry(~quint64(0)));
    QVERIFY(!beyond.log->utcStart_us());
    QCOMPARE(beyond.warnings, QStringList{QStringLiteral(
                                  "the wall clock at the start, 18446744073709551615 us since "
                                  "1970, lies behind the year 2554 and is ignored")});
}

void tst_FileInspection::aNewerConfigurationIsAWarning()
{
    QByteArray log = logBytes(TerminalStruct(), {});
    log[15] = 7; // the version behind the lengths of block, array and frame
    const FileInspection inspection = inspect(m_files->write("a.rld", log));
    QVERIFY(inspection.errors.isEmpty());
    QCOMPARE(inspection.warnings, QStringList{QStringLiteral(
                                      "the configuration has version 7 and is read as version 6")});
}

void tst_FileInspection::aConfigurationWithABrokenFrameIsAnError()
{
    QByteArray log = logBytes(TerminalStruct(), {});
    log[8] = 1; // the length of the record's frame
    const FileInspection inspection = inspect(m_files->write("a.rld", log));
    QCOMPARE(inspection.errors,
             QStringList{QStringLiteral("the configuration is damaged; what could not be read "
                                        "shows as zero")});
}

void tst_FileInspection::aRefusalToGoOnCancels()
{
    const QString file = m_files->write("a.rld", logBytes(TerminalStruct(), canAt(1)));
    const FileInspection inspection =
        inspectFile(file, InspectionScope::Everything, [](qint64, qint64) { return false; });
    QVERIFY(inspection.cancelled);
    QVERIFY(!inspection.log);
}

void tst_FileInspection::progressGrowsToTheSizeOfTheFile()
{
    QByteArray entries;
    for (quint32 i = 0; i < 300000; ++i)
        entries += canAt(i);
    const QString file = m_files->write("a.rld", logBytes(TerminalStruct(), entries));
    QVector<qint64> positions;
    qint64 size = 0;
    const FileInspection inspection =
        inspectFile(file, InspectionScope::Everything, [&](qint64 done, qint64 of) {
            positions.append(done);
            size = of;
            return true;
        });
    QCOMPARE(inspection.log->total().entries, quint64(300000));
    QCOMPARE(size, inspection.size);
    QVERIFY(positions.size() >= 3);
    QVERIFY(std::is_sorted(positions.begin(), positions.end()));
    QVERIFY(positions.last() <= size);
}

void tst_FileInspection::unreadableFilesGiveTheCause_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("failure");
    QTest::newRow("empty") << QStringLiteral("a") << QByteArray("")
                           << QStringLiteral("the file is empty");
    QTest::newRow("empty log") << QStringLiteral("a.rld") << QByteArray("")
                               << QStringLiteral("the file is shorter than four bytes");
    QTest::newRow("empty configuration")
        << QStringLiteral("a.zdc") << QByteArray("") << QStringLiteral("The file is cut short.");
    QTest::newRow("neither") << QStringLiteral("a.txt") << QByteArray("Neither of the two.")
                             << QStringLiteral("it is no configuration, raw log or DBC file");
    QTest::newRow("log without configuration")
        << QStringLiteral("a.rld") << QByteArray("\0\0\0\0\xAA\x55", 6)
        << QStringLiteral("it holds no configuration");
    QTest::newRow("log that ends inside its configuration")
        << QStringLiteral("a.rld") << QByteArray("\xFF\xFF\0\0rest", 8)
        << QStringLiteral("it ends inside its configuration");
    QTest::newRow("configuration with a wrong sum")
        << QStringLiteral("a.zdc") << QByteArray("\0\0\0\x04\0\0\0\0\0\0\0\x02", 12)
        << QStringLiteral("The checksum is wrong.");
}

void tst_FileInspection::unreadableFilesGiveTheCause()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    const FileInspection inspection = inspect(m_files->write(name.toUtf8().constData(), bytes));
    QVERIFY(!inspection.configuration);
    QTEST(inspection.failure, "failure");
}

void tst_FileInspection::everyTruncationOfAConfigurationIsRefused()
{
    const QString file = m_files->write("cut.zdc", configurationBytes());
    for (qint64 size = QFileInfo(file).size() - 1; size >= 0; --size) {
        QVERIFY(QFile::resize(file, size));
        QVERIFY2(!inspect(file).failure.isEmpty(), qPrintable(QString::number(size)));
    }
}

void tst_FileInspection::everyTruncationOfALogEndsWell()
{
    const QString file = m_files->write("cut.rld", logBytes(TerminalStruct(), canAt(1) + canAt(2)));
    const qint64 wholeSize = QFileInfo(file).size();
    const qint64 entriesStart = wholeSize - 2 * 24;
    for (qint64 size = wholeSize - 1; size >= 0; --size) {
        QVERIFY(QFile::resize(file, size));
        const FileInspection inspection = inspect(file);
        QCOMPARE(inspection.log != nullptr, size >= entriesStart);
        QCOMPARE(inspection.failure.isEmpty(), size >= entriesStart);
        if (inspection.log)
            QCOMPARE(inspection.log->total().entries, quint64(size >= entriesStart + 24 ? 1 : 0));
    }
}

void tst_FileInspection::randomBytesEndWell()
{
    QRandomGenerator random(20240501);
    QByteArray log = logBytes(TerminalStruct(), {});
    const int configurationSize = log.size();
    for (int i = 0; i < 100000; ++i)
        log.append(char(random.bounded(8) == 0 ? 0x55AA >> (8 * (i % 2)) : random.bounded(256)));
    const FileInspection inspection = inspect(m_files->write("noise.rld", log));
    const StreamStatistics total = inspection.log->total();
    QCOMPARE(inspection.failure, QString());
    QVERIFY(total.bytes + inspection.log->skippedBytes()
            <= quint64(log.size() - configurationSize));
    QVERIFY(inspection.log->skippedBytes() != 0);
}

void tst_FileInspection::aPipeIsNotOpened()
{
#ifdef Q_OS_UNIX
    const QString pipe = m_files->path("pipe.rld");
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(inspect(pipe).failure, QStringLiteral("it is not a regular file"));
#else
    QSKIP("There are no named pipes in folders here.");
#endif
}

void tst_FileInspection::aFileWithoutPermissionGivesTheCause()
{
    const QString file = m_files->write("a.rld", logBytes(TerminalStruct(), {}));
    QFile::setPermissions(file, {});
    if (QFile probe(file); probe.open(QIODevice::ReadOnly))
        QSKIP("This user may read everything.");
    const FileInspection inspection = inspect(file);
    QVERIFY(!inspection.configuration);
    QVERIFY(!inspection.failure.isEmpty());
}

QTEST_GUILESS_MAIN(tst_FileInspection)
#include "tst_fileinspection.moc"
