#pragma once

#include "app/ui/userprompt.h"

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
    void withdrawQuestion() override;
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
                           QMessageBox::StandardButton onReturn);
    void show(QMessageBox::Icon icon, const QString &title, const QString &text,
              const QString &reason);

    QPointer<QWidget> m_window;
    QPointer<QMessageBox> m_question; // while one is open
};
