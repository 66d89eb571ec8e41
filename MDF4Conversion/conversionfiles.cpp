#include "MDF4Conversion/conversionfiles.h"

#include "MDF4Conversion/conversionjob.h"
#include "MDF4Conversion/exclusivemove.h"
#include "MDF4Conversion/growingfile.h"
#include "MDF4Conversion/nativepath.h"
#include "MDF4Conversion/outputnames.h"
#include "MDF4Conversion/programlock.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace {

const QLatin1String temporaryLockName("conversion.lock");
const QLatin1String temporaryDirPattern("tmp_*");
const QLatin1String recordFilePattern("*.bin");

// Tries to make a temporary folder before it is taken for impossible.
constexpr int maxTemporaryDirs = 1000;

QString tr(const char *text)
{
    return QCoreApplication::translate("Conversion", text);
}

QString noTemporaryDir(const QString &path, const std::error_code &error)
{
    return tr("The temporary folder %1 cannot be made: %2")
        .arg(QDir::toNativeSeparators(path), QString::fromLocal8Bit(error.message().c_str()));
}

// A lock doesn't tell why it could not be made; a file of its name does.
QString whyNotMade(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return file.errorString();
    file.remove();
    return tr("the file could not be locked");
}

void removeRecords(const QDir &dir)
{
    for (const QString &name : dir.entryList({recordFilePattern}, QDir::Files | QDir::Hidden))
        QFile::remove(dir.filePath(name));
}

// "tmp_" and a number. Other folders with that beginning are the user's.
bool isTemporaryName(const QString &name)
{
    bool isNumber = false;
    (void)name.mid(temporaryDirPattern.size() - 1).toUInt(&isNumber);
    return isNumber;
}

// Files whose conversion was killed; those of running ones are locked and stay, as does the temporary
// folder that the caller gives.
void clearLeftovers(const QDir &folder, const QString &givenTemporaryDir)
{
    growingfile::clearLeftovers(folder);
    for (const QString &name :
         folder.entryList({temporaryDirPattern}, QDir::Dirs | QDir::NoSymLinks)) {
        const QDir dir(folder.filePath(name));
        if (!dir.exists(temporaryLockName)) {
            if (isTemporaryName(name) && dir != QDir(givenTemporaryDir))
                folder.rmdir(name); // killed between its lock and itself; fails unless it's empty
            continue;
        }
        QLockFile lock(dir.filePath(temporaryLockName));
        if (takeProgramLock(lock)) {
            removeRecords(dir);
            lock.unlock();
            folder.rmdir(name);
        }
    }
}

} // namespace

ConversionFiles::ConversionFiles(const ConversionJob &job)
    : m_inputFile(job.inputFile)
    , m_folder(job.outputFolder)
    , m_names(job.names)
    , m_outputFile(job.outputFile)
    , m_temporaryDir(job.temporaryDir)
    , m_growingFile(growingfile::partOf(m_outputFile))
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

QLockFile::LockError ConversionFiles::lock(std::unique_ptr<QLockFile> &file, const QString &path)
{
    auto created = std::make_unique<QLockFile>(path);
    if (!takeProgramLock(*created))
        return created->error();
    file = std::move(created);
    return QLockFile::NoError;
}

bool ConversionFiles::failToLock(QLockFile::LockError error, const QString &lockPath)
{
    const QString name = QDir::toNativeSeparators(m_outputFile);
    if (error != QLockFile::LockFailedError)
        return fail(tr("%1: cannot be written: %2").arg(name, whyNotMade(lockPath)));
    const QString refusal = growingfile::refusalText(m_outputFile);
    return fail(refusal.isEmpty() ? tr("%1: another conversion is writing there").arg(name)
                                  : QStringLiteral("%1: %2").arg(name, refusal));
}

