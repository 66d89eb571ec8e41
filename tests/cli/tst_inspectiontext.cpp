#include "cli/fileinspection.h"
#include "cli/inspectiontext.h"
#include "samplelog.h"
#include "temporaryfiles.h"

#include <QtTest>

#include <memory>

namespace {

FileInspection inspect(const QString &path)
{
    return inspectFile(path, InspectionScope::Everything, [](qint64, qint64) { return true; });
}

} // namespace

class tst_InspectionText : public QObject
{
    Q_OBJECT

private slots:
    void aLogIsShownInTables();
    void aDefaultConfigurationIsShort();
    void moreThanTwentyStretchesAreSummedUp();
    void percentSignsInNamesStay();
    void anUnreadableFileHasNoText();
};

void tst_InspectionText::aLogIsShownInTables()
{
    const TemporaryFiles files;
    const QString file =
        files.write("drive.rld", logBytes(*sampleConfiguration(), sampleEntries()));
    const QString text = inspectionText(inspect(file)).replace(files.folder(), QStringLiteral("."));
    const QString expected =
        QString::fromUtf8(R"(./drive.rld: raw log, 3440 bytes, configuration version 6

Configuration
  Event measurement  Brake ?[31mtest
  Auxiliary supply   terminal 15 controled
  Logging starts     after 0 s
  GPS                on

CAN
  Channel  State  Mode               Bit rate           Data phase        Filters  Signals  DAQ lists  AIM  Options
  CAN 2    on     CAN-FD, fast data  1000 kbit/s, 75 %  500 kbit/s, 75 %        1        1               1  120 ohm
  CAN 5    off    CAN                500 kbit/s, 75 %                                               1

CAN filters
  Channel  Type     On match  Bits   ID 1   ID 2
  CAN 2    Classic  reject      11  0x100  0x7FF

DBC signals
  Channel      Message  DLC  Signal  Start bit  Bits  Order  Sign      Factor  Offset  Minimum  Maximum  Unit  Use
  CAN 2    0x18FEF100x    8  Speed           8    16  Intel  unsigned    0.01       0        0   655.35  km/h  record

AIM modules
  Channel  Message  Module  Bytes  Channels  Samples  Sample bytes  Gap bytes  Order  Sign    Unit
  CAN 2      0x321  DMS         8         2        2             2          0  Intel  signed  mV

CAN 5: CCP/XCP
  A2L file     ecu.a2l
  State        on
  Interface    CCP or XCP on CAN
  Identifiers  send 0x700, receive 0x701x, 500000 bit/s
  Protocol     0x201

CAN 5: events
  Channel  Event       Unit code  Period
        3  10 ms task          6      10

CAN 5: DAQ lists
  No.  DAQ list  Event  Identifier  First PID  ODTs  of  ODT bytes  Elements  Bytes  Measurements
    0  fast          3       0x702         60     1   4          7         1      4             1

CAN 5: measurements
  Measurement  Type             Address  Conversion  Lower limit  Upper limit
  torque       FLOAT32_IEEE  0x80001000  Nm                    0          500

CAN 5: conversions
  Conversion  Kind    Unit  Content
  Nm          LINEAR  Nm    0.5 x - 10

RS485
  Port     Supply    Level  D4MOD  Mode          Rate  Value
  RS485 1  on      5500 mV  on     high speed  20 kHz   1000

EtherCAT
  Master      State  Sample rate  Slaves
  EtherCAT 0  on             100       1

EtherCAT 0: signals
  Slave  Name      Signal  Start bit  Bits  Type code  Multiplier  Offset  MDF4
      1  Terminal  Force           0    32          4           1       0  yes

Ethernet
  Name       Gateway
  Modules    XCP
  Tunneling  off, port 56789, local 169.254.174.64, fallback 169.254.86.68, flags 0x0
  Mirroring  off, ingress 0xF, egress 0xF

Ethernet: tunneling filters
  Channel  From ID  To ID
        2    0x100  0x1FF

Not in use
  CAN 0, 1, 3, 4, 6 to 11; RS485 0, 2 to 9; EtherCAT 1 to 7; Accelerometer; LTE

Log
  Entries          7, 156 bytes
  Start            2023-11-14T22:13:20.123Z
  First time       1.000000 s on the logger's clock
  Last time        5.000000 s on the logger's clock
  Duration         4.000000 s, 1.75 entries a second
  Longest silence  2.400000 s at 0.600000 s

Entries
  Source           Entries  Bytes  Per second  First [s]  Last [s]  Gaps > 1.5 s  Longest gap
  CAN 2                  2     48        0.50   0.500000  3.000000             1  2.500000 s at 0.500000 s
  Accelerometer 0        1     48        0.25   0.600000  0.600000             0
  Sync stamps 0          2     24        0.50   0.000000  4.000000             0
  UTC start 0            1     20        0.25
  Counters 0             1     16        0.25

Processors
  Processor  Lowest [°C]  Highest [°C]  Ring buffer overflows  Restarts  Sync stamps  Longest interval [s]
          0           41            41                      0         1            2              4.000000

Skipped, 25 bytes in 2 stretches
  Position  Bytes
      3403      5
      3420     20
)");
    QCOMPARE(text.split(QLatin1Char('\n')), expected.split(QLatin1Char('\n')));
}

void tst_InspectionText::aDefaultConfigurationIsShort()
{
    FileInspection inspection;
    inspection.file = QStringLiteral("a.zdc");
    inspection.size = 2613;
    inspection.kind = FileHead::Kind::Configuration;
    inspection.configuration = std::make_unique<TerminalStruct>();
    inspection.configuration->version = 5;
    QCOMPARE(inspectionText(inspection),
             QStringLiteral("a.zdc: configuration, 2613 bytes, configuration version 5\n"
                            "\n"
                            "Configuration\n"
                            "  Auxiliary supply  always on\n"
                            "  Logging starts    after 0 s\n"
                            "\n"
                            "Not in use\n"
                            "  CAN 0 to 11; RS485 0 to 9; EtherCAT 0 to 7; Ethernet; "
                            "Accelerometer; GPS; LTE\n"));
}

void tst_InspectionText::moreThanTwentyStretchesAreSummedUp()
{
    FileInspection inspection;
    inspection.kind = FileHead::Kind::RawLog;
    inspection.configuration = std::make_unique<TerminalStruct>();
    inspection.log = std::make_unique<LogStatistics>();
    for (int i = 0; i < 25; ++i)
        inspection.log->takeSkipped(1000 + i, 3);
    const QString text = inspectionText(inspection);
    QVERIFY(text.contains(QStringLiteral("Skipped, 75 bytes in 25 stretches\n")));
    QVERIFY(text.contains(QStringLiteral("      1019      3\n")));
    QVERIFY(!text.contains(QStringLiteral("1020")));
    QVERIFY(text.endsWith(QStringLiteral("  ... and 5 more\n")));
}

void tst_InspectionText::percentSignsInNamesStay()
{
    FileInspection inspection;
    inspection.file = QStringLiteral("100%3.zdc");
    inspection.kind = FileHead::Kind::Configuration;
    inspection.configuration = std::make_unique<TerminalStruct>();
    inspection.configuration->trigger.mode = 1;
    inspection.configuration->trigger.signal.name = QStringLiteral("Load %2");
    const QString text = inspectionText(inspection);
    QVERIFY(text.startsWith(QStringLiteral("100%3.zdc: configuration, 0 bytes")));
    QVERIFY(text.contains(QStringLiteral("when Load %2 on CAN 0 reaches 0\n")));
}

void tst_InspectionText::anUnreadableFileHasNoText()
{
    QCOMPARE(inspectionText(FileInspection()), QString());
}

QTEST_GUILESS_MAIN(tst_InspectionText)
#include "tst_inspectiontext.moc"
