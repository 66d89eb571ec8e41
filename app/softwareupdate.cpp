#include "app/softwareupdate.h"

#include "app/ui/userprompt.h"

#include <QDebug>
#include <QFile>

std::optional<QByteArray> updateimage::builtIn()
{
    return readFrom(QStringLiteral(":/update_file/update.enc"));
}

std::optional<QByteArray> updateimage::readFrom(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxBytes)
        return std::nullopt;
    const QByteArray image = file.readAll();
    if (image.isEmpty() || image.size() != file.size())
        return std::nullopt;
    return image;
}

SoftwareUpdate::SoftwareUpdate(LoggerSession &session, UserPrompt &prompt, ImageSource image,
                               Sent sent)
    : m_session(session)
    , m_prompt(prompt)
    , m_image(std::move(image))
    , m_sent(std::move(sent))
{}

int SoftwareUpdate::reconnectDelay_s(const SoftwareVersion &version) const
{
    constexpr SoftwareVersion firstToTell{1, 8};
    constexpr int firstFastHardware = 2;
    if (version < firstToTell)
        return 60;
    return m_session.hardwareVersion().value_or(0) >= firstFastHardware ? 30 : 60;
}

bool SoftwareUpdate::run(const SoftwareVersion &version)
{
    const int delay_s = reconnectDelay_s(version);
    const std::optional<QByteArray> image = m_image();
    if (!image.has_value()) {
        m_prompt.warn(QStringLiteral("Software-Update"),
                      QStringLiteral("This program was built without the software of the logger. "
                                     "Nothing was sent."));
        m_session.disconnectLogger();
        return false;
    }
    if (!m_session.sendUpdate(*image)) {
        m_prompt.warn(QStringLiteral("Timeout"), QStringLiteral("Timeout sending update."));
        m_session.disconnectLogger();
        return false;
    }
    qDebug("Update sent!");
    m_session.disconnectLogger();
    m_sent(delay_s);
    return true;
}
