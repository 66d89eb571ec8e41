#include "app/ui/tablememory.h"

#include <QHeaderView>
#include <QSettings>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

class tst_TableMemory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void widthsAndSortingComeBack();
    void tablesOfDifferentKeysDontMix();
    void withoutAMemoryTheTableStaysAsItIs();
    void whatDoesNotFitTheTableIsLeftOut_data();
    void whatDoesNotFitTheTableIsLeftOut();

private:
    std::unique_ptr<QTemporaryDir> m_settings;
};

namespace {

const QString key = QStringLiteral("someTable");

// Three columns, of which the last stretches.
struct Table
{
    Table()
    {
        view.setModel(&model);
        header().setStretchLastSection(true);
        header().setSortIndicator(-1, Qt::AscendingOrder);
        header().resizeSection(0, 111);
        header().resizeSection(1, 122);
    }
    QHeaderView &header() { return *view.horizontalHeader(); }
    [[nodiscard]] QList<int> state()
    {
        return {header().sectionSize(0), header().sectionSize(1), header().sortIndicatorSection(),
                int(header().sortIndicatorOrder())};
    }

    QStandardItemModel model{2, 3};
    QTableView view;
};

} // namespace

void tst_TableMemory::init()
{
    m_settings = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings->path());
    QSettings(QStringLiteral("ZELVO"), QStringLiteral("ZDS")).clear();
}

void tst_TableMemory::widthsAndSortingComeBack()
{
    Table before;
    before.header().resizeSection(1, 222);
    before.header().setSortIndicator(2, Qt::DescendingOrder);
    tablememory::save(before.header(), key);
    Table after;
    tablememory::restore(after.header(), key);
    QCOMPARE(after.state(), (QList<int>{111, 222, 2, int(Qt::DescendingOrder)}));
}

void tst_TableMemory::tablesOfDifferentKeysDontMix()
{
    Table before;
    before.header().resizeSection(1, 222);
    tablememory::save(before.header(), key);
    Table other;
    const QList<int> state = other.state();
    tablememory::restore(other.header(), QStringLiteral("otherTable"));
    QCOMPARE(other.state(), state);
}

void tst_TableMemory::withoutAMemoryTheTableStaysAsItIs()
{
    Table table;
    const QList<int> state = table.state();
    tablememory::restore(table.header(), key);
    QCOMPARE(table.state(), state);
}

void tst_TableMemory::whatDoesNotFitTheTableIsLeftOut_data()
{
    QTest::addColumn<QVariant>("widths");
    QTest::addColumn<QVariant>("column");
    QTest::newRow("fewer columns") << QVariant(QVariantList{50, 60}) << QVariant(-1);
    QTest::newRow("more columns") << QVariant(QVariantList{50, 60, 70, 80}) << QVariant(3);
    QTest::newRow("no numbers") << QVariant(
        QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")})
                                << QVariant(QStringLiteral("x1"));
    QTest::newRow("too narrow") << QVariant(QVariantList{0, -5, 2}) << QVariant(-7);
    QTest::newRow("too wide") << QVariant(QVariantList{100'000, 2'000'000'000, 5}) << QVariant(99);
}

void tst_TableMemory::whatDoesNotFitTheTableIsLeftOut()
{
    QFETCH(QVariant, widths);
    QFETCH(QVariant, column);
    {
        QSettings store(QStringLiteral("ZELVO"), QStringLiteral("ZDS"));
        store.setValue(key + QStringLiteral("/columnWidths"), widths);
        store.setValue(key + QStringLiteral("/sortColumn"), column);
    }
    Table table;
    const QList<int> state = table.state();
    tablememory::restore(table.header(), key);
    QCOMPARE(table.state(), state);
}

QTEST_MAIN(tst_TableMemory)
#include "tst_tablememory.moc"
