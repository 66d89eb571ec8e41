#include "can/views/dialogcan_cfg.h"

#include "app/ui/userprompt.h"
#include "can/bittiming.h"
#include "can/canfilters.h"
#include "can/models/comboboxitemdelegate.h"
#include "can/models/hexitemdelegate.h"
#include "can/models/modelidfilterelements.h"
#include "config/terminalcancfg.h"
#include "ui_dialogcan_cfg.h"

#include <QDebug>
#include <QMetaMethod>
#include <QShortcut>

#include <array>

namespace {

using Form = Ui::DialogCAN_Cfg;
using Channel = TerminalCanCfg;

struct SpinBoxOfField
{
    QSpinBox *Form::*box;
    quint8 Channel::*field;
};

// All timing registers but the nominal divider, which has 16 bits.
constexpr SpinBoxOfField spinBoxes[] = {
    {&Form::spinBox_tseg1, &Channel::tseg1},
    {&Form::spinBox_tseg2, &Channel::tseg2},
    {&Form::spinBox_sjw, &Channel::sjw},
    {&Form::spinBox_fast_clk_div, &Channel::fast_clk_div},
    {&Form::spinBox_fast_tseg1, &Channel::fast_tseg1},
    {&Form::spinBox_fast_tseg2, &Channel::fast_tseg2},
    {&Form::spinBox_fast_sjw, &Channel::fast_sjw},
};

struct ButtonsOfField
{
    quint8 Channel::*field;
    QAbstractButton *set;             // checked: 1
    QAbstractButton *clear = nullptr; // the other one of a pair; checked: 0
};

std::array<ButtonsOfField, 6> buttonsOf(const Form &form)
{
    return {{
        {&Channel::enabled, form.checkBox_can_enabled},
        {&Channel::listen_only, form.checkBox_listen_only},
        {&Channel::single_shot, form.checkBox_single_shot},
        {&Channel::termination, form.checkBox_termination},
        {&Channel::remote_11, form.radioButton_remote_11_reject, form.radioButton_remote_11_filter},
        {&Channel::remote_29, form.radioButton_remote_29_reject, form.radioButton_remote_29_filter},
    }};
}

QString withThreeDecimals(double value)
{
    return QString::number(value, 'f', 3);
}

void showResults(const can::BitTiming &timing, QLineEdit *bitRate, QLineEdit *samplePoint)
{
    bitRate->setText(withThreeDecimals(can::bitRate_kHz(timing)));
    samplePoint->setText(withThreeDecimals(can::samplePoint_percent(timing)));
}

} // namespace

DialogCAN_Cfg::DialogCAN_Cfg(int can_nr, const TerminalCanCfg &channel, UserPrompt &prompt,
                             QWidget *parent)
    : QDialog(parent)
    , m_canNumber(can_nr)
    , m_channel(channel)
    , m_prompt(prompt)
    , m_ui(std::make_unique<Ui::DialogCAN_Cfg>())
    , m_filters(new ModelIDFilterElements(this))
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("CAN-%1 Configuration").arg(can_nr));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->comboBox_can_iso_preset->addItems(can::nominalPresetTexts());
    m_ui->comboBox_can_fd_preset->addItems(can::fastPresetTexts());
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &DialogCAN_Cfg::set_cfg);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DialogCAN_Cfg::reject);
    connectTimingBoxes();
    setUpFilterTable();
    set_cfg_to_gui();
}

DialogCAN_Cfg::~DialogCAN_Cfg() = default;

void DialogCAN_Cfg::connectTimingBoxes()
{
    const auto changed = QOverload<int>::of(&QSpinBox::valueChanged);
    for (QSpinBox *box :
         {m_ui->spinBox_clk_div, m_ui->spinBox_tseg1, m_ui->spinBox_tseg2, m_ui->spinBox_sjw})
        connect(box, changed, this, &DialogCAN_Cfg::calculate_bitrate_infos);
    for (QSpinBox *box : {m_ui->spinBox_fast_clk_div, m_ui->spinBox_fast_tseg1,
                          m_ui->spinBox_fast_tseg2, m_ui->spinBox_fast_sjw})
        connect(box, changed, this, &DialogCAN_Cfg::calculate_fast_bitrate_infos);
}

