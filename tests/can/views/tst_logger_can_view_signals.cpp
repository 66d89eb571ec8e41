#include "tests/can/views/canpagebench.h"

#include <QFrame>
#include <QLineEdit>
#include <QTableView>

using namespace signaltable;

// The table of the channel's signals, and what the page shows of their filters.
class tst_Logger_CAN_View_Signals : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void clearedFlagsAreANotice();
    void aNoticeOfManyNamesIsCut();
    void longNamesAreCutInANotice();
    void anEditSurvivesAListThatHasGrown();
    void insertedSignalsReplaceTheSameOnes();
    void selectedSignalsCanBeRemoved();
    void whatIsSelectedIsRemovedInAFilteredAndSortedTable();
    void theDeleteKeyRemoves();
    void filtersInUseAreCounted();
    void aClickAnywhereInACellTicksIt();
    void aTickIsWritten();
    void anEditOfACellIsWritten_data();
    void anEditOfACellIsWritten();
    void aLiveTickStartsDecoding();
    void liveTicksAreAllowedWhileLogging();
    void liveValuesSurviveAnEcho();
    void theSelectionSurvivesAnEcho();
    void signalsCanBeFiltered();

private:
    // Each with one signal that is recorded.
    void writeMessages(quint32 count, const QString &name = QStringLiteral("Signal"))
    {
        TerminalCanCfg edited;
        for (quint32 id = 0; id < count; ++id) {
            StreamingClass_DBC_Signal &signal = edited.dbc_signals.add();
            signal.name = name + QString::number(id);
            signal.msg_id = id;
            signal.selection_flags = StreamingClass_DBC_Signal::recordFlag;
        }
        QVERIFY(m_bench->handler.writeCan(CanPageBench::number, edited));
    }
    QAbstractItemModel *rows() const { return m_bench->rows("tableView_dbc"); }
    void tick(int row, int column, Qt::CheckState state)
    {
        QVERIFY(rows()->setData(rows()->index(row, column), state, Qt::CheckStateRole));
    }

    std::unique_ptr<CanPageBench> m_bench;
};

void tst_Logger_CAN_View_Signals::init()
{
    m_bench.reset();
    m_bench = std::make_unique<CanPageBench>();
}

void tst_Logger_CAN_View_Signals::clearedFlagsAreANotice()
{
    m_bench->page();
    const auto *notice = m_bench->find<QFrame>("frame_notice");
    writeMessages(130);
    QVERIFY(notice->isVisibleTo(&m_bench->page()));
    QCOMPARE(m_bench->label("label_notice"),
             QStringLiteral("The channel has 128 message filters. \"Record\" and \"Live\" were "
                            "cleared, since more would be needed, of: Signal128, Signal129"));
    QVERIFY(m_bench->prompt.shown.isEmpty());
    m_bench->button("pushButton_notice_close")->click();
    QVERIFY(!notice->isVisibleTo(&m_bench->page()));
}

void tst_Logger_CAN_View_Signals::aNoticeOfManyNamesIsCut()
{
    m_bench->page();
    writeMessages(1128);
    QVERIFY(m_bench->label("label_notice").endsWith(QStringLiteral("Signal147 and 980 more")));
}

void tst_Logger_CAN_View_Signals::longNamesAreCutInANotice()
{
    m_bench->page();
    const QString name = QStringLiteral("<b>") + QString(300, QLatin1Char('x'));
    writeMessages(130, name);
    const QString shown = m_bench->label("label_notice");
    QVERIFY2(shown.size() < 400, qPrintable(shown));
    QVERIFY(shown.contains(QStringLiteral("<b>xxx")));
    const QString tip = m_bench->find<QLabel>("label_notice")->toolTip();
    QVERIFY2(tip.contains(name.toHtmlEscaped() + QStringLiteral("128, ")), qPrintable(tip));
}

// No change of the configuration passes the page by; should one, its records are left as they are.
void tst_Logger_CAN_View_Signals::anEditSurvivesAListThatHasGrown()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    const_cast<TerminalCanCfg &>(m_bench->channel()).dbc_signals.add();
    tick(0, Record, Qt::Unchecked);
    QCOMPARE(m_bench->channel().dbc_signals.size(), 2);
    QCOMPARE(int(m_bench->channel().dbc_signals.at(0)->selection_flags),
             int(StreamingClass_DBC_Signal::liveFlag));
}

