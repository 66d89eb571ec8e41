#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "link/liveentries.h"

#include <QTest>
#include <QtEndian>

#include <memory>

using rawlog::entryBytes;

class tst_LiveEntries : public QObject
{
    Q_OBJECT

private slots:
    void aCanFrameHasItsFlagsAndData();
    void aCanFrameOf65BytesIsDropped();
    void aCanFrameOfAnUnknownChannelIsDropped();
    void aCanFrameThatAnnouncesMoreThanItHoldsIsDropped();
    void anIdentifierIsCutToItsBits_data();
    void anIdentifierIsCutToItsBits();
    void aCanFrameOfALengthThatNoBusHasIsDropped();
    void aRemoteFrameAboveEightBytesIsDropped();
    void anAgmSampleHasTenWords();
    void aD4modEntryHasOneValueForEachChannel();
    void aD4modEntryOf16ChannelsIsDropped();
    void aGpsFixIsRead();
    void positionsAreDividedInSinglePrecision();
    void anLteStatusIsRead();
    void systemInfosHaveTheHighWordFirst();
    void anEthernetEntryOfLength1850IsTakenAndOf1851Dropped();
    void anEthernetFrameIsThePayload();
    void xcpInfosAreSigned();
    void etherCatInfosReadByteElevenTwice();
    void dtiVoltagesAreOneForEachChannel();
    void aTedTextNeedsItsMarks();
    void rs485InfosHaveTheVoltageBehindTheStatus();
    void ccpXcpInfosAreTwoBytes();
    void transparentDataEndAsTheSubByteSays_data();
    void transparentDataEndAsTheSubByteSays();
    void transparentDataOfAnotherInterfaceAreTold();
    void noEntryIsReadBeyondItsEnd();
};

namespace {

std::unique_ptr<CAN_Msg_Class> canOf(const QByteArray &entry)
{
    return std::unique_ptr<CAN_Msg_Class>(live::canMessage(entry));
}

QByteArray canEntry(quint8 number, quint8 info, const char *bodyHex)
{
    return entryBytes({rawlog::RLD_CAN, number, 0, info}, QByteArray::fromHex(bodyHex));
}

} // namespace

void tst_LiveEntries::aCanFrameHasItsFlagsAndData()
{
    const auto message = canOf(canEntry(11, 3, "78563412 0102036c aabbcc"));
    QVERIFY(message);
    QCOMPARE(message->timestamp_us, 0x12345678U);
    QCOMPARE(message->id, 0x0C030201U);
    QVERIFY(message->extended);
    QVERIFY(message->rtr);
    QCOMPARE(message->data.toHex(), QByteArray("aabbcc"));
    const auto plain = canOf(canEntry(0, 0, "00000000 23010000"));
    QCOMPARE(plain->id, 0x123U);
    QVERIFY(!plain->extended);
    QVERIFY(!plain->rtr);
    QVERIFY(plain->data.isEmpty());
}

void tst_LiveEntries::aCanFrameOf65BytesIsDropped()
{
    const QByteArray head(8, '\0');
    QVERIFY(canOf(entryBytes({1, 0, 0, 64}, head + QByteArray(64, 'x'))));
    QVERIFY(!canOf(entryBytes({1, 0, 0, 65}, head + QByteArray(65, 'x'))));
}

void tst_LiveEntries::aCanFrameOfAnUnknownChannelIsDropped()
{
    QVERIFY(!canOf(canEntry(12, 0, "00000000 00000000")));
}

void tst_LiveEntries::aCanFrameThatAnnouncesMoreThanItHoldsIsDropped()
{
    QVERIFY(!canOf(canEntry(0, 4, "00000000 00000000 aabbcc")));
}

void tst_LiveEntries::anIdentifierIsCutToItsBits_data()
{
    QTest::addColumn<quint32>("word");
    QTest::addColumn<quint32>("id");
    QTest::addColumn<bool>("isExtended");
    QTest::newRow("highest of 11 bits") << 0x000007FFU << 0x7FFU << false;
    QTest::newRow("12 bits") << 0x00000801U << 0x001U << false;
    QTest::newRow("29 bits without the flag") << 0x1FFFFFFFU << 0x7FFU << false;
    QTest::newRow("highest of 29 bits") << 0x5FFFFFFFU << 0x1FFFFFFFU << true;
    QTest::newRow("a bit without meaning") << 0xC0000123U << 0x123U << true;
}

