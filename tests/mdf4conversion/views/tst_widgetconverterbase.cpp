#include "MDF4Conversion/views/widgetconverterbase.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTemporaryFile>
#include <QTest>
#include <QTextBlock>
#include <QTreeWidget>

#include <memory>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

// Runs nothing, and counts what the base asks of it.
class IdleConverter : public WidgetConverterBase
{
public:
    explicit IdleConverter(const QString &inputFile = text("in.rld"))
        : WidgetConverterBase(PlannedConversion{ConversionGlobal::MDF4, inputFile,
                                                text("/out/in.mf4"), text("/out/tmp_1")},
                              {text("Signals"), text("Signal"), text("what is counted")})
    {}

    void start() override { startClock(); }
    void cancel() override {}
    bool isFinished() const override { return finished; }
    void poll() override {}
    void disconnectWarnings() override { ++warningsDisconnected; }
    void disconnectStatus() override { ++statusDisconnected; }
    quint8 state() const override { return endState; }
    QString rowStatus(const QString &count) const override
    {
        return count == QLatin1String("0") ? text("nothing") : QString();
    }

    bool finished = false;
    quint8 endState = conversionstate::finished;
    int warningsDisconnected = 0;
    int statusDisconnected = 0;
};

using Tree = WidgetConverterBase::Tree;

} // namespace

class tst_WidgetConverterBase : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_widget = std::make_unique<IdleConverter>(); }

    void linesHaveTheirPrefixAndColour_data();
    void linesHaveTheirPrefixAndColour();
    void lineBreaksAreStripped();
    void entitiesAreShownAsCharacters();
    void percentSignsAreKept();
    void eachKindIsKeptUpToItsLimit_data();
    void eachKindIsKeptUpToItsLimit();
    void theNoticeOfALimitIsAWarningInBlue();
    void bothPlainSlotsShareACounter();
    void theStatusLimitDisconnectsOnce();
    void theWarningLimitDisconnectsOnce();

    void theTreeHasItsTitleAndColumns();
    void theTreeShowsGroupsRowsAndCounts();
    void aTreeOfTheSameNamesKeepsItsRows();
    void aTreeOfOtherNamesIsBuiltAnew();
    void aTreeIsExpandedOnceAskedFor();
    void aClosedGroupStaysClosed();

    void progressIsShownUpTo100();
    void timesAndRateAreShownWhileItRuns();
    void figuresStandStillAtTheEnd();
    void figuresTellHowItEnded_data();
    void figuresTellHowItEnded();
    void whatHasNotStartedIsCancelledWithTheBatch();

private:
    template <class Widget>
    Widget *find(const char *name) const
    {
        return m_widget->findChild<Widget *>(text(name));
    }
    QPlainTextEdit *view() const { return find<QPlainTextEdit>("plainTextEdit_messages"); }
    QTreeWidget *tree() const { return find<QTreeWidget>("treeWidget"); }
    QStringList lines() const { return m_widget->messages().split(QLatin1Char('\n')); }
    void append(const QString &slot, const QString &line);

    std::unique_ptr<IdleConverter> m_widget;
};

void tst_WidgetConverterBase::append(const QString &slot, const QString &line)
{
    if (slot == text("bold"))
        m_widget->appendColoredLineBold(text("Bold"), line, text("red"));
    else if (slot == text("plain"))
        m_widget->appendColoredLine(line, text("red"));
    else if (slot == text("status"))
        m_widget->appendNfoLine(line);
    else if (slot == text("warning"))
        m_widget->appendWarnLine(line);
    else
        m_widget->appendErrLine(line);
}

void tst_WidgetConverterBase::linesHaveTheirPrefixAndColour_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("bold") << text("Bold text") << QColor(Qt::red);
    QTest::newRow("plain") << text("text") << QColor(Qt::red);
    QTest::newRow("status") << text("Status: text") << QColor(Qt::black);
    QTest::newRow("warning") << text("Warning: text") << QColor(Qt::blue);
    QTest::newRow("error") << text("Error: text") << QColor(Qt::red);
}

void tst_WidgetConverterBase::linesHaveTheirPrefixAndColour()
{
    QFETCH(QString, shown);
    QFETCH(QColor, colour);
    append(text(QTest::currentDataTag()), text("text"));
    QCOMPARE(lines(), QStringList(shown));
    QTextCursor cursor(view()->document());
    cursor.setPosition(1);
    const bool hasPrefix = shown != text("text");
    QCOMPARE(cursor.charFormat().fontWeight() == QFont::Bold, hasPrefix);
    cursor.movePosition(QTextCursor::End);
    QCOMPARE(cursor.charFormat().foreground().color(), colour);
    QVERIFY(cursor.charFormat().fontWeight() != QFont::Bold);
}

void tst_WidgetConverterBase::lineBreaksAreStripped()
{
    m_widget->appendNfoLine(text("one\r\ntwo\nthree"));
    QCOMPARE(lines(), QStringList(text("Status: onetwothree")));
}

