#include "config/configfile.h"
#include "tests/support/goldenbytes.h"
#include "tests/support/recordsamples.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

class tst_ConfigFile : public QObject
{
    Q_OBJECT

private slots:
    void checksumIsTheSumOfSignedBytes_data();
    void checksumIsTheSumOfSignedBytes();
    void checksumWrapsAt32Bits();

    void aDefaultConfigurationIsSavedToTheGoldenFile();
    void theGoldenFileLoadsAsADefaultConfiguration();
    void whatWasSavedLoadsTheSame();
    void aSavedFileHoldsLengthPayloadAndChecksum();
    void aChangedByteFailsTheLoadAndLeavesTheRecord();
    void aPayloadWithTheSumZeroCarriesOneAndLoads();
    void anEmptyPayloadCarriesOneAndLoads();
    void version1LeavesTriggerAndVoltageAtTheirDefaults();
    void aDividerOf1000LoadsAs512();
    void aLoadTellsTheVersionAndASaveWritesTheCurrentOne();
    void theOutcomeOfTheChecksumIsLogged();

    void aFileCutAtAnyByteFailsTheLoad();
    void bytesBehindTheChecksumAreIgnored();
    void aLengthBeyondTheFileFailsTheLoad_data();
    void aLengthBeyondTheFileFailsTheLoad();
    void aGiantFileIsNotRead();
    void aMissingFileFailsTheLoad();
    void aFolderFailsTheLoad();
    void aPipeFailsTheLoadWithoutWaiting();
    void anUnreadableFileFailsTheLoad();

    void savingReplacesTheFileWhole();
    void savingIntoAMissingFolderFails();
    void savingIntoAReadOnlyFolderFailsAndKeepsTheOldFile();
    void savingOverAFolderFails();
    void savingOverAPipeFailsAndKeepsIt();
    void aWriteThatFailsLeavesTheOldFileAndNoOther();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    QString written(const QByteArray &bytes) const;
    QString writtenConfig(const QByteArray &payload) const;

    QTemporaryDir m_folder;
};

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray goldenFile()
{
    return golden::file(QStringLiteral("config/default.zdc"));
}

bool isRoot()
{
#ifdef Q_OS_UNIX
    return geteuid() == 0;
#else
    return false;
#endif
}

} // namespace

// A file with the bytes.
QString tst_ConfigFile::written(const QByteArray &bytes) const
{
    const QString name = path("made.zdc");
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        QTest::qFail("can't write the test file", __FILE__, __LINE__);
    return name;
}

// A configuration file with the payload and its checksum, summed up here once more.
QString tst_ConfigFile::writtenConfig(const QByteArray &payload) const
{
    int sum = 0;
    for (const char byte : payload)
        sum += static_cast<signed char>(byte);
    return written(golden::framed(payload) + golden::word(sum == 0 ? 1u : quint32(sum)));
}

void tst_ConfigFile::checksumIsTheSumOfSignedBytes_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<qint32>("sum");
    QTest::newRow("empty") << QByteArray() << 1;
    QTest::newRow("one zero") << QByteArray::fromHex("00") << 1;
    QTest::newRow("sum of zero") << QByteArray::fromHex("01ff") << 1;
    QTest::newRow("positive") << QByteArray::fromHex("7f01") << 128;
    QTest::newRow("negative") << QByteArray::fromHex("80") << -128;
    QTest::newRow("mixed") << QByteArray::fromHex("ff fe 01") << -2;
}

void tst_ConfigFile::checksumIsTheSumOfSignedBytes()
{
    QFETCH(QByteArray, payload);
    QFETCH(qint32, sum);
    QCOMPARE(configfile::checksum(payload), sum);
}

void tst_ConfigFile::checksumWrapsAt32Bits()
{
    // 17 Mi times -128 is -0x88000000.
    QCOMPARE(configfile::checksum(QByteArray(17 * 1024 * 1024, '\x80')), qint32(0x78000000));
}

