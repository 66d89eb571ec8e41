#include "can/models/model_dbc_signals.h"
#include "tests/can/signalsamples.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using Field = Model_DBC_Signals::Field;
using Layout = Model_DBC_Signals::Layout;
using sample::addMultiplexed;
using sample::addMultiplexor;
using sample::addSignal;
using Signal = StreamingClass_DBC_Signal;

class tst_Model_DBC_Signals : public QObject
{
    Q_OBJECT

private slots:
    void theSelectionDialogHasFiveColumns();
    void theCanViewHasNineColumns();
    void multiplexorsAreHidden();
    void cellsShowTheFields();
    void anIdentifierIsShownInUpperCaseHexadecimal();
    void aValueThatWasNotSeenYetIsEmpty();
    void aValueIsShownWithoutNoise();
    void aDescriptionOfSeveralLinesIsShownInOne();
    void aTextOfMegabytesIsCutWhereItIsShown_data();
    void aTextOfMegabytesIsCutWhereItIsShown();
    void aNameOfMegabytesIsEditedWhole();
    void textIsAlignedByItsKind();
    void boxesShowAndSetTheFlags();
    void onlyTheCanViewCanBeEdited_data();
    void onlyTheCanViewCanBeEdited();
    void editsChangeTheRecord();
    void numbersAreTakenWithPointOrComma();
    void editsThatMakeNoSenseAreRefused_data();
    void editsThatMakeNoSenseAreRefused();
    void anEditThatChangesNothingIsNotTold();
    void theLoggerHasToKnowOfAnEdit_data();
    void theLoggerHasToKnowOfAnEdit();
    void theSelectionDialogTellsNoEdits();
    void aRowThatTheChannelHasIsGreen();
    void aRowThatTheChannelHasDifferentlyIsOrange();
    void otherRowsKeepTheirColour();
    void coloursFollowTheChannelsSignals();
    void newSignalsReplaceTheRows();
    void theSameSignalsInNewRecordsKeepTheRows();
    void aRenamedSignalKeepsItsRow();
    void newValuesChangeTheirColumnOnly();
    void toolTipsShowMarkupOfTheFileAsText();
    void toolTipsSayHowTheBitsRead_data();
    void toolTipsSayHowTheBitsRead();
    void toolTipsCutTextOfMegabytes();
    void theColourIsToldInWordsToo();
    void sortingComparesNumbersAsNumbers();
};

namespace {

// A model under test over a list of its own.
struct Table
{
    explicit Table(Layout columns = Layout::CanView)
        : layout(columns)
    {}

