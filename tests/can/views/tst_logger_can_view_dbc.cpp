#include "tests/can/views/canpagebench.h"
#include "tests/support/messagecount.h"

#include <QDialog>
#include <QDropEvent>
#include <QFrame>
#include <QLineEdit>
#include <QMimeData>
#include <QTableView>
#include <QThread>

// How signals come from a DBC file to the channel, and what the page shows of them.
class tst_Logger_CAN_View_Dbc : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aFileLeadsToTheSelection();
    void cancellingThePickerLoadsNothing();
    void selectedSignalsJoinTheChannel();
    void theSummaryStaysAsLongAsTheSignals();
    void anotherConfigurationHasNoSummary();
    void aSelectionThatIsRejectedHasNoSummary();
    void aFileWithAnErrorIsToldAndChangesNothing();
    void aFileWithoutSignalsIsToldAndChangesNothing();
    void aFileWithoutSignalsSaysWhatWasPassedOver();
    void aFileThatCannotBeReadIsTold();
    void aFolderIsNoFileToBeRead();
    void theLastFileIsOfferedAgain();
    void theLastFileIsRememberedForItsChannel();
    void aLastFileThatIsGoneIsNotOffered();
    void aDroppedFileIsLoaded();
    void otherThingsAreNotTakenWhenDropped();
    void nothingIsLoadedWhileTheConfigurationIsLocked();
    void aFileDroppedDuringALoadIsNotLoaded();
    void aStateThatLocksDuringALoadIsTold();
    void aLongLoadShowsItsProgressAndCanBeCancelled();
    void aCancelBehindTheEndOfALoadCounts();
    void clearedFlagsAreANotice();
    void aNoticeOfManyNamesIsCut();
    void longNamesAreCutInANotice();
    void theNameOfALongFileIsCut();
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
    QDialog *selector() const
    {
        for (QDialog *dialog : m_bench->page().findChildren<QDialog *>()) {
            if (dialog->isVisible())
                return dialog;
        }
        return nullptr;
    }
    void loadByButton(const QString &path)
    {
        m_bench->prompt.picks = QStringList(path);
        m_bench->button("pushButton_load_dbc_file")->click();
    }
    void drop(const QString &path)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter(QPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&m_bench->page(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event(QPointF(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_bench->page(), &event);
    }
    QString goodFile() const
    {
        return m_bench->writeFile("car.dbc", "BO_ 291 Engine: 8 ECU\n"
                                             " SG_ Speed : 0|16@1+ (0.5,0) [0|0] \"rpm\" ECU\n"
                                             " SG_ Torque : 16|8@1- (1,0) [0|0] \"Nm\" ECU\n");
    }
    // All signals of the good file.
    void loadAll(const QString &path)
    {
        loadByButton(path);
        QTRY_VERIFY(selector());
        QVERIFY(QMetaObject::invokeMethod(selector(), "on_pushButton_select_all_clicked"));
        QVERIFY(QMetaObject::invokeMethod(selector(), "load_selected"));
    }
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

namespace {

enum Column { Record, Live, Name, Value, Unit, Multiplicator, Offset };

} // namespace

void tst_Logger_CAN_View_Dbc::init()
{
    m_bench.reset();
    m_bench = std::make_unique<CanPageBench>();
}

void tst_Logger_CAN_View_Dbc::aFileLeadsToTheSelection()
{
    const QString path = goodFile();
    SettingsStore().setValue(QStringLiteral("DbcLoadPath"), QStringLiteral("/somewhere"));
    loadByButton(path);
    QCOMPARE(m_bench->prompt.pickers,
             QStringList(QStringLiteral("Open DBC-file|/somewhere|DBC-Files (*.dbc)")));
    QTRY_VERIFY(selector());
    QCOMPARE(selector()->windowTitle(), QStringLiteral("DBC-Signal Selection"));
    QCOMPARE(selector()->findChild<QLabel *>(QStringLiteral("label_summary"))->text(),
             QStringLiteral("CAN-2: car.dbc: 1 message, 2 signals"));
    QVERIFY(m_bench->label("label_dbc_summary").contains(QStringLiteral("no signals")));
    QCOMPARE(SettingsStore().value(QStringLiteral("DbcLoadPath")).toString(), path);
    QVERIFY(m_bench->prompt.shown.isEmpty());
    QVERIFY(m_bench->channel().dbc_signals.isEmpty());
}

void tst_Logger_CAN_View_Dbc::cancellingThePickerLoadsNothing()
{
    m_bench->button("pushButton_load_dbc_file")->click();
    QVERIFY(m_bench->button("pushButton_load_dbc_file")->isEnabled());
    QVERIFY(m_bench->label("label_dbc_summary").contains(QStringLiteral("no signals")));
}

void tst_Logger_CAN_View_Dbc::selectedSignalsJoinTheChannel()
{
    loadAll(goodFile());
    QCOMPARE(m_bench->signalNames().join(QLatin1Char(',')), QStringLiteral("Speed,Torque"));
    QCOMPARE(rows()->rowCount(), 2);
    QCOMPARE(m_bench->cell("tableView_dbc", 1, Name), QStringLiteral("Torque"));
    QCOMPARE(m_bench->label("label_dbc_summary"), QStringLiteral("car.dbc: 1 message, 2 signals"));
}

void tst_Logger_CAN_View_Dbc::theSummaryStaysAsLongAsTheSignals()
{
    loadAll(goodFile());
    const QString summary = m_bench->label("label_dbc_summary");
    QVERIFY(m_bench->handler.cmd_write_can_enabled(CanPageBench::number, 1));
    QVERIFY(m_bench->handler.cmd_write_aux_supply_control(1)); // a full update, too
    QCOMPARE(m_bench->label("label_dbc_summary"), summary);
    m_bench->find<QTableView>("tableView_dbc")->selectAll();
    m_bench->button("pushButton_remove_selected")->click();
    QVERIFY(m_bench->label("label_dbc_summary").contains(QStringLiteral("no signals")));
}

void tst_Logger_CAN_View_Dbc::anotherConfigurationHasNoSummary()
{
    loadAll(goodFile());
    TerminalStruct other;
    other.can.at(CanPageBench::number).dbc_signals.add().name = QStringLiteral("Other");
    QVERIFY(m_bench->handler.writeWholeConfiguration(other));
    QCOMPARE(m_bench->label("label_dbc_summary"), QString());
}

void tst_Logger_CAN_View_Dbc::aSelectionThatIsRejectedHasNoSummary()
{
    m_bench->writeSignals({QStringLiteral("A")});
    loadByButton(goodFile());
    QTRY_VERIFY(selector());
    selector()->reject();
    QCOMPARE(m_bench->label("label_dbc_summary"), QString());
}

void tst_Logger_CAN_View_Dbc::aFileWithAnErrorIsToldAndChangesNothing()
{
    m_bench->writeSignals({QStringLiteral("A")});
    loadByButton(m_bench->writeFile("bad.dbc", "BO_ 291 Engine: 8 ECU\n SG_ broken\n"));
    QTRY_VERIFY(!m_bench->prompt.shown.isEmpty());
    QVERIFY(m_bench->prompt.shown.first().startsWith(
        QStringLiteral("Error loading dbc-file|DBC-File: Invalid line-structure, line number 2")));
    QVERIFY(!selector());
    QCOMPARE(m_bench->signalNames(), QStringList(QStringLiteral("A")));
}

void tst_Logger_CAN_View_Dbc::aFileWithoutSignalsIsToldAndChangesNothing()
{
    m_bench->writeSignals({QStringLiteral("A")});
    const QString path = m_bench->writeFile("noise.dbc", "\x01\xFE\x7F noise\r\n\x02");
    loadByButton(path);
    QTRY_VERIFY(!m_bench->prompt.shown.isEmpty());
    QCOMPARE(m_bench->prompt.shown,
             QStringList(QStringLiteral("Open DBC-file|There is no signal in %1.").arg(path)));
    QVERIFY(!selector());
    QCOMPARE(m_bench->signalNames(), QStringList(QStringLiteral("A")));
}

void tst_Logger_CAN_View_Dbc::aFileThatCannotBeReadIsTold()
{
    loadByButton(m_bench->folder.filePath(QStringLiteral("none.dbc")));
    QTRY_COMPARE(m_bench->prompt.shown, QStringList(QStringLiteral("Error loading dbc-file|")));
    QCOMPARE(m_bench->prompt.reasons.first(),
             QStringLiteral("%1 can't be read: the file does not exist.")
                 .arg(m_bench->folder.filePath(QStringLiteral("none.dbc"))));
}

void tst_Logger_CAN_View_Dbc::aFolderIsNoFileToBeRead()
{
    loadByButton(m_bench->folder.path());
    QTRY_COMPARE(
        m_bench->prompt.reasons,
        QStringList(
            QStringLiteral("%1 can't be read: it is a folder.").arg(m_bench->folder.path())));
}

void tst_Logger_CAN_View_Dbc::aFileWithoutSignalsSaysWhatWasPassedOver()
{
    const QString path = m_bench->writeFile("tables.dbc", "BO_ 291 Engine: 8 ECU\n"
                                                          "\n"
                                                          " SG_ Lost : 0|8@1+ (1,0) [0|0] \"\" E\n"
                                                          "VAL_ 291 Gear 0 \"N\" 1 \"D\" ;\n");
    loadByButton(path);
    QTRY_COMPARE(
        m_bench->prompt.shown,
        QStringList(QStringLiteral("Open DBC-file|There is no signal in %1.\n\nPassed over: 1 "
                                   "signal outside of a message, 1 value table.")
                        .arg(path)));
}

void tst_Logger_CAN_View_Dbc::theLastFileIsOfferedAgain()
{
    QVERIFY(!m_bench->button("pushButton_reload_dbc_file")->isEnabled());
    loadByButton(goodFile());
    QTRY_VERIFY(selector());
    selector()->reject();
    QCOMPARE(m_bench->button("pushButton_reload_dbc_file")->text(),
             QStringLiteral("Load a&gain: car.dbc"));
    m_bench->button("pushButton_reload_dbc_file")->click();
    QTRY_VERIFY(selector());
    QCOMPARE(m_bench->prompt.pickers.size(), 1);
}

void tst_Logger_CAN_View_Dbc::theLastFileIsRememberedForItsChannel()
{
    loadByButton(goodFile());
    QTRY_VERIFY(selector());
    m_bench->closePage();
    QVERIFY(m_bench->button("pushButton_reload_dbc_file")->isEnabled());
    const Logger_CAN_View other(&m_bench->controller, QStringLiteral("Other"),
                                QStringLiteral("CAN-3"), 3, &m_bench->handler, m_bench->prompt);
    QVERIFY(
        !other.findChild<QPushButton *>(QStringLiteral("pushButton_reload_dbc_file"))->isEnabled());
}

void tst_Logger_CAN_View_Dbc::aLastFileThatIsGoneIsNotOffered()
{
    const QString path = goodFile();
    loadByButton(path);
    QTRY_VERIFY(selector());
    m_bench->closePage();
    QVERIFY(QFile::remove(path));
    QVERIFY(!m_bench->button("pushButton_reload_dbc_file")->isEnabled());
}

void tst_Logger_CAN_View_Dbc::aDroppedFileIsLoaded()
{
    drop(goodFile());
    QTRY_VERIFY(selector());
}

void tst_Logger_CAN_View_Dbc::otherThingsAreNotTakenWhenDropped()
{
    const QUrl dbc = QUrl::fromLocalFile(goodFile());
    const QList<QList<QUrl>> others = {{},
                                       {QUrl(QStringLiteral("file:///x/drive.rld"))},
                                       {QUrl(QStringLiteral("https://somewhere/car.dbc"))},
                                       {dbc, dbc}};
    for (const QList<QUrl> &urls : others) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&m_bench->page(), &enter);
        QVERIFY(!enter.isAccepted());
    }
}