void tst_ConfigFile::aDefaultConfigurationIsSavedToTheGoldenFile()
{
    QVERIFY(TerminalStruct().write_to_file(path("default.zdc")));
    QCOMPARE(contentOf(path("default.zdc")).toHex(' '), goldenFile().toHex(' '));
}

void tst_ConfigFile::theGoldenFileLoadsAsADefaultConfiguration()
{
    auto terminal = sample::record<TerminalStruct>();
    QVERIFY(terminal.read_from_file(written(goldenFile())));
    QVERIFY(terminal == TerminalStruct());
}

void tst_ConfigFile::whatWasSavedLoadsTheSame()
{
    const auto saved = sample::record<TerminalStruct>();
    QVERIFY(saved.write_to_file(path("sample.zdc")));
    TerminalStruct loaded;
    QVERIFY(loaded.read_from_file(path("sample.zdc")));
    QVERIFY(loaded == saved);
    QVERIFY(loaded.write_to_file(path("again.zdc")));
    QCOMPARE(contentOf(path("again.zdc")).toHex(), contentOf(path("sample.zdc")).toHex());
}

void tst_ConfigFile::aSavedFileHoldsLengthPayloadAndChecksum()
{
    const auto saved = sample::record<TerminalStruct>(0);
    QVERIFY(saved.write_to_file(path("sample.zdc")));
    const QByteArray payload = golden::bytes(QStringLiteral("config/terminalstruct.hex"));
    QCOMPARE(contentOf(path("sample.zdc")), contentOf(writtenConfig(payload)));
}

void tst_ConfigFile::aChangedByteFailsTheLoadAndLeavesTheRecord()
{
    QByteArray bytes = goldenFile();
    bytes[100] = char(bytes.at(100) + 1);
    auto terminal = sample::record<TerminalStruct>();
    QString error;
    QVERIFY(!configfile::load(terminal, written(bytes), &error));
    QVERIFY(terminal == sample::record<TerminalStruct>());
    QVERIFY(error.contains(QLatin1String("made.zdc")));
    QVERIFY(error.contains(QLatin1String("checksum")));
}

void tst_ConfigFile::aPayloadWithTheSumZeroCarriesOneAndLoads()
{
    // Length 6, version 1, can frames missing; the last byte brings the sum to 0.
    const QByteArray payload =
        QByteArray::fromHex("00000006 00000001 7f 7a") + QByteArray(2, '\x80');
    QCOMPARE(configfile::checksum(payload), 1);
    TerminalStruct terminal;
    QVERIFY(terminal.read_from_file(written(golden::framed(payload) + golden::word(1))));
    QCOMPARE(terminal.version, 1);
}

void tst_ConfigFile::anEmptyPayloadCarriesOneAndLoads()
{
    TerminalStruct terminal;
    QVERIFY(terminal.read_from_file(written(golden::word(0) + golden::word(1))));
    QCOMPARE(terminal.version, 0);
}

void tst_ConfigFile::version1LeavesTriggerAndVoltageAtTheirDefaults()
{
    auto terminal = sample::record<TerminalStruct>();
    QVERIFY(terminal.read_from_file(
        writtenConfig(golden::bytesOfVersion(QStringLiteral("config/terminalstruct.hex"), 1))));
    QCOMPARE(terminal.version, 1);
    QCOMPARE(terminal.trigger.mode, quint8(0));
    QCOMPARE(terminal.trigger.digital_number, quint8(1));
    QCOMPARE(terminal.trigger.delay, 0);
    for (const TerminalRs485Cfg &port : terminal.rs485)
        QCOMPARE(port.voltage, quint16(5500));
}

