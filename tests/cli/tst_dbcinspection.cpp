#include "cli/console.h"
#include "cli/fileinspection.h"
#include "cli/inspectionjson.h"
#include "cli/inspectionrun.h"
#include "cli/inspectiontext.h"
#include "config/record/jsonwriter.h"
#include "temporaryfiles.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

const QByteArray engineFile = R"(BO_ 291 Engine: 8 ECU1
 SG_ Page M : 0|4@1+ (1,0) [0|15] "" ECU2
 SG_ Speed m3 : 23|16@0- (0.25,-40) [-40|1e3] "rpm" ECU2

BO_ 2147483939 Tank: 4 ECU1
 SG_ Level : 0|12@1+ (0.1,0) [0|409.5] "%" ECU1

 SG_ Orphan : 0|8@1+ (1,0) [0|0] "" ECU2
CM_ SG_ 291 Speed "of the
engine";
VAL_ 291 Page 0 "first" ;
)";

bool readOn(qint64, qint64)
{
    return true;
}

FileInspection inspect(const QString &path)
{
    return inspectFile(path, InspectionScope::Everything, readOn);
}

QJsonObject jsonOf(const FileInspection &inspection)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    JsonWriter json(out);
    writeInspectionJson(json, inspection);
    return QJsonDocument::fromJson(out.data()).object();
}

} // namespace

// DBC files as zds-inspect shows them.
class tst_DbcInspection : public QObject
{
    Q_OBJECT

private slots:
    void messagesAreShownWithTheirSignals();
    void moreFiltersThanTheHardwareHasAreShown();
    void namesOutOfTheFileCanNotControlTheTerminal();
    void jsonHoldsTheSignalsUnderTheirFieldNames();
    void jsonOfARefusedFileHoldsTheExactError();
    void aRefusedFileHasNoText();
    void aFileWithoutSignalsIsAWarning_data();
    void aFileWithoutSignalsIsAWarning();
    void aRefusalToGoOnCancels();
    void aDatabaseHoldsNoConfigurationToSave();

private:
    TemporaryFiles m_files;
};

void tst_DbcInspection::messagesAreShownWithTheirSignals()
{
    const QString file = m_files.write("engine.dbc", engineFile);
    QString text = inspectionText(inspect(file)).replace(m_files.folder(), QStringLiteral("."));
    const QString expected = QStringLiteral(R"(./engine.dbc: DBC file, 302 bytes

Database
  Messages     2
  Signals      3
  Filters      2 for a selection of all signals, the hardware has 128
  Passed over  1 signal outside of a message, 1 value table

Signals
  Message  DLC  Signal  Start bit  Bits  Order     Sign      Factor  Offset  Minimum  Maximum  Unit  Multiplex    Description
    0x123    8  Page            0     4  Intel     unsigned       1       0        0       15        multiplexor
                Speed          23    16  Motorola  signed      0.25     -40      -40     1000  rpm   at 3         of the engine
   0x123x    4  Level           0    12  Intel     unsigned     0.1       0        0    409.5  %
)");
    QCOMPARE(text, expected);
}

void tst_DbcInspection::moreFiltersThanTheHardwareHasAreShown()
{
    QByteArray bytes;
    for (int i = 1; i <= 129; ++i)
        bytes +=
            "BO_ " + QByteArray::number(i)
            + " M: 8 X\n SG_ A : 0|8@1+ (1,0) [0|0] \"\" X\n SG_ B : 8|8@1+ (1,0) [0|0] \"\" X\n";
    const FileInspection inspection = inspect(m_files.write("many.dbc", bytes));
    QVERIFY(inspectionText(inspection)
                .contains(QStringLiteral(
                    "Filters   129 for a selection of all signals, the hardware has 128\n")));
    QCOMPARE(jsonOf(inspection)
                 .value(QStringLiteral("summary"))
                 .toObject()
                 .value(QStringLiteral("filters"))
                 .toInt(),
             129);
}

void tst_DbcInspection::namesOutOfTheFileCanNotControlTheTerminal()
{
    const QString text = inspectionText(inspect(m_files.write(
        "hostile.dbc", "BO_ 1 M: 8 X\n SG_ \x1b[31mRed : 0|8@1+ (1,0) [0|0] \"\x07\" X\n")));
    QVERIFY(text.contains(QStringLiteral("Red")));
    QVERIFY(!text.contains(QChar(0x1b)));
    QVERIFY(!text.contains(QChar(0x07)));
}

