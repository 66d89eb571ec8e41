#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "app/state/appcontroller.h"
#include "eth/tunnelingmsg.h"
#include "link/logger_data_handler_class.h"
#include "tests/support/messagecount.h"

#include <QSignalSpy>
#include <QTest>

#include <new>
#include <stdexcept>

using rawlog::entryBytes;

// Entries are put in where the data worker would: no socket is needed.
class tst_LiveDispatch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void framesComeAsOneListForEachChannel();
    void samplesAndFixesComeAsLists();
    void d4modValuesComeForEachPort();
    void onlyTheNewestStatusOfACycleIsDelivered();
    void everyTedTextIsDelivered();
    void ethernetFramesAndTunnelingMessagesComeAsLists();
    void etherCatDataComeFromTheTypeByteOn();
    void etherCatInfosComeAtOnceAsNumberZero();
    void infosOfEthernetComeByTheirKind();
    void systemInfosAreKept();
    void dataThatNobodyExpectsAreWarnedOf();
    void ofAnotherInterfaceIsACriticalLine();
    void someTypesAreIgnored();
    void anUnknownTypeIsADebugLine();
    void whatIsDecodedButNotDeliveredEndsWithTheHandler();
    void listsComeInTheirOrder();
    void whatTheViewsDontTakeInTimeIsDroppedAndCounted();
    void aReceiverThatThrowsHoldsNothingBack();
    void aReceiverThatThrowsInDecodingLosesNoOtherEntry();
    void withoutMemoryAnEntryIsDroppedWithADebugLine();
    void aReceiverMayRunAnEventLoop();
    void goodTunnelingBlocksDontUseUpTheWarnings();

private:
    void take(const QList<QByteArray> &entries)
    {
        QList<QByteArray *> list;
        for (const QByteArray &entry : entries)
            list.append(new QByteArray(entry));
        m_handler->slot_take_logger_data(list);
    }
    void process(const QList<QByteArray> &entries)
    {
        take(entries);
        QCoreApplication::processEvents(); // decodes
        QCoreApplication::processEvents(); // delivers
    }

    std::unique_ptr<AppController> m_controller;
    std::unique_ptr<Logger_Data_Handler_Class> m_handler;
};

// A spy knows argument types by the names that the signals use.
void tst_LiveDispatch::initTestCase()
{
    qRegisterMetaType<uint16_t>("uint16_t");
    qRegisterMetaType<uint8_t>("uint8_t");
    qRegisterMetaType<int8_t>("int8_t");
}

void tst_LiveDispatch::init()
{
    m_controller = std::make_unique<AppController>();
    m_handler = std::make_unique<Logger_Data_Handler_Class>(m_controller.get());
}

void tst_LiveDispatch::cleanup()
{
    m_handler.reset();
    m_controller.reset();
}

void tst_LiveDispatch::framesComeAsOneListForEachChannel()
{
    QMap<int, QList<quint32>> ids;
    int lists = 0;
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_can_msg_list, this,
            [&](int can, const QList<CAN_Msg_Class *> &list) {
                ++lists;
                for (const CAN_Msg_Class *message : list)
                    ids[can].append(message->id);
            });
    process({rawlog::canEntry(1, 3, {0x10, false, "a"}), rawlog::canEntry(2, 11, {0x11, true, "b"}),
             rawlog::canEntry(3, 3, {0x12, false, "c"}),
             rawlog::canEntry(4, 12, {0x13, false, ""})});
    QCOMPARE(lists, 2);
    QCOMPARE(ids, (QMap<int, QList<quint32>>{{3, {0x10, 0x12}}, {11, {0x11}}}));
    process({});
    QCOMPARE(lists, 2);
    QCOMPARE(m_handler->liveCounters().entries, quint64(4));
}

