#pragma once

#include <QString>

class LoggerLink;
class UserPrompt;

// The commands on the whole configuration: new, open, save, save as. Each asks where that is needed
// and tells of its failure.
class ConfigurationCommands
{
public:
    ConfigurationCommands(LoggerLink &link, UserPrompt &prompt);

    // Has no file yet.
    void newEmpty();
    void open();
    // The same with a file that the user has chosen already.
    void openFile(const QString &path);
    // To the file of the last open or save, or as saveAs() without one.
    void save();
    void saveAs();

    // Empty before the first open or save, and of a new configuration.
    [[nodiscard]] QString fileName() const { return m_fileName; }

private:
    [[nodiscard]] bool mayBeReplaced();
    void load(const QString &path);
    void saveTo(const QString &path);

    LoggerLink &m_link;
    UserPrompt &m_prompt;
    QString m_fileName;
};
