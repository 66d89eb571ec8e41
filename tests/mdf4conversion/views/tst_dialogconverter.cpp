#include "MDF4Conversion/views/dialogconverter.h"
#include "tests/mdf4conversion/views/converterbench.h"

#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>
#include <QUrl>

#include <memory>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

const char finishedWell[] = "Conversion(s) finished!|All conversion(s) finished, no errors were "
                            "detected.";
const char finishedBadly[] = "Conversion(s) finished!|Errors where detected during conversion, "
                             "please check status-tab for details";

using Formats = ConversionGlobal::OutputFormatFlags;

} // namespace

class tst_DialogConverter : public QObject
{
    Q_OBJECT

public slots:
    void noteUrl(const QUrl &url) { m_url = url; }

private slots:
    void init() { m_bench = std::make_unique<ConverterBench>(); }
    void cleanup()
    {
        m_dialog.reset();
        m_bench.reset();
    }

    void theTitleNamesTheFormats();
    void unknownFormatsAreWarnedOf();
    void eachPairOfFileAndFormatHasAnEntry();
    void onlyTheChosenConversionIsShown();
    void eachKindOfConversionHasItsTree_data();
    void eachKindOfConversionHasItsTree();
    void thePollTimerIsASingleShotOf100ms();

    void allConversionsRunAtOnce();
    void inASequenceOneRunsAfterTheOther();
    void theViewFollowsTheSequence();
    void okWaitsForTheEnd();
    void filesOfOneBaseNameGetDistinctNames();
    void errorsAreToldAtTheEnd();
    void aBatchHasABarOfItsOwn();
    void anEmptyBatchEnds();

    void cancellingEndsAllConversions();
    void cancellingASequenceStartsNoFurther();
    void whatNeverStartedIsShownAsCancelled();
    void aBatchOfOneIsShownAsCancelled();
    void closingBehindCancelAsksNothing();
    void rejectingAsksFirst();
    void rejectingCancels();
    void theEndOfTheBatchWithdrawsTheQuestion();
    void whatHasEndedIsClosedWithoutAQuestion();
    void theQuestionCountsWhatHasNotEnded();
    void closingWhileRunningLeavesNothing();
    void anOpenedDialogDeletesItself();

    void theOutputFolderIsOpened();
    void aFolderThatCanNotBeOpenedIsTold();
    void timesAndRateOfTheBatchAreShown();
    void theMessagesShownAreCopied();
    void everyControlIsExplained();

private:
    void make(const QStringList &logs, Formats formats, bool sequential)
    {
        m_dialog = std::make_unique<DialogConverter>(logs, m_bench->outputDir(), sequential,
                                                     formats, m_bench->prompt);
    }
    bool ends()
    {
        return QTest::qWaitFor([this] { return !m_bench->prompt.shown.isEmpty(); },
                               ConverterBench::timeout_ms);
    }
    // The stand-ins of a.rld and b.rld have begun.
    bool bothGrow() const
    {
        return QFile::exists(m_bench->growing("a.blf")) && QFile::exists(m_bench->growing("b.blf"));
    }
    template <class Widget>
    Widget *find(const char *name) const
    {
        return m_dialog->findChild<Widget *>(text(name));
    }
    QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    QComboBox *files() const { return find<QComboBox>("comboBoxFiles"); }
    QString label() const { return find<QLabel>("label_status")->text(); }
    QList<WidgetConverterBase *> widgets() const
    {
        return m_dialog->findChildren<WidgetConverterBase *>();
    }
    QString states() const
    {
        QString states;
        for (const WidgetConverterBase *widget : widgets())
            states += QString::number(widget->state());
        return states;
    }

    std::unique_ptr<ConverterBench> m_bench;
    std::unique_ptr<DialogConverter> m_dialog;
    QUrl m_url;
};

void tst_DialogConverter::theTitleNamesTheFormats()
{
    make({}, ConversionGlobal::MDF4 | ConversionGlobal::BLF, true);
    QCOMPARE(m_dialog->windowTitle(), text("RLD Converter Converting to .blf .mf4 "));
}