void tst_LiveEntries::anIdentifierIsCutToItsBits()
{
    QFETCH(quint32, word);
    QByteArray body(8, '\0');
    qToLittleEndian(word, body.data() + 4);
    const auto message = canOf(entryBytes({rawlog::RLD_CAN, 0, 0, 0}, body));
    QVERIFY(message);
    QTEST(message->id, "id");
    QTEST(message->extended, "isExtended");
}

void tst_LiveEntries::aCanFrameOfALengthThatNoBusHasIsDropped()
{
    QVector<int> taken;
    for (int length = 0; length <= 255; ++length) {
        const QByteArray body(8 + length, '\0');
        if (const auto message = canOf(entryBytes({rawlog::RLD_CAN, 0, 0, quint8(length)}, body)))
            taken.append(message->data.size());
    }
    QCOMPARE(taken, (QVector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64}));
}

void tst_LiveEntries::aRemoteFrameAboveEightBytesIsDropped()
{
    QVERIFY(canOf(canEntry(0, 8, "00000000 01000020 0000000000000000")));
    QVERIFY(!canOf(canEntry(0, 12, "00000000 01000020 000000000000000000000000")));
}

void tst_LiveEntries::anAgmSampleHasTenWords()
{
    rawlog::AgmSample sample;
    sample.accel[0] = -1;
    sample.gyro[2] = 6;
    sample.further[2] = 9;
    const auto read = live::agmSample(rawlog::agmEntry(77, 0, sample));
    QVERIFY(read);
    const std::array<quint32, 10> words{77, 0xFFFFFFFF, 0, 0, 0, 0, 6, 0, 0, 9};
    QVERIFY(read->words == words);
}

void tst_LiveEntries::aD4modEntryHasOneValueForEachChannel()
{
    const auto values = live::d4modValues(rawlog::d4modEntry(5, 9, {100, 65535}));
    QCOMPARE(values.size(), 2);
    QCOMPARE(values.at(1).timestamp_us, 5U);
    QCOMPARE(int(values.at(1).channel), 1);
    QCOMPARE(values.at(1).value, quint16(65535));
    QVERIFY(live::d4modValues(rawlog::d4modEntry(5, 10, {100})).isEmpty());
}

void tst_LiveEntries::aD4modEntryOf16ChannelsIsDropped()
{
    QVERIFY(live::d4modValues(entryBytes({rawlog::RLD_D4MOD, 0, 0, 16}, QByteArray(36, '\0')))
                .isEmpty());
    QCOMPARE(
        live::d4modValues(entryBytes({rawlog::RLD_D4MOD, 0, 0, 15}, QByteArray(34, '\0'))).size(),
        15);
}

void tst_LiveEntries::aGpsFixIsRead()
{
    const auto fix = live::gpsFix(entryBytes(
        {rawlog::RLD_GPS, 0, 0, 0}, QByteArray::fromHex("01000000 03 0c 22 38 ea07 0b 15 100e 2823"
                                                        "0046c323 00ca9a8b 9cff")));
    QVERIFY(fix);
    QVERIFY(fix->valid);
    QVERIFY(fix->second_flag);
    QCOMPARE(int(fix->hour), 12);
    QCOMPARE(int(fix->minute), 34);
    QCOMPARE(int(fix->second), 56);
    QCOMPARE(int(fix->year), 2026);
    QCOMPARE(int(fix->month), 11);
    QCOMPARE(int(fix->day), 21);
    QCOMPARE(int(fix->course), 3600);
    QCOMPARE(int(fix->speed), 9000);
    QCOMPARE(fix->latitude, 60.0);
    QVERIFY(qAbs(fix->longitude + 19.46) < 0.1);
    QCOMPARE(int(fix->altitude), -100);
}

// 481234567 isn't a float, its neighbour 481234560 is.
void tst_LiveEntries::positionsAreDividedInSinglePrecision()
{
    QByteArray body(26, '\0');
    qToLittleEndian<quint32>(481234567, body.data() + 16);
    const auto fix = live::gpsFix(entryBytes({rawlog::RLD_GPS, 0, 0, 0}, body));
    QCOMPARE(fix->latitude, double(481234560.0F / 1e7F));
    QVERIFY(fix->latitude != 48.1234567);
}

