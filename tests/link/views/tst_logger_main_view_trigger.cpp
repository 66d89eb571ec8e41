#include "link/protocol/messagetypes.h"
#include "link/views/logtriggercustomcombobox.h"
#include "tests/app/messagesink.h"
#include "tests/link/views/mainviewbench.h"
#include "tests/support/peerlogger.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>

using Signal = StreamingClass_DBC_Signal;

namespace {

Signal recorded(const char *name, quint8 muxKind = PlainSignal, quint32 message = 0x100)
{
    Signal signal;
    signal.name = QString::fromLatin1(name);
    signal.unit = QStringLiteral("km/h");
    signal.msg_id = message;
    signal.mux_kind = muxKind;
    signal.bit_length = 8;
    signal.factor = 1.0;
    signal.selection_flags = Signal::recordFlag;
    return signal;
}

constexpr const char *configurationWidgets[] = {"radioButton_trigger_delayed_start",
                                                "radioButton_trigger_signal",
                                                "spinBox_trigger_delay_seconds",
                                                "doubleSpinBox_trigger_signal_value",
                                                "checkBox_trigger_signal_stop_if_value_lower",
                                                "comboBox_trigger_signal_signal_name",
                                                "spinBox_trigger_signal_can_nr",
                                                "comboBox_aux_supply_control",
                                                "lineEdit_event_meassurement_name",
                                                "pushButton_set_event_meassurement_name"};

} // namespace

class tst_LoggerMainViewTrigger : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<MainViewBench>(); }
    void cleanup() { m_bench.reset(); }

    void theRecordIsShown();
    void redrawingSendsNothing();
    void onlyTheFrameOfTheModeIsShown();
    void eachUpdateNamesItsChannelInTheLog();
    void signalModeWithoutSignalSaysSo();
    void theTriggerSignalHeadsTheBox();
    void openingTheBoxListsTheChannelsRecordedSignals();
    void openingTheBoxWritesNothing();
    void signalsOfTheSameNameAreToldApart();
    void aPickedSignalIsWritten();
    void aPickedSignalReplacesAChannelThatIsNotThere();
    void aPickedMultiplexedSignalBringsItsMultiplexor();
    void aRemovedSignalIsNoLongerShown();
    void theNextChangeWritesNoRemovedSignal();
    void everyWidgetWritesTheRecord();
    void aValueFinerThanTheWidgetSurvivesAnotherChange();
    void anotherChannelDropsTheSignal();
    void aRefusedChangeIsTakenBack();
    void aChangeThatIsNotAnsweredIsTakenBack();
    void theStateDecidesWhatCanBeEdited_data();
    void theStateDecidesWhatCanBeEdited();

    void theModesOfTheAuxiliarySupplyAreListed();
    void aPickedModeIsWritten();
    void anUnknownModeShowsNone();
    void theEventNameIsWritten();
    void anEventNameOfOtherCharactersIsRefused();
    void anEventNameThatIsBeingTypedStays();
    void changesInARowAllHold();
    void theLoggersStateIsShown();
    void everyControlHasANameAndAToolTip();
    void theToolTipsOfNumbersTellTheirRange();

private:
    // The configuration in memory gets these; the handler is offline.
    void put(std::function<void(TerminalStruct &)> change)
    {
        TerminalStruct configuration;
        record::fromBytes(record::toBytes(m_bench->handler.terminal()), configuration);
        change(configuration);
        m_bench->handler.writeWholeConfiguration(configuration);
    }
    void putSignals(int can_nr, const QVector<Signal> &signalList)
    {
        put([&](TerminalStruct &configuration) {
            auto &channel = configuration.can[std::size_t(can_nr)].dbc_signals;
            channel.clear();
            for (const Signal &signal : signalList)
                channel.append(std::make_unique<Signal>(signal));
        });
    }
    const LogTriggerCfg &held() const { return m_bench->handler.terminal().trigger; }
    LogTriggerCustomComboBox *signalBox() const
    {
        return m_bench->find<LogTriggerCustomComboBox>("comboBox_trigger_signal_signal_name");
    }
    QStringList listedSignals() const
    {
        QStringList texts;
        for (int i = 0; i < signalBox()->count(); ++i)
            texts += signalBox()->itemText(i);
        return texts;
    }
    void pick(const char *name)
    {
        emit signalBox()->signal_clicked();
        signalBox()->setCurrentText(QString::fromLatin1(name));
    }

    std::unique_ptr<MainViewBench> m_bench;
};