void tst_Logger_CAN_View_Dbc::nothingIsLoadedWhileTheConfigurationIsLocked()
{
    m_bench->page();
    m_bench->setState(APP_STA_CONN_LOG_ON);
    const QString path = goodFile();
    drop(path);
    QVERIFY(m_bench->find<QFrame>("frame_notice")->isVisibleTo(&m_bench->page()));
    QCOMPARE(m_bench->label("label_notice"),
             QStringLiteral("car.dbc was not loaded: the configuration can't be changed now."));
    QVERIFY(m_bench->find<QLabel>("label_notice")->toolTip().contains(path));
    QVERIFY(!m_bench->find<QFrame>("frame_loading")->isVisibleTo(&m_bench->page()));
    QCOMPARE(m_bench->label("label_loading"), QString());
}

void tst_Logger_CAN_View_Dbc::aFileDroppedDuringALoadIsNotLoaded()
{
    const QString first = goodFile();
    const QString second = m_bench->writeFile("second.dbc", "BO_ 1 M: 8 ECU\n");
    m_bench->page().loadDbcFile(first);
    drop(second);
    QCOMPARE(m_bench->label("label_notice"),
             QStringLiteral("second.dbc was not loaded: another file is being read."));
    QTRY_VERIFY(selector());
    QCOMPARE(selector()->findChild<QLabel *>(QStringLiteral("label_summary"))->text(),
             QStringLiteral("CAN-2: car.dbc: 1 message, 2 signals"));
}

