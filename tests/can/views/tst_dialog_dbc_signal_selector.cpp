#include "a2l/records/a2lconstants.h"
#include "can/dbcsignals.h"
#include "can/views/dialog_dbc_signal_selector.h"
#include "tests/app/scriptedprompt.h"
#include "tests/can/signalsamples.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using sample::addMultiplexed;
using sample::addMultiplexor;
using sample::addSignal;
using Signal = StreamingClass_DBC_Signal;

class tst_Dialog_DBC_Signal_Selector : public QObject
{
    Q_OBJECT

private slots:
    void init();

    // Counting
    void titleAndCaptionAreShown();
    void fiveSignalsOfOneMessageCostOneFilter();
    void anExtendedAndAStandardMessageOfTheSameNumberCostTwoFilters();
    void aFullChannelWhoseMessagesCoverTheChoiceCanStillLoad();
    void aMessageBeyondTheLimitTurnsTheCounterRedAndBlocksLoading();
    void untickingTurnsTheCounterBlackAgain();
    void filtersOfTheA2lModuleCountToo();
    void ownFilterRowsOfTheChannelCountUntilItHasSignals();
    void signalsOfTheChannelThatAreNotTickedNeedNoFilter();

    // Ticking
    void selectAllTicksWhatTheFilterShows();
    void unselectAllUnticksWhatTheFilterShows();
    void spaceTicksAllSelectedRows();
    void aClickOnTheBoxTicksTheRow();

    // Filtering and sorting
    void aStarFindsTheTextAnywhere();
    void theDescriptionCanBeFilteredInstead();
    void onlyCheckedSignalsCanBeShown();
    void aClickOnAHeadSorts();
    void ticksDoNotSort();
    void aTickDoesNotMoveItsRow();
    void theKeyboardSortsByTheCurrentColumn();
    void controlAndFLeadToTheFilter();
    void returnInTheFilterLeadsToTheTable();
    void countsOfSignalsAreShown();

    // Loading
    void withoutATickNothingIsLoaded();
    void aboveTheLimitNothingIsLoaded();
    void withoutItsMultiplexorASignalIsNotLoaded();
    void refusalsLeaveTheTicksInPlace();
    void tickedSignalsAreHandedOver();
    void aMultiplexedSignalBringsItsMultiplexorUnticked();
    void aMultiplexorTakesPartInTheInsertionWithoutARow();
    void whatLoadingReplacesIsColoured();
    void returnInTheTableLoads();

    // Ownership
    void closingItInAnyWayFreesTheSignals_data();
    void closingItInAnyWayFreesTheSignals();
    void theReceiverMayFreeTheRecordsAtOnce();
    void theReceiverMayEndTheDialog();
    void withoutAReceiverTheSignalsStayTheDialogs();

    // The window
    void theSummaryIsShownIfThereIsOne();
    void widthsAndOrderAreRemembered();
    void everyControlHasAnAccessibleNameAndAToolTip();

private:
    std::unique_ptr<QTemporaryDir> m_settings;
};

namespace {

enum Column { Record, Id, Name, Unit, Description };

// The dialog with a channel, a file's signals and a user.
struct Bench
{
    ~Bench() { delete m_dialog; }

