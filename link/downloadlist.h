#pragma once

#include "app/log/freespace.h"
#include "link/tcpfileclient.h"

#include <QObject>
#include <QStringList>
#include <QVector>

#include <deque>

// Fetches files of the logger into a folder, one after the other. A file that fails doesn't keep
// the others; it can be fetched again, which leaves alone what has arrived. Used on one thread,
// whose event loop runs.
class DownloadList : public QObject
{
    Q_OBJECT

public:
    enum class FileState { Waiting, Running, Arrived, Failed };

    struct File
    {
        QString remoteName;
        qint64 size = 0; // bytes, as the logger announced it
        FileState state = FileState::Waiting;
        QString localPath; // once it has arrived
        QString error;     // why it failed
    };

    // Names and sizes belong together by position. The folder exists.
    DownloadList(const QHostAddress &address, quint16 port, const QStringList &names,
                 const QList<qint64> &sizes, const QString &folder, QObject *parent = nullptr);

    // Replaces the look at the target's drive.
    void setFreeSpaceSource(FreeSpaceSource source) { m_freeSpace = std::move(source); }
    [[nodiscard]] TcpFileClient &client() { return m_client; }

    // Clears what killed downloads have left in the folder and begins with what waits. If there is no
    // room for it nothing is fetched, and the text tells the user what is needed and what there is.
    [[nodiscard]] QString start();
    // Puts further files behind those that wait, and begins if nothing runs. One that the list has with
    // this size isn't fetched twice, only again when it has failed. If there is no room for all,
    // nothing changes, and the text tells the user.
    [[nodiscard]] QString add(const QStringList &names, const QList<qint64> &sizes);
    // What failed waits again, behind all others that wait.
    [[nodiscard]] QString retry();
    // The file under way fails, the others stay as they are.
    void cancel();

    [[nodiscard]] const QVector<File> &files() const { return m_files; }
    [[nodiscard]] int count(FileState state) const;
    // Paths of the files that are there, in the order of the list.
    [[nodiscard]] QStringList arrived() const;
    [[nodiscard]] bool isRunning() const { return m_current >= 0; }

    // All files, without those whose announced size can't be one.
    [[nodiscard]] qint64 totalBytes() const;
    // Those of the files that are there and of the one under way.
    [[nodiscard]] qint64 receivedBytes() const;
    // Of what will have arrived when no further file fails.
    [[nodiscard]] qint64 bytesLeft() const;
    // Of all bytes, 0 to 100; without bytes, of all files.
    [[nodiscard]] int percent() const;

signals:
    void fileStarted(int index);
    void fileArrived(int index);
    void fileFailed(int index);
    void statusText(QString text); // on the file under way
    // Nothing waits any more: each file has arrived or failed.
    void ended();

private:
    void start_next_download();
    void fileEndsSoon(bool isSuccess, const QString &text);
    void fileEnded(bool isSuccess, const QString &text);
    [[nodiscard]] QString localPathFor(const QString &remoteName) const;
    [[nodiscard]] QString shortageFor(qint64 needed) const;
    [[nodiscard]] qint64 bytesOf(FileState state) const;

    const QHostAddress m_address;
    const quint16 m_port;
    const QString m_folder;
    FreeSpaceSource m_freeSpace;
    TcpFileClient m_client{this};
    QVector<File> m_files;
    std::deque<int> m_queue; // indices of the files that wait, in the order of their turn
    int m_current = -1;      // index of the file under way
    quint64 m_transfer = 0;  // counts starts and cancels
};
