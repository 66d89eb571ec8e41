// The part of the page that shows, switches and configures the channel.

#include "can/views/logger_can_view.h"

#include "app/ui/checkboxdelegate.h"
#include "app/ui/headermemory.h"
#include "app/ui/plaintooltip.h"
#include "app/ui/userprompt.h"
#include "can/canfilters.h"
#include "can/ccpxcpstatus.h"
#include "can/dbcloadtask.h"
#include "can/views/dialogcan_cfg.h"
#include "can/views/dialogcanexpoptscfg.h"
#include "config/record/record.h"
#include "link/logger_data_handler_class.h"
#include "ui_logger_can_view.h"

#include <QDebug>
#include <QShortcut>

namespace {

constexpr int loadingShowsAfter_ms = 1000;
constexpr int figuresEvery_ms = 500;

QString indicatorStyle(bool isEnabled)
{
    return isEnabled ? QStringLiteral("QWidget::enabled{border-color: grey;  border-width: 1px;  "
                                      "border-style: solid;  background-color: rgb(0, 255, 0);} ")
                     : QStringLiteral("QWidget::enabled{border-color: grey;  border-width: 1px;  "
                                      "border-style: solid;  background-color: rgb(255, 0, 0);} ");
}

QString clearedFlagsText(const QStringList &names, int longestName)
{
    constexpr int mostNames = 20;
    QStringList shown;
    for (const QString &name : names.mid(0, mostNames))
        shown += shortText(name, longestName).simplified();
    QString list = shown.join(QStringLiteral(", "));
    if (names.size() > mostNames)
        list += Logger_CAN_View::tr(" and %1 more").arg(names.size() - mostNames);
    return Logger_CAN_View::tr("The channel has %1 message filters. \"Record\" and \"Live\" were "
                               "cleared, since more would be needed, of: %2")
        .arg(QString::number(can::maxFilters), list);
}

// The key does in the widget what the button does.
void addKey(Qt::Key key, QWidget *widget, QPushButton *button)
{
    auto *shortcut = new QShortcut(key, widget);
    shortcut->setContext(Qt::WidgetShortcut);
    QObject::connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
}

} // namespace

Logger_CAN_View::Logger_CAN_View(AppController *controller, const QString &componentName,
                                 const QString &title, int can_nr,
                                 Logger_Data_Handler_Class *handler, UserPrompt &prompt,
                                 QWidget *parent)
    : LoggerPage(controller, componentName, handler, parent, can_nr)
    , m_ui(std::make_unique<Ui::Logger_CAN_View>())
    , m_prompt(prompt)
    , m_loading(std::make_unique<DbcLoadTask>())
    , m_dbcModel({}, Model_DBC_Signals::Layout::CanView)
{
    m_ui->setupUi(this);
    setAccessibleName(title);
    m_ui->label_page_title->setText(title);
    QFont font = m_ui->label_page_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    m_ui->label_page_title->setFont(font);
    m_ui->frame_notice->hide();
    connect(m_ui->pushButton_notice_close, &QPushButton::clicked, m_ui->frame_notice,
            &QWidget::hide);
    setAcceptDrops(true);
    m_ui->splitter->setStretchFactor(0, 1);
    m_ui->splitter->setSizes({1000, 1}); // the lower part begins as low as it can be
    setUpTables();
    setConfigurationWidgets({m_ui->pushButton_can_enable, m_ui->pushButton_can_disable,
                             m_ui->pushButton_can_configuration, m_ui->pushButton_export_options});
    m_loadingShows.setObjectName(QStringLiteral("timer_loading_shows"));
    m_loadingShows.setSingleShot(true);
    m_loadingShows.setInterval(loadingShowsAfter_ms);
    m_figuresTimer.setInterval(figuresEvery_ms);
    constexpr int edges = 20; // of a line edit, in pixels
    m_ui->lineEdit_id->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000000"))
                                       + edges);
    connectHandler();
    connectOwnSignals();
    connectLoading();
    showTxLimits();
    showTxFields();
    noteLastFile();
    full_update();
}