void tst_LiveEntries::anLteStatusIsRead()
{
    const auto status = live::lteStatus(
        entryBytes({rawlog::RLD_LTE, 0, 0, 0}, QByteArray::fromHex("01071f00 14000000")));
    QVERIFY(status);
    QCOMPARE(int(status->registration), 1);
    QCOMPARE(int(status->network_kind), 7);
    QCOMPARE(int(status->signal), 31);
    QCOMPARE(status->band, 20U);
}

void tst_LiveEntries::systemInfosHaveTheHighWordFirst()
{
    const auto infos = live::systemInfos(entryBytes(
        {rawlog::RLD_SYSTEM_INFO, 0, 0, 0}, QByteArray::fromHex("0100 0200 00080000 04000000")));
    QVERIFY(infos && infos->received);
    QCOMPARE(int(infos->word_high), 1);
    QCOMPARE(int(infos->word_low), 2);
    QCOMPARE(infos->flags, 0x800U);
    QCOMPARE(infos->further, 4U);
}

void tst_LiveEntries::anEthernetEntryOfLength1850IsTakenAndOf1851Dropped()
{
    const auto entryOfLength = [](int length, quint8 number = 0) {
        return entryBytes({rawlog::RLD_ETH, number, 1, 0}, QByteArray(length - 4, '\0'));
    };
    QVERIFY(live::isEthernetEntry(entryOfLength(1850)));
    QVERIFY(!live::isEthernetEntry(entryOfLength(1851)));
    QVERIFY(!live::isEthernetEntry(entryOfLength(100, 1)));
    QVERIFY(!live::isEthernetEntry(entryOfLength(7)));
}

void tst_LiveEntries::anEthernetFrameIsThePayload()
{
    const std::unique_ptr<ETH_Frame_Class> frame(
        live::ethernetFrame(rawlog::ethXcpEntry(9, "payload")));
    QCOMPARE(frame->timestamp_us, 9U);
    QCOMPARE(frame->data, QByteArray("payload"));
}

void tst_LiveEntries::xcpInfosAreSigned()
{
    const auto infos = live::xcpInfos(
        entryBytes({rawlog::RLD_ETH_INFO, 0, 1, 0}, QByteArray::fromHex("ff020380")));
    QVERIFY(infos);
    QCOMPARE(int(infos->lastError), -1);
    QCOMPARE(int(infos->mainState), 2);
    QCOMPARE(int(infos->subState), 3);
    QCOMPARE(int(infos->subStateStep), -128);
}

void tst_LiveEntries::etherCatInfosReadByteElevenTwice()
{
    const auto infos = live::etherCatInfos(
        entryBytes({rawlog::RLD_ETHERCAT_INFO, 0, 0, 0}, QByteArray::fromHex("00080302ff0407")));
    QVERIFY(infos);
    QCOMPARE(int(infos->masterState), 8);
    QCOMPARE(int(infos->workingCounter), 0x0203);
    QCOMPARE(int(infos->lastError), 0x0402);
    QCOMPARE(int(infos->lastErrorSlave), 7);
}

void tst_LiveEntries::dtiVoltagesAreOneForEachChannel()
{
    QCOMPARE(live::dtiVoltages(
                 entryBytes({rawlog::RLD_D4MOD_INFO, 3, 0, 2}, QByteArray::fromHex("e803d007"))),
             (QVector<quint16>{1000, 2000}));
    QVERIFY(live::dtiVoltages(
                entryBytes({rawlog::RLD_D4MOD_INFO, 3, 0, 0}, QByteArray::fromHex("e803")))
                .isEmpty());
    QVERIFY(live::dtiVoltages(
                entryBytes({rawlog::RLD_D4MOD_INFO, 3, 0, 2}, QByteArray::fromHex("e803")))
                .isEmpty());
}

