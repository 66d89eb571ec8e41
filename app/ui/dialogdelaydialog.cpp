#include "app/ui/dialogdelaydialog.h"

#include "ui_dialogdelaydialog.h"

DialogDelayDialog::DialogDelayDialog(QWidget *parent, int delay_s, const QString &title,
                                     const QString &message)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::DialogDelayDialog>())
    , m_message(message)
    , m_left_s(delay_s)
{
    m_ui->setupUi(this);
    setWindowTitle(title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->label_title->setText(title);
    m_ui->progressBar->setRange(0, qMax(1, delay_s));
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DialogDelayDialog::reject);
    connect(&m_timer, &QTimer::timeout, this, &DialogDelayDialog::countDown);
    showCount();
    m_timer.start(1000);
}

DialogDelayDialog::~DialogDelayDialog() = default;

void DialogDelayDialog::reject()
{
    m_timer.stop();
    QDialog::reject();
}

void DialogDelayDialog::countDown()
{
    --m_left_s;
    showCount();
    if (m_left_s > 0)
        return;
    m_timer.stop();
    emit signal_delay_expired();
}

void DialogDelayDialog::showCount()
{
    m_ui->label_msg->setText(m_message + QStringLiteral(" %1.").arg(m_left_s));
    m_ui->progressBar->setValue(m_ui->progressBar->maximum() - m_left_s);
}
