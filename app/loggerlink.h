#pragma once

#include "app/loggersession.h"
#include "link/capabilities.h"

#include <QHostAddress>
#include <QObject>

class Logger_Data_Handler_Class;

// What the main window needs of the link to a logger. On the GUI thread.
class LoggerLink : public QObject, public LoggerSession
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Since the program started.
    struct LiveCounters
    {
        quint64 entries = 0;
        quint64 dropped = 0;
    };

    // Opens both sockets; a failure is told by tcpError(). Delivers events meanwhile, which can take
    // seconds: connecting() counts them down.
    [[nodiscard]] virtual bool connectLogger(const QHostAddress &address) = 0;
    // Makes the call that is under way fail without a word.
    virtual void cancelConnect() = 0;
    [[nodiscard]] virtual bool isConnected() const = 0;
    [[nodiscard]] virtual Capabilities capabilities() const = 0;
    [[nodiscard]] virtual bool setTransparentMode(bool on) = 0;
    [[nodiscard]] virtual LiveCounters liveCounters() const = 0;

    // The configuration in memory, as a file. On failure error gets the reason.
    [[nodiscard]] virtual bool saveConfiguration(const QString &path, QString *error) = 0;
    // Sends the whole configuration of a file to the connected logger, whose echo becomes the one in
    // memory; without a logger the file's is it at once. False, with the reason in error, if the
    // file can't be read. A failure to send is told by errorWhileConnected().
    [[nodiscard]] virtual bool loadConfiguration(const QString &path, QString *error) = 0;
    // The same with a default configuration.
    virtual void writeEmptyConfiguration() = 0;

    // What the pages work with.
    [[nodiscard]] virtual Logger_Data_Handler_Class *handler() const = 0;

signals:
    void connecting(int port, int left_s);
    void tcpError(const QString &text);
    void errorWhileConnected(const QString &title, const QString &text);
    void versionReceived(int majorNumber, int minorNumber);
};
