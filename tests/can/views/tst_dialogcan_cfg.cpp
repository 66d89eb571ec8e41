#include "a2l/records/a2lconstants.h"
#include "can/canfilters.h"
#include "can/models/modelidfilterelements.h"
#include "can/views/dialogcan_cfg.h"
#include "config/terminalcancfg.h"
#include "tests/app/messagesink.h"
#include "tests/app/scriptedprompt.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTest>

namespace {

// The ranges of the registers.
constexpr struct
{
    const char *name;
    int minimum;
    int maximum;
} registers[] = {
    {"clk_div", 1, 512},     {"tseg1", 2, 64},      {"tseg2", 1, 16},     {"sjw", 1, 16},
    {"fast_clk_div", 1, 32}, {"fast_tseg1", 2, 16}, {"fast_tseg2", 1, 8}, {"fast_sjw", 1, 4},
};

} // namespace

class tst_DialogCAN_Cfg : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_dialog.reset(); }

    void theTitleNamesTheChannel();
    void textsAreThoseOfTheField_data();
    void textsAreThoseOfTheField();
    void modesStandInTheOrderOfTheirNumbers();
    void theBoxesOfPresetsBeginBlank();
    void registersKeepToTheirRanges();
    void everyControlSaysWhatItIs();

    void theValuesOfTheChannelAreShown();
    void okWithoutAnEditWritesTheSameChannel();
    void everyWidgetIsReadBack();
    void cancelWritesNothing();
    void escapeWritesNothing();
    void theChannelItselfIsLeftAlone();
    void whatHasNoWidgetIsTheChannelsWhenOkIsPressed();
    void anUnknownModeIsKept();
    void okWritesALineWithTheNumberOfSignals();

    void bitRateAndSamplePointFollowTheRegisters_data();
    void bitRateAndSamplePointFollowTheRegisters();
    void aPresetSetsItsPhase();
    void aPresetAppliesThatOfTheOtherPhaseAgain();
    void theBlankItemLeavesTheRegisters();

    void addPutsANewRowBehindTheCurrentOne();
    void addTurnsToTheNewRow();
    void the129thAddShowsTheLimit();
    void deleteTakesTheCurrentRowIfItIsSelected();
    void deleteIsEnabledWhileARowIsSelected();
    void theFilterListCanBeCleared();
    void theKeysInsertAndDeleteWork();

    void filtersThatComeFromSignalsAreDisabled_data();
    void filtersThatComeFromSignalsAreDisabled();

    void listenOnlyWithDaqListsIsToldAndKept();
    void listenOnlyWithoutDaqListsIsNotTold();

    void theButtonOfModulesCountsThem();
    void theButtonOfModulesNeedsAListener();

private:
    DialogCAN_Cfg &dialog()
    {
        if (!m_dialog) {
            m_dialog = std::make_unique<DialogCAN_Cfg>(3, *m_channel, m_prompt);
            connect(m_dialog.get(), &DialogCAN_Cfg::signalWriteCan, this,
                    [this](int number, const TerminalCanCfg &channel) {
                        m_writtenTo += number;
                        record::copy(channel, m_written);
                    });
        }
        return *m_dialog;
    }
    template <class Widget>
    Widget *find(const char *name)
    {
        return dialog().findChild<Widget *>(QLatin1String(name));
    }
    QSpinBox *spinBox(const QString &name)
    {
        return dialog().findChild<QSpinBox *>(QStringLiteral("spinBox_") + name);
    }
    QString text(const char *lineEdit) { return find<QLineEdit>(lineEdit)->text(); }
    QTableView *table() { return find<QTableView>("tableView_filters"); }
    QAbstractItemModel *filters() { return table()->model(); }
    void pressOk()
    {
        const MessageSink quiet;
        find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok)->click();
    }
    void add() { find<QPushButton>("pushButton_filter_add")->click(); }
    void select(int row) { table()->setCurrentIndex(filters()->index(row, 0)); }
    // ID-1 of each row.
    QString ids()
    {
        QStringList ids;
        for (int row = 0; row < filters()->rowCount(); ++row)
            ids += filters()->index(row, ModelIDFilterElements::Id1).data().toString();
        return ids.join(QLatin1Char(' '));
    }

    std::unique_ptr<TerminalCanCfg> m_channel;
    TerminalCanCfg m_written;
    QList<int> m_writtenTo;
    ScriptedPrompt m_prompt;
    std::unique_ptr<DialogCAN_Cfg> m_dialog;
};