void tst_Logger_CAN_View_Signals::insertedSignalsReplaceTheSameOnes()
{
    m_bench->writeSignals({QStringLiteral("A"), QStringLiteral("B")});
    auto fresh = std::make_unique<StreamingClass_DBC_Signal>();
    fresh->name = QStringLiteral("A");
    fresh->msg_id = 0x100;
    fresh->factor = 4;
    QList<StreamingClass_DBC_Signal *> list = {fresh.release()};
    m_bench->page().insert_dbc_signals(&list);
    QCOMPARE(m_bench->signalNames().join(QLatin1Char(',')), QStringLiteral("B,A"));
    QCOMPARE(m_bench->channel().dbc_signals.at(1)->factor, 4.0);
    QCOMPARE(int(m_bench->channel().dbc_signals.at(1)->selection_flags), 3);
}

void tst_Logger_CAN_View_Signals::selectedSignalsCanBeRemoved()
{
    m_bench->writeSignals({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
    auto *table = m_bench->find<QTableView>("tableView_dbc");
    QVERIFY(!m_bench->button("pushButton_remove_selected")->isEnabled());
    table->selectRow(0);
    table->selectionModel()->select(rows()->index(2, 0),
                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);
    m_bench->button("pushButton_remove_selected")->click();
    QCOMPARE(m_bench->signalNames(), QStringList(QStringLiteral("B")));
    QCOMPARE(rows()->rowCount(), 1);
}

void tst_Logger_CAN_View_Signals::whatIsSelectedIsRemovedInAFilteredAndSortedTable()
{
    m_bench->writeSignals({QStringLiteral("Ra"), QStringLiteral("Other"), QStringLiteral("Rc"),
                           QStringLiteral("Rb")});
    auto *table = m_bench->find<QTableView>("tableView_dbc");
    m_bench->find<QLineEdit>("lineEdit_dbc_filter")->setText(QStringLiteral("R"));
    table->sortByColumn(Name, Qt::DescendingOrder);
    QCOMPARE(m_bench->cell("tableView_dbc", 0, Name), QStringLiteral("Rc"));
    table->selectRow(0);
    m_bench->button("pushButton_remove_selected")->click();
    QCOMPARE(m_bench->signalNames().join(QLatin1Char(',')), QStringLiteral("Ra,Other,Rb"));
}

void tst_Logger_CAN_View_Signals::theDeleteKeyRemoves()
{
    m_bench->writeSignals({QStringLiteral("A"), QStringLiteral("B")});
    m_bench->showActive();
    auto *table = m_bench->find<QTableView>("tableView_dbc");
    table->setFocus();
    table->selectRow(1);
    QTest::keyClick(table, Qt::Key_Delete);
    QCOMPARE(m_bench->signalNames(), QStringList(QStringLiteral("A")));
}

void tst_Logger_CAN_View_Signals::filtersInUseAreCounted()
{
    const auto isRed = [this] {
        return m_bench->find<QLabel>("label_filters")->styleSheet().contains(QStringLiteral("red"));
    };
    QCOMPARE(m_bench->label("label_filters"), QStringLiteral("0 of 128 filters"));
    writeMessages(127);
    QCOMPARE(m_bench->label("label_filters"), QStringLiteral("127 of 128 filters"));
    QVERIFY(!isRed());
    writeMessages(128);
    QCOMPARE(m_bench->label("label_filters"), QStringLiteral("128 of 128 filters"));
    QVERIFY(isRed());
    tick(0, Record, Qt::Unchecked);
    QCOMPARE(m_bench->label("label_filters"), QStringLiteral("127 of 128 filters"));
    QVERIFY(!isRed());
    tick(0, Live, Qt::Checked);
    QVERIFY(isRed());
}

void tst_Logger_CAN_View_Signals::aClickAnywhereInACellTicksIt()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page().show();
    auto *table = m_bench->find<QTableView>("tableView_dbc");
    for (const Column column : {Record, Live}) {
        const QRect cell = table->visualRect(rows()->index(0, column));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell.center());
    }
    QCOMPARE(int(m_bench->channel().dbc_signals.at(0)->selection_flags), 0);
}

void tst_Logger_CAN_View_Signals::aTickIsWritten()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    const QSignalSpy told(&m_bench->handler, &Logger_Data_Handler_Class::signal_update_cfg_can);
    tick(0, Record, Qt::Unchecked);
    QCOMPARE(told.size(), 1);
    QCOMPARE(int(m_bench->channel().dbc_signals.at(0)->selection_flags),
             int(StreamingClass_DBC_Signal::liveFlag));
}

