#pragma once

#include <QLockFile>
#include <QString>

#include <memory>
#include <system_error>

class OutputNames;
struct ConversionJob;

// The files of one running conversion beside its temporary ones: the output grows under another
// name and takes its own when it is whole. Whatever happens, nothing half stays behind; what a
// killed conversion has left is cleared by the next one into the same folder.
class ConversionFiles
{
public:
    // The names that the job asks for, or the next free ones in its folder.
    explicit ConversionFiles(const ConversionJob &job);
    ~ConversionFiles();
    ConversionFiles(const ConversionFiles &) = delete;
    ConversionFiles &operator=(const ConversionFiles &) = delete;

    // Clears leftovers, takes the names and makes the temporary folder. False with failure() set.
    bool prepare();
    // Gives the output its own name: in place of a file that has it, or, where names are free ones,
    // under another name if a file got it meanwhile.
    bool publish();

    // The names that are tried first, before prepare().
    [[nodiscard]] const QString &outputFile() const { return m_outputFile; }
    [[nodiscard]] const QString &temporaryDir() const { return m_temporaryDir; }
    [[nodiscard]] const QString &growingFile() const { return m_growingFile; }
    [[nodiscard]] const QString &failure() const { return m_failure; }

private:
    bool prepareGiven();
    bool prepareFree();
    bool takeFreeOutput();
    bool takeFreeTemporaryDir();
    void nameOutput(const QString &path);
    void moveToFreeName(std::error_code &error);
    QLockFile::LockError lock(std::unique_ptr<QLockFile> &file, const QString &path);
    bool failToLock(QLockFile::LockError error, const QString &lockPath);
    bool fail(const QString &text);

    const QString m_inputFile;
    const QString m_folder;                     // where names are free ones
    const std::shared_ptr<OutputNames> m_names; // null where they are given
    QString m_outputFile;
    QString m_temporaryDir;
    QString m_growingFile;
    std::unique_ptr<QLockFile> m_outputLock;
    std::unique_ptr<QLockFile> m_temporaryLock;
    bool m_madeTemporaryDir = false;
    QString m_failure;
};
