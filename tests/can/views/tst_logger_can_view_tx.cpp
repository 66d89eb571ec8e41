#include "can/views/dlcspinbox.h"
#include "config/record/record.h"
#include "tests/can/views/canpagebench.h"
#include "tests/support/simulatedlogger.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QTableView>

using simulator::LoggerSimulator;

// Frames that the page sends, and what it shows of a logger's stream.
class tst_Logger_CAN_View_Tx : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aFrameReachesTheLogger();
    void anExtendedFrameReachesTheLogger();
    void aRemoteFrameIsSentWithoutData();
    void anFdFrameHasUpTo64Bytes();
    void returnInAFieldSends();
    void framesThatWereSentAreCounted();
    void theTabKeyLeadsThroughTheRow();
    void aRefusalOfTheLoggerIsTold();
    void nothingIsSentWithoutALogger();
    void anIdentifierAboveTheLimitIsRefused_data();
    void anIdentifierAboveTheLimitIsRefused();
    void theIdentifierTakesEightHexadecimalDigits();
    void aByteThatDoesNotParseIsRefused();
    void theLengthEnablesTheFields();
    void returnTakesATypedLength();
    void aLengthThatIsStillBeingTypedCounts();
    void aFrameCarriesTheChannel();
    void theFormatDecidesOnTheLengths();
    void thereAreNoRemoteFdFrames();
    void framesOfTheLoggerAreShownLive();
    void aRefusedNameIsTakenBack();
    void aMultiplexorReachesTheLoggerWithoutTicks();
    void anEditIsShownWhenItIsEchoed_data();
    void anEditIsShownWhenItIsEchoed();
    void editsInARowAllHold();

private:
    void connectLogger()
    {
        m_logger = std::make_unique<SimulatedLogger>();
        QVERIFY(m_bench->handler.connectLogger(m_logger->address()));
        m_bench->setState(APP_STA_CONN_LOG_OFF);
    }
    QVector<simulator::TransmittedFrame> sent() const
    {
        return m_logger->inspect([](LoggerSimulator &s) {
            const auto &frames = s.state().transmittedFrames;
            return QVector<simulator::TransmittedFrame>(frames.begin(), frames.end());
        });
    }
    void type(const char *id, const QStringList &bytes)
    {
        m_bench->find<QLineEdit>("lineEdit_id")->setText(QLatin1String(id));
        m_bench->find<DlcSpinBox>("spinBox_dlc")->setValue(bytes.size());
        for (int i = 0; i < bytes.size(); ++i)
            field(i)->setText(bytes.at(i));
    }
    QLineEdit *field(int position) const
    {
        return m_bench->find<QLineEdit>(
            qPrintable(QStringLiteral("lineEdit_byte_%1").arg(position)));
    }
    void typeLength(const char *digits)
    {
        auto *dlc = m_bench->find<DlcSpinBox>("spinBox_dlc");
        dlc->selectAll();
        QTest::keyClicks(dlc, QLatin1String(digits));
    }
    void send() { m_bench->button("pushButton_send_msg")->click(); }
    void check(const char *name) { m_bench->find<QCheckBox>(name)->click(); }

    std::unique_ptr<SimulatedLogger> m_logger;
    std::unique_ptr<CanPageBench> m_bench;
};

void tst_Logger_CAN_View_Tx::init()
{
    m_bench.reset();
    m_logger.reset();
    m_bench = std::make_unique<CanPageBench>();
    m_bench->page();
}

