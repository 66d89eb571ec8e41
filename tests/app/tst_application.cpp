#include "app/application.h"

#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <stdexcept>

class tst_Application : public QObject
{
    Q_OBJECT

private slots:
    void anExceptionInASlotIsLoggedAndTheProgramGoesOn();
    void anythingThrownIsLogged();

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

int main(int argc, char *argv[])
{
    Application application(argc, argv);
    tst_Application test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_application.moc"
