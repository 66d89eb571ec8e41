#include "can/models/filtermodell_dbc_signals.h"
#include "can/models/model_dbc_signals.h"
#include "tests/can/signalsamples.h"

#include <QAbstractItemModelTester>
#include <QTest>

using sample::addSignal;
using Signal = StreamingClass_DBC_Signal;

class tst_FilterModell_DBC_Signals : public QObject
{
    Q_OBJECT

private slots:
    void aTextFindsCellsThatBeginWithIt_data();
    void aTextFindsCellsThatBeginWithIt();
    void theColumnIsThatGivenWithTheText();
    void onlyCheckedRowsAreShownIfAsked();
    void aRowThatIsUntickedStaysUntilItIsFilteredAgain();
    void rowsAreSortedByLettersInAnyCase();
    void identifiersAreSortedAsNumbers();
    void sortingCanBeTurned();
    void rowsOfEqualValueKeepTheirOrder();
    void anEditDoesNotMoveItsRow();
    void sortedRowsStaySortedWhenTheFilterChanges();
    void newSignalsAreSorted();
    void sortingByNoColumnRestoresTheOrderOfTheFile();
    void valuesThatAreMissingComeFirst();
    void ticksReachTheRecordThroughFilterAndOrder();
    void whatIsSelectedSurvivesTheFilter();
};

namespace {

enum Column { Record, Id, Name, Unit, Description };

struct Table
{
    Table()
    {
        for (const char *name : {"EngineRpm", "RPM_1", "Speed", "rpm2"})
            addSignal(list, name);
    }
    explicit Table(std::initializer_list<quint32> ids)
    {
        for (const quint32 id : ids)
            addSignal(list, QByteArray::number(id, 16).constData(), id);
    }

    FilterModell_DBC_Signals &rows()
    {
        if (!m_model) {
            m_model = std::make_unique<Model_DBC_Signals>(
                list.items(), Model_DBC_Signals::Layout::SelectionDialog);
            m_rows.setSourceModel(m_model.get());
            m_tester = std::make_unique<QAbstractItemModelTester>(
                &m_rows, QAbstractItemModelTester::FailureReportingMode::QtTest);
        }
        return m_rows;
    }
    Model_DBC_Signals &model()
    {
        rows();
        return *m_model;
    }
    QStringList names()
    {
        QStringList result;
        for (int row = 0; row < rows().rowCount(); ++row)
            result.append(rows().index(row, Name).data().toString());
        return result;
    }