void tst_Logger_CAN_View_Tx::aFrameReachesTheLogger()
{
    connectLogger();
    type("7e0", {QStringLiteral("02"), QStringLiteral("3e"), QStringLiteral("FF")});
    send();
    QCOMPARE(sent().size(), 1);
    QCOMPARE(sent().first().channel, CanPageBench::number);
    QCOMPARE(sent().first().id, 0x7E0U);
    QVERIFY(!sent().first().extended && !sent().first().remote);
    QCOMPARE(sent().first().data.toHex(), QByteArray("023eff"));
    QCOMPARE(m_bench->label("label_send_result"), QStringLiteral("Sent."));
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_Logger_CAN_View_Tx::anExtendedFrameReachesTheLogger()
{
    connectLogger();
    check("checkBox_29_bit");
    type("1FFFFFFF", {});
    send();
    QCOMPARE(sent().size(), 1);
    QVERIFY(sent().first().extended);
    QCOMPARE(sent().first().id, 0x1FFFFFFFU);
    QVERIFY(sent().first().data.isEmpty());
}

void tst_Logger_CAN_View_Tx::aRemoteFrameIsSentWithoutData()
{
    connectLogger();
    type("123", {QStringLiteral("01"), QStringLiteral("02")});
    check("checkBox_rtr");
    QVERIFY(!field(0)->isEnabled());
    send();
    QCOMPARE(sent().size(), 1);
    QVERIFY(sent().first().remote);
    QCOMPARE(sent().first().data.toHex(), QByteArray("0000"));
}

void tst_Logger_CAN_View_Tx::anFdFrameHasUpTo64Bytes()
{
    connectLogger();
    check("checkBox_fd_format");
    QStringList bytes;
    for (int i = 0; i < 64; ++i)
        bytes += QString::number(i + 16, 16);
    type("1", bytes);
    send();
    QCOMPARE(sent().size(), 1);
    QCOMPARE(sent().first().data.toHex(), bytes.join(QString()).toLatin1());
}

void tst_Logger_CAN_View_Tx::returnInAFieldSends()
{
    connectLogger();
    type("5", {QStringLiteral("01")});
    m_bench->showActive();
    m_bench->find<QLineEdit>("lineEdit_id")->setFocus();
    QTest::keyClick(m_bench->find<QLineEdit>("lineEdit_id"), Qt::Key_Return);
    QTest::keyClick(field(0), Qt::Key_Return);
    QCOMPARE(sent().size(), 2);
}

void tst_Logger_CAN_View_Tx::framesThatWereSentAreCounted()
{
    connectLogger();
    type("5", {});
    send();
    QCOMPARE(m_bench->label("label_send_result"), QStringLiteral("Sent."));
    send();
    QCOMPARE(m_bench->label("label_send_result"), QStringLiteral("Sent (2)."));
    m_bench->setState(APP_STA_CONN_LOG_ON);
    QCOMPARE(m_bench->label("label_send_result"), QString());
    send();
    QCOMPARE(m_bench->label("label_send_result"), QStringLiteral("Sent."));
}

void tst_Logger_CAN_View_Tx::theTabKeyLeadsThroughTheRow()
{
    connectLogger();
    type("5", {QStringLiteral("01"), QStringLiteral("02")});
    m_bench->showActive();
    m_bench->find<DlcSpinBox>("spinBox_dlc")->setFocus();
    const QList<QWidget *> behind = {field(0), field(1), m_bench->button("pushButton_send_msg")};
    for (const QWidget *next : behind) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), next);
    }
}

void tst_Logger_CAN_View_Tx::aRefusalOfTheLoggerIsTold()
{
    connectLogger();
    m_logger->setFault(QStringLiteral("error-reply@write_can_2_msg"));
    type("5", {});
    send();
    QCOMPARE(m_bench->prompt.shown,
             QStringList(QStringLiteral("Frame not sent|The logger didn't take the frame.")));
    QVERIFY(!m_bench->prompt.reasons.first().isEmpty());
    QCOMPARE(m_bench->label("label_send_result"), QString());
}

void tst_Logger_CAN_View_Tx::nothingIsSentWithoutALogger()
{
    QVERIFY(!m_bench->button("pushButton_send_msg")->isEnabled());
    type("5", {QStringLiteral("01")});
    QTest::keyClick(field(0), Qt::Key_Return);
    QCOMPARE(m_bench->label("label_send_result"), QString());
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_Logger_CAN_View_Tx::anIdentifierAboveTheLimitIsRefused_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("isExtended");
    QTest::addColumn<QString>("limit");
    QTest::newRow("11 bits") << QStringLiteral("800") << false << QStringLiteral("up to 0x7FF");
    QTest::newRow("29 bits") << QStringLiteral("20000000") << true
                             << QStringLiteral("up to 0x1FFFFFFF");
}

