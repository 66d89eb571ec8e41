#include "tests/can/views/canpagebench.h"

#include <QCheckBox>
#include <QDialog>
#include <QFrame>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableView>

namespace {

// Events of one type that reach the objects whose filter it is.
class EventCount : public QObject
{
public:
    explicit EventCount(QEvent::Type type)
        : m_type(type)
    {}
    int count = 0;

    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == m_type ? 1 : 0;
        return false;
    }

private:
    const QEvent::Type m_type;
};

} // namespace

// What the page shows, switches and remembers; no logger is connected.
class tst_Logger_CAN_View : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theStateOfTheChannelIsShown();
    void anotherChannelsChangeIsNotShown();
    void aWholeConfigurationIsShownOnce();
    void theStateDecidesWhatCanBeEdited();
    void theConfigurationDialogWritesTheChannel();
    void exportOptionsAreWritten();
    void dialogsCloseWhenNothingCanBeEdited();
    void withoutADialogNothingIsToldOfItsEnd();
    void theModeOfTheA2lFileIsShown();
    void theSessionIsShownAsText();
    void anotherChannelsSessionIsNotShown();
    void whatTheUserAsksForCarriesTheChannel();
    void aSessionEndsWithItsConnection_data();
    void aSessionEndsWithItsConnection();

    void aNewConnectionStartsAnew();
    void aNewConnectionClearsTheLabels();
    void aNewConnectionClosesTheNotice();

    void thePageLeavesRoomForTheTreeBesideIt();
    void columnsAreRemembered();
    void columnsOfTheSignalsAreRemembered();
    void everyControlSaysWhatItIsFor();

private:
    std::unique_ptr<CanPageBench> m_bench;
};

void tst_Logger_CAN_View::init()
{
    m_bench.reset();
    m_bench = std::make_unique<CanPageBench>();
}

void tst_Logger_CAN_View::theStateOfTheChannelIsShown()
{
    QCOMPARE(m_bench->label("label_page_title"), QStringLiteral("CAN-2"));
    QCOMPARE(m_bench->label("label_can_status"), QStringLiteral("Disabled"));
    m_bench->button("pushButton_can_enable")->click();
    QCOMPARE(int(m_bench->channel().enabled), 1);
    QCOMPARE(m_bench->label("label_can_status"), QStringLiteral("Enabled"));
    QCOMPARE(m_bench->find<QLabel>("label_can_indicator")->styleSheet(),
             QStringLiteral("QWidget::enabled{border-color: grey;  border-width: 1px;  "
                            "border-style: solid;  background-color: rgb(0, 255, 0);} "));
    m_bench->button("pushButton_can_disable")->click();
    QCOMPARE(m_bench->label("label_can_status"), QStringLiteral("Disabled"));
    QCOMPARE(m_bench->find<QLabel>("label_can_indicator")->styleSheet(),
             QStringLiteral("QWidget::enabled{border-color: grey;  border-width: 1px;  "
                            "border-style: solid;  background-color: rgb(255, 0, 0);} "));
}

void tst_Logger_CAN_View::anotherChannelsChangeIsNotShown()
{
    const QSignalSpy told(&m_bench->page(), &Logger_CAN_View::signal_update_can_cfg_window);
    QVERIFY(m_bench->handler.cmd_write_can_enabled(3, 1));
    QVERIFY(told.isEmpty());
    QVERIFY(m_bench->handler.cmd_write_can_enabled(CanPageBench::number, 1));
    QCOMPARE(told.size(), 1);
}

void tst_Logger_CAN_View::aWholeConfigurationIsShownOnce()
{
    m_bench->page().show(); // hidden, a style waits for the first time that it is seen
    EventCount redraws(QEvent::StyleChange);
    m_bench->find<QLabel>("label_can_indicator")->installEventFilter(&redraws);
    m_bench->page().showConfiguration();
    const int once = redraws.count;
    QVERIFY(once > 0);
    emit m_bench->handler.signal_full_update();
    QCOMPARE(redraws.count, 2 * once);
}

