#include "tests/can/views/canpagebench.h"

#include <QClipboard>
#include <QGroupBox>
#include <QGuiApplication>
#include <QTableView>

// The list of received frames, and what else the page makes of them; no logger is connected.
class tst_Logger_CAN_View_Rx : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void receivedFramesAreListed();
    void aHiddenPageHearsOfFramesWhenItIsShown();
    void aHiddenPageHearsOfValuesWhenItIsShown();
    void rowsMoveLaterThanADeliveryComes();
    void aListThatStandsStillIsInOrder();
    void anotherChannelsFramesLeaveTheListAlone();
    void uncheckedTheListStandsStillWhileLiveValuesGoOn();
    void pausedTheListStandsStill();
    void aPauseGivesNoPeriod();
    void uncheckedTheListTakesNoNewIdentifier();
    void theListCanBeCleared();
    void framesWithoutARowAreCounted();
    void commentsNameTheChannelsSignals();
    void theListIsSavedInTheOrderShown();
    void theListIsProposedBesideTheDbcFileAndNotInItsPlace();
    void aListThatCannotBeSavedIsTold();
    void selectedRowsAreCopiedAsText();
    void framesAreForwarded();
    void framesPerSecondAndLoadAreShown();

private:
    std::unique_ptr<CanPageBench> m_bench;
};

void tst_Logger_CAN_View_Rx::init()
{
    m_bench.reset();
    m_bench = std::make_unique<CanPageBench>();
}

void tst_Logger_CAN_View_Rx::receivedFramesAreListed()
{
    m_bench->page().show();
    m_bench->receive(0x7E0, "0102", 1000);
    m_bench->receive(0x7E0, "0aff", 21'000);
    m_bench->receive(0x123, "", 22'000);
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 2);
    QTRY_COMPARE(m_bench->cell("tableView_rx", 0, 0), QStringLiteral("123"));
    QCOMPARE(m_bench->cell("tableView_rx", 1, 0), QStringLiteral("7E0"));
    QCOMPARE(m_bench->cell("tableView_rx", 1, 1), QStringLiteral("2"));
    QCOMPARE(m_bench->cell("tableView_rx", 1, 2), QStringLiteral("0A FF "));
    QCOMPARE(m_bench->cell("tableView_rx", 1, 3), QStringLiteral("20000"));
    QCOMPARE(m_bench->cell("tableView_rx", 1, 4), QStringLiteral("2"));
}

void tst_Logger_CAN_View_Rx::aHiddenPageHearsOfFramesWhenItIsShown()
{
    m_bench->page();
    m_bench->receive(0x7E0, "01");
    m_bench->receive(0x123, "02");
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 0);
    m_bench->page().show();
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 2);
    QCOMPARE(m_bench->cell("tableView_rx", 0, 0), QStringLiteral("123"));
}

void tst_Logger_CAN_View_Rx::aHiddenPageHearsOfValuesWhenItIsShown()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    const QSignalSpy told(m_bench->rows("tableView_dbc"), &QAbstractItemModel::dataChanged);
    m_bench->receive(0x100, "0100000000000000");
    QVERIFY(told.isEmpty());
    m_bench->page().show();
    QCOMPARE(told.size(), 1);
    m_bench->receive(0x100, "0200000000000000");
    QCOMPARE(told.size(), 2);
}

void tst_Logger_CAN_View_Rx::rowsMoveLaterThanADeliveryComes()
{
    m_bench->page().show();
    m_bench->find<QTableView>("tableView_rx")->sortByColumn(4, Qt::DescendingOrder);
    for (const quint32 id : {1U, 1U, 2U})
        m_bench->receive(id, "");
    QTRY_COMPARE(m_bench->cell("tableView_rx", 0, 0), QStringLiteral("001"));
    m_bench->receive(2, "");
    m_bench->receive(2, "");
    QCOMPARE(m_bench->cell("tableView_rx", 0, 0), QStringLiteral("001"));
    QTRY_COMPARE(m_bench->cell("tableView_rx", 0, 0), QStringLiteral("002"));
}

