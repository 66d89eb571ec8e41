#pragma once

#include "app/loggersession.h"

class SoftwareUpdate;
class UserPrompt;

// The steps from open sockets to a logger that is ready to work with. Runs on the GUI thread; while
// a box is open the connection can be lost, which ends the sequence without another word.
class ConnectSequence
{
public:
    // The one version of the logger's software that this tool speaks to.
    static constexpr SoftwareVersion expectedVersion{1, 61};

    enum class Result {
        Connected,
        UpdateSent,
        Declined, // the user wants neither update nor downgrade
        Failed,   // the user was told
        Lost      // the connection went away meanwhile, of which somebody else tells
    };

    ConnectSequence(LoggerSession &session, UserPrompt &prompt, SoftwareUpdate &update);

    // Starts in APP_STA_CONN_INIT. Every result but Connected ends in APP_STA_DISCONN.
    Result run();

private:
    Result connectWithConfiguration();
    Result offerUpdate(const SoftwareVersion &version);
    Result fail(const QString &title, const QString &text);
    [[nodiscard]] bool isLost() const;

    LoggerSession &m_session;
    UserPrompt &m_prompt;
    SoftwareUpdate &m_update;
};