Logger_CAN_View::~Logger_CAN_View() = default;

void Logger_CAN_View::setUpTables()
{
    m_dbcRows.setSourceModel(&m_dbcModel);
    m_ui->tableView_dbc->setModel(&m_dbcRows);
    m_rxRows.setSourceModel(&m_rxModel);
    m_rxRows.setSortRole(Qt::EditRole);
    m_rxRows.setDynamicSortFilter(false); // sortRxRows() does it, not each delivery
    m_ui->tableView_rx->setModel(&m_rxRows);
    for (QTableView *table : {m_ui->tableView_dbc, m_ui->tableView_rx}) {
        table->horizontalHeader()->setHighlightSections(false);
        table->horizontalHeader()->setStretchLastSection(true);
        table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 8);
        table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        table->verticalHeader()->hide();
    }
    for (const auto field : {Model_DBC_Signals::Field::Record, Model_DBC_Signals::Field::Live})
        m_ui->tableView_dbc->setItemDelegateForColumn(m_dbcModel.columnOf(field),
                                                      new CheckBoxDelegate(m_ui->tableView_dbc));
    const int em = fontMetrics().horizontalAdvance(QLatin1Char('m'));
    const auto setWidths = [em](QTableView *table, const QVector<int> &widths) {
        for (int column = 0; column < widths.size(); ++column)
            table->setColumnWidth(column, widths.at(column) * em);
    };
    setWidths(m_ui->tableView_dbc, {5, 4, 14, 8, 6, 8, 5, 7});
    setWidths(m_ui->tableView_rx, {8, 4, 22, 10, 8});
    m_ui->tableView_dbc->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    m_ui->tableView_rx->sortByColumn(0, Qt::AscendingOrder);
    new HeaderMemory(m_ui->tableView_dbc, QStringLiteral("CanSignals"));
    new HeaderMemory(m_ui->tableView_rx, QStringLiteral("CanReceived"));
    connect(&m_dbcModel, &Model_DBC_Signals::dbcModelChanged, this,
            &Logger_CAN_View::slotDbcModelChanged);
    connect(m_ui->tableView_dbc->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &Logger_CAN_View::updateDbcButtons);
    connect(&m_rxModel, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last) {
                noteRxChange(first.column(), last.column());
            });
    connect(&m_rxModel, &QAbstractItemModel::rowsInserted, this,
            [this] { noteRxChange(0, m_rxModel.columnCount() - 1); });
    connect(&m_figuresTimer, &QTimer::timeout, this, &Logger_CAN_View::showBusFigures);
    connect(&m_figuresTimer, &QTimer::timeout, this, &Logger_CAN_View::sortRxRows);
}

void Logger_CAN_View::connectHandler()
{
    using Handler = Logger_Data_Handler_Class;
    const Handler *link = handler();
    connect(link, &Handler::signal_update_cfg_can, this, &Logger_CAN_View::slot_update_cfg_can);
    connect(link, &Handler::signal_can_msg_list, this, &Logger_CAN_View::slot_receive_can_msg_list);
    connect(link, &Handler::signal_ccp_xcp_infos, this,
            &Logger_CAN_View::slot_receive_ccp_xcp_infos);
    connect(link, &Handler::signalFilterLimitCleared, this,
            [this](int can_nr, const QStringList &names) {
                if (isOwnNumber(can_nr))
                    showClearedFlags(names);
            });
}

