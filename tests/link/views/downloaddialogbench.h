#pragma once

#include "link/protocol/messagetypes.h"
#include "link/views/dialogtcpfiletransferclientdialog.h"
#include "tests/app/scriptedprompt.h"
#include "tests/support/simulatedlogger.h"

#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

// A logger with the files a.rld, b.RLD and c.txt, and a dialog that fetches them.
struct DownloadDialogBench
{
    DownloadDialogBench()
    {
        for (int i = 0; i < names.size(); ++i) {
            sizes += 1000 + i;
            putOnLogger(i);
        }
        logger.inspect(
            [this](simulator::LoggerSimulator &s) { s.state().logFolder = storage.path(); });
    }

    DialogTcpFileTransferClientDialog &dialog()
    {
        if (!m_dialog) {
            m_dialog = std::make_unique<DialogTcpFileTransferClientDialog>(
                address, protocol::filePort, names, sizes, eventFolder, formats, prompt);
            m_dialog->list().client().setSilenceLimit(5000);
            converted = std::make_unique<QSignalSpy>(
                m_dialog.get(), &DialogTcpFileTransferClientDialog::signalConvert);
            offered = std::make_unique<QSignalSpy>(
                m_dialog.get(), &DialogTcpFileTransferClientDialog::signalOfferConversion);
        }
        return *m_dialog;
    }
    void run()
    {
        dialog().start();
        waitForEnd();
    }
    // The first file has arrived, the second stops behind ten bytes.
    void fetchOneAndAHalf()
    {
        QObject::connect(&dialog().list(), &DownloadList::fileStarted, [this](int index) {
            if (index == 1)
                logger.setFault(QStringLiteral("stalled-file=10"));
        });
        dialog().start();
        QTRY_COMPARE(dialog().list().receivedBytes(), 1010);
    }
    void waitForEnd() { QTRY_COMPARE(button("cancel")->text(), QStringLiteral("Close")); }

    template <class T>
    T *child(const QString &name)
    {
        return dialog().findChild<T *>(name);
    }
    QString label(const char *name)
    {
        return child<QLabel>(QStringLiteral("label_") + QLatin1String(name))->text();
    }
    QPushButton *button(const char *name)
    {
        return child<QPushButton>(QStringLiteral("pushButton_") + QLatin1String(name));
    }
    int percent() { return child<QProgressBar>(QStringLiteral("progressBar"))->value(); }
    QPlainTextEdit *failures()
    {
        return child<QPlainTextEdit>(QStringLiteral("plainTextEdit_failures"));
    }

    void putOnLogger(int index)
    {
        QFile file(storage.filePath(names.at(index)));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("%s", qPrintable(file.fileName()));
        file.write(QByteArray(int(sizes.at(index)), 'x'));
    }
    void removeFromLogger(int index) { QFile::remove(storage.filePath(names.at(index))); }
    QString targetPath(int index) const
    {
        return eventFolder + QStringLiteral("/raw_log_data/") + names.at(index);
    }

    QStringList names{QStringLiteral("a.rld"), QStringLiteral("b.RLD"), QStringLiteral("c.txt")};
    QList<qint64> sizes;
    ConversionGlobal::OutputFormatFlags formats = ConversionGlobal::MDF4 | ConversionGlobal::ASC;
    QTemporaryDir storage;
    QTemporaryDir folder;
    QString eventFolder = folder.filePath(QStringLiteral("event 1"));
    SimulatedLogger logger;
    QHostAddress address = logger.address();
    ScriptedPrompt prompt;
    std::unique_ptr<QSignalSpy> converted;
    std::unique_ptr<QSignalSpy> offered;

private:
    std::unique_ptr<DialogTcpFileTransferClientDialog> m_dialog;
};
