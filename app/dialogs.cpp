#include "app/dialogs.h"

#include "MDF4Conversion/views/dialogconverter.h"
#include "app/downloadwindow.h"
#include "app/mainwindow.h"

#include <QHostAddress>

#include <memory>

void setDialogs(MainWindowParts &parts, UserPrompt &prompt)
{
    using Formats = ConversionGlobal::OutputFormatFlags;
    const auto convert = [&prompt](Formats formats, const QStringList &rawLogs,
                                   const QString &folder, QWidget *window) {
        DialogConverter::open(rawLogs, folder, formats, prompt, window);
    };
    parts.convert = convert;
    const auto downloads = std::make_shared<DownloadWindow>(convert, prompt);
    parts.download = [downloads](const QHostAddress &logger, const QStringList &names,
                                 const QList<qint64> &sizes, const QString &folder, Formats formats,
                                 QWidget *window) {
        downloads->open(logger, names, sizes, folder, formats, window);
    };
    parts.filesUnderWay = [downloads](const QHostAddress &logger) {
        return downloads->namesUnderWay(logger);
    };
}
