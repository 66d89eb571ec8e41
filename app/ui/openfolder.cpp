#include "app/ui/openfolder.h"

#include "app/ui/userprompt.h"

#include <QDesktopServices>
#include <QDir>
#include <QUrl>

void openFolder(const QString &folder, UserPrompt &prompt)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        prompt.warn(
            QStringLiteral("Open Folder"),
            QStringLiteral("The folder %1 can't be opened.").arg(QDir::toNativeSeparators(folder)));
}
