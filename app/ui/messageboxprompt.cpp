#include "app/ui/messageboxprompt.h"

#include "app/ui/icons.h"

#include <QApplication>
#include <QFileDialog>
#include <QStyle>

namespace {

QIcon iconOf(QMessageBox::Icon icon, const QPalette &palette)
{
    const QColor calm = palette.color(QPalette::Highlight);
    const QColor amber(0xC7, 0x77, 0x00);
    switch (icon) {
    case QMessageBox::Question:
        return icons::icon(icons::Symbol::Question, calm);
    case QMessageBox::Information:
        return icons::icon(icons::Symbol::Info, calm);
    case QMessageBox::Warning:
    case QMessageBox::Critical:
    case QMessageBox::NoIcon:
        break;
    }
    return icons::icon(icons::Symbol::Warning, amber);
}

// Texts come from files and from the logger, too: none is read as markup.
void fill(QMessageBox &box, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    box.setIcon(icon);
    const int side = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    box.setIconPixmap(iconOf(icon, box.palette()).pixmap(side));
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

// The dialog that is open, if any: a box of the window behind it could end up behind it, too. It
// may be deleted while the box is open, and the box with it.
QWidget *MessageBoxPrompt::front() const
{
    QWidget *dialog = QApplication::activeModalWidget();
    return dialog ? dialog : m_window.data();
}

void MessageBoxPrompt::show(QMessageBox::Icon icon, const QString &title, const QString &text,
                            const QString &reason)
{
    const QPointer<QMessageBox> box(new QMessageBox(front()));
    const QString separator =
        text.isEmpty() || reason.isEmpty() ? QString() : QStringLiteral("\n\n");
    fill(*box, icon, title, text + separator + reason);
    box->exec();
    delete box;
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
    return ask(title, text, QMessageBox::No, nullptr);
}

bool MessageBoxPrompt::offer(const QString &title, const QString &text)
{
    return ask(title, text, QMessageBox::Yes, nullptr);
}

bool MessageBoxPrompt::askRevocably(const void *owner, const QString &title, const QString &text)
{
    return ask(title, text, QMessageBox::No, owner);
}

bool MessageBoxPrompt::ask(const QString &title, const QString &text,
                           QMessageBox::StandardButton onReturn, const void *owner)
{
    const QPointer<QMessageBox> box(new QMessageBox(front()));
    fill(*box, QMessageBox::Question, title, text);
    box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box->setDefaultButton(onReturn);
    box->setEscapeButton(QMessageBox::No);
    if (owner)
        m_revocable.insert(owner, box);
    const bool isYes = box->exec() == QMessageBox::Yes;
    m_revocable.remove(owner);
    delete box;
    return isYes;
}

void MessageBoxPrompt::withdrawQuestion(const void *owner)
{
    if (const QPointer<QMessageBox> box = m_revocable.value(owner))
        box->done(QMessageBox::No);
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