void tst_Logger_CAN_View_Tx::anIdentifierAboveTheLimitIsRefused()
{
    QFETCH(QString, id);
    QFETCH(bool, isExtended);
    connectLogger();
    if (isExtended)
        check("checkBox_29_bit");
    type(qPrintable(id), {});
    QTEST(m_bench->label("label_id_limit"), "limit");
    QVERIFY(m_bench->find<QLabel>("label_id_limit")->styleSheet().contains(QStringLiteral("red")));
    send();
    QVERIFY(sent().isEmpty());
    QCOMPARE(m_bench->prompt.shown.size(), 1);
    QVERIFY(m_bench->prompt.shown.first().startsWith(QStringLiteral("Invalid Parameter|")));
}

void tst_Logger_CAN_View_Tx::theIdentifierTakesEightHexadecimalDigits()
{
    m_bench->showActive();
    auto *id = m_bench->find<QLineEdit>("lineEdit_id");
    QCOMPARE(id->inputMask(), QStringLiteral("HHHHHHHH"));
    id->setFocus();
    id->setCursorPosition(0);
    QTest::keyClicks(id, QStringLiteral("1gF-0a2345678"));
    QCOMPARE(id->text(), QStringLiteral("1F0a2345"));
    QCOMPARE(m_bench->label("label_id_limit"), QStringLiteral("up to 0x7FF"));
    check("checkBox_29_bit");
    QCOMPARE(m_bench->label("label_id_limit"), QStringLiteral("up to 0x1FFFFFFF"));
    check("checkBox_29_bit");
    QCOMPARE(m_bench->label("label_id_limit"), QStringLiteral("up to 0x7FF"));
}

void tst_Logger_CAN_View_Tx::aByteThatDoesNotParseIsRefused()
{
    connectLogger();
    type("5", {QStringLiteral("01"), QString()});
    send();
    QVERIFY(sent().isEmpty());
    QCOMPARE(m_bench->prompt.shown,
             QStringList(QStringLiteral("Invalid Parameter|Invalid Value: CAN-Data,BytePos 1")));
}

void tst_Logger_CAN_View_Tx::theLengthEnablesTheFields()
{
    m_bench->find<DlcSpinBox>("spinBox_dlc")->setValue(3);
    QVERIFY(field(2)->isEnabled());
    QVERIFY(!field(3)->isEnabled());
    m_bench->find<DlcSpinBox>("spinBox_dlc")->setValue(0);
    QVERIFY(!field(0)->isEnabled());
}

void tst_Logger_CAN_View_Tx::returnTakesATypedLength()
{
    check("checkBox_fd_format");
    typeLength("33");
    QVERIFY(!field(47)->isEnabled());
    QTest::keyClick(m_bench->find<DlcSpinBox>("spinBox_dlc"), Qt::Key_Return);
    QVERIFY(field(47)->isEnabled());
    QVERIFY(!field(48)->isEnabled());
}