void tst_ConfigFile::aDividerOf1000LoadsAs512()
{
    TerminalStruct saved;
    saved.can[4].clk_div = 1000;
    QVERIFY(saved.write_to_file(path("divider.zdc")));
    TerminalStruct loaded;
    QVERIFY(loaded.read_from_file(path("divider.zdc")));
    QCOMPARE(loaded.can[4].clk_div, quint16(512));
    QCOMPARE(loaded.can[3].clk_div, quint16(15));
}

void tst_ConfigFile::aLoadTellsTheVersionAndASaveWritesTheCurrentOne()
{
    TerminalStruct terminal;
    QVERIFY(terminal.read_from_file(
        writtenConfig(golden::bytesOfVersion(QStringLiteral("config/terminalstruct.hex"), 4))));
    QCOMPARE(terminal.version, 4);
    QVERIFY(terminal.write_to_file(path("current.zdc")));
    QVERIFY(terminal.read_from_file(path("current.zdc")));
    QCOMPARE(terminal.version, 6);
}

void tst_ConfigFile::theOutcomeOfTheChecksumIsLogged()
{
    const QByteArray payload = golden::word(1);
    TerminalStruct terminal;
    QTest::ignoreMessage(QtDebugMsg, "TerminalStruct::read_from_file: Checksum matches 1 1");
    QVERIFY(terminal.read_from_file(written(golden::framed(payload) + golden::word(1))));
    QTest::ignoreMessage(QtDebugMsg, "TerminalStruct::read_from_file: Checksum ERROR 77 1");
    QVERIFY(!terminal.read_from_file(written(golden::framed(payload) + golden::word(77))));
}

void tst_ConfigFile::aFileCutAtAnyByteFailsTheLoad()
{
    const QByteArray bytes = goldenFile();
    auto terminal = sample::record<TerminalStruct>(0);
    for (int size = 0; size < bytes.size(); size += 1 + size / 50) {
        QString error;
        QVERIFY2(!configfile::load(terminal, written(bytes.left(size)), &error),
                 qPrintable(QStringLiteral("cut at %1").arg(size)));
        QVERIFY(error.contains(QLatin1String("cut short")));
    }
    QVERIFY(!terminal.read_from_file(written(bytes.left(bytes.size() - 1))));
    QVERIFY(terminal == sample::record<TerminalStruct>(0));
}

void tst_ConfigFile::bytesBehindTheChecksumAreIgnored()
{
    TerminalStruct terminal;
    QVERIFY(terminal.read_from_file(written(goldenFile() + "more")));
}

void tst_ConfigFile::aLengthBeyondTheFileFailsTheLoad_data()
{
    QTest::addColumn<quint32>("length");
    QTest::newRow("one more than there is") << quint32(goldenFile().size());
    QTest::newRow("2 GiB") << 0x80000000u;
    QTest::newRow("almost 4 GiB") << 0xFFFFFFFEu;
    QTest::newRow("null") << 0xFFFFFFFFu;
}

void tst_ConfigFile::aLengthBeyondTheFileFailsTheLoad()
{
    QFETCH(quint32, length);
    TerminalStruct terminal;
    QVERIFY(!terminal.read_from_file(written(goldenFile().replace(0, 4, golden::word(length)))));
}

void tst_ConfigFile::aGiantFileIsNotRead()
{
    const QString name = path("giant.zdc");
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(golden::word(0x7FFFFFF0));
    if (!file.resize(qint64(3) << 30))
        QSKIP("the disk has no sparse files");
    TerminalStruct terminal;
    QString error;
    QVERIFY(!configfile::load(terminal, name, &error));
    QVERIFY(error.contains(QLatin1String("too large")));
}

void tst_ConfigFile::aMissingFileFailsTheLoad()
{
    TerminalStruct terminal;
    QString error;
    QVERIFY(!configfile::load(terminal, path("missing.zdc"), &error));
    QVERIFY(error.contains(QLatin1String("missing.zdc")));
    QVERIFY(!terminal.read_from_file(path("missing.zdc")));
}