void tst_Logger_CAN_View_Dbc::aStateThatLocksDuringALoadIsTold()
{
    const QString path = goodFile();
    m_bench->page().loadDbcFile(path);
    m_bench->setState(APP_STA_CONN_LOG_ON);
    QTRY_COMPARE(m_bench->label("label_notice"),
                 QStringLiteral("car.dbc was not loaded: the configuration can't be changed now."));
    QVERIFY(!selector());
}

void tst_Logger_CAN_View_Dbc::aLongLoadShowsItsProgressAndCanBeCancelled()
{
    QByteArray text = "BO_ 291 Engine: 8 ECU\n";
    for (int i = 0; i < 1'000'000; ++i)
        text += " SG_ Signal : 0|8@1+ (1,0) [0|0] \"\" ECU\n";
    auto *delay = m_bench->page().findChild<QTimer *>(QStringLiteral("timer_loading_shows"));
    QCOMPARE(delay->interval(), 1000);
    delay->setInterval(0); // the file needn't take longer than that
    const auto *frame = m_bench->find<QFrame>("frame_loading");
    QVERIFY(!frame->isVisibleTo(&m_bench->page()));
    m_bench->page().loadDbcFile(m_bench->writeFile("giant.dbc", text));
    QVERIFY(!m_bench->button("pushButton_load_dbc_file")->isEnabled());
    QTRY_VERIFY(frame->isVisibleTo(&m_bench->page()));
    m_bench->button("pushButton_loading_cancel")->click();
    QTRY_VERIFY(m_bench->button("pushButton_load_dbc_file")->isEnabled());
    QVERIFY(!frame->isVisibleTo(&m_bench->page()));
    QVERIFY(m_bench->prompt.shown.isEmpty());
    QVERIFY(!selector());
}

