// Downloads files and may be killed meanwhile:
//
//     zds-test-download ADDRESS FOLDER NAME SIZE [NAME SIZE]...
//
// Tells in a line when it begins, and ends with 0 when all have arrived.

#include "link/downloadlist.h"
#include "link/protocol/messagetypes.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QStringList arguments = QCoreApplication::arguments();
    QStringList names;
    QList<qint64> sizes;
    for (int i = 3; i + 1 < arguments.size(); i += 2) {
        names += arguments.at(i);
        sizes += arguments.at(i + 1).toLongLong();
    }
    DownloadList list(QHostAddress(arguments.value(1)), protocol::filePort, names, sizes,
                      arguments.value(2));
    QObject::connect(
        &list, &DownloadList::ended, &application,
        [&list] {
            QCoreApplication::exit(list.count(DownloadList::FileState::Failed) == 0 ? 0 : 1);
        },
        Qt::QueuedConnection);
    std::puts("begun");
    std::fflush(stdout);
    return list.start().isEmpty() ? QCoreApplication::exec() : 1;
}