    sample::SignalList list;

private:
    std::unique_ptr<Model_DBC_Signals> m_model;
    FilterModell_DBC_Signals m_rows;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

void tst_FilterModell_DBC_Signals::aTextFindsCellsThatBeginWithIt_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("found");
    const auto row = [](const char *tag, const char *text, const char *found) {
        QTest::newRow(tag) << QString::fromLatin1(text) << words(found);
    };
    row("nothing", "", "EngineRpm RPM_1 Speed rpm2");
    row("star", "*", "EngineRpm RPM_1 Speed rpm2");
    row("beginning", "rpm", "RPM_1 rpm2");
    row("beginning in other case", "RpM_", "RPM_1");
    row("anywhere", "*rpm", "EngineRpm RPM_1 rpm2");
    row("blanks around", "  speed ", "Speed");
    row("nothing fits", "rpm3", "");
    row("a star inside is a letter", "r*m", "");
    row("pattern letters are letters", "*.", "");
}

void tst_FilterModell_DBC_Signals::aTextFindsCellsThatBeginWithIt()
{
    QFETCH(QString, text);
    Table table;
    table.rows().set_sorting_string(Name, text, false);
    QTEST(table.names(), "found");
}

void tst_FilterModell_DBC_Signals::theColumnIsThatGivenWithTheText()
{
    Table table;
    table.list.at(2)->description = QStringLiteral("rpm of a wheel");
    table.rows().set_sorting_string(Description, QStringLiteral("rpm"), false);
    QCOMPARE(table.names(), words("Speed"));
}

void tst_FilterModell_DBC_Signals::onlyCheckedRowsAreShownIfAsked()
{
    Table table;
    table.list.at(0)->selection_flags = Signal::recordFlag;
    table.list.at(1)->selection_flags = Signal::liveFlag;
    table.list.at(3)->selection_flags = Signal::recordFlag;
    table.rows().set_sorting_string(Name, QString(), true);
    QCOMPARE(table.names(), words("EngineRpm rpm2"));
    table.rows().set_sorting_string(Name, QStringLiteral("rpm"), true);
    QCOMPARE(table.names(), words("rpm2"));
}

void tst_FilterModell_DBC_Signals::aRowThatIsUntickedStaysUntilItIsFilteredAgain()
{
    Table table;
    table.list.at(2)->selection_flags = Signal::recordFlag;
    table.rows().set_sorting_string(Name, QString(), true);
    QVERIFY(table.rows().setData(table.rows().index(0, Record), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(table.names(), words("Speed"));
    table.rows().set_sorting_string(Name, QString(), true);
    QCOMPARE(table.names(), QStringList());
}

void tst_FilterModell_DBC_Signals::rowsAreSortedByLettersInAnyCase()
{
    Table table;
    table.rows().sort(Name);
    QCOMPARE(table.names(), words("EngineRpm rpm2 RPM_1 Speed"));
}

void tst_FilterModell_DBC_Signals::identifiersAreSortedAsNumbers()
{
    Table table{0x1000, 0x7, 0x80000000, 0x20};
    table.rows().sort(Id);
    QCOMPARE(table.names(), words("7 20 1000 80000000"));
}

void tst_FilterModell_DBC_Signals::sortingCanBeTurned()
{
    Table table{0x20, 0x7, 0x100};
    table.rows().sort(Id);
    table.rows().set_sorting_up(false);
    QCOMPARE(table.names(), words("100 20 7"));
    table.rows().set_sorting_up(true);
    QCOMPARE(table.names(), words("7 20 100"));
}

void tst_FilterModell_DBC_Signals::rowsOfEqualValueKeepTheirOrder()
{
    Table table;
    table.list.at(0)->unit = QStringLiteral("z");
    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
        table.rows().sort(Unit, order);
        QStringList names = table.names();
        names.removeOne(QStringLiteral("EngineRpm"));
        QCOMPARE(names, words("RPM_1 Speed rpm2"));
    }
}

void tst_FilterModell_DBC_Signals::anEditDoesNotMoveItsRow()
{
    Table table;
    table.rows().sort(Name);
    const QStringList before = table.names();
    table.list.at(0)->name = QStringLiteral("zzz");
    table.model().setData(table.model().index(0, Record), Qt::Checked, Qt::CheckStateRole);
    table.rows().set_sorting_string(Name, QString(), false);
    QStringList after = before;
    after.first() = QStringLiteral("zzz");
    QCOMPARE(table.names(), after);
}

void tst_FilterModell_DBC_Signals::sortedRowsStaySortedWhenTheFilterChanges()
{
    Table table;
    table.rows().sort(Name, Qt::DescendingOrder);
    table.rows().set_sorting_string(Name, QStringLiteral("rpm"), false);
    QCOMPARE(table.names(), words("RPM_1 rpm2"));
    table.rows().set_sorting_string(Name, QString(), false);
    QCOMPARE(table.names(), words("Speed RPM_1 rpm2 EngineRpm"));
}

void tst_FilterModell_DBC_Signals::newSignalsAreSorted()
{
    Table table;
    table.rows().sort(Name);
    sample::SignalList others;
    for (const char *name : {"d", "b", "a", "c"})
        addSignal(others, name);
    table.model().setSignals(others.items());
    QCOMPARE(table.names(), words("a b c d"));
    table.model().setSignals({});
}

void tst_FilterModell_DBC_Signals::sortingByNoColumnRestoresTheOrderOfTheFile()
{
    Table table{0x20, 0x7};
    table.rows().sort(Id);
    table.rows().sort(-1);
    QCOMPARE(table.names(), words("20 7"));
}

void tst_FilterModell_DBC_Signals::valuesThatAreMissingComeFirst()
{
    sample::SignalList list;
    const double values[] = {5, qQNaN(), -5};
    for (const double value : values) {
        Signal &signal = addSignal(list, QByteArray::number(value).constData());
        signal.live_seen = true;
        signal.live_value = value;
    }
    addSignal(list, "none");
    Model_DBC_Signals model(list.items(), Model_DBC_Signals::Layout::CanView);
    FilterModell_DBC_Signals rows;
    rows.setSourceModel(&model);
    rows.sort(model.columnOf(Model_DBC_Signals::Field::Value));
    QStringList names;
    for (int row = 0; row < rows.rowCount(); ++row)
        names.append(
            rows.index(row, model.columnOf(Model_DBC_Signals::Field::Name)).data().toString());
    QCOMPARE(names, words("nan none -5 5"));
}

void tst_FilterModell_DBC_Signals::ticksReachTheRecordThroughFilterAndOrder()
{
    Table table;
    table.rows().sort(Name, Qt::DescendingOrder);
    table.rows().set_sorting_string(Name, QStringLiteral("*rpm"), false);
    QVERIFY(table.rows().setData(table.rows().index(2, Record), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(table.list.at(0)->selection_flags, Signal::recordFlag);
}

void tst_FilterModell_DBC_Signals::whatIsSelectedSurvivesTheFilter()
{
    Table table;
    const QPersistentModelIndex speed = table.rows().index(2, Name);
    const QPersistentModelIndex rpm = table.rows().index(1, Name);
    table.rows().set_sorting_string(Name, QStringLiteral("sp"), false);
    QCOMPARE(speed.data().toString(), QStringLiteral("Speed"));
    QCOMPARE(speed.row(), 0);
    QVERIFY(!rpm.isValid());
}

QTEST_GUILESS_MAIN(tst_FilterModell_DBC_Signals)
#include "tst_filtermodell_dbc_signals.moc"