void DialogCAN_Cfg::setUpFilterTable()
{
    using Column = ModelIDFilterElements::Column;
    QTableView *table = m_ui->tableView_filters;
    table->setModel(m_filters);
    table->setItemDelegateForColumn(Column::Type, new ComboBoxItemDelegate(table));
    for (const int column : {Column::Id1, Column::Id2})
        table->setItemDelegateForColumn(column, new HexItemDelegate(table));
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->horizontalHeader()->setHighlightSections(false);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &DialogCAN_Cfg::enableFilterButtons);
    enableFilterButtons();
    new QShortcut(QKeySequence(Qt::Key_Insert), table, this,
                  &DialogCAN_Cfg::on_pushButton_filter_add_clicked, Qt::WidgetShortcut);
    new QShortcut(QKeySequence(Qt::Key_Delete), table, this,
                  &DialogCAN_Cfg::on_pushButton_filter_delete_clicked, Qt::WidgetShortcut);
}

void DialogCAN_Cfg::set_cfg_to_gui()
{
    m_ui->comboBox_can_mode->setCurrentIndex(m_channel.can_mode);
    for (const ButtonsOfField &buttons : buttonsOf(*m_ui)) {
        const bool isSet = m_channel.*buttons.field != 0;
        buttons.set->setChecked(isSet);
        if (buttons.clear)
            buttons.clear->setChecked(!isSet);
    }
    m_ui->comboBox_can_iso_preset->setCurrentIndex(0);
    m_ui->comboBox_can_fd_preset->setCurrentIndex(0);
    m_ui->spinBox_clk_div->setValue(m_channel.clk_div);
    for (const SpinBoxOfField &s : spinBoxes)
        ((*m_ui).*s.box)->setValue(m_channel.*s.field);
    calculate_bitrate_infos();
    calculate_fast_bitrate_infos();
    m_filters->setRows(m_channel.filters);
    showWhoMakesTheFilters();
    showAimModules();
}

void DialogCAN_Cfg::showWhoMakesTheFilters()
{
    const bool areManual = !can::filtersComeFromSignals(m_channel);
    m_ui->groupBox_filters->setEnabled(areManual);
    m_ui->label_filters_made->setVisible(!areManual);
}

void DialogCAN_Cfg::on_comboBox_can_iso_preset_currentIndexChanged(int index)
{
    if (index != 0)
        load_preset_clicked();
}

void DialogCAN_Cfg::on_comboBox_can_fd_preset_currentIndexChanged(int index)
{
    if (index != 0)
        load_preset_clicked();
}

void DialogCAN_Cfg::load_preset_clicked()
{
    if (const auto t = can::nominalPreset(m_ui->comboBox_can_iso_preset->currentIndex()))
        set_can_bitrate_values(t->clk_div, t->tseg1, t->tseg2, t->sjw);
    if (const auto t = can::fastPreset(m_ui->comboBox_can_fd_preset->currentIndex()))
        set_can_fast_bitrate_values(t->clk_div, t->tseg1, t->tseg2, t->sjw);
}

void DialogCAN_Cfg::set_can_bitrate_values(int clk_div, int tseg1, int tseg2, int sjw)
{
    m_ui->spinBox_clk_div->setValue(clk_div);
    m_ui->spinBox_tseg1->setValue(tseg1);
    m_ui->spinBox_tseg2->setValue(tseg2);
    m_ui->spinBox_sjw->setValue(sjw);
}

void DialogCAN_Cfg::set_can_fast_bitrate_values(int clk_div, int tseg1, int tseg2, int sjw)
{
    m_ui->spinBox_fast_clk_div->setValue(clk_div);
    m_ui->spinBox_fast_tseg1->setValue(tseg1);
    m_ui->spinBox_fast_tseg2->setValue(tseg2);
    m_ui->spinBox_fast_sjw->setValue(sjw);
}

