// The part of the page that shows what is received and sends frames.

#include "app/ui/filedialogs.h"
#include "app/ui/userprompt.h"
#include "can/views/logger_can_view.h"
#include "link/liveobjects.h"
#include "link/logger_data_handler_class.h"
#include "ui_logger_can_view.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMetaMethod>

#include <utility>

namespace {

constexpr int noFramesAfter_ms = 1000;

can::ReceivedFrame receivedFrame(const CAN_Msg_Class &message)
{
    return {message.timestamp_us,
            message.id,
            message.extended,
            message.rtr,
            {reinterpret_cast<const quint8 *>(message.data.constData()),
             std::size_t(message.data.size())}};
}

// "12.0 to 14.1 %", or one number where both read alike.
QString percentText(double least, double most)
{
    const QString low = QString::number(least, 'f', 1);
    const QString high = QString::number(most, 'f', 1);
    return (low == high ? low : QStringLiteral("%1 to %2").arg(low, high)) + QStringLiteral(" %");
}

} // namespace

bool Logger_CAN_View::isListing() const
{
    return m_ui->groupBox_receive->isChecked() && !m_ui->pushButton_rx_pause->isChecked();
}

void Logger_CAN_View::slot_receive_can_msg_list(int can_nr, QList<CAN_Msg_Class *> can_msg_list)
{
    if (!isOwnNumber(can_nr))
        return;
    const bool lists = isListing();
    for (const CAN_Msg_Class *message : qAsConst(can_msg_list)) {
        const can::ReceivedFrame frame = receivedFrame(*message);
        m_busLoad.add(frame);
        m_areValuesToShow = m_decoder.take(frame) || m_areValuesToShow;
        if (lists)
            m_rxModel.addFrame(frame);
    }
    m_lastFrames.start();
    if (isVisible())
        showLiveData();
    if (isSignalConnected(QMetaMethod::fromSignal(&Logger_CAN_View::signalCanMsgForwarder))) {
        QList<RawMessageBaseClass *> messages;
        for (CAN_Msg_Class *message : qAsConst(can_msg_list))
            messages.append(message);
        emit signalCanMsgForwarder(messages);
    }
}

// A page that is hidden decodes and counts only; showEvent() makes up for the rest.
void Logger_CAN_View::showLiveData()
{
    if (std::exchange(m_areValuesToShow, false))
        m_dbcModel.valuesChanged();
    m_rxModel.publish();
    showRxNote();
}

void Logger_CAN_View::noteRxChange(int firstColumn, int lastColumn)
{
    const int sorted = m_rxRows.sortColumn();
    m_isRxToSort = m_isRxToSort || (firstColumn <= sorted && sorted <= lastColumn);
}

void Logger_CAN_View::sortRxRows()
{
    if (std::exchange(m_isRxToSort, false))
        m_rxRows.sort(m_rxRows.sortColumn(), m_rxRows.sortOrder());
}

void Logger_CAN_View::showRxNote()
{
    const quint64 frames = m_rxModel.framesNotListed();
    m_ui->label_rx_note->setText(frames == 0 ? QString() : tr("%1 frames not listed").arg(frames));
}

void Logger_CAN_View::showBusFigures()
{
    if (m_lastFrames.isValid() && m_lastFrames.hasExpired(noFramesAfter_ms))
        m_busLoad.clear();
    const can::BusLoad::Figures figures = m_busLoad.figures();
    m_ui->label_bus_figures->setText(
        tr("%1 frames/s, bus load %2")
            .arg(QString::number(figures.frames),
                 percentText(figures.least_percent, figures.most_percent)));
}

void Logger_CAN_View::showEvent(QShowEvent *event)
{
    LoggerPage::showEvent(event);
    m_figuresTimer.start();
    showBusFigures();
    showLiveData();
    sortRxRows();
    noteLastFile();
}

void Logger_CAN_View::hideEvent(QHideEvent *event)
{
    m_figuresTimer.stop();
    LoggerPage::hideEvent(event);
}

// What is listed can still be sorted and saved when the box isn't checked, and the figures go on.
void Logger_CAN_View::on_groupBox_receive_toggled(bool)
{
    m_ui->tableView_rx->setEnabled(true);
    m_ui->label_bus_figures->setEnabled(true);
    m_ui->pushButton_clear_rx_list->setEnabled(true);
    m_ui->pushButton_save_rx_list->setEnabled(true);
    m_rxModel.noteGap();
    sortRxRows(); // now rather than in a list that stands still
}

void Logger_CAN_View::on_pushButton_rx_pause_toggled(bool)
{
    m_rxModel.noteGap();
    sortRxRows();
}

void Logger_CAN_View::on_pushButton_clear_rx_list_clicked()
{
    m_rxModel.clear_list();
    showRxNote();
}

const can::RxListItem &Logger_CAN_View::rxItemAt(int row) const
{
    return m_rxModel.itemAt(m_rxRows.mapToSource(m_rxRows.index(row, 0)).row());
}

