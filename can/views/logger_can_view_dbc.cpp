// The part of the page that loads, shows and removes the signals of DBC files.

#include "app/ui/filedialogs.h"
#include "app/ui/plaintooltip.h"
#include "app/ui/settingsstore.h"
#include "app/ui/userprompt.h"
#include "can/canfilters.h"
#include "can/dbcloadtask.h"
#include "can/dbcsignals.h"
#include "can/dbcsummary.h"
#include "can/views/dialog_dbc_signal_selector.h"
#include "can/views/logger_can_view.h"
#include "config/record/record.h"
#include "config/shorttext.h"
#include "config/whyunreadable.h"
#include "link/logger_data_handler_class.h"
#include "ui_logger_can_view.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>

#include <utility>

namespace {

// Characters of a file's name.
constexpr int longestName = 40;
constexpr int longestNameOnButton = 24;

QString lastFileKey(int can_nr)
{
    return QStringLiteral("DbcLastFile/CAN-%1").arg(can_nr);
}

auto editableFields(StreamingClass_DBC_Signal &signal)
{
    return std::tie(signal.name, signal.unit, signal.factor, signal.offset, signal.selection_flags);
}

// The name of the file for a line of the page, where the tool tip has the path.
QString fileNameIn(const QString &path, int longest)
{
    return shortText(QFileInfo(path).fileName().simplified(), longest);
}

// What the widget is for, and the whole path of the file that it shows; an empty one for none.
void setPathToolTip(QWidget *widget, const QString &path)
{
    constexpr char purpose[] = "purpose";
    if (!widget->property(purpose).isValid())
        widget->setProperty(purpose, widget->toolTip());
    const QString text = widget->property(purpose).toString();
    widget->setToolTip(path.isEmpty() ? text : plainToolTip(text + QLatin1Char('\n') + path));
}

// Why the parser has no text for a file that it doesn't load: it couldn't even be opened.
QString unreadableText(const QString &path)
{
    const QString why = whyUnreadable(path);
    return why.isEmpty() ? Logger_CAN_View::tr("%1 can't be read.").arg(path)
                         : Logger_CAN_View::tr("%1 can't be read: %2.").arg(path, why);
}

QString noSignalText(const QString &path, const DbcSummary &summary)
{
    const QString text = Logger_CAN_View::tr("There is no signal in %1.").arg(path);
    const QString passedOver = dbc::passedOverText(summary);
    return passedOver.isEmpty()
               ? text
               : text + Logger_CAN_View::tr("\n\nPassed over: %1.").arg(passedOver);
}

// The one DBC file that is dragged; empty for anything else.
QString draggedDbcFile(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    if (urls.size() != 1 || !urls.first().isLocalFile())
        return {};
    const QString path = urls.first().toLocalFile();
    return path.endsWith(QStringLiteral(".dbc"), Qt::CaseInsensitive) ? path : QString();
}

} // namespace

void Logger_CAN_View::connectLoading()
{
    connect(m_loading.get(), &DbcLoadTask::progressed, this, [this](int percent, qint64 left_ms) {
        m_ui->progressBar_loading->setValue(percent);
        m_ui->label_loading_left->setText(loadTimeLeftText(left_ms));
    });
    connect(m_loading.get(), &DbcLoadTask::finished, this, &Logger_CAN_View::dbcFileLoaded);
    connect(&m_loadingShows, &QTimer::timeout, this, [this] { showLoading(true); });
    connect(m_ui->pushButton_loading_cancel, &QPushButton::clicked, m_loading.get(),
            [this] { m_loading->cancel(); });
    showLoading(false);
}

void Logger_CAN_View::showLoading(bool on)
{
    m_ui->frame_loading->setVisible(on);
}

bool Logger_CAN_View::canLoad() const
{
    return m_isEditable && !m_loading->isRunning();
}

