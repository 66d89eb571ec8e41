#include "MDF4Conversion/views/dialogconverter.h"

#include "MDF4Conversion/conversionbatch.h"
#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/outputnames.h"
#include "MDF4Conversion/progressfigures.h"
#include "MDF4Conversion/views/widgetconvertermdf4.h"
#include "MDF4Conversion/views/widgetconverterrld2xxx.h"
#include "app/ui/icons.h"
#include "app/ui/openfolder.h"
#include "app/ui/userprompt.h"
#include "ui_dialogconverter.h"

#include <QClipboard>
#include <QDir>
#include <QHostInfo>
#include <QPointer>
#include <QThread>

#include <algorithm>

namespace {

constexpr int pollInterval_ms = 100;

ConversionJob commonJob(const QString &folder, std::shared_ptr<OutputNames> names, int threads)
{
    ConversionJob job;
    job.outputFolder = folder;
    job.names = std::move(names);
    job.author = environmentUser();
    job.department = QHostInfo::localHostName();
    job.threads = threads;
    return job;
}

} // namespace

DialogConverter::DialogConverter(const QStringList &files, const QString &outputDirectory,
                                 bool sequential, ConversionGlobal::OutputFormatFlags formats,
                                 UserPrompt &prompt, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::DialogConverter_UI>())
    , m_prompt(prompt)
    , m_outputDirectory(outputDirectory)
    , m_sequential(sequential)
{
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(windowTitle() + conversionbatch::title(formats));
    if ((uint(formats) & ~conversionbatch::knownBits) != 0)
        qWarning("DialogConverter initialized badly!");
    const auto names = std::make_shared<OutputNames>();
    const auto plan = conversionbatch::plan(files, outputDirectory, formats, *names);
    // Conversions at the same time share the processors.
    const int threads = QThread::idealThreadCount() / (sequential ? 1 : qMax(1, plan.size()));
    const ConversionJob job = commonJob(outputDirectory, names, qMax(1, threads));
    for (const PlannedConversion &conversion : plan)
        addConversion(conversion, job);
    m_ui->widget_batch->setVisible(count() > 1);
    m_pollTimer.setSingleShot(true);
    m_pollTimer.setInterval(pollInterval_ms);
    connect(&m_pollTimer, &QTimer::timeout, this, &DialogConverter::onPollTimerTriggered);
}

DialogConverter::~DialogConverter()
{
    cancelAll(); // all of them, before one is waited for
}