void tst_DialogCAN_Cfg::init()
{
    m_channel = std::make_unique<TerminalCanCfg>();
    m_prompt.shown.clear();
    m_writtenTo.clear();
    record::reset(m_written);
}

void tst_DialogCAN_Cfg::theTitleNamesTheChannel()
{
    QCOMPARE(dialog().windowTitle(), QStringLiteral("CAN-3 Configuration"));
}

void tst_DialogCAN_Cfg::textsAreThoseOfTheField_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *widget, const char *text) {
        QTest::newRow(widget) << QString::fromLatin1(widget) << QString::fromLatin1(text);
    };
    row("checkBox_can_enabled", "Enabled");
    row("checkBox_listen_only", "Listen-Only");
    row("checkBox_single_shot", "No Automatic Retransmission (\"SingleShot\")");
    row("checkBox_termination", "120 Ohm Termination");
    row("radioButton_remote_11_filter", "filter");
    row("radioButton_remote_11_reject", "reject");
    row("radioButton_remote_29_filter", "filter");
    row("radioButton_remote_29_reject", "reject");
    row("label_bitrate", "Bitrate [kHz]");
    row("label_sample_point", "SamplePoint [%]");
    row("label_fast_bitrate", "Bitrate [kHz]");
    row("label_fast_sample_point", "SamplePoint [%]");
    row("label_info_range", "Range: Range-Filter from ID1 to ID2    (ID1 <= ID2)");
    row("label_info_dual", "Dual: Dual ID filter for ID1 or ID2");
    row("label_info_classic", "Classic: Classic filterID1 = filter, ID2 = mask");
    row("pushButton_filter_add", "add");
    row("pushButton_filter_delete", "delete");
}

void tst_DialogCAN_Cfg::textsAreThoseOfTheField()
{
    QFETCH(QString, widget);
    const QWidget *found = dialog().findChild<QWidget *>(widget);
    QVERIFY(found);
    QTEST(found->property("text").toString(), "text");
}

void tst_DialogCAN_Cfg::modesStandInTheOrderOfTheirNumbers()
{
    const auto *box = find<QComboBox>("comboBox_can_mode");
    QCOMPARE(box->count(), 3);
    QCOMPARE(box->itemText(0), QStringLiteral("CAN"));
    QCOMPARE(box->itemText(1), QStringLiteral("CAN-FD "));
    QCOMPARE(box->itemText(2), QStringLiteral("CAN-FD (with Bit-Rate-Switching)"));
}

void tst_DialogCAN_Cfg::theBoxesOfPresetsBeginBlank()
{
    for (const char *name : {"comboBox_can_iso_preset", "comboBox_can_fd_preset"}) {
        QCOMPARE(find<QComboBox>(name)->currentIndex(), 0);
        QCOMPARE(find<QComboBox>(name)->currentText(), QStringLiteral(" "));
    }
    QCOMPARE(find<QComboBox>("comboBox_can_iso_preset")->itemText(6), QStringLiteral("500K"));
    QCOMPARE(find<QComboBox>("comboBox_can_fd_preset")->count(), 6);
}

void tst_DialogCAN_Cfg::registersKeepToTheirRanges()
{
    for (const auto &r : registers) {
        const QSpinBox *box = spinBox(QLatin1String(r.name));
        QVERIFY2(box, r.name);
        QCOMPARE(box->minimum(), r.minimum);
        QCOMPARE(box->maximum(), r.maximum);
    }
}

