#include "can/models/channelsignalrows.h"
#include "can/models/model_dbc_signals.h"
#include "tests/can/signalsamples.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using Field = Model_DBC_Signals::Field;

class tst_ChannelSignalRows : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void everythingCanBeEditedWhileTheConfigurationCan();
    void onlyLiveCanBeChosenWhileItCannot();
    void theBoxesAreDrawnAnew();

private:
    QModelIndex cell(Field field) const { return m_rows->index(0, m_model->columnOf(field)); }

    sample::SignalList m_list;
    std::unique_ptr<Model_DBC_Signals> m_model;
    std::unique_ptr<ChannelSignalRows> m_rows;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void tst_ChannelSignalRows::init()
{
    m_tester.reset();
    m_list.clear();
    sample::addSignal(m_list, "Speed");
    m_rows = std::make_unique<ChannelSignalRows>();
    m_model =
        std::make_unique<Model_DBC_Signals>(m_list.items(), Model_DBC_Signals::Layout::CanView);
    m_rows->setSourceModel(m_model.get());
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_rows.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void tst_ChannelSignalRows::everythingCanBeEditedWhileTheConfigurationCan()
{
    QVERIFY(m_rows->setData(cell(Field::Record), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(m_rows->setData(cell(Field::Unit), QStringLiteral("km/h"), Qt::EditRole));
    QVERIFY(m_rows->flags(cell(Field::Unit)) & Qt::ItemIsEditable);
    QCOMPARE(m_list.at(0)->unit, QStringLiteral("km/h"));
}

void tst_ChannelSignalRows::onlyLiveCanBeChosenWhileItCannot()
{
    m_rows->setEditable(false);
    QVERIFY(!m_rows->setData(cell(Field::Record), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(!m_rows->setData(cell(Field::Unit), QStringLiteral("km/h"), Qt::EditRole));
    QVERIFY(!(m_rows->flags(cell(Field::Record)) & Qt::ItemIsUserCheckable));
    QVERIFY(!(m_rows->flags(cell(Field::Unit)) & Qt::ItemIsEditable));
    QVERIFY(m_rows->flags(cell(Field::Live)) & Qt::ItemIsUserCheckable);
    QVERIFY(m_rows->setData(cell(Field::Live), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(int(m_list.at(0)->selection_flags), int(StreamingClass_DBC_Signal::liveFlag));
}

void tst_ChannelSignalRows::theBoxesAreDrawnAnew()
{
    const QSignalSpy changed(m_rows.get(), &QAbstractItemModel::dataChanged);
    m_rows->setEditable(false);
    QCOMPARE(changed.size(), 1);
}

QTEST_MAIN(tst_ChannelSignalRows)
#include "tst_channelsignalrows.moc"