void tst_LiveDispatch::samplesAndFixesComeAsLists()
{
    QList<int> sizes;
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_agm_data_list, this,
            [&](const QList<AGM_DataContainer *> &list) { sizes.append(list.size()); });
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_gps_data_list, this,
            [&](const QList<GPS_DataContainer *> &list) { sizes.append(list.size()); });
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_lte_data_list, this,
            [&](const QList<LTE_DataContainer *> &list) { sizes.append(list.size()); });
    process({rawlog::agmEntry(1, 0, {}), rawlog::agmEntry(2, 0, {}), rawlog::agmEntry(3, 0, {}),
             rawlog::gpsEntry(4, {}), rawlog::gpsEntry(5, {}),
             entryBytes({rawlog::RLD_LTE, 0, 0, 0}, QByteArray(8, '\0'))});
    QCOMPARE(sizes, (QList<int>{3, 2, 1}));
}

void tst_LiveDispatch::d4modValuesComeForEachPort()
{
    QList<int> values;
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_d4mod_msg_list, this,
            [&](int port, const QList<D4Mod_Msg_Class *> &list) {
                values.append(port);
                for (const D4Mod_Msg_Class *value : list)
                    values.append({value->channel, value->value});
            });
    process({rawlog::d4modEntry(1, 9, {7, 8}), rawlog::d4modEntry(2, 0, {5})});
    QCOMPARE(values, (QList<int>{0, 0, 5, 9, 0, 7, 1, 8}));
}

void tst_LiveDispatch::onlyTheNewestStatusOfACycleIsDelivered()
{
    QSignalSpy rs485(m_handler.get(), &Logger_Data_Handler_Class::signal_rs485_infos);
    QSignalSpy ccp(m_handler.get(), &Logger_Data_Handler_Class::signal_ccp_xcp_infos);
    QSignalSpy dti(m_handler.get(), &Logger_Data_Handler_Class::signal_d4mod_infos);
    process({entryBytes({rawlog::RLD_RS485_INFO, 2, 0, 0}, QByteArray::fromHex("010100")),
             entryBytes({rawlog::RLD_RS485_INFO, 2, 0, 0}, QByteArray::fromHex("020200")),
             entryBytes({rawlog::RLD_CCP_XCP_INFO, 4, 0, 0}, QByteArray::fromHex("0102")),
             entryBytes({rawlog::RLD_CCP_XCP_INFO, 4, 0, 0}, QByteArray::fromHex("0304")),
             entryBytes({rawlog::RLD_D4MOD_INFO, 5, 0, 2}, QByteArray::fromHex("01000200")),
             entryBytes({rawlog::RLD_D4MOD_INFO, 5, 0, 1}, QByteArray::fromHex("0300"))});
    QCOMPARE(rs485.size(), 1);
    QCOMPARE(rs485.first().at(1).value<uchar>(), uchar(2));
    QCOMPARE(ccp.size(), 1);
    QCOMPARE(ccp.first().at(0).toInt(), 4);
    QCOMPARE(ccp.first().at(2).value<uchar>(), uchar(4));
    QCOMPARE(dti.size(), 2);
    QCOMPARE(dti.first().at(2).value<uint16_t>(), uint16_t(3));
    process({});
    QCOMPARE(rs485.size() + ccp.size() + dti.size(), 4);
}

void tst_LiveDispatch::everyTedTextIsDelivered()
{
    QSignalSpy teds(m_handler.get(), &Logger_Data_Handler_Class::signal_d4mod_TED_infos);
    process({rawlog::d4modTedEntry(1, 0, "a@@"), rawlog::d4modTedEntry(1, 0, "b@@"),
             rawlog::d4modTedEntry(1, 1, "no marks")});
    QCOMPARE(teds.size(), 2);
    QCOMPARE(teds.at(1), (QVariantList{1, 0, QStringLiteral("b@@")}));
}

