#include "MDF4Conversion/rld2xxxoutput.h"

#include "MDF4Conversion/growingfile.h"
#include "MDF4Conversion/nativepath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Conversion", text);
}

} // namespace

Rld2xxxOutput::Rld2xxxOutput(const QString &outputFile)
    : m_outputFile(outputFile.trimmed())
{}

Rld2xxxOutput::~Rld2xxxOutput()
{
    discard();
}

bool Rld2xxxOutput::fail(const QString &cause)
{
    m_failure = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_outputFile), cause);
    return false;
}

bool Rld2xxxOutput::prepare()
{
    discard();
    const QFileInfo output(m_outputFile);
    if (!output.absoluteDir().exists())
        return fail(tr("the output folder does not exist"));
    // Taking the place of a device or a pipe would destroy it.
    if (output.exists() && !output.isFile())
        return fail(tr("is not a regular file"));
    growingfile::clearLeftovers(output.absoluteDir());
    return takeFolder();
}

bool Rld2xxxOutput::takeFolder()
{
    for (int number = 1; number <= growingfile::maxNumber; ++number) {
        const QString name = growingfile::numberedName(m_outputFile, number);
        const QLockFile::LockError error = growingfile::take(m_lock, name);
        if (error == QLockFile::LockFailedError)
            continue;
        if (error != QLockFile::NoError)
            return fail(tr("cannot be written"));
        std::error_code cause;
        if (std::filesystem::create_directory(nativePath(growingfile::partOf(name)), cause)) {
            m_folder = growingfile::partOf(name);
            return true;
        }
        m_lock.reset();
        if (cause && cause != std::errc::file_exists)
            return fail(QString::fromLocal8Bit(cause.message().c_str()));
    }
    return fail(tr("too many conversions are writing this file"));
}

QString Rld2xxxOutput::growingFile() const
{
    return m_folder.isEmpty() ? QString()
                              : QDir(m_folder).filePath(QFileInfo(m_outputFile).fileName());
}

bool Rld2xxxOutput::publish()
{
    std::error_code error;
    std::filesystem::rename(nativePath(growingFile()), nativePath(m_outputFile), error);
    const QString cause = QString::fromLocal8Bit(error.message().c_str());
    if (error && QFileInfo::exists(growingFile())) {
        const QString kept = QDir::toNativeSeparators(growingFile());
        leave();
        return fail(tr("%1. The converted file is kept as %2 as long as this program runs.")
                        .arg(cause, kept));
    }
    discard();
    return !error || fail(cause);
}

void Rld2xxxOutput::leave()
{
    growingfile::keepMark(std::move(m_lock));
    m_folder.clear();
}

void Rld2xxxOutput::discard()
{
    if (m_folder.isEmpty())
        return;
    if (!QDir(m_folder).removeRecursively())
        return leave();
    m_folder.clear();
    m_lock.reset();
}