void Logger_CAN_View::copySelectedFrames()
{
    const QItemSelectionModel *selection = m_ui->tableView_rx->selectionModel();
    std::vector<can::RxListItem> items;
    for (int row = 0; row < m_rxRows.rowCount(); ++row) {
        if (selection->isRowSelected(row, {}))
            items.push_back(rxItemAt(row));
    }
    if (!items.empty())
        QGuiApplication::clipboard()->setText(can::rxListText(items));
}

void Logger_CAN_View::on_pushButton_save_rx_list_clicked()
{
    showLiveData();
    sortRxRows();
    std::vector<can::RxListItem> items; // the user may take his time while frames come in
    for (int row = 0; row < m_rxRows.rowCount(); ++row)
        items.push_back(rxItemAt(row));
    const QString path = FileDialogs(m_prompt).getSaveFileNameWithKey(
        QStringLiteral("CanRxListSavePath"), QStringLiteral("DbcLoadPath"),
        tr("Save received frames"), QStringLiteral("Text-Files (*.txt)"),
        QStringLiteral("CAN-%1.txt").arg(number()));
    if (path.isEmpty())
        return;
    QString error;
    if (!can::saveRxList(path, items, &error))
        m_prompt.warn(tr("Error saving list"), tr("%1 can't be written.").arg(path), error);
}

can::FrameFormat Logger_CAN_View::txFormat() const
{
    return m_ui->checkBox_fd_format->isChecked() ? can::FrameFormat::Fd : can::FrameFormat::Classic;
}

void Logger_CAN_View::showTxLimits()
{
    const quint32 highest = can::maxId(m_ui->checkBox_29_bit->isChecked());
    bool isNumber = false;
    const quint32 id = m_ui->lineEdit_id->text().toUInt(&isNumber, 16);
    const bool isTooHigh = isNumber && id > highest;
    m_ui->label_id_limit->setText(
        QStringLiteral("up to 0x%1").arg(QString::number(highest, 16).toUpper()));
    m_ui->label_id_limit->setStyleSheet(isTooHigh ? QStringLiteral("QLabel { color : red; }")
                                                  : QString());
}

void Logger_CAN_View::showTxFields()
{
    const bool isFd = txFormat() == can::FrameFormat::Fd;
    const bool isRemote = !isFd && m_ui->checkBox_rtr->isChecked();
    m_ui->checkBox_rtr->setEnabled(!isFd);
    m_ui->widget_bytes->showFields(isFd ? CanByteFields::rowsFor(m_ui->spinBox_dlc->value())
                                        : can::dataLengths(txFormat()).back());
    m_ui->widget_bytes->enableFields(isRemote ? 0 : m_ui->spinBox_dlc->value());
}

void Logger_CAN_View::on_lineEdit_id_textChanged(QString)
{
    showTxLimits();
}

void Logger_CAN_View::on_checkBox_29_bit_clicked()
{
    showTxLimits();
}

void Logger_CAN_View::on_checkBox_rtr_clicked()
{
    showTxFields();
}

void Logger_CAN_View::on_checkBox_fd_format_clicked()
{
    m_ui->spinBox_dlc->setFormat(txFormat());
    showTxFields();
}

void Logger_CAN_View::on_spinBox_dlc_valueChanged(int)
{
    showTxFields();
}

void Logger_CAN_View::on_pushButton_send_msg_clicked()
{
    m_ui->label_send_result->clear();
    m_ui->spinBox_dlc->interpretText(); // what stands there, though the user hasn't left the field
    can::TxRowInput input;
    input.id = m_ui->lineEdit_id->text();
    input.extended = m_ui->checkBox_29_bit->isChecked();
    input.remote = m_ui->checkBox_rtr->isChecked();
    input.format = txFormat();
    input.length = m_ui->spinBox_dlc->value();
    input.bytes = m_ui->widget_bytes->texts();
    const auto parsed = can::parseTxRow(input);
    if (const auto *error = std::get_if<can::TxInputError>(&parsed)) {
        m_prompt.warn(QStringLiteral("Invalid Parameter"), error->text);
        if (error->field == can::TxInputError::Field::Byte)
            m_ui->widget_bytes->focusField(error->byte);
        else
            m_ui->lineEdit_id->setFocus();
        return;
    }
    const auto &frame = std::get<can::TxFrame>(parsed);
    int result = Failed;
    emit signal_send_can_msg(number(), frame.extended ? 1 : 0, frame.remote ? 1 : 0, int(frame.id),
                             frame.data.size(), frame.data, &result);
    if (result == Done) {
        ++m_sentFrames;
        m_ui->label_send_result->setText(m_sentFrames == 1 ? tr("Sent.")
                                                           : tr("Sent (%1).").arg(m_sentFrames));
    } else {
        m_prompt.warn(tr("Frame not sent"), tr("The logger didn't take the frame."),
                      handler()->lastCommandError());
    }
}
