#include "tests/app/messagesink.h"
#include "tests/app/windowbench.h"

#include <QSet>
#include <QTest>

class tst_InterfaceTree : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<WindowBench>(); }
    void cleanup() { m_bench.reset(); }

    void theTreeIsWideEnoughForItsTexts();
    void theItemsStandInTheirGroups();
    void everyItemShowsItsPage_data();
    void everyItemShowsItsPage();
    void aGroupShowsNoPage();
    void allIsEnabledWithoutALogger();
    void aConnectedLoggerDisablesWhatItLacks_data();
    void aConnectedLoggerDisablesWhatItLacks();
    void initUpdateAndTransparentLeaveTheItemsAlone();
    void aSelectedItemThatIsDisabledGivesWayToTheFirst();
    void componentsAreToldInTheOrderOfThePages();

private:
    QStringList textsOf(const QTreeWidgetItem *item) const;
    QSet<QString> disabledItems() const;

    std::unique_ptr<WindowBench> m_bench;
};

namespace {

QStringList numbered(const QString &text, int from, int count)
{
    QStringList texts;
    for (int i = from; i < from + count; ++i)
        texts += text.arg(i);
    return texts;
}

const QString can = QStringLiteral("CAN-%1");
const QString rs485 = QStringLiteral("RS485-%1");

} // namespace

QStringList tst_InterfaceTree::textsOf(const QTreeWidgetItem *item) const
{
    QStringList texts;
    for (int i = 0; i < item->childCount(); ++i)
        texts += item->child(i)->text(0);
    return texts;
}

QSet<QString> tst_InterfaceTree::disabledItems() const
{
    QSet<QString> texts;
    for (QTreeWidgetItemIterator it(m_bench->tree()); *it; ++it)
        if ((*it)->isDisabled())
            texts.insert((*it)->text(0));
    return texts;
}

void tst_InterfaceTree::theTreeIsWideEnoughForItsTexts()
{
    const InterfaceTree tree;
    constexpr int levels = 3;
    const int text = tree.fontMetrics().horizontalAdvance(QStringLiteral("Automotive-Ethernet"));
    QVERIFY(tree.sizeHint().width() >= levels * tree.indentation() + text);
}

void tst_InterfaceTree::theItemsStandInTheirGroups()
{
    InterfaceTree *tree = m_bench->tree();
    const auto below = [&](const char *text) {
        return textsOf(tree->itemOf(QLatin1String(text))).join(QLatin1Char('|'));
    };
    QCOMPARE(tree->topLevelItemCount(), 1);
    QCOMPARE(below("Datalogger"),
             QStringLiteral("Settings|Accel/Gyro/Mag|GPS|LTE|Interfaces|Modules"));
    QCOMPARE(below("Interfaces"), QStringLiteral("CAN|Automotive-Ethernet|EtherCAT|RS485"));
    QCOMPARE(below("CAN"), numbered(can, 0, 12).join(QLatin1Char('|')));
    QCOMPARE(below("RS485"), numbered(rs485, 0, 10).join(QLatin1Char('|')));
    QCOMPARE(below("Modules"), QStringLiteral("AIM(8/16-DMS)|AIM(Wheel-Sensor)"));
}

void tst_InterfaceTree::everyItemShowsItsPage_data()
{
    QTest::addColumn<QString>("page");
    const auto row = [](const char *item, const char *page) {
        QTest::newRow(item) << QString::fromLatin1(page);
    };
    row("Datalogger", "Logger_Main_View");
    row("Settings", "Logger_Settings_View");
    row("GPS", "Logger_Gps_View");
    row("Accel/Gyro/Mag", "Logger_Agm_View");
    row("LTE", "Logger_LTE_View");
    row("EtherCAT", "Logger_EtherCAT_View");
    row("AIM(Wheel-Sensor)", "Module_AIM_Messreaeder");
    row("AIM(8/16-DMS)", "Module_AIM_8_16_DMS");
    row("CAN-0", "Logger_CAN_View_0");
    row("CAN-11", "Logger_CAN_View_11");
    row("RS485-0", "Logger_RS485_View_0");
    row("RS485-9", "Logger_RS485_View_9");
    row("Automotive-Ethernet", "Logger_Ethernet_View_0");
}

void tst_InterfaceTree::everyItemShowsItsPage()
{
    m_bench->tree()->setCurrentItem(
        m_bench->tree()->itemOf(QString::fromLatin1(QTest::currentDataTag())));
    QTEST(m_bench->pageShown(), "page");
}

void tst_InterfaceTree::aGroupShowsNoPage()
{
    for (const char *group : {"CAN", "RS485", "Interfaces", "Modules"}) {
        m_bench->tree()->setCurrentItem(m_bench->tree()->itemOf(QLatin1String(group)));
        QVERIFY2(m_bench->pageShown().isEmpty(), group);
    }
}

void tst_InterfaceTree::allIsEnabledWithoutALogger()
{
    QVERIFY(disabledItems().isEmpty());
    m_bench->link->has = Capabilities();
    m_bench->connectByButton(true);
    QVERIFY(!disabledItems().isEmpty());
    m_bench->link->lose();
    QVERIFY(disabledItems().isEmpty());
}

