#pragma once

#include "MDF4Conversion/growingfile.h"
#include "link/downloadlist.h"
#include "link/protocol/messagetypes.h"
#include "tests/support/filecontents.h"
#include "tests/support/lockfiles.h"
#include "tests/support/simulatedlogger.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

// What the tests of a list of downloads share.
namespace downloadbench {

// A logger with the files a, b and c, and a folder to fetch them into.
struct Bench
{
    Bench()
    {
        for (int i = 0; i < names.size(); ++i) {
            contents += pattern(300'000 + i, i);
            sizes += contents.at(i).size();
            writeFile(storage.filePath(names.at(i)), contents.at(i));
        }
        logger.inspect(
            [this](simulator::LoggerSimulator &s) { s.state().logFolder = storage.path(); });
    }

    DownloadList &list()
    {
        if (!m_list) {
            m_list =
                std::make_unique<DownloadList>(address, protocol::filePort, names, sizes, folder);
            m_list->client().setSilenceLimit(200);
            ended = std::make_unique<QSignalSpy>(m_list.get(), &DownloadList::ended);
        }
        return *m_list;
    }
    bool waitForEnd()
    {
        const bool hasEnded = !ended->isEmpty() || ended->wait();
        ended->clear();
        return hasEnded;
    }
    bool run() { return list().start().isEmpty() && waitForEnd(); }
    QVector<DownloadList::FileState> states()
    {
        QVector<DownloadList::FileState> all;
        for (const DownloadList::File &file : list().files())
            all += file.state;
        return all;
    }
    QStringList entries() const
    {
        return QDir(target.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    // As a program that was killed leaves it.
    void leaveHalfFile(const char *name) const
    {
        const QString file = target.filePath(QLatin1String(name));
        writeFile(growingfile::partOf(file), "half");
        writeFile(growingfile::lockOf(file), lockOfEndedProgram());
    }
    void removeFromLogger(int index) { QFile::remove(storage.filePath(names.at(index))); }
    void putOnLogger(int index)
    {
        writeFile(storage.filePath(names.at(index)), contents.at(index));
    }

    QStringList names{QStringLiteral("a.rld"), QStringLiteral("b.rld"), QStringLiteral("c.rld")};
    QList<QByteArray> contents;
    QList<qint64> sizes;
    QTemporaryDir storage;
    QTemporaryDir target;
    QString folder = target.path();
    SimulatedLogger logger;
    QHostAddress address = logger.address();
    std::unique_ptr<QSignalSpy> ended;

private:
    std::unique_ptr<DownloadList> m_list;
};

} // namespace downloadbench
