#include "app/ui/messageboxprompt.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

class tst_MessageBoxPrompt : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void textsAreShownAsTheyStand();
    void aReasonFollowsTheText();
    void aReasonWithoutATextStandsAlone();
    void aQuestionIsAnsweredByItsButtons_data();
    void aQuestionIsAnsweredByItsButtons();
    void returnAndEscapeMeanNo_data();
    void returnAndEscapeMeanNo();
    void returnTakesAnOfferAndEscapeRefusesIt_data() { returnAndEscapeMeanNo_data(); }
    void returnTakesAnOfferAndEscapeRefusesIt();
    void aWithdrawnQuestionMeansNo();
    void withdrawingWithoutAQuestionDoesNothing();
    void ofTwoQuestionsTheOwnersIsWithdrawn();
    void aBoxStandsInFrontOfTheDialogThatIsOpen();
    void aDialogThatGoesAwayTakesItsBoxWithIt();
    void aFileToSaveGetsItsExtension();
    void aCancelledPickerIsEmpty();

private:
    // Acts on the box that opens next.
    template <class Dialog>
    static void whenOpen(const std::function<void(Dialog &)> &action)
    {
        QTimer::singleShot(0, qApp, [action] {
            auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            const QPointer<Dialog> open(dialog);
            action(*dialog);
            if (open && open->isVisible())
                open->reject(); // after a failure, too
        });
    }

    MessageBoxPrompt m_prompt;
};

void tst_MessageBoxPrompt::textsAreShownAsTheyStand()
{
    const QString text = QStringLiteral("<b>bold</b> & <img src='file:///etc/hostname'>");
    whenOpen<QMessageBox>([&](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("title"));
        QCOMPARE(box.text(), text);
        QCOMPARE(box.textFormat(), Qt::PlainText);
        QVERIFY(box.informativeText().isEmpty());
        box.accept();
    });
    m_prompt.inform(QStringLiteral("title"), text);
}

void tst_MessageBoxPrompt::aReasonFollowsTheText()
{
    whenOpen<QMessageBox>([](QMessageBox &box) {
        QCOMPARE(box.text(), QStringLiteral("Error loading file\n\nno such file"));
        QVERIFY(!box.iconPixmap().isNull());
        box.accept();
    });
    m_prompt.warn(QStringLiteral("title"), QStringLiteral("Error loading file"),
                  QStringLiteral("no such file"));
}

void tst_MessageBoxPrompt::aReasonWithoutATextStandsAlone()
{
    whenOpen<QMessageBox>([](QMessageBox &box) {
        QCOMPARE(box.text(), QStringLiteral("no such file"));
        box.accept();
    });
    m_prompt.warn(QStringLiteral("title"), QString(), QStringLiteral("no such file"));
}

void tst_MessageBoxPrompt::aQuestionIsAnsweredByItsButtons_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void tst_MessageBoxPrompt::aQuestionIsAnsweredByItsButtons()
{
    QFETCH(bool, yes);
    whenOpen<QMessageBox>(
        [yes](QMessageBox &box) { box.button(yes ? QMessageBox::Yes : QMessageBox::No)->click(); });
    QCOMPARE(m_prompt.ask(QStringLiteral("title"), QStringLiteral("text")), yes);
}

void tst_MessageBoxPrompt::returnAndEscapeMeanNo_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("return") << int(Qt::Key_Return);
    QTest::newRow("escape") << int(Qt::Key_Escape);
}

void tst_MessageBoxPrompt::returnAndEscapeMeanNo()
{
    QFETCH(int, key);
    whenOpen<QMessageBox>(
        [key](QMessageBox &box) { QTest::keyClick(&box, static_cast<Qt::Key>(key)); });
    QVERIFY(!m_prompt.ask(QStringLiteral("title"), QStringLiteral("text")));
}

