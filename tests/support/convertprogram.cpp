#include "tests/support/convertprogram.h"

#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace convertprogram {

QByteArray errorsUntil(QProcess &process, const char *part)
{
    process.setReadChannel(QProcess::StandardError);
    QByteArray err;
    while (!err.contains(part) && process.waitForReadyRead(timeout_ms))
        err += process.readAllStandardError();
    return err;
}

QByteArray configurationAndFrames(int count)
{
    ConversionHarness log;
    log.configuration.event.event_name = text("Drive");
    StreamingClass_DBC_Signal &signal =
        testlog::addSignal(log.configuration.can[0], text("Speed"), messageId, 0, 16);
    signal.unit = text("km/h");
    for (int i = 0; i < count; ++i)
        log.add(testlog::can(quint32(i) * 1000U, 0, messageId, "0102030405060708"));
    return log.log();
}

QJsonArray Run::json() const
{
    return QJsonDocument::fromJson(out.toUtf8()).array();
}

QString ConvertProgram::program()
{
    return text(ZDS_CONVERT);
}

QString ConvertProgram::make(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(bytes) != bytes.size())
        qFatal("A file of the test can't be written.");
    return file.fileName();
}

QString ConvertProgram::left(const QString &folder) const
{
    return QDir(folder.isEmpty() ? m_folder->path() : folder)
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name)
        .join(QLatin1Char(' '));
}

void ConvertProgram::start(QProcess &process, const QStringList &arguments) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LANG", "LC_ALL"})
        environment.insert(text(name), text("C"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder->path());
    process.start(program(), arguments);
}

Run ConvertProgram::run(const QStringList &arguments) const
{
    QProcess process;
    start(process, arguments);
    Run result;
    if (!process.waitForFinished(timeout_ms))
        process.kill();
    else if (process.exitStatus() == QProcess::NormalExit)
        result.exitCode = process.exitCode();
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

} // namespace convertprogram
