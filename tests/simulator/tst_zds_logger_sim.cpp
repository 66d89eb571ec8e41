#include "config/configfile.h"
#include "link/protocol/messagetypes.h"
#include "tests/simulator/rawclient.h"
#include "tests/support/simulatedlogger.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#ifndef Q_OS_WIN
#include <csignal>
#endif

namespace {

constexpr int patience_ms = 20'000;

// The program on an address of its own.
class Program
{
public:
    Program()
        : m_address(freeLoopbackAddress().toString())
    {}
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished(patience_ms);
    }

    // Starts it, and gives its first line.
    [[nodiscard]] QString start(QStringList arguments)
    {
        arguments << QStringLiteral("--address") << m_address;
        m_process.start(QStringLiteral(ZDS_LOGGER_SIM), arguments);
        while (!m_process.canReadLine() && m_process.waitForReadyRead(patience_ms)) {
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }

    [[nodiscard]] QHostAddress address() const { return QHostAddress(m_address); }
    [[nodiscard]] QProcess &process() { return m_process; }

private:
    QString m_address;
    QProcess m_process;
};

struct Result
{
    int exitCode;
    QString out;
    QString errors;
};

Result run(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(ZDS_LOGGER_SIM), arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(patience_ms))
        return {-1, {}, {}};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

class tst_ZdsLoggerSim : public QObject
{
    Q_OBJECT

private slots:
    void itTellsWhenAllPortsListen();
    void wrongUsageIs64AndSaysWhy_data();
    void wrongUsageIs64AndSaysWhy();
    void whatCanNotBeOpenedIsNamed_data();
    void whatCanNotBeOpenedIsNamed();
    void anAddressInUseIsNamed();
    void helpNamesEveryFault();
    void theManualNamesEveryFault();
    void optionsReachTheLogger();
    void theConfigurationOfAFileIsHeld();
    void theRecordHoldsBothDirections();
    void itRecordsUnlessToldNotTo_data();
    void itRecordsUnlessToldNotTo();
    void itEndsCleanlyOnRequest_data();
    void itEndsCleanlyOnRequest();
};

void tst_ZdsLoggerSim::itTellsWhenAllPortsListen()
{
    Program program;
    QCOMPARE(program.start({}), QStringLiteral("ready ") + program.address().toString());
    for (const quint16 port : {protocol::commandPort, protocol::dataPort, protocol::filePort})
        QVERIFY(RawClient(program.address(), port).isConnected());
}

void tst_ZdsLoggerSim::wrongUsageIs64AndSaysWhy_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("why");
    QTest::newRow("address of others")
        << QStringList{text("--address"), text("0.0.0.0")} << text("--allow-remote");
    QTest::newRow("no address") << QStringList{text("--address"), text("here")} << text("\"here\"");
    QTest::newRow("version") << QStringList{text("--version"), text("1")} << text("\"1\"");
    QTest::newRow("fault") << QStringList{text("--fault"), text("no-such")} << text("no-such");
    QTest::newRow("load") << QStringList{text("--load"), text("much")} << text("--load");
    QTest::newRow("option") << QStringList{text("--lod")} << text("lod");
    QTest::newRow("argument") << QStringList{text("file.rld")} << text("file.rld");
}

void tst_ZdsLoggerSim::wrongUsageIs64AndSaysWhy()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, why);
    const Result result = run(arguments);
    QCOMPARE(result.exitCode, 64);
    QVERIFY2(result.errors.contains(why), qPrintable(result.errors));
    QVERIFY(result.errors.contains(text("zds-logger-sim --help")));
    QCOMPARE(result.out, QString());
}

void tst_ZdsLoggerSim::whatCanNotBeOpenedIsNamed_data()
{
    QTest::addColumn<QString>("option");
    for (const char *option : {"--config", "--log-dir", "--replay", "--record"})
        QTest::newRow(option) << text(option);
}

void tst_ZdsLoggerSim::whatCanNotBeOpenedIsNamed()
{
    QFETCH(QString, option);
    QTemporaryDir folder;
    const QString missing = folder.filePath(text("no/such"));
    const Result result =
        run({text("--address"), freeLoopbackAddress().toString(), option, missing});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errors.contains(missing), qPrintable(result.errors));
}

void tst_ZdsLoggerSim::anAddressInUseIsNamed()
{
    SimulatedLogger other;
    const QString address = other.address().toString();
    const Result result = run({text("--address"), address});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errors.contains(address), qPrintable(result.errors));
}

void tst_ZdsLoggerSim::helpNamesEveryFault()
{
    const Result result = run({text("--help")});
    QCOMPARE(result.exitCode, 0);
    for (const simulator::FaultRow &row : simulator::faultTable())
        QVERIFY2(result.out.contains(QLatin1String(row.name)), row.name);
}