void tst_Logger_CAN_View::theStateDecidesWhatCanBeEdited()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    m_bench->find<QTableView>("tableView_dbc")->selectRow(0);
    const auto enabled = [this] {
        QString names;
        for (const char *name :
             {"pushButton_can_enable", "pushButton_can_disable", "pushButton_can_configuration",
              "pushButton_export_options", "pushButton_load_dbc_file", "pushButton_remove_selected",
              "pushButton_send_msg"})
            names += m_bench->button(name)->isEnabled() ? QLatin1Char('1') : QLatin1Char('0');
        return names;
    };
    const std::pair<AppSta_t, const char *> states[] = {
        {APP_STA_CONN_INIT, "1111110"},        {APP_STA_CONN_UPDATE, "1111110"},
        {APP_STA_CONN_LOG_ON, "0000001"},      {APP_STA_CONN_INIT, "0000000"},
        {APP_STA_CONN_UPDATE, "0000000"},      {APP_STA_CONN_LOG_OFF, "1111111"},
        {APP_STA_CONN_TRANSPARENT, "0000001"}, {APP_STA_DISCONN, "1111110"}};
    QCOMPARE(enabled(), QStringLiteral("1111110"));
    for (const auto &[state, expected] : states) {
        m_bench->setState(state);
        QVERIFY2(enabled() == QLatin1String(expected),
                 qPrintable(appstate::name(state) + QLatin1Char(' ') + enabled()));
    }
}

void tst_Logger_CAN_View::theConfigurationDialogWritesTheChannel()
{
    m_bench->button("pushButton_can_configuration")->click();
    auto *dialog = m_bench->page().findChild<QDialog *>(QStringLiteral("DialogCAN_Cfg"));
    QVERIFY(dialog && dialog->isVisible());
    QVERIFY(QMetaObject::invokeMethod(dialog, "set_can_bitrate_values", Q_ARG(int, 30),
                                      Q_ARG(int, 11), Q_ARG(int, 4), Q_ARG(int, 1)));
    QVERIFY(QMetaObject::invokeMethod(dialog, "set_cfg"));
    QCOMPARE(int(m_bench->channel().clk_div), 30);
}

void tst_Logger_CAN_View::exportOptionsAreWritten()
{
    m_bench->button("pushButton_export_options")->click();
    auto *dialog = m_bench->page().findChild<QDialog *>(QStringLiteral("DialogCanExpOptsCfg"));
    QVERIFY(dialog && dialog->isVisible());
    const QSignalSpy told(&m_bench->page(), &Logger_CAN_View::signal_update_can_cfg_window);
    dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit_custom_name"))
        ->setText(QStringLiteral("Chassis"));
    dialog->findChild<QRadioButton *>(QStringLiteral("radioButton_only"))->click();
    dialog->accept();
    QCOMPARE(told.size(), 1);
    QCOMPARE(m_bench->channel().export_custom_name, QStringLiteral("Chassis"));
    QCOMPARE(int(m_bench->channel().export_name_mode), 2);
}

void tst_Logger_CAN_View::dialogsCloseWhenNothingCanBeEdited()
{
    m_bench->button("pushButton_can_configuration")->click();
    const auto *dialog = m_bench->page().findChild<QDialog *>();
    QVERIFY(dialog && dialog->isVisible());
    m_bench->setState(APP_STA_CONN_LOG_ON);
    QVERIFY(!dialog->isVisible());
    QVERIFY(m_bench->find<QFrame>("frame_notice")->isVisibleTo(&m_bench->page()));
    QCOMPARE(m_bench->label("label_notice"),
             QStringLiteral("Closed, since the configuration can't be changed now: CAN-2 "
                            "Configuration"));
}

void tst_Logger_CAN_View::withoutADialogNothingIsToldOfItsEnd()
{
    m_bench->page();
    m_bench->setState(APP_STA_CONN_LOG_ON);
    QVERIFY(!m_bench->find<QFrame>("frame_notice")->isVisibleTo(&m_bench->page()));
}

void tst_Logger_CAN_View::theModeOfTheA2lFileIsShown()
{
    m_bench->page();
    QCOMPARE(m_bench->label("label_a2l_mode"), QString());
    TerminalCanCfg edited;
    edited.a2l.a2l_file_name = QStringLiteral("engine.a2l");
    QVERIFY(m_bench->handler.writeCan(CanPageBench::number, edited));
    QCOMPARE(m_bench->label("label_a2l_mode"), QStringLiteral("CCP Mode"));
    edited.a2l.config.cfg.version_text = QStringLiteral("1.0");
    QVERIFY(m_bench->handler.writeCan(CanPageBench::number, edited));
    QCOMPARE(m_bench->label("label_a2l_mode"), QStringLiteral("XCP Mode"));
}