void tst_DialogConverter::unknownFormatsAreWarnedOf()
{
    QTest::ignoreMessage(QtWarningMsg, "DialogConverter initialized badly!");
    make({m_bench->makeLog(text("a.rld"))}, Formats(QFlag(0x100)), true);
    QCOMPARE(files()->count(), 0);
    make({m_bench->makeLog(text("a.rld"))}, Formats(QFlag(0xF0)), true);
    QCOMPARE(files()->count(), 0);
}

void tst_DialogConverter::eachPairOfFileAndFormatHasAnEntry()
{
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))},
         ConversionGlobal::MDF4 | ConversionGlobal::ASC, true);
    QStringList entries;
    for (int i = 0; i < files()->count(); ++i)
        entries += files()->itemText(i);
    QCOMPARE(entries.join(QLatin1Char(' ')), text("a a b b"));
    QStringList outputs;
    for (const WidgetConverterBase *widget : widgets())
        outputs += widget->conversion().outputFile.section(QLatin1Char('/'), -1);
    QCOMPARE(outputs.join(QLatin1Char(' ')), text("a.mf4 a.asc b.mf4 b.asc"));
}

void tst_DialogConverter::onlyTheChosenConversionIsShown()
{
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::MDF4,
         true);
    QVERIFY(!widgets()[0]->isHidden());
    QVERIFY(widgets()[1]->isHidden());
    files()->setCurrentIndex(1);
    QVERIFY(widgets()[0]->isHidden());
    QVERIFY(!widgets()[1]->isHidden());
}

void tst_DialogConverter::eachKindOfConversionHasItsTree_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("columns");
    QTest::newRow("MDF4") << int(ConversionGlobal::MDF4) << text("Signals")
                          << text("Signal Count Status");
    QTest::newRow("BLF") << int(ConversionGlobal::BLF) << text("File Statistics")
                         << text("Field Count Status");
}

void tst_DialogConverter::eachKindOfConversionHasItsTree()
{
    QFETCH(int, format);
    QFETCH(QString, title);
    QFETCH(QString, columns);
    make({m_bench->makeLog(text("a.rld"))}, Formats(QFlag(format)), true);
    QCOMPARE(find<QTabWidget>("tabWidget")->tabText(1), title);
    const QTreeWidgetItem *head = find<QTreeWidget>("treeWidget")->headerItem();
    QStringList shown;
    for (int column = 0; column < head->columnCount(); ++column)
        shown += head->text(column);
    QCOMPARE(shown.join(QLatin1Char(' ')), columns);
}

void tst_DialogConverter::thePollTimerIsASingleShotOf100ms()
{
    make({m_bench->makeLog(text("a.rld"))}, ConversionGlobal::MDF4, true);
    QTimer *timer = nullptr;
    for (QTimer *child : m_dialog->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly))
        timer = child;
    QVERIFY(timer);
    QVERIFY(timer->isSingleShot());
    QCOMPARE(timer->interval(), 100);
    QVERIFY(!timer->isActive());
    m_dialog->start();
    QVERIFY(timer->isActive());
    QVERIFY(ends());
    QVERIFY(!timer->isActive());
}

void tst_DialogConverter::allConversionsRunAtOnce()
{
    ConverterBench::setStandIn("endless");
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::BLF,
         false);
    m_dialog->start();
    QCOMPARE(label(), text("...converting 2 files..."));
    QVERIFY(QTest::qWaitFor([this] { return bothGrow(); }, ConverterBench::timeout_ms));
}

void tst_DialogConverter::inASequenceOneRunsAfterTheOther()
{
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::MDF4,
         true);
    m_dialog->start();
    QCOMPARE(label(), text("...converting file 1 of 2..."));
    QCOMPARE(states(), text("20"));
    QVERIFY(QTest::qWaitFor([this] { return label() == text("...converting file 2 of 2..."); },
                            ConverterBench::timeout_ms));
    QCOMPARE(int(widgets()[0]->state()), 3);
    QVERIFY(ends());
    QCOMPARE(label(), text("...conversion of 2 file(s) finished..."));
    QCOMPARE(m_bench->left(), text("a.mf4 b.mf4"));
    QCOMPARE(m_bench->prompt.shown, QStringList(text(finishedWell)));
}

void tst_DialogConverter::theViewFollowsTheSequence()
{
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::MDF4,
         true);
    m_dialog->start();
    QVERIFY(ends());
    QCOMPARE(files()->currentIndex(), 1);
    QVERIFY(!widgets()[1]->isHidden());
}

