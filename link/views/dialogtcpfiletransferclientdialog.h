#pragma once

#include "MDF4Conversion/conversionglobal.h"
#include "link/downloadlist.h"
#include "link/transferpace.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

#include <memory>

class UserPrompt;

namespace Ui {
class DialogTcpFileTransferClientDialog;
}

// Shows the download of a list of files into the folder "raw_log_data" of an event folder. What
// fails can be fetched again while the dialog is open. Accepted when it is closed behind the last
// file, rejected when the user cancels before or it can't begin.
class DialogTcpFileTransferClientDialog : public QDialog
{
    Q_OBJECT

public:
    static constexpr int progressPeriod_ms = 500;

    // Names and sizes (bytes) belong together by position. The prompt lives longer.
    DialogTcpFileTransferClientDialog(const QHostAddress &address, quint16 port, QStringList names,
                                      QList<qint64> sizes, QString eventFolder,
                                      ConversionGlobal::OutputFormatFlags formats,
                                      UserPrompt &prompt, QWidget *parent = nullptr);
    ~DialogTcpFileTransferClientDialog() override;

    // Opens the dialog and begins. Without a target folder, or room in it, the user is told and the
    // dialog is rejected.
    void start();

    [[nodiscard]] DownloadList &list() { return m_list; }
    // What slot_check_progress shows when the time is `now_ms`, on a clock that doesn't go back.
    void showProgress(qint64 now_ms);

signals:
    // Once, behind the last file, or when the user gives up those that failed: the files to
    // convert, where their conversions belong and to what. Not without a file or a format.
    void signalConvert(QStringList rawLogs, QString folder,
                       ConversionGlobal::OutputFormatFlags formats);

public slots:
    void slot_check_progress() { showProgress(m_clock.elapsed()); }
    void cancel_transfer() { reject(); }
    void reject() override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private slots:
    void on_pushButton_retry_clicked();
    void on_pushButton_cancel_clicked() { cancel_transfer(); }

private:
    void showFile(int index);
    void showCount(int count);
    void showPlace(const QString &text);
    void showFailure(int index);
    void showEnd();
    void setRunning(bool isRunning);
    void convertArrived();

    std::unique_ptr<Ui::DialogTcpFileTransferClientDialog> m_ui;
    UserPrompt &m_prompt;
    const QString m_eventFolder;
    const QString m_targetFolder;
    const ConversionGlobal::OutputFormatFlags m_formats;
    DownloadList m_list;
    TransferPace m_pace;
    QElapsedTimer m_clock;
    QTimer m_timer;
    QString m_place; // the file under way, at the end the folder
    bool m_hasEnded = false;
    bool m_isConverted = false;
};
