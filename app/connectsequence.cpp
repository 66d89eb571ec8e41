#include "app/connectsequence.h"

#include "app/softwareupdate.h"
#include "app/ui/userprompt.h"

#include <QDebug>

namespace {

const QLatin1String warning("Warning");

} // namespace

ConnectSequence::ConnectSequence(LoggerSession &session, UserPrompt &prompt, SoftwareUpdate &update)
    : m_session(session)
    , m_prompt(prompt)
    , m_update(update)
{}

ConnectSequence::Result ConnectSequence::run()
{
    Result result = Result::Failed;
    if (const std::optional<SoftwareVersion> version = m_session.softwareVersion()) {
        m_session.tellVersion(*version);
        result = *version == expectedVersion ? connectWithConfiguration() : offerUpdate(*version);
    } else {
        result = fail(
            warning,
            QStringLiteral("Software-Version No. not received. \r\n%1").arg(m_session.lastError()));
    }
    if (result != Result::Connected && result != Result::UpdateSent)
        qWarning("Shit is fucked up!");
    return result;
}

ConnectSequence::Result ConnectSequence::connectWithConfiguration()
{
    if (!m_session.readCapabilities())
        return fail(warning, m_session.lastError());
    if (!m_session.subsystemsReady())
        return fail(QStringLiteral("...not ready..."),
                    QStringLiteral("Logger is not ready, please try again shortly."));

    const bool stop = m_prompt.askRevocably(
        this, QStringLiteral("...logging enabled..."),
        QStringLiteral(
            "Stop/Disable logging?\r\n"
            "...will be automatically re-enabled if connection is closed/disconnected..."));
    if (isLost())
        return Result::Lost;
    if (stop && !m_session.stopLogging())
        return fail(warning,
                    QStringLiteral("Unable to disable logging. \r\n%1").arg(m_session.lastError()));
    m_session.setState(stop ? APP_STA_CONN_LOG_OFF : APP_STA_CONN_LOG_ON);

    if (!m_session.requestConfiguration())
        return fail(warning, QStringLiteral("Unable to receive configuration."));
    m_session.enableData();
    return Result::Connected;
}

ConnectSequence::Result ConnectSequence::offerUpdate(const SoftwareVersion &version)
{
    constexpr SoftwareVersion firstNewer{expectedVersion.major_number,
                                         expectedVersion.minor_number + 1};
    m_session.setState(APP_STA_CONN_UPDATE);
    const bool agreed = version < firstNewer
                            ? m_prompt.askRevocably(this, QStringLiteral("Software-Update"),
                                                    QStringLiteral("Start software update now?"))
                            : m_prompt.askRevocably(this, QStringLiteral("Software-Downgrade"),
                                                    QStringLiteral("Downgrade really?"));
    if (isLost())
        return Result::Lost;
    if (!agreed) {
        m_session.disconnectLogger();
        return Result::Declined;
    }
    return m_update.run(version) ? Result::UpdateSent : Result::Failed;
}

ConnectSequence::Result ConnectSequence::fail(const QString &title, const QString &text)
{
    m_prompt.warn(title, text);
    m_session.disconnectLogger();
    return Result::Failed;
}

bool ConnectSequence::isLost() const
{
    return m_session.state() == APP_STA_DISCONN;
}
