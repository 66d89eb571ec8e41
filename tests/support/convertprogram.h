#pragma once

#include <QJsonArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// zds-convert as a user runs it, for the tests of its command line.
namespace convertprogram {

constexpr int timeout_ms = 60000;
constexpr quint32 messageId = 0x123;

[[nodiscard]] inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// A log with one signal, "Speed", in a CAN message `messageId`, and `count` frames of it.
[[nodiscard]] QByteArray configurationAndFrames(int count);

// What a running program has written to standard error once it holds `part`.
[[nodiscard]] QByteArray errorsUntil(QProcess &process, const char *part);

struct Run
{
    int exitCode = -1; // -1 for a crash or no end in time
    QString out;
    QString err;

    [[nodiscard]] QJsonArray json() const;
};

// Runs the program in a temporary folder of its own, in the locale C.
class ConvertProgram
{
public:
    // An empty folder.
    void beginAnew() { m_folder = std::make_unique<QTemporaryDir>(); }

    [[nodiscard]] static QString program();
    [[nodiscard]] QString folder() const { return m_folder->path(); }
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }
    [[nodiscard]] QString path(const char *name) const { return path(text(name)); }
    // Makes a file, and the folders that it lies in.
    QString make(const QString &name, const QByteArray &bytes) const;
    QString makeLog(const char *name, int frames = 10) const
    {
        return make(text(name), configurationAndFrames(frames));
    }
    // All that stands in a folder, hidden things too.
    [[nodiscard]] QString left(const QString &folder = QString()) const;

    void start(QProcess &process, const QStringList &arguments) const;
    Run run(const QStringList &arguments) const;

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

} // namespace convertprogram
