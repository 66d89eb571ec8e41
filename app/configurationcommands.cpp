#include "app/configurationcommands.h"

#include "app/loggerlink.h"
#include "app/ui/userprompt.h"

#include <QCoreApplication>

namespace {

const QLatin1String configFilter("config (*.zdc)");

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
    if (m_link.isConnected()
        && !m_prompt.ask(QStringLiteral("Info"),
                         QStringLiteral("Load/Write configuration to data logger?")))
        return;
    const QString title = QStringLiteral("Load configuration");
    const QString path =
        m_prompt.pickFile(title, QCoreApplication::applicationDirPath(), configFilter);
    if (path.isEmpty())
        return;
    QString error;
    if (!m_link.loadConfiguration(path, &error)) {
        m_prompt.warn(title, QStringLiteral("Error loading file"), error);
        return;
    }
    m_fileName = path;
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
