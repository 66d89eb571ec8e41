#include "app/state/appcomponentbaseclass.h"
#include "app/state/appcontroller.h"
#include "tests/app/messagesink.h"

#include <QTest>

#include <functional>

namespace {

struct Told
{
    QString component;
    AppSta_t state;
    bool operator==(const Told &other) const
    {
        return component == other.component && state == other.state;
    }
};

// Writes down what it is told, and may do more.
class Component : public AppComponentBaseClass
{
public:
    Component(AppController &controller, const QString &name, QVector<Told> &told)
        : AppComponentBaseClass(&controller, name)
        , m_told(told)
    {}

    void appStateChanged(AppSta_t &state) override
    {
        m_told.append({componentName(), state});
        m_address = &state;
        if (then)
            then(state);
    }

    std::function<void(AppSta_t)> then;
    const AppSta_t *m_address = nullptr;

private:
    QVector<Told> &m_told;
};

class Forgetful : public AppComponentBaseClass
{
public:
    using AppComponentBaseClass::AppComponentBaseClass;
};

QString text(const char *s)
{
    return QLatin1String(s);
}

} // namespace

class tst_AppController : public QObject
{
    Q_OBJECT

private slots:
    void eachStateHasNameAndDescription_data();
    void eachStateHasNameAndDescription();
    void aValueThatIsNoStateIsUnknown();
    void theFirstStateIsDisconnected();
    void aChangeIsToldInTheOrderOfRegistration();
    void theSignalFollowsTheLastComponent();
    void theCurrentStateCallsNobodyAndEmitsNothing();
    void aComponentIsToldTheCurrentStateWhenItRegisters();
    void componentsAreHandedTheControllersOwnState();
    void aStateSetWhileTellingIsWhatLaterComponentsSee();
    void aComponentRegisteredWhileTellingIsToldTheNewState();
    void aChangeIsLoggedBetweenTwoLines();
    void anUnchangedStateIsLogged();
    void theComponentThatSetsAStateIsLogged();
    void aComponentWithoutAnOverrideWarnsAndTheOthersAreTold();
    void aComponentWithoutAControllerWarnsAndStoresNothing();
    void registeredComponentsArePrintedInTheirOrder();

private:
    QVector<Told> m_told;
};

void tst_AppController::eachStateHasNameAndDescription_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");
    const auto row = [](int value, const char *name, const char *description) {
        QTest::newRow(name) << value << text(name) << text(description);
    };
    row(0, "APP_STA_DISCONN", "Disconnected");
    row(1, "APP_STA_CONN_INIT", "Connected - Init");
    row(2, "APP_STA_CONN_LOG_ON", "Connected - Logging Enabled");
    row(3, "APP_STA_CONN_LOG_OFF", "Connected - Logging Disabled");
    row(4, "APP_STA_CONN_UPDATE", "Connected - Update Sent");
    row(5, "APP_STA_CONN_TRANSPARENT", "Connected - Transparent Mode");
}

void tst_AppController::eachStateHasNameAndDescription()
{
    QFETCH(int, value);
    AppController controller;
    controller.slotSetAppState(static_cast<AppSta_t>(value));
    QTEST(controller.appStateName(), "name");
    QTEST(controller.appStateDescription(), "description");
    QTEST(AppController::nameOf(static_cast<AppSta_t>(value)), "name");
}

void tst_AppController::aValueThatIsNoStateIsUnknown()
{
    QCOMPARE(AppController::nameOf(static_cast<AppSta_t>(6)), text("Unknown State!"));
    QCOMPARE(AppController::nameOf(static_cast<AppSta_t>(-1)), text("Unknown State!"));
}

void tst_AppController::theFirstStateIsDisconnected()
{
    QCOMPARE(AppController().appState(), APP_STA_DISCONN);
}

void tst_AppController::aChangeIsToldInTheOrderOfRegistration()
{
    AppController controller;
    Component a(controller, text("a"), m_told);
    Component b(controller, text("b"), m_told);
    b.registerToController();
    a.registerToController();
    m_told.clear();

    controller.slotSetAppState(APP_STA_CONN_INIT);

    const QVector<Told> expected = {{text("b"), APP_STA_CONN_INIT}, {text("a"), APP_STA_CONN_INIT}};
    QCOMPARE(m_told, expected);
}

void tst_AppController::theSignalFollowsTheLastComponent()
{
    AppController controller;
    Component a(controller, text("a"), m_told);
    a.registerToController();
    m_told.clear();
    int toldBefore = 0;
    AppSta_t emitted = APP_STA_DISCONN;
    connect(&controller, &AppController::sigAppStateChanged, this, [&](AppSta_t &state) {
        toldBefore = m_told.size();
        emitted = state;
    });

    controller.slotSetAppState(APP_STA_CONN_LOG_ON);

    QCOMPARE(toldBefore, 1);
    QCOMPARE(emitted, APP_STA_CONN_LOG_ON);
}

void tst_AppController::theCurrentStateCallsNobodyAndEmitsNothing()
{
    AppController controller;
    controller.slotSetAppState(APP_STA_CONN_INIT);
    Component a(controller, text("a"), m_told);
    a.registerToController();
    m_told.clear();
    int emitted = 0;
    connect(&controller, &AppController::sigAppStateChanged, this, [&] { ++emitted; });

    controller.slotSetAppState(APP_STA_CONN_INIT);

    QVERIFY(m_told.isEmpty());
    QCOMPARE(emitted, 0);
}