void tst_MessageBoxPrompt::returnTakesAnOfferAndEscapeRefusesIt()
{
    QFETCH(int, key);
    whenOpen<QMessageBox>(
        [key](QMessageBox &box) { QTest::keyClick(&box, static_cast<Qt::Key>(key)); });
    QCOMPARE(m_prompt.offer(QStringLiteral("title"), QStringLiteral("text")),
             key == Qt::Key_Return);
}

void tst_MessageBoxPrompt::aWithdrawnQuestionMeansNo()
{
    whenOpen<QMessageBox>([this](QMessageBox &box) {
        m_prompt.withdrawQuestion(this);
        QVERIFY(!box.isVisible());
    });
    QVERIFY(!m_prompt.askRevocably(this, QStringLiteral("title"), QStringLiteral("text")));
}

void tst_MessageBoxPrompt::withdrawingWithoutAQuestionDoesNothing()
{
    m_prompt.withdrawQuestion(this);
    aWithdrawnQuestionMeansNo();
    m_prompt.withdrawQuestion(this);
}

void tst_MessageBoxPrompt::ofTwoQuestionsTheOwnersIsWithdrawn()
{
    const int first = 0;
    const int second = 0;
    bool isSecondYes = false;
    whenOpen<QMessageBox>([&](QMessageBox &firstBox) {
        whenOpen<QMessageBox>([&](QMessageBox &secondBox) {
            QCOMPARE(secondBox.text(), QStringLiteral("second"));
            m_prompt.withdrawQuestion(&first);
            QVERIFY(!firstBox.isVisible());
            QVERIFY(secondBox.isVisible());
            secondBox.button(QMessageBox::Yes)->click();
        });
        isSecondYes =
            m_prompt.askRevocably(&second, QStringLiteral("title"), QStringLiteral("second"));
    });
    QVERIFY(!m_prompt.askRevocably(&first, QStringLiteral("title"), QStringLiteral("first")));
    QVERIFY(isSecondYes);
}

void tst_MessageBoxPrompt::aBoxStandsInFrontOfTheDialogThatIsOpen()
{
    QWidget window;
    m_prompt.setWindow(&window);
    QDialog dialog(&window);
    dialog.open();
    const QWidget *parent = nullptr;
    whenOpen<QMessageBox>([&](QMessageBox &box) {
        parent = box.parentWidget();
        box.accept();
    });
    m_prompt.inform(QStringLiteral("title"), QStringLiteral("text"));
    QCOMPARE(parent, &dialog);
}

void tst_MessageBoxPrompt::aDialogThatGoesAwayTakesItsBoxWithIt()
{
    auto *dialog = new QDialog;
    dialog->open();
    whenOpen<QMessageBox>([&](QMessageBox &) { delete dialog; });
    QVERIFY(!m_prompt.ask(QStringLiteral("title"), QStringLiteral("text")));
    auto *other = new QDialog;
    other->open();
    whenOpen<QMessageBox>([&](QMessageBox &) { delete other; });
    m_prompt.inform(QStringLiteral("title"), QStringLiteral("text"));
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_MessageBoxPrompt::aFileToSaveGetsItsExtension()
{
    const QTemporaryDir folder;
    whenOpen<QFileDialog>([](QFileDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Save configuration"));
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
            ->setText(QStringLiteral("mine"));
        QVERIFY(QMetaObject::invokeMethod(&dialog, "accept"));
    });
    QCOMPARE(m_prompt.pickFileToSave(QStringLiteral("Save configuration"), folder.path(),
                                     QStringLiteral("config (*.zdc)")),
             folder.filePath(QStringLiteral("mine.zdc")));
}

void tst_MessageBoxPrompt::aCancelledPickerIsEmpty()
{
    whenOpen<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
    QVERIFY(m_prompt.pickFileToSave(QStringLiteral("title"), {}, QStringLiteral("config (*.zdc)"))
                .isEmpty());
}

QTEST_MAIN(tst_MessageBoxPrompt)
#include "tst_messageboxprompt.moc"