void tst_InterfaceTree::aConnectedLoggerDisablesWhatItLacks_data()
{
    QTest::addColumn<QVector<int>>("capabilities"); // in the order of the logger's reply
    QTest::addColumn<QStringList>("disabled");
    const auto row = [](const char *tag, const QVector<int> &capabilities,
                        const QStringList &disabled) {
        QTest::newRow(tag) << capabilities << disabled;
    };
    row("all", {0, 1, 1, 12, 1, 1, 10, 1}, {});
    row("no AGM", {0, 0, 1, 12, 1, 1, 10, 1}, {QStringLiteral("Accel/Gyro/Mag")});
    row("no GPS", {0, 1, 0, 12, 1, 1, 10, 1}, {QStringLiteral("GPS")});
    row("11 CAN", {0, 1, 1, 11, 1, 1, 10, 1}, numbered(can, 11, 1));
    row("no CAN", {0, 1, 1, 0, 1, 1, 10, 1}, numbered(can, 0, 12));
    row("no LTE", {0, 1, 1, 12, 0, 1, 10, 1}, {QStringLiteral("LTE")});
    row("no ethernet", {0, 1, 1, 12, 1, 0, 10, 1}, {QStringLiteral("Automotive-Ethernet")});
    row("4 RS485", {0, 1, 1, 12, 1, 1, 4, 1}, numbered(rs485, 4, 6));
    row("no EtherCAT", {0, 1, 1, 12, 1, 1, 10, 0}, {QStringLiteral("EtherCAT")});
    row("negative numbers", {0, 1, 1, -5, 1, 1, -1, -1},
        numbered(can, 0, 12) + numbered(rs485, 0, 10) + QStringList(QStringLiteral("EtherCAT")));
}

void tst_InterfaceTree::aConnectedLoggerDisablesWhatItLacks()
{
    QFETCH(QVector<int>, capabilities);
    QFETCH(QStringList, disabled);
    m_bench->window();
    const QVector<int> &c = capabilities;
    m_bench->link->has = {c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7]};
    for (const bool stopLogging : {true, false}) {
        m_bench->connectByButton(stopLogging);
        QCOMPARE(disabledItems(), QSet<QString>(disabled.begin(), disabled.end()));
        m_bench->link->lose();
    }
}

void tst_InterfaceTree::initUpdateAndTransparentLeaveTheItemsAlone()
{
    m_bench->window();
    m_bench->link->has = Capabilities();
    QSet<QString> disabledAtTheQuestion = {QStringLiteral("not asked")};
    m_bench->prompt.duringABox = [&] { disabledAtTheQuestion = disabledItems(); };
    m_bench->connectByButton(true); // the question is asked in the init state
    QVERIFY(disabledAtTheQuestion.isEmpty());

    const QSet<QString> disabled = disabledItems();
    m_bench->link->has = {0, 1, 1, 12, 1, 1, 10, 1};
    m_bench->controller.slotSetAppState(APP_STA_CONN_TRANSPARENT);
    QCOMPARE(disabledItems(), disabled);
    m_bench->controller.slotSetAppState(APP_STA_CONN_UPDATE);
    QCOMPARE(disabledItems(), disabled);
}

void tst_InterfaceTree::aSelectedItemThatIsDisabledGivesWayToTheFirst()
{
    m_bench->window();
    m_bench->link->has = Capabilities();
    m_bench->tree()->setCurrentItem(m_bench->tree()->itemOf(QStringLiteral("GPS")));
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->tree()->selectedText(), QStringLiteral("Datalogger"));
    QCOMPARE(m_bench->pageShown(), QStringLiteral("Logger_Main_View"));
}

void tst_InterfaceTree::componentsAreToldInTheOrderOfThePages()
{
    m_bench->window();
    const MessageSink sink;
    m_bench->controller.printRegisteredComponents();
    const QStringList printed =
        sink.messages().replaceInStrings(QStringLiteral("Debug: "), QString());
    QCOMPARE(printed.mid(3, printed.size() - 4),
             QStringList(
                 {QStringLiteral("Logger_Main_View"), QStringLiteral("Logger_Settings_View"),
                  QStringLiteral("Logger_Gps_View"), QStringLiteral("Logger_Agm_View"),
                  QStringLiteral("Logger_LTE_View"), QStringLiteral("Logger_EtherCAT_View"),
                  QStringLiteral("Module_AIM_Messreaeder"), QStringLiteral("Module_AIM_8_16_DMS")})
                 + numbered(QStringLiteral("Logger_CAN_View_%1"), 0, 12)
                 + numbered(QStringLiteral("Logger_RS485_View_%1"), 0, 10)
                 + QStringList(
                     {QStringLiteral("Logger_Ethernet_View_0"), QStringLiteral("MainWindow")}));
}

QTEST_MAIN(tst_InterfaceTree)
#include "tst_interfacetree.moc"