void tst_DialogCAN_Cfg::everyControlSaysWhatItIs()
{
    const QList<QWidget *> widgets = dialog().findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const QString name = widget->objectName();
        const bool isControl =
            qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QComboBox *>(widget)
            || qobject_cast<const QSpinBox *>(widget) || name.startsWith(QLatin1String("lineEdit"));
        if (!isControl || name.isEmpty() || name.startsWith(QLatin1String("qt_")))
            continue;
        QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(name));
        const bool hasText = !widget->property("text").toString().isEmpty()
                             && !qobject_cast<const QLineEdit *>(widget);
        QVERIFY2(hasText || !widget->accessibleName().isEmpty(), qPrintable(name));
    }
}

void tst_DialogCAN_Cfg::theValuesOfTheChannelAreShown()
{
    m_channel->enabled = 1;
    m_channel->can_mode = 2;
    m_channel->single_shot = 1;
    m_channel->clk_div = 300;
    m_channel->fast_sjw = 4;
    m_channel->remote_29 = 1;
    m_channel->filters.add() = {1, 0, 1, 0x10, 0x20};

    QVERIFY(find<QAbstractButton>("checkBox_can_enabled")->isChecked());
    QVERIFY(!find<QAbstractButton>("checkBox_listen_only")->isChecked());
    QVERIFY(find<QAbstractButton>("checkBox_single_shot")->isChecked());
    QVERIFY(!find<QAbstractButton>("checkBox_termination")->isChecked());
    QVERIFY(find<QAbstractButton>("radioButton_remote_11_filter")->isChecked());
    QVERIFY(find<QAbstractButton>("radioButton_remote_29_reject")->isChecked());
    QCOMPARE(find<QComboBox>("comboBox_can_mode")->currentIndex(), 2);
    QCOMPARE(spinBox(QStringLiteral("clk_div"))->value(), 300);
    QCOMPARE(spinBox(QStringLiteral("fast_sjw"))->value(), 4);
    QCOMPARE(ids(), QStringLiteral("10"));
}

void tst_DialogCAN_Cfg::okWithoutAnEditWritesTheSameChannel()
{
    m_channel->can_mode = 1;
    m_channel->termination = 1;
    m_channel->clk_div = 75;
    m_channel->remote_11 = 1;
    m_channel->filters.add() = {0, 3, 0, 0x7FF, 0x1FFFFFFF};
    m_channel->dbc_signals.add().name = QStringLiteral("EngineRpm");
    m_channel->a2l.a2l_file_name = QStringLiteral("ecu.a2l");
    m_channel->aim_modules.add().name = QStringLiteral("Wheel");
    m_channel->export_custom_name = QStringLiteral("Chassis");
    dialog();
    pressOk();
    QCOMPARE(m_writtenTo, QList<int>{3});
    QVERIFY(m_written == *m_channel);
    QCOMPARE(dialog().result(), int(QDialog::Accepted));
}

void tst_DialogCAN_Cfg::everyWidgetIsReadBack()
{
    for (const char *name :
         {"checkBox_can_enabled", "checkBox_listen_only", "checkBox_single_shot",
          "checkBox_termination", "radioButton_remote_11_reject", "radioButton_remote_29_reject"})
        find<QAbstractButton>(name)->setChecked(true);
    find<QComboBox>("comboBox_can_mode")->setCurrentIndex(1);
    for (const auto &r : registers)
        spinBox(QLatin1String(r.name))->setValue(r.maximum);
    add();
    pressOk();

    TerminalCanCfg expected;
    expected.enabled = expected.listen_only = expected.single_shot = expected.termination = 1;
    expected.remote_11 = expected.remote_29 = 1;
    expected.can_mode = 1;
    expected.clk_div = 512;
    expected.tseg1 = 64;
    expected.tseg2 = 16;
    expected.sjw = 16;
    expected.fast_clk_div = 32;
    expected.fast_tseg1 = 16;
    expected.fast_tseg2 = 8;
    expected.fast_sjw = 4;
    expected.filters.add() = {0, 2, 0, 0, 0x1FFFFFFF};
    QVERIFY(m_written == expected);
}

