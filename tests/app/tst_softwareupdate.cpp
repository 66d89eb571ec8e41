#include "app/softwareupdate.h"
#include "tests/app/scriptedprompt.h"
#include "tests/app/scriptedsession.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_SoftwareUpdate : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theDelayFollowsVersionAndHardware_data();
    void theDelayFollowsVersionAndHardware();
    void anOldLoggerIsNotAskedForItsHardware();
    void theImageIsSentAndTheDelayBeginsDisconnected();
    void aTimeoutIsToldAndDisconnects();
    void aMissingImageIsToldAndDisconnects();
    void anImageFileIsReadWhole();
    void aMissingEmptyOrGiantFileIsNoImage();

private:
    bool run(const SoftwareVersion &version, const std::optional<QByteArray> &image);

    std::unique_ptr<ScriptedSession> m_session;
    std::unique_ptr<ScriptedPrompt> m_prompt;
    QStringList m_sent; // the delay and the state in which it was told
};

void tst_SoftwareUpdate::init()
{
    m_session = std::make_unique<ScriptedSession>();
    m_session->current = APP_STA_CONN_UPDATE;
    m_prompt = std::make_unique<ScriptedPrompt>();
    m_sent.clear();
}

bool tst_SoftwareUpdate::run(const SoftwareVersion &version, const std::optional<QByteArray> &image)
{
    SoftwareUpdate update(
        *m_session, *m_prompt, [image] { return image; },
        [this](int delay_s) {
            m_sent += QStringLiteral("%1 s in state %2").arg(delay_s).arg(m_session->state());
        });
    return update.run(version);
}

void tst_SoftwareUpdate::theDelayFollowsVersionAndHardware_data()
{
    QTest::addColumn<int>("major");
    QTest::addColumn<int>("minor");
    QTest::addColumn<int>("hardware"); // below 0: the command fails
    QTest::addColumn<int>("delay");
    QTest::newRow("version below 1.8") << 1 << 7 << 2 << 60;
    QTest::newRow("version 0.9") << 0 << 9 << 2 << 60;
    QTest::newRow("hardware 2") << 1 << 8 << 2 << 30;
    QTest::newRow("hardware 3") << 1 << 60 << 3 << 30;
    QTest::newRow("hardware 1") << 1 << 60 << 1 << 60;
    QTest::newRow("version 2.0") << 2 << 0 << 2 << 30;
    QTest::newRow("the hardware can't be read") << 1 << 60 << -1 << 60;
}

void tst_SoftwareUpdate::theDelayFollowsVersionAndHardware()
{
    QFETCH(int, major);
    QFETCH(int, minor);
    QFETCH(int, hardware);
    QFETCH(int, delay);
    m_session->hardware = hardware < 0 ? std::nullopt : std::optional<int>(hardware);
    QVERIFY(run({major, minor}, QByteArray("image")));
    QCOMPARE(m_sent, QStringList({QStringLiteral("%1 s in state 0").arg(delay)}));
}

void tst_SoftwareUpdate::anOldLoggerIsNotAskedForItsHardware()
{
    run({1, 7}, QByteArray("image"));
    QVERIFY(!m_session->calls.contains(QStringLiteral("hardware")));
}

void tst_SoftwareUpdate::theImageIsSentAndTheDelayBeginsDisconnected()
{
    QTest::ignoreMessage(QtDebugMsg, "Update sent!");
    QVERIFY(run({1, 60}, QByteArray("a\0b", 3)));
    QCOMPARE(m_session->sentImage, QByteArray("a\0b", 3));
    QCOMPARE(m_sent, QStringList({QStringLiteral("30 s in state 0")}));
    QVERIFY(m_prompt->shown.isEmpty());
}

void tst_SoftwareUpdate::aTimeoutIsToldAndDisconnects()
{
    m_session->acknowledgesUpdate = false;
    QVERIFY(!run({1, 60}, QByteArray("image")));
    QCOMPARE(m_prompt->shown, QStringList({QStringLiteral("Timeout|Timeout sending update.")}));
    QCOMPARE(m_session->state(), APP_STA_DISCONN);
    QVERIFY(m_sent.isEmpty());
}

void tst_SoftwareUpdate::aMissingImageIsToldAndDisconnects()
{
    QVERIFY(!run({1, 60}, std::nullopt));
    QCOMPARE(m_prompt->shown.size(), 1);
    QVERIFY(m_prompt->shown.first().startsWith(QStringLiteral("Software-Update|")));
    QVERIFY(!m_session->calls.contains(QStringLiteral("update")));
    QCOMPARE(m_session->state(), APP_STA_DISCONN);
    QVERIFY(m_sent.isEmpty());
}

void tst_SoftwareUpdate::anImageFileIsReadWhole()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("update.enc"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(QByteArray(100'000, '\xAA')), qint64(100'000));
    file.close();
    const auto image = updateimage::readFrom(path);
    QVERIFY(image.has_value());
    QCOMPARE(*image, QByteArray(100'000, '\xAA'));
}

void tst_SoftwareUpdate::aMissingEmptyOrGiantFileIsNoImage()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("update.enc"));
    QVERIFY(!updateimage::readFrom(path).has_value());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!updateimage::readFrom(path).has_value());
    QVERIFY(file.resize(updateimage::maxBytes + 1));
    QVERIFY(!updateimage::readFrom(path).has_value());
}

QTEST_GUILESS_MAIN(tst_SoftwareUpdate)
#include "tst_softwareupdate.moc"
