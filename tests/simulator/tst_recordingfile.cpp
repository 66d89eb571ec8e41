#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "MDF4Conversion/rawlog/logfilereader.h"
#include "simulator/logstorage.h"
#include "simulator/recordingfile.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using simulator::RecordingFile;

namespace {

const QString name = QStringLiteral("drive.rld");

QStringList leftIn(const QTemporaryDir &folder)
{
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QStringList listed(const QTemporaryDir &folder)
{
    QStringList names;
    for (const simulator::StoredFile &file : simulator::storedFiles(folder.path()))
        names += file.name;
    return names;
}

int entriesOf(const QString &path)
{
    LogFileReader reader(path);
    int count = 0;
    StdLogEntry entry;
    for (bool atEnd = !reader.isOpen(); !atEnd; entry.clear()) {
        reader.next(entry, atEnd);
        count += !atEnd && entry.isComplete();
    }
    return count;
}

// A log that its program didn't live to finish.
void abandon(const QTemporaryDir &folder, int entries)
{
    RecordingFile file(folder.path(), name);
    QVERIFY(file.begin(TerminalStruct()));
    for (int i = 0; i < entries; ++i)
        QVERIFY(file.add(rawlog::syncStampEntry(quint32(i), 0)));
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

class tst_RecordingFile : public QObject
{
    Q_OBJECT

private slots:
    void theNameHoldsDateTimeAndEvent_data();
    void theNameHoldsDateTimeAndEvent();
    void aLogIsListedOnlyWhenItIsFinished();
    void aTakenNameGetsANumber();
    void anAbandonedLogIsFinishedLater();
    void anAbandonedLogThatEndsInsideAnEntryIsReadable();
    void anAbandonedLogTakesNobodysPlace();
    void aLogThatStillGrowsIsLeftAlone();
    void aLogThatAnotherProgramRecordsIsNotTouched();
    void aLockThatWasLeftAloneIsCleared();
    void withoutAWholeConfigurationNothingIsKept();
    void aMissingFolderIsNamed();
};

void tst_RecordingFile::theNameHoldsDateTimeAndEvent_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *what, const char *event, const char *expected) {
        QTest::newRow(what) << QString::fromUtf8(event) << QString::fromUtf8(expected);
    };
    row("event", "Winter-Test_1.2", "2026-02-03_04-05-06_Winter-Test_1.2.rld");
    row("none", "", "2026-02-03_04-05-06.rld");
    row("path", "../a/b\\c", "2026-02-03_04-05-06_.._a_b_c.rld");
    row("divider of the list", "a;b,c", "2026-02-03_04-05-06_a_b_c.rld");
    row("umlaut", "K\xC3\xA4lte", "2026-02-03_04-05-06_K_lte.rld");
    row("long", "123456789012345678901234", "2026-02-03_04-05-06_12345678901234567890.rld");
}

void tst_RecordingFile::theNameHoldsDateTimeAndEvent()
{
    QFETCH(QString, event);
    QFETCH(QString, expected);
    const QDateTime start(QDate(2026, 2, 3), QTime(5, 5, 6), Qt::OffsetFromUTC, 3600);
    QCOMPARE(simulator::recordingName(start, event), expected);
}

void tst_RecordingFile::aLogIsListedOnlyWhenItIsFinished()
{
    const QTemporaryDir folder;
    RecordingFile file(folder.path(), name);
    QVERIFY(file.begin(TerminalStruct()));
    QVERIFY(file.add(rawlog::syncStampEntry(1, 0)));
    QCOMPARE(listed(folder), QStringList());
    for (const QString &hidden : leftIn(folder))
        QVERIFY(!simulator::storedFilePath(folder.path(), hidden));
    QVERIFY(file.finish());
    QCOMPARE(listed(folder), QStringList{name});
    QCOMPARE(leftIn(folder), QStringList{name});
    QCOMPARE(file.path(), folder.filePath(name));
}

void tst_RecordingFile::aTakenNameGetsANumber()
{
    const QTemporaryDir folder;
    write(folder.filePath(name), "old");
    RecordingFile second(folder.path(), name);
    QVERIFY(second.begin(TerminalStruct()));
    RecordingFile third(folder.path(), name);
    QVERIFY(third.begin(TerminalStruct()));
    QVERIFY(second.finish());
    QVERIFY(third.finish());
    QCOMPARE(leftIn(folder),
             (QStringList{name, QStringLiteral("drive_2.rld"), QStringLiteral("drive_3.rld")}));
    QCOMPARE(QFileInfo(folder.filePath(name)).size(), qint64(3));
}

void tst_RecordingFile::anAbandonedLogIsFinishedLater()
{
    const QTemporaryDir folder;
    abandon(folder, 7);
    QCOMPARE(listed(folder), QStringList());
    simulator::recoverRecordings(folder.path());
    QCOMPARE(leftIn(folder), QStringList{name});
    QCOMPARE(entriesOf(folder.filePath(name)), 7);
}

void tst_RecordingFile::anAbandonedLogThatEndsInsideAnEntryIsReadable()
{
    const QTemporaryDir folder;
    abandon(folder, 7);
    QFile file(folder.filePath(leftIn(folder).first()));
    QVERIFY(file.resize(file.size() - 5));
    simulator::recoverRecordings(folder.path());
    QCOMPARE(entriesOf(folder.filePath(name)), 6);
}

void tst_RecordingFile::anAbandonedLogTakesNobodysPlace()
{
    const QTemporaryDir folder;
    abandon(folder, 2);
    write(folder.filePath(name), "other");
    simulator::recoverRecordings(folder.path());
    QCOMPARE(QFileInfo(folder.filePath(name)).size(), qint64(5));
    QCOMPARE(entriesOf(folder.filePath(QStringLiteral("drive_2.rld"))), 2);
}

void tst_RecordingFile::aLogThatStillGrowsIsLeftAlone()
{
    const QTemporaryDir folder;
    RecordingFile file(folder.path(), name);
    QVERIFY(file.begin(TerminalStruct()));
    QVERIFY(file.add(rawlog::syncStampEntry(1, 0)));
    const QStringList growing = leftIn(folder);
    simulator::recoverRecordings(folder.path());
    QCOMPARE(leftIn(folder), growing);
    QVERIFY(file.add(rawlog::syncStampEntry(2, 0)));
    QVERIFY2(file.finish(), qPrintable(file.failure()));
    QCOMPARE(leftIn(folder), QStringList{name});
    QCOMPARE(entriesOf(folder.filePath(name)), 2);
}

// Both have looked for a free name before either began.
void tst_RecordingFile::aLogThatAnotherProgramRecordsIsNotTouched()
{
    const QTemporaryDir folder;
    RecordingFile first(folder.path(), name);
    RecordingFile second(folder.path(), name);
    QVERIFY(first.begin(TerminalStruct()));
    QVERIFY(!second.begin(TerminalStruct()));
    QVERIFY2(second.failure().endsWith(QStringLiteral(": another program records it")),
             qPrintable(second.failure()));
    second.remove();
    QVERIFY(first.add(rawlog::syncStampEntry(1, 0)));
    QVERIFY2(first.finish(), qPrintable(first.failure()));
    QCOMPARE(leftIn(folder), QStringList{name});
    QCOMPARE(entriesOf(folder.filePath(name)), 1);
}

void tst_RecordingFile::aLockThatWasLeftAloneIsCleared()
{
    const QTemporaryDir folder;
    write(folder.filePath(name + QStringLiteral(".recording.lock")), {});
    simulator::recoverRecordings(folder.path());
    QCOMPARE(leftIn(folder), QStringList());
}

void tst_RecordingFile::withoutAWholeConfigurationNothingIsKept()
{
    const QTemporaryDir folder;
    abandon(folder, 0);
    QFile file(folder.filePath(leftIn(folder).first()));
    QVERIFY(file.resize(file.size() / 2));
    simulator::recoverRecordings(folder.path());
    QCOMPARE(leftIn(folder), QStringList());
}

void tst_RecordingFile::aMissingFolderIsNamed()
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("missing"));
    RecordingFile file(missing, name);
    QVERIFY(!file.begin(TerminalStruct()));
    QVERIFY2(file.failure().contains(QDir::toNativeSeparators(missing)),
             qPrintable(file.failure()));
}

QTEST_GUILESS_MAIN(tst_RecordingFile)
#include "tst_recordingfile.moc"