void tst_LoggerMainViewTrigger::theRecordIsShown()
{
    put([](TerminalStruct &configuration) {
        LogTriggerCfg &trigger = configuration.trigger;
        trigger.mode = 1;
        trigger.delay = 90;
        trigger.signal_value = -2.25;
        trigger.stop_if_lower = 1;
        trigger.signal_can = 7;
        configuration.event.aux_mode = 2;
        configuration.event.event_name = QStringLiteral("run-7");
    });
    QVERIFY(m_bench->find<QRadioButton>("radioButton_trigger_signal")->isChecked());
    QCOMPARE(m_bench->find<QSpinBox>("spinBox_trigger_delay_seconds")->value(), 90);
    QCOMPARE(m_bench->find<QDoubleSpinBox>("doubleSpinBox_trigger_signal_value")->value(), -2.25);
    QVERIFY(m_bench->find<QCheckBox>("checkBox_trigger_signal_stop_if_value_lower")->isChecked());
    QCOMPARE(m_bench->find<QSpinBox>("spinBox_trigger_signal_can_nr")->value(), 7);
    QCOMPARE(m_bench->find<QComboBox>("comboBox_aux_supply_control")->currentIndex(), 2);
    QCOMPARE(m_bench->find<QLineEdit>("lineEdit_event_meassurement_name")->text(),
             QStringLiteral("run-7"));
}

void tst_LoggerMainViewTrigger::redrawingSendsNothing()
{
    putSignals(3, {recorded("speed")});
    put([](TerminalStruct &configuration) {
        configuration.trigger.mode = 1;
        configuration.trigger.signal_can = 3;
        configuration.trigger.signal = recorded("speed");
    });
    PeerLogger peer(echo);
    QVERIFY(m_bench->handler.connectLogger(peer.address()));
    LogTriggerCfg other = held();
    other.mode = 0;
    other.delay = 5;
    other.signal_can = 4;
    other.signal_value = 8;
    other.stop_if_lower = 1;
    QVERIFY(m_bench->handler.cmd_write_logtrigger_cfg(other));
    QTRY_COMPARE(m_bench->find<QSpinBox>("spinBox_trigger_delay_seconds")->value(), 5);
    m_bench->page->update_cfg_logtrigger();
    m_bench->page->showConfiguration();
    QCOMPARE(peer.received().size(), 1); // the test's own
}

void tst_LoggerMainViewTrigger::onlyTheFrameOfTheModeIsShown()
{
    const auto isShown = [this](const char *frame) {
        return m_bench->find<QWidget>(frame)->isVisibleTo(m_bench->page.get());
    };
    QVERIFY(isShown("frame_trigger_delay") && !isShown("frame_trigger_signal"));
    m_bench->button("radioButton_trigger_signal")->click();
    QVERIFY(!isShown("frame_trigger_delay") && isShown("frame_trigger_signal"));
    m_bench->button("radioButton_trigger_delayed_start")->click();
    QVERIFY(isShown("frame_trigger_delay") && !isShown("frame_trigger_signal"));
}

void tst_LoggerMainViewTrigger::eachUpdateNamesItsChannelInTheLog()
{
    put([](TerminalStruct &configuration) { configuration.trigger.signal_can = 9; });
    const MessageSink sink;
    m_bench->page->update_cfg_logtrigger();
    QCOMPARE(sink.messages().value(0),
             QStringLiteral("Debug: Logger_Main_View::update_cfg_logtrigger() -> CAN NR: 9"));
}