// No frame has 33 bytes, so the box waits for what comes behind the digits.
void tst_Logger_CAN_View_Tx::aLengthThatIsStillBeingTypedCounts()
{
    connectLogger();
    check("checkBox_fd_format");
    type("1", {QStringLiteral("11"), QStringLiteral("22")});
    typeLength("33");
    send();
    QCOMPARE(sent().size(), 1);
    QCOMPARE(sent().first().data, QByteArray::fromHex("1122").leftJustified(48, '\0'));
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_Logger_CAN_View_Tx::aFrameCarriesTheChannel()
{
    connectLogger();
    QStringList asked;
    connect(&m_bench->page(), &Logger_CAN_View::signal_send_can_msg, this,
            [&asked](int can_nr, int ext_id, int rtr, int id, int dlc, const QByteArray &data) {
                asked += QStringLiteral("%1 %2 %3 %4 %5 ")
                             .arg(can_nr)
                             .arg(ext_id)
                             .arg(rtr)
                             .arg(id, 0, 16)
                             .arg(dlc)
                         + QString::fromLatin1(data.toHex());
            });
    check("checkBox_29_bit");
    type("18fef100", {QStringLiteral("01"), QStringLiteral("ff")});
    send();
    check("checkBox_29_bit");
    check("checkBox_rtr");
    type("7ff", {QString()});
    send();
    QCOMPARE(asked.join(QLatin1Char('|')), QStringLiteral("2 1 0 18fef100 2 01ff|2 0 1 7ff 1 00"));
}

void tst_Logger_CAN_View_Tx::theFormatDecidesOnTheLengths()
{
    auto *dlc = m_bench->find<DlcSpinBox>("spinBox_dlc");
    QCOMPARE(dlc->maximum(), 8);
    QVERIFY(!field(8)->isVisibleTo(&m_bench->page()));
    check("checkBox_fd_format");
    QCOMPARE(dlc->maximum(), 64);
    dlc->stepUp();
    QCOMPARE(dlc->value(), 12);
    QVERIFY(field(11)->isEnabled() && !field(12)->isEnabled());
    QVERIFY(field(15)->isVisibleTo(&m_bench->page()));
    QVERIFY(!field(16)->isVisibleTo(&m_bench->page()));
    dlc->setValue(64);
    QVERIFY(field(63)->isVisibleTo(&m_bench->page()));
    check("checkBox_fd_format");
    QCOMPARE(dlc->value(), 8);
}

void tst_Logger_CAN_View_Tx::thereAreNoRemoteFdFrames()
{
    check("checkBox_rtr");
    check("checkBox_fd_format");
    QVERIFY(!m_bench->find<QCheckBox>("checkBox_rtr")->isEnabled());
    QVERIFY(field(0)->isEnabled());
}

void tst_Logger_CAN_View_Tx::framesOfTheLoggerAreShownLive()
{
    m_logger = std::make_unique<SimulatedLogger>();
    m_logger->inspect([](LoggerSimulator &s) {
        TerminalCanCfg &can = s.state().configuration.can.at(CanPageBench::number);
        can.filters.clear();
        can.dbc_signals.clear();
        can.enabled = 1;
        StreamingClass_DBC_Signal &signal = can.dbc_signals.add();
        signal.name = QStringLiteral("Temperature");
        signal.unit = QStringLiteral("degC");
        signal.msg_id = 0x321;
        signal.dlc = 8;
        signal.bit_length = 16;
        signal.little_endian = 1;
        signal.factor = 0.1;
        signal.maximum = 90;
        signal.selection_flags =
            StreamingClass_DBC_Signal::recordFlag | StreamingClass_DBC_Signal::liveFlag;
    });
    QVERIFY(m_bench->handler.connectLogger(m_logger->address()));
    m_bench->setState(APP_STA_CONN_INIT);
    QVERIFY(m_bench->handler.requestConfiguration());
    m_bench->setState(APP_STA_CONN_LOG_OFF);
    m_bench->handler.enableLiveData();
    m_bench->page().show();
    QTRY_COMPARE(m_bench->rows("tableView_dbc")->rowCount(), 1);
    QTRY_VERIFY(!m_bench->cell("tableView_dbc", 0, 3).isEmpty());
    QTRY_VERIFY(m_bench->rows("tableView_rx")->rowCount() > 0);
    QCOMPARE(m_bench->cell("tableView_rx", 0, 0), QStringLiteral("321"));
    QCOMPARE(m_bench->cell("tableView_rx", 0, 5), QStringLiteral("Temperature"));
}

void tst_Logger_CAN_View_Tx::aRefusedNameIsTakenBack()
{
    m_bench->writeSignals({QStringLiteral("A")});
    connectLogger();
    QVERIFY(m_bench->handler.writeCan(CanPageBench::number, m_bench->channel()));
    QCoreApplication::processEvents(); // the echo
    m_logger->setFault(QStringLiteral("refused-write"));
    QAbstractItemModel *rows = m_bench->rows("tableView_dbc");
    rows->setData(rows->index(0, 2), QStringLiteral("B"));
    QTRY_COMPARE(m_bench->cell("tableView_dbc", 0, 2), QStringLiteral("A"));
    QCOMPARE(m_bench->signalNames(), QStringList(QStringLiteral("A")));
}

void tst_Logger_CAN_View_Tx::aMultiplexorReachesTheLoggerWithoutTicks()
{
    connectLogger();
    m_bench->page().loadDbcFile(
        m_bench->writeFile("mux.dbc", "BO_ 291 Engine: 8 ECU\n"
                                      " SG_ Page M : 0|8@1+ (1,0) [0|0] \"\" ECU\n"
                                      " SG_ Speed m3 : 8|8@1+ (1,0) [0|0] \"\" ECU\n"));
    QDialog *selector = nullptr;
    QTRY_VERIFY((selector = m_bench->page().findChild<QDialog *>()) != nullptr);
    QVERIFY(QMetaObject::invokeMethod(selector, "on_pushButton_select_all_clicked"));
    QVERIFY(QMetaObject::invokeMethod(selector, "load_selected"));
    const QString held = m_logger->inspect([](LoggerSimulator &s) {
        QStringList names;
        for (const StreamingClass_DBC_Signal *signal :
             s.state().configuration.can.at(CanPageBench::number).dbc_signals)
            names += QStringLiteral("%1 %2").arg(signal->name).arg(signal->selection_flags);
        return names.join(QLatin1Char(','));
    });
    QCOMPARE(held, QStringLiteral("Speed 1,Page 0"));
}

void tst_Logger_CAN_View_Tx::anEditIsShownWhenItIsEchoed_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<bool>("isRecorded");
    QTest::newRow("taken") << QString() << false;
    QTest::newRow("refused") << QStringLiteral("refused-write") << true;
    QTest::newRow("not answered") << QStringLiteral("lost-reply") << true;
}

