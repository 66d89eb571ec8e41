#include "link/views/dialogtcpfiletransferclientdialog.h"

#include "app/ui/userprompt.h"
#include "ui_dialogtcpfiletransferclientdialog.h"

#include <QDir>

namespace {

constexpr int maxFailureLines = 600;
const QLatin1String unknownTime("---");

} // namespace

DialogTcpFileTransferClientDialog::DialogTcpFileTransferClientDialog(
    const QHostAddress &address, quint16 port, QStringList names, QList<qint64> sizes,
    QString eventFolder, ConversionGlobal::OutputFormatFlags formats, UserPrompt &prompt,
    QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::DialogTcpFileTransferClientDialog>())
    , m_prompt(prompt)
    , m_eventFolder(std::move(eventFolder))
    , m_targetFolder(m_eventFolder + QStringLiteral("/raw_log_data"))
    , m_formats(formats)
    , m_list(address, port, names, sizes, m_targetFolder)
{
    m_ui->setupUi(this);
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
        reject();
        return;
    }
    m_clock.start();
    setRunning(true);
    const QString shortage = m_list.start();
    if (!shortage.isEmpty()) {
        m_prompt.warn(tr("Download"), shortage);
        reject();
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
    m_ui->label_count->setText(QStringLiteral("%1 of %2").arg(count).arg(m_list.files().size()));
}

// A name of the logger may be of any length; the window keeps its width.
void DialogTcpFileTransferClientDialog::showPlace(const QString &text)
{
    m_place = text;
    QLabel *label = m_ui->label_file;
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideMiddle, label->width()));
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

void DialogTcpFileTransferClientDialog::showProgress(qint64 now_ms)
{
    m_pace.add(now_ms, m_list.receivedBytes());
    m_ui->progressBar->setValue(m_list.percent());
    m_ui->label_speed->setText(speedText(m_pace.bytesPerSecond()));
    const std::optional<qint64> seconds = m_pace.secondsFor(m_list.bytesLeft());
    m_ui->label_time_left->setText(seconds ? timeLeftText(*seconds) : QString(unknownTime));
}

void DialogTcpFileTransferClientDialog::showEnd()
{
    slot_check_progress();
    setRunning(false);
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
    m_ui->plainTextEdit_failures->clear();
    m_ui->widget_failures->hide();
    m_ui->pushButton_retry->setEnabled(false);
    const QString shortage = m_list.retry();
    if (!shortage.isEmpty()) {
        for (int i = 0; i < m_list.files().size(); ++i) {
            if (m_list.files().at(i).state == DownloadList::FileState::Failed)
                showFailure(i);
        }
        m_prompt.warn(tr("Download"), shortage);
    } else if (!wasRunning) {
        setRunning(true);
    }
}

void DialogTcpFileTransferClientDialog::reject()
{
    m_timer.stop();
    if (m_hasEnded) {
        convertArrived();
        accept();
        return;
    }
    m_list.cancel();
    QDialog::reject();
}

void DialogTcpFileTransferClientDialog::convertArrived()
{
    QStringList rawLogs;
    const QStringList arrived = m_list.arrived();
    for (const QString &path : arrived) {
        if (path.toUpper().endsWith(QLatin1String(".RLD")))
            rawLogs += path;
    }
    if (m_isConverted || rawLogs.isEmpty() || !m_formats)
        return;
    m_isConverted = true;
    emit signalConvert(rawLogs, m_eventFolder, m_formats);
}
