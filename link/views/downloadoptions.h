#pragma once

#include "MDF4Conversion/conversionglobal.h"
#include "app/ui/filedialogs.h"
#include "link/eventfolders.h"

#include <QMap>
#include <QString>

class QCheckBox;
class QComboBox;
class QWidget;
class UserPrompt;
class UserSettings;

// The list of event folders and the boxes of the formats, in whichever form they stand.
struct DownloadOptionsWidgets
{
    QComboBox *folders;
    QWidget *remove; // these two need a folder
    QWidget *show;
    QCheckBox *mdf4;
    QCheckBox *blf;
    QCheckBox *asc;
    QCheckBox *asc_zip;

    template <class Form>
    static DownloadOptionsWidgets of(const Form &form)
    {
        return {form.comboBox_event_folders,   form.pushButton_remove_selected_frolder_from_list,
                form.pushButton_show_folder,   form.checkBox_generate_mdf4,
                form.checkBox_generate_blf,    form.checkBox_generate_asc,
                form.checkBox_generate_asc_zip};
    }
};

// What these widgets show and do: the form forwards its clicks.
class DownloadOptions
{
public:
    // Widgets, settings and prompt must outlive it.
    DownloadOptions(const DownloadOptionsWidgets &widgets, UserSettings &settings,
                    UserPrompt &prompt);

    // Shows the folders of the settings; the list stays as it is if it shows them already.
    void fillFolders();
    void addFolder();
    void removeFolder();
    void showFolder();
    // The user has picked a folder of the list.
    void rememberFolder();
    [[nodiscard]] QString folder() const; // empty: there is none
    // True if the folder is there, else it is told.
    [[nodiscard]] bool folderExists() const;

    void setFormats(ConversionGlobal::OutputFormatFlags formats);
    [[nodiscard]] ConversionGlobal::OutputFormatFlags formats() const;
    // The formats in the settings: what is downloaded is converted to them.
    [[nodiscard]] ConversionGlobal::OutputFormatFlags rememberedFormats() const;
    void rememberFormats();

private:
    const DownloadOptionsWidgets m_widgets;
    UserSettings &m_settings;
    UserPrompt &m_prompt;
    FileDialogs m_fileDialogs;
    EventFolders m_folders;
    QMap<int, QString> m_shown;
};