void tst_DialogConverter::okWaitsForTheEnd()
{
    make({m_bench->makeLog(text("a.rld"))}, ConversionGlobal::MDF4, false);
    m_dialog->start();
    QVERIFY(!button("pushButtonOk")->isEnabled());
    QVERIFY(button("pushButtonCancel")->isEnabled());
    QVERIFY(ends());
    QVERIFY(button("pushButtonOk")->isEnabled());
    QVERIFY(!button("pushButtonCancel")->isEnabled());
    button("pushButtonOk")->click();
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
}

void tst_DialogConverter::filesOfOneBaseNameGetDistinctNames()
{
    make({m_bench->makeLog(text("x/a.rld")), m_bench->makeLog(text("y/a.rld"))},
         ConversionGlobal::MDF4 | ConversionGlobal::BLF, false);
    m_dialog->start();
    QVERIFY(ends());
    QCOMPARE(m_bench->left(), text("a.blf a.mf4 a_1.mf4"));
    QCOMPARE(m_bench->prompt.shown, QStringList(text(finishedWell)));
}

void tst_DialogConverter::errorsAreToldAtTheEnd()
{
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"), 5, "rubbish"),
          m_bench->makeLog(text("c.rld"))},
         ConversionGlobal::MDF4, true);
    m_dialog->start();
    QVERIFY(ends());
    QCOMPARE(states(), text("343"));
    QCOMPARE(m_bench->prompt.shown, QStringList(text(finishedBadly)));
    QCOMPARE(files()->currentIndex(), 1);
    QVERIFY(files()->itemIcon(0).isNull());
    QVERIFY(!files()->itemIcon(1).isNull());
}

void tst_DialogConverter::aBatchHasABarOfItsOwn()
{
    make({m_bench->makeLog(text("a.rld"))}, ConversionGlobal::MDF4, true);
    QVERIFY(find<QWidget>("widget_batch")->isHidden());
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::MDF4,
         true);
    QVERIFY(!find<QWidget>("widget_batch")->isHidden());
    m_dialog->start();
    QVERIFY(ends());
    QCOMPARE(find<QProgressBar>("progressBar_batch")->value(), 100);
    QVERIFY(find<QLabel>("label_batch")->text().startsWith(text("ended after ")));
}

void tst_DialogConverter::anEmptyBatchEnds()
{
    make({}, ConversionGlobal::MDF4, true);
    m_dialog->start();
    QVERIFY(QTest::qWaitFor([this] { return button("pushButtonOk")->isEnabled(); }));
    QCOMPARE(label(), text("...conversion of 0 file(s) finished..."));
}

void tst_DialogConverter::cancellingEndsAllConversions()
{
    ConverterBench::setStandIn("endless");
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::BLF,
         false);
    m_dialog->start();
    QVERIFY(QTest::qWaitFor([this] { return bothGrow(); }, ConverterBench::timeout_ms));
    button("pushButtonCancel")->click();
    QCOMPARE(states(), text("55"));
    QVERIFY(ends());
    QCOMPARE(m_bench->prompt.shown, QStringList(text(finishedBadly)));
    QCOMPARE(m_bench->left(), QString());
}

void tst_DialogConverter::cancellingASequenceStartsNoFurther()
{
    make({m_bench->makeLog(text("a.rld"), 150000), m_bench->makeLog(text("b.rld"))},
         ConversionGlobal::MDF4, true);
    m_dialog->start();
    button("pushButtonCancel")->click();
    QVERIFY(ends());
    QCOMPARE(states(), text("55"));
    QCOMPARE(widgets()[1]->messages(), QString());
    QVERIFY(find<QProgressBar>("progressBar_batch")->value() < 100);
    QVERIFY(find<QLabel>("label_batch")->text().startsWith(text("cancelled after ")));
    QCOMPARE(label(), text("...conversion of 2 file(s) finished..."));
    QCOMPARE(m_bench->left(), QString());
}

