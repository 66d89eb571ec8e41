#include "MDF4Conversion/conversionfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace {

const QLatin1String growingSuffix(".part");
const QLatin1String lockSuffix(".lock");
const QLatin1String temporaryLockName("conversion.lock");
const QLatin1String temporaryDirPattern("tmp_*");
const QLatin1String recordFilePattern("*.bin");

QString tr(const char *text)
{
    return QCoreApplication::translate("Conversion", text);
}

std::filesystem::path native(const QString &path)
{
    return std::filesystem::path(path.toStdU16String());
}

// Held while the leftovers of a conversion are removed; taken only if its owner is no more.
class LeftoverLock
{
public:
    explicit LeftoverLock(const QString &path)
        : m_lock(path)
    {
        m_lock.setStaleLockTime(0);
        m_taken = m_lock.tryLock(0);
    }
    [[nodiscard]] bool taken() const { return m_taken; }
    void release() { m_lock.unlock(); }

private:
    QLockFile m_lock;
    bool m_taken = false;
};

void removeRecords(const QDir &dir)
{
    for (const QString &name : dir.entryList({recordFilePattern}, QDir::Files | QDir::Hidden))
        QFile::remove(dir.filePath(name));
}

// Files whose conversion was killed; those of running ones are locked and stay.
void clearLeftovers(const QDir &folder)
{
    const QString growingLocks = QLatin1String("*.mf4") + growingSuffix + lockSuffix;
    for (const QString &name : folder.entryList({growingLocks}, QDir::Files)) {
        const QString lockPath = folder.filePath(name);
        const QString growing = lockPath.left(lockPath.size() - lockSuffix.size());
        const LeftoverLock lock(lockPath);
        if (lock.taken())
            QFile::remove(growing);
    }
    for (const QString &name :
         folder.entryList({temporaryDirPattern}, QDir::Dirs | QDir::NoSymLinks)) {
        const QDir dir(folder.filePath(name));
        if (!dir.exists(temporaryLockName))
            continue;
        LeftoverLock lock(dir.filePath(temporaryLockName));
        if (lock.taken()) {
            removeRecords(dir);
            lock.release();
            folder.rmdir(name);
        }
    }
}

} // namespace

ConversionFiles::ConversionFiles(const QString &outputFile, const QString &temporaryDir)
    : m_outputFile(outputFile)
    , m_temporaryDir(temporaryDir)
    , m_growingFile(outputFile + growingSuffix)
{}

ConversionFiles::~ConversionFiles()
{
    if (m_outputLock) {
        QFile::remove(m_growingFile);
        m_outputLock.reset();
    }
    m_temporaryLock.reset();
    if (m_madeTemporaryDir)
        QDir().rmdir(m_temporaryDir);
}

bool ConversionFiles::fail(const QString &text)
{
    m_failure = text;
    return false;
}

bool ConversionFiles::lock(std::unique_ptr<QLockFile> &file, const QString &path)
{
    auto created = std::make_unique<QLockFile>(path);
    created->setStaleLockTime(0);
    if (created->tryLock(0)) {
        file = std::move(created);
        return true;
    }
    const QString name = QDir::toNativeSeparators(m_outputFile);
    return fail(created->error() == QLockFile::LockFailedError
                    ? tr("%1: another conversion is writing there").arg(name)
                    : tr("%1: cannot be written").arg(name));
}

bool ConversionFiles::prepare()
{
    if (m_outputFile.isEmpty())
        return true; // reported when the file is to be created
    const QFileInfo output(m_outputFile);
    const QDir folder = output.absoluteDir();
    const QString folderName = QDir::toNativeSeparators(folder.path());
    if (!folder.exists())
        return fail(tr("The output folder %1 does not exist").arg(folderName));
    // Taking the place of a device or a pipe would destroy it.
    if (output.exists() && !output.isFile())
        return fail(tr("%1 is not a regular file").arg(QDir::toNativeSeparators(m_outputFile)));
    clearLeftovers(folder);
    if (!lock(m_outputLock, m_growingFile + lockSuffix))
        return false;
    if (!QFileInfo(m_temporaryDir).isDir()) {
        m_madeTemporaryDir = QDir().mkdir(m_temporaryDir);
        if (!m_madeTemporaryDir)
            return fail(tr("The temporary folder %1 cannot be made")
                            .arg(QDir::toNativeSeparators(m_temporaryDir)));
    }
    return lock(m_temporaryLock, QDir(m_temporaryDir).filePath(temporaryLockName));
}

bool ConversionFiles::publish()
{
    std::error_code error;
    std::filesystem::rename(native(m_growingFile), native(m_outputFile), error);
    if (error) {
        return fail(tr("%1: %2").arg(QDir::toNativeSeparators(m_outputFile),
                                     QString::fromLocal8Bit(error.message().c_str())));
    }
    return true;
}
