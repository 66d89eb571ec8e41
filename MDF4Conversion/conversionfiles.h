#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

// The files of one running conversion beside its temporary ones: the output grows under another
// name and takes its own when it is whole. Whatever happens, nothing half stays behind; what a
// killed conversion has left is cleared by the next one into the same folder.
class ConversionFiles
{
public:
    ConversionFiles(const QString &outputFile, const QString &temporaryDir);
    ~ConversionFiles();
    ConversionFiles(const ConversionFiles &) = delete;
    ConversionFiles &operator=(const ConversionFiles &) = delete;

    // Clears leftovers and makes the temporary folder. False with failure() set.
    bool prepare();
    // Gives the output its own name, in place of a file that has it.
    bool publish();

    [[nodiscard]] const QString &growingFile() const { return m_growingFile; }
    [[nodiscard]] const QString &failure() const { return m_failure; }

private:
    bool lock(std::unique_ptr<QLockFile> &file, const QString &path);
    bool fail(const QString &text);

    const QString m_outputFile;
    const QString m_temporaryDir;
    const QString m_growingFile;
    std::unique_ptr<QLockFile> m_outputLock;
    std::unique_ptr<QLockFile> m_temporaryLock;
    bool m_madeTemporaryDir = false;
    QString m_failure;
};