void tst_Logger_CAN_View_Dbc::aCancelBehindTheEndOfALoadCounts()
{
    m_bench->page();
    const MessageCount ends("dbc-file load processtime= ");
    m_bench->page().loadDbcFile(goodFile());
    while (ends.value() == 0)
        QThread::yieldCurrentThread(); // without events: the page hasn't heard of the end
    m_bench->button("pushButton_loading_cancel")->click();
    QTRY_VERIFY(m_bench->button("pushButton_load_dbc_file")->isEnabled());
    QVERIFY(!selector());
    QVERIFY(!m_bench->button("pushButton_reload_dbc_file")->isEnabled());
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_Logger_CAN_View_Dbc::clearedFlagsAreANotice()
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

void tst_Logger_CAN_View_Dbc::aNoticeOfManyNamesIsCut()
{
    m_bench->page();
    writeMessages(1128);
    QVERIFY(m_bench->label("label_notice").endsWith(QStringLiteral("Signal147 and 980 more")));
}

void tst_Logger_CAN_View_Dbc::longNamesAreCutInANotice()
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

void tst_Logger_CAN_View_Dbc::theNameOfALongFileIsCut()
{
    const QString name = QStringLiteral("a&b") + QString(180, QLatin1Char('x'));
    const QString path = m_bench->writeFile(qPrintable(name + QStringLiteral(".dbc")),
                                            "BO_ 291 Engine: 8 ECU\n"
                                            " SG_ Speed : 0|16@1+ (0.5,0) [0|0] \"rpm\" ECU\n");
    loadAll(path);
    QVERIFY(m_bench->label("label_loading").startsWith(QStringLiteral("Reading a&bxxx")));
    QVERIFY(
        m_bench->button("pushButton_reload_dbc_file")->text().contains(QStringLiteral("a&&bxxx")));
    QVERIFY(m_bench->label("label_dbc_summary").endsWith(QStringLiteral(": 1 message, 1 signal")));
    const QPushButton *button = m_bench->button("pushButton_reload_dbc_file");
    QVERIFY2(button->text().size() < 50, qPrintable(button->text()));
    for (const char *label : {"label_loading", "label_dbc_summary"})
        QVERIFY2(m_bench->label(label).size() < 100, label);
    for (const char *widget : {"label_loading", "label_dbc_summary", "pushButton_reload_dbc_file"})
        QVERIFY2(m_bench->find<QWidget>(widget)->toolTip().contains(path.toHtmlEscaped()), widget);
}

// No change of the configuration passes the page by; should one, its records are left as they are.
void tst_Logger_CAN_View_Dbc::anEditSurvivesAListThatHasGrown()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    const_cast<TerminalCanCfg &>(m_bench->channel()).dbc_signals.add();
    tick(0, Record, Qt::Unchecked);
    QCOMPARE(m_bench->channel().dbc_signals.size(), 2);
    QCOMPARE(int(m_bench->channel().dbc_signals.at(0)->selection_flags),
             int(StreamingClass_DBC_Signal::liveFlag));
}