void tst_Logger_CAN_View_Tx::anEditIsShownWhenItIsEchoed()
{
    QFETCH(QString, fault);
    m_bench->writeSignals({QStringLiteral("A")});
    connectLogger();
    QVERIFY(m_bench->handler.writeCan(CanPageBench::number, m_bench->channel()));
    QCoreApplication::processEvents(); // the echo
    if (!fault.isEmpty())
        m_logger->setFault(fault);
    m_bench->handler.setWriteTimeout(200);
    QAbstractItemModel *rows = m_bench->rows("tableView_dbc");
    rows->setData(rows->index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
    QFETCH(bool, isRecorded);
    QTRY_COMPARE(rows->index(0, 0).data(Qt::CheckStateRole) == Qt::Checked, isRecorded);
    const StreamingClass_DBC_Signal &signal = *m_bench->channel().dbc_signals.at(0);
    QCOMPARE((signal.selection_flags & StreamingClass_DBC_Signal::recordFlag) != 0, isRecorded);
}

// Nothing delivers events between them, as when the user ticks while a reply is late.
void tst_Logger_CAN_View_Tx::editsInARowAllHold()
{
    m_bench->writeSignals({QStringLiteral("A"), QStringLiteral("B")});
    connectLogger();
    QVERIFY(m_bench->handler.writeCan(CanPageBench::number, m_bench->channel()));
    QCoreApplication::processEvents(); // the echo
    QAbstractItemModel *rows = m_bench->rows("tableView_dbc");
    rows->setData(rows->index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
    rows->setData(rows->index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
    m_bench->button("pushButton_can_enable")->click();
    m_bench->find<QTableView>("tableView_dbc")->selectRow(0);
    m_bench->button("pushButton_remove_selected")->click();
    TerminalCanCfg held;
    m_logger->inspect([&held](LoggerSimulator &s) {
        record::copy(s.state().configuration.can.at(CanPageBench::number), held);
    });
    QCOMPARE(int(held.enabled), 1);
    QCOMPARE(held.dbc_signals.size(), 1);
    QCOMPARE(held.dbc_signals.at(0)->name, QStringLiteral("B"));
    QCOMPARE(int(held.dbc_signals.at(0)->selection_flags),
             int(StreamingClass_DBC_Signal::liveFlag));
    QVERIFY(m_bench->channel() == held);
}

QTEST_MAIN(tst_Logger_CAN_View_Tx)
#include "tst_logger_can_view_tx.moc"
