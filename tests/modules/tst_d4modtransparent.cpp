#include "link/protocol/commandsender.h"
#include "modules/d4modtransparent.h"

#include <QRegularExpression>
#include <QTest>

class tst_D4MODTransparent : public QObject
{
    Q_OBJECT

private slots:
    void transparentModeIsSwitchedByOneCommand();
    void aFailureHasItsText();
    void dataThatNobodyExpectsIsWarnedOf();
    void manyDataDontFloodTheLog();
};

namespace {

class Sender : public protocol::CommandSender
{
public:
    QByteArray sendCommand(const QByteArray &command, int timeout_ms) override
    {
        sent.append(command);
        timeouts_ms.append(timeout_ms);
        return reply;
    }

    QByteArray reply = "OK\r\n";
    QList<QByteArray> sent;
    QList<int> timeouts_ms;
};

} // namespace

void tst_D4MODTransparent::transparentModeIsSwitchedByOneCommand()
{
    Sender sender;
    D4MODTransparent port(sender, 0);
    QString error;
    QVERIFY(port.setTransparentMode(true, error));
    QVERIFY(port.setTransparentMode(false, error));
    QCOMPARE(sender.sent, (QList<QByteArray>{"sys_set_transparent_mode(1)\r\n",
                                             "sys_set_transparent_mode(0)\r\n"}));
    QCOMPARE(sender.timeouts_ms, (QList<int>{1000, 1000}));
}

void tst_D4MODTransparent::aFailureHasItsText()
{
    Sender sender;
    sender.reply = "ERROR=-1108";
    D4MODTransparent port(sender, 0);
    QString error;
    QVERIFY(!port.setTransparentMode(true, error));
    QCOMPARE(error, QStringLiteral("ERROR_CODE_UNKNOWN_TARGET_CPU -1108"));
}

void tst_D4MODTransparent::dataThatNobodyExpectsIsWarnedOf()
{
    Sender sender;
    D4MODTransparent port(sender, 3);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral(
                                           "^Data Arrived - but noone expected it\\.\\. \"abc\"")));
    port.dataArrived("abc");
}

void tst_D4MODTransparent::manyDataDontFloodTheLog()
{
    static int warnings = 0;
    Sender sender;
    D4MODTransparent port(sender, 3);
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &) { ++warnings; });
    for (int i = 0; i < 10'000; ++i)
        port.dataArrived("abc");
    qInstallMessageHandler(previous);
    QVERIFY(warnings > 0);
    QVERIFY(warnings < 1000);
}

QTEST_GUILESS_MAIN(tst_D4MODTransparent)
#include "tst_d4modtransparent.moc"