void tst_Logger_CAN_View_Rx::aListThatStandsStillIsInOrder()
{
    m_bench->page().show();
    m_bench->receive(2, "");
    m_bench->receive(1, "");
    m_bench->button("pushButton_rx_pause")->click();
    QCOMPARE(m_bench->cell("tableView_rx", 0, 0), QStringLiteral("001"));
}

void tst_Logger_CAN_View_Rx::anotherChannelsFramesLeaveTheListAlone()
{
    m_bench->page().show();
    m_bench->receive(0x7E0, "0102", 1000, CanPageBench::number + 1);
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 0);
}

void tst_Logger_CAN_View_Rx::uncheckedTheListStandsStillWhileLiveValuesGoOn()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page().show();
    m_bench->receive(0x100, "0100000000000000");
    m_bench->find<QGroupBox>("groupBox_receive")->setChecked(false);
    m_bench->receive(0x100, "0700000000000000");
    QCOMPARE(m_bench->cell("tableView_rx", 0, 4), QStringLiteral("1"));
    QCOMPARE(m_bench->cell("tableView_dbc", 0, 3), QStringLiteral("7"));
    QVERIFY(m_bench->button("pushButton_save_rx_list")->isEnabled());
    m_bench->find<QGroupBox>("groupBox_receive")->setChecked(true);
    m_bench->receive(0x100, "0800000000000000");
    QCOMPARE(m_bench->cell("tableView_rx", 0, 4), QStringLiteral("2"));
}

void tst_Logger_CAN_View_Rx::uncheckedTheListTakesNoNewIdentifier()
{
    m_bench->page().show();
    m_bench->receive(0x100, "01");
    m_bench->find<QGroupBox>("groupBox_receive")->setChecked(false);
    m_bench->receive(0x101, "02");
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 1);
    m_bench->find<QGroupBox>("groupBox_receive")->setChecked(true);
    m_bench->receive(0x101, "03");
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 2);
    QCOMPARE(m_bench->cell("tableView_rx", 1, 4), QStringLiteral("1"));
}

void tst_Logger_CAN_View_Rx::pausedTheListStandsStill()
{
    m_bench->page().show();
    m_bench->receive(0x100, "01");
    m_bench->button("pushButton_rx_pause")->click();
    m_bench->receive(0x100, "02");
    m_bench->receive(0x101, "02");
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 1);
    QCOMPARE(m_bench->cell("tableView_rx", 0, 2), QStringLiteral("01 "));
    m_bench->button("pushButton_rx_pause")->click();
    m_bench->receive(0x100, "03");
    QCOMPARE(m_bench->cell("tableView_rx", 0, 2), QStringLiteral("03 "));
}

void tst_Logger_CAN_View_Rx::aPauseGivesNoPeriod()
{
    m_bench->page().show();
    m_bench->receive(0x100, "01", 1000);
    m_bench->button("pushButton_rx_pause")->click();
    m_bench->button("pushButton_rx_pause")->click();
    m_bench->receive(0x100, "01", 9'000'000);
    QCOMPARE(m_bench->cell("tableView_rx", 0, 3), QString());
    m_bench->receive(0x100, "01", 9'000'500);
    QCOMPARE(m_bench->cell("tableView_rx", 0, 3), QStringLiteral("500"));
}

void tst_Logger_CAN_View_Rx::theListCanBeCleared()
{
    m_bench->page().show();
    m_bench->receive(0x100, "01");
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 1);
    m_bench->button("pushButton_clear_rx_list")->click();
    QCOMPARE(m_bench->rows("tableView_rx")->rowCount(), 0);
}

void tst_Logger_CAN_View_Rx::framesWithoutARowAreCounted()
{
    m_bench->page().show();
    for (quint32 id = 0; id < 600; ++id)
        m_bench->receive(id, "01");
    QCOMPARE(m_bench->label("label_rx_note"), QString());
    for (quint32 id = 600; id < 603; ++id)
        m_bench->receive(id, "01");
    QCOMPARE(m_bench->label("label_rx_note"), QStringLiteral("3 frames not listed"));
    m_bench->button("pushButton_clear_rx_list")->click();
    QCOMPARE(m_bench->label("label_rx_note"), QString());
}

