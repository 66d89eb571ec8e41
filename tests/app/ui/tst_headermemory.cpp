#include "app/ui/headermemory.h"
#include "app/ui/settingsstore.h"

#include <QHeaderView>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Table
{
    explicit Table(int columns = 3)
        : model(5, columns)
    {
        view.setModel(&model);
        view.setSortingEnabled(true);
        new HeaderMemory(&view, QStringLiteral("Test"));
        view.show();
    }

    QStandardItemModel model;
    QTableView view;
};

} // namespace

class tst_HeaderMemory : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void widthsAndSortingComeBack();
    void aTableThatIsShownTakesWhatAnotherOneLeft();
    void aTableOfOtherColumnsKeepsItsOwn();
    void whatTheUserDidNotTouchIsNotSaved();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_HeaderMemory::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder->path());
    SettingsStore().clear();
}

void tst_HeaderMemory::widthsAndSortingComeBack()
{
    {
        Table table;
        table.view.setColumnWidth(1, 171);
        table.view.sortByColumn(2, Qt::DescendingOrder);
        table.view.hide();
    }
    const Table again;
    QCOMPARE(again.view.columnWidth(1), 171);
    QCOMPARE(again.view.horizontalHeader()->sortIndicatorSection(), 2);
    QCOMPARE(again.view.horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
}

void tst_HeaderMemory::aTableThatIsShownTakesWhatAnotherOneLeft()
{
    Table first;
    Table second;
    second.view.hide();
    first.view.setColumnWidth(0, 133);
    first.view.hide();
    second.view.show();
    QCOMPARE(second.view.columnWidth(0), 133);
}

void tst_HeaderMemory::aTableOfOtherColumnsKeepsItsOwn()
{
    {
        Table table;
        table.view.setColumnWidth(1, 171);
        table.view.hide();
    }
    const Table wider(4);
    QVERIFY(wider.view.columnWidth(1) != 171);
}

void tst_HeaderMemory::whatTheUserDidNotTouchIsNotSaved()
{
    {
        Table table;
        table.view.hide();
    }
    QVERIFY(SettingsStore().allKeys().isEmpty());
}

QTEST_MAIN(tst_HeaderMemory)
#include "tst_headermemory.moc"
