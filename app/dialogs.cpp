#include "app/dialogs.h"

#include "MDF4Conversion/views/dialogconverter.h"
#include "app/mainwindow.h"
#include "link/protocol/messagetypes.h"
#include "link/views/dialogtcpfiletransferclientdialog.h"

void setDialogs(MainWindowParts &parts, UserPrompt &prompt)
{
    using Formats = ConversionGlobal::OutputFormatFlags;
    const auto convert = [&prompt](Formats formats, const QStringList &rawLogs,
                                   const QString &folder, QWidget *window) {
        DialogConverter::open(rawLogs, folder, formats, prompt, window);
    };
    parts.convert = convert;
    parts.download = [&prompt, convert](const QHostAddress &logger, const QStringList &names,
                                        const QList<qint64> &sizes, const QString &eventFolder,
                                        Formats formats, QWidget *window) {
        auto *dialog = new DialogTcpFileTransferClientDialog(
            logger, protocol::filePort, names, sizes, eventFolder, formats, prompt, window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        QObject::connect(
            dialog, &DialogTcpFileTransferClientDialog::signalConvert, window,
            [convert, window](const QStringList &rawLogs, const QString &folder, Formats picked) {
                convert(picked, rawLogs, folder, window);
            });
        dialog->start();
    };
}
