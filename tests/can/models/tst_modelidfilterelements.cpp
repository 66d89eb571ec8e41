#include "can/models/modelidfilterelements.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using Column = ModelIDFilterElements::Column;

class tst_ModelIDFilterElements : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rowsShowTheFiltersOfTheChannel();
    void headersNameColumnsAndNumberRows();
    void typeAndIdentifiersAreEditableFlagsAreCheckable();
    void aTypeIsTakenByItsText_data();
    void aTypeIsTakenByItsText();
    void anUnknownTypeIsRefused();
    void checkBoxesSetRejectAndLength();
    void identifiersAreTakenAsHexadecimalText_data();
    void identifiersAreTakenAsHexadecimalText();
    void textThatIsNotHexadecimalIsRefused_data();
    void textThatIsNotHexadecimalIsRefused();
    void aRowThatTurnsTo11BitClampsBothIdentifiers();
    void aRowThatTurnsTo29BitKeepsItsIdentifiers();
    void anEditThatClampsNothingTellsOfItsCell();
    void anEditThatClampsTellsOfTheWholeRow();
    void aNewRowIsAnOpenMaskUntilItIsEdited();
    void rowsComeAndGoAtTheirPlace();
    void rowsThatDoNotExistAreNotRemoved();
    void theRowsHandedInAreLeftAlone();

private:
    [[nodiscard]] QModelIndex cell(int column, int row = 0) const
    {
        return m_model->index(row, column);
    }
    [[nodiscard]] QString shown(int row = 0) const
    {
        QStringList texts;
        for (int column = 0; column < m_model->columnCount(); ++column)
            texts += cell(column, row).data().toString();
        return texts.join(QLatin1Char(' '));
    }
    bool type(int column, const QString &text) const
    {
        return m_model->setData(cell(column), text, Qt::EditRole);
    }
    bool check(int column, Qt::CheckState state) const
    {
        return m_model->setData(cell(column), state, Qt::CheckStateRole);
    }

    std::unique_ptr<ModelIDFilterElements> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    OwnedList<CanIdFilterElement> m_filters;
};

void tst_ModelIDFilterElements::init()
{
    m_filters.clear();
    m_filters.add() = {0, 0, 0, 0x100, 0x7AF};
    m_filters.add() = {1, 3, 1, 0xABCDEF, 0x1FFFFFFF};
    m_model = std::make_unique<ModelIDFilterElements>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_model->setRows(m_filters);
}

void tst_ModelIDFilterElements::cleanup()
{
    m_tester.reset();
    m_model.reset();
}

void tst_ModelIDFilterElements::rowsShowTheFiltersOfTheChannel()
{
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(shown(0), QStringLiteral("Range Accept 11-Bit 100 7AF"));
    QCOMPARE(shown(1), QStringLiteral("Range T2 Reject 29-Bit ABCDEF 1FFFFFFF"));
}

void tst_ModelIDFilterElements::headersNameColumnsAndNumberRows()
{
    QStringList titles;
    for (int column = 0; column < m_model->columnCount(); ++column)
        titles += m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    QCOMPARE(titles.join(QLatin1Char('|')),
             QStringLiteral("Type|Reject/Accept\r\non Match|11/29-Bit-ID|ID-1\r\n[hex]|ID-2\r\n"
                            "[hex]"));
    QCOMPARE(m_model->headerData(0, Qt::Vertical, Qt::DisplayRole).toInt(), 1);
    QCOMPARE(m_model->headerData(1, Qt::Vertical, Qt::DisplayRole).toInt(), 2);
}

void tst_ModelIDFilterElements::typeAndIdentifiersAreEditableFlagsAreCheckable()
{
    QString editable;
    QString checkable;
    for (int column = 0; column < m_model->columnCount(); ++column) {
        const Qt::ItemFlags flags = m_model->flags(cell(column));
        editable += QLatin1Char(flags & Qt::ItemIsEditable ? '1' : '0');
        checkable += QLatin1Char(flags & Qt::ItemIsUserCheckable ? '1' : '0');
    }
    QCOMPARE(editable, QStringLiteral("10011"));
    QCOMPARE(checkable, QStringLiteral("01100"));
}

void tst_ModelIDFilterElements::aTypeIsTakenByItsText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");

    QTest::newRow("range") << "Range" << 0;
    QTest::newRow("dual") << "Dual" << 1;
    QTest::newRow("classic") << "Classic" << 2;
    QTest::newRow("range T2") << "Range T2" << 3;
}

void tst_ModelIDFilterElements::aTypeIsTakenByItsText()
{
    QFETCH(QString, text);
    QVERIFY(type(Column::Type, text));
    QCOMPARE(cell(Column::Type).data().toString(), text);
    OwnedList<CanIdFilterElement> rows;
    m_model->copyRowsTo(rows);
    QTEST(int(rows.at(0)->filter_type), "value");
}

void tst_ModelIDFilterElements::anUnknownTypeIsRefused()
{
    QVERIFY(!type(Column::Type, QStringLiteral("Mask")));
    QCOMPARE(shown(), QStringLiteral("Range Accept 11-Bit 100 7AF"));
}

