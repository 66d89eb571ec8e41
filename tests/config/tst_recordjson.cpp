#include "config/record/recordjson.h"
#include "tests/support/recordsamples.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

class tst_RecordJson : public QObject
{
    Q_OBJECT

private slots:
    void keysAreTheFieldNamesAndZeroBytesAreLeftOut();
    void membersThatAreNotStreamedAreLeftOut();
    void unsignedValuesAreUnsigned();
    void signedValuesKeepTheirSign();
    void listsAndArraysAreArrays();
    void aFlagThatIsStreamedTwiceStandsOnce();
    void aNullTextIsAnEmptyText();
};

namespace {

template <class R>
QByteArray jsonText(const R &record)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    JsonWriter json(out);
    record::writeJson(json, record);
    return out.data();
}

template <class R>
QJsonObject jsonObject(const R &record)
{
    return QJsonDocument::fromJson(jsonText(record)).object();
}

template <class R>
QByteArray compactText(const R &record)
{
    return QJsonDocument(jsonObject(record)).toJson(QJsonDocument::Compact);
}

} // namespace

void tst_RecordJson::keysAreTheFieldNamesAndZeroBytesAreLeftOut()
{
    QCOMPARE(compactText(EthTunnelingCfg()),
             QByteArray("{\"daq_port\":56789,\"fallback_ip\":\"169.254.86.68\",\"filters\":[],"
                        "\"local_link_ip\":\"169.254.174.64\",\"mirror_egress_mask\":15,"
                        "\"mirror_ingress_mask\":15,\"mirroring_enabled\":0,"
                        "\"tunneling_enabled\":0,\"tunneling_flags\":0}"));
    QCOMPARE(compactText(TerminalLteCfg()), QByteArray("{\"companion\":0,\"switch\":0}"));
    QCOMPARE(compactText(TerminalGpsCfg()), QByteArray("{\"enabled\":0}"));
}

void tst_RecordJson::membersThatAreNotStreamedAreLeftOut()
{
    const QJsonObject port = jsonObject(TerminalRs485Cfg());
    QCOMPARE(port.keys(), QStringList({QStringLiteral("d4mod"), QStringLiteral("supply_out"),
                                       QStringLiteral("voltage")}));
    QVERIFY(!jsonObject(StreamingClass_DBC_Signal()).contains(QLatin1String("live_value")));
}

void tst_RecordJson::unsignedValuesAreUnsigned()
{
    EtherCatSlave slave;
    slave.id = 0xFFFFFFFF;
    QCOMPARE(jsonObject(slave).value(QLatin1String("id")).toDouble(), 4294967295.0);
    A2lMeasurement measurement;
    measurement.bit_mask = 0xFFFFFFFFFFFFFFFF;
    QVERIFY(jsonText(measurement).contains("\"bit_mask\": 18446744073709551615,"));
}

void tst_RecordJson::signedValuesKeepTheirSign()
{
    LogTriggerCfg trigger;
    trigger.delay = -5;
    QCOMPARE(jsonObject(trigger).value(QLatin1String("delay")).toInt(), -5);
}

void tst_RecordJson::listsAndArraysAreArrays()
{
    const QJsonObject terminal = jsonObject(sample::record<TerminalStruct>());
    QCOMPARE(terminal.value(QLatin1String("can")).toArray().size(), 12);
    const QJsonObject master = terminal.value(QLatin1String("ethercat")).toArray().at(7).toObject();
    const QJsonObject slave = master.value(QLatin1String("slaves")).toArray().at(1).toObject();
    QCOMPARE(slave.value(QLatin1String("signals")).toArray().size(), 2);
    StreamingClass_A2L_CFG cfg;
    cfg.optional_commands = {1, -2};
    QVERIFY(compactText(cfg).contains("\"optional_commands\":[1,-2]"));
}

void tst_RecordJson::aFlagThatIsStreamedTwiceStandsOnce()
{
    AimMsgMeta message;
    message.isSigned = true;
    QCOMPARE(compactText(message).count("isSigned"), 1);
    QVERIFY(compactText(message).contains("\"isSigned\":true"));
}

void tst_RecordJson::aNullTextIsAnEmptyText()
{
    QVERIFY(compactText(AuxSupplyCfg()).contains("\"event_name\":\"\""));
}

QTEST_GUILESS_MAIN(tst_RecordJson)
#include "tst_recordjson.moc"
