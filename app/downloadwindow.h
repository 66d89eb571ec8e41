#pragma once

#include "app/mainwindow.h"

#include <QPointer>

class DialogTcpFileTransferClientDialog;

// The one window that downloads. Two would fetch the same files under names that the other is about
// to take, and neither would know of the room that the other needs.
class DownloadWindow
{
public:
    // The prompt lives longer.
    DownloadWindow(MainWindowParts::Converter convert, UserPrompt &prompt)
        : m_convert(std::move(convert))
        , m_prompt(prompt)
    {}

    // A MainWindowParts::Downloader. While a download runs its window comes to the front and takes the
    // files behind its own, or tells that they have to wait. One that has ended gives way.
    void open(const QHostAddress &logger, const QStringList &names, const QList<qint64> &sizes,
              const QString &folder, ConversionGlobal::OutputFormatFlags formats, QWidget *window);
    // What this logger must keep: its names of the files that are still to be fetched.
    [[nodiscard]] QStringList namesUnderWay(const QHostAddress &logger) const;

private:
    void connectDialog(QWidget *window);

    const MainWindowParts::Converter m_convert;
    UserPrompt &m_prompt;
    QPointer<DialogTcpFileTransferClientDialog> m_dialog;
};
