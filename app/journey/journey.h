#pragma once

#include "app/mainwindow.h"
#include "app/state/appcontroller.h"
#include "app/state/usersettings.h"
#include "app/ui/userprompt.h"
#include "config/terminalstruct.h"

#include <QDir>
#include <QProcess>

#include <functional>
#include <memory>

// Answers in the user's place: Yes to every question, and one file for every picker.
class JourneyPrompt : public UserPrompt
{
public:
    void inform(const QString &title, const QString &text) override;
    void warn(const QString &title, const QString &text, const QString &reason) override;
    [[nodiscard]] bool ask(const QString &title, const QString &text) override;
    [[nodiscard]] QString pickFolder(const QString &, const QString &) override { return {}; }
    [[nodiscard]] QString pickFile(const QString &, const QString &, const QString &) override
    {
        return file;
    }
    [[nodiscard]] QStringList pickFiles(const QString &, const QString &, const QString &) override
    {
        return {};
    }
    [[nodiscard]] QString pickFileToSave(const QString &, const QString &, const QString &) override
    {
        return file;
    }

    QString file;     // what pickers give
    int warnings = 0; // shown so far
};

// The main job, done unattended: a simulated logger is started as a program of its own, and the
// window works with it as a user would. Every step is judged by what it brought about.
class Journey
{
public:
    // Files and pictures go into the folder. The other programs lie next to this one.
    explicit Journey(const QDir &folder);
    ~Journey();

    // True if every step was seen to work; each prints a line.
    [[nodiscard]] bool run();

private:
    struct Step
    {
        const char *name;
        bool (Journey::*function)(QString &seen);
    };

    bool makeDrive(QString &seen);
    bool startLogger(QString &seen);
    bool connectLogger(QString &seen);
    bool readConfiguration(QString &seen);
    bool changeValue(QString &seen);
    bool watchLiveData(QString &seen);
    bool saveConfiguration(QString &seen);
    bool disconnectLogger(QString &seen);
    bool convertLog(QString &seen);

    [[nodiscard]] bool runProgram(const QString &name, const QStringList &arguments,
                                  QString &output) const;
    [[nodiscard]] Logger_Data_Handler_Class &handler() const { return *m_handler; }
    void click(const char *button);
    void takePicture(const QString &name);

    const QDir m_folder;
    QString m_address;
    QProcess m_logger;
    TerminalStruct m_expected; // what the logger was given

    AppController m_controller;
    UserSettings m_settings;
    JourneyPrompt m_prompt;
    Logger_Data_Handler_Class *m_handler = nullptr; // the window's
    std::unique_ptr<MainWindow> m_window;
    int m_pictures = 0;
    bool m_arePicturesSaved = true;
};
