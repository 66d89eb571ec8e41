#include "app/ui/dialogdelaydialog.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class tst_DialogDelayDialog : public QObject
{
    Q_OBJECT

private slots:
    void titleAndCountAreShown();
    void theEndIsToldOnceAfterTheSeconds();
    void endingTheWaitTellsNoEnd();

private:
    static QString label(const DialogDelayDialog &dialog, const char *name)
    {
        return dialog.findChild<QLabel *>(QLatin1String(name))->text();
    }
    // Lets seconds pass at once.
    static void tick(DialogDelayDialog &dialog, int seconds)
    {
        for (int i = 0; i < seconds; ++i)
            QVERIFY(QMetaObject::invokeMethod(&dialog, "countDown"));
    }
};

void tst_DialogDelayDialog::titleAndCountAreShown()
{
    DialogDelayDialog dialog(nullptr, 30, QStringLiteral("Update sent!"),
                             QStringLiteral("Update sent, reconnecting in "));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Update sent!"));
    QCOMPARE(label(dialog, "label_title"), QStringLiteral("Update sent!"));
    QCOMPARE(label(dialog, "label_msg"), QStringLiteral("Update sent, reconnecting in  30."));
    tick(dialog, 1);
    QCOMPARE(label(dialog, "label_msg"), QStringLiteral("Update sent, reconnecting in  29."));
}

void tst_DialogDelayDialog::theEndIsToldOnceAfterTheSeconds()
{
    DialogDelayDialog dialog(nullptr, 1, QStringLiteral("title"), QStringLiteral("text"));
    QSignalSpy expired(&dialog, &DialogDelayDialog::signal_delay_expired);
    QVERIFY(expired.wait(5000)); // by its own timer
    QCOMPARE(label(dialog, "label_msg"), QStringLiteral("text 0."));
    QVERIFY(!expired.wait(1500));
    QCOMPARE(expired.count(), 1);
}

void tst_DialogDelayDialog::endingTheWaitTellsNoEnd()
{
    DialogDelayDialog dialog(nullptr, 1, QStringLiteral("title"), QStringLiteral("text"));
    QSignalSpy expired(&dialog, &DialogDelayDialog::signal_delay_expired);
    const QSignalSpy rejected(&dialog, &DialogDelayDialog::rejected);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QCOMPARE(rejected.count(), 1);
    QVERIFY(!expired.wait(1500));
}

QTEST_MAIN(tst_DialogDelayDialog)
#include "tst_dialogdelaydialog.moc"