void tst_DialogCAN_Cfg::cancelWritesNothing()
{
    add();
    find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Cancel)->click();
    QVERIFY(m_writtenTo.isEmpty());
    QCOMPARE(dialog().result(), int(QDialog::Rejected));
}

void tst_DialogCAN_Cfg::escapeWritesNothing()
{
    dialog().show();
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    QVERIFY(!dialog().isVisible());
    QVERIFY(m_writtenTo.isEmpty());
}

void tst_DialogCAN_Cfg::theChannelItselfIsLeftAlone()
{
    find<QAbstractButton>("checkBox_can_enabled")->setChecked(true);
    add();
    pressOk();
    QVERIFY(*m_channel == TerminalCanCfg());
}

void tst_DialogCAN_Cfg::whatHasNoWidgetIsTheChannelsWhenOkIsPressed()
{
    dialog();
    m_channel->aim_modules.add().name = QStringLiteral("Wheel");
    pressOk();
    QCOMPARE(m_written.aim_modules.size(), 1);
}

void tst_DialogCAN_Cfg::anUnknownModeIsKept()
{
    m_channel->can_mode = 7;
    dialog();
    pressOk();
    QCOMPARE(int(m_written.can_mode), 7);
}

void tst_DialogCAN_Cfg::okWritesALineWithTheNumberOfSignals()
{
    m_channel->dbc_signals.add();
    m_channel->dbc_signals.add();
    const MessageSink log;
    dialog().set_cfg();
    QCOMPARE(log.messages(), QStringList(QStringLiteral("Debug: NEW CFG dbc-signal cnt: 2")));
}

void tst_DialogCAN_Cfg::bitRateAndSamplePointFollowTheRegisters_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("results");

    QTest::newRow("divider") << "clk_div" << 7 << "1071.429 75.000, 500.000 75.000";
    QTest::newRow("segment 1") << "tseg1" << 12 << "470.588 76.471, 500.000 75.000";
    QTest::newRow("segment 2") << "tseg2" << 1 << "615.385 92.308, 500.000 75.000";
    QTest::newRow("jump width") << "sjw" << 16 << "500.000 75.000, 500.000 75.000";
    QTest::newRow("fast divider") << "fast_clk_div" << 7 << "500.000 75.000, 1071.429 75.000";
    QTest::newRow("fast segment 1") << "fast_tseg1" << 12 << "500.000 75.000, 470.588 76.471";
    QTest::newRow("fast segment 2") << "fast_tseg2" << 1 << "500.000 75.000, 615.385 92.308";
    QTest::newRow("fast jump width") << "fast_sjw" << 4 << "500.000 75.000, 500.000 75.000";
}

void tst_DialogCAN_Cfg::bitRateAndSamplePointFollowTheRegisters()
{
    QFETCH(QString, box);
    QFETCH(int, value);
    spinBox(box)->setValue(value);
    QTEST(QStringLiteral("%1 %2, %3 %4")
              .arg(text("lineEdit_bitrate"), text("lineEdit_sample_point"),
                   text("lineEdit_fast_bitrate"), text("lineEdit_fast_sample_point")),
          "results");
}

void tst_DialogCAN_Cfg::aPresetSetsItsPhase()
{
    find<QComboBox>("comboBox_can_iso_preset")->setCurrentText(QStringLiteral("1000K"));
    QCOMPARE(text("lineEdit_bitrate"), QStringLiteral("1000.000"));
    QCOMPARE(text("lineEdit_sample_point"), QStringLiteral("75.000"));
    QCOMPARE(text("lineEdit_fast_bitrate"), QStringLiteral("500.000"));

    find<QComboBox>("comboBox_can_fd_preset")->setCurrentText(QStringLiteral("5000K"));
    QCOMPARE(text("lineEdit_fast_bitrate"), QStringLiteral("5000.000"));
    QCOMPARE(text("lineEdit_fast_sample_point"), QStringLiteral("75.000"));
    QCOMPARE(spinBox(QStringLiteral("fast_clk_div"))->value(), 2);
    QCOMPARE(spinBox(QStringLiteral("fast_tseg1"))->value(), 8);
    QCOMPARE(spinBox(QStringLiteral("fast_tseg2"))->value(), 3);
    QCOMPARE(spinBox(QStringLiteral("fast_sjw"))->value(), 1);
}