    // Before this call channel and file can be filled.
    Dialog_DBC_Signal_Selector &dialog()
    {
        if (!m_dialog) {
            m_dialog = new Dialog_DBC_Signal_Selector(channel, sample::released(file), prompt);
            QObject::connect(m_dialog,
                             &Dialog_DBC_Signal_Selector::signal_load_selected_dbc_signals,
                             [this](QList<Signal *> *records) {
                                 for (Signal *record : *records)
                                     loaded.append(std::unique_ptr<Signal>(record));
                                 ++handovers;
                             });
            QObject::connect(m_dialog, &QDialog::finished, [this](int r) { result = r; });
        }
        return *m_dialog;
    }
    template <class Widget = QLabel>
    Widget *find(const char *name)
    {
        return dialog().findChild<Widget *>(QLatin1String(name));
    }
    QTableView *table() { return find<QTableView>("tableView_signals"); }
    QAbstractItemModel &rows() { return *table()->model(); }
    QString remaining() { return find("label_remaining_filters")->text(); }
    bool isRed()
    {
        return find("label_remaining_filters")->styleSheet()
               == QStringLiteral("QLabel { color : red; }");
    }
    bool canLoad() { return find<QPushButton>("pushButton_load")->isEnabled(); }
    void click(const char *button) { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
    void tick(int row, Qt::CheckState state = Qt::Checked)
    {
        QVERIFY(rows().setData(rows().index(row, Record), state, Qt::CheckStateRole));
    }
    void type(const char *text)
    {
        find<QLineEdit>("lineEdit_filter")->setText(QString::fromLatin1(text));
    }
    QStringList names()
    {
        QStringList found;
        for (int row = 0; row < rows().rowCount(); ++row)
            found.append(rows().index(row, Name).data().toString());
        return found;
    }
    QStringList tickedNames()
    {
        QStringList found;
        for (int row = 0; row < rows().rowCount(); ++row) {
            if (rows().index(row, Record).data(Qt::CheckStateRole).toInt() == Qt::Checked)
                found.append(rows().index(row, Name).data().toString());
        }
        return found;
    }
    QStringList loadedNames() const
    {
        QStringList found;
        for (const Signal *signal : loaded)
            found.append(signal->name);
        return found;
    }
    // Clicks into the middle of the head of a column.
    void clickHead(int column)
    {
        QHeaderView *header = table()->horizontalHeader();
        const QPoint middle(header->sectionViewportPosition(column)
                                + header->sectionSize(column) / 2,
                            header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, middle);
    }
    void showWindow()
    {
        dialog().show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog()));
    }

    TerminalCanCfg channel;
    sample::SignalList file;
    sample::SignalList loaded;
    int handovers = 0;
    int result = -1;
    ScriptedPrompt prompt;

private:
    QPointer<Dialog_DBC_Signal_Selector> m_dialog;
};

// Signals of the messages first, first + 1, ...
void addMessages(sample::SignalList &list, quint32 first, int count, quint8 flags = 0)
{
    for (int i = 0; i < count; ++i)
        addSignal(list, "s", first + quint32(i), flags);
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

void tst_Dialog_DBC_Signal_Selector::init()
{
    m_settings = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings->path());
    QSettings(QStringLiteral("ZELVO"), QStringLiteral("ZDS")).clear();
}

void tst_Dialog_DBC_Signal_Selector::titleAndCaptionAreShown()
{
    Bench bench;
    QCOMPARE(bench.dialog().windowTitle(), QStringLiteral("DBC-Signal Selection"));
    QCOMPARE(bench.find("label_remaining_caption")->text(),
             QStringLiteral("Remaining Message-Filters:"));
    QCOMPARE(bench.find("label_loaded")->text(), QStringLiteral("Signal already loaded."));
    QCOMPARE(bench.find("label_loaded_differently")->text(),
             QStringLiteral("Signal already loaded, but with different parameters."));
    QCOMPARE(bench.remaining(), QStringLiteral("128"));
}

void tst_Dialog_DBC_Signal_Selector::fiveSignalsOfOneMessageCostOneFilter()
{
    Bench bench;
    for (const char *name : {"a", "b", "c", "d", "e"})
        addSignal(bench.file, name);
    bench.click("pushButton_select_all");
    QCOMPARE(bench.remaining(), QStringLiteral("127"));
}

void tst_Dialog_DBC_Signal_Selector::anExtendedAndAStandardMessageOfTheSameNumberCostTwoFilters()
{
    Bench bench;
    addSignal(bench.file, "standard", 0x123);
    addSignal(bench.file, "extended", 0x123).extended_id = 1;
    bench.dialog();
    bench.tick(0);
    QCOMPARE(bench.remaining(), QStringLiteral("127"));
    bench.tick(1);
    QCOMPARE(bench.remaining(), QStringLiteral("126"));
}

void tst_Dialog_DBC_Signal_Selector::aFullChannelWhoseMessagesCoverTheChoiceCanStillLoad()
{
    Bench bench;
    addMessages(bench.channel.dbc_signals, 0x100, 128, Signal::recordFlag);
    addMessages(bench.file, 0x100, 128);
    bench.click("pushButton_select_all");
    QCOMPARE(bench.remaining(), QStringLiteral("0"));
    QVERIFY(!bench.isRed());
    QVERIFY(bench.canLoad());
    bench.click("pushButton_load");
    QCOMPARE(bench.loaded.size(), 128);
}

