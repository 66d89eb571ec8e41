#include "link/views/dialogtcpfiletransferclientdialog.h"

#include "MDF4Conversion/progressfigures.h"
#include "app/ui/openfolder.h"
#include "app/ui/userprompt.h"
#include "config/shorttext.h"
#include "ui_dialogtcpfiletransferclientdialog.h"

#include <QDir>
#include <QPointer>

#include <algorithm>

namespace {

constexpr int maxFailureLines = 600;
const QLatin1String unknownTime("---");

const QLatin1String title("Download"); // of boxes

} // namespace

DialogTcpFileTransferClientDialog::DialogTcpFileTransferClientDialog(
    const QHostAddress &address, quint16 port, QStringList names, QList<qint64> sizes,
    QString eventFolder, ConversionGlobal::OutputFormatFlags formats, UserPrompt &prompt,
    QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::DialogTcpFileTransferClientDialog>())
    , m_prompt(prompt)
    , m_address(address)
    , m_eventFolder(std::move(eventFolder))
    , m_targetFolder(m_eventFolder + QStringLiteral("/raw_log_data"))
    , m_formats(formats)
    , m_list(address, port, names, sizes, m_targetFolder)
{
    m_ui->setupUi(this);
    m_placeMeaning = m_ui->label_file->toolTip();
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->plainTextEdit_failures->setMaximumBlockCount(maxFailureLines);
    m_ui->widget_failures->hide();
    m_ui->pushButton_retry->hide();
    connect(&m_list, &DownloadList::statusText, m_ui->label_title, &QLabel::setText);
    connect(&m_list, &DownloadList::fileStarted, this,
            &DialogTcpFileTransferClientDialog::showFile);
    connect(&m_list, &DownloadList::fileFailed, this,
            &DialogTcpFileTransferClientDialog::showFailure);
    connect(&m_list, &DownloadList::ended, this, &DialogTcpFileTransferClientDialog::showEnd);
    connect(&m_timer, &QTimer::timeout, this,
            &DialogTcpFileTransferClientDialog::slot_check_progress);
}

DialogTcpFileTransferClientDialog::~DialogTcpFileTransferClientDialog() = default;

void DialogTcpFileTransferClientDialog::start()
{
    if (m_eventFolder.isEmpty() || !QDir().mkpath(m_targetFolder)) {
        m_prompt.warn(QStringLiteral("Error"),
                      QStringLiteral("Failed to create directory, %1 \r\n%1").arg(m_targetFolder));
        cancel_transfer();
        return;
    }
    m_clock.start();
    setRunning(true);
    const QString shortage = m_list.start();
    if (!shortage.isEmpty()) {
        m_prompt.warn(title, shortage);
        cancel_transfer();
        return;
    }
    show();
    if (m_list.isRunning())
        slot_check_progress();
}

void DialogTcpFileTransferClientDialog::setRunning(bool isRunning)
{
    m_hasEnded = !isRunning;
    m_ui->pushButton_cancel->setText(isRunning ? tr("Cancel") : tr("Close"));
    m_ui->pushButton_cancel->setToolTip(
        isRunning
            ? tr("End the download. Files that have arrived stay, the one under way is "
                 "removed.")
            : tr("Close this window. Files that have arrived are converted if you chose so."));
    if (isRunning)
        m_timer.start(progressPeriod_ms);
    else
        m_timer.stop();
}

void DialogTcpFileTransferClientDialog::showFile(int index)
{
    const DownloadList::File &file = m_list.files().at(index);
    showPlace(file.remoteName.simplified());
    m_ui->label_size->setText(QString::number(file.size) + QStringLiteral(" Bytes"));
    showCount(index + 1);
}

void DialogTcpFileTransferClientDialog::showCount(int count)
{
    m_count = count;
    m_ui->label_count->setText(QStringLiteral("%1 of %2").arg(count).arg(m_list.files().size()));
}

// A name of the logger may be of any length; the window keeps its width.
void DialogTcpFileTransferClientDialog::showPlace(const QString &text)
{
    m_place = text;
    QLabel *label = m_ui->label_file;
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideMiddle, label->width()));
    constexpr int most = 4'000; // characters; no screen holds more
    label->setToolTip(QStringLiteral("<p>%1</p><p style='white-space:pre-wrap'>%2</p>")
                          .arg(m_placeMeaning, shortText(text, most).toHtmlEscaped()));
}

void DialogTcpFileTransferClientDialog::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    showPlace(m_place);
}

void DialogTcpFileTransferClientDialog::showFailure(int index)
{
    const DownloadList::File &file = m_list.files().at(index);
    m_ui->plainTextEdit_failures->appendPlainText(
        QStringLiteral("%1: Download failed. %2").arg(file.remoteName.simplified(), file.error));
    m_ui->widget_failures->show();
    m_ui->pushButton_retry->show();
    m_ui->pushButton_retry->setEnabled(true);
}

void DialogTcpFileTransferClientDialog::showFailures()
{
    m_ui->plainTextEdit_failures->clear();
    m_ui->widget_failures->hide();
    m_ui->pushButton_retry->setEnabled(false);
    for (int i = 0; i < m_list.files().size(); ++i) {
        if (m_list.files().at(i).state == DownloadList::FileState::Failed)
            showFailure(i);
    }
}