void tst_LiveDispatch::ethernetFramesAndTunnelingMessagesComeAsLists()
{
    QList<QByteArray> found;
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_ethernet_frame_list, this,
            [&](int, const QList<ETH_Frame_Class *> &list) { found.append(list.first()->data); });
    connect(m_handler.get(), &Logger_Data_Handler_Class::sigEthTunnelingMsgList, this,
            [&](int, const QList<TunnelingMsg *> &list) { found.append(list.first()->bytes()); });
    const QByteArray lin = QByteArray(8, '\1') + QByteArray::fromHex("0500220161");
    process(
        {rawlog::ethXcpEntry(1, "xcp"),
         entryBytes({rawlog::RLD_ETH, 0, 2, 0}, QByteArray(20, '\0') + lin + QByteArray(12, '\0')),
         entryBytes({rawlog::RLD_ETH, 0, 3, 0}, QByteArray(40, '\0')),
         entryBytes({rawlog::RLD_ETH, 1, 1, 0}, QByteArray(40, '\0'))});
    QCOMPARE(found, (QList<QByteArray>{lin, "xcp"}));
}

void tst_LiveDispatch::etherCatDataComeFromTheTypeByteOn()
{
    QByteArray found;
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_ethercat_data_prot, this,
            [&](int bus, unsigned char *data, int length) {
                QCOMPARE(bus, 6);
                found = QByteArray(reinterpret_cast<const char *>(data), length);
            });
    const QByteArray entry = rawlog::etherCatEntry(1, 6, "image");
    process({entry});
    QCOMPARE(found, entry.mid(4));
}

void tst_LiveDispatch::etherCatInfosComeAtOnceAsNumberZero()
{
    QSignalSpy infos(m_handler.get(), &Logger_Data_Handler_Class::signal_ethercat_infos);
    take({entryBytes({rawlog::RLD_ETHERCAT_INFO, 5, 0, 0}, QByteArray::fromHex("00080302ff0407"))});
    m_handler->slot_process_logger_data();
    QCOMPARE(infos.size(), 1);
    QCOMPARE(infos.first().at(0).toInt(), 0);
    QCOMPARE(infos.first().at(2).value<ushort>(), ushort(0x0203));
}

void tst_LiveDispatch::infosOfEthernetComeByTheirKind()
{
    QList<QByteArray> found;
    const auto takeOver = [&found](const char *kind) {
        return [&found, kind](uchar, quint8 *bytes, uint length) {
            const std::unique_ptr<quint8[]> owned(bytes);
            found.append(kind
                         + QByteArray(reinterpret_cast<const char *>(bytes), int(length)).toHex());
        };
    };
    connect(m_handler.get(), &Logger_Data_Handler_Class::sigEthHSFZNfo, this, takeOver("hsfz "));
    connect(m_handler.get(), &Logger_Data_Handler_Class::sigEthMirroringNfo, this,
            takeOver("mirroring "));
    QSignalSpy xcp(m_handler.get(), &Logger_Data_Handler_Class::sigEthXcpNfos);
    const auto info = [](quint8 number, quint8 sub) {
        return entryBytes({rawlog::RLD_ETH_INFO, number, sub, 0}, QByteArray::fromHex("01020304"));
    };
    process({info(0, 1), info(0, 2), info(0, 3), info(0, 4), info(1, 1)});
    QCOMPARE(xcp.size(), 1);
    QCOMPARE(xcp.first().at(4).value<int8_t>(), int8_t(1));
    QCOMPARE(found,
             (QList<QByteArray>{"hsfz " + info(0, 2).toHex(), "mirroring " + info(0, 3).toHex(),
                                "mirroring " + info(0, 4).toHex()}));
}

void tst_LiveDispatch::systemInfosAreKept()
{
    QSignalSpy received(m_handler.get(), &Logger_Data_Handler_Class::signal_system_infos_received);
    process({entryBytes({rawlog::RLD_SYSTEM_INFO, 0, 0, 0},
                        QByteArray::fromHex("010002000008000000000000"))});
    QCOMPARE(received.size(), 1);
    QCOMPARE(m_handler->systemInfos().flags, 0x800U);
    process({});
    QCOMPARE(received.size(), 1);
}

