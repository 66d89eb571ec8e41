#include "app/state/appcontroller.h"
#include "app/ui/loggerpage.h"
#include "link/logger_data_handler_class.h"

#include <QCheckBox>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

namespace {

// Shows whether GPS is enabled, and writes it when the user ticks the box.
class GpsPage : public LoggerPage
{
public:
    GpsPage(AppController *controller, Logger_Data_Handler_Class *handler)
        : LoggerPage(controller, QStringLiteral("Page"), handler, nullptr, 3)
    {
        setConfigurationWidgets({&enabled});
        connect(&enabled, &QCheckBox::toggled, this, [this](bool on) {
            ++writes;
            LoggerPage::handler()->cmd_write_gps_enabled(on ? 1 : 0);
        });
    }

    using LoggerPage::isOwnNumber;

    QCheckBox enabled{this};
    QCheckBox other{this};
    QSpinBox spinBox{this};
    int writes = 0;
    QList<AppSta_t> applied;

private:
    void redraw() override
    {
        enabled.setChecked(handler()->terminal().gps.gps_enabled != 0);
        spinBox.setValue(7);
    }
    void stateApplied(AppSta_t state) override { applied += state; }
};

} // namespace

class tst_LoggerPage : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theStateDecidesWhatCanBeEdited_data();
    void theStateDecidesWhatCanBeEdited();
    void widgetsThatDoNotEditTheConfigurationAreLeftAlone();
    void aPagesOwnExtraRunsInEveryState();
    void aFullUpdateRedraws();
    void showingAValueWritesNone();
    void aTickOfTheUserIsWritten();
    void onlyTheOwnNumberIsHeeded();

private:
    AppController m_controller;
    std::unique_ptr<Logger_Data_Handler_Class> m_handler;
    std::unique_ptr<GpsPage> m_page;
};

void tst_LoggerPage::init()
{
    m_page.reset();
    m_handler = std::make_unique<Logger_Data_Handler_Class>(&m_controller);
    m_page = std::make_unique<GpsPage>(&m_controller, m_handler.get());
}

void tst_LoggerPage::theStateDecidesWhatCanBeEdited_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("afterEnabled");
    QTest::addColumn<bool>("afterDisabled");
    QTest::newRow("0 enables") << 0 << true << true;
    QTest::newRow("1 leaves alone") << 1 << true << false;
    QTest::newRow("2 disables") << 2 << false << false;
    QTest::newRow("3 enables") << 3 << true << true;
    QTest::newRow("4 leaves alone") << 4 << true << false;
    QTest::newRow("5 disables") << 5 << false << false;
}

void tst_LoggerPage::theStateDecidesWhatCanBeEdited()
{
    QFETCH(int, state);
    auto entered = static_cast<AppSta_t>(state);
    m_page->enabled.setEnabled(true);
    m_page->appStateChanged(entered);
    QTEST(m_page->enabled.isEnabled(), "afterEnabled");
    m_page->enabled.setEnabled(false);
    m_page->appStateChanged(entered);
    QTEST(m_page->enabled.isEnabled(), "afterDisabled");
}

void tst_LoggerPage::widgetsThatDoNotEditTheConfigurationAreLeftAlone()
{
    AppSta_t state = APP_STA_CONN_LOG_ON;
    m_page->appStateChanged(state);
    QVERIFY(m_page->other.isEnabled());
}

void tst_LoggerPage::aPagesOwnExtraRunsInEveryState()
{
    QList<AppSta_t> all;
    for (int i = 0; i <= 5; ++i) {
        auto state = static_cast<AppSta_t>(i);
        m_page->appStateChanged(state);
        all += state;
    }
    QCOMPARE(m_page->applied, all);
}

void tst_LoggerPage::aFullUpdateRedraws()
{
    TerminalStruct configuration;
    configuration.gps.gps_enabled = 1;
    QVERIFY(m_handler->writeWholeConfiguration(configuration)); // loops back without a logger
    QVERIFY(m_page->enabled.isChecked());
}

void tst_LoggerPage::showingAValueWritesNone()
{
    const QSignalSpy changed(&m_page->spinBox, QOverload<int>::of(&QSpinBox::valueChanged));
    QVERIFY(m_handler->cmd_write_gps_enabled(1));
    m_page->showConfiguration();
    QVERIFY(m_page->enabled.isChecked());
    QCOMPARE(m_page->spinBox.text(), QStringLiteral("7"));
    QCOMPARE(m_page->writes, 0);
    QVERIFY(changed.isEmpty());
    QVERIFY(!m_page->enabled.signalsBlocked());
}

void tst_LoggerPage::aTickOfTheUserIsWritten()
{
    m_page->enabled.click();
    QCOMPARE(m_page->writes, 1);
    QCOMPARE(int(m_handler->terminal().gps.gps_enabled), 1);
}

void tst_LoggerPage::onlyTheOwnNumberIsHeeded()
{
    QVERIFY(m_page->isOwnNumber(3));
    QVERIFY(!m_page->isOwnNumber(0));
}

QTEST_MAIN(tst_LoggerPage)
#include "tst_loggerpage.moc"
