#include "can/views/dialog_dbc_signal_selector.h"

#include "app/ui/checkboxdelegate.h"
#include "app/ui/headermemory.h"
#include "app/ui/settingsstore.h"
#include "app/ui/userprompt.h"
#include "can/dbcsignals.h"
#include "ui_dialog_dbc_signal_selector.h"

#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QMetaMethod>
#include <QPointer>
#include <QSet>
#include <QShortcut>
#include <QSignalBlocker>

using Field = Model_DBC_Signals::Field;
using Signal = StreamingClass_DBC_Signal;

namespace {

constexpr int rowPadding = 8; // pixels

const QString geometryKey = QStringLiteral("dbcSignalSelection/geometry");

OwnedList<Signal> owned(const QList<Signal *> &records)
{
    OwnedList<Signal> list;
    for (Signal *record : records)
        list.append(std::unique_ptr<Signal>(record));
    return list;
}

QString number(int value)
{
    return QLocale().toString(value);
}

void setColour(QWidget *swatch, const QColor &colour)
{
    QPalette palette = swatch->palette();
    palette.setColor(QPalette::Window, colour);
    swatch->setPalette(palette);
}

} // namespace

Dialog_DBC_Signal_Selector::Dialog_DBC_Signal_Selector(const TerminalCanCfg &channel,
                                                       const QList<Signal *> &parsedSignals,
                                                       UserPrompt &prompt, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::Dialog_DBC_Signal_Selector>())
    , m_prompt(prompt)
    , m_channelFilters(can::effectiveFilters(channel, can::SelectedOnly::Yes))
    , m_signals(owned(parsedSignals))
    , m_model(m_signals.items(), Model_DBC_Signals::Layout::SelectionDialog)
{
    m_model.setChannelSignals(channel.dbc_signals.items());
    m_rows.setSourceModel(&m_model);

    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setUpTable();
    setUpLegend();
    connect(m_ui->radioButton_name, &QRadioButton::toggled, this,
            &Dialog_DBC_Signal_Selector::refresh_filter);
    connect(m_ui->checkBox_only_checked, &QCheckBox::toggled, this,
            &Dialog_DBC_Signal_Selector::refresh_filter);
    connect(m_ui->pushButton_load, &QPushButton::clicked, this,
            &Dialog_DBC_Signal_Selector::load_selected);
    connect(m_ui->pushButton_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, m_ui->lineEdit_filter,
            [this] {
                m_ui->lineEdit_filter->setFocus(Qt::ShortcutFocusReason);
                m_ui->lineEdit_filter->selectAll();
            });
    m_ui->lineEdit_filter->installEventFilter(this);
    restoreGeometry(SettingsStore().value(geometryKey).toByteArray());
    countChanges(true);
    dbc_model_data_changed({}, {}, {});
    m_ui->lineEdit_filter->setFocus();
}

Dialog_DBC_Signal_Selector::~Dialog_DBC_Signal_Selector()
{
    hide(); // the table's columns are saved while they are there
    SettingsStore().setValue(geometryKey, saveGeometry());
}

void Dialog_DBC_Signal_Selector::setSummary(const QString &summary)
{
    m_ui->label_summary->setText(summary);
    m_ui->label_summary->setVisible(!summary.isEmpty());
}

void Dialog_DBC_Signal_Selector::setUpTable()
{
    QTableView *table = m_ui->tableView_signals;
    table->setModel(&m_rows);
    table->setItemDelegateForColumn(m_model.columnOf(Field::Record), new CheckBoxDelegate(table));
    table->verticalHeader()->setVisible(false);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + rowPadding);

    QHeaderView *header = table->horizontalHeader();
    header->setHighlightSections(false);
    header->setStretchLastSection(true);
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    const int letter = table->fontMetrics().averageCharWidth();
    constexpr std::pair<Field, int> letters[] = {
        {Field::Record, 10}, {Field::Id, 14}, {Field::Name, 42}, {Field::Unit, 16}};
    for (const auto &[field, count] : letters)
        header->resizeSection(m_model.columnOf(field), letter * count);
    connect(header, &QHeaderView::sortIndicatorChanged, this,
            &Dialog_DBC_Signal_Selector::set_sorting_column);
    new HeaderMemory(table, QStringLiteral("DbcSignalSelection"));

    auto *sorting = new QAction(QStringLiteral("Sort by this column"), table);
    sorting->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
    sorting->setShortcutContext(Qt::WidgetShortcut);
    connect(sorting, &QAction::triggered, this, &Dialog_DBC_Signal_Selector::sortByCurrentColumn);
    auto *ticking = new QAction(QStringLiteral("Tick or untick the selected rows"), table);
    ticking->setShortcut(QKeySequence(Qt::Key_Space));
    ticking->setShortcutContext(Qt::WidgetShortcut);
    connect(ticking, &QAction::triggered, this, &Dialog_DBC_Signal_Selector::tickSelectedRows);
    table->addActions({ticking, sorting});
}

