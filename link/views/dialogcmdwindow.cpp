#include "link/views/dialogcmdwindow.h"

#include "app/state/appcontroller.h"
#include "link/logger_data_handler_class.h"
#include "ui_dialogcmdwindow.h"

#include <QKeyEvent>

namespace {

constexpr int timeout_ms = 1000;
constexpr int maxLines = 600;
constexpr int maxHistory = 100;
constexpr int maxReply = 10'000; // characters that are shown

QString shownReply(const QByteArray &reply)
{
    if (reply.size() <= maxReply)
        return QString::fromLatin1(reply).trimmed();
    return QString::fromLatin1(reply.left(maxReply))
           + QStringLiteral("... (%1 characters)").arg(reply.size());
}

} // namespace

DialogCmdWindow::DialogCmdWindow(AppController *controller, Logger_Data_Handler_Class *handler,
                                 QWidget *parent)
    : QDialog(parent)
    , AppComponentBaseClass(controller, QStringLiteral("DialogCmdWindow"))
    , m_handler(handler)
    , m_ui(std::make_unique<Ui::DialogCmdWindow>())
{
    m_ui->setupUi(this);
    m_ui->plainTextEdit_cmdlist->setMaximumBlockCount(maxLines);
    m_ui->lineEdit_cmd->installEventFilter(this);
    m_ui->lineEdit_cmd->setFocus();
    update_gui();
}

DialogCmdWindow::~DialogCmdWindow() = default;

void DialogCmdWindow::update_gui()
{
    const bool isConnected = appController()->appState() != APP_STA_DISCONN;
    m_ui->pushButton_send->setEnabled(isConnected);
    m_ui->label_state->setText(isConnected ? tr("Connected") : tr("No logger is connected."));
}

void DialogCmdWindow::on_pushButton_send_clicked()
{
    const QString command = m_ui->lineEdit_cmd->text();
    if (command.trimmed().isEmpty() || !m_ui->pushButton_send->isEnabled())
        return;
    appendLine("blue", command.trimmed());
    if (m_history.isEmpty() || m_history.last() != command)
        m_history.append(command);
    if (m_history.size() > maxHistory)
        m_history.removeFirst();
    m_shown = m_history.size();
    m_ui->lineEdit_cmd->clear();
    const QByteArray reply = m_handler->sendCommand(command.toLatin1(), timeout_ms);
    if (reply.isEmpty())
        m_ui->plainTextEdit_cmdlist->appendPlainText(
            QStringLiteral("Error: No response received!"));
    else
        appendLine("black", shownReply(reply));
}

void DialogCmdWindow::on_pushButton_clear_clicked()
{
    m_ui->plainTextEdit_cmdlist->clear();
}

void DialogCmdWindow::appendLine(const char *color, const QString &text)
{
    m_ui->plainTextEdit_cmdlist->appendHtml(
        QStringLiteral("<font color=%1>%2</font>")
            .arg(QString::fromLatin1(color), text.toHtmlEscaped()));
}

void DialogCmdWindow::on_upArrowPressed()
{
    if (m_shown > 0)
        showHistory(m_shown - 1);
}

void DialogCmdWindow::on_downArrowPressed()
{
    if (m_shown < m_history.size())
        showHistory(m_shown + 1);
}

void DialogCmdWindow::showHistory(int index)
{
    m_shown = index;
    m_ui->lineEdit_cmd->setText(m_history.value(index));
}

bool DialogCmdWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up)
            on_upArrowPressed();
        else if (key == Qt::Key_Down)
            on_downArrowPressed();
        else
            return QDialog::eventFilter(watched, event);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}
