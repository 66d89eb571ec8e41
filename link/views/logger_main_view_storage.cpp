// The part of Logger_Main_View that manages the log files on the logger's storage.

#include "app/ui/busycursor.h"
#include "app/ui/userprompt.h"
#include "link/logger_data_handler_class.h"
#include "link/views/logger_main_view.h"
#include "link/views/logtriggercustomcombobox.h"
#include "ui_logger_main_view.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QProgressDialog>
#include <QShortcut>

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

using loggerstorage::File;
using loggerstorage::Listing;
using protocol::Command;

namespace {

enum Column { NameColumn, SizeColumn };

constexpr int fileIndexRole = Qt::UserRole; // of a name: the file's place in the logger's list
constexpr int bytesRole = Qt::UserRole;     // of a size: bytes, none if they can't be read

constexpr int maxListed = 10; // names in a box

const QLatin1String warning("Warning");

// Sorts by bytes; what has no size is smaller than all.
class SizeItem : public QTableWidgetItem
{
public:
    explicit SizeItem(const std::optional<qint64> &size)
        : QTableWidgetItem(size ? QString::number(loggerstorage::mebibytes(*size))
                                : QStringLiteral("?"))
    {
        setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        if (size)
            setData(bytesRole, *size);
    }

    bool operator<(const QTableWidgetItem &other) const override
    {
        return bytes(*this) < bytes(other);
    }

private:
    static qint64 bytes(const QTableWidgetItem &item)
    {
        const QVariant value = item.data(bytesRole);
        return value.isValid() ? value.toLongLong() : -1;
    }
};

qint64 sumOfSizes(const QVector<File> &files, const QList<int> &indices)
{
    qint64 sum = 0;
    for (const int index : indices) {
        const qint64 size = files.at(index).size.value_or(0);
        if (size > std::numeric_limits<qint64>::max() - sum)
            return std::numeric_limits<qint64>::max();
        sum += size;
    }
    return sum;
}

QString unsendableName(const QString &name)
{
    return QStringLiteral("The file %1 can't be deleted: its name can't be sent to the logger.")
        .arg(loggerstorage::shownName(name));
}

QString deleteError(const QByteArray &reply)
{
    const auto outcome = protocol::evaluateSetReply(
        reply, protocol::commandRow(Command::DeleteLogFile).word(), protocol::SetReplyTexts::View);
    return protocol::isError(reply)
               ? QStringLiteral("CMD-Response error.\r\n Response: %1.").arg(outcome.error)
               : outcome.error;
}

} // namespace

void Logger_Main_View::setUpTable()
{
    QTableWidget *table = m_ui->tableWidget_logfiles;
    QHeaderView *header = table->horizontalHeader();
    header->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(SizeColumn, QHeaderView::ResizeToContents);
    header->setHighlightSections(false);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 8);
    table->horizontalHeaderItem(NameColumn)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table->horizontalHeaderItem(SizeColumn)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    header->setSortIndicator(-1, Qt::AscendingOrder); // the logger's order until a head is clicked
    table->setSortingEnabled(true);
    connect(table, &QTableWidget::itemSelectionChanged, this,
            &Logger_Main_View::enable_disable_logfile_buttons);
    auto *deleteKey = new QShortcut(QKeySequence::Delete, table);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, m_ui->pushButton_delete_selected_logfile,
            &QPushButton::click);
}

// A logger that doesn't answer isn't asked for more: each command keeps the window waiting.
void Logger_Main_View::on_pushButton_refresh_storage_clicked()
{
    if (showLogFiles())
        gather_disc_space_info();
}

void Logger_Main_View::request_logfile_infos()
{
    (void)showLogFiles();
}

// False when the list can't be read, which is told.
bool Logger_Main_View::showLogFiles()
{
    const QString error = readLogFiles();
    if (!error.isEmpty() && handler()->areBothConnected()) // the loss is told by the window
        m_prompt.warn(warning, error);
    return error.isEmpty();
}

// Nobody has asked for it, so a failure gives no box; but files of another logger don't stay.
void Logger_Main_View::readStorageOfNewLogger()
{
    if (!handler()->areBothConnected())
        return;
    const QString error = readLogFiles();
    if (!error.isEmpty()) {
        showFiles({});
        m_ui->label_storage_status->setText(
            tr("The list can't be read: %1").arg(error.simplified()));
        return;
    }
    gather_disc_space_info();
}

// A failure leaves the list as it is.
QString Logger_Main_View::readLogFiles()
{
    const BusyCursor busy;
    const protocol::CommandRow &row = protocol::commandRow(Command::GetLogFiles);
    const Listing listing = loggerstorage::filesIn(
        handler()->sendCommand(protocol::commandText(Command::GetLogFiles), row.timeout_ms));
    if (listing.error.isEmpty())
        showFiles(listing);
    return listing.error;
}