void DialogCAN_Cfg::calculate_bitrate_infos()
{
    showResults({m_ui->spinBox_clk_div->value(), m_ui->spinBox_tseg1->value(),
                 m_ui->spinBox_tseg2->value(), m_ui->spinBox_sjw->value()},
                m_ui->lineEdit_bitrate, m_ui->lineEdit_sample_point);
}

void DialogCAN_Cfg::calculate_fast_bitrate_infos()
{
    showResults({m_ui->spinBox_fast_clk_div->value(), m_ui->spinBox_fast_tseg1->value(),
                 m_ui->spinBox_fast_tseg2->value(), m_ui->spinBox_fast_sjw->value()},
                m_ui->lineEdit_fast_bitrate, m_ui->lineEdit_fast_sample_point);
}

void DialogCAN_Cfg::on_pushButton_filter_add_clicked()
{
    if (m_filters->rowCount() >= can::maxFilters) {
        m_prompt.inform(QStringLiteral("Filter-Limit"),
                        QStringLiteral("Filters limited to %1.").arg(can::maxFilters));
        return;
    }
    QTableView *table = m_ui->tableView_filters;
    const int row = table->currentIndex().row() + 1; // 0 if none is current
    m_filters->insertNew(row);
    table->setCurrentIndex(m_filters->index(row, ModelIDFilterElements::Type));
}

void DialogCAN_Cfg::on_pushButton_filter_delete_clicked()
{
    const QItemSelectionModel *selection = m_ui->tableView_filters->selectionModel();
    const QModelIndex current = selection->currentIndex();
    if (current.isValid() && selection->isSelected(current))
        m_filters->removeRows(current.row(), 1);
}

void DialogCAN_Cfg::clear_filter_list()
{
    m_filters->removeRows(0, m_filters->rowCount());
}

void DialogCAN_Cfg::enableFilterButtons()
{
    m_ui->pushButton_filter_delete->setEnabled(
        m_ui->tableView_filters->selectionModel()->hasSelection());
}

void DialogCAN_Cfg::set_cfg()
{
    // Through the stream, so that the copy shares no list with the channel.
    TerminalCanCfg channel;
    record::copy(m_channel, channel);
    readWidgets(channel);
    if (channel.listen_only && !channel.a2l.config.cfg.daq_lists.isEmpty())
        m_prompt.inform(
            QStringLiteral("Listen Only"),
            QStringLiteral("The \"Listen Only\" option is set in the CAN configuration, If using "
                           "CCP/XCP on CAN please make sure to remove it."));
    qDebug() << "NEW CFG dbc-signal cnt:" << channel.dbc_signals.size();
    emit signalWriteCan(m_canNumber, channel);
    accept();
}

void DialogCAN_Cfg::readWidgets(TerminalCanCfg &channel) const
{
    const int mode = m_ui->comboBox_can_mode->currentIndex();
    if (mode >= 0) // none: a mode that the box doesn't know
        channel.can_mode = quint8(mode);
    for (const ButtonsOfField &buttons : buttonsOf(*m_ui))
        channel.*buttons.field = buttons.set->isChecked() ? 1 : 0;
    channel.clk_div = quint16(m_ui->spinBox_clk_div->value());
    for (const SpinBoxOfField &s : spinBoxes)
        channel.*s.field = quint8(((*m_ui).*s.box)->value());
    m_filters->copyRowsTo(channel.filters);
}

void DialogCAN_Cfg::on_pushButton_aimModules_clicked()
{
    emit signalOpenAimModules();
    showAimModules();
}

void DialogCAN_Cfg::showAimModules()
{
    const bool canOpen =
        isSignalConnected(QMetaMethod::fromSignal(&DialogCAN_Cfg::signalOpenAimModules));
    QPushButton *button = m_ui->pushButton_aimModules;
    button->setText(QStringLiteral("AIM Modules (%1)").arg(m_channel.aim_modules.size()));
    button->setEnabled(canOpen);
    button->setToolTip(canOpen ? tr("Opens the list of measuring modules on this channel")
                               : tr("This version has no list of measuring modules."));
}

void DialogCAN_Cfg::connectNotify(const QMetaMethod &signal)
{
    if (signal == QMetaMethod::fromSignal(&DialogCAN_Cfg::signalOpenAimModules))
        showAimModules();
}
