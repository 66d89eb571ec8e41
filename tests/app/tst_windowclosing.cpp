#include "MDF4Conversion/views/dialogconverter.h"
#include "app/ui/runningwork.h"
#include "tests/app/windowbench.h"

#include <QDialog>
#include <QTest>

namespace {

// In place of a window that works.
class DialogWithWork : public QDialog, public RunningWork
{
public:
    DialogWithWork(const QString &work, QWidget *window)
        : QDialog(window)
        , m_work(work)
    {}

    QString runningWork() const override { return m_work; }
    void setWork(const QString &work) { m_work = work; }

private:
    QString m_work;
};

} // namespace

// What closing the main window means for the work of its dialogs.
class tst_WindowClosing : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_bench = std::make_unique<WindowBench>();
        m_bench->window().show();
    }
    void cleanup() { m_bench.reset(); }

    void withoutWorkNothingIsAsked();
    void whatRunsIsNamedInTheQuestion();
    void noKeepsTheWindowAndItsConnection();
    void yesCloses();
    void workThatBeganDuringTheQuestionIsAskedForAnew();
    void progressDuringTheQuestionIsNotAskedForAnew();
    void aConversionThatRunsIsAskedFor();

private:
    DialogWithWork *addWork(const char *text)
    {
        return new DialogWithWork(QString::fromLatin1(text), &m_bench->window());
    }

    std::unique_ptr<WindowBench> m_bench;
};

void tst_WindowClosing::withoutWorkNothingIsAsked()
{
    addWork("");
    QVERIFY(m_bench->window().close());
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_WindowClosing::whatRunsIsNamedInTheQuestion()
{
    addWork("Files: 2 of 3.");
    addWork("");
    addWork("Conversions: 1 of 5.");
    m_bench->window().close();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Close program|Files: 2 of 3.\nConversions: 1 of 5.\n\n"
                                         "Close the program and end this work? Files that aren't "
                                         "whole are removed.")}));
}

void tst_WindowClosing::noKeepsTheWindowAndItsConnection()
{
    m_bench->connectByButton(false);
    addWork("Files: 2 of 3.");
    const AppSta_t state = m_bench->controller.appState();
    QVERIFY(state != APP_STA_DISCONN);
    QVERIFY(!m_bench->window().close());
    QVERIFY(m_bench->window().isVisible());
    QCOMPARE(m_bench->controller.appState(), state);
}

void tst_WindowClosing::yesCloses()
{
    addWork("Files: 2 of 3.");
    m_bench->prompt.answer = true;
    QVERIFY(m_bench->window().close());
    QVERIFY(!m_bench->window().isVisible());
}

// As when a download ends and its conversion begins.
void tst_WindowClosing::workThatBeganDuringTheQuestionIsAskedForAnew()
{
    DialogWithWork *download = addWork("Files: 1 of 3.");
    m_bench->prompt.answer = true;
    m_bench->prompt.duringABox = [this, download] {
        m_bench->prompt.answer = m_bench->prompt.shown.size() == 1;
        if (!m_bench->prompt.answer)
            return;
        download->setWork(QString());
        addWork("Conversions: 3 of 3.");
    };
    QVERIFY(!m_bench->window().close());
    QCOMPARE(m_bench->prompt.shown.size(), 2);
    QVERIFY(m_bench->prompt.shown.last().startsWith(
        QStringLiteral("Close program|Conversions: 3 of 3.\n\n")));
}

void tst_WindowClosing::progressDuringTheQuestionIsNotAskedForAnew()
{
    DialogWithWork *download = addWork("Files: 2 of 3.");
    m_bench->prompt.answer = true;
    m_bench->prompt.duringABox = [download] {
        download->setWork(QStringLiteral("Files: 1 of 3."));
    };
    QVERIFY(m_bench->window().close());
    QCOMPARE(m_bench->prompt.shown.size(), 1);
}

void tst_WindowClosing::aConversionThatRunsIsAskedFor()
{
    auto *dialog = DialogConverter::open({QStringLiteral("a.rld"), QStringLiteral("b.rld")},
                                         m_bench->folder.path(), ConversionGlobal::MDF4,
                                         m_bench->prompt, &m_bench->window());
    QVERIFY(!m_bench->window().close());
    QCOMPARE(m_bench->prompt.shown.size(), 1);
    QVERIFY(m_bench->prompt.shown.first().startsWith(QStringLiteral("Close program|")
                                                     + dialog->runningWork()));
}

QTEST_MAIN(tst_WindowClosing)
#include "tst_windowclosing.moc"
