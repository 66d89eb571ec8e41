// The part of Logger_Main_View that shows and edits the log trigger.

#include "can/dbcsignals.h"
#include "link/logger_data_handler_class.h"
#include "link/views/logger_main_view.h"
#include "link/views/logtriggercustomcombobox.h"
#include "ui_logger_main_view.h"

#include <QDebug>

using logtrigger::Choice;

namespace {

constexpr int noSignal = -1; // data of the item that stands for none

bool isSame(const Choice &a, const Choice &b)
{
    return can::isIdenticalSignal(a.signal, b.signal);
}

QString shortId(const StreamingClass_DBC_Signal &signal)
{
    return QStringLiteral("0x%1").arg(signal.msg_id, signal.extended_id ? 8 : 3, 16,
                                      QLatin1Char('0'));
}

// Signals of several messages of a channel may be called the same.
QString textOf(const Choice &choice, const QHash<QString, int> &timesOfName)
{
    const QString &name = choice.signal.name;
    return timesOfName.value(name) > 1 ? QStringLiteral("%1 (%2)").arg(name, shortId(choice.signal))
                                       : name;
}

} // namespace

void Logger_Main_View::connect_disconnect_logtrigger_cfg_spinboxes(bool connected)
{
    for (const QMetaObject::Connection &connection : qAsConst(m_spinBoxConnections))
        disconnect(connection);
    m_spinBoxConnections.clear();
    if (!connected)
        return;
    m_spinBoxConnections = {
        connect(m_ui->spinBox_trigger_delay_seconds, QOverload<int>::of(&QSpinBox::valueChanged),
                this, &Logger_Main_View::logtrigger_delay_seconds),
        connect(m_ui->doubleSpinBox_trigger_signal_value,
                QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
                &Logger_Main_View::logtrigger_signal_value),
        connect(m_ui->spinBox_trigger_signal_can_nr, QOverload<int>::of(&QSpinBox::valueChanged),
                this, &Logger_Main_View::logtrigger_can_nr)};
}

void Logger_Main_View::connect_disconnect_logtrigger_signal_combobox(bool connected)
{
    disconnect(m_signalBoxConnection);
    if (connected)
        m_signalBoxConnection =
            connect(m_ui->comboBox_trigger_signal_signal_name, &QComboBox::currentTextChanged, this,
                    &Logger_Main_View::trigger_signal_combobox_text_changed);
}

void Logger_Main_View::update_cfg_logtrigger()
{
    const LogTriggerCfg &record = handler()->terminal().trigger;
    qDebug() << "Logger_Main_View::update_cfg_logtrigger() -> CAN NR:" << record.signal_can;
    connect_disconnect_logtrigger_cfg_spinboxes(false);
    connect_disconnect_logtrigger_signal_combobox(false);
    showTrigger(record);
    connect_disconnect_logtrigger_cfg_spinboxes(true);
    connect_disconnect_logtrigger_signal_combobox(true);
}

void Logger_Main_View::showTrigger(const LogTriggerCfg &record)
{
    const bool isBySignal = record.mode != 0;
    m_ui->radioButton_trigger_delayed_start->setChecked(!isBySignal);
    m_ui->radioButton_trigger_signal->setChecked(isBySignal);
    m_ui->spinBox_trigger_delay_seconds->setValue(record.delay);
    m_ui->doubleSpinBox_trigger_signal_value->setValue(record.signal_value);
    m_ui->checkBox_trigger_signal_stop_if_value_lower->setChecked(record.stop_if_lower != 0);
    m_ui->spinBox_trigger_signal_can_nr->setValue(record.signal_can);
    m_ui->frame_trigger_delay->setVisible(!isBySignal);
    m_ui->frame_trigger_signal->setVisible(isBySignal);
    m_shownTrigger = triggerInput();

    const auto valid = logtrigger::validChoice(handler()->terminal(), record);
    showTriggerChoices(valid ? QVector<Choice>{*valid} : QVector<Choice>(), valid);
}

QVector<Choice> Logger_Main_View::choicesOfShownChannel() const
{
    return logtrigger::choicesOf(handler()->terminal(),
                                 m_ui->spinBox_trigger_signal_can_nr->value());
}

// The current one is selected; without one the first item says so.
void Logger_Main_View::showTriggerChoices(const QVector<Choice> &choices,
                                          const std::optional<Choice> &current)
{
    QHash<QString, int> timesOfName;
    const QVector<Choice> ofChannel = choicesOfShownChannel();
    for (const Choice &choice : ofChannel)
        ++timesOfName[choice.signal.name];

    m_choices = choices;
    QComboBox *box = m_ui->comboBox_trigger_signal_signal_name;
    box->clear();
    if (!current)
        box->addItem(QStringLiteral("no dbc-signal selected"), noSignal);
    int currentIndex = 0;
    for (int i = 0; i < choices.size(); ++i) {
        if (current && isSame(choices.at(i), *current))
            currentIndex = box->count();
        box->addItem(textOf(choices.at(i), timesOfName), i);
    }
    box->setCurrentIndex(currentIndex);
    showTriggerUnit();
}

void Logger_Main_View::showTriggerUnit()
{
    const auto choice = triggerChoice();
    m_ui->label_trigger_signal_unit->setText(choice ? choice->signal.unit : QString());
}

logtrigger::Input Logger_Main_View::triggerInput() const
{
    return {m_ui->radioButton_trigger_signal->isChecked(),
            m_ui->spinBox_trigger_delay_seconds->value(),
            m_ui->doubleSpinBox_trigger_signal_value->value(),
            m_ui->checkBox_trigger_signal_stop_if_value_lower->isChecked(),
            m_ui->spinBox_trigger_signal_can_nr->value()};
}

std::optional<Choice> Logger_Main_View::triggerChoice() const
{
    const QVariant index = m_ui->comboBox_trigger_signal_signal_name->currentData();
    if (!index.isValid() || index.toInt() < 0 || index.toInt() >= m_choices.size())
        return {};
    return m_choices.at(index.toInt());
}

void Logger_Main_View::send_req_logtrigger_cfg()
{
    const LogTriggerCfg record =
        logtrigger::edited(handler()->terminal(), m_shownTrigger, triggerInput(), triggerChoice());
    if (!withEcho(handler()->cmd_write_logtrigger_cfg(record)))
        update_cfg_logtrigger(); // nothing has changed
}

void Logger_Main_View::logtrigger_delay_seconds()
{
    send_req_logtrigger_cfg();
}

void Logger_Main_View::logtrigger_signal_value()
{
    send_req_logtrigger_cfg();
}

void Logger_Main_View::logtrigger_can_nr()
{
    send_req_logtrigger_cfg();
}

void Logger_Main_View::combobox_logtrigger_signal_filling()
{
    connect_disconnect_logtrigger_signal_combobox(false);
    showTriggerChoices(choicesOfShownChannel(), triggerChoice());
    connect_disconnect_logtrigger_signal_combobox(true);
}

void Logger_Main_View::trigger_signal_combobox_text_changed()
{
    const auto choice = triggerChoice();
    if (!choice)
        return;
    if (choice->signal.mux_kind == MultiplexedSignal)
        qDebug() << "SET MUX trigger sig" << choice->multiplexor.name;
    qDebug() << "SET trigger sig:" << choice->signal.name;
    showTriggerUnit();
    send_req_logtrigger_cfg();
}
