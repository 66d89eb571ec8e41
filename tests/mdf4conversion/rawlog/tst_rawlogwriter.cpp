#include "MDF4Conversion/rawlog/logconfiguration.h"
#include "MDF4Conversion/rawlog/rawlogfile.h"
#include "MDF4Conversion/rawlog/rawlogwriter.h"
#include "config/terminalstruct.h"
#include "tests/mdf4conversion/rawlog/logbytes.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QtTest>

namespace {

// Takes so many bytes and no more.
class FullDevice : public QIODevice
{
public:
    explicit FullDevice(qint64 room)
        : m_room(room)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    int writes = 0;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 size) override
    {
        ++writes;
        const qint64 taken = qMin(size, m_room);
        m_room -= taken;
        return taken == size ? size : -1;
    }

private:
    qint64 m_room;
};

} // namespace

class tst_RawLogWriter : public QObject
{
    Q_OBJECT

private slots:
    void aLogIsSizeBlockAndEntries();
    void nothingIsWrittenAfterAFailure();
    void aFailureIsToldAtAnyByte();
    void aFileAppearsWhenItIsFinished();
    void anUnfinishedFileLeavesNothing();
    void anUnfinishedFileLeavesTheOldOne();
    void aFileInAMissingFolderIsNamed();
    void aFolderInThePlaceOfTheFileIsNamed();
};

void tst_RawLogWriter::aLogIsSizeBlockAndEntries()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    RawLogWriter writer(buffer);
    const TerminalStruct configuration;
    QVERIFY(writer.writeConfiguration(configuration));
    QVERIFY(writer.writeEntry(logbytes::canEntry()));
    QVERIFY(writer.ok());
    const QByteArray block = rawlog::encodeConfiguration(configuration);
    QCOMPARE(buffer.data(), logbytes::log(logbytes::canEntry(), block));
}

void tst_RawLogWriter::nothingIsWrittenAfterAFailure()
{
    FullDevice device(20);
    RawLogWriter writer(device);
    QVERIFY(writer.writeEntry(logbytes::statusEntry(2)));
    QVERIFY(!writer.writeEntry(logbytes::statusEntry(40)));
    const int writes = device.writes;
    QVERIFY(!writer.writeEntry(logbytes::statusEntry(0)));
    QCOMPARE(device.writes, writes);
    QVERIFY(!writer.ok());
}

void tst_RawLogWriter::aFailureIsToldAtAnyByte()
{
    const TerminalStruct configuration;
    const int size = 4 + rawlog::encodeConfiguration(configuration).size();
    for (int room = 0; room <= size; room += 97) {
        FullDevice device(room);
        QVERIFY(!RawLogWriter(device).writeConfiguration(configuration));
    }
    FullDevice device(size);
    QVERIFY(RawLogWriter(device).writeConfiguration(configuration));
}

void tst_RawLogWriter::aFileAppearsWhenItIsFinished()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("new.rld"));
    RawLogFile file(path);
    QVERIFY(file.begin(TerminalStruct()));
    QVERIFY(file.add(logbytes::canEntry()));
    QVERIFY(!QFileInfo::exists(path));
    QVERIFY(file.finish());
    QVERIFY(QFileInfo::exists(path));
    QVERIFY(file.failure().isNull());
}

void tst_RawLogWriter::anUnfinishedFileLeavesNothing()
{
    const QTemporaryDir folder;
    {
        RawLogFile file(folder.filePath(QStringLiteral("new.rld")));
        QVERIFY(file.begin(TerminalStruct()));
        QVERIFY(file.add(logbytes::canEntry()));
    }
    QVERIFY(QDir(folder.path()).isEmpty());
}

void tst_RawLogWriter::anUnfinishedFileLeavesTheOldOne()
{
    const logbytes::TemporaryLog old("as it was");
    {
        RawLogFile file(old.path());
        QVERIFY(file.begin(TerminalStruct()));
    }
    QFile kept(old.path());
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("as it was"));
}

void tst_RawLogWriter::aFileInAMissingFolderIsNamed()
{
    const QTemporaryDir folder;
    RawLogFile file(folder.filePath(QStringLiteral("none/new.rld")));
    QVERIFY(!file.begin(TerminalStruct()));
    QVERIFY(!file.add(logbytes::canEntry()));
    QVERIFY(!file.finish());
    QVERIFY(file.failure().contains(QStringLiteral("new.rld")));
    QVERIFY(file.failure().size() > folder.path().size() + int(qstrlen("/none/new.rld: ")));
}

void tst_RawLogWriter::aFolderInThePlaceOfTheFileIsNamed()
{
    const QTemporaryDir folder;
    RawLogFile file(folder.path());
    QVERIFY(!file.begin(TerminalStruct()));
    QVERIFY(file.failure().contains(QFileInfo(folder.path()).fileName()));
}

QTEST_GUILESS_MAIN(tst_RawLogWriter)
#include "tst_rawlogwriter.moc"