void tst_ModelIDFilterElements::checkBoxesSetRejectAndLength()
{
    QVERIFY(check(Column::Match, Qt::Checked));
    QVERIFY(check(Column::IdLength, Qt::Checked));
    QCOMPARE(shown(), QStringLiteral("Range Reject 29-Bit 100 7AF"));
    QVERIFY(check(Column::Match, Qt::Unchecked));
    QCOMPARE(shown(), QStringLiteral("Range Accept 29-Bit 100 7AF"));
    QCOMPARE(cell(Column::IdLength).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
}

void tst_ModelIDFilterElements::identifiersAreTakenAsHexadecimalText_data()
{
    QTest::addColumn<bool>("extended");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shownAs");

    QTest::newRow("digits") << false << "1a"
                            << "1A";
    QTest::newRow("zero") << false << "0"
                          << "0";
    QTest::newRow("prefix and blanks") << false << " 0x2B "
                                       << "2B";
    QTest::newRow("largest of 11 bits") << false << "7FF"
                                        << "7FF";
    QTest::newRow("above 11 bits") << false << "800"
                                   << "7FF";
    QTest::newRow("largest of 29 bits") << true << "1FFFFFFF"
                                        << "1FFFFFFF";
    QTest::newRow("above 29 bits") << true << "20000000"
                                   << "1FFFFFFF";
    QTest::newRow("above 32 bits") << true << "123456789ABCDEF0123456789"
                                   << "1FFFFFFF";
}

void tst_ModelIDFilterElements::identifiersAreTakenAsHexadecimalText()
{
    QFETCH(bool, extended);
    QFETCH(QString, text);
    check(Column::IdLength, extended ? Qt::Checked : Qt::Unchecked);
    for (const int column : {Column::Id1, Column::Id2}) {
        QVERIFY(type(column, text));
        QTEST(cell(column).data().toString(), "shownAs");
    }
}

void tst_ModelIDFilterElements::textThatIsNotHexadecimalIsRefused_data()
{
    QTest::addColumn<QString>("text");

    for (const char *text : {"", "0x", "G1", "-1", "+1", "1 2", "1.0", "0x0x1"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_ModelIDFilterElements::textThatIsNotHexadecimalIsRefused()
{
    QFETCH(QString, text);
    QSignalSpy changes(m_model.get(), &ModelIDFilterElements::dataChanged);
    QVERIFY(!type(Column::Id1, text));
    QCOMPARE(shown(), QStringLiteral("Range Accept 11-Bit 100 7AF"));
    QCOMPARE(changes.count(), 0);
}

void tst_ModelIDFilterElements::aRowThatTurnsTo11BitClampsBothIdentifiers()
{
    check(Column::IdLength, Qt::Checked);
    type(Column::Id1, QStringLiteral("12345"));
    type(Column::Id2, QStringLiteral("800"));
    check(Column::IdLength, Qt::Unchecked);
    QCOMPARE(shown(), QStringLiteral("Range Accept 11-Bit 7FF 7FF"));
}

void tst_ModelIDFilterElements::aRowThatTurnsTo29BitKeepsItsIdentifiers()
{
    check(Column::IdLength, Qt::Checked);
    QCOMPARE(shown(), QStringLiteral("Range Accept 29-Bit 100 7AF"));
}

void tst_ModelIDFilterElements::anEditThatClampsNothingTellsOfItsCell()
{
    QSignalSpy changes(m_model.get(), &ModelIDFilterElements::dataChanged);
    type(Column::Id1, QStringLiteral("7FF"));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex(), cell(Column::Id1));
    QCOMPARE(changes.at(0).at(1).toModelIndex(), cell(Column::Id1));
}

void tst_ModelIDFilterElements::anEditThatClampsTellsOfTheWholeRow()
{
    QSignalSpy changes(m_model.get(), &ModelIDFilterElements::dataChanged);
    type(Column::Id1, QStringLiteral("800"));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex(), cell(Column::Type));
    QCOMPARE(changes.at(0).at(1).toModelIndex(), cell(Column::Id2));
}

void tst_ModelIDFilterElements::aNewRowIsAnOpenMaskUntilItIsEdited()
{
    m_model->insertNew(0);
    QCOMPARE(shown(0), QStringLiteral("Classic Accept 11-Bit 0 1FFFFFFF"));
    type(Column::Id1, QStringLiteral("123"));
    QCOMPARE(shown(0), QStringLiteral("Classic Accept 11-Bit 123 7FF"));
}

void tst_ModelIDFilterElements::rowsComeAndGoAtTheirPlace()
{
    m_model->insertNew(1);
    QCOMPARE(shown(0), QStringLiteral("Range Accept 11-Bit 100 7AF"));
    QCOMPARE(shown(1), QStringLiteral("Classic Accept 11-Bit 0 1FFFFFFF"));
    QVERIFY(m_model->removeRows(0, 2));
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(shown(0), QStringLiteral("Range T2 Reject 29-Bit ABCDEF 1FFFFFFF"));
}

void tst_ModelIDFilterElements::rowsThatDoNotExistAreNotRemoved()
{
    QVERIFY(!m_model->removeRows(-1, 1));
    QVERIFY(!m_model->removeRows(2, 1));
    QVERIFY(!m_model->removeRows(1, 2));
    QVERIFY(!m_model->removeRows(0, 0));
    QVERIFY(!m_model->removeRows(0, 1, cell(0)));
    QCOMPARE(m_model->rowCount(), 2);
}

void tst_ModelIDFilterElements::theRowsHandedInAreLeftAlone()
{
    check(Column::Match, Qt::Checked);
    QCOMPARE(int(m_filters.at(0)->reject), 0);
    OwnedList<CanIdFilterElement> rows;
    m_model->copyRowsTo(rows);
    QCOMPARE(int(rows.at(0)->reject), 1);
}

QTEST_MAIN(tst_ModelIDFilterElements)
#include "tst_modelidfilterelements.moc"