void tst_LiveDispatch::dataThatNobodyExpectsAreWarnedOf()
{
    const MessageCount lines("Data Arrived - but noone expected it.. \"1234\"");
    process({entryBytes({rawlog::TYPE_TRANSPARENT_DATA, 2, 0, 1}, "tttt1234")});
    QCOMPARE(lines.value(), 1);
}

void tst_LiveDispatch::ofAnotherInterfaceIsACriticalLine()
{
    const MessageCount lines("TYPE_TRANSPARENT_DATA arrived with unknown interface type");
    process({entryBytes({rawlog::TYPE_TRANSPARENT_DATA, 2, 0, 3}, "tttt1234")});
    QCOMPARE(lines.value(), 1);
}

void tst_LiveDispatch::someTypesAreIgnored()
{
    process({rawlog::debugCountersEntry(0, 1, 2), entryBytes({rawlog::RLD_LIVE_240, 0, 0, 0}, {})});
    QCOMPARE(m_handler->liveCounters().entries, quint64(2));
}

void tst_LiveDispatch::anUnknownTypeIsADebugLine()
{
    const MessageCount lines("unknown Protocoll type:  77");
    process({entryBytes({77, 0, 0, 0}, {})});
    QCOMPARE(lines.value(), 1);
}

// The sanitizer build tells whether it is freed.
void tst_LiveDispatch::whatIsDecodedButNotDeliveredEndsWithTheHandler()
{
    int lists = 0;
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_can_msg_list, this,
            [&lists] { ++lists; });
    take({rawlog::canEntry(1, 3, {0x10, false, "a"}), rawlog::d4modEntry(1, 0, {7})});
    m_handler->slot_process_logger_data();
    QCOMPARE(m_handler->liveCounters().entries, quint64(2));
    m_handler.reset();
    QCOMPARE(lists, 0);
}

void tst_LiveDispatch::listsComeInTheirOrder()
{
    QStringList order;
    using Handler = Logger_Data_Handler_Class;
    connect(m_handler.get(), &Handler::signal_can_msg_list, this,
            [&order](int can) { order.append(QStringLiteral("can%1").arg(can)); });
    connect(m_handler.get(), &Handler::signal_agm_data_list, this,
            [&order] { order.append(QStringLiteral("agm")); });
    connect(m_handler.get(), &Handler::signal_gps_data_list, this,
            [&order] { order.append(QStringLiteral("gps")); });
    connect(m_handler.get(), &Handler::signal_d4mod_msg_list, this,
            [&order] { order.append(QStringLiteral("d4mod")); });
    connect(m_handler.get(), &Handler::signal_lte_data_list, this,
            [&order] { order.append(QStringLiteral("lte")); });
    connect(m_handler.get(), &Handler::signal_system_infos_received, this,
            [&order] { order.append(QStringLiteral("system")); });
    process({entryBytes({rawlog::RLD_SYSTEM_INFO, 0, 0, 0}, QByteArray(12, '\0')),
             entryBytes({rawlog::RLD_LTE, 0, 0, 0}, QByteArray(8, '\0')),
             rawlog::d4modEntry(1, 0, {1}), rawlog::gpsEntry(1, {}), rawlog::agmEntry(1, 0, {}),
             rawlog::canEntry(1, 7, {}), rawlog::canEntry(1, 0, {})});
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("can0 can7 agm gps d4mod lte system"));
}

