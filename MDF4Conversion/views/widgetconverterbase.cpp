#include "MDF4Conversion/views/widgetconverterbase.h"

#include "MDF4Conversion/progressfigures.h"
#include "ui_widgetconverterbase.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QScrollBar>

namespace {

enum Column { NameColumn, CountColumn, StatusColumn };

constexpr int nameColumnWidth = 320;
const QString black = QStringLiteral("black");
const QString blue = QStringLiteral("blue");
const QString red = QStringLiteral("red");
const QString warningPrefix = QStringLiteral("Warning:");

QString figuresText(quint8 state, const ProgressFigures &figures)
{
    switch (state) {
    case conversionstate::finished:
        return QStringLiteral("finished in %1").arg(textWhenDone(figures));
    case conversionstate::cancelled:
        return QStringLiteral("cancelled after %1").arg(durationText(figures.elapsed_s));
    default:
        return QStringLiteral("ended with errors after %1").arg(durationText(figures.elapsed_s));
    }
}

} // namespace

struct WidgetConverterBase::LineKind
{
    MessageLimits::Kind kind;
    const char *limitText; // shown once, when the limit is reached
};

// The texts tell the two slots that share a counter apart.
const WidgetConverterBase::LineKind WidgetConverterBase::boldLine{
    MessageLimits::Kind::Plain, "Line Limit reached, no further messages are reported..."};
const WidgetConverterBase::LineKind WidgetConverterBase::plainLine{
    MessageLimits::Kind::Plain, "Line Limit reached, no further messages are reported...."};
const WidgetConverterBase::LineKind WidgetConverterBase::statusLine{
    MessageLimits::Kind::Status,
    "Status limit reached, no further Status messages are reported..."};
const WidgetConverterBase::LineKind WidgetConverterBase::warningLine{
    MessageLimits::Kind::Warning, "Warning Limit reached, no further Warnings are reported..."};
const WidgetConverterBase::LineKind WidgetConverterBase::errorLine{
    MessageLimits::Kind::Error, "Error Limit reached, no further Errors are reported..."};

WidgetConverterBase::WidgetConverterBase(const PlannedConversion &conversion,
                                         const TreeTexts &texts, QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::WidgetConverterBase>())
    , m_conversion(conversion)
    , m_inputSize(double(QFileInfo(conversion.inputFile).size()))
{
    m_ui->setupUi(this);
    QTreeWidget *tree = m_ui->treeWidget;
    m_ui->tabWidget->setTabText(m_ui->tabWidget->indexOf(m_ui->tab_tree), texts.title);
    m_ui->tabWidget->setTabToolTip(m_ui->tabWidget->indexOf(m_ui->tab_tree), texts.toolTip);
    tree->setHeaderLabels({texts.nameColumn, QStringLiteral("Count"), QStringLiteral("Status")});
    tree->headerItem()->setTextAlignment(CountColumn, Qt::AlignRight);
    tree->header()->resizeSection(NameColumn, nameColumnWidth);
    tree->setAccessibleName(texts.title);
    tree->setToolTip(texts.toolTip);
    showOutputFile(conversion.outputFile);
    m_ui->label_figures->setText(QStringLiteral("waiting"));
}

WidgetConverterBase::~WidgetConverterBase() = default;

void WidgetConverterBase::showOutputFile(const QString &path)
{
    m_ui->label_target->setText(QStringLiteral("%1: %2").arg(
        conversionbatch::keyOf(m_conversion.format), QDir::toNativeSeparators(path)));
}

double WidgetConverterBase::shareDone() const
{
    if (m_clock.isValid() && isFinished() && state() != conversionstate::cancelled)
        return 1;
    return m_ui->progressBar->value() / 100.0;
}

QString WidgetConverterBase::messages() const
{
    return m_ui->plainTextEdit_messages->toPlainText();
}

void WidgetConverterBase::showCancelled()
{
    if (!m_clock.isValid())
        m_ui->label_figures->setText(QStringLiteral("cancelled"));
}

void WidgetConverterBase::refreshFigures()
{
    if (!m_clock.isValid())
        return;
    const bool hasEnded = isFinished();
    if (!hasEnded || m_elapsed_s == 0)
        m_elapsed_s = double(m_clock.elapsed()) / 1000.0;
    const ProgressFigures figures = progressFigures(shareDone(), m_inputSize, m_elapsed_s);
    m_ui->label_figures->setText(hasEnded ? figuresText(state(), figures)
                                          : textWhileRunning(figures));
}