void tst_Dialog_DBC_Signal_Selector::aMessageBeyondTheLimitTurnsTheCounterRedAndBlocksLoading()
{
    Bench bench;
    addMessages(bench.file, 0x100, 129);
    for (int row = 0; row < 128; ++row)
        bench.tick(row);
    QCOMPARE(bench.remaining(), QStringLiteral("0"));
    QVERIFY(bench.canLoad());
    bench.tick(128);
    QCOMPARE(bench.remaining(), QStringLiteral("-1"));
    QVERIFY(bench.isRed());
    QVERIFY(!bench.canLoad());
}

void tst_Dialog_DBC_Signal_Selector::untickingTurnsTheCounterBlackAgain()
{
    Bench bench;
    addMessages(bench.file, 0x100, 129);
    bench.click("pushButton_select_all");
    QVERIFY(bench.isRed());
    bench.tick(5, Qt::Unchecked);
    QCOMPARE(bench.remaining(), QStringLiteral("0"));
    QCOMPARE(bench.find("label_remaining_filters")->styleSheet(),
             QStringLiteral("QLabel { color : black; }"));
    QVERIFY(bench.canLoad());
}

void tst_Dialog_DBC_Signal_Selector::filtersOfTheA2lModuleCountToo()
{
    Bench bench;
    bench.channel.a2l.config.active_interface = ACTIVE_A2L_IF_CCP_XCP_O_CAN;
    bench.channel.a2l.config.cfg.daq_lists.add().can_id = 0x7E1;
    addSignal(bench.file, "same message", 0x7E1);
    addSignal(bench.file, "other message", 0x7E2);
    QCOMPARE(bench.remaining(), QStringLiteral("127"));
    bench.tick(0);
    QCOMPARE(bench.remaining(), QStringLiteral("127"));
    bench.tick(1);
    QCOMPARE(bench.remaining(), QStringLiteral("126"));
}

void tst_Dialog_DBC_Signal_Selector::ownFilterRowsOfTheChannelCountUntilItHasSignals()
{
    Bench manual;
    for (quint32 i = 0; i < 10; ++i)
        manual.channel.filters.add().id1 = i;
    QCOMPARE(manual.remaining(), QStringLiteral("118"));

    Bench bench;
    for (quint32 i = 0; i < 10; ++i)
        bench.channel.filters.add().id1 = i;
    addSignal(bench.channel.dbc_signals, "a", 0x123, Signal::recordFlag);
    QCOMPARE(bench.remaining(), QStringLiteral("127"));
}

void tst_Dialog_DBC_Signal_Selector::signalsOfTheChannelThatAreNotTickedNeedNoFilter()
{
    Bench bench;
    addMessages(bench.channel.dbc_signals, 0x100, 200);
    addMessages(bench.channel.dbc_signals, 0x300, 3, Signal::liveFlag);
    QCOMPARE(bench.remaining(), QStringLiteral("125"));
}

void tst_Dialog_DBC_Signal_Selector::selectAllTicksWhatTheFilterShows()
{
    Bench bench;
    for (const char *name : {"EngineRpm", "Speed", "RPM_1"})
        addSignal(bench.file, name);
    bench.dialog();
    bench.type("*rpm");
    bench.click("pushButton_select_all");
    bench.type("");
    QCOMPARE(bench.tickedNames(), words("EngineRpm RPM_1"));
}

void tst_Dialog_DBC_Signal_Selector::unselectAllUnticksWhatTheFilterShows()
{
    Bench bench;
    for (const char *name : {"EngineRpm", "Speed", "RPM_1"})
        addSignal(bench.file, name);
    bench.click("pushButton_select_all");
    bench.type("rpm");
    bench.click("pushButton_unselect_all");
    bench.type("");
    QCOMPARE(bench.tickedNames(), words("EngineRpm Speed"));
    QCOMPARE(bench.remaining(), QStringLiteral("127"));
}