void tst_DialogConverter::whatNeverStartedIsShownAsCancelled()
{
    make({m_bench->makeLog(text("a.rld"), 150000), m_bench->makeLog(text("b.rld"))},
         ConversionGlobal::MDF4 | ConversionGlobal::BLF, true);
    m_dialog->start();
    button("pushButtonCancel")->click();
    QVERIFY(ends());
    QCOMPARE(m_bench->prompt.shown.size(), 1); // no question
    QStringList figures;
    for (const WidgetConverterBase *widget : widgets())
        figures += widget->findChild<QLabel *>(text("label_figures"))->text();
    QVERIFY2(figures.first().startsWith(text("cancelled after ")), qPrintable(figures.first()));
    QCOMPARE(figures.mid(1),
             QStringList({text("cancelled"), text("cancelled"), text("cancelled")}));
}

void tst_DialogConverter::aBatchOfOneIsShownAsCancelled()
{
    make({m_bench->makeLog(text("a.rld"), 150000)}, ConversionGlobal::MDF4, true);
    m_dialog->start();
    button("pushButtonCancel")->click();
    QVERIFY(ends());
    QVERIFY(find<QLabel>("label_figures")->text().startsWith(text("cancelled after ")));
    QCOMPARE(label(), text("...conversion of 1 file(s) finished..."));
}

void tst_DialogConverter::closingBehindCancelAsksNothing()
{
    make({m_bench->makeLog(text("a.rld"), 150000)}, ConversionGlobal::MDF4, true);
    m_dialog->show();
    m_dialog->start();
    button("pushButtonCancel")->click();
    QVERIFY(!m_dialog->runningWork().isEmpty());
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_bench->prompt.shown, QStringList());
}

void tst_DialogConverter::rejectingAsksFirst()
{
    make({m_bench->makeLog(text("a.rld"), 150000), m_bench->makeLog(text("b.rld"))},
         ConversionGlobal::MDF4, true);
    m_dialog->show();
    m_dialog->start();
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    m_dialog->close();
    const QString question = text("Cancel conversion|Conversions that haven't ended: 2 of 2.\n\n"
                                  "Cancel and close this window? Files that aren't whole are "
                                  "removed.");
    QCOMPARE(m_bench->prompt.shown, QStringList({question, question}));
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(states(), text("20"));
}

void tst_DialogConverter::rejectingCancels()
{
    make({m_bench->makeLog(text("a.rld"), 150000), m_bench->makeLog(text("b.rld"))},
         ConversionGlobal::MDF4, true);
    m_dialog->start();
    m_bench->prompt.answer = true;
    m_dialog->reject();
    QCOMPARE(states(), text("55"));
    QCOMPARE(m_bench->prompt.shown.size(), 1);
    QCOMPARE(m_dialog->runningWork(), QString());
}

void tst_DialogConverter::theEndOfTheBatchWithdrawsTheQuestion()
{
    make({m_bench->makeLog(text("a.rld"))}, ConversionGlobal::MDF4, true);
    m_dialog->show();
    m_dialog->start();
    m_bench->prompt.answer = true;
    m_bench->prompt.duringABox = [this] {
        if (m_bench->prompt.shown.size() > 1)
            return; // the box that tells of the end
        QVERIFY(QTest::qWaitFor([this] { return m_bench->prompt.shown.size() == 2; },
                                ConverterBench::timeout_ms));
    };
    m_dialog->reject();
    QVERIFY(m_bench->prompt.withdrawn);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(states(), text("3"));
    QCOMPARE(m_bench->prompt.shown.value(1), text(finishedWell));
}

void tst_DialogConverter::whatHasEndedIsClosedWithoutAQuestion()
{
    make({m_bench->makeLog(text("a.rld"))}, ConversionGlobal::MDF4, true);
    QCOMPARE(m_dialog->runningWork(), QString()); // not begun
    m_dialog->show();
    m_dialog->start();
    QVERIFY(ends());
    QCOMPARE(m_dialog->runningWork(), QString());
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_bench->prompt.shown, QStringList(text(finishedWell)));
}

void tst_DialogConverter::theQuestionCountsWhatHasNotEnded()
{
    ConverterBench::setStandIn("endless");
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))},
         ConversionGlobal::MDF4 | ConversionGlobal::BLF, true);
    m_dialog->start();
    QCOMPARE(m_dialog->runningWork(), text("Conversions that haven't ended: 4 of 4."));
    QVERIFY(QTest::qWaitFor([this] { return label() == text("...converting file 2 of 4..."); },
                            ConverterBench::timeout_ms));
    QCOMPARE(m_dialog->runningWork(), text("Conversions that haven't ended: 3 of 4."));
}