void Dialog_DBC_Signal_Selector::setUpLegend()
{
    m_ui->label_loaded->setText(Model_DBC_Signals::loadedText());
    m_ui->label_loaded_differently->setText(Model_DBC_Signals::loadedDifferentlyText());
    setColour(m_ui->label_colour_loaded, Model_DBC_Signals::loadedColour());
    setColour(m_ui->label_colour_loaded_differently, Model_DBC_Signals::loadedDifferentlyColour());
    m_ui->label_remaining_filters->setToolTip(
        QStringLiteral("Hardware filters that stay free once the ticked signals are loaded, of %1 "
                       "in all; each message takes one. Below 0 nothing can be loaded.")
            .arg(can::maxFilters));
    m_ui->label_remaining_caption->setToolTip(m_ui->label_remaining_filters->toolTip());
}

void Dialog_DBC_Signal_Selector::countChanges(bool on)
{
    disconnect(m_counting);
    if (on)
        m_counting = connect(&m_model, &QAbstractItemModel::dataChanged, this,
                             &Dialog_DBC_Signal_Selector::dbc_model_data_changed);
}

// Many at once, counted once.
void Dialog_DBC_Signal_Selector::tick(const QModelIndexList &records, bool on)
{
    const Qt::CheckState state = on ? Qt::Checked : Qt::Unchecked;
    countChanges(false);
    for (const QModelIndex &record : records) {
        if (record.data(Qt::CheckStateRole).toInt() != state)
            m_rows.setData(record, state, Qt::CheckStateRole);
    }
    countChanges(true);
    dbc_model_data_changed({}, {}, {});
}

QModelIndexList Dialog_DBC_Signal_Selector::visibleRecords() const
{
    QModelIndexList records;
    for (int row = 0; row < m_rows.rowCount(); ++row)
        records.append(m_rows.index(row, 0));
    return records;
}

void Dialog_DBC_Signal_Selector::on_pushButton_select_all_clicked()
{
    tick(visibleRecords(), true);
}

void Dialog_DBC_Signal_Selector::on_pushButton_unselect_all_clicked()
{
    tick(visibleRecords(), false);
}

// Ticks them all, unless all are ticked.
void Dialog_DBC_Signal_Selector::tickSelectedRows()
{
    const QModelIndexList records = m_ui->tableView_signals->selectionModel()->selectedRows(0);
    const bool areAllTicked =
        std::all_of(records.begin(), records.end(), [](const QModelIndex &record) {
            return record.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        });
    tick(records, !areAllTicked);
}

void Dialog_DBC_Signal_Selector::set_sorting_column(int column_clicked)
{
    QHeaderView *header = m_ui->tableView_signals->horizontalHeader();
    if (column_clicked < 1) { // ticks don't sort; the click has moved the indicator there
        const QSignalBlocker blocker(header);
        header->setSortIndicator(m_rows.sortColumn(), m_rows.sortOrder());
        return;
    }
    const Qt::SortOrder order = header->sortIndicatorOrder();
    if (column_clicked == m_rows.sortColumn())
        m_rows.set_sorting_up(order == Qt::AscendingOrder);
    else
        m_rows.sort(column_clicked, order);
}