void tst_Logger_CAN_View_Rx::commentsNameTheChannelsSignals()
{
    m_bench->page().show();
    m_bench->receive(0x100, "01");
    m_bench->writeSignals({QStringLiteral("Speed"), QStringLiteral("Torque")});
    QCOMPARE(m_bench->cell("tableView_rx", 0, 5), QStringLiteral("Speed, Torque"));
}

void tst_Logger_CAN_View_Rx::theListIsSavedInTheOrderShown()
{
    m_bench->find<QTableView>("tableView_rx")->sortByColumn(0, Qt::DescendingOrder);
    m_bench->receive(0x100, "01");
    m_bench->receive(0x200, "02"); // neither is shown yet
    const QString path = m_bench->folder.filePath(QStringLiteral("list.txt"));
    m_bench->prompt.picks = QStringList(path);
    m_bench->button("pushButton_save_rx_list")->click();
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines.at(0).startsWith("ID "));
    QVERIFY(lines.at(1).startsWith("200 "));
    QVERIFY(lines.at(2).startsWith("100 "));
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_Logger_CAN_View_Rx::theListIsProposedBesideTheDbcFileAndNotInItsPlace()
{
    SettingsStore().setValue(QStringLiteral("DbcLoadPath"), m_bench->writeFile("car.dbc", ""));
    m_bench->button("pushButton_save_rx_list")->click();
    QCOMPARE(m_bench->prompt.pickers,
             QStringList(QStringLiteral("Save received frames|%1|Text-Files (*.txt)")
                             .arg(m_bench->folder.filePath(QStringLiteral("CAN-2.txt")))));
}

void tst_Logger_CAN_View_Rx::aListThatCannotBeSavedIsTold()
{
    m_bench->page();
    m_bench->prompt.picks = QStringList(m_bench->folder.filePath(QStringLiteral("none/list.txt")));
    m_bench->button("pushButton_save_rx_list")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList(QStringLiteral("Error saving list|%1 can't be written.")
                             .arg(m_bench->folder.filePath(QStringLiteral("none/list.txt")))));
    QVERIFY(!m_bench->prompt.reasons.first().isEmpty());
}

void tst_Logger_CAN_View_Rx::selectedRowsAreCopiedAsText()
{
    m_bench->showActive();
    for (const quint32 id : {0x100U, 0x200U, 0x300U})
        m_bench->receive(id, "01");
    auto *table = m_bench->find<QTableView>("tableView_rx");
    table->sortByColumn(0, Qt::DescendingOrder);
    table->setFocus();
    table->selectRow(0);
    table->selectionModel()->select(table->model()->index(2, 0),
                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    const QStringList lines =
        QGuiApplication::clipboard()->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(0).startsWith(QStringLiteral("ID ")));
    QVERIFY(lines.at(1).startsWith(QStringLiteral("300 ")));
    QVERIFY(lines.at(2).startsWith(QStringLiteral("100 ")));
}

void tst_Logger_CAN_View_Rx::framesAreForwarded()
{
    QByteArray forwarded;
    connect(&m_bench->page(), &Logger_CAN_View::signalCanMsgForwarder, this,
            [&forwarded](const QList<RawMessageBaseClass *> &messages) {
                for (const RawMessageBaseClass *message : messages)
                    forwarded += message->data;
            });
    m_bench->receive(0x100, "0102");
    QCOMPARE(forwarded.toHex(), QByteArray("0102"));
}

void tst_Logger_CAN_View_Rx::framesPerSecondAndLoadAreShown()
{
    m_bench->page().show();
    QCOMPARE(m_bench->label("label_bus_figures"), QStringLiteral("0 frames/s, bus load 0.0 %"));
    for (quint32 i = 0; i < 900; ++i)
        m_bench->receive(0x100, "0102030405060708", 1000 * i);
    QTRY_COMPARE(m_bench->label("label_bus_figures"),
                 QStringLiteral("900 frames/s, bus load 20.0 to 24.3 %"));
    QTRY_COMPARE(m_bench->label("label_bus_figures"), QStringLiteral("0 frames/s, bus load 0.0 %"));
}

QTEST_MAIN(tst_Logger_CAN_View_Rx)
#include "tst_logger_can_view_rx.moc"
