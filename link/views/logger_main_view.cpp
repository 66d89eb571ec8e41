#include "link/views/logger_main_view.h"

#include "app/state/usersettings.h"
#include "app/ui/userprompt.h"
#include "config/valuenames.h"
#include "link/logger_data_handler_class.h"
#include "link/systemflags.h"
#include "link/views/logtriggercustomcombobox.h"
#include "ui_logger_main_view.h"

#include <QEvent>
#include <QRegularExpressionValidator>
#include <QTimer>

namespace {

const QLatin1String unknown("---");

} // namespace

Logger_Main_View::Logger_Main_View(AppController *controller, const QString &componentName,
                                   Logger_Data_Handler_Class *handler, UserPrompt &prompt,
                                   UserSettings &settings, QWidget *parent)
    : LoggerPage(controller, componentName, handler, parent)
    , m_prompt(prompt)
    , m_ui(std::make_unique<Ui::Logger_Main_View>())
    , m_folders(std::make_unique<EventFolders>(settings))
{
    m_ui->setupUi(this);
    m_ui->comboBox_trigger_signal_signal_name->setMaxVisibleItems(20);
    for (const char *mode : valuenames::auxModes)
        m_ui->comboBox_aux_supply_control->addItem(QString::fromUtf8(mode));
    m_ui->lineEdit_event_meassurement_name->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[a-zA-Z0-9-._]{0,20}")), this));
    setConfigurationWidgets(
        {m_ui->radioButton_trigger_delayed_start, m_ui->radioButton_trigger_signal,
         m_ui->spinBox_trigger_delay_seconds, m_ui->doubleSpinBox_trigger_signal_value,
         m_ui->checkBox_trigger_signal_stop_if_value_lower,
         m_ui->comboBox_trigger_signal_signal_name, m_ui->spinBox_trigger_signal_can_nr,
         m_ui->comboBox_aux_supply_control, m_ui->lineEdit_event_meassurement_name,
         m_ui->pushButton_set_event_meassurement_name});
    m_options =
        std::make_unique<DownloadOptions>(DownloadOptionsWidgets::of(*m_ui), settings, prompt);
    m_options->setFormats(m_options->rememberedFormats());
    setUpTable();
    connectSignals();
    showConfiguration();
    enable_disable_logfile_buttons();
}

Logger_Main_View::~Logger_Main_View() = default;

void Logger_Main_View::connectSignals()
{
    using Handler = Logger_Data_Handler_Class;
    connect(handler(), &Handler::signal_update_cfg_logtrigger, this,
            &Logger_Main_View::update_cfg_logtrigger);
    connect(handler(), &Handler::signal_system_infos_received, this,
            &Logger_Main_View::show_system_infos);
    connect(m_ui->radioButton_trigger_delayed_start, &QRadioButton::clicked, this,
            &Logger_Main_View::send_req_logtrigger_cfg);
    connect(m_ui->radioButton_trigger_signal, &QRadioButton::clicked, this,
            &Logger_Main_View::send_req_logtrigger_cfg);
    connect(m_ui->checkBox_trigger_signal_stop_if_value_lower, &QCheckBox::clicked, this,
            &Logger_Main_View::send_req_logtrigger_cfg);
    connect(m_ui->comboBox_trigger_signal_signal_name, &LogTriggerCustomComboBox::signal_clicked,
            this, &Logger_Main_View::combobox_logtrigger_signal_filling);
    connect(m_ui->comboBox_aux_supply_control, QOverload<int>::of(&QComboBox::currentIndexChanged),
            this, &Logger_Main_View::comboBox_aux_supply_control_currentIndexChanged);
}

void Logger_Main_View::redraw()
{
    update_cfg_logtrigger();
    m_ui->comboBox_aux_supply_control->setCurrentIndex(handler()->terminal().event.aux_mode);
    showEventName();
}