void tst_LoggerMainViewTrigger::signalModeWithoutSignalSaysSo()
{
    put([](TerminalStruct &configuration) { configuration.trigger.mode = 1; });
    QCOMPARE(signalBox()->currentText(), QStringLiteral("no dbc-signal selected"));
    QCOMPARE(signalBox()->currentData().toInt(), -1);
}

void tst_LoggerMainViewTrigger::theTriggerSignalHeadsTheBox()
{
    putSignals(2, {recorded("torque"), recorded("speed")});
    put([](TerminalStruct &configuration) {
        configuration.trigger.signal_can = 2;
        configuration.trigger.signal = recorded("speed");
    });
    QCOMPARE(signalBox()->itemText(0), QStringLiteral("speed"));
    QCOMPARE(signalBox()->currentIndex(), 0);
    QVERIFY(signalBox()->currentData().toInt() >= 0);
    QCOMPARE(m_bench->label("label_trigger_signal_unit"), QStringLiteral("km/h"));
}

void tst_LoggerMainViewTrigger::openingTheBoxListsTheChannelsRecordedSignals()
{
    Signal live = recorded("live");
    live.selection_flags = Signal::liveFlag;
    putSignals(0, {recorded("speed"), live, recorded("torque")});
    m_bench->page->show();
    signalBox()->showPopup();
    QCOMPARE(listedSignals(), QStringList({QStringLiteral("no dbc-signal selected"),
                                           QStringLiteral("speed"), QStringLiteral("torque")}));
    signalBox()->hidePopup();
}

void tst_LoggerMainViewTrigger::openingTheBoxWritesNothing()
{
    putSignals(0, {recorded("speed")});
    const QSignalSpy writes(&m_bench->handler,
                            &Logger_Data_Handler_Class::signal_update_cfg_logtrigger);
    emit signalBox()->signal_clicked();
    QVERIFY(writes.isEmpty());
}

void tst_LoggerMainViewTrigger::signalsOfTheSameNameAreToldApart()
{
    putSignals(0, {recorded("speed", PlainSignal, 0x1a), recorded("speed", PlainSignal, 0x2b)});
    pick("speed (0x02b)");
    QCOMPARE(held().signal.msg_id, 0x2bU);
    QCOMPARE(signalBox()->currentText(), QStringLiteral("speed (0x02b)"));
    emit signalBox()->signal_clicked();
    QCOMPARE(signalBox()->currentText(), QStringLiteral("speed (0x02b)"));
}

void tst_LoggerMainViewTrigger::aPickedSignalIsWritten()
{
    putSignals(0, {recorded("speed"), recorded("torque")});
    const MessageSink sink;
    pick("torque");
    QCOMPARE(held().signal.name, QStringLiteral("torque"));
    QVERIFY(held().multiplexor == Signal());
    QCOMPARE(sink.messages().value(0), QStringLiteral("Debug: SET trigger sig: \"torque\""));
}

void tst_LoggerMainViewTrigger::aPickedSignalReplacesAChannelThatIsNotThere()
{
    putSignals(11, {recorded("speed")});
    put([](TerminalStruct &configuration) { configuration.trigger.signal_can = 200; });
    QCOMPARE(m_bench->find<QSpinBox>("spinBox_trigger_signal_can_nr")->value(), 11);
    pick("speed");
    QCOMPARE(held().signal.name, QStringLiteral("speed"));
    QCOMPARE(int(held().signal_can), 11);
    QCOMPARE(signalBox()->currentText(), QStringLiteral("speed"));
}

void tst_LoggerMainViewTrigger::aPickedMultiplexedSignalBringsItsMultiplexor()
{
    putSignals(0, {recorded("value", MultiplexedSignal), recorded("selector", MultiplexorSignal)});
    const MessageSink sink;
    pick("value");
    QCOMPARE(held().signal.name, QStringLiteral("value"));
    QCOMPARE(held().multiplexor.name, QStringLiteral("selector"));
    QCOMPARE(sink.messages().mid(0, 2),
             QStringList({QStringLiteral("Debug: SET MUX trigger sig \"selector\""),
                          QStringLiteral("Debug: SET trigger sig: \"value\"")}));
}