void tst_DbcInspection::jsonHoldsTheSignalsUnderTheirFieldNames()
{
    const QJsonObject json = jsonOf(inspect(m_files.write("engine.dbc", engineFile)));
    QCOMPARE(json.value(QStringLiteral("kind")).toString(), QStringLiteral("dbc"));
    QCOMPARE(json.value(QStringLiteral("ok")), QJsonValue(true));
    QCOMPARE(json.value(QStringLiteral("error")).toString(), QString());
    const QJsonArray records = json.value(QStringLiteral("signals")).toArray();
    QCOMPARE(records.size(), 3);
    const QJsonObject expected{{QStringLiteral("name"), QStringLiteral("Speed")},
                               {QStringLiteral("unit"), QStringLiteral("rpm")},
                               {QStringLiteral("description"), QStringLiteral("of the\r\nengine")},
                               {QStringLiteral("mux_kind"), 1},
                               {QStringLiteral("mux_value"), 3},
                               {QStringLiteral("start_bit"), 23},
                               {QStringLiteral("bit_length"), 16},
                               {QStringLiteral("little_endian"), 0},
                               {QStringLiteral("is_signed"), 1},
                               {QStringLiteral("factor"), 0.25},
                               {QStringLiteral("offset"), -40},
                               {QStringLiteral("minimum"), -40},
                               {QStringLiteral("maximum"), 1000},
                               {QStringLiteral("selection_flags"), 0},
                               {QStringLiteral("dlc"), 8},
                               {QStringLiteral("msg_id"), 291},
                               {QStringLiteral("extended_id"), 0}};
    QCOMPARE(records.at(1).toObject(), expected);
    const QJsonObject summary{{QStringLiteral("messages"), 2},
                              {QStringLiteral("signals"), 3},
                              {QStringLiteral("filters"), 2},
                              {QStringLiteral("ignored_signals"), 1},
                              {QStringLiteral("float_types"), 0},
                              {QStringLiteral("multiplexor_ranges"), 0},
                              {QStringLiteral("value_tables"), 1},
                              {QStringLiteral("comments_without_signal"), 0},
                              {QStringLiteral("other_comments"), 0},
                              {QStringLiteral("named_value_tables"), 0},
                              {QStringLiteral("signals_of_no_message"), 0},
                              {QStringLiteral("oversized_signals"), 0}};
    QCOMPARE(json.value(QStringLiteral("summary")).toObject(), summary);
}

void tst_DbcInspection::jsonOfARefusedFileHoldsTheExactError()
{
    const QString error = QStringLiteral("DBC-File: Invalid line-structure, line number 9 \r\n"
                                         "(  SG_ Bad )");
    QByteArray bytes = engineFile;
    bytes.replace(" SG_ Orphan : 0|8@1+ (1,0) [0|0] \"\" ECU2", "BO_ 1 M: 8 X\n SG_ Bad");
    const QJsonObject json = jsonOf(inspect(m_files.write("bad.dbc", bytes)));
    QCOMPARE(json.value(QStringLiteral("ok")), QJsonValue(false));
    QCOMPARE(json.value(QStringLiteral("error")).toString(), error);
    QCOMPARE(json.value(QStringLiteral("errors")).toArray(), QJsonArray{error});
    QCOMPARE(json.value(QStringLiteral("signals")).toArray().size(), 3);
}

void tst_DbcInspection::aRefusedFileHasNoText()
{
    const FileInspection inspection = inspect(m_files.write("bad.dbc", "BO_\n"));
    QCOMPARE(inspection.failure,
             QStringLiteral("DBC-File: Invalid Message-Structure, line number 1 \r\n( BO_ )"));
    QCOMPARE(inspectionText(inspection), QString());
}

void tst_DbcInspection::aFileWithoutSignalsIsAWarning_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("noise") << QByteArray("\x01\x80\xFF\n\x00\x7F", 6).repeated(1000);
    QTest::newRow("a long line") << QByteArray(1000000, 'x');
}

void tst_DbcInspection::aFileWithoutSignalsIsAWarning()
{
    QFETCH(QByteArray, bytes);
    const FileInspection inspection = inspect(m_files.write("none.dbc", bytes));
    QCOMPARE(inspection.failure, QString());
    QCOMPARE(inspection.warnings, QStringList{QStringLiteral("there is no signal in it")});
}

void tst_DbcInspection::aRefusalToGoOnCancels()
{
    const QString file = m_files.write("engine.dbc", engineFile);
    const FileInspection inspection =
        inspectFile(file, InspectionScope::Everything, [](qint64, qint64) { return false; });
    QVERIFY(inspection.cancelled);
}

void tst_DbcInspection::aDatabaseHoldsNoConfigurationToSave()
{
    const QString target = m_files.path("out.zdc");
    Console console;
    InspectionRun run(console);
    run.saveConfigurationAs(target);
    QCOMPARE(run.run({m_files.write("engine.dbc", engineFile)}), SomeFileFailed);
    QVERIFY(!QFile::exists(target));
}

QTEST_GUILESS_MAIN(tst_DbcInspection)
#include "tst_dbcinspection.moc"
