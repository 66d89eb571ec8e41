#pragma once

#include <QString>
#include <QStringList>

// What the program asks its user or tells him, as plain text. The real one opens dialogs; a test
// answers in its place. Every call returns when the user has answered, on the GUI thread.
class UserPrompt
{
public:
    UserPrompt() = default;
    virtual ~UserPrompt() = default;
    UserPrompt(const UserPrompt &) = delete;
    UserPrompt &operator=(const UserPrompt &) = delete;

    virtual void inform(const QString &title, const QString &text) = 0;
    // The reason says more than the text, where there is more to say.
    virtual void warn(const QString &title, const QString &text, const QString &reason = {}) = 0;
    // True for Yes; closing the question means No.
    [[nodiscard]] virtual bool ask(const QString &title, const QString &text) = 0;
    // The same where Yes is what most users want and loses nothing: Return means Yes.
    [[nodiscard]] virtual bool offer(const QString &title, const QString &text)
    {
        return ask(title, text);
    }
    // The same for a question that may lose its meaning while it is open. The owner tells it from
    // those of others, and isn't used otherwise; it has one at a time.
    [[nodiscard]] virtual bool askRevocably(const void * /*owner*/, const QString &title,
                                            const QString &text)
    {
        return ask(title, text);
    }
    // Closes the owner's question, if one is open, as if the user had said No.
    virtual void withdrawQuestion(const void * /*owner*/) {}

    // Pickers of files and folders begin in the given place; empty if the user cancels. The filter
    // reads "name (*.extension)"; a file to be saved gets that extension if it is typed without.
    [[nodiscard]] virtual QString pickFolder(const QString &title, const QString &start) = 0;
    [[nodiscard]] virtual QString pickFile(const QString &title, const QString &start,
                                           const QString &filter) = 0;
    [[nodiscard]] virtual QStringList pickFiles(const QString &title, const QString &start,
                                                const QString &filter) = 0;
    [[nodiscard]] virtual QString pickFileToSave(const QString &title, const QString &start,
                                                 const QString &filter) = 0;
};