void tst_LiveEntries::aTedTextNeedsItsMarks()
{
    QCOMPARE(live::tedText(rawlog::d4modTedEntry(9, 15, "LOCAT@@x")), QStringLiteral("LOCAT@@x"));
    QCOMPARE(live::tedText(rawlog::d4modTedEntry(0, 0, QByteArray("a@@\0b@@", 7))),
             QStringLiteral("a@@"));
    QVERIFY(live::tedText(rawlog::d4modTedEntry(0, 0, "no marks")).isNull());
    QVERIFY(live::tedText(rawlog::d4modTedEntry(0, 16, "a@@")).isNull());
    QVERIFY(live::tedText(rawlog::d4modTedEntry(10, 0, "a@@")).isNull());
}

void tst_LiveEntries::rs485InfosHaveTheVoltageBehindTheStatus()
{
    const auto infos = live::rs485Infos(
        entryBytes({rawlog::RLD_RS485_INFO, 1, 0, 0}, QByteArray::fromHex("057c15")));
    QVERIFY(infos);
    QCOMPARE(int(infos->sessionStatus), 5);
    QCOMPARE(int(infos->voltage_mV), 5500);
}

void tst_LiveEntries::ccpXcpInfosAreTwoBytes()
{
    const auto infos = live::ccpXcpInfos(
        entryBytes({rawlog::RLD_CCP_XCP_INFO, 11, 0, 0}, QByteArray::fromHex("0733")));
    QVERIFY(infos);
    QCOMPARE(int(infos->sessionStatus), 7);
    QCOMPARE(int(infos->lastSlaveResponse), 0x33);
    QVERIFY(!live::ccpXcpInfos(
        entryBytes({rawlog::RLD_CCP_XCP_INFO, 12, 0, 0}, QByteArray::fromHex("0733"))));
}

void tst_LiveEntries::transparentDataEndAsTheSubByteSays_data()
{
    QTest::addColumn<int>("sub");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("whole words") << 0 << QByteArray("tttt12345678") << QByteArray("12345678");
    QTest::newRow("one of the last word") << 1 << QByteArray("tttt12345678") << QByteArray("12345");
    QTest::newRow("three of the last word")
        << 3 << QByteArray("tttt12345678") << QByteArray("1234567");
    QTest::newRow("none of the only word") << 4 << QByteArray("tttt1234") << QByteArray();
}

void tst_LiveEntries::transparentDataEndAsTheSubByteSays()
{
    QFETCH(int, sub);
    QFETCH(QByteArray, body);
    const auto data =
        live::transparentData(entryBytes({rawlog::TYPE_TRANSPARENT_DATA, 9, quint8(sub), 1}, body));
    QCOMPARE(int(data.result), int(live::TransparentData::Result::Data));
    QTEST(data.data, "data");
}

void tst_LiveEntries::transparentDataOfAnotherInterfaceAreTold()
{
    using Result = live::TransparentData::Result;
    const auto resultOf = [](quint8 number, quint8 info, const QByteArray &body) {
        return int(live::transparentData(
                       entryBytes({rawlog::TYPE_TRANSPARENT_DATA, number, 0, info}, body))
                       .result);
    };
    QCOMPARE(resultOf(0, 2, "tttt1234"), int(Result::UnknownInterface));
    QCOMPARE(resultOf(10, 1, "tttt1234"), int(Result::Dropped));
    QCOMPARE(resultOf(0, 1, "tttt123"), int(Result::Dropped));
}

void tst_LiveEntries::noEntryIsReadBeyondItsEnd()
{
    for (int type = 0; type < 256; ++type) {
        for (const int info : {0, 1, 15, 64, 255}) {
            for (int size = 0; size < 48; ++size) {
                const QByteArray entry =
                    entryBytes({quint8(type), 0, 1, quint8(info)}, QByteArray(size, '\xFF'));
                (void)canOf(entry);
                (void)live::agmSample(entry);
                (void)live::d4modValues(entry);
                (void)live::gpsFix(entry);
                (void)live::lteStatus(entry);
                (void)live::systemInfos(entry);
                (void)live::xcpInfos(entry);
                (void)live::etherCatInfos(entry);
                (void)live::dtiVoltages(entry);
                (void)live::tedText(entry);
                (void)live::rs485Infos(entry);
                (void)live::ccpXcpInfos(entry);
                QVERIFY(live::transparentData(entry).data.size() <= size);
            }
        }
    }
}

QTEST_GUILESS_MAIN(tst_LiveEntries)
#include "tst_liveentries.moc"