void tst_DialogConverter::closingWhileRunningLeavesNothing()
{
    make({m_bench->makeLog(text("a.rld"), 150000), m_bench->makeLog(text("b.rld"), 150000)},
         ConversionGlobal::MDF4, false);
    m_dialog->start();
    QVERIFY(QTest::qWaitFor([this] { return m_bench->left().contains(text("tmp_")); }));
    m_dialog.reset();
    QCOMPARE(m_bench->left(), QString());
    QCOMPARE(m_bench->prompt.shown, QStringList());
}

void tst_DialogConverter::anOpenedDialogDeletesItself()
{
    QPointer<DialogConverter> dialog =
        DialogConverter::open({m_bench->makeLog(text("a.rld"))}, m_bench->outputDir(),
                              ConversionGlobal::MDF4, m_bench->prompt, nullptr);
    QVERIFY(dialog->isVisible());
    QVERIFY(ends());
    QCOMPARE(m_bench->left(), text("a.mf4"));
    dialog->close();
    QTRY_VERIFY(dialog.isNull());
}

void tst_DialogConverter::theOutputFolderIsOpened()
{
    make({m_bench->makeLog(text("a.rld"))}, ConversionGlobal::MDF4, true);
    QDesktopServices::setUrlHandler(text("file"), this, "noteUrl");
    button("pushButtonOpenFolder")->click();
    QDesktopServices::unsetUrlHandler(text("file"));
    QCOMPARE(m_url.toLocalFile(), m_bench->outputDir());
}

void tst_DialogConverter::aFolderThatCanNotBeOpenedIsTold()
{
    make({m_bench->makeLog(text("a.rld"))}, ConversionGlobal::MDF4, true);
    QDesktopServices::setUrlHandler(text("file"), this, "thereIsNoSuchSlot");
    button("pushButtonOpenFolder")->click();
    QDesktopServices::unsetUrlHandler(text("file"));
    QCOMPARE(m_bench->prompt.shown,
             QStringList(text("Open Folder|The folder %1 can't be opened.")
                             .arg(QDir::toNativeSeparators(m_bench->outputDir()))));
}

void tst_DialogConverter::timesAndRateOfTheBatchAreShown()
{
    ConverterBench::setStandIn("endless");
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::BLF,
         false);
    m_dialog->start();
    for (WidgetConverterBase *widget : widgets())
        widget->updateProgress(50);
    static const QRegularExpression pattern(text("^0:0\\d elapsed, 0:0\\d left, \\d+\\.\\d MB/s$"));
    const auto *figures = find<QLabel>("label_batch");
    const bool areShown =
        QTest::qWaitFor([figures] { return pattern.match(figures->text()).hasMatch(); },
                        ConverterBench::timeout_ms);
    QVERIFY2(areShown, qPrintable(figures->text()));
}

void tst_DialogConverter::theMessagesShownAreCopied()
{
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::MDF4,
         true);
    widgets()[1]->appendWarnLine(text("a &lt; b"));
    files()->setCurrentIndex(1);
    button("pushButtonCopyMessages")->click();
    QCOMPARE(QGuiApplication::clipboard()->text(), text("Warning: a < b"));
}

void tst_DialogConverter::everyControlIsExplained()
{
    make({m_bench->makeLog(text("a.rld")), m_bench->makeLog(text("b.rld"))}, ConversionGlobal::MDF4,
         true);
    QWidgetList controls{files(), find<QProgressBar>("progressBar_batch")};
    for (QPushButton *each : m_dialog->findChildren<QPushButton *>())
        controls += each;
    for (WidgetConverterBase *widget : widgets()) {
        controls += widget->findChild<QProgressBar *>();
        controls += widget->findChild<QPlainTextEdit *>();
    }
    for (const QWidget *control : controls) {
        QVERIFY2(!control->toolTip().isEmpty(), qPrintable(control->objectName()));
        QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(control->objectName()));
    }
}

QTEST_MAIN(tst_DialogConverter)
#include "tst_dialogconverter.moc"