DialogConverter *DialogConverter::open(const QStringList &files, const QString &outputDirectory,
                                       ConversionGlobal::OutputFormatFlags formats,
                                       UserPrompt &prompt, QWidget *parent)
{
    auto *dialog = new DialogConverter(files, outputDirectory, true, formats, prompt, parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
    dialog->start();
    return dialog;
}

void DialogConverter::addConversion(const PlannedConversion &conversion, const ConversionJob &job)
{
    WidgetConverterBase *widget = nullptr;
    if (conversion.format == ConversionGlobal::MDF4)
        widget = new WidgetConverterMdf4(conversion, job, m_prompt, m_ui->widget_converter);
    else
        widget = new WidgetConverterRld2XXX(conversion, m_prompt, m_ui->widget_converter);
    m_ui->layout_converter->addWidget(widget);
    widget->setVisible(m_widgets.empty());
    m_widgets.push_back(widget);
    m_ui->comboBoxFiles->addItem(conversionbatch::baseNameOf(conversion.inputFile));
    m_ui->comboBoxFiles->setItemData(m_ui->comboBoxFiles->count() - 1,
                                     QDir::toNativeSeparators(conversion.outputFile),
                                     Qt::ToolTipRole);
}

void DialogConverter::start()
{
    m_clock.start();
    m_isRunning = true;
    if (m_sequential && !m_widgets.empty())
        startConversion(0);
    if (!m_sequential) {
        m_ui->label_status->setText(conversionbatch::parallelLabel(count()));
        for (WidgetConverterBase *widget : m_widgets)
            widget->start();
    }
    m_pollTimer.start();
}

void DialogConverter::startConversion(int index)
{
    const bool isFollowed = m_ui->comboBoxFiles->currentIndex() == m_current;
    m_current = index;
    if (isFollowed)
        m_ui->comboBoxFiles->setCurrentIndex(index);
    m_ui->label_status->setText(conversionbatch::sequentialLabel(index + 1, count()));
    m_widgets[std::size_t(index)]->start();
}

void DialogConverter::onPollTimerTriggered()
{
    const bool isOver = advance();
    refreshFigures(isOver);
    if (isOver)
        finish();
    else
        m_pollTimer.start();
}

// Polls what runs, and in a sequence starts the next one. True when all have ended.
bool DialogConverter::advance()
{
    if (!m_sequential) {
        for (WidgetConverterBase *widget : m_widgets)
            widget->poll();
        return std::all_of(m_widgets.begin(), m_widgets.end(),
                           [](const WidgetConverterBase *widget) { return widget->isFinished(); });
    }
    if (m_widgets.empty())
        return true;
    WidgetConverterBase *current = m_widgets[std::size_t(m_current)];
    current->poll();
    if (!current->isFinished())
        return false;
    if (m_isCancelled || m_current + 1 == count())
        return true;
    current->refreshFigures();
    startConversion(m_current + 1);
    return false;
}

void DialogConverter::refreshFigures(bool hasEnded)
{
    std::vector<PartOfWork> parts;
    double bytes = 0;
    for (WidgetConverterBase *widget : m_widgets) {
        widget->refreshFigures();
        parts.push_back({widget->inputSize(), widget->shareDone()});
        bytes += widget->inputSize();
    }
    const double done = shareOfAll(parts);
    const ProgressFigures figures =
        progressFigures(done, bytes, double(m_clock.elapsed()) / 1000.0);
    m_ui->progressBar_batch->setValue(int(done * 100));
    if (!hasEnded)
        m_ui->label_batch->setText(textWhileRunning(figures));
    else if (m_isCancelled)
        m_ui->label_batch->setText(QStringLiteral("cancelled after ")
                                   + durationText(figures.elapsed_s));
    else
        m_ui->label_batch->setText(QStringLiteral("ended after ") + textWhenDone(figures));
}

// Marks what has errors, and shows the first such conversion: its messages are asked for next.
bool DialogConverter::showErrors()
{
    int firstBad = -1;
    for (int index = count() - 1; index >= 0; --index) {
        if (m_widgets[std::size_t(index)]->state() == conversionstate::finished)
            continue;
        firstBad = index;
        m_ui->comboBoxFiles->setItemIcon(
            index, icons::icon(icons::Symbol::Warning, QColor(0xC7, 0x77, 0)));
    }
    if (firstBad >= 0)
        m_ui->comboBoxFiles->setCurrentIndex(firstBad);
    return firstBad >= 0;
}

void DialogConverter::finish()
{
    m_isRunning = false;
    m_prompt.withdrawQuestion(this);
    m_ui->pushButtonOk->setEnabled(true);
    m_ui->pushButtonOk->setFocus();
    m_ui->pushButtonCancel->setEnabled(false);
    m_ui->label_status->setText(conversionbatch::finishedLabel(count()));
    if (m_widgets.empty())
        return;
    const QString title = QStringLiteral("Conversion(s) finished!");
    const QPointer<DialogConverter> self(this); // the window may go while the box is open
    if (showErrors()) {
        m_prompt.warn(title, QStringLiteral("Errors where detected during conversion, please check "
                                            "status-tab for details"));
    } else {
        m_prompt.inform(title,
                        QStringLiteral("All conversion(s) finished, no errors were detected."));
    }
    if (self && isVisible())
        activateWindow();
}

void DialogConverter::cancelAll()
{
    m_isCancelled = true;
    for (int index = m_sequential ? m_current : 0; index < count(); ++index) {
        m_widgets[std::size_t(index)]->cancel();
        m_widgets[std::size_t(index)]->showCancelled();
    }
}

QString DialogConverter::runningWork() const
{
    if (!m_isRunning)
        return {};
    // In a sequence only the current one may have ended behind those before it.
    const int first = m_sequential ? m_current : 0;
    const int behind = m_sequential ? qMin(m_current + 1, count()) : count();
    int ended = first;
    for (int index = first; index < behind; ++index)
        ended += m_widgets[std::size_t(index)]->isFinished() ? 1 : 0;
    return QStringLiteral("Conversions that haven't ended: %1 of %2.")
        .arg(count() - ended)
        .arg(count());
}

// False when they have ended while the question was open, too.
bool DialogConverter::isToEnd()
{
    const QPointer<DialogConverter> self(this); // the window may go while the box is open
    m_isAsking = true;
    const bool isYes = m_prompt.askRevocably(
        this, QStringLiteral("Cancel conversion"),
        runningWork()
            + QStringLiteral("\n\nCancel and close this window? Files that aren't "
                             "whole are removed."));
    if (self)
        m_isAsking = false;
    return self && isYes && m_isRunning;
}

// Who has pressed Cancel has said it, though the conversions may still be about to end.
void DialogConverter::reject()
{
    if (m_isAsking || (m_isRunning && !m_isCancelled && !isToEnd()))
        return;
    QDialog::reject();
}

void DialogConverter::on_comboBoxFiles_currentIndexChanged(int index)
{
    for (int i = 0; i < count(); ++i)
        m_widgets[std::size_t(i)]->setVisible(i == index);
}

void DialogConverter::on_pushButtonOk_clicked()
{
    accept();
}

void DialogConverter::on_pushButtonCancel_clicked()
{
    cancelAll();
}

void DialogConverter::on_pushButtonOpenFolder_clicked()
{
    openFolder(m_outputDirectory, m_prompt);
}

void DialogConverter::on_pushButtonCopyMessages_clicked()
{
    const int shown = m_ui->comboBoxFiles->currentIndex();
    if (shown >= 0)
        QGuiApplication::clipboard()->setText(m_widgets[std::size_t(shown)]->messages());
}

void DialogConverter::on_DialogConverter_UI_rejected()
{
    m_isRunning = false;
    m_pollTimer.stop();
    cancelAll();
}
