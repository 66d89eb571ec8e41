#include "link/downloadlist.h"

#include "MDF4Conversion/growingfile.h"
#include "link/korvissystemtoolsclass.h"

#include <QDir>
#include <QHash>
#include <QLocale>
#include <QPair>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

// "1.50 GiB (1610612736 bytes)"
QString sizeText(quint64 bytes)
{
    const qint64 shown = qint64(std::min(bytes, quint64(std::numeric_limits<qint64>::max())));
    return QStringLiteral("%1 (%2 bytes)")
        .arg(QLocale::c().formattedDataSize(shown, 2, QLocale::DataSizeIecFormat))
        .arg(bytes);
}

} // namespace

DownloadList::DownloadList(const QHostAddress &address, quint16 port, const QStringList &names,
                           const QList<qint64> &sizes, const QString &folder, QObject *parent)
    : QObject(parent)
    , m_address(address)
    , m_port(port)
    , m_folder(folder)
    , m_freeSpace([folder] { return freeSpaceOf(folder); })
{
    Q_ASSERT(names.size() == sizes.size());
    for (int i = 0; i < std::min(names.size(), sizes.size()); ++i) {
        m_files.append({names.at(i), sizes.at(i), FileState::Waiting, {}, {}});
        m_queue.push_back(i);
    }
    connect(&m_client, &TcpFileClient::signal_status_text, this, &DownloadList::statusText);
    connect(&m_client, &TcpFileClient::signal_finished, this, &DownloadList::fileEndsSoon);
}

QString DownloadList::start()
{
    if (isRunning())
        return {};
    const QString shortage = shortageFor(bytesOf(FileState::Waiting));
    if (shortage.isEmpty())
        start_next_download();
    return shortage;
}

QString DownloadList::add(const QStringList &names, const QList<qint64> &sizes)
{
    Q_ASSERT(names.size() == sizes.size());
    const QVector<File> filesBefore = m_files;
    const std::deque<int> queueBefore = m_queue;
    QHash<QPair<QString, qint64>, int> known;
    for (int i = 0; i < m_files.size(); ++i)
        known.insert({m_files.at(i).remoteName, m_files.at(i).size}, i);
    for (int i = 0; i < std::min(names.size(), sizes.size()); ++i) {
        const int place = known.value({names.at(i), sizes.at(i)}, m_files.size());
        if (place == m_files.size())
            m_files.append({names.at(i), sizes.at(i), FileState::Failed, {}, {}});
        if (m_files.at(place).state != FileState::Failed)
            continue;
        known.insert({names.at(i), sizes.at(i)}, place);
        m_files[place].state = FileState::Waiting;
        m_queue.push_back(place);
    }
    const QString shortage = shortageFor(bytesLeft());
    if (shortage.isEmpty())
        return start();
    m_files = filesBefore;
    m_queue = queueBefore;
    return shortage;
}

QString DownloadList::retry()
{
    const QString shortage = shortageFor(bytesLeft() + bytesOf(FileState::Failed));
    if (!shortage.isEmpty())
        return shortage;
    for (int i = 0; i < m_files.size(); ++i) {
        if (m_files.at(i).state != FileState::Failed)
            continue;
        m_files[i].state = FileState::Waiting;
        m_queue.push_back(i);
    }
    return start();
}

void DownloadList::cancel()
{
    const QString reason = QStringLiteral("cancelled");
    const int current = std::exchange(m_current, -1);
    if (current >= 0) {
        m_files[current].state = FileState::Failed;
        m_files[current].error = reason;
    }
    m_client.abort_and_set_error(reason);
    ++m_transfer; // the end of that transfer doesn't count any more
}

void DownloadList::start_next_download()
{
    if (m_queue.empty()) {
        emit ended();
        return;
    }
    m_current = m_queue.front();
    m_queue.pop_front();
    File &next = m_files[m_current];
    next.state = FileState::Running;
    next.error.clear();
    ++m_transfer;
    m_client.start(m_address, m_port, next.remoteName, next.size, localPathFor(next.remoteName));
    emit fileStarted(m_current);
}

// The client puts its socket away before the next file begins.
void DownloadList::fileEndsSoon(bool isSuccess, const QString &text)
{
    const auto endFile = [this, isSuccess, text, transfer = m_transfer] {
        if (transfer == m_transfer)
            fileEnded(isSuccess, text);
    };
    QMetaObject::invokeMethod(this, endFile, Qt::QueuedConnection);
}

void DownloadList::fileEnded(bool isSuccess, const QString &text)
{
    const quint64 transfer = m_transfer;
    const int index = std::exchange(m_current, -1);
    File &file = m_files[index];
    file.state = isSuccess ? FileState::Arrived : FileState::Failed;
    file.error = text;
    if (isSuccess) {
        file.localPath = m_client.localName();
        emit fileArrived(index);
    } else {
        emit fileFailed(index);
    }
    if (transfer == m_transfer) // else a receiver has cancelled, or gone on already
        start_next_download();
}

// Empty if the folder has gone or the name holds nothing that a file could be called by.
QString DownloadList::localPathFor(const QString &remoteName) const
{
    const QString name = KorvisSystemToolsClass::localNameOf(remoteName);
    if (name.isEmpty())
        return {};
    const QString unique = KorvisSystemToolsClass::uniqueFileName(m_folder, name);
    return unique.isEmpty() ? QString() : QDir(m_folder).filePath(unique);
}

// Half files of killed programs give their room back first. Where the drive doesn't tell, the
// transfer finds out.
QString DownloadList::shortageFor(qint64 needed) const
{
    growingfile::clearLeftovers(QDir(m_folder));
    const std::optional<quint64> available = m_freeSpace();
    if (!available || *available >= quint64(needed))
        return {};
    return tr("There is not enough free space in %1.\r\nNeeded: %2\r\nAvailable: %3")
        .arg(QDir::toNativeSeparators(m_folder), sizeText(quint64(needed)), sizeText(*available));
}

int DownloadList::count(FileState state) const
{
    return int(std::count_if(m_files.begin(), m_files.end(),
                             [state](const File &file) { return file.state == state; }));
}

QStringList DownloadList::arrived() const
{
    QStringList paths;
    for (const File &file : m_files) {
        if (file.state == FileState::Arrived)
            paths += file.localPath;
    }
    return paths;
}

// Sizes are whatever the logger told: the sum stays where it can't overflow.
qint64 DownloadList::bytesOf(FileState state) const
{
    constexpr qint64 limit = std::numeric_limits<qint64>::max() / 8;
    qint64 sum = 0;
    for (const File &file : m_files) {
        if (file.state == state && file.size > 0 && file.size <= TcpFileClient::maxFileBytes)
            sum = std::min(sum + file.size, limit);
    }
    return sum;
}

qint64 DownloadList::totalBytes() const
{
    return bytesOf(FileState::Waiting) + bytesOf(FileState::Running) + bytesOf(FileState::Arrived)
           + bytesOf(FileState::Failed);
}

qint64 DownloadList::receivedBytes() const
{
    return bytesOf(FileState::Arrived) + (isRunning() ? m_client.received() : 0);
}

qint64 DownloadList::bytesLeft() const
{
    const qint64 current = isRunning() ? m_client.received() : 0;
    return bytesOf(FileState::Waiting) + std::max(qint64(0), bytesOf(FileState::Running) - current);
}

int DownloadList::percent() const
{
    const qint64 total = totalBytes();
    if (total > 0)
        return int(std::min(double(receivedBytes()) / double(total), 1.0) * 100.0);
    return m_files.isEmpty() ? 100 : count(FileState::Arrived) * 100 / m_files.size();
}