void tst_Dialog_DBC_Signal_Selector::spaceTicksAllSelectedRows()
{
    Bench bench;
    for (const char *name : {"a", "b", "c"})
        addSignal(bench.file, name);
    bench.showWindow();
    bench.table()->setFocus();
    bench.table()->selectRow(0);
    QTest::keyClick(bench.table(), Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(bench.table(), Qt::Key_Space);
    QCOMPARE(bench.tickedNames(), words("a b"));
    QTest::keyClick(bench.table(), Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(bench.table(), Qt::Key_Space);
    QCOMPARE(bench.tickedNames(), words("a b c"));
    QTest::keyClick(bench.table(), Qt::Key_Space);
    QCOMPARE(bench.tickedNames(), QStringList());
}

void tst_Dialog_DBC_Signal_Selector::aClickOnTheBoxTicksTheRow()
{
    Bench bench;
    addSignal(bench.file, "a");
    addSignal(bench.file, "b");
    bench.showWindow();
    const QRect cell = bench.table()->visualRect(bench.rows().index(1, Record));
    QTest::mouseClick(bench.table()->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(bench.tickedNames(), words("b"));
    QCOMPARE(bench.remaining(), QStringLiteral("127"));
}

void tst_Dialog_DBC_Signal_Selector::aStarFindsTheTextAnywhere()
{
    Bench bench;
    for (const char *name : {"EngineRpm", "RPM_1", "Speed"})
        addSignal(bench.file, name);
    bench.dialog();
    bench.type("*rpm");
    QCOMPARE(bench.names(), words("EngineRpm RPM_1"));
    bench.type("rpm");
    QCOMPARE(bench.names(), words("RPM_1"));
    bench.type("*");
    QCOMPARE(bench.names(), words("EngineRpm RPM_1 Speed"));
}

void tst_Dialog_DBC_Signal_Selector::theDescriptionCanBeFilteredInstead()
{
    Bench bench;
    addSignal(bench.file, "Speed").description = QStringLiteral("of the wheel");
    addSignal(bench.file, "of_name");
    bench.dialog();
    bench.type("of");
    QCOMPARE(bench.names(), words("of_name"));
    bench.find<QRadioButton>("radioButton_description")->click();
    QCOMPARE(bench.names(), words("Speed"));
    bench.find<QRadioButton>("radioButton_name")->click();
    QCOMPARE(bench.names(), words("of_name"));
}

void tst_Dialog_DBC_Signal_Selector::onlyCheckedSignalsCanBeShown()
{
    Bench bench;
    for (const char *name : {"a", "b", "c"})
        addSignal(bench.file, name);
    bench.dialog();
    bench.tick(1);
    bench.find<QCheckBox>("checkBox_only_checked")->click();
    QCOMPARE(bench.names(), words("b"));
    bench.find<QCheckBox>("checkBox_only_checked")->click();
    QCOMPARE(bench.names(), words("a b c"));
}

void tst_Dialog_DBC_Signal_Selector::aClickOnAHeadSorts()
{
    Bench bench;
    for (const char *name : {"b", "C", "a"})
        addSignal(bench.file, name);
    bench.showWindow();
    bench.clickHead(Name);
    QCOMPARE(bench.names(), words("a b C"));
    bench.clickHead(Name);
    QCOMPARE(bench.names(), words("C b a"));
}

void tst_Dialog_DBC_Signal_Selector::ticksDoNotSort()
{
    Bench bench;
    for (const char *name : {"b", "c", "a"})
        addSignal(bench.file, name);
    bench.showWindow();
    bench.clickHead(Name);
    bench.clickHead(Record);
    QCOMPARE(bench.names(), words("a b c"));
    QCOMPARE(bench.table()->horizontalHeader()->sortIndicatorSection(), int(Name));
}

void tst_Dialog_DBC_Signal_Selector::aTickDoesNotMoveItsRow()
{
    Bench bench;
    for (const char *name : {"b", "c", "a"})
        addSignal(bench.file, name);
    bench.showWindow();
    bench.clickHead(Name);
    bench.tick(2);
    bench.tick(0);
    QCOMPARE(bench.names(), words("a b c"));
}

void tst_Dialog_DBC_Signal_Selector::theKeyboardSortsByTheCurrentColumn()
{
    Bench bench;
    for (const char *name : {"b", "c", "a"})
        addSignal(bench.file, name);
    bench.showWindow();
    bench.table()->setFocus();
    bench.table()->setCurrentIndex(bench.rows().index(0, Name));
    QTest::keyClick(bench.table(), Qt::Key_T, Qt::ControlModifier);
    QCOMPARE(bench.names(), words("a b c"));
    QTest::keyClick(bench.table(), Qt::Key_T, Qt::ControlModifier);
    QCOMPARE(bench.names(), words("c b a"));
}

void tst_Dialog_DBC_Signal_Selector::controlAndFLeadToTheFilter()
{
    Bench bench;
    addSignal(bench.file, "a");
    bench.showWindow();
    bench.dialog().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&bench.dialog()));
    bench.type("abc");
    bench.table()->setFocus();
    QTest::keyClick(bench.table(), Qt::Key_F, Qt::ControlModifier);
    auto *filter = bench.find<QLineEdit>("lineEdit_filter");
    QCOMPARE(bench.dialog().focusWidget(), filter);
    QCOMPARE(filter->selectedText(), QStringLiteral("abc"));
}

void tst_Dialog_DBC_Signal_Selector::returnInTheFilterLeadsToTheTable()
{
    Bench bench;
    addSignal(bench.file, "a");
    bench.showWindow();
    QTest::keyClick(bench.find<QLineEdit>("lineEdit_filter"), Qt::Key_Return);
    QVERIFY(bench.prompt.shown.isEmpty());
    QCOMPARE(bench.dialog().focusWidget(), bench.table());
    QTest::keyClick(bench.table(), Qt::Key_Space);
    QCOMPARE(bench.tickedNames(), words("a"));
}

void tst_Dialog_DBC_Signal_Selector::countsOfSignalsAreShown()
{
    Bench bench;
    for (const char *name : {"a", "ab", "c"})
        addSignal(bench.file, name);
    addMultiplexor(bench.file, "hidden");
    bench.dialog();
    bench.tick(0);
    bench.type("a");
    QCOMPARE(bench.find("label_counts")->text(), QStringLiteral("2 of 3 signals shown, 1 checked"));
}

void tst_Dialog_DBC_Signal_Selector::withoutATickNothingIsLoaded()
{
    Bench bench;
    addSignal(bench.file, "a");
    bench.click("pushButton_load");
    QCOMPARE(bench.prompt.shown, QStringList(QStringLiteral(
                                     "No Signal selected|Please select signals for recording.")));
    QCOMPARE(bench.result, -1);
    QCOMPARE(bench.handovers, 0);
}

void tst_Dialog_DBC_Signal_Selector::aboveTheLimitNothingIsLoaded()
{
    Bench bench;
    addMessages(bench.file, 0x100, 129);
    bench.click("pushButton_select_all");
    bench.dialog().load_selected();
    QCOMPARE(bench.prompt.shown,
             QStringList(QStringLiteral(
                 "Filter-Limit|Filter-Limit exceeded, please deselect DBC-Signals.")));
    QCOMPARE(bench.result, -1);
    QCOMPARE(bench.handovers, 0);
}

void tst_Dialog_DBC_Signal_Selector::withoutItsMultiplexorASignalIsNotLoaded()
{
    Bench bench;
    addMultiplexed(bench.file, "a", 1, 0x18FEF1AB);
    bench.dialog();
    bench.tick(0);
    bench.click("pushButton_load");
    QCOMPARE(bench.prompt.shown,
             QStringList(QStringLiteral("DBC-Error|No Multiplexor found within Msg.ID 18FEF1AB.")));
    QCOMPARE(bench.result, -1);
    QCOMPARE(bench.handovers, 0);
}

void tst_Dialog_DBC_Signal_Selector::refusalsLeaveTheTicksInPlace()
{
    Bench bench;
    addSignal(bench.file, "a");
    addMultiplexed(bench.file, "b", 1);
    bench.click("pushButton_select_all");
    bench.click("pushButton_load");
    QCOMPARE(bench.prompt.shown.size(), 1);
    QCOMPARE(bench.tickedNames(), words("a b"));
    bench.tick(1, Qt::Unchecked);
    bench.click("pushButton_load");
    QCOMPARE(bench.loadedNames(), words("a"));
}

void tst_Dialog_DBC_Signal_Selector::tickedSignalsAreHandedOver()
{
    Bench bench;
    for (const char *name : {"a", "b", "c"})
        addSignal(bench.file, name);
    bench.dialog();
    bench.tick(0);
    bench.tick(2);
    bench.click("pushButton_load");
    QCOMPARE(bench.handovers, 1);
    QCOMPARE(bench.loadedNames(), words("a c"));
    QCOMPARE(bench.loaded.at(0)->selection_flags, Signal::recordFlag);
    QCOMPARE(bench.result, int(QDialog::Accepted));
    QVERIFY(bench.prompt.shown.isEmpty());
}

void tst_Dialog_DBC_Signal_Selector::aMultiplexedSignalBringsItsMultiplexorUnticked()
{
    Bench bench;
    addMultiplexor(bench.file, "Page");
    addMultiplexed(bench.file, "Torque", 3);
    addMultiplexed(bench.file, "Power", 4);
    bench.dialog();
    QCOMPARE(bench.names(), words("Torque Power"));
    bench.tick(0);
    QCOMPARE(bench.remaining(), QStringLiteral("127"));
    bench.click("pushButton_load");
    QCOMPARE(bench.loadedNames(), words("Torque Page"));
    QCOMPARE(bench.loaded.at(1)->selection_flags, quint8(0));
}

void tst_Dialog_DBC_Signal_Selector::aMultiplexorTakesPartInTheInsertionWithoutARow()
{
    Bench bench;
    addMultiplexor(bench.channel.dbc_signals, "Page").bit_length = 4;
    addMultiplexor(bench.file, "Page").bit_length = 8;
    addMultiplexed(bench.file, "Torque", 3);
    bench.dialog();
    bench.tick(0);
    bench.click("pushButton_load");
    can::insertSignals(bench.channel.dbc_signals, sample::released(bench.loaded));
    QCOMPARE(bench.channel.dbc_signals.size(), 2);
    QCOMPARE(bench.channel.dbc_signals.at(1)->name, QStringLiteral("Page"));
    QCOMPARE(bench.channel.dbc_signals.at(1)->bit_length, quint16(8));
}

void tst_Dialog_DBC_Signal_Selector::whatLoadingReplacesIsColoured()
{
    Bench bench;
    addSignal(bench.channel.dbc_signals, "same");
    addSignal(bench.channel.dbc_signals, "changed", 0x200).factor = 2;
    addSignal(bench.file, "same");
    addSignal(bench.file, "changed", 0x200);
    addSignal(bench.file, "new", 0x300);
    bench.dialog();
    bench.channel.dbc_signals.clear(); // an echo of the logger may replace them at any time
    const auto colour = [&bench](int row) {
        return bench.rows().index(row, Name).data(Qt::BackgroundRole);
    };
    QCOMPARE(colour(0).value<QColor>(), QColor(177, 255, 136));
    QCOMPARE(colour(1).value<QColor>(), QColor(255, 184, 64));
    QVERIFY(!colour(2).isValid());
}

void tst_Dialog_DBC_Signal_Selector::returnInTheTableLoads()
{
    Bench bench;
    addSignal(bench.file, "a");
    bench.showWindow();
    bench.tick(0);
    bench.table()->setFocus();
    QTest::keyClick(bench.table(), Qt::Key_Return);
    QCOMPARE(bench.loadedNames(), words("a"));
}

void tst_Dialog_DBC_Signal_Selector::closingItInAnyWayFreesTheSignals_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"cancel", "escape", "close", "delete", "parent", "load"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

// That nothing leaks and nothing is freed twice is for the address sanitizer to see.
void tst_Dialog_DBC_Signal_Selector::closingItInAnyWayFreesTheSignals()
{
    QFETCH(QString, way);
    auto window = std::make_unique<QWidget>();
    TerminalCanCfg channel;
    ScriptedPrompt prompt;
    sample::SignalList file;
    addSignal(file, "a", 0x123, Signal::recordFlag);
    addSignal(file, "b");
    const QPointer<Dialog_DBC_Signal_Selector> dialog(
        new Dialog_DBC_Signal_Selector(channel, sample::released(file), prompt, window.get()));
    sample::SignalList loaded;
    connect(dialog.data(), &Dialog_DBC_Signal_Selector::signal_load_selected_dbc_signals,
            [&loaded](QList<Signal *> *records) { can::insertSignals(loaded, *records); });
    window->show();
    dialog->open();
    if (way == QStringLiteral("cancel"))
        QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("pushButton_cancel")),
                          Qt::LeftButton);
    else if (way == QStringLiteral("escape"))
        QTest::keyClick(dialog.data(), Qt::Key_Escape);
    else if (way == QStringLiteral("close"))
        dialog->close();
    else if (way == QStringLiteral("delete"))
        delete dialog.data();
    else if (way == QStringLiteral("parent"))
        window.reset();
    else
        dialog->load_selected();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog.isNull());
    QCOMPARE(loaded.size(), way == QStringLiteral("load") ? 1 : 0);
}

