#pragma once

#include "link/tcpfileclient.h"
#include "tests/support/filecontents.h"
#include "tests/support/filepeer.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

// What the tests of the download of one file share.
namespace filetransfer {

// A client with a folder for what it fetches.
struct Transfer
{
    void begin(const QHostAddress &address, quint16 port, qint64 expected,
               const QString &name = QStringLiteral("a.rld"))
    {
        client.start(address, port, name, expected, path());
    }
    void begin(const FilePeer &peer, qint64 expected)
    {
        begin(peer.address(), peer.port(), expected);
    }
    // Whether it ended well; `text` is what it told.
    bool finish()
    {
        if (finished.isEmpty() && !finished.wait())
            qFatal("The transfer does not end.");
        const QList<QVariant> end = finished.takeFirst();
        text = end.at(1).toString();
        return end.at(0).toBool();
    }
    bool fetch(const FilePeer &peer, qint64 expected)
    {
        begin(peer, expected);
        return finish();
    }

    QString path(const char *name = "a.rld") const
    {
        return folder.filePath(QString::fromUtf8(name));
    }
    QStringList entries() const
    {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir folder;
    TcpFileClient client;
    QSignalSpy finished{&client, &TcpFileClient::signal_finished};
    QString text;
};

} // namespace filetransfer