// Looks for the file, which may take its time on a network: not for each press of a key.
void Logger_CAN_View::noteLastFile()
{
    m_lastFile = SettingsStore().value(lastFileKey(number())).toString();
    const QFileInfo file(m_lastFile);
    m_isLastFileThere = file.isFile();
    if (!m_lastFile.isEmpty()) {
        const QString name = fileNameIn(m_lastFile, longestNameOnButton)
                                 .replace(QLatin1Char('&'), QStringLiteral("&&"));
        m_ui->pushButton_reload_dbc_file->setText(tr("Load a&gain: %1").arg(name));
        setPathToolTip(m_ui->pushButton_reload_dbc_file, m_lastFile);
    }
    updateDbcButtons();
}

void Logger_CAN_View::updateDbcButtons()
{
    m_ui->pushButton_load_dbc_file->setEnabled(canLoad());
    m_ui->pushButton_reload_dbc_file->setEnabled(canLoad() && m_isLastFileThere);
    m_ui->pushButton_remove_selected->setEnabled(
        m_isEditable && m_ui->tableView_dbc->selectionModel()->hasSelection());
}

void Logger_CAN_View::showSummary()
{
    QString text = m_summary.text;
    setPathToolTip(m_ui->label_dbc_summary, m_summary.path);
    if (text.isEmpty() && channel().dbc_signals.isEmpty())
        text = tr("The channel has no signals. Load a DBC file, or drop one on this page.");
    m_ui->label_dbc_summary->setText(text);
    m_ui->label_dbc_summary->setVisible(!text.isEmpty());
}

void Logger_CAN_View::showFilters()
{
    const int count = int(can::effectiveFilters(channel(), can::SelectedOnly::Yes).size());
    m_ui->label_filters->setText(tr("%1 of %2 filters").arg(count).arg(can::maxFilters));
    const QString style =
        count < can::maxFilters ? QString() : QStringLiteral("QLabel { color : red; }");
    if (m_ui->label_filters->styleSheet() != style) // to set one takes milliseconds
        m_ui->label_filters->setStyleSheet(style);
}

void Logger_CAN_View::on_pushButton_load_dbc_file_clicked()
{
    emit signal_load_dbc_file(number());
}

void Logger_CAN_View::chooseDbcFile()
{
    const QString path = FileDialogs(m_prompt).getOpenFileNameWithKey(
        QStringLiteral("DbcLoadPath"), {}, QStringLiteral("Open DBC-file"),
        QStringLiteral("DBC-Files (*.dbc)"));
    if (!path.isEmpty())
        loadDbcFile(path);
}

void Logger_CAN_View::on_pushButton_reload_dbc_file_clicked()
{
    loadDbcFile(m_lastFile);
}

void Logger_CAN_View::loadDbcFile(const QString &path)
{
    if (!canLoad()) {
        showNotLoaded(path);
        return;
    }
    m_ui->label_loading->setText(tr("Reading %1").arg(fileNameIn(path, longestName)));
    setPathToolTip(m_ui->label_loading, path);
    m_ui->label_loading_left->clear();
    m_ui->progressBar_loading->setValue(0);
    m_loadingShows.start();
    m_loading->start(path);
    updateDbcButtons();
}

void Logger_CAN_View::dbcFileLoaded(bool isLoaded)
{
    m_loadingShows.stop();
    showLoading(false);
    DbcFileParser &parser = m_loading->parser();
    const QString path = m_loading->path();
    const bool isCancelled = m_loading->isCancelled();
    const bool hasSignals = isLoaded && !isCancelled && !parser.signalList().isEmpty();
    if (hasSignals)
        SettingsStore().setValue(lastFileKey(number()), path);
    noteLastFile();
    if (hasSignals && m_isEditable) {
        chooseSignals();
        return;
    }
    const QString error = parser.errorText();
    const QString withoutSignals = noSignalText(path, parser.summary());
    parser.clear(); // while no box is open, behind which the next file could be read
    if (isCancelled)
        return;
    if (!isLoaded) {
        const QString reason = error.isEmpty() ? unreadableText(path) : QString();
        m_prompt.warn(QStringLiteral("Error loading dbc-file"), error, reason);
    } else if (!hasSignals) { // noise may be read, too
        m_prompt.inform(QStringLiteral("Open DBC-file"), withoutSignals);
    } else {
        showNotLoaded(path);
    }
}

