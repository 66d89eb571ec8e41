#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

// The file that rld2xxx makes. It grows under its own name in a folder beside its place, which is
// called by that name with ".part" behind it: rld2xxx may go by the name, for the kind of the file or
// the entry of a zip, so that only the folder is free to choose. Moved to its place it is whole.
class Rld2xxxOutput
{
public:
    // Blanks around the name don't count.
    explicit Rld2xxxOutput(const QString &outputFile);
    // What wasn't published goes.
    ~Rld2xxxOutput();
    Rld2xxxOutput(const Rld2xxxOutput &) = delete;
    Rld2xxxOutput &operator=(const Rld2xxxOutput &) = delete;

    // Clears what killed conversions have left beside the output and makes the folder. While another
    // conversion makes a file of the same name, the folder gets a number. False with failure() set.
    [[nodiscard]] bool prepare();
    // What rld2xxx is to write; empty unless prepared.
    [[nodiscard]] QString growingFile() const;
    // Moves the file to its place, over one that stands there. False with failure() set: a file that
    // can't have its place stays where it has grown until a later program clears the folder.
    [[nodiscard]] bool publish();
    // Removes what has grown so far, when nobody writes there any more.
    void discard();

    [[nodiscard]] const QString &failure() const { return m_failure; }

private:
    [[nodiscard]] bool fail(const QString &cause);
    [[nodiscard]] bool takeFolder();
    void leave();

    const QString m_outputFile;
    QString m_folder; // empty unless prepared
    std::unique_ptr<QLockFile> m_lock;
    QString m_failure;
};
