#include "app/downloadwindow.h"

#include "app/ui/userprompt.h"
#include "link/protocol/messagetypes.h"
#include "link/views/dialogtcpfiletransferclientdialog.h"

#include <QCoreApplication>
#include <QHostAddress>

namespace {

using Dialog = DialogTcpFileTransferClientDialog;
using Formats = ConversionGlobal::OutputFormatFlags;

QString tr(const char *text)
{
    return QCoreApplication::translate("DownloadWindow", text);
}

void bringToFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.raise();
    window.activateWindow();
}

} // namespace

void DownloadWindow::open(const QHostAddress &logger, const QStringList &names,
                          const QList<qint64> &sizes, const QString &folder, Formats formats,
                          QWidget *window)
{
    if (m_dialog && m_dialog->list().isRunning()) {
        bringToFront(*m_dialog);
        if (m_dialog->fetches(logger, folder, formats))
            m_dialog->add(names, sizes);
        else
            m_prompt.warn(tr("Download"),
                          tr("A download is running. Files for another folder, or to be converted "
                             "otherwise, can be downloaded when it has ended."));
        return;
    }
    if (m_dialog && m_dialog->isVisible())
        m_dialog->close();
    m_dialog =
        new Dialog(logger, protocol::filePort, names, sizes, folder, formats, m_prompt, window);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    connectDialog(window);
    m_dialog->start();
}

void DownloadWindow::connectDialog(QWidget *window)
{
    const auto convert = [convert = m_convert, window](const QStringList &rawLogs,
                                                       const QString &folder, Formats formats) {
        convert(formats, rawLogs, folder, window);
    };
    const auto offer = [convert, &prompt = m_prompt](const QStringList &rawLogs,
                                                     const QString &folder, Formats formats) {
        if (prompt.offer(
                tr("Download"),
                tr("The download was cancelled. Log files that had arrived and stay: %1.\n\n"
                   "Convert them now?")
                    .arg(rawLogs.size())))
            convert(rawLogs, folder, formats);
    };
    QObject::connect(m_dialog, &Dialog::signalConvert, window, convert);
    QObject::connect(m_dialog, &Dialog::signalOfferConversion, window, offer);
}

QStringList DownloadWindow::namesUnderWay(const QHostAddress &logger) const
{
    return m_dialog ? m_dialog->namesUnderWay(logger) : QStringList();
}
