#include "app/configurationcommands.h"

#include "app/loggerlink.h"
#include "app/ui/userprompt.h"

#include <QCoreApplication>

namespace {

const QLatin1String configFilter("config (*.zdc)");
const QLatin1String loadTitle("Load configuration");

} // namespace

ConfigurationCommands::ConfigurationCommands(LoggerLink &link, UserPrompt &prompt)
    : m_link(link)
    , m_prompt(prompt)
{}

void ConfigurationCommands::newEmpty()
{
    if (!m_prompt.ask(QStringLiteral("Set new Configuration"),
                      QStringLiteral("Load/Set empty configuration?")))
        return;
    m_link.writeEmptyConfiguration();
    m_fileName.clear(); // another configuration, which must not replace the one in that file
}

void ConfigurationCommands::open()
{
    if (!mayBeReplaced())
        return;
    const QString path =
        m_prompt.pickFile(loadTitle, QCoreApplication::applicationDirPath(), configFilter);
    if (!path.isEmpty())
        load(path);
}

void ConfigurationCommands::openFile(const QString &path)
{
    if (mayBeReplaced())
        load(path);
}

bool ConfigurationCommands::mayBeReplaced()
{
    return !m_link.isConnected()
           || m_prompt.ask(QStringLiteral("Info"),
                           QStringLiteral("Load/Write configuration to data logger?"));
}

void ConfigurationCommands::load(const QString &path)
{
    QString error;
    if (m_link.loadConfiguration(path, &error))
        m_fileName = path;
    else
        m_prompt.warn(loadTitle, QStringLiteral("Error loading file"), error);
}

void ConfigurationCommands::save()
{
    if (m_fileName.isEmpty())
        saveAs();
    else
        saveTo(m_fileName);
}

void ConfigurationCommands::saveAs()
{
    const QString start =
        m_fileName.isEmpty() ? QCoreApplication::applicationDirPath() : m_fileName;
    const QString path =
        m_prompt.pickFileToSave(QStringLiteral("Save configuration"), start, configFilter);
    if (!path.isEmpty())
        saveTo(path);
}

void ConfigurationCommands::saveTo(const QString &path)
{
    QString error;
    if (m_link.saveConfiguration(path, &error))
        m_fileName = path;
    else
        m_prompt.warn(QStringLiteral("Save configuration"), QStringLiteral("Error saving file"),
                      error);
}