void tst_WidgetConverterBase::entitiesAreShownAsCharacters()
{
    m_widget->appendNfoLine(text("-&gt;(a &lt; b)"));
    QCOMPARE(lines(), QStringList(text("Status: ->(a < b)")));
}

void tst_WidgetConverterBase::percentSignsAreKept()
{
    m_widget->appendNfoLine(text("100%1 %2 %3"));
    QCOMPARE(lines(), QStringList(text("Status: 100%1 %2 %3")));
}

void tst_WidgetConverterBase::eachKindIsKeptUpToItsLimit_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<QString>("notice");
    QTest::newRow("plain") << 10000
                           << text("Line Limit reached, no further messages are "
                                   "reported....");
    QTest::newRow("bold") << 10000
                          << text("Line Limit reached, no further messages are "
                                  "reported...");
    QTest::newRow("status") << 25000
                            << text("Status limit reached, no further Status messages are "
                                    "reported...");
    QTest::newRow("warning") << 1000
                             << text("Warning Limit reached, no further Warnings are "
                                     "reported...");
    QTest::newRow("error") << 100 << text("Error Limit reached, no further Errors are reported...");
}

void tst_WidgetConverterBase::eachKindIsKeptUpToItsLimit()
{
    QFETCH(int, limit);
    QFETCH(QString, notice);
    const QString slot = text(QTest::currentDataTag());
    for (int line = 1; line <= limit + 3; ++line)
        append(slot, QString::number(line));
    const QStringList shown = lines();
    QCOMPARE(shown.size(), limit + 1);
    QVERIFY(shown[limit - 1].endsWith(QString::number(limit)));
    QCOMPARE(shown[limit], text("Warning: ") + notice);
}

