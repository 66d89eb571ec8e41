#include "app/connectsequence.h"
#include "app/softwareupdate.h"
#include "tests/app/messagesink.h"
#include "tests/app/scriptedprompt.h"
#include "tests/app/scriptedsession.h"

#include <QTest>

using Result = ConnectSequence::Result;

namespace {

const QString stopQuestion =
    QStringLiteral("...logging enabled...|Stop/Disable logging?\r\n...will be automatically "
                   "re-enabled if connection is closed/disconnected...");

} // namespace

class tst_ConnectSequence : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void yesToStoppingLeadsToLoggingDisabled();
    void noToStoppingLeadsToLoggingEnabled();
    void everyFailedStepTellsAndEndsDisconnected_data();
    void everyFailedStepTellsAndEndsDisconnected();
    void theVersionDecidesTheQuestion_data();
    void theVersionDecidesTheQuestion();
    void noToTheUpdateDisconnects();
    void yesToTheUpdateSendsItAndEndsDisconnected();
    void aFailedUpdateIsAFailure();
    void aConnectionLostDuringTheLoggingQuestionEndsTheSequence();
    void aConnectionLostDuringTheUpdateQuestionEndsTheSequence();
    void aLostConnectionIsNotToldTwice();
    void onlySuccessLeavesTheLogWithoutAWarning();

private:
    Result run();

    std::unique_ptr<ScriptedSession> m_session;
    std::unique_ptr<ScriptedPrompt> m_prompt;
    int m_delay_s = 0;
};

void tst_ConnectSequence::init()
{
    m_session = std::make_unique<ScriptedSession>();
    m_prompt = std::make_unique<ScriptedPrompt>();
    m_delay_s = 0;
}

Result tst_ConnectSequence::run()
{
    SoftwareUpdate update(
        *m_session, *m_prompt, [] { return QByteArray("image"); },
        [this](int delay_s) { m_delay_s = delay_s; });
    return ConnectSequence(*m_session, *m_prompt, update).run();
}

void tst_ConnectSequence::yesToStoppingLeadsToLoggingDisabled()
{
    m_prompt->answer = true;
    QCOMPARE(run(), Result::Connected);
    QCOMPARE(
        m_session->calls.join(QLatin1Char(' ')),
        QStringLiteral("version tell 1.61 capabilities ready stop state 3 configuration data"));
    QCOMPARE(m_prompt->shown, QStringList({stopQuestion}));
    QCOMPARE(m_session->state(), APP_STA_CONN_LOG_OFF);
}

void tst_ConnectSequence::noToStoppingLeadsToLoggingEnabled()
{
    QCOMPARE(run(), Result::Connected);
    QCOMPARE(m_session->calls.join(QLatin1Char(' ')),
             QStringLiteral("version tell 1.61 capabilities ready state 2 configuration data"));
    QCOMPARE(m_session->state(), APP_STA_CONN_LOG_ON);
}

void tst_ConnectSequence::everyFailedStepTellsAndEndsDisconnected_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *failing, const char *shown) {
        QTest::newRow(failing) << QString::fromLatin1(failing) << QString::fromLatin1(shown);
    };
    row("version", "Warning|Software-Version No. not received. \r\nthe reason");
    row("capabilities", "Warning|the reason");
    row("ready", "...not ready...|Logger is not ready, please try again shortly.");
    row("stop", "Warning|Unable to disable logging. \r\nthe reason");
    row("configuration", "Warning|Unable to receive configuration.");
}

void tst_ConnectSequence::everyFailedStepTellsAndEndsDisconnected()
{
    QFETCH(QString, failing);
    m_prompt->answer = true;
    if (failing == QStringLiteral("version"))
        m_session->version.reset();
    m_session->capabilities = failing != QStringLiteral("capabilities");
    m_session->ready = failing != QStringLiteral("ready");
    m_session->stops = failing != QStringLiteral("stop");
    m_session->configuration = failing != QStringLiteral("configuration");
    QString callsAtTheBox;
    m_prompt->duringABox = [&] { callsAtTheBox = m_session->calls.join(QLatin1Char(' ')); };

    QCOMPARE(run(), Result::Failed);

    QTEST(m_prompt->shown.last(), "shown");
    QVERIFY(callsAtTheBox.contains(failing));
    QVERIFY(!callsAtTheBox.contains(QStringLiteral("disconnect"))); // the box comes first
    QCOMPARE(m_session->calls.last(), QStringLiteral("disconnect"));
    QCOMPARE(m_session->state(), APP_STA_DISCONN);
}