void Logger_Main_View::gather_disc_space_info()
{
    const BusyCursor busy;
    const auto values =
        handler()->sendGetCommand(Command::GetDiscSpace, protocol::ValueCount::atLeast(2));
    const auto space = values ? loggerstorage::discSpaceIn(*values) : std::nullopt;
    const QString unknown = QStringLiteral("---");
    m_ui->label_disc_space_free->setText(space ? loggerstorage::sizeText(space->free) : unknown);
    m_ui->label_disc_space_total->setText(space ? loggerstorage::sizeText(space->total) : unknown);
}

// The last file of the list stands first. What was selected stays selected, by its name.
void Logger_Main_View::showFiles(const Listing &listing)
{
    QSet<QString> selected;
    for (const int index : selectedFiles())
        selected.insert(m_files.at(index).name);

    QTableWidget *table = m_ui->tableWidget_logfiles;
    {
        const QSignalBlocker blocker(table);
        table->setSortingEnabled(false);
        table->setRowCount(0);
        m_files = listing.files;
        m_leftOut = listing.left_out;
        table->setRowCount(m_files.size());
        for (int i = 0; i < m_files.size(); ++i)
            showFile(m_files.size() - 1 - i, i);
        table->setSortingEnabled(true);
    }
    selectFiles([&selected](const File &file) { return selected.contains(file.name); });
    enable_disable_logfile_buttons();
}

void Logger_Main_View::showFile(int row, int fileIndex)
{
    const File &file = m_files.at(fileIndex);
    auto *name = new QTableWidgetItem(loggerstorage::shownName(file.name));
    name->setData(fileIndexRole, fileIndex);
    m_ui->tableWidget_logfiles->setItem(row, NameColumn, name);
    m_ui->tableWidget_logfiles->setItem(row, SizeColumn, new SizeItem(file.size));
}

// From the top of the table down. The selection consists of whole rows.
QList<int> Logger_Main_View::selectedFiles() const
{
    const QTableWidget *table = m_ui->tableWidget_logfiles;
    std::vector<bool> isSelected(std::size_t(table->rowCount()), false);
    const QItemSelection ranges = table->selectionModel()->selection();
    for (const QItemSelectionRange &range : ranges)
        for (int row = range.top(); row <= range.bottom(); ++row)
            isSelected[std::size_t(row)] = true;
    QList<int> files;
    for (int row = 0; row < table->rowCount(); ++row)
        if (isSelected[std::size_t(row)])
            files += table->item(row, NameColumn)->data(fileIndexRole).toInt();
    return files;
}

void Logger_Main_View::selectFiles(const std::function<bool(const File &)> &isSelected)
{
    const QAbstractItemModel *model = m_ui->tableWidget_logfiles->model();
    const auto isRowSelected = [&](int row) {
        const QModelIndex name = model->index(row, NameColumn);
        return isSelected(m_files.at(name.data(fileIndexRole).toInt()));
    };
    QItemSelection selection; // a range for each run of rows
    for (int row = 0; row < model->rowCount(); ++row) {
        const int first = row;
        while (row < model->rowCount() && isRowSelected(row))
            ++row;
        if (row > first)
            selection.append(QItemSelectionRange(model->index(first, NameColumn),
                                                 model->index(row - 1, SizeColumn)));
    }
    m_ui->tableWidget_logfiles->selectionModel()->select(selection,
                                                         QItemSelectionModel::ClearAndSelect);
}

void Logger_Main_View::on_pushButton_select_all_files_less_than_mb_clicked()
{
    const qint64 limit = qint64(m_ui->spinBox_select_files_less_than_mb->value()) * 1024 * 1024;
    selectFiles([limit](const File &file) { return file.size && *file.size < limit; });
    m_ui->tableWidget_logfiles->setFocus();
}

void Logger_Main_View::on_pushButton_delete_selected_logfile_clicked()
{
    const QList<int> files = selectedFiles();
    if (files.isEmpty())
        return;
    const QString kept = whyKept(files);
    if (!kept.isEmpty()) {
        m_prompt.warn(QStringLiteral("Delete File"), kept);
        return;
    }
    const QString question =
        files.size() > maxListed
            ? QStringLiteral("Delete selected files? (%1 files)").arg(files.size())
            : QStringLiteral("Delete file/s?\r\n%1")
                  .arg(shownNames(files).join(QStringLiteral("\r\n")));
    if (!m_prompt.ask(QStringLiteral("Delete File"), question))
        return;
    const QString error = deleteFiles(files);
    if (!handler()->areBothConnected())
        return; // the loss is told by the window
    if (!error.isEmpty())
        m_prompt.warn(warning, error);
    on_pushButton_refresh_storage_clicked();
}