void Logger_CAN_View::connectOwnSignals()
{
    connect(this, &Logger_CAN_View::signal_enable_can, handler(),
            [this](int can_nr, int enable, int *result_code) {
                const bool isDone =
                    withEcho(handler()->cmd_write_can_enabled(can_nr, quint8(enable)));
                *result_code = isDone ? Done : Failed;
            });
    connect(this, &Logger_CAN_View::signal_send_can_msg, handler(),
            [this](int can_nr, int ext_id, int rtr, int id, int, const QByteArray &bytes,
                   int *result_code) {
                const bool isDone =
                    handler()->writeCanMessage({can_nr, ext_id, rtr, quint32(id), bytes});
                *result_code = isDone ? Done : Failed;
            });
    connect(this, &Logger_CAN_View::signal_create_eth_config_dialog, this,
            &Logger_CAN_View::openConfiguration);
    connect(this, &Logger_CAN_View::signal_load_dbc_file, this, &Logger_CAN_View::chooseDbcFile);
    connect(m_ui->widget_bytes, &CanByteFields::returnPressed, m_ui->pushButton_send_msg,
            &QPushButton::click);
    // The mask of the identifier keeps returnPressed() back until all digits are there.
    addKey(Qt::Key_Return, m_ui->lineEdit_id, m_ui->pushButton_send_msg);
    addKey(Qt::Key_Enter, m_ui->lineEdit_id, m_ui->pushButton_send_msg);
    addKey(Qt::Key_Delete, m_ui->tableView_dbc, m_ui->pushButton_remove_selected);
    auto *copying = new QShortcut(QKeySequence::Copy, m_ui->tableView_rx);
    copying->setContext(Qt::WidgetShortcut);
    connect(copying, &QShortcut::activated, this, &Logger_CAN_View::copySelectedFrames);
    m_ui->widget_bytes->setTabOrderBetween(m_ui->spinBox_dlc, m_ui->pushButton_send_msg);
}

const TerminalCanCfg &Logger_CAN_View::channel() const
{
    return handler()->terminal().can.at(std::size_t(number()));
}

void Logger_CAN_View::redraw()
{
    const TerminalCanCfg &shown = channel();
    const bool isEnabled = shown.enabled != 0;
    m_ui->label_can_status->setText(isEnabled ? QStringLiteral("Enabled")
                                              : QStringLiteral("Disabled"));
    m_ui->label_can_indicator->setStyleSheet(indicatorStyle(isEnabled));
    QString mode;
    if (!shown.a2l.a2l_file_name.isEmpty())
        mode = can::sessionProtocol(shown.a2l) == can::SessionProtocol::Ccp
                   ? QStringLiteral("CCP Mode")
                   : QStringLiteral("XCP Mode");
    m_ui->label_a2l_mode->setText(mode);
}

// Not in redraw(): tables follow their models by signals, which are blocked there.
void Logger_CAN_View::takeOverChannel()
{
    const auto &records = channel().dbc_signals.items();
    m_decoder.setSignals(records);
    m_dbcModel.setSignals(records);
    holdSignals();
    m_rxModel.setComments(can::signalComments(records));
    m_busLoad.setTiming(channel());
    updateDbcButtons();
    if (records.isEmpty())
        m_summary = {};
    showSummary();
    showFilters();
}

void Logger_CAN_View::showChannel()
{
    showConfiguration();
    takeOverChannel();
}

void Logger_CAN_View::slot_update_cfg_can(int can_nr)
{
    if (!isOwnNumber(can_nr))
        return;
    showChannel();
    emit signal_update_can_cfg_window();
}

// A part of the configuration that isn't of this channel comes so, too: the file of the signals
// is unknown only when they are others.
void Logger_CAN_View::full_update()
{
    const auto before = m_held;
    showChannel();
    if (m_held == before)
        return;
    m_summary = {};
    showSummary();
}

void Logger_CAN_View::stateApplied(AppSta_t state)
{
    m_isEditable = appstate::configurationEditable(state).value_or(m_isEditable);
    m_isConnected = state == APP_STA_CONN_LOG_ON || state == APP_STA_CONN_LOG_OFF
                    || state == APP_STA_CONN_TRANSPARENT;
    m_dbcRows.setEditable(m_isEditable);
    m_ui->pushButton_send_msg->setEnabled(m_isConnected);
    m_ui->label_send_result->clear();
    m_sentFrames = 0;
    if (state == APP_STA_CONN_INIT) {
        forgetLiveData();
        m_ui->frame_notice->hide();
    }
    if (state == APP_STA_CONN_INIT || state == APP_STA_DISCONN)
        forgetSession();
    if (!m_isEditable)
        closeDialogs();
    updateDbcButtons();
}

