#include "link/views/dialogdownloadoptions.h"

#include "app/ui/userprompt.h"
#include "ui_dialogdownloadoptions.h"

#include <QFileInfo>
#include <QPushButton>

namespace {

// The first few names, then how many more there are.
QString listed(const QStringList &rawLogs)
{
    constexpr int maxListed = 5;
    QStringList names;
    for (const QString &rawLog : rawLogs.mid(0, maxListed))
        names += QFileInfo(rawLog).fileName();
    if (rawLogs.size() > maxListed)
        names += QStringLiteral("and %1 more").arg(rawLogs.size() - maxListed);
    return names.join(QStringLiteral(", "));
}

} // namespace

DialogDownloadOptions::DialogDownloadOptions(const QStringList &rawLogs, UserSettings &settings,
                                             UserPrompt &prompt, QWidget *parent)
    : QDialog(parent)
    , m_prompt(prompt)
    , m_ui(std::make_unique<Ui::DialogDownloadOptions>())
{
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->label_files->setText(listed(rawLogs));
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("Convert"));
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &DialogDownloadOptions::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DialogDownloadOptions::reject);

    m_options =
        std::make_unique<DownloadOptions>(DownloadOptionsWidgets::of(*m_ui), settings, prompt);
    const auto remembered = m_options->rememberedFormats();
    m_options->setFormats(remembered ? remembered : ConversionGlobal::MDF4);
}

DialogDownloadOptions::~DialogDownloadOptions() = default;

void DialogDownloadOptions::accept()
{
    if (folder().isEmpty()) {
        m_prompt.warn(QStringLiteral("No Event-Folder Selected"),
                      QStringLiteral("Please Select/Create a Event-Folder."));
        return;
    }
    if (!m_options->folderExists())
        return;
    if (!formats()) {
        m_prompt.warn(QStringLiteral("No Format Selected"),
                      QStringLiteral("Please select at least one format."));
        return;
    }
    QDialog::accept();
}
