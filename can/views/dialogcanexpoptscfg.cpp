#include "can/views/dialogcanexpoptscfg.h"

#include "config/groupnames.h"
#include "ui_dialogcanexpoptscfg.h"

#include <QButtonGroup>
#include <QLineEdit>

namespace {

using namespace groupnames;

constexpr int nameBits = AppendCustomText | OnlyCustomText;

// What a port of the label can record, each in groups of its own name.
struct KindOfPort
{
    const char *label;
    const char *kind;
    const char *caption;
};

constexpr KindOfPort kindsOfPorts[] = {
    {canLabel, kinds::dbc, "DBC signals:"},
    {canLabel, kinds::dbcMultiplexed, "Multiplexed DBC signals:"},
    {canLabel, kinds::canCcpXcp, "CCP or XCP measurements:"},
    {ethernetLabel, kinds::ethernetXcp, "XCP measurements:"},
};

// One of none, AppendCustomText and OnlyCustomText.
int nameModeOf(quint8 mode)
{
    return mode & OnlyCustomText ? OnlyCustomText : mode & AppendCustomText;
}

} // namespace

DialogCanExpOptsCfg::DialogCanExpOptsCfg(const QString &label, int number,
                                         const QString &customName, quint8 mode, QWidget *parent)
    : QDialog(parent)
    , m_label(label)
    , m_number(number)
    , m_mode(mode)
    , m_ui(std::make_unique<Ui::DialogCanExpOptsCfg>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("%1-%2 Export Options").arg(label).arg(number));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->buttonGroup_mode->setId(m_ui->radioButton_port, 0);
    m_ui->buttonGroup_mode->setId(m_ui->radioButton_append, AppendCustomText);
    m_ui->buttonGroup_mode->setId(m_ui->radioButton_only, OnlyCustomText);
    m_ui->buttonGroup_mode->button(nameModeOf(mode))->setChecked(true);
    m_ui->lineEdit_custom_name->setText(customName);
    addNames();
    showNames();
    connect(m_ui->buttonGroup_mode, &QButtonGroup::idToggled, this,
            &DialogCanExpOptsCfg::showNames);
    connect(m_ui->lineEdit_custom_name, &QLineEdit::textChanged, this,
            &DialogCanExpOptsCfg::showNames);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &DialogCanExpOptsCfg::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DialogCanExpOptsCfg::reject);
}

DialogCanExpOptsCfg::~DialogCanExpOptsCfg() = default;

QString DialogCanExpOptsCfg::customName() const
{
    return m_ui->lineEdit_custom_name->text().trimmed();
}

quint8 DialogCanExpOptsCfg::mode() const
{
    const int chosen = m_ui->buttonGroup_mode->checkedId();
    if (chosen == nameModeOf(m_mode)) // both bits may be set
        return m_mode;
    return quint8((m_mode & ~nameBits) | chosen);
}

void DialogCanExpOptsCfg::addNames()
{
    for (const KindOfPort &row : kindsOfPorts) {
        if (m_label != QLatin1String(row.label))
            continue;
        const QString kind = QLatin1String(row.kind);
        auto *line = new QLineEdit(m_ui->groupBox_names);
        line->setObjectName(QStringLiteral("lineEdit_name_") + kind);
        line->setReadOnly(true);
        line->setFrame(false);
        line->setStyleSheet(QStringLiteral("QLineEdit { background: transparent; }"));
        line->setFocusPolicy(Qt::ClickFocus);
        line->setAccessibleName(tr("Name of the groups with %1").arg(QLatin1String(row.caption)));
        line->setToolTip(tr("How these channel groups will be called; read-only."));
        m_ui->groupBox_names_layout->addRow(QLatin1String(row.caption), line);
        m_names.push_back({kind, line});
    }
}

void DialogCanExpOptsCfg::showNames()
{
    const PortName port{m_label, m_number, mode(), customName()};
    for (const NameOfKind &name : m_names)
        name.line->setText(groupName(port, name.kind));
}