void tst_LoggerMainViewTrigger::aRemovedSignalIsNoLongerShown()
{
    putSignals(0, {recorded("speed"), recorded("torque")});
    pick("speed");
    TerminalCanCfg channel;
    channel.dbc_signals.append(std::make_unique<Signal>(recorded("torque")));
    QVERIFY(m_bench->handler.writeCan(0, channel));
    QCOMPARE(listedSignals(), QStringList({QStringLiteral("no dbc-signal selected")}));
}

void tst_LoggerMainViewTrigger::theNextChangeWritesNoRemovedSignal()
{
    putSignals(0, {recorded("speed")});
    pick("speed");
    QVERIFY(m_bench->handler.writeCan(0, TerminalCanCfg()));
    m_bench->find<QSpinBox>("spinBox_trigger_delay_seconds")->setValue(3);
    QVERIFY(held().signal == Signal());
    QCOMPARE(held().delay, 3);
}

void tst_LoggerMainViewTrigger::everyWidgetWritesTheRecord()
{
    m_bench->button("radioButton_trigger_signal")->click();
    QCOMPARE(int(held().mode), 1);
    m_bench->find<QSpinBox>("spinBox_trigger_delay_seconds")->setValue(12);
    QCOMPARE(held().delay, 12);
    m_bench->find<QDoubleSpinBox>("doubleSpinBox_trigger_signal_value")->setValue(1.5);
    QCOMPARE(held().signal_value, 1.5);
    m_bench->find<QSpinBox>("spinBox_trigger_signal_can_nr")->setValue(11);
    QCOMPARE(int(held().signal_can), 11);
    m_bench->button("checkBox_trigger_signal_stop_if_value_lower")->click();
    QCOMPARE(int(held().stop_if_lower), 1);
    m_bench->button("radioButton_trigger_delayed_start")->click();
    QCOMPARE(int(held().mode), 0);
    QCOMPARE(held().delay, 12);
}

void tst_LoggerMainViewTrigger::aValueFinerThanTheWidgetSurvivesAnotherChange()
{
    put([](TerminalStruct &configuration) { configuration.trigger.signal_value = 1.23456789e-9; });
    m_bench->find<QSpinBox>("spinBox_trigger_delay_seconds")->setValue(1);
    QCOMPARE(held().signal_value, 1.23456789e-9);
}

void tst_LoggerMainViewTrigger::anotherChannelDropsTheSignal()
{
    putSignals(0, {recorded("speed")});
    pick("speed");
    m_bench->find<QSpinBox>("spinBox_trigger_signal_can_nr")->setValue(1);
    QVERIFY(held().signal == Signal());
    QCOMPARE(signalBox()->currentText(), QStringLiteral("no dbc-signal selected"));
}

void tst_LoggerMainViewTrigger::aRefusedChangeIsTakenBack()
{
    m_bench->connectLogger();
    m_bench->logger.setFault(QStringLiteral("refused-write"));
    auto *delay = m_bench->find<QSpinBox>("spinBox_trigger_delay_seconds");
    const int before = delay->value();
    delay->setValue(before + 7);
    QTRY_COMPARE(delay->value(), before);
}

void tst_LoggerMainViewTrigger::aChangeThatIsNotAnsweredIsTakenBack()
{
    m_bench->connectLogger();
    m_bench->handler.setWriteTimeout(50);
    m_bench->logger.setFault(QStringLiteral("lost-reply"));
    auto *delay = m_bench->find<QSpinBox>("spinBox_trigger_delay_seconds");
    const int before = delay->value();
    delay->setValue(before + 7);
    QCOMPARE(delay->value(), before);
}

void tst_LoggerMainViewTrigger::theStateDecidesWhatCanBeEdited_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("afterEnabled");
    QTest::addColumn<bool>("afterDisabled");
    QTest::newRow("0 enables") << 0 << true << true;
    QTest::newRow("1 leaves alone") << 1 << true << false;
    QTest::newRow("2 disables") << 2 << false << false;
    QTest::newRow("3 enables") << 3 << true << true;
    QTest::newRow("4 leaves alone") << 4 << true << false;
    QTest::newRow("5 disables") << 5 << false << false;
}

