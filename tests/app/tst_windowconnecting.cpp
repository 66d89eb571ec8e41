#include "tests/app/windowbench.h"

#include <QStatusBar>
#include <QTest>

// The main window in the seconds in which the sockets are opened.
class tst_WindowConnecting : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<WindowBench>(); }
    void cleanup() { m_bench.reset(); }

    void onlyCancelTakesInput();
    void whatWasEnabledIsSoAgainBehindAFailure();
    void theStatusBarCountsDown();
    void theConnectButtonCancels();
    void closingCancelsAndClosesThen();

private:
    std::unique_ptr<WindowBench> m_bench;
};

void tst_WindowConnecting::onlyCancelTakesInput()
{
    MainWindow &window = m_bench->window();
    QPushButton *button = m_bench->button("pushButton_connect_disconnect");
    QStringList enabled;
    QString text;
    m_bench->link->whileConnecting = [&] {
        const auto widgets =
            window.centralWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        for (const QWidget *widget : widgets)
            if (widget->isEnabled())
                enabled += widget->objectName();
        text = button->text();
    };
    m_bench->connectByButton(true);
    QCOMPARE(enabled, QStringList{button->objectName()});
    QCOMPARE(text, QStringLiteral("Cancel"));
    QCOMPARE(button->text(), QStringLiteral("Disconnect"));
    QVERIFY(m_bench->tree()->isEnabled());
}

void tst_WindowConnecting::whatWasEnabledIsSoAgainBehindAFailure()
{
    MainWindow &window = m_bench->window();
    m_bench->addressBox()->setFocus();
    const auto enabled = [&window] {
        QStringList names;
        for (const QWidget *widget : window.findChildren<QWidget *>())
            if (widget->isEnabled())
                names += widget->objectName();
        return names;
    };
    const QStringList before = enabled();
    m_bench->link->connects = false;
    m_bench->connectByButton(true);
    QCOMPARE(enabled(), before);
    QCOMPARE(window.focusWidget(), m_bench->addressBox());
    QCOMPARE(m_bench->button("pushButton_connect_disconnect")->text(), QStringLiteral("Connect"));
}

void tst_WindowConnecting::theStatusBarCountsDown()
{
    MainWindow &window = m_bench->window();
    QStringList shown;
    m_bench->link->whileConnecting = [&] {
        shown += window.statusBar()->currentMessage();
        emit m_bench->link->connecting(19860, 7);
        shown += window.statusBar()->currentMessage();
    };
    m_bench->connectByButton(true);
    QCOMPARE(shown, QStringList({QStringLiteral("Connecting to 192.168.2.1 ..."),
                                 QStringLiteral("Connecting to 192.168.2.1, port 19860: no answer "
                                                "yet, 7 s left")}));
    QCOMPARE(window.statusBar()->currentMessage(), QString());
}

void tst_WindowConnecting::theConnectButtonCancels()
{
    m_bench->window();
    m_bench->link->whileConnecting = [this] {
        m_bench->button("pushButton_connect_disconnect")->click();
    };
    m_bench->connectByButton(true);
    QCOMPARE(m_bench->link->calls(),
             QStringList({QStringLiteral("connect 192.168.2.1"), QStringLiteral("cancel")}));
    QVERIFY(m_bench->prompt.shown.isEmpty());
    QCOMPARE(m_bench->controller.appState(), APP_STA_DISCONN);
}

void tst_WindowConnecting::closingCancelsAndClosesThen()
{
    MainWindow &window = m_bench->window();
    window.show();
    bool isOpenMeanwhile = false;
    m_bench->link->whileConnecting = [&] {
        window.close();
        isOpenMeanwhile = window.isVisible();
    };
    m_bench->connectByButton(true);
    QVERIFY(isOpenMeanwhile);
    QVERIFY(!window.isVisible());
    QVERIFY(m_bench->link->calls().contains(QStringLiteral("cancel")));
}

QTEST_MAIN(tst_WindowConnecting)
#include "tst_windowconnecting.moc"
