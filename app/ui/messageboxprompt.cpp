#include "app/ui/messageboxprompt.h"

#include <QFileDialog>

namespace {

// Texts come from files and from the logger, too: none is read as markup.
void fill(QMessageBox &box, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    box.setIcon(icon);
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

// "zdc" of "config (*.zdc)".
QString extensionOf(const QString &filter)
{
    return filter.section(QStringLiteral("(*."), 1).section(QLatin1Char(')'), 0, 0);
}

} // namespace

void MessageBoxPrompt::show(QMessageBox::Icon icon, const QString &title, const QString &text,
                            const QString &reason)
{
    QMessageBox box(m_window);
    fill(box, icon, title, reason.isEmpty() ? text : text + QStringLiteral("\n\n") + reason);
    box.exec();
}

void MessageBoxPrompt::inform(const QString &title, const QString &text)
{
    show(QMessageBox::Information, title, text, {});
}

void MessageBoxPrompt::warn(const QString &title, const QString &text, const QString &reason)
{
    show(QMessageBox::Warning, title, text, reason);
}

bool MessageBoxPrompt::ask(const QString &title, const QString &text)
{
    QMessageBox box(m_window);
    fill(box, QMessageBox::Question, title, text);
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    m_question = &box;
    return box.exec() == QMessageBox::Yes;
}

void MessageBoxPrompt::withdrawQuestion()
{
    if (m_question)
        m_question->done(QMessageBox::No);
}

QString MessageBoxPrompt::pickFolder(const QString &title, const QString &start)
{
    return QFileDialog::getExistingDirectory(m_window, title, start);
}

QString MessageBoxPrompt::pickFile(const QString &title, const QString &start,
                                   const QString &filter)
{
    return QFileDialog::getOpenFileName(m_window, title, start, filter);
}

QStringList MessageBoxPrompt::pickFiles(const QString &title, const QString &start,
                                        const QString &filter)
{
    return QFileDialog::getOpenFileNames(m_window, title, start, filter);
}

QString MessageBoxPrompt::pickFileToSave(const QString &title, const QString &start,
                                         const QString &filter)
{
    // Not the static function: only a dialog asks about the name that it completed.
    QFileDialog dialog(m_window, title, start, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(extensionOf(filter));
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}