void Logger_Main_View::stateApplied(AppSta_t state)
{
    const AppSta_t before = std::exchange(m_state, state);
    if (state == APP_STA_DISCONN) {
        for (QLabel *label : {m_ui->label_logging_status, m_ui->label_aux_supply_status,
                              m_ui->label_disc_space_free, m_ui->label_disc_space_total})
            label->setText(unknown);
    }
    enable_disable_logfile_buttons();
    const bool isReady = state == APP_STA_CONN_LOG_ON || state == APP_STA_CONN_LOG_OFF;
    if (before == APP_STA_CONN_INIT && isReady) // when the steps of connecting are done
        QTimer::singleShot(0, this, &Logger_Main_View::readStorageOfNewLogger);
}

// The list may have changed in another window.
bool Logger_Main_View::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate && m_options)
        fill_combobox_with_event_folders();
    return LoggerPage::event(event);
}

void Logger_Main_View::show_system_infos()
{
    const quint32 flags = handler()->systemInfos().flags;
    m_ui->label_logging_status->setText(systemflags::loggingText(flags));
    m_ui->label_aux_supply_status->setText(systemflags::auxSupplyText(flags));
    m_ui->label_aux_supply_status->setStyleSheet(
        systemflags::hasAuxSupplyFault(flags) ? QStringLiteral("color: #B00020") : QString());
}

void Logger_Main_View::comboBox_aux_supply_control_currentIndexChanged(int index)
{
    if (!withEcho(handler()->cmd_write_aux_supply_control(quint8(index))))
        showConfiguration();
}

// What the user is typing stays while other parts of the configuration change.
void Logger_Main_View::showEventName()
{
    const QString held = handler()->terminal().event.event_name;
    QLineEdit *line = m_ui->lineEdit_event_meassurement_name;
    if (line->isModified() && held == m_shownEventName)
        return;
    m_shownEventName = held;
    line->setText(held);
}

void Logger_Main_View::on_pushButton_set_event_meassurement_name_clicked()
{
    QLineEdit *line = m_ui->lineEdit_event_meassurement_name;
    if (!line->hasAcceptableInput()) {
        m_prompt.warn(QStringLiteral("Event-Measurement"),
                      QStringLiteral("The name may have up to 20 characters: a to z, A to Z, "
                                     "0 to 9, \"-\", \".\" and \"_\"."));
        return;
    }
    AuxSupplyCfg record = handler()->terminal().event;
    record.event_name = line->text();
    line->setModified(false); // the echo tells the name that holds
    if (!withEcho(handler()->writeEventMeasurement(record)))
        showConfiguration();
}

void Logger_Main_View::on_lineEdit_event_meassurement_name_returnPressed()
{
    on_pushButton_set_event_meassurement_name_clicked();
}

void Logger_Main_View::fill_combobox_with_event_folders()
{
    m_options->fillFolders();
}

int Logger_Main_View::get_free_event_folder_nr() const
{
    return m_folders->freeNumber().value_or(-1);
}

void Logger_Main_View::on_pushButton_show_folder_clicked()
{
    m_options->showFolder();
}

void Logger_Main_View::on_pushButton_remove_selected_frolder_from_list_clicked()
{
    m_options->removeFolder();
}

void Logger_Main_View::on_pushButton_add_selected_frolder_from_list_clicked()
{
    m_options->addFolder();
}

void Logger_Main_View::on_comboBox_event_folders_currentIndexChanged(int)
{
    m_options->rememberFolder();
}

void Logger_Main_View::on_checkBox_generate_mdf4_clicked()
{
    m_options->rememberFormats();
}

void Logger_Main_View::on_checkBox_generate_blf_stateChanged(int)
{
    m_options->rememberFormats();
}

void Logger_Main_View::on_checkBox_generate_asc_clicked()
{
    m_options->rememberFormats();
}

void Logger_Main_View::on_checkBox_generate_asc_zip_clicked()
{
    m_options->rememberFormats();
}