void DialogTcpFileTransferClientDialog::showProgress(qint64 now_ms)
{
    m_pace.add(now_ms, m_list.receivedBytes());
    // What a failed file had received doesn't count any more, but a bar that goes back confuses.
    m_ui->progressBar->setValue(std::max(m_ui->progressBar->value(), m_list.percent()));
    m_ui->label_bytes->setText(amountText(m_list.receivedBytes(), m_list.totalBytes()));
    m_ui->label_elapsed->setText(tr("%1 elapsed").arg(durationText(double(now_ms) / 1000.0)));
    m_ui->label_speed->setText(speedText(m_pace.bytesPerSecond()));
    const std::optional<qint64> seconds = m_pace.secondsFor(m_list.bytesLeft());
    m_ui->label_time_left->setText(seconds ? timeLeftText(*seconds) : QString(unknownTime));
}

void DialogTcpFileTransferClientDialog::showEnd()
{
    slot_check_progress();
    setRunning(false);
    m_prompt.withdrawQuestion(this);
    m_ui->label_speed->clear();
    m_ui->label_time_left->clear();
    m_ui->label_size->clear();
    showCount(m_list.count(DownloadList::FileState::Arrived));
    showPlace(QDir::toNativeSeparators(m_targetFolder));
    if (m_list.count(DownloadList::FileState::Failed) > 0) {
        m_ui->label_title->setText(QStringLiteral("Download failed."));
        m_ui->pushButton_retry->setFocus();
        return;
    }
    m_ui->progressBar->setValue(m_ui->progressBar->maximum());
    m_ui->label_title->setText(QStringLiteral("Download finished."));
    m_ui->pushButton_retry->hide();
    convertArrived();
}

void DialogTcpFileTransferClientDialog::on_pushButton_retry_clicked()
{
    const bool wasRunning = !m_hasEnded;
    const QString shortage = m_list.retry();
    showFailures();
    if (!shortage.isEmpty()) {
        m_prompt.warn(title, shortage);
    } else if (!wasRunning) {
        m_ui->progressBar->setValue(m_list.percent());
        setRunning(true);
    }
}

void DialogTcpFileTransferClientDialog::on_pushButton_open_folder_clicked()
{
    openFolder(m_targetFolder, m_prompt);
}

bool DialogTcpFileTransferClientDialog::fetches(const QHostAddress &address,
                                                const QString &eventFolder,
                                                ConversionGlobal::OutputFormatFlags formats) const
{
    return address == m_address && eventFolder == m_eventFolder && formats == m_formats;
}

void DialogTcpFileTransferClientDialog::add(const QStringList &names, const QList<qint64> &sizes)
{
    const QString shortage = m_list.add(names, sizes);
    if (!shortage.isEmpty()) {
        m_prompt.warn(title, shortage);
        return;
    }
    showFailures();
    showCount(m_count);
    m_ui->progressBar->setValue(m_list.percent());
    slot_check_progress();
}

QStringList DialogTcpFileTransferClientDialog::namesUnderWay(const QHostAddress &address) const
{
    QStringList names;
    if (!m_list.isRunning() || address != m_address)
        return names;
    for (const DownloadList::File &file : m_list.files()) {
        if (file.state == DownloadList::FileState::Waiting
            || file.state == DownloadList::FileState::Running)
            names += file.remoteName;
    }
    return names;
}

QString DialogTcpFileTransferClientDialog::runningWork() const
{
    if (!m_list.isRunning())
        return {};
    return tr("Files that haven't arrived: %1 of %2.")
        .arg(m_list.files().size() - m_list.count(DownloadList::FileState::Arrived))
        .arg(m_list.files().size());
}

// False when it has ended while the question was open, too.
bool DialogTcpFileTransferClientDialog::isToEnd()
{
    const QPointer<DialogTcpFileTransferClientDialog> self(this); // may go while the box is open
    m_isAsking = true;
    const bool isYes =
        m_prompt.askRevocably(this, tr("Cancel download"),
                              runningWork()
                                  + tr("\n\nCancel and close this window? Files that have "
                                       "arrived stay, the one under way is removed."));
    if (self)
        m_isAsking = false;
    return self && isYes && !m_hasEnded;
}

void DialogTcpFileTransferClientDialog::reject()
{
    if (!m_isAsking && (!m_list.isRunning() || isToEnd()))
        cancel_transfer();
}

void DialogTcpFileTransferClientDialog::cancel_transfer()
{
    m_timer.stop();
    if (m_hasEnded) {
        convertArrived();
        accept();
        return;
    }
    m_list.cancel();
    QDialog::reject();
    const QStringList rawLogs = arrivedRawLogs();
    if (!rawLogs.isEmpty() && m_formats)
        emit signalOfferConversion(rawLogs, m_eventFolder, m_formats);
}

QStringList DialogTcpFileTransferClientDialog::arrivedRawLogs() const
{
    QStringList rawLogs;
    const QStringList arrived = m_list.arrived();
    for (const QString &path : arrived) {
        if (path.toUpper().endsWith(QLatin1String(".RLD")))
            rawLogs += path;
    }
    return rawLogs;
}

void DialogTcpFileTransferClientDialog::convertArrived()
{
    const QStringList rawLogs = arrivedRawLogs();
    if (m_isConverted || rawLogs.isEmpty() || !m_formats)
        return;
    m_isConverted = true;
    emit signalConvert(rawLogs, m_eventFolder, m_formats);
}
