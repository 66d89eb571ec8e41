#include "app/application.h"

#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <memory>
#include <stdexcept>

namespace {

// Ends its life in an event, and throws behind that.
class Ending : public QObject
{
public:
    bool event(QEvent *) override
    {
        delete this;
        throw std::out_of_range("at 8");
    }
};

} // namespace

class tst_Application : public QObject
{
    Q_OBJECT

private slots:
    void anExceptionInASlotIsLoggedAndTheProgramGoesOn();
    void anythingThrownIsLogged();
    void aReceiverMayBeGoneWhenItsExceptionIsLogged();

private:
    // Lets the event loop run a slot that throws, and one behind it.
    static bool goesOnAfter(void (*thrower)())
    {
        bool wentOn = false;
        QObject receiver;
        QTimer::singleShot(0, &receiver, thrower);
        QTimer::singleShot(1, &receiver, [&] {
            wentOn = true;
            QCoreApplication::quit();
        });
        QCoreApplication::exec();
        return wentOn;
    }
};

void tst_Application::anExceptionInASlotIsLoggedAndTheProgramGoesOn()
{
    QTest::ignoreMessage(QtCriticalMsg,
                         QRegularExpression(QStringLiteral("^Exception in an event of .*: at 7$")));
    QVERIFY(goesOnAfter([] { throw std::out_of_range("at 7"); }));
}

void tst_Application::anythingThrownIsLogged()
{
    QTest::ignoreMessage(QtCriticalMsg,
                         QRegularExpression(QStringLiteral("^Unknown exception in an event of ")));
    QVERIFY(goesOnAfter([] { throw 7; }));
}

void tst_Application::aReceiverMayBeGoneWhenItsExceptionIsLogged()
{
    QTest::ignoreMessage(QtCriticalMsg, "Exception in an event of QObject: at 8");
    QEvent event(QEvent::User);
    QVERIFY(!QCoreApplication::sendEvent(std::make_unique<Ending>().release(), &event));
}

int main(int argc, char *argv[])
{
    Application application(argc, argv);
    tst_Application test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_application.moc"