void tst_ConfigFile::aFolderFailsTheLoad()
{
    TerminalStruct terminal;
    QString error;
    QVERIFY(!configfile::load(terminal, m_folder.path(), &error));
    QVERIFY(error.contains(QLatin1String("not a file")));
}

void tst_ConfigFile::aPipeFailsTheLoadWithoutWaiting()
{
#ifdef Q_OS_UNIX
    const QString name = path("pipe.zdc");
    QCOMPARE(mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    TerminalStruct terminal;
    QVERIFY(!terminal.read_from_file(name));
#else
    QSKIP("pipes have no file names here");
#endif
}

void tst_ConfigFile::anUnreadableFileFailsTheLoad()
{
    if (isRoot())
        QSKIP("root reads every file");
    const QString name = written(goldenFile());
    QFile::setPermissions(name, QFile::WriteOwner);
    TerminalStruct terminal;
    const bool loaded = terminal.read_from_file(name);
    QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner);
    QVERIFY(!loaded);
}

void tst_ConfigFile::savingReplacesTheFileWhole()
{
    const QString name = written(QByteArray(100000, 'x'));
    QVERIFY(TerminalStruct().write_to_file(name));
    QCOMPARE(contentOf(name).size(), goldenFile().size());
}

void tst_ConfigFile::savingIntoAMissingFolderFails()
{
    const QString name = path("missing/config.zdc");
    QString error;
    QVERIFY(!configfile::save(TerminalStruct(), name, &error));
    QVERIFY(error.contains(name));
    QVERIFY(!TerminalStruct().write_to_file(name));
}

void tst_ConfigFile::savingIntoAReadOnlyFolderFailsAndKeepsTheOldFile()
{
    if (isRoot())
        QSKIP("root writes everywhere");
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("locked")));
    const QString folder = path("locked");
    const QString name = folder + QStringLiteral("/config.zdc");
    QVERIFY(TerminalStruct().write_to_file(name));
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    QString error;
    const bool saved = configfile::save(sample::record<TerminalStruct>(), name, &error);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY(!saved);
    QVERIFY(error.contains(name));
    QCOMPARE(contentOf(name).toHex(), goldenFile().toHex());
}

void tst_ConfigFile::savingOverAFolderFails()
{
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("folder.zdc")));
    QVERIFY(!TerminalStruct().write_to_file(path("folder.zdc")));
    QVERIFY(QDir(path("folder.zdc")).exists());
}

void tst_ConfigFile::savingOverAPipeFailsAndKeepsIt()
{
#ifdef Q_OS_UNIX
    const QString name = path("target.zdc");
    const QByteArray encoded = QFile::encodeName(name);
    QCOMPARE(mkfifo(encoded.constData(), 0600), 0);
    QVERIFY(!TerminalStruct().write_to_file(name));
    struct stat status = {};
    QCOMPARE(stat(encoded.constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
#else
    QSKIP("pipes have no file names here");
#endif
}

void tst_ConfigFile::aWriteThatFailsLeavesTheOldFileAndNoOther()
{
#ifdef Q_OS_UNIX
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("config.zdc"));
    QVERIFY(TerminalStruct().write_to_file(name));

    // No file may grow beyond 1000 bytes while this save runs, as on a full disk.
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit oldLimit = {};
    getrlimit(RLIMIT_FSIZE, &oldLimit);
    const rlimit limit = {1000, oldLimit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    QString error;
    const bool saved = configfile::save(sample::record<TerminalStruct>(), name, &error);
    setrlimit(RLIMIT_FSIZE, &oldLimit);
    std::signal(SIGXFSZ, oldHandler);

    QVERIFY(!saved);
    QVERIFY(error.contains(name));
    QCOMPARE(contentOf(name).toHex(), goldenFile().toHex());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
#else
    QSKIP("file sizes can't be limited here");
#endif
}

QTEST_GUILESS_MAIN(tst_ConfigFile)
#include "tst_configfile.moc"
