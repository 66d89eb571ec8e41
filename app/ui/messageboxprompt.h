#pragma once

#include "app/ui/userprompt.h"

#include <QHash>
#include <QMessageBox>
#include <QPointer>

// Asks and tells with dialogs in front of a window.
class MessageBoxPrompt : public UserPrompt
{
public:
    // The window must outlive the prompt, or be gone before the next call.
    void setWindow(QWidget *window) { m_window = window; }

    void inform(const QString &title, const QString &text) override;
    void warn(const QString &title, const QString &text, const QString &reason = {}) override;
    [[nodiscard]] bool ask(const QString &title, const QString &text) override;
    [[nodiscard]] bool offer(const QString &title, const QString &text) override;
    [[nodiscard]] bool askRevocably(const void *owner, const QString &title,
                                    const QString &text) override;
    void withdrawQuestion(const void *owner) override;
    [[nodiscard]] QString pickFolder(const QString &title, const QString &start) override;
    [[nodiscard]] QString pickFile(const QString &title, const QString &start,
                                   const QString &filter) override;
    [[nodiscard]] QStringList pickFiles(const QString &title, const QString &start,
                                        const QString &filter) override;
    [[nodiscard]] QString pickFileToSave(const QString &title, const QString &start,
                                         const QString &filter) override;

private:
    [[nodiscard]] QWidget *front() const;
    [[nodiscard]] bool ask(const QString &title, const QString &text,
                           QMessageBox::StandardButton onReturn, const void *owner);
    void show(QMessageBox::Icon icon, const QString &title, const QString &text,
              const QString &reason);

    QPointer<QWidget> m_window;
    QHash<const void *, QPointer<QMessageBox>> m_revocable; // by owner, while open
};