void tst_Logger_CAN_View_Signals::anEditOfACellIsWritten_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("written"); // name, unit, factor, offset
    QTest::newRow("name") << int(Name) << QStringLiteral("B") << QStringLiteral("B||1|0");
    QTest::newRow("unit") << int(Unit) << QStringLiteral("km") << QStringLiteral("A|km|1|0");
    QTest::newRow("multiplicator")
        << int(Multiplicator) << QStringLiteral("0.25") << QStringLiteral("A||0.25|0");
    QTest::newRow("offset") << int(Offset) << QStringLiteral("-40") << QStringLiteral("A||1|-40");
}

void tst_Logger_CAN_View_Signals::anEditOfACellIsWritten()
{
    QFETCH(int, column);
    QFETCH(QString, text);
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    const QSignalSpy told(&m_bench->handler, &Logger_Data_Handler_Class::signal_update_cfg_can);
    QVERIFY(rows()->setData(rows()->index(0, column), text));
    QCOMPARE(told.size(), 1);
    const StreamingClass_DBC_Signal &signal = *m_bench->channel().dbc_signals.at(0);
    const QStringList written{signal.name, signal.unit, QString::number(signal.factor),
                              QString::number(signal.offset)};
    QTEST(written.join(QLatin1Char('|')), "written");
}

void tst_Logger_CAN_View_Signals::aLiveTickStartsDecoding()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    const QSignalSpy told(&m_bench->handler, &Logger_Data_Handler_Class::signal_update_cfg_can);
    tick(0, Live, Qt::Unchecked);
    m_bench->receive(0x100, "0500000000000000");
    QCOMPARE(m_bench->cell("tableView_dbc", 0, Value), QString());
    tick(0, Live, Qt::Checked);
    m_bench->receive(0x100, "0600000000000000");
    QCOMPARE(m_bench->cell("tableView_dbc", 0, Value), QStringLiteral("6"));
    QVERIFY(told.isEmpty());
}

void tst_Logger_CAN_View_Signals::liveTicksAreAllowedWhileLogging()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    m_bench->setState(APP_STA_CONN_LOG_ON);
    QVERIFY(!rows()->setData(rows()->index(0, Record), Qt::Unchecked, Qt::CheckStateRole));
    tick(0, Live, Qt::Unchecked);
    QCOMPARE(int(m_bench->channel().dbc_signals.at(0)->selection_flags),
             int(StreamingClass_DBC_Signal::recordFlag));
}

void tst_Logger_CAN_View_Signals::liveValuesSurviveAnEcho()
{
    m_bench->writeSignals({QStringLiteral("A"), QStringLiteral("B")});
    m_bench->page();
    m_bench->receive(0x100, "0508000000000000");
    QVERIFY(m_bench->handler.cmd_write_can_enabled(CanPageBench::number, 1));
    QCOMPARE(m_bench->cell("tableView_dbc", 0, Value), QStringLiteral("5"));
    QCOMPARE(m_bench->cell("tableView_dbc", 1, Value), QStringLiteral("8"));
    m_bench->receive(0x100, "0600000000000000");
    QCOMPARE(m_bench->cell("tableView_dbc", 0, Value), QStringLiteral("6"));
}

void tst_Logger_CAN_View_Signals::theSelectionSurvivesAnEcho()
{
    m_bench->writeSignals({QStringLiteral("A"), QStringLiteral("B")});
    auto *table = m_bench->find<QTableView>("tableView_dbc");
    table->setCurrentIndex(rows()->index(1, Record));
    tick(1, Record, Qt::Unchecked);
    QCOMPARE(table->currentIndex(), rows()->index(1, Record));
    QVERIFY(table->selectionModel()->isRowSelected(1, {}));
}

void tst_Logger_CAN_View_Signals::signalsCanBeFiltered()
{
    m_bench->writeSignals({QStringLiteral("EngineRpm"), QStringLiteral("RPM_1")});
    m_bench->find<QLineEdit>("lineEdit_dbc_filter")->setText(QStringLiteral("rpm"));
    QCOMPARE(rows()->rowCount(), 1);
    m_bench->find<QLineEdit>("lineEdit_dbc_filter")->setText(QStringLiteral("*rpm"));
    QCOMPARE(rows()->rowCount(), 2);
}

QTEST_MAIN(tst_Logger_CAN_View_Signals)
#include "tst_logger_can_view_signals.moc"