void tst_DialogCAN_Cfg::aPresetAppliesThatOfTheOtherPhaseAgain()
{
    find<QComboBox>("comboBox_can_iso_preset")->setCurrentText(QStringLiteral("20K"));
    spinBox(QStringLiteral("clk_div"))->setValue(1);
    find<QComboBox>("comboBox_can_fd_preset")->setCurrentText(QStringLiteral("2000K"));
    QCOMPARE(spinBox(QStringLiteral("clk_div"))->value(), 375);
}

void tst_DialogCAN_Cfg::theBlankItemLeavesTheRegisters()
{
    auto *presets = find<QComboBox>("comboBox_can_iso_preset");
    presets->setCurrentText(QStringLiteral("125K"));
    spinBox(QStringLiteral("tseg1"))->setValue(20);
    presets->setCurrentIndex(0);
    QCOMPARE(spinBox(QStringLiteral("clk_div"))->value(), 60);
    QCOMPARE(spinBox(QStringLiteral("tseg1"))->value(), 20);

    presets = find<QComboBox>("comboBox_can_fd_preset");
    presets->setCurrentText(QStringLiteral("2000K"));
    spinBox(QStringLiteral("fast_tseg1"))->setValue(9);
    presets->setCurrentIndex(0);
    QCOMPARE(spinBox(QStringLiteral("fast_clk_div"))->value(), 3);
    QCOMPARE(spinBox(QStringLiteral("fast_tseg1"))->value(), 9);
}

void tst_DialogCAN_Cfg::addPutsANewRowBehindTheCurrentOne()
{
    for (const quint32 id : {0x1U, 0x2U})
        m_channel->filters.add().id1 = id;
    table()->setCurrentIndex({});
    add();
    QCOMPARE(ids(), QStringLiteral("0 1 2"));
    select(1);
    add();
    QCOMPARE(ids(), QStringLiteral("0 1 0 2"));
}

void tst_DialogCAN_Cfg::addTurnsToTheNewRow()
{
    add();
    add();
    QCOMPARE(table()->currentIndex().row(), 1);
    QVERIFY(table()->selectionModel()->isRowSelected(1, {}));
}

void tst_DialogCAN_Cfg::the129thAddShowsTheLimit()
{
    for (int row = 0; row < can::maxFilters; ++row)
        add();
    QCOMPARE(filters()->rowCount(), 128);
    QVERIFY(m_prompt.shown.isEmpty());
    add();
    QCOMPARE(filters()->rowCount(), 128);
    QCOMPARE(m_prompt.shown, QStringList(QStringLiteral("Filter-Limit|Filters limited to 128.")));
}

void tst_DialogCAN_Cfg::deleteTakesTheCurrentRowIfItIsSelected()
{
    for (const quint32 id : {0x1U, 0x2U, 0x3U})
        m_channel->filters.add().id1 = id;
    select(1);
    dialog().on_pushButton_filter_delete_clicked();
    QCOMPARE(ids(), QStringLiteral("1 3"));

    select(0);
    table()->clearSelection();
    dialog().on_pushButton_filter_delete_clicked();
    QCOMPARE(ids(), QStringLiteral("1 3"));
}

void tst_DialogCAN_Cfg::deleteIsEnabledWhileARowIsSelected()
{
    m_channel->filters.add();
    auto *button = find<QPushButton>("pushButton_filter_delete");
    QVERIFY(!button->isEnabled());
    select(0);
    QVERIFY(button->isEnabled());
    button->click();
    QVERIFY(!button->isEnabled());
}

void tst_DialogCAN_Cfg::theFilterListCanBeCleared()
{
    for (int row = 0; row < 5; ++row)
        m_channel->filters.add();
    dialog().clear_filter_list();
    QCOMPARE(filters()->rowCount(), 0);
}