void tst_LiveDispatch::whatTheViewsDontTakeInTimeIsDroppedAndCounted()
{
    const QByteArray large = entryBytes({rawlog::RLD_LIVE_240, 0, 0, 0}, QByteArray(65'000, 'x'));
    QList<QByteArray> batch;
    for (int i = 0; i < 100; ++i)
        batch.append(large);
    for (int i = 0; i < 12; ++i)
        take(batch); // 78 MB in all
    const quint64 dropped = m_handler->liveCounters().dropped;
    QVERIFY(dropped > 0);
    process({});
    QCOMPARE(m_handler->liveCounters().entries + dropped, quint64(1200));
    QVERIFY(m_handler->liveCounters().entries * quint64(large.size()) <= quint64(64) << 20);
    process({large});
    QCOMPARE(m_handler->liveCounters().dropped, dropped);
}

void tst_LiveDispatch::aReceiverThatThrowsHoldsNothingBack()
{
    using Handler = Logger_Data_Handler_Class;
    int fixes = 0;
    int frames = 0;
    connect(m_handler.get(), &Handler::signal_can_msg_list, this,
            [&frames](int, const QList<CAN_Msg_Class *> &list) {
                frames += list.size();
                throw std::out_of_range("map::at");
            });
    connect(m_handler.get(), &Handler::signal_gps_data_list, this,
            [&fixes](const QList<GPS_DataContainer *> &list) { fixes += list.size(); });
    take({rawlog::canEntry(1, 0, {}), rawlog::canEntry(1, 5, {}), rawlog::gpsEntry(2, {})});
    m_handler->slot_process_logger_data();
    QVERIFY_EXCEPTION_THROWN(m_handler->send_signals_to_data_receivers(), std::out_of_range);
    QCOMPARE(frames, 2);
    QCOMPARE(fixes, 1);
    m_handler->send_signals_to_data_receivers(); // nothing is left to throw for
}

void tst_LiveDispatch::aReceiverThatThrowsInDecodingLosesNoOtherEntry()
{
    using Handler = Logger_Data_Handler_Class;
    int frames = 0;
    connect(m_handler.get(), &Handler::signal_can_msg_list, this, [&frames] { ++frames; });
    connect(m_handler.get(), &Handler::signal_ethercat_data_prot, this,
            [] { throw std::out_of_range("map::at"); });
    take({rawlog::etherCatEntry(1, 0, "image"), rawlog::canEntry(1, 0, {})});
    QVERIFY_EXCEPTION_THROWN(m_handler->slot_process_logger_data(), std::out_of_range);
    QCoreApplication::processEvents();
    QCOMPARE(frames, 1);
}

void tst_LiveDispatch::withoutMemoryAnEntryIsDroppedWithADebugLine()
{
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_ethercat_data_prot, this,
            [] { throw std::bad_alloc(); });
    const MessageCount lines("SIFUP");
    process({rawlog::etherCatEntry(1, 0, "image")});
    QCOMPARE(lines.value(), 1);
}

// A receiver that opens a box: what comes meanwhile is delivered once, and after what it holds.
void tst_LiveDispatch::aReceiverMayRunAnEventLoop()
{
    QList<quint32> ids;
    connect(m_handler.get(), &Logger_Data_Handler_Class::signal_can_msg_list, this,
            [&](int, const QList<CAN_Msg_Class *> &list) {
                const quint32 id = list.first()->id;
                ids.append(id);
                if (id < 3)
                    process({rawlog::canEntry(1, 4, {id + 1, false, ""})});
                QCOMPARE(list.first()->id, id);
            });
    process({rawlog::canEntry(1, 4, {1, false, ""})});
    QCOMPARE(ids, (QList<quint32>{1, 2, 3}));
}

void tst_LiveDispatch::goodTunnelingBlocksDontUseUpTheWarnings()
{
    const QByteArray lin = QByteArray(8, '\1') + QByteArray::fromHex("0500220161");
    const QByteArray block =
        entryBytes({rawlog::RLD_ETH, 0, 2, 0}, QByteArray(20, '\0') + lin + QByteArray(12, '\0'));
    QList<QByteArray> entries;
    for (int i = 0; i < 50; ++i)
        entries.append(block);
    const MessageCount lines("unknown Protocoll type:  77");
    process(entries << entryBytes({77, 0, 0, 0}, {}));
    QCOMPARE(lines.value(), 1);
}

QTEST_GUILESS_MAIN(tst_LiveDispatch)
#include "tst_livedispatch.moc"
