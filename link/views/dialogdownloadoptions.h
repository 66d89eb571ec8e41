#pragma once

#include "link/views/downloadoptions.h"

#include <QDialog>
#include <QStringList>

#include <memory>

namespace Ui {
class DialogDownloadOptions;
}

// Asks into which folder and which formats log files of this computer are to be converted.
class DialogDownloadOptions : public QDialog
{
    Q_OBJECT

public:
    // Settings and prompt must outlive the dialog.
    DialogDownloadOptions(const QStringList &rawLogs, UserSettings &settings, UserPrompt &prompt,
                          QWidget *parent = nullptr);
    ~DialogDownloadOptions() override;

    // They count if the dialog was accepted: then there is a folder and at least one format.
    [[nodiscard]] QString folder() const { return m_options->folder(); }
    [[nodiscard]] ConversionGlobal::OutputFormatFlags formats() const
    {
        return m_options->formats();
    }

public slots:
    void accept() override;
    void on_pushButton_show_folder_clicked() { m_options->showFolder(); }
    void on_pushButton_remove_selected_frolder_from_list_clicked() { m_options->removeFolder(); }
    void on_pushButton_add_selected_frolder_from_list_clicked() { m_options->addFolder(); }
    void on_comboBox_event_folders_currentIndexChanged(int) { m_options->rememberFolder(); }

private:
    UserPrompt &m_prompt;
    std::unique_ptr<Ui::DialogDownloadOptions> m_ui;
    std::unique_ptr<DownloadOptions> m_options;
};
