// The part of the journey that chooses what is recorded.

#include "app/journey/journey.h"
#include "link/logger_data_handler_class.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>

namespace {

QString labelText(const QWidget &parent, const char *label)
{
    return parent.findChild<QLabel *>(QString::fromLatin1(label))->text();
}

QSet<QString> namesOf(const TerminalCanCfg &channel)
{
    QSet<QString> names;
    for (const StreamingClass_DBC_Signal *signal : channel.dbc_signals)
        names.insert(signal->name);
    return names;
}

} // namespace

bool Journey::chooseSignalsOfFirstChannel(QString &seen)
{
    return chooseSignals(0,
                         {QStringLiteral("EngineSpeed"), QStringLiteral("WheelSpeed_FL"),
                          QStringLiteral("SteeringAngle"), QStringLiteral("CoolantTemperature")},
                         seen);
}

bool Journey::chooseSignalsOfSecondChannel(QString &seen)
{
    return chooseSignals(1,
                         {QStringLiteral("DriverDemandTorque"), QStringLiteral("WheelBasedSpeed"),
                          QStringLiteral("FrontAxleLoad")},
                         seen);
}

// As a user does: the name goes into the filter, then what is shown is ticked.
QStringList Journey::tickSignals(QWidget &dialog, const QStringList &names) const
{
    QStringList missing;
    auto *filter = dialog.findChild<QLineEdit *>(QStringLiteral("lineEdit_filter"));
    const auto *table = dialog.findChild<QAbstractItemView *>(QStringLiteral("tableView_signals"));
    auto *all = dialog.findChild<QPushButton *>(QStringLiteral("pushButton_select_all"));
    for (const QString &name : names) {
        filter->setText(name);
        if (table->model()->rowCount() != 1)
            missing += name;
        all->click();
    }
    filter->clear();
    return missing;
}

bool Journey::chooseSignals(int channel, const QStringList &names, QString &seen)
{
    QWidget *page = openPage(QStringLiteral("Logger_CAN_View_%1").arg(channel),
                             QStringLiteral("CAN-%1").arg(channel));
    m_prompt.file = m_folder.filePath(QStringLiteral("can%1.dbc").arg(channel));
    if (!click(page, "pushButton_load_dbc_file"))
        return false;
    QWidget *dialog = waitForDialog("Dialog_DBC_Signal_Selector");
    if (dialog == nullptr)
        return false;
    const QStringList missing = tickSignals(*dialog, names);
    seen =
        QStringLiteral("%1; %2 filters left")
            .arg(labelText(*dialog, "label_counts"), labelText(*dialog, "label_remaining_filters"));
    takePicture(QStringLiteral("signals-can%1").arg(channel), dialog);
    if (!missing.isEmpty()) {
        seen += QStringLiteral("; not found: ") + missing.join(QStringLiteral(", "));
        return false;
    }
    const TerminalCanCfg &held = handler().terminal().can[std::size_t(channel)];
    const QSet<QString> wanted(names.begin(), names.end());
    const bool isEchoed = click(dialog, "pushButton_load")
                          && waitUntil([&] { return namesOf(held).contains(wanted); });
    record::copy(held, m_expected.can[std::size_t(channel)]);
    seen += QStringLiteral("; %1 signals written and echoed").arg(held.dbc_signals.size());
    return isEchoed && handler().terminal() == m_expected;
}