void Logger_CAN_View::showNotLoaded(const QString &path)
{
    const QString why = m_isEditable ? tr("another file is being read.")
                                     : tr("the configuration can't be changed now.");
    const QString text = tr("%1 was not loaded: %2");
    showNotice(text.arg(fileNameIn(path, longestName), why), text.arg(path, why));
}

void Logger_CAN_View::chooseSignals()
{
    DbcFileParser &parser = m_loading->parser();
    const QString path = m_loading->path();
    m_offered = {path, fileNameIn(path, longestName) + QStringLiteral(": ")
                           + dbc::summaryText(parser.summary())};
    auto *dialog = new Dialog_DBC_Signal_Selector(channel(), parser.takeSignals(), m_prompt, this);
    dialog->setSummary(QStringLiteral("CAN-%1: %2").arg(QString::number(number()), m_offered.text));
    connect(dialog, &Dialog_DBC_Signal_Selector::signal_load_selected_dbc_signals, this,
            &Logger_CAN_View::insert_dbc_signals);
    dialog->open();
}

void Logger_CAN_View::insert_dbc_signals(QList<StreamingClass_DBC_Signal *> *new_signals)
{
    FileSummary summary = std::exchange(m_offered, {});
    TerminalCanCfg edited;
    record::copy(channel(), edited);
    can::insertSignals(edited.dbc_signals, *new_signals);
    if (!withEcho(handler()->writeCan(number(), edited)))
        return; // a failure is told by the handler
    m_summary = std::move(summary);
    showSummary();
}

// Places in the list of the channel, ascending.
QVector<int> Logger_CAN_View::selectedSignals() const
{
    QSet<const StreamingClass_DBC_Signal *> selected;
    const QModelIndexList rows = m_ui->tableView_dbc->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        selected.insert(m_dbcModel.signalAt(m_dbcRows.mapToSource(row).row()));
    QVector<int> places;
    for (int i = 0; i < channel().dbc_signals.size(); ++i) {
        if (selected.contains(channel().dbc_signals.at(i)))
            places.append(i);
    }
    return places;
}

void Logger_CAN_View::on_pushButton_remove_selected_clicked()
{
    const QVector<int> places = selectedSignals();
    if (places.isEmpty())
        return;
    TerminalCanCfg edited;
    record::copy(channel(), edited);
    QList<StreamingClass_DBC_Signal *> unwanted;
    for (const int place : places)
        unwanted.append(edited.dbc_signals.at(place));
    can::removeSignals(edited.dbc_signals, unwanted);
    (void)withEcho(handler()->writeCan(number(), edited)); // a failure is told by the handler
}

void Logger_CAN_View::on_lineEdit_dbc_filter_textChanged(QString text)
{
    const int nameColumn = m_dbcModel.columnOf(Model_DBC_Signals::Field::Name);
    m_dbcRows.set_sorting_string(nameColumn, text, false);
}

// Whether a signal is shown live is the tool's own affair.
void Logger_CAN_View::slotDbcModelChanged(bool transferCmd)
{
    if (transferCmd) {
        sendEditedSignals();
        return;
    }
    holdSignals();
    m_decoder.setSignals(channel().dbc_signals.items());
    m_dbcModel.valuesChanged();
    showFilters();
}

void Logger_CAN_View::holdSignals()
{
    m_held.clear();
    for (StreamingClass_DBC_Signal *signal : channel().dbc_signals)
        m_held.emplace_back(editableFields(*signal));
}

// The table edits the records themselves. They keep what they held until the edit is echoed.
void Logger_CAN_View::sendEditedSignals()
{
    TerminalCanCfg edited;
    record::copy(channel(), edited);
    const auto &records = channel().dbc_signals;
    const bool isHeld = m_held.size() == std::size_t(records.size());
    for (int i = 0; isHeld && i < records.size(); ++i)
        editableFields(*records.at(i)) = m_held[std::size_t(i)];
    (void)withEcho(handler()->writeCan(number(), edited)); // a failure is told by the handler
    m_dbcModel.setSignals(channel().dbc_signals.items());
}

// Also while nothing can be loaded: the drop tells why.
void Logger_CAN_View::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedDbcFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void Logger_CAN_View::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    loadDbcFile(draggedDbcFile(event->mimeData()));
}