void tst_LoggerMainViewTrigger::theStateDecidesWhatCanBeEdited()
{
    QFETCH(int, state);
    for (const char *name : configurationWidgets) {
        m_bench->controller.slotSetAppState(APP_STA_CONN_LOG_OFF);
        m_bench->controller.slotSetAppState(AppSta_t(state));
        QTEST(m_bench->find<QWidget>(name)->isEnabled(), "afterEnabled");
        m_bench->controller.slotSetAppState(APP_STA_CONN_LOG_ON);
        m_bench->controller.slotSetAppState(AppSta_t(state));
        QTEST(m_bench->find<QWidget>(name)->isEnabled(), "afterDisabled");
    }
}

void tst_LoggerMainViewTrigger::theModesOfTheAuxiliarySupplyAreListed()
{
    auto *box = m_bench->find<QComboBox>("comboBox_aux_supply_control");
    QCOMPARE(box->count(), 3);
    QCOMPARE(box->itemText(0), QStringLiteral("always on"));
    QCOMPARE(box->itemText(1), QStringLiteral("terminal 15 controled"));
    QCOMPARE(box->itemText(2), QStringLiteral("CAN-0 traffic controlled"));
}

void tst_LoggerMainViewTrigger::aPickedModeIsWritten()
{
    put([](TerminalStruct &configuration) {
        configuration.event.event_name = QStringLiteral("kept");
    });
    m_bench->find<QComboBox>("comboBox_aux_supply_control")->setCurrentIndex(1);
    QCOMPARE(int(m_bench->handler.terminal().event.aux_mode), 1);
    QCOMPARE(m_bench->handler.terminal().event.event_name, QStringLiteral("kept"));
}

void tst_LoggerMainViewTrigger::anUnknownModeShowsNone()
{
    put([](TerminalStruct &configuration) { configuration.event.aux_mode = 200; });
    QCOMPARE(m_bench->find<QComboBox>("comboBox_aux_supply_control")->currentIndex(), -1);
    QCOMPARE(int(m_bench->handler.terminal().event.aux_mode), 200);
}

void tst_LoggerMainViewTrigger::theEventNameIsWritten()
{
    put([](TerminalStruct &configuration) { configuration.event.aux_mode = 2; });
    PeerLogger peer(echo);
    QVERIFY(m_bench->handler.connectLogger(peer.address()));
    auto *line = m_bench->find<QLineEdit>("lineEdit_event_meassurement_name");
    QTest::keyClicks(line, QStringLiteral("Lap-1.2_x y/"));
    QCOMPARE(line->text(), QStringLiteral("Lap-1.2_xy")); // others can't be typed
    m_bench->button("pushButton_set_event_meassurement_name")->click();
    AuxSupplyCfg expected;
    expected.event_name = QStringLiteral("Lap-1.2_xy");
    expected.aux_mode = 2;
    QCOMPARE(peer.received().size(), 1);
    QCOMPARE(int(peer.received().last().type), 41);
    QCOMPARE(peer.received().last().payload, record::toBytes(expected));
}

void tst_LoggerMainViewTrigger::anEventNameOfOtherCharactersIsRefused()
{
    put([](TerminalStruct &configuration) {
        configuration.event.event_name = QStringLiteral("of another tool/21 characters");
    });
    m_bench->button("pushButton_set_event_meassurement_name")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral(
                 "Event-Measurement|The name may have up to 20 characters: a to z, A to Z, "
                 "0 to 9, \"-\", \".\" and \"_\".")}));
}

