#include "cli/fileinspection.h"
#include "cli/inspectionjson.h"
#include "config/record/jsonwriter.h"
#include "samplelog.h"
#include "temporaryfiles.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {

FileInspection inspect(const QString &path)
{
    return inspectFile(path, InspectionScope::Everything, [](qint64, qint64) { return true; });
}

QByteArray jsonText(const FileInspection &inspection)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    JsonWriter json(out);
    writeInspectionJson(json, inspection);
    return out.data();
}

QJsonObject objectIn(const char *text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("%s", qPrintable(error.errorString()));
    return document.object();
}

QJsonObject inspectionJson(const FileInspection &inspection)
{
    return objectIn(jsonText(inspection));
}

} // namespace

class tst_InspectionJson : public QObject
{
    Q_OBJECT

private slots:
    void aLogHasAllThatWasCounted();
    void theConfigurationHasTheFieldNamesOfItsRecords();
    void largeCountsAreExact();
    void anUnreadableFileHasItsCause();
    void keysAreInOneOrder();
};

void tst_InspectionJson::aLogHasAllThatWasCounted()
{
    const TemporaryFiles files;
    const QByteArray configuration = logBytes(TerminalStruct(), {});
    const QString file = files.write("drive.rld", logBytes(TerminalStruct(), sampleEntries()));
    const QJsonObject json = inspectionJson(inspect(file));
    QCOMPARE(json.value(QStringLiteral("file")).toString(), file);
    QCOMPARE(json.value(QStringLiteral("kind")).toString(), QStringLiteral("raw_log"));
    QCOMPARE(json.value(QStringLiteral("version")).toInt(), 6);
    QCOMPARE(json.value(QStringLiteral("errors")).toArray().size(), 1);
    QCOMPARE(json.value(QStringLiteral("warnings")).toArray().size(), 0);

    // Positions depend on the size of the configuration.
    QJsonObject log = json.value(QStringLiteral("log")).toObject();
    QCOMPARE(log.take(QStringLiteral("first_entry_position")).toInt(), configuration.size());
    QJsonObject skipped = log.take(QStringLiteral("skipped")).toObject();
    const int noiseAt = configuration.size() + 20 + 12 + 16 + 24 + 48 + 24;
    const QJsonArray stretches{
        QJsonObject{{QStringLiteral("position"), noiseAt}, {QStringLiteral("length"), 5}},
        QJsonObject{{QStringLiteral("position"), noiseAt + 5 + 12},
                    {QStringLiteral("length"), 20}}};
    QCOMPARE(skipped, (QJsonObject{{QStringLiteral("bytes"), 25},
                                   {QStringLiteral("count"), 2},
                                   {QStringLiteral("stretches"), stretches}}));

    QCOMPARE(log, objectIn(R"({
        "bytes": 156, "damaged_entries": 0, "duration_us": 4000000, "entries": 7,
        "entries_per_second": 1.75, "first_time_us": 1000000, "implausible_times": 0,
        "incomplete_entries": 0, "last_time_us": 5000000,
        "longest_silence": {"length_us": 2400000, "start_us": 1600000},
        "out_of_order_entries": 0, "unknown_entries": 0,
        "utc_start": "2023-11-14T22:13:20.123Z",
        "processors": [{
            "number": 0, "restarts": 1, "ring_buffer_overflows": 0, "temperature_min": 41,
            "temperature_max": 41, "sync": {"stamps": 2, "equal_stamps": 0, "first_us": 1000000,
            "last_us": 5000000, "longest_interval_us": 4000000}}],
        "streams": [{
            "type": 1, "type_name": "RLD_CAN", "number": 2, "entries": 2,
            "entries_per_second": 0.5, "bytes": 48, "incomplete": 0, "out_of_order": 0,
            "first_time_us": 1500000, "last_time_us": 4000000, "gaps": 1,
            "longest_silence": {"length_us": 2500000, "start_us": 1500000}
        }, {
            "type": 2, "type_name": "RLD_AGM", "number": 0, "entries": 1,
            "entries_per_second": 0.25, "bytes": 48, "incomplete": 0, "out_of_order": 0,
            "first_time_us": 1600000, "last_time_us": 1600000, "gaps": 0,
            "longest_silence": {"length_us": 0, "start_us": 0}
        }, {
            "type": 11, "type_name": "RLD_CYCLIC_TS", "number": 0, "entries": 2,
            "entries_per_second": 0.5, "bytes": 24, "incomplete": 0, "out_of_order": 0,
            "first_time_us": 1000000, "last_time_us": 5000000, "gaps": 0,
            "longest_silence": {"length_us": 4000000, "start_us": 1000000}
        }, {
            "type": 239, "type_name": "RLD_UTC_START", "number": 0, "entries": 1,
            "entries_per_second": 0.25, "bytes": 20, "incomplete": 0, "out_of_order": 0,
            "first_time_us": null, "last_time_us": null, "gaps": 0,
            "longest_silence": {"length_us": 0, "start_us": 0}
        }, {
            "type": 248, "type_name": "RLD_DBG_COUNTERS", "number": 0, "entries": 1,
            "entries_per_second": 0.25, "bytes": 16, "incomplete": 0, "out_of_order": 0,
            "first_time_us": null, "last_time_us": null, "gaps": 0,
            "longest_silence": {"length_us": 0, "start_us": 0}
        }]})"));
}

void tst_InspectionJson::theConfigurationHasTheFieldNamesOfItsRecords()
{
    FileInspection inspection;
    inspection.configuration = sampleConfiguration();
    const QJsonObject configuration =
        inspectionJson(inspection).value(QStringLiteral("configuration")).toObject();
    const QJsonArray can = configuration.value(QStringLiteral("can")).toArray();
    QCOMPARE(can.size(), 12);
    QCOMPARE(can.at(2).toObject().value(QStringLiteral("filters")).toArray().at(0).toObject(),
             objectIn(R"({"extended": 0, "filter_type": 2, "reject": 1, "id1": 256,
                          "id2": 2047})"));
    QCOMPARE(configuration.value(QStringLiteral("event")).toObject(),
             objectIn("{\"event_name\": \"Brake \\u001b[31mtest\", \"aux_mode\": 1}"));
}

void tst_InspectionJson::largeCountsAreExact()
{
    FileInspection inspection;
    inspection.size = 9007199254740991;
    QVERIFY(jsonText(inspection).contains("\"size\": 9007199254740991"));
}

void tst_InspectionJson::anUnreadableFileHasItsCause()
{
    FileInspection inspection;
    inspection.file = QStringLiteral("a.rld");
    inspection.failure = QStringLiteral("the file is empty");
    QCOMPARE(inspectionJson(inspection), objectIn(R"({"file": "a.rld", "kind": null, "size": 0,
        "errors": ["the file is empty"], "warnings": []})"));
}

void tst_InspectionJson::keysAreInOneOrder()
{
    FileInspection inspection;
    inspection.file = QStringLiteral("a.rld");
    QCOMPARE(jsonText(inspection), QByteArray("{\n"
                                              "    \"file\": \"a.rld\",\n"
                                              "    \"kind\": null,\n"
                                              "    \"size\": 0,\n"
                                              "    \"errors\": [],\n"
                                              "    \"warnings\": []\n"
                                              "}\n"));
}

QTEST_GUILESS_MAIN(tst_InspectionJson)
#include "tst_inspectionjson.moc"
