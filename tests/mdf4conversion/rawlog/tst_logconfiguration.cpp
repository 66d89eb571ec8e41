#include "MDF4Conversion/rawlog/logconfiguration.h"
#include "config/terminalstruct.h"
#include "tests/mdf4conversion/rawlog/logbytes.h"

#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using logbytes::hex;
using logbytes::TemporaryLog;
using rawlog::ConfigurationBlock;
using rawlog::readConfigurationBlock;

class tst_LogConfiguration : public QObject
{
    Q_OBJECT

private slots:
    void theBlockIsWhatTheFileAnnounces();
    void aFileOfBlockAndNothingElseIsRead();
    void aFileWithoutOneByteOfTheBlockIsNotRead_data();
    void aFileWithoutOneByteOfTheBlockIsNotRead();
    void aSizeOfZeroIsNoConfiguration();
    void aFileShorterThanItsSizeFieldIsNotRead();
    void aBlockAboveTheLimitIsNotRead();
    void aSizeBeyondAnyFileIsNotRead();
    void aMissingFileIsNamedSo();
    void aFolderIsNamedSo();
    void aPipeIsRefusedWithoutWaiting();
    void aBlockIsAnArrayOfTheRecordsFrame();
    void aDecodedBlockHasTheNameOfItsOrigin();
    void anEmptyBlockDecodesToNothing();
    void whatIsEncodedIsDecoded();
    void theMainVersionIsThatOfTheStream();
    void aDamagedBlockDecodesToDefaults_data();
    void aDamagedBlockDecodesToDefaults();
    void everyTruncationOfABlockDecodes();
};

void tst_LogConfiguration::theBlockIsWhatTheFileAnnounces()
{
    const TemporaryLog file(hex("03000000 0A0B0C AA55"));
    const ConfigurationBlock block = readConfigurationBlock(file.path());
    QCOMPARE(block.bytes.toHex(), QByteArray("0a0b0c"));
    QCOMPARE(block.size, 3U);
    QVERIFY(block.failure.isNull());
}

void tst_LogConfiguration::aFileOfBlockAndNothingElseIsRead()
{
    const TemporaryLog file(hex("03000000 0A0B0C"));
    QCOMPARE(readConfigurationBlock(file.path()).bytes.toHex(), QByteArray("0a0b0c"));
}

void tst_LogConfiguration::aFileWithoutOneByteOfTheBlockIsNotRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("N + 3 bytes") << hex("03000000 0A0B");
    QTest::newRow("N + 1 bytes") << hex("03000000");
    QTest::newRow("large N") << hex("00100000 0A0B0C");
}

void tst_LogConfiguration::aFileWithoutOneByteOfTheBlockIsNotRead()
{
    QFETCH(QByteArray, bytes);
    const TemporaryLog file(bytes);
    const ConfigurationBlock block = readConfigurationBlock(file.path());
    QVERIFY(block.bytes.isEmpty());
    QVERIFY(!block.failure.isEmpty());
}

void tst_LogConfiguration::aSizeOfZeroIsNoConfiguration()
{
    const TemporaryLog file(hex("00000000 AA55"));
    const ConfigurationBlock block = readConfigurationBlock(file.path());
    QVERIFY(block.bytes.isEmpty());
    QVERIFY(!block.failure.isEmpty());
}

void tst_LogConfiguration::aFileShorterThanItsSizeFieldIsNotRead()
{
    for (int size = 0; size < 4; ++size) {
        const TemporaryLog file(QByteArray(size, '\1'));
        const ConfigurationBlock block = readConfigurationBlock(file.path());
        QVERIFY(block.bytes.isEmpty());
        QVERIFY(block.failure.contains(QStringLiteral("four bytes")));
    }
}

void tst_LogConfiguration::aBlockAboveTheLimitIsNotRead()
{
    // 64 MiB and one byte, which the sparse file has.
    const TemporaryLog file(hex("01000004"));
    QVERIFY(QFile::resize(file.path(), qint64(80) * 1024 * 1024));
    const ConfigurationBlock block = readConfigurationBlock(file.path());
    QVERIFY(block.bytes.isEmpty());
    QCOMPARE(block.size, 0x4000001U);
    QVERIFY(block.failure.contains(QStringLiteral("67108865")));
}