// Carriage returns and line feeds would break the one line that a message is.
void WidgetConverterBase::appendHtml(const QString &bold, const QString &text, const QString &color)
{
    QString line = text;
    line.remove(QLatin1Char('\r')).remove(QLatin1Char('\n'));
    const QString prefix = bold.isEmpty() ? QString() : QStringLiteral("<b>%1 </b>").arg(bold);
    m_ui->plainTextEdit_messages->appendHtml(
        QStringLiteral("%1<font color=\"%2\">%3</font>").arg(prefix, color, line));
}

// True when this line has reached the limit of its kind.
bool WidgetConverterBase::appendLimited(const LineKind &kind, const QString &bold,
                                        const QString &text, const QString &color)
{
    const MessageLimits::Verdict verdict = m_limits.admit(kind.kind);
    if (verdict == MessageLimits::Verdict::Drop)
        return false;
    appendHtml(bold, text, color);
    if (verdict == MessageLimits::Verdict::Show)
        return false;
    appendHtml(warningPrefix, QLatin1String(kind.limitText), blue);
    return true;
}

void WidgetConverterBase::appendTogether(const std::function<void()> &append)
{
    QScrollBar *bar = m_ui->plainTextEdit_messages->verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    QTextCursor batch(m_ui->plainTextEdit_messages->document());
    batch.beginEditBlock();
    append();
    batch.endEditBlock();
    if (isAtEnd)
        bar->setValue(bar->maximum());
}

void WidgetConverterBase::appendColoredLineBold(QString boldTxt, QString txtToAppend,
                                                QString colorHtml)
{
    appendLimited(boldLine, boldTxt, txtToAppend, colorHtml);
}

void WidgetConverterBase::appendColoredLine(QString txtToAppend, QString colorHtml)
{
    appendLimited(plainLine, {}, txtToAppend, colorHtml);
}

void WidgetConverterBase::appendNfoLine(QString txtToAppend)
{
    if (appendLimited(statusLine, QStringLiteral("Status:"), txtToAppend, black))
        disconnectStatus();
}

void WidgetConverterBase::appendWarnLine(QString txtToAppend)
{
    if (appendLimited(warningLine, warningPrefix, txtToAppend, blue))
        disconnectWarnings();
}

void WidgetConverterBase::appendErrLine(QString txtToAppend)
{
    appendLimited(errorLine, QStringLiteral("Error:"), txtToAppend, red);
}

void WidgetConverterBase::updateTree(std::map<QString, std::map<QString, QString>> treeData)
{
    updateTree(std::move(treeData), false);
}

// Rows stay in place when their names do, so that what the user has selected, closed or scrolled to
// stays, too.
void WidgetConverterBase::updateTree(std::map<QString, std::map<QString, QString>> treeData,
                                     bool expandAll)
{
    QTreeWidget *tree = m_ui->treeWidget;
    const auto sameNames = [tree, &treeData] {
        int index = 0;
        for (const auto &[name, rows] : treeData) {
            const QTreeWidgetItem *item = tree->topLevelItem(index++);
            if (!item || item->text(NameColumn) != name || item->childCount() != int(rows.size()))
                return false;
        }
        return index == tree->topLevelItemCount();
    };
    tree->setUpdatesEnabled(false);
    const bool isAnew = !sameNames();
    if (isAnew) {
        m_isExpanded = false;
        tree->clear();
        QList<QTreeWidgetItem *> groups;
        for (const auto &[name, rows] : treeData)
            groups += new QTreeWidgetItem({name});
        tree->addTopLevelItems(groups); // which takes them over
    }
    int index = 0;
    for (const auto &group : treeData)
        updateGroup(tree->topLevelItem(index++), group.second);
    if (expandAll && !m_isExpanded) {
        tree->expandAll();
        m_isExpanded = true;
    }
    tree->setUpdatesEnabled(true);
}

void WidgetConverterBase::updateGroup(QTreeWidgetItem *group,
                                      const std::map<QString, QString> &rows)
{
    if (group->childCount() == 0) {
        QList<QTreeWidgetItem *> items;
        for (const auto &row : rows) {
            auto *item = new QTreeWidgetItem({row.first});
            item->setTextAlignment(CountColumn, Qt::AlignRight | Qt::AlignVCenter);
            items += item;
        }
        group->addChildren(items); // which takes them over
    }
    int index = 0;
    for (const auto &[name, count] : rows) {
        QTreeWidgetItem *item = group->child(index++);
        item->setText(NameColumn, name);
        item->setText(CountColumn, count);
        item->setText(StatusColumn, rowStatus(count));
    }
}

void WidgetConverterBase::updateProgress(uint progress)
{
    m_ui->progressBar->setValue(int(qMin(progress, 100U)));
}