void tst_ConnectSequence::theVersionDecidesTheQuestion_data()
{
    QTest::addColumn<int>("major");
    QTest::addColumn<int>("minor");
    QTest::addColumn<QString>("question");
    const QString update = QStringLiteral("Software-Update|Start software update now?");
    const QString downgrade = QStringLiteral("Software-Downgrade|Downgrade really?");
    QTest::newRow("1.60") << 1 << 60 << update;
    QTest::newRow("1.61") << 1 << 61 << stopQuestion;
    QTest::newRow("1.62") << 1 << 62 << downgrade;
    QTest::newRow("1.8 is older than 1.61") << 1 << 8 << update;
    QTest::newRow("0.99") << 0 << 99 << update;
    QTest::newRow("2.0") << 2 << 0 << downgrade;
    QTest::newRow("2.61") << 2 << 61 << downgrade;
}

void tst_ConnectSequence::theVersionDecidesTheQuestion()
{
    QFETCH(int, major);
    QFETCH(int, minor);
    QFETCH(QString, question);
    m_session->version = SoftwareVersion{major, minor};
    AppSta_t stateAtTheQuestion = APP_STA_DISCONN;
    m_prompt->duringABox = [&] { stateAtTheQuestion = m_session->state(); };
    run();
    QCOMPARE(m_prompt->shown, QStringList({question}));
    QCOMPARE(stateAtTheQuestion,
             question == stopQuestion ? APP_STA_CONN_INIT : APP_STA_CONN_UPDATE);
}

void tst_ConnectSequence::noToTheUpdateDisconnects()
{
    m_session->version = SoftwareVersion{1, 60};
    QCOMPARE(run(), Result::Declined);
    QCOMPARE(m_session->calls.join(QLatin1Char(' ')),
             QStringLiteral("version tell 1.60 state 4 disconnect"));
}

void tst_ConnectSequence::yesToTheUpdateSendsItAndEndsDisconnected()
{
    m_session->version = SoftwareVersion{1, 60};
    m_prompt->answer = true;
    QCOMPARE(run(), Result::UpdateSent);
    QCOMPARE(m_session->calls.join(QLatin1Char(' ')),
             QStringLiteral("version tell 1.60 state 4 hardware update disconnect"));
    QCOMPARE(m_session->sentImage, QByteArray("image"));
    QCOMPARE(m_delay_s, 30);
}

void tst_ConnectSequence::aFailedUpdateIsAFailure()
{
    m_session->version = SoftwareVersion{1, 60};
    m_session->acknowledgesUpdate = false;
    m_prompt->answer = true;
    QCOMPARE(run(), Result::Failed);
    QCOMPARE(m_session->state(), APP_STA_DISCONN);
    QCOMPARE(m_delay_s, 0);
}

void tst_ConnectSequence::aConnectionLostDuringTheLoggingQuestionEndsTheSequence()
{
    m_prompt->answer = true;
    m_prompt->duringABox = [this] { m_session->current = APP_STA_DISCONN; };
    QCOMPARE(run(), Result::Lost);
    QCOMPARE(m_session->calls.last(), QStringLiteral("ready"));
    QCOMPARE(m_session->state(), APP_STA_DISCONN);
}

void tst_ConnectSequence::aConnectionLostDuringTheUpdateQuestionEndsTheSequence()
{
    m_session->version = SoftwareVersion{1, 60};
    m_prompt->answer = true;
    m_prompt->duringABox = [this] { m_session->current = APP_STA_DISCONN; };
    QCOMPARE(run(), Result::Lost);
    QCOMPARE(m_session->calls.last(), QStringLiteral("state 4"));
}

void tst_ConnectSequence::aLostConnectionIsNotToldTwice()
{
    m_prompt->duringABox = [this] { m_session->current = APP_STA_DISCONN; };
    run();
    QCOMPARE(m_prompt->shown, QStringList({stopQuestion}));
}

void tst_ConnectSequence::onlySuccessLeavesTheLogWithoutAWarning()
{
    const QStringList warning = {QStringLiteral("Warning: Shit is fucked up!")};
    const MessageSink sink;
    run();
    QVERIFY(sink.messages().isEmpty());
    m_session->configuration = false;
    run();
    QCOMPARE(sink.messages(), warning);
    m_session->version = SoftwareVersion{1, 60};
    run(); // the user declines the update
    QCOMPARE(sink.messages(), warning + warning);
}

QTEST_GUILESS_MAIN(tst_ConnectSequence)
#include "tst_connectsequence.moc"