    Model_DBC_Signals &model()
    {
        if (!m_model) {
            m_model = std::make_unique<Model_DBC_Signals>(list.items(), layout);
            m_tester = std::make_unique<QAbstractItemModelTester>(
                m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        }
        return *m_model;
    }
    QModelIndex cell(int row, Field field) { return model().index(row, model().columnOf(field)); }
    QString text(int row, Field field) { return cell(row, field).data().toString(); }
    bool edit(int row, Field field, const QVariant &value)
    {
        return model().setData(cell(row, field), value, Qt::EditRole);
    }

    const Layout layout;
    sample::SignalList list;

private:
    std::unique_ptr<Model_DBC_Signals> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

QStringList headers(const QAbstractItemModel &model)
{
    QStringList titles;
    for (int i = 0; i < model.columnCount(); ++i)
        titles.append(model.headerData(i, Qt::Horizontal).toString());
    return titles;
}

} // namespace

Q_DECLARE_METATYPE(Model_DBC_Signals::Field)

void tst_Model_DBC_Signals::theSelectionDialogHasFiveColumns()
{
    Table table(Layout::SelectionDialog);
    QCOMPARE(
        headers(table.model()),
        (QStringList{QStringLiteral("Record"), QStringLiteral("ID [hex]"), QStringLiteral("Name"),
                     QStringLiteral("Unit"), QStringLiteral("Description")}));
    QCOMPARE(table.model().columnOf(Field::Live), -1);
}

void tst_Model_DBC_Signals::theCanViewHasNineColumns()
{
    Table table(Layout::CanView);
    QCOMPARE(headers(table.model()),
             (QStringList{QStringLiteral("Record"), QStringLiteral("Live"), QStringLiteral("Name"),
                          QStringLiteral("Value"), QStringLiteral("Unit"),
                          QStringLiteral("Multiplicator"), QStringLiteral("Offset"),
                          QStringLiteral("ID [hex]"), QStringLiteral("Description")}));
}

void tst_Model_DBC_Signals::multiplexorsAreHidden()
{
    Table table;
    addMultiplexor(table.list, "first");
    addSignal(table.list, "a");
    addMultiplexor(table.list, "second");
    addMultiplexed(table.list, "b", 1);
    QCOMPARE(table.model().rowCount(), 2);
    QCOMPARE(table.text(0, Field::Name), QStringLiteral("a"));
    QCOMPARE(table.text(1, Field::Name), QStringLiteral("b"));
    QCOMPARE(table.model().signalAt(1), table.list.at(3));
}

void tst_Model_DBC_Signals::cellsShowTheFields()
{
    Table table;
    Signal &signal = addSignal(table.list, "EngineRpm");
    signal.unit = QStringLiteral("1/min");
    signal.factor = 0.125;
    signal.offset = -40;
    signal.description = QStringLiteral("Speed of the crankshaft");
    QCOMPARE(table.text(0, Field::Name), QStringLiteral("EngineRpm"));
    QCOMPARE(table.text(0, Field::Unit), QStringLiteral("1/min"));
    QCOMPARE(table.text(0, Field::Multiplicator), QStringLiteral("0.125"));
    QCOMPARE(table.text(0, Field::Offset), QStringLiteral("-40"));
    QCOMPARE(table.text(0, Field::Description), QStringLiteral("Speed of the crankshaft"));
    QVERIFY(!table.cell(0, Field::Record).data().isValid());
}

void tst_Model_DBC_Signals::anIdentifierIsShownInUpperCaseHexadecimal()
{
    Table table;
    addSignal(table.list, "a", 0x1AB);
    addSignal(table.list, "b", 0x18FEF1AB).extended_id = 1;
    QCOMPARE(table.text(0, Field::Id), QStringLiteral("1AB"));
    QCOMPARE(table.text(1, Field::Id), QStringLiteral("18FEF1AB"));
}

void tst_Model_DBC_Signals::aValueThatWasNotSeenYetIsEmpty()
{
    Table table;
    Signal &signal = addSignal(table.list, "a");
    QCOMPARE(table.text(0, Field::Value), QString());
    signal.live_seen = true;
    QCOMPARE(table.text(0, Field::Value), QStringLiteral("0"));
}

void tst_Model_DBC_Signals::aValueIsShownWithoutNoise()
{
    Table table;
    Signal &signal = addSignal(table.list, "a");
    signal.live_seen = true;
    signal.live_value = 3 * 0.1;
    QCOMPARE(table.text(0, Field::Value), QStringLiteral("0.3"));
    signal.live_value = 1'700'000'000'123;
    QCOMPARE(table.text(0, Field::Value), QStringLiteral("1700000000123"));
}

void tst_Model_DBC_Signals::aDescriptionOfSeveralLinesIsShownInOne()
{
    Table table;
    addSignal(table.list, "a").description = QStringLiteral("Speed\r\nof the engine");
    QCOMPARE(table.text(0, Field::Description), QStringLiteral("Speed of the engine"));
}

void tst_Model_DBC_Signals::aTextOfMegabytesIsCutWhereItIsShown_data()
{
    QTest::addColumn<Field>("field");
    QTest::newRow("name") << Field::Name;
    QTest::newRow("unit") << Field::Unit;
    QTest::newRow("description") << Field::Description;
}

void tst_Model_DBC_Signals::aTextOfMegabytesIsCutWhereItIsShown()
{
    QFETCH(Field, field);
    Table table;
    Signal &signal = addSignal(table.list, "a");
    signal.name = signal.unit = signal.description = QString(3'000'000, QLatin1Char('x'));
    QCOMPARE(table.text(0, field), QString(1'999, QLatin1Char('x')) + QChar(0x2026));
}

void tst_Model_DBC_Signals::aNameOfMegabytesIsEditedWhole()
{
    Table table;
    Signal &signal = addSignal(table.list, "a");
    signal.name = signal.unit = QString(3'000'000, QLatin1Char('x'));
    for (const Field field : {Field::Name, Field::Unit})
        QCOMPARE(table.cell(0, field).data(Qt::EditRole).toString(), signal.name);
}

void tst_Model_DBC_Signals::textIsAlignedByItsKind()
{
    Table table;
    addSignal(table.list, "a");
    const auto alignment = [&table](Field field) {
        return table.cell(0, field).data(Qt::TextAlignmentRole).toInt() & Qt::AlignHorizontal_Mask;
    };
    for (const Field field : {Field::Name, Field::Description, Field::Value})
        QCOMPARE(alignment(field), int(Qt::AlignLeft));
    for (const Field field : {Field::Multiplicator, Field::Offset})
        QCOMPARE(alignment(field), int(Qt::AlignRight));
}

void tst_Model_DBC_Signals::boxesShowAndSetTheFlags()
{
    Table table;
    Signal &signal = addSignal(table.list, "a", 0x123, Signal::liveFlag);
    const QModelIndex recorded = table.cell(0, Field::Record);
    const QModelIndex live = table.cell(0, Field::Live);
    QVERIFY(recorded.flags().testFlag(Qt::ItemIsUserCheckable));
    QVERIFY(live.flags().testFlag(Qt::ItemIsUserCheckable));
    QCOMPARE(recorded.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    QCOMPARE(live.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QVERIFY(table.model().setData(recorded, Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(signal.selection_flags, quint8(Signal::recordFlag | Signal::liveFlag));
    QVERIFY(table.model().setData(live, Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(signal.selection_flags, Signal::recordFlag);
    QVERIFY(!table.cell(0, Field::Name).data(Qt::CheckStateRole).isValid());
}

void tst_Model_DBC_Signals::onlyTheCanViewCanBeEdited_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<bool>("editable");
    QTest::newRow("Record") << Field::Record << false;
    QTest::newRow("Live") << Field::Live << false;
    QTest::newRow("Name") << Field::Name << true;
    QTest::newRow("Value") << Field::Value << false;
    QTest::newRow("Unit") << Field::Unit << true;
    QTest::newRow("Multiplicator") << Field::Multiplicator << true;
    QTest::newRow("Offset") << Field::Offset << true;
    QTest::newRow("ID") << Field::Id << false;
    QTest::newRow("Description") << Field::Description << false;
}

void tst_Model_DBC_Signals::onlyTheCanViewCanBeEdited()
{
    QFETCH(Field, field);
    Table view(Layout::CanView);
    addSignal(view.list, "a");
    QTEST(view.cell(0, field).flags().testFlag(Qt::ItemIsEditable), "editable");

    Table dialog(Layout::SelectionDialog);
    addSignal(dialog.list, "a");
    QVERIFY(!dialog.cell(0, field).flags().testFlag(Qt::ItemIsEditable));
    QVERIFY(!dialog.edit(0, field, QStringLiteral("5")));
}

void tst_Model_DBC_Signals::editsChangeTheRecord()
{
    Table table;
    const Signal &signal = addSignal(table.list, "a");
    QVERIFY(table.edit(0, Field::Name, QStringLiteral(" Speed ")));
    QVERIFY(table.edit(0, Field::Unit, QString()));
    QVERIFY(table.edit(0, Field::Multiplicator, QStringLiteral("1e-3")));
    QVERIFY(table.edit(0, Field::Offset, -40));
    QVERIFY(table.edit(0, Field::Value, 12.5));
    QCOMPARE(signal.name, QStringLiteral("Speed"));
    QCOMPARE(signal.unit, QString());
    QCOMPARE(signal.factor, 0.001);
    QCOMPARE(signal.offset, -40.0);
    QCOMPARE(signal.live_value, 12.5);
    QVERIFY(signal.live_seen);
}

void tst_Model_DBC_Signals::numbersAreTakenWithPointOrComma()
{
    Table table;
    const Signal &signal = addSignal(table.list, "a");
    QVERIFY(table.edit(0, Field::Offset, QStringLiteral("0.5")));
    QCOMPARE(signal.offset, 0.5);
    QVERIFY(table.edit(0, Field::Offset, QStringLiteral(" 0,75 ")));
    QCOMPARE(signal.offset, 0.75);
}

void tst_Model_DBC_Signals::editsThatMakeNoSenseAreRefused_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<QString>("text");
    QTest::newRow("no name") << Field::Name << QStringLiteral("  ");
    QTest::newRow("no number") << Field::Multiplicator << QStringLiteral("fast");
    QTest::newRow("nothing") << Field::Offset << QString();
    QTest::newRow("infinity") << Field::Offset << QStringLiteral("inf");
    QTest::newRow("not a number") << Field::Multiplicator << QStringLiteral("nan");
    QTest::newRow("two separators") << Field::Offset << QStringLiteral("1,000.5");
}

void tst_Model_DBC_Signals::editsThatMakeNoSenseAreRefused()
{
    QFETCH(Field, field);
    QFETCH(QString, text);
    Table table;
    const Signal &signal = addSignal(table.list, "a");
    const Signal before = signal;
    QSignalSpy edits(&table.model(), &Model_DBC_Signals::dbcModelChanged);
    QVERIFY(!table.edit(0, field, text));
    QCOMPARE(signal, before);
    QVERIFY(edits.isEmpty());
}

void tst_Model_DBC_Signals::anEditThatChangesNothingIsNotTold()
{
    Table table;
    addSignal(table.list, "a").factor = 0.1;
    QSignalSpy edits(&table.model(), &Model_DBC_Signals::dbcModelChanged);
    for (const Field field : {Field::Name, Field::Unit, Field::Multiplicator, Field::Offset})
        QVERIFY(!table.edit(0, field, table.cell(0, field).data(Qt::EditRole)));
    QVERIFY(edits.isEmpty());
}

void tst_Model_DBC_Signals::theLoggerHasToKnowOfAnEdit_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("role");
    QTest::addColumn<bool>("transfer");
    QTest::newRow("Record") << Field::Record << QVariant(Qt::Checked) << int(Qt::CheckStateRole)
                            << true;
    QTest::newRow("Live") << Field::Live << QVariant(Qt::Checked) << int(Qt::CheckStateRole)
                          << false;
    QTest::newRow("Name") << Field::Name << QVariant(QStringLiteral("b")) << int(Qt::EditRole)
                          << true;
    QTest::newRow("Unit") << Field::Unit << QVariant(QStringLiteral("m/s")) << int(Qt::EditRole)
                          << true;
    QTest::newRow("Multiplicator")
        << Field::Multiplicator << QVariant(5) << int(Qt::EditRole) << true;
    QTest::newRow("Offset") << Field::Offset << QVariant(5) << int(Qt::EditRole) << true;
    QTest::newRow("Value") << Field::Value << QVariant(5) << int(Qt::EditRole) << false;
}

void tst_Model_DBC_Signals::theLoggerHasToKnowOfAnEdit()
{
    QFETCH(Field, field);
    QFETCH(QVariant, value);
    QFETCH(int, role);
    QFETCH(bool, transfer);
    Table table;
    addSignal(table.list, "a");
    QSignalSpy edits(&table.model(), &Model_DBC_Signals::dbcModelChanged);
    QVERIFY(table.model().setData(table.cell(0, field), value, role));
    QCOMPARE(edits.size(), 1);
    QCOMPARE(edits.first(), QVariantList{transfer});
}

void tst_Model_DBC_Signals::theSelectionDialogTellsNoEdits()
{
    Table table(Layout::SelectionDialog);
    addSignal(table.list, "a");
    QSignalSpy edits(&table.model(), &Model_DBC_Signals::dbcModelChanged);
    QSignalSpy changes(&table.model(), &QAbstractItemModel::dataChanged);
    QVERIFY(table.model().setData(table.cell(0, Field::Record), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(edits.isEmpty());
    QCOMPARE(changes.size(), 1);
}

void tst_Model_DBC_Signals::aRowThatTheChannelHasIsGreen()
{
    sample::SignalList channel;
    addSignal(channel, "a", 0x123, Signal::recordFlag);
    Table table(Layout::SelectionDialog);
    addSignal(table.list, "a");
    table.model().setChannelSignals(channel.items());
    QCOMPARE(table.cell(0, Field::Name).data(Qt::BackgroundRole).value<QColor>(),
             QColor(177, 255, 136));
    QCOMPARE(table.cell(0, Field::Record).data(Qt::BackgroundRole).value<QColor>(),
             QColor(177, 255, 136));
    QCOMPARE(table.cell(0, Field::Name).data(Qt::ForegroundRole).value<QColor>(),
             QColor(Qt::black));
}

void tst_Model_DBC_Signals::aRowThatTheChannelHasDifferentlyIsOrange()
{
    sample::SignalList channel;
    addSignal(channel, "a").factor = 17;
    addSignal(channel, "b").start_bit = 32;
    Table table(Layout::SelectionDialog);
    addSignal(table.list, "a");
    addSignal(table.list, "other name, place of b").start_bit = 32;
    table.model().setChannelSignals(channel.items());
    for (int row = 0; row < 2; ++row)
        QCOMPARE(table.cell(row, Field::Unit).data(Qt::BackgroundRole).value<QColor>(),
                 QColor(255, 184, 64));
}

void tst_Model_DBC_Signals::otherRowsKeepTheirColour()
{
    sample::SignalList channel;
    addSignal(channel, "a");
    Table table(Layout::SelectionDialog);
    addSignal(table.list, "b").start_bit = 32;
    table.model().setChannelSignals(channel.items());
    QVERIFY(!table.cell(0, Field::Name).data(Qt::BackgroundRole).isValid());
    QVERIFY(!table.cell(0, Field::Name).data(Qt::ForegroundRole).isValid());
}

void tst_Model_DBC_Signals::coloursFollowTheChannelsSignals()
{
    sample::SignalList channel;
    addSignal(channel, "a");
    Table table(Layout::SelectionDialog);
    addSignal(table.list, "a");
    QSignalSpy changes(&table.model(), &QAbstractItemModel::dataChanged);
    table.model().setChannelSignals(channel.items());
    channel.clear();
    QCOMPARE(changes.size(), 1);
    QVERIFY(table.cell(0, Field::Name).data(Qt::BackgroundRole).isValid());
    table.model().setChannelSignals({});
    QVERIFY(!table.cell(0, Field::Name).data(Qt::BackgroundRole).isValid());
}

void tst_Model_DBC_Signals::newSignalsReplaceTheRows()
{
    Table table;
    addSignal(table.list, "a");
    sample::SignalList others;
    addSignal(others, "b");
    addMultiplexor(others, "hidden");
    addSignal(others, "c");
    QSignalSpy resets(&table.model(), &QAbstractItemModel::modelReset);
    table.model().setSignals(others.items());
    QCOMPARE(resets.size(), 1);
    QCOMPARE(table.model().rowCount(), 2);
    QCOMPARE(table.text(1, Field::Name), QStringLiteral("c"));
    table.model().setSignals({});
    QCOMPARE(table.model().rowCount(), 0);
}

void tst_Model_DBC_Signals::theSameSignalsInNewRecordsKeepTheRows()
{
    Table table;
    addSignal(table.list, "a");
    addSignal(table.list, "b");
    const QPersistentModelIndex second = table.cell(1, Field::Name);
    QSignalSpy changes(&table.model(), &QAbstractItemModel::dataChanged);
    sample::SignalList fresh;
    addSignal(fresh, "a");
    addSignal(fresh, "b").unit = QStringLiteral("bar");
    table.list.clear(); // the old records are gone before the model hears of the new ones
    table.model().setSignals(fresh.items());
    QVERIFY(second.isValid());
    QCOMPARE(table.text(1, Field::Unit), QStringLiteral("bar"));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.first().at(1).toModelIndex(), table.cell(1, Field::Description));
}

void tst_Model_DBC_Signals::aRenamedSignalKeepsItsRow()
{
    Table table;
    addSignal(table.list, "a");
    QVERIFY(table.edit(0, Field::Name, QStringLiteral("b")));
    QSignalSpy resets(&table.model(), &QAbstractItemModel::modelReset);
    sample::SignalList fresh;
    addSignal(fresh, "b");
    table.model().setSignals(fresh.items());
    QVERIFY(resets.isEmpty());
    table.model().setSignals({});
}

void tst_Model_DBC_Signals::newValuesChangeTheirColumnOnly()
{
    Table table;
    addSignal(table.list, "a");
    addSignal(table.list, "b");
    QSignalSpy changes(&table.model(), &QAbstractItemModel::dataChanged);
    QSignalSpy edits(&table.model(), &Model_DBC_Signals::dbcModelChanged);
    table.model().valuesChanged();
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.first().at(0).toModelIndex(), table.cell(0, Field::Value));
    QCOMPARE(changes.first().at(1).toModelIndex(), table.cell(1, Field::Value));
    QVERIFY(edits.isEmpty());
}

void tst_Model_DBC_Signals::toolTipsShowMarkupOfTheFileAsText()
{
    Table table;
    addSignal(table.list, "a").description = QStringLiteral("<img src='http://x/y.png'>");
    const QString tip = table.cell(0, Field::Name).data(Qt::ToolTipRole).toString();
    QVERIFY(tip.contains(QStringLiteral("&lt;img")));
    QVERIFY(!tip.contains(QStringLiteral("<img")));
    QVERIFY(tip.contains(QStringLiteral("Start bit 0, 16 bits, Intel, unsigned")));
}

void tst_Model_DBC_Signals::toolTipsSayHowTheBitsRead_data()
{
    QTest::addColumn<int>("is_signed");
    QTest::addColumn<QString>("words");
    QTest::newRow("unsigned") << 0 << QStringLiteral("16 bits, Intel, unsigned");
    QTest::newRow("signed") << 1 << QStringLiteral("16 bits, Intel, signed");
    QTest::newRow("float") << 2 << QStringLiteral("16 bits, Intel, float");
    QTest::newRow("double") << 3 << QStringLiteral("16 bits, Intel, double");
}

void tst_Model_DBC_Signals::toolTipsSayHowTheBitsRead()
{
    QFETCH(int, is_signed);
    QFETCH(QString, words);
    Table table;
    addSignal(table.list, "a").is_signed = quint8(is_signed);
    QVERIFY(table.cell(0, Field::Name).data(Qt::ToolTipRole).toString().contains(words));
}

void tst_Model_DBC_Signals::toolTipsCutTextOfMegabytes()
{
    Table table;
    Signal &signal = addSignal(table.list, "a");
    signal.name = signal.unit = signal.description = QString(3'000'000, QLatin1Char('x'));
    const QString tip = table.cell(0, Field::Name).data(Qt::ToolTipRole).toString();
    QVERIFY(tip.contains(QChar(0x2026)));
    QVERIFY(tip.size() < 2'000);
}

void tst_Model_DBC_Signals::theColourIsToldInWordsToo()
{
    sample::SignalList channel;
    addSignal(channel, "a");
    Table table(Layout::SelectionDialog);
    addSignal(table.list, "a");
    addSignal(table.list, "new", 0x200);
    table.model().setChannelSignals(channel.items());
    const auto words = [&table](int row, int role) {
        return table.cell(row, Field::Name).data(role).toString();
    };
    QCOMPARE(words(0, Qt::AccessibleDescriptionRole), QStringLiteral("Signal already loaded."));
    QVERIFY(words(0, Qt::ToolTipRole).contains(QStringLiteral("Signal already loaded.")));
    QCOMPARE(words(1, Qt::AccessibleDescriptionRole), QString());
}

void tst_Model_DBC_Signals::sortingComparesNumbersAsNumbers()
{
    Table table;
    addSignal(table.list, "a", 0x1000).factor = 10;
    const auto sortValue = [&table](Field field) {
        return table.cell(0, field).data(Model_DBC_Signals::sortRole);
    };
    QCOMPARE(sortValue(Field::Id), QVariant(0x1000u));
    QCOMPARE(sortValue(Field::Multiplicator), QVariant(10.0));
    QVERIFY(!sortValue(Field::Value).isValid());
    QCOMPARE(sortValue(Field::Name), QVariant(QStringLiteral("a")));
}

QTEST_GUILESS_MAIN(tst_Model_DBC_Signals)
#include "tst_model_dbc_signals.moc"