void tst_AppController::aComponentIsToldTheCurrentStateWhenItRegisters()
{
    AppController controller;
    controller.slotSetAppState(APP_STA_CONN_LOG_OFF);
    m_told.clear();
    Component late(controller, text("late"), m_told);
    late.registerToController();
    QCOMPARE(m_told, QVector<Told>({{text("late"), APP_STA_CONN_LOG_OFF}}));
}

void tst_AppController::componentsAreHandedTheControllersOwnState()
{
    AppController controller;
    Component a(controller, text("a"), m_told);
    Component b(controller, text("b"), m_told);
    a.registerToController();
    b.registerToController();
    controller.slotSetAppState(APP_STA_CONN_INIT);
    QCOMPARE(a.m_address, b.m_address);
    controller.slotSetAppState(APP_STA_CONN_LOG_ON);
    QCOMPARE(*a.m_address, APP_STA_CONN_LOG_ON);
}

void tst_AppController::aStateSetWhileTellingIsWhatLaterComponentsSee()
{
    AppController controller;
    Component first(controller, text("first"), m_told);
    Component last(controller, text("last"), m_told);
    first.registerToController();
    last.registerToController();
    m_told.clear();
    first.then = [&](AppSta_t state) {
        if (state == APP_STA_CONN_INIT)
            first.setAppState(APP_STA_CONN_LOG_OFF);
    };

    controller.slotSetAppState(APP_STA_CONN_INIT);

    const QVector<Told> expected = {{text("first"), APP_STA_CONN_INIT},
                                    {text("first"), APP_STA_CONN_LOG_OFF},
                                    {text("last"), APP_STA_CONN_LOG_OFF},
                                    {text("last"), APP_STA_CONN_LOG_OFF}};
    QCOMPARE(m_told, expected);
    QCOMPARE(controller.appState(), APP_STA_CONN_LOG_OFF);
}

void tst_AppController::aComponentRegisteredWhileTellingIsToldTheNewState()
{
    AppController controller;
    Component first(controller, text("first"), m_told);
    Component late(controller, text("late"), m_told);
    first.registerToController();
    first.then = [&](AppSta_t) { late.registerToController(); };

    controller.slotSetAppState(APP_STA_CONN_INIT);

    QCOMPARE(m_told.last(), (Told{text("late"), APP_STA_CONN_INIT}));
}

void tst_AppController::aChangeIsLoggedBetweenTwoLines()
{
    AppController controller;
    const MessageSink sink;
    controller.slotSetAppState(APP_STA_CONN_LOG_ON);
    const QString line = text("Debug: ") + QString(86, QLatin1Char('#'));
    QCOMPARE(sink.messages(),
             QStringList(
                 {line, text("Debug: # App State Changed! | Connected - Logging Enabled"), line}));
}

void tst_AppController::anUnchangedStateIsLogged()
{
    AppController controller;
    const MessageSink sink;
    controller.slotSetAppState(APP_STA_DISCONN);
    const QString line = text("Debug: ") + QString(86, QLatin1Char('#'));
    QCOMPARE(sink.messages(),
             QStringList({line, text("Debug: # App State Stayed Unchanged!"), line}));
}

void tst_AppController::theComponentThatSetsAStateIsLogged()
{
    AppController controller;
    Component a(controller, text("Logger"), m_told);
    const MessageSink sink;
    a.setAppState(APP_STA_DISCONN);
    const QString line = text("Debug: ") + QString(63, QLatin1Char('!'));
    QCOMPARE(
        sink.messages().mid(3),
        QStringList(
            {line, text("Debug: App State Change triggered from: LoggerAPP_STA_DISCONN"), line}));
}

void tst_AppController::aComponentWithoutAnOverrideWarnsAndTheOthersAreTold()
{
    AppController controller;
    Forgetful forgetful(&controller, text("Page"));
    Component a(controller, text("a"), m_told);
    const QByteArray warning =
        "Virtual Method appStateChanged(%1) of Parent Called, please override it in your Child "
        "ClassPage.";
    QTest::ignoreMessage(QtWarningMsg, QByteArray(warning).replace("%1", "APP_STA_DISCONN"));
    QTest::ignoreMessage(QtWarningMsg, QByteArray(warning).replace("%1", "APP_STA_CONN_INIT"));
    forgetful.registerToController();
    a.registerToController();
    controller.slotSetAppState(APP_STA_CONN_INIT);
    QCOMPARE(m_told.last(), (Told{text("a"), APP_STA_CONN_INIT}));
}

void tst_AppController::aComponentWithoutAControllerWarnsAndStoresNothing()
{
    QTest::ignoreMessage(
        QtWarningMsg,
        "App Component Page initialized without a valid Pointer to the App Controller!");
    const Forgetful component(nullptr, text("Page"));
    QVERIFY(!component.appController());
    QVERIFY(component.componentName().isEmpty());
}

void tst_AppController::registeredComponentsArePrintedInTheirOrder()
{
    AppController controller;
    Component b(controller, text("b"), m_told);
    Component a(controller, text("a"), m_told);
    b.registerToController();
    a.registerToController();
    const MessageSink sink;
    controller.printRegisteredComponents();
    const QString line = text("Debug: ") + QString(47, QLatin1Char('*'));
    QCOMPARE(sink.messages(),
             QStringList({line, text("Debug: * AppController - Registered App Components:  *"),
                          line, text("Debug: b"), text("Debug: a"), line}));
}

QTEST_GUILESS_MAIN(tst_AppController)
#include "tst_appcontroller.moc"