void tst_LoggerMainViewTrigger::anEventNameThatIsBeingTypedStays()
{
    auto *line = m_bench->find<QLineEdit>("lineEdit_event_meassurement_name");
    QTest::keyClicks(line, QStringLiteral("new"));
    m_bench->find<QComboBox>("comboBox_aux_supply_control")->setCurrentIndex(1);
    QCOMPARE(line->text(), QStringLiteral("new"));
    put([](TerminalStruct &configuration) {
        configuration.event.event_name = QStringLiteral("loaded");
    });
    QCOMPARE(line->text(), QStringLiteral("loaded"));
}

// Both are fields of one record, and nothing delivers events between them.
void tst_LoggerMainViewTrigger::changesInARowAllHold()
{
    m_bench->connectLogger();
    m_bench->find<QLineEdit>("lineEdit_event_meassurement_name")->setText(QStringLiteral("lap"));
    m_bench->button("pushButton_set_event_meassurement_name")->click();
    m_bench->find<QComboBox>("comboBox_aux_supply_control")->setCurrentIndex(2);
    const AuxSupplyCfg held = m_bench->logger.inspect(
        [](simulator::LoggerSimulator &s) { return s.state().configuration.event; });
    QCOMPARE(held.event_name, QStringLiteral("lap"));
    QCOMPARE(int(held.aux_mode), 2);
    QVERIFY(m_bench->handler.terminal().event == held);
}

void tst_LoggerMainViewTrigger::theLoggersStateIsShown()
{
    QCOMPARE(m_bench->label("label_logging_status"), QStringLiteral("---"));
    m_bench->logger.inspect(
        [](simulator::LoggerSimulator &logger) { logger.state().hasVbatError = true; });
    m_bench->connectLogger(APP_STA_CONN_LOG_ON);
    m_bench->handler.enableLiveData();
    QTRY_COMPARE(m_bench->label("label_logging_status"), QStringLiteral("recording"));
    QCOMPARE(m_bench->label("label_aux_supply_status"), QStringLiteral("on/fault occured"));
    m_bench->logger.inspect([](simulator::LoggerSimulator &logger) {
        logger.state().hasVbatError = false;
        logger.state().isLoggingStopped = true;
    });
    QTRY_COMPARE(m_bench->label("label_logging_status"), QStringLiteral("stopped"));
    QCOMPARE(m_bench->label("label_aux_supply_status"), QStringLiteral("on"));
    m_bench->handler.disconnectLogger();
    QCOMPARE(m_bench->label("label_logging_status"), QStringLiteral("---"));
    QCOMPARE(m_bench->label("label_aux_supply_status"), QStringLiteral("---"));
}

void tst_LoggerMainViewTrigger::everyControlHasANameAndAToolTip()
{
    int controls = 0;
    const QList<QWidget *> widgets = m_bench->page->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const bool isControl = qobject_cast<const QAbstractButton *>(widget)
                               || qobject_cast<const QComboBox *>(widget)
                               || qobject_cast<const QAbstractSpinBox *>(widget)
                               || qobject_cast<const QTableWidget *>(widget)
                               || widget->objectName().startsWith(QStringLiteral("lineEdit"));
        if (!isControl || widget->objectName().startsWith(QStringLiteral("qt_"))
            || widget->objectName().isEmpty())
            continue;
        ++controls;
        QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
        QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
    }
    QVERIFY(controls >= 23);
}

void tst_LoggerMainViewTrigger::theToolTipsOfNumbersTellTheirRange()
{
    for (const char *name : {"spinBox_trigger_delay_seconds", "spinBox_trigger_signal_can_nr"}) {
        const auto *box = m_bench->find<QSpinBox>(name);
        const QString range = QStringLiteral("%1 to %2").arg(box->minimum()).arg(box->maximum());
        QVERIFY2(box->toolTip().contains(range), name);
    }
    const auto *value = m_bench->find<QDoubleSpinBox>("doubleSpinBox_trigger_signal_value");
    QVERIFY(value->toolTip().contains(QStringLiteral("%1 to %2")
                                          .arg(value->minimum(), 0, 'f', 0)
                                          .arg(value->maximum(), 0, 'f', 0)));
}

QTEST_MAIN(tst_LoggerMainViewTrigger)
#include "tst_logger_main_view_trigger.moc"