void Dialog_DBC_Signal_Selector::sortByCurrentColumn()
{
    QHeaderView *header = m_ui->tableView_signals->horizontalHeader();
    const int column = m_ui->tableView_signals->currentIndex().column();
    if (column < 1)
        return;
    const bool isTurned = header->sortIndicatorSection() == column
                          && header->sortIndicatorOrder() == Qt::AscendingOrder;
    header->setSortIndicator(column, isTurned ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void Dialog_DBC_Signal_Selector::on_lineEdit_filter_textChanged(QString)
{
    refresh_filter(true);
}

void Dialog_DBC_Signal_Selector::refresh_filter(bool)
{
    const Field field = m_ui->radioButton_name->isChecked() ? Field::Name : Field::Description;
    m_rows.set_sorting_string(m_model.columnOf(field), m_ui->lineEdit_filter->text(),
                              m_ui->checkBox_only_checked->isChecked());
    const QModelIndex current = m_ui->tableView_signals->currentIndex();
    if (current.isValid())
        m_ui->tableView_signals->scrollTo(current);
    showCounts();
}

QString Dialog_DBC_Signal_Selector::calc_signals_to_load(QList<Signal *> *output_signal_list,
                                                         int *output_selected_signals)
{
    const can::SignalsToLoad load = can::signalsToLoad(m_signals.items());
    *output_signal_list = load.records;
    *output_selected_signals = load.selected;
    return load.error;
}

int Dialog_DBC_Signal_Selector::calculate_total_needed_filter_cnt()
{
    QList<Signal *> chosen;
    calc_signals_to_load(&chosen, &m_selected);
    return int(can::merged(can::filtersFromSignals(chosen, can::SelectedOnly::No), m_channelFilters)
                   .size());
}

void Dialog_DBC_Signal_Selector::dbc_model_data_changed(QModelIndex, QModelIndex, QVector<int>)
{
    showRemaining(can::maxFilters - calculate_total_needed_filter_cnt());
    showCounts();
}

void Dialog_DBC_Signal_Selector::showRemaining(int remaining)
{
    const bool isWithinLimit = remaining >= 0;
    m_ui->label_remaining_filters->setText(QString::number(remaining));
    const QString style = isWithinLimit ? QStringLiteral("QLabel { color : black; }")
                                        : QStringLiteral("QLabel { color : red; }");
    if (m_ui->label_remaining_filters->styleSheet() != style) // to set one takes milliseconds
        m_ui->label_remaining_filters->setStyleSheet(style);
    m_ui->pushButton_load->setEnabled(isWithinLimit);
    m_ui->pushButton_load->setToolTip(
        isWithinLimit ? QStringLiteral("Adds the ticked signals to the channel (Return)")
                      : QStringLiteral("The ticked signals need more filters than the hardware "
                                       "has: untick some messages"));
}

void Dialog_DBC_Signal_Selector::showCounts()
{
    m_ui->label_counts->setText(
        QStringLiteral("%1 of %2 signals shown, %3 checked")
            .arg(number(m_rows.rowCount()), number(m_model.rowCount()), number(m_selected)));
}

void Dialog_DBC_Signal_Selector::load_selected()
{
    QList<Signal *> chosen;
    int selected = 0;
    const QString error = calc_signals_to_load(&chosen, &selected);
    if (selected == 0) {
        m_prompt.inform(QStringLiteral("No Signal selected"),
                        QStringLiteral("Please select signals for recording."));
    } else if (calculate_total_needed_filter_cnt() > can::maxFilters) {
        m_prompt.warn(QStringLiteral("Filter-Limit"),
                      QStringLiteral("Filter-Limit exceeded, please deselect DBC-Signals."));
    } else if (!error.isEmpty()) {
        m_prompt.warn(QStringLiteral("DBC-Error"), error);
    } else {
        const QPointer<Dialog_DBC_Signal_Selector> self(this);
        handOver(chosen);
        if (self)
            accept();
    }
}

void Dialog_DBC_Signal_Selector::handOver(QList<Signal *> &chosen)
{
    static const QMetaMethod handingOver =
        QMetaMethod::fromSignal(&Dialog_DBC_Signal_Selector::signal_load_selected_dbc_signals);
    if (!isSignalConnected(handingOver))
        return;
    m_model.setSignals({}); // the receiver may free the records at once
    const QSet<Signal *> handedOver(chosen.begin(), chosen.end());
    OwnedList<Signal> all;
    all.swap(m_signals);
    while (!all.isEmpty()) {
        std::unique_ptr<Signal> record = all.takeAt(0);
        if (handedOver.contains(record.get()))
            record.release(); // to the receiver
        else
            m_signals.append(std::move(record));
    }
    emit signal_load_selected_dbc_signals(&chosen);
}

void Dialog_DBC_Signal_Selector::enterTable()
{
    QTableView *table = m_ui->tableView_signals;
    if (!table->currentIndex().isValid() && m_rows.rowCount() > 0)
        table->selectRow(0);
    table->setFocus(Qt::OtherFocusReason);
}

// Return and the arrow lead from the filter to the table: loading is for the table's Return.
bool Dialog_DBC_Signal_Selector::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->lineEdit_filter && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down) {
            enterTable();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