void tst_Dialog_DBC_Signal_Selector::theReceiverMayFreeTheRecordsAtOnce()
{
    TerminalCanCfg channel;
    ScriptedPrompt prompt;
    sample::SignalList file;
    addSignal(file, "a", 0x123, Signal::recordFlag);
    Dialog_DBC_Signal_Selector dialog(channel, sample::released(file), prompt);
    connect(&dialog, &Dialog_DBC_Signal_Selector::signal_load_selected_dbc_signals,
            [&dialog](QList<Signal *> *records) {
                qDeleteAll(*records);
                dialog.grab(); // draws the table
            });
    dialog.load_selected();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_Dialog_DBC_Signal_Selector::theReceiverMayEndTheDialog()
{
    TerminalCanCfg channel;
    ScriptedPrompt prompt;
    sample::SignalList file;
    addSignal(file, "a", 0x123, Signal::recordFlag);
    const QPointer<Dialog_DBC_Signal_Selector> dialog(
        new Dialog_DBC_Signal_Selector(channel, sample::released(file), prompt));
    sample::SignalList loaded;
    connect(dialog.data(), &Dialog_DBC_Signal_Selector::signal_load_selected_dbc_signals,
            [&](QList<Signal *> *records) {
                can::insertSignals(loaded, *records);
                delete dialog.data();
            });
    dialog->load_selected();
    QVERIFY(dialog.isNull());
    QCOMPARE(loaded.size(), 1);
}

void tst_Dialog_DBC_Signal_Selector::withoutAReceiverTheSignalsStayTheDialogs()
{
    TerminalCanCfg channel;
    ScriptedPrompt prompt;
    sample::SignalList file;
    addSignal(file, "a", 0x123, Signal::recordFlag);
    Dialog_DBC_Signal_Selector dialog(channel, sample::released(file), prompt);
    dialog.load_selected();
    QList<Signal *> chosen;
    int selected = 0;
    QCOMPARE(dialog.calc_signals_to_load(&chosen, &selected), QString());
    QCOMPARE(selected, 1);
}

void tst_Dialog_DBC_Signal_Selector::theSummaryIsShownIfThereIsOne()
{
    Bench bench;
    QVERIFY(bench.find("label_summary")->isHidden());
    bench.dialog().setSummary(QStringLiteral("<b>3</b> messages"));
    QVERIFY(!bench.find("label_summary")->isHidden());
    QCOMPARE(bench.find("label_summary")->text(), QStringLiteral("<b>3</b> messages"));
    QCOMPARE(bench.find("label_summary")->textFormat(), Qt::PlainText);
    bench.dialog().setSummary({});
    QVERIFY(bench.find("label_summary")->isHidden());
}

void tst_Dialog_DBC_Signal_Selector::widthsAndOrderAreRemembered()
{
    {
        Bench bench;
        bench.showWindow();
        bench.table()->horizontalHeader()->resizeSection(Name, 333);
        bench.clickHead(Id);
        bench.clickHead(Id);
    }
    Bench bench;
    for (const quint32 id : {0x200u, 0x300u, 0x100u})
        addSignal(bench.file, QByteArray::number(id, 16).constData(), id);
    bench.showWindow();
    QCOMPARE(bench.names(), words("300 200 100"));
    QCOMPARE(bench.table()->columnWidth(Name), 333);
    QCOMPARE(bench.table()->horizontalHeader()->sortIndicatorSection(), int(Id));
}

void tst_Dialog_DBC_Signal_Selector::everyControlHasAnAccessibleNameAndAToolTip()
{
    Bench bench;
    for (const char *name :
         {"lineEdit_filter", "radioButton_name", "radioButton_description", "checkBox_only_checked",
          "pushButton_select_all", "pushButton_unselect_all", "pushButton_load",
          "pushButton_cancel", "label_remaining_filters", "label_counts"}) {
        const auto *widget = bench.find<QWidget>(name);
        QVERIFY2(widget, name);
        QVERIFY2(!widget->accessibleName().isEmpty(), name);
        QVERIFY2(!widget->toolTip().isEmpty(), name);
    }
    QVERIFY(!bench.table()->accessibleName().isEmpty());
    for (int column = 0; column < bench.rows().columnCount(); ++column)
        QVERIFY(
            !bench.rows().headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString().isEmpty());
}

QTEST_MAIN(tst_Dialog_DBC_Signal_Selector)
#include "tst_dialog_dbc_signal_selector.moc"