void tst_WidgetConverterBase::theNoticeOfALimitIsAWarningInBlue()
{
    for (int line = 0; line < 100; ++line)
        m_widget->appendErrLine(text("x"));
    QTextCursor cursor(view()->document()->lastBlock());
    cursor.movePosition(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
    QCOMPARE(cursor.selectedText(), text("Warning"));
    QCOMPARE(int(cursor.charFormat().fontWeight()), int(QFont::Bold));
    cursor.movePosition(QTextCursor::End);
    QCOMPARE(cursor.charFormat().foreground().color(), QColor(Qt::blue));
    QVERIFY(cursor.charFormat().fontWeight() != QFont::Bold);
}

void tst_WidgetConverterBase::bothPlainSlotsShareACounter()
{
    for (int line = 0; line < 9999; ++line)
        append(text("plain"), text("x"));
    append(text("bold"), text("the last"));
    append(text("plain"), text("one too many"));
    QCOMPARE(lines().size(), 10001);
    QCOMPARE(lines()[9999], text("Bold the last"));
}

void tst_WidgetConverterBase::theStatusLimitDisconnectsOnce()
{
    for (int line = 0; line < 24999; ++line)
        m_widget->appendNfoLine(text("x"));
    QCOMPARE(m_widget->statusDisconnected, 0);
    for (int line = 0; line < 3; ++line)
        m_widget->appendNfoLine(text("x"));
    QCOMPARE(m_widget->statusDisconnected, 1);
    QCOMPARE(m_widget->warningsDisconnected, 0);
}

void tst_WidgetConverterBase::theWarningLimitDisconnectsOnce()
{
    for (int line = 0; line < 1002; ++line)
        m_widget->appendWarnLine(text("x"));
    QCOMPARE(m_widget->warningsDisconnected, 1);
    QCOMPARE(m_widget->statusDisconnected, 0);
}

void tst_WidgetConverterBase::theTreeHasItsTitleAndColumns()
{
    const auto *tabs = find<QTabWidget>("tabWidget");
    QCOMPARE(tabs->tabText(0), text("Status"));
    QCOMPARE(tabs->tabText(1), text("Signals"));
    QCOMPARE(tree()->headerItem()->text(0), text("Signal"));
    QCOMPARE(tree()->headerItem()->text(1), text("Count"));
    QCOMPARE(tree()->headerItem()->text(2), text("Status"));
}

void tst_WidgetConverterBase::theTreeShowsGroupsRowsAndCounts()
{
    m_widget->updateTree(Tree{{text("A"), {{text("a1"), text("5")}, {text("a2"), text("0")}}}},
                         true);
    QCOMPARE(tree()->topLevelItemCount(), 1);
    const QTreeWidgetItem *group = tree()->topLevelItem(0);
    QCOMPARE(group->text(0), text("A"));
    QVERIFY(group->isExpanded());
    QCOMPARE(group->childCount(), 2);
    QCOMPARE(group->child(0)->text(0), text("a1"));
    QCOMPARE(group->child(0)->text(1), text("5"));
    QCOMPARE(group->child(0)->text(2), QString());
    QCOMPARE(group->child(1)->text(2), text("nothing"));
}

void tst_WidgetConverterBase::aTreeOfTheSameNamesKeepsItsRows()
{
    m_widget->updateTree(Tree{{text("A"), {{text("a1"), text("0")}}}}, true);
    QTreeWidgetItem *row = tree()->topLevelItem(0)->child(0);
    tree()->setCurrentItem(row);
    tree()->topLevelItem(0)->setExpanded(false);
    m_widget->updateTree(Tree{{text("A"), {{text("a1"), text("7")}}}});
    QCOMPARE(tree()->topLevelItem(0)->child(0), row);
    QCOMPARE(row->text(1), text("7"));
    QVERIFY(!tree()->topLevelItem(0)->isExpanded());
}

void tst_WidgetConverterBase::aTreeOfOtherNamesIsBuiltAnew()
{
    m_widget->updateTree(Tree{{text("A"), {{text("a1"), text("1")}}}});
    m_widget->updateTree(
        Tree{{text("A"), {{text("a1"), text("1")}}}, {text("B"), {{text("b1"), text("2")}}}});
    QCOMPARE(tree()->topLevelItemCount(), 2);
    QCOMPARE(tree()->topLevelItem(1)->child(0)->text(1), text("2"));
}

void tst_WidgetConverterBase::aTreeIsExpandedOnceAskedFor()
{
    const Tree counts{{text("A"), {{text("a1"), text("1")}}}};
    m_widget->updateTree(counts, false);
    QVERIFY(!tree()->topLevelItem(0)->isExpanded());
    m_widget->updateTree(counts, true); // of the same names
    QVERIFY(tree()->topLevelItem(0)->isExpanded());
    m_widget->updateTree(Tree{{text("B"), {{text("b1"), text("1")}}}}, true);
    QVERIFY(tree()->topLevelItem(0)->isExpanded());
}

void tst_WidgetConverterBase::aClosedGroupStaysClosed()
{
    const Tree counts{{text("A"), {{text("a1"), text("1")}}}, {text("B"), {}}};
    m_widget->updateTree(counts, true);
    tree()->topLevelItem(0)->setExpanded(false);
    m_widget->updateTree(counts, true);
    QVERIFY(!tree()->topLevelItem(0)->isExpanded());
}

void tst_WidgetConverterBase::progressIsShownUpTo100()
{
    m_widget->updateProgress(42);
    QCOMPARE(find<QProgressBar>("progressBar")->value(), 42);
    m_widget->updateProgress(4000000000U);
    QCOMPARE(find<QProgressBar>("progressBar")->value(), 100);
}

void tst_WidgetConverterBase::timesAndRateAreShownWhileItRuns()
{
    QTemporaryFile log;
    QVERIFY(log.open() && log.resize(100'000'000));
    m_widget = std::make_unique<IdleConverter>(log.fileName());
    m_widget->start();
    m_widget->updateProgress(50);
    const auto *label = find<QLabel>("label_figures");
    static const QRegularExpression pattern(
        text("^0:0\\d elapsed, 0:0\\d left, [1-9]\\d*\\.\\d MB/s$"));
    const bool isShown = QTest::qWaitFor([this, label] {
        m_widget->refreshFigures();
        return pattern.match(label->text()).hasMatch();
    });
    QVERIFY2(isShown, qPrintable(label->text()));
}

void tst_WidgetConverterBase::figuresStandStillAtTheEnd()
{
    const auto *label = find<QLabel>("label_figures");
    QCOMPARE(label->text(), text("waiting"));
    m_widget->start();
    m_widget->refreshFigures();
    QVERIFY2(label->text().contains(text("elapsed")), qPrintable(label->text()));
    m_widget->finished = true;
    m_widget->refreshFigures();
    QVERIFY2(label->text().startsWith(text("finished in ")), qPrintable(label->text()));
    QCOMPARE(m_widget->shareDone(), 1.0);
}

void tst_WidgetConverterBase::figuresTellHowItEnded_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("start");
    QTest::newRow("well") << 3 << text("finished in 0:0");
    QTest::newRow("with errors") << 4 << text("ended with errors after 0:0");
    QTest::newRow("cancelled") << 5 << text("cancelled after 0:0");
}

void tst_WidgetConverterBase::figuresTellHowItEnded()
{
    QFETCH(int, state);
    QFETCH(QString, start);
    m_widget->start();
    m_widget->endState = quint8(state);
    m_widget->finished = true;
    m_widget->refreshFigures();
    const QString shown = find<QLabel>("label_figures")->text();
    QVERIFY2(shown.startsWith(start), qPrintable(shown));
}

void tst_WidgetConverterBase::whatHasNotStartedIsCancelledWithTheBatch()
{
    m_widget->showCancelled();
    m_widget->refreshFigures();
    QCOMPARE(find<QLabel>("label_figures")->text(), text("cancelled"));
    m_widget = std::make_unique<IdleConverter>();
    m_widget->start();
    m_widget->refreshFigures();
    m_widget->showCancelled();
    QVERIFY(find<QLabel>("label_figures")->text().contains(text("elapsed")));
}

QTEST_MAIN(tst_WidgetConverterBase)
#include "tst_widgetconverterbase.moc"