void tst_Logger_CAN_View_Dbc::insertedSignalsReplaceTheSameOnes()
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

void tst_Logger_CAN_View_Dbc::selectedSignalsCanBeRemoved()
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

void tst_Logger_CAN_View_Dbc::whatIsSelectedIsRemovedInAFilteredAndSortedTable()
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

void tst_Logger_CAN_View_Dbc::theDeleteKeyRemoves()
{
    m_bench->writeSignals({QStringLiteral("A"), QStringLiteral("B")});
    m_bench->showActive();
    auto *table = m_bench->find<QTableView>("tableView_dbc");
    table->setFocus();
    table->selectRow(1);
    QTest::keyClick(table, Qt::Key_Delete);
    QCOMPARE(m_bench->signalNames(), QStringList(QStringLiteral("A")));
}

void tst_Logger_CAN_View_Dbc::filtersInUseAreCounted()
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

void tst_Logger_CAN_View_Dbc::aClickAnywhereInACellTicksIt()
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

void tst_Logger_CAN_View_Dbc::aTickIsWritten()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    const QSignalSpy told(&m_bench->handler, &Logger_Data_Handler_Class::signal_update_cfg_can);
    tick(0, Record, Qt::Unchecked);
    QCOMPARE(told.size(), 1);
    QCOMPARE(int(m_bench->channel().dbc_signals.at(0)->selection_flags),
             int(StreamingClass_DBC_Signal::liveFlag));
}

void tst_Logger_CAN_View_Dbc::anEditOfACellIsWritten_data()
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

void tst_Logger_CAN_View_Dbc::anEditOfACellIsWritten()
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

void tst_Logger_CAN_View_Dbc::aLiveTickStartsDecoding()
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

void tst_Logger_CAN_View_Dbc::liveTicksAreAllowedWhileLogging()
{
    m_bench->writeSignals({QStringLiteral("A")});
    m_bench->page();
    m_bench->setState(APP_STA_CONN_LOG_ON);
    QVERIFY(!rows()->setData(rows()->index(0, Record), Qt::Unchecked, Qt::CheckStateRole));
    tick(0, Live, Qt::Unchecked);
    QCOMPARE(int(m_bench->channel().dbc_signals.at(0)->selection_flags),
             int(StreamingClass_DBC_Signal::recordFlag));
}

void tst_Logger_CAN_View_Dbc::liveValuesSurviveAnEcho()
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

void tst_Logger_CAN_View_Dbc::theSelectionSurvivesAnEcho()
{
    m_bench->writeSignals({QStringLiteral("A"), QStringLiteral("B")});
    auto *table = m_bench->find<QTableView>("tableView_dbc");
    table->setCurrentIndex(rows()->index(1, Record));
    tick(1, Record, Qt::Unchecked);
    QCOMPARE(table->currentIndex(), rows()->index(1, Record));
    QVERIFY(table->selectionModel()->isRowSelected(1, {}));
}

void tst_Logger_CAN_View_Dbc::signalsCanBeFiltered()
{
    m_bench->writeSignals({QStringLiteral("EngineRpm"), QStringLiteral("RPM_1")});
    m_bench->find<QLineEdit>("lineEdit_dbc_filter")->setText(QStringLiteral("rpm"));
    QCOMPARE(rows()->rowCount(), 1);
    m_bench->find<QLineEdit>("lineEdit_dbc_filter")->setText(QStringLiteral("*rpm"));
    QCOMPARE(rows()->rowCount(), 2);
}

QTEST_MAIN(tst_Logger_CAN_View_Dbc)
#include "tst_logger_can_view_dbc.moc"