void tst_Logger_CAN_View::theSessionIsShownAsText()
{
    m_bench->page();
    emit m_bench->handler.signal_ccp_xcp_infos(CanPageBench::number, 19, 49);
    QCOMPARE(m_bench->label("label_session_status"), QStringLiteral("Unknown status 19"));
    QCOMPARE(m_bench->label("label_session_error"), QStringLiteral("LastErr:CMD syntax fault"));
    emit m_bench->handler.signal_ccp_xcp_infos(CanPageBench::number, 0, 0);
    QCOMPARE(m_bench->label("label_session_status"), QStringLiteral("Inactive"));
    QCOMPARE(m_bench->label("label_session_error"), QStringLiteral("Unknown error 0"));
}

void tst_Logger_CAN_View::anotherChannelsSessionIsNotShown()
{
    m_bench->page();
    emit m_bench->handler.signal_ccp_xcp_infos(CanPageBench::number + 1, 18, 49);
    QCOMPARE(m_bench->label("label_session_status"), QStringLiteral("-"));
}

void tst_Logger_CAN_View::whatTheUserAsksForCarriesTheChannel()
{
    Logger_CAN_View &page = m_bench->page();
    const QSignalSpy configuration(&page, &Logger_CAN_View::signal_create_eth_config_dialog);
    const QSignalSpy file(&page, &Logger_CAN_View::signal_load_dbc_file);
    QVector<std::pair<int, int>> enabled;
    connect(&page, &Logger_CAN_View::signal_enable_can, this,
            [&enabled](int can_nr, int enable, const int *) {
                enabled.append({can_nr, enable});
            });
    m_bench->button("pushButton_can_configuration")->click();
    m_bench->button("pushButton_load_dbc_file")->click();
    m_bench->button("pushButton_can_enable")->click();
    m_bench->button("pushButton_can_disable")->click();
    const QList<QVariantList> once{QVariantList{CanPageBench::number}};
    QCOMPARE(configuration, once);
    QCOMPARE(file, once);
    QCOMPARE(enabled,
             (QVector<std::pair<int, int>>{{CanPageBench::number, 1}, {CanPageBench::number, 0}}));
}

void tst_Logger_CAN_View::aSessionEndsWithItsConnection_data()
{
    QTest::addColumn<AppSta_t>("state");
    QTest::newRow("lost") << APP_STA_DISCONN;
    QTest::newRow("the next one") << APP_STA_CONN_INIT;
}

void tst_Logger_CAN_View::aSessionEndsWithItsConnection()
{
    QFETCH(AppSta_t, state);
    m_bench->page();
    m_bench->setState(APP_STA_CONN_LOG_ON);
    emit m_bench->handler.signal_ccp_xcp_infos(CanPageBench::number, 18, 49);
    QCOMPARE(m_bench->label("label_session_status"), QStringLiteral("XCP Session Active/Running"));
    m_bench->setState(state);
    QCOMPARE(m_bench->label("label_session_status"), QStringLiteral("-"));
    QCOMPARE(m_bench->label("label_session_error"), QString());
}

void tst_Logger_CAN_View::aNewConnectionStartsAnew()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page().show();
    m_bench->receive(0x100, "0100000000000000");
    m_bench->setState(APP_STA_CONN_INIT);
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 0);
    QCOMPARE(m_bench->cell("tableView_dbc", 0, 3), QString());
}