void tst_LogConfiguration::aSizeBeyondAnyFileIsNotRead()
{
    const TemporaryLog file(hex("FFFFFFFF 0A0B0C"));
    QVERIFY(readConfigurationBlock(file.path()).bytes.isEmpty());
}

void tst_LogConfiguration::aMissingFileIsNamedSo()
{
    const QTemporaryDir folder;
    const auto block = readConfigurationBlock(folder.filePath(QStringLiteral("none.rld")));
    QVERIFY(block.bytes.isEmpty());
    QVERIFY(block.failure.contains(QStringLiteral("does not exist")));
}

void tst_LogConfiguration::aFolderIsNamedSo()
{
    const QTemporaryDir folder;
    const ConfigurationBlock block = readConfigurationBlock(folder.path());
    QVERIFY(block.bytes.isEmpty());
    QVERIFY(block.failure.contains(QStringLiteral("folder")));
}

void tst_LogConfiguration::aPipeIsRefusedWithoutWaiting()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("pipe.rld"));
    QCOMPARE(mkfifo(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR), 0);
    const ConfigurationBlock block = readConfigurationBlock(path);
    QVERIFY(block.bytes.isEmpty());
    QVERIFY(block.failure.contains(QStringLiteral("regular file")));
#else
    QSKIP("Pipes are no files here.");
#endif
}

void tst_LogConfiguration::aBlockIsAnArrayOfTheRecordsFrame()
{
    const QByteArray block = rawlog::encodeConfiguration(TerminalStruct());
    // Length of the array, length of the frame, version.
    const auto rest = quint32(block.size());
    QCOMPARE(qFromBigEndian<quint32>(block.constData()), rest - 4);
    QCOMPARE(qFromBigEndian<quint32>(block.constData() + 4), rest - 8);
    QCOMPARE(qFromBigEndian<quint32>(block.constData() + 8), 6U);
}

void tst_LogConfiguration::aDecodedBlockHasTheNameOfItsOrigin()
{
    const auto configuration = rawlog::decodeConfiguration(logbytes::smallestBlock());
    QCOMPARE(configuration->name, QStringLiteral("Extracted From File"));
}

void tst_LogConfiguration::anEmptyBlockDecodesToNothing()
{
    QVERIFY(!rawlog::decodeConfiguration({}));
}

void tst_LogConfiguration::whatIsEncodedIsDecoded()
{
    TerminalStruct written;
    written.can[11].enabled = 1;
    written.event.event_name = QStringLiteral("Proving ground");
    written.eth.custom_name = QStringLiteral("last item");
    const auto read = rawlog::decodeConfiguration(rawlog::encodeConfiguration(written));
    QVERIFY(*read == written);
}

void tst_LogConfiguration::theMainVersionIsThatOfTheStream()
{
    for (const char *version : {"00000001", "00000005", "00000006", "00000007", "7FFFFFFF"}) {
        const QByteArray block = hex("00000008 00000004") + hex(version);
        const auto configuration = rawlog::decodeConfiguration(block);
        QCOMPARE(configuration->version, hex(version).toHex().toInt(nullptr, 16));
    }
}

void tst_LogConfiguration::aDamagedBlockDecodesToDefaults_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::newRow("array longer than the block") << hex("00000009 00000004 00000006");
    QTest::newRow("null array") << hex("FFFFFFFF");
    QTest::newRow("frame longer than the array") << hex("00000008 00000005 00000006");
    QTest::newRow("one byte") << hex("00");
}

void tst_LogConfiguration::aDamagedBlockDecodesToDefaults()
{
    QFETCH(QByteArray, block);
    const auto configuration = rawlog::decodeConfiguration(block);
    QVERIFY(configuration);
    QCOMPARE(configuration->version, 0);
    QCOMPARE(configuration->rs485[0].voltage, quint16(5500));
}

void tst_LogConfiguration::everyTruncationOfABlockDecodes()
{
    const QByteArray block = rawlog::encodeConfiguration(TerminalStruct());
    for (int size = 1; size < block.size(); ++size)
        QVERIFY(rawlog::decodeConfiguration(block.left(size)));
}

QTEST_GUILESS_MAIN(tst_LogConfiguration)
#include "tst_logconfiguration.moc"