QStringList Logger_Main_View::shownNames(const QList<int> &files) const
{
    QStringList names;
    for (const int file : files.mid(0, maxListed))
        names += loggerstorage::shownName(m_files.at(file).name);
    return names;
}

// Names files that are still to be downloaded, for the user. Empty if there is none.
QString Logger_Main_View::whyKept(const QList<int> &files) const
{
    const QStringList underWay = m_filesUnderWay();
    const QSet<QString> needed(underWay.begin(), underWay.end());
    QList<int> kept;
    std::copy_if(files.begin(), files.end(), std::back_inserter(kept),
                 [&](int file) { return needed.contains(m_files.at(file).name); });
    if (kept.isEmpty())
        return {};
    QStringList lines = shownNames(kept);
    if (kept.size() > lines.size())
        lines += tr("and %1 more").arg(kept.size() - lines.size());
    return tr("These files are being downloaded and can't be deleted until that has ended:\r\n%1")
        .arg(lines.join(QStringLiteral("\r\n")));
}

// Ends with the first failure, or when the user cancels.
QString Logger_Main_View::deleteFiles(const QList<int> &files)
{
    QStringList names; // events run meanwhile, which may change the list
    for (const int file : files)
        names += m_files.at(file).name;

    QProgressDialog progress(tr("Deleting ..."), tr("Cancel"), 0, names.size(), this);
    progress.setWindowTitle(tr("Delete log files"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(1000);
    QElapsedTimer clock;
    clock.start();
    const int timeout_ms = protocol::commandRow(Command::DeleteLogFile).timeout_ms;
    for (int done = 0; done < names.size(); ++done) {
        if (done > 0) {
            const qint64 left_ms = clock.elapsed() * (names.size() - done) / done;
            progress.setLabelText(tr("Deleting file %1 of %2, about %3 s left")
                                      .arg(done + 1)
                                      .arg(names.size())
                                      .arg(left_ms / 1000 + 1));
        }
        progress.setValue(done);
        if (progress.wasCanceled())
            break;
        if (!protocol::isArgument(names.at(done)))
            return unsendableName(names.at(done));
        const QString error = deleteError(handler()->sendCommand(
            protocol::commandText(Command::DeleteLogFile, {names.at(done)}), timeout_ms));
        if (!error.isEmpty())
            return error;
    }
    return {};
}

void Logger_Main_View::on_pushButton_download_selected_logfile_clicked()
{
    QStringList names;
    QList<qint64> sizes;
    for (const int index : selectedFiles()) {
        const File &file = m_files.at(index);
        if (!file.size) {
            m_prompt.warn(warning, QStringLiteral("Invalid filesize: %1 / %2 bytes")
                                       .arg(loggerstorage::shownName(file.name),
                                            loggerstorage::shownName(file.size_text)));
            return;
        }
        names += file.name;
        sizes += *file.size;
    }
    if (names.isEmpty() || (!m_options->folder().isEmpty() && !m_options->folderExists()))
        return;
    emit signal_start_dialog_tcp_file_transfer(names, sizes, m_options->folder(),
                                               m_options->formats());
}

void Logger_Main_View::enable_disable_logfile_buttons()
{
    const bool isConnected = m_state == APP_STA_CONN_LOG_ON || m_state == APP_STA_CONN_LOG_OFF
                             || m_state == APP_STA_CONN_TRANSPARENT;
    const bool isAnySelected = m_ui->tableWidget_logfiles->selectionModel()->hasSelection();
    m_ui->pushButton_refresh_storage->setEnabled(isConnected);
    m_ui->pushButton_delete_selected_logfile->setEnabled(isConnected && isAnySelected);
    m_ui->pushButton_download_selected_logfile->setEnabled(isConnected && isAnySelected);
    m_ui->pushButton_select_all_files_less_than_mb->setEnabled(!m_files.isEmpty());
    m_ui->spinBox_select_files_less_than_mb->setEnabled(!m_files.isEmpty());
    showStorageStatus();
}

void Logger_Main_View::showStorageStatus()
{
    const QList<int> selected = selectedFiles();
    const bool isConnected = m_state != APP_STA_DISCONN;
    if (m_files.isEmpty() && !isConnected) {
        m_ui->label_storage_status->setText(tr("No logger is connected."));
        return;
    }
    QString text = m_files.size() == 1 ? tr("1 file") : tr("%1 files").arg(m_files.size());
    if (m_leftOut > 0)
        text += tr(" (%1 more are not shown)").arg(m_leftOut);
    if (!isConnected)
        text += tr(" when the logger was last connected");
    if (!selected.isEmpty())
        text += tr(", %1 selected: %2")
                    .arg(selected.size())
                    .arg(loggerstorage::sizeText(sumOfSizes(m_files, selected)));
    m_ui->label_storage_status->setText(text);
}