void tst_ZdsLoggerSim::theManualNamesEveryFault()
{
    QFile file(QStringLiteral(ZDS_SIMULATOR_MAN_DIR "/zds-logger-sim.1"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray manual = file.readAll().replace("\\-", "-");
    for (const simulator::FaultRow &row : simulator::faultTable())
        QVERIFY2(manual.contains("\\fB" + QByteArray(row.name)), row.name);
}

void tst_ZdsLoggerSim::optionsReachTheLogger()
{
    QTemporaryDir folder;
    QFile log(folder.filePath(text("a.rld")));
    QVERIFY(log.open(QIODevice::WriteOnly) && log.write("12345") == 5);
    log.close();
    Program program;
    QVERIFY(program
                .start({text("--version"), text("1.62"), text("--log-dir"), folder.path(),
                        text("--fault"), text("not-ready"), text("--fault"),
                        text("error-reply@get_rtc_status=-7")})
                .startsWith(text("ready")));
    RawClient client(program.address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_get_software_version()"), QByteArray("software_version=1,62"));
    QCOMPARE(client.ask("sys_get_subsystems_rdy()"), QByteArray("sys_subsystems_rdy=0"));
    QCOMPARE(client.ask("get_rtc_status()"), QByteArray("ERROR=-7"));
    QCOMPARE(client.ask("sys_get_logfiles()"), QByteArray("logfiles=a.rld,5;"));
}

void tst_ZdsLoggerSim::theConfigurationOfAFileIsHeld()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(text("held.zdc"));
    TerminalStruct configuration;
    configuration.can[7].listen_only = 1;
    configuration.eth.custom_name = text("held");
    QVERIFY(configfile::save(configuration, path));
    Program program;
    QVERIFY(program.start({text("--config"), path}).startsWith(text("ready")));
    RawClient client(program.address(), protocol::commandPort);
    client.send(protocol::Message{protocol::ConfigurationRequest, 1, {}});
    QCOMPARE(client.message().payload, record::toBytes(configuration));
}

void tst_ZdsLoggerSim::theRecordHoldsBothDirections()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(text("traffic.jsonl"));
    Program program;
    QVERIFY(program.start({text("--record"), path}).startsWith(text("ready")));
    RawClient client(program.address(), protocol::commandPort);
    QCOMPARE(client.ask("get_rtc_status()\r\n"), QByteArray("rtc_status=VALID"));
    const QByteArray gps = record::toBytes(TerminalGpsCfg());
    client.send(protocol::Message{protocol::Gps, 9, gps});
    QCOMPARE(client.message().payload, gps);

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVector<QJsonObject> lines;
    while (!file.atEnd())
        lines.append(QJsonDocument::fromJson(file.readLine()).object());
    QCOMPARE(lines.size(), 4);
    const auto value = [&lines](int line, const char *key) {
        return lines.at(line).value(QLatin1String(key)).toVariant().toString();
    };
    QCOMPARE(value(0, "from"), text("tool"));
    QCOMPARE(value(0, "text"), text("get_rtc_status()\r\n"));
    QCOMPARE(value(1, "from"), text("logger"));
    QCOMPARE(value(1, "text"), text("rtc_status=VALID\r\n"));
    QCOMPARE(value(1, "sequence"), value(0, "sequence"));
    QCOMPARE(value(2, "type"), text("4"));
    QCOMPARE(value(2, "sequence"), text("9"));
    QCOMPARE(value(2, "payload"), QString::fromLatin1(gps.toHex()));
    QCOMPARE(value(3, "from"), text("logger"));
    QCOMPARE(value(3, "bytes"), QString::number(gps.size()));
}

void tst_ZdsLoggerSim::itRecordsUnlessToldNotTo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("logs");
    QTest::newRow("by itself") << QStringList() << 1;
    QTest::newRow("told not to") << QStringList{text("--no-logging")} << 0;
}

void tst_ZdsLoggerSim::itRecordsUnlessToldNotTo()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, logs);
    const QTemporaryDir folder;
    Program program;
    QVERIFY(!program.start(arguments << text("--log-dir") << folder.path()).isEmpty());
    QTRY_COMPARE(QDir(folder.path()).entryList({text("*.recording")}, QDir::Files).size(), logs);
    RawClient client(program.address(), protocol::commandPort);
    QCOMPARE(client.ask("sys_disable_stop_logging()"), QByteArray("OK"));
    const QByteArray list = client.ask("sys_get_logfiles()");
    QCOMPARE(list.count(".rld,"), logs);
}

void tst_ZdsLoggerSim::itEndsCleanlyOnRequest_data()
{
#ifndef Q_OS_WIN
    QTest::addColumn<int>("signal");
    QTest::newRow("interrupt") << SIGINT;
    QTest::newRow("terminate") << SIGTERM;
#else
    QSKIP("A Windows console program can't be asked to end by another process.");
#endif
}

void tst_ZdsLoggerSim::itEndsCleanlyOnRequest()
{
#ifndef Q_OS_WIN
    QFETCH(int, signal);
    Program program;
    QVERIFY(program.start({}).startsWith(text("ready")));
    RawClient client(program.address(), protocol::dataPort);
    QVERIFY(!client.receive().isEmpty());
    ::kill(pid_t(program.process().processId()), signal);
    QVERIFY(program.process().waitForFinished(patience_ms));
    QCOMPARE(program.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.process().exitCode(), 0);
    QCOMPARE(program.process().readAllStandardError(), QByteArray());
    QVERIFY(client.waitForEnd());
#endif
}

QTEST_GUILESS_MAIN(tst_ZdsLoggerSim)
#include "tst_zds_logger_sim.moc"