bool ConversionFiles::prepare()
{
    if (!m_names && m_outputFile.isEmpty())
        return true; // reported when the file is to be created
    const QDir folder = m_names ? QDir(m_folder) : QFileInfo(m_outputFile).absoluteDir();
    if (!folder.exists()) {
        return fail(tr("The output folder %1 does not exist")
                        .arg(QDir::toNativeSeparators(folder.absolutePath())));
    }
    clearLeftovers(folder, m_names ? QString() : m_temporaryDir);
    return m_names ? prepareFree() : prepareGiven();
}

bool ConversionFiles::prepareGiven()
{
    // Taking the place of a device or a pipe would destroy it.
    const QFileInfo output(m_outputFile);
    if (output.exists() && !output.isFile())
        return fail(tr("%1 is not a regular file").arg(QDir::toNativeSeparators(m_outputFile)));
    QLockFile::LockError error = growingfile::take(m_outputLock, m_outputFile);
    if (error != QLockFile::NoError)
        return failToLock(error, growingfile::lockOf(m_outputFile));
    if (!QFileInfo(m_temporaryDir).isDir()) {
        std::error_code cause;
        m_madeTemporaryDir = std::filesystem::create_directory(nativePath(m_temporaryDir), cause);
        if (!m_madeTemporaryDir)
            return fail(noTemporaryDir(m_temporaryDir, cause));
    }
    const QString temporaryLock = QDir(m_temporaryDir).filePath(temporaryLockName);
    error = lock(m_temporaryLock, temporaryLock);
    return error == QLockFile::NoError || failToLock(error, temporaryLock);
}

bool ConversionFiles::prepareFree()
{
    return takeFreeOutput() && takeFreeTemporaryDir();
}

void ConversionFiles::nameOutput(const QString &path)
{
    m_outputFile = path;
    m_growingFile = growingfile::partOf(path);
}

// Who holds the lock has the name; whoever had it before may have published in between.
bool ConversionFiles::takeFreeOutput()
{
    if (m_outputFile.isEmpty())
        nameOutput(m_names->outputFile(m_inputFile, m_folder));
    for (;; nameOutput(m_names->outputFile(m_inputFile, m_folder))) {
        const QLockFile::LockError error = growingfile::take(m_outputLock, m_outputFile);
        if (error == QLockFile::NoError && !QFileInfo::exists(m_outputFile))
            return true;
        m_outputLock.reset();
        if (error != QLockFile::NoError && error != QLockFile::LockFailedError)
            return failToLock(error, growingfile::lockOf(m_outputFile));
    }
}

// Who makes the folder has it. Another conversion that clears leftovers may still take it away
// until it is locked.
bool ConversionFiles::takeFreeTemporaryDir()
{
    std::error_code cause;
    for (int attempt = 0; attempt < maxTemporaryDirs; ++attempt) {
        if (attempt > 0 || m_temporaryDir.isEmpty())
            m_temporaryDir = m_names->temporaryDir(m_folder);
        if (!std::filesystem::create_directory(nativePath(m_temporaryDir), cause))
            continue;
        const QString lockPath = QDir(m_temporaryDir).filePath(temporaryLockName);
        m_madeTemporaryDir = lock(m_temporaryLock, lockPath) == QLockFile::NoError;
        if (m_madeTemporaryDir)
            return true;
        QDir().rmdir(m_temporaryDir);
    }
    return fail(noTemporaryDir(m_temporaryDir, cause));
}

bool ConversionFiles::publish()
{
    std::error_code error;
    if (m_names)
        moveToFreeName(error);
    else
        std::filesystem::rename(nativePath(m_growingFile), nativePath(m_outputFile), error);
    if (error) {
        return fail(tr("%1: %2").arg(QDir::toNativeSeparators(m_outputFile),
                                     QString::fromLocal8Bit(error.message().c_str())));
    }
    return true;
}

void ConversionFiles::moveToFreeName(std::error_code &error)
{
    moveWithoutReplacing(nativePath(m_growingFile), nativePath(m_outputFile), error);
    while (error == std::errc::file_exists) {
        m_outputFile = m_names->outputFile(m_inputFile, m_folder);
        moveWithoutReplacing(nativePath(m_growingFile), nativePath(m_outputFile), error);
    }
}