void tst_DialogCAN_Cfg::theKeysInsertAndDeleteWork()
{
    dialog().show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog()));
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Insert);
    QTest::keyClick(table(), Qt::Key_Insert);
    QCOMPARE(filters()->rowCount(), 2);
    QTest::keyClick(table(), Qt::Key_Delete);
    QCOMPARE(filters()->rowCount(), 1);
}

void tst_DialogCAN_Cfg::filtersThatComeFromSignalsAreDisabled_data()
{
    QTest::addColumn<bool>("dbcSignal");
    QTest::addColumn<int>("activeInterface");
    QTest::addColumn<bool>("daqList");
    QTest::addColumn<bool>("enabled");

    const int can = ACTIVE_A2L_IF_CCP_XCP_O_CAN;
    QTest::newRow("nothing chosen") << false << int(ACTIVE_A2L_IF_NONE) << false << true;
    QTest::newRow("a DBC signal") << true << int(ACTIVE_A2L_IF_NONE) << false << false;
    QTest::newRow("an A2L file on CAN") << false << can << true << false;
    QTest::newRow("an A2L file on CAN without DAQ list") << false << can << false << true;
    QTest::newRow("an A2L file on ethernet")
        << false << int(ACTIVE_A2L_IF_XCP_O_UDP) << true << true;
}

void tst_DialogCAN_Cfg::filtersThatComeFromSignalsAreDisabled()
{
    QFETCH(bool, dbcSignal);
    QFETCH(int, activeInterface);
    QFETCH(bool, daqList);
    QFETCH(bool, enabled);
    if (dbcSignal)
        m_channel->dbc_signals.add();
    m_channel->a2l.config.active_interface = quint8(activeInterface);
    if (daqList)
        m_channel->a2l.config.cfg.daq_lists.add();
    QCOMPARE(find<QGroupBox>("groupBox_filters")->isEnabled(), enabled);
    QCOMPARE(find<QLabel>("label_filters_made")->isHidden(), enabled);
}

void tst_DialogCAN_Cfg::listenOnlyWithDaqListsIsToldAndKept()
{
    m_channel->a2l.config.cfg.daq_lists.add();
    find<QAbstractButton>("checkBox_listen_only")->setChecked(true);
    pressOk();
    QCOMPARE(m_prompt.shown,
             QStringList(QStringLiteral(
                 "Listen Only|The \"Listen Only\" option is set in the CAN configuration, If using "
                 "CCP/XCP on CAN please make sure to remove it.")));
    QCOMPARE(int(m_written.listen_only), 1);
}

void tst_DialogCAN_Cfg::listenOnlyWithoutDaqListsIsNotTold()
{
    find<QAbstractButton>("checkBox_listen_only")->setChecked(true);
    pressOk();
    QVERIFY(m_prompt.shown.isEmpty());
    QCOMPARE(int(m_written.listen_only), 1);
}

void tst_DialogCAN_Cfg::theButtonOfModulesCountsThem()
{
    m_channel->aim_modules.add();
    m_channel->aim_modules.add();
    auto *button = find<QPushButton>("pushButton_aimModules");
    QCOMPARE(button->text(), QStringLiteral("AIM Modules (2)"));
    connect(&dialog(), &DialogCAN_Cfg::signalOpenAimModules, this,
            [this] { m_channel->aim_modules.add(); });
    button->click();
    QCOMPARE(button->text(), QStringLiteral("AIM Modules (3)"));
}

void tst_DialogCAN_Cfg::theButtonOfModulesNeedsAListener()
{
    const auto *button = find<QPushButton>("pushButton_aimModules");
    QVERIFY(!button->isEnabled());
    const QString reason = button->toolTip();
    connect(&dialog(), &DialogCAN_Cfg::signalOpenAimModules, this, [] {});
    QVERIFY(button->isEnabled());
    QVERIFY(button->toolTip() != reason);
}

QTEST_MAIN(tst_DialogCAN_Cfg)
#include "tst_dialogcan_cfg.moc"
