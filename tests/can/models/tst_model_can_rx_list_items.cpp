#include "can/models/model_can_rx_list_items.h"
#include "tests/can/framebytes.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QtTest>

class tst_Model_CAN_Rx_List_Items : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theColumnsHaveTheirTitles();
    void anIdentifierHasOneRow();
    void aNewFrameUpdatesItsRow();
    void thePeriodIsTheTimeSinceThePredecessor();
    void thePeriodOfTheFirstFrameIsEmpty();
    void thePeriodBridgesTheWrapOfTheClock();
    void aClockThatIsSetBackGivesNoPeriod();
    void aGapGivesNoPeriod();
    void standardAndExtendedIdentifiersAreTwoRows();
    void aRemoteFrameIsToldInTheComment();
    void manyFramesAreOneChange();
    void newRowsAreOneInsertion();
    void framesThatAreNotPublishedDoNotShow();
    void rowsAreLimited();
    void theCommentNamesSignals();
    void theListCanBeCleared();
    void aTableSortsByNumbers();

private:
    void add(const FrameBytes &frame)
    {
        m_model->addFrame(frame);
        m_model->publish();
    }
    QString cell(int row, int column) const
    {
        return m_model->index(row, column).data().toString();
    }

    std::unique_ptr<Model_CAN_Rx_List_Items> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void tst_Model_CAN_Rx_List_Items::init()
{
    m_tester.reset();
    m_model = std::make_unique<Model_CAN_Rx_List_Items>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void tst_Model_CAN_Rx_List_Items::theColumnsHaveTheirTitles()
{
    QStringList titles;
    for (int column = 0; column < m_model->columnCount(); ++column)
        titles += m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    QCOMPARE(titles.join(QLatin1Char('|')),
             QStringLiteral("ID|DLC|Data|Period [uSec]|Count|Comment"));
}

void tst_Model_CAN_Rx_List_Items::anIdentifierHasOneRow()
{
    add(FrameBytes(0x12, "01"));
    add(FrameBytes(0x7FF, "02"));
    add(FrameBytes(0x12, "03"));
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(cell(0, 0), QStringLiteral("012"));
    QCOMPARE(cell(1, 0), QStringLiteral("7FF"));
}

void tst_Model_CAN_Rx_List_Items::aNewFrameUpdatesItsRow()
{
    add(FrameBytes(0x12, "0102030405060708"));
    add(FrameBytes(0x12, "0aff").at(500));
    QCOMPARE(cell(0, 1), QStringLiteral("2"));
    QCOMPARE(cell(0, 2), QStringLiteral("0A FF "));
    QCOMPARE(cell(0, 3), QStringLiteral("500"));
    QCOMPARE(cell(0, 4), QStringLiteral("2"));
}

void tst_Model_CAN_Rx_List_Items::thePeriodIsTheTimeSinceThePredecessor()
{
    add(FrameBytes(0x12, "01").at(1000));
    add(FrameBytes(0x13, "01").at(1500));
    add(FrameBytes(0x12, "01").at(11000));
    add(FrameBytes(0x12, "01").at(31000));
    QCOMPARE(cell(0, 3), QStringLiteral("20000"));
}

void tst_Model_CAN_Rx_List_Items::thePeriodOfTheFirstFrameIsEmpty()
{
    add(FrameBytes(0x12, "01").at(1000));
    QCOMPARE(cell(0, 3), QString());
}

void tst_Model_CAN_Rx_List_Items::thePeriodBridgesTheWrapOfTheClock()
{
    add(FrameBytes(0x12, "01").at(0xFFFFFF00));
    add(FrameBytes(0x12, "01").at(0x00000100));
    QCOMPARE(cell(0, 3), QStringLiteral("512"));
}

void tst_Model_CAN_Rx_List_Items::aClockThatIsSetBackGivesNoPeriod()
{
    add(FrameBytes(0x12, "01").at(1000));
    add(FrameBytes(0x12, "01").at(3000));
    add(FrameBytes(0x12, "01").at(2000));
    QCOMPARE(cell(0, 3), QString());
    add(FrameBytes(0x12, "01").at(2500));
    QCOMPARE(cell(0, 3), QStringLiteral("500"));
}

void tst_Model_CAN_Rx_List_Items::aGapGivesNoPeriod()
{
    add(FrameBytes(0x12, "01").at(1000));
    add(FrameBytes(0x12, "01").at(3000));
    m_model->noteGap();
    add(FrameBytes(0x12, "01").at(900'000));
    QCOMPARE(cell(0, 3), QStringLiteral("2000"));
    add(FrameBytes(0x12, "01").at(901'000));
    QCOMPARE(cell(0, 3), QStringLiteral("1000"));
}

void tst_Model_CAN_Rx_List_Items::standardAndExtendedIdentifiersAreTwoRows()
{
    add(FrameBytes(0x12, "01"));
    add(FrameBytes(0x12, "02", true));
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(cell(1, 0), QStringLiteral("00000012"));
}

void tst_Model_CAN_Rx_List_Items::aRemoteFrameIsToldInTheComment()
{
    add(FrameBytes(0x12, "").remote());
    QCOMPARE(cell(0, 5), QStringLiteral("Remote frame"));
}

void tst_Model_CAN_Rx_List_Items::manyFramesAreOneChange()
{
    for (quint32 id = 0; id < 10; ++id)
        m_model->addFrame(FrameBytes(id, "01"));
    m_model->publish();
    const QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    for (int i = 0; i < 1000; ++i)
        m_model->addFrame(FrameBytes(quint32(3 + i % 4), "02"));
    m_model->publish();
    m_model->publish();
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), m_model->index(3, 1));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), m_model->index(6, 4));
}

void tst_Model_CAN_Rx_List_Items::newRowsAreOneInsertion()
{
    const QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
    for (quint32 id = 0; id < 10; ++id)
        m_model->addFrame(FrameBytes(id, "01"));
    m_model->publish();
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(m_model->rowCount(), 10);
}

void tst_Model_CAN_Rx_List_Items::framesThatAreNotPublishedDoNotShow()
{
    m_model->addFrame(FrameBytes(1, "01"));
    QCOMPARE(m_model->rowCount(), 0);
    m_model->publish();
    QCOMPARE(m_model->rowCount(), 1);
}

void tst_Model_CAN_Rx_List_Items::rowsAreLimited()
{
    for (quint32 id = 0; id < Model_CAN_Rx_List_Items::maxRows + 5; ++id)
        m_model->addFrame(FrameBytes(id, "01", true));
    m_model->addFrame(FrameBytes(0, "02", true));
    m_model->publish();
    QCOMPARE(m_model->rowCount(), Model_CAN_Rx_List_Items::maxRows);
    QCOMPARE(m_model->framesNotListed(), quint64(5));
    QCOMPARE(cell(0, 4), QStringLiteral("2"));
    m_model->clear_list();
    QCOMPARE(m_model->framesNotListed(), quint64(0));
}

void tst_Model_CAN_Rx_List_Items::theCommentNamesSignals()
{
    add(FrameBytes(1, "01"));
    m_model->setComments({{can::identifierKey(1, false), QStringLiteral("Speed")},
                          {can::identifierKey(2, true), QStringLiteral("Torque")}});
    add(FrameBytes(2, "01", true));
    add(FrameBytes(2, "01"));
    QCOMPARE(cell(0, 5), QStringLiteral("Speed"));
    QCOMPARE(cell(1, 5), QStringLiteral("Torque"));
    QCOMPARE(cell(2, 5), QString());
}

void tst_Model_CAN_Rx_List_Items::theListCanBeCleared()
{
    add(FrameBytes(1, "01"));
    m_model->addFrame(FrameBytes(2, "01"));
    m_model->clear_list();
    QCOMPARE(m_model->rowCount(), 0);
    m_model->publish();
    QCOMPARE(m_model->rowCount(), 0);
    add(FrameBytes(1, "01").at(77));
    QCOMPARE(cell(0, 4), QStringLiteral("1"));
    QCOMPARE(cell(0, 3), QString());
}

void tst_Model_CAN_Rx_List_Items::aTableSortsByNumbers()
{
    QSortFilterProxyModel sorted;
    sorted.setSourceModel(m_model.get());
    sorted.setSortRole(Qt::EditRole);
    for (int i = 0; i < 10; ++i)
        add(FrameBytes(0x100, "01"));
    add(FrameBytes(0x20, "01", true));
    add(FrameBytes(0x20, "01"));
    add(FrameBytes(0x20, "01"));
    sorted.sort(0);
    QCOMPARE(sorted.index(0, 0).data().toString(), QStringLiteral("020"));
    QCOMPARE(sorted.index(1, 0).data().toString(), QStringLiteral("00000020"));
    QCOMPARE(sorted.index(2, 0).data().toString(), QStringLiteral("100"));
    sorted.sort(4);
    QCOMPARE(sorted.index(2, 4).data().toInt(), 10);
    QCOMPARE(sorted.index(1, 4).data().toInt(), 2);
}

QTEST_MAIN(tst_Model_CAN_Rx_List_Items)
#include "tst_model_can_rx_list_items.moc"
