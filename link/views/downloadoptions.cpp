#include "link/views/downloadoptions.h"

#include "app/state/usersettings.h"
#include "app/ui/openfolder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QSignalBlocker>

namespace {

struct FormatBox
{
    ConversionGlobal::OutputFormat format;
    QCheckBox *DownloadOptionsWidgets::*box;
};

constexpr FormatBox formatBoxes[] = {
    {ConversionGlobal::MDF4, &DownloadOptionsWidgets::mdf4},
    {ConversionGlobal::BLF, &DownloadOptionsWidgets::blf},
    {ConversionGlobal::ASC, &DownloadOptionsWidgets::asc},
    {ConversionGlobal::ASC_ZIP, &DownloadOptionsWidgets::asc_zip},
};

} // namespace

DownloadOptions::DownloadOptions(const DownloadOptionsWidgets &widgets, UserSettings &settings,
                                 UserPrompt &prompt)
    : m_widgets(widgets)
    , m_settings(settings)
    , m_prompt(prompt)
    , m_fileDialogs(prompt)
    , m_folders(settings)
{
    fillFolders();
}

void DownloadOptions::fillFolders()
{
    QComboBox *box = m_widgets.folders;
    const QSignalBlocker blocker(box);
    const QMap<int, QString> folders = m_folders.all();
    if (folders != m_shown) {
        m_shown = folders;
        box->clear();
        for (auto folder = folders.begin(); folder != folders.end(); ++folder)
            box->addItem(QDir::toNativeSeparators(folder.value()), folder.key());
    }
    box->setCurrentIndex(box->findData(m_folders.chosen().value_or(-1)));
    for (QWidget *needsFolder : {m_widgets.remove, m_widgets.show})
        needsFolder->setEnabled(!folders.isEmpty());
}

void DownloadOptions::addFolder()
{
    const auto tellLimit = [this] {
        m_prompt.inform(QStringLiteral("Limit reached"),
                        QStringLiteral("Maximum number of Event-Folders reached."));
    };
    if (!m_folders.freeNumber()) {
        tellLimit();
        return;
    }
    const QString folder = m_fileDialogs.getExistingDirWithKey(
        QStringLiteral("EventFolder"), {}, QStringLiteral("Choose Event-Folder"));
    if (folder.isEmpty())
        return;
    if (!m_folders.add(folder))
        tellLimit();
    fillFolders();
}

void DownloadOptions::removeFolder()
{
    const QString question = QStringLiteral("Remove folder from list? : \r\n Folder:%1");
    if (folder().isEmpty()
        || !m_prompt.ask(QStringLiteral("Remove-Folder"),
                         question.arg(m_widgets.folders->currentText())))
        return;
    m_folders.remove(m_widgets.folders->currentData().toInt());
    fillFolders();
}

bool DownloadOptions::folderExists() const
{
    if (QDir(folder()).exists())
        return true;
    m_prompt.inform(
        QStringLiteral("Information"),
        QStringLiteral("Folder '%1' not existing.").arg(m_widgets.folders->currentText()));
    return false;
}

void DownloadOptions::showFolder()
{
    if (folder().isEmpty() || !folderExists())
        return;
    openFolder(folder(), m_prompt);
}

void DownloadOptions::rememberFolder()
{
    if (m_widgets.folders->currentIndex() >= 0)
        m_folders.choose(m_widgets.folders->currentData().toInt());
}

QString DownloadOptions::folder() const
{
    const int index = m_widgets.folders->currentIndex();
    return index < 0 ? QString() : m_shown.value(m_widgets.folders->itemData(index).toInt());
}

void DownloadOptions::setFormats(ConversionGlobal::OutputFormatFlags formats)
{
    for (const FormatBox &row : formatBoxes) {
        QCheckBox *box = m_widgets.*row.box;
        const QSignalBlocker blocker(box);
        box->setChecked(formats.testFlag(row.format));
    }
}

ConversionGlobal::OutputFormatFlags DownloadOptions::formats() const
{
    ConversionGlobal::OutputFormatFlags formats;
    for (const FormatBox &row : formatBoxes)
        formats.setFlag(row.format, (m_widgets.*row.box)->isChecked());
    return formats;
}

ConversionGlobal::OutputFormatFlags DownloadOptions::rememberedFormats() const
{
    ConversionGlobal::OutputFormatFlags formats;
    for (const FormatBox &row : formatBoxes)
        formats.setFlag(row.format, (m_settings.autoExport() & row.format) != 0);
    return formats;
}

void DownloadOptions::rememberFormats()
{
    m_settings.setAutoExport(int(formats()));
}
