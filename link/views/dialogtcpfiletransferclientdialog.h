#pragma once

#include "MDF4Conversion/conversionglobal.h"
#include "app/ui/runningwork.h"
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
// fails can be fetched again while the dialog is open, and further files can be added while it runs.
// Accepted when it is closed behind the last file, rejected when the user cancels before or it can't
// begin.
class DialogTcpFileTransferClientDialog : public QDialog, public RunningWork
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

    // Whether what it fetches comes from this logger, for this folder and these formats.
    [[nodiscard]] bool fetches(const QHostAddress &address, const QString &eventFolder,
                               ConversionGlobal::OutputFormatFlags formats) const;
    // While it runs: puts further files behind those that wait, without fetching one twice. If there
    // is no room for them the user is told, and nothing changes.
    void add(const QStringList &names, const QList<qint64> &sizes);
    // What this logger must keep: the names, as it gave them, of what waits and what is under way.
    [[nodiscard]] QStringList namesUnderWay(const QHostAddress &address) const;
    [[nodiscard]] QString runningWork() const override;

    [[nodiscard]] DownloadList &list() { return m_list; }
    // What slot_check_progress shows when the time is `now_ms`, on a clock that doesn't go back.
    void showProgress(qint64 now_ms);

signals:
    // Once, behind the last file, or when the user gives up those that failed: the files to
    // convert, where their conversions belong and to what. Not without a file or a format.
    void signalConvert(QStringList rawLogs, QString folder,
                       ConversionGlobal::OutputFormatFlags formats);
    // The same for what had arrived when the user cancelled; behind the rejection.
    void signalOfferConversion(QStringList rawLogs, QString folder,
                               ConversionGlobal::OutputFormatFlags formats);

public slots:
    void slot_check_progress() { showProgress(m_clock.elapsed()); }
    void cancel_transfer();
    // By the Escape key or the window's frame. The user is asked while something runs.
    void reject() override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private slots:
    void on_pushButton_retry_clicked();
    void on_pushButton_cancel_clicked() { cancel_transfer(); }
    void on_pushButton_open_folder_clicked();

private:
    void showFile(int index);
    void showCount(int count);
    void showPlace(const QString &text);
    void showFailure(int index);
    void showFailures();
    void showEnd();
    [[nodiscard]] bool isToEnd();
    [[nodiscard]] QStringList arrivedRawLogs() const;
    void setRunning(bool isRunning);
    void convertArrived();

    std::unique_ptr<Ui::DialogTcpFileTransferClientDialog> m_ui;
    UserPrompt &m_prompt;
    const QHostAddress m_address;
    const QString m_eventFolder;
    const QString m_targetFolder;
    const ConversionGlobal::OutputFormatFlags m_formats;
    DownloadList m_list;
    TransferPace m_pace;
    QElapsedTimer m_clock;
    QTimer m_timer{this};
    QString m_placeMeaning; // of the label, for its tooltip
    QString m_place;        // the file under way, at the end the folder
    int m_count = 0;        // shown number of the file under way
    bool m_hasEnded = false;
    bool m_isAsking = false; // whether to end
    bool m_isConverted = false;
};
