#include "tests/can/views/canpagebench.h"
#include "tests/support/messagecount.h"

#include <QDialog>
#include <QDropEvent>
#include <QFrame>
#include <QMimeData>
#include <QTableView>
#include <QThread>

// How signals come from a DBC file to the channel, and what the page shows of the file.
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
    void theNameOfALongFileIsCut();

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

    std::unique_ptr<CanPageBench> m_bench;
};

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
    QCOMPARE(m_bench->rows("tableView_dbc")->rowCount(), 2);
    QCOMPARE(m_bench->cell("tableView_dbc", 1, signaltable::Name), QStringLiteral("Torque"));
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

QTEST_MAIN(tst_Logger_CAN_View_Dbc)
#include "tst_logger_can_view_dbc.moc"