// What they edit can't be written any more.
void Logger_CAN_View::closeDialogs()
{
    QStringList closed;
    for (QDialog *dialog : findChildren<QDialog *>()) {
        if (dialog->isVisible())
            closed += dialog->windowTitle();
        dialog->reject();
    }
    if (!closed.isEmpty())
        showNotice(tr("Closed, since the configuration can't be changed now: %1")
                       .arg(closed.join(QStringLiteral(", "))));
}

// Of the last connection: another logger's values must not stand beside this one's.
void Logger_CAN_View::forgetLiveData()
{
    m_decoder.forgetValues();
    m_dbcModel.valuesChanged();
    m_rxModel.clear_list();
    m_busLoad.clear();
    showRxNote();
    showBusFigures();
}

// Values and frames stay to be looked at after a connection; a session doesn't run on.
void Logger_CAN_View::forgetSession()
{
    m_ui->label_session_status->setText(QStringLiteral("-"));
    m_ui->label_session_error->clear();
}

void Logger_CAN_View::showNotice(const QString &text, const QString &wholeText)
{
    m_ui->label_notice->setText(text);
    m_ui->label_notice->setToolTip(plainToolTip(wholeText.isEmpty() ? text : wholeText));
    m_ui->frame_notice->show();
}

// All names stand in the diagnostic log.
void Logger_CAN_View::showClearedFlags(const QStringList &names)
{
    constexpr int longestName = 60;
    constexpr int longestNameInToolTip = 1'000;
    qInfo() << "The filter limit cleared the flags of CAN" << number() << names;
    showNotice(clearedFlagsText(names, longestName), clearedFlagsText(names, longestNameInToolTip));
}

void Logger_CAN_View::enableCan(bool on)
{
    int result = Failed;
    emit signal_enable_can(number(), on ? 1 : 0, &result); // a failure is told by the handler
}

void Logger_CAN_View::on_pushButton_can_enable_clicked()
{
    enableCan(true);
}

void Logger_CAN_View::on_pushButton_can_disable_clicked()
{
    enableCan(false);
}

void Logger_CAN_View::on_pushButton_can_configuration_clicked()
{
    emit signal_create_eth_config_dialog(number());
}

void Logger_CAN_View::openConfiguration()
{
    auto *dialog = new DialogCAN_Cfg(number(), channel(), m_prompt, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &DialogCAN_Cfg::signalWriteCan, this,
            [this](int can_nr, const TerminalCanCfg &edited) {
                // A failure is told by the handler.
                (void)withEcho(handler()->writeCan(can_nr, edited));
            });
    dialog->open();
}

void Logger_CAN_View::on_pushButton_export_options_clicked()
{
    auto *dialog =
        new DialogCanExpOptsCfg(QStringLiteral("CAN"), number(), channel().export_custom_name,
                                channel().export_name_mode, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        TerminalCanCfg edited;
        record::copy(channel(), edited);
        edited.export_custom_name = dialog->customName();
        edited.export_name_mode = dialog->mode();
        (void)withEcho(handler()->writeCan(number(), edited)); // a failure is told by the handler
    });
    dialog->open();
}

void Logger_CAN_View::slot_receive_ccp_xcp_infos(int can_nr, uchar session_status,
                                                 uchar last_slave_response_code)
{
    if (!isOwnNumber(can_nr))
        return;
    m_ui->label_session_status->setText(
        can::sessionStatusText(session_status, can::sessionProtocol(channel().a2l)));
    m_ui->label_session_error->setText(can::slaveResponseText(last_slave_response_code));
}
