#include "app/droppedfiles.h"

namespace {

bool hasSuffix(const QString &path, const char *suffix)
{
    return path.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
}

} // namespace

DroppedFiles DroppedFiles::of(const QList<QUrl> &urls)
{
    DroppedFiles files;
    for (const QUrl &url : urls) {
        const QString path = url.isLocalFile() ? url.toLocalFile() : QString();
        if (hasSuffix(path, ".rld"))
            files.raw_logs += path;
        else if (hasSuffix(path, ".zdc") && urls.size() == 1)
            files.configuration = path;
        else
            return {};
    }
    return files;
}
