#include "app/state/appcontroller.h"
#include "link/logger_data_handler_class.h"
#include "link/views/dialogcmdwindow.h"
#include "tests/support/peerlogger.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

class tst_DialogCmdWindow : public QObject
{
    Q_OBJECT

private slots:
    void aCommandGoesOutUnchangedAndItsReplyIsShown();
    void anEmptyLineIsNotSent();
    void silenceIsShown();
    void textOfTheLoggerIsNotTakenForMarkup();
    void sendingIsPossibleOnlyWhileConnected();
    void everyStateButDisconnectedAllowsSending();
    void theUpArrowBringsBackEarlierCommands();
    void clearEmptiesTheList();
    void theCommandLineTakesTheFirstKeys();
    void aHugeReplyIsShownCut();
};

namespace {

struct Window
{
    explicit Window(PeerLogger::Answer answer)
        : peer(std::move(answer))
    {
        controller.registerComponent(&handler);
        controller.registerComponent(&dialog);
        if (!handler.connectLogger(peer.address()))
            qFatal("not connected");
        controller.slotSetAppState(APP_STA_CONN_LOG_ON);
    }
    ~Window() { handler.disconnectLogger(); }

    template <class T>
    T *child(const char *name) const
    {
        return dialog.findChild<T *>(QString::fromLatin1(name));
    }
    QString list() const { return child<QPlainTextEdit>("plainTextEdit_cmdlist")->toPlainText(); }
    void send(const char *command)
    {
        line->setText(QString::fromLatin1(command));
        QTest::mouseClick(button, Qt::LeftButton);
    }

    PeerLogger peer;
    AppController controller;
    Logger_Data_Handler_Class handler{&controller};
    DialogCmdWindow dialog{&controller, &handler};
    QLineEdit *line = child<QLineEdit>("lineEdit_cmd");
    QPushButton *button = child<QPushButton>("pushButton_send");
};

PeerLogger::Answer always(const char *reply)
{
    return [reply](const protocol::Message &message) { return textReply(message, reply); };
}

} // namespace

void tst_DialogCmdWindow::aCommandGoesOutUnchangedAndItsReplyIsShown()
{
    Window window(always("rtc_status=VALID\r\n"));
    window.send(" get_rtc_status() ");
    QCOMPARE(window.peer.received().last().payload, QByteArray(" get_rtc_status() "));
    QCOMPARE(window.list(), QStringLiteral("get_rtc_status()\nrtc_status=VALID"));
}

void tst_DialogCmdWindow::anEmptyLineIsNotSent()
{
    Window window(always("OK"));
    window.send("  ");
    QVERIFY(window.peer.received().isEmpty());
    QCOMPARE(window.list(), QString());
}

void tst_DialogCmdWindow::silenceIsShown()
{
    Window window({});
    window.send("a");
    QCOMPARE(window.list(), QStringLiteral("a\nError: No response received!"));
}

void tst_DialogCmdWindow::textOfTheLoggerIsNotTakenForMarkup()
{
    Window window(always("<b>bold</b> & <img src=x>"));
    window.send("<i>a</i>");
    QCOMPARE(window.list(), QStringLiteral("<i>a</i>\n<b>bold</b> & <img src=x>"));
}

void tst_DialogCmdWindow::sendingIsPossibleOnlyWhileConnected()
{
    Window window(always("OK"));
    QVERIFY(window.button->isEnabled());
    window.handler.disconnectLogger();
    QVERIFY(!window.button->isEnabled());
    window.line->setText(QStringLiteral("a"));
    QTest::keyClick(window.line, Qt::Key_Return);
    QVERIFY(window.peer.received().isEmpty());
}

void tst_DialogCmdWindow::everyStateButDisconnectedAllowsSending()
{
    Window window(always("OK"));
    for (const AppSta_t state :
         {APP_STA_DISCONN, APP_STA_CONN_INIT, APP_STA_CONN_LOG_ON, APP_STA_CONN_LOG_OFF,
          APP_STA_CONN_UPDATE, APP_STA_CONN_TRANSPARENT}) {
        window.controller.slotSetAppState(state);
        QCOMPARE(window.button->isEnabled(), state != APP_STA_DISCONN);
    }
}

void tst_DialogCmdWindow::theUpArrowBringsBackEarlierCommands()
{
    Window window(always("OK"));
    window.send("first");
    window.send("second");
    QTest::keyClick(window.line, Qt::Key_Up);
    QCOMPARE(window.line->text(), QStringLiteral("second"));
    QTest::keyClick(window.line, Qt::Key_Up);
    QTest::keyClick(window.line, Qt::Key_Up);
    QCOMPARE(window.line->text(), QStringLiteral("first"));
    QTest::keyClick(window.line, Qt::Key_Down);
    QCOMPARE(window.line->text(), QStringLiteral("second"));
    QTest::keyClick(window.line, Qt::Key_Down);
    QCOMPARE(window.line->text(), QString());
}

void tst_DialogCmdWindow::clearEmptiesTheList()
{
    Window window(always("OK"));
    window.send("a");
    QTest::mouseClick(window.child<QPushButton>("pushButton_clear"), Qt::LeftButton);
    QCOMPARE(window.list(), QString());
}

void tst_DialogCmdWindow::theCommandLineTakesTheFirstKeys()
{
    Window window(always("OK"));
    QCOMPARE(window.dialog.focusWidget(), window.line);
}

void tst_DialogCmdWindow::aHugeReplyIsShownCut()
{
    const QByteArray huge = "key=" + QByteArray(1 << 20, 'x');
    Window window(always(huge.constData()));
    window.send("a");
    QVERIFY(window.list().size() < 100'000);
    QVERIFY(window.list().startsWith(QStringLiteral("a\nkey=xxx")));
    QVERIFY(window.list().endsWith(QStringLiteral("... (1048580 characters)")));
}

QTEST_MAIN(tst_DialogCmdWindow)
#include "tst_dialogcmdwindow.moc"