// A window of 1250 pixels with a usual font has 140 characters for it. With all that widens it.
void tst_Logger_CAN_View::thePageLeavesRoomForTheTreeBesideIt()
{
    Logger_CAN_View &page = m_bench->page();
    page.show();
    m_bench->find<QCheckBox>("checkBox_29_bit")->click();
    m_bench->find<QCheckBox>("checkBox_fd_format")->click();
    for (quint32 id = 0; id < 700; ++id)
        m_bench->receive(id, "0102030405060708");
    emit m_bench->handler.signalFilterLimitCleared(CanPageBench::number,
                                                   {QString(300, QLatin1Char('x'))});
    m_bench->find<QWidget>("frame_loading")->show();
    m_bench->page().loadDbcFile(QString(300, QLatin1Char('x')) + QStringLiteral(".dbc"));
    m_bench->find<QLabel>("label_bus_figures")
        ->setText(QStringLiteral("10000 frames/s, bus load 100.0 to 125.0 %"));
    m_bench->find<QLabel>("label_loading_left")->setText(QStringLiteral("about 12 minutes left"));
    m_bench->find<QLabel>("label_send_result")->setText(QStringLiteral("Sent."));
    QCoreApplication::processEvents();
    const int widest = 115 * page.fontMetrics().averageCharWidth();
    const int least = page.minimumSizeHint().width();
    QVERIFY2(least <= widest, qPrintable(QStringLiteral("%1 > %2").arg(least).arg(widest)));
}

void tst_Logger_CAN_View::aNewConnectionClearsTheLabels()
{
    m_bench->page().show();
    emit m_bench->handler.signal_ccp_xcp_infos(CanPageBench::number, 18, 49);
    for (quint32 id = 0; id <= Model_CAN_Rx_List_Items::maxRows; ++id)
        m_bench->receive(id, "01", 1000 * id);
    QVERIFY(!m_bench->label("label_rx_note").isEmpty());
    QTRY_VERIFY(!m_bench->label("label_bus_figures").startsWith(QStringLiteral("0 frames/s")));
    m_bench->setState(APP_STA_CONN_INIT);
    QCOMPARE(m_bench->label("label_session_status"), QStringLiteral("-"));
    QCOMPARE(m_bench->label("label_session_error"), QString());
    QCOMPARE(m_bench->label("label_rx_note"), QString());
    QCOMPARE(m_bench->label("label_bus_figures"), QStringLiteral("0 frames/s, bus load 0.0 %"));
}

void tst_Logger_CAN_View::aNewConnectionClosesTheNotice()
{
    m_bench->page();
    const auto *notice = m_bench->find<QFrame>("frame_notice");
    emit m_bench->handler.signalFilterLimitCleared(CanPageBench::number, {QStringLiteral("A")});
    m_bench->setState(APP_STA_DISCONN);
    QVERIFY(notice->isVisibleTo(&m_bench->page())); // still true of what is held
    m_bench->setState(APP_STA_CONN_INIT);
    QVERIFY(!notice->isVisibleTo(&m_bench->page()));
}

void tst_Logger_CAN_View::columnsAreRemembered()
{
    m_bench->page().show();
    m_bench->find<QTableView>("tableView_rx")->setColumnWidth(2, 177);
    m_bench->find<QTableView>("tableView_rx")->sortByColumn(4, Qt::DescendingOrder);
    m_bench->page().hide();
    m_bench->closePage();
    m_bench->page().show();
    auto *table = m_bench->find<QTableView>("tableView_rx");
    QCOMPARE(table->columnWidth(2), 177);
    m_bench->receive(1, "");
    m_bench->receive(2, "");
    m_bench->receive(2, "");
    QTRY_COMPARE(m_bench->cell("tableView_rx", 0, 0), QStringLiteral("002"));
}

void tst_Logger_CAN_View::columnsOfTheSignalsAreRemembered()
{
    m_bench->page().show();
    m_bench->find<QTableView>("tableView_dbc")->setColumnWidth(4, 133);
    m_bench->page().hide();
    m_bench->closePage();
    m_bench->page().show();
    QCOMPARE(m_bench->find<QTableView>("tableView_dbc")->columnWidth(4), 133);
}

void tst_Logger_CAN_View::everyControlSaysWhatItIsFor()
{
    const QList<QWidget *> widgets = m_bench->page().findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const bool isOwn = !widget->objectName().isEmpty()
                           && !widget->objectName().startsWith(QStringLiteral("qt_"));
        if (!isOwn || widget->focusPolicy() == Qt::NoFocus || widget->inherits("QTabWidget")
            || widget->inherits("QTabBar") || widget->parentWidget()->inherits("QTabBar"))
            continue;
        QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
        QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
    }
}

QTEST_MAIN(tst_Logger_CAN_View)
#include "tst_logger_can_view.moc"
