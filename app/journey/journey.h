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

void print(const QString &line);

// Answers in the user's place: Yes to every question, and one file or folder for every picker.
class JourneyPrompt : public UserPrompt
{
public:
    void inform(const QString &title, const QString &text) override;
    void warn(const QString &title, const QString &text, const QString &reason) override;
    [[nodiscard]] bool ask(const QString &title, const QString &text) override;
    [[nodiscard]] QString pickFolder(const QString &, const QString &) override { return folder; }
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

    QString file; // what pickers give
    QString folder;
    int warnings = 0; // shown so far
};

// Lets events run until the condition holds. False if it takes too long.
constexpr int stepTimeout_ms = 20'000;
bool waitUntil(const std::function<bool()> &holds, int timeout_ms = stepTimeout_ms);

// The main job, done unattended: a simulated logger is started as a program of its own, and the
// window works with it as a user would, from the choice of signals to their samples in an MF4 file.
// Every step is judged by what it brought about.
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

    bool makeFiles(QString &seen);
    bool startLogger(QString &seen);
    bool connectLogger(QString &seen);
    bool readConfiguration(QString &seen);
    bool chooseSignalsOfFirstChannel(QString &seen);
    bool chooseSignalsOfSecondChannel(QString &seen);
    bool changeValue(QString &seen);
    bool watchLiveData(QString &seen);
    bool saveConfiguration(QString &seen);
    bool letItRecord(QString &seen);
    bool listLogs(QString &seen);
    bool downloadLog(QString &seen);
    bool convertLog(QString &seen);
    bool checkSamples(QString &seen);
    bool disconnectLogger(QString &seen);

    // Loads the channel's DBC file and ticks these signals.
    bool chooseSignals(int channel, const QStringList &names, QString &seen);
    [[nodiscard]] QStringList tickSignals(QWidget &dialog, const QStringList &names) const;
    [[nodiscard]] Logger_Data_Handler_Class &handler() const { return *m_handler; }
    // The page of this object name, in front; null if there is none.
    QWidget *openPage(const QString &objectName, const QString &treeText);
    // The dialog of this object name, once it is shown; null if it doesn't come.
    QWidget *waitForDialog(const char *objectName);
    // Of the window or one of its children.
    bool click(QWidget *parent, const char *button);
    void takePicture(const QString &name, QWidget *shown = nullptr);
    [[nodiscard]] QDir storage() const
    {
        return QDir(m_folder.filePath(QStringLiteral("storage")));
    }
    [[nodiscard]] QDir eventFolder() const
    {
        return QDir(m_folder.filePath(QStringLiteral("event")));
    }

    const QDir m_folder;
    QString m_address;
    QProcess m_logger;
    TerminalStruct m_expected; // what the logger was given
    QString m_log;             // name of the log that it has recorded

    AppController m_controller;
    UserSettings m_settings;
    JourneyPrompt m_prompt;
    Logger_Data_Handler_Class *m_handler = nullptr; // the window's
    std::unique_ptr<MainWindow> m_window;
    int m_pictures = 0;
    bool m_arePicturesSaved = true;
};
